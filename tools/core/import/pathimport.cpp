// SPDX-License-Identifier: MIT
#include "import/pathimport.h"

#include "document/exactpath.h"
#include "import/losses.h"
#include "import/pathdataparser.h"
#include "segmentkind_p.h"

#include <algorithm>
#include <cmath>

namespace {

/** False if a value becomes too large to be drawn. */
bool scale(KpPathSegList& list, double factor)
{
    // A painter path leaves out places beyond 1e128 without a word.
    double const largest = 1e100;
    bool isInRange = true;
    for (KpPathSeg* const seg : qAsConst(list.segs)) {
        SegmentKind::forEachReal(*seg, [&](KpReal& real) {
            real.value *= factor;
            isInRange = isInRange && std::abs(real.value) <= largest;
        });
    }
    return isInRange;
}

/** As SVG paints a path of which nothing else is said, but for its line, which outlines have. */
RecordedPath paintedAs(QPainterPath const& path, double scale)
{
    RecordedPath painted;
    painted.path = path;
    painted.path.setFillRule(Qt::WindingFill);
    painted.transform = QTransform::fromScale(scale, scale);
    painted.pen = QPen(Qt::black, 1.0, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin);
    painted.brush = Qt::black;
    return painted;
}

/** In outline units; nothing, with a diagnostic, if none fits the outline. */
std::optional<QSizeF> boxFor(
    QPainterPath const& path, PathImportOptions const& options, Diagnostics& diagnostics)
{
    if (options.box)
        return *options.box * options.scale;
    QRectF const bounds = path.boundingRect();
    if (bounds.right() < 0.0 || bounds.bottom() < 0.0) {
        diagnostics.error(options.source,
            QStringLiteral("it lies left of or above its origin, so its box must be given"));
        return std::nullopt;
    }
    return QSizeF(std::max(1.0, bounds.right()), std::max(1.0, bounds.bottom()));
}

} // namespace

std::optional<ImportedOutlines> importPath(
    QString const& data, PathImportOptions const& options, Diagnostics& diagnostics)
{
    auto list = std::make_unique<KpPathSegList>();
    if (auto const fault = parsePathData(data, *list)) {
        diagnostics.add(
            {Diagnostic::Severity::Error, options.source, fault->line, fault->column, fault->what});
        return std::nullopt;
    }
    if (list->segs.isEmpty()) {
        diagnostics.error(options.source, QStringLiteral("the path draws nothing"));
        return std::nullopt;
    }
    if (!scale(*list, options.scale)) {
        diagnostics.error(options.source, QStringLiteral("a coordinate is too large"));
        return std::nullopt;
    }
    RecordedPath const painted = paintedAs(exactPath(*list), options.scale);
    auto const box = boxFor(painted.path, options, diagnostics);
    if (!box)
        return std::nullopt;
    ImportedOutlines picture {*box, {}, options.scale};
    if (QString const fault = pictureSizeFault(picture.size); !fault.isEmpty()) {
        diagnostics.error(options.source, fault);
        return std::nullopt;
    }
    // No subpath is turned round, for that helps no nonzero winding: the segments stay as written.
    appendOutline(
        picture, painted, QStringLiteral("path 1"), options.source, diagnostics, std::move(list));
    if (picture.outlines.empty())
        return std::nullopt;
    warnOfLosses(picture, options.source, diagnostics);
    return picture;
}
