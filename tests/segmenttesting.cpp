// SPDX-License-Identifier: MIT
#include "segmenttesting.h"

#include <QMatrix>

#include <numeric>

using OutlineTesting::domDocument;
using OutlineTesting::exact;
using OutlineTesting::ExactlySized;
using OutlineTesting::parseDom;
using OutlineTesting::parseStream;

Q_DECLARE_METATYPE(KpReal)

using Testing::infinite;
using Testing::notANumber;

namespace {

/** What a reader makes of `written` when it starts from `before`. */
KpReal readBack(KpReal const& written, KpReal const& before)
{
    auto const rounded = [](double number) { return QString::number(number, 'g', 6).toDouble(); };
    KpReal read = before;
    read.value = rounded(written.value);
    if (written.base != 0) {
        read.base = written.base;
        read.rate = rounded(written.rate);
    }
    return read;
}

} // namespace

SegmentTest::SegmentTest(TestedKind const& testedKind)
    : kind(testedKind)
{
}

std::unique_ptr<KpPathSeg> SegmentTest::create() const
{
    return std::unique_ptr<KpPathSeg>(kind.create(nullptr));
}

std::unique_ptr<KpPathSeg> SegmentTest::filledWith(KpReal const& filling) const
{
    std::unique_ptr<KpPathSeg> seg = create();
    for (int i = 0; i < realCount(); ++i)
        real(seg, i) = filling;
    return seg;
}

std::unique_ptr<KpPathSeg> SegmentTest::counting() const
{
    std::unique_ptr<KpPathSeg> seg = create();
    for (int i = 0; i < realCount(); ++i)
        real(seg, i) = KpReal(0, 0.0, i + 1.0);
    return seg;
}

KpReal& SegmentTest::real(std::unique_ptr<KpPathSeg> const& seg, int index) const
{
    return kind.coordinates.at(index).real(*seg);
}

int SegmentTest::realCount() const
{
    return kind.coordinates.count();
}

QByteArray SegmentTest::element(QByteArray const& content) const
{
    QByteArray const name(kind.name);
    return '<' + name + '>' + content + "</" + name + '>';
}

QByteArray SegmentTest::coordinate(int index, QByteArray const& attributes) const
{
    return QByteArray("<") + kind.coordinates.at(index).letter + ' ' + attributes + "/>";
}

QByteArray SegmentTest::countingContent(QByteArray const& gap) const
{
    QByteArray content = gap;
    for (int i = 0; i < realCount(); ++i)
        content += coordinate(i, "B=\"0\" V=\"" + QByteArray::number(i + 1) + '"') + gap;
    return content;
}

QByteArray SegmentTest::streamText(KpPathSeg& seg)
{
    QByteArray text;
    XmlStreamWriter writer(&text);
    seg.saveTo(writer);
    return text;
}

QString SegmentTest::domMeaning(KpPathSeg& seg)
{
    QDomDocument document;
    QDomElement geometry = document.createElement("Geometry");
    document.appendChild(geometry);
    seg.saveTo(geometry);
    return OutlineTesting::meaning(geometry.firstChildElement());
}

void SegmentTest::isBornBoundInProportion()
{
    auto const seg = create();
    QCOMPARE(seg->type, kind.type);
    for (int i = 0; i < realCount(); ++i)
        QCOMPARE(exact(real(seg, i)), exact(KpReal(kind.coordinates.at(i).rule, 0.0, 0.0)));
}

void SegmentTest::knowsTheOwnerGiven()
{
    QCOMPARE(create()->owner, nullptr);
    KpPathSegList list;
    std::unique_ptr<KpPathSeg> const seg(kind.create(&list));
    QCOMPARE(seg->owner, &list);
    QCOMPARE(list.segs.count(), 0);
}

void SegmentTest::castsToItsOwnKindOnly()
{
    auto const seg = create();
    KpPathSeg* const asCurve = seg->toCurveTo();
    KpPathSeg* const asEllipse = seg->toEllipse();
    QCOMPARE(asCurve, kind.type == KpPathSeg::SegCurveTo ? seg.get() : nullptr);
    QCOMPARE(asEllipse, kind.type == KpPathSeg::SegEllipse ? seg.get() : nullptr);
}

