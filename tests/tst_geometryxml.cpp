// SPDX-License-Identifier: MIT
#include "outlinetesting.h"

#include <QIODevice>

using OutlineTesting::domDocument;
using OutlineTesting::domXml;
using OutlineTesting::exact;
using OutlineTesting::ExactlySized;
using OutlineTesting::meaning;
using OutlineTesting::parseDom;
using OutlineTesting::parseStream;
using OutlineTesting::streamXml;

using Testing::infinite;
using Testing::notANumber;

namespace {

QString values(KpPathSeg& seg)
{
    QVector<KpReal> reals {seg.pt.x, seg.pt.y};
    if (KpPathSegCurveTo const* const curve = seg.toCurveTo())
        reals << curve->ctrl1.x << curve->ctrl1.y << curve->ctrl2.x << curve->ctrl2.y;
    if (KpPathSegEllipse const* const ellipse = seg.toEllipse())
        reals << ellipse->a << ellipse->b;
    QString text(QLatin1Char("??MLCE"[seg.type]));
    for (KpReal const& real : qAsConst(reals))
        text += QStringLiteral(" %1").arg(real.value);
    return text;
}

/** The flags that are set, then kind and values of each segment: "closed noFill: M 1 2; L 3 4". */
QString summary(KpPathSegList const& list)
{
    QStringList flags;
    if (list.closed)
        flags << QStringLiteral("closed");
    if (list.noFill)
        flags << QStringLiteral("noFill");
    if (list.noLine)
        flags << QStringLiteral("noLine");
    QStringList segments;
    for (KpPathSeg* const seg : list.segs)
        segments << values(*seg);
    return flags.join(QLatin1Char(' ')) + QLatin1Char(':')
        + (segments.isEmpty() ? QString() : QLatin1Char(' ') + segments.join(QStringLiteral("; ")));
}

QString domSummary(QByteArray const& xml)
{
    KpPathSegList list;
    bool const result = parseDom(list, xml);
    return summary(list) + (result ? QString() : QStringLiteral(" (false)"));
}

QString streamSummary(QByteArray const& xml)
{
    KpPathSegList list;
    bool const result = parseStream(list, xml);
    return summary(list) + (result ? QString() : QStringLiteral(" (false)"));
}

/** A coordinate element as it should be written. */
QString coordinateText(char letter, KpReal const& real)
{
    auto const number = [](double value) { return QString::number(value, 'g', 6); };
    QString text = QStringLiteral("<%1 V=\"%2\"").arg(QLatin1Char(letter)).arg(number(real.value));
    if (real.base != 0)
        text += QStringLiteral(" B=\"%1\" P=\"%2\"").arg(real.base).arg(number(real.rate));
    return text + QStringLiteral("/>");
}

/** A segment element as it should be written. */
QString segmentText(KpPathSeg& seg)
{
    QString content = coordinateText('X', seg.pt.x) + coordinateText('Y', seg.pt.y);
    QString name =
        seg.type == KpPathSeg::SegMoveTo ? QStringLiteral("MoveTo") : QStringLiteral("LineTo");
    if (KpPathSegCurveTo const* const curve = seg.toCurveTo()) {
        name = QStringLiteral("CurveTo");
        content += coordinateText('A', curve->ctrl1.x) + coordinateText('B', curve->ctrl1.y)
            + coordinateText('C', curve->ctrl2.x) + coordinateText('D', curve->ctrl2.y);
    }
    if (KpPathSegEllipse const* const ellipse = seg.toEllipse()) {
        name = QStringLiteral("Ellipse");
        content += coordinateText('A', ellipse->a) + coordinateText('B', ellipse->b);
    }
    return QStringLiteral("<%1>%2</%1>").arg(name, content);
}

/** The stream form as it should be written. */
QByteArray geometryText(KpPathSegList const& list)
{
    QString attributes = QStringLiteral(" Closed=\"%1\"").arg(list.closed ? 1 : 0);
    if (list.noFill)
        attributes += QStringLiteral(" NoFill=\"1\"");
    if (list.noLine)
        attributes += QStringLiteral(" NoLine=\"1\"");
    QString content;
    for (KpPathSeg* const seg : list.segs)
        content += segmentText(*seg);
    QString const text = content.isEmpty()
        ? QStringLiteral("<Geometry%1/>").arg(attributes)
        : QStringLiteral("<Geometry%1>%2</Geometry>").arg(attributes, content);
    return text.toUtf8();
}

/** What reading makes of a written real: six digits, and for an absolute one the rule `born`. */
KpReal readBack(KpReal const& written, qint16 born)
{
    auto const rounded = [](double value) { return QString::number(value, 'g', 6).toDouble(); };
    return written.base == 0 ? KpReal(born, 0.0, rounded(written.value))
                             : KpReal(written.base, rounded(written.rate), rounded(written.value));
}

KpPoint readBack(KpPoint const& written)
{
    return KpPoint(readBack(written.x, 1), readBack(written.y, 2));
}

void readBackAll(KpPathSegList& list)
{
    for (KpPathSeg* const seg : qAsConst(list.segs)) {
        seg->pt = readBack(seg->pt);
        if (KpPathSegCurveTo* const curve = seg->toCurveTo()) {
            curve->ctrl1 = readBack(curve->ctrl1);
            curve->ctrl2 = readBack(curve->ctrl2);
        }
        if (KpPathSegEllipse* const ellipse = seg->toEllipse()) {
            ellipse->a = readBack(ellipse->a, 1);
            ellipse->b = readBack(ellipse->b, 2);
        }
    }
}

/** Tells how it was written. */
class WritingProbe : public KpPathSegLineTo
{
public:
    WritingProbe()
        : KpPathSegLineTo(QPointF(0.0, 0.0), nullptr)
    {
    }
    void saveTo(QDomElement& geometry) override
    {
        ++domWrites;
        KpPathSegLineTo::saveTo(geometry);
    }
    void saveTo(XmlStreamWriter& writer) override
    {
        ++streamWrites;
        KpPathSegLineTo::saveTo(writer);
    }
    int domWrites = 0;
    int streamWrites = 0;
};

/** A device whose size is more than it ever hands out. */
class OverstatedDevice : public QIODevice
{
public:
    explicit OverstatedDevice(QByteArray const& bytes)
        : content(bytes)
        , promised(bytes.size() + 100)
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    qint64 size() const override { return promised; }

protected:
    qint64 readData(char* target, qint64 size) override
    {
        int const count = int(std::min(size, qint64(content.size())));
        std::copy_n(content.constData(), count, target);
        content.remove(0, count);
        return count;
    }

