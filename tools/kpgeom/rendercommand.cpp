#include "common/text.h"
#include "console.h"
#include "document/shapebox.h"
#include "document/shortlines.h"
#include "documentinput.h"
#include "export/custgeom.h"
#include "export/htmlpage.h"
#include "paint/contactsheet.h"
#include "pictureoutput.h"
#include "progress.h"
#include "renderoptions.h"

#include <QFileInfo>

namespace {

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

/** Appends the outlines of one document as figures. */
void appendFigures(OutlineDocument& document, RenderOptions const& options, QString const& operand,
    std::vector<Figure>& figures)
{
    Figure whole {QFileInfo(operand).completeBaseName(), {}};
    for (Outline& outline : document.outlines()) {
        if (!options.indices.isEmpty() && !options.indices.contains(outline.index))
            continue;
        whole.parts.push_back({std::move(outline.list), outline.fillRule});
        if (options.isSheet && !options.isWholeFiles)
            figures.push_back({caption(outline), {whole.parts.back()}});
    }
    reportLostLines(whole, options.boxes, operand);
    if (!options.isSheet || options.isWholeFiles)
        figures.push_back(whole);
}

/** What standard input or a file is called. */
QString nameOf(QString const& operand)
{
    return operand == QLatin1String("-") ? QStringLiteral("standard input")
                                         : printable(QFileInfo(operand).fileName());
}

/** Likewise without the suffix, unless there is nothing else. */
QString baseNameOf(QString const& operand)
{
    QString const base = printable(QFileInfo(operand).completeBaseName());
    return operand == QLatin1String("-") || base.isEmpty() ? nameOf(operand) : base;
}

/** What the picture is called in the file's properties. */
QString titleOf(QStringList const& operands)
{
    if (operands.size() > 1)
        return QStringLiteral("Outlines of %1 files").arg(operands.size());
    return QStringLiteral("Outlines of %1").arg(nameOf(operands.first()));
}

/** Which input a message about all of them names. */
QString sourceOf(QStringList const& operands)
{
    return operands.size() == 1 ? operands.first() : QStringLiteral("kpgeom render");
}

bool drawPicture(
    std::vector<Figure> const& figures, RenderOptions const& options, QStringList const& operands)
{
    Picture const picture = options.isSheet
        ? contactSheet(figures, options.boxes, options.layout.style)
        : drawing(joined(figures, options.layout), options.layout);
    PictureSettings settings = options.settings;
    settings.title = titleOf(operands);
    settings.wayOut = options.isSheet
        ? QStringLiteral("draw fewer outlines or sizes, use --whole-files or a smaller --dpi")
        : QStringLiteral("use a smaller --scale, --size, --width, --height or --dpi");
    return writePicture(picture, settings, sourceOf(operands), options.output);
}

/** The outlines of one file, to be written with their rules. */
CustomShape customShapeOf(
    OutlineDocument& document, RenderOptions const& options, QString const& operand)
{
    CustomShape shape {baseNameOf(operand), operand, {}, takeShapes(document, options.indices)};
    for (Shape& outline : shape.outlines) {
        if (options.layout.style.fillRule)
            outline.fillRule = options.layout.style.fillRule;
    }
    if (shape.outlines.size() == 1 && !shape.outlines.front().name.isEmpty())
        shape.name = shape.outlines.front().name;
    shape.box = options.layout.box.value_or(boxOf(shape.outlines));
    return shape;
}

bool writePage(std::vector<CustomShape> const& shapes, RenderOptions const& options,
    QStringList const& operands)
{
    Shapes all;
    for (CustomShape const& shape : shapes)
        all.insert(all.end(), shape.outlines.begin(), shape.outlines.end());
    PageSettings const page {shapes.size() == 1 ? shapes.front().name : titleOf(operands),
        options.layout.box.value_or(boxOf(all)), options.layout.style.showsPoints,
        options.settings.background};
    return writeOutput(options.output, htmlPage(all, page));
}

bool writeCustomShapes(std::vector<CustomShape> const& shapes, RenderOptions const& options)
{
    Diagnostics diagnostics;
    auto const content = custGeomDocument(shapes, diagnostics);
    report(diagnostics);
    return content && writeOutput(options.output, *content);
}

} // namespace

Outcome runRender(Command const& command, QStringList const& arguments)
{
    CommandLine line(command);
    addRenderOptions(line);
    if (auto const end = line.parse(arguments))
        return *end;
    QStringList const operands = line.operands();
    if (operands.isEmpty())
        return line.misused(misuse(QStringLiteral("no file given")));
    RenderOptions options;
    if (auto const fault = readRenderOptions(line, options))
        return line.misused(*fault);

    std::vector<Figure> figures;
    std::vector<CustomShape> shapes;
    {
        Progress progress(operands);
        for (QString const& operand : operands) {
            progress.step();
            auto document = loadOutlines(operand, options.indices, progress.ofStep());
            if (!document)
                return Outcome::Failed;
            if (options.target == RenderTarget::Picture)
                appendFigures(*document, options, operand, figures);
            else
                shapes.push_back(customShapeOf(*document, options, operand));
        }
    }
    bool isWritten = false;
    switch (options.target) {
    case RenderTarget::Picture:
        isWritten = drawPicture(figures, options, operands);
        break;
    case RenderTarget::Page:
        isWritten = writePage(shapes, options, operands);
        break;
    case RenderTarget::CustomShapes:
        isWritten = writeCustomShapes(shapes, options);
        break;
    }
    return isWritten ? Outcome::Done : Outcome::Failed;
}
