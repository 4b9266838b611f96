#include "inputoutput.h"

#include "filereplacement_p.h"
#include "progress.h"

#include <cerrno>
#include <cstdio>

namespace {

QString const standardStream = QStringLiteral("-");

bool writeStandardOutput(QByteArray const& content)
{
    QFile output;
    return output.open(stdout, QIODevice::WriteOnly) && FileReplacement::write(output, content);
}

bool fail(QString const& file, QString const& what)
{
    printError(QStringLiteral("%1: %2").arg(displayName(file), what));
    return false;
}

/** Why an operation before which errno was 0 has failed: Qt does not always know. */
QString reasonOf(QFileDevice const& device)
{
    return errno == 0 ? device.errorString() : qt_error_string(errno);
}

} // namespace

QString printable(QString const& text)
{
    QString result = text;
    for (QChar& character : result) {
        if (character.category() == QChar::Other_Control)
            character = QChar::ReplacementCharacter;
    }
    return result;
}

QString displayName(QString const& file)
{
    return file == standardStream ? QStringLiteral("<stdin>") : printable(file);
}

bool isNameExact(QString const& file)
{
    return !file.contains(QChar(QChar::ReplacementCharacter))
        || fail(file, QStringLiteral("the name is not valid text"));
}

void printError(QString const& line)
{
    Progress::clear();
    QByteArray const text = printable(line).toUtf8() + '\n';
    std::fwrite(text.constData(), 1, static_cast<std::size_t>(text.size()), stderr);
}

void printError(QString const& file, BoundedXml::Error const& error)
{
    QString place = displayName(file);
    if (error.line > 0)
        place += QStringLiteral(":%1:%2").arg(error.line).arg(error.column);
    printError(QStringLiteral("%1: %2").arg(place, error.message.simplified()));
}

bool printOut(QString const& text)
{
    return writeOutput(standardStream, text.toUtf8());
}

bool openInput(QFile& input, QString const& file)
{
    bool isOpen = false;
    if (file == standardStream) {
        isOpen = input.open(stdin, QIODevice::ReadOnly);
    } else {
        if (!isNameExact(file))
            return false;
        input.setFileName(file);
        isOpen = input.open(QIODevice::ReadOnly);
    }
    return isOpen || fail(file, input.errorString());
}

std::optional<QByteArray> readInput(QString const& file)
{
    QFile input;
    if (!openInput(input, file))
        return std::nullopt;
    BoundedXml::Error error;
    QByteArray const content = BoundedXml::read(input, error);
    if (!error.isNull()) {
        printError(file, error);
        return std::nullopt;
    }
    return content;
}

bool writeOutput(QString const& file, QByteArray const& content)
{
    // By its device, too: a file that standard output goes to may hold more.
    if (file == standardStream || file == QLatin1String("/dev/stdout")) {
        return writeStandardOutput(content)
            || fail(QStringLiteral("<stdout>"), QStringLiteral("cannot be written"));
    }
    if (!isNameExact(file))
        return false;
    QFileInfo const target(file);
    if (target.isDir())
        return fail(file, QStringLiteral("is a directory"));
    if (FileReplacement::isDeviceOrPipe(target)) {
        QFile device(file);
        return (device.open(QIODevice::WriteOnly | QIODevice::Unbuffered)
                   && FileReplacement::write(device, content))
            || fail(file, device.errorString());
    }
    QSaveFile output(file);
    errno = 0;
    if (!FileReplacement::open(output))
        return fail(file, reasonOf(output));
    errno = 0;
    if (!FileReplacement::write(output, content)) {
        QString const reason = reasonOf(output);
        output.cancelWriting();
        return fail(file, reason);
    }
    errno = 0;
    return output.commit() || fail(file, reasonOf(output));
}
