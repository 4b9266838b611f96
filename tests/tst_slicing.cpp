// SPDX-License-Identifier: MIT
#include "fit/slicing.h"
#include "outlinetesting.h"

using OutlineTesting::exact;
using Testing::infinite;
using Testing::notANumber;

Q_DECLARE_METATYPE(Slices)

namespace {

/** The box of the rows: width 200, height 100. */
QSizeF const wideBox(200, 100);

/** A line to a point. */
std::unique_ptr<KpPathSegList> lineTo(double x, double y)
{
    auto list = std::make_unique<KpPathSegList>();
    list->addTail(new KpPathSegLineTo(QPointF(x, y), nullptr));
    return list;
}

std::unique_ptr<KpPathSegList> ellipse(double x, double y, double a, double b)
{
    auto list = std::make_unique<KpPathSegList>();
    list->addTail(new KpPathSegEllipse(QPointF(x, y), a, b, nullptr));
    return list;
}

/** "6 0.05": a rule with its parameter; "0" for the one that has none. */
QString ruleText(KpReal const& real)
{
    QString const base = QString::number(real.base);
    return real.base == KpReal::Absolute ? base : base + ' ' + QString::number(real.rate);
}

/** "X 3 200x400": what is inexact, and by how much. */
QStringList inexactTexts(std::vector<InexactBinding> const& all)
{
    QStringList texts;
    for (InexactBinding const& one : all) {
        texts << QStringLiteral("%1 %2 %3x%4")
                     .arg(one.letter)
                     .arg(one.error)
                     .arg(one.box.width())
                     .arg(one.box.height());
    }
    return texts;
}

/** Where a side of another length has a place, as plainly as it can be said. */
double stretched(double at, double side, double near, double far, double newSide, double growth)
{
    if (near + far == 0.0)
        return at * newSide / side;
    if (at <= near)
        return at * growth;
    if (at >= side - far)
        return newSide - (side - at) * growth;
    return near * growth
        + (at - near) / (side - near - far) * (newSide - near * growth - far * growth);
}

/** The stretched drawing in another box. */
struct Stretch
{
    QSizeF from;
    Slices slices;
    QSizeF to;

    double growth() const
    {
        return slices.growsCorners
            ? qMin(to.width(), to.height()) / qMin(from.width(), from.height())
            : 1.0;
    }

    double x(double at) const
    {
        return stretched(at, from.width(), slices.left, slices.right, to.width(), growth());
    }

    double y(double at) const
    {
        return stretched(at, from.height(), slices.top, slices.bottom, to.height(), growth());
    }