    qint64 writeData(char const*, qint64) override { return -1; }

private:
    QByteArray content;
    qint64 promised;
};

} // namespace

class TestGeometryXml : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writesFlagsInOrder_data();
    void writesFlagsInOrder();
    void writesSegmentsInOrder();
    void writesThroughTheSegmentsOwnWriters();
    void writesNumbersInSixDigits_data();
    void writesNumbersInSixDigits();
    void writesEveryBase();
    void skipsEmptySlots();
    void domWriterAppendsToItsParent();
    void nullParentTakesNothing();
    void streamWriterWritesWhereItStands();

    void readsFlagTexts_data();
    void readsFlagTexts();
    void emptyFlagsDifferBetweenTheReaders_data();
    void emptyFlagsDifferBetweenTheReaders();
    void absentFlagsStay();
    void readsSegmentsWithTheirDefaults();
    void readsMalformedOutlines_data();
    void readsMalformedOutlines();
    void readingTwiceDoublesTheSegments();
    void readSegmentsBelongToTheList();
    void contextIsNotExamined();
    void nullElementReadsAsNothing();

    void withoutAttributesTheStreamIsNotRead_data();
    void withoutAttributesTheStreamIsNotRead();
    void anyAttributeLetsTheStreamBeRead();
    void streamReaderEndsOnTheEndTag();
    void streamOfAnotherKindIsReadToTheEnd();
    void streamErrorStaysInTheReader_data();
    void streamErrorStaysInTheReader();
    void truncatedStreamKeepsWhatWasRead();
    void deviceThatHoldsLessThanItsSizeEndsTheReading();
    void prefixedNamesAreReadAsEachFormReadsThem_data();
    void prefixedNamesAreReadAsEachFormReadsThem();
    void deepNestingIsSteppedOver();

    void randomOutlinesInBothForms();
    void everyKindGoesThereAndBack();
};

void TestGeometryXml::writesFlagsInOrder_data()
{
    QTest::addColumn<bool>("closed");
    QTest::addColumn<bool>("noFill");
    QTest::addColumn<bool>("noLine");
    QTest::addColumn<QByteArray>("stream");
    QTest::addColumn<QString>("dom");
    QTest::newRow("none") << false << false << false << QByteArray("<Geometry Closed=\"0\"/>")
                          << QString("Geometry[Closed=0]");
    QTest::newRow("closed") << true << false << false << QByteArray("<Geometry Closed=\"1\"/>")
                            << QString("Geometry[Closed=1]");
    QTest::newRow("noFill") << false << true << false
                            << QByteArray("<Geometry Closed=\"0\" NoFill=\"1\"/>")
                            << QString("Geometry[Closed=0 NoFill=1]");
    QTest::newRow("noLine") << false << false << true
                            << QByteArray("<Geometry Closed=\"0\" NoLine=\"1\"/>")
                            << QString("Geometry[Closed=0 NoLine=1]");
    QTest::newRow("all") << true << true << true
                         << QByteArray("<Geometry Closed=\"1\" NoFill=\"1\" NoLine=\"1\"/>")
                         << QString("Geometry[Closed=1 NoFill=1 NoLine=1]");
}

void TestGeometryXml::writesFlagsInOrder()
{
    QFETCH(bool, closed);
    QFETCH(bool, noFill);
    QFETCH(bool, noLine);
    QFETCH(QByteArray, stream);
    QFETCH(QString, dom);
    KpPathSegList list;
    list.closed = closed;
    list.noFill = noFill;
    list.noLine = noLine;
    QCOMPARE(streamXml(list), stream);
    QDomDocument const document = domXml(list);
    QCOMPARE(meaning(document.documentElement().firstChildElement()), dom);

    KpPathSegList fromStream;
    QVERIFY(parseStream(fromStream, stream));
    QCOMPARE(exact(fromStream), exact(list));
    KpPathSegList fromDom;
    QVERIFY(parseDom(fromDom, stream));
    QCOMPARE(exact(fromDom), exact(list));
}

void TestGeometryXml::writesSegmentsInOrder()
{
    KpPathSegList list;
    list.closed = true;
    list.moveTo(QPointF(1, 2));
    list.lineTo(QPointF(3, 4));
    list.curveTo(QPointF(5, 6), QPointF(7, 8), QPointF(9, 10));
    list.addTail(
        new KpPathSegEllipse(KpPoint({0, 5, 11}, {0, 5, 12}), {1, 0, 13}, {2, 0, 14}, nullptr));
    QByteArray const text =
        "<Geometry Closed=\"1\">"
        "<MoveTo><X V=\"1\" B=\"1\" P=\"0\"/><Y V=\"2\" B=\"2\" P=\"0\"/></MoveTo>"
        "<LineTo><X V=\"3\" B=\"1\" P=\"0\"/><Y V=\"4\" B=\"2\" P=\"0\"/></LineTo>"
        "<CurveTo><X V=\"9\" B=\"1\" P=\"0\"/><Y V=\"10\" B=\"2\" P=\"0\"/>"
        "<A V=\"5\" B=\"1\" P=\"0\"/><B V=\"6\" B=\"2\" P=\"0\"/>"
        "<C V=\"7\" B=\"1\" P=\"0\"/><D V=\"8\" B=\"2\" P=\"0\"/></CurveTo>"
        "<Ellipse><X V=\"11\"/><Y V=\"12\"/>"
        "<A V=\"13\" B=\"1\" P=\"0\"/><B V=\"14\" B=\"2\" P=\"0\"/></Ellipse>"
        "</Geometry>";
    QCOMPARE(streamXml(list), text);
    QDomDocument const written = domXml(list);
    QCOMPARE(meaning(written.documentElement().firstChildElement()),
        meaning(domDocument(text).documentElement()));
}

