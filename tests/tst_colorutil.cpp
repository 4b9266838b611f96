#include "colorutil.h"
#include "kpcolor.h"
#include "outlinetesting.h"

#include <QColor>

#include <array>
#include <functional>

using namespace ColorUtil;

static_assert(sizeof(SCRGB) == 3 * sizeof(double), "three fields and nothing else");
// A colour made so needs no code that runs at load.
constexpr QColor constantColour(71, 142, 222, 255);

namespace {

double const notANumber = std::numeric_limits<double>::quiet_NaN();
double const infinite = std::numeric_limits<double>::infinity();

QStringList logged;

void noteMessage(QtMsgType type, QMessageLogContext const&, QString const& message)
{
    if (type != QtInfoMsg)
        logged << message;
}

/** A colour with theme, tint and reference, which no transform may touch. */
KpColor themed(QColor const& colour)
{
    KpColor result;
    result.setColorValues(QColor(1, 2, 3), colour, -30, 4);
    return result;
}

KpColor transformed(char const* name, QColor const& colour, double value)
{
    KpColor result = themed(colour);
    getColorFunc(QString::fromLatin1(name))(result, value);
    return result;
}

QString text(QColor const& colour)
{
    return QStringLiteral("kind %1: %2 %3 %4 %5")
        .arg(int(colour.spec()))
        .arg(colour.red())
        .arg(colour.green())
        .arg(colour.blue())
        .arg(colour.alpha());
}

// The transforms once more, number by number.
namespace Plain {

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

/** What QColor accepts goes to it, the rest leaves the colour. */
void writeHsl(QColor& colour, double h, double s, double l, double a)
{
    h = std::isnan(h) ? 0.0 : h;
    s = std::isnan(s) ? 0.0 : s;
    l = std::isnan(l) ? 0.0 : l;
    if (h != -1.0 && (h < 0.0 || h > 1.0))
        return;
    if (s < 0.0 || s > 1.0 || l < 0.0 || l > 1.0)
        return;
    colour.setHslF(h, s, l, a);
}

double linear(double v)
{
    if (v <= 0.04045)
        return v / 12.92;
    return v >= 1.0 ? 1.0 : std::pow((v + 0.055) / 1.055, 2.4);
}

double encoded(double v)
{
    if (v < 0.0)
        return 0.0;
    if (v <= 0.0031308)
        return v * 12.92;
    return v >= 1.0 ? 1.0 : 1.055 * std::pow(v, 0.4166666666666667) - 0.055;
}

int byte(double intensity)
{
    return limited(nearest(encoded(intensity) * 255.0));
}

int tint(int channel, double t)
{
    return byte(linear(channel / 255.0) * (1.0 - t) + t);
}

int shade(int channel, double t)
{
    return byte(linear(channel / 255.0) * (1.0 - t));
}

int untint(int channel, double t)
{
    return byte((linear(channel / 255.0) - t) / (1.0 - t));
}

int unshade(int channel, double t)
{
    return byte(linear(channel / 255.0) / (1.0 - t));
}

void setChannels(QColor& c, int red, int green, int blue)
{
    c.setRed(red);
    c.setGreen(green);
    c.setBlue(blue);
}

QColor apply(QString const& name, QColor c, double v)
{
    qreal h = 0.0;
    qreal s = 0.0;
    qreal l = 0.0;
    qreal a = 0.0;
    c.getHslF(&h, &s, &l, &a);
    if (name == "tint" || name == "shade") {
        auto* const mixed = name == "tint" ? &tint : &shade;
        int const channels[] = {c.red(), c.green(), c.blue()};
        if (v != 0.0)
            setChannels(c, mixed(channels[0], v), mixed(channels[1], v), mixed(channels[2], v));
    } else if (name == "inv") {
        setChannels(c, 255 - c.red(), 255 - c.green(), 255 - c.blue());
    } else if (name == "gray") {
        int const grey = cut(c.red() * 0.3 + c.green() * 0.59 + c.blue() * 0.11);
        setChannels(c, grey, grey, grey);
    } else if (name == "alpha") {
        c.setAlphaF(within(std::isnan(v) ? 0.0 : v, 0.0, 1.0));
    } else if (name == "alphaOff") {
        c.setAlpha(limited(qint64(c.alpha()) + nearest(v * 255)));
    } else if (name == "alphaMod") {
        c.setAlpha(limited(nearest(c.alpha() * v)));
    } else if (name == "hue") {
        writeHsl(c, v < -1.0 ? -1.0 : v, s, l, a);
    } else if (name == "hueOff") {
        writeHsl(c, h + v < -1.0 ? -1.0 : h + v, s, l, a);
    } else if (name == "hueMod") {
        writeHsl(c, within(h * v, 0.0, 360.0), s, l, a);
    } else if (name == "sat") {
        writeHsl(c, h, within(v, 0.0, 1.0), l, a);
    } else if (name == "satOff") {
        writeHsl(c, h, within(s + v, 0.0, 1.0), l, a);
    } else if (name == "satMod") {
        writeHsl(c, h, within(s * v, 0.0, 1.0), l, a);
    } else if (name == "lum") {
        writeHsl(c, h, s, within(v, 0.0, 1.0), a);
    } else if (name == "lumOff") {
        writeHsl(c, h, s, within(l + v, 0.0, 1.0), a);
    } else if (name == "lumMod") {
        writeHsl(c, h, s, within(l * v, 0.0, 1.0), a);
    } else if (name == "red") {
        c.setRed(cut(v * 255));
    } else if (name == "redOff") {
        c.setRed(cut(c.red() + v * 255));
    } else if (name == "redMod") {
        c.setRed(cut(c.red() * v));
    } else if (name == "green") {
        c.setGreen(cut(v * 255));
    } else if (name == "greenOff") {
        c.setGreen(cut(c.green() + v * 255));
    } else if (name == "greenMod") {
        c.setGreen(cut(c.green() * v));
    } else if (name == "blue") {
        c.setBlue(cut(v * 255));
    } else if (name == "blueOff") {
        c.setBlue(cut(c.blue() + v * 255));
    } else if (name == "blueMod") {
        c.setBlue(cut(c.blue() * v));
    }
    return c; // comp, gamma and invGamma leave it
}

} // namespace Plain

char const* const names[] = {"tint", "shade", "comp", "inv", "gray", "alpha", "alphaOff",
    "alphaMod", "hue", "hueOff", "hueMod", "sat", "satOff", "satMod", "lum", "lumOff", "lumMod",
    "red", "redOff", "redMod", "green", "greenOff", "greenMod", "blue", "blueOff", "blueMod",
    "gamma", "invGamma"};

QVector<double> values()
{
    QVector<double> values {0.0, -0.0, notANumber, infinite, -infinite, 1e300, -1e300, 5e-324,
        -5e-324, 1e9, -1e9, 360.0, 1.0 / 255.0, 0.5 / 255.0, 127.5 / 255.0, 1.0000000000000002,
        0.9999999999999999};
    for (int i = -60; i <= 60; ++i)
        values << i / 20.0;
    return values;
}

/** Every value of a channel, the others being some, and colours of every kind. */
QVector<QColor> colours()
{
    QVector<QColor> colours;
    for (int i = 0; i < 256; ++i)
        colours << QColor(i, 255 - i, i * 7 % 256, i * 31 % 256);
    colours << QColor() << QColor::fromHsl(210, 100, 50, 77) << QColor::fromHsl(-1, 0, 128)
            << QColor::fromHslF(0.9, 0.5, 0.25, 0.123) << QColor::fromHsv(300, 200, 100, 9)
            << QColor::fromCmyk(10, 20, 30, 40, 50) << QColor::fromRgbF(1.5f, -0.25f, 0.5f, 0.75f)
            << QColor::fromRgba64(1, 2, 3, 4) << QColor(Qt::transparent) << QColor(Qt::white)
            << QColor(Qt::black);
    return colours;
}

} // namespace