void SegmentTest::cloneHasEveryFieldAndNoOwner()
{
    KpPathSegList list;
    std::unique_ptr<KpPathSeg> const seg(kind.create(&list));
    for (int i = 0; i < realCount(); ++i)
        real(seg, i) = KpReal(kind.coordinates.at(i).rule, i + 0.25, i + 0.5);
    // Any rule of a point is copied; those of radii are the ellipse's own matter.
    seg->pt.x.base = 7;
    seg->pt.y.base = -300;

    std::unique_ptr<KpPathSeg> const copy(seg->clone());
    QVERIFY(copy.get() != seg.get());
    QCOMPARE(exact(*copy), exact(*seg));
    QCOMPARE(copy->owner, nullptr);
    QCOMPARE(seg->owner, &list);
    copy->translate(1.0, 1.0);
    QVERIFY(exact(*copy) != exact(*seg));
}

void SegmentTest::translateMovesItsPoints()
{
    auto const seg = filledWith({5, 0.25, 10.0});
    seg->translate(3.0, -4.0);
    for (int i = 0; i < realCount(); ++i) {
        double const moved = i % 2 == 0 ? 13.0 : 6.0;
        QCOMPARE(exact(real(seg, i)),
            exact(KpReal(5, 0.25, kind.coordinates.at(i).moves ? moved : 10.0)));
    }
}

void SegmentTest::applyTransformMapsItsPoints()
{
    auto const seg = filledWith({5, 0.25, 10.0});
    // A quarter turn with a scale and a shift: (x, y) goes to (5 - 2y, 3x + 7).
    seg->applyTransform(QMatrix(0.0, 3.0, -2.0, 0.0, 5.0, 7.0));
    for (int i = 0; i < realCount(); ++i) {
        double const mapped = i % 2 == 0 ? -15.0 : 37.0;
        QCOMPARE(exact(real(seg, i)),
            exact(KpReal(5, 0.25, kind.coordinates.at(i).moves ? mapped : 10.0)));
    }
}

void SegmentTest::updateValueReachesEveryReal_data()
{
    QTest::addColumn<int>("base");
    QTest::addColumn<double>("value");
    QTest::newRow("absolute") << 0 << 9.0;
    QTest::newRow("part of the width") << 1 << 40.0;
    QTest::newRow("part of the height") << 2 << 20.0;
    QTest::newRow("offset from the width") << 3 << 79.5;
    QTest::newRow("offset from the height") << 4 << 39.5;
    QTest::newRow("part of the smaller side") << 5 << 20.0;
    QTest::newRow("width less a part") << 6 << 60.0;
    QTest::newRow("height less a part") << 7 << 20.0;
    QTest::newRow("no rule") << 8 << 9.0;
    QTest::newRow("no rule, negative") << -1 << 9.0;
}

void SegmentTest::updateValueReachesEveryReal()
{
    QFETCH(int, base);
    QFETCH(double, value);
    for (int bound = 0; bound < realCount(); ++bound) {
        auto const seg = filledWith({0, 0.5, 9.0});
        real(seg, bound).base = qint16(base);
        seg->updateValue(80.0, 40.0);
        for (int i = 0; i < realCount(); ++i) {
            QCOMPARE(exact(real(seg, i)),
                exact(i == bound ? KpReal(qint16(base), 0.5, value) : KpReal(0, 0.5, 9.0)));
        }
    }
}

void SegmentTest::updateRateReachesEveryReal()
{
    double const rates[] = {9.0, 0.25, 0.5, 9.0, 9.0, 9.0, 9.0, 9.0, 9.0};
    for (qint16 base = 0; base <= 8; ++base) {
        for (int bound = 0; bound < realCount(); ++bound) {
            auto const seg = filledWith({0, 9.0, 30.0});
            real(seg, bound).base = base;
            seg->updateRate(120.0, 60.0);
            for (int i = 0; i < realCount(); ++i) {
                QCOMPARE(exact(real(seg, i)),
                    exact(i == bound ? KpReal(base, rates[base], 30.0) : KpReal(0, 9.0, 30.0)));
            }
        }
    }
}