void TestGeometryXml::writesThroughTheSegmentsOwnWriters()
{
    KpPathSegList list;
    auto* const probe = new WritingProbe;
    list.addTail(probe);
    QVERIFY(!streamXml(list).isEmpty());
    QCOMPARE(probe->streamWrites, 1);
    QCOMPARE(probe->domWrites, 0);
    QVERIFY(!domXml(list).isNull());
    QCOMPARE(probe->streamWrites, 1);
    QCOMPARE(probe->domWrites, 1);
}

void TestGeometryXml::writesNumbersInSixDigits_data()
{
    QTest::addColumn<double>("number");
    QTest::addColumn<QByteArray>("text");
    struct Row
    {
        char const* name;
        double number;
        char const* text;
    };
    Row const rows[] = {
        {"zero", 0.0, "0"},
        {"negative zero", -0.0, "0"},
        {"one", 1.0, "1"},
        {"a hundred", 100.0, "100"},
        {"a half", 0.5, "0.5"},
        {"negative", -12.25, "-12.25"},
        {"a third", 1.0 / 3.0, "0.333333"},
        {"two thirds", 2.0 / 3.0, "0.666667"},
        {"a tenth and two tenths", 0.1 + 0.2, "0.3"},
        {"nine digits", 123.456789, "123.457"},
        {"six digits", 123456.0, "123456"},
        {"seven digits", 1234567.0, "1.23457e+06"},
        {"just below a million", 999999.0, "999999"},
        {"a million", 1000000.0, "1e+06"},
        {"rounded to a million", 999999.5, "1e+06"},
        {"a tie rounds up", 123456.5, "123457"},
        {"a tie behind an odd digit rounds up", 123457.5, "123458"},
        {"a tenth of a thousandth", 0.0001, "0.0001"},
        {"below a tenth of a thousandth", 0.00001234, "1.234e-05"},
        {"just below a tenth of a thousandth", 0.00009999999, "0.0001"},
        {"trailing zeros", 1.5000001, "1.5"},
        {"great", 1e100, "1e+100"},
        {"greatest", std::numeric_limits<double>::max(), "1.79769e+308"},
        {"least normal", std::numeric_limits<double>::min(), "2.22507e-308"},
        {"least", std::numeric_limits<double>::denorm_min(), "4.94066e-324"},
        {"no number", notANumber, "nan"},
        {"infinity", infinite, "inf"},
        {"minus infinity", -infinite, "-inf"},
    };
    for (Row const& row : rows)
        QTest::newRow(row.name) << row.number << QByteArray(row.text);
}

void TestGeometryXml::writesNumbersInSixDigits()
{
    QFETCH(double, number);
    QFETCH(QByteArray, text);
    KpPathSegList list;
    list.addTail(new KpPathSegLineTo(KpPoint({0, 0, number}, {3, number, number}), nullptr));
    QByteArray const expected = "<Geometry Closed=\"0\"><LineTo><X V=\"" + text + "\"/><Y V=\""
        + text + "\" B=\"3\" P=\"" + text + "\"/></LineTo></Geometry>";
    QCOMPARE(streamXml(list), expected);
    QDomDocument const document = domXml(list);
    QCOMPARE(meaning(document.documentElement().firstChildElement()),
        meaning(domDocument(expected).documentElement()));
}

void TestGeometryXml::writesEveryBase()
{
    KpPathSegList list;
    list.lineTo(QPointF(5, 0));
    KpReal& x = list.segs.at(0)->pt.x;
    list.segs.at(0)->pt.y.base = 0;
    for (int base = -32768; base <= 32767; ++base) {
        x.base = qint16(base);
        QByteArray const attributes =
            base == 0 ? QByteArray() : " B=\"" + QByteArray::number(base) + "\" P=\"0\"";
        QByteArray const expected = "<Geometry Closed=\"0\"><LineTo><X V=\"5\"" + attributes
            + "/><Y V=\"0\"/></LineTo></Geometry>";
        QByteArray const text = streamXml(list);
        if (text != expected)
            QCOMPARE(text, expected);
        KpPathSegList read;
        parseStream(read, text);
        QCOMPARE(int(read.segs.at(0)->pt.x.base), base == 0 ? 1 : base);
    }
}

void TestGeometryXml::skipsEmptySlots()
{
    KpPathSegList list;
    list.segs << nullptr << new KpPathSegLineTo(KpPoint({0, 0, 1}, {0, 0, 2}), &list) << nullptr;
    QByteArray const expected =
        "<Geometry Closed=\"0\"><LineTo><X V=\"1\"/><Y V=\"2\"/></LineTo></Geometry>";
    QCOMPARE(streamXml(list), expected);
    QDomDocument const document = domXml(list);
    QCOMPARE(meaning(document.documentElement().firstChildElement()),
        meaning(domDocument(expected).documentElement()));
}

void TestGeometryXml::domWriterAppendsToItsParent()
{
    QDomDocument document = domDocument("<Page><Shape><Title/></Shape><Other/></Page>");
    QDomElement shape = document.documentElement().firstChildElement("Shape");
    KpPathSegList list;
    list.moveTo(QPointF(1, 2));
    list.saveTo(shape);
    list.saveTo(shape);
    QString const geometry = "Geometry[Closed=0](MoveTo[](X[B=1 P=0 V=1] Y[B=2 P=0 V=2]))";
    QCOMPARE(meaning(document.documentElement()),
        QString("Page[](Shape[](Title[] %1 %1) Other[])").arg(geometry));
    QVERIFY(shape.lastChildElement().ownerDocument() == document);
}

