#include "commandline.h"
#include "document/outlinedocument.h"
#include "inputoutput.h"
#include "paint/contactsheet.h"
#include "progress.h"

#include <QFileInfo>
#include <QPainter>

#include <algorithm>

namespace {

constexpr double margin = 10.0;

/** A drawing without --scale is made smaller if its longer side exceeds this. */
constexpr double comfortableSide = 2000.0;

struct RenderOptions
{
    QString output;
    PictureFormat format = PictureFormat::Svg;
    QVector<QSizeF> boxes;
    QVector<int> indices; ///< the outlines to draw; all if empty
    std::optional<double> scale;
    OutlineStyle style;
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
        QStringLiteral("Pixels or points a unit. By default 1, or less for a large drawing."),
        QStringLiteral("FACTOR")});
    line.addOption({QStringLiteral("sheet"),
        QStringLiteral("Draw a contact sheet: a cell for each outline and size, with captions.")});
    line.addOption({QStringLiteral("whole-files"),
        QStringLiteral("With --sheet: a cell for each file, its outlines over one another.")});
    line.addOption({QStringLiteral("points"),
        QStringLiteral("Show all points, control points and binding rules.")});
    line.addOption({QStringLiteral("fill-rule"),
        QStringLiteral("nonzero (the default) or evenodd."), QStringLiteral("RULE")});
}

/** What is wrong with the options, or nothing. */
QString readOptions(CommandLine const& line, RenderOptions& options)
{
    options.output = line.value(QStringLiteral("output"));
    if (options.output.isEmpty())
        return QStringLiteral("no output file given (-o)");
    auto const format =
        pictureFormat(line.isSet(QStringLiteral("format")) ? line.value(QStringLiteral("format"))
                                                           : QFileInfo(options.output).suffix());
    if (!format)
        return QStringLiteral("the picture's format is none of svg, png and pdf");
    options.format = *format;
    for (QString const& text : line.values(QStringLiteral("size"))) {
        auto const box = sizeFromText(text);
        if (!box)
            return QStringLiteral("--size takes a box like 240x160, not '%1'").arg(text);
        options.boxes.append(*box);
    }
    for (QString const& text : line.values(QStringLiteral("index"))) {
        int const index = text.toInt();
        if (index < 1)
            return QStringLiteral("--index takes a number from 1, not '%1'").arg(text);
        options.indices.append(index);
    }
    if (line.isSet(QStringLiteral("scale"))) {
        options.scale = factorFromText(line.value(QStringLiteral("scale")));
        if (!options.scale)
            return QStringLiteral("--scale takes a number greater than 0");
    }
    QString const fillRule = line.value(QStringLiteral("fill-rule"));
    if (fillRule == QLatin1String("evenodd"))
        options.style.fillRule = Qt::OddEvenFill;
    else if (!fillRule.isEmpty() && fillRule != QLatin1String("nonzero"))
        return QStringLiteral("--fill-rule takes nonzero or evenodd, not '%1'").arg(fillRule);
    options.style.showsPoints = line.isSet(QStringLiteral("points"));
    options.isSheet = line.isSet(QStringLiteral("sheet"));
    options.isWholeFiles = line.isSet(QStringLiteral("whole-files"));
    if (options.isWholeFiles && !options.isSheet)
        return QStringLiteral("--whole-files goes with --sheet");
    if (options.boxes.size() > 1 && !options.isSheet)
        return QStringLiteral("several sizes need --sheet");
    if (options.scale && options.isSheet)
        return QStringLiteral("--scale does not go with --sheet: figures fill their cells");
    return QString();
}

/** The outlines of one file as figures; false, after an error message, if there is none. */
bool appendFigures(QString const& file, RenderOptions const& options, std::vector<Figure>& figures)
{
    auto document = OutlineDocument::load(file);
    if (!document)
        return false;
    int const count = static_cast<int>(document->outlines().size());
    for (int const index : options.indices) {
        if (index > count) {
            printError(QStringLiteral("%1: there is no outline %2 among its %3")
                           .arg(displayName(file), QString::number(index), QString::number(count)));
            return false;
        }
    }
    Figure whole {QFileInfo(file).completeBaseName(), {}};
    for (Outline& outline : document->outlines()) {
        if (!options.indices.isEmpty() && !options.indices.contains(outline.index))
            continue;
        std::shared_ptr<KpPathSegList> const list(std::move(outline.list));
        if (options.isSheet && !options.isWholeFiles)
            figures.push_back({caption(outline), {list}});
        else
            whole.outlines.push_back(list);
    }
    if (count == 0) {
        printError(QStringLiteral("%1: no outline to draw").arg(displayName(file)));
        return false;
    }
    if (!whole.outlines.empty())
        figures.push_back(whole);
    return true;
}

/** All figures over one another, one unit a pixel unless that is too large. */
Picture plainPicture(std::vector<Figure> const& figures, RenderOptions const& options)
{
    Figure all;
    for (Figure const& figure : figures) {
        Figure const& shown =
            options.boxes.isEmpty() ? figure : resized(figure, options.boxes.first());
        all.outlines.insert(all.outlines.end(), shown.outlines.begin(), shown.outlines.end());
    }
    QRectF bounds = boundsOf(all, options.style);
    if (!options.boxes.isEmpty())
        bounds = bounds.united(QRectF(QPointF(0.0, 0.0), options.boxes.first()));
    double const longest = std::max(bounds.width(), bounds.height());
    double const scale = options.scale.value_or(std::min(1.0, comfortableSide / longest));
    QSizeF size = scale * bounds.size() + QSizeF(2.0 * margin, 2.0 * margin);
    QPointF const origin = QPointF(margin, margin) - scale * bounds.topLeft();
    QPointF const legendPlace(margin, size.height());
    if (options.style.showsPoints) {
        QSizeF const legend = OutlinePainter::legendSize();
        size = QSizeF(
            std::max(size.width(), legend.width() + 2.0 * margin), size.height() + legend.height());
    }
    auto const paint = [=, style = options.style](QPainter& painter) {
        OutlinePainter outlinePainter(painter, style);
        QTransform const toPicture =
            QTransform::fromScale(scale, scale) * QTransform::fromTranslate(origin.x(), origin.y());
        for (auto const& list : all.outlines)
            outlinePainter.draw(*list, toPicture);
        if (style.showsPoints)
            outlinePainter.drawLegend(legendPlace);
    };
    return {size, paint};
}

} // namespace

Outcome runRender(Command const& command, QStringList const& arguments)
{
    CommandLine line(command);
    addOptions(line);
    if (auto const end = line.parse(arguments))
        return *end;
    if (line.operands().isEmpty())
        return line.misused(QStringLiteral("no file given"));
    RenderOptions options;
    if (QString const fault = readOptions(line, options); !fault.isEmpty())
        return line.misused(fault);

    std::vector<Figure> figures;
    {
        Progress progress(line.operands().size());
        for (QString const& file : line.operands()) {
            progress.step();
            if (!appendFigures(file, options, figures))
                return Outcome::Failed;
        }
    }
    Picture const picture = options.isSheet ? contactSheet(figures, options.boxes, options.style)
                                            : plainPicture(figures, options);
    QString error;
    auto const content = toFile(picture, options.format, error);
    if (!content) {
        QString const source = line.operands().size() == 1 ? displayName(line.operands().first())
                                                           : QStringLiteral("kpgeom render");
        printError(QStringLiteral("%1: %2").arg(source, error));
        return Outcome::Failed;
    }
    return writeOutput(options.output, *content) ? Outcome::Done : Outcome::Failed;
}
