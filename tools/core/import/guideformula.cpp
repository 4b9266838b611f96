// SPDX-License-Identifier: MIT
#include "import/guideformula.h"

#include <QStringList>
#include <QtMath>

#include <algorithm>
#include <cmath>

namespace {

using Operands = std::array<double, 3>;

double angleOf(double x, double y)
{
    return GuideAngle::fromRadians(std::atan2(y, x));
}

double cosine(double angle)
{
    return std::cos(GuideAngle::toRadians(angle));
}

double sine(double angle)
{
    return std::sin(GuideAngle::toRadians(angle));
}

/** As IEEE 754 has it, for which a sanitizer would stop otherwise. */
double quotient(double dividend, double divisor)
{
    bool const isZero = std::fpclassify(divisor) == FP_ZERO;
    return isZero ? std::numeric_limits<double>::quiet_NaN() : dividend / divisor;
}

// clang-format off
constexpr std::array<GuideOperator, 17> operators {{
    {"*/", 3, [](Operands const& o) { return quotient(o[0] * o[1], o[2]); }},
    {"+-", 3, [](Operands const& o) { return o[0] + o[1] - o[2]; }},
    {"+/", 3, [](Operands const& o) { return quotient(o[0] + o[1], o[2]); }},
    {"?:", 3, [](Operands const& o) { return o[0] > 0.0 ? o[1] : o[2]; }},
    {"abs", 1, [](Operands const& o) { return std::fabs(o[0]); }},
    {"at2", 2, [](Operands const& o) { return angleOf(o[0], o[1]); }},
    {"cat2", 3, [](Operands const& o) { return o[0] * cosine(angleOf(o[1], o[2])); }},
    {"cos", 2, [](Operands const& o) { return o[0] * cosine(o[1]); }},
    {"max", 2, [](Operands const& o) { return std::max(o[0], o[1]); }},
    {"min", 2, [](Operands const& o) { return std::min(o[0], o[1]); }},
    {"mod", 3, [](Operands const& o) { return std::hypot(o[0], o[1], o[2]); }},
    {"pin", 3, [](Operands const& o) { return o[1] < o[0] ? o[0] : std::min(o[1], o[2]); }},
    {"sat2", 3, [](Operands const& o) { return o[0] * sine(angleOf(o[1], o[2])); }},
    {"sin", 2, [](Operands const& o) { return o[0] * sine(o[1]); }},
    {"sqrt", 1, [](Operands const& o) { return std::sqrt(o[0]); }},
    {"tan", 2, [](Operands const& o) { return o[0] * std::tan(GuideAngle::toRadians(o[1])); }},
    {"val", 1, [](Operands const& o) { return o[0]; }},
}};
// clang-format on

/** A guide that every shape has: the sum of these parts of the box and of a turn. */
struct BuiltIn
{
    QString name;
    double width = 0.0;
    double height = 0.0;
    double shorter = 0.0;
    double longer = 0.0;
    double turn = 0.0;
};

std::vector<BuiltIn> allBuiltIns()
{
    std::vector<BuiltIn> result {{QStringLiteral("l")}, {QStringLiteral("t")},
        {QStringLiteral("r"), 1.0}, {QStringLiteral("b"), 0.0, 1.0}, {QStringLiteral("w"), 1.0},
        {QStringLiteral("h"), 0.0, 1.0}, {QStringLiteral("hc"), 0.5},
        {QStringLiteral("vc"), 0.0, 0.5}, {QStringLiteral("ss"), 0.0, 0.0, 1.0},
        {QStringLiteral("ls"), 0.0, 0.0, 0.0, 1.0}};
    for (int const divisor : {2, 3, 4, 5, 6, 8, 10, 12, 16, 32}) {
        QString const suffix = QStringLiteral("d%1").arg(divisor);
        double const part = 1.0 / divisor;
        result.push_back({QStringLiteral("w") + suffix, part});
        result.push_back({QStringLiteral("h") + suffix, 0.0, part});
        result.push_back({QStringLiteral("ss") + suffix, 0.0, 0.0, part});
    }
    for (auto const& [name, part] : {std::pair("cd2", 2.0 / 4), std::pair("cd4", 1.0 / 4),
             std::pair("cd8", 1.0 / 8), std::pair("3cd4", 3.0 / 4), std::pair("3cd8", 3.0 / 8),
             std::pair("5cd8", 5.0 / 8), std::pair("7cd8", 7.0 / 8)})
        result.push_back({QString::fromLatin1(name), 0.0, 0.0, 0.0, 0.0, part});
    return result;
}

std::vector<BuiltIn> const& builtIns()
{
    static std::vector<BuiltIn> const all = allBuiltIns();
    return all;
}

} // namespace

