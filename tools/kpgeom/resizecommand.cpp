// SPDX-License-Identifier: MIT
#include "batch.h"
#include "commandline.h"
#include "console.h"
#include "document/documentrewriter.h"
#include "document/shortlines.h"
#include "documentinput.h"
#include "progress.h"
#include "segmentkind_p.h"
#include "valuetext.h"

#include <QFile>

#include <cmath>

namespace {

/** How many coordinates of the outline are infinite or NaN. */
int countNotFinite(KpPathSegList const& list)
{
    int count = 0;
    for (KpPathSeg* const seg : list.segs) {
        SegmentKind::forEachReal(
            *seg, [&count](KpReal const& real) { count += std::isfinite(real.value) ? 0 : 1; });
    }
    return count;
}

/** False, with the outline as it is then, if a number of it becomes too large. */
bool resize(KpPathSegList& list, QSizeF const& from, QSizeF const& to)
{
    int const before = countNotFinite(list);
    list.updateRate(from.width(), from.height());
    list.updateValue(to.width(), to.height());
    return countNotFinite(list) <= before;
}

struct Boxes
{
    QSizeF from;
    QSizeF to;
};

Outcome resizeDocument(QString const& operand, Boxes const& boxes, QString const& target)
{
    Diagnostics diagnostics;
    QFile input;
    Output output(target);
    if (!openInput(input, operand, diagnostics)) {
        report(diagnostics);
        return Outcome::Failed;
    }
    if (!output.open())
        return Outcome::Failed;
    Progress progress({operand});
    progress.step();
    int lost = 0;
    auto const edit = [&](Outline& outline) {
        QVector<int> const undrawn = undrawnLines(*outline.list);
        if (!resize(*outline.list, boxes.from, boxes.to)) {
            diagnostics.error(operand,
                QStringLiteral("a coordinate of outline %1 becomes too large").arg(outline.index));
            return false;
        }
        lost += countLost(undrawn, undrawnLines(*outline.list));
        return true;
    };
    bool const isMade =
        rewriteDocument(input, operand, output.device(), edit, diagnostics, progress.ofStep());
    if (isMade && lost > 0)
        diagnostics.add(lostLinesIn(boxes.to, lost, operand));
    report(diagnostics);
    return isMade && output.commit() ? Outcome::Done : Outcome::Failed;
}

Outcome runResize(Command const& command, QStringList const& arguments)
{
    CommandLine line(command);
    if (auto const end = line.parse(arguments))
        return *end;
    line.fallBackOnStandardInput();
    auto const from = sizeFromText(line.value(QStringLiteral("from")));
    auto const to = sizeFromText(line.value(QStringLiteral("to")));
    if (!from || !to)
        return line.misused(misuse(QStringLiteral("--from and --to take a box like 240x160")));
    QString const output = line.file(QStringLiteral("output"));
    int const count = line.operands().size();
    if (count == 0 || (count > 1 && !isBatch(line, output)))
        return line.misused(misuse(QStringLiteral("exactly one file is needed")));
    if (output.isEmpty())
        return line.misused(misuse(QStringLiteral("no output file given (-o)")));

    return runBatch(
        line, {line.suffixes(), output, QStringLiteral("xml"), {}, [&](BatchJob const& job) {
                   return resizeDocument(job.input, {*from, *to}, job.outputs.first());
               }});
}

constexpr CommandOption resizeOptions[] = {
    {"", "from", {"WxH"}, "The box that the outlines are drawn for: their rates are taken there."},
    {"", "to", {"WxH"}, "The box that their values are recomputed for."},
    {"o", "output", {"OUT", Value::Kind::File}, "Write the document to <OUT>.", manyOutputsHelp},
};

} // namespace

constexpr Command resizeCommand {"resize", "FILE... --from WxH --to WxH -o OUT.xml", fileHelp,
    {documentValue, documentValue}, "Fits the outlines of a document to a box of another size.",
    runResize, {resizeOptions, batchOptions}};