    /** All places that a coordinate should have: two for a radius, which has two sides. */
    QVector<double> expected(KpPathSeg& segment, QString const& letter, double value) const
    {
        bool const isRadius = segment.toEllipse() && (letter == "A" || letter == "B");
        double const cx = segment.pt.x.value;
        double const cy = segment.pt.y.value;
        if (isRadius && letter == "A")
            return {x(cx + value) - x(cx), x(cx) - x(cx - value)};
        if (isRadius)
            return {y(cy + value) - y(cy), y(cy) - y(cy - value)};
        return {letter == "X" || letter == "A" || letter == "C" ? x(value) : y(value)};
    }
};

double largestDifference(double value, QVector<double> const& expected)
{
    double largest = 0.0;
    for (double const one : expected)
        largest = qMax(largest, std::abs(one - value));
    return largest;
}

double valueIn(KpReal real, QSizeF const& box)
{
    real.updateValue(box.width(), box.height());
    return real.value;
}

/** Each coordinate of a segment as the document calls it. */
QVector<QPair<QString, KpReal>> coordinates(KpPathSeg& segment)
{
    QVector<QPair<QString, KpReal>> all {{"X", segment.pt.x}, {"Y", segment.pt.y}};
    if (KpPathSegCurveTo const* const curve = segment.toCurveTo()) {
        all << qMakePair(QString("A"), curve->ctrl1.x) << qMakePair(QString("B"), curve->ctrl1.y)
            << qMakePair(QString("C"), curve->ctrl2.x) << qMakePair(QString("D"), curve->ctrl2.y);
    }
    if (KpPathSegEllipse const* const whole = segment.toEllipse())
        all << qMakePair(QString("A"), whole->a) << qMakePair(QString("B"), whole->b);
    return all;
}

/** Every rule under which a coordinate has this value in the box. */
QVector<KpReal> allRules(double value, QSizeF const& box)
{
    double const w = box.width();
    double const h = box.height();
    double const m = qMin(w, h);
    return {KpReal(0, 0, value), KpReal(1, value / w, value), KpReal(2, value / h, value),
        KpReal(3, w - value, value), KpReal(4, h - value, value), KpReal(5, value / m, value),
        KpReal(6, (w - value) / m, value), KpReal(7, (h - value) / m, value)};
}

double randomLength(QRandomGenerator& random, int least, int most)
{
    return random.bounded(least, most + 1);
}

Slices randomSlices(QRandomGenerator& random, QSizeF const& box)
{
    Slices slices;
    auto const margins = [&random](double side, double& near, double& far) {
        switch (random.bounded(4)) {
        case 0: // none
            break;
        case 1: // of equal width
            near = far = randomLength(random, 0, int(side) / 2);
            break;
        default:
            near = randomLength(random, 0, int(side));
            far = randomLength(random, 0, int(side - near));
            break;
        }
    };
    margins(box.width(), slices.left, slices.right);
    margins(box.height(), slices.top, slices.bottom);
    slices.growsCorners = random.bounded(2) == 1;
    return slices;
}

/** Lines, curves and ellipses on a grid, some of them outside the box. */
void fillOnGrid(KpPathSegList& list, QSizeF const& box, QRandomGenerator& random)
{
    auto const point = [&] {
        return QPointF(randomLength(random, -10, int(box.width()) + 10),
            randomLength(random, -10, int(box.height()) + 10));
    };
    for (int i = 0; i < 10; ++i) {
        list.addTail(new KpPathSegLineTo(point(), nullptr));
        list.addTail(new KpPathSegCurveTo(point(), point(), point(), nullptr));
        list.addTail(new KpPathSegEllipse(
            point(), randomLength(random, 0, 40), randomLength(random, 0, 40), nullptr));
    }
}

} // namespace

class TestSlicing : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void bindsPoints_data();
    void bindsPoints();
    void bindsRadii_data();
    void bindsRadii();
    void bindsEveryPointOfCurves();
    void keepsValuesAndFlags();
    void leavesNumbersThatCannotBeBound();
    void survivesAwkwardNumbers();
    void tellsWhyABoxCannotBeSliced_data();
    void tellsWhyABoxCannotBeSliced();
    void followsTheStretchedDrawing();
};

