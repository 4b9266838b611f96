// SPDX-License-Identifier: MIT
#include "outlinetesting.h"

#include <QPainterPath>

#include <cstddef>
#include <type_traits>

using Elements = QVector<KpPath::KpElement>;
Q_DECLARE_METATYPE(Elements)

using Testing::infinite;
using Testing::notANumber;

namespace {

constexpr int move = 0;
constexpr int line = 1;
constexpr int curve = 2;
constexpr int data = 3;
constexpr int closing = 4;

KpPath::KpElement element(int type, double x, double y)
{
    return {x, y, 0.0, 0.0, type};
}

KpPath pathOf(Elements const& elements)
{
    KpPath path;
    path.elements = elements;
    return path;
}

QString exact(KpPath::KpElement const& single)
{
    return OutlineTesting::exact(pathOf({single}));
}

/** Type and position of each element, as text that a failing row can show. */
QString text(QPainterPath const& path)
{
    QStringList elements;
    for (int i = 0; i < path.elementCount(); ++i) {
        QPainterPath::Element const& e = path.elementAt(i);
        elements << QStringLiteral("%1(%2,%3)").arg(int(e.type)).arg(e.x).arg(e.y);
    }
    return elements.join(QLatin1Char(' '));
}

} // namespace

class TestKpPath : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void elementHasTheLayoutOfTheApplication();
    void pathIsItsElementVectorAtOffsetZero();
    void newPathIsEmpty();
    void forwardersReachTheElementVector();

    void closeSubpathAppendsOneElement_data();
    void closeSubpathAppendsOneElement();

    void ellipseHasFourteenElements();
    void ellipseOfMirroredRectKeepsTheFormula();
    void ellipseOfEmptyRectCollapses_data();
    void ellipseOfEmptyRectCollapses();
    void ellipseIsSmoothAtItsJoins();
    void ellipseStaysCloseToTheTrueOne();
    void ellipseAgreesWithThatOfQPainterPath();
    void ellipseOfUnboundedRectReturns_data();
    void ellipseOfUnboundedRectReturns();

    void isClockWise_data();
    void isClockWise();
    void reversedPolygonTurnsTheOtherWay();

    void toPainterPathDrawsWhatFormsAStep_data();
    void toPainterPathDrawsWhatFormsAStep();
    void toPainterPathOfRandomElementsIsFinite();
    void fromPainterPathCopiesElementsOneToOne();
    void painterPathSurvivesTheRoundTrip();
};

void TestKpPath::elementHasTheLayoutOfTheApplication()
{
    QCOMPARE(sizeof(KpPath::KpElement), std::size_t(40));
    QCOMPARE(offsetof(KpPath::KpElement, x), std::size_t(0));
    QCOMPARE(offsetof(KpPath::KpElement, y), std::size_t(8));
    QCOMPARE(offsetof(KpPath::KpElement, reserved1), std::size_t(16));
    QCOMPARE(offsetof(KpPath::KpElement, reserved2), std::size_t(24));
    QCOMPARE(offsetof(KpPath::KpElement, type), std::size_t(32));
    QVERIFY((std::is_same<decltype(KpPath::KpElement::type), int>::value));
    QVERIFY(std::is_trivially_copyable<KpPath::KpElement>::value);
    QVERIFY(std::is_standard_layout<KpPath::KpElement>::value);
    // Qt then moves elements as memory when the vector grows.
    QVERIFY(!QTypeInfo<KpPath::KpElement>::isComplex);
}

void TestKpPath::pathIsItsElementVectorAtOffsetZero()
{
    KpPath path;
    QCOMPARE(static_cast<void*>(&path.elements), static_cast<void*>(&path));
    QCOMPARE(sizeof(KpPath), sizeof(void*));
    QVERIFY(!std::is_polymorphic<KpPath>::value);

    // A client may treat the path itself as the vector.
    auto* const asVector = reinterpret_cast<Elements*>(&path);
    asVector->append(element(line, 3.0, 4.0));
    QCOMPARE(path.count(), 1);
    QCOMPARE(exact(path.last()), exact(element(line, 3.0, 4.0)));
}

void TestKpPath::newPathIsEmpty()
{
    KpPath const path;
    QVERIFY(path.isEmpty());
    QCOMPARE(path.count(), 0);
    QCOMPARE(path.elements.count(), 0);
}

