// SPDX-License-Identifier: MIT
#include "batch.h"
#include "commandline.h"
#include "common/text.h"
#include "console.h"
#include "document/outlinedocument.h"
#include "document/shapeformat.h"
#include "document/shapes.h"
#include "import/anyimport.h"
#include "import/drawingmlimport.h"
#include "import/pathimport.h"
#include "import/textimport.h"
#include "presetconversion.h"
#include "process/messagelog.h"
#include "valuetext.h"
#include "xmltext_p.h"

#include <QDomDocument>

namespace {

/** As shapesDocument(), but by the DOM writer. */
QByteArray domDocument(Shapes const& shapes)
{
    QDomDocument document;
    document.appendChild(document.createProcessingInstruction(
        QStringLiteral("xml"), QStringLiteral("version=\"1.0\" encoding=\"UTF-8\"")));
    QDomElement root = document.createElement(ShapeFormat::shapes());
    document.appendChild(root);
    for (Shape const& shape : shapes) {
        QDomElement element = document.createElement(ShapeFormat::shape());
        element.setAttribute(
            ShapeFormat::name(), XmlText::readable(shape.name, XmlText::Controls::AreReplaced));
        element.setAttribute(ShapeFormat::width(), numberText(shape.box.width()));
        element.setAttribute(ShapeFormat::height(), numberText(shape.box.height()));
        if (shape.fillRule)
            element.setAttribute(ShapeFormat::fillRule(), fillRuleText(*shape.fillRule));
        root.appendChild(element);
        shape.list->saveTo(element);
    }
    return document.toByteArray(1);
}

struct ConvertOptions
{
    bool isText = false; ///< glyphs of a font, or else path data or a file
    bool isPath = false; ///< path data, or else a file
    QString input; ///< the file
    QByteArray content; ///< of the file
    QString path; ///< path data, or "-"
    std::optional<QSizeF> box; ///< that the path is drawn for
    QString font;
    QString text;
    double scale = 0.0; ///< outline units an SVG unit; 0 fits the picture to defaultPictureSide
    double emSize = defaultEmSize;
    bool usesDom = false;
};

/** What is wrong with --path and --size, or nothing. */
std::optional<Diagnostic> readPathOptions(CommandLine const& line, ConvertOptions& options)
{
    options.isPath = line.isSet(QStringLiteral("path"));
    options.path = line.value(QStringLiteral("path"));
    if (options.isPath && options.isText)
        return misuse(QStringLiteral("--path does not go with --font and --text"));
    if (!line.isSet(QStringLiteral("size")))
        return std::nullopt;
    if (!options.isPath)
        return misuse(QStringLiteral("--size goes with --path"));
    options.box = sizeFromText(line.value(QStringLiteral("size")));
    if (options.box)
        return std::nullopt;
    return misuse(QStringLiteral("--size takes a box like 240x160, not '%1'")
                      .arg(line.value(QStringLiteral("size"))));
}

/** Whether an option gives what is converted, not a file. */
bool takesOtherInput(CommandLine const& line)
{
    return line.isSet(QStringLiteral("font")) || line.isSet(QStringLiteral("text"))
        || line.isSet(QStringLiteral("path"));
}

/** What is wrong with the number of input files, or nothing. */
std::optional<Diagnostic> readInputs(CommandLine const& line, ConvertOptions const& options)
{
    bool const hasInput = !options.isText && !options.isPath;
    int const count = line.operands().size();
    if (options.isPath && count > 0)
        return misuse(QStringLiteral("--path takes no input file"));
    if (options.isText && count > 0)
        return misuse(QStringLiteral("--font and --text take no input file"));
    bool const areMany = count > 1 && isBatch(line, line.file(QStringLiteral("output")));
    if (hasInput && count != 1 && !areMany)
        return misuse(QStringLiteral("exactly one input file is needed"));
    if (hasInput)
        return std::nullopt;
    return batchOptionFault(
        line, options.isPath ? QStringLiteral("--path") : QStringLiteral("--font and --text"));
}

/** What is wrong with the options, or nothing. */
std::optional<Diagnostic> readOptions(CommandLine const& line, ConvertOptions& options)
{
    if (line.isSet(QStringLiteral("adjust")))
        return misuse(QStringLiteral("--adjust goes with --presets"));
    options.font = line.file(QStringLiteral("font"));
    options.text = line.value(QStringLiteral("text"));
    bool const isText = line.isSet(QStringLiteral("font")) || line.isSet(QStringLiteral("text"));
    options.isText = isText;
    if (isText && (!line.isSet(QStringLiteral("font")) || options.text.isEmpty()))
        return misuse(QStringLiteral("--font and --text go together"));
    if (auto fault = readPathOptions(line, options))
        return fault;
    if (auto fault = readInputs(line, options))
        return fault;
    if (line.isSet(QStringLiteral("scale"))) {
        auto const scale = factorFromText(line.value(QStringLiteral("scale")));
        if (!scale || isText)
            return misuse(QStringLiteral(
                "--scale takes a number greater than 0 and at most 1000000, and an SVG file"));
        options.scale = *scale;
    }
    if (line.isSet(QStringLiteral("em"))) {
        auto const emSize = sideFromText(line.value(QStringLiteral("em")));
        if (!emSize || !isText)
            return misuse(QStringLiteral(
                "--em takes a number greater than 0 and at most 1000000, and a font"));
        options.emSize = *emSize;
    }
    QString const form = line.value(QStringLiteral("form"));
    options.usesDom = form == QLatin1String("dom");
    if (!options.usesDom && form != QLatin1String("stream"))
        return misuse(QStringLiteral("--form takes dom or stream, not '%1'").arg(form));
    return std::nullopt;
}

/** The outline of --path; nothing, with a diagnostic, if there is none. */
std::optional<ImportedOutlines> importPathData(
    ConvertOptions const& options, Diagnostics& diagnostics)
{
    bool const isRead = options.path == QLatin1String("-");
    auto const data =
        isRead ? readInput(options.path, diagnostics) : std::optional(options.path.toUtf8());
    if (!data)
        return std::nullopt;
    PathImportOptions const pathOptions {isRead ? options.path : QStringLiteral("--path"),
        options.box, options.scale > 0.0 ? options.scale : 1.0};
    return importPath(QString::fromUtf8(*data), pathOptions, diagnostics);
}

/** The glyphs of --text; nothing, with a diagnostic, if there are none. */
std::optional<ImportedOutlines> importGlyphs(
    ConvertOptions const& options, TakeMessages const& takeMessages, Diagnostics& diagnostics)
{
    TextImportOptions const textOptions {
        options.font, options.emSize, QStringLiteral("--em"), takeMessages};
    return importText(options.text, textOptions, diagnostics);
}

/** Nothing, with a diagnostic, if there is no picture to be had. */
std::optional<ImportedPictures> import(ConvertOptions const& options, Diagnostics& diagnostics)
{
    MessageLog log;
    TakeMessages const takeMessages = [&log] { return log.take(); };
    if (options.isText || options.isPath) {
        auto picture = options.isText ? importGlyphs(options, takeMessages, diagnostics)
                                      : importPathData(options, diagnostics);
        if (!picture)
            return std::nullopt;
        ImportedPictures pictures;
        pictures.push_back(std::move(*picture));
        return pictures;
    }
    return importAny(options.content, {options.input, options.scale, takeMessages}, diagnostics);
}

/** Says what to do with a whole document of outlines, which is no picture. */
void reportOutlines(ConvertOptions const& options)
{
    auto const device = repeatableInput(options.content)();
    OutlineReader reader(*device, options.input);
    while (!reader.next().empty()) { }
    if (reader.count() > 0 && !reader.fault()) {
        report({Diagnostic::Severity::Warning, options.input, 0, 0,
            QStringLiteral("a document of outlines: kpgeom render draws it")});
    }
}

/** Empty, after a message, if there is no outline to be had. */
Shapes importedShapes(ConvertOptions const& options)
{
    Diagnostics diagnostics;
    auto pictures = import(options, diagnostics);
    Shapes shapes;
    if (pictures) {
        shapes = shapesOf(std::move(*pictures));
        if (shapes.empty()) {
            diagnostics.error(options.isText ? options.font : options.input,
                QStringLiteral("nothing in it becomes an outline"));
        }
    }
    report(diagnostics);
    if (!options.isText && !options.isPath && !pictures)
        reportOutlines(options);
    return shapes;
}

/** The options that have no meaning for shapes that formulas define. */
QStringList const& optionsOfPictures()
{
    static QStringList const all {QStringLiteral("font"), QStringLiteral("text"),
        QStringLiteral("path"), QStringLiteral("size"), QStringLiteral("scale"),
        QStringLiteral("em"), QStringLiteral("form")};
    return all;
}

/** What of the options does not go with shapes that formulas define, or nothing. */
std::optional<Diagnostic> pictureOptionFault(CommandLine const& line, QString const& what)
{
    for (QString const& option : optionsOfPictures()) {
        if (line.isSet(option))
            return misuse(QStringLiteral("--%1 does not go with %2").arg(option, what));
    }
    return std::nullopt;
}

Outcome runPresets(CommandLine const& line)
{
    if (auto const fault = pictureOptionFault(line, QStringLiteral("--presets")))
        return line.misused(*fault);
    if (auto const fault = batchOptionFault(line, QStringLiteral("--presets")))
        return line.misused(*fault);
    if (!line.operands().isEmpty())
        return line.misused(misuse(QStringLiteral("--presets takes no input file beside its own")));
    QString const folder = line.file(QStringLiteral("output"));
    if (folder.isEmpty())
        return line.misused(misuse(QStringLiteral("no output folder given (-o)")));
    Diagnostic fault;
    auto const adjustments = adjustmentsFromTexts(line.values(QStringLiteral("adjust")), fault);
    if (!adjustments)
        return line.misused(fault);
    return convertPresets({line.file(QStringLiteral("presets")), folder, *adjustments});
}

/** Writes the document of what the options name. */
Outcome writeDocument(ConvertOptions const& options, QString const& output)
{
    Shapes const shapes = importedShapes(options);
    if (shapes.empty())
        return Outcome::Failed;
    bool const isWritten =
        writeOutput(output, options.usesDom ? domDocument(shapes) : shapesDocument(shapes));
    return isWritten ? Outcome::Done : Outcome::Failed;
}

Outcome convertFile(CommandLine const& line, ConvertOptions options, BatchJob const& job)
{
    Diagnostics diagnostics;
    auto const content = readInput(job.input, diagnostics);
    report(diagnostics);
    if (!content)
        return Outcome::Failed;
    options.input = job.input;
    options.content = *content;
    QString const& output = job.outputs.first();
    if (!holdsCustomShapes(options.content))
        return writeDocument(options, output);
    if (auto const fault = pictureOptionFault(line, QStringLiteral("custom shapes")))
        return line.misused(*fault);
    return convertCustomShapes(options.content, options.input, output);
}

Outcome runConvert(Command const& command, QStringList const& arguments)
{
    CommandLine line(command);
    if (auto const end = line.parse(arguments))
        return *end;
    if (line.isSet(QStringLiteral("presets")))
        return runPresets(line);
    if (!takesOtherInput(line))
        line.fallBackOnStandardInput();
    ConvertOptions options;
    if (auto const fault = readOptions(line, options))
        return line.misused(*fault);
    QString const output = line.file(QStringLiteral("output"));
    if (output.isEmpty())
        return line.misused(misuse(QStringLiteral("no output file given (-o)")));

    if (options.isText || options.isPath)
        return writeDocument(options, output);
    return runBatch(line,
        {line.suffixes(), output, QStringLiteral("xml"), {},
            [&](BatchJob const& job) { return convertFile(line, options, job); }, true});
}

/** What is imported by content, whatever it is called. */
constexpr Value pictureValue {"IN", Value::Kind::File, "svg svgz odg fodg shape"};

static_assert(defaultPictureSide == 10000.0 && finePictureSide == 100000.0, "as --scale says");
static_assert(defaultEmSize == 2048.0, "as --em says");

constexpr CommandOption convertOptions[] = {
    {"o", "output", {"OUT", Value::Kind::File}, "Write the document to <OUT>.", manyOutputsHelp},
    {"", "font", {"FILE", Value::Kind::File, "ttf otf ttc otc pfb woff"},
        "Make outlines of glyphs of the font in <FILE>."},
    {"", "text", {"TEXT"}, "The text whose glyphs are taken."},
    {"", "path", {"DATA"},
        "Make an outline of the path data of SVG in <DATA>, or of standard input for \"-\". Its "
        "numbers stay unless --scale is given."},
    {"", "size", {"WxH"},
        "The box that the --path is drawn for, by default up to its right and lower end."},
    {"", "scale", {"FACTOR"},
        "Outline units an SVG unit. By default as many as make the longer side of the picture "
        "10000 units, or 100000 where lines would be lost: those of less than one unit are not "
        "drawn."},
    {"", "em", {"UNITS"}, "Outline units an em of the font, by default 2048."},
    {"", "form", {"FORM", Value::Kind::Word, "dom stream", "stream"},
        "The writer: dom or stream. They differ in the order of attributes only."},
    {"", "presets", {"FILE", Value::Kind::File, "xml"},
        "Learn the rules of the preset shapes of DrawingML that are defined in <FILE>: OUT is a "
        "folder, for a document a shape."},
    {"", "adjust", {"NAME=VALUE"},
        "The value of an adjustment of the preset shapes, instead of the one that is defined; may "
        "be repeated."},
};

} // namespace

constexpr Command convertCommand {"convert", "IN... -o OUT.xml", fileHelp,
    {pictureValue, pictureValue},
    "Makes a document of a picture, a stencil, path data or text in a font.", runConvert,
    {convertOptions, batchOptions}};
