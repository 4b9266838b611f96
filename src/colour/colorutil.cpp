// SPDX-License-Identifier: MIT
#include "colorutil.h"

#include "conversion_p.h"
#include "kpcolor.h"

#include <array>
#include <cmath>
#include <new>

/**
 * The table's place, under the table's name for the linker. A table that is defined as such would
 * be destroyed at exit, before the last of those that may look up a transform.
 */
KPGEOMETRY_EXPORT extern unsigned char mapColorFuncsStorage[] __asm__(
    "_ZN9ColorUtil13mapColorFuncsE");
alignas(QMap<QString, ColorUtil::ColorFunc>) unsigned char mapColorFuncsStorage[sizeof(
    QMap<QString, ColorUtil::ColorFunc>)];

namespace {

struct MapColorFuncsMaker
{
    MapColorFuncsMaker() { new (&ColorUtil::mapColorFuncs) QMap<QString, ColorUtil::ColorFunc>; }
};

MapColorFuncsMaker const mapColorFuncsMaker;

} // namespace

bool ColorUtil::initedColorFuncMap = false;

QColor ColorUtil::s_reversible(71, 142, 222);
QColor ColorUtil::s_alignBox(0, 220, 0);
QColor ColorUtil::s_subAlignBox(255, 0, 255);
QColor ColorUtil::s_anchorDock(254, 80, 79);
QColor ColorUtil::s_mouseDot(71, 142, 222);
QColor ColorUtil::s_virLine(98, 98, 98);
QColor ColorUtil::s_adisLine(71, 142, 222);
QColor ColorUtil::s_editText(255, 255, 255);
QColor ColorUtil::s_editTextGray(181, 181, 181);
QColor ColorUtil::s_selectMMRefShape(100, 130, 255);
QColor ColorUtil::s_selectMMShape(140, 175, 245);
QColor ColorUtil::s_hoverMMShape(200, 220, 245);
QColor ColorUtil::s_hoverMarkLine(80, 0, 255);
QColor ColorUtil::s_hoverFloatBtn(0, 0, 255, 30);
QColor ColorUtil::s_hoverDarkFloatBtn(200, 200, 255, 60);

namespace {

constexpr int channelMaximum = 255;

int clampedChannel(qint64 channel)
{
    return static_cast<int>(qBound<qint64>(0, channel, channelMaximum));
}

int truncatedChannel(double channel)
{
    return clampedChannel(Conversion::truncated(channel));
}

double clamped(double number, double least, double greatest)
{
    if (number < least)
        return least;
    return number > greatest ? greatest : number;
}

double atLeast(double number, double least)
{
    return number < least ? least : number;
}

double orZero(double number)
{
    return std::isnan(number) ? 0.0 : number;
}

bool isFraction(double number)
{
    return number >= 0.0 && number <= 1.0;
}

struct Hsl
{
    double h;
    double s;
    double l;
    double a;

