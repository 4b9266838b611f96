// SPDX-License-Identifier: MIT
#include "kpgeomtesting.h"
#include "outlinetesting.h"
#include "presettesting.h"

using namespace KpgeomTesting;

class TestKpgeomPresets : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aDocumentForEachShape();
    void whatIsNotWholeIsSaid();
    void adjustmentsAreTaken();
    void anAdjustmentOfNoShapeIsSaid();
    void faultyShapesAreLeftOut();
    void aShapeDefinedAgainIsLeftOut();
    void aShapeThatDrawsNothingIsLeftOut();
    void standardInputIsRead();
    void badInputFails_data();
    void badInputFails();
    void aFolderThatCannotBeMadeFails();
    void misuse_data();
    void misuse();
    void customShapesBecomeOneDocument();
    void customShapesThatAreNotWholeAreSaid();
    void customShapesWithoutABoxGetOne();
    void customShapesGoToStandardOutput();
    void customShapesWithoutAnyLineFail();
    void everyPresetOfTheStandardIsWritten_data();
    void everyPresetOfTheStandardIsWritten();
};

namespace {

QByteArray path(QByteArray const& x, QByteArray const& y)
{
    return "<pathLst><path><moveTo><pt x='l' y='t'/></moveTo><lnTo><pt x='" + x + "' y='" + y
        + "'/></lnTo></path></pathLst>";
}

QByteArray guides(QByteArray const& formula)
{
    return "<avLst><gd name='adj' fmla='val 25000'/></avLst><gdLst><gd name='x' fmla='" + formula
        + "'/></gdLst>";
}

/** A preset whose only line ends where the formula says. */
QByteArray preset(QByteArray const& name, QByteArray const& formula)
{
    return "<" + name + ">" + guides(formula) + path("x", "b") + "</" + name + ">";
}

QByteArray const side = preset("side", "*/ ss adj 100000");
QByteArray const switching = preset("switching", "min w hd2");

QStringList converting(QStringList const& more = {})
{
    return QStringList {"convert", "--presets", "in.xml", "-o", "out"} + more;
}

QByteArray customShape(QByteArray const& extent, QByteArray const& content)
{
    return "<p:sp xmlns:p='urn:p' xmlns:a='urn:a'><p:nvSpPr><p:cNvPr "
           "name='mine'/></p:nvSpPr><p:spPr>"
        + extent + "<a:custGeom>" + content + "</a:custGeom></p:spPr></p:sp>";
}

} // namespace

void TestKpgeomPresets::aDocumentForEachShape()
{
    Workplace place;
    place.write("in.xml", "<presets>" + side + preset("third", "*/ w 1 3") + "</presets>");
    Result const result = place.run(converting());
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.err, QByteArray());
    QList<QByteArray> const lines = result.out.split('\n');
    QCOMPARE(lines.at(0), QByteArray("shape  coordinates  exact  worst error"));
    QVERIFY(lines.at(1).startsWith("side             4      4  "));
    QVERIFY(lines.at(2).startsWith("third            4      4  "));
    QCOMPARE(lines.at(4), QByteArray("2 shapes, 2 whole; 8 coordinates, 8 exact"));
    QCOMPARE(place.entries(), (QStringList {"in.xml", "out"}));
    QCOMPARE(QDir(place.path("out")).entryList(QDir::Files, QDir::Name),
        (QStringList {"side.xml", "third.xml"}));
    QCOMPARE(place.read("out/side.xml"), QByteArray(R"(<?xml version="1.0" encoding="UTF-8"?>
<Shapes>
 <Shape Name="side" Width="12000" Height="9000">
  <Geometry Closed="0">
   <MoveTo>
    <X V="0" B="1" P="0"/>
    <Y V="0" B="2" P="0"/>
   </MoveTo>
   <LineTo>
    <X V="2250" B="5" P="0.25"/>
    <Y V="9000" B="2" P="1"/>
   </LineTo>
  </Geometry>
 </Shape>
</Shapes>
)"));
}

void TestKpgeomPresets::whatIsNotWholeIsSaid()
{
    Workplace place;
    place.write("in.xml", "<presets>\n" + side + "\n" + switching + "</presets>");
    Result const result = place.run(converting());
    COMPARE_EXIT(result, 3);
    QCOMPARE(result.err,
        QByteArray(
            "in.xml:3:11: switching: 1 of 4 coordinates follow no rule; the worst, X of "
            "segment 2 in outline 1, is off by 0.25 of the longer side in a box of 5455.96 x "
            "21823.8\n"));
    QVERIFY(result.out.contains("\nswitching            4      3         0.25\n"));
    QVERIFY(result.out.endsWith("\n2 shapes, 1 whole; 8 coordinates, 7 exact\n"));
    QVERIFY(place.read("out/switching.xml").contains("<X V=\"4500\" B=\"2\" P=\"0.5\"/>"));
}

