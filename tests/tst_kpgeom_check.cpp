// SPDX-License-Identifier: MIT
#include "kpgeomtesting.h"

#include "kppathsegcurveto.h"
#include "kppathsegellipse.h"
#include "kppathseglist.h"
#include "xmlstreamwriter.h"

#include <QDomDocument>

using namespace KpgeomTesting;

/** `kpgeom check`: one row for each kind of finding. */
class TestKpgeomCheck : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findingsAreTold_data();
    void findingsAreTold();
    void cleanDocumentsAreSilent_data();
    void cleanDocumentsAreSilent();
    void documentsOfTheLibraryAreClean_data();
    void documentsOfTheLibraryAreClean();
    void malformedXmlIsLocated_data();
    void malformedXmlIsLocated();
    void worstFileDecidesTheExitCode_data();
    void worstFileDecidesTheExitCode();
    void standardInputIsChecked();
    void jsonHoldsTheFindings();
    void jsonLeavesOutUnreadableFiles();
};

namespace {

QByteArray const clean = "<Geometry Closed=\"1\"/>";
QByteArray const warned = "<Geometry Closed=\"2\"/>";
QByteArray const malformed = "<Geometry>\n";

QByteArray move(QByteArray const& x, QByteArray const& y = "<Y V=\"0\"/>")
{
    return "<Geometry Closed=\"1\"><MoveTo>" + x + y + "</MoveTo></Geometry>";
}

} // namespace

