// SPDX-License-Identifier: MIT
#ifndef FILEREPORTS_H
#define FILEREPORTS_H

#include "commandline.h"
#include "document/outlinereader.h"

#include <QIODevice>

#include <functional>

/**
 * Writes what is told of one file; JSON with its indentation and without a line feed at its end. If
 * it fails, what was written is dropped.
 */
using TellOfFile = std::function<Outcome(
    QString const& operand, QIODevice& device, ProgressFunction const& progress)>;

/** Of the JSON of one file, which is an item of an array. */
constexpr int jsonOfFileIndentation = 4;

/** How what is told of several files stands together: as paragraphs, or in a JSON array. */
enum class ReportForm { Text, Json };

/**
 * Tells of each file that the operands stand for, several at a time, and prints that in their order:
 * all of it or, when it cannot be, nothing. The outcome is the worst of all.
 */
Outcome tellOfEach(CommandLine const& line, ReportForm form, TellOfFile const& tell);

#endif // FILEREPORTS_H