void SegmentTest::collapsedBoxKeepsEveryRate()
{
    auto const seg = create();
    for (int i = 0; i < realCount(); ++i)
        real(seg, i) = KpReal(kind.coordinates.at(i).rule, 0.75, 30.0);
    QString const before = exact(*seg);
    seg->updateRate(0.0, 0.0);
    QCOMPARE(exact(*seg), before);
    seg->updateRate(0.001, 0.001);
    QCOMPARE(exact(*seg), before);
    seg->updateRate(notANumber, -5.0);
    QCOMPARE(exact(*seg), before);
}

void SegmentTest::writesCoordinatesInOrder()
{
    QByteArray content;
    for (int i = 0; i < realCount(); ++i)
        content += coordinate(i, "V=\"" + QByteArray::number(i + 1) + '"');
    auto const seg = counting();
    QCOMPARE(streamText(*seg), element(content));
    QCOMPARE(
        domMeaning(*seg), OutlineTesting::meaning(domDocument(element(content)).documentElement()));
}

void SegmentTest::writesEachReal_data()
{
    QTest::addColumn<KpReal>("written");
    QTest::addColumn<QByteArray>("attributes");
    struct Row
    {
        char const* name;
        KpReal real;
        char const* attributes;
    };
    Row const rows[] = {
        {"absolute has its value only", {0, 0.5, 120}, "V=\"120\""},
        {"bound has all three", {1, 0.5, 120}, "V=\"120\" B=\"1\" P=\"0.5\""},
        {"bound with no rate yet", {2, 0, 40}, "V=\"40\" B=\"2\" P=\"0\""},
        {"greatest base", {32767, 1, 2}, "V=\"2\" B=\"32767\" P=\"1\""},
        {"least base", {-32768, 1, 2}, "V=\"2\" B=\"-32768\" P=\"1\""},
        {"base without a rule", {-1, 1, 2}, "V=\"2\" B=\"-1\" P=\"1\""},
        {"rounded value", {0, 0, 123.456789}, "V=\"123.457\""},
        {"rounded rate", {3, 1.0 / 3.0, -7}, "V=\"-7\" B=\"3\" P=\"0.333333\""},
        {"great and small", {4, 0.00001234, 1234567}, "V=\"1.23457e+06\" B=\"4\" P=\"1.234e-05\""},
        {"negative zeros", {1, -0.0, -0.0}, "V=\"0\" B=\"1\" P=\"0\""},
        {"no numbers", {1, notANumber, notANumber}, "V=\"nan\" B=\"1\" P=\"nan\""},
        {"infinities", {1, infinite, -infinite}, "V=\"-inf\" B=\"1\" P=\"inf\""},
    };
    for (Row const& row : rows)
        QTest::newRow(row.name) << row.real << QByteArray(row.attributes);
}

void SegmentTest::writesEachReal()
{
    QFETCH(KpReal, written);
    QFETCH(QByteArray, attributes);
    for (int special = 0; special < realCount(); ++special) {
        auto const seg = counting();
        real(seg, special) = written;
        QByteArray content;
        for (int i = 0; i < realCount(); ++i) {
            content +=
                coordinate(i, i == special ? attributes : "V=\"" + QByteArray::number(i + 1) + '"');
        }
        QCOMPARE(streamText(*seg), element(content));
        QCOMPARE(domMeaning(*seg),
            OutlineTesting::meaning(domDocument(element(content)).documentElement()));
    }
}

