#include "documentinput.h"

#include "commandline.h"
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

std::optional<Diagnostic> readIndices(QStringList const& texts, QVector<int>& indices)
{
    for (QString const& text : texts) {
        int const index = text.toInt();
        if (index < 1)
            return misuse(QStringLiteral("--index takes a number from 1, not '%1'").arg(text));
        indices.append(index);
    }
    return std::nullopt;
}

std::optional<OutlineDocument> loadOutlines(
    QString const& operand, QVector<int> const& indices, ProgressFunction const& progress)
{
    auto document = loadDocument(operand, progress);
    if (!document)
        return std::nullopt;
    Diagnostics diagnostics;
    int const count = static_cast<int>(document->outlines().size());
    if (count == 0 && !document->isSvgPicture())
        diagnostics.error(operand, QStringLiteral("no outline to draw"));
    for (int const index : indices) {
        if (index > count && count > 0) {
            diagnostics.error(operand,
                QStringLiteral("there is no outline %1 among its %2")
                    .arg(QString::number(index), QString::number(count)));
            break;
        }
    }
    report(diagnostics);
    if (count == 0 || !diagnostics.isEmpty())
        return std::nullopt;
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