void TestKpPath::forwardersReachTheElementVector()
{
    KpPath path;
    path.append({1.0, 2.0, 3.0, 4.0, 77});
    path.append(element(move, 5.0, 6.0));
    QCOMPARE(path.count(), 2);
    QVERIFY(!path.isEmpty());
    QCOMPARE(exact(path.at(0)), exact(KpPath::KpElement {1.0, 2.0, 3.0, 4.0, 77}));
    QCOMPARE(exact(path.elements.at(0)), exact(path.at(0)));
    QCOMPARE(exact(path.last()), exact(element(move, 5.0, 6.0)));

    // The argument may be an element of the path itself.
    path.append(path.at(0));
    QCOMPARE(exact(path.last()), exact(KpPath::KpElement {1.0, 2.0, 3.0, 4.0, 77}));
}

void TestKpPath::closeSubpathAppendsOneElement_data()
{
    QTest::addColumn<Elements>("before");
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("y");

    QTest::newRow("empty path closes at the origin") << Elements() << 0.0 << 0.0;
    QTest::newRow("lone move closes at itself") << Elements {element(move, 3.0, 4.0)} << 3.0 << 4.0;
    QTest::newRow("lines close at their move")
        << Elements {element(move, 1.0, 2.0), element(line, 5.0, 6.0), element(line, 7.0, 8.0)}
        << 1.0 << 2.0;
    QTest::newRow("of several subpaths the last is closed") << Elements {element(move, 1.0, 2.0),
        element(line, 5.0, 6.0), element(closing, 1.0, 2.0), element(move, -3.0, -4.0),
        element(line, 9.0, 9.0)} << -3.0 << -4.0;
    QTest::newRow("lines after a close belong to the move before it") << Elements {
        element(move, 1.0, 2.0), element(line, 5.0, 6.0), element(closing, 1.0, 2.0),
        element(line, 8.0, 9.0)} << 1.0 << 2.0;
    QTest::newRow("two moves in a row close at the second")
        << Elements {element(move, 1.0, 2.0), element(move, 3.0, 4.0)} << 3.0 << 4.0;
    QTest::newRow("without a move the first element counts")
        << Elements {element(line, 6.0, 7.0), element(line, 8.0, 9.0)} << 6.0 << 7.0;
    QTest::newRow("without a move an unknown first element counts")
        << Elements {element(-5, 6.0, 7.0), element(data, 8.0, 9.0)} << 6.0 << 7.0;
    QTest::newRow("closed path is closed again")
        << Elements {element(move, 1.0, 2.0), element(closing, 1.0, 2.0)} << 1.0 << 2.0;
    QTest::newRow("infinite start is copied")
        << Elements {element(move, infinite, -infinite)} << infinite << -infinite;
}

void TestKpPath::closeSubpathAppendsOneElement()
{
    QFETCH(Elements, before);
    QFETCH(double, x);
    QFETCH(double, y);

    KpPath path = pathOf(before);
    path.closeSubpath();

    QCOMPARE(path.count(), before.count() + 1);
    QCOMPARE(exact(path.last()), exact(element(closing, x, y)));
    path.elements.removeLast();
    QCOMPARE(OutlineTesting::exact(path), OutlineTesting::exact(pathOf(before)));
}

void TestKpPath::ellipseHasFourteenElements()
{
    // Centre (10, 20), half-axes 2 and 1; the control points lie 4/3 (sqrt(2) - 1) of a
    // half-axis from the joins.
    Elements const expected {
        element(move, 12.0, 20.0),
        element(curve, 12.0, 20.552284749830793),
        element(data, 11.104569499661587, 21.0),
        element(data, 10.0, 21.0),
        element(curve, 8.895430500338413, 21.0),
        element(data, 8.0, 20.552284749830793),
        element(data, 8.0, 20.0),
        element(curve, 8.0, 19.447715250169207),
        element(data, 8.895430500338413, 19.0),
        element(data, 10.0, 19.0),
        element(curve, 11.104569499661587, 19.0),
        element(data, 12.0, 19.447715250169207),
        element(data, 12.0, 20.0),
        element(closing, 12.0, 20.0),
    };
    KpPath const ellipse = pathOf(KpPath::ellipse(QRectF(8.0, 19.0, 4.0, 2.0)));
    QCOMPARE(OutlineTesting::exact(ellipse), OutlineTesting::exact(pathOf(expected)));
}

