// SPDX-License-Identifier: MIT
#include "import/fillorientation.h"
#include "import/svgimport.h"
#include "outlinetesting.h"

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QRawFont>

#include <cstdio>
#include <utility>
#include <vector>

Q_DECLARE_METATYPE(QPainterPath)
Q_DECLARE_METATYPE(Qt::FillRule)

namespace {

// The sanitizers make the test ten times as slow.
constexpr int everyNth = Testing::sanitized ? 30 : 1;

constexpr char iconFolder[] = "/usr/share/icons/breeze";
constexpr char sansFile[] = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";

/**
 * A path from words: M x y, L x y, C with three points, Z. As in SVG, but each segment has a
 * letter of its own, and Z only adds the line back to the start.
 */
QPainterPath pathOf(QString const& text, Qt::FillRule rule = Qt::OddEvenFill)
{
    QPainterPath path;
    path.setFillRule(rule);
    QStringList words = text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    auto const number = [&words] { return words.takeFirst().toDouble(); };
    auto const point = [&number] {
        double const x = number();
        return QPointF(x, number());
    };
    QPointF start;
    while (!words.isEmpty()) {
        QString const command = words.takeFirst();
        if (command == "M") {
            start = point();
            path.moveTo(start);
        } else if (command == "L") {
            path.lineTo(point());
        } else if (command == "C") {
            QPointF const first = point();
            QPointF const second = point();
            path.cubicTo(first, second, point());
        } else {
            path.lineTo(start);
        }
    }
    return path;
}

/** The inverse of pathOf(), where no line of the path is written as Z. */
QString textOf(QPainterPath const& path)
{
    QStringList words;
    for (int i = 0; i < path.elementCount(); ++i) {
        QPainterPath::Element const element = path.elementAt(i);
        char const* const letters[] = {"M", "L", "C", nullptr};
        if (letters[element.type])
            words << letters[element.type];
        words << QString::number(element.x, 'g', 17) << QString::number(element.y, 'g', 17);
    }
    return words.join(QLatin1Char(' '));
}

/** A square clockwise on screen, or the other way round, from its upper left corner. */
QString square(int left, int top, int side, bool clockwise = true)
{
    QString const corners = clockwise ? QStringLiteral("M %1 %2 L %3 %2 L %3 %4 L %1 %4 L %1 %2 ")
                                      : QStringLiteral("M %1 %2 L %1 %4 L %3 %4 L %3 %2 L %1 %2 ");
    return corners.arg(left).arg(top).arg(left + side).arg(top + side);
}

bool sameBits(QPainterPath const& left, QPainterPath const& right)
{
    bool same = left.fillRule() == right.fillRule() && left.elementCount() == right.elementCount();
    for (int i = 0; same && i < left.elementCount(); ++i) {
        QPainterPath::Element const a = left.elementAt(i);
        QPainterPath::Element const b = right.elementAt(i);
        same = a.type == b.type && Testing::sameBits(a.x, b.x) && Testing::sameBits(a.y, b.y);
    }
    return same;
}

/** A closed polygon; its corners are whole numbers. */
using Polygon = std::vector<std::pair<int, int>>;

int pick(QRandomGenerator& random, int lowest, int highest)
{
    return random.bounded(lowest, highest + 1);
}

constexpr int gridSide = 6;

/** With sides in any direction. */
Polygon randomCorners(QRandomGenerator& random)
{
    Polygon polygon;
    for (int corners = pick(random, 3, 5); corners > 0; --corners)
        polygon.emplace_back(pick(random, 0, gridSide), pick(random, 0, gridSide));
    return polygon;
}

/** With sides along the axes, so that every face consists of cells of the grid. */
Polygon randomSteps(QRandomGenerator& random)
{
    std::vector<int> x;
    std::vector<int> y;
    for (int steps = pick(random, 2, 3); steps > 0; --steps) {
        x.push_back(pick(random, 0, gridSide));
        y.push_back(pick(random, 0, gridSide));
    }
    Polygon polygon;
    for (std::size_t i = 0; i < x.size(); ++i) {
        polygon.emplace_back(x[i], y[i]);
        polygon.emplace_back(x[(i + 1) % x.size()], y[i]);
    }
    return polygon;
}

std::vector<Polygon> randomPolygons(QRandomGenerator& random, bool alongAxes)
{
    std::vector<Polygon> polygons;
    std::size_t const count = static_cast<std::size_t>(pick(random, 1, 5));
    while (polygons.size() < count) {
        Polygon const polygon = alongAxes ? randomSteps(random) : randomCorners(random);
        // One whose corners are all the same would be a move, which the next replaces.
        if (std::count(polygon.begin(), polygon.end(), polygon.front()) < int(polygon.size()))
            polygons.push_back(polygon);
    }
    return polygons;
}

QPainterPath pathOf(std::vector<Polygon> const& polygons)
{
    QPainterPath path;
    for (Polygon const& polygon : polygons) {
        path.moveTo(polygon.front().first, polygon.front().second);
        for (auto const& corner : polygon)
            path.lineTo(corner.first, corner.second);
        path.lineTo(polygon.front().first, polygon.front().second);
    }
    return path;
}

/** At points on a side of a polygon, which belong to no face. */
constexpr int onSide = 1000;

/** How often the polygon winds around a point, in units of which `fineness` make one of the grid. */
int windingNumber(Polygon const& polygon, int fineness, int x, int y)
{
    int number = 0;
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        auto const& start = polygon[i];
        auto const& end = polygon[(i + 1) % polygon.size()];
        int const ax = fineness * start.first - x;
        int const ay = fineness * start.second - y;
        int const bx = fineness * end.first - x;
        int const by = fineness * end.second - y;
        int const cross = ax * by - bx * ay;
        if (cross == 0 && ax * bx <= 0 && ay * by <= 0)
            return onSide;
        if (ay <= 0 && by > 0 && cross > 0)
            ++number;
        else if (by <= 0 && ay > 0 && cross < 0)
            --number;
    }
    return number;
}

