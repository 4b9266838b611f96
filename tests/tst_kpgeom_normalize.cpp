// SPDX-License-Identifier: MIT
#include "kpgeomtesting.h"

#include <QStandardPaths>

using namespace KpgeomTesting;

/** `kpgeom normalize`: output and exit status. What is written is tested in tst_documentnormalizer. */
class TestKpgeomNormalize : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writesToStandardOutput();
    void writesTheFileThatIsNamed();
    void readsStandardInput();
    void warnsOfWhatIsLostToSight_data();
    void warnsOfWhatIsLostToSight();
    void keepsQuietOfWhatStays();
    void warnsOfPictures();
    void wrongUsageIsTold_data();
    void wrongUsageIsTold();
    void badInputIsTold();
    void gitShowsTheCoordinateThatChanged();
};

namespace {

QByteArray const document = "<D><Geometry NoFill='true' Closed='1'><MoveTo><Y B='4' V='5.0' P='1'/>"
                            "<X V='1' B='0'/></MoveTo></Geometry></D>";

QByteArray const normalDocument = R"(<?xml version="1.0" encoding="UTF-8"?>
<D>
 <Geometry Closed="1" NoFill="1">
  <MoveTo>
   <X V="1" B="0"/>
   <Y V="5" B="4" P="1"/>
  </MoveTo>
 </Geometry>
</D>
)";

QByteArray geometry(QByteArray const& content)
{
    return "<Geometry Closed=\"1\">" + content + "</Geometry>";
}

/** What a command prints that is run in a folder; it must succeed. */
QByteArray outputOf(QString const& folder, QString const& program, QStringList const& arguments)
{
    QProcess process;
    process.setWorkingDirectory(folder);
    process.start(program, arguments);
    if (!process.waitForFinished() || process.exitCode() != 0)
        qFatal(
            "%s: %s", qPrintable(arguments.join(' ')), process.readAllStandardError().constData());
    return process.readAllStandardOutput();
}

} // namespace

void TestKpgeomNormalize::writesToStandardOutput()
{
    Workplace const place;
    place.write("a.xml", document);
    Result const result = place.run({"normalize", "a.xml"});
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.out, normalDocument);
    QCOMPARE(result.err, QByteArray());
    QCOMPARE(place.entries(), QStringList("a.xml"));
}

void TestKpgeomNormalize::writesTheFileThatIsNamed()
{
    Workplace const place;
    place.write("a.xml", document);
    Result const result = place.run({"normalize", "a.xml", "-o", "a.xml"});
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.out + result.err, QByteArray());
    QCOMPARE(place.read("a.xml"), normalDocument);
}

void TestKpgeomNormalize::readsStandardInput()
{
    Workplace const place;
    Workplace::Start start;
    start.input = document;
    Result const result = place.run({"normalize", "-", "--output", "-"}, start);
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.out, normalDocument);
}

void TestKpgeomNormalize::warnsOfWhatIsLostToSight_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<QByteArray>("warnings"); // "a.xml:" left out
    auto const row = [](char const* name, QByteArray const& xml, QByteArray const& warnings) {
        QTest::newRow(name) << xml << warnings;
    };
    QByteArray const y = "<Y V=\"0\" B=\"0\"/>";
    row("number that is none", geometry("<LineTo><X V=\"a\" B=\"0\"/>" + y + "</LineTo>"),
        "1:45: outline 1: X V=\"a\" is no number and reads as 0\n");
    row("flag that is none", "<Geometry Closed=\"yes\"/>",
        "1:24: outline 1: Closed=\"yes\" reads as false\n");
    row("missing coordinate", geometry("<LineTo>" + y + "</LineTo>"),
        "1:29: outline 1: X of LineTo is missing and reads as 0\n");
    row("given again",
        geometry("<LineTo><X V=\"1\" B=\"0\"/>" + y + "\n<X V=\"2\" B=\"0\"/></LineTo>"),
        "2:16: outline 1: X of LineTo is given again\n"
        "1:21: outline 1: the stream reader reads it otherwise: segment 1 X value 1 becomes 2\n");
    row("no attributes", "<Geometry/>",
        "1:11: outline 1: the stream reader refuses it: Geometry has no attributes\n");
    row("prefix", "<D xmlns:p=\"urn:p\">" + geometry("<p:Ellipse/>") + "</D>",
        "1:40: outline 1: the stream reader reads it otherwise: 0 segments become 1\n"
        "1:52: element p:Ellipse is left out: the stream reader takes it for Ellipse\n");
    row("digits", geometry("<LineTo><X V=\"1.234567\" B=\"0\"/>" + y + "</LineTo>"),
        " rounded to six digits: 1 number\n");
}

