// SPDX-License-Identifier: MIT
#include "console.h"

#include "common/filecontent.h"
#include "common/opening.h"
#include "common/spool.h"
#include "common/text.h"
#include "filereplacement_p.h"
#include "orderedjobs.h"
#include "process/messagelog.h"
#include "process/termination.h"
#include "progress.h"

#include <cerrno>
#include <cstdio>
#include <unistd.h>

namespace {

QString const standardStream = QStringLiteral("-");

bool quiet = false; ///< set before there is another thread

bool writeStandardOutput(QByteArray const& content)
{
    if (HeldOutput* const held = HeldOutput::ofThread()) {
        held->add({HeldOutput::Stream::Output, content});
        return true;
    }
    QFile output;
    errno = 0;
    if (output.open(stdout, QIODevice::WriteOnly) && FileReplacement::write(output, content))
        return true;
    bool const hasReaderGone = errno == EPIPE;
    if (!hasReaderGone) {
        report({Diagnostic::Severity::Error, QStringLiteral("<stdout>"), 0, 0,
            QStringLiteral("cannot be written")});
    }
    return false;
}

/** By its device, too: a file that standard output goes to may hold more. */
bool isStandardOutput(QString const& operand)
{
    return operand == standardStream || Opening::ownDescriptor(operand) == STDOUT_FILENO;
}

QString lineOf(Diagnostic const& diagnostic)
{
    // A file may have been given with an empty name.
    if (diagnostic.file.isNull())
        return diagnostic.text;
    QString place = displayName(diagnostic.file);
    if (diagnostic.line > 0)
        place += QStringLiteral(":%1:%2").arg(diagnostic.line).arg(diagnostic.column);
    return QStringLiteral("%1: %2").arg(place, diagnostic.text);
}

} // namespace

thread_local HeldOutput* HeldOutput::s_ofThread = nullptr;

HeldOutput::HeldOutput(QString input)
    : m_input(std::move(input))
{
    s_ofThread = this;
}

HeldOutput::~HeldOutput()
{
    s_ofThread = nullptr;
}

bool printHeld(HeldOutput::Pieces const& pieces)
{
    bool isPrinted = true;
    for (HeldOutput::Piece const& piece : pieces) {
        if (piece.stream == HeldOutput::Stream::Error)
            printError(piece.text);
        else
            isPrinted = writeStandardOutput(piece.text) && isPrinted;
    }
    return isPrinted;
}

QString displayName(QString const& operand)
{
    if (operand.isEmpty())
        return QStringLiteral("\"\"");
    return operand == standardStream ? QStringLiteral("<stdin>") : printable(operand);
}

void setQuiet(bool isQuiet)
{
    quiet = isQuiet;
}

bool isQuiet()
{
    return quiet;
}

void report(Diagnostic const& diagnostic)
{
    if (quiet && diagnostic.severity == Diagnostic::Severity::Warning)
        return;
    QByteArray const text = printable(lineOf(diagnostic)).toUtf8() + '\n';
    if (HeldOutput* const held = HeldOutput::ofThread()) {
        held->add({HeldOutput::Stream::Error, text});
        return;
    }
    Progress::clear();
    printError(text);
}

void report(Diagnostics const& diagnostics)
{
    for (Diagnostic const& diagnostic : diagnostics)
        report(diagnostic);
}

bool printOut(QString const& text)
{
    return printOut(text.toUtf8());
}

bool printOut(QByteArray const& bytes)
{
    return writeStandardOutput(bytes);
}

bool openInput(QFile& input, QString const& operand, Diagnostics& diagnostics)
{
    if (operand != standardStream)
        return openFile(input, operand, diagnostics);
    if (input.open(stdin, QIODevice::ReadOnly))
        return true;
    diagnostics.error(operand, input.errorString());
    return false;
}

std::optional<QByteArray> readInput(QString const& operand, Diagnostics& diagnostics)
{
    QFile input;
    if (!openInput(input, operand, diagnostics))
        return std::nullopt;
    return contentOf(input, operand, diagnostics);
}

std::optional<RepeatableInput> openRepeatable(QString const& operand, Diagnostics& diagnostics)
{
    endTidily(); // a pipe may go to a temporary file
    auto input = std::make_unique<QFile>();
    if (!openInput(*input, operand, diagnostics))
        return std::nullopt;
    return repeatableInput(std::move(input));
}

Output::Output(QString const& operand)
    : m_operand(operand)
{
}

Output::~Output() = default;

bool Output::open()
{
    Diagnostics diagnostics;
    endTidily();
    if (isStandardOutput(m_operand))
        m_waiting = std::make_unique<Spool>();
    else
        m_file = OutputFile::open(m_operand, diagnostics);
    report(diagnostics);
    return diagnostics.isEmpty();
}

QIODevice& Output::device()
{
    if (m_file)
        return m_file->device();
    return *m_waiting;
}

bool Output::commit()
{
    if (m_waiting)
        return print();
    Diagnostics diagnostics;
    bool isWritten = false;
    {
        WaitingJob const waiting;
        isWritten = m_file->commit(diagnostics);
    }
    report(diagnostics);
    return isWritten;
}

bool Output::print()
{
    constexpr qint64 manyBytes = 1 << 20;
    QIODevice& content = m_waiting->content();
    if (m_waiting->hasFailed()) {
        report({Diagnostic::Severity::Error, QStringLiteral("<stdout>"), 0, 0,
            m_waiting->errorString()});
        return false;
    }
    while (!content.atEnd()) {
        if (!writeStandardOutput(content.read(manyBytes)))
            return false;
    }
    return true;
}

bool writeOutput(QString const& operand, QByteArray const& content)
{
    if (isStandardOutput(operand))
        return writeStandardOutput(content);
    endTidily();
    // Of a large one the work before it takes memory that others could not have.
    constexpr int largeContent = 1 << 20;
    std::optional<WaitingJob> waiting;
    if (content.size() < largeContent)
        waiting.emplace();
    Diagnostics diagnostics;
    bool const isWritten = writeFile(operand, content, diagnostics);
    waiting.reset();
    report(diagnostics);
    return isWritten;
}