/** What the oracle knows of a path: for each polygon its winding numbers at all points. */
using Windings = std::vector<std::vector<int>>;

/** @param pointsOfUnit points in a unit of the grid, in each direction */
Windings windingsOf(std::vector<Polygon> const& polygons, int pointsOfUnit)
{
    Windings windings;
    for (Polygon const& polygon : polygons) {
        windings.emplace_back();
        for (int y = 1; y < 2 * gridSide * pointsOfUnit; y += 2) {
            for (int x = 1; x < 2 * gridSide * pointsOfUnit; x += 2)
                windings.back().push_back(windingNumber(polygon, 2 * pointsOfUnit, x, y));
        }
    }
    return windings;
}

/** Whether both rules cover the same points if the polygons of the set bits are reversed. */
bool isAlike(Windings const& windings, unsigned reversed)
{
    for (std::size_t point = 0; point < windings.front().size(); ++point) {
        int sum = 0;
        bool isOnSide = false;
        for (std::size_t i = 0; i < windings.size(); ++i) {
            int const number = windings[i][point];
            isOnSide = isOnSide || number == onSide;
            sum += (reversed >> i & 1U) != 0 ? -number : number;
        }
        if (!isOnSide && sum != 0 && sum % 2 == 0)
            return false;
    }
    return true;
}

bool canBeAlike(Windings const& windings, Qt::FillRule rule)
{
    // Under the nonzero rule reversing changes what is drawn, or nothing at all.
    unsigned const choices = rule == Qt::OddEvenFill ? 1U << windings.size() : 1U;
    for (unsigned reversed = 0; reversed < choices; ++reversed) {
        if (isAlike(windings, reversed))
            return true;
    }
    return false;
}

