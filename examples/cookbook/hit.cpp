// SPDX-License-Identifier: MIT
// Finds what lies under the mouse: the inside of an outline, or one of its lines.

#include <kpmath.h>
#include <kppath.h>
#include <kppathseglist.h>

#include <QLineF>
#include <QPainterPath>

#include <cstdio>

//! [inside]
bool isInside(KpPathSegList const& outline, QPointF mouse)
{
    KpPath path;
    outline.toPath(path);
    QPainterPath drawn = path.toPainterPath();
    drawn.setFillRule(Qt::WindingFill);
    return drawn.contains(mouse);
}
//! [inside]

//! [line]
bool isOnLine(QPointF a, QPointF b, QPointF mouse, double tolerance)
{
    QPointF const foot = KpMath::kpUprightPoint(a, b, mouse);
    if (QLineF(foot, mouse).length() > tolerance)
        return false;
    // The foot may lie beyond an end, but no further than the tolerance.
    double const beyond =
        QLineF(a, foot).length() + QLineF(foot, b).length() - QLineF(a, b).length();
    return beyond < 2 * tolerance;
}
//! [line]

int main()
{
    KpPathSegList triangle;
    triangle.moveTo(QPointF(0, 0));
    triangle.lineTo(QPointF(100, 0));
    triangle.lineTo(QPointF(0, 60));
    triangle.closed = true;
    for (QPointF const mouse : {QPointF(20, 20), QPointF(50, 32), QPointF(90, 50)}) {
        std::printf("%g, %g: %s, %s\n", mouse.x(), mouse.y(),
            isInside(triangle, mouse) ? "inside" : "outside",
            isOnLine(QPointF(100, 0), QPointF(0, 60), mouse, 3) ? "on the long side"
                                                                : "not on the long side");
    }

    //! [crossing]
    QPointF crossing;
    if (KpMath::kpCrossPoint3(QPointF(0, 0), QPointF(100, 60), QPointF(100, 0), QPointF(0, 60),
            crossing, 1) // at least one unit away from all four ends
        == 1) {
        std::printf("the diagonals meet at %g, %g\n", crossing.x(), crossing.y());
    }
    //! [crossing]

    //! [side]
    // y grows downwards: to the left of a line that runs down on the screen is side 1
    std::printf("side %d, turn %d\n", KpMath::kpLineSide({-5, 10}, {0, 0}, {0, 20}),
        KpMath::kpVectorDir({0, 0}, {10, 0}, {0, 10}, 0.001)); // 1: clockwise on the screen
    //! [side]
}
