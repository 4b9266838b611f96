// SPDX-License-Identifier: MIT
#include "canvas/pixelgrid.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

PixelGrid::PixelGrid(double ratio)
    : m_ratio(ratio > 0.0 ? ratio : 1.0)
    , m_hairline(std::max(1.0, std::floor(m_ratio)) / m_ratio)
{
}

double PixelGrid::edge(double logical) const
{
    return std::round(logical * m_ratio) / m_ratio;
}

QRectF PixelGrid::aligned(QRectF const& rect) const
{
    return {QPointF(edge(rect.left()), edge(rect.top())),
        QPointF(edge(rect.right()), edge(rect.bottom()))};
}

void PixelGrid::drawVertical(
    QPainter& painter, double x, double top, double bottom, QColor const& colour) const
{
    painter.fillRect(QRectF(edge(x), edge(top), m_hairline, edge(bottom) - edge(top)), colour);
}

void PixelGrid::drawHorizontal(
    QPainter& painter, double y, double left, double right, QColor const& colour) const
{
    painter.fillRect(QRectF(edge(left), edge(y), edge(right) - edge(left), m_hairline), colour);
}

void PixelGrid::drawFrame(QPainter& painter, QRectF const& rect, QColor const& colour) const
{
    QRectF const outer = aligned(rect);
    drawHorizontal(painter, outer.top(), outer.left(), outer.right(), colour);
    drawHorizontal(painter, outer.bottom() - m_hairline, outer.left(), outer.right(), colour);
    drawVertical(painter, outer.left(), outer.top(), outer.bottom(), colour);
    drawVertical(painter, outer.right() - m_hairline, outer.top(), outer.bottom(), colour);
}
