// SPDX-License-Identifier: MIT
#include "segmenttesting.h"

using OutlineTesting::exact;
using OutlineTesting::parseDom;
using OutlineTesting::parseStream;
using Testing::infinite;

namespace {

TestedKind const kindEllipse {"Ellipse", KpPathSeg::SegEllipse,
    {
        {'X', 1, true, [](KpPathSeg& seg) -> KpReal& { return seg.pt.x; }},
        {'Y', 2, true, [](KpPathSeg& seg) -> KpReal& { return seg.pt.y; }},
        {'A', 1, false, [](KpPathSeg& seg) -> KpReal& { return seg.toEllipse()->a; }},
        {'B', 2, false, [](KpPathSeg& seg) -> KpReal& { return seg.toEllipse()->b; }},
    },
    false, true, [](KpPathSegList* owner) -> KpPathSeg* {
        return new KpPathSegEllipse(QPointF(0.0, 0.0), 0.0, 0.0, owner);
    }};

/** The elements of the companion library's ellipse in this rectangle, behind those of `path`. */
KpPath withEllipse(KpPath path, QRectF const& rect)
{
    path.elements += KpPath::ellipse(rect);
    return path;
}

} // namespace

class TestKpPathSegEllipse : public SegmentTest
{
    Q_OBJECT

public:
    TestKpPathSegEllipse()
        : SegmentTest(kindEllipse)
    {
    }

private Q_SLOTS:
    void takesPlainNumbers();
    void takesBoundRealsButBindsTheRadiiItself();
    void cloneBindsTheRadiiAsTheConstructorDoes();
    void transformsLeaveTheRadii();
    void drawsTheEllipseInItsBounds_data();
    void drawsTheEllipseInItsBounds();
    void drawsBehindWhatIsThere();
    void isWrittenAsDocumentsHaveIt();
    void rulesOfRadiiSurviveADocument();
    void coordinatesOfACurveAreNotRead();
};

void TestKpPathSegEllipse::takesPlainNumbers()
{
    KpPathSegList list;
    KpPathSegEllipse const seg(QPointF(1, 2), 3, -4, &list);
    QCOMPARE(seg.type, KpPathSeg::SegEllipse);
    QCOMPARE(seg.owner, &list);
    QCOMPARE(exact(seg.pt), exact(KpPoint({1, 0, 1}, {2, 0, 2})));
    QCOMPARE(exact(seg.a), exact(KpReal(1, 0, 3)));
    QCOMPARE(exact(seg.b), exact(KpReal(2, 0, -4)));
}

void TestKpPathSegEllipse::takesBoundRealsButBindsTheRadiiItself()
{
    KpPoint const centre({-9, 0.25, 1}, {32767, 0.5, 2});
    KpPathSegEllipse const seg(centre, KpReal(5, 0.75, 3), KpReal(0, 1.25, 4), nullptr);
    QCOMPARE(seg.type, KpPathSeg::SegEllipse);
    QCOMPARE(seg.owner, nullptr);
    QCOMPARE(exact(seg.pt), exact(centre));
    QCOMPARE(exact(seg.a), exact(KpReal(1, 0.75, 3)));
    QCOMPARE(exact(seg.b), exact(KpReal(2, 1.25, 4)));
}

void TestKpPathSegEllipse::cloneBindsTheRadiiAsTheConstructorDoes()
{
    KpPathSegEllipse seg(QPointF(1, 2), 3, 4, nullptr);
    seg.pt.x.base = 6;
    seg.a = KpReal(5, 0.25, 30);
    seg.b = KpReal(0, 0.5, 20);
    std::unique_ptr<KpPathSeg> const copy(seg.clone());
    QVERIFY(copy->toEllipse());
    QCOMPARE(exact(copy->pt), exact(KpPoint({6, 0, 1}, {2, 0, 2})));
    QCOMPARE(exact(copy->toEllipse()->a), exact(KpReal(1, 0.25, 30)));
    QCOMPARE(exact(copy->toEllipse()->b), exact(KpReal(2, 0.5, 20)));
    QCOMPARE(exact(seg.a), exact(KpReal(5, 0.25, 30)));
}