void TestGeometryXml::nullParentTakesNothing()
{
    KpPathSegList list;
    list.moveTo(QPointF(1, 2));
    list.segs << new KpPathSegEllipse(KpPoint(), KpReal(), KpReal(), &list);
    QDomElement parent;
    list.saveTo(parent);
    for (KpPathSeg* const seg : qAsConst(list.segs))
        seg->saveTo(parent);
    QVERIFY(parent.isNull());
}

void TestGeometryXml::streamWriterWritesWhereItStands()
{
    KpPathSegList list;
    list.noFill = true;
    QByteArray text;
    XmlStreamWriter writer(&text);
    writer.writeStartElement("Shape");
    writer.writeAttribute(QString("Name"), QString("a"));
    list.saveTo(writer);
    list.saveTo(writer);
    writer.writeEmptyElement("After");
    writer.writeEndElement();
    QCOMPARE(text,
        QByteArray("<Shape Name=\"a\"><Geometry Closed=\"0\" NoFill=\"1\"/>"
                   "<Geometry Closed=\"0\" NoFill=\"1\"/><After/></Shape>"));
}

void TestGeometryXml::readsFlagTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("flag");
    QTest::newRow("1") << "1" << true;
    QTest::newRow("true") << "true" << true;
    QTest::newRow("True") << "True" << true;
    QTest::newRow("TRUE") << "TRUE" << true;
    QTest::newRow("tRUE") << "tRUE" << true;
    QTest::newRow("1 by reference") << "&#49;" << true;
    QTest::newRow("0") << "0" << false;
    QTest::newRow("2") << "2" << false;
    QTest::newRow("11") << "11" << false;
    QTest::newRow("01") << "01" << false;
    QTest::newRow("-1") << "-1" << false;
    QTest::newRow("yes") << "yes" << false;
    QTest::newRow("false") << "false" << false;
    QTest::newRow("t") << "t" << false;
    QTest::newRow("trues") << "trues" << false;
    QTest::newRow("a space before 1") << " 1" << false;
    QTest::newRow("a space behind 1") << "1 " << false;
    QTest::newRow("a space before true") << " true" << false;
    QTest::newRow("a space") << " " << false;
    QTest::newRow("a wide 1") << QString(QChar(0xFF11)) << false;
}

void TestGeometryXml::readsFlagTexts()
{
    QFETCH(QString, text);
    QFETCH(bool, flag);
    for (bool const before : {false, true}) {
        for (int which = 0; which < 3; ++which) {
            char const* const names[] = {"Closed", "NoFill", "NoLine"};
            QByteArray const xml =
                QStringLiteral("<Geometry %1='%2'/>").arg(names[which], text).toUtf8();
            auto const read = [&](auto parse) {
                KpPathSegList list;
                list.closed = list.noFill = list.noLine = before;
                bool const result = parse(list, xml);
                bool const flags[] = {list.closed, list.noFill, list.noLine};
                // The flag named takes the value, the two others stay.
                return result && flags[which] == flag && flags[(which + 1) % 3] == before
                    && flags[(which + 2) % 3] == before;
            };
            QVERIFY2(read([](auto& l, auto const& x) { return parseDom(l, x); }), xml.constData());
            QVERIFY2(
                read([](auto& l, auto const& x) { return parseStream(l, x); }), xml.constData());
        }
    }
}

void TestGeometryXml::emptyFlagsDifferBetweenTheReaders_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<QString>("dom"); // of a list with all flags set
    QTest::addColumn<QString>("stream");
    QString const all = "closed noFill noLine:";
    QTest::newRow("Closed") << QByteArray("<Geometry Closed=''/>") << all << all;
    QTest::newRow("NoFill") << QByteArray("<Geometry NoFill=''/>") << all
                            << QString("closed noLine:");
    QTest::newRow("NoLine") << QByteArray("<Geometry NoLine=''/>") << all
                            << QString("closed noFill:");
    QTest::newRow("all") << QByteArray("<Geometry Closed='' NoFill='' NoLine=''/>") << all
                         << QString("closed:");
}

void TestGeometryXml::emptyFlagsDifferBetweenTheReaders()
{
    QFETCH(QByteArray, xml);
    QFETCH(QString, dom);
    QFETCH(QString, stream);
    KpPathSegList fromDom;
    fromDom.closed = fromDom.noFill = fromDom.noLine = true;
    QVERIFY(parseDom(fromDom, xml));
    QCOMPARE(summary(fromDom), dom);
    KpPathSegList fromStream;
    fromStream.closed = fromStream.noFill = fromStream.noLine = true;
    QVERIFY(parseStream(fromStream, xml));
    QCOMPARE(summary(fromStream), stream);
    // From no flag set, an empty attribute sets none.
    QCOMPARE(domSummary(xml), QString(":"));
    QCOMPARE(streamSummary(xml), QString(":"));
}

void TestGeometryXml::absentFlagsStay()
{
    for (QByteArray const& xml : {QByteArray("<Geometry Other='1'/>"),
             QByteArray("<Geometry closed='0' nofill='0' NOLINE='0' Close='0'/>")}) {
        KpPathSegList fromDom;
        fromDom.closed = fromDom.noFill = fromDom.noLine = true;
        QVERIFY(parseDom(fromDom, xml));
        QCOMPARE(summary(fromDom), QString("closed noFill noLine:"));
        KpPathSegList fromStream;
        fromStream.closed = fromStream.noFill = fromStream.noLine = true;
        QVERIFY(parseStream(fromStream, xml));
        QCOMPARE(summary(fromStream), QString("closed noFill noLine:"));
    }
}

