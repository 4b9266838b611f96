// SPDX-License-Identifier: MIT
#include "kpfilepathmanager.h"
#include "kpversion.h"
#include "outlinesamples.h"
#include "quarkmanager.h"
#include "sequence.h"
#include "themes.h"
#include "xmlsources.h"

#include <QBuffer>
#include <QTemporaryDir>

namespace {

using Vectors::Fields;
using Vectors::Theme;

void addQuarks(Theme& theme)
{
    for (int quark = -1; quark <= 63; ++quark)
        theme.add("QuarkManager::quarkToString(int)", {{"quark", quark}},
            {{"result", QuarkManager::quarkToString(quark)}});
    for (QString const name : {"px", "mm", "cm", "m", "km", "in", "ft", "ft-in", "yd", "mi", "pt",
             "pc", "dd", "cc", "MoveTo", "LineTo", "CurveTo", "Ellipse", "X", "Y", "A", "B", "C",
             "D", "PX", "x", "moveto", "", " px", "Geometry"})
        theme.add("QuarkManager::quarkFromString(QString const&)", {{"name", name}},
            {{"result", QuarkManager::quarkFromString(name)}});
    theme.add(
        "KpVersion::s_fontFamilyList", {}, {{"value", KpVersion::s_fontFamilyList.toVector()}});
    theme.add("KpVersion::s_langID", {}, {{"value", KpVersion::s_langID}});
}

template <class Sink> void writeNumber(Sink& sink)
{
    XmlStreamWriter writer(&sink);
    writer.writeStartElement("X");
    writer.writeAttribute("V", 5);
    writer.writeEndElement();
}

void addWriters(Theme& theme)
{
    QString string;
    writeNumber(string);
    theme.add("XmlStreamWriter::XmlStreamWriter(QString*)", {}, {{"xml", string}});
    QByteArray array;
    writeNumber(array);
    theme.add("XmlStreamWriter::XmlStreamWriter(QByteArray*)", {}, {{"xml", QString(array)}});
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    writeNumber(buffer);
    theme.add(
        "XmlStreamWriter::XmlStreamWriter(QIODevice*)", {}, {{"xml", QString(buffer.data())}});

    for (char const* const text : {"", "1", "<&\">'", "\xC3\xA4", " two  blanks "}) {
        QString asString;
        XmlStreamWriter stringWriter(&asString);
        stringWriter.writeEmptyElement("X");
        stringWriter.writeAttribute("V", QString(text));
        stringWriter.writeEndDocument();
        theme.add("XmlStreamWriter::writeAttribute(QString const&, QString)",
            {{"name", "V"}, {"value", text}}, {{"xml", asString}});
        QString asBytes;
        XmlStreamWriter bytesWriter(&asBytes);
        bytesWriter.writeEmptyElement("X");
        bytesWriter.writeAttribute("V", text);
        bytesWriter.writeEndDocument();
        theme.add("XmlStreamWriter::writeAttribute(QString const&, char const*)",
            {{"name", "V"}, {"value", text}}, {{"xml", asBytes}});
    }
    for (int const number : {0, -1, 2147483647, -2147483647 - 1}) {
        QString text;
        XmlStreamWriter writer(&text);
        writer.writeEmptyElement("X");
        writer.writeAttribute("V", number);
        writer.writeEndDocument();
        theme.add("XmlStreamWriter::writeAttribute(QString const&, int)",
            {{"name", "V"}, {"value", number}}, {{"xml", text}});
    }
}

void addFiles(Theme& theme)
{
    QTemporaryDir const folder;
    QString const path = folder.filePath("document.xml");
    for (QByteArray const xml : {"<a/>", "<a b=\"1\"><c/><d e=\"&lt;\"/></a>", "<a>", "",
             "<a/><b/>", "<a b=\"1\" b=\"2\"/>",
             "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<a b=\"\xC3\xA4\"/>"}) {
        QFile file(path);
        if (file.open(QIODevice::WriteOnly))
            file.write(xml);
        file.close();
        QDomDocument document;
        bool const result = KpFilePathManager::loadXmlFile(document, path);
        theme.add("KpFilePathManager::loadXmlFile(QDomDocument&, QString const&)",
            {{"content", QString::fromUtf8(xml)}},
            {{"result", result}, {"root", document.documentElement()}});
    }
}

void addPaths(Theme& theme)
{
    Vectors::Sequence sequence(80);
    QVector<QRectF> rects {{0, 0, 0, 0}, {-10, -5, 20, 10}, {1, 2, -30, 40}};
    for (int i = 0; i < 4; ++i)
        rects.append({sequence.real(-50, 50), sequence.real(-50, 50), sequence.real(0, 90),
            sequence.real(0, 90)});
    for (QRectF const& rect : qAsConst(rects))
        theme.add("KpPath::ellipse(QRectF)", {{"rect", rect}},
            {{"elements", KpPath {KpPath::ellipse(rect)}}});

    for (Vectors::Outline const& outline : Vectors::sampleOutlines()) {
        KpPath path;
        outline->closed = false;
        outline->toPath(path);
        theme.add("KpPath::isClockWise()", {{"path", path}}, {{"result", path.isClockWise()}});
        KpPath closed = path;
        closed.closeSubpath();
        theme.add("KpPath::closeSubpath()", {{"path", path}}, {{"path", closed}});
    }

    // What Qt does with its own paths is Qt's: only steps from which it leaves nothing out.
    KpPath path;
    for (int const type : {0, 1, 2, 3, 3, 1, 7, 3, 4})
        path.append({path.count() * 2.0, path.count() * path.count() * 0.5, 0, 0, type});
    theme.add(
        "KpPath::toPainterPath() const", {{"path", path}}, {{"painterPath", path.toPainterPath()}});
    QPainterPath painterPath(QPointF(1, 2));
    painterPath.lineTo(3, 4);
    painterPath.cubicTo(5, 6, 7, 8, 9, 10);
    theme.add("KpPath::fromPainterPath(QPainterPath const&)", {{"painterPath", painterPath}},
        {{"path", KpPath::fromPainterPath(painterPath)}});
}

} // namespace

void Vectors::addCompanions(Theme& theme)
{
    addQuarks(theme);
    addWriters(theme);
    addFiles(theme);
    addPaths(theme);
}
