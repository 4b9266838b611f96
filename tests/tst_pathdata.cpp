// SPDX-License-Identifier: MIT
#include "export/pathdata.h"
#include "kpbound.h"
#include "outlinetesting.h"

#include <QRegularExpression>

using Testing::infinite;
using Testing::notANumber;

class TestPathData : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writesEachKind_data();
    void writesEachKind();
    void writesNumbers_data();
    void writesNumbers();
    void writesShortLines();
    void mirroredEllipsesRunTheOtherWay_data();
    void mirroredEllipsesRunTheOtherWay();
    void arcsOfEllipsesEndAWholeRadiusAway();
    void refusesWhatIsNotFinite_data();
    void refusesWhatIsNotFinite();
    void relativeNumbersAddUpToTheAbsoluteOnes_data();
    void relativeNumbersAddUpToTheAbsoluteOnes();
};

namespace {

KpPoint at(double x, double y)
{
    return KpBound::point(KpBound::absolute(x), KpBound::absolute(y));
}

void addEllipse(KpPathSegList& list, KpPoint const& centre, double a, double b)
{
    list.addTail(new KpPathSegEllipse(centre, KpReal(0, 0, a), KpReal(0, 0, b), nullptr));
}

QString written(KpPathSegList const& list, PathDataOptions const& options = {})
{
    return pathData(list, options).value_or("nothing");
}

/** The numbers of path data. */
QVector<double> numbersOf(QString const& data)
{
    QVector<double> numbers;
    QRegularExpression const number("[-+0-9.e]+");
    for (auto match = number.globalMatch(data); match.hasNext();)
        numbers << match.next().captured().toDouble();
    return numbers;
}

} // namespace

void TestPathData::writesEachKind_data()
{
    QTest::addColumn<QString>("kinds");
    QTest::addColumn<QString>("absolute");
    QTest::addColumn<QString>("relative");

    QTest::newRow("nothing") << ""
                             << ""
                             << "";
    QTest::newRow("nothing, closed") << "z"
                                     << ""
                                     << "";
    QTest::newRow("a move") << "m"
                            << "M1 2"
                            << "M1 2";
    QTest::newRow("a line") << "ml"
                            << "M1 2 L10 5"
                            << "M1 2 l9 3";
    QTest::newRow("a line without a start") << "l"
                                            << "M0 0 L10 5"
                                            << "M0 0 l10 5";
    QTest::newRow("a curve") << "mc"
                             << "M1 2 C3 4 5 6 7 9"
                             << "M1 2 c2 2 4 4 6 7";
    QTest::newRow("a curve without a start") << "c"
                                             << "M0 0 C3 4 5 6 7 9"
                                             << "M0 0 c3 4 5 6 7 9";
    QTest::newRow("an ellipse") << "e"
                                << "M50 30 A10 20 0 0 1 30 30 A10 20 0 0 1 50 30 Z"
                                << "M50 30 a10 20 0 0 1 -20 0 a10 20 0 0 1 20 0 Z";
    QTest::newRow("a closed ellipse") << "ez"
                                      << "M50 30 A10 20 0 0 1 30 30 A10 20 0 0 1 50 30 Z"
                                      << "M50 30 a10 20 0 0 1 -20 0 a10 20 0 0 1 20 0 Z";
    QTest::newRow("behind an ellipse, from its right")
        << "el"
        << "M50 30 A10 20 0 0 1 30 30 A10 20 0 0 1 50 30 Z L10 5"
        << "M50 30 a10 20 0 0 1 -20 0 a10 20 0 0 1 20 0 Z l-40 -25";
    QTest::newRow("closed") << "mlcz"
                            << "M1 2 L10 5 C3 4 5 6 7 9 Z"
                            << "M1 2 l9 3 c-7 -1 -5 1 -3 4 Z";
    QTest::newRow("two subpaths, the last one closed") << "mlmlz"
                                                       << "M1 2 L10 5 M1 2 L10 5 Z"
                                                       << "M1 2 l9 3 m-9 -3 l9 3 Z";
}

void TestPathData::writesEachKind()
{
    QFETCH(QString, kinds);
    QFETCH(QString, absolute);
    QFETCH(QString, relative);

    KpPathSegList list;
    for (QChar const kind : kinds) {
        if (kind == 'm')
            list.addTail(new KpPathSegMoveTo(at(1, 2), nullptr));
        else if (kind == 'l')
            list.addTail(new KpPathSegLineTo(at(10, 5), nullptr));
        else if (kind == 'c')
            list.addTail(new KpPathSegCurveTo(at(3, 4), at(5, 6), at(7, 9), nullptr));
        else if (kind == 'e')
            addEllipse(list, at(40, 30), 10, 20);
        else
            list.closed = true;
    }
    QCOMPARE(written(list), absolute);
    QCOMPARE(written(list, {true, std::nullopt}), relative);
}

