// SPDX-License-Identifier: MIT
#ifndef OUTLINEPAINTER_H
#define OUTLINEPAINTER_H

#include "document/appearance.h"
#include "kppathseglist.h"

#include <QPainterPath>
#include <QRectF>
#include <QTransform>

#include <optional>

class QPainter;

/** How outlines are drawn. */
struct OutlineStyle
{
    std::optional<Qt::FillRule> fillRule; ///< instead of what the outlines ask for
    bool showsPoints = false; ///< marks on all points, coloured by their binding rules
    double lineWidth = 1.5; ///< of the stroke, in the painter's units
};

/** The drawing of an outline in a painter's units; it may leave out what is not to be seen. */
struct MappedDrawing
{
    QPainterPath fill; ///< to be filled
    QPainterPath line; ///< to be stroked
    double scale; ///< units of the painter a unit of the outline
};

/**
 * Draws outlines: filled and stroked unless their flags say otherwise, in the colours of their
 * appearance. The usual ones are ink where there is only a fill, and pale behind a line.
 */
class OutlinePainter
{
public:
    /** @param painter not owned, must outlive this */
    OutlinePainter(QPainter& painter, OutlineStyle const& style);

    /**
     * Draws an outline without its points, on its shadow if it has one: see drawShadow().
     *
     * @param fillRule what the outline asks for
     * @param toDevice maps the outline's units to the painter's
     * @param appearance of the outline
     */
    void draw(KpPathSegList& list, Qt::FillRule fillRule, QTransform const& toDevice,
        Appearance const& appearance = {});

    /** As draw(), of an outline whose drawing is at hand. */
    void drawMapped(KpPathSegList const& list, Qt::FillRule fillRule, MappedDrawing const& drawing,
        Appearance const& appearance = {});

    /** Marks all points of an outline, with the control points and the radii. */
    void drawPoints(KpPathSegList& list, QTransform const& toDevice);

    /** Explains the colours of the marks; `topLeft` is in the painter's units. */
    void drawLegend(QPointF const& topLeft);
    /** What the legend takes, in the painter's units. */
    static QSizeF legendSize();

private:
    void setColours(KpPathSegList const& list, Appearance const& appearance);
    void drawShadowOf(
        KpPathSegList const& list, MappedDrawing const& drawing, Appearance const& appearance);

    QPainter& m_painter;
    OutlineStyle m_style;
};

/** The drawing of an outline in its own units. */
QPainterPath painterPathOf(KpPathSegList const& list);

/** Whether a coordinate is such that it can be drawn. */
bool isDrawable(double number);

/**
 * What the drawing covers, control points included if they are shown; without bounds if a
 * coordinate of it cannot be drawn.
 */
QRectF drawnBounds(KpPathSegList& list, OutlineStyle const& style);

#endif // OUTLINEPAINTER_H
