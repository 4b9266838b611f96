// SPDX-License-Identifier: MIT
#include "paint/contactsheet.h"

#include "common/text.h"
#include "paint/caption.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

constexpr double cellSide = 150.0;
constexpr double cellMargin = 10.0;
constexpr double captionHeight = 18.0;
constexpr double sheetMargin = 12.0;
constexpr double sheetAspect = 1.5; ///< width to height that the grid comes close to

/** A figure as it is shown: once, or once for every box. */
struct Band
{
    QString caption;
    std::vector<Figure> figures;
    QVector<QSizeF> boxes; ///< as many as figures, or none
    QVector<QRectF> bounds; ///< of each figure with its box
};

Band makeBand(Figure const& figure, QVector<QSizeF> const& boxes, OutlineStyle const& style)
{
    Band band {figure.caption, {}, boxes, {}};
    if (boxes.isEmpty()) {
        band.figures.push_back(figure);
        band.bounds.append(boundsOf(figure, style));
    }
    for (QSizeF const& box : boxes) {
        band.figures.push_back(resized(figure, box));
        band.bounds.append(
            boundsOf(band.figures.back(), style).united(QRectF(QPointF(0.0, 0.0), box)));
    }
    return band;
}

/** The scale at which the largest figure of the band just fits into its cell. */
double scaleOf(Band const& band)
{
    double longest = 0.0;
    for (QRectF const& bounds : band.bounds) {
        if (isDrawable(bounds))
            longest = std::max({longest, bounds.width(), bounds.height()});
    }
    return longest > 0.0 ? (cellSide - 2.0 * cellMargin) / longest : 1.0;
}

class SheetPainter
{
public:
    SheetPainter(QPainter& painter, OutlineStyle const& style)
        : m_painter(painter)
        , m_style(style)
    {
    }

    void draw(Band const& band, QPointF const& topLeft)
    {
        double const scale = scaleOf(band);
        double const bandWidth = cellSide * static_cast<double>(band.figures.size());
        for (int i = 0; i < band.bounds.size(); ++i) {
            QRectF const cell(topLeft + QPointF(i * cellSide, 0.0), QSizeF(cellSide, cellSide));
            drawCell(band, i, cell, scale);
            if (!band.boxes.isEmpty())
                drawCaption(m_painter, sizeText(band.boxes.at(i)), underneath(cell), Qt::darkGray);
        }
        drawCaption(m_painter, band.caption,
            QRectF(topLeft.x(), topLeft.y() + bandHeight(band) - captionHeight, bandWidth,
                captionHeight),
            Qt::black);
    }

    static double bandHeight(Band const& band)
    {
        return cellSide + captionHeight * (band.boxes.isEmpty() ? 1.0 : 2.0);
    }

private:
    static QRectF underneath(QRectF const& cell)
    {
        return {cell.left(), cell.bottom(), cell.width(), captionHeight};
    }

    void drawCell(Band const& band, int index, QRectF const& cell, double scale)
    {
        QRectF const& bounds = band.bounds.at(index);
        if (!isDrawable(bounds)) {
            drawCaption(m_painter, QStringLiteral("cannot be drawn"), cell, Qt::red);
            return;
        }
        QPointF const origin = cell.center() - scale * bounds.center();
        QTransform const toSheet =
            QTransform::fromScale(scale, scale) * QTransform::fromTranslate(origin.x(), origin.y());
        if (!band.boxes.isEmpty()) {
            m_painter.setPen(QPen(Qt::lightGray, 0.0, Qt::DashLine));
            m_painter.setBrush(Qt::NoBrush);
            m_painter.drawRect(toSheet.mapRect(QRectF(QPointF(0.0, 0.0), band.boxes.at(index))));
        }
        drawFigure(m_painter, band.figures[static_cast<std::size_t>(index)], m_style, toSheet);
    }

    QPainter& m_painter;
    OutlineStyle m_style;
};

} // namespace

Picture contactSheet(
    std::vector<Figure> const& figures, QVector<QSizeF> const& boxes, OutlineStyle const& style)
{
    std::vector<Band> bands;
    bands.reserve(figures.size());
    for (Figure const& figure : figures)
        bands.push_back(makeBand(figure, boxes, style));

    double const bandWidth = cellSide * std::max(1, boxes.size());
    double const bandHeight = SheetPainter::bandHeight(bands.front());
    auto const count = static_cast<double>(bands.size());
    double const columns =
        std::clamp(std::round(std::sqrt(count * sheetAspect * bandHeight / bandWidth)), 1.0, count);
    double const rows = std::ceil(count / columns);
    QSizeF const grid(columns * bandWidth, rows * bandHeight);
    QSizeF const legend = style.showsPoints ? OutlinePainter::legendSize() : QSizeF(0.0, 0.0);
    QSizeF const size =
        QSizeF(std::max(grid.width(), legend.width()), grid.height() + legend.height())
        + QSizeF(2.0 * sheetMargin, 2.0 * sheetMargin);

    auto const paint = [=, bands = std::move(bands)](QPainter& painter) {
        SheetPainter sheetPainter(painter, style);
        double index = 0.0;
        for (Band const& band : bands) {
            double const row = std::floor(index / columns);
            double const column = index - row * columns;
            sheetPainter.draw(
                band, QPointF(sheetMargin + column * bandWidth, sheetMargin + row * bandHeight));
            index += 1.0;
        }
        if (style.showsPoints) {
            OutlinePainter(painter, style)
                .drawLegend(QPointF(sheetMargin, sheetMargin + grid.height()));
        }
    };
    return {size, paint};
}