void TestPathData::writesNumbers_data()
{
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("y");
    QTest::addColumn<int>("decimals"); // -1: six significant digits
    QTest::addColumn<QString>("absolute");
    QTest::addColumn<QString>("relative"); // from (0.1, 1000)

    auto const row = [](char const* name, double x, double y, int decimals, QString const& absolute,
                         QString const& relative) {
        QTest::newRow(name) << x << y << decimals << absolute << relative;
    };
    row("whole", 3, -7, -1, "3 -7", "2.9 -1007");
    row("no error of the difference", 0.3, 1000.1, -1, "0.3 1000.1", "0.2 0.1");
    row("six digits", 1.0 / 3, 2000.0 / 3, -1, "0.333333 666.667", "0.233333 -333.333");
    row("large", 1234567, 1e20, -1, "1234570 1e+20", "1234569.9 1e+20");
    row("small", 1e-5, 1e-20, -1, "1e-05 1e-20", "-0.09999 -1000");
    row("negative zero", -0.0, -0.0, -1, "0 0", "-0.1 -1000");
    row("no decimals", 1.5, -2.4, 0, "2 -2", "2 -1002");
    row("rounded to zero", -0.0004, 0.0004, 3, "0 0", "-0.1 -1000");
    row("trailing zeros", 1.5, 2.001, 2, "1.5 2", "1.4 -998");
    row("all decimals", 0.123456789012345, 1e15, 15, "0.123456789012345 1e+15",
        "0.023456789012345 999999999999000");
    row("huge with decimals", 1e300, -1e300, 2, "1e+300 -1e+300", "1e+300 -1e+300");
}

void TestPathData::writesNumbers()
{
    QFETCH(double, x);
    QFETCH(double, y);
    QFETCH(int, decimals);
    QFETCH(QString, absolute);
    QFETCH(QString, relative);

    KpPathSegList list;
    list.addTail(new KpPathSegMoveTo(at(0.1, 1000), nullptr));
    list.addTail(new KpPathSegLineTo(at(x, y), nullptr));
    PathDataOptions options;
    if (decimals >= 0)
        options.decimals = decimals;
    QString const start = decimals == 0 ? "M0 1000" : "M0.1 1000";
    QCOMPARE(written(list, options), start + " L" + absolute);
    options.isRelative = true;
    QCOMPARE(written(list, options), start + " l" + relative);
}

void TestPathData::writesShortLines()
{
    KpPathSegList list;
    list.addTail(new KpPathSegMoveTo(at(0, 0), nullptr));
    list.addTail(new KpPathSegLineTo(at(0.5, 0), nullptr));
    list.addTail(new KpPathSegLineTo(at(0.5, 0), nullptr));
    QCOMPARE(written(list), QString("M0 0 L0.5 0 L0.5 0"));
}

void TestPathData::mirroredEllipsesRunTheOtherWay_data()
{
    QTest::addColumn<double>("a");
    QTest::addColumn<double>("b");
    QTest::addColumn<QString>("data");

    QTest::newRow("width") << -10.0 << 20.0 << "M-10 0 A10 20 0 0 0 10 0 A10 20 0 0 0 -10 0 Z";
    QTest::newRow("height") << 10.0 << -20.0 << "M10 0 A10 20 0 0 0 -10 0 A10 20 0 0 0 10 0 Z";
    QTest::newRow("both") << -10.0 << -20.0 << "M-10 0 A10 20 0 0 1 10 0 A10 20 0 0 1 -10 0 Z";
    QTest::newRow("flat") << 10.0 << 0.0 << "M10 0 A10 0 0 0 1 -10 0 A10 0 0 0 1 10 0 Z";
}

void TestPathData::mirroredEllipsesRunTheOtherWay()
{
    QFETCH(double, a);
    QFETCH(double, b);
    QFETCH(QString, data);

    KpPathSegList list;
    addEllipse(list, at(0, 0), a, b);
    QCOMPARE(written(list), data);
}

