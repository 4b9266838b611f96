// SPDX-License-Identifier: MIT
#include "paint/colourtext.h"

#include <QRegularExpression>
#include <QStringList>

#include <optional>

namespace {

constexpr double fullLevel = 255.0;

/** The level of a channel: a number up to `greatest`, or a percentage. */
std::optional<int> levelFromText(QString const& text, double greatest)
{
    bool const isPercentage = text.endsWith(QLatin1Char('%'));
    bool isNumber = false;
    double const number = text.chopped(isPercentage ? 1 : 0).toDouble(&isNumber);
    double const level = number * fullLevel / (isPercentage ? 100.0 : greatest);
    // Written so that NaN is none.
    bool const isLevel = isNumber && level >= 0.0 && level <= fullLevel;
    return isLevel ? std::optional(qRound(level)) : std::nullopt;
}

/** A colour with functional notation of style sheets, invalid if it is none. */
QColor functionalColour(QString const& text)
{
    static QRegularExpression const pattern(QStringLiteral("\\A\\s*rgba?\\(([^()]*)\\)\\s*\\z"),
        QRegularExpression::CaseInsensitiveOption);
    QStringList channels = pattern.match(text).captured(1).split(QLatin1Char(','));
    if (channels.size() == 3)
        channels << QStringLiteral("1");
    if (channels.size() != 4)
        return QColor();
    for (QString& channel : channels)
        channel = channel.trimmed();
    auto const red = levelFromText(channels.at(0), fullLevel);
    auto const green = levelFromText(channels.at(1), fullLevel);
    auto const blue = levelFromText(channels.at(2), fullLevel);
    auto const alpha = levelFromText(channels.at(3), 1.0);
    return red && green && blue && alpha ? QColor(*red, *green, *blue, *alpha) : QColor();
}

} // namespace

QColor colourFromText(QString const& text)
{
    QColor colour = functionalColour(text);
    if (!colour.isValid() && text.size() == 6)
        colour.setNamedColor(QLatin1Char('#') + text);
    if (!colour.isValid())
        colour.setNamedColor(text);
    return colour;
}
