// SPDX-License-Identifier: MIT
#ifndef KPFILEPATHMANAGER_H
#define KPFILEPATHMANAGER_H

#include "kpbx_export.h"

class QDomDocument;
class QString;

/** Where the application keeps its own files, and how it reads them. */
class KpFilePathManager
{
public:
    /**
     * The full path of the file `fileName` in the application's configuration directory
     * (QStandardPaths::AppConfigLocation). The directory is created when it is missing;
     * the file is not. The same name always gives the same path.
     */
    KPBX_EXPORT static QString configPath(QString const& fileName);

    /**
     * Reads the XML file at `path` into `document`.
     *
     * @return false, with `document` empty, when the file is missing, is no regular file nor a
     * link to one (a pipe is not waited for), cannot be read, is not well-formed, or is out of
     * bounds: more than 64 MiB, more than 750,000 nodes (tags, attributes, texts) or more than it
     * has bytes (100,000 in a short file), more than 1,000 nested elements, an entity that expands
     * to more than 4,096 characters, or more than 10,000 references beside declared entities; and,
     * since they would take more than linear time, more than 1,000 attributes of an element or in
     * the document type, 1,000 references within an entity, 1,000 to parameter entities, or 1,000
     * namespaces at one place. Attributes that only the document type gives may have 16,777,216
     * characters in all, or as many as the file has bytes.
     *
     * Control characters that XML 1.0 has no place for are read as they are, in the texts and
     * attributes of a UTF-8 file, for the application has always written them so. Each counts as
     * three bytes. NUL is refused.
     */
    KPBX_EXPORT static bool loadXmlFile(QDomDocument& document, QString const& path);
};

#endif // KPFILEPATHMANAGER_H