void TestPathData::arcsOfEllipsesEndAWholeRadiusAway()
{
    // The ends rounded by themselves would be 9 and 2 with a radius of 3.
    KpPathSegList list;
    addEllipse(list, at(5.4, 5.4), 3.4, 3.4);
    QCOMPARE(written(list, {false, 0}), QString("M8 5 A3 3 0 0 1 2 5 A3 3 0 0 1 8 5 Z"));
    QCOMPARE(written(list, {true, 0}), QString("M8 5 a3 3 0 0 1 -6 0 a3 3 0 0 1 6 0 Z"));
}

void TestPathData::refusesWhatIsNotFinite_data()
{
    QTest::addColumn<double>("bad");

    QTest::newRow("NaN") << notANumber;
    QTest::newRow("infinite") << infinite;
    QTest::newRow("infinite to the left") << -infinite;
}

void TestPathData::refusesWhatIsNotFinite()
{
    QFETCH(double, bad);

    KpPathSegList list;
    list.addTail(new KpPathSegMoveTo(at(0, 0), nullptr));
    list.addTail(new KpPathSegCurveTo(at(0, 0), at(0, 0), at(0, 0), nullptr));
    addEllipse(list, at(0, 0), 1, 1);
    for (int i = 0; i < 12; ++i) {
        KpPathSegList copy(list);
        KpPathSegCurveTo* const curve = copy.segs.at(1)->toCurveTo();
        KpPathSegEllipse* const ellipse = copy.segs.at(2)->toEllipse();
        KpReal* const reals[] = {&copy.segs.at(0)->pt.x, &copy.segs.at(0)->pt.y, &curve->pt.x,
            &curve->pt.y, &curve->ctrl1.x, &curve->ctrl1.y, &curve->ctrl2.x, &curve->ctrl2.y,
            &ellipse->pt.x, &ellipse->pt.y, &ellipse->a, &ellipse->b};
        QVERIFY(pathData(copy, {}));
        reals[i]->value = bad;
        QVERIFY2(!pathData(copy, {}), qPrintable(QString::number(i)));
        QVERIFY(!pathData(copy, {true, 3}));
    }

    // Each is finite, their difference is not.
    KpPathSegList far;
    far.addTail(new KpPathSegMoveTo(at(1e308, 0), nullptr));
    far.addTail(new KpPathSegLineTo(at(-1e308, 0), nullptr));
    QVERIFY(pathData(far, {}));
    QVERIFY(!pathData(far, {true, std::nullopt}));
    KpPathSegList wide;
    addEllipse(wide, at(1e308, 0), 1e308, 1);
    QVERIFY(!pathData(wide, {}));
}

void TestPathData::relativeNumbersAddUpToTheAbsoluteOnes_data()
{
    QTest::addColumn<int>("decimals");

    QTest::newRow("six digits") << -1;
    QTest::newRow("no decimals") << 0;
    QTest::newRow("two decimals") << 2;
    QTest::newRow("nine decimals") << 9;
}

void TestPathData::relativeNumbersAddUpToTheAbsoluteOnes()
{
    QFETCH(int, decimals);

    QRandomGenerator random = Testing::seededRandom(11);
    auto const number = [&random] { return random.generateDouble() * 20000 - 10000; };
    PathDataOptions options;
    if (decimals >= 0)
        options.decimals = decimals;
    KpPathSegList list;
    int const count = 2000;
    list.addTail(new KpPathSegMoveTo(at(number(), number()), nullptr));
    for (int i = 1; i < count; ++i)
        list.addTail(new KpPathSegLineTo(at(number(), number()), nullptr));
    QVector<double> const absolute = numbersOf(written(list, options));
    options.isRelative = true;
    QVector<double> const relative = numbersOf(written(list, options));
    QCOMPARE(absolute.size(), 2 * count);
    QCOMPARE(relative.size(), 2 * count);
    double const step = decimals >= 0 ? std::pow(10.0, -decimals) : 1.0;
    double x = 0.0;
    for (int i = 0; i < relative.size(); i += 2) {
        x += relative.at(i);
        // The sum is computed with an error of its own, far below one step of the grid.
        QVERIFY2(std::abs(x - absolute.at(i)) < 1e-3 * std::min(step, 1e-4) + 1e-8,
            qPrintable(Testing::difference("x", x, absolute.at(i))));
        double const exactX = list.segs.at(i / 2)->pt.x.value;
        double const half = decimals >= 0 ? 0.5 * step : 0.5e-5 * std::abs(exactX);
        QVERIFY(std::abs(absolute.at(i) - exactX) <= half * (1 + 1e-6) + 1e-11);
    }
}

QTEST_GUILESS_MAIN(TestPathData)

#include "tst_pathdata.moc"
