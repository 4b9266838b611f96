#include "kpgeomtesting.h"

using namespace KpgeomTesting;

/** `svg`, and what `convert` makes of path data and of the stencils of other programs. */
class TestKpgeomStencils : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void svgPrintsALineAnOutline();
    void svgTakesItsOptions_data();
    void svgTakesItsOptions();
    void svgWritesAFile();
    void svgFails_data();
    void svgFails();
};

namespace {

/** A dot of radius 5 at (10, 20). */
QByteArray dotGeometry()
{
    return "<Geometry Closed=\"0\"><Ellipse><X V=\"10\"/><Y V=\"20\"/><A V=\"5\"/><B V=\"5\"/>"
           "</Ellipse></Geometry>";
}

/** A box and a dot. */
QByteArray twoOutlines()
{
    return "<D><S Name=\"a&#9;box\">" + boxGeometry() + "</S>" + dotGeometry() + "</D>";
}

} // namespace

void TestKpgeomStencils::svgPrintsALineAnOutline()
{
    Workplace const place;
    place.write("a.xml", twoOutlines());
    place.write("b.xml", "<D><Geometry/></D>");
    Result const result = place.run({"svg", "a.xml", "b.xml", "-"}, {dotGeometry()});
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.err, QByteArray());
    QCOMPARE(result.out,
        QByteArray("M0 0 L100 0 L100 60 L0 60 Z\n"
                   "M15 20 A5 5 0 0 1 5 20 A5 5 0 0 1 15 20 Z\n"
                   "\n"
                   "M15 20 A5 5 0 0 1 5 20 A5 5 0 0 1 15 20 Z\n"));
}

void TestKpgeomStencils::svgTakesItsOptions_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QByteArray>("lines");

    QTest::newRow("names") << QStringList {"--names"}
                           << QByteArray("a box\tM0 0 L100 0 L100 60 L0 60 Z\n"
                                         "#2\tM15 20 A5 5 0 0 1 5 20 A5 5 0 0 1 15 20 Z\n");
    QTest::newRow("index") << QStringList {"--index", "2"}
                           << QByteArray("M15 20 A5 5 0 0 1 5 20 A5 5 0 0 1 15 20 Z\n");
    QTest::newRow("size") << QStringList {"--size", "50.5x20", "--index", "1"}
                          << QByteArray("M0 0 L50.5 0 L50.5 20 L0 20 Z\n");
    QTest::newRow("relative") << QStringList {"--relative", "--index", "1"}
                              << QByteArray("M0 0 l100 0 l0 60 l-100 0 Z\n");
    QTest::newRow("precision") << QStringList {"--precision", "0", "--size", "50.5x20", "--index",
        "1"} << QByteArray("M0 0 L51 0 L51 20 L0 20 Z\n");
}

void TestKpgeomStencils::svgTakesItsOptions()
{
    QFETCH(QStringList, options);
    QFETCH(QByteArray, lines);

    Workplace const place;
    place.write("a.xml", twoOutlines());
    Result const result = place.run(QStringList {"svg", "a.xml"} + options);
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.err, QByteArray());
    QCOMPARE(result.out, lines);
}

void TestKpgeomStencils::svgWritesAFile()
{
    Workplace const place;
    place.write("a.xml", boxGeometry());
    Result const result = place.run({"svg", "a.xml", "-o", "a.txt"});
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.out, QByteArray());
    QCOMPARE(place.read("a.txt"), QByteArray("M0 0 L100 0 L100 60 L0 60 Z\n"));
}

void TestKpgeomStencils::svgFails_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QByteArray>("line");

    auto const row = [](char const* name, QByteArray const& document, QByteArray const& line) {
        QTest::newRow(name) << document << line;
    };
    row("empty", "", "a.xml:1:1: Premature end of document.");
    row("no outline", "<D/>", "a.xml: no outline to draw");
    row("SVG picture", "<svg/>", "a.xml: an SVG picture: kpgeom convert makes a document of it");
    row("index", boxGeometry(), "a.xml: there is no outline 2 among its 1");
    row("NaN", "<D>" + boxGeometry() + dotGeometry().replace("20", "nan") + "</D>",
        "a.xml: a coordinate of outline 2 is infinite, NaN or too large");
    row("infinite", "<D>" + boxGeometry() + dotGeometry().replace("20", "-inf") + "</D>",
        "a.xml: a coordinate of outline 2 is infinite, NaN or too large");
}

void TestKpgeomStencils::svgFails()
{
    QFETCH(QByteArray, document);
    QFETCH(QByteArray, line);

    Workplace const place;
    place.write("a.xml", document);
    place.write("ok.xml", "<D>" + boxGeometry() + boxGeometry() + "</D>");
    place.write("out.txt", "as before");
    COMPARE_FAILURE(
        place.run({"svg", "ok.xml", "a.xml", "--index", "1", "--index", "2", "-o", "out.txt"}), 1,
        line);
    QCOMPARE(place.read("out.txt"), QByteArray("as before"));
}

QTEST_GUILESS_MAIN(TestKpgeomStencils)

#include "tst_kpgeom_stencils.moc"
