// SPDX-License-Identifier: MIT
#include "kpgeomtesting.h"
#include "outlinetesting.h"
#include "segmentkind_p.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QXmlStreamReader>

using namespace KpgeomTesting;

/** `kpgeom render` where it makes no picture: pages and DrawingML. */
class TestKpgeomExport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void formatIsTakenFromTheSuffix_data();
    void formatIsTakenFromTheSuffix();
    void goesToStandardOutput_data();
    void goesToStandardOutput();
    void firstBoxOfAPage_data();
    void firstBoxOfAPage();
    void titleOfAPage_data();
    void titleOfAPage();
    void pointsAreAsked();
    void fillRuleOutweighsTheDocument_data();
    void fillRuleOutweighsTheDocument();
    void indexChoosesOutlines();
    void backgroundIsThatOfTheStage_data();
    void backgroundIsThatOfTheStage();
    void filesLieOverOneAnother();
    void filesBecomeShapes();
    void boxOfACustomShape_data();
    void boxOfACustomShape();
    void strangeOptionsAreRefused_data();
    void strangeOptionsAreRefused();
    void whatIsNoNumberIsDrawnInAPageAlone();
    void documentsWithoutOutlinesFail_data();
    void documentsWithoutOutlinesFail();
    void pageInTheDocumentationIsUpToDate();
    void examplesComeBackFromCustomShapes_data();
    void examplesComeBackFromCustomShapes();
};

namespace {

QByteArray shape(QByteArray const& attributes, QByteArray const& geometry = boxGeometry())
{
    return "<Shape " + attributes + ">" + geometry + "</Shape>";
}

QByteArray documentOf(QByteArray const& shapes)
{
    return "<Shapes>" + shapes + "</Shapes>";
}

/** What is in a page's data. */
QJsonObject dataOf(QByteArray const& page)
{
    QByteArray const begin = "id=\"data\">";
    int const from = page.indexOf(begin) + begin.size();
    return QJsonDocument::fromJson(page.mid(from, page.indexOf("</script>", from) - from)).object();
}

QString titleOf(QByteArray const& page)
{
    int const from = page.indexOf("<title>") + 7;
    return QString::fromUtf8(page.mid(from, page.indexOf("</title>", from) - from));
}

QStringList namesOf(QByteArray const& page)
{
    QStringList names;
    for (QJsonValue const& outline : dataOf(page).value("outlines").toArray())
        names << outline.toObject().value("name").toString();
    return names;
}

/** The values of an attribute of all elements with this qualified name. */
QStringList attributes(QByteArray const& xml, QString const& element, QString const& attribute)
{
    QStringList values;
    QXmlStreamReader reader(xml);
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isStartElement() && reader.qualifiedName() == element)
            values << reader.attributes().value(attribute).toString();
    }
    return reader.hasError() ? QStringList {reader.errorString()} : values;
}

} // namespace

void TestKpgeomExport::formatIsTakenFromTheSuffix_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("beginning");
    QByteArray const page = "<!DOCTYPE html>";
    QByteArray const drawing =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<p:spTree xmlns:p=\"http://schemas.";
    for (char const* const name : {"a.html", "a.htm", "A.HTML", "a.b.html"})
        QTest::newRow(name) << QStringList {"-o", name} << page;
    for (char const* const name : {"a.custgeom.xml", "a.CustGeom.XML"})
        QTest::newRow(name) << QStringList {"-o", name} << drawing;
    QTest::newRow("html outweighs") << QStringList {"-o", "a.svg", "--format", "HTML"} << page;
    QTest::newRow("custgeom outweighs")
        << QStringList {"-o", "a.html", "--format", "custgeom"} << drawing;
    QTest::newRow("svg outweighs")
        << QStringList {"-o", "a.html", "--format", "svg"} << QByteArray("<?xml version=\"1.0\"");
}

void TestKpgeomExport::formatIsTakenFromTheSuffix()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, beginning);
    Workplace place;
    place.write("in.xml", documentOf(shape("")));
    COMPARE_EXIT(place.run(QStringList {"render", "in.xml"} + arguments), 0);
    QByteArray const written = place.read(arguments.at(1));
    QVERIFY2(written.startsWith(beginning), written.left(100).constData());
}