void TestKpPathSegEllipse::transformsLeaveTheRadii()
{
    KpPathSegEllipse seg(QPointF(10, 10), 5, 3, nullptr);
    seg.applyTransform(QMatrix(2, 0, 0, 2, 0, 0));
    QCOMPARE(exact(seg.pt), exact(KpPoint({1, 0, 20}, {2, 0, 20})));
    QCOMPARE(exact(seg.a), exact(KpReal(1, 0, 5)));
    QCOMPARE(exact(seg.b), exact(KpReal(2, 0, 3)));
}

void TestKpPathSegEllipse::drawsTheEllipseInItsBounds_data()
{
    QTest::addColumn<QPointF>("centre");
    QTest::addColumn<double>("a");
    QTest::addColumn<double>("b");
    QTest::addColumn<QRectF>("bounds");
    QTest::newRow("radii are half axes")
        << QPointF(50, 40) << 30.0 << 20.0 << QRectF(20, 20, 60, 40);
    QTest::newRow("no radius") << QPointF(50, 40) << 0.0 << 20.0 << QRectF(50, 20, 0, 40);
    QTest::newRow("a point") << QPointF(50, 40) << 0.0 << 0.0 << QRectF(50, 40, 0, 0);
    QTest::newRow("negative radii")
        << QPointF(50, 40) << -30.0 << -20.0 << QRectF(80, 60, -60, -40);
    QTest::newRow("infinite radius")
        << QPointF(50, 40) << infinite << 20.0 << QRectF(-infinite, 20, infinite, 40);
}

void TestKpPathSegEllipse::drawsTheEllipseInItsBounds()
{
    QFETCH(QPointF, centre);
    QFETCH(double, a);
    QFETCH(double, b);
    QFETCH(QRectF, bounds);
    KpPath path;
    KpPathSegEllipse(centre, a, b, nullptr).addToPath(path);
    QVERIFY(path.count() > 0);
    QCOMPARE(exact(path), exact(withEllipse(KpPath(), bounds)));
}

void TestKpPathSegEllipse::drawsBehindWhatIsThere()
{
    KpPath before;
    before.append({1, 2, 3, 4, 1});
    KpPath path = before;
    KpPathSegEllipse(QPointF(50, 40), 30, 20, nullptr).addToPath(path);
    QCOMPARE(exact(path), exact(withEllipse(before, QRectF(20, 20, 60, 40))));
}

void TestKpPathSegEllipse::isWrittenAsDocumentsHaveIt()
{
    KpPathSegEllipse seg(QPointF(50, 40), 30, 20, nullptr);
    QCOMPARE(streamText(seg),
        QByteArray("<Ellipse><X V=\"50\" B=\"1\" P=\"0\"/><Y V=\"40\" B=\"2\" P=\"0\"/>"
                   "<A V=\"30\" B=\"1\" P=\"0\"/><B V=\"20\" B=\"2\" P=\"0\"/></Ellipse>"));
    QCOMPARE(domMeaning(seg),
        QString("Ellipse[](X[B=1 P=0 V=50] Y[B=2 P=0 V=40] A[B=1 P=0 V=30] B[B=2 P=0 V=20])"));
}

void TestKpPathSegEllipse::rulesOfRadiiSurviveADocument()
{
    KpPathSegEllipse seg(QPointF(50, 40), 30, 20, nullptr);
    seg.a.base = 5;
    seg.a.rate = 0.25;
    QByteArray const xml = streamText(seg);
    auto const fromDom = create();
    QVERIFY(parseDom(*fromDom, xml));
    QCOMPARE(exact(fromDom->toEllipse()->a), exact(KpReal(5, 0.25, 30)));
    auto const fromStream = create();
    QVERIFY(parseStream(*fromStream, xml));
    QCOMPARE(exact(fromStream->toEllipse()->a), exact(KpReal(5, 0.25, 30)));
}

void TestKpPathSegEllipse::coordinatesOfACurveAreNotRead()
{
    QByteArray const xml = "<Ellipse><X V='1'/><Y V='2'/><A V='-3'/><B V='0'/>"
                           "<C V='98' B='3'/><D V='99' B='3'/></Ellipse>";
    KpPathSegEllipse expected(QPointF(1, 2), -3, 0, nullptr);
    auto const fromDom = create();
    QVERIFY(parseDom(*fromDom, xml));
    QCOMPARE(exact(*fromDom), exact(expected));
    auto const fromStream = create();
    QVERIFY(parseStream(*fromStream, xml));
    QCOMPARE(exact(*fromStream), exact(expected));
}

QTEST_GUILESS_MAIN(TestKpPathSegEllipse)
#include "tst_kppathsegellipse.moc"
