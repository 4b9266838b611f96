// SPDX-License-Identifier: MIT
#ifndef TERMINATION_H
#define TERMINATION_H

/**
 * From the first call on, a signal that asks the process to end (of the keyboard, of a terminal that
 * is gone, of kill) lets the files that are just being written be finished, so that no temporary
 * file stays, and then ends it. A shell shows 128 and the signal's number as the exit code. A signal
 * that is ignored stays ignored.
 */
void endTidily();

#endif // TERMINATION_H
