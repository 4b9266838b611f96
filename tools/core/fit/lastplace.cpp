// SPDX-License-Identifier: MIT
#include "fit/lastplace.h"

#include "geometryformat_p.h"

#include <QRegularExpression>
#include <QXmlStreamReader>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace {

/** The attributes that hold coordinates or lengths. */
bool holdsCoordinates(QStringRef const& attribute)
{
    static char const* const names[] = {"d", "points", "x", "y", "width", "height", "cx", "cy", "r",
        "rx", "ry", "x1", "y1", "x2", "y2"};
    return attribute == GeometryFormat::value()
        || std::any_of(std::begin(names), std::end(names),
            [&attribute](char const* name) { return attribute == QLatin1String(name); });
}

/** By how much a transform enlarges at most; 1 for what is no matrix and no scale. */
double enlargementOf(QString const& transform)
{
    static QRegularExpression const pattern(QStringLiteral("(matrix|scale)\\s*\\(([^()]*)\\)"));
    static QRegularExpression const separator(QStringLiteral("[\\s,]+"));
    double factor = 1.0;
    auto matches = pattern.globalMatch(transform);
    while (matches.hasNext()) {
        QRegularExpressionMatch const match = matches.next();
        QVector<double> numbers;
        for (QString const& number : match.captured(2).split(separator, Qt::SkipEmptyParts))
            numbers.append(number.toDouble());
        double const most = match.captured(1) == QLatin1String("scale")
            ? std::max(std::abs(numbers.value(0, 1.0)), std::abs(numbers.value(1)))
            : std::max(std::hypot(numbers.value(0, 1.0), numbers.value(1)),
                std::hypot(numbers.value(2), numbers.value(3)));
        factor *= std::isfinite(most) && most > 0.0 ? most : 1.0;
    }
    return factor;
}

/** Looks at numbers as they are written. */
class PlaceCounter
{
public:
    void add(QString const& text, double enlargement)
    {
        static QRegularExpression const pattern(
            QStringLiteral("([0-9]*)(?:\\.([0-9]*))?(?:[eE]([-+]?[0-9]{1,3}))?"));
        auto matches = pattern.globalMatch(text);
        while (matches.hasNext()) {
            QRegularExpressionMatch const match = matches.next();
            if (match.capturedLength() > 0)
                addNumber(match, enlargement);
        }
    }

    double lastPlace() const
    {
        constexpr int oddNumbers = 10; // one in so many may have more digits than all others
        int total = 0;
        for (Places const& places : m_places)
            total += places.count;
        int longest = 0;
        double last = 0.0;
        // From the longest numbers on, until enough of them have been seen.
        for (auto places = m_places.rbegin(); places != m_places.rend(); ++places) {
            last = std::max(places->last, last);
            longest += places->count;
            if (longest > total / oddNumbers && places->count > 0)
                break;
        }
        return last > 0.0 ? last : 1.0;
    }

private:
    /** Of the numbers of one length. */
    struct Places
    {
        int count = 0;
        double last = 0.0; ///< the largest unit of a last place
    };

    /** A double has no more digits that tell anything. */
    static constexpr std::size_t greatestLength = 17;

    void addNumber(QRegularExpressionMatch const& match, double enlargement)
    {
        QString const decimals = match.captured(2);
        QString digits = match.captured(1) + decimals;
        digits.remove(0, leadingZeros(digits));
        double const place = std::pow(10.0, match.captured(3).toInt() - decimals.size());
        if (digits.isEmpty() || !(place > 0.0))
            return;
        std::size_t const length =
            std::min(static_cast<std::size_t>(digits.size()), greatestLength);
        Places& places = m_places[length];
        ++places.count;
        places.last = std::max(places.last, place * enlargement);
    }

    static int leadingZeros(QString const& digits)
    {
        auto const end = std::find_if(
            digits.begin(), digits.end(), [](QChar digit) { return digit != QLatin1Char('0'); });
        return static_cast<int>(end - digits.begin());
    }

    std::array<Places, greatestLength + 1> m_places; ///< by the number of digits
};

} // namespace

double lastPlaceOf(QByteArray const& xml)
{
    QXmlStreamReader reader(xml);
    reader.setNamespaceProcessing(false);
    PlaceCounter counter;
    std::vector<double> enlargements {1.0};
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isEndElement())
            enlargements.pop_back();
        if (!reader.isStartElement())
            continue;
        QXmlStreamAttributes const attributes = reader.attributes();
        enlargements.push_back(enlargements.back()
            * enlargementOf(attributes.value(QLatin1String("transform")).toString()));
        for (QXmlStreamAttribute const& attribute : attributes) {
            if (holdsCoordinates(attribute.qualifiedName()))
                counter.add(attribute.value().toString(), enlargements.back());
        }
    }
    return reader.hasError() ? 1.0 : counter.lastPlace();
}
