#ifndef FILEREPLACEMENT_P_H
#define FILEREPLACEMENT_P_H

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

/** How a file is replaced in one step: whoever reads it finds the old one or the new one, whole. */
namespace FileReplacement {

/** Whether there is something in the file's place that a file must not replace: a device, say. */
inline bool isDeviceOrPipe(QFileInfo const& present)
{
    return present.exists() && !present.isFile();
}

/**
 * Opens the new file beside the present one, if there is one, whose permissions it takes over. With
 * the direct-write fallback of `file`, what is opened may be the present one itself.
 */
inline bool open(QSaveFile& file)
{
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text))
        return false;
    QFileInfo const present(file.fileName());
    // Qt copies what the user may do, too: for root a file that none may write would become one
    // that its owner may.
    constexpr QFile::Permissions ofUser = QFile::ReadUser | QFile::WriteUser | QFile::ExeUser;
    QFile::Permissions const wanted = present.permissions() & ~ofUser;
    // The present file has them already, and only its owner may set them.
    return !present.exists() || (file.permissions() & ~ofUser) == wanted
        || file.setPermissions(wanted);
}

/** Writes all of `content`; QSaveFile::commit() alone can miss a failed last flush. */
inline bool write(QFileDevice& device, QByteArray const& content)
{
    return device.write(content) == content.size() && device.flush()
        && device.error() == QFileDevice::NoError;
}

} // namespace FileReplacement

#endif // FILEREPLACEMENT_P_H
