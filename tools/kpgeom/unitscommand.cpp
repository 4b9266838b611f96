// SPDX-License-Identifier: MIT
#include "commandline.h"
#include "console.h"
#include "suggestion.h"
#include "unitcode_p.h"
#include "unitutil.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <optional>

namespace {

constexpr Value unitValue {
    "UNIT", Value::Kind::Word, "px mm cm m km in ft ft-in yd mi pt pc dd cc"};

/** The code of a unit's name, in any letter case. */
std::optional<unsigned int> unitFromText(QString const& name)
{
    for (unsigned int unit = 0; unit < unitCount; ++unit) {
        if (name.compare(UnitUtil::unitStr(unit), Qt::CaseInsensitive) == 0)
            return unit;
    }
    return std::nullopt;
}

struct Length
{
    double value;
    unsigned int unit;

    double in(unsigned int other) const
    {
        return other == unit ? value
                             : UnitUtil::pixelToUnit(UnitUtil::unitToPixel(value, unit), other);
    }

    /** "8.267716535 in", or "0'8.26772\"" in feet and inches. */
    QString text(unsigned int other) const
    {
        if (other == UnitFeetAndInches)
            return UnitUtil::feetValtoFeetIncheStr(in(other));
        return QStringLiteral("%1 %2").arg(
            QString::number(in(other), 'g', 10), UnitUtil::unitStr(other));
    }
};

struct UnitsOptions
{
    Length length {};
    std::optional<unsigned int> target;
};

Diagnostic unitFault(QString const& name)
{
    return misuse(withSuggestion(
        QStringLiteral("there is no unit '%1'").arg(name), name, wordsOf(unitValue)));
}

/** What is wrong with the operands, or nothing. */
std::optional<Diagnostic> readOperands(QStringList const& operands, UnitsOptions& options)
{
    if (operands.size() < 2 || operands.size() > 3)
        return misuse(QStringLiteral("a number, its unit and perhaps another unit are needed"));
    auto const value = numberFromText(operands.at(0));
    if (!value)
        return misuse(QStringLiteral("'%1' is no number").arg(operands.at(0)));
    options.length.value = *value;
    auto const unit = unitFromText(operands.at(1));
    if (!unit)
        return unitFault(operands.at(1));
    options.length.unit = *unit;
    if (operands.size() == 3) {
        options.target = unitFromText(operands.at(2));
        if (!options.target)
            return unitFault(operands.at(2));
    }
    return std::nullopt;
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
                    .arg(options.length.text(options.length.unit), UnitUtil::unitStr(unit)));
        }
    }
    return std::nullopt;
}

QString toJson(UnitsOptions const& options)
{
    QJsonObject lengths;
    for (unsigned int const unit : targets(options)) {
        lengths.insert(UnitUtil::unitStr(unit),
            unit == UnitFeetAndInches ? QJsonValue(options.length.text(unit))
                                      : QJsonValue(options.length.in(unit)));
    }
    return QString::fromUtf8(QJsonDocument(lengths).toJson());
}

QString toText(UnitsOptions const& options)
{
    QString text;
    for (unsigned int const unit : targets(options))
        text += options.length.text(unit) + QLatin1Char('\n');
    return text;
}

/** With "--" before a negative number, which would be taken for an option. */
QStringList withNegativeNumber(QStringList arguments)
{
    if (arguments.contains(QStringLiteral("--")))
        return arguments;
    auto const isNegative = [](QString const& argument) {
        bool isNumber = false;
        argument.toDouble(&isNumber);
        return isNumber && argument.startsWith(QLatin1Char('-'));
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
        auto const given = numberFromText(line.value(QStringLiteral("dpi")), 1.0, greatestFactor);
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
    "A number; options stand before a negative one.", {lengthValue, unitValue},
    "Converts a length to another unit, or to all.", runUnits, {unitsOptions}};
