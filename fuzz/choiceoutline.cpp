// SPDX-License-Identifier: MIT
#include "choiceoutline.h"

#include "segmentkind_p.h"

namespace {

/** Rules that go by the box take a part of a side, or a distance from an edge. */
KpReal realFrom(Fuzzing::Choices& choices)
{
    auto const rule = static_cast<qint16>(choices.bounded(8));
    double const number = choices.real();
    return {rule, number, rule == KpReal::Absolute ? number : 0.0};
}

} // namespace

namespace Fuzzing {

std::unique_ptr<KpPathSegList> outlineFrom(Choices& choices, int mostSegments)
{
    auto list = std::make_unique<KpPathSegList>();
    list->closed = choices.flag();
    list->noFill = choices.flag();
    int const count = choices.bounded(mostSegments + 1);
    for (int i = 0; i < count; ++i) {
        auto const& kinds = SegmentKind::all();
        // Lines are what there is most of.
        std::size_t const kind = static_cast<std::size_t>(choices.bounded(6));
        KpPathSeg* const segment = kinds[kind < kinds.size() ? kind : 1].create(list.get());
        SegmentKind::forEachReal(*segment, [&](KpReal& real) { real = realFrom(choices); });
        list->addTail(segment);
    }
    return list;
}

QSizeF boxFrom(Choices& choices)
{
    double const width = 1 + choices.bounded(4096);
    return {width, 1.0 + choices.bounded(4096)};
}

} // namespace Fuzzing