/** Which subpaths of `oriented` run the other way than in `path`; none may have changed otherwise. */
bool findReversed(QPainterPath const& path, QPainterPath const& oriented, unsigned& reversed)
{
    reversed = 0;
    if (path.elementCount() != oriented.elementCount())
        return false;
    int subpath = -1;
    for (int first = 0; first < path.elementCount();) {
        int end = first + 1;
        while (end < path.elementCount() && !path.elementAt(end).isMoveTo())
            ++end;
        ++subpath;
        bool same = true;
        bool opposite = true;
        for (int i = first; i < end; ++i) {
            QPointF const point = oriented.elementAt(i);
            same = same && point == QPointF(path.elementAt(i));
            opposite = opposite && point == QPointF(path.elementAt(first + end - 1 - i));
        }
        if (!same && !opposite)
            return false;
        if (!same)
            reversed |= 1U << subpath;
        first = end;
    }
    return true;
}

/**
 * The path in a picture that it fills, black on nothing. Without antialiasing, which adds up
 * areas with their signs: where two faces of opposite winding meet, they cancel each other.
 */
QImage drawn(QPainterPath path, Qt::FillRule rule)
{
    constexpr int side = 128;
    QRectF const box = path.controlPointRect();
    double const scale = (side - 2.0) / qMax(box.width(), box.height());
    QImage image(side, side, QImage::Format_Alpha8);
    image.fill(Qt::transparent);
    if (!(scale > 0.0) || std::isinf(scale))
        return image;
    path.setFillRule(rule);
    QPainter painter(&image);
    painter.translate(1.0, 1.0);
    painter.scale(scale, scale);
    painter.translate(-box.topLeft());
    painter.fillPath(path, Qt::black);
    return image;
}

/** Whether the oriented path is drawn, under both rules, like the path from which it was made. */
bool isDrawnAlike(QPainterPath const& path, QPainterPath const& oriented)
{
    QImage const meant = drawn(path, path.fillRule());
    return drawn(oriented, Qt::WindingFill) == meant && drawn(oriented, Qt::OddEvenFill) == meant;
}

QPainterPath withRule(QPainterPath path, Qt::FillRule rule)
{
    path.setFillRule(rule);
    return path;
}

/** A closed wave around (0, 0), from an even number of lines or curves. */
QPainterPath wave(int segments, double radius, bool curved)
{
    auto const point = [&](double place) {
        double const angle = 2.0 * M_PI * place / segments;
        double const distance = radius + 0.2 * std::cos(M_PI * place);
        return QPointF(distance * std::cos(angle), distance * std::sin(angle));
    };
    QPainterPath path(point(0));
    for (int i = 1; i <= segments; ++i) {
        QPointF const end = i < segments ? point(i) : point(0);
        if (curved)
            path.cubicTo(point(i - 0.7), point(i - 0.3), end);
        else
            path.lineTo(end);
    }
    return path;
}

/** Of side by side and one above the other, the place of one in lines of 50. */
QPointF placeInLines(int index)
{
    int const line = index / 50;
    return QPointF(index % 50, line);
}

/** The outline of a glyph that fills its holes when it is drawn nonzero: all is clockwise. */
QPainterPath withoutHoles(QRawFont const& font, int glyph)
{
    QPainterPath result;
    for (QPolygonF const& contour : font.pathForGlyph(quint32(glyph)).toSubpathPolygons()) {
        double area = 0.0;
        for (int k = 0; k + 1 < contour.count(); ++k)
            area += contour[k].x() * contour[k + 1].y() - contour[k + 1].x() * contour[k].y();
        QPainterPath outline;
        outline.addPolygon(contour);
        result.addPath(area < 0.0 ? outline.toReversed() : outline);
    }
    return result;
}

QRawFont sans()
{
    return QRawFont(QString::fromLatin1(sansFile), 100.0, QFont::PreferNoHinting);
}

/** Lines of text that needs its holes. */
QPainterPath textWithoutHoles(int glyphs)
{
    QRawFont const font = sans();
    QPainterPath text;
    for (int i = 0; i < glyphs; ++i)
        text.addPath(withoutHoles(font, i + 3).translated(200.0 * placeInLines(i)));
    return text;
}

QPainterPath framed(QPainterPath const& path)
{
    QPainterPath result;
    result.addRect(path.controlPointRect().adjusted(-10.0, -10.0, 10.0, 10.0));
    result.addPath(path);
    return result;
}

} // namespace

