// SPDX-License-Identifier: MIT
#ifndef SHELLTEXT_H
#define SHELLTEXT_H

#include "command.h"

/** What the scripts for all shells have in common. */
namespace ShellText {

/** The names by which the command is called: its own first. */
QStringList names(Command const& command);

/** The option as it is typed: with its letter first, if it has one. */
QStringList spellings(CommandOption const& option);

/** Of a text in sentences the first one, without its full stop. */
QString firstSentence(char const* text);

/** A word of the shells, whatever it holds. */
QString quoted(QString const& text);

/** The options of the command that take a value, as they are typed. */
QStringList valuedOptions(Command const& command);

/** All that may stand in the place of a command and is no option. */
QStringList commandNames();

} // namespace ShellText

#endif // SHELLTEXT_H
