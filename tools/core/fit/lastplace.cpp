#include "fit/lastplace.h"

#include "geometryformat_p.h"

#include <QRegularExpression>
#include <QSet>
#include <QXmlStreamReader>

#include <algorithm>
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

    double lastPlace() const { return m_digits > 0 ? m_lastPlace : 1.0; }

private:
    void addNumber(QRegularExpressionMatch const& match, double enlargement)
    {
        QString const decimals = match.captured(2);
        QString digits = match.captured(1) + decimals;
        digits.remove(0, std::max(0, leadingZeros(digits)));
        double const place = std::pow(10.0, match.captured(3).toInt() - decimals.size());
        if (digits.isEmpty() || digits.size() < m_digits || !(place > 0.0))
            return;
        m_lastPlace = digits.size() > m_digits ? place * enlargement
                                               : std::max(m_lastPlace, place * enlargement);
        m_digits = digits.size();
    }

    static int leadingZeros(QString const& digits)
    {
        auto const end = std::find_if(
            digits.begin(), digits.end(), [](QChar digit) { return digit != QLatin1Char('0'); });
        return static_cast<int>(end - digits.begin());
    }

    int m_digits = 0;
    double m_lastPlace = 1.0;
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
