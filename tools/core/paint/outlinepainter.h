#ifndef OUTLINEPAINTER_H
#define OUTLINEPAINTER_H

#include "kppathseglist.h"

#include <QPainterPath>
#include <QRectF>
#include <QTransform>

class QPainter;

/** How outlines are drawn. */
struct OutlineStyle
{
    Qt::FillRule fillRule = Qt::WindingFill;
    bool showsPoints = false; ///< marks on all points, coloured by their binding rules
};

/**
 * Draws outlines: filled and stroked unless their flags say otherwise, in ink where there is
 * only a fill, and pale behind a line.
 */
class OutlinePainter
{
public:
    OutlinePainter(QPainter& painter, OutlineStyle const& style);

    /** @param toDevice maps the outline's units to the painter's */
    void draw(KpPathSegList& list, QTransform const& toDevice);

    /** Explains the colours of the marks; `topLeft` is in the painter's units. */
    void drawLegend(QPointF const& topLeft);
    static QSizeF legendSize();

private:
    void drawPoints(KpPathSegList& list, QTransform const& toDevice);

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
