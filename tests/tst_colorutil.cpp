// SPDX-License-Identifier: MIT
#include "colorutil.h"
#include "colourtesting.h"

#include <link.h>

#include <cstddef>
#include <optional>
#include <type_traits>

using namespace ColorUtil;
using namespace ColourTesting;

static_assert(sizeof(SCRGB) == 3 * sizeof(double), "three fields and nothing else");
static_assert(std::is_standard_layout<SCRGB>::value && std::is_trivially_copyable<SCRGB>::value,
    "clients copy it as a plain structure");
static_assert(offsetof(SCRGB, red) == 0 && offsetof(SCRGB, green) == sizeof(double)
        && offsetof(SCRGB, blue) == 2 * sizeof(double),
    "the order of the fields");
static_assert(std::is_same<ColorFunc, void (*)(KpColor&, double)>::value, "");
static_assert(std::is_same<decltype(mapColorFuncs), QMap<QString, ColorFunc>>::value, "");
static_assert(std::is_same<decltype(initedColorFuncMap), bool>::value, "");
// A colour made so needs no code that runs at load.
constexpr QColor constantColour(71, 142, 222, 255);

using Testing::infinite;
using Testing::notANumber;

namespace {

double const leastPositive = std::numeric_limits<double>::denorm_min();

/** A colour with theme, tint and reference, which no transform may touch. */
KpColor themed(QColor const& colour)
{
    return colourOf(QColor(1, 2, 3), colour, -30, 4);
}

KpColor transformed(QString const& name, QColor const& colour, double value)
{
    KpColor result = themed(colour);
    getColorFunc(name)(result, value);
    return result;
}

// The transforms once more, number by number.
namespace Plain {

/** Toward zero; beyond the range of int the nearer end, NaN 0. */
int toInt(double number)
{
    if (std::isnan(number))
        return 0;
    return int(std::min(2147483647.0, std::max(-2147483648.0, number)));
}

int limited(qint64 channel)
{
    if (channel < 0)
        return 0;
    return channel >= 256 ? 255 : int(channel);
}

int cut(double channel)
{
    return limited(toInt(channel));
}

int nearest(double number)
{
    return toInt(std::floor(number + 0.5));
}

double within(double number, double least, double most)
{
    if (number < least)
        number = least;
    else if (number > most)
        number = most;
    return number;
}

double notBelow(double number, double least)
{
    return number < least ? least : number;
}

struct Hsl
{
    qreal h = 0.0;
    qreal s = 0.0;
    qreal l = 0.0;
    qreal a = 0.0;
};

Hsl hslOf(QColor const& colour)
{
    Hsl hsl;
    colour.getHslF(&hsl.h, &hsl.s, &hsl.l, &hsl.a);
    return hsl;
}

/** What QColor accepts goes to it, the rest leaves the colour. */
QColor withHsl(QColor colour, double h, double s, double l, double a)
{
    h = std::isnan(h) ? 0.0 : h;
    s = std::isnan(s) ? 0.0 : s;
    l = std::isnan(l) ? 0.0 : l;
    bool const isRefused =
        (h != -1.0 && (h < 0.0 || h > 1.0)) || s < 0.0 || s > 1.0 || l < 0.0 || l > 1.0;
    if (!isRefused)
        colour.setHslF(h, s, l, a);
    return colour;
}

QColor withHue(QColor const& c, double hue)
{
    Hsl const hsl = hslOf(c);
    return withHsl(c, hue, hsl.s, hsl.l, hsl.a);
}

QColor withSaturation(QColor const& c, double saturation)
{
    Hsl const hsl = hslOf(c);
    return withHsl(c, hsl.h, within(saturation, 0.0, 1.0), hsl.l, hsl.a);
}

QColor withLightness(QColor const& c, double lightness)
{
    Hsl const hsl = hslOf(c);
    return withHsl(c, hsl.h, hsl.s, within(lightness, 0.0, 1.0), hsl.a);
}

QColor complement(QColor const& c)
{
    Hsl const hsl = hslOf(c);
    double hue = hsl.h + 180.0;
    if (hue > 360.0)
        hue = hue - 360.0;
    return withHsl(c, hue, hsl.s, hsl.l, 1.0);
}

QColor withChannels(QColor c, int red, int green, int blue)
{
    c.setRed(red);
    c.setGreen(green);
    c.setBlue(blue);
    return c;
}

QColor withRed(QColor c, double red)
{
    c.setRed(cut(red));
    return c;
}

QColor withGreen(QColor c, double green)
{
    c.setGreen(cut(green));
    return c;
}

QColor withBlue(QColor c, double blue)
{
    c.setBlue(cut(blue));
    return c;
}

QColor withAlpha(QColor c, qint64 alpha)
{
    c.setAlpha(limited(alpha));
    return c;
}

QColor withAlphaFraction(QColor c, double alpha)
{
    c.setAlphaF(within(std::isnan(alpha) ? 0.0 : alpha, 0.0, 1.0));
    return c;
}

QColor inverse(QColor const& c)
{
    return withChannels(c, 255 - c.red(), 255 - c.green(), 255 - c.blue());
}

QColor grey(QColor const& c)
{
    int const level = cut((c.red() * 0.3 + c.green() * 0.59) + c.blue() * 0.11);
    return withChannels(c, level, level, level);
}

QColor mixed(QColor const& c, double v, int (*mix)(int, double))
{
    if (v == 0.0)
        return c;
    return withChannels(c, mix(c.red(), v), mix(c.green(), v), mix(c.blue(), v));
}

} // namespace Plain

struct Transform
{
    char const* name;
    ColorFunc function;
    QColor (*plain)(QColor const& colour, double value);
};

// clang-format off
Transform const transformTable[] = {
    {"tint", tint, [](QColor const& c, double v) { return Plain::mixed(c, v, Powers::tint); }},
    {"shade", shade, [](QColor const& c, double v) { return Plain::mixed(c, v, Powers::shade); }},
    {"comp", comp, [](QColor const& c, double) { return Plain::complement(c); }},
    {"inv", inv, [](QColor const& c, double) { return Plain::inverse(c); }},
    {"gray", gray, [](QColor const& c, double) { return Plain::grey(c); }},
    {"alpha", alpha, [](QColor const& c, double v) { return Plain::withAlphaFraction(c, v); }},
    {"alphaOff", alphaOff, [](QColor const& c, double v) { return Plain::withAlpha(c, qint64(c.alpha()) + Plain::nearest(v * 255)); }},
    {"alphaMod", alphaMod, [](QColor const& c, double v) { return Plain::withAlpha(c, Plain::nearest(c.alpha() * v)); }},
    {"hue", hue, [](QColor const& c, double v) { return Plain::withHue(c, Plain::notBelow(v, -1.0)); }},
    {"hueOff", hueOff, [](QColor const& c, double v) { return Plain::withHue(c, Plain::notBelow(Plain::hslOf(c).h + v, -1.0)); }},
    {"hueMod", hueMod, [](QColor const& c, double v) { return Plain::withHue(c, Plain::within(Plain::hslOf(c).h * v, 0.0, 360.0)); }},
    {"sat", sat, [](QColor const& c, double v) { return Plain::withSaturation(c, v); }},
    {"satOff", satOff, [](QColor const& c, double v) { return Plain::withSaturation(c, Plain::hslOf(c).s + v); }},
    {"satMod", satMod, [](QColor const& c, double v) { return Plain::withSaturation(c, Plain::hslOf(c).s * v); }},
    {"lum", lum, [](QColor const& c, double v) { return Plain::withLightness(c, v); }},
    {"lumOff", lumOff, [](QColor const& c, double v) { return Plain::withLightness(c, Plain::hslOf(c).l + v); }},
    {"lumMod", lumMod, [](QColor const& c, double v) { return Plain::withLightness(c, Plain::hslOf(c).l * v); }},
    {"red", red, [](QColor const& c, double v) { return Plain::withRed(c, v * 255); }},
    {"redOff", redOff, [](QColor const& c, double v) { return Plain::withRed(c, c.red() + v * 255); }},
    {"redMod", redMod, [](QColor const& c, double v) { return Plain::withRed(c, c.red() * v); }},
    {"green", green, [](QColor const& c, double v) { return Plain::withGreen(c, v * 255); }},
    {"greenOff", greenOff, [](QColor const& c, double v) { return Plain::withGreen(c, c.green() + v * 255); }},
    {"greenMod", greenMod, [](QColor const& c, double v) { return Plain::withGreen(c, c.green() * v); }},
    {"blue", blue, [](QColor const& c, double v) { return Plain::withBlue(c, v * 255); }},
    {"blueOff", blueOff, [](QColor const& c, double v) { return Plain::withBlue(c, c.blue() + v * 255); }},
    {"blueMod", blueMod, [](QColor const& c, double v) { return Plain::withBlue(c, c.blue() * v); }},
    {"gamma", ColorUtil::gamma, [](QColor const& c, double) { return c; }},
    {"invGamma", invGamma, [](QColor const& c, double) { return c; }},
};
// clang-format on

/** -3 to 3, every channel as a fraction and the ties between them, and what is awkward. */
QVector<double> values()
{
    QVector<double> values {0.0, -0.0, notANumber, infinite, -infinite, 1e300, -1e300, 1e9, -1e9,
        leastPositive, -leastPositive, std::numeric_limits<double>::max(), 360.0, 1e-310, -1e-310,
        std::nextafter(1.0, 2.0), std::nextafter(1.0, 0.0), std::nextafter(-1.0, 0.0),
        std::nextafter(-1.0, -2.0), 2147483647.0 / 255.0, 2147483648.0 / 255.0, -8421505.0};
    int const stride = Testing::sanitized ? 10 : 1;
    for (int i = -300; i <= 300; i += stride)
        values << i / 100.0;
    for (int i = -255; i <= 255; i += stride)
        values << i / 255.0 << (i + 0.5) / 255.0;
    return values;
}

/** Every value of each channel, and colours of every kind. */
QVector<QColor> colours()
{
    QVector<QColor> colours;
    for (int i = 0; i < 256; ++i)
        colours << QColor(i, 255 - i, i * 7 % 256, i * 31 % 256);
    for (int hue = 0; hue < 360; hue += 45) {
        colours << QColor::fromHsl(hue, 100, 50, 77) << QColor::fromHsv(hue, 200, 100, 9)
                << QColor::fromHslF(hue / 360.0, 0.5, 0.3, 0.123);
    }
    colours << QColor() << QColor(QColor::Invalid, 0x2828, 0x0a0a, 0x1414, 0x1e1e)
            << QColor::fromHsl(-1, 0, 128) << QColor::fromHslF(1.0, 0.5, 0.25)
            << QColor(QColor::Hsl, 65535, 50000, 60000, 65535) // a hue beyond the circle
            << QColor(QColor::Hsv, 65535, 50000, 60000, 65535)
            << QColor::fromCmyk(10, 20, 30, 40, 50) << QColor::fromCmyk(0, 0, 0, 255)
            << QColor::fromRgbF(1.5, -0.25, 0.5, 0.75) << QColor::fromRgbF(6e4, -6e4, 0.0, 0.0)
            << QColor::fromRgba64(1, 2, 3, 4) << QColor::fromRgba64(0x1234, 0x5678, 0x9abc, 0xdef0)
            << QColor(Qt::transparent) << QColor(Qt::white) << QColor(Qt::black);
    return colours;
}

/** Where in a loaded library an object stands. */
struct Place
{
    void const* address;
    QString library;
    bool isInFile = false;
};

/** Looks for `place` among the segments of one library; one whose bytes are in the file is not of
    those that are zero at load and filled by code. */
int findPlace(dl_phdr_info* info, std::size_t, void* data)
{
    Place& place = *static_cast<Place*>(data);
    auto const address = reinterpret_cast<ElfW(Addr)>(place.address);
    for (int i = 0; i < info->dlpi_phnum; ++i) {
        ElfW(Phdr) const& segment = info->dlpi_phdr[i];
        ElfW(Addr) const start = info->dlpi_addr + segment.p_vaddr;
        if (segment.p_type != PT_LOAD || address < start || address >= start + segment.p_memsz)
            continue;
        place.library = QString::fromLocal8Bit(info->dlpi_name).section(QLatin1Char('/'), -1);
        place.isInFile = address < start + segment.p_filesz;
        return 1;
    }
    return 0;
}

Place placeOf(void const* address)
{
    Place place {address, QString(), false};
    dl_iterate_phdr(findPlace, &place);
    return place;
}

} // namespace

