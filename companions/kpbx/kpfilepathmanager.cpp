#include "kpfilepathmanager.h"

#include "boundedxml_p.h"

#include <QDir>
#include <QDomDocument>
#include <QFile>
#include <QStandardPaths>

QString KpFilePathManager::configPath(QString const& fileName)
{
    QDir const directory(QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation));
    directory.mkpath(QStringLiteral("."));
    return directory.filePath(fileName);
}

bool KpFilePathManager::loadXmlFile(QDomDocument& document, QString const& path)
{
    document.clear();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    BoundedXml::Error error;
    QByteArray const text = BoundedXml::read(file, error, BoundedXml::configurationLimits);
    return error.isNull()
        && BoundedXml::parse(text, document, error, BoundedXml::configurationLimits);
}
