// SPDX-License-Identifier: MIT
#include "document/documentnormalizer.h"

#include "check/outlinecheck.h"
#include "check/outlinediff.h"
#include "document/bindingrule.h"
#include "document/markup.h"
#include "document/shapes.h"
#include "documenttesting.h"
#include "numbertext_p.h"
#include "segmentkind_p.h"

using namespace DocumentTesting;

namespace {

QByteArray const declaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

QByteArray normal(QByteArray const& text, Diagnostics& diagnostics)
{
    QBuffer result;
    result.open(QIODevice::WriteOnly);
    bool const isDone = normalizeDocument(repeatableInput(text), "a.xml", result, diagnostics);
    return isDone ? result.data() : QByteArray();
}

QByteArray normal(QByteArray const& text)
{
    Diagnostics diagnostics;
    return normal(text, diagnostics);
}

/** What documents can hold of an outline, and what means something. */
QString meaning(KpPathSegList const& list)
{
    QString text =
        QString("closed %1 noFill %2 noLine %3").arg(list.closed).arg(list.noFill).arg(list.noLine);
    for (KpPathSeg* const seg : list.segs) {
        text += QString("\n%1").arg(seg->type);
        SegmentKind::forEachReal(*seg, [&text](KpReal const& real) {
            text += QString(" %1:%2").arg(real.base).arg(NumberText::fromReal(real.value));
            if (real.base != KpReal::Absolute)
                text += ':' + NumberText::fromReal(real.rate);
        });
    }
    return text;
}

QStringList readByDom(QByteArray const& xml)
{
    QStringList lists;
    OutlineDocument const document = documentOf(xml);
    for (Outline const& outline : document.outlines())
        lists << meaning(*outline.list);
    return lists;
}

/** Those that do not stand in other outlines, whose readers skip these. */
QStringList readByDomOutermost(QByteArray const& xml)
{
    QStringList lists;
    OutlineDocument const document = documentOf(xml);
    for (Outline const& outline : document.outlines()) {
        if (!outline.isInside)
            lists << meaning(*outline.list);
    }
    return lists;
}

QStringList readByStream(QByteArray const& xml)
{
    QStringList lists;
    QXmlStreamReader reader(xml);
    while (!reader.atEnd()) {
        reader.readNext();
        if (!reader.isStartElement() || reader.qualifiedName() != QLatin1String("Geometry"))
            continue;
        KpPathSegList list;
        lists << (list.parse(reader, 0) ? meaning(list) : "refused");
    }
    return reader.hasError() ? QStringList("error") : lists;
}

/** What stands outside of outlines: names, attributes, texts. */
QString foreignMeaning(std::vector<MarkupNode> const& nodes)
{
    QString text;
    for (MarkupNode const& node : nodes) {
        if (node.kind == MarkupNode::Kind::Element) {
            QStringList attributes;
            for (MarkupAttribute const& attribute : node.attributes)
                attributes << attribute.name + '=' + attribute.value;
            attributes.sort();
            bool const isOutline = node.name == "Geometry";
            text += '<' + node.name + (isOutline ? "" : attributes.join(' ')) + '>';
            text += isOutline ? "" : foreignMeaning(node.children);
            text += "</>";
        } else if (!isBlank(node.text) || node.kind != MarkupNode::Kind::Text) {
            text += QString("{%1 %2 %3}")
                        .arg(static_cast<int>(node.kind))
                        .arg(node.name, collapsed(node.text));
        }
    }
    return text;
}

QByteArray point(QByteArray const& x, QByteArray const& y = "<Y V=\"0\" B=\"0\"/>")
{
    return "<Geometry Closed=\"1\"><MoveTo>" + x + y + "</MoveTo></Geometry>";
}

} // namespace

class TestDocumentNormalizer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void spellsOutlinesInOneWay_data();
    void spellsOutlinesInOneWay();
    void spellsNumbersAsTheFormatDoes_data();
    void spellsNumbersAsTheFormatDoes();
    void keepsWhatIsForeign_data();
    void keepsWhatIsForeign();
    void keepsTheDocumentAround();
    void keepsForeignPartsOfOutlines();
    void flagsStandAgainstTheDocumentType();
    void tellsWhatItLeavesOut();
    void cutsLongNames_data();
    void cutsLongNames();
    void tellsRounding();
    void writersOutputStaysAsItIs();
    void keepsTheMeaningForBothReaders();
    void keepsTheMeaningOfRandomOutlines();
};