class TestColorUtil : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // What is there before the first look-up.
    void initTestCase();
    void cleanup();
    void cleanupTestCase();
    void loggingIsNoticed();

    void fixedColours_data();
    void fixedColours();
    void fixedColoursMayBeChanged();
    void fixedColoursNeedNoCodeAtLoad();

    void tableHoldsEveryName_data();
    void tableHoldsEveryName();
    void unknownNamesAreNotInserted_data();
    void unknownNamesAreNotInserted();
    void tableIsFilledOnce();

    void transforms_data();
    void transforms();
    void transformsFollowThePlainRules_data();
    void transformsFollowThePlainRules();

    void channelsBecomeIntensities_data();
    void channelsBecomeIntensities();
    void limitsOfTheConversions_data();
    void limitsOfTheConversions();
    void conversionsFollowTheFormula();
    void intensitiesOfAColour();
    void intensitiesAreWrittenBack_data();
    void intensitiesAreWrittenBack();

    void mixesOfPlainColours_data();
    void mixesOfPlainColours();
    void mixesWithNothingLeaveTheColour();
    void mixesAreThoseOfSixPowers();
    void mixesNearAStepAreThoseOfSixPowers();
    void mixesNearEveryStepOfEveryLevel_data();
    void mixesNearEveryStepOfEveryLevel();
    void intensitiesNearAStepAreWrittenByTheFormula();
    void mixesAreUndone();
    void mixesAreUndoneForEveryFraction();

    void greyKeepsAlpha();
    void textsOfColours_data();
    void textsOfColours();
    void textsOfEveryLevel();

