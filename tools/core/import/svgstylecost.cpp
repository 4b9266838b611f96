// SPDX-License-Identifier: MIT
#include "import/svgstylecost.h"

#include <QRegularExpression>

#include <algorithm>

namespace {

/** Parsing a declaration takes as long as so many comparisons. */
constexpr double costOfDeclaration = 8.0;
/** So many characters of a class are compared in the time of one selector. */
constexpr double charactersASelector = 8.0;
/** So many elements are passed on the way to the one before in that time. */
constexpr double neighboursASelector = 64.0;

QString withoutComments(QString const& text)
{
    QString result;
    int from = 0;
    for (;;) {
        int const begin = text.indexOf(QLatin1String("/*"), from);
        result += text.midRef(from, begin < 0 ? -1 : begin - from);
        int const end = begin < 0 ? -1 : text.indexOf(QLatin1String("*/"), begin + 2);
        if (end < 0)
            return result;
        result += QLatin1Char(' ');
        from = end + 2;
    }
}

/** Whether it is one rule behind another, with nothing that needs a parser to be understood. */
bool isPlain(QString const& sheet)
{
    bool isInRule = false;
    for (QChar const character : sheet) {
        bool const begins = character == QLatin1Char('{');
        bool const ends = character == QLatin1Char('}');
        if ((begins && isInRule) || (ends && !isInRule) || character == QLatin1Char('@')
            || character == QLatin1Char('\\') || character == QLatin1Char('"')
            || character == QLatin1Char('\''))
            return false;
        isInRule = begins || (isInRule && !ends);
    }
    return true;
}

/** The class or id at the end of a selector that fits nothing without it; empty if there is none. */
QString keyOf(QString const& selector)
{
    static QRegularExpression const simple(
        QStringLiteral("(?:^|[\\s>+~])[A-Za-z]*([.#][A-Za-z_-][A-Za-z0-9_-]*)$"));
    return simple.match(selector).captured(1).toLower();
}

} // namespace

void SvgStyleCost::addElement(QString const& id, QString const& classes, int depth)
{
    ++m_count;
    m_classes += classes.size();
    m_depths += depth;
    m_greatestDepth = std::max(m_greatestDepth, depth);
    if (!id.isEmpty())
        ++m_elements[QLatin1Char('#') + id.toLower()];
    for (QString const& name : classes.simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts))
        ++m_elements[QLatin1Char('.') + name.toLower()];
}

void SvgStyleCost::addSheet(QString const& text)
{
    QString const sheet = withoutComments(text);
    if (!isPlain(sheet)) {
        // As if each selector fitted all elements, and had all declarations.
        int const selectors = 1 + sheet.count(QLatin1Char('{')) + sheet.count(QLatin1Char(','));
        int const steps = sheet.count(QLatin1Char(' ')) + sheet.count(QLatin1Char('>'));
        for (int i = 0; i < selectors; ++i)
            m_selectors.push_back({QString(), 1, false, 0});
        m_selectors.push_back(
            {QString(), steps, sheet.contains(QLatin1Char('+')), sheet.count(QLatin1Char(':'))});
        return;
    }
    for (int from = 0, begin = 0; (begin = sheet.indexOf(QLatin1Char('{'), from)) >= 0;) {
        int const end = sheet.indexOf(QLatin1Char('}'), begin);
        QStringRef const rule = sheet.midRef(begin, end < 0 ? -1 : end - begin);
        addRule(sheet.mid(from, begin - from), rule.count(QLatin1Char(':')));
        if (end < 0)
            break;
        from = end + 1;
    }
}

void SvgStyleCost::addRule(QString const& selectors, int declarations)
{
    static QRegularExpression const step(QStringLiteral("[\\s>+~]+"));
    for (QString const& each : selectors.split(QLatin1Char(','))) {
        QString const selector = each.trimmed();
        bool const looksBeside =
            selector.contains(QLatin1Char('+')) || selector.contains(QLatin1Char('~'));
        m_selectors.push_back({keyOf(selector), selector.count(step), looksBeside, declarations});
    }
}

double SvgStyleCost::costOf(Selector const& selector) const
{
    bool const fitsAny = selector.key.isEmpty();
    double const fitting = fitsAny ? m_count : m_elements.value(selector.key);
    // The painter finds those of an id without comparing.
    bool const isCompared = !selector.key.startsWith(QLatin1Char('#'));
    double cost = isCompared ? m_count + m_classes / charactersASelector : 0.0;
    cost += fitting * costOfDeclaration * selector.declarations;
    if (selector.steps > 0)
        cost += fitting * selector.steps + std::min(m_depths, fitting * m_greatestDepth);
    if (selector.looksBeside)
        cost += fitting * m_count / neighboursASelector;
    return cost;
}

double SvgStyleCost::cost() const
{
    double sum = 0.0;
    for (Selector const& selector : m_selectors)
        sum += costOf(selector);
    return sum;
}