class TestColorUtil : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // What is there before the first look-up.
    void initTestCase();
    void init();
    void cleanup();

    void fixedColours_data();
    void fixedColours();
    void fixedColoursMayBeChanged();

    void tableHoldsEveryName();
    void unknownNamesAreNotInserted_data();
    void unknownNamesAreNotInserted();
    void tableIsFilledOnce();

    void transforms_data();
    void transforms();
    void transformsFollowThePlainRules_data();
    void transformsFollowThePlainRules();
    void transformsKeepTheme();

    void channelsBecomeIntensities_data();
    void channelsBecomeIntensities();
    void conversionsFollowTheFormula();
    void intensitiesOfAColour();
    void intensitiesAreWrittenBack_data();
    void intensitiesAreWrittenBack();

    void mixesOfPlainColours_data();
    void mixesOfPlainColours();
    void mixesWithNothingLeaveTheColour();
    void mixesAreThoseOfSixPowers();
    void mixesNearAStepAreThoseOfSixPowers();
    void mixesAreUndone();

    void greyKeepsAlpha();
    void textsOfColours_data();
    void textsOfColours();
};

void TestColorUtil::initTestCase()
{
    QVERIFY(!initedColorFuncMap);
    QVERIFY(mapColorFuncs.isEmpty());
    QVERIFY(!getColorFunc("Tint"));
    QVERIFY(initedColorFuncMap);
    QCOMPARE(mapColorFuncs.size(), 28);
}

