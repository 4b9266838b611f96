// SPDX-License-Identifier: MIT
#ifndef HANDLEPAINTER_H
#define HANDLEPAINTER_H

#include "canvas/pixelgrid.h"
#include "canvas/viewtransform.h"
#include "document/bindingrule.h"
#include "model/handle.h"

#include <QPalette>
#include <QPixmap>
#include <QVector>

#include <array>
#include <optional>

class QPainter;

/** The handles of an outline and which of them are selected. */
struct PaintedHandles
{
    KpPathSegList const& list; ///< not owned
    QVector<HandleId> const& selected; ///< sorted; not owned
    std::optional<HandleId> focus; ///< the one with the ring of the focus
};

/**
 * Draws handles: the left half of each shows the rule of x, the right one that of y. Keeps their
 * pictures, so that thousands are drawn in some milliseconds.
 */
class HandlePainter
{
public:
    /** What to draw for: pictures for another ratio or palette are made anew. */
    void setDevice(double ratio, QPalette const& palette);

    /** Draws the handles within `visible`, a part of the widget, and the lines to control points. */
    void paint(QPainter& painter, PaintedHandles const& handles, ViewTransform const& view,
        QRectF const& visible);
    /** Draws the handles of a box that stand on a frame. @param focus one that has the focus */
    void paintBox(QPainter& painter, QRectF const& frame, std::optional<int> focus) const;

private:
    QPixmap const& sprite(Handle const& handle, bool isCurve, bool isSelected);
    void paintLines(QPainter& painter, PaintedHandles const& handles, ViewTransform const& view,
        QRectF const& visible) const;
    void paintFocus(QPainter& painter, QPointF const& at) const;

    double m_ratio = 1.0;
    QPalette m_palette;
    std::array<QPixmap, std::size_t(3) * 2 * ruleCount * ruleCount>
        m_sprites; ///< by form, selection, rules
};

#endif // HANDLEPAINTER_H