void TestKpPath::ellipseOfMirroredRectKeepsTheFormula()
{
    // The same box with its corners swapped left to right: half-axes -2 and 1.
    Elements const outline = KpPath::ellipse(QRectF(12.0, 19.0, -4.0, 2.0));
    QCOMPARE(outline.count(), 14);
    QCOMPARE(exact(outline.at(0)), exact(element(move, 8.0, 20.0)));
    QCOMPARE(exact(outline.at(3)), exact(element(data, 10.0, 21.0)));
    QCOMPARE(exact(outline.at(6)), exact(element(data, 12.0, 20.0)));
    QCOMPARE(exact(outline.at(9)), exact(element(data, 10.0, 19.0)));
    QCOMPARE(exact(outline.at(13)), exact(element(closing, 8.0, 20.0)));
}

void TestKpPath::ellipseOfEmptyRectCollapses_data()
{
    QTest::addColumn<QRectF>("rect");
    QTest::newRow("no extent") << QRectF(5.0, 6.0, 0.0, 0.0);
    QTest::newRow("no width") << QRectF(5.0, 6.0, 0.0, 8.0);
    QTest::newRow("no height") << QRectF(5.0, 6.0, 8.0, 0.0);
    QTest::newRow("no width, between two floating-point numbers") << QRectF(0.1, 0.2, 0.0, 0.7);
    QTest::newRow("no height, between two floating-point numbers") << QRectF(0.1, 0.2, 0.7, 0.0);
}

void TestKpPath::ellipseOfEmptyRectCollapses()
{
    QFETCH(QRectF, rect);
    Elements const outline = KpPath::ellipse(rect);
    int const types[] = {
        move, curve, data, data, curve, data, data, curve, data, data, curve, data, data, closing};
    QCOMPARE(outline.count(), int(std::size(types)));
    for (int i = 0; i < outline.count(); ++i) {
        QCOMPARE(outline.at(i).type, types[i]);
        double const rounding = 1e-15;
        QVERIFY(outline.at(i).x >= rect.left() - rounding);
        QVERIFY(outline.at(i).x <= rect.right() + rounding);
        QVERIFY(outline.at(i).y >= rect.top() - rounding);
        QVERIFY(outline.at(i).y <= rect.bottom() + rounding);
    }
    QVERIFY(!pathOf(outline).isClockWise());
}

void TestKpPath::ellipseIsSmoothAtItsJoins()
{
    Elements const outline = KpPath::ellipse(QRectF(-3.0, 7.0, 10.0, 4.0));
    for (int const join : {3, 6, 9, 12}) {
        KpPath::KpElement const& before = outline.at(join - 1);
        KpPath::KpElement const& at = outline.at(join);
        KpPath::KpElement const& after = outline.at(join == 12 ? 1 : join + 1);
        // The join is the middle of its two control points: same tangent, same speed.
        QVERIFY(qAbs(before.x + after.x - 2.0 * at.x) < 1e-14);
        QVERIFY(qAbs(before.y + after.y - 2.0 * at.y) < 1e-14);
    }
}

void TestKpPath::ellipseStaysCloseToTheTrueOne()
{
    Elements const outline = KpPath::ellipse(QRectF(-30.0, -10.0, 60.0, 20.0));
    for (int first = 0; first < 12; first += 3) {
        for (int step = 0; step <= 100; ++step) {
            double const t = step / 100.0;
            double const weights[] = {(1.0 - t) * (1.0 - t) * (1.0 - t),
                3.0 * t * (1.0 - t) * (1.0 - t), 3.0 * t * t * (1.0 - t), t * t * t};
            double x = 0.0;
            double y = 0.0;
            for (int i = 0; i < 4; ++i) {
                x += weights[i] * outline.at(first + i).x / 30.0;
                y += weights[i] * outline.at(first + i).y / 10.0;
            }
            double const radius = std::sqrt(x * x + y * y);
            // This cubic never lies inside the circle and at most 0.0273 percent outside it.
            QVERIFY2(
                radius > 1.0 - 1e-12 && radius < 1.000273, qPrintable(QString::number(radius)));
            if (step == 0 || step == 50 || step == 100)
                QVERIFY(qAbs(radius - 1.0) < 1e-12);
        }
    }
}

