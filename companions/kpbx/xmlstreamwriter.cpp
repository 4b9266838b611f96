// SPDX-License-Identifier: MIT
#include "xmlstreamwriter.h"

#include <QByteArray>
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
    // Qt drops a byte order mark at the start of a text: of two, one stays.
    static char const mark[] = "\xef\xbb\xbf";
    bool const isMarked = qstrncmp(value, mark, qstrlen(mark)) == 0;
    QXmlStreamWriter::writeAttribute(
        name, isMarked ? QString::fromUtf8(QByteArray(mark) + value) : QString::fromUtf8(value));
}

void XmlStreamWriter::writeAttribute(QString const& name, int value)
{
    QXmlStreamWriter::writeAttribute(name, QString::number(value));
}