void TestGeometryXml::readsSegmentsWithTheirDefaults()
{
    QByteArray const xml =
        "<Geometry Closed='0'><MoveTo/><LineTo/><CurveTo/><Ellipse/>"
        "<LineTo><X V='5'/></LineTo><LineTo><X V='5' B='0'/></LineTo></Geometry>";
    KpPoint const origin({1, 0, 0}, {2, 0, 0});
    KpPathSegList expected;
    expected.addTail(new KpPathSegMoveTo(origin, nullptr));
    expected.addTail(new KpPathSegLineTo(origin, nullptr));
    expected.addTail(new KpPathSegCurveTo(origin, origin, origin, nullptr));
    expected.addTail(new KpPathSegEllipse(origin, {1, 0, 0}, {2, 0, 0}, nullptr));
    expected.addTail(new KpPathSegLineTo(KpPoint({1, 0, 5}, {2, 0, 0}), nullptr));
    expected.addTail(new KpPathSegLineTo(KpPoint({0, 0, 5}, {2, 0, 0}), nullptr));
    KpPathSegList fromDom;
    QVERIFY(parseDom(fromDom, xml));
    QCOMPARE(exact(fromDom), exact(expected));
    KpPathSegList fromStream;
    QVERIFY(parseStream(fromStream, xml));
    QCOMPARE(exact(fromStream), exact(expected));
}

void TestGeometryXml::readsMalformedOutlines_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<QString>("dom");
    QTest::addColumn<QString>("stream");

    struct Row
    {
        char const* name;
        char const* xml;
        char const* dom;
        char const* stream; // null: as dom
    };
    Row const rows[] = {
        {"unknown child", "<Geometry Closed='1'><MoveTo/><Rect/><LineTo/></Geometry>",
            "closed: M 0 0; L 0 0", nullptr},
        {"unknown child with segments in it",
            "<Geometry Closed='1'><MoveTo/><Rect><LineTo><X V='9'/></LineTo><Rect/></Rect>"
            "<LineTo/></Geometry>",
            "closed: M 0 0; L 0 0", nullptr},
        {"lower-case child",
            "<Geometry Closed='1'><MoveTo/><lineto><X V='9'/></lineto><LineTo/>"
            "</Geometry>",
            "closed: M 0 0; L 0 0", nullptr},
        {"upper-case child", "<Geometry Closed='0'><MOVETO/><LINETO/></Geometry>", ":", nullptr},
        {"names of units and letters", "<Geometry Closed='0'><px/><X V='9'/><D V='9'/></Geometry>",
            ":", nullptr},
        {"outline in an outline",
            "<Geometry Closed='0'><Geometry Closed='1'><LineTo/></Geometry><MoveTo/></Geometry>",
            ": M 0 0", nullptr},
        {"segment in a segment",
            "<Geometry Closed='0'><LineTo><LineTo><X V='9'/></LineTo><X "
            "V='1'/></LineTo></Geometry>",
            ": L 1 0", nullptr},
        {"curve in a line",
            "<Geometry Closed='0'><LineTo><CurveTo><X V='9'/></CurveTo><Y V='1'/></LineTo><MoveTo/>"
            "</Geometry>",
            ": L 0 1; M 0 0", nullptr},
        {"text and comments between",
            "<Geometry Closed='0'>text<MoveTo/><!-- <LineTo/> --><![CDATA[<LineTo/>]]>"
            "<?LineTo?>&lt;LineTo/&gt;<LineTo/></Geometry>",
            ": M 0 0; L 0 0", nullptr},
        {"attributes on segments",
            "<Geometry Closed='0'><LineTo X='1' V='2' Closed='1'/></Geometry>", ": L 0 0", nullptr},
        {"repeated coordinates of a move",
            "<Geometry Closed='0'><MoveTo><X V='1'/><X V='2'/></MoveTo></Geometry>", ": M 1 0",
            ": M 2 0"},
        {"repeated coordinates of a curve",
            "<Geometry Closed='0'><CurveTo><A V='1'/><A V='2'/></CurveTo></Geometry>",
            ": C 0 0 2 0 0 0", nullptr},
        {"coordinates of a curve in a line",
            "<Geometry Closed='0'><LineTo><A V='9'/><X V='1'/><D V='9'/></LineTo></Geometry>",
            ": L 1 0", nullptr},
        {"coordinates of a curve in an ellipse",
            "<Geometry Closed='0'><Ellipse><C V='9'/><D V='9'/><B V='1'/></Ellipse></Geometry>",
            ": E 0 0 0 1", nullptr},
        {"coordinate without attributes",
            "<Geometry Closed='0'><LineTo><X/><Y V='2'/></LineTo></Geometry>", ": L 0 2", nullptr},
        {"value as text", "<Geometry Closed='0'><LineTo><X>5</X></LineTo></Geometry>", ": L 0 0",
            nullptr},
        {"value of letters",
            "<Geometry Closed='0'><LineTo><X V='abc'/><Y V='5'/></LineTo></Geometry>", ": L 0 5",
            nullptr},
        {"special values",
            "<Geometry Closed='0'><LineTo><X V='inf'/><Y V='nan'/></LineTo></Geometry>",
            ": L inf nan", nullptr},
        {"negative radii",
            "<Geometry Closed='0'><Ellipse><A V='-3'/><B V='-0.5'/></Ellipse></Geometry>",
            ": E 0 0 -3 -0.5", nullptr},
        {"flags of nonsense", "<Geometry Closed='yes' NoFill='2' NoLine=' 1'><LineTo/></Geometry>",
            ": L 0 0", nullptr},
        {"flags of both kinds", "<Geometry NoLine='true' Closed='1' NoFill='TRUE'/>",
            "closed noFill noLine:", nullptr},
        {"no attributes", "<Geometry><LineTo><X V='1'/><Y V='2'/></LineTo></Geometry>", ": L 1 2",
            ": (false)"},
        {"foreign root", "<Outline Closed='1'><LineTo/></Outline>", "closed: L 0 0", nullptr},
        {"document type and declaration",
            "<?xml version='1.0'?><!DOCTYPE Geometry><Geometry Closed='1'><LineTo/></Geometry>",
            "closed: L 0 0", nullptr},
    };
    for (Row const& row : rows) {
        QTest::newRow(row.name) << QByteArray(row.xml) << QString(row.dom)
                                << QString(row.stream ? row.stream : row.dom);
    }
}