private:
    std::optional<Testing::MessageWatch> watch;
};

void TestColorUtil::initTestCase()
{
    watch.emplace();
    QVERIFY(!initedColorFuncMap);
    QVERIFY(mapColorFuncs.isEmpty());
    QVERIFY(!getColorFunc("Tint"));
    QVERIFY(initedColorFuncMap);
    QCOMPARE(mapColorFuncs.size(), 28);
}

void TestColorUtil::cleanup()
{
    VERIFY_NOTHING_LOGGED(*watch);
}

void TestColorUtil::cleanupTestCase()
{
    watch->stop();
    VERIFY_NOTHING_LOGGED(*watch);
}

void TestColorUtil::loggingIsNoticed()
{
    QColor colour;
    colour.setHslF(2.0, 0.0, 0.0);
    QCOMPARE(watch->take().size(), 1);
}

void TestColorUtil::fixedColours_data()
{
    QTest::addColumn<QColor>("colour");
    QTest::addColumn<QVector<int>>("channels");
    using Channels = QVector<int>;
    QTest::newRow("reversible") << s_reversible << Channels {71, 142, 222, 255};
    QTest::newRow("alignBox") << s_alignBox << Channels {0, 220, 0, 255};
    QTest::newRow("subAlignBox") << s_subAlignBox << Channels {255, 0, 255, 255};
    QTest::newRow("anchorDock") << s_anchorDock << Channels {254, 80, 79, 255};
    QTest::newRow("mouseDot") << s_mouseDot << Channels {71, 142, 222, 255};
    QTest::newRow("virLine") << s_virLine << Channels {98, 98, 98, 255};
    QTest::newRow("adisLine") << s_adisLine << Channels {71, 142, 222, 255};
    QTest::newRow("editText") << s_editText << Channels {255, 255, 255, 255};
    QTest::newRow("editTextGray") << s_editTextGray << Channels {181, 181, 181, 255};
    QTest::newRow("selectMMRefShape") << s_selectMMRefShape << Channels {100, 130, 255, 255};
    QTest::newRow("selectMMShape") << s_selectMMShape << Channels {140, 175, 245, 255};
    QTest::newRow("hoverMMShape") << s_hoverMMShape << Channels {200, 220, 245, 255};
    QTest::newRow("hoverMarkLine") << s_hoverMarkLine << Channels {80, 0, 255, 255};
    QTest::newRow("hoverFloatBtn") << s_hoverFloatBtn << Channels {0, 0, 255, 30};
    QTest::newRow("hoverDarkFloatBtn") << s_hoverDarkFloatBtn << Channels {200, 200, 255, 60};
}

void TestColorUtil::fixedColours()
{
    QFETCH(QColor, colour);
    QFETCH(QVector<int>, channels);
    QCOMPARE(
        (QVector<int> {colour.red(), colour.green(), colour.blue(), colour.alpha()}), channels);
    QCOMPARE(colour.spec(), QColor::Rgb);
}

void TestColorUtil::fixedColoursMayBeChanged()
{
    QVERIFY(s_reversible == constantColour);
    s_reversible = Qt::red;
    QVERIFY(s_reversible == QColor(Qt::red));
    s_reversible = constantColour;
}

void TestColorUtil::fixedColoursNeedNoCodeAtLoad()
{
    QColor const* const fixed[] = {&s_reversible, &s_alignBox, &s_subAlignBox, &s_anchorDock,
        &s_mouseDot, &s_virLine, &s_adisLine, &s_editText, &s_editTextGray, &s_selectMMRefShape,
        &s_selectMMShape, &s_hoverMMShape, &s_hoverMarkLine, &s_hoverFloatBtn,
        &s_hoverDarkFloatBtn};
    QCOMPARE(int(std::size(fixed)), 15);
    for (QColor const* const colour : fixed) {
        Place const place = placeOf(colour);
        QVERIFY2(place.library.startsWith("libkpgeometry."), qPrintable(place.library));
        QVERIFY2(place.isInFile, qPrintable(text(*colour)));
    }
    // What is zero at load stands elsewhere, so the check tells the two apart.
    QVERIFY(placeOf(&initedColorFuncMap).library.startsWith("libkpgeometry."));
    QVERIFY(!placeOf(&initedColorFuncMap).isInFile);
}

void TestColorUtil::tableHoldsEveryName_data()
{
    QTest::addColumn<int>("index");
    for (int i = 0; i < int(std::size(transformTable)); ++i)
        QTest::newRow(transformTable[i].name) << i;
}

void TestColorUtil::tableHoldsEveryName()
{
    QFETCH(int, index);
    Transform const& transform = transformTable[index];
    QCOMPARE(int(std::size(transformTable)), 28);
    QCOMPARE(mapColorFuncs.size(), 28);
    QVERIFY(getColorFunc(transform.name) == transform.function);
    QVERIFY(mapColorFuncs.value(transform.name) == transform.function);
    QCOMPARE(mapColorFuncs.keys(transform.function), QStringList {transform.name});
}

void TestColorUtil::unknownNamesAreNotInserted_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("no name") << "";
    QTest::newRow("another letter case") << "Tint";
    QTest::newRow("part of a name") << "lumM";
    QTest::newRow("more than a name") << "tint ";
    QTest::newRow("all upper case") << "TINT";
    QTest::newRow("a blank before") << " tint";
    QTest::newRow("a function that is no transform") << "invertTint";
    QTest::newRow("the other spelling") << "grey";
    QTest::newRow("a terminator inside") << QString::fromLatin1("tint\0", 5);
    QTest::newRow("unknown") << "sepia";
}