double GuideAngle::toRadians(double angle)
{
    return angle * (2.0 * M_PI / wholeTurn);
}

double GuideAngle::fromRadians(double radians)
{
    return radians * (wholeTurn / (2.0 * M_PI));
}

GuideOperator const* guideOperator(QString const& name)
{
    auto const* const found = std::find_if(operators.begin(), operators.end(),
        [&name](GuideOperator const& known) { return name == QLatin1String(known.name); });
    return found == operators.end() ? nullptr : found;
}

Guides::Guides()
{
    int index = 0;
    for (BuiltIn const& builtIn : builtIns())
        m_indices.insert(builtIn.name, index++);
}

QString Guides::add(QString const& name, QString const& formula, bool isAdjustment)
{
    if (count() >= maximumCount)
        return QStringLiteral("more than %1 guides").arg(maximumCount);
    QStringList const words = formula.simplified().split(QLatin1Char(' '));
    GuideOperator const* const operation = guideOperator(words.first());
    if (!operation)
        return QStringLiteral("'%1' is no operator").arg(words.first());
    if (words.size() <= operation->operandCount) {
        return QStringLiteral("%1 takes %2 operands, not %3")
            .arg(words.first())
            .arg(operation->operandCount)
            .arg(words.size() - 1);
    }
    Formula added {name, isAdjustment, operation, {}};
    for (int i = 0; i < operation->operandCount; ++i) {
        auto const operand = number(words.at(i + 1));
        if (!operand)
            return QStringLiteral("'%1' is no number and no earlier guide").arg(words.at(i + 1));
        added.operands[static_cast<std::size_t>(i)] = *operand;
    }
    m_indices.insert(name, static_cast<int>(builtIns().size()) + count());
    m_formulas.push_back(added);
    return QString();
}

std::optional<GuideNumber> Guides::number(QString const& text) const
{
    QString const name = text.trimmed();
    if (auto const found = m_indices.constFind(name); found != m_indices.constEnd())
        return GuideNumber {0.0, *found};
    bool isNumber = false;
    double const literal = name.toDouble(&isNumber);
    if (isNumber && std::isfinite(literal))
        return GuideNumber {literal, -1};
    return std::nullopt;
}

QStringList Guides::adjustments() const
{
    QStringList result;
    for (Formula const& formula : m_formulas) {
        if (formula.isAdjustment)
            result << formula.name;
    }
    return result;
}

Guides::Values Guides::values(QSizeF const& box, GuideAdjustments const& adjustments) const
{
    Values result;
    result.values.reserve(builtIns().size() + m_formulas.size());
    double const shorter = std::min(box.width(), box.height());
    double const longer = std::max(box.width(), box.height());
    for (BuiltIn const& part : builtIns()) {
        result.values.push_back(part.width * box.width() + part.height * box.height()
            + part.shorter * shorter + part.longer * longer + part.turn * GuideAngle::wholeTurn);
    }
    for (Formula const& formula : m_formulas) {
        Operands operands {};
        for (std::size_t i = 0; i < operands.size(); ++i)
            operands[i] = valueOf(formula.operands[i], result.values);
        double value = formula.operation->apply(operands);
        if (formula.isAdjustment)
            value = adjustments.value(formula.name, value);
        if (!std::isfinite(value)) {
            result.undefined << formula.name;
            value = 0.0;
        }
        result.values.push_back(value);
    }
    return result;
}