class TestFillOrientation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void literal_data();
    void literal();
    void leavesAsItIs_data();
    void leavesAsItIs();
    void leavesWhatIsTooLargeAsItIs();
    void meetsEverySubpath();
    void keepsTheStrokeOfAnOpenSubpath();
    void agreesWithWindingNumbers_data();
    void agreesWithWindingNumbers();
    void judgesLargePaths_data();
    void judgesLargePaths();
    void glyphs();
    void icons();
};

void TestFillOrientation::literal_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("expected");

    QTest::newRow("a hole in a square")
        << square(0, 0, 9) + square(3, 3, 3) << square(0, 0, 9) + square(3, 3, 3, false);
    QTest::newRow("the hole comes first")
        << square(3, 3, 3) + square(0, 0, 9) << square(3, 3, 3) + square(0, 0, 9, false);
    QTest::newRow("an island in the hole") << square(0, 0, 9) + square(1, 1, 7)
            + square(3, 3, 3) << square(0, 0, 9) + square(1, 1, 7, false) + square(3, 3, 3);
    QTest::newRow("four squares in each other")
        << square(0, 0, 9, false) + square(1, 1, 7) + square(2, 2, 5) + square(3, 3, 3)
        << square(0, 0, 9, false) + square(1, 1, 7) + square(2, 2, 5) + square(3, 3, 3, false);
    QTest::newRow("two islands in one hole")
        << square(0, 0, 9) + square(1, 1, 7) + square(2, 2, 2) + square(5, 5, 2, false)
        << square(0, 0, 9) + square(1, 1, 7, false) + square(2, 2, 2) + square(5, 5, 2, false);
    QTest::newRow("only the one of two that needs it")
        << square(0, 0, 9) + square(3, 3, 3, false) + square(20, 0, 9) + square(23, 3, 3)
        << square(0, 0, 9) + square(3, 3, 3, false) + square(20, 0, 9) + square(23, 3, 3, false);
    QTest::newRow("crossing squares")
        << square(0, 0, 6) + square(3, 3, 6) << square(0, 0, 6) + square(3, 3, 6, false);
    QTest::newRow("identical squares")
        << square(0, 0, 6) + square(0, 0, 6) << square(0, 0, 6) + square(0, 0, 6, false);
    QTest::newRow("a hole that touches the border")
        << square(0, 0, 9) + square(0, 3, 3) << square(0, 0, 9) + square(0, 3, 3, false);
    QTest::newRow("holes side by side, two of them with a common edge")
        << square(0, 0, 9) + square(1, 1, 3) + square(4, 1, 3) + square(1, 5, 3)
        << square(0, 0, 9) + square(1, 1, 3, false) + square(4, 1, 3, false)
            + square(1, 5, 3, false);
    QTest::newRow("a hole a millionth as large")
        << square(0, 0, 9000000) + square(3000000, 4000000, 9)
        << square(0, 0, 9000000) + square(3000000, 4000000, 9, false);
    QTest::newRow("a pentagram in a square")
        << square(-20, -20, 40) + "M 0 -10 L 6 8 L -10 -3 L 10 -3 L -6 8 Z"
        << square(-20, -20, 40) + "M 0 -10 L -6 8 L 10 -3 L -10 -3 L 6 8 Z";
    QTest::newRow("curves and lines")
        << QStringLiteral("M -9 -9 L 9 -9 L 9 9 L -9 9 Z M 0 -4 C 3 -4 4 -3 4 0 L 0 4 C -1 3 -2 2 "
                          "-4 0 C -4 -2 -2 -4 0 -4")
        << QStringLiteral("M -9 -9 L 9 -9 L 9 9 L -9 9 Z M 0 -4 C -2 -4 -4 -2 -4 0 C -2 2 -1 3 0 "
                          "4 L 4 0 C 4 -3 3 -4 0 -4");
    QTest::newRow("an open hole") << square(0, 0, 9) + "M 3 3 L 6 3 L 6 6 L 3 6"
                                  << square(0, 0, 9) + "M 3 6 L 6 6 L 6 3 L 3 3";
    QTest::newRow("a move after the last subpath") << square(0, 0, 9) + square(3, 3, 3)
            + "M 5 5" << square(0, 0, 9) + square(3, 3, 3, false) + "M 5 5";
    QTest::newRow("a line without extent in the hole") << square(0, 0, 9) + square(1, 1, 7)
            + "M 3 3 L 5 5 L 3 3" << square(0, 0, 9) + square(1, 1, 7, false) + "M 3 3 L 5 5 L 3 3";
    QTest::newRow("twice the same point in the hole")
        << square(0, 0, 9) + "M 3 3 L 6 3 L 6 6 L 6 6 L 3 6 Z"
        << square(0, 0, 9) + "M 3 3 L 3 6 L 6 6 L 6 6 L 6 3 Z";
}