void TestColorUtil::unknownNamesAreNotInserted()
{
    QFETCH(QString, name);
    QVERIFY(!getColorFunc(name));
    QVERIFY(!mapColorFuncs.contains(name));
    QVERIFY(!getColorFunc(name));
    QCOMPARE(mapColorFuncs.size(), 28);
}

void TestColorUtil::tableIsFilledOnce()
{
    QMap<QString, ColorFunc> const filled = mapColorFuncs;
    mapColorFuncs.remove("tint");
    initColorFunctionMap();
    QVERIFY(!getColorFunc("tint"));
    // What the flag says counts, not what the table holds.
    initedColorFuncMap = false;
    mapColorFuncs.clear();
    QVERIFY(getColorFunc("tint") == static_cast<ColorFunc>(tint));
    QVERIFY(initedColorFuncMap);
    QVERIFY(mapColorFuncs == filled);
    mapColorFuncs.clear();
    initedColorFuncMap = false;
    initColorFunctionMap();
    QVERIFY(initedColorFuncMap);
    QVERIFY(mapColorFuncs == filled);
}

void TestColorUtil::transforms_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<double>("value");
    QTest::addColumn<QColor>("before");
    QTest::addColumn<QColor>("after");
    auto const row = [](char const* what, char const* name, double value, QColor before,
                         QColor after) { QTest::newRow(what) << name << value << before << after; };
    QColor const c(100, 150, 200, 120);
    row("tint", "tint", 0.5, QColor(10, 20, 30, 100), QColor(188, 188, 189, 100));
    row("tint by nothing", "tint", 0.0, c, c);
    row("tint to white", "tint", 1.0, c, QColor(255, 255, 255, 120));
    row("shade", "shade", 0.5, QColor(0x44, 0x72, 0xc4), QColor(0x2f, 0x52, 0x8f));
    row("shade to black", "shade", 1.0, c, QColor(0, 0, 0, 120));
    row("shade below nothing is lighter", "shade", -1.0, QColor(100, 0, 255), QColor(138, 0, 255));
    row("red, truncated", "red", 0.5, c, QColor(127, 150, 200, 120));
    row("red beyond", "red", 1.5, c, QColor(255, 150, 200, 120));
    row("red far beyond", "red", 1e300, c, QColor(255, 150, 200, 120));
    row("red that is no number", "red", notANumber, c, QColor(0, 150, 200, 120));
    row("red taken away", "redOff", -2.0, c, QColor(0, 150, 200, 120));
    row("red added, truncated", "redOff", 0.1, c, QColor(125, 150, 200, 120));
    row("red multiplied", "redMod", 3.0, c, QColor(255, 150, 200, 120));
    row("red multiplied, truncated", "redMod", 0.999, c, QColor(99, 150, 200, 120));
    row("red multiplied beyond", "redMod", 2.56, c, QColor(255, 150, 200, 120));
    row("red multiplied to the last level", "redMod", 2.559, c, QColor(255, 150, 200, 120));
    row("red one below the last level", "redMod", 2.549, c, QColor(254, 150, 200, 120));
    row("red just below nothing is truncated to it", "redOff", -100.5 / 255.0, c,
        QColor(0, 150, 200, 120));
    row("red taken away, infinite", "redOff", -infinite, c, QColor(0, 150, 200, 120));
    row("red multiplied by no number", "redMod", notANumber, c, QColor(0, 150, 200, 120));
    row("red of an invalid colour makes it valid", "red", 1.0, QColor(), QColor(255, 0, 0));
    row("red of an HSL colour makes it RGB", "red", 0.2, QColor::fromHsl(0, 255, 128, 9),
        QColor(51, 1, 1, 9));
    row("green", "green", 1.0, c, QColor(100, 255, 200, 120));
    row("green added", "greenOff", -0.5, c, QColor(100, 22, 200, 120));
    row("green multiplied", "greenMod", 0.5, c, QColor(100, 75, 200, 120));
    row("blue", "blue", 0.2, c, QColor(100, 150, 51, 120));
    row("blue added", "blueOff", 0.2, c, QColor(100, 150, 251, 120));
    row("blue multiplied", "blueMod", 1.25, c, QColor(100, 150, 250, 120));
    row("alpha added, rounded", "alphaOff", 0.5, QColor(1, 2, 3, 100), QColor(1, 2, 3, 228));
    row("alpha multiplied, rounded", "alphaMod", 0.5, QColor(1, 2, 3), QColor(1, 2, 3, 128));
    row("alpha added, the half upward", "alphaOff", 0.5 / 255.0, c, QColor(100, 150, 200, 121));
    row("alpha taken away, the half upward", "alphaOff", -0.5 / 255.0, c, c);
    row("alpha taken away, more than the half", "alphaOff", -0.6 / 255.0, c,
        QColor(100, 150, 200, 119));
    row("alpha added is no number", "alphaOff", notANumber, c, c);
    row("alpha taken away, infinite", "alphaOff", -infinite, c, QColor(100, 150, 200, 0));
    row("alpha multiplied by a negative number", "alphaMod", -1.0, c, QColor(100, 150, 200, 0));
    row("alpha multiplied beyond", "alphaMod", 3.0, c, QColor(100, 150, 200, 255));
    row("alpha multiplied by no number", "alphaMod", notANumber, c, QColor(100, 150, 200, 0));
    row("alpha of all", "alpha", 1.0, c, QColor(100, 150, 200, 255));
    row("alpha keeps 16 bits", "alpha", 0.5, c,
        QColor::fromRgba64(100 * 257, 150 * 257, 200 * 257, 32768));
    row("alpha of an HSL colour keeps it HSL", "alpha", 0.25, QColor::fromHslF(0.4, 0.5, 0.5, 0.75),
        QColor::fromHslF(0.4, 0.5, 0.5, 0.25));
    row("alpha taken away", "alphaOff", -1.0, c, QColor(100, 150, 200, 0));
    row("alpha beyond", "alphaOff", 1e300, c, QColor(100, 150, 200, 255));
    row("alpha above 1", "alpha", 7.0, c, QColor(100, 150, 200, 255));
    row("alpha below 0", "alpha", -7.0, c, QColor(100, 150, 200, 0));
    row("alpha that is no number", "alpha", notANumber, c, QColor(100, 150, 200, 0));
    row("inverse", "inv", 0.3, c, QColor(155, 105, 55, 120));
    row("grey of red", "gray", 0.3, QColor(255, 0, 0), QColor(76, 76, 76));
    row("grey of blue", "gray", 0.3, QColor(0, 0, 255, 9), QColor(28, 28, 28, 9));
    row("grey of white", "gray", 0.3, QColor(255, 255, 255), QColor(255, 255, 255));
    row("complement ignores its value", "comp", notANumber, c, c);
    row("inverse ignores its value", "inv", notANumber, c, QColor(155, 105, 55, 120));
    row("grey ignores its value", "gray", notANumber, QColor(255, 0, 0), QColor(76, 76, 76));
    row("gamma leaves the colour for no number", "gamma", notANumber, c, c);
    row("tint by minus nothing", "tint", -0.0, c, c);
    row("shade by minus nothing", "shade", -0.0, c, c);
    row("tint by no number", "tint", notANumber, c, QColor(0, 0, 0, 120));
    row("shade by no number", "shade", notANumber, c, QColor(0, 0, 0, 120));
    row("tint by nothing keeps the kind", "tint", 0.0, QColor::fromHsl(10, 20, 30, 40),
        QColor::fromHsl(10, 20, 30, 40));
    row("tint below nothing is darker", "tint", -0.5, QColor(188, 0, 255), QColor(138, 0, 255));
    row("complement leaves the colour", "comp", 1.0, c, c);
    row("complement of a grey leaves it", "comp", 1.0, QColor(9, 9, 9), QColor(9, 9, 9));
    row("gamma leaves the colour", "gamma", 2.2, c, c);
    row("inverse gamma leaves the colour", "invGamma", 2.2, c, c);
    row("hue beyond the circle leaves the colour", "hue", 1.1, c, c);
    row("hue added beyond the circle leaves the colour", "hueOff", 0.9, c, c);
    row("hue multiplied beyond the circle leaves the colour", "hueMod", 4.0, c, c);
    QColor const hsl = QColor::fromHslF(0.4, 0.5, 0.5, 0.25);
    row("hue", "hue", 0.75, hsl, QColor::fromHslF(0.75, 0.5, 0.5, 0.25));
    row("hue taken away", "hue", -5.0, hsl, QColor::fromHslF(-1.0, 0.5, 0.5, 0.25));
    row("hue added", "hueOff", 0.25, hsl, QColor::fromHslF(0.65, 0.5, 0.5, 0.25));
    row("hue multiplied", "hueMod", 2.0, hsl, QColor::fromHslF(0.8, 0.5, 0.5, 0.25));
    row("hue of all", "hue", 1.0, hsl, QColor(QColor::Hsl, 16384, 36000, 32768, 32768));
    row("hue just beyond all leaves the colour", "hue", std::nextafter(1.0, 2.0), hsl, hsl);
    row("hue between none and red leaves the colour", "hue", -0.5, hsl, hsl);
    row("hue added to between none and red leaves the colour", "hueOff", -0.9, hsl, hsl);
    row("hue taken away, infinite, is none", "hueOff", -infinite, hsl,
        QColor::fromHslF(-1.0, 0.5, 0.5, 0.25));
    row("hue added, infinite, leaves the colour", "hueOff", infinite, hsl, hsl);
    row("hue multiplied by a negative number is red", "hueMod", -2.0, hsl,
        QColor::fromHslF(0.0, 0.5, 0.5, 0.25));
    row("no hue multiplied by minus one half is one", "hueMod", -0.5,
        QColor::fromHslF(-1.0, 0.5, 0.5, 0.25), QColor::fromHslF(0.5, 0.5, 0.5, 0.25));
    row("hue multiplied, infinite, leaves the colour", "hueMod", infinite, hsl, hsl);
    row("saturation that is no number is none", "sat", notANumber, hsl,
        QColor::fromHslF(0.4, 0.0, 0.5, 0.25));
    row("lightness added is no number", "lumOff", notANumber, hsl,
        QColor::fromHslF(0.4, 0.5, 0.0, 0.25));
    row("lightness multiplied", "lumMod", 0.5, hsl, QColor::fromHslF(0.4, 0.5, 0.25, 0.25));
    row("saturation below nothing", "sat", -0.1, hsl, QColor::fromHslF(0.4, 0.0, 0.5, 0.25));
    row("hue that is no number is red", "hue", notANumber, hsl,
        QColor::fromHslF(0.0, 0.5, 0.5, 0.25));
    row("saturation", "sat", 0.75, hsl, QColor::fromHslF(0.4, 0.75, 0.5, 0.25));
    row("saturation added", "satOff", 0.75, hsl, QColor::fromHslF(0.4, 1.0, 0.5, 0.25));
    row("saturation multiplied", "satMod", -1.0, hsl, QColor::fromHslF(0.4, 0.0, 0.5, 0.25));
    row("lightness", "lum", 2.0, hsl, QColor::fromHslF(0.4, 0.5, 1.0, 0.25));
    row("lightness added", "lumOff", -0.25, hsl, QColor::fromHslF(0.4, 0.5, 0.25, 0.25));
}

