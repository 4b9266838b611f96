// SPDX-License-Identifier: MIT
#ifndef TOOL_H
#define TOOL_H

#include "command.h"

#include <QStringList>

/** All commands, in the order of the help. */
extern Command const* const commands[16];

/** The options that stand in the place of a command. */
extern CommandOption const toolOptions[2];

/**
 * Runs the command that the first argument names with those behind it; also the help and the version
 * of the tool. Without any argument it prints the help as an error.
 *
 * @param arguments without the name of the program
 */
Outcome runTool(QStringList const& arguments);

#endif // TOOL_H