void SegmentTest::domWriterAppendsToTheElementGiven()
{
    QDomDocument document = domDocument("<Root><Before/><Geometry><First/></Geometry></Root>");
    QDomElement geometry = document.documentElement().lastChildElement();
    auto const seg = create();
    seg->saveTo(geometry);
    seg->saveTo(geometry);

    QStringList names;
    for (QDomElement child = geometry.firstChildElement(); !child.isNull();
         child = child.nextSiblingElement()) {
        names << child.tagName();
        QVERIFY(child.ownerDocument() == document);
    }
    QCOMPARE(names, QStringList({"First", kind.name, kind.name}));
    QDomElement const written = geometry.lastChildElement();
    QCOMPARE(written.attributes().count(), 0);
    QCOMPARE(written.childNodes().count(), realCount());
    QCOMPARE(document.documentElement().childNodes().count(), 2);
}

void SegmentTest::readsAttributes_data()
{
    QTest::addColumn<QByteArray>("attributes");
    QTest::addColumn<KpReal>("dom");
    QTest::addColumn<KpReal>("stream");

    // Every reading starts from {5, 0.25, 7}.
    struct Row
    {
        char const* name;
        char const* attributes;
        KpReal dom;
        KpReal stream;
    };
    Row const rows[] = {
        {"none", "", {5, 0.25, 7}, {5, 0.25, 7}},
        {"all", "V='42' B='3' P='0.5'", {3, 0.5, 42}, {3, 0.5, 42}},
        {"all, in another order", "P='0.5' B='3' V='42'", {3, 0.5, 42}, {3, 0.5, 42}},
        {"value only", "V='42'", {5, 0.25, 42}, {5, 0.25, 42}},
        {"base only", "B='3'", {3, 0.25, 7}, {3, 0.25, 7}},
        {"rate only", "P='0.5'", {5, 0.5, 7}, {5, 0.5, 7}},
        {"base 0 with a rate", "V='1' B='0' P='0.5'", {0, 0.5, 1}, {0, 0.5, 1}},
        {"lower-case names", "v='1' b='1' p='1'", {5, 0.25, 7}, {5, 0.25, 7}},
        {"unknown names", "Q='1' VV='2' V='42'", {5, 0.25, 42}, {5, 0.25, 42}},
        {"names with a prefix", "xmlns:p='urn:p' p:V='1' p:B='1' p:P='1'", {5, 0.25, 7},
            {5, 0.25, 7}},
        {"empty value", "V=''", {5, 0.25, 7}, {5, 0.25, 0}},
        {"empty base", "B=''", {5, 0.25, 7}, {0, 0.25, 7}},
        {"empty rate", "P=''", {5, 0.25, 7}, {5, 0, 7}},
        {"all empty", "V='' B='' P=''", {5, 0.25, 7}, {0, 0, 0}},
        {"value of letters", "V='abc'", {5, 0.25, 0}, {5, 0.25, 0}},
        {"base of letters", "B='abc'", {0, 0.25, 7}, {0, 0.25, 7}},
        {"rate of letters", "P='abc'", {5, 0, 7}, {5, 0, 7}},
        {"value with a tail", "V='12abc'", {5, 0.25, 0}, {5, 0.25, 0}},
        {"value with a comma", "V='1,5'", {5, 0.25, 0}, {5, 0.25, 0}},
        {"value with a grouped thousand", "V='1,000'", {5, 0.25, 0}, {5, 0.25, 0}},
        {"value in hexadecimal", "V='0x10'", {5, 0.25, 0}, {5, 0.25, 0}},
        {"value with an exponent", "V='1.5e3'", {5, 0.25, 1500}, {5, 0.25, 1500}},
        {"value with a great exponent letter", "V='1.5E3'", {5, 0.25, 1500}, {5, 0.25, 1500}},
        {"value with a sign", "V='-1.5'", {5, 0.25, -1.5}, {5, 0.25, -1.5}},
        {"value in white space", "V=' 5 '", {5, 0.25, 5}, {5, 0.25, 5}},
        {"value of white space", "V=' '", {5, 0.25, 0}, {5, 0.25, 0}},
        {"rate in white space", "P=' 0.5 '", {5, 0.5, 7}, {5, 0.5, 7}},
        {"infinite value", "V='inf'", {5, 0.25, infinite}, {5, 0.25, infinite}},
        {"value of minus infinity", "V='-inf'", {5, 0.25, -infinite}, {5, 0.25, -infinite}},
        {"value is no number", "V='nan'", {5, 0.25, notANumber}, {5, 0.25, notANumber}},
        {"infinite rate", "P='inf'", {5, infinite, 7}, {5, infinite, 7}},
        {"rate is no number", "P='nan'", {5, notANumber, 7}, {5, notANumber, 7}},
        {"value too great", "V='1e400'", {5, 0.25, infinite}, {5, 0.25, infinite}},
        {"value too small", "V='1e-400'", {5, 0.25, 0}, {5, 0.25, 0}},
        {"value in character references", "V='&#49;&#x32;'", {5, 0.25, 12}, {5, 0.25, 12}},
        {"value of an entity", "V='&amp;'", {5, 0.25, 0}, {5, 0.25, 0}},
        {"base in white space", "B=' 3 '", {3, 0.25, 7}, {3, 0.25, 7}},
        {"base with a sign", "B='+3'", {3, 0.25, 7}, {3, 0.25, 7}},
        {"base below the rules", "B='-1'", {-1, 0.25, 7}, {-1, 0.25, 7}},
        {"base above the rules", "B='8'", {8, 0.25, 7}, {8, 0.25, 7}},
        {"base with a fraction", "B='3.0'", {0, 0.25, 7}, {0, 0.25, 7}},
        {"base with an exponent", "B='1e1'", {0, 0.25, 7}, {0, 0.25, 7}},
        {"base in hexadecimal", "B='0x3'", {0, 0.25, 7}, {0, 0.25, 7}},
        {"base with leading zeros", "B='010'", {10, 0.25, 7}, {10, 0.25, 7}},
        {"base of 32767", "B='32767'", {32767, 0.25, 7}, {32767, 0.25, 7}},
        {"base of 32768", "B='32768'", {-32768, 0.25, 7}, {-32768, 0.25, 7}},
        {"base of -32769", "B='-32769'", {32767, 0.25, 7}, {32767, 0.25, 7}},
        {"base of 65536", "B='65536'", {0, 0.25, 7}, {0, 0.25, 7}},
        {"base of 70000", "B='70000'", {4464, 0.25, 7}, {4464, 0.25, 7}},
        {"base of the greatest int", "B='2147483647'", {-1, 0.25, 7}, {-1, 0.25, 7}},
        {"base of the least int", "B='-2147483648'", {0, 0.25, 7}, {0, 0.25, 7}},
        {"base beyond int", "B='2147483649'", {0, 0.25, 7}, {0, 0.25, 7}},
        {"base far beyond int", "B='99999999999'", {0, 0.25, 7}, {0, 0.25, 7}},
    };
    for (Row const& row : rows)
        QTest::newRow(row.name) << QByteArray(row.attributes) << row.dom << row.stream;
}