void TestKpgeomCheck::findingsAreTold_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<QByteArray>("findings"); // "a.xml:" left out

    auto const row = [](char const* name, QByteArray const& xml, QByteArray const& findings) {
        QTest::newRow(name) << xml << findings;
    };
    row("unknown element", "<Geometry Closed=\"1\">\n <Rect/>\n <lineto/>\n</Geometry>",
        "2:8: outline 1: element Rect is ignored\n"
        "3:10: outline 1: element lineto is ignored\n");
    row("unknown element in segment",
        "<Geometry Closed=\"1\">\n<MoveTo><X V=\"0\"/><Y V=\"0\"/>\n<A "
        "V=\"0\"/></MoveTo></Geometry>",
        "3:10: outline 1: element A in MoveTo is ignored\n");
    row("element in coordinate", move("<X V=\"0\"><B/></X>"),
        "1:42: outline 1: element B in X is ignored\n");
    row("curve coordinates in ellipse",
        "<Geometry Closed=\"1\"><Ellipse><X V=\"0\"/><Y V=\"0\"/><A V=\"1\"/><B V=\"1\"/>\n<C "
        "V=\"0\"/>\n<D V=\"0\"/></Ellipse></Geometry>",
        "2:10: outline 1: element C in Ellipse is ignored\n"
        "3:10: outline 1: element D in Ellipse is ignored\n");
    row("unknown attributes", "<Geometry Closed=\"1\" closed=\"1\" A=\"\"/>",
        "1:38: outline 1: attribute A of Geometry is ignored\n"
        "1:38: outline 1: attribute closed of Geometry is ignored\n");
    row("attribute of segment",
        "<Geometry Closed=\"1\">\n<MoveTo V=\"1\"><X V=\"0\"/><Y V=\"0\"/></MoveTo></Geometry>",
        "2:14: outline 1: attribute V of MoveTo is ignored\n");
    row("attribute of coordinate", move("<X V=\"0\" v=\"1\"/>"),
        "1:45: outline 1: attribute v of X is ignored\n");
    row("text", "<Geometry Closed=\"1\">one<!-- no text -->\ntwo</Geometry>",
        "1:21: outline 1: text \"one\" in Geometry is ignored\n"
        "1:21: outline 1: text \"two\" in Geometry is ignored\n");
    row("character data", "<Geometry Closed=\"1\"><![CDATA[ x ]]></Geometry>",
        "1:21: outline 1: text \"x\" in Geometry is ignored\n");
    row("text in coordinate", move("<X V=\"0\">5</X>"),
        "1:38: outline 1: text \"5\" in X is ignored\n");
    row("longest text", "<Geometry Closed=\"1\">" + QByteArray(40, 'x') + "</Geometry>",
        "1:21: outline 1: text \"" + QByteArray(40, 'x') + "\" in Geometry is ignored\n");
    row("long text", "<Geometry Closed=\"1\">" + QByteArray(41, 'x') + "</Geometry>",
        "1:21: outline 1: text \"" + QByteArray(39, 'x')
            + "\342\200\246\" in Geometry is ignored\n");
    row("flag with another word", "<Geometry Closed=\"yes\" NoFill=\"2\" NoLine=\" 1\"/>",
        "1:47: outline 1: Closed=\"yes\" reads as false\n"
        "1:47: outline 1: NoFill=\"2\" reads as false\n"
        "1:47: outline 1: NoLine=\"1\" reads as false\n");
    row("empty flag", "<Geometry Closed=\"1\" NoFill=\"\"/>", "1:32: outline 1: NoFill is empty\n");
    row("value that is no number", move("<X V=\"abc\"/>"),
        "1:41: outline 1: X V=\"abc\" is no number and reads as 0\n");
    row("value in another notation", move("<X V=\"1,5\"/>", "<Y V=\"0x10\"/>"),
        "1:41: outline 1: X V=\"1,5\" is no number and reads as 0\n"
        "1:54: outline 1: Y V=\"0x10\" is no number and reads as 0\n");
    row("value that is not finite", move("<X V=\"nan\"/>", "<Y V=\"-inf\"/>"),
        "1:41: outline 1: X V=\"nan\" is not finite\n"
        "1:54: outline 1: Y V=\"-inf\" is not finite\n");
    row("empty value", move("<X V=\"\"/>"), "1:38: outline 1: X V=\"\" is empty\n");
    row("empty value after another one", move("<X V=\"5\"/>\n<X V=\"\"/>"),
        "2:9: outline 1: X of MoveTo is given again\n"
        "2:9: outline 1: X V=\"\" is empty\n"
        "1:21: outline 1: the stream reader reads it otherwise: segment 1 X value 5 becomes 0\n");
    row("no value", move("<X/>"), "1:33: outline 1: X has no V\n");
    row("rate that is no number", move("<X V=\"1\" B=\"1\" P=\"half\"/>"),
        "1:54: outline 1: X P=\"half\" is no number and reads as 0\n");
    row("base without rule", move("<X V=\"1\" B=\"8\" P=\"0\"/>", "<Y V=\"1\" B=\"-1\" P=\"0\"/>"),
        "1:51: outline 1: X B=\"8\" is no binding rule\n"
        "1:74: outline 1: Y B=\"-1\" is no binding rule\n");
    row("base beyond sixteen bits", move("<X V=\"1\" B=\"70000\" P=\"0\"/>"),
        "1:55: outline 1: X B=\"70000\" reads as 4464\n");
    row("base that is no number", move("<X V=\"1\" B=\"1.0\" P=\"0\"/>"),
        "1:53: outline 1: X B=\"1.0\" is no number and reads as 0\n"
        "1:21: outline 1: saving changes it: segment 1 X rule 0 becomes 1\n");
    row("empty base", move("<X V=\"1\" B=\"\"/>"),
        "1:44: outline 1: X B=\"\" is empty\n"
        "1:21: outline 1: the stream reader reads it otherwise: segment 1 X rule 1 becomes 0\n");
    row("missing coordinates", "<Geometry Closed=\"1\">\n<LineTo><X V=\"5\"/></LineTo></Geometry>",
        "2:8: outline 1: Y of LineTo is missing and reads as 0\n");
    row("empty curve", "<Geometry Closed=\"1\">\n<CurveTo/></Geometry>",
        "2:10: outline 1: X of CurveTo is missing and reads as 0\n"
        "2:10: outline 1: Y of CurveTo is missing and reads as 0\n"
        "2:10: outline 1: A of CurveTo is missing and reads as 0\n"
        "2:10: outline 1: B of CurveTo is missing and reads as 0\n"
        "2:10: outline 1: C of CurveTo is missing and reads as 0\n"
        "2:10: outline 1: D of CurveTo is missing and reads as 0\n");
    row("repeated coordinates", move("<X V=\"1\"/>", "\n<X V=\"2\"/><Y V=\"0\"/>"),
        "2:10: outline 1: X of MoveTo is given again\n"
        "1:21: outline 1: the stream reader reads it otherwise: segment 1 X value 1 becomes 2\n");
    row("absolute coordinates", move("<X V=\"1\" B=\"0\" P=\"0.5\"/>", "<Y V=\"1\" B=\"0\"/>"),
        "1:21: outline 1: saving changes it: segment 1 X rule 0 becomes 1, segment 1 X rate 0.5 "
        "becomes 0, segment 1 Y rule 0 becomes 2\n");
    row("more digits than are saved", move("<X V=\"123456.75\"/>"),
        "1:21: outline 1: saving changes it: segment 1 X value 123456.75 becomes 123457\n");
    row("many changes",
        "<Geometry Closed=\"1\"><Ellipse><X V=\"1\" B=\"0\"/><Y V=\"1\" B=\"0\"/><A V=\"1\" "
        "B=\"0\"/>"
        "<B V=\"1\" B=\"0\"/></Ellipse><MoveTo><X V=\"1\" B=\"0\"/><Y V=\"1\" B=\"0\"/></MoveTo>"
        "</Geometry>",
        "1:21: outline 1: saving changes it: segment 1 X rule 0 becomes 1, segment 1 Y rule 0 "
        "becomes 2, segment 1 A rule 0 becomes 1, segment 1 B rule 0 becomes 2, segment 2 X rule "
        "0 becomes 1 and 1 more\n");
    row("lines that are not drawn",
        "<Geometry Closed=\"1\"><MoveTo><X V=\"0\"/><Y V=\"0\"/></MoveTo>"
        "<LineTo><X V=\"0.9\"/><Y V=\"-0.9\"/></LineTo><LineTo><X V=\"5\"/><Y V=\"0\"/></LineTo>"
        "<LineTo><X V=\"5\"/><Y V=\"0\"/></LineTo></Geometry>",
        "1:21: outline 1: lines of less than one unit are not drawn: segment 2, 4\n");
    QByteArray const undrawn = "<LineTo><X V=\"0\"/><Y V=\"0\"/></LineTo>";
    QByteArray const atOnePoint =
        "<Geometry Closed=\"1\"><MoveTo><X V=\"0\"/><Y V=\"0\"/></MoveTo>";
    QByteArray const areNotDrawn =
        "1:21: outline 1: lines of less than one unit are not drawn: segment 2, 3, 4, 5, 6";
    row("longest list", atOnePoint + undrawn.repeated(5) + "</Geometry>", areNotDrawn + "\n");
    row("longer list", atOnePoint + undrawn.repeated(6) + "</Geometry>",
        areNotDrawn + " and 1 more\n");
    row("no attributes", "<D>\n<Geometry><MoveTo><X V=\"1\"/><Y V=\"1\"/></MoveTo></Geometry></D>",
        "2:10: outline 1: the stream reader refuses it: Geometry has no attributes\n");
    row("outline in outline", "<Geometry Closed=\"1\">\n<Geometry Closed=\"1\"/>\n</Geometry>",
        "2:22: outline 1: element Geometry is ignored\n"
        "2:22: outline 2: it stands inside another outline, whose readers skip it\n");
    row("outline in segment",
        "<Geometry Closed=\"1\"><MoveTo><X V=\"0\"/><Y V=\"0\"/>\n<Geometry/></MoveTo></Geometry>",
        "2:11: outline 1: element Geometry in MoveTo is ignored\n"
        "2:11: outline 2: it stands inside another outline, whose readers skip it\n");
    row("outline in refused outline, then another one",
        "<D><Geometry><Other><Geometry Closed=\"1\"/></Other></Geometry>\n<Geometry "
        "Closed=\"0\"/></D>",
        "1:20: outline 1: element Other is ignored\n"
        "1:13: outline 1: the stream reader refuses it: Geometry has no attributes\n"
        "1:42: outline 2: it stands inside another outline, whose readers skip it\n");
    row("prefix of segment",
        "<Geometry xmlns:k=\"urn:k\" Closed=\"1\">\n<k:MoveTo><X V=\"1\"/><Y "
        "V=\"1\"/></k:MoveTo></Geometry>",
        "2:10: outline 1: element k:MoveTo is ignored\n"
        "1:37: outline 1: the stream reader reads it otherwise: 0 segments become 1\n");
    row("prefix of attribute", "<Geometry xmlns:k=\"urn:k\" Closed=\"1\" k:NoFill=\"1\"/>",
        "1:51: outline 1: attribute k:NoFill of Geometry is ignored\n");
    row("undeclared prefix", "<D>\n<k:Shape><Geometry Closed=\"1\"/></k:Shape></D>",
        "2:10: the stream reader stops here: Namespace prefix 'k' not declared\n");
    row("empty no-fill flag of an outline", "<D><Geometry Closed=\"\" NoFill=\"\"/></D>",
        "1:34: outline 1: Closed is empty\n"
        "1:34: outline 1: NoFill is empty\n");
    row("position after wide characters",
        "<D><!-- \303\251\342\202\254 --><Geometry Closed=\"2\"/></D>",
        "1:36: outline 1: Closed=\"2\" reads as false\n");
}

