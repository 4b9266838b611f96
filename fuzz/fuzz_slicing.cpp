// SPDX-License-Identifier: MIT
// Outlines of one drawing bound to any margins: values stay, and what is not reported as inexact is
// in a larger box where the margins and what lies between them take it.

#include "choiceoutline.h"
#include "diagnosticproperties.h"
#include "document/exactcopy.h"
#include "fit/slicing.h"
#include "segmentkind_p.h"

#include <cmath>
#include <cstring>
#include <set>

namespace {

using Fuzzing::Choices;
using Fuzzing::require;

/** A side that is cut by two margins. */
struct Side
{
    double length;
    double first; ///< width of the margin where it begins
    double last; ///< width of the margin where it ends

    /** Where a place of it comes in a side of another length, whose margins are `growth` times as wide. */
    double placed(double place, double newLength, double growth) const
    {
        // Without margins there is nothing to keep a distance from.
        if (!(first > 0.0 || last > 0.0))
            return place * newLength / length;
        if (place <= first)
            return place * growth;
        if (place >= length - last)
            return newLength - (length - place) * growth;
        double const between = length - first - last;
        double const newBetween = newLength - (first + last) * growth;
        return first * growth + (place - first) * newBetween / between;
    }
};

/** Whether it is so near an inner edge that rounding decides on which side it is. */
bool isAtEdge(Side const& side, double place)
{
    double const near = side.length * 6e-6;
    return std::fabs(place - side.first) <= near
        || std::fabs(place - (side.length - side.last)) <= near;
}

Slices slicesFrom(Choices& choices, QSizeF const& box)
{
    auto const margin = [&](double side) { return side * choices.bounded(128) / 256.0; };
    Slices slices;
    slices.left = margin(box.width());
    slices.right = choices.flag() ? slices.left : margin(box.width());
    slices.top = margin(box.height());
    slices.bottom = choices.flag() ? slices.top : margin(box.height());
    slices.growsCorners = choices.flag();
    return slices;
}

using Place = std::pair<int, QString>;

std::set<Place> placesOf(std::vector<InexactBinding> const& inexact)
{
    std::set<Place> places;
    for (InexactBinding const& binding : inexact) {
        require(!(binding.error <= 0.0), "an error is above 0");
        places.insert({binding.segment, binding.letter});
    }
    return places;
}

std::vector<double> valuesOf(KpPathSegList const& list)
{
    std::vector<double> values;
    for (KpPathSeg* const segment : list.segs) {
        SegmentKind::forEachReal(
            *segment, [&](KpReal const& real) { values.push_back(real.value); });
    }
    return values;
}

bool areSameBits(std::vector<double> const& left, std::vector<double> const& right)
{
    return left.size() == right.size()
        && (left.empty()
            || std::memcmp(left.data(), right.data(), left.size() * sizeof(double)) == 0);
}

/** Margins that grow do so with the smaller side. */
void requirePlaces(
    KpPathSegList& list, QSizeF const& box, Slices const& slices, std::set<Place> const& inexact)
{
    Side const sides[] = {
        {box.width(), slices.left, slices.right}, {box.height(), slices.top, slices.bottom}};
    double const lengths[] = {box.width() * 2.0, box.height() * 2.0};
    double const growth = slices.growsCorners ? 2.0 : 1.0;
    auto const larger = exactCopy(list);
    larger->updateValue(lengths[0], lengths[1]);
    for (int i = 0; i < list.segs.size(); ++i) {
        // The radii of an ellipse are distances.
        if (list.segs.at(i)->type == KpPathSeg::SegEllipse)
            continue;
        std::vector<double> before;
        SegmentKind::forEachReal(
            *list.segs.at(i), [&](KpReal const& real) { before.push_back(real.value); });
        std::size_t index = 0;
        SegmentKind::forEachCoordinate(
            *larger->segs.at(i), [&](QString const& letter, KpReal const& real) {
                double const place = before[index];
                std::size_t const axis = index++ % 2;
                Side const& side = sides[axis];
                if (inexact.count({i, letter}) > 0 || isAtEdge(side, place))
                    return;
                double const wanted = side.placed(place, lengths[axis], growth);
                double const most = 1.01e-4 * side.length + std::fabs(place) * 1e-9;
                require(std::fabs(real.value - wanted) <= most,
                    "an exact coordinate is where the slices take it");
            });
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    Choices choices(Fuzzing::bytes(data, size));
    QSizeF const box = Fuzzing::boxFrom(choices);
    Slices const slices = slicesFrom(choices, box);
    if (!slicesFault(slices, box).isEmpty())
        return 0;
    auto const list = Fuzzing::outlineFrom(choices, 24);
    list->updateValue(box.width(), box.height());
    std::vector<double> const values = valuesOf(*list);
    auto const inexact = bindToSlices(*list, box, slices);
    require(areSameBits(valuesOf(*list), values), "values stay");
    requirePlaces(*list, box, slices, placesOf(inexact));
    return 0;
}
