// SPDX-License-Identifier: MIT
#include "canvas/legend.h"

#include "canvas/palettecolours.h"
#include "model/handle.h"
#include "paint/pointmark.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

constexpr double padding = 8.0;
constexpr double textIndent = 22.0;

struct Line
{
    PointMark mark;
    QColor left;
    QColor right;
    QString text;
};

std::vector<Line> linesOf(Legend const& legend)
{
    std::vector<Line> all;
    for (int rule = 0; rule < ruleCount; ++rule) {
        if (legend.rules[static_cast<std::size_t>(rule)] == 0)
            continue;
        BindingRule const& shown = bindingRule(rule);
        QColor const colour = QColor::fromRgb(shown.colour);
        QString const name = QString::fromUtf8(shown.name);
        QString const meaning = QString::fromUtf8(shown.meaning);
        all.push_back({PointMark::Corner, colour, colour,
            name == meaning ? name : QStringLiteral("%1: %2").arg(name, meaning)});
    }
    QColor const x = QColor::fromRgb(bindingRule(KpReal::PartOfWidth).colour);
    QColor const y = QColor::fromRgb(bindingRule(KpReal::PartOfHeight).colour);
    all.push_back({PointMark::Corner, x, y, QStringLiteral("left half: x, right half: y")});
    if (legend.hasCurves)
        all.push_back({PointMark::Curve, x, y, QStringLiteral("end of a curve, centre")});
    if (legend.hasCurves)
        all.push_back({PointMark::Control, x, y, QStringLiteral("control point, radius")});
    return all;
}

double lineHeight(QFont const& font)
{
    return std::max(std::ceil(QFontMetricsF(font).height()) + 2.0, 2.0 * pointMarkRadius + 3.0);
}

} // namespace

QSizeF Legend::size(QFont const& font) const
{
    QFontMetricsF const metrics(font);
    double width = 0.0;
    double height = 0.0;
    for (Line const& line : linesOf(*this)) {
        width = std::max(width, metrics.horizontalAdvance(line.text));
        height += lineHeight(font);
    }
    return {std::ceil(width) + textIndent + 2.0 * padding, height + 2.0 * padding};
}

void Legend::paint(
    QPainter& painter, QPointF const& topLeft, QFont const& font, QPalette const& palette) const
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(font);
    QColor ground = palette.color(QPalette::Base);
    QColor const& text = palette.color(QPalette::Text);
    painter.setPen(QPen(mixed(ground, text, 0.35), 1.0));
    ground.setAlpha(235);
    painter.setBrush(ground);
    painter.drawRoundedRect(QRectF(topLeft, size(font)).adjusted(0.5, 0.5, -0.5, -0.5), 4.0, 4.0);
    QFontMetricsF const metrics(font);
    double const height = lineHeight(font);
    double middle = topLeft.y() + padding + height / 2.0;
    for (Line const& line : linesOf(*this)) {
        QPointF const mark(topLeft.x() + padding + pointMarkRadius + 2.0, middle);
        drawPointMark(painter, mark, line.mark, line.left, line.right);
        painter.setPen(text);
        painter.drawText(QPointF(topLeft.x() + padding + textIndent,
                             middle + (metrics.ascent() - metrics.descent()) / 2.0),
            line.text);
        middle += height;
    }
    painter.restore();
}

Legend legendOf(KpPathSegList const& list)
{
    Legend legend;
    for (KpPathSeg const* const segment : list.segs) {
        bool const isEllipse = segment->type == KpPathSeg::SegEllipse;
        legend.hasCurves |= isEllipse || segment->type == KpPathSeg::SegCurveTo;
    }
    forEachHandle(list, [&legend](Handle const& handle) {
        for (KpReal const* const real : {handle.x, handle.y}) {
            if (real)
                ++legend.rules[static_cast<std::size_t>(ruleOf(real->base))];
        }
    });
    return legend;
}
