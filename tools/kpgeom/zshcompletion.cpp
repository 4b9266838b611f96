// SPDX-License-Identifier: MIT
#include "shellcompletion.h"
#include "shelltext.h"
#include "tool.h"

namespace {

QString escaped(QString text, QString const& characters)
{
    text.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
    for (QChar const character : characters)
        text.replace(character, QLatin1Char('\\') + QString(character));
    return text;
}

QString fileAction(QString const& suffixes)
{
    if (suffixes.isEmpty())
        return QStringLiteral("_files");
    QStringList const all = suffixes.split(QLatin1Char(' '));
    // A single one in parentheses would be something else.
    return (all.size() > 1 ? QStringLiteral("_files -g \"*.(%1)\"")
                           : QStringLiteral("_files -g \"*.%1\""))
        .arg(all.join(QLatin1Char('|')));
}

/** How a value is completed. */
QString zshAction(Value const& value)
{
    QString const words = QString::fromUtf8(value.words);
    switch (value.kind) {
    case Value::Kind::File:
        return fileAction(words);
    case Value::Kind::Folder:
        return QStringLiteral("_files -/");
    case Value::Kind::Word:
        return QStringLiteral("(%1)").arg(words);
    case Value::Kind::Assignment:
        return QStringLiteral("{compadd -S = -- %1}").arg(words);
    case Value::Kind::Text:
        break;
    }
    return QStringLiteral(" ");
}

QString zshValue(Value const& value)
{
    return QStringLiteral(":%1:%2").arg(QString::fromUtf8(value.name), zshAction(value));
}

/** An argument of _arguments, in a line. */
QString argumentLine(QString const& indentation, QString const& argument)
{
    return indentation + argument + QLatin1String(" \\\n");
}

QString optionLine(QString const& indentation, CommandOption const& option)
{
    QStringList spellings = ShellText::spellings(option);
    QString rest = QLatin1Char('[')
        + escaped(ShellText::firstSentence(option.description), QStringLiteral("[]"))
        + QLatin1Char(']');
    QString before = QLatin1Char('(') + spellings.join(QLatin1Char(' ')) + QLatin1Char(')');
    if (option.value.name) {
        // Given again, the last one counts, or all do.
        before = QStringLiteral("*");
        spellings.last() += QLatin1Char('=');
        if (spellings.size() > 1)
            spellings.first() += QLatin1Char('+');
        rest += zshValue(option.value);
    }
    QString const names = spellings.size() > 1
        ? QLatin1Char('{') + spellings.join(QLatin1Char(',')) + QLatin1Char('}')
        : spellings.first();
    return argumentLine(indentation, ShellText::quoted(before) + names + ShellText::quoted(rest));
}

QString operandLines(QString const& indentation, Command const& command)
{
    Value const& first = command.operands[0];
    Value const& others = command.operands[1];
    QString lines;
    if (first.name)
        lines += argumentLine(indentation, ShellText::quoted(QLatin1Char('1') + zshValue(first)));
    if (others.name)
        lines += argumentLine(indentation, ShellText::quoted(QLatin1Char('*') + zshValue(others)));
    return lines;
}

QString zshCase(Command const& command)
{
    QString const indentation(16, QLatin1Char(' '));
    QString arguments;
    forEachOption(command,
        [&](CommandOption const& option) { arguments += optionLine(indentation, option); });
    arguments += operandLines(indentation, command);
    arguments.chop(3);
    return QStringLiteral("        %1)\n"
                          "            _arguments -s -S \\\n"
                          "%2\n"
                          "            ;;\n")
        .arg(ShellText::names(command).join(QLatin1Char('|')), arguments);
}

} // namespace

void fillZshCompletion(Form& form, Diagnostics& diagnostics)
{
    QString names;
    auto const addName = [&names](QString const& name, QString const& summary) {
        names += QStringLiteral("        %1\n")
                     .arg(ShellText::quoted(name + QLatin1Char(':') + summary));
    };
    QString cases;
    for (Command const* const command : commands) {
        addName(QString::fromUtf8(command->name), ShellText::firstSentence(command->summary));
        cases += zshCase(*command);
    }
    addName(QStringLiteral("help"), QStringLiteral("Explains a command"));
    QString options;
    for (CommandOption const& option : toolOptions)
        options += optionLine(QString(8, QLatin1Char(' ')), option);
    form.fill(QStringLiteral("commands"), names, diagnostics);
    form.fill(QStringLiteral("options"), options, diagnostics);
    form.fill(QStringLiteral("cases"), cases, diagnostics);
}
