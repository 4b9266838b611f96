// SPDX-License-Identifier: MIT
#include "segmenttesting.h"

using OutlineTesting::exact;
using OutlineTesting::parseDom;
using OutlineTesting::parseStream;

namespace {

TestedKind const kindCurveTo {"CurveTo", KpPathSeg::SegCurveTo,
    {
        {'X', 1, true, [](KpPathSeg& seg) -> KpReal& { return seg.pt.x; }},
        {'Y', 2, true, [](KpPathSeg& seg) -> KpReal& { return seg.pt.y; }},
        {'A', 1, true, [](KpPathSeg& seg) -> KpReal& { return seg.toCurveTo()->ctrl1.x; }},
        {'B', 2, true, [](KpPathSeg& seg) -> KpReal& { return seg.toCurveTo()->ctrl1.y; }},
        {'C', 1, true, [](KpPathSeg& seg) -> KpReal& { return seg.toCurveTo()->ctrl2.x; }},
        {'D', 2, true, [](KpPathSeg& seg) -> KpReal& { return seg.toCurveTo()->ctrl2.y; }},
    },
    false, true, [](KpPathSegList* owner) -> KpPathSeg* {
        return new KpPathSegCurveTo(QPointF(0.0, 0.0), QPointF(0.0, 0.0), QPointF(0.0, 0.0), owner);
    }};

} // namespace

class TestKpPathSegCurveTo : public SegmentTest
{
    Q_OBJECT

public:
    TestKpPathSegCurveTo()
        : SegmentTest(kindCurveTo)
    {
    }

private Q_SLOTS:
    void takesPlainPointsTheEndLast();
    void takesBoundPointsWithAllTheirFields();
    void cloneKeepsEveryBase();
    void drawsThreeElements();
    void drawsACurveOfAnyLength();
    void isWrittenAsDocumentsHaveIt();
    void withoutControlPointsReadsThemAtTheOrigin();
};

void TestKpPathSegCurveTo::takesPlainPointsTheEndLast()
{
    KpPathSegList list;
    KpPathSegCurveTo const seg(QPointF(1, 2), QPointF(3, 4), QPointF(5, 6), &list);
    QCOMPARE(seg.type, KpPathSeg::SegCurveTo);
    QCOMPARE(seg.owner, &list);
    QCOMPARE(exact(seg.ctrl1), exact(KpPoint({1, 0, 1}, {2, 0, 2})));
    QCOMPARE(exact(seg.ctrl2), exact(KpPoint({1, 0, 3}, {2, 0, 4})));
    QCOMPARE(exact(seg.pt), exact(KpPoint({1, 0, 5}, {2, 0, 6})));
}

void TestKpPathSegCurveTo::takesBoundPointsWithAllTheirFields()
{
    KpPoint const first({3, 0.25, 1}, {-4, 0.5, 2});
    KpPoint const second({0, 0.75, 3}, {7, 1.25, 4});
    KpPoint const end({32767, 1.5, 5}, {-32768, 1.75, 6});
    KpPathSegCurveTo const seg(first, second, end, nullptr);
    QCOMPARE(seg.type, KpPathSeg::SegCurveTo);
    QCOMPARE(seg.owner, nullptr);
    QCOMPARE(exact(seg.ctrl1), exact(first));
    QCOMPARE(exact(seg.ctrl2), exact(second));
    QCOMPARE(exact(seg.pt), exact(end));
}

void TestKpPathSegCurveTo::cloneKeepsEveryBase()
{
    KpPathSegCurveTo seg(KpPoint({3, 0.25, 1}, {-4, 0.5, 2}), KpPoint({0, 0.75, 3}, {7, 1.25, 4}),
        KpPoint({5, 1.5, 5}, {6, 1.75, 6}), nullptr);
    std::unique_ptr<KpPathSeg> const copy(seg.clone());
    QCOMPARE(exact(*copy), exact(seg));
}

void TestKpPathSegCurveTo::drawsThreeElements()
{
    KpPath path;
    KpPathSegCurveTo seg(KpPoint({3, 9, 1}, {3, 9, 2}), KpPoint({3, 9, 3}, {3, 9, 4}),
        KpPoint({3, 9, 5}, {3, 9, 6}), nullptr);
    seg.addToPath(path);
    KpPath expected;
    expected.append({1, 2, 0, 0, 2});
    expected.append({3, 4, 0, 0, 3});
    expected.append({5, 6, 0, 0, 3});
    QCOMPARE(exact(path), exact(expected));
}

void TestKpPathSegCurveTo::drawsACurveOfAnyLength()
{
    KpPath path;
    path.append({10, 20, 0, 0, 1});
    QPointF const last(10, 20);
    KpPathSegCurveTo(last, last, last, nullptr).addToPath(path);
    KpPath expected;
    expected.append({10, 20, 0, 0, 1});
    expected.append({10, 20, 0, 0, 2});
    expected.append({10, 20, 0, 0, 3});
    expected.append({10, 20, 0, 0, 3});
    QCOMPARE(exact(path), exact(expected));
}

void TestKpPathSegCurveTo::isWrittenAsDocumentsHaveIt()
{
    KpPathSegCurveTo seg(QPointF(10, 20), QPointF(30, 40), QPointF(50, 60), nullptr);
    seg.updateRate(100, 80);
    QCOMPARE(streamText(seg),
        QByteArray("<CurveTo><X V=\"50\" B=\"1\" P=\"0.5\"/><Y V=\"60\" B=\"2\" P=\"0.75\"/>"
                   "<A V=\"10\" B=\"1\" P=\"0.1\"/><B V=\"20\" B=\"2\" P=\"0.25\"/>"
                   "<C V=\"30\" B=\"1\" P=\"0.3\"/><D V=\"40\" B=\"2\" P=\"0.5\"/></CurveTo>"));
    QCOMPARE(domMeaning(seg),
        QString("CurveTo[](X[B=1 P=0.5 V=50] Y[B=2 P=0.75 V=60] A[B=1 P=0.1 V=10] "
                "B[B=2 P=0.25 V=20] C[B=1 P=0.3 V=30] D[B=2 P=0.5 V=40])"));
}

void TestKpPathSegCurveTo::withoutControlPointsReadsThemAtTheOrigin()
{
    QByteArray const xml = "<CurveTo><X V='5' B='3' P='1'/><Y V='6'/></CurveTo>";
    KpPathSegCurveTo expected(KpPoint({1, 0, 0}, {2, 0, 0}), KpPoint({1, 0, 0}, {2, 0, 0}),
        KpPoint({3, 1, 5}, {2, 0, 6}), nullptr);
    auto const fromDom = create();
    QVERIFY(parseDom(*fromDom, xml));
    QCOMPARE(exact(*fromDom), exact(expected));
    auto const fromStream = create();
    QVERIFY(parseStream(*fromStream, xml));
    QCOMPARE(exact(*fromStream), exact(expected));
}

QTEST_GUILESS_MAIN(TestKpPathSegCurveTo)
#include "tst_kppathsegcurveto.moc"