void TestColorUtil::transforms()
{
    QFETCH(QString, name);
    QFETCH(double, value);
    QFETCH(QColor, before);
    QFETCH(QColor, after);
    KpColor const found = transformed(name, before, value);
    QVERIFY2(identical(found, after), qPrintable(text(found) + " instead of " + text(after)));
    QVERIFY(found == themed(after));
}

void TestColorUtil::transformsFollowThePlainRules_data()
{
    tableHoldsEveryName_data();
}

void TestColorUtil::transformsFollowThePlainRules()
{
    QFETCH(int, index);
    Transform const& transform = transformTable[index];
    QVector<double> const fractions = values();
    for (QColor const& colour : colours()) {
        for (double const value : fractions) {
            KpColor found = themed(colour);
            transform.function(found, value);
            QColor const expected = transform.plain(colour, value);
            // Not QVERIFY2, which composes its message whether it is wanted or not.
            if (!identical(found, expected)) {
                QFAIL(qPrintable(QStringLiteral("%1 by %2: %3 instead of %4")
                                     .arg(text(colour))
                                     .arg(value, 0, 'g', 17)
                                     .arg(text(found), text(expected))));
            }
            if (found.themeIndex() != 4 || found.tint() != -30
                || found.refColor() != QColor(1, 2, 3))
                QFAIL("a transform changes the concrete colour only");
        }
    }
}

void TestColorUtil::channelsBecomeIntensities_data()
{
    QTest::addColumn<double>("encoded");
    QTest::addColumn<double>("linear");
    QTest::newRow("black") << 0.0 << 0.0;
    QTest::newRow("white") << 1.0 << 1.0;
    QTest::newRow("half") << 0.5 << 0.21404114048223255;
    QTest::newRow("in the straight part") << 0.03 << 0.03 / 12.92;
    QTest::newRow("at its end") << 0.04045 << 0.04045 / 12.92;
}

