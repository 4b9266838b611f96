// SPDX-License-Identifier: MIT
#ifndef COMMAND_H
#define COMMAND_H

#include <QString>
#include <QStringList>

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

/** A subcommand. */
struct Command
{
    char const* name;
    char const* syntax; ///< what follows the name
    char const* operandHelp; ///< what the first word of the syntax may be
    char const* summary; ///< one sentence
    /** @param arguments those after the subcommand's name */
    Outcome (*run)(Command const& command, QStringList const& arguments);
};

Outcome runInfo(Command const& command, QStringList const& arguments);
Outcome runRender(Command const& command, QStringList const& arguments);
Outcome runResize(Command const& command, QStringList const& arguments);
Outcome runConvert(Command const& command, QStringList const& arguments);
Outcome runFit(Command const& command, QStringList const& arguments);
Outcome runBind(Command const& command, QStringList const& arguments);
Outcome runSvg(Command const& command, QStringList const& arguments);
Outcome runCheck(Command const& command, QStringList const& arguments);
Outcome runDiff(Command const& command, QStringList const& arguments);
Outcome runNormalize(Command const& command, QStringList const& arguments);
Outcome runColour(Command const& command, QStringList const& arguments);
Outcome runUnits(Command const& command, QStringList const& arguments);
Outcome runPages(Command const& command, QStringList const& arguments);
Outcome runBlur(Command const& command, QStringList const& arguments);
Outcome runDigest(Command const& command, QStringList const& arguments);
Outcome runRecent(Command const& command, QStringList const& arguments);

#endif // COMMAND_H
