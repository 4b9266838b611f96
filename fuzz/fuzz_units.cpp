// SPDX-License-Identifier: MIT
// Units, pages, screens and font sizes with any numbers: nothing undefined, and what the functions
// promise of their results and owe to each other.

#include "fuzzing.h"
#include "unitutil.h"

#include <cmath>

using Fuzzing::require;

namespace {

constexpr unsigned int unitCount = 14;

bool isInt(double real)
{
    return real >= -2147483648.0 && real <= 2147483647.0 && std::floor(real) == real;
}

bool areNear(double left, double right)
{
    return std::abs(left - right) <= 1e-12 * std::abs(right);
}

/** How many pixels a unit has: those of inches follow the screen, the others have 96 to an inch. */
double modelledPixels(unsigned int unit)
{
    constexpr double perMillimetre = 96.0 / 25.4;
    constexpr double perPoint = 96.0 / 72.0;
    constexpr double perDidot = 0.375 * perMillimetre;
    double const perInch = UnitUtil::s_logicalDpi;
    double const pixels[unitCount] = {1.0, perMillimetre, 10.0 * perMillimetre,
        1000.0 * perMillimetre, 1000000.0 * perMillimetre, perInch, 12.0 * perInch, 12.0 * perInch,
        36.0 * perInch, 96.0 * 12.0 * 5280.0, perPoint, 12.0 * perPoint, perDidot, 12.0 * perDidot};
    return pixels[unit];
}

void checkUnit(double value, unsigned int unit)
{
    double const there = UnitUtil::pixelToUnit(value, unit);
    double const back = UnitUtil::unitToPixel(there, unit);
    QString const name = UnitUtil::unitStr(unit);
    if (unit == 0 || unit >= unitCount) {
        require(
            std::isnan(value) || (there == value && back == value), "other units change nothing");
        return;
    }
    require(!name.isEmpty(), "a unit has a name");
    for (QString const& spelling : {name, name.toUpper()}) {
        require(Fuzzing::areSameBits(UnitUtil::pixelToUnit(value, spelling), there),
            "the name of a unit is as good as its code");
        require(Fuzzing::areSameBits(
                    UnitUtil::unitToPixel(value, spelling), UnitUtil::unitToPixel(value, unit)),
            "also on the way back");
    }
    bool const isRound =
        std::abs(value) < 1e200 && std::abs(value) > 1e-200 && UnitUtil::s_logicalDpi != 0.0;
    require(!isRound || areNear(back, value), "a length comes back");
    require(!isRound || areNear(UnitUtil::unitToPixel(value, unit), value * modelledPixels(unit)),
        "a unit is as long as it should be");
}

void checkScreen(FuzzedDataProvider& input)
{
    double const dpi = Fuzzing::awkwardReal(input);
    double const ratio = Fuzzing::awkwardReal(input);
    int const width = input.ConsumeIntegral<int>();
    UnitUtil::initScreen(dpi, ratio, QSize(width, input.ConsumeIntegral<int>()));
    require(isInt(UnitUtil::s_logicalDpi), "the resolution is an integer");
    require(
        Fuzzing::areSameBits(UnitUtil::dpiScale(), UnitUtil::dpiScale96()), "both scales are one");
    require(
        !UnitUtil::isSmallImgReal() || UnitUtil::isSmallImg(), "plain pixels need a plain scale");
    UnitUtil::dpiAndPixel();
    UnitUtil::docDefaultSize();
}

void checkPage(int index)
{
    QSizeF pixels;
    QSizeF size;
    auto const unit = static_cast<unsigned int>(UnitUtil::preDefinedPage(index, pixels, size));
    require(unit == 1 || unit == 5, "a page is in millimetres or inches");
    require(size.width() > 0.0 && size.width() < size.height(), "a page is upright");
    require(Fuzzing::areSameBits(pixels.width(), UnitUtil::unitToPixel(size.width(), unit))
            && Fuzzing::areSameBits(pixels.height(), UnitUtil::unitToPixel(size.height(), unit)),
        "its pixels are its size");
}

void checkFeet(double inches)
{
    QString const text = UnitUtil::incheValtoFeetIncheStr(inches);
    require(text.contains(QLatin1Char('\'')), "a length in feet says so");
    require(text.startsWith(QLatin1Char('-')) == (inches < 0.0), "only what is below 0 has a sign");
    UnitUtil::feetValtoFeetIncheStr(inches);
}

/** Three quarters of a size, of which what is near a half is one; without what int cannot hold. */
double modelledFontSize(double size)
{
    double whole = 0.0;
    double const fraction = std::modf(size * 0.75, &whole);
    double const more = fraction >= 0.74 ? 1.0 : fraction >= 0.26 ? 0.5 : 0.0;
    return whole + more;
}

void checkFontSize(double size)
{
    double const half = 2.0 * UnitUtil::fontSizeFromMac(size);
    require(std::floor(half) == half && std::abs(half) <= 4294967296.0, "a size in half points");
    require(!(std::abs(size) < 1e9) || half == 2.0 * modelledFontSize(size), "that is near");
    require(isInt(UnitUtil::fontSizeToMac(size)), "a size in points");
}

/** A size, and those near it at which the result changes, with what is just below and above. */
void checkFontSizes(double size)
{
    checkFontSize(size);
    if (!(std::abs(size) < 1e6))
        return;
    double const whole = std::floor(size);
    for (double const fraction : {0.0, 0.26, 0.74}) {
        for (double const nearby : {-1e-6, 0.0, 1e-6})
            checkFontSize((whole + fraction + nearby) / 0.75);
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/)
{
    Fuzzing::forbidLog();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    UnitUtil::initScreen(96.0, 1.0, QSize(1920, 1080));
    FuzzedDataProvider input(data, size);
    while (input.remaining_bytes() > 0) {
        if (input.ConsumeBool())
            checkScreen(input);
        unsigned int const unit = input.ConsumeBool() ? input.ConsumeIntegralInRange(0U, 15U)
                                                      : input.ConsumeIntegral<unsigned int>();
        double const value = Fuzzing::awkwardReal(input);
        checkUnit(value, unit);
        checkPage(input.ConsumeBool() ? input.ConsumeIntegralInRange(-1, 62)
                                      : input.ConsumeIntegral<int>());
        checkFeet(value);
        checkFontSizes(value);
        UnitUtil::from7Val(value);
        QString const name = QString::fromUtf8(input.ConsumeRandomLengthString(8).c_str());
        UnitUtil::unitToPixel(value, name);
        QString family = name;
        bool const isReplaced = UnitUtil::changeToSystemExistFamily(family);
        require(isReplaced && family == QLatin1String("Arial"), "no family is there: one is given");
    }
    return 0;
}
