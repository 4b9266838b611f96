#include "check/outlinecheck.h"
#include "commandline.h"
#include "console.h"
#include "documentinput.h"
#include "progress.h"

namespace {

QString toText(OutlineDocument const& document, Diagnostics const& findings)
{
    QString const file = displayName(document.file());
    QString text;
    for (Diagnostic const& finding : findings) {
        text += QStringLiteral("%1:%2:%3: %4\n")
                    .arg(file, QString::number(finding.line), QString::number(finding.column),
                        finding.text);
    }
    return text
        + QStringLiteral("%1: outlines: %2, warnings: %3\n")
              .arg(file, QString::number(document.outlines().size()),
                  QString::number(findings.size()));
}

} // namespace

Outcome runCheck(Command const& command, QStringList const& arguments)
{
    CommandLine line(command);
    if (auto const end = line.parse(arguments))
        return *end;
    if (line.operands().isEmpty())
        return line.misused(misuse(QStringLiteral("no file given")));

    Outcome outcome = Outcome::Done;
    Progress progress(line.operands());
    for (QString const& file : line.operands()) {
        progress.step();
        auto const document = loadDocument(file, progress.ofStep());
        if (!document) {
            outcome = Outcome::Failed;
            continue;
        }
        Diagnostics const findings = checkOutlines(*document);
        Progress::clear();
        if (!printOut(toText(*document, findings)))
            return Outcome::Failed;
        if (!findings.isEmpty())
            outcome = worse(outcome, Outcome::Warned);
    }
    return outcome;
}
