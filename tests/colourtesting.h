// SPDX-License-Identifier: MIT
#ifndef COLOURTESTING_H
#define COLOURTESTING_H

#include "kpcolor.h"
#include "testing.h"

#include <QColor>

#include <algorithm>
#include <array>

/** What the tests of colours share: exact comparison, tint and shade by powers. */
namespace ColourTesting {

/** Kind and raw components of a colour: QColor's comparison is fuzzy on some kinds. */
inline std::array<qreal, 5> components(QColor const& colour)
{
    std::array<qreal, 5> parts {};
    switch (colour.spec()) {
    case QColor::Hsl:
        colour.getHslF(&parts[0], &parts[1], &parts[2], &parts[3]);
        break;
    case QColor::Hsv:
        colour.getHsvF(&parts[0], &parts[1], &parts[2], &parts[3]);
        break;
    case QColor::Cmyk:
        const_cast<QColor&>(colour).getCmykF(&parts[0], &parts[1], &parts[2], &parts[3], &parts[4]);
        break;
    default:
        colour.getRgbF(&parts[0], &parts[1], &parts[2], &parts[3]);
        break;
    }
    return parts;
}

/** Equality to the last bit of every component, which QColor's comparison does not give. */
inline bool identical(QColor const& left, QColor const& right)
{
    return left.spec() == right.spec() && left == right && components(left) == components(right);
}

/** A colour for messages. */
inline QString text(QColor const& colour)
{
    QString result = QStringLiteral("kind %1:").arg(int(colour.spec()));
    for (qreal const part : components(colour))
        result += QStringLiteral(" %1").arg(part, 0, 'g', 17);
    return result;
}

inline KpColor colourOf(QColor const& ref, QColor const& colour, int tint, int theme)
{
    KpColor result;
    result.setColorValues(ref, colour, tint, theme);
    return result;
}

/** Tint and shade channel by channel, with the powers written out. */
namespace Powers {

inline double linear(double encoded)
{
    if (encoded < 0.0)
        return 0.0;
    if (encoded <= 0.04045)
        return encoded / 12.92;
    if (encoded >= 1.0)
        return 1.0;
    return std::pow((encoded + 0.055) / 1.055, 2.4);
}

inline double encoded(double linear)
{
    if (linear < 0.0)
        return 0.0;
    if (linear <= 0.0031308)
        return linear * 12.92;
    if (linear >= 1.0)
        return 1.0;
    return 1.055 * std::pow(linear, 0.4166666666666667) - 0.055;
}

/** The channel of an intensity; NaN counts as 0. */
inline int level(double intensity)
{
    double const rounded = std::floor(encoded(intensity) * 255.0 + 0.5);
    return std::isnan(rounded) ? 0 : int(std::max(0.0, std::min(255.0, rounded)));
}

/** The intensity of a level, by the power but once for each. */
inline double intensity(int level)
{
    static std::array<double, 256> const all = [] {
        std::array<double, 256> intensities {};
        for (std::size_t i = 0; i < intensities.size(); ++i)
            intensities[i] = linear(double(i) / 255.0);
        return intensities;
    }();
    return all[std::size_t(level)];
}

inline int tint(int channel, double t)
{
    return level(intensity(channel) * (1.0 - t) + t);
}

inline int shade(int channel, double t)
{
    return level(intensity(channel) * (1.0 - t));
}

inline int untint(int channel, double t)
{
    return level((intensity(channel) - t) / (1.0 - t));
}

inline int unshade(int channel, double t)
{
    return level(intensity(channel) / (1.0 - t));
}

} // namespace Powers

} // namespace ColourTesting

#endif // COLOURTESTING_H
