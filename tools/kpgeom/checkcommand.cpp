// SPDX-License-Identifier: MIT
#include "batch.h"
#include "check/outlinecheck.h"
#include "commandline.h"
#include "console.h"
#include "documentinput.h"
#include "progress.h"

namespace {

QByteArray toText(Diagnostic const& finding)
{
    return QStringLiteral("%1:%2:%3: %4\n")
        .arg(displayName(finding.file), QString::number(finding.line),
            QString::number(finding.column), finding.text)
        .toUtf8();
}

/** Checks a file and prints what was found. */
Outcome check(QString const& operand, ProgressFunction const& progress)
{
    Diagnostics diagnostics;
    Output output(QStringLiteral("-"));
    std::optional<CheckResult> result;
    int findings = 0;
    auto const input = openRepeatable(operand, diagnostics);
    if (input && output.open()) {
        auto const print = [&](Diagnostic const& finding) {
            output.device().write(toText(finding));
            ++findings;
        };
        result =
            checkOutlines(*input, operand, CheckScope::Everything, print, diagnostics, progress);
    }
    report(diagnostics);
    if (!result)
        return Outcome::Failed;
    if (result->isSvgPicture)
        reportSvgPicture(operand, Diagnostic::Severity::Warning);
    output.device().write(
        QStringLiteral("%1: outlines: %2, warnings: %3\n")
            .arg(displayName(operand), QString::number(result->outlines), QString::number(findings))
            .toUtf8());
    Progress::clear();
    if (!output.commit())
        return Outcome::Failed;
    return findings > 0 ? Outcome::Warned : Outcome::Done;
}

Outcome runCheck(Command const& command, QStringList const& arguments)
{
    CommandLine line(command);
    if (auto const end = line.parse(arguments))
        return *end;
    line.fallBackOnStandardInput();
    if (line.operands().isEmpty())
        return line.misused(misuse(QStringLiteral("no file given")));

    return runBatch(line, {line.suffixes(), {}, {}, {}, [](BatchJob const& job) {
                               Progress progress({job.input});
                               progress.step();
                               return check(job.input, progress.ofStep());
                           }});
}

} // namespace

constexpr Command checkCommand {"check", "FILE...", fileHelp, {documentValue, documentValue},
    "Says what reading, saving and undo change in outlines.", runCheck, {batchOptions}};
