// SPDX-License-Identifier: MIT
#ifndef MANUALPAGE_H
#define MANUALPAGE_H

#include "form.h"

/**
 * Makes the manual of a form, in which a line "@--NAME@" stands for the heading of an option that is
 * explained below it, in the section of its command or in that of options that commands share.
 *
 * A command or an option that has no place, or not the one in the order of the help, is an error.
 */
void fillManual(Form& form, Diagnostics& diagnostics);

#endif // MANUALPAGE_H