void TestKpgeomCheck::findingsAreTold()
{
    QFETCH(QByteArray, xml);
    QFETCH(QByteArray, findings);

    Workplace const place;
    place.write("a.xml", xml);
    Result const result = place.run({"check", "a.xml"});
    COMPARE_EXIT(result, 3);
    QCOMPARE(result.err, QByteArray());
    QByteArrayList lines = findings.split('\n');
    lines.removeLast();
    QByteArray expected;
    for (QByteArray const& line : lines)
        expected += "a.xml:" + line + '\n';
    expected += "a.xml: outlines: " + QByteArray::number(xml.count("<Geometry"))
        + ", warnings: " + QByteArray::number(lines.count()) + '\n';
    QCOMPARE(QString::fromUtf8(result.out), QString::fromUtf8(expected));
    // A position is where the start tag ends.
    for (QByteArray const& line : qAsConst(lines)) {
        QByteArrayList const parts = line.split(':');
        if (parts.at(2).startsWith(" outline ")) {
            QString const row = QString::fromUtf8(xml.split('\n').at(parts.at(0).toInt() - 1));
            QCOMPARE(row.at(parts.at(1).toInt() - 1), QChar('>'));
        }
    }
}

void TestKpgeomCheck::cleanDocumentsAreSilent_data()
{
    QTest::addColumn<QByteArray>("xml");

    QTest::newRow("no outline") << QByteArray("<D><MoveTo/><X V=\"abc\"/></D>");
    QTest::newRow("empty outline") << QByteArray("<Geometry Closed=\"0\"/>");
    QTest::newRow("spellings of flags")
        << QByteArray("<Geometry Closed=\"tRUE\" NoFill=\"false\" NoLine=\"0\"/>");
    QTest::newRow("flags without Closed") << QByteArray("<Geometry NoFill=\"1\"/>");
    QTest::newRow("box") << boxGeometry();
    QTest::newRow("no rules given") << move("<X V=\"1\"/>", "<Y V=\"2\"/>");
    QTest::newRow("coordinates in another order") << move("<Y V=\"1\"/>", "<X V=\"2\"/>");
    QTest::newRow("comments and processing instructions")
        << QByteArray("<Geometry Closed=\"1\"><!-- a --><?b c?></Geometry>");
    QTest::newRow("white space") << move("\n <X V=\" 1 \" >\n</X>\t");
    QTest::newRow("namespace declarations")
        << QByteArray("<Geometry xmlns=\"urn:a\" xmlns:b=\"urn:b\" Closed=\"1\"/>");
    QTest::newRow("prefixed outline is none")
        << QByteArray("<k:Geometry xmlns:k=\"urn:k\"><Rect/></k:Geometry>");
    QTest::newRow("numbers in every notation")
        << move("<X V=\"-1.5e+2\" B=\"7\" P=\".5\"/>", "<Y V=\"+3.\"/>");
    QTest::newRow("entity") << QByteArray("<!DOCTYPE D [<!ENTITY v \"5\">]>")
            + move("<X V=\"&v;\"/>");
}