void TestKpgeomExport::goesToStandardOutput_data()
{
    QTest::addColumn<QString>("format");
    QTest::newRow("page") << "html";
    QTest::newRow("DrawingML") << "custgeom";
}

void TestKpgeomExport::goesToStandardOutput()
{
    QFETCH(QString, format);
    Workplace place;
    place.write("in.xml", documentOf(shape("")));
    Result const toFile = place.run({"render", "in.xml", "-o", "out", "--format", format});
    COMPARE_EXIT(toFile, 0);
    Result const piped = place.run({"render", "in.xml", "-o", "-", "--format", format});
    COMPARE_EXIT(piped, 0);
    QCOMPARE(piped.out, place.read("out"));
    QVERIFY(piped.out.size() > 500);
}

void TestKpgeomExport::firstBoxOfAPage_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QJsonArray>("expected");
    QByteArray const named = shape("Width=\"120\" Height=\"80\"");
    QTest::newRow("asked for") << named << QStringList {"--size", "300x200.5"}
                               << QJsonArray {300, 200.5};
    QTest::newRow("named") << named << QStringList() << QJsonArray {120, 80};
    QTest::newRow("the drawing's") << shape("") << QStringList() << QJsonArray {100, 60};
    QTest::newRow("of two, the largest sides")
        << named + shape("Width=\"90\" Height=\"90\"") << QStringList() << QJsonArray {120, 90};
}

void TestKpgeomExport::firstBoxOfAPage()
{
    QFETCH(QByteArray, content);
    QFETCH(QStringList, arguments);
    QFETCH(QJsonArray, expected);
    Workplace place;
    place.write("in.xml", documentOf(content));
    COMPARE_EXIT(place.run(QStringList {"render", "in.xml", "-o", "a.html"} + arguments), 0);
    QCOMPARE(dataOf(place.read("a.html")).value("box").toArray(), expected);
}

void TestKpgeomExport::titleOfAPage_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QString>("expected");
    QTest::newRow("one outline") << QStringList {"one.xml"} << "Barn &amp; silo";
    QTest::newRow("several outlines") << QStringList {"two.old.xml"} << "two.old";
    QTest::newRow("several files")
        << QStringList {"one.xml", "two.old.xml"} << "Outlines of 2 files";
    QTest::newRow("input") << QStringList {"-"} << "standard input";
}

void TestKpgeomExport::titleOfAPage()
{
    QFETCH(QStringList, files);
    QFETCH(QString, expected);
    Workplace place;
    place.write("one.xml", documentOf(shape("Name=\"Barn &amp; silo\"")));
    place.write("two.old.xml", documentOf(shape("Name=\"a\"") + shape("Name=\"b\"")));
    Workplace::Start start;
    start.input = documentOf(shape(""));
    COMPARE_EXIT(
        place.run(QStringList {"render"} + files + QStringList {"-o", "a.html"}, start), 0);
    QCOMPARE(titleOf(place.read("a.html")), expected);
}

void TestKpgeomExport::pointsAreAsked()
{
    Workplace place;
    place.write("in.xml", documentOf(shape("")));
    COMPARE_EXIT(place.run({"render", "in.xml", "-o", "a.html"}), 0);
    QCOMPARE(dataOf(place.read("a.html")).value("points"), QJsonValue(false));
    COMPARE_EXIT(place.run({"render", "in.xml", "-o", "a.html", "--points"}), 0);
    QCOMPARE(dataOf(place.read("a.html")).value("points"), QJsonValue(true));
}

void TestKpgeomExport::fillRuleOutweighsTheDocument_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("as it says") << QStringList() << QStringList {"evenodd", "nonzero"};
    QTest::newRow("evenodd") << QStringList {"--fill-rule", "evenodd"}
                             << QStringList {"evenodd", "evenodd"};
    QTest::newRow("nonzero") << QStringList {"--fill-rule", "nonzero"}
                             << QStringList {"nonzero", "nonzero"};
}

