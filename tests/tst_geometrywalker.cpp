// SPDX-License-Identifier: MIT
#include "document/geometrywalker.h"
#include "outlinetesting.h"

namespace {

/** What the DOM reader makes of a Geometry element with this content. */
std::unique_ptr<KpPathSegList> listOf(QByteArray const& content)
{
    auto list = std::make_unique<KpPathSegList>();
    QDomDocument const document =
        OutlineTesting::domDocument("<Geometry Closed=\"1\">" + content + "</Geometry>");
    list->parse(document.documentElement(), 0);
    return list;
}

/** Which coordinates of a segment have been given: "X+ Y-". */
QString givenOf(SegmentWalker const& walker)
{
    QStringList parts;
    for (SegmentWalker::Coordinate const& coordinate : walker.coordinates())
        parts << coordinate.letter + (coordinate.isGiven ? '+' : '-');
    return parts.join(' ');
}

} // namespace

class TestGeometryWalker : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsTheSegmentOfEachElement();
    void passesOverForeignElements();
    void elementsBeyondTheSegmentsHaveNone();

    void knowsTheCoordinatesOfEachKind_data();
    void knowsTheCoordinatesOfEachKind();
    void findsTheRealOfEachCoordinate();
    void tellsWhichCoordinatesAreMissing();
    void tellsRepeatedCoordinates();
    void passesOverUnknownNames_data();
    void passesOverUnknownNames();
};

void TestGeometryWalker::findsTheSegmentOfEachElement()
{
    auto const list = listOf("<MoveTo/><LineTo/><CurveTo/><Ellipse/><LineTo/>");
    QCOMPARE(list->segs.count(), 5);
    GeometryWalker walker(*list);
    QCOMPARE(walker.enter("MoveTo"), list->segs.at(0));
    QCOMPARE(walker.enter("LineTo"), list->segs.at(1));
    QCOMPARE(walker.enter("CurveTo"), list->segs.at(2));
    QCOMPARE(walker.enter("Ellipse"), list->segs.at(3));
    QCOMPARE(walker.enter("LineTo"), list->segs.at(4));
}

void TestGeometryWalker::passesOverForeignElements()
{
    auto const list = listOf("<Note/><MoveTo/><Geometry><LineTo/></Geometry><lineto/><LineTo/>");
    QCOMPARE(list->segs.count(), 2);
    GeometryWalker walker(*list);
    KpPathSeg* const none = nullptr;
    QCOMPARE(walker.enter("Note"), none);
    QCOMPARE(walker.enter("MoveTo"), list->segs.at(0));
    QCOMPARE(walker.enter("Geometry"), none);
    QCOMPARE(walker.enter("lineto"), none);
    QCOMPARE(walker.enter("p:LineTo"), none);
    QCOMPARE(walker.enter(""), none);
    QCOMPARE(walker.enter("X"), none);
    QCOMPARE(walker.enter("LineTo"), list->segs.at(1));
}

void TestGeometryWalker::elementsBeyondTheSegmentsHaveNone()
{
    auto const list = listOf("<MoveTo/>");
    GeometryWalker walker(*list);
    KpPathSeg* const none = nullptr;
    QCOMPARE(walker.enter("MoveTo"), list->segs.at(0));
    QCOMPARE(walker.enter("LineTo"), none);
    QCOMPARE(walker.enter("LineTo"), none);
    KpPathSegList const empty;
    QCOMPARE(GeometryWalker(empty).enter("MoveTo"), none);
}

void TestGeometryWalker::knowsTheCoordinatesOfEachKind_data()
{
    QTest::addColumn<QByteArray>("element");
    QTest::addColumn<QString>("coordinates");
    QTest::newRow("move") << QByteArray("<MoveTo/>") << "X- Y-";
    QTest::newRow("line") << QByteArray("<LineTo/>") << "X- Y-";
    QTest::newRow("curve") << QByteArray("<CurveTo/>") << "X- Y- A- B- C- D-";
    QTest::newRow("ellipse") << QByteArray("<Ellipse/>") << "X- Y- A- B-";
}

void TestGeometryWalker::knowsTheCoordinatesOfEachKind()
{
    QFETCH(QByteArray, element);
    QFETCH(QString, coordinates);
    auto const list = listOf(element);
    QCOMPARE(givenOf(SegmentWalker(*list->segs.at(0))), coordinates);
}

void TestGeometryWalker::findsTheRealOfEachCoordinate()
{
    auto const list = listOf("<CurveTo/><Ellipse/>");
    KpPathSegCurveTo& curve = *list->segs.at(0)->toCurveTo();
    SegmentWalker curveWalker(curve);
    // Not in the order of the format: each element stands for itself.
    QCOMPARE(curveWalker.enter("D").real, &curve.ctrl2.y);
    QCOMPARE(curveWalker.enter("A").real, &curve.ctrl1.x);
    QCOMPARE(curveWalker.enter("X").real, &curve.pt.x);
    QCOMPARE(curveWalker.enter("B").real, &curve.ctrl1.y);
    QCOMPARE(curveWalker.enter("Y").real, &curve.pt.y);
    QCOMPARE(curveWalker.enter("C").real, &curve.ctrl2.x);
    KpPathSegEllipse& ellipse = *list->segs.at(1)->toEllipse();
    SegmentWalker ellipseWalker(ellipse);
    QCOMPARE(ellipseWalker.enter("B").real, &ellipse.b);
    QCOMPARE(ellipseWalker.enter("A").real, &ellipse.a);
    QCOMPARE(ellipseWalker.coordinates().at(0).real, &ellipse.pt.x);
    QCOMPARE(ellipseWalker.coordinates().at(1).real, &ellipse.pt.y);
}

void TestGeometryWalker::tellsWhichCoordinatesAreMissing()
{
    auto const list = listOf("<Ellipse/>");
    SegmentWalker walker(*list->segs.at(0));
    QVERIFY(walker.enter("A").isFirst);
    QCOMPARE(givenOf(walker), QStringLiteral("X- Y- A+ B-"));
    QVERIFY(walker.enter("Y").isFirst);
    QCOMPARE(givenOf(walker), QStringLiteral("X- Y+ A+ B-"));
}

void TestGeometryWalker::tellsRepeatedCoordinates()
{
    auto const list = listOf("<LineTo/>");
    KpPathSeg& seg = *list->segs.at(0);
    SegmentWalker walker(seg);
    QVERIFY(walker.enter("X").isFirst);
    for (int i = 0; i < 2; ++i) {
        SegmentWalker::Match const again = walker.enter("X");
        QCOMPARE(again.real, &seg.pt.x);
        QVERIFY(!again.isFirst);
    }
    QVERIFY(walker.enter("Y").isFirst);
    QCOMPARE(givenOf(walker), QStringLiteral("X+ Y+"));
}

void TestGeometryWalker::passesOverUnknownNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("coordinate of another kind") << "A";
    QTest::newRow("small letter") << "x";
    QTest::newRow("with a prefix") << "p:X";
    QTest::newRow("longer") << "XY";
    QTest::newRow("empty") << "";
    QTest::newRow("segment") << "LineTo";
}

void TestGeometryWalker::passesOverUnknownNames()
{
    QFETCH(QString, name);
    auto const list = listOf("<LineTo/>");
    SegmentWalker walker(*list->segs.at(0));
    SegmentWalker::Match const match = walker.enter(name);
    QVERIFY(!match.real);
    QVERIFY(!match.isFirst);
    QCOMPARE(givenOf(walker), QStringLiteral("X- Y-"));
}

QTEST_GUILESS_MAIN(TestGeometryWalker)

#include "tst_geometrywalker.moc"
