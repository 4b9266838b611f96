// SPDX-License-Identifier: MIT
#include "batch.h"
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

#include <utility>

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
    Figure whole {wellFormed(QFileInfo(operand).completeBaseName()), {}};
    for (Outline& outline : document.outlines()) {
        if (!options.indices.isEmpty() && !options.indices.contains(outline.index))
            continue;
        whole.parts.push_back({std::move(outline.list), outline.fillRule, outline.appearance});
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

/** Reads files and makes one thing of all. */
class Rendering
{
public:
    explicit Rendering(RenderOptions options)
        : m_options(std::move(options))
    {
    }

    /** False, after a message, if one cannot be read. */
    bool read(QStringList const& operands)
    {
        m_operands = operands;
        Progress progress(operands);
        for (QString const& operand : operands) {
            progress.step();
            auto document = loadOutlines(operand, m_options.indices, progress.ofStep());
            if (!document)
                return false;
            if (m_options.target == RenderTarget::Picture)
                appendFigures(*document, m_options, operand, m_figures);
            else
                m_shapes.push_back(customShapeOf(*document, m_options, operand));
        }
        return true;
    }

    bool write() const
    {
        switch (m_options.target) {
        case RenderTarget::Picture:
            return drawPicture(m_figures, m_options, m_operands);
        case RenderTarget::Page:
            return writePage(m_shapes, m_options, m_operands);
        case RenderTarget::CustomShapes:
            return writeCustomShapes(m_shapes, m_options);
        }
        return false;
    }

    /** Draws it as large as an option says, by its number. */
    bool write(int size, QString const& output)
    {
        m_options.output = output;
        if (!m_options.isSheet && !m_options.boxes.isEmpty())
            m_options.layout.box = m_options.boxes.at(size);
        return write();
    }

private:
    RenderOptions m_options;
    QStringList m_operands;
    std::vector<Figure> m_figures;
    std::vector<CustomShape> m_shapes;
};

Outcome renderFile(RenderOptions const& options, BatchJob const& job)
{
    Rendering rendering(options);
    if (!rendering.read({job.input}))
        return Outcome::Failed;
    for (int i = 0; i < job.outputs.size(); ++i) {
        if (!rendering.write(i, job.outputs.at(i)))
            return Outcome::Failed;
    }
    return Outcome::Done;
}

/** What outputs in a folder are called: as --format says, or else the folder itself. */
QString suffixOf(CommandLine const& line, RenderOptions const& options)
{
    if (options.target == RenderTarget::CustomShapes)
        return QStringLiteral("custgeom.xml");
    QString const format = line.value(QStringLiteral("format"));
    return format.isEmpty() ? QFileInfo(options.output).suffix() : format.toLower();
}

Outcome runRender(Command const& command, QStringList const& arguments)
{
    CommandLine line(command);
    if (auto const end = line.parse(arguments))
        return *end;
    line.fallBackOnStandardInput();
    if (line.operands().isEmpty())
        return line.misused(misuse(QStringLiteral("no file given")));
    RenderOptions options;
    if (auto const fault = readRenderOptions(line, options))
        return line.misused(*fault);
    if (options.isEach) {
        return runBatch(line,
            {line.suffixes(), options.output, suffixOf(line, options),
                options.isSheet ? QVector<QSizeF>() : options.boxes,
                [&](BatchJob const& job) { return renderFile(options, job); }, true});
    }
    QStringList operands;
    if (auto const end = readOperands(line, line.suffixes(), operands))
        return *end;
    Rendering rendering(options);
    return rendering.read(operands) && rendering.write() ? Outcome::Done : Outcome::Failed;
}

} // namespace

constexpr Command renderCommand {"render", "FILE... -o OUT.{svg,png,pdf}", fileHelp,
    {documentValue, documentValue}, "Draws outlines.", runRender, {renderOptions, batchOptions}};