void TestKpgeomPresets::adjustmentsAreTaken()
{
    Workplace place;
    place.write("in.xml", "<presets>" + side + "</presets>");
    COMPARE_EXIT(place.run(converting({"--adjust", "adj=5e3", "--adjust", "adj=12500"})), 0);
    QVERIFY(place.read("out/side.xml").contains("B=\"5\" P=\"0.125\""));
}

void TestKpgeomPresets::anAdjustmentOfNoShapeIsSaid()
{
    Workplace place;
    place.write("in.xml", "<presets>" + side + "</presets>");
    Result const result = place.run(converting({"--adjust", "y=1", "--adjust", "x=1"}));
    COMPARE_EXIT(result, 3);
    QCOMPARE(result.err,
        QByteArray("in.xml: no shape has an adjustment 'x'\n"
                   "in.xml: no shape has an adjustment 'y'\n"));
}

void TestKpgeomPresets::faultyShapesAreLeftOut()
{
    Workplace place;
    place.write("in.xml", "<presets>\n" + preset("bad", "pow 1 2") + "\n" + side + "</presets>");
    Result const result = place.run(converting());
    COMPARE_EXIT(result, 3);
    QCOMPARE(
        result.err, QByteArray("in.xml:2:89: guide 'x': 'pow' is no operator: shape left out\n"));
    QVERIFY(result.out.endsWith("\n1 shape, 1 whole; 4 coordinates, 4 exact\n"));
    QVERIFY(!QFile::exists(place.path("out/bad.xml")));
}

void TestKpgeomPresets::aShapeDefinedAgainIsLeftOut()
{
    Workplace place;
    place.write("in.xml", "<presets>\n" + side + "\n" + preset("side", "val 1") + "</presets>");
    Result const result = place.run(converting());
    COMPARE_EXIT(result, 3);
    QCOMPARE(result.err, QByteArray("in.xml:3:6: side is defined again: left out\n"));
    QVERIFY(place.read("out/side.xml").contains("B=\"5\" P=\"0.25\""));
}

void TestKpgeomPresets::aShapeThatDrawsNothingIsLeftOut()
{
    Workplace place;
    place.write(
        "in.xml", "<presets>\n<none><pathLst><path/></pathLst></none>" + side + "</presets>");
    Result const result = place.run(converting());
    COMPARE_EXIT(result, 3);
    QCOMPARE(result.err, QByteArray("in.xml:2:6: none draws nothing: left out\n"));
    QVERIFY(!QFile::exists(place.path("out/none.xml")));
}

void TestKpgeomPresets::standardInputIsRead()
{
    Workplace place;
    Workplace::Start start;
    start.input = "<presets>" + side + "</presets>";
    COMPARE_EXIT(place.run({"convert", "--presets", "-", "-o", "new/folder"}, start), 0);
    QVERIFY(QFile::exists(place.path("new/folder/side.xml")));
}

void TestKpgeomPresets::badInputFails_data()
{
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<QByteArray>("message");
    QTest::newRow("no shape") << QByteArray("<presets/>")
                              << QByteArray("in.xml: no shape is defined in it");
    QTest::newRow("cut short") << QByteArray("<presets>")
                               << QByteArray("in.xml:1:10: Premature end of document.");
    QTest::newRow("empty") << QByteArray() << QByteArray("in.xml:1:1: Premature end of document.");
    QTest::newRow("a picture") << QByteArray("\x89PNG\r\n\x1a\n")
                               << QByteArray("in.xml: a PNG picture, not an XML document");
}

void TestKpgeomPresets::badInputFails()
{
    QFETCH(QByteArray, input);
    QFETCH(QByteArray, message);
    Workplace place;
    place.write("in.xml", input);
    COMPARE_FAILURE(place.run(converting()), 1, message);
    QCOMPARE(place.entries(), QStringList {"in.xml"});
}

void TestKpgeomPresets::aFolderThatCannotBeMadeFails()
{
    Workplace place;
    place.write("in.xml", "<presets>" + side + "</presets>");
    place.write("out", "a file");
    COMPARE_FAILURE(place.run(converting()), 1, "out: cannot be made a folder");
    COMPARE_FAILURE(place.run({"convert", "--presets", "missing.xml", "-o", "out"}), 1,
        "missing.xml: No such file or directory");
}

