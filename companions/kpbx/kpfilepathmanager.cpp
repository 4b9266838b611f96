// SPDX-License-Identifier: MIT
#include "kpfilepathmanager.h"

#include "boundedxml_p.h"

#include <QDir>
#include <QDomDocument>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/**
 * Opens a regular file, or a link to one, for reading; false for anything else. It does not wait
 * for the other end of a pipe, and what was looked at is what is open.
 */
bool openRegular(QFile& file, QString const& path)
{
    if (!QFileInfo(path).isNativePath()) { // a resource of Qt's
        file.setFileName(path);
        return file.open(QIODevice::ReadOnly);
    }
    int const handle =
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
    if (handle < 0)
        return false;
    struct stat status
    {
    };
    if (::fstat(handle, &status) == 0 && S_ISREG(status.st_mode)
        && file.open(handle, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        return true;
    ::close(handle);
    return false;
}

} // namespace

QString KpFilePathManager::configPath(QString const& fileName)
{
    QDir const directory(QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation));
    directory.mkpath(QStringLiteral("."));
    return directory.filePath(fileName);
}

bool KpFilePathManager::loadXmlFile(QDomDocument& document, QString const& path)
{
    document.clear();
    QFile file;
    if (!openRegular(file, path))
        return false;
    BoundedXml::Error error;
    QByteArray const text = BoundedXml::read(file, error, BoundedXml::configurationLimits);
    return error.isNull()
        && BoundedXml::parse(text, document, error, BoundedXml::configurationLimits);
}
