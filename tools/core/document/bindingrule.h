// SPDX-License-Identifier: MIT
#ifndef BINDINGRULE_H
#define BINDINGRULE_H

#include "kppathseg.h"

#include <QColor>

#include <array>

/** How the tool shows the binding rules of coordinates. */
struct BindingRule
{
    char const* name; ///< in tables and messages
    char const* key; ///< in JSON
    char const* meaning; ///< in legends
    char const* phrase; ///< in sentences: what the coordinate follows
    QRgb colour; ///< of the marks that --points draws
};

/** The rules 0 to 7, and unknownRule. */
constexpr int ruleCount = 9;
constexpr int unknownRule = 8; ///< what stands for every other number

/** @param rule from 0 to unknownRule */
BindingRule const& bindingRule(int rule);

/** The index of the rule that `base` names: itself, or unknownRule. */
int ruleOf(qint16 base);

/** How many of an outline's reals each rule binds. */
using RuleCounts = std::array<int, ruleCount>;

#endif // BINDINGRULE_H
