// SPDX-License-Identifier: MIT
#ifndef DOCUMENTTESTING_H
#define DOCUMENTTESTING_H

#include "check/outlinecheck.h"
#include "document/outlinedocument.h"
#include "outlinetesting.h"

/** What the tests of whole documents share: reading them, and random ones with all oddities. */
namespace DocumentTesting {

/** The document of this text; a test fails without one. */
inline OutlineDocument documentOf(QByteArray const& text, QString const& file = "a.xml")
{
    Diagnostics diagnostics;
    auto document = OutlineDocument::read(text, file, diagnostics);
    if (!document)
        qFatal("%s: %s", qPrintable(diagnostics.at(0).text), text.constData());
    return std::move(*document);
}

/** Calls `visit` with each outline of the document of this text, its markup included. */
template <class Visit> void forEachOutline(QByteArray const& text, Visit const& visit)
{
    auto const device = repeatableInput(text)();
    OutlineReader reader(*device, "a.xml", OutlineReader::Detail::Markup);
    for (Outlines group = reader.next(); !group.empty(); group = reader.next()) {
        for (Outline const& outline : group)
            visit(outline);
    }
}

/** What a check of the document of this text finds. */
inline Diagnostics findingsIn(QByteArray const& text, CheckScope scope)
{
    Diagnostics findings;
    checkOutlines(
        repeatableInput(text), "a.xml", scope,
        [&findings](Diagnostic const& finding) { findings.add(finding); }, findings);
    return findings;
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

/** One of several texts. */
inline QByteArray oneOf(QRandomGenerator& random, QList<QByteArray> const& texts)
{
    return texts.at(random.bounded(texts.size()));
}

/**
 * Random documents that hold whatever readers pass over, take otherwise than it looks, or
 * differ in.
 */
class OddDocuments
{
public:
    explicit OddDocuments(QRandomGenerator& random)
        : m_random(random)
    {
    }

    /** The next one. */
    QByteArray next()
    {
        return foreign() + "<D xmlns:p=\"urn:p\">" + content(3) + "</D>" + foreign();
    }

private:
    bool chance(int oneIn) { return m_random.bounded(oneIn) == 0; }

    QByteArray oneOf(QList<QByteArray> const& texts)
    {
        return DocumentTesting::oneOf(m_random, texts);
    }

    /** What may stand outside the root as well. */
    QByteArray foreign()
    {
        return chance(4) ? oneOf({"<!-- one\n  two -->", "<?go on ?>", "\n", "<!---->"}) : "";
    }

    QByteArray text()
    {
        return chance(4) ? oneOf({"text", " a  b\n", "&amp;", "&#13;", "\n\t", " ",
                   "<![CDATA[ <&> ]]>", "\u00a0"})
                         : "";
    }

    QByteArray attributes()
    {
        return chance(4) ? oneOf({" z=\"1\" a=\"2\"", " p:V=\"3\"", " Name=\" n&#10;m \"",
                   " v='\"'", " xml:space=\"preserve\"", " FillRule=\"evenodd\""})
                         : "";
    }

    QByteArray content(int depth)
    {
        QByteArray xml;
        for (int i = m_random.bounded(4); i > 0; --i) {
            xml += text() + foreign();
            if (chance(2))
                xml += geometry(depth);
            else if (depth > 0)
                xml += "<E" + attributes() + ">" + content(depth - 1) + "</E>";
            else
                xml += "<E" + attributes() + "/>";
        }
        return xml + text();
    }

    QByteArray geometry(int depth)
    {
        QByteArray xml =
            "<Geometry" + flag("Closed") + flag("NoFill") + flag("NoLine") + attributes() + ">";
        for (int i = m_random.bounded(5); i > 0; --i) {
            xml += text() + foreign();
            QByteArray const name =
                oneOf({"MoveTo", "LineTo", "LineTo", "CurveTo", "Ellipse", "Arc", "p:LineTo"});
            xml += chance(12) && depth > 0 ? "<N>" + content(depth - 1) + "</N>" : segment(name);
        }
        return xml + text() + "</Geometry>";
    }

    QByteArray flag(QByteArray const& name)
    {
        return chance(3)
            ? ' ' + name + "=\"" + oneOf({"0", "1", "true", "TRUE", "no", "", " 1"}) + '"'
            : "";
    }

    QByteArray segment(QByteArray const& name)
    {
        QByteArray xml = '<' + name + attributes() + '>';
        for (char const* const letter : {"X", "Y", "A", "B", "C", "D"}) {
            xml += text() + foreign();
            xml += chance(8) ? "" : coordinate(letter);
            xml += chance(8) ? coordinate(oneOf({"X", "Y", "A", "B", "C", "D", "p:X", "Z"})) : "";
        }
        return xml + "</" + name + '>';
    }

    QByteArray coordinate(QByteArray const& letter)
    {
        QByteArray xml = '<' + letter + attributes();
        if (!chance(8))
            xml += " V=\"" + number() + '"';
        if (!chance(4))
            xml += " B=\""
                + oneOf({"0", "1", "2", "3", "4", "5", "6", "7", "8", "-1", "70000", "", "x"})
                + '"';
        if (!chance(4))
            xml += " P=\"" + number() + '"';
        return xml + '>' + text() + foreign() + "</" + letter + '>';
    }

    QByteArray number()
    {
        return chance(4)
            ? oneOf({"", "x", "nan", "-inf", "1e999", " 5 ", "0x10", "-0", "1e-320"})
            : QByteArray::number(Testing::awkwardReal(m_random), 'g', 1 + m_random.bounded(17));
    }

    QRandomGenerator& m_random;
};

} // namespace DocumentTesting

#endif // DOCUMENTTESTING_H