void TestKpgeomCheck::cleanDocumentsAreSilent()
{
    QFETCH(QByteArray, xml);

    Workplace const place;
    place.write("a.xml", xml);
    Result const result = place.run({"check", "a.xml"});
    QByteArray const count = xml.contains("<Geometry") ? "1" : "0";
    QCOMPARE(result.out, QByteArray("a.xml: outlines: " + count + ", warnings: 0\n"));
    QCOMPARE(result.err, QByteArray());
    COMPARE_EXIT(result, 0);
}

void TestKpgeomCheck::documentsOfTheLibraryAreClean_data()
{
    QTest::addColumn<QByteArray>("xml");

    KpPathSegList list;
    list.noFill = true;
    list.moveTo({1.0 / 3.0, -1e-7});
    list.lineTo({1e6, 2.5e10});
    list.curveTo({1.0, 2.0}, {3.0, 4.0}, {5.0, 6.0});
    auto* const ellipse = new KpPathSegEllipse(QPointF(5.0, 5.0), 2.0, 3.0, nullptr);
    ellipse->a.base = KpReal::PartOfSide;
    ellipse->a.rate = 0.1 + 0.2;
    list.addTail(ellipse);
    list.updateRate(17.0, 31.0);

    QByteArray stream;
    XmlStreamWriter writer(&stream);
    list.saveTo(writer);
    QTest::newRow("stream form") << stream;
    QDomDocument document;
    QDomElement root = document.createElement("D");
    document.appendChild(root);
    list.saveTo(root);
    QTest::newRow("DOM form") << document.toByteArray(1);
    // Saved without its rule, the coordinate has the segment's own when it is read.
    list.segs.first()->pt.x.base = KpReal::Absolute;
    QByteArray absolute;
    XmlStreamWriter absoluteWriter(&absolute);
    list.saveTo(absoluteWriter);
    QTest::newRow("absolute coordinate") << absolute;
}

