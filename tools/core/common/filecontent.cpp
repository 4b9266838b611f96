#include "common/filecontent.h"

#include "boundedxml_p.h"
#include "filereplacement_p.h"

#include <cerrno>

namespace {

/** Why an operation before which errno was 0 has failed: Qt does not always know. */
QString reasonOf(QFileDevice const& device)
{
    return errno == 0 ? device.errorString() : qt_error_string(errno);
}

/** Why the content could not be written into the place of the file; empty if it was. */
QString replacementFault(QString const& file, QByteArray const& content)
{
    QSaveFile output(file);
    errno = 0;
    if (!FileReplacement::open(output))
        return reasonOf(output);
    errno = 0;
    if (!FileReplacement::write(output, content)) {
        QString reason = reasonOf(output);
        output.cancelWriting();
        return reason;
    }
    errno = 0;
    return output.commit() ? QString() : reasonOf(output);
}

QString deviceFault(QString const& file, QByteArray const& content)
{
    QFile device(file);
    bool const isWritten = device.open(QIODevice::WriteOnly | QIODevice::Unbuffered)
        && FileReplacement::write(device, content);
    return isWritten ? QString() : device.errorString();
}

} // namespace

bool isNameExact(QString const& file, Diagnostics& diagnostics)
{
    // Where bytes were no text Qt has put this character.
    if (!file.contains(QChar(QChar::ReplacementCharacter)))
        return true;
    diagnostics.error(file, QStringLiteral("the name is not valid text"));
    return false;
}

bool openFile(QFile& device, QString const& file, Diagnostics& diagnostics)
{
    if (!isNameExact(file, diagnostics))
        return false;
    device.setFileName(file);
    if (device.open(QIODevice::ReadOnly))
        return true;
    diagnostics.error(file, device.errorString());
    return false;
}

std::optional<QByteArray> contentOf(
    QIODevice& device, QString const& file, Diagnostics& diagnostics)
{
    BoundedXml::Error error;
    QByteArray const content = BoundedXml::read(device, error);
    if (error.isNull())
        return content;
    diagnostics.error(file, error.message);
    return std::nullopt;
}

std::optional<QByteArray> readFile(QString const& file, Diagnostics& diagnostics)
{
    QFile device;
    if (!openFile(device, file, diagnostics))
        return std::nullopt;
    return contentOf(device, file, diagnostics);
}

bool writeFile(QString const& file, QByteArray const& content, Diagnostics& diagnostics)
{
    if (!isNameExact(file, diagnostics))
        return false;
    QFileInfo const target(file);
    QString fault;
    if (target.isDir())
        fault = QStringLiteral("is a directory");
    else if (FileReplacement::isDeviceOrPipe(target))
        fault = deviceFault(file, content);
    else
        fault = replacementFault(file, content);
    if (!fault.isEmpty())
        diagnostics.error(file, fault);
    return fault.isEmpty();
}
