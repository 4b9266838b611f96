#ifndef CONSOLE_H
#define CONSOLE_H

#include "common/diagnostic.h"

#include <QByteArray>
#include <QString>

#include <optional>

class QFile;

/** The name of an operand in messages, printable: "-" is standard input. */
QString displayName(QString const& operand);

/**
 * Prints on standard error, a line each: FILE:LINE:COLUMN: what, as far as these are known.
 *
 * @param diagnostics their files named as operands are
 */
void report(Diagnostics const& diagnostics);
void report(Diagnostic const& diagnostic);

/**
 * Prints `text` on standard output. False if it cannot be written: after a message, unless whoever
 * reads it has gone, which is how readers say that they have enough.
 */
bool printOut(QString const& text);

/** Opens an operand for reading, "-" being standard input; false, with a diagnostic, if not. */
bool openInput(QFile& input, QString const& operand, Diagnostics& diagnostics);

/**
 * All that an operand holds, "-" being standard input. Nothing, with a diagnostic, when it cannot
 * be read or is larger than the tool takes.
 */
std::optional<QByteArray> readInput(QString const& operand, Diagnostics& diagnostics);

/** Writes the file whole or not at all, "-" being standard output; false, with a message, if not. */
bool writeOutput(QString const& operand, QByteArray const& content);

#endif // CONSOLE_H
