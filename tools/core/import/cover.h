// SPDX-License-Identifier: MIT
#ifndef COVER_H
#define COVER_H

#include <QPointF>
#include <QRectF>

#include <algorithm>
#include <optional>

/**
 * The smallest upright rectangle around places and other rectangles. QRectF::united does not make
 * it, for it leaves out those without width or height.
 */
class Cover
{
public:
    /** Extends it to the place. */
    void add(QPointF const& place)
    {
        if (!m_bounds)
            m_bounds = QRectF(place, QSizeF());
        m_bounds->setCoords(std::min(m_bounds->left(), place.x()),
            std::min(m_bounds->top(), place.y()), std::max(m_bounds->right(), place.x()),
            std::max(m_bounds->bottom(), place.y()));
    }

    /** Extends it to the rectangle, which may be empty, but not turned round. */
    void add(QRectF const& bounds)
    {
        add(bounds.topLeft());
        add(bounds.bottomRight());
    }

    /** Null if nothing was added. */
    QRectF bounds() const { return m_bounds.value_or(QRectF()); }

private:
    std::optional<QRectF> m_bounds;
};

#endif // COVER_H