void TestDocumentNormalizer::spellsOutlinesInOneWay_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("result");
    auto const row = [](char const* name, QByteArray const& text, QByteArray const& result) {
        QTest::newRow(name) << text << declaration + result;
    };
    row("no segments", "<Geometry\n></Geometry>", "<Geometry Closed=\"0\"/>\n");
    row("flags", "<Geometry NoLine=\"TRUE\" NoFill=\"true\" Closed='1'/>",
        "<Geometry Closed=\"1\" NoFill=\"1\" NoLine=\"1\"/>\n");
    row("clear flags", "<Geometry NoLine=\"0\" NoFill=\"no\" Closed=\"FALSE\"/>",
        "<Geometry Closed=\"0\"/>\n");
    row("absolute coordinates", point("<X P=\"7\" B=\"0\" V=\"5.0\"/>"),
        "<Geometry Closed=\"1\">\n <MoveTo>\n  <X V=\"5\" B=\"0\"/>\n  <Y "
        "V=\"0\" B=\"0\"/>\n "
        "</MoveTo>\n"
        "</Geometry>\n");
    row("missing coordinates",
        "<Geometry Closed=\"1\"><LineTo/><Ellipse><B "
        "V=\"1\"/></Ellipse></Geometry>",
        "<Geometry Closed=\"1\">\n"
        " <LineTo>\n  <X V=\"0\" B=\"1\" P=\"0\"/>\n  <Y V=\"0\" B=\"2\" "
        "P=\"0\"/>\n </LineTo>\n"
        " <Ellipse>\n  <X V=\"0\" B=\"1\" P=\"0\"/>\n  <Y V=\"0\" B=\"2\" "
        "P=\"0\"/>\n"
        "  <A V=\"0\" B=\"1\" P=\"0\"/>\n  <B V=\"1\" B=\"2\" P=\"0\"/>\n "
        "</Ellipse>\n"
        "</Geometry>\n");
    row("order",
        "<Geometry Closed=\"1\"><CurveTo><D V=\"6\"/><B V=\"4\"/><X V=\"1\"/><C "
        "V=\"5\"/>"
        "<Y V=\"2\"/><A V=\"3\"/></CurveTo></Geometry>",
        "<Geometry Closed=\"1\">\n <CurveTo>\n  <X V=\"1\" B=\"1\" P=\"0\"/>\n  "
        "<Y V=\"2\" B=\"2\" "
        "P=\"0\"/>\n"
        "  <A V=\"3\" B=\"1\" P=\"0\"/>\n  <B V=\"4\" B=\"2\" P=\"0\"/>\n  <C "
        "V=\"5\" B=\"1\" "
        "P=\"0\"/>\n"
        "  <D V=\"6\" B=\"2\" P=\"0\"/>\n </CurveTo>\n</Geometry>\n");
    row("given again", point("<X V=\"1\" B=\"0\"/><X V=\"2\" B=\"3\"/>"),
        "<Geometry Closed=\"1\">\n <MoveTo>\n  <X V=\"1\" B=\"0\"/>\n  <Y "
        "V=\"0\" B=\"0\"/>\n "
        "</MoveTo>\n"
        "</Geometry>\n");
    row("within elements", "<D><S>\n\n<Geometry/></S></D>",
        "<D>\n <S>\n  <Geometry Closed=\"0\"/>\n </S>\n</D>\n");
}

void TestDocumentNormalizer::spellsOutlinesInOneWay()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, result);
    QCOMPARE(QString(normal(text)), QString(result));
    QCOMPARE(QString(normal(result)), QString(result));
}

