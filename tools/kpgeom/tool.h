// SPDX-License-Identifier: MIT
#ifndef TOOL_H
#define TOOL_H

#include "command.h"

#include <QStringList>

/**
 * Runs the command that the first argument names with those behind it; also the help and the version
 * of the tool.
 *
 * @param arguments without the name of the program
 */
Outcome runTool(QStringList const& arguments);

#endif // TOOL_H