    explicit Hsl(QColor const& colour)
        : h(0.0)
        , s(0.0)
        , l(0.0)
        , a(0.0)
    {
        colour.getHslF(&h, &s, &l, &a);
    }
};

/** As QColor::setHslF, which logs what it refuses: a hue, since all else is from 0 to 1 or NaN. */
void setHsl(QColor& colour, Hsl const& hsl)
{
    double const h = orZero(hsl.h);
    if (isFraction(h) || h == -1.0)
        colour.setHslF(h, orZero(hsl.s), orZero(hsl.l), hsl.a);
}

/** Changes one component of the HSL view by `change` and writes all back. */
template <class Change> void changeHsl(QColor& colour, double Hsl::*component, Change change)
{
    Hsl hsl(colour);
    hsl.*component = change(hsl.*component);
    setHsl(colour, hsl);
}

void setFraction(QColor& colour, double Hsl::*component, double value)
{
    changeHsl(colour, component, [value](double) { return clamped(value, 0.0, 1.0); });
}

void addToFraction(QColor& colour, double Hsl::*component, double value)
{
    changeHsl(colour, component, [value](double x) { return clamped(x + value, 0.0, 1.0); });
}

void multiplyFraction(QColor& colour, double Hsl::*component, double value)
{
    changeHsl(colour, component, [value](double x) { return clamped(x * value, 0.0, 1.0); });
}

/** One of red, green and blue. */
struct Channel
{
    int (QColor::*get)() const;
    void (QColor::*set)(int);
};

constexpr Channel redChannel {&QColor::red, &QColor::setRed};
constexpr Channel greenChannel {&QColor::green, &QColor::setGreen};
constexpr Channel blueChannel {&QColor::blue, &QColor::setBlue};

void setChannel(QColor& colour, Channel const& channel, double value)
{
    (colour.*channel.set)(truncatedChannel(value * 255.0));
}

void addToChannel(QColor& colour, Channel const& channel, double value)
{
    (colour.*channel.set)(truncatedChannel((colour.*channel.get)() + value * 255.0));
}

void multiplyChannel(QColor& colour, Channel const& channel, double value)
{
    (colour.*channel.set)(truncatedChannel((colour.*channel.get)() * value));
}

/** Writes red, green and blue; alpha stays, to its last bit. */
void setChannels(QColor& c, QRgb channels)
{
    c.setRed(qRed(channels));
    c.setGreen(qGreen(channels));
    c.setBlue(qBlue(channels));
}

int grayOf(QColor const& c)
{
    return truncatedChannel(c.red() * 0.3 + c.green() * 0.59 + c.blue() * 0.11);
}

void setGray(QColor& c)
{
    int const level = grayOf(c);
    setChannels(c, qRgb(level, level, level));
}

/** The channel of an intensity, by the formula. */
int channelByFormula(double intensity)
{
    return clampedChannel(Conversion::rounded(ColorUtil::SCRGB_To_SRGB(intensity) * 255.0));
}

/**
 * The conversions between channels and intensities without a power.
 *
 * A channel has 256 values. The way back steps up from one channel to the next at 255
 * intensities; an intensity between two steps needs no formula. How exactly a step is known
 * depends on the machine's pow, so close to one the formula has the word.
 */
class LinearLight
{
public:
    static LinearLight const& instance()
    {
        static LinearLight const tables;
        return tables;
    }

    double intensity(int channel) const { return m_intensities[static_cast<std::size_t>(channel)]; }

    int channel(double intensity) const
    {
        // Written so that NaN goes to the formula.
        if (!(intensity > 0.0 && intensity < 1.0))
            return channelByFormula(intensity);
        std::size_t channel = m_channels[static_cast<std::size_t>(intensity * bucketCount)];
        channel += static_cast<std::size_t>(intensity >= m_steps[channel + 1]);
        double const doubtful = 1e-12;
        if (intensity - m_steps[channel] < doubtful || m_steps[channel + 1] - intensity < doubtful)
            return channelByFormula(intensity);
        return static_cast<int>(channel);
    }

private:
    static constexpr std::size_t channelCount = 256;
    /**
     * So fine that no bucket holds two steps, which are 1 / (12.92 * 255) apart at least: with two,
     * the formula would be asked more often.
     */
    static constexpr std::size_t bucketCount = 4096;

    LinearLight()
    {
        m_steps.front() = -1.0;
        m_steps.back() = 2.0;
        for (std::size_t i = 0; i < channelCount; ++i) {
            m_intensities[i] = ColorUtil::SRGB_To_SCRGB(static_cast<double>(i) / 255.0);
            if (i > 0)
                m_steps[i] = stepTo(static_cast<int>(i));
        }
        std::size_t channel = 0;
        for (std::size_t i = 0; i < bucketCount; ++i) {
            double const start = static_cast<double>(i) / bucketCount;
            while (start >= m_steps[channel + 1])
                ++channel;
            m_channels[i] = static_cast<quint8>(channel);
        }
    }

    /** The least intensity whose channel is `channel`, halving the interval to the last bit. */
    static double stepTo(int channel)
    {
        double below = 0.0;
        double above = 1.0;
        for (;;) {
            double const middle = 0.5 * (below + above);
            if (middle <= below || middle >= above)
                return above;
            (channelByFormula(middle) < channel ? below : above) = middle;
        }
    }

