#include "commandline.h"
#include "import/outlineimport.h"
#include "inputoutput.h"
#include "xmlstreamwriter.h"

#include <QDomDocument>
#include <QTextStream>

namespace {

/** A name without the characters that XML cannot hold. */
QString xmlText(QString const& name)
{
    QString text = name;
    for (QChar& character : text) {
        if (character.category() == QChar::Other_Control || character.unicode() >= 0xfffe)
            character = QChar::ReplacementCharacter;
    }
    return text;
}

/** Hands the attributes of the shape around outline `index` to `setAttribute`. */
template <class SetAttribute>
void writeShape(ImportedPicture const& picture, std::size_t index, SetAttribute setAttribute)
{
    auto const number = [](double value) { return QString::number(value, 'g', 6); };
    setAttribute(QStringLiteral("Name"), xmlText(picture.names.at(static_cast<int>(index))));
    setAttribute(QStringLiteral("Width"), number(picture.size.width()));
    setAttribute(QStringLiteral("Height"), number(picture.size.height()));
}

QByteArray streamDocument(ImportedPicture const& picture)
{
    QByteArray xml;
    XmlStreamWriter writer(&xml);
    writer.setAutoFormatting(true);
    writer.setAutoFormattingIndent(1);
    writer.writeStartDocument();
    writer.writeStartElement(QStringLiteral("Shapes"));
    for (std::size_t i = 0; i < picture.outlines.size(); ++i) {
        writer.writeStartElement(QStringLiteral("Shape"));
        writeShape(picture, i, [&writer](QString const& name, QString const& text) {
            writer.writeAttribute(name, text);
        });
        picture.outlines[i]->saveTo(writer);
        writer.writeEndElement();
    }
    writer.writeEndDocument();
    return xml;
}

QByteArray domDocument(ImportedPicture const& picture)
{
    QDomDocument document;
    document.appendChild(document.createProcessingInstruction(
        QStringLiteral("xml"), QStringLiteral("version=\"1.0\" encoding=\"UTF-8\"")));
    QDomElement shapes = document.createElement(QStringLiteral("Shapes"));
    document.appendChild(shapes);
    for (std::size_t i = 0; i < picture.outlines.size(); ++i) {
        QDomElement shape = document.createElement(QStringLiteral("Shape"));
        writeShape(picture, i,
            [&shape](QString const& name, QString const& text) { shape.setAttribute(name, text); });
        shapes.appendChild(shape);
        picture.outlines[i]->saveTo(shape);
    }
    return document.toByteArray(1);
}

struct ConvertOptions
{
    QString input; ///< the SVG file, or empty for text
    QString font;
    QString text;
    double scale = 0.0; ///< outline units an SVG unit; 0 fits the picture to defaultPictureSide
    double emSize = defaultEmSize;
    bool usesDom = false;
};

/** What is wrong with the options, or nothing. */
QString readOptions(CommandLine const& line, ConvertOptions& options)
{
    options.font = line.value(QStringLiteral("font"));
    options.text = line.value(QStringLiteral("text"));
    bool const isText = line.isSet(QStringLiteral("font")) || line.isSet(QStringLiteral("text"));
    if (isText && (options.font.isEmpty() || options.text.isEmpty()))
        return QStringLiteral("--font and --text go together");
    if (line.operands().size() != (isText ? 0 : 1)) {
        return isText ? QStringLiteral("--font and --text take no input file")
                      : QStringLiteral("exactly one input file is needed");
    }
    options.input = line.operands().value(0);
    if (line.isSet(QStringLiteral("scale"))) {
        auto const scale = factorFromText(line.value(QStringLiteral("scale")));
        if (!scale || isText)
            return QStringLiteral("--scale takes a number greater than 0, and an SVG file");
        options.scale = *scale;
    }
    if (line.isSet(QStringLiteral("em"))) {
        auto const emSize = factorFromText(line.value(QStringLiteral("em")));
        if (!emSize || !isText)
            return QStringLiteral("--em takes a number greater than 0, and a font");
        options.emSize = *emSize;
    }
    QString const form = line.value(QStringLiteral("form"));
    options.usesDom = form == QLatin1String("dom");
    if (!options.usesDom && form != QLatin1String("stream"))
        return QStringLiteral("--form takes dom or stream, not '%1'").arg(form);
    return QString();
}

/** Nothing, after an error message, if there is no picture to be had. */
std::optional<ImportedPicture> import(ConvertOptions const& options)
{
    BoundedXml::Error error;
    ImportedPicture picture;
    QString const source = options.input.isEmpty() ? options.font : options.input;
    if (options.input.isEmpty()) {
        picture = importText(options.font, options.text, options.emSize, error);
    } else {
        auto const svg = readInput(options.input);
        if (!svg)
            return std::nullopt;
        picture = importSvg(*svg, options.scale, error);
    }
    for (QString const& warning : qAsConst(picture.warnings))
        printError(QStringLiteral("%1: %2").arg(displayName(source), warning));
    if (error.isNull() && picture.outlines.empty())
        error.message = QStringLiteral("nothing in it becomes an outline");
    if (!error.isNull()) {
        printError(source, error);
        return std::nullopt;
    }
    return picture;
}

} // namespace

Outcome runConvert(Command const& command, QStringList const& arguments)
{
    CommandLine line(command);
    line.addOption({{QStringLiteral("o"), QStringLiteral("output")},
        QStringLiteral("Write the document to <OUT>."), QStringLiteral("OUT")});
    line.addOption({QStringLiteral("font"),
        QStringLiteral("Make outlines of glyphs of the font in <FILE>."), QStringLiteral("FILE")});
    line.addOption({QStringLiteral("text"), QStringLiteral("The text whose glyphs are taken."),
        QStringLiteral("TEXT")});
    line.addOption({QStringLiteral("scale"),
        QStringLiteral("Outline units an SVG unit. By default as many as make the longer side of "
                       "the picture %1 units: lines of less than one unit are not drawn.")
            .arg(defaultPictureSide),
        QStringLiteral("FACTOR")});
    line.addOption({QStringLiteral("em"),
        QStringLiteral("Outline units an em of the font, by default %1.").arg(defaultEmSize),
        QStringLiteral("UNITS")});
    line.addOption({QStringLiteral("form"),
        QStringLiteral("The writer: dom or stream. They differ in the order of attributes only."),
        QStringLiteral("FORM"), QStringLiteral("stream")});
    if (auto const end = line.parse(arguments))
        return *end;
    ConvertOptions options;
    if (QString const fault = readOptions(line, options); !fault.isEmpty())
        return line.misused(fault);
    QString const output = line.value(QStringLiteral("output"));
    if (output.isEmpty())
        return line.misused(QStringLiteral("no output file given (-o)"));

    auto const picture = import(options);
    if (!picture)
        return Outcome::Failed;
    bool const isWritten =
        writeOutput(output, options.usesDom ? domDocument(*picture) : streamDocument(*picture));
    return isWritten ? Outcome::Done : Outcome::Failed;
}
