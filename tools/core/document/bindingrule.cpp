// SPDX-License-Identifier: MIT
#include "document/bindingrule.h"

namespace {

constexpr std::array<BindingRule, ruleCount> rules {{
    {"absolute", "absolute", "fixed", "a fixed place", 0xff808080},
    {"width", "width", "rate \303\227 width", "width", 0xffd62728},
    {"height", "height", "rate \303\227 height", "height", 0xff1f77b4},
    {"right", "right", "width \342\210\222 rate", "right edge", 0xffff7f0e},
    {"bottom", "bottom", "height \342\210\222 rate", "lower edge", 0xff17becf},
    {"side", "side", "rate \303\227 smaller side", "smaller side", 0xff2ca02c},
    {"right-side", "rightLessSide", "width \342\210\222 rate \303\227 smaller side",
        "right edge less smaller side", 0xff9467bd},
    {"bottom-side", "bottomLessSide", "height \342\210\222 rate \303\227 smaller side",
        "lower edge less smaller side", 0xff8c564b},
    {"unknown", "unknown", "no rule", "no rule", 0xff000000},
}};

} // namespace

BindingRule const& bindingRule(int rule)
{
    return rules[static_cast<std::size_t>(rule)];
}

int ruleOf(qint16 base)
{
    return base >= KpReal::Absolute && base <= KpReal::FromBottomPartOfSide ? base : unknownRule;
}