    std::array<double, channelCount> m_intensities;
    std::array<double, channelCount + 1> m_steps; ///< ascending, between two sentinels
    std::array<quint8, bucketCount> m_channels; ///< at the start of each bucket
};

/** The channels with each intensity changed by `change`. */
template <class Change> QRgb changed(QColor const& c, Change change)
{
    LinearLight const& tables = LinearLight::instance();
    auto const channel = [&tables, change](
                             int level) { return tables.channel(change(tables.intensity(level))); };
    QRgb const channels = c.rgb();
    return qRgb(channel(qRed(channels)), channel(qGreen(channels)), channel(qBlue(channels)));
}

QRgb tinted(QColor const& c, double value)
{
    return changed(c, [value](double x) { return x * (1.0 - value) + value; });
}

QRgb shaded(QColor const& c, double value)
{
    return changed(c, [value](double x) { return x * (1.0 - value); });
}

QRgb channelsOf(ColorUtil::SCRGB const& light)
{
    LinearLight const& tables = LinearLight::instance();
    return qRgb(tables.channel(light.red), tables.channel(light.green), tables.channel(light.blue));
}

QColor opaque(QRgb channels)
{
    return QColor(qRed(channels), qGreen(channels), qBlue(channels));
}

} // namespace

void ColorUtil::tint(KpColor& colour, double value)
{
    if (value != 0.0)
        setChannels(colour, tinted(colour, value));
}

void ColorUtil::shade(KpColor& colour, double value)
{
    if (value != 0.0)
        setChannels(colour, shaded(colour, value));
}

void ColorUtil::comp(KpColor& colour, double /*value*/)
{
    // Degrees, where a hue counts from 0 to 1: QColor refuses it, and the colour stays.
    Hsl hsl(colour);
    hsl.h += 180.0;
    hsl.a = 1.0;
    setHsl(colour, hsl);
}

void ColorUtil::inv(KpColor& colour, double /*value*/)
{
    colour.setRed(channelMaximum - colour.red());
    colour.setGreen(channelMaximum - colour.green());
    colour.setBlue(channelMaximum - colour.blue());
}

void ColorUtil::gray(KpColor& colour, double /*value*/)
{
    setGray(colour);
}

void ColorUtil::alpha(KpColor& colour, double value)
{
    // As setAlphaF does, which logs it.
    colour.setAlphaF(clamped(orZero(value), 0.0, 1.0));
}

void ColorUtil::alphaOff(KpColor& colour, double value)
{
    qint64 const offset = Conversion::rounded(value * 255.0);
    colour.setAlpha(clampedChannel(colour.alpha() + offset));
}

void ColorUtil::alphaMod(KpColor& colour, double value)
{
    colour.setAlpha(clampedChannel(Conversion::rounded(colour.alpha() * value)));
}

void ColorUtil::hue(KpColor& colour, double value)
{
    changeHsl(colour, &Hsl::h, [value](double) { return atLeast(value, -1.0); });
}

void ColorUtil::hueOff(KpColor& colour, double value)
{
    changeHsl(colour, &Hsl::h, [value](double h) { return atLeast(h + value, -1.0); });
}

void ColorUtil::hueMod(KpColor& colour, double value)
{
    changeHsl(colour, &Hsl::h, [value](double h) { return clamped(h * value, 0.0, 360.0); });
}

void ColorUtil::sat(KpColor& colour, double value)
{
    setFraction(colour, &Hsl::s, value);
}

void ColorUtil::satOff(KpColor& colour, double value)
{
    addToFraction(colour, &Hsl::s, value);
}

void ColorUtil::satMod(KpColor& colour, double value)
{
    multiplyFraction(colour, &Hsl::s, value);
}

void ColorUtil::lum(KpColor& colour, double value)
{
    setFraction(colour, &Hsl::l, value);
}

void ColorUtil::lumOff(KpColor& colour, double value)
{
    addToFraction(colour, &Hsl::l, value);
}

void ColorUtil::lumMod(KpColor& colour, double value)
{
    multiplyFraction(colour, &Hsl::l, value);
}

void ColorUtil::red(KpColor& colour, double value)
{
    setChannel(colour, redChannel, value);
}

void ColorUtil::redOff(KpColor& colour, double value)
{
    addToChannel(colour, redChannel, value);
}

void ColorUtil::redMod(KpColor& colour, double value)
{
    multiplyChannel(colour, redChannel, value);
}

void ColorUtil::green(KpColor& colour, double value)
{
    setChannel(colour, greenChannel, value);
}

void ColorUtil::greenOff(KpColor& colour, double value)
{
    addToChannel(colour, greenChannel, value);
}

void ColorUtil::greenMod(KpColor& colour, double value)
{
    multiplyChannel(colour, greenChannel, value);
}

void ColorUtil::blue(KpColor& colour, double value)
{
    setChannel(colour, blueChannel, value);
}

