// SPDX-License-Identifier: MIT
#include "paint/fitsheet.h"

#include "document/place.h"
#include "paint/overlaysheet.h"
#include "segmentkind_p.h"

namespace {

Figure figureOf(Shapes const& shapes)
{
    Figure figure;
    for (Shape const& shape : shapes)
        figure.parts.push_back({shape.list, shape.fillRule});
    return figure;
}

/** The point that a coordinate belongs to; of a radius, where the ellipse ends. */
QPointF placeOf(KpPathSeg& segment, QString const& letter)
{
    bool const isEnd = letter == SegmentKind::Letter::x() || letter == SegmentKind::Letter::y();
    bool const isFirst = letter == SegmentKind::Letter::a() || letter == SegmentKind::Letter::b();
    if (KpPathSegCurveTo const* const curve = segment.toCurveTo(); curve && !isEnd)
        return placeOf(isFirst ? curve->ctrl1 : curve->ctrl2);
    if (KpPathSegEllipse const* const ellipse = segment.toEllipse(); ellipse && !isEnd) {
        bool const isHorizontal = letter == SegmentKind::Letter::a();
        return placeOf(segment.pt)
            + (isHorizontal ? QPointF(ellipse->a.value, 0.0) : QPointF(0.0, ellipse->b.value));
    }
    return placeOf(segment.pt);
}

} // namespace

Picture fitSheet(std::vector<SizedDrawing> const& drawings, FitResult const& result)
{
    std::vector<Overlay> overlays;
    for (SizedDrawing const& drawing : drawings) {
        Overlay overlay {drawing.box, figureOf(drawing.shapes),
            resized(figureOf(result.shapes), drawing.box), {}};
        for (CoordinateFinding const& finding : result.inexact) {
            KpPathSegList const& list =
                *overlay.fit.parts[static_cast<std::size_t>(finding.shape)].list;
            overlay.marks.append(placeOf(*list.segs.at(finding.segment), finding.letter));
        }
        overlays.push_back(std::move(overlay));
    }
    return overlaySheet(overlays);
}
