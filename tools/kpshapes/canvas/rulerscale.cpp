// SPDX-License-Identifier: MIT
#include "canvas/rulerscale.h"

#include "unitcode_p.h"
#include "unitutil.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

constexpr double minorSpacing = 5.0; ///< between the marks of a ruler, in the widget

/** Into how many parts a unit is divided at first; then each part into halves. 10 is decimal. */
int partsOf(unsigned int unit)
{
    switch (unit) {
    case UnitInch:
        return 2;
    case UnitFoot:
    case UnitFeetAndInches:
    case UnitPica:
    case UnitCicero:
        return 12;
    case UnitYard:
        return 36;
    default:
        return 10;
    }
}

/** The steps that are at hand for a unit, ascending. */
std::vector<double> stepsOf(unsigned int unit)
{
    std::vector<double> steps;
    int const parts = partsOf(unit);
    if (parts == 10) {
        for (int exponent = -9; exponent < 0; ++exponent) {
            for (double const digit : {1.0, 2.0, 5.0})
                steps.push_back(digit / std::pow(10.0, -exponent));
        }
    } else {
        for (int halves = 6; halves > 0; --halves)
            steps.push_back(1.0 / (parts * (1 << halves)));
        for (int const part : {36, 12, 4, 3, 2}) {
            if (part <= parts && parts % part == 0)
                steps.push_back(1.0 / part);
        }
    }
    for (int exponent = 0; exponent < 10; ++exponent) {
        for (double const digit : {1.0, 2.0, 5.0})
            steps.push_back(digit * std::pow(10.0, exponent));
    }
    return steps;
}

bool isWhole(double number)
{
    return std::abs(number - std::round(number)) < 1e-6;
}

/** As many decimals as the number needs, and no more than this. */
QString decimal(double number, int mostDecimals)
{
    QString text = QString::number(number, 'f', mostDecimals);
    while (text.endsWith(QLatin1Char('0')))
        text.chop(1);
    if (text.endsWith(QLatin1Char('.')))
        text.chop(1);
    return text == QLatin1String("-0") ? QStringLiteral("0") : text;
}

} // namespace

double RulerScale::minorPixels() const
{
    return UnitUtil::unitToPixel(major, unit) / divisions;
}

QString RulerScale::label(double index) const
{
    double const value = major * index;
    if (unit == UnitFeetAndInches)
        return UnitUtil::feetValtoFeetIncheStr(value);
    // Twelfths and their like have no end.
    bool const isExact = partsOf(unit) == 10 || partsOf(unit) == 2;
    return decimal(value, isExact ? 9 : 4);
}

RulerScale rulerScale(unsigned int unit, double zoom, double spacing)
{
    unsigned int const known = unit < unitCount ? unit : UnitPixel;
    double const pixelsPerUnit = std::max(UnitUtil::unitToPixel(1.0, known) * zoom, 1e-12);
    std::vector<double> const steps = stepsOf(known);
    auto const isWideEnough = [&](double step) { return step * pixelsPerUnit >= spacing; };
    auto const found = std::find_if(steps.cbegin(), steps.cend(), isWideEnough);
    double const major = found == steps.cend() ? steps.back() : *found;
    int divisions = 1;
    for (auto step = steps.crbegin(); step != steps.crend(); ++step) {
        bool const isPart = *step < major && isWhole(major / *step);
        if (isPart && *step * pixelsPerUnit >= minorSpacing)
            divisions = static_cast<int>(std::lround(major / *step));
    }
    return {known, major, divisions};
}