void TestColorUtil::channelsBecomeIntensities()
{
    QFETCH(double, encoded);
    QFETCH(double, linear);
    QVERIFY(std::abs(SRGB_To_SCRGB(encoded) - linear) < 1e-16);
    QVERIFY(std::abs(SCRGB_To_SRGB(linear) - encoded) < 1e-7);
}

void TestColorUtil::limitsOfTheConversions_data()
{
    QTest::addColumn<double>("v");
    QTest::addColumn<double>("linear");
    QTest::addColumn<double>("encoded");
    QTest::newRow("below nothing") << -leastPositive << 0.0 << 0.0;
    QTest::newRow("minus infinity") << -infinite << 0.0 << 0.0;
    QTest::newRow("minus nothing is not below nothing") << -0.0 << -0.0 << -0.0;
    QTest::newRow("least number") << leastPositive << 0.0 << 13 * leastPositive;
    QTest::newRow("one") << 1.0 << 1.0 << 1.0;
    QTest::newRow("beyond one") << std::nextafter(1.0, 2.0) << 1.0 << 1.0;
    QTest::newRow("infinity") << infinite << 1.0 << 1.0;
    QTest::newRow("end of the straight part of the way there")
        << 0.04045 << 0.04045 / 12.92 << 1.055 * std::pow(0.04045, 0.4166666666666667) - 0.055;
    QTest::newRow("just beyond it")
        << std::nextafter(0.04045, 1.0)
        << std::pow((std::nextafter(0.04045, 1.0) + 0.055) / 1.055, 2.4)
        << 1.055 * std::pow(std::nextafter(0.04045, 1.0), 0.4166666666666667) - 0.055;
    QTest::newRow("end of the straight part of the way back")
        << 0.0031308 << 0.0031308 / 12.92 << 0.0031308 * 12.92;
    QTest::newRow("just beyond it, back")
        << std::nextafter(0.0031308, 1.0) << std::nextafter(0.0031308, 1.0) / 12.92
        << 1.055 * std::pow(std::nextafter(0.0031308, 1.0), 0.4166666666666667) - 0.055;
}

void TestColorUtil::limitsOfTheConversions()
{
    QFETCH(double, v);
    QFETCH(double, linear);
    QFETCH(double, encoded);
    COMPARE_BITS(SRGB_To_SCRGB(v), linear);
    COMPARE_BITS(SCRGB_To_SRGB(v), encoded);
}

void TestColorUtil::conversionsFollowTheFormula()
{
    auto const follows = [](double v) {
        return Testing::isSame(SRGB_To_SCRGB(v), Powers::linear(v))
            && Testing::isSame(SCRGB_To_SRGB(v), Powers::encoded(v));
    };
    int const grid = Testing::sanitized ? 100000 : 1000000;
    for (int i = -1000; i <= grid + 1000; ++i) {
        double const v = double(i) / grid;
        if (!follows(v))
            QFAIL(qPrintable(QString::number(v, 'g', 17)));
    }
    QRandomGenerator random = Testing::seededRandom(4711);
    for (int i = 0; i < grid; ++i) {
        double const v = Testing::awkwardReal(random);
        if (!follows(v))
            QFAIL(qPrintable(QString::number(v, 'g', 17)));
    }
    QVERIFY(std::isnan(SRGB_To_SCRGB(notANumber)));
    QVERIFY(std::isnan(SCRGB_To_SRGB(notANumber)));
}

void TestColorUtil::intensitiesOfAColour()
{
    for (int i = 0; i < 256; ++i) {
        SCRGB const light(QColor(i, 255 - i, 7, 9));
        COMPARE_BITS(light.red, Powers::linear(i / 255.0));
        COMPARE_BITS(light.green, Powers::linear((255 - i) / 255.0));
        COMPARE_BITS(light.blue, Powers::linear(7 / 255.0));
    }
    SCRGB const themedLight(themed(QColor(255, 0, 51)));
    COMPARE_BITS(themedLight.red, 1.0);
    COMPARE_BITS(themedLight.green, 0.0);
    COMPARE_BITS(themedLight.blue, Powers::linear(0.2));
    SCRGB const ofHsl(QColor::fromHsl(0, 255, 128));
    COMPARE_BITS(ofHsl.red, 1.0);
    SCRGB const ofNone {QColor()};
    COMPARE_BITS(ofNone.red, 0.0);
    COMPARE_BITS(ofNone.green, 0.0);
    COMPARE_BITS(ofNone.blue, 0.0);
    for (QColor const& colour : colours()) {
        SCRGB const light(colour);
        COMPARE_BITS(light.red, Powers::intensity(colour.red()));
        COMPARE_BITS(light.green, Powers::intensity(colour.green()));
        COMPARE_BITS(light.blue, Powers::intensity(colour.blue()));
    }
}

void TestColorUtil::intensitiesAreWrittenBack_data()
{
    QTest::addColumn<double>("red");
    QTest::addColumn<double>("green");
    QTest::addColumn<double>("blue");
    QTest::addColumn<QColor>("expected");
    QTest::newRow("ends") << 0.0 << 1.0 << 0.0 << QColor(0, 255, 0, 77);
    QTest::newRow("beyond the ends") << -0.5 << 1.5 << -infinite << QColor(0, 255, 0, 77);
    QTest::newRow("infinite") << infinite << 0.0 << 0.0 << QColor(255, 0, 0, 77);
    QTest::newRow("not a number") << notANumber << 1.0 << 1.0 << QColor(0, 255, 255, 77);
    QTest::newRow("between") << 0.21404114048223255 << 0.5 << 0.001 << QColor(128, 188, 3, 77);
}

void TestColorUtil::intensitiesAreWrittenBack()
{
    QFETCH(double, red);
    QFETCH(double, green);
    QFETCH(double, blue);
    QFETCH(QColor, expected);
    SCRGB light {QColor()};
    light.red = red;
    light.green = green;
    light.blue = blue;
    QColor plain(1, 2, 3, 77);
    light.toColor(plain);
    QCOMPARE(plain, expected);
    KpColor theme = themed(QColor(1, 2, 3, 77));
    light.toSRGB(theme);
    QCOMPARE(static_cast<QColor const&>(theme), expected);
    QCOMPARE(theme.themeIndex(), 4);
    // An HSL colour becomes one of red, green and blue, and keeps its alpha.
    QColor hsl = QColor::fromHsl(10, 20, 30, 77);
    light.toColor(hsl);
    QCOMPARE(hsl, expected);
}