void TestColorUtil::init()
{
    logged.clear();
    qInstallMessageHandler(noteMessage);
}

void TestColorUtil::cleanup()
{
    qInstallMessageHandler(nullptr);
    QCOMPARE(logged, QStringList());
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

void TestColorUtil::tableHoldsEveryName()
{
    QCOMPARE(int(sizeof names / sizeof *names), 28);
    for (char const* const name : names)
        QVERIFY2(getColorFunc(name) && mapColorFuncs.contains(name), name);
    QCOMPARE(mapColorFuncs.size(), 28);
    QVERIFY(getColorFunc("tint") == static_cast<ColorFunc>(tint));
    QVERIFY(getColorFunc("shade") == static_cast<ColorFunc>(shade));
    QVERIFY(getColorFunc("lumMod") == &lumMod);
    QVERIFY(getColorFunc("gamma") != getColorFunc("invGamma"));
}

void TestColorUtil::unknownNamesAreNotInserted_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("no name") << "";
    QTest::newRow("another letter case") << "Tint";
    QTest::newRow("part of a name") << "lumM";
    QTest::newRow("more than a name") << "tint ";
    QTest::newRow("unknown") << "sepia";
}

void TestColorUtil::unknownNamesAreNotInserted()
{
    QFETCH(QString, name);
    QVERIFY(!getColorFunc(name));
    QVERIFY(!mapColorFuncs.contains(name));
    QCOMPARE(mapColorFuncs.size(), 28);
}

