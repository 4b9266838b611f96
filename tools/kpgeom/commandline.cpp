// SPDX-License-Identifier: MIT
#include "commandline.h"

#include "console.h"
#include "guiapplication.h"
#include "process/standardinput.h"
#include "suggestion.h"

CommandLine::CommandLine(Command const& command)
    : m_command(command)
{
    m_parser.setApplicationDescription(QString::fromUtf8(command.summary));
    forEachOption(command, [this](CommandOption const& option) { addOption(option); });
    if (*command.syntax != '\0') {
        m_parser.addPositionalArgument(
            QString::fromUtf8(command.syntax).section(QLatin1Char(' '), 0, 0),
            QString::fromUtf8(command.operandHelp));
    }
}

void CommandLine::addOption(CommandOption const& option)
{
    QStringList names {QString::fromUtf8(option.name)};
    if (*option.letter != '\0')
        names.prepend(QString::fromUtf8(option.letter));
    QString description = QString::fromUtf8(option.description);
    if (option.note)
        description += QLatin1Char(' ') + QString::fromUtf8(option.note);
    m_parser.addOption({names, description, QString::fromUtf8(option.value.name),
        QString::fromUtf8(option.value.byDefault)});
}

std::optional<Outcome> CommandLine::parse(QStringList const& arguments)
{
    bool const understood =
        m_parser.parse(QStringList(QString::fromUtf8(m_command.name)) + arguments);
    if (m_parser.isSet(QStringLiteral("help")))
        return printOut(helpText()) ? Outcome::Done : Outcome::Failed;
    if (!understood)
        return misused(misuse(parsingFault()));
    QStringList const given = m_parser.optionNames();
    setQuiet(given.contains(QLatin1String(quietOption.name))
        || given.contains(QLatin1String(quietOption.letter)));
    return std::nullopt;
}

void CommandLine::fallBackOnStandardInput()
{
    m_takesStandardInput = m_parser.positionalArguments().isEmpty() && hasStandardInput();
}

QStringList CommandLine::operands() const
{
    if (m_takesStandardInput)
        return {QStringLiteral("-")};
    QStringList result = m_parser.positionalArguments();
    for (QString& operand : result)
        operand = localFileName(operand);
    return result;
}

QStringList CommandLine::suffixes() const
{
    return wordsOf(m_command.operands[0]);
}

QString CommandLine::helpText() const
{
    // The parser asks it what the program is called.
    needGuiApplication();
    // The parser knows nothing of subcommands and would have the options before the name.
    QString const options = m_parser.helpText();
    return QStringLiteral("Usage: kpgeom %1 [options] %2")
               .arg(QString::fromUtf8(m_command.name), QString::fromUtf8(m_command.syntax))
               .trimmed()
        + options.mid(options.indexOf(QLatin1Char('\n')));
}

/** What the parser complains of; of an option that there is not, with the one that is likely meant. */
QString CommandLine::parsingFault() const
{
    QString fault = m_parser.errorText();
    QStringList const unknown = m_parser.unknownOptionNames();
    if (unknown.isEmpty())
        return fault;
    QStringList known;
    forEachOption(m_command,
        [&known](CommandOption const& option) { known << QString::fromUtf8(option.name); });
    QString const likely = likelyName(unknown.first(), known);
    return withSuggestion(fault, likely.isEmpty() ? QString() : QStringLiteral("--") + likely);
}

Outcome CommandLine::misused(Diagnostic const& fault) const
{
    HeldOutput const* const held = HeldOutput::ofThread();
    QString const input = held ? displayName(held->input()) + QStringLiteral(": ") : QString();
    report(misuse(QStringLiteral("kpgeom %1: %2 (see kpgeom %1 --help)")
                      .arg(QString::fromUtf8(m_command.name), input + fault.text)));
    return Outcome::Misused;
}

Diagnostic misuse(QString const& what)
{
    return {Diagnostic::Severity::Error, QString(), 0, 0, what};
}
