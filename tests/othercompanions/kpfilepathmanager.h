// SPDX-License-Identifier: MIT
#ifndef KPFILEPATHMANAGER_H
#define KPFILEPATHMANAGER_H

#include "othercompanions.h"

#include <QString>

class QDomDocument;

/** The application's own files. */
class KpFilePathManager
{
public:
    /** Where the file `name` of the configuration is; its directory is made if it is missing. */
    OTHERCOMPANIONS_EXPORT static QString configPath(QString const& name);
    /** False, and an empty document, if there is no such file or it is not well-formed. */
    OTHERCOMPANIONS_EXPORT static bool loadXmlFile(QDomDocument& document, QString const& path);
};

#endif
