// SPDX-License-Identifier: MIT
#include "import/losses.h"

#include "common/text.h"
#include "document/outlinedocument.h"
#include "document/shortlines.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>

namespace {

bool isFilled(RecordedPath const& shape)
{
    return shape.brush.style() != Qt::NoBrush;
}

bool isStroked(RecordedPath const& shape)
{
    return shape.pen.style() != Qt::NoPen;
}

bool isPlain(QBrush const& brush)
{
    return brush.style() == Qt::SolidPattern;
}

bool hasGradient(RecordedPath const& shape, double)
{
    return (isFilled(shape) && !isPlain(shape.brush))
        || (isStroked(shape) && !isPlain(shape.pen.brush()));
}

bool hasColour(RecordedPath const& shape, double)
{
    auto const isColoured = [](QBrush const& brush) {
        QColor const& colour = brush.color();
        return isPlain(brush) && (colour.red() > 0 || colour.green() > 0 || colour.blue() > 0);
    };
    return (isFilled(shape) && isColoured(shape.brush))
        || (isStroked(shape) && isColoured(shape.pen.brush()));
}

bool isTranslucent(RecordedPath const& shape, double)
{
    auto const isPart = [](QBrush const& brush, double opacity) {
        return opacity < 1.0 || (isPlain(brush) && brush.color().alpha() < 255);
    };
    return (isFilled(shape) && isPart(shape.brush, shape.fillOpacity))
        || (isStroked(shape) && isPart(shape.pen.brush(), shape.lineOpacity));
}

/** The width of the line as the picture shows it, in the picture's own unit. */
double lineWidth(RecordedPath const& shape, double scale)
{
    if (shape.pen.isCosmetic())
        return shape.pen.widthF();
    double const area = std::abs(shape.transform.determinant());
    return shape.pen.widthF() * std::sqrt(area) / scale;
}

bool hasWidth(RecordedPath const& shape, double scale)
{
    double const usual = 1.0;
    // A transformation there and back leaves its rounding behind.
    double const rounding = 1e-6;
    return isStroked(shape) && std::abs(lineWidth(shape, scale) - usual) > rounding;
}

bool isDashed(RecordedPath const& shape, double)
{
    return isStroked(shape) && shape.pen.style() != Qt::SolidLine;
}

bool hasEnds(RecordedPath const& shape, double)
{
    Qt::PenJoinStyle const join = shape.pen.joinStyle();
    return isStroked(shape)
        && (shape.pen.capStyle() != Qt::FlatCap
            || (join != Qt::MiterJoin && join != Qt::SvgMiterJoin));
}

bool isComposed(RecordedPath const& shape, double)
{
    return shape.compositionMode != QPainter::CompositionMode_SourceOver;
}

/** What shapes may be painted with; that which is usual in SVG is no loss. */
struct Loss
{
    char const* what;
    bool (*isIn)(RecordedPath const&, double scale);
};

constexpr Loss losses[] = {
    {"a colour other than black", hasColour},
    {"a gradient or pattern", hasGradient},
    {"opacity below 1", isTranslucent},
    {"a line width other than 1", hasWidth},
    {"a dashed line", isDashed},
    {"line ends other than butt, or joins other than miter", hasEnds},
    {"a way of blending", isComposed},
};

using Pictures = std::vector<ImportedOutlines const*>;

/** How many outlines there are for which the predicate holds. */
template <class Predicate> qint64 countOutlines(Pictures const& pictures, Predicate holds)
{
    qint64 count = 0;
    for (ImportedOutlines const* const picture : pictures) {
        count += std::count_if(picture->outlines.begin(), picture->outlines.end(), holds);
    }
    return count;
}

void warnOfFillRules(Pictures const& pictures, QString const& file, Diagnostics& diagnostics)
{
    for (Qt::FillRule const rule : {Qt::OddEvenFill, Qt::WindingFill}) {
        auto const count = countOutlines(
            pictures, [rule](ImportedOutline const& outline) { return outline.fillRule == rule; });
        if (count == 0)
            continue;
        diagnostics.warning(file,
            QStringLiteral("%1 would be filled otherwise by the other rule: FillRule=\"%2\" beside "
                           "the outline says so")
                .arg(countText(count, QStringLiteral("shape")), fillRuleText(rule)));
    }
}

void warnOf(Pictures const& pictures, QString const& file, Diagnostics& diagnostics)
{
    for (std::size_t i = 0; i < std::size(losses); ++i) {
        auto const count = countOutlines(pictures,
            [i](ImportedOutline const& outline) { return (outline.losses >> i & 1U) != 0; });
        if (count > 0) {
            diagnostics.warning(file,
                QStringLiteral("%1 with %2: not kept")
                    .arg(countText(count, QStringLiteral("shape")), QLatin1String(losses[i].what)));
        }
    }
    warnOfFillRules(pictures, file, diagnostics);
    qint64 lost = 0;
    for (ImportedOutlines const* const picture : pictures)
        lost += countLostLines(*picture);
    if (lost > 0) {
        diagnostics.warning(file,
            QStringLiteral("%1 of less than one unit: not drawn, unless at a larger scale")
                .arg(countText(lost, QStringLiteral("line"))));
    }
}

} // namespace

quint32 lossesOf(RecordedPath const& painted, double scale)
{
    quint32 found = 0;
    for (std::size_t i = 0; i < std::size(losses); ++i)
        found |= losses[i].isIn(painted, scale) ? 1U << i : 0U;
    return found;
}

void warnOfLosses(ImportedOutlines const& picture, QString const& file, Diagnostics& diagnostics)
{
    warnOf({&picture}, file, diagnostics);
}

void warnOfLosses(ImportedPictures const& pictures, QString const& file, Diagnostics& diagnostics)
{
    Pictures all;
    for (ImportedOutlines const& picture : pictures)
        all.push_back(&picture);
    warnOf(all, file, diagnostics);
}

int countLostLines(ImportedOutlines const& picture)
{
    int count = 0;
    for (ImportedOutline const& outline : picture.outlines)
        count += countLostLines(*outline.list);
    return count;
}
