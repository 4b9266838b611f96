// SPDX-License-Identifier: MIT
#include "import/arccurves.h"
#include "testing.h"

#include <QTransform>

class TestArcCurves : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void makesACurveAQuarter_data();
    void makesACurveAQuarter();
    void followsTheEllipse();
    void endsWhereItIsTold();
    void endsInCurvesWhateverTheNumbers();
};

namespace {

QPointF onCurve(QPointF const& from, Curve const& curve, double t)
{
    double const s = 1.0 - t;
    return s * s * s * from + 3.0 * s * s * t * curve.control1 + 3.0 * s * t * t * curve.control2
        + t * t * t * curve.end;
}

double length(QPointF const& vector)
{
    return std::sqrt(QPointF::dotProduct(vector, vector));
}

} // namespace

void TestArcCurves::makesACurveAQuarter_data()
{
    QTest::addColumn<double>("degrees");
    QTest::addColumn<int>("count");

    QTest::newRow("1") << 1.0 << 1;
    QTest::newRow("90") << 90.0 << 1;
    QTest::newRow("91") << 91.0 << 2;
    QTest::newRow("180") << 180.0 << 2;
    QTest::newRow("270") << 270.0 << 3;
    QTest::newRow("359") << 359.0 << 4;
}

void TestArcCurves::makesACurveAQuarter()
{
    QFETCH(double, degrees);
    QFETCH(int, count);

    double const angle = degrees * 3.14159265358979 / 180.0;
    QPointF const to(50.0 * std::cos(angle), 50.0 * std::sin(angle));
    QCOMPARE(int(arcCurves({50, 0}, to, {{50, 50}, 0.0, degrees > 180, true}).size()), count);
    QPointF const mirrored(to.x(), -to.y());
    QCOMPARE(
        int(arcCurves({50, 0}, mirrored, {{50, 50}, 0.0, degrees > 180, false}).size()), count);
}

void TestArcCurves::followsTheEllipse()
{
    QRandomGenerator random = Testing::seededRandom(21);
    auto const between = [&random](double least, double most) {
        return least + random.generateDouble() * (most - least);
    };
    double const turn = 2.0 * 3.14159265358979;
    for (int round = 0; round < 3000; ++round) {
        EllipticalArc arc;
        arc.radii = QSizeF(between(1, 1000), between(1, 1000));
        arc.rotation = between(-400, 400);
        arc.isClockwise = random.bounded(2) == 1;
        QTransform const fromCircle = QTransform::fromScale(arc.radii.width(), arc.radii.height())
            * QTransform().rotate(arc.rotation)
            * QTransform::fromTranslate(between(-500, 500), between(-500, 500));
        double const start = between(0, turn);
        double const sweep = between(0.01, turn - 0.01) * (arc.isClockwise ? 1 : -1);
        arc.isLarge = std::abs(sweep) > turn / 2;
        // The ends of half an ellipse leave open where its middle is.
        if (std::abs(std::abs(sweep) - turn / 2) < 0.001)
            continue;
        auto const at = [&fromCircle](double angle) {
            return fromCircle.map(QPointF(std::cos(angle), std::sin(angle)));
        };
        QPointF from = at(start);
        std::vector<Curve> const curves = arcCurves(from, at(start + sweep), arc);
        double const step = sweep / double(curves.size());
        for (std::size_t i = 0; i < curves.size(); ++i) {
            for (double const t : {0.1, 0.25, 0.5, 0.75, 0.9, 1.0}) {
                QPointF const point = fromCircle.inverted().map(onCurve(from, curves[i], t));
                QVERIFY(std::abs(length(point) - 1.0) < 0.0003);
                // A curve's parameter is not quite the angle, but near.
                double const angle = start + (double(i) + t) * step;
                QVERIFY(length(point - QPointF(std::cos(angle), std::sin(angle))) < 0.02);
            }
            from = curves[i].end;
        }
    }
}

void TestArcCurves::endsWhereItIsTold()
{
    QPointF const to(0.1 + 0.2, 1.0 / 3.0);
    std::vector<Curve> const curves = arcCurves({7, 5}, to, {{3, 4}, 12.3, true, false});
    COMPARE_BITS(curves.back().end.x(), to.x());
    COMPARE_BITS(curves.back().end.y(), to.y());
    QVERIFY(arcCurves(to, to, {{3, 4}, 0.0, true, true}).empty());
}

void TestArcCurves::endsInCurvesWhateverTheNumbers()
{
    QRandomGenerator random = Testing::seededRandom(22);
    for (int round = 0; round < 20000; ++round) {
        auto const real = [&random] { return Testing::awkwardReal(random); };
        EllipticalArc const arc {QSizeF(std::abs(real()), std::abs(real())), real(),
            random.bounded(2) == 1, random.bounded(2) == 1};
        std::vector<Curve> const curves = arcCurves({real(), real()}, {real(), real()}, arc);
        QVERIFY(curves.size() <= 4);
    }
}

QTEST_GUILESS_MAIN(TestArcCurves)

#include "tst_arccurves.moc"
