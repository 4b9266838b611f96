// SPDX-License-Identifier: MIT
#include "renderoptions.h"

#include "batch.h"
#include "document/outlinedocument.h"
#include "documentinput.h"
#include "outputname.h"
#include "paint/colourtext.h"
#include "suggestion.h"
#include "valuetext.h"

#include <QFileInfo>

namespace {

/** A number from the command line, or none if the option is not given. */
struct Measure
{
    char const* name;
    std::optional<double> (*read)(QString const& text);
    char const* range; ///< of what is read
    std::optional<double>* target;
};

/** What is wrong with the numbers, or nothing. */
std::optional<Diagnostic> readMeasures(
    CommandLine const& line, DrawingLayout& layout, std::optional<double>& dotsPerInch)
{
    Measure const measures[] = {
        {"scale", factorFromText, "greater than 0 and at most 1000000", &layout.scale},
        {"width", sideFromText, "greater than 0 and at most 1000000", &layout.width},
        {"height", sideFromText, "greater than 0 and at most 1000000", &layout.height},
        {"dpi", densityFromText, "from 1 to 1000000", &dotsPerInch},
        {"margin", marginFromText, "from 0 to 1000000", &layout.margin},
    };
    for (Measure const& measure : measures) {
        QString const name = QLatin1String(measure.name);
        if (!line.isSet(name))
            continue;
        *measure.target = measure.read(line.value(name));
        if (!*measure.target) {
            return misuse(
                QStringLiteral("--%1 takes a number %2").arg(name, QLatin1String(measure.range)));
        }
    }
    return std::nullopt;
}

struct NamedTarget
{
    char const* format; ///< in --format
    char const* suffix; ///< of a file
    RenderTarget target;
};

constexpr NamedTarget namedTargets[] = {
    {"html", ".html", RenderTarget::Page},
    {"htm", ".htm", RenderTarget::Page},
    {"custgeom", ".custgeom.xml", RenderTarget::CustomShapes},
};

/** What is wrong with the format, or nothing. */
std::optional<Diagnostic> readTarget(CommandLine const& line, RenderOptions& options)
{
    bool const isNamed = line.isSet(QStringLiteral("format"));
    QString const format = line.value(QStringLiteral("format"));
    for (NamedTarget const& named : namedTargets) {
        bool const isMeant = isNamed
            ? format.compare(QLatin1String(named.format), Qt::CaseInsensitive) == 0
            : options.output.endsWith(QLatin1String(named.suffix), Qt::CaseInsensitive);
        if (isMeant) {
            options.target = named.target;
            return std::nullopt;
        }
    }
    auto const picture = pictureFormat(isNamed ? format : QFileInfo(options.output).suffix());
    if (!picture)
        return misuse(QStringLiteral("the format is none of svg, png, pdf, html and custgeom.xml"));
    options.settings.format = *picture;
    return std::nullopt;
}

/** What goes with pictures, and with what else. */
struct PictureOption
{
    char const* name;
    bool isForPages;
};

constexpr PictureOption pictureOptions[] = {
    {"scale", false},
    {"width", false},
    {"height", false},
    {"margin", false},
    {"sheet", false},
    {"whole-files", false},
    {"background", true},
    {"points", true},
    {"fill-rule", true},
};

/** What is given that does not go with the target, or nothing. */
std::optional<Diagnostic> strangeOption(CommandLine const& line, RenderTarget target)
{
    if (target == RenderTarget::Picture)
        return std::nullopt;
    bool const isPage = target == RenderTarget::Page;
    QString const what = isPage ? QStringLiteral("html") : QStringLiteral("custgeom.xml");
    for (PictureOption const& option : pictureOptions) {
        QString const name = QLatin1String(option.name);
        if (line.isSet(name) && !(isPage && option.isForPages)) {
            return misuse(option.isForPages
                    ? QStringLiteral("--%1 goes with pictures and html, not with %2")
                          .arg(name, what)
                    : QStringLiteral("--%1 goes with pictures, not with %2").arg(name, what));
        }
    }
    if (line.values(QStringLiteral("size")).size() > 1)
        return misuse(QStringLiteral("only one --size goes with %1").arg(what));
    return std::nullopt;
}

/** What is wrong with the picture's settings, or nothing. */
std::optional<Diagnostic> readSettings(
    CommandLine const& line, std::optional<double> dotsPerInch, RenderOptions& options)
{
    PictureSettings& settings = options.settings;
    bool const hasDots =
        options.target == RenderTarget::Picture && settings.format == PictureFormat::Png;
    if (dotsPerInch && !hasDots)
        return misuse(QStringLiteral("--dpi goes with PNG: the other formats have no dots"));
    settings.dotsPerInch = dotsPerInch.value_or(settings.dotsPerInch);
    if (!line.isSet(QStringLiteral("background"))) {
        if (options.target == RenderTarget::Page)
            settings.background = QColor();
        return std::nullopt;
    }
    QString const background = line.value(QStringLiteral("background"));
    settings.background =
        background == QLatin1String("none") ? QColor(Qt::transparent) : colourFromText(background);
    if (!settings.background.isValid())
        return misuse(withSuggestion(
            QStringLiteral("--background takes a colour or none, not '%1'").arg(background),
            background, QColor::colorNames()));
    return std::nullopt;
}

/** What is wrong with the choice of outlines and how they are drawn, or nothing. */
std::optional<Diagnostic> readSelection(CommandLine const& line, RenderOptions& options)
{
    for (QString const& text : line.values(QStringLiteral("size"))) {
        auto const box = sizeFromText(text);
        if (!box)
            return misuse(QStringLiteral("--size takes a box like 240x160, not '%1'").arg(text));
        options.boxes.append(*box);
    }
    if (auto fault = readIndices(line.values(QStringLiteral("index")), options.indices))
        return fault;
    if (line.isSet(QStringLiteral("fill-rule"))) {
        QString const text = line.value(QStringLiteral("fill-rule"));
        options.layout.style.fillRule = fillRuleFromText(text);
        if (!options.layout.style.fillRule)
            return misuse(
                QStringLiteral("--fill-rule takes nonzero or evenodd, not '%1'").arg(text));
    }
    options.layout.style.showsPoints = line.isSet(QStringLiteral("points"));
    options.isSheet = line.isSet(QStringLiteral("sheet"));
    options.isWholeFiles = line.isSet(QStringLiteral("whole-files"));
    return std::nullopt;
}

/** What of the options does not go together, or nothing. */
std::optional<Diagnostic> conflictOf(RenderOptions const& options)
{
    DrawingLayout const& layout = options.layout;
    if (options.isWholeFiles && !options.isSheet)
        return misuse(QStringLiteral("--whole-files goes with --sheet"));
    if (options.boxes.size() > 1 && !options.isSheet && isOutputPattern(options.output)
        && !options.output.contains(QLatin1String("{size}")))
        return misuse(QStringLiteral("several sizes need {size} in -o, or --sheet"));
    if (options.boxes.size() > 1 && !options.isSheet && !options.isEach)
        return misuse(QStringLiteral("several sizes need --sheet"));
    if (layout.scale && options.isSheet)
        return misuse(QStringLiteral("--scale does not go with --sheet: figures fill their cells"));
    if ((layout.width || layout.height || layout.margin) && options.isSheet)
        return misuse(QStringLiteral("--width, --height and --margin do not go with --sheet"));
    if (layout.scale && (layout.width || layout.height))
        return misuse(QStringLiteral("--scale does not go with --width or --height"));
    if (!hasRoom(layout))
        return misuse(QStringLiteral("--width and --height leave no room within the --margin"));
    return std::nullopt;
}

} // namespace

