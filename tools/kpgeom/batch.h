// SPDX-License-Identifier: MIT
#ifndef BATCH_H
#define BATCH_H

#include "commandline.h"

#include <QVector>

#include <functional>

/** One file of those that a command works on. */
struct BatchJob
{
    QString input; ///< "-" is standard input
    QStringList
        outputs; ///< one for each size; one if there are no sizes, none if nothing is written
};

/** What a command does with each of its files. */
struct BatchTask
{
    QStringList suffixes; ///< of the files taken from folders, without a dot; any if empty
    QString output; ///< a file, a folder or a pattern; null if nothing is written
    QString suffix; ///< of outputs in a folder; that of the input if empty
    QVector<QSizeF> sizes; ///< for each of which there is an output; none for one without a size
    std::function<Outcome(BatchJob const&)> run; ///< called in any thread
    bool needsFonts = false; ///< or pixmaps
};

/** The options that all commands of many files have: --recursive, --jobs and --watch. */
extern CommandOption const batchOptions[4];

/** What the help on an output says of many files. */
inline constexpr char manyOutputsHelp[] =
    "For many files a folder, \"DIR/\", or a pattern with \"{name}\" or \"{path}\".";

/** Of these options one that is given although what is asked for is about no files; or nothing. */
std::optional<Diagnostic> batchOptionFault(CommandLine const& line, QString const& what);

/**
 * Whether the output of a command line names many files. One file and one folder are no batch unless
 * an option says so: a folder is no file to write.
 */
bool isBatch(CommandLine const& line, QString const& output);

/**
 * Does the task with every file that the operands stand for, several at a time. Output and messages
 * come in the order of the files; the outcome is the worst of all. With --watch it goes on with what
 * changes, and only returns if that cannot be done.
 */
Outcome runBatch(CommandLine const& line, BatchTask const& task);

/**
 * The files that the operands stand for, for a command that makes one thing of all. An outcome means
 * that the command ends here, after a message.
 */
std::optional<Outcome> readOperands(
    CommandLine const& line, QStringList const& suffixes, QStringList& operands);

/** How many files a command works on at a time, of options that readOperands() has taken. */
int jobLimit(CommandLine const& line);

#endif // BATCH_H