void TestKpPath::ellipseAgreesWithThatOfQPainterPath()
{
    QRandomGenerator random = Testing::seededRandom(20110);
    for (int round = 0; round < 1000; ++round) {
        QRectF const rect(random.generateDouble() * 200.0 - 100.0,
            random.generateDouble() * 200.0 - 100.0, 1.0 + random.generateDouble() * 100.0,
            1.0 + random.generateDouble() * 100.0);
        QPainterPath oracle;
        oracle.addEllipse(rect);
        Elements const outline = KpPath::ellipse(rect);
        QCOMPARE(outline.count(), oracle.elementCount() + 1);
        for (int i = 0; i < oracle.elementCount(); ++i) {
            QPainterPath::Element const& expected = oracle.elementAt(i);
            QCOMPARE(outline.at(i).type, int(expected.type));
            // Qt's constant has ten digits.
            bool const close = qAbs(outline.at(i).x - expected.x) < 1e-7
                && qAbs(outline.at(i).y - expected.y) < 1e-7;
            QVERIFY2(close,
                qPrintable(QStringLiteral("round %1 element %2: %3,%4 and %5,%6")
                               .arg(round)
                               .arg(i)
                               .arg(outline.at(i).x)
                               .arg(outline.at(i).y)
                               .arg(expected.x)
                               .arg(expected.y)));
        }
    }
}

void TestKpPath::ellipseOfUnboundedRectReturns_data()
{
    QTest::addColumn<QRectF>("rect");
    QTest::newRow("not a number") << QRectF(notANumber, 0.0, 1.0, 1.0);
    QTest::newRow("infinite width") << QRectF(0.0, 0.0, infinite, 1.0);
    QTest::newRow("greatest numbers") << QRectF(
        -std::numeric_limits<double>::max(), 0.0, std::numeric_limits<double>::max(), 1.0);
}

void TestKpPath::ellipseOfUnboundedRectReturns()
{
    QFETCH(QRectF, rect);
    Elements const outline = KpPath::ellipse(rect);
    QCOMPARE(outline.count(), 14);
    QCOMPARE(outline.first().type, move);
    QCOMPARE(outline.last().type, closing);
}

void TestKpPath::isClockWise_data()
{
    QTest::addColumn<Elements>("elements");
    QTest::addColumn<bool>("clockWise");

    KpPath::KpElement const topLeft = element(move, 0.0, 0.0);
    KpPath::KpElement const topRight = element(line, 4.0, 0.0);
    KpPath::KpElement const bottomRight = element(line, 4.0, 3.0);
    KpPath::KpElement const bottomLeft = element(line, 0.0, 3.0);

    QTest::newRow("right, then down, then left on screen")
        << Elements {topLeft, topRight, bottomRight, bottomLeft} << true;
    QTest::newRow("down, then right, then up on screen")
        << Elements {topLeft, bottomLeft, bottomRight, topRight} << false;
    QTest::newRow("closed alike") << Elements {topLeft, topRight, bottomRight, bottomLeft,
        element(closing, 0.0, 0.0)}
                                  << true;
    QTest::newRow("ellipse") << KpPath::ellipse(QRectF(-9.0, 20.0, 4.0, 2.0)) << true;
    QTest::newRow("ellipse mirrored once") << KpPath::ellipse(QRectF(0.0, 0.0, -4.0, 2.0)) << false;
    QTest::newRow("ellipse mirrored twice")
        << KpPath::ellipse(QRectF(0.0, 0.0, -4.0, -2.0)) << true;
    QTest::newRow("control points count as corners") << Elements {topLeft, element(curve, 0.0, 9.0),
        element(data, 4.0, 9.0), element(data, 4.0, 0.0)}
                                                     << false;
    QTest::newRow("unknown types count as corners")
        << Elements {element(99, 0.0, 0.0), element(-1, 4.0, 0.0), element(7, 4.0, 3.0)} << true;
    QTest::newRow("far from the origin") << Elements {element(move, 1e6, 1e6),
        element(line, 1e6 + 1.0, 1e6), element(line, 1e6 + 1.0, 1e6 + 1.0)}
                                         << true;
    QTest::newRow("small and very far from the origin") << Elements {
        element(move, 100000000.3, 100000000.7), element(line, 100000001.3, 100000000.7),
        element(line, 100000001.3, 100000000.8)} << true;
    QTest::newRow("right turn where squares lose their last digits") << Elements {
        element(move, 1e9, 1e9), element(line, 1e9 + 3.0, 1e9 + 1.0),
        element(line, 1e9 + 1.0, 1e9 + 2.0)} << true;
    QTest::newRow("left turn where squares lose their last digits") << Elements {
        element(move, 1e9, 1e9), element(line, 1e9 + 1.0, 1e9 + 2.0),
        element(line, 1e9 + 3.0, 1e9 + 1.0)} << false;
    QTest::newRow("two subpaths, the greater area decides") << Elements {topLeft, topRight,
        bottomRight, bottomLeft, topLeft, element(move, 0.0, 0.0), element(line, 0.0, 1.0),
        element(line, 1.0, 1.0), element(line, 0.0, 0.0)} << true;

    QTest::newRow("empty path") << Elements() << false;
    QTest::newRow("single point") << Elements {topRight} << false;
    QTest::newRow("line") << Elements {topLeft, bottomRight} << false;
    QTest::newRow("line there and back") << Elements {topLeft, bottomRight, topLeft} << false;
    QTest::newRow("upright line of three points")
        << Elements {element(move, 0.1, 0.2), element(line, 0.1, 0.7), element(line, 0.1, 0.3)}
        << false;
    QTest::newRow("figure of eight with equal halves") << Elements {element(move, 0.0, 0.0),
        element(line, 2.0, 2.0), element(line, 2.0, 0.0), element(line, 0.0, 2.0)}
                                                       << false;
    QTest::newRow("not a number") << Elements {topLeft, topRight, element(line, notANumber, 3.0)}
                                  << false;
    QTest::newRow("infinite") << Elements {topLeft, element(line, infinite, 0.0),
        element(line, -infinite, -infinite)}
                              << false;
}