void TestFillOrientation::literal()
{
    QFETCH(QString, path);
    QFETCH(QString, expected);
    QPainterPath const source = pathOf(path);
    OrientedPath const oriented = orientedForBothRules(source);
    QVERIFY(oriented.isSameForBothRules);
    QCOMPARE(textOf(oriented.path), textOf(pathOf(expected)));
    QVERIFY(sameBits(oriented.path, pathOf(expected)));
    QVERIFY(isDrawnAlike(source, oriented.path));

    OrientedPath const again = orientedForBothRules(oriented.path);
    QVERIFY(again.isSameForBothRules);
    QVERIFY(sameBits(again.path, oriented.path));
}

void TestFillOrientation::leavesAsItIs_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<Qt::FillRule>("rule");
    QTest::addColumn<bool>("isSame");

    struct Case
    {
        char const* name;
        QString path;
        bool isSameEvenOdd;
        bool isSameNonzero;
    };
    QString const pentagram = QStringLiteral("M 0 -10 L 6 8 L -10 -3 L 10 -3 L -6 8 Z ");
    Case const cases[] = {
        {"nothing", QString(), true, true},
        {"a move", QStringLiteral("M 1 2"), true, true},
        {"a line", QStringLiteral("M 1 2 L 3 5"), true, true},
        {"a level line", QStringLiteral("M 1 2 L 3 2"), true, true},
        {"a line to where it starts", QStringLiteral("M 1 2 L 3 5 L 1 2"), true, true},
        {"a square", square(0, 0, 5), true, true},
        {"squares apart", square(0, 0, 5) + square(7, 0, 5, false), true, true},
        {"squares with a common edge", square(0, 0, 5) + square(5, 0, 5, false), true, true},
        {"squares with a common edge, both clockwise", square(0, 0, 5) + square(5, 2, 5), true,
            true},
        {"a hole the other way round", square(0, 0, 9) + square(3, 3, 3, false), true, true},
        {"a square three times", square(0, 0, 5) + square(0, 0, 5) + square(0, 0, 5, false), true,
            true},
        {"a square three times clockwise", square(0, 0, 5) + square(0, 0, 5) + square(0, 0, 5),
            true, true},
        {"a figure eight", QStringLiteral("M 0 0 L 6 6 L 6 0 L 0 6 Z"), true, true},
        {"a ring of two arcs with a seam",
            QStringLiteral("M 0 0 L 9 0 L 9 9 L 0 9 L 0 0 L 3 3 L 3 6 L 6 6 L 6 3 L 3 3 Z"), true,
            true},
        {"an overlap too narrow to count", square(0, 0, 100000) + square(99999, 0, 100000), true,
            true},
        {"an overlap too low to count", square(0, 0, 100000) + square(3, 99999, 100000), true,
            true},
        {"a pentagram", pentagram, false, false},
        {"a loop in a curve", QStringLiteral("M -9 0 C 20 9 -20 9 9 0 L 0 30 Z"), false, false},
        {"a square run through twice",
            QStringLiteral("M 0 0 L 5 0 L 5 5 L 0 5 L 0 0 L 5 0 L 5 5 L 0 5 Z"), false, false},
        {"three squares that cross each other", square(0, 0, 6) + square(3, 1, 6) + square(2, 4, 6),
            false, false},
    };
    for (Case const& one : cases) {
        QTest::addRow("even-odd: %s", one.name) << one.path << Qt::OddEvenFill << one.isSameEvenOdd;
        QTest::addRow("nonzero: %s", one.name) << one.path << Qt::WindingFill << one.isSameNonzero;
    }
    QTest::newRow("nonzero: a ring drawn filled")
        << square(0, 0, 9) + square(3, 3, 3) << Qt::WindingFill << false;
    QTest::newRow("nonzero: crossing squares")
        << square(0, 0, 6) + square(3, 3, 6) << Qt::WindingFill << false;
    QTest::newRow("nonzero: crossing squares the other way round")
        << square(0, 0, 6) + square(3, 3, 6, false) << Qt::WindingFill << true;
    QTest::newRow("nonzero: identical squares")
        << square(0, 0, 6) + square(0, 0, 6) << Qt::WindingFill << false;
}

