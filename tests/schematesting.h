// SPDX-License-Identifier: MIT
#ifndef SCHEMATESTING_H
#define SCHEMATESTING_H

#include "kpgeomtesting.h"

#include <QProcess>

/** What the tests of the schemas of documents share. */
namespace SchemaTesting {

/** A schema of schema/, by what xmllint makes of it. */
class Schema
{
public:
    explicit Schema(QString const& name)
        : m_path(KPGEOMETRY_SCHEMA "/" + name)
    {
    }

    /** Those of the files in the folder that are not valid, in the order given. */
    QStringList invalid(QString const& folder, QStringList const& files)
    {
        QProcess process;
        process.setWorkingDirectory(folder);
        process.start("xmllint", QStringList({"--nonet", "--noout", "--relaxng", m_path}) + files);
        if (!process.waitForFinished())
            qFatal("xmllint (libxml2-utils) is not installed");
        m_said = process.readAllStandardError();
        QStringList const lines = QString::fromUtf8(m_said).split('\n');
        QStringList result;
        for (QString const& file : files) {
            // It must say either, or the schema itself is at fault.
            if (lines.contains(file + " fails to validate"))
                result << file;
            else if (!lines.contains(file + " validates"))
                qFatal("%s", m_said.constData());
        }
        return result;
    }

    bool isValid(QByteArray const& document)
    {
        KpgeomTesting::Workplace const place;
        place.write("a.xml", document);
        return invalid(place.path(), {"a.xml"}).isEmpty();
    }

    /** What xmllint said last. */
    QByteArray said() const { return m_said; }

private:
    QString const m_path;
    QByteArray m_said;
};

} // namespace SchemaTesting

#endif // SCHEMATESTING_H
