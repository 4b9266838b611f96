// SPDX-License-Identifier: MIT
#include "canvas/canvastool.h"

void CanvasTool::paint(QPainter&, PixelGrid const&) const { }

ToolPoint toolPointAt(
    ViewTransform const& view, QPointF const& widget, Qt::KeyboardModifiers modifiers)
{
    return {widget, roundedTo(view.toOutline(widget), view.precision()), modifiers};
}

QString stepText(QString const& verb, int points)
{
    return points == 1 ? QStringLiteral("%1 point").arg(verb)
                       : QStringLiteral("%1 %2 points").arg(verb).arg(points);
}
