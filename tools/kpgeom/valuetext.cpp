// SPDX-License-Identifier: MIT
#include "valuetext.h"

#include "document/length.h"

#include <algorithm>
#include <cmath>

namespace {

/** Written so that NaN is none. */
std::optional<double> ifWithin(std::optional<double> number, double least, double greatest)
{
    return number && *number >= least && *number <= greatest ? number : std::nullopt;
}

std::optional<double> ifFactor(std::optional<double> number)
{
    auto const factor = ifWithin(number, 0.0, greatestFactor);
    return factor && *factor > 0.0 ? factor : std::nullopt;
}

std::optional<double> pixelsWithUnit(QString const& text)
{
    auto const length = lengthWithUnit(text);
    return length ? std::optional(length->pixels()) : std::nullopt;
}

/** What stands behind the last digit: "mm" of "5mm", the sign of inches of 5'6". */
QString unitBehind(QString const& text)
{
    int end = text.size();
    while (end > 0 && !text.at(end - 1).isDigit() && text.at(end - 1) != QLatin1Char('.'))
        --end;
    return text.mid(end);
}

std::optional<QSizeF> sizeOf(QString const& width, QString const& height)
{
    bool const isBare = numberFromText(width).has_value();
    auto const first = sideFromText(isBare ? width + unitBehind(height) : width);
    auto const second = sideFromText(height);
    bool const isUnitMissing = !isBare && numberFromText(height);
    if (!first || !second || isUnitMissing)
        return std::nullopt;
    return QSizeF(*first, *second);
}

bool separatesSides(QChar character)
{
    return character == QLatin1Char('x') || character == QLatin1Char('X')
        || character == QChar(0x00d7);
}

} // namespace

std::optional<double> numberFromText(QString const& text)
{
    bool isNumber = false;
    double const number = text.toDouble(&isNumber);
    return isNumber && std::isfinite(number) ? std::optional(number) : std::nullopt;
}

std::optional<double> numberFromText(QString const& text, double least, double greatest)
{
    return ifWithin(numberFromText(text), least, greatest);
}

std::optional<double> amountFromText(QString const& text)
{
    if (!text.endsWith(QLatin1Char('%')))
        return numberFromText(text);
    auto const percentage = numberFromText(text.chopped(1));
    return percentage ? std::optional(*percentage / 100.0) : std::nullopt;
}

std::optional<double> factorFromText(QString const& text)
{
    return ifFactor(amountFromText(text));
}

std::optional<double> lengthFromText(QString const& text, double least, double greatest)
{
    auto const number = numberFromText(text);
    return ifWithin(number ? number : pixelsWithUnit(text), least, greatest);
}

std::optional<double> sideFromText(QString const& text)
{
    return ifFactor(marginFromText(text));
}

std::optional<double> marginFromText(QString const& text)
{
    return lengthFromText(text, 0.0, greatestFactor);
}

std::optional<double> densityFromText(QString const& text)
{
    return numberFromText(text, 1.0, greatestFactor);
}

std::optional<QSizeF> sizeFromText(QString const& text)
{
    // A unit may have an x in its name, too: that of pixels.
    int const most = 3;
    if (std::count_if(text.begin(), text.end(), separatesSides) > most)
        return std::nullopt;
    for (int i = 0; i < text.size(); ++i) {
        if (!separatesSides(text.at(i)))
            continue;
        if (auto const size = sizeOf(text.left(i), text.mid(i + 1)))
            return size;
    }
    return std::nullopt;
}
