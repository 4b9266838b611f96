// SPDX-License-Identifier: MIT
#ifndef XMLSTREAMWRITER_H
#define XMLSTREAMWRITER_H

#include "othercompanions.h"

#include <QXmlStreamWriter>

/** A stream writer of Qt's with three ways to write an attribute. */
class XmlStreamWriter : public QXmlStreamWriter
{
public:
    OTHERCOMPANIONS_EXPORT explicit XmlStreamWriter(QIODevice* device);
    OTHERCOMPANIONS_EXPORT explicit XmlStreamWriter(QByteArray* bytes);
    OTHERCOMPANIONS_EXPORT explicit XmlStreamWriter(QString* text);

    OTHERCOMPANIONS_EXPORT void writeAttribute(QString const& name, QString value);
    OTHERCOMPANIONS_EXPORT void writeAttribute(QString const& name, char const* value);
    OTHERCOMPANIONS_EXPORT void writeAttribute(QString const& name, int value);
};

#endif
