// SPDX-License-Identifier: MIT
#include "quarkmanager.h"

#include <algorithm>
#include <iterator>

namespace {

struct Quark
{
    char const* name;
    int number;
};

// By name, capitals first.
constexpr Quark quarks[] = {
    {"A", 58},
    {"B", 59},
    {"C", 60},
    {"CurveTo", 54},
    {"D", 61},
    {"Ellipse", 55},
    {"LineTo", 53},
    {"MoveTo", 52},
    {"X", 56},
    {"Y", 57},
    {"cc", 13},
    {"cm", 2},
    {"dd", 12},
    {"ft", 6},
    {"ft-in", 7},
    {"in", 5},
    {"km", 4},
    {"m", 3},
    {"mi", 9},
    {"mm", 1},
    {"pc", 11},
    {"pt", 10},
    {"px", 0},
    {"yd", 8},
};

} // namespace

int QuarkManager::quarkFromString(QString const& name)
{
    auto const isBefore = [](Quark const& quark, QString const& text) {
        return text > QLatin1String(quark.name);
    };
    auto const* const quark =
        std::lower_bound(std::begin(quarks), std::end(quarks), name, isBefore);
    bool const isKnown = quark != std::end(quarks) && name == QLatin1String(quark->name);
    return isKnown ? quark->number : -1;
}

QString QuarkManager::quarkToString(int quark)
{
    auto const* const found = std::find_if(std::begin(quarks), std::end(quarks),
        [quark](Quark const& known) { return known.number == quark; });
    return found == std::end(quarks) ? QString() : QString::fromLatin1(found->name);
}
