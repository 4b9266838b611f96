// SPDX-License-Identifier: MIT
#include "kppathsegcurveto.h"
#include "kppathsegellipse.h"
#include "kppathseglineto.h"
#include "kppathsegmoveto.h"
#include "outlinesamples.h"
#include "themes.h"
#include "xmlsources.h"

#include <limits>

namespace {

using Vectors::exactCopy;
using Vectors::Fields;
using Vectors::Outline;
using Vectors::Theme;

constexpr char const* ofTree = "parse(QDomElement const&, unsigned int)";
constexpr char const* ofStream = "parse(QXmlStreamReader&, unsigned int)";

/** Reads `xml` with the stream reader of `object`, and tells where it stopped. */
template <class Object> Fields readStream(char const* name, Object& object, QString const& xml)
{
    QXmlStreamReader reader(xml);
    reader.readNextStartElement();
    bool const result = object.parse(reader, 0U);
    return {{name, object}, {"result", result}, {"stoppedAt", reader.tokenString()},
        {"stoppedAtName", reader.name().toString()}};
}

void addTreeReading(Theme& theme, QString const& kind, KpPathSeg& before, QString const& xml)
{
    auto const after = exactCopy(before);
    bool const result = after->parse(Vectors::treeOf(xml).documentElement(), 0U);
    theme.add("KpPathSeg" + kind + "::" + ofTree, {{"segment", before}, {"xml", xml}},
        {{"segment", *after}, {"result", result}});
}

void addStreamReading(Theme& theme, QString const& kind, KpPathSeg& before, QString const& xml)
{
    auto const after = exactCopy(before);
    theme.add("KpPathSeg" + kind + "::" + ofStream, {{"segment", before}, {"xml", xml}},
        readStream("segment", *after, xml));
}

/** What stands within a segment's element. */
QStringList contents()
{
    return {"", R"(<X V="12.5" B="3" P="0.25"/><Y V="1e3"/>)",
        R"(<Y V="7"/> <!-- X --> <X V="8"/>)",
        R"(<X V="1" P="0.5"/><X V="2"/><Y V="abc" B="70000"/>)",
        R"(<X V="" B="" P=""/><Y V=" 7 " B="-1" P="-.5"/>)",
        R"(text<x V="1"/><E V="2"><X V="3"/></E><Y V="4" B="2x"/>)",
        R"(<A V="1" B="5" P="2"/><B V="3" B="6"/><C V="4" P="0.125"/><D V="5" B="0"/><X V="6"/>)",
        R"(<D V="-1"/><C V="-2"/><B V="-3"/><A V="-4"/><Y V="-5"/><X V="-6" B="4"/>)",
        "<X V=\"\u22125\" B=\"\u22126\"/><Y V=\"\u0663\" B=\"+3\" P=\"5.E+1\"/>",
        "<X V=\"-0\" P=\"-0.00\"/>", R"(<X><Y V="9"/></X><Y V="inf" P="nan"/>)",
        R"(<LineTo><X V="1"/></LineTo><X V="0.1"/><Y V="1234567.125" B="32768"/>)",
        R"(<X V="12345678901234567890" P="1e-320"/><Y V="0.30000000000000004" P="1.7976931348623157e308"/>)"};
}

void addSegmentReadings(Theme& theme)
{
    KpPathSegMoveTo move(QPointF(1, 2), nullptr);
    KpPathSegLineTo line(QPointF(1, 2), nullptr);
    KpPathSegCurveTo curve(QPointF(1, 2), QPointF(3, 4), QPointF(5, 6), nullptr);
    KpPathSegEllipse ellipse(QPointF(1, 2), 3, 4, nullptr);
    struct Kind
    {
        QString name;
        KpPathSeg& segment;
    };
    for (Kind const& kind :
        {Kind {"MoveTo", move}, {"LineTo", line}, {"CurveTo", curve}, {"Ellipse", ellipse}}) {
        addTreeReading(theme, kind.name, kind.segment, ""); // the null element
        for (QString const& content : contents()) {
            QString const xml = QString("<%1>%2</%1>").arg(kind.name, content);
            addTreeReading(theme, kind.name, kind.segment, xml);
            addStreamReading(theme, kind.name, kind.segment, xml);
        }
    }
}

void addSegmentWriting(Theme& theme, KpPathSeg& segment)
{
    static char const* const names[] = {"", "", "MoveTo", "LineTo", "CurveTo", "Ellipse"};
    QString const owner = QString("KpPathSeg%1::").arg(names[segment.type]);
    QString text;
    XmlStreamWriter writer(&text);
    segment.saveTo(writer);
    theme.add(owner + "saveTo(XmlStreamWriter&)", {{"segment", segment}}, {{"xml", text}});
    QDomDocument document;
    QDomElement geometry = document.createElement("Geometry");
    segment.saveTo(geometry);
    theme.add(owner + "saveTo(QDomElement&)", {{"segment", segment}}, {{"geometry", geometry}});
}

/** Numbers whose texts are hard: ties, exponents, signs, rules that are none. */
Outline oddNumbers()
{
    double const infinite = std::numeric_limits<double>::infinity();
    auto outline = std::make_unique<KpPathSegList>();
    double const numbers[] = {0.1 + 0.2, 1.0 / 3, 123.456789, 1234567, 0.00001234, 100, 123456.5,
        123455.5, -0.0, -0.5, 999999.5, 999999.4, 0.0001, 0.00009999995, 1e300, -1e-300, infinite,
        -infinite, std::numeric_limits<double>::quiet_NaN(), 2.0000005, 9.9999996, 0.09999996,
        1.5e15, -123456.5, 5e-324};
    qint16 rule = -3;
    for (double const number : numbers) {
        qint16 const other = rule == 5 ? qint16(-32768) : rule;
        outline->addTail(new KpPathSegLineTo(
            KpPoint(KpReal(rule, -number, number), KpReal(other, number / 3, number * 3)),
            nullptr));
        rule = rule == 8 ? qint16(-3) : qint16(rule + 1);
    }
    return outline;
}

void addOutlineWriting(Theme& theme, KpPathSegList& outline)
{
    QString text;
    XmlStreamWriter writer(&text);
    outline.saveTo(writer);
    theme.add("KpPathSegList::saveTo(XmlStreamWriter&)", {{"outline", outline}}, {{"xml", text}});
    QDomDocument document;
    QDomElement parent = document.createElement("Shape");
    outline.saveTo(parent);
    theme.add("KpPathSegList::saveTo(QDomElement&)", {{"outline", outline}}, {{"parent", parent}});
}

QStringList outlineSources()
{
    return {"<Geometry/>", R"(<Geometry Closed="0"/>)",
        R"(<Geometry Closed="1" NoFill="1" NoLine="1"/>)", R"(<Geometry Closed="true"/>)",
        R"(<Geometry Closed="tRUE" NoLine="yes" NoFill="2"/>)", R"(<Geometry Closed=" 1"/>)",
        R"(<Geometry Closed="" NoFill="" NoLine=""/>)", R"(<Geometry other="1"/>)",
        R"(<Geometry><LineTo><X V="5"/></LineTo></Geometry>)",
        R"(<Geometry Closed="1"><MoveTo><X V="1" B="0"/><Y V="2"/></MoveTo><Rect><LineTo/></Rect>)"
        R"(<lineto/><LineTo/><CurveTo><X V="3" B="1" P="0.5"/></CurveTo><Ellipse><A V="9" B="5" )"
        R"(P="0.25"/></Ellipse></Geometry>)",
        R"(<Geometry Closed="0">text<LineTo><X V="10"/><LineTo><X V="11"/></LineTo><Y V="12"/>)"
        R"(</LineTo><!-- end --><MoveTo><Y V="13"/></MoveTo></Geometry>)"};
}

void addOutlineReading(Theme& theme, QString const& xml)
{
    KpPathSegList before;
    before.noFill = true;
    before.noLine = true;
    before.moveTo(QPointF(5, 5));
    Fields const inputs {{"outline", before}, {"xml", xml}};
    Outline const fromTree = exactCopy(before);
    bool const result = fromTree->parse(Vectors::treeOf(xml).documentElement(), 0U);
    theme.add(
        QString("KpPathSegList::") + ofTree, inputs, {{"outline", *fromTree}, {"result", result}});
    Outline const fromStream = exactCopy(before);
    theme.add(
        QString("KpPathSegList::") + ofStream, inputs, readStream("outline", *fromStream, xml));
}

} // namespace

void Vectors::addOutlineXml(Theme& theme)
{
    std::vector<Outline> outlines = sampleOutlines();
    outlines.push_back(oddNumbers());
    for (Outline const& outline : outlines) {
        addOutlineWriting(theme, *outline);
        for (KpPathSeg* const segment : qAsConst(outline->segs))
            addSegmentWriting(theme, *segment);
    }
    addSegmentReadings(theme);
    for (QString const& xml : outlineSources())
        addOutlineReading(theme, xml);
}
