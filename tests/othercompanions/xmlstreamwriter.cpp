// SPDX-License-Identifier: MIT
#include "xmlstreamwriter.h"

XmlStreamWriter::XmlStreamWriter(QIODevice* device)
    : QXmlStreamWriter(device)
{
}

XmlStreamWriter::XmlStreamWriter(QByteArray* bytes)
    : QXmlStreamWriter(bytes)
{
}

XmlStreamWriter::XmlStreamWriter(QString* text)
    : QXmlStreamWriter(text)
{
}

void XmlStreamWriter::writeAttribute(QString const& name, QString value)
{
    QXmlStreamWriter::writeAttribute(QXmlStreamAttribute(name, value));
}

void XmlStreamWriter::writeAttribute(QString const& name, char const* value)
{
    QXmlStreamAttributes attributes;
    attributes.append(name, QString::fromUtf8(value));
    writeAttributes(attributes);
}

void XmlStreamWriter::writeAttribute(QString const& name, int value)
{
    writeAttribute(name, QStringLiteral("%1").arg(value));
}
