// SPDX-License-Identifier: MIT
#include "fit/rulefit.h"
#include "outlinetesting.h"

using Boxes = QVector<QSizeF>;
using Values = QVector<double>;
using Rules = QVector<int>;

Q_DECLARE_METATYPE(Axis)

namespace {

/** One landscape, one portrait, with different smaller sides. */
Boxes const decisive {QSizeF(400, 200), QSizeF(150, 300)};
Boxes const landscapes {QSizeF(400, 200), QSizeF(600, 300)};
Boxes const sameHeight {QSizeF(400, 200), QSizeF(600, 200)};

Rules rulesOf(QVector<RuleChoice> const& choices)
{
    Rules rules;
    for (RuleChoice const& choice : choices)
        rules << choice.rule;
    return rules;
}

} // namespace

class TestRuleFit : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsTheRule_data();
    void findsTheRule();
    void tellsWhatIsNotDecided_data();
    void tellsWhatIsNotDecided();
    void takesTheNearestRuleIfNoneFits_data();
    void takesTheNearestRuleIfNoneFits();
    void theToleranceIsAnInclusiveBound();
    void fitsByLeastSquares();
    void decidesEveryRuleInALandscapeAndAPortrait();
    void strangenessRanksOwnRulesFirst();
};

void TestRuleFit::findsTheRule_data()
{
    QTest::addColumn<Axis>("axis");
    QTest::addColumn<Values>("values");
    QTest::addColumn<int>("rule");
    QTest::addColumn<double>("parameter");
    auto const row = [](char const* name, Axis axis, Values const& values, int rule,
                         double parameter) {
        QTest::newRow(name) << axis << values << rule << parameter;
    };
    row("absolute", Axis::Horizontal, {10, 10}, 0, 10);
    row("negative absolute", Axis::Vertical, {-10, -10}, 0, -10);
    row("a quarter of the width", Axis::Horizontal, {100, 37.5}, 1, 0.25);
    row("a quarter of the width, as y", Axis::Vertical, {100, 37.5}, 1, 0.25);
    row("a quarter of the height", Axis::Vertical, {50, 75}, 2, 0.25);
    row("20 from the right", Axis::Horizontal, {380, 130}, 3, 20);
    row("20 from below", Axis::Vertical, {180, 280}, 4, 20);
    row("beyond the right edge", Axis::Horizontal, {405, 155}, 3, -5);
    row("a quarter of the smaller side", Axis::Horizontal, {50, 37.5}, 5, 0.25);
    row("that from the right", Axis::Horizontal, {350, 112.5}, 6, 0.25);
    row("that from below", Axis::Vertical, {150, 262.5}, 7, 0.25);
    row("left edge", Axis::Horizontal, {0, 0}, 1, 0);
    row("upper edge", Axis::Vertical, {0, 0}, 2, 0);
    row("right edge", Axis::Horizontal, {400, 150}, 1, 1);
    row("lower edge", Axis::Vertical, {200, 300}, 2, 1);
    row("the width, as y", Axis::Vertical, {400, 150}, 1, 1);
    row("the height, as x", Axis::Horizontal, {200, 300}, 2, 1);
    row("the smaller side", Axis::Horizontal, {200, 150}, 5, 1);
    row("within the tolerance of the right edge", Axis::Horizontal, {399.991, 150.009}, 1, 1);
}

void TestRuleFit::findsTheRule()
{
    QFETCH(Axis, axis);
    QFETCH(Values, values);
    QFETCH(int, rule);
    QFETCH(double, parameter);
    CoordinateFit const fit = RuleFitter(decisive, 0.01).fit(values.data(), axis);
    QVERIFY(fit.isExpressed);
    QCOMPARE(rulesOf(fit.rivals), Rules());
    QCOMPARE(int(fit.choice.rule), rule);
    COMPARE_BITS(fit.choice.parameter, parameter);
    QVERIFY(fit.error <= 0.01);
}

void TestRuleFit::tellsWhatIsNotDecided_data()
{
    QTest::addColumn<Boxes>("boxes");
    QTest::addColumn<Axis>("axis");
    QTest::addColumn<Values>("values");
    QTest::addColumn<Rules>("rules");
    auto const row = [](char const* name, Boxes const& boxes, Axis axis, Values const& values,
                         Rules const& rules) {
        QTest::newRow(name) << boxes << axis << values << rules;
    };
    Axis const x = Axis::Horizontal;
    Axis const y = Axis::Vertical;
    row("a landscape's corner may follow the height", landscapes, x, {50, 75}, {1, 5, 6, 2, 7});
    row("and so may one in y", landscapes, y, {50, 75}, {2, 5, 7, 1, 6});
    row("one smaller side: fixed or a part of it", sameHeight, x, {50, 50}, {0, 5, 2, 4, 7});
    row("from the right likewise", sameHeight, x, {350, 550}, {3, 6});
    row("from below likewise", sameHeight, y, {150, 150}, {2, 0, 4, 5, 7});
    row("squares: right is below", {QSizeF(100, 100), QSizeF(200, 200)}, x, {100, 200}, {1, 2, 5});
    row("squares: below is right", {QSizeF(100, 100), QSizeF(200, 200)}, y, {100, 200}, {2, 1, 5});
    row("one box decides nothing", {QSizeF(100, 50)}, x, {30}, {1, 0, 3, 5, 6, 2, 4, 7});
    row("an edge is preferred", {QSizeF(100, 50)}, x, {0}, {1, 3, 6, 4, 7});
}

