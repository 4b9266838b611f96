// SPDX-License-Identifier: MIT
#ifndef OUTLINEVALUE_H
#define OUTLINEVALUE_H

#include "kppathsegcurveto.h"
#include "kppathsegellipse.h"
#include "kppathseglist.h"

#include <cmath>
#include <cstring>
#include <vector>

/** Outlines as plain values, taken from their public fields alone: what models are compared with. */
namespace OutlineValue {

struct Real
{
    int base;
    double rate;
    double value;
};

/** Its reals stand in the order of documents. */
struct Segment
{
    int type;
    std::vector<Real> reals;
};

struct Outline
{
    bool closed = false;
    bool noFill = false;
    bool noLine = false;
    std::vector<Segment> segments;
};

/** Equal to the last bit; NaN is NaN. */
inline bool areSame(double left, double right)
{
    return (std::isnan(left) && std::isnan(right)) || std::memcmp(&left, &right, sizeof left) == 0;
}

inline bool areSame(Real const& left, Real const& right)
{
    return left.base == right.base && areSame(left.rate, right.rate)
        && areSame(left.value, right.value);
}

template <class Entry> bool areSame(std::vector<Entry> const& left, std::vector<Entry> const& right)
{
    bool same = left.size() == right.size();
    for (std::size_t i = 0; same && i < left.size(); ++i)
        same = areSame(left[i], right[i]);
    return same;
}

inline bool areSame(Segment const& left, Segment const& right)
{
    return left.type == right.type && areSame(left.reals, right.reals);
}

inline bool areSame(Outline const& left, Outline const& right)
{
    return left.closed == right.closed && left.noFill == right.noFill && left.noLine == right.noLine
        && areSame(left.segments, right.segments);
}

inline Real of(KpReal const& real)
{
    return {real.base, real.rate, real.value};
}

inline Segment of(KpPathSeg& segment)
{
    Segment result {segment.type, {of(segment.pt.x), of(segment.pt.y)}};
    if (KpPathSegCurveTo const* const curve = segment.toCurveTo()) {
        for (KpPoint const* const control : {&curve->ctrl1, &curve->ctrl2}) {
            result.reals.push_back(of(control->x));
            result.reals.push_back(of(control->y));
        }
    }
    if (KpPathSegEllipse const* const ellipse = segment.toEllipse()) {
        result.reals.push_back(of(ellipse->a));
        result.reals.push_back(of(ellipse->b));
    }
    return result;
}

/** Null entries are left out. */
inline Outline of(KpPathSegList const& list)
{
    Outline result {list.closed, list.noFill, list.noLine, {}};
    for (KpPathSeg* const segment : list.segs) {
        if (segment)
            result.segments.push_back(of(*segment));
    }
    return result;
}

} // namespace OutlineValue

#endif // OUTLINEVALUE_H