void TestSlicing::bindsPoints_data()
{
    QTest::addColumn<Slices>("slices");
    QTest::addColumn<QPointF>("at"); // in a box of 200 by 100
    QTest::addColumn<QString>("x");
    QTest::addColumn<QString>("y");
    QTest::addColumn<QStringList>("inexact");

    Slices const even {20, 10, 20, 10, false};
    Slices const evenParts {20, 10, 20, 10, true};
    Slices const uneven {30, 10, 10, 30, false};
    Slices const unevenParts {30, 10, 10, 30, true};
    auto const row = [](char const* name, Slices const& slices, QPointF const& at, char const* x,
                         char const* y, QStringList const& inexact = {}) {
        QTest::newRow(name) << slices << at << QString(x) << QString(y) << inexact;
    };
    row("in the near corner", even, {5, 7.5}, "0", "0");
    row("in the far corner", even, {190, 98}, "3 10", "4 2");
    row("at the edges", even, {0, 0}, "0", "0");
    row("at the far edges", even, {200, 100}, "3 0", "4 0");
    row("outside the near edges", even, {-5, -3}, "0", "0");
    row("outside the far edges", even, {210, 104}, "3 -10", "4 -4");
    row("at the inner end of the near margins", even, {20, 10}, "0", "0");
    row("at the inner end of the far margins", even, {180, 90}, "3 20", "4 10");
    row("there but for the sixth digit", even, {20.0005, 89.9997}, "0", "4 10.0003");
    row("just beyond it", even, {20.002, 50}, "1 0.10001", "2 0.5", {"X 19.9995 400x200"});
    row("in the middle of even margins", even, {100, 50}, "1 0.5", "2 0.5");
    row("between even margins", even, {60, 70}, "1 0.3", "2 0.7", {"X 10 400x200", "Y 5 400x200"});
    row("where uneven margins divide", uneven, {150, 25}, "1 0.75", "2 0.25");
    row("there but for the sixth digit of both", uneven, {150.0002, 24.9999}, "1 0.750001",
        "2 0.249999");
    row("in the middle of uneven margins", uneven, {100, 50}, "1 0.5", "2 0.5",
        {"X 12.5 400x200", "Y 16.6667 400x200"});
    row("no margins at all", {}, {60, 70}, "1 0.3", "2 0.7");
    row("no margins, at the edges", {}, {0, 100}, "1 0", "2 1");
    row("no margins, outside", {}, {-10, 150}, "1 -0.05", "2 1.5");
    row("no margins across", {0, 10, 0, 10, false}, {60, 5}, "1 0.3", "0");
    row("a near margin alone", {20, 0, 0, 0, false}, {20, 70}, "0", "2 0.7");
    row("beyond a near margin alone", {20, 0, 0, 0, false}, {110, 70}, "1 0.55", "2 0.7",
        {"X 10 400x200"});
    row("at the edge without a margin of its own", {20, 0, 0, 0, false}, {200, 70}, "3 0", "2 0.7");
    row("a far margin alone", {0, 0, 0, 10, false}, {60, 0}, "1 0.3", "0");
    row("margins that leave nothing between", {120, 50, 80, 50, false}, {120, 51}, "0", "4 49");

    row("growing: in the near corner", evenParts, {5, 7.5}, "5 0.05", "5 0.075");
    row("growing: in the far corner", evenParts, {190, 98}, "6 0.1", "7 0.02");
    row("growing: at the edges", evenParts, {0, 100}, "5 0", "7 0");
    row("growing: outside", evenParts, {-5, 104}, "5 -0.05", "7 -0.04");
    row("growing: at the inner ends", evenParts, {20, 90}, "5 0.2", "7 0.1");
    row("growing: in the middle of even margins", evenParts, {100, 50}, "1 0.5", "2 0.5");
    row("growing: between even margins", evenParts, {60, 70}, "1 0.3", "2 0.7",
        {"X 10 400x100", "Y 15 100x400"});
    row("growing: where uneven margins divide", unevenParts, {150, 25}, "1 0.75", "2 0.25");
    row("growing: no margins at all", {0, 0, 0, 0, true}, {60, 70}, "1 0.3", "2 0.7");
}

void TestSlicing::bindsPoints()
{
    QFETCH(Slices, slices);
    QFETCH(QPointF, at);
    QFETCH(QString, x);
    QFETCH(QString, y);
    QFETCH(QStringList, inexact);
    auto const list = lineTo(at.x(), at.y());
    QCOMPARE(slicesFault(slices, wideBox), QString());
    auto const found = bindToSlices(*list, wideBox, slices);
    QCOMPARE(ruleText(list->segs.first()->pt.x), x);
    QCOMPARE(ruleText(list->segs.first()->pt.y), y);
    QCOMPARE(inexactTexts(found), inexact);
}

