// SPDX-License-Identifier: MIT
#include "paint/overlaysheet.h"

#include "common/text.h"
#include "paint/caption.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <limits>

namespace {

constexpr double longestOverlaySide = 300.0; ///< of the largest overlay
constexpr double shortestSide = 60.0; ///< the longer side of an overlay is no shorter than this
constexpr double rowWidth = 960.0; ///< that cells beside one another keep to
constexpr double cellPadding = 14.0; ///< for what is broader than its line
constexpr double overlayCaptionHeight = 18.0;
constexpr double captionWidth = 90.0; ///< the least that a caption has
constexpr double overlaySheetMargin = 12.0;
constexpr double legendHeight = 26.0;
constexpr double sampleWidth = 30.0; ///< of the lines in the legend
constexpr double sampleGap = 6.0; ///< between a line and its name
constexpr double legendGap = 24.0;

constexpr QRgb frameInk = 0xffa0a0a0;
constexpr QRgb drawingInk = 0x80f2a23c;
constexpr QRgb drawingFill = 0x28f2a23c;
constexpr QRgb fitInk = 0xff1f3a5f;
constexpr QRgb markInk = 0xffd6202a;
constexpr double drawingWidth = 7.0;
constexpr double fitWidth = 1.5;
constexpr double markWidth = 1.5;
constexpr double markRadius = 5.0;

QPen roundPen(QRgb ink, double width)
{
    return {QColor::fromRgba(ink), width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

bool hasPlace(QPointF const& mark)
{
    return isDrawable(mark.x()) && isDrawable(mark.y());
}

/** The smallest rectangle with all of both; QRectF::united leaves out one without height or width. */
QRectF united(QRectF const& left, QRectF const& right)
{
    return {QPointF(std::min(left.left(), right.left()), std::min(left.top(), right.top())),
        QPointF(std::max(left.right(), right.right()), std::max(left.bottom(), right.bottom()))};
}

/** What an overlay covers, its box included; without bounds if it cannot be drawn. */
QRectF extentOf(Overlay const& overlay)
{
    QRectF const drawing = boundsOf(overlay.drawing, {});
    QRectF const fit = boundsOf(overlay.fit, {});
    QRectF const box(QPointF(0.0, 0.0), overlay.box);
    if (!isDrawable(drawing) || !isDrawable(fit) || !isDrawable(box) || overlay.box.width() < 0.0
        || overlay.box.height() < 0.0) {
        double const endless = std::numeric_limits<double>::infinity();
        return {QPointF(-endless, -endless), QPointF(endless, endless)};
    }
    // A figure without anything to draw has a null rectangle, at the corner of the box.
    QRectF all = united(box, united(drawing, fit));
    for (QPointF const& mark : overlay.marks) {
        if (hasPlace(mark))
            all = united(all, QRectF(mark, mark));
    }
    return all;
}

double longerSide(QRectF const& extent)
{
    return std::max(extent.width(), extent.height());
}

/** The scale at which an overlay is as long as the largest may be. */
double fillingScale(QRectF const& extent)
{
    return longerSide(extent) > 0.0 ? longestOverlaySide / longerSide(extent) : 1.0;
}

/** An overlay and its place on the sheet. */
struct Cell
{
    Overlay overlay;
    QRectF extent; ///< in the overlay's units
    double scale;
    QRectF place; ///< on the sheet, without the caption
};

/** The cells, their places still at the corner of the sheet. */
std::vector<Cell> cellsOf(std::vector<Overlay> const& overlays)
{
    std::vector<Cell> cells;
    double commonScale = std::numeric_limits<double>::infinity();
    for (Overlay const& overlay : overlays) {
        cells.push_back({overlay, extentOf(overlay), 1.0, QRectF()});
        if (isDrawable(cells.back().extent))
            commonScale = std::min(commonScale, fillingScale(cells.back().extent));
    }
    bool const isCommon = std::all_of(cells.cbegin(), cells.cend(), [=](Cell const& cell) {
        return !isDrawable(cell.extent) || longerSide(cell.extent) * commonScale >= shortestSide;
    });
    for (Cell& cell : cells) {
        QSizeF drawn(captionWidth, shortestSide);
        if (isDrawable(cell.extent)) {
            cell.scale = isCommon ? commonScale : fillingScale(cell.extent);
            drawn = cell.scale * cell.extent.size();
        }
        cell.place.setSize(QSizeF(std::max(drawn.width() + 2.0 * cellPadding, captionWidth),
            drawn.height() + 2.0 * cellPadding));
    }
    return cells;
}

/** Puts the cells into rows; the size that they take. */
QSizeF arrange(std::vector<Cell>& cells)
{
    QSizeF all(0.0, 0.0);
    for (auto first = cells.begin(); first != cells.end();) {
        double width = 0.0;
        double height = 0.0;
        auto end = first;
        while (end != cells.end() && (end == first || width + end->place.width() <= rowWidth)) {
            end->place.moveTopLeft(QPointF(overlaySheetMargin + width, 0.0));
            width += end->place.width();
            height = std::max(height, end->place.height());
            ++end;
        }
        // On a common ground, so that heights can be compared.
        for (; first != end; ++first)
            first->place.moveBottom(overlaySheetMargin + all.height() + height);
        all = QSizeF(std::max(all.width(), width), all.height() + height + overlayCaptionHeight);
    }
    return all;
}

/** What the legend explains. */
enum class Sample { Drawing, Fit, Mark };

QString nameOf(Sample sample)
{
    switch (sample) {
    case Sample::Drawing:
        return QStringLiteral("drawing");
    case Sample::Fit:
        return QStringLiteral("fit");
    case Sample::Mark:
        return QStringLiteral("not exact");
    }
    return QString();
}

/** How much of the legend's line a sample takes. */
double widthOf(Sample sample)
{
    return sampleWidth + sampleGap + QFontMetricsF(captionFont()).horizontalAdvance(nameOf(sample))
        + legendGap;
}

class OverlayPainter
{
public:
    explicit OverlayPainter(QPainter& painter)
        : m_painter(painter)
    {
    }

    void draw(Cell const& cell)
    {
        if (isDrawable(cell.extent)) {
            drawOverlay(cell);
        } else {
            drawCaption(m_painter, QStringLiteral("cannot be drawn"), cell.place, Qt::red);
        }
        QRectF const underneath(
            cell.place.left(), cell.place.bottom(), cell.place.width(), overlayCaptionHeight);
        drawCaption(m_painter,
            QStringLiteral("%1 \u00d7 %2")
                .arg(numberText(cell.overlay.box.width()), numberText(cell.overlay.box.height())),
            underneath, Qt::black);
    }

    void drawLegend(QVector<Sample> const& samples, QPointF const& leftMiddle)
    {
        m_painter.setFont(captionFont());
        QPointF at = leftMiddle;
        for (Sample const sample : samples) {
            QPointF const end = at + QPointF(sampleWidth, 0.0);
            if (sample == Sample::Mark) {
                drawMark((at + end) / 2.0);
            } else {
                m_painter.setPen(sample == Sample::Drawing ? drawingPen() : fitPen());
                m_painter.drawLine(at, end);
            }
            m_painter.setPen(Qt::black);
            m_painter.drawText(end + QPointF(sampleGap, 4.0), nameOf(sample));
            at.rx() += widthOf(sample);
        }
    }

private:
    static QPen drawingPen() { return roundPen(drawingInk, drawingWidth); }
    static QPen fitPen() { return roundPen(fitInk, fitWidth); }

    void drawOverlay(Cell const& cell)
    {
        QPointF const origin = cell.place.center() - cell.scale * cell.extent.center();
        QTransform const toSheet = QTransform::fromScale(cell.scale, cell.scale)
            * QTransform::fromTranslate(origin.x(), origin.y());
        m_painter.setPen(QPen(QColor::fromRgb(frameInk), 0.75, Qt::DashLine));
        m_painter.setBrush(Qt::NoBrush);
        m_painter.drawRect(toSheet.mapRect(QRectF(QPointF(0.0, 0.0), cell.overlay.box)));
        for (Figure::Part const& part : cell.overlay.drawing.parts) {
            QPainterPath path = toSheet.map(painterPathOf(*part.list));
            path.setFillRule(part.fillRule.value_or(Qt::WindingFill));
            m_painter.setPen(drawingPen());
            m_painter.setBrush(part.list->noFill ? QBrush() : QColor::fromRgba(drawingFill));
            m_painter.drawPath(path);
        }
        m_painter.setPen(fitPen());
        m_painter.setBrush(Qt::NoBrush);
        for (Figure::Part const& part : cell.overlay.fit.parts)
            m_painter.drawPath(toSheet.map(painterPathOf(*part.list)));
        for (QPointF const& mark : cell.overlay.marks) {
            if (hasPlace(mark))
                drawMark(toSheet.map(mark));
        }
    }

    void drawMark(QPointF const& at)
    {
        m_painter.setPen(QPen(QColor::fromRgb(markInk), markWidth));
        m_painter.setBrush(Qt::NoBrush);
        m_painter.drawEllipse(at, markRadius, markRadius);
    }

    QPainter& m_painter;
};

} // namespace

Picture overlaySheet(std::vector<Overlay> const& overlays)
{
    std::vector<Cell> cells = cellsOf(overlays);
    QSizeF const grid = arrange(cells);
    QVector<Sample> samples {Sample::Drawing, Sample::Fit};
    if (std::any_of(overlays.cbegin(), overlays.cend(),
            [](Overlay const& overlay) { return !overlay.marks.isEmpty(); }))
        samples << Sample::Mark;
    double legendWidth = cellPadding;
    for (Sample const sample : qAsConst(samples))
        legendWidth += widthOf(sample);
    QSizeF const size(std::max(grid.width(), legendWidth) + 2.0 * overlaySheetMargin,
        grid.height() + legendHeight + 2.0 * overlaySheetMargin);
    QPointF const legend(
        overlaySheetMargin + cellPadding, overlaySheetMargin + grid.height() + legendHeight / 2.0);
    auto const paint = [=, cells = std::move(cells)](QPainter& painter) {
        OverlayPainter overlayPainter(painter);
        for (Cell const& cell : cells)
            overlayPainter.draw(cell);
        overlayPainter.drawLegend(samples, legend);
    };
    return {size, paint};
}
