// SPDX-License-Identifier: MIT
#include "documentinput.h"

#include "commandline.h"
#include "common/text.h"
#include "console.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>

std::optional<OutlineDocument> loadDocument(
    QString const& operand, ProgressFunction const& progress)
{
    Diagnostics diagnostics;
    std::optional<OutlineDocument> document;
    QFile input;
    bool const isOpen = openInput(input, operand, diagnostics);
    if (isOpen)
        document = OutlineDocument::read(input, operand, diagnostics, progress);
    report(diagnostics);
    if (document && document->isSvgPicture())
        reportSvgPicture(operand, Diagnostic::Severity::Error);
    if (isOpen && !document)
        reportStencil(operand);
    return document;
}

void reportSvgPicture(QString const& operand, Diagnostic::Severity severity)
{
    report({severity, operand, 0, 0,
        QStringLiteral("an SVG picture: kpgeom convert makes a document of it")});
}

void reportStencil(QString const& operand)
{
    QStringList suffixes = wordsOf(convertCommand.operands[0]);
    // Such a picture would have been seen.
    suffixes.removeAll(QStringLiteral("svg"));
    if (suffixes.contains(QFileInfo(operand).suffix(), Qt::CaseInsensitive)) {
        report({Diagnostic::Severity::Warning, operand, 0, 0,
            QStringLiteral("kpgeom convert makes a document of it")});
    }
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

namespace {

/** Whether there is an outline, and one of each index; says what is missing. */
bool hasAll(QString const& operand, int count, bool isSvgPicture, QVector<int> const& indices)
{
    Diagnostics diagnostics;
    if (count == 0 && !isSvgPicture)
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
    if (count == 0)
        reportStencil(operand);
    return count > 0 && diagnostics.isEmpty();
}

} // namespace

std::optional<OutlineDocument> loadOutlines(
    QString const& operand, QVector<int> const& indices, ProgressFunction const& progress)
{
    auto document = loadDocument(operand, progress);
    if (!document)
        return std::nullopt;
    int const count = static_cast<int>(document->outlines().size());
    if (!hasAll(operand, count, document->isSvgPicture(), indices))
        return std::nullopt;
    return document;
}

bool forEachOutline(QString const& operand, QVector<int> const& indices,
    std::function<bool(Outline&)> const& visit, ProgressFunction const& progress)
{
    Diagnostics diagnostics;
    QFile input;
    if (!openInput(input, operand, diagnostics)) {
        report(diagnostics);
        return false;
    }
    OutlineReader reader(input, operand);
    reader.setProgress(progress);
    for (Outlines group = reader.next(); !group.empty(); group = reader.next()) {
        for (Outline& outline : group) {
            bool const isWanted = indices.isEmpty() || indices.contains(outline.index);
            if (isWanted && !visit(outline))
                return false;
        }
    }
    if (reader.fault()) {
        report(*reader.fault());
        reportStencil(operand);
        return false;
    }
    if (reader.isSvgPicture())
        reportSvgPicture(operand, Diagnostic::Severity::Error);
    return hasAll(operand, reader.count(), reader.isSvgPicture(), indices);
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