void TestRuleFit::tellsWhatIsNotDecided()
{
    QFETCH(Boxes, boxes);
    QFETCH(Axis, axis);
    QFETCH(Values, values);
    QFETCH(Rules, rules);
    CoordinateFit const fit = RuleFitter(boxes, 0.01).fit(values.data(), axis);
    QVERIFY(fit.isExpressed);
    QCOMPARE(Rules {fit.choice.rule} + rulesOf(fit.rivals), rules);
}

void TestRuleFit::takesTheNearestRuleIfNoneFits_data()
{
    QTest::addColumn<Axis>("axis");
    QTest::addColumn<Values>("values");
    QTest::addColumn<int>("rule");
    QTest::addColumn<double>("parameter");
    QTest::addColumn<double>("error");
    QTest::newRow("half way between 10 and 12")
        << Axis::Horizontal << Values {10, 12} << 0 << 11.0 << 1.0;
    QTest::newRow("near the right") << Axis::Horizontal << Values {380, 128} << 3 << 21.0 << 1.0;
    QTest::newRow("near the lower edge") << Axis::Vertical << Values {181, 279} << 4 << 20.0 << 1.0;
}

void TestRuleFit::takesTheNearestRuleIfNoneFits()
{
    QFETCH(Axis, axis);
    QFETCH(Values, values);
    QFETCH(int, rule);
    QFETCH(double, parameter);
    QFETCH(double, error);
    CoordinateFit const fit = RuleFitter(decisive, 0.01).fit(values.data(), axis);
    QVERIFY(!fit.isExpressed);
    QVERIFY(fit.rivals.isEmpty());
    QCOMPARE(int(fit.choice.rule), rule);
    COMPARE_BITS(fit.choice.parameter, parameter);
    COMPARE_BITS(fit.error, error);
}

void TestRuleFit::theToleranceIsAnInclusiveBound()
{
    Values const values {10, 12};
    QVERIFY(RuleFitter(decisive, 1.0).fit(values.data(), Axis::Horizontal).isExpressed);
    QVERIFY(!RuleFitter(decisive, 0.999).fit(values.data(), Axis::Horizontal).isExpressed);
    Values const edge {0.5, -0.5};
    CoordinateFit const onEdge = RuleFitter(decisive, 0.5).fit(edge.data(), Axis::Horizontal);
    QCOMPARE(int(onEdge.choice.rule), 1);
    COMPARE_BITS(onEdge.choice.parameter, 0.0);
}

void TestRuleFit::fitsByLeastSquares()
{
    Boxes const boxes {QSizeF(100, 500), QSizeF(200, 450), QSizeF(300, 40)};
    // (100*51 + 200*100 + 300*149) / (100*100 + 200*200 + 300*300)
    Values const values {51, 100, 149};
    CoordinateFit const fit = RuleFitter(boxes, 2.0).fit(values.data(), Axis::Horizontal);
    QCOMPARE(int(fit.choice.rule), 1);
    COMPARE_BITS(fit.choice.parameter, 69800.0 / 140000.0);
    // No farther than the tolerance allows: least squares would give 0.49929.
    Values const skewed {52, 100, 149};
    CoordinateFit const bounded = RuleFitter(boxes, 2.0).fit(skewed.data(), Axis::Horizontal);
    COMPARE_BITS(bounded.choice.parameter, 0.5);
}

void TestRuleFit::decidesEveryRuleInALandscapeAndAPortrait()
{
    QRandomGenerator random = Testing::seededRandom(11);
    RuleFitter const fitter(decisive, 1e-6);
    int decided = 0;
    for (int round = 0; round < 20000; ++round) {
        auto const rule = static_cast<qint16>(random.bounded(8));
        bool const isLength = rule == 0 || rule == 3 || rule == 4;
        double const parameter =
            isLength ? 1.0 + random.bounded(100.0) : 0.01 + random.bounded(0.98);
        RuleChoice const truth {rule, parameter, parameter, parameter};
        Values const values {truth.valueIn(decisive.at(0)), truth.valueIn(decisive.at(1))};
        Axis const axis = random.bounded(2) ? Axis::Horizontal : Axis::Vertical;
        CoordinateFit const fit = fitter.fit(values.data(), axis);
        QVERIFY(fit.isExpressed);
        QVector<RuleChoice> const all = QVector<RuleChoice> {fit.choice} + fit.rivals;
        auto const found = std::find_if(all.begin(), all.end(),
            [rule](RuleChoice const& choice) { return choice.rule == rule; });
        QVERIFY2(found != all.end(), qPrintable(QString("rule %1, %2").arg(rule).arg(parameter)));
        QVERIFY(std::abs(found->parameter - parameter) < 1e-6);
        decided += fit.rivals.isEmpty() ? 1 : 0;
    }
    QVERIFY2(decided > 19990, qPrintable(QString::number(decided)));
}

void TestRuleFit::strangenessRanksOwnRulesFirst()
{
    RuleFitter const fitter(decisive, 0.01);
    Values const right {380, 130};
    Values const arbitrary {380, 17};
    QCOMPARE(fitter.strangeness(right.data(), Axis::Horizontal), 0);
    QCOMPARE(fitter.strangeness(right.data(), Axis::Vertical), 1);
    QCOMPARE(fitter.strangeness(arbitrary.data(), Axis::Horizontal), 16);
}

QTEST_GUILESS_MAIN(TestRuleFit)

#include "tst_rulefit.moc"
