#include "check/outlinecheck.h"
#include "commandline.h"
#include "console.h"
#include "document/documentnormalizer.h"
#include "documentinput.h"
#include "progress.h"

Outcome runNormalize(Command const& command, QStringList const& arguments)
{
    CommandLine line(command);
    line.addOption({{QStringLiteral("o"), QStringLiteral("output")},
        QStringLiteral("Write the document to <OUT>, by default to standard output."),
        QStringLiteral("OUT"), QStringLiteral("-")});
    if (auto const end = line.parse(arguments))
        return *end;
    if (line.operands().size() != 1)
        return line.misused(misuse(QStringLiteral("exactly one file is needed")));
    QString const output = line.value(QStringLiteral("output"));
    if (output.isEmpty())
        return line.misused(misuse(QStringLiteral("the output file has no name (-o)")));

    QString const operand = line.operands().first();
    Progress progress({operand});
    progress.step();
    auto const document = loadDocument(operand, progress.ofStep());
    if (!document)
        return Outcome::Failed;
    Diagnostics diagnostics = checkReading(*document);
    auto const text = normalized(*document, diagnostics);
    report(diagnostics);
    Progress::clear();
    if (!text || !writeOutput(output, *text))
        return Outcome::Failed;
    return diagnostics.isEmpty() && !document->isSvgPicture() ? Outcome::Done : Outcome::Warned;
}
