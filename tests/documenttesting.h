#ifndef DOCUMENTTESTING_H
#define DOCUMENTTESTING_H

#include "document/outlinedocument.h"
#include "outlinetesting.h"

/** What the tests of whole documents share: reading them, and random ones with all oddities. */
namespace DocumentTesting {

/** The document of this text; a test fails without one. */
inline OutlineDocument documentOf(QByteArray const& text, QString const& file = "a.xml")
{
    Diagnostics diagnostics;
    auto document = OutlineDocument::read(text, file, diagnostics, [](double) {});
    if (!document)
        qFatal("%s: %s", qPrintable(diagnostics.at(0).text), text.constData());
    return std::move(*document);
}

/** An outline around segments, in an element of this name. */
inline QByteArray shape(QByteArray const& name, QByteArray const& segments)
{
    return "<S Name=\"" + name + "\"><Geometry Closed=\"1\">" + segments + "</Geometry></S>";
}

/** A line to a point, bound to the width and the height of a box of 100 by 100. */
inline QByteArray line(double x, double y)
{
    return QString("<LineTo><X V=\"%1\" B=\"1\" P=\"%2\"/><Y V=\"%3\" B=\"2\" P=\"%4\"/></LineTo>")
        .arg(x)
        .arg(x / 100.0)
        .arg(y)
        .arg(y / 100.0)
        .toUtf8();
}

} // namespace DocumentTesting

#endif // DOCUMENTTESTING_H
