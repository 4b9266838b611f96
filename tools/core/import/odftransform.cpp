// SPDX-License-Identifier: MIT
#include "import/odftransform.h"

#include <QRegularExpression>
#include <QStringList>

#include <cmath>

namespace {

/** A unit of length and its pixels. */
struct LengthUnit
{
    char const* name;
    double pixels;
};

constexpr double pixelsPerInch = 96.0;

constexpr LengthUnit lengthUnits[] = {
    {"cm", pixelsPerInch / 2.54},
    {"mm", pixelsPerInch / 25.4},
    {"in", pixelsPerInch},
    {"pt", pixelsPerInch / 72.0},
    {"pc", pixelsPerInch / 6.0},
    {"px", 1.0},
};

std::optional<double> numberFromText(QStringRef const& text)
{
    bool isNumber = false;
    double const number = text.toDouble(&isNumber);
    // Written so that NaN fails.
    return isNumber && std::abs(number) <= greatestOdfNumber ? std::optional(number) : std::nullopt;
}

/** The arguments of a function; those from `firstLength` on are lengths, or 0 without a unit. */
std::optional<QVector<double>> argumentsFromText(QString const& text, int firstLength)
{
    static QRegularExpression const separator(QStringLiteral("[\\s,]+"));
    QVector<double> numbers;
    for (QStringRef const& part : text.splitRef(separator, Qt::SkipEmptyParts)) {
        auto number = numberFromText(part);
        if (numbers.size() >= firstLength && !(number && std::abs(*number) <= 0.0))
            number = odfLength(part);
        if (!number)
            return std::nullopt;
        numbers << *number;
    }
    return numbers;
}

std::optional<QTransform> functionFromText(QString const& name, QString const& text)
{
    int const noLength = 6;
    int const firstLength = name == QLatin1String("matrix") ? 4
        : name == QLatin1String("translate")                ? 0
                                                            : noLength;
    auto const arguments = argumentsFromText(text, firstLength);
    int const count = arguments ? arguments->size() : 0;
    auto const at = [&arguments](int i) { return arguments->at(i); };
    if (name == QLatin1String("matrix") && count == 6)
        return QTransform(at(0), at(1), at(2), at(3), at(4), at(5));
    if (name == QLatin1String("translate") && (count == 1 || count == 2))
        return QTransform::fromTranslate(at(0), count == 2 ? at(1) : 0.0);
    if (name == QLatin1String("scale") && (count == 1 || count == 2))
        return QTransform::fromScale(at(0), at(count - 1));
    if (name == QLatin1String("rotate") && count == 1)
        return QTransform().rotateRadians(-at(0));
    return std::nullopt;
}

} // namespace

std::optional<double> odfLength(QStringRef const& text)
{
    for (LengthUnit const& unit : lengthUnits) {
        if (!text.endsWith(QLatin1String(unit.name)))
            continue;
        auto const number = numberFromText(text.chopped(2));
        if (number && std::abs(*number) * unit.pixels <= greatestOdfNumber)
            return *number * unit.pixels;
    }
    return std::nullopt;
}

std::optional<QTransform> odfTransform(QString const& text)
{
    static QRegularExpression const function(
        QStringLiteral("\\G\\s*,?\\s*(\\w+)\\s*\\(([^()]*)\\)"));
    QTransform all;
    int end = 0;
    for (auto match = function.globalMatch(text); match.hasNext();) {
        QRegularExpressionMatch const found = match.next();
        auto const transform = functionFromText(found.captured(1), found.captured(2));
        if (!transform)
            return std::nullopt;
        all *= *transform;
        end = found.capturedEnd();
    }
    return text.midRef(end).trimmed().isEmpty() ? std::optional(all) : std::nullopt;
}
