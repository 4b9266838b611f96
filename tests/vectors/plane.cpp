// SPDX-License-Identifier: MIT
#include "kpmath.h"
#include "sequence.h"
#include "themes.h"

#include <cmath>
#include <limits>

using namespace KpMath;

namespace {

constexpr double infinite = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

/** What the sine, the tangent and their inverses may differ by, with what is computed from them. */
constexpr int angleUlps = 8;

struct Three
{
    QPointF a;
    QPointF b;
    QPointF c;
};

struct Two
{
    QPointF a;
    QPointF b;
};

QPointF point(Vectors::Sequence& sequence, int limit)
{
    return {sequence.eighth(limit), sequence.eighth(limit)};
}

QVector<Two> pairsOfPoints()
{
    QVector<Two> pairs {{{0, 0}, {10, 0}}, {{0, 0}, {10, 10}}, {{0, 0}, {0, 0}}, {{5, 5}, {5, 9}},
        {{0.05, 10}, {0, 0}}, {{0.05, -10}, {0, 0}}, {{0.1, 10}, {0, 0}}, {{-0.1, 0.05}, {0, 0}},
        {{3, 0}, {0, 0}}, {{0, 3}, {0, 0}}, {{0, -3}, {0, 0}}, {{-0.0, 0}, {0, -0.0}},
        {{1e300, 1}, {-1e300, 1}}, {{infinite, 1}, {0, 0}}, {{notANumber, 1}, {2, 3}},
        {{0.09999, 0.5}, {0, 0.25}}};
    Vectors::Sequence sequence(1);
    for (int i = 0; i < 24; ++i)
        pairs.append({point(sequence, 100), point(sequence, 100)});
    for (int i = 0; i < 8; ++i)
        pairs.append({{sequence.real(-1, 1), sequence.real(-1, 1)}, point(sequence, 1)});
    return pairs;
}

QVector<Three> triplesOfPoints()
{
    QVector<Three> triples {{{5, 0}, {0, 0}, {10, 0}}, {{0, 0}, {10, 0}, {5, 0}},
        {{0, 0}, {5, 0}, {10, 0}}, {{10, 0}, {0, 0}, {0, 10}}, {{0, 10}, {0, 0}, {10, 0}},
        {{0, 0}, {0, 10}, {0, 5}}, {{0, 0}, {0, 5}, {0, 10}}, {{0, 0}, {0, -5}, {0, -10}},
        {{0, 5}, {0, 0}, {0, 5}}, {{5, 5}, {0, 0}, {5, 5}}, {{0, 0}, {0, 0}, {0, 0}},
        {{1, 1}, {1, 1}, {2, 3}}, {{0, 0}, {0.0005, 100}, {7, 3}}, {{0, 0}, {100, 0.0005}, {7, 3}},
        {{0, 0.5}, {0, 0}, {1, 0}}, {{0, 1}, {0, 0}, {1, 0}}, {{0, -1}, {0, 0}, {1, 0}},
        {{notANumber, 0}, {1, 2}, {3, 4}}, {{infinite, 0}, {1, 2}, {3, 4}},
        {{-3, 1}, {2, 1}, {-7, 1}}, {{0, 0}, {0.001, 7}, {3, 3}}};
    Vectors::Sequence sequence(2);
    for (int i = 0; i < 30; ++i)
        triples.append({point(sequence, 60), point(sequence, 60), point(sequence, 60)});
    for (int i = 0; i < 10; ++i)
        triples.append({{sequence.real(-2, 2), sequence.real(-2, 2)}, point(sequence, 2),
            {sequence.real(-2, 2), sequence.real(-2, 2)}});
    return triples;
}

void addOfVectors(Vectors::Theme& theme)
{
    QVector<QPointF> vectors {{0, 0}, {3, 4}, {1, 0}, {0, -1}, {0.99995, 0}, {0.9999, 0},
        {1.0001, 0}, {0.6, 0.8}, {-0.0, 0.0}, {1e-200, 1e-200}, {1e200, 1e200}, {notANumber, 1},
        {1, notANumber}, {infinite, 0}, {-infinite, infinite}, {1.7e308, 0}, {0, -1.7e308},
        {5e-324, 0}};
    Vectors::Sequence sequence(3);
    for (int i = 0; i < 30; ++i)
        vectors.append({sequence.real(-1, 1), sequence.real(-1, 1)});
    for (QPointF const& v : qAsConst(vectors)) {
        theme.add("KpMath::kpIsUnitVector(QPointF)", {{"v", v}}, {{"result", kpIsUnitVector(v)}});
        theme.add("KpMath::kpUnitVector(QPointF)", {{"v", v}}, {{"result", kpUnitVector(v)}});
    }
}

void addOfPairs(Vectors::Theme& theme)
{
    for (Two const& pair : pairsOfPoints()) {
        Vectors::Fields const inputs {{"a", pair.a}, {"b", pair.b}};
        theme.addNear(angleUlps, "KpMath::kpAtan(QPointF, QPointF)", inputs,
            {{"result", kpAtan(pair.a, pair.b)}});
        theme.addNear(angleUlps, "KpMath::kpAtan2(QPointF, QPointF)", inputs,
            {{"result", kpAtan2(pair.a, pair.b)}});
        theme.add("KpMath::kpNormalizeRect(QPointF, QPointF)", {{"p1", pair.a}, {"p2", pair.b}},
            {{"result", kpNormalizeRect(pair.a, pair.b)}});
    }
}

void addOfTriples(Vectors::Theme& theme)
{
    int row = 0;
    for (Three const& three : triplesOfPoints()) {
        QPointF const a = three.a;
        QPointF const b = three.b;
        QPointF const c = three.c;
        theme.add("KpMath::kpLineSide(QPointF, QPointF, QPointF)", {{"p", a}, {"a", b}, {"b", c}},
            {{"result", kpLineSide(a, b, c)}});
        theme.add("KpMath::kpProjection(QPointF const&, QPointF const&, QPointF const&)",
            {{"a", a}, {"p", b}, {"b", c}}, {{"result", kpProjection(a, b, c)}});
        double const eps = row++ % 3 * 0.5;
        theme.add("KpMath::kpVectorDir(QPointF const&, QPointF const&, QPointF const&, double)",
            {{"o", a}, {"a", b}, {"b", c}, {"eps", eps}}, {{"result", kpVectorDir(a, b, c, eps)}});
        theme.add("KpMath::kpOrtTurnOrder(QPointF const&, QPointF const&, QPointF const&)",
            {{"o", a}, {"a", b}, {"b", c}}, {{"result", kpOrtTurnOrder(a, b, c)}});
        theme.addNear(angleUlps, "KpMath::kpDegree(QPointF, QPointF, QPointF)",
            {{"a", a}, {"o", b}, {"b", c}}, {{"result", kpDegree(a, b, c)}});
        theme.add("KpMath::kpUprightPoint(QPointF, QPointF, QPointF)",
            {{"a", a}, {"b", b}, {"p", c}}, {{"result", kpUprightPoint(a, b, c)}});
    }
}

void addCrossings(Vectors::Theme& theme)
{
    struct Lines
    {
        QPointF a1;
        QPointF a2;
        QPointF b1;
        QPointF b2;
        double margin;
    };
    QVector<Lines> all {{{0, 0}, {10, 10}, {0, 10}, {10, 0}, 1},
        {{0, 0}, {10, 0}, {0, 5}, {10, 5}, 0}, {{0, 0}, {10, 0}, {2, 0}, {7, 0}, 0},
        {{0, 0}, {10, 0}, {10, 0}, {10, 10}, 0}, {{0, 0}, {10, 0}, {10, 0}, {10, 10}, 0.5},
        {{0, 0}, {0, 0}, {1, 1}, {2, 2}, 0}, {{0, 0}, {10, 0}, {1, -1}, {1, 1}, 1},
        {{0, 0}, {10, 0}, {0.5, -1}, {0.5, 1}, 1}, {{0, 0}, {100, 0}, {0, 0}, {100, 0.001}, 0},
        {{0, 0}, {100, 0}, {0, 1}, {100, 1.02}, 0}, {{notANumber, 0}, {10, 0}, {0, 5}, {10, -5}, 0},
        {{0, 0}, {infinite, 0}, {0, 5}, {10, -5}, 0}};
    Vectors::Sequence sequence(4);
    for (int i = 0; i < 36; ++i) {
        all.append({point(sequence, 40), point(sequence, 40), point(sequence, 40),
            point(sequence, 40), i % 3 * 0.75});
    }
    for (Lines const& lines : qAsConst(all)) {
        QPointF out(-1, -2);
        int const code = kpCrossPoint(lines.a1, lines.a2, lines.b1, lines.b2, out);
        Vectors::Fields inputs {{"a1", lines.a1}, {"a2", lines.a2}, {"b1", lines.b1},
            {"b2", lines.b2}, {"out", QPointF(-1, -2)}};
        theme.add("KpMath::kpCrossPoint(QPointF, QPointF, QPointF, QPointF, QPointF&)", inputs,
            {{"result", code}, {"out", out}});
        out = QPointF(-1, -2);
        int const within = kpCrossPoint3(lines.a1, lines.a2, lines.b1, lines.b2, out, lines.margin);
        inputs.push_back({"margin", lines.margin});
        theme.add("KpMath::kpCrossPoint3(QPointF, QPointF, QPointF, QPointF, QPointF&, double)",
            inputs, {{"result", within}, {"out", out}});
    }
}

void addDeterminants(Vectors::Theme& theme)
{
    Vectors::Sequence sequence(5);
    for (int i = 0; i < 16; ++i) {
        QVector<double> rows[3];
        for (QVector<double>& row : rows) {
            for (int column = 0; column < 3; ++column)
                row.append(i == 0 ? double(column + 1) : sequence.real(-10, 10));
        }
        if (i == 1)
            rows[0] = {infinite, 1, 2};
        theme.add("KpMath::kpDeterminate(double*, double*, double*)",
            {{"r0", rows[0]}, {"r1", rows[1]}, {"r2", rows[2]}},
            {{"result", kpDeterminate(rows[0].data(), rows[1].data(), rows[2].data())}});
    }
}

/**
 * No box lies about the origin: where its centre and its radius cancel out, the error of a sine is
 * large against what remains.
 */
void addEllipsePoints(Vectors::Theme& theme)
{
    QVector<QRectF> const boxes {{0, 0, 100, 50}, {100, 200, 80, 60}, {50, 70, 10, 0.05},
        {50, 70, 10, 0.1}, {30, 40, 0, 20}, {64, 64, 64, 8}};
    QVector<double> angles {0, 90, -90, 180, -180, 270, 360, 450, -450, 720.5, 45, 135, -135, 1e6,
        -1e6, 89.999999, 359.75, notANumber};
    Vectors::Sequence sequence(6);
    for (int i = 0; i < 6; ++i)
        angles.append(sequence.real(-400, 400));
    for (QRectF const& box : boxes) {
        for (double const angle : qAsConst(angles)) {
            theme.addNear(angleUlps, "KpMath::kpEllipsePoint(QRectF, double)",
                {{"rect", box}, {"angle", angle}}, {{"result", kpEllipsePoint(box, angle)}});
        }
    }
}

} // namespace

void Vectors::addPlane(Theme& theme)
{
    addOfVectors(theme);
    addOfPairs(theme);
    addOfTriples(theme);
    addCrossings(theme);
    addDeterminants(theme);
    addEllipsePoints(theme);
}
