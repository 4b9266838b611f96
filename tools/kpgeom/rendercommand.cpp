#include "commandline.h"
#include "common/text.h"
#include "console.h"
#include "document/shortlines.h"
#include "documentinput.h"
#include "paint/colourtext.h"
#include "paint/contactsheet.h"
#include "paint/drawing.h"
#include "pictureoutput.h"
#include "progress.h"

#include <QFileInfo>

#include <algorithm>

namespace {

struct RenderOptions
{
    QString output;
    PictureSettings settings;
    QVector<QSizeF> boxes;
    QVector<int> indices; ///< the outlines to draw; all if empty
    DrawingLayout layout;
    bool isSheet = false;
    bool isWholeFiles = false;
};

void addOptions(CommandLine& line)
{
    line.addOption({{QStringLiteral("o"), QStringLiteral("output")},
        QStringLiteral("Write the picture to <OUT>; its suffix is the format."),
        QStringLiteral("OUT")});
    line.addOption({QStringLiteral("format"),
        QStringLiteral("The format: svg, png or pdf. Needed with -o -."), QStringLiteral("NAME")});
    line.addOption({QStringLiteral("index"),
        QStringLiteral("Draw only outline <N> of each file, counting from 1. Repeatable."),
        QStringLiteral("N")});
    line.addOption({QStringLiteral("size"),
        QStringLiteral("Resize the outlines to this box. Repeatable with --sheet."),
        QStringLiteral("WxH")});
    line.addOption({QStringLiteral("scale"),
        QStringLiteral("Pixels of 1/96 inch a unit. By default 1, or less for a large drawing."),
        QStringLiteral("FACTOR")});
    line.addOption({QStringLiteral("width"),
        QStringLiteral("Make the picture this wide, in pixels of 1/96 inch."),
        QStringLiteral("N")});
    line.addOption({QStringLiteral("height"),
        QStringLiteral("Make the picture this high. With --width the drawing fits into both."),
        QStringLiteral("N")});
    line.addOption({QStringLiteral("margin"),
        QStringLiteral("Leave <N> pixels around the drawing; with --size around just the box, and "
                       "what lies beyond is cut off. By default 10, and nothing is cut off."),
        QStringLiteral("N")});
    line.addOption({QStringLiteral("dpi"),
        QStringLiteral("Dots an inch of a PNG file, by default 96."), QStringLiteral("N")});
    line.addOption({QStringLiteral("background"),
        QStringLiteral("The colour behind the drawing, by default white; none for no ground."),
        QStringLiteral("COLOUR")});
    line.addOption({QStringLiteral("sheet"),
        QStringLiteral("Draw a contact sheet: a cell for each outline and size, with captions.")});
    line.addOption({QStringLiteral("whole-files"),
        QStringLiteral("With --sheet: a cell for each file, its outlines over one another.")});
    line.addOption({QStringLiteral("points"),
        QStringLiteral("Show all points, control points and binding rules.")});
    line.addOption({QStringLiteral("fill-rule"),
        QStringLiteral("nonzero (the default) or evenodd."), QStringLiteral("RULE")});
}

/** A number from the command line, or none if the option is not given. */
struct Measure
{
    char const* name;
    double least;
    std::optional<double>* target;
};

/** What is wrong with the numbers, or nothing. */
std::optional<Diagnostic> readMeasures(
    CommandLine const& line, DrawingLayout& layout, std::optional<double>& dotsPerInch)
{
    Measure const measures[] = {
        {"scale", 0.0, &layout.scale},
        {"width", 0.0, &layout.width},
        {"height", 0.0, &layout.height},
        {"dpi", 1.0, &dotsPerInch},
    };
    for (Measure const& measure : measures) {
        QString const name = QLatin1String(measure.name);
        if (!line.isSet(name))
            continue;
        *measure.target = factorFromText(line.value(name));
        if (!*measure.target || **measure.target < measure.least) {
            return misuse(measure.least > 0.0
                    ? QStringLiteral("--%1 takes a number from %2").arg(name).arg(measure.least)
                    : QStringLiteral("--%1 takes a number greater than 0").arg(name));
        }
    }
    if (!line.isSet(QStringLiteral("margin")))
        return std::nullopt;
    bool isNumber = false;
    double const margin = line.value(QStringLiteral("margin")).toDouble(&isNumber);
    // Written so that NaN fails.
    if (!isNumber || !(margin >= 0.0 && margin <= 1e6))
        return misuse(QStringLiteral("--margin takes a number from 0"));
    layout.margin = margin;
    return std::nullopt;
}

/** What is wrong with the picture's settings, or nothing. */
std::optional<Diagnostic> readSettings(
    CommandLine const& line, std::optional<double> dotsPerInch, PictureSettings& settings)
{
    QString const output = line.value(QStringLiteral("output"));
    auto const format =
        pictureFormat(line.isSet(QStringLiteral("format")) ? line.value(QStringLiteral("format"))
                                                           : QFileInfo(output).suffix());
    if (!format)
        return misuse(QStringLiteral("the picture's format is none of svg, png and pdf"));
    settings.format = *format;
    if (dotsPerInch && settings.format != PictureFormat::Png)
        return misuse(QStringLiteral("--dpi goes with PNG: the other formats have no dots"));
    settings.dotsPerInch = dotsPerInch.value_or(settings.dotsPerInch);
    if (!line.isSet(QStringLiteral("background")))
        return std::nullopt;
    QString const background = line.value(QStringLiteral("background"));
    settings.background =
        background == QLatin1String("none") ? QColor(Qt::transparent) : colourFromText(background);
    if (!settings.background.isValid())
        return misuse(
            QStringLiteral("--background takes a colour or none, not '%1'").arg(background));
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
    for (QString const& text : line.values(QStringLiteral("index"))) {
        int const index = text.toInt();
        if (index < 1)
            return misuse(QStringLiteral("--index takes a number from 1, not '%1'").arg(text));
        options.indices.append(index);
    }
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
    if (options.boxes.size() > 1 && !options.isSheet)
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

/** What is wrong with the options, or nothing. */
std::optional<Diagnostic> readOptions(CommandLine const& line, RenderOptions& options)
{
    options.output = line.value(QStringLiteral("output"));
    if (options.output.isEmpty())
        return misuse(QStringLiteral("no output file given (-o)"));
    std::optional<double> dotsPerInch;
    if (auto fault = readMeasures(line, options.layout, dotsPerInch))
        return fault;
    if (auto fault = readSettings(line, dotsPerInch, options.settings))
        return fault;
    if (auto fault = readSelection(line, options))
        return fault;
    if (auto fault = conflictOf(options))
        return fault;
    if (!options.isSheet && !options.boxes.isEmpty())
        options.layout.box = options.boxes.first();
    return std::nullopt;
}

/** Reports the lines that vanish in the boxes although they are drawn in the document's own. */
void reportLostLines(Figure const& figure, QVector<QSizeF> const& boxes, QString const& operand)
{
    for (QSizeF const& box : boxes) {
        Figure const fitted = resized(figure, box);
        int lost = 0;
        for (std::size_t i = 0; i < figure.parts.size(); ++i)
            lost +=
                countLost(undrawnLines(*figure.parts[i].list), undrawnLines(*fitted.parts[i].list));
        if (lost > 0)
            report(lostLinesIn(box, lost, operand));
    }
}

/** The outlines of one file as figures; false, after a message, if there is none. */
bool appendFigures(QString const& operand, RenderOptions const& options,
    ProgressFunction const& progress, std::vector<Figure>& figures)
{
    auto document = loadDocument(operand, progress);
    if (!document)
        return false;
    Diagnostics diagnostics;
    int const count = static_cast<int>(document->outlines().size());
    if (count == 0 && !document->isSvgPicture())
        diagnostics.error(operand, QStringLiteral("no outline to draw"));
    for (int const index : options.indices) {
        if (index > count && count > 0) {
            diagnostics.error(operand,
                QStringLiteral("there is no outline %1 among its %2")
                    .arg(QString::number(index), QString::number(count)));
            break;
        }
    }
    report(diagnostics);
    if (count == 0 || !diagnostics.isEmpty())
        return false;
    Figure whole {QFileInfo(operand).completeBaseName(), {}};
    for (Outline& outline : document->outlines()) {
        if (!options.indices.isEmpty() && !options.indices.contains(outline.index))
            continue;
        whole.parts.push_back({std::move(outline.list), outline.fillRule});
        if (options.isSheet && !options.isWholeFiles)
            figures.push_back({caption(outline), {whole.parts.back()}});
    }
    reportLostLines(whole, options.boxes, operand);
    if (!options.isSheet || options.isWholeFiles)
        figures.push_back(whole);
    return true;
}

/** What the picture is called in the file's properties. */
QString titleOf(QStringList const& operands)
{
    if (operands.size() > 1)
        return QStringLiteral("Outlines of %1 files").arg(operands.size());
    QString const name = operands.first() == QLatin1String("-")
        ? QStringLiteral("standard input")
        : QFileInfo(operands.first()).fileName();
    return QStringLiteral("Outlines of %1").arg(printable(name));
}

} // namespace

Outcome runRender(Command const& command, QStringList const& arguments)
{
    CommandLine line(command);
    addOptions(line);
    if (auto const end = line.parse(arguments))
        return *end;
    QStringList const operands = line.operands();
    if (operands.isEmpty())
        return line.misused(misuse(QStringLiteral("no file given")));
    RenderOptions options;
    if (auto const fault = readOptions(line, options))
        return line.misused(*fault);

    std::vector<Figure> figures;
    {
        Progress progress(operands);
        for (QString const& operand : operands) {
            progress.step();
            if (!appendFigures(operand, options, progress.ofStep(), figures))
                return Outcome::Failed;
        }
    }
    Picture const picture = options.isSheet
        ? contactSheet(figures, options.boxes, options.layout.style)
        : drawing(joined(figures, options.layout), options.layout);
    options.settings.title = titleOf(operands);
    options.settings.wayOut = options.isSheet
        ? QStringLiteral("draw fewer outlines or sizes, use --whole-files or a smaller --dpi")
        : QStringLiteral("use a smaller --scale, --size, --width, --height or --dpi");
    QString const source =
        operands.size() == 1 ? operands.first() : QStringLiteral("kpgeom render");
    return writePicture(picture, options.settings, source, options.output) ? Outcome::Done
                                                                           : Outcome::Failed;
}