void TestKpgeomExport::fillRuleOutweighsTheDocument()
{
    QFETCH(QStringList, arguments);
    QFETCH(QStringList, expected);
    Workplace place;
    place.write("in.xml", documentOf(shape("FillRule=\"evenodd\"") + shape("")));
    COMPARE_EXIT(place.run(QStringList {"render", "in.xml", "-o", "a.html"} + arguments), 0);
    QStringList rules;
    for (QJsonValue const& outline : dataOf(place.read("a.html")).value("outlines").toArray())
        rules << outline.toObject().value("fillRule").toString();
    QCOMPARE(rules, expected);
}

void TestKpgeomExport::indexChoosesOutlines()
{
    Workplace place;
    place.write(
        "in.xml", documentOf(shape("Name=\"a\"") + shape("Name=\"b\"") + shape("Name=\"c\"")));
    COMPARE_EXIT(
        place.run({"render", "in.xml", "-o", "a.html", "--index", "3", "--index", "1"}), 0);
    QCOMPARE(namesOf(place.read("a.html")), QStringList({"a", "c"}));
    COMPARE_EXIT(place.run({"render", "in.xml", "-o", "a.custgeom.xml", "--index", "2"}), 0);
    QCOMPARE(attributes(place.read("a.custgeom.xml"), "p:cNvPr", "name"), QStringList({"", "b"}));
    COMPARE_FAILURE(place.run({"render", "in.xml", "-o", "b.html", "--index", "4"}), 1,
        "in.xml: there is no outline 4 among its 3");
    QVERIFY(!place.entries().contains("b.html"));
}

void TestKpgeomExport::backgroundIsThatOfTheStage_data()
{
    QTest::addColumn<QString>("colour");
    QTest::addColumn<QByteArray>("style");
    QTest::addColumn<QByteArray>("stage");
    QTest::newRow("light") << "#fed" << QByteArray("--ground: rgba(255, 238, 221, 1);")
                           << QByteArray("<div id=\"stage\" class=\"on-light\">");
    QTest::newRow("dark") << "navy" << QByteArray("--ground: rgba(0, 0, 128, 1);")
                          << QByteArray("<div id=\"stage\" class=\"on-dark\">");
    QTest::newRow("none") << "none" << QByteArray() << QByteArray("<div id=\"stage\">");
    QTest::newRow("not given") << "" << QByteArray() << QByteArray("<div id=\"stage\">");
}

void TestKpgeomExport::backgroundIsThatOfTheStage()
{
    QFETCH(QString, colour);
    QFETCH(QByteArray, style);
    QFETCH(QByteArray, stage);
    Workplace place;
    place.write("in.xml", documentOf(shape("")));
    QStringList arguments {"render", "in.xml", "-o", "a.html"};
    if (!colour.isEmpty())
        arguments << "--background" << colour;
    COMPARE_EXIT(place.run(arguments), 0);
    QByteArray const page = place.read("a.html");
    QVERIFY(page.contains(style));
    QCOMPARE(page.count("--ground: rgba("), style.isEmpty() ? 0 : 1);
    QVERIFY(page.contains(stage));
}

void TestKpgeomExport::filesLieOverOneAnother()
{
    Workplace place;
    place.write("1.xml", documentOf(shape("Name=\"a\"") + shape("Name=\"b\"")));
    place.write("2.xml", documentOf(shape("Name=\"c\"")));
    COMPARE_EXIT(place.run({"render", "2.xml", "1.xml", "-o", "a.html"}), 0);
    QCOMPARE(namesOf(place.read("a.html")), QStringList({"c", "a", "b"}));
}

void TestKpgeomExport::filesBecomeShapes()
{
    Workplace place;
    place.write("1.xml", documentOf(shape("Name=\"a\"") + shape("Name=\"b\"")));
    place.write("2.xml", documentOf(shape("Name=\"c\"")));
    COMPARE_EXIT(place.run({"render", "1.xml", "2.xml", "-o", "a.custgeom.xml"}), 0);
    QByteArray const xml = place.read("a.custgeom.xml");
    QCOMPARE(attributes(xml, "p:cNvPr", "name"), QStringList({"", "1", "c"}));
    QCOMPARE(attributes(xml, "p:cNvPr", "id"), QStringList({"1", "2", "3"}));
    QCOMPARE(attributes(xml, "a:path", "fill").size(), 3);
    QVERIFY(xml.contains("<!-- a -->"));
    QVERIFY(xml.contains("<!-- b -->"));
}

