// SPDX-License-Identifier: MIT
#include "import/diaimport.h"

#include "common/text.h"
#include "common/xmldiagnostic.h"
#include "import/cover.h"
#include "import/pathdataparser.h"

#include <QColor>
#include <QLocale>
#include <QMap>
#include <QRectF>
#include <QVector>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <algorithm>

namespace {

/** What a shape file says beside its drawing. */
struct DiaShape
{
    QString name;
    QByteArray elements; ///< what its svg element holds, as SVG without a root
    QByteArray unstyled; ///< the same without styles: all of it leaves a trace, seen or not
    QVector<QPointF> lineEnds; ///< of a line without length nothing else is left
    bool isAspectFixed = false;
    double defaultWidth = 0.0; ///< 0 if it is not given
    double defaultHeight = 0.0; ///< likewise
};

/** A length, of which only those in one unit are compared; 0 for what is none. */
double lengthFromText(QString text)
{
    text = text.trimmed();
    if (text.endsWith(QLatin1String("cm")))
        text.chop(2);
    double const length = text.toDouble();
    return isPositive(length) ? length : 0.0;
}

/** What of a style Dia heeds, by name. Later declarations win. */
QMap<QString, QString> declarationsOf(QString const& style)
{
    QMap<QString, QString> declarations;
    for (QString const& declaration : style.split(QLatin1Char(';'))) {
        // Files that forget a semicolon have further declarations behind the value.
        QString const value = declaration.section(QLatin1Char(':'), 1).simplified();
        declarations.insert(declaration.section(QLatin1Char(':'), 0, 0).trimmed(),
            value.section(QLatin1Char(' '), 0, 0));
    }
    return declarations;
}

/** A colour of Dia's as one of SVG's; empty for what is none. */
QString svgColour(QString const& colour, bool isFill)
{
    static QStringList const foreground {
        QStringLiteral("foreground"), QStringLiteral("fg"), QStringLiteral("text")};
    static QStringList const background {QStringLiteral("background"), QStringLiteral("bg")};
    QString black = QStringLiteral("#000000");
    QString white = QStringLiteral("#ffffff");
    if (colour == QLatin1String("none") || colour == QLatin1String("nofill"))
        return QStringLiteral("none");
    if (foreground.contains(colour))
        return black;
    if (background.contains(colour))
        return white;
    // These two change their meaning between line and filling.
    if (colour == QLatin1String("default"))
        return isFill ? white : black;
    if (colour == QLatin1String("inverse"))
        return isFill ? black : white;
    QColor const known(colour);
    return known.isValid() ? known.name() : QString();
}

/** Calls `write` with the name and value of each attribute that SVG has for a style of Dia's. */
template <class Write> void forEachSvgStyle(QString const& style, Write write)
{
    QMap<QString, QString> const declarations = declarationsOf(style);
    for (QString const& name : {QStringLiteral("fill"), QStringLiteral("stroke")}) {
        QString const colour = svgColour(declarations.value(name), name == QLatin1String("fill"));
        if (!colour.isEmpty())
            write(name, colour);
    }
    // A width of 0 is a hairline for Dia and no line for SVG.
    QString const width = QStringLiteral("stroke-width");
    if (isPositive(declarations.value(width).toDouble()))
        write(width, declarations.value(width));
    for (QString const& name : {QStringLiteral("fill-opacity"), QStringLiteral("stroke-opacity"),
             QStringLiteral("fill-rule"), QStringLiteral("stroke-linecap"),
             QStringLiteral("stroke-linejoin")}) {
        if (declarations.contains(name))
            write(name, declarations.value(name));
    }
    auto const isDashed = [&declarations](QString const& name) {
        QString const pattern = declarations.value(name, QStringLiteral("none"));
        return pattern != QLatin1String("none") && pattern != QLatin1String("default");
    };
    QString const dashes = QStringLiteral("stroke-dasharray");
    if (isDashed(QStringLiteral("stroke-pattern")) || isDashed(dashes))
        write(dashes, QStringLiteral("1"));
}

/** Takes from a shape file what it says of the shape. */
class DiaReader
{
public:
    DiaReader(QByteArray const& content, QString const& file, Diagnostics& diagnostics)
        : m_reader(content)
        , m_writer(&m_shape.elements)
        , m_unstyledWriter(&m_shape.unstyled)
        , m_file(file)
        , m_diagnostics(diagnostics)
    {
    }