void TestSlicing::bindsRadii_data()
{
    QTest::addColumn<Slices>("slices");
    QTest::addColumn<QVector<double>>("drawn"); // x, y, a, b in a box of 200 by 100
    QTest::addColumn<QStringList>("rules");
    QTest::addColumn<QStringList>("inexact");

    Slices const even {20, 10, 20, 10, false};
    Slices const evenParts {20, 10, 20, 10, true};
    auto const row = [](char const* name, Slices const& slices, QVector<double> const& drawn,
                         QStringList const& rules, QStringList const& inexact = {}) {
        QTest::newRow(name) << slices << drawn << rules << inexact;
    };
    row("within the near corner", even, {10, 5, 10, 5}, {"0", "0", "0", "0"});
    row("within the far corner", even, {190, 96, 8, 3}, {"3 10", "4 4", "0", "0"});
    row("from corner to corner", even, {100, 50, 100, 50}, {"1 0.5", "2 0.5", "1 0.5", "2 0.5"});
    row("from margin to margin", even, {100, 50, 90, 45}, {"1 0.5", "2 0.5", "1 0.45", "2 0.45"},
        {"A 10 400x200", "B 5 400x200"});
    row("between the margins", even, {100, 50, 40, 20}, {"1 0.5", "2 0.5", "1 0.2", "2 0.2"},
        {"A 10 400x200", "B 5 400x200"});
    row("from the near margin a little beyond", even, {10, 5, 11, 5}, {"0", "0", "0", "0"},
        {"A 1.25 400x200"});
    row("all around the box", even, {0, 50, 220, 50}, {"0", "2 0.5", "0", "2 0.5"},
        {"A 200 400x200"});
    row("no radius", even, {100, 50, 0, 0}, {"1 0.5", "2 0.5", "0", "0"});
    row("no margins", {}, {60, 30, 20, 0}, {"1 0.3", "2 0.3", "1 0.1", "2 0"});
    row("growing: within the near corner", evenParts, {10, 5, 10, 5},
        {"5 0.1", "5 0.05", "5 0.1", "5 0.05"});
    row("growing: within the far corner", evenParts, {190, 96, 8, 3},
        {"6 0.1", "7 0.04", "5 0.08", "5 0.03"});
    row("growing: from corner to corner", evenParts, {100, 50, 100, 50},
        {"1 0.5", "2 0.5", "1 0.5", "2 0.5"});
    row("growing: between the margins", evenParts, {100, 50, 40, 20},
        {"1 0.5", "2 0.5", "1 0.2", "2 0.2"}, {"A 10 400x100", "B 15 100x400"});
}

void TestSlicing::bindsRadii()
{
    QFETCH(Slices, slices);
    QFETCH(QVector<double>, drawn);
    QFETCH(QStringList, rules);
    QFETCH(QStringList, inexact);
    auto const list = ellipse(drawn.at(0), drawn.at(1), drawn.at(2), drawn.at(3));
    auto const found = bindToSlices(*list, wideBox, slices);
    KpPathSegEllipse const* const bound = list->segs.first()->toEllipse();
    QCOMPARE(QStringList({ruleText(bound->pt.x), ruleText(bound->pt.y), ruleText(bound->a),
                 ruleText(bound->b)}),
        rules);
    QCOMPARE(inexactTexts(found), inexact);
}

void TestSlicing::bindsEveryPointOfCurves()
{
    KpPathSegList list;
    list.addTail(new KpPathSegMoveTo(QPointF(5, 95), nullptr));
    list.addTail(new KpPathSegCurveTo(QPointF(195, 4), QPointF(60, 50), QPointF(190, 70), nullptr));
    auto const found = bindToSlices(list, wideBox, {20, 10, 20, 10, false});
    QCOMPARE(ruleText(list.segs.at(0)->pt.x), QString("0"));
    QCOMPARE(ruleText(list.segs.at(0)->pt.y), QString("4 5"));
    KpPathSegCurveTo const* const curve = list.segs.at(1)->toCurveTo();
    QCOMPARE(ruleText(curve->ctrl1.x), QString("3 5"));
    QCOMPARE(ruleText(curve->ctrl1.y), QString("0"));
    QCOMPARE(ruleText(curve->ctrl2.x), QString("1 0.3"));
    QCOMPARE(ruleText(curve->ctrl2.y), QString("2 0.5"));
    QCOMPARE(ruleText(curve->pt.x), QString("3 10"));
    QCOMPARE(ruleText(curve->pt.y), QString("2 0.7"));
    QCOMPARE(inexactTexts(found), QStringList({"Y 5 400x200", "C 10 400x200"}));
    QCOMPARE(found.front().segment, 1);
    QCOMPARE(found.front().base, qint16(2));
}