void TestKpgeomNormalize::warnsOfWhatIsLostToSight()
{
    QFETCH(QByteArray, xml);
    QFETCH(QByteArray, warnings);
    Workplace const place;
    place.write("a.xml", xml);
    Result const result = place.run({"normalize", "a.xml", "-o", "b.xml"});
    COMPARE_EXIT(result, 3);
    QCOMPARE(QString(result.err),
        QString(QByteArray(warnings).prepend("a.xml:").replace("\n", "\na.xml:").chopped(6)));
    Result const again = place.run({"normalize", "b.xml"});
    COMPARE_EXIT(again, 0);
    QCOMPARE(again.out, place.read("b.xml"));
    QCOMPARE(again.err, QByteArray());
}

void TestKpgeomNormalize::keepsQuietOfWhatStays()
{
    Workplace const place;
    place.write("a.xml",
        geometry("text<Arc/><Geometry Closed=\"1\"/><LineTo id=\"1\"><X V=\"nan\" B=\"8\" P=\"0\" "
                 "unit=\"px\"/>"
                 "<Y V=\"0\" B=\"0\" P=\"1.23456789\"><Note/></Y></LineTo>"));
    Result const result = place.run({"normalize", "a.xml"});
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.err, QByteArray());
}

void TestKpgeomNormalize::warnsOfPictures()
{
    Workplace const place;
    place.write("a.svg", "<svg><path/></svg>");
    Result const result = place.run({"normalize", "a.svg"});
    COMPARE_EXIT(result, 3);
    QCOMPARE(
        result.err, QByteArray("a.svg: an SVG picture: kpgeom convert makes a document of it\n"));
    QVERIFY(result.out.endsWith("<svg>\n <path/>\n</svg>\n"));
}

void TestKpgeomNormalize::wrongUsageIsTold_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("fault");
    QByteArray const one = "exactly one file is needed";
    QTest::newRow("no file") << QStringList() << one;
    QTest::newRow("two files") << QStringList({"a.xml", "a.xml"}) << one;
    QTest::newRow("output without a name")
        << QStringList({"a.xml", "-o", ""}) << QByteArray("the output file has no name (-o)");
}

void TestKpgeomNormalize::wrongUsageIsTold()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, fault);
    Workplace const place;
    place.write("a.xml", document);
    COMPARE_FAILURE(place.run(QStringList("normalize") + arguments), 2,
        "kpgeom normalize: " + fault + " (see kpgeom normalize --help)");
}

void TestKpgeomNormalize::badInputIsTold()
{
    Workplace const place;
    place.write("a.xml", document.left(50));
    place.write("b.xml", "kept");
    COMPARE_FAILURE(place.run({"normalize", "a.xml", "-o", "b.xml"}), 1,
        "a.xml:1:51: Premature end of document.");
    QCOMPARE(place.read("b.xml"), QByteArray("kept"));
}

void TestKpgeomNormalize::gitShowsTheCoordinateThatChanged()
{
    QString const git = QStandardPaths::findExecutable("git");
    QVERIFY2(!git.isEmpty(), "git is not installed");
    Workplace const place;
    auto const run = [&](QStringList const& arguments) {
        return outputOf(place.path(), git, QStringList({"-c", "safe.directory=*"}) + arguments);
    };
    run({"init", "-q"});
    // As docs/shapes.md has it, but for the place of the tool.
    run({"config", "diff.kpgeom.textconv",
        "f() { " KPGEOM_EXECUTABLE
        " normalize \"$1\" 2>/dev/null || [ $? = 3 ] || cat \"$1\"; }; f"});
    place.write(".gitattributes", "*.xml diff=kpgeom\n");
    place.write("a.xml", document);
    // With a warning, and no document at all.
    place.write("b.xml", "<D><Geometry NoFill='1'><Ellipse/></Geometry></D>");
    place.write("c.xml", "<D>\n<E>\n");
    run({"add", "."});
    place.write("a.xml", QByteArray(document).replace("5.0", "7"));
    place.write("b.xml", "<D><Geometry NoFill='1'><Ellipse><X V='1'/></Ellipse></Geometry></D>");
    place.write("c.xml", "<D>\n<F>\n");
    QString const shown = QString(run({"diff", "-U0"}));
    QStringList changed = shown.split('\n').filter(QRegularExpression("^[+-](?![+-])"));
    QCOMPARE(changed,
        QStringList({"-   <Y V=\"5\" B=\"4\" P=\"1\"/>", "+   <Y V=\"7\" B=\"4\" P=\"1\"/>",
            "-   <X V=\"0\" B=\"1\" P=\"0\"/>", "+   <X V=\"1\" B=\"1\" P=\"0\"/>", "-<E>",
            "+<F>"}));
}

QTEST_GUILESS_MAIN(TestKpgeomNormalize)

#include "tst_kpgeom_normalize.moc"
