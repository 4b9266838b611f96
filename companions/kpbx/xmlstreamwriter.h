// SPDX-License-Identifier: MIT
#ifndef XMLSTREAMWRITER_H
#define XMLSTREAMWRITER_H

#include "kpbx_export.h"

#include <QXmlStreamWriter>

class QByteArray;
class QIODevice;
class QString;

/**
 * A QXmlStreamWriter whose attributes take the three value types that documents use.
 *
 * Each overload writes the attribute on the start tag just opened, in the order of the
 * calls, its value escaped as XML requires.
 */
class XmlStreamWriter : public QXmlStreamWriter
{
public:
    /** Writes to a device. @param device open for writing; not owned, must outlive the writer */
    KPBX_EXPORT explicit XmlStreamWriter(QIODevice* device);
    /** Writes UTF-8. @param array appended to; not owned, must outlive the writer */
    KPBX_EXPORT explicit XmlStreamWriter(QByteArray* array);
    /** Writes text. @param string appended to; not owned, must outlive the writer */
    KPBX_EXPORT explicit XmlStreamWriter(QString* string);

    /** Writes the attribute `name` with the text `value`. */
    KPBX_EXPORT void writeAttribute(QString const& name, QString value);
    /** Likewise. @param value UTF-8 text; null writes an empty value */
    KPBX_EXPORT void writeAttribute(QString const& name, char const* value);
    /** Writes `value` in decimal. */
    KPBX_EXPORT void writeAttribute(QString const& name, int value);
};

#endif // XMLSTREAMWRITER_H
