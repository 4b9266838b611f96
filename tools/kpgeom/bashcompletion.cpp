// SPDX-License-Identifier: MIT
#include "shellcompletion.h"
#include "shelltext.h"
#include "tool.h"

namespace {

QString valueText(Value const& value)
{
    static constexpr char const* const kinds[] = {"text", "file", "folder", "word", "assignment"};
    QString const kind = QString::fromUtf8(kinds[static_cast<int>(value.kind)]);
    return ShellText::quoted((kind + QLatin1Char(' ') + QString::fromUtf8(value.words)).trimmed());
}

QString valueCase(CommandOption const& option)
{
    return QStringLiteral("                %1) value=%2 ;;\n")
        .arg(ShellText::spellings(option).join(QLatin1Char('|')), valueText(option.value));
}

QString commandCase(Command const& command)
{
    QStringList options;
    QString values;
    forEachOption(command, [&](CommandOption const& option) {
        options << ShellText::spellings(option);
        if (option.value.name)
            values += valueCase(option);
    });
    if (!values.isEmpty())
        values = QStringLiteral("            case $prev in\n%1            esac\n").arg(values);
    return QStringLiteral("        %1)\n"
                          "            options='%2'\n"
                          "            valued='@(%3)' first=%4 others=%5\n"
                          "%6            ;;\n")
        .arg(QString::fromUtf8(command.name), options.join(QLatin1Char(' ')),
            ShellText::valuedOptions(command).join(QLatin1Char('|')),
            valueText(command.operands[0]), valueText(command.operands[1]), values);
}

} // namespace

QString bashCompletion(QString const& form)
{
    QStringList options;
    for (CommandOption const& option : toolOptions)
        options << ShellText::spellings(option);
    QString cases;
    for (Command const* const command : commands)
        cases += commandCase(*command);
    return ShellText::filled(form,
        {{QStringLiteral("commands"), ShellText::commandNames().join(QLatin1Char(' '))},
            {QStringLiteral("options"), options.join(QLatin1Char(' '))},
            {QStringLiteral("cases"), cases}});
}
