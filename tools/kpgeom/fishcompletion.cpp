// SPDX-License-Identifier: MIT
#include "shellcompletion.h"
#include "shelltext.h"
#include "tool.h"

namespace {

/** How a value is completed; nothing if it cannot be. */
QString fishAction(Value const& value)
{
    QString words = QString::fromUtf8(value.words);
    switch (value.kind) {
    case Value::Kind::File:
        if (words.isEmpty())
            return QStringLiteral(" -F");
        words = QStringLiteral("(__kpgeom_files %1)").arg(words);
        break;
    case Value::Kind::Folder:
        words = QStringLiteral("(__fish_complete_directories)");
        break;
    case Value::Kind::Assignment:
        words = words.replace(QLatin1Char(' '), QLatin1String("= ")) + QLatin1Char('=');
        break;
    case Value::Kind::Word:
        break;
    case Value::Kind::Text:
        return QString();
    }
    return QStringLiteral(" -a ") + ShellText::quoted(words);
}

/** A rule that holds under a condition. */
QString rule(QString const& condition, QString const& what)
{
    return QStringLiteral("complete -c kpgeom -n %1%2\n").arg(ShellText::quoted(condition), what);
}

QString descriptionOf(char const* text)
{
    return QStringLiteral(" -d ") + ShellText::quoted(ShellText::firstSentence(text));
}

QString optionRule(QString const& condition, CommandOption const& option)
{
    QString what;
    if (*option.letter != '\0')
        what += QStringLiteral(" -s ") + QString::fromUtf8(option.letter);
    what += QStringLiteral(" -l ") + QString::fromUtf8(option.name);
    if (option.value.name)
        what += QStringLiteral(" -r") + fishAction(option.value);
    if (option.value.name && !what.endsWith(QLatin1String("-F")))
        what += QLatin1String(" -f");
    return rule(condition, what + descriptionOf(option.description));
}

QString commandRules(Command const& command)
{
    QString const condition =
        QStringLiteral("__kpgeom_is ") + ShellText::names(command).join(QLatin1Char(' '));
    QString rules;
    forEachOption(
        command, [&](CommandOption const& option) { rules += optionRule(condition, option); });
    auto const addOperands = [&](QString const& place, QString const& action) {
        QString const valued = ShellText::valuedOptions(command).join(QLatin1Char(' '));
        if (!action.isEmpty()) {
            rules += rule(QStringLiteral("%1; and __kpgeom_operand %2 %3")
                              .arg(condition, place, valued)
                              .trimmed(),
                action);
        }
    };
    addOperands(QStringLiteral("first"), fishAction(command.operands[0]));
    addOperands(QStringLiteral("further"), fishAction(command.operands[1]));
    return rules;
}

} // namespace

void fillFishCompletion(Form& form, Diagnostics& diagnostics)
{
    QString const bare = QStringLiteral("__kpgeom_bare");
    QString rules;
    auto const addName = [&](QString const& name, char const* summary) {
        rules += rule(bare, QStringLiteral(" -a ") + name + descriptionOf(summary));
    };
    for (Command const* const command : commands)
        addName(QString::fromUtf8(command->name), command->summary);
    addName(QStringLiteral("help"), "Explains a command.");
    for (CommandOption const& option : toolOptions)
        rules += optionRule(bare, option);
    rules += rule(QStringLiteral("__kpgeom_is help; and __kpgeom_operand first"),
        QStringLiteral(" -a ")
            + ShellText::quoted(ShellText::commandNames().join(QLatin1Char(' '))));
    for (Command const* const command : commands)
        rules += commandRules(*command);
    form.fill(QStringLiteral("rules"), rules, diagnostics);
}