void TestSlicing::keepsValuesAndFlags()
{
    QRandomGenerator random = Testing::seededRandom(3);
    KpPathSegList list;
    fillOnGrid(list, wideBox, random);
    list.closed = true;
    list.noFill = true;
    QStringList before;
    for (KpPathSeg* const segment : qAsConst(list.segs)) {
        for (auto const& coordinate : coordinates(*segment))
            before << exact(coordinate.second.value);
    }
    bindToSlices(list, wideBox, {20, 10, 30, 10, false});
    QStringList after;
    for (KpPathSeg* const segment : qAsConst(list.segs)) {
        for (auto const& coordinate : coordinates(*segment))
            after << exact(coordinate.second.value);
    }
    QCOMPARE(after, before);
    QVERIFY(list.closed && list.noFill && !list.noLine);
}

void TestSlicing::leavesNumbersThatCannotBeBound()
{
    auto const list = ellipse(notANumber, 5, 4, infinite);
    list->segs.first()->pt.x.base = 6;
    list->segs.first()->pt.x.rate = 0.5;
    QString const x = exact(list->segs.first()->pt.x);
    QString const a = exact(list->segs.first()->toEllipse()->a);
    QString const b = exact(list->segs.first()->toEllipse()->b);
    auto const found = bindToSlices(*list, wideBox, {20, 10, 20, 10, false});
    QCOMPARE(exact(list->segs.first()->pt.x), x);
    QCOMPARE(ruleText(list->segs.first()->pt.y), QString("0"));
    QCOMPARE(exact(list->segs.first()->toEllipse()->a), a);
    QCOMPARE(exact(list->segs.first()->toEllipse()->b), b);
    QCOMPARE(inexactTexts(found), QStringList({"X nan 400x200", "A nan 400x200", "B nan 400x200"}));
    QCOMPARE(found.front().base, qint16(6));
}

void TestSlicing::survivesAwkwardNumbers()
{
    QRandomGenerator random = Testing::seededRandom(4);
    for (int round = 0; round < 2000; ++round) {
        KpPathSegList list;
        OutlineTesting::fillRandomly(list, 10, random);
        QSizeF const box(
            std::pow(10.0, random.bounded(-30, 7)), std::pow(10.0, random.bounded(-30, 7)));
        Slices const slices {box.width() * 0.25, box.height() * random.bounded(3) / 4.0,
            box.width() * 0.5, box.height() * 0.5, random.bounded(2) == 1};
        QCOMPARE(slicesFault(slices, box), QString());
        auto const found = bindToSlices(list, box, slices);
        auto next = found.cbegin();
        for (int i = 0; i < list.segs.count(); ++i) {
            for (auto const& coordinate : coordinates(*list.segs.at(i))) {
                bool const isFound =
                    next != found.cend() && next->segment == i && next->letter == coordinate.first;
                if (!isFound) {
                    QVERIFY(std::isfinite(coordinate.second.value));
                    QVERIFY(std::isfinite(coordinate.second.rate));
                    QVERIFY(coordinate.second.base >= 0 && coordinate.second.base <= 7);
                } else {
                    ++next;
                }
            }
        }
        QVERIFY(next == found.cend());
    }
}

void TestSlicing::tellsWhyABoxCannotBeSliced_data()
{
    QTest::addColumn<Slices>("slices");
    QTest::addColumn<QSizeF>("box");
    QTest::addColumn<QString>("fault");
    auto const row = [](char const* name, Slices const& slices, QSizeF const& box,
                         char const* fault) {
        QTest::newRow(name) << slices << box << QString(fault);
    };
    row("none", {20, 10, 20, 10, false}, wideBox, "");
    row("all of it", {150, 40, 50, 60, true}, wideBox, "");
    row("decimal fractions that fill it", {66.7, 0, 133.3, 0, false}, wideBox, "");
    row("too wide", {150, 0, 51, 0, false}, wideBox,
        "the left and right margins, 150 and 51, do not fit into a width of 200");
    row("too high", {0, 101, 0, 0, false}, wideBox,
        "the upper and lower margins, 101 and 0, do not fit into a height of 100");
    row("negative", {20, 10, 20, -1, false}, wideBox, "a margin of -1");
    row("no number", {20, notANumber, 20, 10, false}, wideBox, "a margin of nan");
    row("endless", {20, 10, infinite, 10, false}, wideBox,
        "the left and right margins, 20 and inf, do not fit into a width of 200");
    row("no width", {}, {0, 100}, "no box to slice: 0 x 100");
    row("no height", {}, {100, -1}, "no box to slice: 100 x -1");
    row("box of no number", {}, {notANumber, 1}, "no box to slice: nan x 1");
    row("largest box", {}, {1e6, 1e6}, "");
    row("one unit more", {}, {1000001, 1}, "no box to slice: 1e+06 x 1");
    row("too large a box", {}, {1.1e6, 1}, "no box to slice: 1.1e+06 x 1");
    row("endless box", {}, {1, infinite}, "no box to slice: 1 x inf");
}

