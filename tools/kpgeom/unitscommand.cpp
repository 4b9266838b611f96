// SPDX-License-Identifier: MIT
#include "commandline.h"
#include "console.h"
#include "document/length.h"
#include "suggestion.h"
#include "unitcode_p.h"
#include "unitutil.h"
#include "valuetext.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <optional>

namespace {

constexpr Value unitValue {
    "UNIT", Value::Kind::Word, "px mm cm m km in ft ft-in yd mi pt pc dd cc"};

/** "8.267716535 in", or "0'8.26772\"" in feet and inches. */
QString textIn(unsigned int unit, Length const& length)
{
    if (unit == UnitFeetAndInches)
        return UnitUtil::feetValtoFeetIncheStr(length.in(unit));
    return QStringLiteral("%1 %2").arg(
        QString::number(length.in(unit), 'g', 10), UnitUtil::unitStr(unit));
}

struct UnitsOptions
{
    Length length {};
    std::optional<unsigned int> target;
};

/** What is wrong with the name of a unit, or nothing. */
std::optional<Diagnostic> readUnit(QString const& name, unsigned int& unit)
{
    auto const known = unitFromText(name);
    if (!known)
        return misuse(withSuggestion(
            QStringLiteral("there is no unit '%1'").arg(name), name, wordsOf(unitValue)));
    unit = *known;
    return std::nullopt;
}

/** What is wrong with the operands, or nothing. */
std::optional<Diagnostic> readOperands(QStringList const& operands, UnitsOptions& options)
{
    auto const length = lengthWithUnit(operands.value(0));
    int const needed = length ? 1 : 2;
    if (operands.size() < needed || operands.size() > needed + 1)
        return misuse(QStringLiteral("a number, its unit and perhaps another unit are needed"));
    if (length) {
        options.length = *length;
    } else {
        auto const value = numberFromText(operands.at(0));
        if (!value)
            return misuse(QStringLiteral("'%1' is no number").arg(operands.at(0)));
        options.length.value = *value;
        if (auto fault = readUnit(operands.at(1), options.length.unit))
            return fault;
    }
    if (operands.size() == needed)
        return std::nullopt;
    return readUnit(operands.at(needed), options.target.emplace());
}

QVector<unsigned int> targets(UnitsOptions const& options)
{
    if (options.target)
        return {*options.target};
    QVector<unsigned int> all(static_cast<int>(unitCount));
    std::iota(all.begin(), all.end(), 0U);
    return all;
}

/** What is wrong with what the length is in the units, or nothing. */
std::optional<Diagnostic> lengthFault(UnitsOptions const& options)
{
    for (unsigned int const unit : targets(options)) {
        if (!std::isfinite(options.length.in(unit))) {
            return misuse(
                QStringLiteral("%1 is too large to be told in %2")
                    .arg(textIn(options.length.unit, options.length), UnitUtil::unitStr(unit)));
        }
    }
    return std::nullopt;
}

QString toJson(UnitsOptions const& options)
{
    QJsonObject lengths;
    for (unsigned int const unit : targets(options)) {
        lengths.insert(UnitUtil::unitStr(unit),
            unit == UnitFeetAndInches ? QJsonValue(textIn(unit, options.length))
                                      : QJsonValue(options.length.in(unit)));
    }
    return QString::fromUtf8(QJsonDocument(lengths).toJson());
}

QString toText(UnitsOptions const& options)
{
    QString text;
    for (unsigned int const unit : targets(options))
        text += textIn(unit, options.length) + QLatin1Char('\n');
    return text;
}

/** With "--" before a negative number or length, which would be taken for an option. */
QStringList withNegativeNumber(QStringList arguments)
{
    if (arguments.contains(QStringLiteral("--")))
        return arguments;
    auto const isNegative = [](QString const& argument) {
        bool isNumber = false;
        argument.toDouble(&isNumber);
        return (isNumber || lengthWithUnit(argument)) && argument.startsWith(QLatin1Char('-'));
    };
    int const place = static_cast<int>(
        std::find_if(arguments.cbegin(), arguments.cend(), isNegative) - arguments.cbegin());
    if (place < arguments.size())
        arguments.insert(place, QStringLiteral("--"));
    return arguments;
}

Outcome runUnits(Command const& command, QStringList const& arguments)
{
    CommandLine line(command);
    if (auto const end = line.parse(withNegativeNumber(arguments)))
        return *end;
    UnitsOptions options;
    if (auto const fault = readOperands(line.operands(), options))
        return line.misused(*fault);
    double dpi = 96.0;
    if (line.isSet(QStringLiteral("dpi"))) {
        auto const given = densityFromText(line.value(QStringLiteral("dpi")));
        if (!given)
            return line.misused(misuse(QStringLiteral("--dpi takes a number from 1 to 1000000")));
        dpi = *given;
    }
    UnitUtil::initScreen(dpi, 1.0, QSize(0, 0));
    if (auto const fault = lengthFault(options))
        return line.misused(*fault);
    QString const output = line.isSet(QStringLiteral("json")) ? toJson(options) : toText(options);
    return printOut(output) ? Outcome::Done : Outcome::Failed;
}

constexpr Value lengthValue {"VALUE"};

constexpr CommandOption unitsOptions[] = {
    {"", "dpi", {"N"},
        "Pixels an inch of the screen, which inch, foot and yard follow; 96 if not given."},
    {"", "json", {}, "Print JSON."},
};

} // namespace

constexpr Command unitsCommand {"units", "VALUE UNIT [UNIT]",
    "A number, or a length in one word, like 5mm; options stand before a negative one.",
    {lengthValue, unitValue}, "Converts a length to another unit, or to all.", runUnits,
    {unitsOptions}};