constexpr CommandOption renderOptions[14] = {
    {"o", "output", {"OUT", Value::Kind::File},
        "Write to <OUT>; its suffix is the format: a picture (svg, png, pdf), a page with a box to "
        "drag (html), or DrawingML (custgeom.xml). For a file a picture a folder, \"DIR/\", or a "
        "pattern with \"{name}\", \"{path}\" or \"{size}\"."},
    {"", "format", {"NAME", Value::Kind::Word, "svg png pdf html custgeom"},
        "The format: svg, png, pdf, html or custgeom. Needed with -o -."},
    {"", "index", {"N"}, "Draw only outline <N> of each file, counting from 1. Repeatable."},
    {"", "size", {"WxH"},
        "Resize the outlines to this box, a page's at first. Repeatable with --sheet, or for a "
        "picture a size."},
    {"", "scale", {"FACTOR"},
        "Pixels of 1/96 inch a unit. By default 1, or less for a large drawing."},
    {"", "width", {"N"}, "Make the picture this wide, in pixels of 1/96 inch."},
    {"", "height", {"N"}, "Make the picture this high. With --width the drawing fits into both."},
    {"", "margin", {"N"},
        "Leave <N> pixels around the drawing; with --size around just the box, and what lies "
        "beyond is cut off. By default 10, and nothing is cut off."},
    {"", "dpi", {"N"}, "Dots an inch of a PNG file, by default 96."},
    {"", "background", {"COLOUR"},
        "The colour behind the drawing, by default white, of a page as the screen is; none for no "
        "ground."},
    {"", "sheet", {}, "Draw a contact sheet: a cell for each outline and size, with captions."},
    {"", "whole-files", {}, "With --sheet: a cell for each file, its outlines over one another."},
    {"", "points", {}, "Show all points, control points and binding rules; a page, at first."},
    {"", "fill-rule", {"RULE", Value::Kind::Word, "nonzero evenodd"},
        "nonzero (the default) or evenodd."},
};

std::optional<Diagnostic> readRenderOptions(CommandLine const& line, RenderOptions& options)
{
    options.output = line.file(QStringLiteral("output"));
    if (options.output.isEmpty())
        return misuse(QStringLiteral("no output file given (-o)"));
    options.isEach = isBatch(line, options.output);
    std::optional<double> dotsPerInch;
    if (auto fault = readMeasures(line, options.layout, dotsPerInch))
        return fault;
    if (auto fault = readTarget(line, options))
        return fault;
    if (auto fault = strangeOption(line, options.target))
        return fault;
    if (auto fault = readSettings(line, dotsPerInch, options))
        return fault;
    if (auto fault = readSelection(line, options))
        return fault;
    if (auto fault = conflictOf(options))
        return fault;
    if (!options.isSheet && !options.boxes.isEmpty())
        options.layout.box = options.boxes.first();
    return std::nullopt;
}
