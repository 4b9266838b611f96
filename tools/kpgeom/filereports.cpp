// SPDX-License-Identifier: MIT
#include "filereports.h"

#include "batch.h"
#include "common/filecontent.h"
#include "common/spool.h"
#include "console.h"
#include "orderedjobs.h"
#include "progress.h"

#include <memory>
#include <vector>

namespace {

/** What is told of each file, or null where that failed. */
using Reports = std::vector<std::unique_ptr<Spool>>;

/** Fills the reports; the worst outcome. */
Outcome makeReports(
    QStringList const& operands, int limit, TellOfFile const& tell, Reports& reports)
{
    reports.resize(static_cast<std::size_t>(operands.size()));
    auto const tellOfOne = [&](int index, ProgressFunction const& progress) {
        auto report = std::make_unique<Spool>();
        Outcome const outcome = tell(operands.at(index), *report, progress);
        if (outcome != Outcome::Failed)
            reports[static_cast<std::size_t>(index)] = std::move(report);
        return outcome;
    };
    if (limit > 1 && operands.size() > 1) {
        return runInOrder(
            {operands.size(), limit, [&operands](int index) { return operands.at(index); },
                [&tellOfOne](int index) { return tellOfOne(index, {}); }});
    }
    Outcome outcome = Outcome::Done;
    Progress progress(operands);
    for (int index = 0; index < operands.size(); ++index) {
        progress.step();
        outcome = worse(outcome, tellOfOne(index, progress.ofStep()));
    }
    return outcome;
}

void writeAll(Reports const& reports, ReportForm form, QIODevice& device)
{
    bool const isJson = form == ReportForm::Json;
    bool isFirst = true;
    for (auto const& report : reports) {
        if (!report)
            continue;
        if (isJson)
            device.write(isFirst ? "[\n" : ",\n");
        else if (!isFirst)
            device.write("\n");
        isFirst = false;
        copyAll(report->content(), device);
    }
    if (isJson)
        device.write(isFirst ? "[\n]\n" : "\n]\n");
}

} // namespace

Outcome tellOfEach(CommandLine const& line, ReportForm form, TellOfFile const& tell)
{
    QStringList operands;
    if (auto const end = readOperands(line, line.suffixes(), operands))
        return *end;
    Reports reports;
    Outcome const outcome = makeReports(operands, jobLimit(line), tell, reports);
    Output output(QStringLiteral("-"));
    output.open();
    writeAll(reports, form, output.device());
    Progress::clear();
    return output.commit() ? outcome : Outcome::Failed;
}
