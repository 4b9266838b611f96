#include "xmlstreamwriter.h"

#include <QString>

XmlStreamWriter::XmlStreamWriter(QIODevice* device)
    : QXmlStreamWriter(device)
{
}

XmlStreamWriter::XmlStreamWriter(QByteArray* array)
    : QXmlStreamWriter(array)
{
}

XmlStreamWriter::XmlStreamWriter(QString* string)
    : QXmlStreamWriter(string)
{
}

void XmlStreamWriter::writeAttribute(QString const& name, QString value)
{
    QXmlStreamWriter::writeAttribute(name, value);
}

void XmlStreamWriter::writeAttribute(QString const& name, char const* value)
{
    QXmlStreamWriter::writeAttribute(name, QString::fromUtf8(value));
}

void XmlStreamWriter::writeAttribute(QString const& name, int value)
{
    QXmlStreamWriter::writeAttribute(name, QString::number(value));
}
