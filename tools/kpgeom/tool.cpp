// SPDX-License-Identifier: MIT
#include "tool.h"

#include "command.h"
#include "console.h"
#include "process/messagelog.h"
#include "suggestion.h"
#include "unitutil.h"

#include <algorithm>
#include <iterator>

constexpr Command const* commands[16] = {&infoCommand, &renderCommand, &resizeCommand,
    &convertCommand, &fitCommand, &bindCommand, &svgCommand, &checkCommand, &diffCommand,
    &normalizeCommand, &colourCommand, &unitsCommand, &pagesCommand, &blurCommand, &digestCommand,
    &recentCommand};

namespace {

constexpr CommandOption versionOption {"V", "version", {}, "Print the version and exit."};

} // namespace

constexpr CommandOption toolOptions[2] = {helpOption, versionOption};

namespace {

/** By its name or its alias. */
bool isNamed(Command const& command, QString const& name)
{
    return name == QLatin1String(command.name)
        || (command.alias && name == QLatin1String(command.alias));
}

QString summaryOf(Command const& command)
{
    QString const summary = QString::fromUtf8(command.summary);
    return command.alias
        ? QStringLiteral("%1 Also \"%2\".").arg(summary, QString::fromUtf8(command.alias))
        : summary;
}

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
                    .arg(summaryOf(*command));
    }
    text += QLatin1String("\nOptions:\n");
    for (CommandOption const& option : toolOptions) {
        text += QStringLiteral("  -%1, --%2  %3\n")
                    .arg(QLatin1String(option.letter))
                    .arg(QLatin1String(option.name), -7)
                    .arg(QLatin1String(option.description));
    }
    return text
        + QStringLiteral(
            "\n\"kpgeom help COMMAND\" or \"kpgeom COMMAND --help\" explains a command.\n"
            "\"-\" is standard input or output.\n"
            "Exit status: 0 done, 1 bad input or a failed operation, 2 wrong usage, "
            "3 done with warnings.\n"
            "Of diff: 0 the same, 1 different, 2 anything else.\n");
}

Outcome print(QString const& text)
{
    return printOut(text) ? Outcome::Done : Outcome::Failed;
}

Outcome misused(QString const& fault)
{
    report({Diagnostic::Severity::Error, QString(), 0, 0,
        QStringLiteral("kpgeom: %1 (see kpgeom --help)").arg(fault)});
    return Outcome::Misused;
}

QString const helpName = QStringLiteral("help");

bool isOption(QString const& argument, CommandOption const& option)
{
    return argument == QLatin1Char('-') + QLatin1String(option.letter)
        || argument == QLatin1String("--") + QLatin1String(option.name);
}

/** All that may stand in the place of a command. */
QStringList knownNames()
{
    QStringList names {helpName};
    for (Command const* const command : commands) {
        names << QString::fromUtf8(command->name);
        if (command->alias)
            names << QString::fromUtf8(command->alias);
    }
    for (CommandOption const& option : toolOptions)
        names << QStringLiteral("--") + QString::fromUtf8(option.name);
    return names;
}

/** Null, after a message, if there is none of this name. */
Command const* findCommand(QString const& name)
{
    auto const* const found = std::find_if(std::begin(commands), std::end(commands),
        [&name](Command const* command) { return isNamed(*command, name); });
    if (found != std::end(commands))
        return *found;
    misused(withSuggestion(QStringLiteral("unknown command '%1'").arg(name), name, knownNames()));
    return nullptr;
}

/** @param arguments those behind "help" */
Outcome runHelp(QStringList const& arguments)
{
    if (arguments.size() > 1)
        return misused(QStringLiteral("help explains one command"));
    if (arguments.isEmpty() || arguments.first() == helpName
        || isOption(arguments.first(), helpOption))
        return print(helpText());
    Command const* const command = findCommand(arguments.first());
    return command ? command->run(*command, {QStringLiteral("--help")}) : Outcome::Misused;
}

} // namespace

Outcome runTool(QStringList const& arguments)
{
    QString const name = arguments.value(0);
    if (name.isEmpty()) {
        misused(QStringLiteral("no command given"));
        if (arguments.isEmpty())
            printError('\n' + helpText().toUtf8());
        return Outcome::Misused;
    }
    if (isOption(name, helpOption))
        return print(helpText());
    if (isOption(name, versionOption))
        return print(QStringLiteral("kpgeom " KPGEOM_VERSION "\n"));
    if (name == helpName)
        return runHelp(arguments.mid(1));
    // Lengths are those of this screen until a command says otherwise.
    UnitUtil::initScreen(96.0, 1.0, QSize(0, 0));
    Command const* const command = findCommand(name);
    return command ? command->run(*command, arguments.mid(1)) : Outcome::Misused;
}