void TestColorUtil::mixesOfPlainColours_data()
{
    QTest::addColumn<QColor>("before");
    QTest::addColumn<double>("value");
    QTest::addColumn<QColor>("tinted");
    QTest::addColumn<QColor>("shaded");
    QTest::newRow("alpha is lost")
        << QColor(10, 20, 30, 100) << 0.5 << QColor(188, 188, 189) << QColor(5, 11, 19);
    QTest::newRow("blue") << QColor(0x44, 0x72, 0xc4) << 0.5 << QColor(0xc0, 0xc9, 0xe4)
                          << QColor(0x2f, 0x52, 0x8f);
    QTest::newRow("all") << QColor(1, 2, 3, 4) << 1.0 << QColor(255, 255, 255) << QColor(0, 0, 0);
    QTest::newRow("more than all")
        << QColor(1, 2, 3, 4) << 2.0 << QColor(255, 255, 255) << QColor(0, 0, 0);
    QTest::newRow("not a number") << QColor(1, 2, 3, 4) << notANumber << QColor(0, 0, 0)
                                  << QColor(0, 0, 0);
    QTest::newRow("invalid colour") << QColor() << 0.5 << QColor(188, 188, 188) << QColor(0, 0, 0);
    QTest::newRow("HSL") << QColor::fromHsl(0, 255, 128, 9) << 0.5 << QColor(255, 188, 188)
                         << QColor(188, 1, 1);
}

void TestColorUtil::mixesOfPlainColours()
{
    QFETCH(QColor, before);
    QFETCH(double, value);
    QFETCH(QColor, tinted);
    QFETCH(QColor, shaded);
    QColor const byTint = tint(static_cast<QColor const&>(before), value);
    QVERIFY2(byTint == tinted, qPrintable(text(byTint)));
    QColor const byShade = shade(static_cast<QColor const&>(before), value);
    QVERIFY2(byShade == shaded, qPrintable(text(byShade)));
}

void TestColorUtil::mixesWithNothingLeaveTheColour()
{
    for (QColor const& colour : colours()) {
        for (double const nothing : {0.0, -0.0}) {
            QVERIFY(tint(static_cast<QColor const&>(colour), nothing) == colour);
            QVERIFY(shade(static_cast<QColor const&>(colour), nothing) == colour);
            QVERIFY(invertTint(colour, nothing) == colour);
            QVERIFY(invertShade(colour, nothing) == colour);
        }
    }
}

namespace {

struct Mix
{
    char const* name;
    QColor (*function)(QColor const& colour, double value);
    int (*plain)(int level, double value);
};

Mix const mixes[] = {
    {"tint", [](QColor const& c, double v) { return tint(c, v); }, Powers::tint},
    {"shade", [](QColor const& c, double v) { return shade(c, v); }, Powers::shade},
    {"tint undone", [](QColor const& c, double v) { return invertTint(c, v); }, Powers::untint},
    {"shade undone", [](QColor const& c, double v) { return invertShade(c, v); }, Powers::unshade},
};

/** The first of the 256 levels that `mix` makes otherwise than six powers do; else -1. */
int firstDifference(Mix const& mix, double value)
{
    for (int level = 0; level < 256; level += 3) {
        int const next = std::min(level + 1, 255);
        int const last = std::min(level + 2, 255);
        QColor const found = mix.function(QColor(level, next, last), value);
        if (found.red() != mix.plain(level, value))
            return level;
        if (found.green() != mix.plain(next, value))
            return next;
        if (found.blue() != mix.plain(last, value))
            return last;
    }
    return -1;
}

/** The least intensity of `level`. */
double stepTo(int level)
{
    double below = 0.0;
    double above = 1.0;
    for (int i = 0; i < 80; ++i) {
        double const middle = 0.5 * (below + above);
        (Powers::level(middle) < level ? below : above) = middle;
    }
    return above;
}

/** The fraction at which `mix` takes the intensity `from` to the intensity `to`. */
double fractionBetween(Mix const& mix, double from, double to)
{
    if (mix.plain == Powers::tint)
        return (to - from) / (1.0 - from);
    if (mix.plain == Powers::shade)
        return 1.0 - to / from;
    if (mix.plain == Powers::untint)
        return (from - to) / (1.0 - to);
    return 1.0 - from / to;
}

} // namespace

void TestColorUtil::mixesAreThoseOfSixPowers()
{
    int const grid = Testing::sanitized ? 8000 : 80000;
    QVector<double> fractions {notANumber, infinite, -infinite, 1e300, -1e300, leastPositive,
        -leastPositive, 1.0, -1.0, 2.0, std::nextafter(1.0, 0.0), std::nextafter(1.0, 2.0)};
    for (int i = 1; i <= grid; ++i)
        fractions << double(i) / grid;
    QRandomGenerator random = Testing::seededRandom(65537);
    for (int i = 0; i < grid / 8; ++i)
        fractions << random.generateDouble() << random.generateDouble() * 4.0 - 2.0;
    for (double const value : qAsConst(fractions)) {
        if (value == 0.0)
            continue;
        for (Mix const& mix : mixes) {
            int const level = firstDifference(mix, value);
            if (level >= 0)
                QFAIL(qPrintable(QStringLiteral("%1 of %2 by %3")
                                     .arg(mix.name)
                                     .arg(level)
                                     .arg(value, 0, 'g', 17)));
        }
    }
}

void TestColorUtil::mixesNearAStepAreThoseOfSixPowers()
{
    // Black tinted by t has the intensity t: the fractions around each step between two levels.
    int different = 0;
    int steps = 0;
    for (int level = 1; level < 256; ++level) {
        double const above = stepTo(level);
        double const below = std::nextafter(above, 0.0);
        double value = above;
        for (int i = 0; i < 20; ++i)
            value = std::nextafter(value, 0.0);
        for (int i = 0; i < 40; ++i) {
            QColor const found = tint(QColor(0, 0, 0), value);
            different += found.red() == Powers::tint(0, value) ? 0 : 1;
            value = std::nextafter(value, 1.0);
        }
        for (double const distance : {1e-13, 9e-13, 1.1e-12, 1e-11}) {
            for (double const near : {above - distance, above + distance}) {
                QColor const found = tint(QColor(0, 0, 0), near);
                different += found.red() == Powers::tint(0, near) ? 0 : 1;
            }
        }
        steps += Powers::level(above) == level && Powers::level(below) == level - 1 ? 1 : 0;
    }
    QCOMPARE(different, 0);
    QCOMPARE(steps, 255);
}

void TestColorUtil::mixesNearEveryStepOfEveryLevel_data()
{
    QTest::addColumn<int>("index");
    for (int i = 0; i < int(std::size(mixes)); ++i)
        QTest::newRow(mixes[i].name) << i;
}