void TestKpgeomPresets::misuse_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("message");
    auto const adjusting = [](QString const& text) { return converting({"--adjust", text}); };
    QByteArray const form = "--adjust takes NAME=VALUE, not '";
    QTest::newRow("no value") << adjusting("adj") << form + "adj'";
    QTest::newRow("no name") << adjusting("=5") << form + "=5'";
    QTest::newRow("no number") << adjusting("adj=x") << form + "adj=x'";
    QTest::newRow("infinite") << adjusting("adj=inf") << form + "adj=inf'";
    QTest::newRow("an input beside")
        << converting({"a.svg"}) << QByteArray("--presets takes no input file beside its own");
    QTest::newRow("an option of pictures")
        << converting({"--scale", "2"}) << QByteArray("--scale does not go with --presets");
    QTest::newRow("no folder") << QStringList {"convert", "--presets", "in.xml"}
                               << QByteArray("no output folder given (-o)");
    QTest::newRow("adjusting a picture") << QStringList {"convert", "a.svg", "--adjust", "a=1",
        "-o", "b.xml"} << QByteArray("--adjust goes with --presets");
}

void TestKpgeomPresets::misuse()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, message);
    Workplace place;
    COMPARE_FAILURE(
        place.run(arguments), 2, "kpgeom convert: " + message + " (see kpgeom convert --help)");
    QCOMPARE(place.entries(), QStringList());
}

void TestKpgeomPresets::customShapesBecomeOneDocument()
{
    Workplace place;
    QByteArray const extent = "<a:xfrm><a:off x='5' y='5'/><a:ext cx='400' cy='300'/></a:xfrm>";
    QByteArray const one = customShape(extent, path("r", "b"));
    place.write("in.xml", "<sld>" + one + one + "</sld>");
    Result const result = place.run({"convert", "in.xml", "-o", "out.xml"});
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.out + result.err, QByteArray());
    QByteArray const text = place.read("out.xml");
    QCOMPARE(text.count("<Shape Name=\"mine\" Width=\"400\" Height=\"300\">"), 2);
    QCOMPARE(text.count("<X V=\"400\" B=\"1\" P=\"1\"/>"), 2);
}

void TestKpgeomPresets::customShapesThatAreNotWholeAreSaid()
{
    Workplace place;
    place.write("in.xml",
        customShape("<xfrm><ext cx='100' cy='100'/></xfrm>", guides("min w hd2") + path("x", "b")));
    Result const result = place.run({"convert", "in.xml", "-o", "out.xml"});
    COMPARE_EXIT(result, 3);
    QCOMPARE(result.err,
        QByteArray(
            "in.xml:1:138: mine: 1 of 4 coordinates follow no rule; the worst, X of segment 2 "
            "in outline 1, is off by 0.25 of the longer side in a box of 52.5 x 210\n"));
    QVERIFY(place.read("out.xml").contains("<X V=\"50\" B=\"2\" P=\"0.5\"/>"));
}

void TestKpgeomPresets::customShapesWithoutABoxGetOne()
{
    Workplace place;
    place.write("in.xml", customShape("", path("r", "b")));
    COMPARE_EXIT(place.run({"convert", "in.xml", "-o", "out.xml"}), 0);
    QVERIFY(place.read("out.xml").contains("Width=\"12000\" Height=\"9000\""));
}

void TestKpgeomPresets::customShapesGoToStandardOutput()
{
    Workplace place;
    Workplace::Start start;
    start.input = customShape("<xfrm><ext cx='40' cy='30'/></xfrm>", path("r", "b"));
    Result const result = place.run({"convert", "-", "-o", "-"}, start);
    COMPARE_EXIT(result, 0);
    QVERIFY(result.out.startsWith("<?xml"));
    QVERIFY(result.out.contains("Width=\"40\" Height=\"30\""));
}

void TestKpgeomPresets::customShapesWithoutAnyLineFail()
{
    Workplace place;
    place.write("in.xml", customShape("", "<pathLst><path/></pathLst>"));
    Result const result = place.run({"convert", "in.xml", "-o", "out.xml"});
    COMPARE_EXIT(result, 1);
    QCOMPARE(result.err,
        QByteArray("in.xml:1:101: mine draws nothing: left out\n"
                   "in.xml: nothing in it becomes an outline\n"));
    QCOMPARE(place.entries(), QStringList {"in.xml"});
}

void TestKpgeomPresets::everyPresetOfTheStandardIsWritten_data()
{
    PresetTesting::addFile();
}

void TestKpgeomPresets::everyPresetOfTheStandardIsWritten()
{
    QFETCH(QString, file);
    QVERIFY2(QFile::exists(file), qPrintable(file));
    Workplace place;
    Result const result = place.run({"convert", "--presets", file, "-o", "out"});
    COMPARE_EXIT(result, 3);
    QVERIFY(result.out.endsWith("\n187 shapes, 138 whole; 7946 coordinates, 6379 exact\n"));
    QCOMPARE(result.err.count('\n'), 187 - 138);
    QStringList const documents = QDir(place.path("out")).entryList(QDir::Files);
    QCOMPARE(documents.size(), 187);
    QVERIFY(place.read("out/roundRect.xml").contains("B=\"5\" P=\"0.16667\""));
}

QTEST_GUILESS_MAIN(TestKpgeomPresets)

#include "tst_kpgeom_presets.moc"
