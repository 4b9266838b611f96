// SPDX-License-Identifier: MIT
#ifndef STANDARDINPUT_H
#define STANDARDINPUT_H

/**
 * Whether somebody has put something on standard input for this process: a file, a pipe or a socket
 * that is not at its end. Waits until that is known, and takes nothing from it. Terminals and other
 * devices, /dev/null among them, and a closed descriptor are nothing.
 */
bool hasStandardInput();

#endif // STANDARDINPUT_H