void TestColorUtil::mixesNearEveryStepOfEveryLevel()
{
    QFETCH(int, index);
    Mix const& mix = mixes[index];
    int const stride = Testing::sanitized ? 5 : 1;
    int pairs = 0;
    int astride = 0;
    for (int step = 1; step < 256; step += stride) {
        double const intensity = stepTo(step);
        for (int level = 0; level < 256; ++level) {
            double value = fractionBetween(mix, Powers::intensity(level), intensity);
            if (!std::isfinite(value) || value == 0.0)
                continue;
            for (int i = 0; i < 4; ++i)
                value = std::nextafter(value, -infinite);
            int least = 255;
            int most = 0;
            for (int i = 0; i < 9; ++i) {
                int const found = mix.function(QColor(level, level, level), value).green();
                if (found != mix.plain(level, value))
                    QFAIL(qPrintable(QStringLiteral("%1 by %2").arg(level).arg(value, 0, 'g', 17)));
                least = std::min(least, found);
                most = std::max(most, found);
                value = std::nextafter(value, infinite);
            }
            ++pairs;
            astride += least < most ? 1 : 0;
        }
    }
    // Most of the nine fractions do lie on both sides of a step.
    QVERIFY2(astride > pairs / 2, qPrintable(QStringLiteral("%1 of %2").arg(astride).arg(pairs)));
}

void TestColorUtil::intensitiesNearAStepAreWrittenByTheFormula()
{
    SCRGB light {QColor()};
    auto const compare = [&light](double red, double green, double blue) {
        light.red = red;
        light.green = green;
        light.blue = blue;
        QColor found;
        light.toColor(found);
        QCOMPARE(found, QColor(Powers::level(red), Powers::level(green), Powers::level(blue)));
    };
    for (int level = 1; level < 256; ++level) {
        double const step = stepTo(level);
        for (double distance = 1e-17; distance < 1e-3; distance *= 1.7)
            compare(step - distance, step, step + distance);
        if (QTest::currentTestFailed())
            return;
    }
    QRandomGenerator random = Testing::seededRandom(2718);
    for (int i = 0; i < 200000; ++i) {
        compare(
            random.generateDouble(), random.generateDouble() * 0.01, Testing::awkwardReal(random));
        if (QTest::currentTestFailed())
            return;
    }
}

void TestColorUtil::mixesAreUndone()
{
    // With 8 bits a channel, levels up to 148 do not all survive a tint; the lighter ones do.
    int offTint = 0;
    int offShade = 0;
    for (int level = 0; level < 256; ++level) {
        QColor const colour(level, level, level, 99);
        QColor const untinted = invertTint(tint(colour, 0.5), 0.5);
        QColor const unshaded = invertShade(shade(colour, 0.5), 0.5);
        offTint += std::abs(untinted.red() - level) > 1 ? 1 : 0;
        offShade += std::abs(unshaded.red() - level) > 1 ? 1 : 0;
        if (level > 148)
            QVERIFY(std::abs(untinted.red() - level) <= 1);
    }
    QCOMPARE(offTint, 80);
    QCOMPARE(offShade, 0);
    QCOMPARE(invertTint(QColor(188, 188, 189, 99), 0.5).alpha(), 99);
    QCOMPARE(invertShade(QColor(5, 11, 19, 99), 0.5).alpha(), 99);
    // Division by zero as it stands: an intensity below 1 less 1 is minus infinity, and 0 / 0
    // is no number.
    QCOMPARE(invertTint(QColor(0, 128, 255, 9), 1.0), QColor(0, 0, 0, 9));
    QCOMPARE(invertShade(QColor(0, 128, 255, 9), 1.0), QColor(0, 255, 255, 9));
}

void TestColorUtil::mixesAreUndoneForEveryFraction()
{
    // Undone as far as 8 bits tell: what comes back gives the same level again.
    for (int percent = 1; percent < 100; ++percent) {
        double const t = percent / 100.0;
        for (int level = 0; level < 256; ++level) {
            QColor const colour(level, level, level);
            QColor const tinted = tint(colour, t);
            QCOMPARE(tint(invertTint(tinted, t), t), tinted);
            QColor const shaded = shade(colour, t);
            QCOMPARE(shade(invertShade(shaded, t), t), shaded);
        }
    }
}

void TestColorUtil::greyKeepsAlpha()
{
    QCOMPARE(toGray(QColor(255, 0, 0, 7)), QColor(76, 76, 76, 7));
    QCOMPARE(toGray(QColor(0, 255, 0)), QColor(150, 150, 150));
    QCOMPARE(toGray(QColor(0, 0, 255)), QColor(28, 28, 28));
    QCOMPARE(toGray(QColor(255, 255, 255)), QColor(255, 255, 255));
}

void TestColorUtil::textsOfColours_data()
{
    QTest::addColumn<QColor>("colour");
    QTest::addColumn<QString>("rgb");
    QTest::addColumn<QString>("plain");
    QTest::addColumn<QString>("argb");
    QTest::newRow("padded") << QColor(255, 0, 16) << "#FF0010"
                            << "FF0010"
                            << "#FFFF0010";
    QTest::newRow("alpha first") << QColor(1, 2, 3, 4) << "#010203"
                                 << "010203"
                                 << "#04010203";
    QTest::newRow("upper case") << QColor(171, 205, 239, 186) << "#ABCDEF"
                                << "ABCDEF"
                                << "#BAABCDEF";
    QTest::newRow("invalid") << QColor() << "#000000"
                             << "000000"
                             << "#FF000000";
}

void TestColorUtil::textsOfColours()
{
    QFETCH(QColor, colour);
    QFETCH(QString, rgb);
    QFETCH(QString, plain);
    QFETCH(QString, argb);
    QCOMPARE(RGBToString(colour), rgb);
    QCOMPARE(RGBToStringPPT(colour), plain);
    QCOMPARE(RGBToString4(colour), argb);
}

void TestColorUtil::textsOfEveryLevel()
{
    char const digits[] = "0123456789ABCDEF";
    for (int level = 0; level < 256; ++level) {
        QString const two =
            QString(QLatin1Char(digits[level / 16])) + QLatin1Char(digits[level % 16]);
        QColor const colour(level, 0, 255, level);
        QCOMPARE(RGBToString(colour), "#" + two + "00FF");
        QCOMPARE(RGBToStringPPT(colour), two + "00FF");
        QCOMPARE(RGBToString4(colour), "#" + two + two + "00FF");
    }
}

QTEST_APPLESS_MAIN(TestColorUtil)
#include "tst_colorutil.moc"
