// SPDX-License-Identifier: MIT
#include "import/guideformula.h"
#include "testing.h"

class TestGuideFormula : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void operatorsCompute_data();
    void operatorsCompute();
    void namesOfTheBox_data();
    void namesOfTheBox();
    void aGuideSeesThoseBeforeIt();
    void aLaterGuideTakesTheNameOver();
    void spacesDoNotCount();
    void furtherOperandsDoNotCount();
    void faultsAreNamed_data();
    void faultsAreNamed();
    void whatHasNoValueCountsAsZero_data();
    void whatHasNoValueCountsAsZero();
    void adjustmentsTakeOtherValues();
    void onlyAdjustmentsTakeOtherValues();
    void countIsBounded();
    void anyFormulaHasAFiniteValue();
};

namespace {

QSizeF const wideBox(640, 320);

/** The value of a formula as the only guide of a shape. */
double computed(QString const& formula, QSizeF const& box = wideBox)
{
    Guides guides;
    QString const fault = guides.add("x", formula, false);
    if (!fault.isEmpty())
        qFatal("%s", qPrintable(fault));
    return guides.values(box, {}).values.back();
}

/** Equal but for the rounding of a few operations. */
bool isNear(double left, double right)
{
    return std::fabs(left - right) <= 1e-12 * std::max(1.0, std::fabs(right));
}

} // namespace

void TestGuideFormula::operatorsCompute_data()
{
    QTest::addColumn<QString>("formula");
    QTest::addColumn<double>("expected");
    double const root2 = 1.4142135623730951;
    QTest::newRow("product by quotient") << "*/ 6 10 4" << 15.0;
    QTest::newRow("quotient is not whole") << "*/ 1 1 8" << 0.125;
    QTest::newRow("sum and difference") << "+- 5 7 20" << -8.0;
    QTest::newRow("sum by quotient") << "+/ 5 7 4" << 3.0;
    QTest::newRow("if positive") << "?: 1 5 6" << 5.0;
    QTest::newRow("if zero") << "?: 0 5 6" << 6.0;
    QTest::newRow("if negative") << "?: -1 5 6" << 6.0;
    QTest::newRow("abs of negative") << "abs -7" << 7.0;
    QTest::newRow("abs of positive") << "abs 7" << 7.0;
    QTest::newRow("angle of the diagonal") << "at2 3 3" << 2700000.0;
    QTest::newRow("angle downwards") << "at2 0 3" << 5400000.0;
    QTest::newRow("angle upwards") << "at2 0 -3" << -5400000.0;
    QTest::newRow("angle leftwards") << "at2 -3 0" << 10800000.0;
    QTest::newRow("angle of nothing") << "at2 0 0" << 0.0;
    QTest::newRow("cosine of an angle of") << "cat2 10 3 4" << 6.0;
    QTest::newRow("cosine") << "cos 10 3600000" << 5.0;
    QTest::newRow("cosine of a quarter") << "cos 10 cd4" << 0.0;
    QTest::newRow("cosine of three eighths") << "cos 10 3cd8" << -5.0 * root2;
    QTest::newRow("maximum") << "max 3 -4" << 3.0;
    QTest::newRow("minimum") << "min 3 -4" << -4.0;
    QTest::newRow("modulus") << "mod 2 -3 6" << 7.0;
    QTest::newRow("pinned below") << "pin 2 1 9" << 2.0;
    QTest::newRow("pinned above") << "pin 2 10 9" << 9.0;
    QTest::newRow("not pinned") << "pin 2 5 9" << 5.0;
    QTest::newRow("sine of an angle of") << "sat2 10 3 4" << 8.0;
    QTest::newRow("sine") << "sin 10 1800000" << 5.0;
    QTest::newRow("sine of a negative angle") << "sin 10 -5400000" << -10.0;
    QTest::newRow("square root") << "sqrt 6.25" << 2.5;
    QTest::newRow("tangent") << "tan 10 2700000" << 10.0;
    QTest::newRow("value") << "val -8333" << -8333.0;
}

void TestGuideFormula::operatorsCompute()
{
    QFETCH(QString, formula);
    QFETCH(double, expected);
    double const actual = computed(formula);
    QVERIFY2(isNear(actual, expected), qPrintable(Testing::difference("it", actual, expected)));
}

