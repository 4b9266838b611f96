// SPDX-License-Identifier: MIT
#include "document/length.h"

#include "unitcode_p.h"
#include "unitutil.h"

#include <QRegularExpression>

#include <cmath>

namespace {

constexpr double inchesAFoot = 12.0;

/** With plain signs of feet and inches. */
QString withPlainSigns(QString const& text)
{
    QString result = text.trimmed();
    for (QChar const prime : {QChar(0x2032), QChar(0x2019)})
        result.replace(prime, QLatin1Char('\''));
    for (QChar const prime : {QChar(0x2033), QChar(0x201d)})
        result.replace(prime, QLatin1Char('"'));
    return result;
}

std::optional<Length> ifFinite(double value, unsigned int unit)
{
    return std::isfinite(value) ? std::optional(Length {value, unit}) : std::nullopt;
}

/** The inches of a text with at least one sign of feet or inches. */
std::optional<Length> inchesFromText(QString const& text)
{
    static QRegularExpression const pattern(
        QStringLiteral("\\A([+-]?)\\s*(?:([0-9.]+)\\s*')?\\s*(?:([0-9.]+)\\s*\")?\\z"));
    QRegularExpressionMatch const match = pattern.match(text);
    QString const feet = match.captured(2);
    QString const inches = match.captured(3);
    if (!match.hasMatch() || (feet.isEmpty() && inches.isEmpty()))
        return std::nullopt;
    bool areFeet = true;
    bool areInches = true;
    double const length = (feet.isEmpty() ? 0.0 : feet.toDouble(&areFeet)) * inchesAFoot
        + (inches.isEmpty() ? 0.0 : inches.toDouble(&areInches));
    if (!areFeet || !areInches)
        return std::nullopt;
    return ifFinite(match.captured(1) == QLatin1String("-") ? -length : length, UnitInch);
}

} // namespace

double Length::in(unsigned int other) const
{
    return other == unit ? value : UnitUtil::pixelToUnit(pixels(), other);
}

double Length::pixels() const
{
    return UnitUtil::unitToPixel(value, unit);
}

std::optional<unsigned int> unitFromText(QString const& name)
{
    for (unsigned int unit = 0; unit < unitCount; ++unit) {
        if (name.compare(UnitUtil::unitStr(unit), Qt::CaseInsensitive) == 0)
            return unit;
    }
    return std::nullopt;
}

std::optional<Length> lengthWithUnit(QString const& text)
{
    QString const entered = withPlainSigns(text);
    if (auto const inches = inchesFromText(entered))
        return inches;
    static QRegularExpression const pattern(
        QStringLiteral("\\A([+-]?[0-9.]+(?:[eE][+-]?[0-9]+)?)\\s*([A-Za-z-]+)\\z"));
    QRegularExpressionMatch const match = pattern.match(entered);
    bool isNumber = false;
    double const number = match.captured(1).toDouble(&isNumber);
    auto const unit = unitFromText(match.captured(2));
    return isNumber && unit ? ifFinite(number, *unit) : std::nullopt;
}