void TestFillOrientation::leavesAsItIs()
{
    QFETCH(QString, path);
    QFETCH(Qt::FillRule, rule);
    QFETCH(bool, isSame);
    QPainterPath const source = pathOf(path, rule);
    OrientedPath const oriented = orientedForBothRules(source);
    QCOMPARE(oriented.isSameForBothRules, isSame);
    QVERIFY2(sameBits(oriented.path, source), qPrintable(textOf(oriented.path)));
}

void TestFillOrientation::leavesWhatIsTooLargeAsItIs()
{
    QPainterPath const source =
        QTransform::fromScale(1e127, 1e127).map(pathOf(square(0, 0, 9) + square(3, 3, 3)));
    QPainterPath const huge = QTransform::fromScale(1e180, 1.0).map(source);
    OrientedPath const oriented = orientedForBothRules(huge);
    QVERIFY(!oriented.isSameForBothRules);
    QVERIFY(sameBits(oriented.path, huge));
}

void TestFillOrientation::meetsEverySubpath()
{
    QPainterPath path = wave(100000, 10.0, false);
    QPainterPath expected = path;
    for (int i = 0; i < 1000; ++i) {
        QPainterPath hole;
        QPointF const place = placeInLines(i);
        hole.addRect(
            0.2 * place.x() - 5.0, 0.4 * place.y() - 4.0 + 0.004 * place.x(), 0.002, 0.002);
        path.addPath(hole);
        expected.addPath(hole.toReversed());
    }
    OrientedPath const oriented = orientedForBothRules(path);
    QVERIFY(oriented.isSameForBothRules);
    QVERIFY(sameBits(oriented.path, expected));
}