void TestGeometryXml::readsMalformedOutlines()
{
    QFETCH(QByteArray, xml);
    QFETCH(QString, dom);
    QFETCH(QString, stream);
    QCOMPARE(domSummary(xml), dom);
    QCOMPARE(streamSummary(xml), stream);
}

void TestGeometryXml::readingTwiceDoublesTheSegments()
{
    QByteArray const xml =
        "<Geometry Closed='1'><MoveTo><X V='1'/></MoveTo><LineTo><X V='2'/></LineTo></Geometry>";
    KpPathSegList fromDom;
    QVERIFY(parseDom(fromDom, xml) && parseDom(fromDom, xml));
    QCOMPARE(summary(fromDom), QString("closed: M 1 0; L 2 0; M 1 0; L 2 0"));
    KpPathSegList fromStream;
    QVERIFY(parseStream(fromStream, xml) && parseStream(fromStream, xml));
    QCOMPARE(summary(fromStream), QString("closed: M 1 0; L 2 0; M 1 0; L 2 0"));
}

void TestGeometryXml::readSegmentsBelongToTheList()
{
    QByteArray const xml = "<Geometry Closed='1'><MoveTo/><LineTo/><CurveTo/><Ellipse/></Geometry>";
    KpPathSegList list;
    QVERIFY(parseDom(list, xml) && parseStream(list, xml));
    QCOMPARE(list.segs.count(), 8);
    for (KpPathSeg* const seg : qAsConst(list.segs))
        QCOMPARE(seg->owner, &list);
}

void TestGeometryXml::contextIsNotExamined()
{
    QByteArray const xml = "<Geometry Closed='1'><LineTo><X V='1'/></LineTo></Geometry>";
    for (unsigned int const context : {0U, 1U, 77U, std::numeric_limits<unsigned int>::max()}) {
        KpPathSegList fromDom;
        QVERIFY(parseDom(fromDom, xml, context));
        QCOMPARE(summary(fromDom), QString("closed: L 1 0"));
        KpPathSegList fromStream;
        QVERIFY(parseStream(fromStream, xml, context));
        QCOMPARE(summary(fromStream), QString("closed: L 1 0"));
    }
}

void TestGeometryXml::nullElementReadsAsNothing()
{
    KpPathSegList list;
    list.closed = true;
    list.moveTo(QPointF(1, 2));
    QString const before = exact(list);
    QVERIFY(list.parse(QDomElement(), 0));
    QCOMPARE(exact(list), before);
}

void TestGeometryXml::withoutAttributesTheStreamIsNotRead_data()
{
    QTest::addColumn<QByteArray>("startTag");
    QTest::newRow("bare") << QByteArray("<Geometry>");
    QTest::newRow("white space") << QByteArray("<Geometry \n>");
    // A declaration of a name space is no attribute to the reader.
    QTest::newRow("name space") << QByteArray("<Geometry xmlns='urn:outline'>");
}

void TestGeometryXml::withoutAttributesTheStreamIsNotRead()
{
    QFETCH(QByteArray, startTag);
    QXmlStreamReader reader("<Root>" + startTag + "<LineTo/><MoveTo/></Geometry></Root>");
    QVERIFY(reader.readNextStartElement() && reader.readNextStartElement());
    KpPathSegList list;
    list.closed = list.noFill = list.noLine = true;
    QVERIFY(!list.parse(reader, 0));
    QCOMPARE(summary(list), QString("closed noFill noLine:"));
    QVERIFY(reader.isStartElement());
    QCOMPARE(reader.name().toString(), QString("Geometry"));
    QVERIFY(reader.readNextStartElement());
    QCOMPARE(reader.name().toString(), QString("LineTo"));
    QVERIFY(!reader.hasError());
}

void TestGeometryXml::anyAttributeLetsTheStreamBeRead()
{
    QCOMPARE(streamSummary("<Geometry x=''><LineTo/></Geometry>"), QString(": L 0 0"));
    QCOMPARE(streamSummary("<Geometry xml:lang='en'><LineTo/></Geometry>"), QString(": L 0 0"));
}

void TestGeometryXml::streamReaderEndsOnTheEndTag()
{
    QXmlStreamReader reader(
        QByteArray("<Root><Geometry Closed='1'> <LineTo> <X V='1'/> </LineTo> <Rect/> </Geometry>"
                   "<Geometry Closed='0'/><After/></Root>"));
    QVERIFY(reader.readNextStartElement());
    for (QString const& expected : {QString("closed: L 1 0"), QString(":")}) {
        QVERIFY(reader.readNextStartElement());
        KpPathSegList list;
        QVERIFY(list.parse(reader, 0));
        QCOMPARE(summary(list), expected);
        QVERIFY(reader.isEndElement());
        QCOMPARE(reader.name().toString(), QString("Geometry"));
    }
    QVERIFY(reader.readNextStartElement());
    QCOMPARE(reader.name().toString(), QString("After"));
}

void TestGeometryXml::streamOfAnotherKindIsReadToTheEnd()
{
    QXmlStreamReader reader(QByteArray(
        "<Geometry><MoveTo><X V='1'/></MoveTo><LineTo><X V='2'/></LineTo><Y V='3'/></Geometry>"));
    QVERIFY(reader.readNextStartElement());
    QVERIFY(reader.readNextStartElement());
    KpPathSegLineTo segment(KpPoint(), nullptr);
    QVERIFY(segment.parse(reader, 0));
    COMPARE_BITS(segment.pt.x.value, 1.0);
    COMPARE_BITS(segment.pt.y.value, 3.0);
    QVERIFY(reader.atEnd());
    QVERIFY(!reader.hasError());
}

