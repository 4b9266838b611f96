#include "console.h"

#include "common/filecontent.h"
#include "common/text.h"
#include "filereplacement_p.h"
#include "progress.h"

#include <cerrno>
#include <cstdio>

namespace {

QString const standardStream = QStringLiteral("-");

bool writeStandardOutput(QByteArray const& content)
{
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

QString displayName(QString const& operand)
{
    return operand == standardStream ? QStringLiteral("<stdin>") : printable(operand);
}

void report(Diagnostic const& diagnostic)
{
    Progress::clear();
    QByteArray const text = printable(lineOf(diagnostic)).toUtf8() + '\n';
    std::fwrite(text.constData(), 1, static_cast<std::size_t>(text.size()), stderr);
}

void report(Diagnostics const& diagnostics)
{
    for (Diagnostic const& diagnostic : diagnostics)
        report(diagnostic);
}

bool printOut(QString const& text)
{
    return writeStandardOutput(text.toUtf8());
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

bool writeOutput(QString const& operand, QByteArray const& content)
{
    // By its device, too: a file that standard output goes to may hold more.
    if (operand == standardStream || operand == QLatin1String("/dev/stdout"))
        return writeStandardOutput(content);
    Diagnostics diagnostics;
    bool const isWritten = writeFile(operand, content, diagnostics);
    report(diagnostics);
    return isWritten;
}
