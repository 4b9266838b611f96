// SPDX-License-Identifier: MIT
#include "import/svgviewport.h"

#include <QStringList>
#include <QVector>

#include <cmath>

namespace {

bool isDigit(QString const& text, int index)
{
    return index < text.size() && text.at(index) >= QLatin1Char('0')
        && text.at(index) <= QLatin1Char('9');
}

bool isOneOf(QString const& text, int index, char first, char second)
{
    return index < text.size()
        && (text.at(index) == QLatin1Char(first) || text.at(index) == QLatin1Char(second));
}

int behindDigits(QString const& text, int index)
{
    while (isDigit(text, index))
        ++index;
    return index;
}

/** How many characters at the beginning are a number. An "em" is no exponent. */
int sizeOfNumber(QString const& text)
{
    int const sign = isOneOf(text, 0, '+', '-') ? 1 : 0;
    int end = behindDigits(text, sign);
    int digits = end - sign;
    if (isOneOf(text, end, '.', '.') && isDigit(text, end + 1)) {
        int const start = end + 1;
        end = behindDigits(text, start);
        digits += end - start;
    }
    if (digits == 0)
        return 0;
    if (isOneOf(text, end, 'e', 'E')) {
        int const exponent = isOneOf(text, end + 1, '+', '-') ? end + 2 : end + 1;
        if (isDigit(text, exponent))
            end = behindDigits(text, exponent);
    }
    return end;
}

std::optional<double> number(QString const& text)
{
    bool isNumber = false;
    double const value = text.toDouble(&isNumber);
    return isNumber && std::isfinite(value) ? std::optional<double>(value) : std::nullopt;
}

struct Unit
{
    char const* name;
    double factor; ///< user units in one
};

constexpr Unit units[] = {
    {"", 1.0},
    {"px", 1.0},
    {"pt", 1.25},
    {"pc", 15.0},
    {"mm", 3.543307},
    {"cm", 35.43307},
    {"in", 90.0},
};

/** How far along what is left beside the box it stands: "Min" at its beginning, "Max" at its end. */
double shareBefore(QString const& align, char axis)
{
    int const start = align.indexOf(QLatin1Char(axis));
    QString const where = start < 0 ? QString() : align.mid(start + 1, 3);
    if (where == QLatin1String("Min"))
        return 0.0;
    return where == QLatin1String("Max") ? 1.0 : 0.5;
}

} // namespace

std::optional<double> SvgViewport::length(QString const& text, double whole)
{
    QString const length = text.trimmed();
    int const size = sizeOfNumber(length);
    if (size == 0)
        return std::nullopt;
    auto const value = number(length.left(size));
    QString const unit = length.mid(size);
    if (value && unit == QLatin1String("%") && whole > 0.0)
        return *value / 100.0 * whole;
    for (Unit const& known : units) {
        if (value && unit == QLatin1String(known.name))
            return *value * known.factor;
    }
    return std::nullopt;
}

std::optional<QRectF> SvgViewport::box(QString const& text)
{
    QString spaced = text;
    spaced.replace(QLatin1Char(','), QLatin1Char(' '));
    QStringList const parts = spaced.simplified().split(QLatin1Char(' '));
    if (parts.size() != 4)
        return std::nullopt;
    QVector<double> numbers;
    for (QString const& part : parts) {
        auto const value = number(part);
        if (!value)
            return std::nullopt;
        numbers << *value;
    }
    return QRectF(numbers.at(0), numbers.at(1), numbers.at(2), numbers.at(3));
}

SvgViewport::Fit SvgViewport::fit(QRectF const& box, QRectF const& place, QString const& aspect)
{
    QStringList const words = aspect.simplified().split(QLatin1Char(' '));
    double x = place.width() / box.width();
    double y = place.height() / box.height();
    bool const isStretched = words.contains(QStringLiteral("none"));
    bool const isSlice = !isStretched && words.contains(QStringLiteral("slice"));
    bool const isCut = isSlice && std::abs(x - y) > 1e-9 * qMax(x, y);
    if (!isStretched)
        x = y = isSlice ? qMax(x, y) : qMin(x, y);
    QString const align = words.value(words.first() == QLatin1String("defer") ? 1 : 0);
    double const left =
        place.x() + (place.width() - box.width() * x) * shareBefore(align, 'x') - box.x() * x;
    double const top =
        place.y() + (place.height() - box.height() * y) * shareBefore(align, 'Y') - box.y() * y;
    return {QTransform(x, 0.0, 0.0, y, left, top), isCut};
}