    /** Nothing, with a diagnostic, if the file is none. */
    std::optional<DiaShape> read()
    {
        m_reader.readNextStartElement();
        bool hasDrawing = false;
        while (m_reader.readNextStartElement()) {
            bool const isDrawing = m_reader.name() == QLatin1String("svg");
            if (isDrawing && !hasDrawing)
                readElements();
            else
                readProperty();
            hasDrawing = hasDrawing || isDrawing;
        }
        if (m_reader.hasError()) {
            m_diagnostics.add({Diagnostic::Severity::Error, m_file, m_reader.lineNumber(),
                m_reader.columnNumber() + 1, m_reader.errorString()});
            return std::nullopt;
        }
        if (!hasDrawing) {
            m_diagnostics.error(m_file, QStringLiteral("there is no svg element in the shape"));
            return std::nullopt;
        }
        for (auto it = m_unread.constBegin(); it != m_unread.constEnd(); ++it) {
            m_diagnostics.warning(
                m_file, QStringLiteral("%1 %2: left out").arg(it.value()).arg(it.key()));
        }
        return m_shape;
    }

private:
    void readProperty()
    {
        QString const name = m_reader.name().toString();
        bool const isFixed =
            m_reader.attributes().value(QLatin1String("type")) == QLatin1String("fixed");
        QString const text = m_reader.readElementText(QXmlStreamReader::IncludeChildElements);
        if (name == QLatin1String("name"))
            m_shape.name = text.simplified();
        else if (name == QLatin1String("aspectratio"))
            m_shape.isAspectFixed = isFixed;
        else if (name == QLatin1String("default-width"))
            m_shape.defaultWidth = lengthFromText(text);
        else if (name == QLatin1String("default-height"))
            m_shape.defaultHeight = lengthFromText(text);
    }

    /** Those in the element at whose start the reader is; how deep they nest is bounded before. */
    void readElements()
    {
        static QStringList const known {QStringLiteral("circle"), QStringLiteral("ellipse"),
            QStringLiteral("g"), QStringLiteral("line"), QStringLiteral("path"),
            QStringLiteral("polygon"), QStringLiteral("polyline"), QStringLiteral("rect")};
        while (m_reader.readNextStartElement()) {
            QString const name = m_reader.name().toString();
            if (!known.contains(name)) {
                ++m_unread[name];
                m_reader.skipCurrentElement();
                continue;
            }
            m_writer.writeStartElement(name);
            m_unstyledWriter.writeStartElement(name);
            readAttributes();
            readElements();
            m_writer.writeEndElement();
            m_unstyledWriter.writeEndElement();
        }
    }

    void readAttributes()
    {
        QXmlStreamAttributes const attributes = m_reader.attributes();
        for (QXmlStreamAttribute const& attribute : attributes)
            readAttribute(attribute.qualifiedName().toString(), attribute.value().toString());
        if (m_reader.name() == QLatin1String("line")) {
            auto const number = [&attributes](char const* name) {
                return attributes.value(QLatin1String(name)).toDouble();
            };
            m_shape.lineEnds << QPointF(number("x1"), number("y1"))
                             << QPointF(number("x2"), number("y2"));
        }
    }

    void readAttribute(QString const& name, QString const& value)
    {
        static QStringList const geometry {QStringLiteral("x"), QStringLiteral("y"),
            QStringLiteral("width"), QStringLiteral("height"), QStringLiteral("x1"),
            QStringLiteral("y1"), QStringLiteral("x2"), QStringLiteral("y2"), QStringLiteral("cx"),
            QStringLiteral("cy"), QStringLiteral("r"), QStringLiteral("rx"), QStringLiteral("ry"),
            QStringLiteral("points"), QStringLiteral("d")};
        if (name == QLatin1String("style")) {
            forEachSvgStyle(value, [this](QString const& property, QString const& text) {
                m_writer.writeAttribute(property, text);
            });
        } else if (geometry.contains(name)) {
            m_writer.writeAttribute(name, value);
            m_unstyledWriter.writeAttribute(name, value);
        }
        if (name == QLatin1String("d"))
            checkPathData(value);
    }

