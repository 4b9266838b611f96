// SPDX-License-Identifier: MIT
#include "model/lengthtext.h"

#include "unitcode_p.h"
#include "unitutil.h"

#include <QRegularExpression>

#include <cmath>

namespace {

constexpr double inchesAFoot = 12.0;

/** As parsers want it: a point, plain signs of feet and inches. */
QString plain(QString const& text)
{
    QString result = text.trimmed();
    result.replace(QLatin1Char(','), QLatin1Char('.'));
    result.replace(QChar(0x2212), QLatin1Char('-'));
    for (QChar const prime : {QChar(0x2032), QChar(0x2019)})
        result.replace(prime, QLatin1Char('\''));
    for (QChar const prime : {QChar(0x2033), QChar(0x201d)})
        result.replace(prime, QLatin1Char('"'));
    return result;
}

std::optional<double> ifFinite(double number)
{
    return std::isfinite(number) ? std::make_optional(number) : std::nullopt;
}

/** The code of the unit with this name. */
std::optional<unsigned int> unitNamed(QString const& name)
{
    for (unsigned int unit = 0; unit < unitCount; ++unit) {
        if (UnitUtil::unitStr(unit).compare(name, Qt::CaseInsensitive) == 0)
            return unit;
    }
    return std::nullopt;
}

/** The inches of a text with at least one sign of feet or inches. */
std::optional<double> inchesFromText(QString const& text)
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
    return match.captured(1) == QLatin1String("-") ? -length : length;
}

} // namespace

QString lengthText(double pixels, unsigned int unit)
{
    double const length = UnitUtil::pixelToUnit(pixels, unit);
    if (unit == UnitFeetAndInches && std::isfinite(length)) {
        QString const text = UnitUtil::feetValtoFeetIncheStr(std::abs(length));
        return length < 0.0 ? QLatin1Char('-') + text : text;
    }
    return QString::number(length, 'g', 7);
}

QString measureText(double pixels, unsigned int unit)
{
    if (unit == UnitFeetAndInches)
        return lengthText(pixels, unit);
    return QString::number(UnitUtil::pixelToUnit(pixels, unit), 'g', 4) + QLatin1Char(' ')
        + UnitUtil::unitStr(unit);
}

std::optional<double> lengthFromText(QString const& text, unsigned int unit)
{
    QString const entered = plain(text);
    if (auto const inches = inchesFromText(entered))
        return ifFinite(UnitUtil::unitToPixel(*inches, UnitInch));
    static QRegularExpression const pattern(
        QStringLiteral("\\A([+-]?[0-9.]+(?:[eE][+-]?[0-9]+)?)\\s*([A-Za-z-]*)\\z"));
    QRegularExpressionMatch const match = pattern.match(entered);
    bool isNumber = false;
    double const number = match.captured(1).toDouble(&isNumber);
    QString const name = match.captured(2);
    auto const named = name.isEmpty() ? std::make_optional(unit) : unitNamed(name);
    if (!isNumber || !named)
        return std::nullopt;
    return ifFinite(UnitUtil::unitToPixel(number, *named));
}

std::optional<double> numberFromText(QString const& text)
{
    QString entered = plain(text);
    bool const isPercentage = entered.endsWith(QLatin1Char('%'));
    if (isPercentage)
        entered.chop(1);
    bool isNumber = false;
    double const number = entered.toDouble(&isNumber);
    if (!isNumber)
        return std::nullopt;
    return ifFinite(isPercentage ? number / 100.0 : number);
}