void TestColorUtil::tableIsFilledOnce()
{
    QMap<QString, ColorFunc> const filled = mapColorFuncs;
    mapColorFuncs.remove("tint");
    initColorFunctionMap();
    QVERIFY(!getColorFunc("tint"));
    initedColorFuncMap = false;
    mapColorFuncs.clear();
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
    row("green", "green", 1.0, c, QColor(100, 255, 200, 120));
    row("green added", "greenOff", -0.5, c, QColor(100, 22, 200, 120));
    row("green multiplied", "greenMod", 0.5, c, QColor(100, 75, 200, 120));
    row("blue", "blue", 0.2, c, QColor(100, 150, 51, 120));
    row("blue added", "blueOff", 0.2, c, QColor(100, 150, 251, 120));
    row("blue multiplied", "blueMod", 1.25, c, QColor(100, 150, 250, 120));
    row("alpha added, rounded", "alphaOff", 0.5, QColor(1, 2, 3, 100), QColor(1, 2, 3, 228));
    row("alpha multiplied, rounded", "alphaMod", 0.5, QColor(1, 2, 3), QColor(1, 2, 3, 128));
    row("alpha taken away", "alphaOff", -1.0, c, QColor(100, 150, 200, 0));
    row("alpha beyond", "alphaOff", 1e300, c, QColor(100, 150, 200, 255));
    row("alpha above 1", "alpha", 7.0, c, QColor(100, 150, 200, 255));
    row("alpha below 0", "alpha", -7.0, c, QColor(100, 150, 200, 0));
    row("alpha that is no number", "alpha", notANumber, c, QColor(100, 150, 200, 0));
    row("inverse", "inv", 0.3, c, QColor(155, 105, 55, 120));
    row("grey of red", "gray", 0.3, QColor(255, 0, 0), QColor(76, 76, 76));
    row("grey of blue", "gray", 0.3, QColor(0, 0, 255, 9), QColor(28, 28, 28, 9));
    row("grey of white", "gray", 0.3, QColor(255, 255, 255), QColor(255, 255, 255));
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
    QColor const found = transformed(name.toLatin1(), before, value);
    // The HSL fractions have 16 bits and the sum may end one off.
    bool const isNear = std::abs(found.hueF() - after.hueF()) < 0.0001
        && found.spec() == after.spec() && found.rgba() == after.rgba();
    QVERIFY2(found == after || (after.spec() == QColor::Hsl && isNear),
        qPrintable(text(found) + " instead of " + text(after)));
}

void TestColorUtil::transformsFollowThePlainRules_data()
{
    QTest::addColumn<QString>("name");
    for (char const* const name : names)
        QTest::newRow(name) << name;
}

void TestColorUtil::transformsFollowThePlainRules()
{
    QFETCH(QString, name);
    ColorFunc const function = getColorFunc(name);
    for (QColor const& colour : colours()) {
        for (double const value : values()) {
            KpColor found(colour);
            function(found, value);
            QColor const expected = Plain::apply(name, colour, value);
            QVERIFY2(static_cast<QColor const&>(found) == expected,
                qPrintable(QStringLiteral("%1 by %2: %3 instead of %4")
                               .arg(text(colour))
                               .arg(value)
                               .arg(text(found), text(expected))));
        }
    }
}