    void checkPathData(QString const& data)
    {
        KpPathSegList list;
        auto const fault = parsePathData(data, list);
        if (!fault)
            return;
        m_diagnostics.add({Diagnostic::Severity::Warning, m_file, m_reader.lineNumber(),
            m_reader.columnNumber() + 1,
            QStringLiteral("path data, character %1: %2; drawn up to there")
                .arg(fault->column)
                .arg(fault->what)});
    }

    QXmlStreamReader m_reader;
    DiaShape m_shape;
    QXmlStreamWriter m_writer;
    QXmlStreamWriter m_unstyledWriter;
    QMap<QString, int> m_unread;
    QString const& m_file;
    Diagnostics& m_diagnostics;
};

/** The elements as an SVG picture that shows this part of them. */
QByteArray svgPicture(QByteArray const& elements, QRectF const& viewBox)
{
    QStringList numbers;
    for (double const number : {viewBox.x(), viewBox.y(), viewBox.width(), viewBox.height()})
        numbers << QString::number(number, 'g', QLocale::FloatingPointShortest);
    return "<svg xmlns=\"http://www.w3.org/2000/svg\" fill=\"none\" stroke=\"#000000\" viewBox=\""
        + numbers.join(QLatin1Char(' ')).toLatin1() + "\">" + elements + "</svg>";
}

/** What the drawing covers, invisible elements too, in its own units; empty if it is a place. */
QRectF boundsOf(DiaShape const& shape, SvgImportOptions const& options)
{
    // Any picture shows where its paths are: what lies beyond it is recorded, too.
    Diagnostics ignored;
    auto const picture =
        onlyPicture(importSvg(svgPicture(shape.unstyled, QRectF(0.0, 0.0, 1.0, 1.0)),
                        {options.file, 1.0, options.takeMessages}, ignored),
            options.file, ignored);
    if (!picture)
        return QRectF();
    Cover cover = picture->cover;
    for (QPointF const& end : shape.lineEnds)
        cover.add(end);
    QRectF const bounds = cover.bounds();
    // A picture needs a width and a height.
    double const least = std::max(bounds.width(), bounds.height()) / defaultPictureSide;
    return {bounds.topLeft(),
        QSizeF(std::max(bounds.width(), least), std::max(bounds.height(), least))};
}

/** Draws the outlines for a box with the aspect ratio of the default size, if there is one. */
void applyDefaultSize(DiaShape const& shape, ImportedOutlines& picture)
{
    if (shape.isAspectFixed || !isPositive(shape.defaultWidth) || !isPositive(shape.defaultHeight))
        return;
    double const longerSide = std::max(picture.size.width(), picture.size.height());
    double const scale = longerSide / std::max(shape.defaultWidth, shape.defaultHeight);
    picture.size = QSizeF(shape.defaultWidth, shape.defaultHeight) * scale;
    for (ImportedOutline& outline : picture.outlines)
        outline.list->updateValue(picture.size.width(), picture.size.height());
}

void applyName(QString const& name, ImportedOutlines& picture)
{
    if (name.isEmpty())
        return;
    int number = 0;
    for (ImportedOutline& outline : picture.outlines) {
        ++number;
        outline.name =
            picture.outlines.size() == 1 ? name : QStringLiteral("%1 %2").arg(name).arg(number);
    }
}

} // namespace

std::optional<ImportedOutlines> importDia(
    QByteArray const& content, SvgImportOptions const& options, Diagnostics& diagnostics)
{
    BoundedXml::Error error;
    if (!BoundedXml::check(content, error)) {
        diagnostics.add(xmlDiagnostic(error, options.file));
        return std::nullopt;
    }
    auto const shape = DiaReader(content, options.file, diagnostics).read();
    if (!shape)
        return std::nullopt;
    QRectF const bounds = boundsOf(*shape, options);
    if (!isPositive(bounds.width())) {
        diagnostics.error(options.file, QStringLiteral("the shape draws nothing"));
        return std::nullopt;
    }
    auto picture = onlyPicture(importSvg(svgPicture(shape->elements, bounds), options, diagnostics),
        options.file, diagnostics);
    if (!picture)
        return std::nullopt;
    applyDefaultSize(*shape, *picture);
    applyName(shape->name, *picture);
    return picture;
}
