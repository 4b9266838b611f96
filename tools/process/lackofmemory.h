// SPDX-License-Identifier: MIT
#ifndef LACKOFMEMORY_H
#define LACKOFMEMORY_H

/**
 * From now on a lack of memory that nobody copes with ends the process with one line on standard error
 * and the exit code 1, in whatever thread and in whatever function it comes.
 *
 * @param line what is printed, with its line feed; a literal, for there is no memory to keep it
 */
void tellLackOfMemory(char const* line);

#endif // LACKOFMEMORY_H
