// SPDX-License-Identifier: MIT
#ifndef CONSOLE_H
#define CONSOLE_H

#include "common/diagnostic.h"
#include "common/repeatableinput.h"

#include <QByteArray>
#include <QString>

#include <memory>
#include <optional>
#include <vector>

class OutputFile;
class QFile;
class QIODevice;
class Spool;

/**
 * While it lives, what its thread prints is held back: the output of one file of many, which has to
 * wait for its turn. There is at most one in a thread.
 */
class HeldOutput
{
public:
    /** Where something is to be printed. */
    enum class Stream { Output, Error };

    /** What is to be printed at once. */
    struct Piece
    {
        Stream stream;
        QByteArray text;
    };

    using Pieces = std::vector<Piece>;

    /** @param input the file that messages are about unless they say so themselves */
    explicit HeldOutput(QString input);
    ~HeldOutput();

    /** That of the calling thread, or null. */
    static HeldOutput* ofThread() { return s_ofThread; }

    QString const& input() const { return m_input; }
    void add(Piece const& piece) { m_pieces.push_back(piece); }
    Pieces const& pieces() const { return m_pieces; }

private:
    Q_DISABLE_COPY(HeldOutput)

    QString const m_input;
    Pieces m_pieces;
    static thread_local HeldOutput* s_ofThread;
};

/** Prints what was held; false if standard output cannot be written, as printOut(). */
bool printHeld(HeldOutput::Pieces const& pieces);

/** The name of an operand in messages, printable: "-" is standard input, none is "". */
QString displayName(QString const& operand);

/** Whether from here on warnings are not reported and no progress is shown; errors are reported. */
void setQuiet(bool isQuiet);
bool isQuiet();

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
/** Prints bytes, as the names of files are. */
bool printOut(QByteArray const& bytes);

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