void SegmentTest::readsAttributes()
{
    QFETCH(QByteArray, attributes);
    QFETCH(KpReal, dom);
    QFETCH(KpReal, stream);
    KpReal const before(5, 0.25, 7);
    for (int read = 0; read < realCount(); ++read) {
        QByteArray const xml = element(coordinate(read, attributes));
        auto const fromDom = filledWith(before);
        QVERIFY(parseDom(*fromDom, xml));
        auto const fromStream = filledWith(before);
        QVERIFY(parseStream(*fromStream, xml));
        for (int i = 0; i < realCount(); ++i) {
            QCOMPARE(exact(real(fromDom, i)), exact(i == read ? dom : before));
            QCOMPARE(exact(real(fromStream, i)), exact(i == read ? stream : before));
        }
    }
}

void SegmentTest::readsInAnyOrder()
{
    QVector<int> order(realCount());
    std::iota(order.begin(), order.end(), 0);
    QString const expected = exact(*counting());
    int permutations = 0;
    do {
        QByteArray content;
        for (int const i : qAsConst(order))
            content += coordinate(i, "B='0' V='" + QByteArray::number(i + 1) + '\'');
        auto const fromDom = create();
        QVERIFY(parseDom(*fromDom, element(content)));
        QCOMPARE(exact(*fromDom), expected);
        auto const fromStream = create();
        QVERIFY(parseStream(*fromStream, element(content)));
        QCOMPARE(exact(*fromStream), expected);
        ++permutations;
    } while (std::next_permutation(order.begin(), order.end()));
    QVERIFY(permutations >= 2);
}