void TestKpgeomExport::boxOfACustomShape_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("named") << QStringList() << QStringList {"1143000", "762000"};
    QTest::newRow("asked for") << QStringList {"--size", "240x100"}
                               << QStringList {"2286000", "952500"};
}

void TestKpgeomExport::boxOfACustomShape()
{
    QFETCH(QStringList, arguments);
    QFETCH(QStringList, expected);
    Workplace place;
    place.write("in.xml", documentOf(shape("Width=\"120\" Height=\"80\"")));
    COMPARE_EXIT(
        place.run(QStringList {"render", "in.xml", "-o", "a.custgeom.xml"} + arguments), 0);
    QByteArray const xml = place.read("a.custgeom.xml");
    QCOMPARE(attributes(xml, "a:ext", "cx") + attributes(xml, "a:ext", "cy"), expected);
}

void TestKpgeomExport::strangeOptionsAreRefused_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("fault");
    auto const row = [](QString const& output, QString const& options, QByteArray const& fault) {
        QTest::newRow(qPrintable(output + ' ' + options))
            << QStringList {"-o", output} + options.split(' ') << fault;
    };
    for (QString const& output : {QString("a.html"), QString("a.custgeom.xml")}) {
        QByteArray const what = output.mid(2).toUtf8();
        for (char const* const options : {"--scale 2", "--width 100", "--height 100", "--margin 0",
                 "--sheet", "--whole-files"}) {
            QByteArray const name = QByteArray(options).split(' ').first();
            row(output, options, name + " goes with pictures, not with " + what);
        }
        row(output, "--dpi 300", "--dpi goes with PNG: the other formats have no dots");
        row(output, "--size 1x1 --size 2x2", "only one --size goes with " + what);
        row(output, "--size 0x1", "--size takes a box like 240x160, not '0x1'");
    }
    row("a.html", "--background nothing", "--background takes a colour or none, not 'nothing'");
    for (char const* const options : {"--points", "--background white", "--fill-rule evenodd"}) {
        QByteArray const name = QByteArray(options).split(' ').first();
        row("a.custgeom.xml", options,
            name + " goes with pictures and html, not with custgeom.xml");
    }
    QByteArray const noFormat = "the format is none of svg, png, pdf, html and custgeom.xml";
    row("a.xml", "--index 1", noFormat);
    row("html", "--index 1", noFormat);
    row("a.html", "--format xml", noFormat);
}

void TestKpgeomExport::strangeOptionsAreRefused()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, fault);
    Workplace place;
    place.write("in.xml", documentOf(shape("")));
    COMPARE_FAILURE(place.run(QStringList {"render", "in.xml"} + arguments), 2,
        "kpgeom render: " + fault + " (see kpgeom render --help)");
    QCOMPARE(place.entries(), QStringList {"in.xml"});
}

/** A page leaves out what cannot be drawn; a program that reads DrawingML could not. */
void TestKpgeomExport::whatIsNoNumberIsDrawnInAPageAlone()
{
    Workplace place;
    place.write("in.xml",
        documentOf(shape("",
            "<Geometry Closed=\"1\"><MoveTo><X V=\"nan\" B=\"3\" P=\"nan\"/>"
            "<Y V=\"1e300\" B=\"0\"/></MoveTo></Geometry>")));
    Result const page = place.run({"render", "in.xml", "-o", "a.html"});
    COMPARE_EXIT(page, 0);
    QCOMPARE(page.err, QByteArray());
    QCOMPARE(dataOf(place.read("a.html")).value("box").toArray(), QJsonArray({100, 100}));
    COMPARE_FAILURE(place.run({"render", "in.xml", "-o", "a.custgeom.xml"}), 1,
        "in.xml: a coordinate is not a number or too large for DrawingML");
    QCOMPARE(place.entries(), QStringList({"a.html", "in.xml"}));
}

void TestKpgeomExport::documentsWithoutOutlinesFail_data()
{
    QTest::addColumn<QString>("output");
    QTest::newRow("page") << "a.html";
    QTest::newRow("DrawingML") << "a.custgeom.xml";
}

