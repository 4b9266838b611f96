// SPDX-License-Identifier: MIT
#include "shelltext.h"

#include "tool.h"

namespace ShellText {

QStringList names(Command const& command)
{
    QStringList result {QString::fromUtf8(command.name)};
    if (command.alias)
        result << QString::fromUtf8(command.alias);
    return result;
}

QStringList spellings(CommandOption const& option)
{
    QStringList result;
    if (*option.letter != '\0')
        result << QLatin1Char('-') + QLatin1String(option.letter);
    return result << QStringLiteral("--") + QString::fromUtf8(option.name);
}

QString firstSentence(char const* text)
{
    QString sentence = QString::fromUtf8(text).section(QStringLiteral(". "), 0, 0);
    if (sentence.endsWith(QLatin1Char('.')))
        sentence.chop(1);
    return sentence;
}

QString quoted(QString const& text)
{
    QString const inner = QString(text).replace(QLatin1Char('\''), QLatin1String("'\\''"));
    return QLatin1Char('\'') + inner + QLatin1Char('\'');
}

QStringList valuedOptions(Command const& command)
{
    QStringList result;
    forEachOption(command, [&result](CommandOption const& option) {
        if (option.value.name)
            result << spellings(option);
    });
    return result;
}

QStringList commandNames()
{
    QStringList names;
    for (Command const* const command : commands)
        names << QString::fromUtf8(command->name);
    return names << QStringLiteral("help");
}

} // namespace ShellText
