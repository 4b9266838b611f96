// SPDX-License-Identifier: MIT
#ifndef COMMAND_H
#define COMMAND_H

#include <QString>
#include <QStringList>

#include <cstddef>

/** How a command ends; the numbers are the exit codes of the tool. */
enum class Outcome {
    Done = 0,
    Failed = 1, ///< bad input or a failed operation
    Misused = 2, ///< wrong usage
    Warned = 3 ///< done, with warnings
};

/** The worse of two outcomes: a failure outweighs misuse, that warnings, and these success. */
inline Outcome worse(Outcome left, Outcome right)
{
    for (Outcome const outcome : {Outcome::Failed, Outcome::Misused, Outcome::Warned}) {
        if (left == outcome || right == outcome)
            return outcome;
    }
    return Outcome::Done;
}

/** What an operand or the value of an option is, as far as a shell can complete it. */
struct Value
{
    enum class Kind {
        Text, ///< anything
        File, ///< one of the suffixes in `words`, or any if there are none
        Folder,
        Word, ///< one of `words`
        Assignment ///< one of `words`, an equals sign and more
    };
    char const* name = nullptr; ///< in help; null for none
    Kind kind = Kind::Text;
    char const* words = ""; ///< separated by blanks
    char const* byDefault = nullptr; ///< null for none
};

/** Its words. */
inline QStringList wordsOf(Value const& value)
{
    return QString::fromUtf8(value.words).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

/** An option, which takes a value if the value has a name. */
struct CommandOption
{
    char const* letter; ///< empty for none
    char const* name; ///< without dashes
    Value value;
    char const* description; ///< in help: sentences
    char const* note = nullptr; ///< a further sentence, which several options share
};

/** The rows of a table of options. */
class Options
{
public:
    constexpr Options() = default;
    template <std::size_t count>
    constexpr Options(CommandOption const (&table)[count])
        : m_first(table)
        , m_count(count)
    {
    }

    constexpr CommandOption const* begin() const { return m_first; }
    constexpr CommandOption const* end() const { return m_first + m_count; }

private:
    CommandOption const* m_first = nullptr;
    std::size_t m_count = 0;
};

/** What every command takes beside its own options. */
inline constexpr CommandOption helpOption {"h", "help", {}, "Print this help and exit."};

/** What commands take that print notes. */
inline constexpr CommandOption quietOption {"q", "quiet", {},
    "Print no notes and show no progress: errors only. The exit status is the same."};

/** A subcommand: all of it that help, parsing and shells need to know. */
struct Command
{
    char const* name;
    char const* syntax; ///< what follows the name
    char const* operandHelp; ///< what the first word of the syntax may be
    Value operands[2]; ///< the first one, and those that follow
    char const* summary; ///< one sentence
    /** @param arguments those after the subcommand's name */
    Outcome (*run)(Command const& command, QStringList const& arguments);
    Options options[2]; ///< in the order of the help: its own, and those that it shares
    char const* alias = nullptr; ///< another name of it; null for none
};

/** Calls `visit` with each option of the command, in the order of its help. */
template <class Visitor> void forEachOption(Command const& command, Visitor visit)
{
    visit(helpOption);
    for (Options const& options : command.options) {
        for (CommandOption const& option : options)
            visit(option);
    }
}

/** What is said of operands that are files. */
inline constexpr char fileHelp[] = "\"-\" is standard input.";

inline constexpr Value fileValue {"FILE", Value::Kind::File};
/** A document of outlines. */
inline constexpr Value documentValue {"FILE", Value::Kind::File, "xml"};
/** A document of outlines, or a picture that becomes one. */
inline constexpr Value drawingValue {"DRAWING", Value::Kind::File, "xml svg svgz"};

extern Command const infoCommand;
extern Command const renderCommand;
extern Command const resizeCommand;
extern Command const convertCommand;
extern Command const fitCommand;
extern Command const bindCommand;
extern Command const svgCommand;
extern Command const checkCommand;
extern Command const diffCommand;
extern Command const normalizeCommand;
extern Command const colourCommand;
extern Command const unitsCommand;
extern Command const pagesCommand;
extern Command const blurCommand;
extern Command const digestCommand;
extern Command const recentCommand;

#endif // COMMAND_H
