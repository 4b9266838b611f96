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

void checkFontSize(double size)
{
    double const half = 2.0 * UnitUtil::fontSizeFromMac(size);
    require(std::floor(half) == half && std::abs(half) <= 4294967296.0, "a size in half points");
    require(isInt(UnitUtil::fontSizeToMac(size)), "a size in points");
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
        checkFontSize(value);
        UnitUtil::from7Val(value);
        QString const name = QString::fromUtf8(input.ConsumeRandomLengthString(8).c_str());
        UnitUtil::unitToPixel(value, name);
        QString family = name;
        bool const isReplaced = UnitUtil::changeToSystemExistFamily(family);
        require(isReplaced && family == QLatin1String("Arial"), "no family is there: one is given");
    }
    return 0;
}
