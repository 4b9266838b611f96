// SPDX-License-Identifier: MIT
#include "batch.h"
#include "check/outlinecheck.h"
#include "commandline.h"
#include "common/text.h"
#include "console.h"
#include "documentinput.h"
#include "filereports.h"
#include "longjson.h"
#include "progress.h"

#include <QJsonObject>

namespace {

QByteArray toText(Diagnostic const& finding)
{
    return QStringLiteral("%1:%2:%3: %4\n")
        .arg(displayName(finding.file), QString::number(finding.line),
            QString::number(finding.column), finding.text)
        .toUtf8();
}

QJsonObject toJson(Diagnostic const& finding)
{
    return {{QStringLiteral("line"), finding.line}, {QStringLiteral("column"), finding.column},
        {QStringLiteral("text"), wellFormed(finding.text)}};
}

/** Checks a file and calls `found` with each finding; nothing, after a message, on failure. */
std::optional<CheckResult> check(QString const& operand,
    std::function<void(Diagnostic const&)> const& found, ProgressFunction const& progress)
{
    Diagnostics diagnostics;
    std::optional<CheckResult> result;
    if (auto const input = openRepeatable(operand, diagnostics)) {
        result =
            checkOutlines(*input, operand, CheckScope::Everything, found, diagnostics, progress);
    }
    report(diagnostics);
    if (result && result->isSvgPicture)
        reportSvgPicture(operand, Diagnostic::Severity::Warning);
    return result;
}

Outcome outcomeOf(int findings)
{
    return findings > 0 ? Outcome::Warned : Outcome::Done;
}

/** Prints a line for each finding, and one more. */
Outcome printText(QString const& operand, ProgressFunction const& progress)
{
    Output output(QStringLiteral("-"));
    if (!output.open())
        return Outcome::Failed;
    int findings = 0;
    auto const print = [&](Diagnostic const& finding) {
        output.device().write(toText(finding));
        ++findings;
    };
    auto const result = check(operand, print, progress);
    if (!result)
        return Outcome::Failed;
    output.device().write(
        QStringLiteral("%1: outlines: %2, warnings: %3\n")
            .arg(displayName(operand), QString::number(result->outlines), QString::number(findings))
            .toUtf8());
    Progress::clear();
    return output.commit() ? outcomeOf(findings) : Outcome::Failed;
}

Outcome writeFindings(QString const& operand, QIODevice& device, ProgressFunction const& progress)
{
    LongJson json("warnings", jsonOfFileIndentation);
    int findings = 0;
    auto const add = [&](Diagnostic const& finding) {
        json.add(toJson(finding));
        ++findings;
    };
    auto const result = check(operand, add, progress);
    if (!result)
        return Outcome::Failed;
    json.writeTo(device,
        {{QStringLiteral("file"), wellFormed(operand)},
            {QStringLiteral("outlines"), result->outlines}});
    return outcomeOf(findings);
}

Outcome runCheck(Command const& command, QStringList const& arguments)
{
    CommandLine line(command);
    if (auto const end = line.parse(arguments))
        return *end;
    line.fallBackOnStandardInput();
    if (line.operands().isEmpty())
        return line.misused(misuse(QStringLiteral("no file given")));

    if (line.isSet(QStringLiteral("json")))
        return tellOfEach(line, ReportForm::Json, writeFindings);
    return runBatch(line, {line.suffixes(), {}, {}, {}, [](BatchJob const& job) {
                               Progress progress({job.input});
                               progress.step();
                               return printText(job.input, progress.ofStep());
                           }});
}

constexpr CommandOption checkOptions[] = {
    {"", "json", {}, "Print JSON instead of lines."},
};

} // namespace

constexpr Command checkCommand {"check", "FILE...", fileHelp, {documentValue, documentValue},
    "Says what reading, saving and undo change in outlines.", runCheck,
    {checkOptions, batchOptions}};
