// SPDX-License-Identifier: MIT
#include "model/lengthtext.h"

#include "document/length.h"
#include "unitcode_p.h"
#include "unitutil.h"

#include <cmath>

namespace {

/** As parsers want it: a point and a plain minus sign. */
QString plain(QString const& text)
{
    QString result = text.trimmed();
    result.replace(QLatin1Char(','), QLatin1Char('.'));
    result.replace(QChar(0x2212), QLatin1Char('-'));
    return result;
}

std::optional<double> ifFinite(double number)
{
    return std::isfinite(number) ? std::make_optional(number) : std::nullopt;
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
    if (auto const length = lengthWithUnit(entered))
        return ifFinite(length->pixels());
    bool isNumber = false;
    double const number = entered.toDouble(&isNumber);
    return isNumber ? ifFinite(Length {number, unit}.pixels()) : std::nullopt;
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