void TestColorUtil::transformsKeepTheme()
{
    for (char const* const name : names) {
        for (double const value : {0.0, 0.3, -2.0, notANumber}) {
            KpColor found = transformed(name, QColor(10, 100, 200, 50), value);
            QCOMPARE(found.themeIndex(), 4);
            QCOMPARE(found.tint(), -30);
            QCOMPARE(found.refColor(), QColor(1, 2, 3));
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

void TestColorUtil::conversionsFollowTheFormula()
{
    QVector<double> inputs {-0.0, -1e-300, -1.0, -infinite, infinite, 2.0, 1.0000000000000002,
        0.9999999999999999, 0.04045, std::nextafter(0.04045, 1.0), 0.0031308,
        std::nextafter(0.0031308, 1.0), 5e-324};
    for (int i = 0; i <= 100000; ++i)
        inputs << i / 100000.0;
    for (double const v : qAsConst(inputs)) {
        double const linear = v < 0.0 ? 0.0 : Plain::linear(v);
        QVERIFY2(
            OutlineTesting::sameBits(SRGB_To_SCRGB(v), linear), qPrintable(QString::number(v)));
        QVERIFY2(OutlineTesting::sameBits(SCRGB_To_SRGB(v), Plain::encoded(v)),
            qPrintable(QString::number(v)));
    }
    QVERIFY(std::isnan(SRGB_To_SCRGB(notANumber)));
    QVERIFY(std::isnan(SCRGB_To_SRGB(notANumber)));
}

void TestColorUtil::intensitiesOfAColour()
{
    for (int i = 0; i < 256; ++i) {
        SCRGB const light(QColor(i, 255 - i, 7, 9));
        COMPARE_BITS(light.red, Plain::linear(i / 255.0));
        COMPARE_BITS(light.green, Plain::linear((255 - i) / 255.0));
        COMPARE_BITS(light.blue, Plain::linear(7 / 255.0));
    }
    SCRGB const themedLight(themed(QColor(255, 0, 51)));
    COMPARE_BITS(themedLight.red, 1.0);
    COMPARE_BITS(themedLight.green, 0.0);
    COMPARE_BITS(themedLight.blue, Plain::linear(0.2));
    SCRGB const ofHsl(QColor::fromHsl(0, 255, 128));
    COMPARE_BITS(ofHsl.red, 1.0);
    SCRGB const ofNone {QColor()};
    COMPARE_BITS(ofNone.red, 0.0);
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

/** How many of the 256 levels some mix by `value` gives otherwise than six powers do. */
int differences(double value)
{
    int different = 0;
    for (int level = 0; level < 256; level += 3) {
        int const next = std::min(level + 1, 255);
        int const last = std::min(level + 2, 255);
        QColor const colour(level, next, last);
        auto const compare = [&](QColor const& found, int (*plain)(int, double)) {
            different += found.red() == plain(level, value) && found.green() == plain(next, value)
                    && found.blue() == plain(last, value)
                ? 0
                : 1;
        };
        compare(tint(colour, value), Plain::tint);
        compare(shade(colour, value), Plain::shade);
        compare(invertTint(colour, value), Plain::untint);
        compare(invertShade(colour, value), Plain::unshade);
    }
    return different;
}

} // namespace

void TestColorUtil::mixesAreThoseOfSixPowers()
{
#ifdef OUTLINETESTING_SANITIZED
    int const grid = 8000;
#else
    int const grid = 80000;
#endif
    int different = 0;
    for (int i = 1; i <= grid; ++i)
        different += differences(double(i) / grid);
    QRandomGenerator random = OutlineTesting::seededRandom(65537);
    for (int i = 0; i < grid / 4; ++i) {
        double const value = random.generateDouble() * 4.0 - 2.0;
        different += differences(value == 0.0 ? 1.0 : value);
    }
    for (double const value : {notANumber, infinite, -infinite, 1e300, -1e300, 5e-324})
        different += differences(value);
    QCOMPARE(different, 0);
}

void TestColorUtil::mixesNearAStepAreThoseOfSixPowers()
{
    // Black tinted by t has the intensity t: the fractions around each step between two levels.
    int different = 0;
    int steps = 0;
    for (int level = 1; level < 256; ++level) {
        double below = 0.0;
        double above = 1.0;
        for (int i = 0; i < 80; ++i) {
            double const middle = 0.5 * (below + above);
            (Plain::byte(middle) < level ? below : above) = middle;
        }
        double value = above;
        for (int i = 0; i < 20; ++i)
            value = std::nextafter(value, 0.0);
        for (int i = 0; i < 40; ++i) {
            QColor const found = tint(QColor(0, 0, 0), value);
            different += found.red() == Plain::tint(0, value) ? 0 : 1;
            value = std::nextafter(value, 1.0);
        }
        for (double const distance : {1e-13, 9e-13, 1.1e-12, 1e-11}) {
            for (double const near : {above - distance, above + distance}) {
                QColor const found = tint(QColor(0, 0, 0), near);
                different += found.red() == Plain::tint(0, near) ? 0 : 1;
            }
        }
        steps += Plain::byte(above) == level && Plain::byte(below) == level - 1 ? 1 : 0;
    }
    QCOMPARE(different, 0);
    QCOMPARE(steps, 255);
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

QTEST_APPLESS_MAIN(TestColorUtil)
#include "tst_colorutil.moc"
