// SPDX-License-Identifier: MIT
#include "shellcompletion.h"
#include "shelltext.h"
#include "tool.h"

namespace {

/** What the script calls a kind. */
QString kindText(Value::Kind kind)
{
    switch (kind) {
    case Value::Kind::File:
        return QStringLiteral("file");
    case Value::Kind::Folder:
        return QStringLiteral("folder");
    case Value::Kind::Word:
        return QStringLiteral("word");
    case Value::Kind::Assignment:
        return QStringLiteral("assignment");
    case Value::Kind::Text:
        break;
    }
    return QStringLiteral("text");
}

QString bashWords(Value const& value)
{
    return ShellText::quoted(
        (kindText(value.kind) + QLatin1Char(' ') + QString::fromUtf8(value.words)).trimmed());
}

QString valueCase(CommandOption const& option)
{
    return QStringLiteral("                %1) value=%2 ;;\n")
        .arg(ShellText::spellings(option).join(QLatin1Char('|')), bashWords(option.value));
}

QString bashCase(Command const& command)
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
        .arg(ShellText::names(command).join(QLatin1Char('|')), options.join(QLatin1Char(' ')),
            ShellText::valuedOptions(command).join(QLatin1Char('|')),
            bashWords(command.operands[0]), bashWords(command.operands[1]), values);
}

} // namespace

void fillBashCompletion(Form& form, Diagnostics& diagnostics)
{
    QStringList options;
    for (CommandOption const& option : toolOptions)
        options << ShellText::spellings(option);
    QString cases;
    for (Command const* const command : commands)
        cases += bashCase(*command);
    form.fill(
        QStringLiteral("commands"), ShellText::commandNames().join(QLatin1Char(' ')), diagnostics);
    form.fill(QStringLiteral("options"), options.join(QLatin1Char(' ')), diagnostics);
    form.fill(QStringLiteral("cases"), cases, diagnostics);
}