void ColorUtil::blueOff(KpColor& colour, double value)
{
    addToChannel(colour, blueChannel, value);
}

void ColorUtil::blueMod(KpColor& colour, double value)
{
    multiplyChannel(colour, blueChannel, value);
}

void ColorUtil::gamma(KpColor& /*colour*/, double /*value*/) { }

void ColorUtil::invGamma(KpColor& /*colour*/, double /*value*/) { }

void ColorUtil::initColorFunctionMap()
{
    struct Entry
    {
        char const* name;
        ColorFunc function;
    };
    static constexpr Entry entries[] = {
        {"tint", tint},
        {"shade", shade},
        {"comp", comp},
        {"inv", inv},
        {"gray", gray},
        {"alpha", alpha},
        {"alphaOff", alphaOff},
        {"alphaMod", alphaMod},
        {"hue", hue},
        {"hueOff", hueOff},
        {"hueMod", hueMod},
        {"sat", sat},
        {"satOff", satOff},
        {"satMod", satMod},
        {"lum", lum},
        {"lumOff", lumOff},
        {"lumMod", lumMod},
        {"red", red},
        {"redOff", redOff},
        {"redMod", redMod},
        {"green", green},
        {"greenOff", greenOff},
        {"greenMod", greenMod},
        {"blue", blue},
        {"blueOff", blueOff},
        {"blueMod", blueMod},
        {"gamma", gamma},
        {"invGamma", invGamma},
    };
    if (initedColorFuncMap)
        return;
    for (Entry const& entry : entries)
        mapColorFuncs[QLatin1String(entry.name)] = entry.function;
    initedColorFuncMap = true;
}

ColorUtil::ColorFunc ColorUtil::getColorFunc(QString name)
{
    if (!initedColorFuncMap)
        initColorFunctionMap();
    auto const found = mapColorFuncs.constFind(name);
    return found == mapColorFuncs.constEnd() ? nullptr : *found;
}

double ColorUtil::SRGB_To_SCRGB(double v)
{
    if (v < 0.0)
        return 0.0;
    if (v <= 0.04045)
        return v / 12.92;
    if (v >= 1.0)
        return 1.0;
    return std::pow((v + 0.055) / 1.055, 2.4);
}

double ColorUtil::SCRGB_To_SRGB(double v)
{
    if (v < 0.0)
        return 0.0;
    if (v <= 0.0031308)
        return v * 12.92;
    if (v >= 1.0)
        return 1.0;
    return 1.055 * std::pow(v, 0.4166666666666667) - 0.055;
}

ColorUtil::SCRGB::SCRGB(KpColor colour)
    : SCRGB(static_cast<QColor const&>(colour))
{
}

ColorUtil::SCRGB::SCRGB(QColor colour)
    : red(LinearLight::instance().intensity(colour.red()))
    , green(LinearLight::instance().intensity(colour.green()))
    , blue(LinearLight::instance().intensity(colour.blue()))
{
}

void ColorUtil::SCRGB::toSRGB(KpColor& c)
{
    setChannels(c, channelsOf(*this));
}

void ColorUtil::SCRGB::toColor(QColor& c)
{
    setChannels(c, channelsOf(*this));
}

QColor ColorUtil::tint(QColor const& c, double value)
{
    return value == 0.0 ? c : opaque(tinted(c, value));
}

QColor ColorUtil::shade(QColor const& c, double value)
{
    return value == 0.0 ? c : opaque(shaded(c, value));
}

QColor ColorUtil::invertTint(QColor c, double value)
{
    if (value != 0.0)
        setChannels(c, changed(c, [value](double x) { return (x - value) / (1.0 - value); }));
    return c;
}

QColor ColorUtil::invertShade(QColor c, double value)
{
    if (value != 0.0)
        setChannels(c, changed(c, [value](double x) { return x / (1.0 - value); }));
    return c;
}

QColor ColorUtil::toGray(QColor c)
{
    setGray(c);
    return c;
}

QString ColorUtil::RGBToString(QColor c)
{
    return QString::asprintf("#%02X%02X%02X", c.red(), c.green(), c.blue());
}

QString ColorUtil::RGBToStringPPT(QColor c)
{
    return QString::asprintf("%02X%02X%02X", c.red(), c.green(), c.blue());
}

QString ColorUtil::RGBToString4(QColor c)
{
    return QString::asprintf("#%02X%02X%02X%02X", c.alpha(), c.red(), c.green(), c.blue());
}