void TestGuideFormula::namesOfTheBox_data()
{
    QTest::addColumn<double>("wide"); // in 640 by 320
    QTest::addColumn<double>("high"); // in 320 by 960
    QTest::newRow("l") << 0.0 << 0.0;
    QTest::newRow("t") << 0.0 << 0.0;
    QTest::newRow("r") << 640.0 << 320.0;
    QTest::newRow("b") << 320.0 << 960.0;
    QTest::newRow("w") << 640.0 << 320.0;
    QTest::newRow("h") << 320.0 << 960.0;
    QTest::newRow("hc") << 320.0 << 160.0;
    QTest::newRow("vc") << 160.0 << 480.0;
    QTest::newRow("ss") << 320.0 << 320.0;
    QTest::newRow("ls") << 640.0 << 960.0;
    QTest::newRow("wd2") << 320.0 << 160.0;
    QTest::newRow("wd3") << 640.0 / 3 << 320.0 / 3;
    QTest::newRow("wd4") << 160.0 << 80.0;
    QTest::newRow("wd5") << 128.0 << 64.0;
    QTest::newRow("wd6") << 640.0 / 6 << 320.0 / 6;
    QTest::newRow("wd8") << 80.0 << 40.0;
    QTest::newRow("wd10") << 64.0 << 32.0;
    QTest::newRow("wd12") << 640.0 / 12 << 320.0 / 12;
    QTest::newRow("wd32") << 20.0 << 10.0;
    QTest::newRow("hd2") << 160.0 << 480.0;
    QTest::newRow("hd3") << 320.0 / 3 << 320.0;
    QTest::newRow("hd4") << 80.0 << 240.0;
    QTest::newRow("hd5") << 64.0 << 192.0;
    QTest::newRow("hd6") << 320.0 / 6 << 160.0;
    QTest::newRow("hd8") << 40.0 << 120.0;
    QTest::newRow("hd10") << 32.0 << 96.0;
    QTest::newRow("ssd2") << 160.0 << 160.0;
    QTest::newRow("ssd4") << 80.0 << 80.0;
    QTest::newRow("ssd6") << 320.0 / 6 << 320.0 / 6;
    QTest::newRow("ssd8") << 40.0 << 40.0;
    QTest::newRow("ssd16") << 20.0 << 20.0;
    QTest::newRow("ssd32") << 10.0 << 10.0;
    QTest::newRow("cd2") << 10800000.0 << 10800000.0;
    QTest::newRow("cd4") << 5400000.0 << 5400000.0;
    QTest::newRow("cd8") << 2700000.0 << 2700000.0;
    QTest::newRow("3cd4") << 16200000.0 << 16200000.0;
    QTest::newRow("3cd8") << 8100000.0 << 8100000.0;
    QTest::newRow("5cd8") << 13500000.0 << 13500000.0;
    QTest::newRow("7cd8") << 18900000.0 << 18900000.0;
}

void TestGuideFormula::namesOfTheBox()
{
    QFETCH(double, wide);
    QFETCH(double, high);
    QString const formula = QStringLiteral("val ") + QTest::currentDataTag();
    QVERIFY(isNear(computed(formula), wide));
    QVERIFY(isNear(computed(formula, QSizeF(320, 960)), high));
}

void TestGuideFormula::aGuideSeesThoseBeforeIt()
{
    Guides guides;
    QCOMPARE(guides.add("adj", "val 25000", true), QString());
    QCOMPARE(guides.add("x1", "*/ ss adj 100000", false), QString());
    QCOMPARE(guides.add("x2", "+- r 0 x1", false), QString());
    QCOMPARE(guides.values(wideBox, {}).values.back(), 560.0);
    QCOMPARE(guides.values(QSizeF(100, 200), {}).values.back(), 75.0);
    QCOMPARE(guides.count(), 3);
    QCOMPARE(guides.adjustments(), QStringList {"adj"});
}

void TestGuideFormula::aLaterGuideTakesTheNameOver()
{
    Guides guides;
    QCOMPARE(guides.add("w", "*/ w 1 2", false), QString()); // in the place of the width
    QCOMPARE(guides.add("w", "+- w 1 0", false), QString());
    QCOMPARE(guides.add("y", "val w", false), QString());
    QCOMPARE(guides.values(wideBox, {}).values.back(), 321.0);
}

void TestGuideFormula::spacesDoNotCount()
{
    QCOMPARE(computed(" +-  9\t1\n 2 "), 8.0);
}

void TestGuideFormula::furtherOperandsDoNotCount()
{
    QCOMPARE(computed("+- 9 1 2 0"), 8.0);
    QCOMPARE(computed("val 9 nonsense"), 9.0);
}