void TestDocumentNormalizer::spellsNumbersAsTheFormatDoes_data()
{
    QTest::addColumn<QByteArray>("attributes");
    QTest::addColumn<QByteArray>("result");
    auto const row = [](QByteArray const& attributes, QByteArray const& result) {
        QTest::newRow(attributes) << attributes << result;
    };
    row("V=\" 3.0E1 \" B=\"+01\" P=\".5\"", "V=\"30\" B=\"1\" P=\"0.5\"");
    row("V=\"1234567\" B=\"0\"", "V=\"1.23457e+06\" B=\"0\"");
    row("V=\"-0\" B=\"0\"", "V=\"0\" B=\"0\"");
    row("V=\"nan\" B=\"3\" P=\"-inf\"", "V=\"nan\" B=\"3\" P=\"-inf\"");
    row("V=\"x\" B=\"70000\"", "V=\"0\" B=\"4464\" P=\"0\"");
    row("V=\"\" B=\"\" P=\"\"", "V=\"0\" B=\"1\" P=\"0\"");
    row("", "V=\"0\" B=\"1\" P=\"0\"");
}

void TestDocumentNormalizer::spellsNumbersAsTheFormatDoes()
{
    QFETCH(QByteArray, attributes);
    QFETCH(QByteArray, result);
    QByteArray const text = normal(point("<X " + attributes + "/>"));
    QVERIFY2(text.contains("\n  <X " + result + "/>\n"), text.constData());
    QCOMPARE(QString(normal(text)), QString(text));
}

void TestDocumentNormalizer::keepsWhatIsForeign_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("result");
    auto const row = [](char const* name, QByteArray const& text, QByteArray const& result) {
        QTest::newRow(name) << "<D>" + text + "</D>" << declaration + "<D>" + result + "</D>\n";
    };
    row("attributes", "<E z=\"1\" A=\"&lt;&#10;\" p:b=\"3\" a=\"'\"/>",
        "\n <E A=\"&lt;&#10;\" a=\"'\" p:b=\"3\" z=\"1\"/>\n");
    row("elements", "<E><F/>\t<G> </G><H>\n</H></E>",
        "\n <E>\n  <F/>\n  <G> </G>\n  <H/>\n </E>\n");
    row("mixed content", "<E>a <b>c</b> <i> d</i>\n<F>\n</F></E>",
        "\n <E>a <b>c</b> <i> d</i>\n<F>\n</F></E>\n");
    row("preserved space", "<E xml:space=\"preserve\"> <F>\n</F> </E>",
        "\n <E xml:space=\"preserve\"> <F>\n</F> </E>\n");
    row("character data", "<E> <![CDATA[ <&]]> </E>", "\n <E> <![CDATA[ <&]]> </E>\n");
    row("carriage return", "<E>a&#13;b</E>\r\n", "\n <E>a&#13;b</E>\n");
    row("comments and instructions", "<!-- a\n b --><?go  on?><E/>",
        "\n <!-- a\n b -->\n <?go on?>\n <E/>\n");
    row("no-break space", "<E>\302\240</E>", "\n <E>\302\240</E>\n");
    row("outline beside text", "<E>a<Geometry/>b</E>", "\n <E>a<Geometry Closed=\"0\"/>b</E>\n");
    row("segments outside of outlines", "<LineTo B=\"1\" A=\"2\"><X V=\"1.0\"/></LineTo>",
        "\n <LineTo A=\"2\" B=\"1\">\n  <X V=\"1.0\"/>\n </LineTo>\n");
    row("shape", "<Shape Width=\"1\" Name=\"n\" Height=\"2\"/>",
        "\n <Shape Height=\"2\" Name=\"n\" Width=\"1\"/>\n");
}

void TestDocumentNormalizer::keepsWhatIsForeign()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, result);
    QCOMPARE(QString(normal(text)), QString(result));
    QCOMPARE(QString(normal(result)), QString(result));
}

void TestDocumentNormalizer::keepsTheDocumentAround()
{
    QByteArray const text = "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n<!-- "
                            "before -->\n"
                            "<?style of=\"old\"?>\n<!DOCTYPE D SYSTEM \"d.dtd\" [\n <!ENTITY e "
                            "\"text\">\n]>\n<D/>\n<!-- after -->\n";
    QCOMPARE(QString(normal(text)), QString(text));
    QCOMPARE(QString(normal("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><D>\xe4</D>")),
        QString(declaration + "<D>\u00e4</D>\n"));
}

