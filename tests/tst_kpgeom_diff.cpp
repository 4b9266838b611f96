// SPDX-License-Identifier: MIT
#include "kpgeomtesting.h"

using namespace KpgeomTesting;

/** `kpgeom diff`: output and exit status. What is compared is tested in tst_outlinediff. */
class TestKpgeomDiff : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sameDocumentsPrintNothing();
    void differencesArePrinted();
    void quietPrintsNothing();
    void jsonHoldsTheDifferences();
    void jsonOfTheSame();
    void troubleIsNoJson();
    void toleranceIsTaken();
    void oneSideMayBeStandardInput();
    void troubleIsNoDifference_data();
    void troubleIsNoDifference();
    void wrongUsageIsTold_data();
    void wrongUsageIsTold();
    void lostOutputIsTrouble();
    void readerMayLeave();
    void largeDocumentsAreCompared();
};

namespace {

QByteArray const box = "<D><S Name=\"door\">" + boxGeometry() + "</S></D>";

QByteArray wider()
{
    QByteArray text = box;
    return text.replace(
        "<X V=\"100\" B=\"1\" P=\"1\"/><Y V=\"60\"", "<X V=\"90\" B=\"3\" P=\"10\"/><Y V=\"60\"");
}

QByteArray const differenceOfX =
    ": outline 1 \"door\", segment 3 (LineTo), X: rule width -> right, rate 1 -> 10, value 100 -> "
    "90\n";

} // namespace

void TestKpgeomDiff::sameDocumentsPrintNothing()
{
    Workplace const place;
    place.write("a.xml", box);
    place.write("b.xml", "<?xml version='1.0'?>\n" + QByteArray(box).replace("><", ">\n  <"));
    Result const result = place.run({"diff", "a.xml", "b.xml"});
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.out, QByteArray());
    QCOMPARE(result.err, QByteArray());
}

void TestKpgeomDiff::differencesArePrinted()
{
    Workplace const place;
    place.write("a.xml", box);
    place.write(
        "b.xml", wider().replace("</D>", "<S Name=\"new\"><Geometry Closed=\"1\"/></S></D>"));
    Result const result = place.run({"diff", "a.xml", "b.xml"});
    COMPARE_EXIT(result, 1);
    QCOMPARE(result.out, "a.xml" + differenceOfX + "b.xml: outline 2 \"new\": only here\n");
    QCOMPARE(result.err, QByteArray());
}

void TestKpgeomDiff::quietPrintsNothing()
{
    Workplace const place;
    place.write("a.xml", box);
    place.write("b.xml", wider());
    for (QString const& option : {QString("-q"), QString("--quiet")}) {
        Result const different = place.run({"diff", option, "a.xml", "b.xml"});
        COMPARE_EXIT(different, 1);
        QCOMPARE(different.out + different.err, QByteArray());
        COMPARE_EXIT(place.run({"diff", option, "a.xml", "a.xml"}), 0);
    }
}

void TestKpgeomDiff::jsonHoldsTheDifferences()
{
    Workplace const place;
    place.write("a.xml", box);
    place.write(
        "b.xml", wider().replace("</D>", "<S Name=\"new\"><Geometry Closed=\"1\"/></S></D>"));
    Result const result = place.run({"diff", "--json", "a.xml", "b.xml"});
    COMPARE_EXIT(result, 1);
    QCOMPARE(result.err, QByteArray());
    QCOMPARE(result.out, QByteArray(R"({
    "after": "b.xml",
    "before": "a.xml",
    "same": false,
    "differences": [
        {
            "coordinate": "X",
            "kind": "LineTo",
            "name": "door",
            "outline": 1,
            "segment": 3,
            "side": "before",
            "what": "rule width -> right, rate 1 -> 10, value 100 -> 90"
        },
        {
            "coordinate": null,
            "kind": null,
            "name": "new",
            "outline": 2,
            "segment": null,
            "side": "after",
            "what": "only here"
        }
    ]
}
)"));
}

void TestKpgeomDiff::jsonOfTheSame()
{
    Workplace const place;
    place.write("a.xml", box);
    Result const result = place.run({"diff", "--json", "a.xml", "a.xml"});
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.out,
        QByteArray("{\n    \"after\": \"a.xml\",\n    \"before\": \"a.xml\",\n"
                   "    \"same\": true,\n    \"differences\": [\n    ]\n}\n"));
}

void TestKpgeomDiff::troubleIsNoJson()
{
    Workplace const place;
    place.write("a.xml", box);
    COMPARE_FAILURE(
        place.run({"diff", "--json", "a.xml", "none"}), 2, "none: No such file or directory");
    COMPARE_FAILURE(place.run({"diff", "--json", "-q", "a.xml", "a.xml"}), 2,
        "kpgeom diff: --quiet prints nothing, --json what differs (see kpgeom diff --help)");
}

void TestKpgeomDiff::toleranceIsTaken()
{
    Workplace const place;
    place.write("a.xml", box);
    place.write("b.xml", QByteArray(box).replace("V=\"60\"", "V=\"60.2\""));
    COMPARE_EXIT(place.run({"diff", "a.xml", "b.xml"}), 1);
    COMPARE_EXIT(place.run({"diff", "--tolerance", "0.1", "a.xml", "b.xml"}), 1);
    COMPARE_EXIT(place.run({"diff", "--tolerance", "0.25", "a.xml", "b.xml"}), 0);
}