void TestKpgeomCheck::documentsOfTheLibraryAreClean()
{
    QFETCH(QByteArray, xml);

    Workplace const place;
    place.write("a.xml", xml);
    Result const result = place.run({"check", "a.xml"});
    QCOMPARE(result.out, QByteArray("a.xml: outlines: 1, warnings: 0\n"));
    COMPARE_EXIT(result, 0);
}

void TestKpgeomCheck::malformedXmlIsLocated_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<QByteArray>("line");

    QTest::newRow("empty") << QByteArray() << QByteArray("1:1: Premature end of document.");
    QTest::newRow("no XML") << QByteArray("Dear reader,\n")
                            << QByteArray("1:2: Start tag expected.");
    QTest::newRow("wrong end tag")
        << QByteArray("<D>\n  <E>\n  </D>") << QByteArray("3:7: Opening and ending tag mismatch.");
    QTest::newRow("truncated") << QByteArray("<D>\n <Geometry Closed=\"1\">\n  <Mov")
                               << QByteArray("3:7: Premature end of document.");
    QTest::newRow("two roots") << QByteArray("<D/>\n<D/>")
                               << QByteArray("2:5: Extra content at end of document.");
    QTest::newRow("undeclared entity")
        << QByteArray("<D>\n&x;</D>") << QByteArray("2:4: Entity 'x' not declared.");
    // Qt sees the bytes when it decodes, ahead of what it has read.
    QTest::newRow("bytes that are no UTF-8") << QByteArray(
        "<D>\n\377</D>") << QByteArray("1:3: Encountered incorrectly encoded content.");
    QTest::newRow("control character")
        << QByteArray("<D>\n\001</D>") << QByteArray("2:2: Unexpected ''.");
    QTest::newRow("unknown encoding")
        << QByteArray("<?xml version=\"1.0\" encoding=\"klingon\"?>\n<D/>")
        << QByteArray("1:41: Encoding klingon is unsupported");
}