void TestKpPath::isClockWise()
{
    QFETCH(Elements, elements);
    QFETCH(bool, clockWise);
    KpPath path = pathOf(elements);
    QCOMPARE(path.isClockWise(), clockWise);
    QCOMPARE(OutlineTesting::exact(path), OutlineTesting::exact(pathOf(elements)));
}

void TestKpPath::reversedPolygonTurnsTheOtherWay()
{
    QRandomGenerator random = Testing::seededRandom(20111);
    int clockWise = 0;
    for (int round = 0; round < 2000; ++round) {
        // Small integers: the areas are exact.
        QVector<QPoint> corners;
        Elements forwards;
        for (int i = 3 + random.bounded(8); i > 0; --i) {
            corners.append({random.bounded(-50, 51), random.bounded(-50, 51)});
            forwards.append(element(line, corners.last().x(), corners.last().y()));
        }
        Elements backwards = forwards;
        std::reverse(backwards.begin(), backwards.end());

        // Triangles from the first corner; the cross product is positive if clockwise.
        int twiceArea = 0;
        for (int i = 2; i < corners.count(); ++i) {
            QPoint const u = corners.at(i - 1) - corners.at(0);
            QPoint const v = corners.at(i) - corners.at(0);
            twiceArea += u.x() * v.y() - u.y() * v.x();
        }
        QByteArray const where =
            QStringLiteral("round %1 area %2").arg(round).arg(twiceArea).toUtf8();
        QVERIFY2(pathOf(forwards).isClockWise() == (twiceArea > 0), where.constData());
        QVERIFY2(pathOf(backwards).isClockWise() == (twiceArea < 0), where.constData());
        clockWise += twiceArea > 0 ? 1 : 0;
    }
    QVERIFY(clockWise > 500 && clockWise < 1500);
}

void TestKpPath::toPainterPathDrawsWhatFormsAStep_data()
{
    QTest::addColumn<Elements>("elements");
    QTest::addColumn<QString>("drawn");

    QTest::newRow("empty") << Elements() << "";
    QTest::newRow("move and line")
        << Elements {element(move, 1.0, 2.0), element(line, 3.0, 4.0)} << "0(1,2) 1(3,4)";
    QTest::newRow("curve") << Elements {element(move, 1.0, 2.0), element(curve, 3.0, 4.0),
        element(data, 5.0, 6.0), element(data, 7.0, 8.0)}
                           << "0(1,2) 2(3,4) 3(5,6) 3(7,8)";
    QTest::newRow("what a curve has taken is no step, whatever its type") << Elements {
        element(move, 1.0, 2.0), element(curve, 3.0, 4.0), element(line, 5.0, 6.0),
        element(line, 7.0, 8.0)} << "0(1,2) 2(3,4) 3(5,6) 3(7,8)";
    QTest::newRow("line without a move starts at the origin")
        << Elements {element(line, 3.0, 4.0)} << "0(0,0) 1(3,4)";
    QTest::newRow("close draws the line back to the move") << Elements {element(move, 1.0, 1.0),
        element(line, 5.0, 1.0), element(line, 5.0, 5.0), element(closing, 1.0, 1.0)}
                                                           << "0(1,1) 1(5,1) 1(5,5) 1(1,1)";
    QTest::newRow("close of an empty path draws nothing")
        << Elements {element(closing, 0.0, 0.0)} << "";
    QTest::newRow("line after a close starts a subpath where the close ended") << Elements {
        element(move, 1.0, 1.0), element(line, 5.0, 1.0), element(closing, 1.0, 1.0),
        element(line, 9.0, 9.0)} << "0(1,1) 1(5,1) 1(1,1) 0(1,1) 1(9,9)";
    QTest::newRow("curve without followers is left out")
        << Elements {element(move, 1.0, 2.0), element(curve, 3.0, 4.0)} << "0(1,2)";
    QTest::newRow("curve with one follower is left out")
        << Elements {element(move, 1.0, 2.0), element(curve, 3.0, 4.0), element(data, 5.0, 6.0)}
        << "0(1,2)";
    QTest::newRow("lone follower is read as an element of its own")
        << Elements {element(move, 1.0, 2.0), element(curve, 3.0, 4.0), element(line, 5.0, 6.0)}
        << "0(1,2) 1(5,6)";
    QTest::newRow("stray data is left out")
        << Elements {element(move, 1.0, 2.0), element(data, 3.0, 4.0), element(line, 5.0, 6.0)}
        << "0(1,2) 1(5,6)";
    QTest::newRow("unknown types are left out") << Elements {element(move, 1.0, 2.0),
        element(5, 3.0, 4.0), element(-1, 3.0, 4.0), element(line, 5.0, 6.0)}
                                                << "0(1,2) 1(5,6)";
    QTest::newRow("point that is not finite is left out") << Elements {element(move, 1.0, 2.0),
        element(line, notANumber, 4.0), element(line, 5.0, infinite), element(line, 7.0, 8.0)}
                                                          << "0(1,2) 1(7,8)";
}

