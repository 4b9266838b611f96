// SPDX-License-Identifier: MIT
#include "tool.h"

#include "command.h"
#include "console.h"

namespace {

constexpr Command const* commands[] = {&infoCommand, &renderCommand, &resizeCommand,
    &convertCommand, &fitCommand, &bindCommand, &svgCommand, &checkCommand, &diffCommand,
    &normalizeCommand, &colourCommand, &unitsCommand, &pagesCommand, &blurCommand, &digestCommand,
    &recentCommand};

QString helpText()
{
    QString text = QStringLiteral(
        "Usage: kpgeom COMMAND ...\n\n"
        "Reads, draws, resizes, makes, checks and compares outlines; applies colour transforms;\n"
        "converts lengths; blurs pictures; digests files; shows and changes recent files.\n\n"
        "Commands:\n");
    for (Command const* const command : commands) {
        text += QStringLiteral("  %1  %2\n")
                    .arg(QLatin1String(command->name), -9)
                    .arg(QLatin1String(command->summary));
    }
    return text
        + QStringLiteral("\n\"kpgeom COMMAND --help\" explains a command. \"-\" is standard input "
                         "or output.\n"
                         "Exit status: 0 done, 1 bad input or a failed operation, 2 wrong usage, "
                         "3 done with warnings.\n"
                         "Of diff: 0 the same, 1 different, 2 anything else.\n");
}

} // namespace

Outcome runTool(QStringList const& arguments)
{
    QString const name = arguments.value(0);
    if (name == QLatin1String("--help") || name == QLatin1String("-h"))
        return printOut(helpText()) ? Outcome::Done : Outcome::Failed;
    if (name == QLatin1String("--version")) {
        return printOut(QStringLiteral("kpgeom " KPGEOM_VERSION "\n")) ? Outcome::Done
                                                                       : Outcome::Failed;
    }
    for (Command const* const command : commands) {
        if (name == QLatin1String(command->name))
            return command->run(*command, arguments.mid(1));
    }
    report({Diagnostic::Severity::Error, QString(), 0, 0,
        name.isEmpty()
            ? QStringLiteral("kpgeom: no command given (see kpgeom --help)")
            : QStringLiteral("kpgeom: unknown command '%1' (see kpgeom --help)").arg(name)});
    return Outcome::Misused;
}
