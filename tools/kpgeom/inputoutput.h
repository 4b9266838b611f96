#ifndef INPUTOUTPUT_H
#define INPUTOUTPUT_H

#include "boundedxml_p.h"

#include <QByteArray>
#include <QString>

#include <optional>

class QFile;

/** The text without control characters: it stays on one line and does nothing to a terminal. */
QString printable(QString const& text);

/** The name of a file in messages, printable: "-" is standard input. */
QString displayName(QString const& file);

/**
 * False, after an error message, for a name with bytes that are no text: Qt has replaced them
 * and would take another file.
 */
bool isNameExact(QString const& file);

/** Prints one line on standard error. */
void printError(QString const& line);

/** Prints what is wrong with a file, as FILE:LINE:COLUMN: what if the place is known. */
void printError(QString const& file, BoundedXml::Error const& error);

/** Prints `text` on standard output; false if it cannot be written. */
bool printOut(QString const& text);

/** Opens the file for reading, "-" being standard input; false, after an error message, if not. */
bool openInput(QFile& input, QString const& file);

/**
 * All that the file holds, "-" being standard input. Nothing, after an error message, when it
 * cannot be read or is larger than the tool takes.
 */
std::optional<QByteArray> readInput(QString const& file);

/**
 * Writes the file whole or not at all, "-" being standard output. A device or a pipe is
 * written directly: it cannot be replaced. False, after an error message, on failure.
 */
bool writeOutput(QString const& file, QByteArray const& content);

#endif // INPUTOUTPUT_H
