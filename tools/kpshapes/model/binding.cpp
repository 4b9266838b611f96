// SPDX-License-Identifier: MIT
#include "model/binding.h"

#include "document/bindingrule.h"

#include <algorithm>
#include <cmath>

namespace {

/** The rate that gives the value; what KpReal has stays if there is none. */
double rateFor(KpReal const& real, QSizeF const& box)
{
    double const side = std::min(box.width(), box.height());
    switch (real.base) {
    case KpReal::PartOfWidth:
        return real.value / box.width();
    case KpReal::PartOfHeight:
        return real.value / box.height();
    case KpReal::FromRight:
        return box.width() - real.value;
    case KpReal::FromBottom:
        return box.height() - real.value;
    case KpReal::PartOfSide:
        return real.value / side;
    case KpReal::FromRightPartOfSide:
        return (box.width() - real.value) / side;
    case KpReal::FromBottomPartOfSide:
        return (box.height() - real.value) / side;
    default:
        return 0.0;
    }
}

} // namespace

void bindInPlace(KpReal& real, qint16 rule, QSizeF const& box)
{
    double const collapsed = 0.001; // as KpReal::updateRate()
    real.base = rule;
    double const rate = rateFor(real, box);
    bool const isBinding = rule != KpReal::Absolute && ruleOf(rule) != unknownRule;
    bool const hasRate = std::min(box.width(), box.height()) > collapsed && std::isfinite(rate);
    if (hasRate || !isBinding)
        real.rate = rate;
}

void moveBound(KpReal& real, double value, QSizeF const& box)
{
    real.value = value;
    bindInPlace(real, real.base, box);
}
