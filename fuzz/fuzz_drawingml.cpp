// SPDX-License-Identifier: MIT
// Any bytes as shapes that formulas define, and what is learnt of them: the outlines in all boxes
// have one structure, and every coordinate is finite.

#include "fit/presetfit.h"
#include "import/drawingmlimport.h"
#include "segmentkind_p.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>

namespace {

void checkStructure(Shapes const& first, Shapes const& other)
{
    if (first.size() != other.size())
        std::abort();
    for (std::size_t i = 0; i < first.size(); ++i) {
        QVector<KpPathSeg*> const& segs = other[i].list->segs;
        if (first[i].list->segs.size() != segs.size())
            std::abort();
        for (int j = 0; j < segs.size(); ++j) {
            if (first[i].list->segs.at(j)->type != segs.at(j)->type)
                std::abort();
            SegmentKind::forEachReal(*segs.at(j), [](KpReal const& real) {
                if (!std::isfinite(real.value))
                    std::abort();
            });
        }
    }
}

void checkShapes(std::optional<std::vector<ShapeDefinition>> const& shapes)
{
    if (!shapes)
        return;
    QString const file = QStringLiteral("a.xml");
    QSizeF const box(400, 300);
    Diagnostics diagnostics;
    for (ShapeDefinition const& shape : *shapes) {
        auto const inBoxes = shapesInBoxes(shape, {box, QSizeF(90, 500)}, {}, file, diagnostics);
        if (inBoxes)
            checkStructure(inBoxes->front(), inBoxes->back());
        auto const learnt = learntPreset(shape, box, {}, file, diagnostics);
        if (learnt && learnt->coordinates < learnt->inexact.size())
            std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    QByteArray const text(reinterpret_cast<char const*>(data), static_cast<int>(size));
    QString const file = QStringLiteral("a.xml");
    Diagnostics diagnostics;
    checkShapes(readPresetShapes(text, file, diagnostics));
    checkShapes(readCustomShapes(text, file, diagnostics));
    holdsCustomShapes(text);
    return 0;
}
