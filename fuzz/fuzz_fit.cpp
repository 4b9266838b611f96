// SPDX-License-Identifier: MIT
// Any two or three texts as drawings, SVG pictures or documents, with a NUL between them: rules are
// learnt of them, or there is one reason.

#include "choices.h"
#include "diagnosticproperties.h"
#include "fit/drawinginput.h"
#include "pictureproperties.h"
#include "segmentkind_p.h"

#include <cmath>

namespace {

using Fuzzing::require;

void requireFinite(Shape const& shape)
{
    for (KpPathSeg* const segment : qAsConst(shape.list->segs)) {
        SegmentKind::forEachReal(*segment, [](KpReal const& real) {
            require(std::isfinite(real.value) && std::isfinite(real.rate), "rules are finite");
            require(real.base >= 0 && real.base <= 7, "rules are known");
        });
    }
}

void requireResult(FitResult const& result)
{
    for (Shape const& shape : result.shapes)
        requireFinite(shape);
    for (CoordinateFinding const& finding : result.undecided) {
        require(finding.fit.isExpressed && finding.fit.error <= result.tolerance * 1.000001,
            "a rule that would do meets all drawings");
        require(!finding.fit.rivals.isEmpty(), "what is not decided has rivals");
    }
    for (CoordinateFinding const& finding : result.inexact)
        require(!finding.fit.isExpressed, "what no rule expresses is not expressed");
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/)
{
    Fuzzing::prepareForImports();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    QByteArray const input = Fuzzing::bytes(data, size);
    QList<QByteArray> const texts = input.split('\0').mid(0, 3);
    QVector<DrawingSource> sources;
    for (int i = 0; i < texts.size(); ++i)
        sources.append({QString::number(i), std::nullopt});
    auto const readContent = [&](QString const& file, Diagnostics& /*diagnostics*/) {
        return std::optional(texts.at(file.toInt()));
    };
    Diagnostics diagnostics;
    auto const drawings =
        readDrawings(sources, 1.0, readContent, Fuzzing::noMessages(), diagnostics);
    Fuzzing::requireReason(drawings.has_value(), diagnostics);
    if (!drawings || drawings->drawings.size() < 2)
        return 0;
    require(std::isfinite(drawings->tolerance) && drawings->tolerance >= 0.0,
        "a tolerance is a number");
    bool const findsEllipses = size % 2 == 0;
    Diagnostics ofFit;
    auto const result =
        fitDrawings(drawings->drawings, {drawings->tolerance, findsEllipses}, ofFit);
    Fuzzing::requireReason(result.has_value(), ofFit);
    if (result)
        requireResult(*result);
    return 0;
}