void SegmentTest::stepsOverWhatItDoesNotKnow_data()
{
    QByteArray foreign;
    for (char const letter : {'X', 'Y', 'A', 'B', 'C', 'D', 'E'}) {
        bool const own = std::any_of(kind.coordinates.begin(), kind.coordinates.end(),
            [letter](TestedCoordinate const& c) { return c.letter == letter; });
        if (!own)
            foreign += QByteArray("<") + letter + " V='99' B='3' P='9'/>";
    }
    QByteArray const own = coordinate(0, "V='99' B='3' P='9'");

    QTest::addColumn<QByteArray>("gap");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("white space") << QByteArray("\n\t  \r\n");
    QTest::newRow("text") << QByteArray("X V='99'");
    QTest::newRow("character references") << QByteArray("&#88;&lt;X/&gt;&amp;");
    QTest::newRow("comment") << QByteArray("<!-- <X V='99'/> -->");
    QTest::newRow("CDATA") << QByteArray("<![CDATA[<X V='99'/></LineTo>]]>");
    QTest::newRow("processing instruction") << QByteArray("<?X V='99'?>");
    QTest::newRow("all sorts of content") << QByteArray(" a<!--b-->c<?d e?><![CDATA[f]]> ");
    QTest::newRow("letters of no real") << foreign;
    QTest::newRow("lower-case letters") << QByteArray("<x V='99'/><y V='99'/><a V='99'/>");
    QTest::newRow("longer names") << QByteArray("<XX V='99'/><X1 V='99'/><AX V='99'/>");
    QTest::newRow("unknown element") << QByteArray("<Rect V='99' B='3'/>");
    QTest::newRow("unknown element around coordinates") << "<Rect>" + own + "</Rect>";
    QTest::newRow("unknown elements, deep")
        << "<P><Q>t" + own + "<R>" + own + "</R></Q></P>" + QByteArray("<S/>");
    QTest::newRow("element of its own name") << element(own);
    QTest::newRow("elements of its own name, deep") << element(element(own) + element(own));
    QTest::newRow("empty element of its own name") << element("");
    QTest::newRow("elements of the other kinds") << "<MoveTo>" + own + "</MoveTo><LineTo>" + own
            + "</LineTo><CurveTo>" + own + "</CurveTo><Ellipse>" + own + "</Ellipse>";
    QTest::newRow("outline") << "<Geometry Closed='1'>" + element(own) + "</Geometry>";
}

void SegmentTest::stepsOverWhatItDoesNotKnow()
{
    QFETCH(QByteArray, gap);
    QByteArray const xml = element(countingContent(gap));
    QString const expected = exact(*counting());

    auto const fromDom = create();
    QVERIFY(parseDom(*fromDom, xml));
    QCOMPARE(exact(*fromDom), expected);

    auto const fromStream = create();
    QXmlStreamReader reader("<Root>" + xml + "<After/></Root>");
    QVERIFY(reader.readNextStartElement() && reader.readNextStartElement());
    QVERIFY(fromStream->parse(reader, 0));
    QCOMPARE(exact(*fromStream), expected);
    QVERIFY(reader.isEndElement());
    QCOMPARE(reader.name().toString(), QString(kind.name));
    QVERIFY(reader.readNextStartElement());
    QCOMPARE(reader.name().toString(), QString("After"));
}

void SegmentTest::ignoresWhatStandsInACoordinate()
{
    QByteArray content;
    for (int i = 0; i < realCount(); ++i) {
        QByteArray const letter(1, kind.coordinates.at(i).letter);
        content += '<' + letter + " B='0' V='" + QByteArray::number(i + 1) + "'>text"
            + coordinate(i, "V='99'") + coordinate(0, "V='98'") + "<!-- --></" + letter + '>';
    }
    QString const expected = exact(*counting());
    auto const fromDom = create();
    QVERIFY(parseDom(*fromDom, element(content)));
    QCOMPARE(exact(*fromDom), expected);
    auto const fromStream = create();
    QVERIFY(parseStream(*fromStream, element(content)));
    QCOMPARE(exact(*fromStream), expected);
}