void TestGuideFormula::faultsAreNamed_data()
{
    QTest::addColumn<QString>("formula");
    QTest::addColumn<QString>("fault");
    QTest::newRow("nothing") << ""
                             << "'' is no operator";
    QTest::newRow("no operator") << "pow 1 2"
                                 << "'pow' is no operator";
    QTest::newRow("upper case") << "VAL 1"
                                << "'VAL' is no operator";
    QTest::newRow("no operand") << "val"
                                << "val takes 1 operands, not 0";
    QTest::newRow("too few operands") << "+- 1 2"
                                      << "+- takes 3 operands, not 2";
    QTest::newRow("unknown name") << "val y"
                                  << "'y' is no number and no earlier guide";
    QTest::newRow("itself") << "val x"
                            << "'x' is no number and no earlier guide";
    QTest::newRow("not a number") << "val nan"
                                  << "'nan' is no number and no earlier guide";
    QTest::newRow("infinite") << "abs inf"
                              << "'inf' is no number and no earlier guide";
    QTest::newRow("too large") << "abs 1e999"
                               << "'1e999' is no number and no earlier guide";
}

void TestGuideFormula::faultsAreNamed()
{
    QFETCH(QString, formula);
    QFETCH(QString, fault);
    Guides guides;
    QCOMPARE(guides.add("x", formula, false), fault);
    QCOMPARE(guides.count(), 0);
    QVERIFY(!guides.number("x"));
}

void TestGuideFormula::whatHasNoValueCountsAsZero_data()
{
    QTest::addColumn<QString>("formula");
    QTest::newRow("division by zero") << "*/ 1 1 0";
    QTest::newRow("division of zero by zero") << "*/ 0 1 0";
    QTest::newRow("division of a sum by zero") << "+/ 1 1 l";
    QTest::newRow("root of a negative number") << "sqrt -1";
    QTest::newRow("too large a product") << "*/ 1e200 1e200 1";
    QTest::newRow("too small a divisor") << "*/ 1e200 1 1e-200";
    QTest::newRow("too large a sum") << "+- 1e308 1e308 0";
}

void TestGuideFormula::whatHasNoValueCountsAsZero()
{
    QFETCH(QString, formula);
    Guides guides;
    QCOMPARE(guides.add("bad", formula, false), QString());
    QCOMPARE(guides.add("good", "+- bad 5 0", false), QString());
    Guides::Values const result = guides.values(wideBox, {});
    QCOMPARE(result.undefined, QStringList {"bad"});
    QCOMPARE(result.values.back(), 5.0);
}

void TestGuideFormula::adjustmentsTakeOtherValues()
{
    Guides guides;
    guides.add("adj", "val 25000", true);
    guides.add("x", "*/ w adj 100000", false);
    QCOMPARE(guides.values(wideBox, {{"adj", 50000.0}, {"other", 1.0}}).values.back(), 320.0);
}

void TestGuideFormula::onlyAdjustmentsTakeOtherValues()
{
    Guides guides;
    guides.add("x", "val 3", false);
    QCOMPARE(guides.values(wideBox, {{"x", 4.0}, {"w", 1.0}}).values.back(), 3.0);
}

void TestGuideFormula::countIsBounded()
{
    Guides guides;
    for (int i = 0; i < Guides::maximumCount; ++i)
        QVERIFY(guides.add(QString::number(i), "val 1", false).isEmpty());
    QCOMPARE(guides.add("one", "val 1", false), QString("more than 20000 guides"));
}

void TestGuideFormula::anyFormulaHasAFiniteValue()
{
    QRandomGenerator random = Testing::seededRandom(11);
    QStringList const operators {"*/", "+-", "+/", "?:", "abs", "at2", "cat2", "cos", "max", "min",
        "mod", "pin", "sat2", "sin", "sqrt", "tan", "val"};
    for (int round = 0; round < 500; ++round) {
        Guides guides;
        QStringList names {"w", "ss", "cd4", "l"};
        for (int i = 0; i < 30; ++i) {
            QStringList words {operators.at(random.bounded(operators.size()))};
            for (int operand = 0; operand < 3; ++operand) {
                double const number = Testing::awkwardReal(random);
                words << (random.bounded(2) == 0 && std::isfinite(number)
                        ? QString::number(number, 'g', 17)
                        : names.at(random.bounded(names.size())));
            }
            QString const name = QStringLiteral("g%1").arg(i);
            QCOMPARE(guides.add(name, words.join(' '), false), QString());
            names << name;
        }
        for (double const value : guides.values(wideBox, {}).values)
            QVERIFY(std::isfinite(value));
    }
}

QTEST_GUILESS_MAIN(TestGuideFormula)

#include "tst_guideformula.moc"
