#include "documentinput.h"

#include "common/text.h"
#include "console.h"

#include <algorithm>

std::optional<OutlineDocument> loadDocument(
    QString const& operand, ProgressFunction const& progress)
{
    Diagnostics diagnostics;
    std::optional<OutlineDocument> document;
    if (auto const text = readInput(operand, diagnostics))
        document = OutlineDocument::read(*text, operand, diagnostics, progress);
    if (document && document->isSvgPicture()) {
        diagnostics.warning(
            operand, QStringLiteral("an SVG picture: kpgeom convert makes a document of it"));
    }
    report(diagnostics);
    return document;
}

int countLost(QVector<int> const& undrawnBefore, QVector<int> const& undrawnAfter)
{
    return static_cast<int>(
        std::count_if(undrawnAfter.cbegin(), undrawnAfter.cend(), [&](int line) {
            return !std::binary_search(undrawnBefore.cbegin(), undrawnBefore.cend(), line);
        }));
}

Diagnostic lostLinesIn(QSizeF const& box, int lines, QString const& operand)
{
    return {Diagnostic::Severity::Warning, operand, 0, 0,
        QStringLiteral("in a box of %1, %2 shorter than one unit and not drawn")
            .arg(sizeText(box),
                countText(lines, QStringLiteral("line"))
                    + (lines == 1 ? QStringLiteral(" is") : QStringLiteral(" are")))};
}
