#include "import/losses.h"

#include "common/text.h"
#include "document/outlinedocument.h"
#include "document/shortlines.h"

#include <algorithm>

namespace {

bool isFilled(RecordedPath const& shape)
{
    return shape.brush.style() != Qt::NoBrush;
}

bool isStroked(RecordedPath const& shape)
{
    return shape.pen.style() != Qt::NoPen;
}

bool hasGradient(RecordedPath const& shape)
{
    auto const isPlain = [](QBrush const& brush) { return brush.style() == Qt::SolidPattern; };
    return (isFilled(shape) && !isPlain(shape.brush))
        || (isStroked(shape) && !isPlain(shape.pen.brush()));
}

bool hasColour(RecordedPath const& shape)
{
    auto const isBlack = [](QColor const& colour) {
        return colour.red() == 0 && colour.green() == 0 && colour.blue() == 0;
    };
    return !hasGradient(shape)
        && ((isFilled(shape) && !isBlack(shape.brush.color()))
            || (isStroked(shape) && !isBlack(shape.pen.color())));
}

bool isTranslucent(RecordedPath const& shape)
{
    auto const isPart = [](QBrush const& brush, double opacity) {
        bool const isPlain = brush.style() == Qt::SolidPattern;
        return opacity < 1.0 || (isPlain && brush.color().alpha() < 255);
    };
    return (isFilled(shape) && isPart(shape.brush, shape.fillOpacity))
        || (isStroked(shape) && isPart(shape.pen.brush(), shape.lineOpacity));
}

bool hasWidth(RecordedPath const& shape)
{
    double const usual = 1.0;
    return isStroked(shape) && (shape.pen.widthF() < usual || shape.pen.widthF() > usual);
}

bool isDashed(RecordedPath const& shape)
{
    return isStroked(shape) && shape.pen.style() != Qt::SolidLine;
}

bool hasEnds(RecordedPath const& shape)
{
    Qt::PenJoinStyle const join = shape.pen.joinStyle();
    return isStroked(shape)
        && (shape.pen.capStyle() != Qt::FlatCap
            || (join != Qt::MiterJoin && join != Qt::SvgMiterJoin));
}

bool isComposed(RecordedPath const& shape)
{
    return shape.compositionMode != QPainter::CompositionMode_SourceOver;
}

/** What shapes may be painted with; that which is usual in SVG is no loss. */
struct Loss
{
    char const* what;
    bool (*isIn)(RecordedPath const&);
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

void warnOfFillRules(ImportedOutlines const& picture, QString const& file, Diagnostics& diagnostics)
{
    for (Qt::FillRule const rule : {Qt::OddEvenFill, Qt::WindingFill}) {
        auto const count = std::count_if(picture.outlines.begin(), picture.outlines.end(),
            [rule](ImportedOutline const& outline) { return outline.fillRule == rule; });
        if (count == 0)
            continue;
        diagnostics.warning(file,
            QStringLiteral("%1 would be filled otherwise by the other rule: FillRule=\"%2\" beside "
                           "the outline says so")
                .arg(countText(count, QStringLiteral("shape")), fillRuleText(rule)));
    }
}

} // namespace

void warnOfLosses(ImportedOutlines const& picture, QString const& file, Diagnostics& diagnostics)
{
    for (Loss const& loss : losses) {
        auto const count = std::count_if(picture.outlines.begin(), picture.outlines.end(),
            [&loss](ImportedOutline const& outline) { return loss.isIn(outline.painted); });
        if (count > 0) {
            diagnostics.warning(file,
                QStringLiteral("%1 with %2: not kept")
                    .arg(countText(count, QStringLiteral("shape")), QLatin1String(loss.what)));
        }
    }
    warnOfFillRules(picture, file, diagnostics);
    if (int const count = countLostLines(picture); count > 0) {
        diagnostics.warning(file,
            QStringLiteral("%1 of less than one unit: not drawn, unless at a larger scale")
                .arg(countText(count, QStringLiteral("line"))));
    }
}

int countLostLines(ImportedOutlines const& picture)
{
    int count = 0;
    for (ImportedOutline const& outline : picture.outlines)
        count += countLostLines(*outline.list);
    return count;
}