void TestKpgeomExport::documentsWithoutOutlinesFail()
{
    QFETCH(QString, output);
    Workplace place;
    place.write("in.xml", "<Shapes/>");
    COMPARE_FAILURE(place.run({"render", "in.xml", "-o", output}), 1, "in.xml: no outline to draw");
    QCOMPARE(place.entries(), QStringList {"in.xml"});
}

/** As scripts/demo --update-readme makes it. */
void TestKpgeomExport::pageInTheDocumentationIsUpToDate()
{
    Workplace place;
    QDir const top(KPGEOMETRY_TEST_DATA "/../..");
    QString const plate = top.filePath("examples/documents/plate.xml");
    COMPARE_EXIT(place.run({"render", plate, "-o", "shape.html"}), 0);
    QFile committed(top.filePath("docs/shape.html"));
    QVERIFY(committed.open(QIODevice::ReadOnly));
    QVERIFY(committed.readAll() == place.read("shape.html"));
}

namespace {

/** The outlines of a document in a box, each as "MLCE" of its segments and its reals. */
struct Evaluated
{
    QString kinds;
    QVector<double> reals;
};

QVector<Evaluated> evaluated(QByteArray const& xml, QSizeF const& box)
{
    QVector<Evaluated> outlines;
    QDomDocument const document = OutlineTesting::domDocument(xml);
    QDomNodeList const elements = document.elementsByTagName("Geometry");
    for (int i = 0; i < elements.size(); ++i) {
        KpPathSegList list;
        list.parse(elements.at(i).toElement(), 0);
        list.updateValue(box.width(), box.height());
        Evaluated outline;
        // An ellipse is closed with or without the flag, and comes back with it.
        bool const isClosed =
            list.closed || (list.segs.size() == 1 && list.segs.first()->toEllipse());
        outline.kinds = isClosed ? "closed " : "open ";
        for (KpPathSeg* const seg : qAsConst(list.segs)) {
            outline.kinds += QString::number(seg->type);
            SegmentKind::forEachReal(
                *seg, [&outline](KpReal const& real) { outline.reals << real.value; });
        }
        outlines << outline;
    }
    return outlines;
}

} // namespace

void TestKpgeomExport::examplesComeBackFromCustomShapes_data()
{
    QTest::addColumn<QString>("file");
    for (QFileInfo const& file : QDir(KPGEOMETRY_EXAMPLES).entryInfoList({"*.xml"}))
        QTest::newRow(qPrintable(file.completeBaseName())) << file.filePath();
    QVERIFY(QDir(KPGEOMETRY_EXAMPLES).entryList({"*.xml"}).size() >= 8);
}

void TestKpgeomExport::examplesComeBackFromCustomShapes()
{
    QFETCH(QString, file);
    Workplace const place;
    QSizeF const size(240, 160);
    COMPARE_EXIT(place.run({"render", file, "--size", "240x160", "-o", "shape.custgeom.xml"}), 0);
    COMPARE_EXIT(place.run({"convert", "shape.custgeom.xml", "-o", "back.xml"}), 0);
    QFile original(file);
    QVERIFY(original.open(QIODevice::ReadOnly));
    QByteArray const before = original.readAll();
    QByteArray const after = place.read("back.xml");
    double const unit = 9525.0;
    for (QSizeF const& box : {size, QSizeF(160, 240), QSizeF(640, 160), QSizeF(100, 400)}) {
        auto const expected = evaluated(before, box);
        auto const actual = evaluated(after, unit * box);
        QCOMPARE(actual.size(), expected.size());
        QVERIFY(!expected.isEmpty());
        for (int i = 0; i < expected.size(); ++i) {
            QCOMPARE(actual.at(i).kinds, expected.at(i).kinds);
            for (int r = 0; r < expected.at(i).reals.size(); ++r) {
                double const error =
                    std::abs(actual.at(i).reals.at(r) / unit - expected.at(i).reals.at(r));
                QVERIFY2(error <= 1e-5 * qMax(box.width(), box.height()),
                    qPrintable(
                        QString("outline %1, real %2 is off by %3").arg(i).arg(r).arg(error)));
            }
        }
    }
}

QTEST_GUILESS_MAIN(TestKpgeomExport)

#include "tst_kpgeom_export.moc"
