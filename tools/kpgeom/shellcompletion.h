// SPDX-License-Identifier: MIT
#ifndef SHELLCOMPLETION_H
#define SHELLCOMPLETION_H

#include "form.h"

/** Fills a script by which bash completes the arguments of the tool, with its bash-completion. */
void fillBashCompletion(Form& form, Diagnostics& diagnostics);

/** Likewise a function for zsh. */
void fillZshCompletion(Form& form, Diagnostics& diagnostics);

/** Likewise a script for fish. */
void fillFishCompletion(Form& form, Diagnostics& diagnostics);

#endif // SHELLCOMPLETION_H