void TestGeometryXml::streamErrorStaysInTheReader_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<QString>("read");
    QTest::addColumn<int>("error");
    int const malformed = QXmlStreamReader::NotWellFormedError;
    int const premature = QXmlStreamReader::PrematureEndOfDocumentError;
    QTest::newRow("wrong end tag")
        << QByteArray("<Geometry Closed='1'><LineTo><X V='5'/></MoveTo><LineTo/></Geometry>")
        << QString("closed: L 5 0") << malformed;
    QTest::newRow("wrong end tag of the outline")
        << QByteArray("<Geometry Closed='1'><LineTo/></Shape>") << QString("closed: L 0 0")
        << malformed;
    QTest::newRow("attribute given twice")
        << QByteArray("<Geometry Closed='1'><LineTo><X V='5' V='6'/></LineTo></Geometry>")
        << QString("closed: L 0 0") << malformed;
    QTest::newRow("attribute without quotes")
        << QByteArray("<Geometry Closed='1'><MoveTo/><LineTo><X V=5/></LineTo></Geometry>")
        << QString("closed: M 0 0; L 0 0") << malformed;
    QTest::newRow("stray bracket")
        << QByteArray("<Geometry Closed='1'><MoveTo/>< <LineTo/></Geometry>")
        << QString("closed: M 0 0") << malformed;
    QTest::newRow("unknown entity")
        << QByteArray("<Geometry Closed='1'><MoveTo/>&unknown;<LineTo/></Geometry>")
        << QString("closed: M 0 0") << malformed;
    QTest::newRow("zero byte") << QByteArray(
        "<Geometry Closed='1'><MoveTo/>\0<LineTo/></Geometry>", 52)
                               << QString("closed: M 0 0") << malformed;
    QTest::newRow("broken inside an unknown child")
        << QByteArray("<Geometry Closed='1'><MoveTo/><Rect><Q></Rect><LineTo/></Geometry>")
        << QString("closed: M 0 0") << malformed;
    QTest::newRow("prefix without a name space")
        << QByteArray("<Geometry Closed='1'><MoveTo/><p:LineTo/></Geometry>")
        << QString("closed: M 0 0") << malformed;
    QTest::newRow("end inside a segment")
        << QByteArray("<Geometry Closed='1'><MoveTo/><LineTo><X V='5'/><Y V='6'")
        << QString("closed: M 0 0; L 5 0") << premature;
    QTest::newRow("end inside an unknown child")
        << QByteArray("<Geometry Closed='1'><MoveTo/><Rect><LineTo/>") << QString("closed: M 0 0")
        << premature;
    QTest::newRow("end behind a segment")
        << QByteArray("<Geometry Closed='1'><MoveTo/>") << QString("closed: M 0 0") << premature;
}

void TestGeometryXml::streamErrorStaysInTheReader()
{
    QFETCH(QByteArray, xml);
    QFETCH(QString, read);
    QFETCH(int, error);
    QXmlStreamReader reader(xml);
    QVERIFY(reader.readNextStartElement());
    KpPathSegList list;
    QVERIFY(list.parse(reader, 0));
    QCOMPARE(summary(list), read);
    QCOMPARE(int(reader.error()), error);
    QVERIFY(reader.atEnd());
    // Reading on from an error finds nothing more.
    list.parse(reader, 0);
    QCOMPARE(summary(list), read);
}

void TestGeometryXml::deviceThatHoldsLessThanItsSizeEndsTheReading()
{
    // As a file that was cut short while it was read: the reader never says that it is at the end.
    OverstatedDevice device("<Geometry Closed='1'><LineTo><X V='5'/>");
    QXmlStreamReader reader(&device);
    QVERIFY(reader.readNextStartElement());
    KpPathSegList list;
    QVERIFY(list.parse(reader, 0));
    QCOMPARE(summary(list), QString("closed: L 5 0"));
    QVERIFY(!reader.atEnd());
}

void TestGeometryXml::truncatedStreamKeepsWhatWasRead()
{
    struct Part
    {
        QByteArray text;
        QString read; // once the part is complete
    };
    Part const parts[] = {
        {"<Geometry Closed='1' NoFill='1'>", "closed noFill:"},
        {"<MoveTo>", "closed noFill: M 0 0"},
        {"<X V='1'/>", "closed noFill: M 1 0"},
        {"<Y V='2'/>", "closed noFill: M 1 2"},
        {"</MoveTo><Rect><LineTo/></Rect>", "closed noFill: M 1 2"},
        {"<Ellipse>", "closed noFill: M 1 2; E 0 0 0 0"},
        {"<A V='3'/>", "closed noFill: M 1 2; E 0 0 3 0"},
        {"</Ellipse><!-- c -->", "closed noFill: M 1 2; E 0 0 3 0"},
        {"<CurveTo>", "closed noFill: M 1 2; E 0 0 3 0; C 0 0 0 0 0 0"},
        {"<D V='4'>", "closed noFill: M 1 2; E 0 0 3 0; C 0 0 0 0 0 4"},
        {"</D></CurveTo></Geometry>", "closed noFill: M 1 2; E 0 0 3 0; C 0 0 0 0 0 4"},
    };
    QByteArray before;
    QString read = ":";
    for (Part const& part : parts) {
        for (int length = 0; length <= part.text.size(); ++length) {
            ExactlySized const prefix(before + part.text.left(length));
            QXmlStreamReader reader(prefix.bytes());
            reader.readNextStartElement();
            KpPathSegList list;
            list.parse(reader, 0);
            QString const expected = length == part.text.size() ? part.read : read;
            QVERIFY2(summary(list) == expected,
                qPrintable(QString(before + part.text.left(length)) + " gave " + summary(list)));
        }
        before += part.text;
        read = part.read;
    }
}