void TestFillOrientation::keepsTheStrokeOfAnOpenSubpath()
{
    QPainterPath const source =
        pathOf(square(0, 0, 90) + "M 30 30 C 70 20 80 40 60 60 L 40 70 L 20 60");
    OrientedPath const oriented = orientedForBothRules(source);
    QVERIFY(oriented.isSameForBothRules);
    QVERIFY(!sameBits(oriented.path, source));
    auto const stroked = [](QPainterPath const& path) {
        QImage image(100, 100, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.translate(5.0, 5.0);
        painter.strokePath(path, QPen(Qt::black, 1.0));
        return image;
    };
    QVERIFY(stroked(source) != stroked(QPainterPath()));
    QCOMPARE(stroked(oriented.path), stroked(source));
}

void TestFillOrientation::agreesWithWindingNumbers_data()
{
    QTest::addColumn<bool>("alongAxes");
    QTest::addColumn<Qt::FillRule>("rule");
    QTest::newRow("even-odd, sides along the axes") << true << Qt::OddEvenFill;
    QTest::newRow("nonzero, sides along the axes") << true << Qt::WindingFill;
    QTest::newRow("even-odd, sides in any direction") << false << Qt::OddEvenFill;
    QTest::newRow("nonzero, sides in any direction") << false << Qt::WindingFill;
}

void TestFillOrientation::agreesWithWindingNumbers()
{
    QFETCH(bool, alongAxes);
    QFETCH(Qt::FillRule, rule);
    QRandomGenerator random(20240229);
    // Sides in any direction have faces between the points; along the axes a point a cell is all.
    int const pointsOfUnit = alongAxes ? 1 : 8;
    int const paths = (alongAxes ? 20000 : 2000) / everyNth;
    int unchanged = 0;
    int reversedSome = 0;
    int refused = 0;
    int unseen = 0;
    for (int n = 0; n < paths; ++n) {
        std::vector<Polygon> const polygons = randomPolygons(random, alongAxes);
        Windings const windings = windingsOf(polygons, pointsOfUnit);
        QPainterPath const path = withRule(pathOf(polygons), rule);
        OrientedPath const oriented = orientedForBothRules(path);
        QByteArray const text = textOf(path).toUtf8();

        unsigned reversed = 0;
        QVERIFY2(findReversed(path, oriented.path, reversed), text);
        bool const wasAlike = isAlike(windings, 0);
        if (!oriented.isSameForBothRules || rule == Qt::WindingFill)
            QVERIFY2(sameBits(oriented.path, path), text);
        if (oriented.isSameForBothRules) {
            QVERIFY2(isAlike(windings, reversed), text);
            ++(reversed == 0 ? unchanged : reversedSome);
        } else {
            ++refused;
            bool couldBe = canBeAlike(windings, rule);
            // Unless a face lies between the points, which smaller distances show.
            if (couldBe && !alongAxes) {
                ++unseen;
                couldBe = canBeAlike(windingsOf(polygons, 20 * pointsOfUnit), rule);
            }
            QVERIFY2(!couldBe, text);
        }
        if (wasAlike && alongAxes)
            QVERIFY2(sameBits(oriented.path, path), text);
    }
    std::printf("%d as they were, %d with reversed subpaths, %d refused; of these %d for small "
                "faces.\n",
        unchanged, reversedSome, refused, unseen);
    QVERIFY(unchanged > paths / 20);
    QVERIFY(refused > paths / 20);
    QCOMPARE(reversedSome > paths / 20, rule == Qt::OddEvenFill);
}

void TestFillOrientation::judgesLargePaths_data()
{
    QTest::addColumn<QPainterPath>("path");
    QTest::addColumn<bool>("isSame");

    QPainterPath tiles;
    for (int i = 0; i < 2000; ++i)
        tiles.addRect(QRectF(placeInLines(i), QSizeF(1.0, 1.0)));
    QTest::newRow("2,000 tiles edge to edge") << tiles << true;
    QTest::newRow("2,000 tiles edge to edge in a frame") << framed(tiles) << true;

    if (Testing::sanitized)
        return; // the others take minutes there

    QPainterPath rings = wave(50000, 10.0, false);
    rings.addPath(wave(50000, 5.0, false));
    QTest::newRow("a ring of 100,000 lines") << rings << true;
    QPainterPath curvedRings = wave(16700, 10.0, true);
    curvedRings.addPath(wave(16700, 5.0, true));
    QTest::newRow("a ring of 100,000 elements of curves") << curvedRings << true;

    QPainterPath comb(QPointF(0.0, 0.0));
    for (int i = 0; i < 50000; ++i) {
        comb.lineTo(i, 50000.0 + i % 7);
        comb.lineTo(i + 0.5, 1.0);
    }
    comb.lineTo(50000.0, 0.0);
    comb.lineTo(0.0, 0.0);
    QTest::newRow("a comb of 50,000 teeth in a frame") << framed(comb) << true;

    QRandomGenerator random(7);
    QPainterPath tangle(QPointF(0.0, 0.0));
    for (int i = 0; i < 100000; ++i)
        tangle.lineTo(random.bounded(1000.0), random.bounded(1000.0));
    QTest::newRow("a tangle of 100,000 lines") << tangle << false;

    QTest::newRow("2,000 glyphs") << textWithoutHoles(2000) << true;
    QTest::newRow("2,000 glyphs in a frame") << framed(textWithoutHoles(2000)) << true;

    QPainterPath onion;
    for (int i = 0; i < 2000; ++i)
        onion.addEllipse(QPointF(0.0, 0.0), 10.0 * (i + 1), 10.0 * (i + 1));
    QTest::newRow("2,000 circles in each other") << onion << true;

    QPainterPath random2;
    for (int i = 0; i < 2000; ++i)
        random2.addRect(random.bounded(1000), random.bounded(1000), 100.0, 100.0);
    QTest::newRow("2,000 squares across each other") << random2 << false;

    for (int i = 0; i < 10000; ++i)
        comb.addRect(-10.0, 4.0 * i + 50.0, 1.0, 1.0);
    QTest::newRow("10,000 squares beside a comb of 50,000 teeth, in a frame")
        << framed(comb) << false;

    QPainterPath ladder;
    for (int i = 0; i < 20000; ++i)
        ladder.addRect(0.0, 2.0 * i, 10.0, 1.0);
    QTest::newRow("20,000 bars in a frame") << framed(ladder) << true;
}

void TestFillOrientation::judgesLargePaths()
{
    QFETCH(QPainterPath, path);
    QFETCH(bool, isSame);
    // Quadratic time would exceed the time that the test program has.
    QCOMPARE(orientedForBothRules(path).isSameForBothRules, isSame);
}

void TestFillOrientation::glyphs()
{
    QRawFont const font = sans();
    QVERIFY2(font.isValid(), "the font is missing: install fonts-dejavu-core");
    int reversed = 0;
    QStringList faults;
    for (int glyph = 3; glyph < 2003; glyph += everyNth) {
        QPainterPath const path = withoutHoles(font, glyph);
        OrientedPath const oriented = orientedForBothRules(path);
        reversed += !sameBits(path, oriented.path);
        if (!oriented.isSameForBothRules || !isDrawnAlike(path, oriented.path))
            faults << QString::number(glyph);
    }
    QVERIFY2(faults.isEmpty(), qPrintable(faults.join(QLatin1Char(' '))));
    QVERIFY2(reversed > 300 / everyNth, qPrintable(QString::number(reversed)));
}

void TestFillOrientation::icons()
{
    QVERIFY2(QFileInfo::exists(iconFolder), "the icons are missing: install breeze-icon-theme");
    int icons = 0;
    int evenOdd = 0;
    int differedBefore = 0;
    int differAfter = 0;
    int refused = 0;
    int nonzero = 0;
    int nonzeroRefused = 0;
    QStringList faults;
    QDirIterator files(QString::fromLatin1(iconFolder), {QStringLiteral("*.svg")},
        QDir::Files | QDir::NoSymLinks, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        if (icons++ % everyNth != 0)
            continue;
        QVERIFY(file.open(QIODevice::ReadOnly));
        Diagnostics diagnostics;
        auto const pictures = importSvg(file.readAll(),
            {file.fileName(), 0.0, [] { return QStringList(); }, true, true}, diagnostics);
        QVERIFY2(pictures && pictures->size() == 1, qPrintable(file.fileName()));
        for (ImportedOutline const& outline : pictures->front().outlines) {
            QPainterPath const& path = outline.painted->path;
            OrientedPath const oriented = orientedForBothRules(path);
            bool const isEvenOdd = path.fillRule() == Qt::OddEvenFill;
            ++(isEvenOdd ? evenOdd : nonzero);
            if (!oriented.isSameForBothRules)
                ++(isEvenOdd ? refused : nonzeroRefused);
            if (isEvenOdd && !isDrawnAlike(path, path))
                ++differedBefore;
            if (oriented.isSameForBothRules ? isDrawnAlike(path, oriented.path)
                                            : sameBits(path, oriented.path)) {
                continue;
            }
            ++differAfter;
            faults << QStringLiteral("%1, %2").arg(file.fileName(), outline.name);
        }
    }
    std::printf("Of %d icons %d paths are meant even-odd: %d differed, now %d, %d refused. "
                "Of %d meant nonzero %d are refused.\n",
        icons, evenOdd, differedBefore, differAfter, refused, nonzero, nonzeroRefused);
    QVERIFY2(faults.isEmpty(), qPrintable(faults.join(QStringLiteral("; "))));
    QVERIFY(evenOdd > 5000 / everyNth);
    QVERIFY(everyNth > 1 || differedBefore > 0);
}

QTEST_MAIN(TestFillOrientation)
#include "tst_fillorientation.moc"