void TestDocumentNormalizer::keepsForeignPartsOfOutlines()
{
    QByteArray const text =
        "<Geometry id=\"g\" Closed=\"1\" a=\"1\">text  in it<!-- first -->"
        "<MoveTo id=\"m\" V=\"1\"><!-- y --><Y B=\"0\" unit=\"px\" V=\"2\"/><!-- "
        "x -->"
        "<X V=\"1\" B=\"0\"> a <Note/></X><!-- end --></MoveTo><Arc b=\"1\" "
        "a=\"2\"><X V=\"1\"/>"
        "</Arc><Geometry/></Geometry>";
    QByteArray const result = declaration + R"(<Geometry Closed="1" a="1" id="g">
 text in it
 <!-- first -->
 <MoveTo V="1" id="m">
  <!-- x -->
  <X V="1" B="0">
   a
   <Note/>
  </X>
  <!-- y -->
  <Y V="2" B="0" unit="px"/>
  <!-- end -->
 </MoveTo>
 <Arc a="2" b="1">
  <X V="1"/>
 </Arc>
 <Geometry Closed="0"/>
</Geometry>
)";
    Diagnostics diagnostics;
    QCOMPARE(QString(normal(text, diagnostics)), QString(result));
    QVERIFY(diagnostics.isEmpty());
    QCOMPARE(QString(normal(result)), QString(result));
}

void TestDocumentNormalizer::flagsStandAgainstTheDocumentType()
{
    QByteArray const type = "<!DOCTYPE D [<!ATTLIST Geometry NoFill CDATA \"1\" a CDATA \"2\">]>";
    QByteArray const text = type + "<D><Geometry Closed=\"1\"/><Geometry NoFill=\"0\"/></D>";
    QByteArray const result = normal(text);
    QCOMPARE(QString(result),
        QString(declaration + type
            + "\n<D>\n <Geometry Closed=\"1\" NoFill=\"1\" NoLine=\"0\"/>\n"
              " <Geometry Closed=\"0\" NoFill=\"0\" NoLine=\"0\"/>\n</D>\n"));
    QCOMPARE(readByDom(result), readByDom(text));
    QCOMPARE(QString(normal(result)), QString(result));
}

void TestDocumentNormalizer::tellsWhatItLeavesOut()
{
    Diagnostics diagnostics;
    QByteArray const text =
        normal("<D xmlns:p=\"urn:p\"><Geometry Closed=\"1\">\n<p:LineTo><X "
               "V=\"1\"/></p:LineTo>"
               "<p:Arc/><MoveTo><p:A V=\"1\"/>\n<p:X V=\"1\"/></MoveTo></Geometry></D>",
            diagnostics);
    QVERIFY2(normal("<Geometry xmlns:p=\"urn:p\"><LineTo>a<X V=\"0\"/>b<X V=\"1\"/> "
                    "c<p:Y/>d</LineTo></Geometry>")
                 .contains("\n  b c d\n"),
        text.constData());
    QVERIFY2(text.contains(" <p:Arc/>\n"), text.constData());
    QVERIFY2(text.contains(" <p:A V=\"1\"/>\n"), text.constData());
    QVERIFY2(!text.contains("p:LineTo") && !text.contains("p:X"), text.constData());
    QCOMPARE(diagnostics.size(), 2);
    QCOMPARE(diagnostics.at(0).text,
        QString("element p:LineTo is left out: the stream reader takes it "
                "for LineTo"));
    QCOMPARE(diagnostics.at(0).line, qint64(2));
    QCOMPARE(diagnostics.at(0).column, qint64(10));
    QCOMPARE(diagnostics.at(1).text,
        QString("element p:X is left out: the stream reader takes it for X"));
    QCOMPARE(diagnostics.at(1).line, qint64(3));
}

void TestDocumentNormalizer::cutsLongNames_data()
{
    QTest::addColumn<int>("prefix"); // its characters; ":X" follows
    QTest::addColumn<QString>("shown");
    QTest::newRow("longest") << 38 << QString(38, 'p') + ":X";
    QTest::newRow("longer") << 39 << QString(39, 'p') + QChar(0x2026);
}

void TestDocumentNormalizer::cutsLongNames()
{
    QFETCH(int, prefix);
    QFETCH(QString, shown);
    QByteArray const name(prefix, 'p');
    Diagnostics diagnostics;
    normal("<Geometry xmlns:" + name + "=\"urn:p\"><MoveTo><" + name
            + ":X V=\"1\"/></MoveTo></Geometry>",
        diagnostics);
    QCOMPARE(diagnostics.size(), 1);
    QCOMPARE(diagnostics.at(0).text,
        "element " + shown + " is left out: the stream reader takes it for X");
}

