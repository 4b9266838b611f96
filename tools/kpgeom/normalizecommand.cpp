// SPDX-License-Identifier: MIT
#include "batch.h"
#include "check/outlinecheck.h"
#include "commandline.h"
#include "console.h"
#include "document/documentnormalizer.h"
#include "documentinput.h"
#include "progress.h"

namespace {

Outcome normalize(QString const& operand, QString const& target)
{
    Progress progress({operand});
    progress.step();
    Diagnostics diagnostics;
    Output output(target);
    auto const input = openRepeatable(operand, diagnostics);
    std::optional<CheckResult> result;
    if (input) {
        result = checkOutlines(
            *input, operand, CheckScope::Reading,
            [&diagnostics](Diagnostic const& finding) { diagnostics.add(finding); }, diagnostics,
            progress.ofStep());
    }
    if (result && result->isSvgPicture)
        reportSvgPicture(operand, Diagnostic::Severity::Warning);
    bool const isMade =
        result && output.open() && normalizeDocument(*input, operand, output.device(), diagnostics);
    report(diagnostics);
    Progress::clear();
    if (!isMade || !output.commit())
        return Outcome::Failed;
    return diagnostics.isEmpty() && !result->isSvgPicture ? Outcome::Done : Outcome::Warned;
}

Outcome runNormalize(Command const& command, QStringList const& arguments)
{
    CommandLine line(command);
    if (auto const end = line.parse(arguments))
        return *end;
    line.fallBackOnStandardInput();
    QString const output = line.file(QStringLiteral("output"));
    int const count = line.operands().size();
    if (count == 0 || (count > 1 && !isBatch(line, output)))
        return line.misused(misuse(QStringLiteral("exactly one file is needed")));
    if (output.isEmpty())
        return line.misused(misuse(QStringLiteral("the output file has no name (-o)")));

    return runBatch(line,
        {line.suffixes(), output, QStringLiteral("xml"), {},
            [](BatchJob const& job) { return normalize(job.input, job.outputs.first()); }});
}

constexpr CommandOption normalizeOptions[] = {
    {"o", "output", {"OUT", Value::Kind::File, "", "-"},
        "Write the document to <OUT>, by default to standard output.", manyOutputsHelp},
};

} // namespace

constexpr Command normalizeCommand {"normalize", "FILE...", fileHelp,
    {documentValue, documentValue}, "Spells a document in the one way that line diffs can compare.",
    runNormalize, {normalizeOptions, batchOptions}};
