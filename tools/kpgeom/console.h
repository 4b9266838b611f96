#ifndef CONSOLE_H
#define CONSOLE_H

#include "common/diagnostic.h"
#include "common/repeatableinput.h"

#include <QByteArray>
#include <QString>

#include <memory>
#include <optional>

class OutputFile;
class QFile;
class QIODevice;
class Spool;

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

/**
 * Opens an operand to be read several times, "-" being standard input; nothing, with a diagnostic, if
 * that fails.
 */
std::optional<RepeatableInput> openRepeatable(QString const& operand, Diagnostics& diagnostics);

/** What goes to an operand piece by piece, and whole or not at all; "-" is standard output. */
class Output
{
public:
    explicit Output(QString const& operand);
    /** Unless it was committed, nothing was written. */
    ~Output();

    /** False, after a message, if it cannot be opened. To be called first. */
    bool open();
    /** Takes what is to be written. */
    QIODevice& device();
    /** Puts all in its place; false, after a message, if that fails. */
    bool commit();

private:
    Q_DISABLE_COPY(Output)

    bool print();

    QString const m_operand;
    std::unique_ptr<OutputFile> m_file; ///< null for standard output
    std::unique_ptr<Spool> m_waiting; ///< null for a file
};

/**
 * Writes the file whole or not at all, "-" being standard output; false, with a message, if not. A
 * signal that ends the process leaves no temporary file behind.
 */
bool writeOutput(QString const& operand, QByteArray const& content);

#endif // CONSOLE_H