void TestKpPath::toPainterPathDrawsWhatFormsAStep()
{
    QFETCH(Elements, elements);
    QFETCH(QString, drawn);
    QCOMPARE(text(pathOf(elements).toPainterPath()), drawn);
}

void TestKpPath::toPainterPathOfRandomElementsIsFinite()
{
    QRandomGenerator random = Testing::seededRandom(20112);
    for (int round = 0; round < 500; ++round) {
        KpPath path;
        for (int i = random.bounded(20); i > 0; --i) {
            path.append(element(
                random.bounded(-1, 6), Testing::awkwardReal(random), Testing::awkwardReal(random)));
        }
        QPainterPath const drawn = path.toPainterPath();
        for (int i = 0; i < drawn.elementCount(); ++i) {
            bool const finite = qIsFinite(drawn.elementAt(i).x) && qIsFinite(drawn.elementAt(i).y);
            QVERIFY2(finite, qPrintable(QStringLiteral("round %1").arg(round)));
        }
    }
}

void TestKpPath::fromPainterPathCopiesElementsOneToOne()
{
    QVERIFY(KpPath::fromPainterPath(QPainterPath()).isEmpty());

    QPainterPath source(QPointF(1.0, 2.0));
    source.lineTo(3.0, 4.0);
    source.cubicTo(5.0, 6.0, 7.0, 8.0, 9.0, 10.0);
    source.closeSubpath();
    KpPath const path = KpPath::fromPainterPath(source);
    KpPath const expected = pathOf({
        element(move, 1.0, 2.0),
        element(line, 3.0, 4.0),
        element(curve, 5.0, 6.0),
        element(data, 7.0, 8.0),
        element(data, 9.0, 10.0),
        // The closing line as QPainterPath holds it; no close is invented.
        element(line, 1.0, 2.0),
    });
    QCOMPARE(OutlineTesting::exact(path), OutlineTesting::exact(expected));
}

void TestKpPath::painterPathSurvivesTheRoundTrip()
{
    QPainterPath source;
    source.addEllipse(QRectF(0.1, 0.2, 30.3, 40.4));
    source.addRoundedRect(QRectF(-50.0, 60.0, 70.0, 80.0), 5.0, 6.0);
    source.quadTo(1.0 / 3.0, 2.0 / 3.0, 1e-9, -1e9);
    QPainterPath const back = KpPath::fromPainterPath(source).toPainterPath();
    QCOMPARE(back.elementCount(), source.elementCount());
    for (int i = 0; i < source.elementCount(); ++i) {
        QCOMPARE(int(back.elementAt(i).type), int(source.elementAt(i).type));
        COMPARE_BITS(back.elementAt(i).x, source.elementAt(i).x);
        COMPARE_BITS(back.elementAt(i).y, source.elementAt(i).y);
    }
}

QTEST_APPLESS_MAIN(TestKpPath)
#include "tst_kppath.moc"
