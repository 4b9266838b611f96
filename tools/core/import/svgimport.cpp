#include "import/svgimport.h"

#include "common/text.h"
#include "import/losses.h"
#include "import/svgguard.h"

#include <QSvgRenderer>

#include <cmath>

namespace {

/** Whether the first elements of both are the same, and have the same rule. */
bool beginAlike(QPainterPath const& left, QPainterPath const& right, int count)
{
    for (int i = 0; i < count; ++i) {
        QPainterPath::Element const a = left.elementAt(i);
        QPainterPath::Element const b = right.elementAt(i);
        // Unlike the comparison of points or paths this one takes nearly equal for different.
        if (a.type != b.type || a.x < b.x || a.x > b.x || a.y < b.y || a.y > b.y)
            return false;
    }
    return true;
}

bool sameElements(QPainterPath const& left, QPainterPath const& right)
{
    return left.fillRule() == right.fillRule() && left.elementCount() == right.elementCount()
        && beginAlike(left, right, left.elementCount());
}

/** Whether `closed` is the open path with one more line, back to its start. */
bool isClosedFrom(QPainterPath const& closed, QPainterPath const& open)
{
    return closed.elementCount() == open.elementCount() + 1
        && beginAlike(closed, open, open.elementCount())
        && closed.elementAt(open.elementCount()).isLineTo()
        && QPointF(closed.elementAt(open.elementCount())) == QPointF(closed.elementAt(0));
}

/** Whether `line` is the line of the shape of which `fill` is the filling. */
bool isLineOf(RecordedPath const& line, RecordedPath const& fill)
{
    if (fill.pen.style() != Qt::NoPen || line.brush.style() != Qt::NoBrush
        || line.transform != fill.transform || line.compositionMode != fill.compositionMode
        || line.renderHints != fill.renderHints || line.clipped != fill.clipped)
        return false;
    // Of a polyline Qt SVG closes what it fills, and draws a line even with no colour.
    return (line.pen.style() != Qt::NoPen && sameElements(line.path, fill.path))
        || isClosedFrom(fill.path, line.path);
}

/** Gives the filling its line, which can be open where the filling is closed: both fill alike. */
void joinLine(RecordedPath& fill, RecordedPath const& line)
{
    Qt::FillRule const rule = fill.path.fillRule();
    fill.path = line.path;
    fill.path.setFillRule(rule);
    fill.pen = line.pen;
    fill.lineOpacity = line.lineOpacity;
}

/** Qt SVG paints the filling and the line of a shape one after the other; this joins them. */
std::vector<RecordedPath> shapes(std::vector<RecordedPath> const& paths)
{
    std::vector<RecordedPath> result;
    for (RecordedPath const& path : paths) {
        if (!result.empty() && isLineOf(path, result.back()))
            joinLine(result.back(), path);
        else
            result.push_back(path);
    }
    return result;
}

/** Without the filling or the line that cannot be seen. */
RecordedPath withoutInvisible(RecordedPath shape)
{
    auto const isInvisible = [](QBrush const& brush, double opacity) {
        return opacity <= 0.0 || brush.style() == Qt::NoBrush
            || (brush.style() == Qt::SolidPattern && brush.color().alpha() == 0);
    };
    if (isInvisible(shape.brush, shape.fillOpacity))
        shape.brush = Qt::NoBrush;
    if (isInvisible(shape.pen.brush(), shape.lineOpacity))
        shape.pen = Qt::NoPen;
    return shape;
}

void appendShapes(ImportedOutlines& picture, PathRecorder const& recorder, QString const& file,
    Diagnostics& diagnostics)
{
    int number = 0;
    int unpainted = 0;
    for (RecordedPath const& recorded : shapes(recorder.paths())) {
        ++number;
        RecordedPath const shape = withoutInvisible(recorded);
        if (shape.brush.style() == Qt::NoBrush && shape.pen.style() == Qt::NoPen)
            ++unpainted;
        else
            appendOutline(picture, shape, QStringLiteral("path %1").arg(number), file, diagnostics);
    }
    if (unpainted > 0) {
        diagnostics.warning(file,
            QStringLiteral("%1 painted with nothing: left out")
                .arg(countText(unpainted, QStringLiteral("shape"))));
    }
}

/** The picture at a scale; nothing, with a diagnostic, if it is empty or too large then. */
std::optional<ImportedOutlines> atScale(
    QSvgRenderer& renderer, double scale, QString const& file, Diagnostics& diagnostics)
{
    QSizeF const userSize = renderer.viewBoxF().size();
    ImportedOutlines picture {userSize * scale, {}, scale};
    if (QString const fault = pictureSizeFault(picture.size); !fault.isEmpty()) {
        diagnostics.error(file, fault);
        return std::nullopt;
    }
    PathRecorder recorder(userSize, scale);
    QPainter painter(&recorder);
    renderer.render(&painter, QRectF(QPointF(0.0, 0.0), userSize));
    painter.end();
    appendShapes(picture, recorder, file, diagnostics);
    return picture;
}

/** At the default scale, or at the fine one if lines would vanish. */
std::optional<ImportedOutlines> atBestScale(
    QSvgRenderer& renderer, QString const& file, Diagnostics& diagnostics)
{
    QSizeF const userSize = renderer.viewBoxF().size();
    double const longerSide = qMax(userSize.width(), userSize.height());
    Diagnostics usual;
    auto picture = atScale(renderer, defaultPictureSide / longerSide, file, usual);
    if (picture && countLostLines(*picture) > 0)
        return atScale(renderer, finePictureSide / longerSide, file, diagnostics);
    diagnostics.append(usual);
    return picture;
}

bool load(QSvgRenderer& renderer, QByteArray const& text, SvgImportOptions const& options,
    Diagnostics& diagnostics)
{
    if (renderer.load(text))
        return true;
    QStringList const reasons = options.takeMessages();
    QString const reason =
        reasons.isEmpty() ? QString() : QStringLiteral(": ") + reasons.constFirst();
    diagnostics.error(
        options.file, QStringLiteral("not an SVG picture that can be read%1").arg(reason));
    return false;
}

} // namespace

std::optional<ImportedOutlines> importSvg(
    QByteArray const& svg, SvgImportOptions const& options, Diagnostics& diagnostics)
{
    if (!(std::isfinite(options.scale) && options.scale >= 0.0)) {
        diagnostics.error(
            options.file, QStringLiteral("the scale must be a number and not negative"));
        return std::nullopt;
    }
    auto const text = guardedSvg(svg, options.file, diagnostics);
    if (!text)
        return std::nullopt;
    options.takeMessages();
    QSvgRenderer renderer;
    if (!load(renderer, *text, options, diagnostics))
        return std::nullopt;
    auto picture = options.scale > 0.0 ? atScale(renderer, options.scale, options.file, diagnostics)
                                       : atBestScale(renderer, options.file, diagnostics);
    if (!picture)
        return std::nullopt;
    for (QString const& message : options.takeMessages())
        diagnostics.warning(options.file, message);
    warnOfLosses(*picture, options.file, diagnostics);
    return picture;
}
