// SPDX-License-Identifier: MIT
#include "colorutil.h"
#include "commandline.h"
#include "console.h"
#include "kpcolor.h"
#include "paint/colourtext.h"
#include "paint/themetable.h"
#include "pictureoutput.h"
#include "suggestion.h"
#include "texttable.h"
#include "valuetext.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <unistd.h>

namespace {

constexpr Value transformValue {"TRANSFORM", Value::Kind::Assignment,
    "tint shade comp inv gray alpha alphaOff alphaMod hue hueOff hueMod sat satOff satMod lum "
    "lumOff lumMod red redOff redMod green greenOff greenMod blue blueOff blueMod gamma invGamma"};

/** A named transform with its value, as given on the command line. */
struct Step
{
    QString text;
    QString name;
    ColorUtil::ColorFunc apply;
    double value;
};

struct ColourOptions
{
    QVector<QColor> colours;
    std::vector<Step> steps;
    QString swatches; ///< the file for the theme table, or empty
    PictureFormat format = PictureFormat::Png;
    bool compares = false;
};

/** What is wrong with the transform, or nothing. */
std::optional<Diagnostic> appendStep(QString const& text, std::vector<Step>& steps)
{
    QString const name = text.section(QLatin1Char('='), 0, 0);
    ColorUtil::ColorFunc const function = ColorUtil::getColorFunc(name);
    if (!function)
        return misuse(withSuggestion(
            QStringLiteral("there is no transform '%1'").arg(name), name, wordsOf(transformValue)));
    auto const value = amountFromText(text.section(QLatin1Char('='), 1));
    if (!value)
        return misuse(QStringLiteral("'%1' does not end in a number").arg(text));
    steps.push_back({text, name, function, *value});
    return std::nullopt;
}

/** What is wrong with the arguments, or nothing. */
std::optional<Diagnostic> readOptions(CommandLine const& line, ColourOptions& options)
{
    for (QString const& operand : line.operands()) {
        if (operand.contains(QLatin1Char('='))) {
            if (auto fault = appendStep(operand, options.steps))
                return fault;
            continue;
        }
        QColor const colour = colourFromText(operand);
        if (!colour.isValid())
            return misuse(withSuggestion(
                QStringLiteral("'%1' is no colour").arg(operand), operand, QColor::colorNames()));
        options.colours.append(colour);
    }
    if (options.colours.isEmpty())
        return misuse(QStringLiteral("no colour given"));
    options.compares = line.isSet(QStringLiteral("compare"));
    if (!line.isSet(QStringLiteral("swatches")))
        return options.compares
            ? std::optional(misuse(QStringLiteral("--compare goes with --swatches")))
            : std::nullopt;
    options.swatches = line.file(QStringLiteral("swatches"));
    auto const format = pictureFormat(QFileInfo(options.swatches).suffix());
    if (!format)
        return misuse(QStringLiteral("the picture's format is none of svg, png and pdf"));
    options.format = *format;
    return std::nullopt;
}

/** Whether standard output shows colours. */
bool showsColours()
{
    QByteArray const terminal = qgetenv("TERM");
    return isatty(STDOUT_FILENO) != 0 && !terminal.isEmpty() && terminal != "dumb"
        && qEnvironmentVariableIsEmpty("NO_COLOR");
}

QString terminalSwatch(QColor const& colour)
{
    return QStringLiteral("\x1b[48;2;%1;%2;%3m      \x1b[0m")
        .arg(colour.red())
        .arg(colour.green())
        .arg(colour.blue());
}

QString percentText(double fraction)
{
    return QString::number(100.0 * fraction, 'f', 1) + QStringLiteral(" %");
}

QString hueText(QColor const& colour)
{
    double const hue = colour.hslHueF();
    return hue < 0.0 ? QStringLiteral("-") : QString::number(360.0 * hue, 'f', 1) + QChar(0x00b0);
}

QStringList tableRow(QString const& step, QColor const& colour, bool withSwatch)
{
    QStringList row {step, ColorUtil::RGBToString(colour), ColorUtil::RGBToStringPPT(colour),
        ColorUtil::RGBToString4(colour), hueText(colour), percentText(colour.hslSaturationF()),
        percentText(colour.lightnessF()), percentText(colour.alphaF())};
    if (withSwatch)
        row << terminalSwatch(colour);
    return row;
}

QJsonObject toJson(QColor const& colour)
{
    double const hue = colour.hslHueF();
    return {{QStringLiteral("rgb"), ColorUtil::RGBToString(colour)},
        {QStringLiteral("argb"), ColorUtil::RGBToString4(colour)},
        {QStringLiteral("red"), colour.red()}, {QStringLiteral("green"), colour.green()},
        {QStringLiteral("blue"), colour.blue()}, {QStringLiteral("alpha"), colour.alpha()},
        {QStringLiteral("hue"), hue < 0.0 ? QJsonValue() : QJsonValue(hue)},
        {QStringLiteral("saturation"), colour.hslSaturationF()},
        {QStringLiteral("lightness"), colour.lightnessF()}};
}

/** Calls `visit` with the colour as given and after every transform, and what led to it. */
template <class Visitor>
KpColor applySteps(QColor const& given, std::vector<Step> const& steps, Visitor visit)
{
    KpColor colour(given);
    visit(given.name(QColor::HexArgb), colour);
    for (Step const& step : steps) {
        step.apply(colour, step.value);
        visit(step.text, colour);
    }
    return colour;
}

QString toText(ColourOptions const& options)
{
    bool const withSwatch = showsColours();
    QStringList header {QStringLiteral("step"), QStringLiteral("#RRGGBB"), QStringLiteral("RRGGBB"),
        QStringLiteral("#AARRGGBB"), QStringLiteral(">hue"), QStringLiteral(">saturation"),
        QStringLiteral(">lightness"), QStringLiteral(">alpha")};
    if (withSwatch)
        header << QString();
    TextTable table(header);
    for (QColor const& given : options.colours) {
        applySteps(given, options.steps, [&](QString const& step, QColor const& colour) {
            table.addRow(tableRow(step, colour, withSwatch));
        });
    }
    return table.toText();
}

QString toJson(ColourOptions const& options)
{
    QJsonArray colours;
    for (QColor const& given : options.colours) {
        QJsonArray steps;
        KpColor const result =
            applySteps(given, options.steps, [&](QString const& step, QColor const& colour) {
                QJsonObject object = toJson(colour);
                object.insert(QStringLiteral("step"), step);
                steps.append(object);
            });
        colours.append(QJsonObject {
            {QStringLiteral("result"), toJson(result)}, {QStringLiteral("steps"), steps}});
    }
    return QString::fromUtf8(QJsonDocument(colours).toJson());
}

bool drawSwatches(ColourOptions const& options)
{
    QVector<QColor> references;
    for (QColor const& given : options.colours)
        references.append(applySteps(given, options.steps, [](QString const&, QColor const&) {}));
    PictureSettings settings;
    settings.format = options.format;
    settings.title = QStringLiteral("Tints and shades");
    settings.wayOut = QStringLiteral("draw fewer colours at a time");
    return writePicture(themeTable(references, options.compares), settings,
        QStringLiteral("kpgeom colour"), options.swatches);
}

Outcome runColour(Command const& command, QStringList const& arguments)
{
    CommandLine line(command);
    if (auto const end = line.parse(arguments))
        return *end;
    ColourOptions options;
    if (auto const fault = readOptions(line, options))
        return line.misused(*fault);
    if (!options.swatches.isEmpty() && !drawSwatches(options))
        return Outcome::Failed;
    QString const output = line.isSet(QStringLiteral("json")) ? toJson(options) : toText(options);
    return printOut(output) ? Outcome::Done : Outcome::Failed;
}

constexpr Value colourValue {"COLOUR"};

constexpr CommandOption colourOptions[] = {
    {"", "swatches", {"OUT", Value::Kind::File, "svg png pdf"},
        "Draw a theme table: the colours across, their tints and shades down."},
    {"", "compare", {}, "With --swatches: beside each the same mix of the encoded values."},
    {"", "json", {}, "Print JSON instead of a table."},
};

} // namespace

constexpr Command colourCommand {"colour", "COLOUR... [TRANSFORM=VALUE...]",
    "\"#RRGGBB\", also without the sign, \"#AARRGGBB\", \"rgb(R,G,B)\", or a name.",
    {colourValue, transformValue}, "Applies colour transforms in order.", runColour,
    {colourOptions}, "color"};