void TestDocumentNormalizer::tellsRounding()
{
    Diagnostics diagnostics;
    normal(point("<X V=\"1.234567\" B=\"0\" P=\"1.234567\"/>",
               "<Y V=\"-1e-7\" B=\"3\" P=\"123456.5\"/>"),
        diagnostics);
    QCOMPARE(diagnostics.size(), 1);
    QCOMPARE(diagnostics.at(0).text, QString("rounded to six digits: 2 numbers"));
    Diagnostics none;
    normal(point("<X V=\"nan\" B=\"1\" P=\"inf\"/>", "<Y V=\"0.1\" B=\"2\" P=\"123456\"/>"), none);
    QVERIFY(none.isEmpty());
}

void TestDocumentNormalizer::writersOutputStaysAsItIs()
{
    auto const list = std::make_shared<KpPathSegList>();
    list->noFill = true;
    for (qint16 base = -1; base <= 8; ++base) {
        list->addTail(
            new KpPathSegLineTo(KpPoint(KpReal(base, 0.25, 7.5), KpReal(base, 1e-7, -3)), nullptr));
    }
    // But for the order of the attributes around the outline.
    QByteArray text = shapesDocument({{"a", QSizeF(3, 4), std::nullopt, list}});
    text.replace("Name=\"a\" Width=\"3\" Height=\"4\"", "Height=\"4\" Name=\"a\" Width=\"3\"");
    QCOMPARE(QString(normal(text)), QString(text));
}

void TestDocumentNormalizer::keepsTheMeaningForBothReaders()
{
    QRandomGenerator random = Testing::seededRandom(31);
    OddDocuments documents(random);
    int outlines = 0;
    int unlike = 0;
    for (int round = 0; round < 800; ++round) {
        QByteArray const text = documents.next();
        Diagnostics diagnostics;
        QByteArray const result = normal(text, diagnostics);
        QByteArray const both = text + "\n" + result;
        QStringList const read = readByDom(text);
        outlines += read.size();
        unlike += readByStream(text) == readByDomOutermost(text) ? 0 : 1;
        QVERIFY2(readByDom(result) == read, both.constData());
        QVERIFY2(readByStream(result) == readByDomOutermost(result), both.constData());
        QVERIFY2(foreignMeaning(markupOf(result).nodes) == foreignMeaning(markupOf(text).nodes),
            both.constData());
        QVERIFY2(findingsIn(result, CheckScope::Reading).isEmpty(), both.constData());
        Diagnostics none;
        QCOMPARE(QString(normal(result, none)), QString(result));
        QVERIFY2(none.isEmpty(), both.constData());
        reportDifferences(documentOf(text), documentOf(result), std::nullopt,
            [&both](OutlineDifference const& difference) {
                QTest::qFail(
                    qPrintable(differenceText(difference) + '\n' + both), __FILE__, __LINE__);
                return false;
            });
    }
    // They are as odd as they should be.
    QVERIFY(outlines > 800);
    QVERIFY(unlike > 100);
}

void TestDocumentNormalizer::keepsTheMeaningOfRandomOutlines()
{
    QRandomGenerator random = Testing::seededRandom(32);
    for (int round = 0; round < 300; ++round) {
        auto const list = std::make_shared<KpPathSegList>();
        OutlineTesting::fillRandomly(*list, random.bounded(20), random);
        QByteArray const saved = "<D>" + OutlineTesting::streamXml(*list) + "</D>";
        QByteArray const whole = shapesDocument({{"a", QSizeF(1, 1), std::nullopt, list}});
        for (QByteArray const& text : {saved, whole}) {
            QByteArray const result = normal(text);
            QCOMPARE(readByDom(result), readByDom(text));
            QCOMPARE(readByStream(result), readByDom(text));
            QCOMPARE(normal(result), result);
        }
        // Of what the tool writes nothing is lost.
        QCOMPARE(readByDom(normal(whole)), QStringList(meaning(*list)));
    }
}

QTEST_GUILESS_MAIN(TestDocumentNormalizer)

#include "tst_documentnormalizer.moc"