void TestKpgeomCheck::malformedXmlIsLocated()
{
    QFETCH(QByteArray, xml);
    QFETCH(QByteArray, line);

    Workplace const place;
    place.write("a.xml", xml);
    for (QString const& command : {QString("check"), QString("info")})
        COMPARE_FAILURE(place.run({command, "a.xml"}), 1, "a.xml:" + line);
}

void TestKpgeomCheck::worstFileDecidesTheExitCode_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<int>("code");

    QTest::newRow("clean") << QStringList {"clean"} << 0;
    QTest::newRow("clean twice") << QStringList {"clean", "clean"} << 0;
    QTest::newRow("warnings last") << QStringList {"clean", "warned"} << 3;
    QTest::newRow("warnings first") << QStringList {"warned", "clean"} << 3;
    QTest::newRow("failure after warnings") << QStringList {"warned", "malformed"} << 1;
    QTest::newRow("warnings after failure") << QStringList {"malformed", "warned", "clean"} << 1;
    QTest::newRow("missing file") << QStringList {"clean", "missing", "warned"} << 1;
}

void TestKpgeomCheck::worstFileDecidesTheExitCode()
{
    QFETCH(QStringList, files);
    QFETCH(int, code);

    Workplace const place;
    place.write("clean", clean);
    place.write("warned", warned);
    place.write("malformed", malformed);
    Result const result = place.run(QStringList {"check"} + files);
    COMPARE_EXIT(result, code);
    QByteArray out;
    QByteArray err;
    for (QString const& file : files) {
        if (file == "clean")
            out += "clean: outlines: 1, warnings: 0\n";
        else if (file == "warned")
            out += "warned:1:22: outline 1: Closed=\"2\" reads as false\n"
                   "warned: outlines: 1, warnings: 1\n";
        else if (file == "malformed")
            err += "malformed:2:1: Premature end of document.\n";
        else
            err += "missing: No such file or directory\n";
    }
    QCOMPARE(result.out, out);
    QCOMPARE(result.err, err);
}

void TestKpgeomCheck::standardInputIsChecked()
{
    Workplace const place;
    Result const result = place.run({"check", "-"}, {"\n" + warned});
    COMPARE_EXIT(result, 3);
    QCOMPARE(result.out,
        QByteArray("<stdin>:2:22: outline 1: Closed=\"2\" reads as false\n"
                   "<stdin>: outlines: 1, warnings: 1\n"));
}

void TestKpgeomCheck::jsonHoldsTheFindings()
{
    Workplace const place;
    place.write("clean", clean);
    place.write("warned", warned);
    Result const result = place.run({"check", "--json", "clean", "warned"});
    COMPARE_EXIT(result, 3);
    QCOMPARE(result.err, QByteArray());
    QCOMPARE(result.out, QByteArray(R"([
    {
        "file": "clean",
        "outlines": 1,
        "warnings": [
        ]
    },
    {
        "file": "warned",
        "outlines": 1,
        "warnings": [
            {
                "column": 22,
                "line": 1,
                "text": "outline 1: Closed=\"2\" reads as false"
            }
        ]
    }
]
)"));
}

void TestKpgeomCheck::jsonLeavesOutUnreadableFiles()
{
    Workplace const place;
    place.write("clean", clean);
    place.write("malformed", malformed);
    Result const result = place.run({"check", "malformed", "clean", "missing", "--json"});
    COMPARE_EXIT(result, 1);
    QCOMPARE(result.err,
        QByteArray("malformed:2:1: Premature end of document.\n"
                   "missing: No such file or directory\n"));
    QVERIFY2(result.out.count("\"file\"") == 1 && result.out.contains("\"clean\""), result.out);
    Result const none = place.run({"check", "missing", "--json"});
    COMPARE_EXIT(none, 1);
    QCOMPARE(none.out, QByteArray("[\n]\n"));
}

QTEST_GUILESS_MAIN(TestKpgeomCheck)

#include "tst_kpgeom_check.moc"