void TestGeometryXml::prefixedNamesAreReadAsEachFormReadsThem_data()
{
    // The stream compares local names of elements and whole names of attributes. A DOM has whole
    // names; one that knows name spaces has local ones, but for the coordinates of curves and
    // ellipses, which are told by their node names.
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<QString>("stream");
    QTest::addColumn<QString>("dom");
    QTest::addColumn<QString>("domWithNameSpaces");
    struct Row
    {
        char const* name;
        char const* xml;
        char const* stream;
        char const* dom;
        char const* domWithNameSpaces;
    };
    Row const rows[] = {
        {"segment",
            "<Geometry xmlns:p='urn:p' Closed='0'><p:LineTo><X V='1'/></p:LineTo><MoveTo/>"
            "</Geometry>",
            ": L 1 0; M 0 0", ": M 0 0", ": L 1 0; M 0 0"},
        {"coordinate of a line",
            "<Geometry xmlns:p='urn:p' Closed='0'><LineTo><p:X V='1'/><Y V='2'/></LineTo>"
            "</Geometry>",
            ": L 1 2", ": L 0 2", ": L 1 2"},
        {"coordinate of a curve",
            "<Geometry xmlns:p='urn:p' Closed='0'><CurveTo><p:A V='1'/><B V='2'/></CurveTo>"
            "</Geometry>",
            ": C 0 0 1 2 0 0", ": C 0 0 0 2 0 0", ": C 0 0 0 2 0 0"},
        {"attribute of a coordinate",
            "<Geometry xmlns:p='urn:p' Closed='0'><LineTo><X p:V='1'/></LineTo></Geometry>",
            ": L 0 0", ": L 0 0", ": L 1 0"},
        {"flag", "<Geometry xmlns:p='urn:p' p:Closed='1'/>", ":", ":", "closed:"},
        {"outline", "<p:Geometry xmlns:p='urn:p' Closed='1'><LineTo/></p:Geometry>",
            "closed: L 0 0", "closed: L 0 0", "closed: L 0 0"},
        {"default name space",
            "<Geometry xmlns='urn:p' Closed='1'><LineTo><X V='1'/></LineTo></Geometry>",
            "closed: L 1 0", "closed: L 1 0", "closed: L 1 0"},
    };
    for (Row const& row : rows) {
        QTest::newRow(row.name) << QByteArray(row.xml) << QString(row.stream) << QString(row.dom)
                                << QString(row.domWithNameSpaces);
    }
}

void TestGeometryXml::prefixedNamesAreReadAsEachFormReadsThem()
{
    QFETCH(QByteArray, xml);
    QFETCH(QString, stream);
    QFETCH(QString, dom);
    QFETCH(QString, domWithNameSpaces);
    QCOMPARE(streamSummary(xml), stream);
    QCOMPARE(domSummary(xml), dom);

    QDomDocument document;
    QVERIFY(document.setContent(xml, true));
    KpPathSegList list;
    QVERIFY(list.parse(document.documentElement(), 0));
    QCOMPARE(summary(list), domWithNameSpaces);
}

void TestGeometryXml::deepNestingIsSteppedOver()
{
    int const depth = 20000;
    QByteArray const unknown =
        QByteArray("<Q>").repeated(depth) + QByteArray("</Q>").repeated(depth);
    QByteArray const nested =
        QByteArray("<LineTo>").repeated(depth) + QByteArray("</LineTo>").repeated(depth);
    QCOMPARE(streamSummary("<Geometry Closed='1'>" + unknown + "<MoveTo/></Geometry>"),
        QString("closed: M 0 0"));
    QCOMPARE(streamSummary("<Geometry Closed='1'>" + nested + "<MoveTo/></Geometry>"),
        QString("closed: L 0 0; M 0 0"));
    QCOMPARE(streamSummary("<Geometry Closed='1'><LineTo><X V='5'>" + unknown
                 + "</X><Y V='6'/></LineTo></Geometry>"),
        QString("closed: L 5 6"));
}

void TestGeometryXml::randomOutlinesInBothForms()
{
    QRandomGenerator random = Testing::seededRandom(31415926);
    for (int round = 0; round < 1000; ++round) {
        KpPathSegList list;
        OutlineTesting::fillRandomly(list, random.bounded(12), random);
        QByteArray const text = streamXml(list);
        QCOMPARE(text, geometryText(list));
        QDomDocument const document = domXml(list);
        QDomElement const geometry = document.documentElement().firstChildElement();
        QCOMPARE(meaning(geometry), meaning(domDocument(text).documentElement()));

        KpPathSegList fromStream;
        QVERIFY(parseStream(fromStream, text));
        KpPathSegList fromDom;
        QVERIFY(fromDom.parse(geometry, 0));
        QCOMPARE(exact(fromDom), exact(fromStream));
        readBackAll(list);
        QVERIFY2(exact(fromStream) == exact(list), text.constData());
    }
}

void TestGeometryXml::everyKindGoesThereAndBack()
{
    KpPathSegList list;
    list.closed = true;
    list.noLine = true;
    list.addTail(new KpPathSegMoveTo(KpPoint({1, 0.5, 120}, {2, 0.25, 40}), nullptr));
    list.addTail(new KpPathSegLineTo(KpPoint({3, 10, 230}, {4, 20, 140}), nullptr));
    list.addTail(new KpPathSegCurveTo(KpPoint({5, 0.125, 20}, {6, 0.5, 160}),
        KpPoint({7, 0.25, 120}, {-1, 3, 1e-5}), KpPoint({8, 0, -1e6}, {1, -0.5, 7}), nullptr));
    auto* const ellipse = new KpPathSegEllipse(QPointF(50, 40), 30, 20, nullptr);
    ellipse->a = KpReal(5, 0.25, 30);
    list.addTail(ellipse);
    // Nothing here needs more than six digits.
    KpPathSegList fromStream;
    QVERIFY(parseStream(fromStream, streamXml(list)));
    QCOMPARE(exact(fromStream), exact(list));
    QDomDocument const document = domXml(list);
    KpPathSegList fromDom;
    QVERIFY(fromDom.parse(document.documentElement().firstChildElement(), 0));
    QCOMPARE(exact(fromDom), exact(list));
}

QTEST_GUILESS_MAIN(TestGeometryXml)
#include "tst_geometryxml.moc"
