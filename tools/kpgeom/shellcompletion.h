// SPDX-License-Identifier: MIT
#ifndef SHELLCOMPLETION_H
#define SHELLCOMPLETION_H

#include <QString>

/**
 * A script by which bash completes the arguments of the tool, with the package bash-completion.
 *
 * @param form the script with names between at signs for what the tables of the commands give
 */
QString bashCompletion(QString const& form);

/** Likewise a function for zsh. */
QString zshCompletion(QString const& form);

/** Likewise a script for fish. */
QString fishCompletion(QString const& form);

#endif // SHELLCOMPLETION_H