void SegmentTest::missingCoordinatesStayAsTheyWere()
{
    KpReal const before(-5, 0.25, 7);
    for (int missing = 0; missing < realCount(); ++missing) {
        QByteArray content;
        for (int i = 0; i < realCount(); ++i) {
            if (i != missing)
                content += coordinate(i, "V='1' B='2' P='3'");
        }
        auto const fromDom = filledWith(before);
        QVERIFY(parseDom(*fromDom, element(content)));
        auto const fromStream = filledWith(before);
        QVERIFY(parseStream(*fromStream, element(content)));
        for (int i = 0; i < realCount(); ++i) {
            KpReal const expected = i == missing ? before : KpReal(2, 3, 1);
            QCOMPARE(exact(real(fromDom, i)), exact(expected));
            QCOMPARE(exact(real(fromStream, i)), exact(expected));
        }
    }
}

void SegmentTest::emptyElementChangesNothing_data()
{
    QTest::addColumn<QByteArray>("xml");
    QByteArray const name(kind.name);
    QTest::newRow("no content") << element("");
    QTest::newRow("one tag") << '<' + name + "/>";
    QTest::newRow("text") << element(" text ");
    QTest::newRow("comment") << element("<!-- comment -->");
    QTest::newRow("attributes") << '<' + name + " V='99' B='3' P='9' X='1'/>";
}

void SegmentTest::emptyElementChangesNothing()
{
    QFETCH(QByteArray, xml);
    QString const before = exact(*filledWith({5, 0.25, 7}));

    auto const fromDom = filledWith({5, 0.25, 7});
    QVERIFY(parseDom(*fromDom, xml));
    QCOMPARE(exact(*fromDom), before);

    auto const fromStream = filledWith({5, 0.25, 7});
    QXmlStreamReader reader("<Root>" + xml + "<After/></Root>");
    QVERIFY(reader.readNextStartElement() && reader.readNextStartElement());
    QVERIFY(fromStream->parse(reader, 0));
    QCOMPARE(exact(*fromStream), before);
    QVERIFY(reader.isEndElement());
    QCOMPARE(reader.name().toString(), QString(kind.name));
    QVERIFY(reader.readNextStartElement());
    QCOMPARE(reader.name().toString(), QString("After"));
}

void SegmentTest::repeatedCoordinateCountsAsTheReaderSays()
{
    KpReal const before(5, 0.25, 7);
    for (int repeated = 0; repeated < realCount(); ++repeated) {
        QByteArray const content = coordinate(repeated, "V='1' B='3'")
            + coordinate((repeated + 1) % realCount(), "V='50'") + coordinate(repeated, "V='2'");
        auto const fromDom = filledWith(before);
        QVERIFY(parseDom(*fromDom, element(content)));
        QCOMPARE(
            exact(real(fromDom, repeated)), exact(KpReal(3, 0.25, kind.domTakesFirst ? 1 : 2)));
        auto const fromStream = filledWith(before);
        QVERIFY(parseStream(*fromStream, element(content)));
        QCOMPARE(exact(real(fromStream, repeated)), exact(KpReal(3, 0.25, 2)));

        // The first of a letter counts even when it says nothing.
        QByteArray const emptyFirst = coordinate(repeated, "") + coordinate(repeated, "V='2'");
        auto const late = filledWith(before);
        QVERIFY(parseDom(*late, element(emptyFirst)));
        QCOMPARE(exact(real(late, repeated)), exact(KpReal(5, 0.25, kind.domTakesFirst ? 7 : 2)));
    }
}

void SegmentTest::nullElementChangesNothing()
{
    auto const seg = filledWith({5, 0.25, 7});
    QString const before = exact(*seg);
    QCOMPARE(seg->parse(QDomElement(), 0), kind.readsNull);
    QCOMPARE(exact(*seg), before);
}