void TestSlicing::tellsWhyABoxCannotBeSliced()
{
    QFETCH(Slices, slices);
    QFETCH(QSizeF, box);
    QFETCH(QString, fault);
    QCOMPARE(slicesFault(slices, box), fault);
}

/**
 * What is not returned as inexact is where the stretched drawing has it, in boxes of any size;
 * what is returned is off by as much as is told, and no rule would have been exact.
 */
void TestSlicing::followsTheStretchedDrawing()
{
    QRandomGenerator random = Testing::seededRandom(5);
    int exactCount = 0;
    int inexactCount = 0;
    for (int round = 0; round < 3000; ++round) {
        QSizeF const box(randomLength(random, 8, 90), randomLength(random, 8, 90));
        Slices const slices = randomSlices(random, box);
        KpPathSegList list;
        fillOnGrid(list, box, random);
        auto const found = bindToSlices(list, box, slices);
        QVector<QSizeF> others {{4.0 * box.width(), box.height()},
            {box.width(), 4.0 * box.height()}, {500, 400}, {400, 500}};
        for (int i = 0; i < 4; ++i) {
            others << QSizeF(box.width() * (1.0 + 4.0 * random.generateDouble()),
                box.height() * (1.0 + 4.0 * random.generateDouble()));
        }
        auto next = found.cbegin();
        auto const isOff = [&](KpPathSeg& segment, QString const& letter, KpReal const& real) {
            for (QSizeF const& other : qAsConst(others)) {
                auto const expected =
                    Stretch {box, slices, other}.expected(segment, letter, real.value);
                if (largestDifference(valueIn(real, other), expected) > 1e-9)
                    return true;
            }
            return false;
        };
        for (int i = 0; i < list.segs.count(); ++i) {
            KpPathSeg& segment = *list.segs.at(i);
            for (auto const& coordinate : coordinates(segment)) {
                QString const& letter = coordinate.first;
                KpReal const& real = coordinate.second;
                QString const what = QStringLiteral("%1 %2 in %3x%4, margins %5 %6 %7 %8 %9")
                                         .arg(letter, exact(real))
                                         .arg(box.width())
                                         .arg(box.height())
                                         .arg(slices.left)
                                         .arg(slices.top)
                                         .arg(slices.right)
                                         .arg(slices.bottom)
                                         .arg(slices.growsCorners);
                if (next == found.cend() || next->segment != i || next->letter != letter) {
                    ++exactCount;
                    QVERIFY2(!isOff(segment, letter, real), qPrintable(what));
                    continue;
                }
                ++inexactCount;
                for (KpReal const& rule : allRules(real.value, box))
                    QVERIFY2(isOff(segment, letter, rule), qPrintable(what));
                auto const expected =
                    Stretch {box, slices, next->box}.expected(segment, letter, real.value);
                double const error = largestDifference(valueIn(real, next->box), expected);
                QVERIFY2(std::abs(error - next->error) < 1e-9 && error > 0.0, qPrintable(what));
                ++next;
            }
        }
        QVERIFY(next == found.cend());
    }
    QVERIFY(exactCount > 50000);
    QVERIFY(inexactCount > 50000);
}

QTEST_GUILESS_MAIN(TestSlicing)

#include "tst_slicing.moc"