void TestKpgeomDiff::oneSideMayBeStandardInput()
{
    Workplace const place;
    place.write("a.xml", box);
    Workplace::Start start;
    start.input = wider();
    Result const before = place.run({"diff", "a.xml", "-"}, start);
    COMPARE_EXIT(before, 1);
    QCOMPARE(before.out, "a.xml" + differenceOfX);
    start.input = box;
    place.write("b.xml", wider());
    Result const after = place.run({"diff", "-", "b.xml"}, start);
    COMPARE_EXIT(after, 1);
    QCOMPARE(after.out, "<stdin>" + differenceOfX);
}

void TestKpgeomDiff::troubleIsNoDifference_data()
{
    QTest::addColumn<QByteArray>("content"); // null: no such file
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("missing") << QByteArray() << QByteArray("b.xml: No such file or directory");
    QTest::newRow("empty") << QByteArray("") << QByteArray("b.xml:1:1: Premature end of document.");
    QTest::newRow("truncated") << box.left(30)
                               << QByteArray("b.xml:1:31: Premature end of document.");
    QTest::newRow("picture") << QByteArray("<svg xmlns='http://www.w3.org/2000/svg'/>")
                             << QByteArray("b.xml: an SVG picture: kpgeom convert makes a document "
                                           "of it");
}

void TestKpgeomDiff::troubleIsNoDifference()
{
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, line);
    Workplace const place;
    place.write("a.xml", box);
    if (!content.isNull())
        place.write("b.xml", content);
    COMPARE_FAILURE(place.run({"diff", "a.xml", "b.xml"}), 2, line);
    COMPARE_FAILURE(place.run({"diff", "-q", "b.xml", "a.xml"}), 2, line);
}

void TestKpgeomDiff::wrongUsageIsTold_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("fault");
    QByteArray const two = "exactly two files are needed";
    QTest::newRow("no file") << QStringList() << two;
    QTest::newRow("one file") << QStringList("a.xml") << two;
    QTest::newRow("three files") << QStringList({"a.xml", "a.xml", "a.xml"}) << two;
    QTest::newRow("standard input twice")
        << QStringList({"-", "-"}) << QByteArray("only one of the files can be standard input");
    for (char const* tolerance : {"-1", "nan", "inf", "1ell", ""}) {
        QTest::newRow(tolerance) << QStringList({"a.xml", "a.xml", "--tolerance", tolerance})
                                 << QByteArray("--tolerance takes a number from 0");
    }
}

void TestKpgeomDiff::wrongUsageIsTold()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, fault);
    Workplace const place;
    place.write("a.xml", box);
    COMPARE_FAILURE(place.run(QStringList("diff") + arguments), 2,
        "kpgeom diff: " + fault + " (see kpgeom diff --help)");
}

void TestKpgeomDiff::lostOutputIsTrouble()
{
    Workplace const place;
    place.write("a.xml", box);
    place.write("b.xml", wider());
    Workplace::Start start;
    start.outputFile = "/dev/full";
    COMPARE_FAILURE(place.run({"diff", "a.xml", "b.xml"}, start), 2, "<stdout>: cannot be written");
    COMPARE_EXIT(place.run({"diff", "a.xml", "a.xml"}, start), 0);
}

void TestKpgeomDiff::readerMayLeave()
{
    Workplace const place;
    place.write("a.xml", box);
    place.write("b.xml", wider());
    QProcess shell;
    shell.setWorkingDirectory(place.path());
    shell.start("sh", {"-c", "(sleep 0.2; exec " KPGEOM_EXECUTABLE " diff a.xml b.xml) | true"});
    QVERIFY(shell.waitForFinished());
    QCOMPARE(shell.readAllStandardError(), QByteArray());
}

void TestKpgeomDiff::largeDocumentsAreCompared()
{
    QByteArray const line =
        "<LineTo><X V=\"1\" B=\"1\" P=\"1\"/><Y V=\"2\" B=\"2\" P=\"1\"/></LineTo>";
    auto const document = [](QByteArray const& segments) {
        return "<Geometry Closed=\"1\">" + segments + "</Geometry>";
    };
    QByteArray const half = line.repeated(5000);
    QByteArray changed = line;
    changed.replace("V=\"1\"", "V=\"3\"").replace("V=\"2\"", "V=\"4\"");
    Workplace const place;
    place.write("a.xml", document(half + half));
    place.write("inserted.xml", document(half + "<Ellipse/>" + half));
    Result const inserted = place.run({"diff", "a.xml", "inserted.xml"});
    COMPARE_EXIT(inserted, 1);
    QCOMPARE(
        inserted.out, QByteArray("inserted.xml: outline 1, segment 5001 (Ellipse): only here\n"));
    place.write("changed.xml", document(changed.repeated(10000)));
    Result const all = place.run({"diff", "a.xml", "changed.xml"});
    COMPARE_EXIT(all, 1);
    QCOMPARE(all.out.count('\n'), 20000);
}

QTEST_GUILESS_MAIN(TestKpgeomDiff)

#include "tst_kpgeom_diff.moc"