void SegmentTest::contextIsNotExamined_data()
{
    QTest::addColumn<unsigned int>("context");
    QTest::newRow("0") << 0U;
    QTest::newRow("1") << 1U;
    QTest::newRow("the greatest") << std::numeric_limits<unsigned int>::max();
}

void SegmentTest::contextIsNotExamined()
{
    QFETCH(unsigned int, context);
    QByteArray const xml = element(countingContent());
    auto const fromDom = create();
    QVERIFY(parseDom(*fromDom, xml, context));
    QCOMPARE(exact(*fromDom), exact(*counting()));
    auto const fromStream = create();
    QVERIFY(parseStream(*fromStream, xml, context));
    QCOMPARE(exact(*fromStream), exact(*counting()));
}

void SegmentTest::truncatedInputKeepsWhatWasComplete()
{
    QByteArray xml = QByteArray("<") + kind.name + '>';
    int const startTagEnd = xml.size();
    QVector<int> coordinateEnds;
    for (int i = 0; i < realCount(); ++i) {
        xml += " <!--c-->" + coordinate(i, "B='0' V='" + QByteArray::number(i + 1) + '\'');
        coordinateEnds << xml.size();
    }
    xml += QByteArray("</") + kind.name + '>';

    for (int length = 0; length <= xml.size(); ++length) {
        ExactlySized const prefix(xml.left(length));
        QXmlStreamReader reader(prefix.bytes());
        bool const onStartTag = reader.readNextStartElement();
        QCOMPARE(onStartTag, length >= startTagEnd);

        auto const seg = create();
        QVERIFY(seg->parse(reader, 0));
        auto const expected = create();
        for (int i = 0; i < realCount(); ++i) {
            if (coordinateEnds.at(i) <= length)
                real(expected, i) = KpReal(0, 0.0, i + 1.0);
        }
        QCOMPARE(exact(*seg), exact(*expected));
        bool const whole = length == xml.size();
        QCOMPARE(reader.isEndElement(), whole);
        QCOMPARE(reader.error(),
            whole ? QXmlStreamReader::NoError : QXmlStreamReader::PrematureEndOfDocumentError);
    }
}

void SegmentTest::truncatedDomReadsNothingElse()
{
    QByteArray const xml = element(countingContent(" "));
    auto const whole = counting();
    for (int length = 0; length <= xml.size(); ++length) {
        ExactlySized const prefix(xml.left(length));
        QDomDocument document;
        QCOMPARE(document.setContent(prefix.bytes()), length == xml.size());
        auto const seg = create();
        auto const untouched = create();
        seg->parse(document.documentElement(), 0);
        for (int i = 0; i < realCount(); ++i) {
            bool const read = exact(real(seg, i)) == exact(real(whole, i));
            QVERIFY(
                read || (length < xml.size() && exact(real(seg, i)) == exact(real(untouched, i))));
        }
    }
}

void SegmentTest::randomSegmentsReadBackRounded()
{
    QRandomGenerator random = Testing::seededRandom(20200229);
    for (int round = 0; round < 500; ++round) {
        auto const seg = create();
        auto const expected = create();
        for (int i = 0; i < realCount(); ++i) {
            real(seg, i) = OutlineTesting::randomReal(random);
            real(expected, i) = readBack(real(seg, i), real(expected, i));
        }
        QByteArray const text = streamText(*seg);
        QDomDocument const document = domDocument(text);
        QCOMPARE(domMeaning(*seg), OutlineTesting::meaning(document.documentElement()));

        auto const fromStream = create();
        QVERIFY(parseStream(*fromStream, text));
        QVERIFY2(exact(*fromStream) == exact(*expected), text.constData());
        auto const fromDom = create();
        QVERIFY(fromDom->parse(document.documentElement(), 0));
        QVERIFY2(exact(*fromDom) == exact(*expected), text.constData());
    }
}

#include "moc_segmenttesting.cpp"
