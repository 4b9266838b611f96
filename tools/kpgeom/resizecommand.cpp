#include "commandline.h"
#include "console.h"
#include "document/documentrewriter.h"
#include "document/shortlines.h"
#include "documentinput.h"
#include "progress.h"
#include "segmentkind_p.h"

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

} // namespace

Outcome runResize(Command const& command, QStringList const& arguments)
{
    QString const box = QStringLiteral("WxH");
    CommandLine line(command);
    line.addOption({QStringLiteral("from"),
        QStringLiteral("The box that the outlines are drawn for: their rates are taken there."),
        box});
    line.addOption({QStringLiteral("to"),
        QStringLiteral("The box that their values are recomputed for."), box});
    line.addOption({{QStringLiteral("o"), QStringLiteral("output")},
        QStringLiteral("Write the document to <OUT>."), QStringLiteral("OUT")});
    if (auto const end = line.parse(arguments))
        return *end;
    auto const from = sizeFromText(line.value(QStringLiteral("from")));
    auto const to = sizeFromText(line.value(QStringLiteral("to")));
    if (!from || !to)
        return line.misused(misuse(QStringLiteral("--from and --to take a box like 240x160")));
    if (line.operands().size() != 1)
        return line.misused(misuse(QStringLiteral("exactly one file is needed")));
    QString const output = line.value(QStringLiteral("output"));
    if (output.isEmpty())
        return line.misused(misuse(QStringLiteral("no output file given (-o)")));

    QString const operand = line.operands().first();
    Progress progress({operand});
    progress.step();
    auto const document = loadDocument(operand, progress.ofStep());
    if (!document)
        return Outcome::Failed;
    int lost = 0;
    for (Outline const& outline : document->outlines()) {
        QVector<int> const undrawn = undrawnLines(*outline.list);
        if (!resize(*outline.list, *from, *to)) {
            report({Diagnostic::Severity::Error, operand, 0, 0,
                QStringLiteral("a coordinate of outline %1 becomes too large").arg(outline.index)});
            return Outcome::Failed;
        }
        lost += countLost(undrawn, undrawnLines(*outline.list));
    }
    if (lost > 0)
        report(lostLinesIn(*to, lost, operand));
    return writeOutput(output, rewritten(*document)) ? Outcome::Done : Outcome::Failed;
}
