#include "import/outlineimport.h"

#include "import/gunzip.h"
#include "kppath.h"

#include <QHash>
#include <QMap>
#include <QRawFont>
#include <QSvgRenderer>
#include <QVector>
#include <QXmlStreamReader>

#include <algorithm>
#include <cmath>

namespace {

/** Takes the messages that Qt logs while it lives, instead of their going to stderr. */
class MessageCollector
{
public:
    MessageCollector()
        : m_outer(s_current)
    {
        s_current = this;
        m_handler = qInstallMessageHandler(collect);
    }

    ~MessageCollector()
    {
        qInstallMessageHandler(m_handler);
        s_current = m_outer;
    }

    MessageCollector(MessageCollector const&) = delete;
    MessageCollector& operator=(MessageCollector const&) = delete;

    /** Every different message once, each on one line; above a number that is of use, a count. */
    QStringList messages() const
    {
        QStringList result = m_messages;
        if (m_leftOut > 0)
            result << QStringLiteral("%1 more messages of this kind").arg(m_leftOut);
        return result;
    }

private:
    static void collect(QtMsgType type, QMessageLogContext const& context, QString const& message)
    {
        if (type == QtFatalMsg)
            s_current->m_handler(type, context, message);
        else
            s_current->add(message.simplified());
    }

    void add(QString const& message)
    {
        int const enough = 20;
        if (m_messages.contains(message))
            return;
        if (m_messages.count() < enough)
            m_messages << message;
        else
            ++m_leftOut;
    }

    static MessageCollector* s_current;
    MessageCollector* m_outer;
    QtMessageHandler m_handler;
    QStringList m_messages;
    int m_leftOut = 0;
};

MessageCollector* MessageCollector::s_current = nullptr;

QString localName(QString const& name)
{
    return name.mid(name.indexOf(QLatin1Char(':')) + 1);
}

QString imageName()
{
    return QStringLiteral("image");
}

/** The text without image elements and processing instructions. */
QByteArray withoutReferences(QByteArray const& svg)
{
    QByteArray result;
    QXmlStreamReader reader(svg);
    reader.setNamespaceProcessing(false);
    QXmlStreamWriter writer(&result);
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isStartElement()
            && localName(reader.qualifiedName().toString()) == imageName()) {
            reader.skipCurrentElement();
        } else if (!reader.isProcessingInstruction()) {
            writer.writeCurrentToken(reader);
        }
    }
    return result;
}

/**
 * The elements of an SVG text, as far as they decide how much there is to paint.
 *
 * A `use` element paints another element again, which may hold further ones: a few lines can
 * paint without end, or recurse until the stack is full. So what they amount to is found out
 * before anything is painted.
 */
class SvgElements
{
public:
    explicit SvgElements(QByteArray const& svg)
    {
        QXmlStreamReader reader(svg);
        reader.setNamespaceProcessing(false);
        int parent = -1;
        while (!reader.atEnd()) {
            switch (reader.readNext()) {
            case QXmlStreamReader::StartElement:
                parent = add(reader, parent);
                break;
            case QXmlStreamReader::EndElement:
                parent = element(parent).parent;
                break;
            case QXmlStreamReader::ProcessingInstruction:
                m_hasInstructions = true;
                break;
            default:
                break;
            }
        }
    }

    bool isSvg() const { return localName(m_rootName) == QLatin1String("svg"); }

    /** Whether the picture can be painted within the bounds; `error` is set if not. */
    bool check(QString& error)
    {
        Extent const all = extent(0, 1);
        if (isTooDeep(all)) {
            error = QStringLiteral("its use elements go round in circles or nest more than %1 deep")
                        .arg(BoundedXml::maximumDepth);
        } else if (isTooMuch(all)) {
            error = QStringLiteral("its use elements repeat too much of it");
        }
        return error.isEmpty();
    }

    /** Whether Qt SVG might open other files, or decode images that are as large as they please. */
    bool refersToOthers() const { return m_hasInstructions || m_images > 0; }

    /** A warning for each kind of element that is there and that becomes no outline. */
    QStringList warnings() const
    {
        QStringList result;
        for (auto it = m_unknown.constBegin(); it != m_unknown.constEnd(); ++it)
            result << QStringLiteral("%1 %2: without effect, shapes in it may be painted")
                          .arg(it.value())
                          .arg(it.key());
        if (m_images > 0)
            result << QStringLiteral("%1 image: left out").arg(m_images);
        return result;
    }

private:
    struct Extent
    {
        double characters = 0.0; ///< of the element with all that it paints
        int depth = 0; ///< of elements within one another; 0 is not yet known
    };

    struct Element
    {
        int parent;
        int characters;
        QString target; ///< the id of the element that this one paints
        QVector<int> children;
        Extent extent;
    };

    static bool isTooDeep(Extent const& extent) { return extent.depth > BoundedXml::maximumDepth; }

    /** Whether it is more than a long file could hold without repeating anything. */
    bool isTooMuch(Extent const& extent) const
    {
        return extent.characters > qMax(16.0 * 1024 * 1024, 2.0 * m_characters);
    }

    int add(QXmlStreamReader const& reader, int parent)
    {
        static QStringList const unknown {QStringLiteral("clipPath"), QStringLiteral("filter"),
            QStringLiteral("foreignObject"), QStringLiteral("marker"), QStringLiteral("mask"),
            QStringLiteral("pattern"), QStringLiteral("symbol"), QStringLiteral("textPath")};
        // What an element costs beside its text.
        int const overhead = 32;

        int const index = static_cast<int>(m_elements.size());
        QString const name = localName(reader.qualifiedName().toString());
        Element added {parent, overhead + name.size(), QString(), {}, {}};
        for (QXmlStreamAttribute const& attribute : reader.attributes()) {
            added.characters += attribute.value().size();
            QString const key = localName(attribute.qualifiedName().toString());
            if (key == QLatin1String("id") && !attribute.value().isEmpty())
                m_byId[attribute.value().toString()] << index;
            else if (key == QLatin1String("href") && name == QLatin1String("use"))
                added.target = attribute.value().mid(1).toString();
        }
        m_characters += added.characters;
        m_elements.push_back(added);
        if (parent >= 0)
            element(parent).children << index;
        else
            m_rootName = name;
        if (unknown.contains(name))
            ++m_unknown[name];
        if (name == imageName())
            ++m_images;
        return index;
    }

    Element& element(int index) { return m_elements[static_cast<std::size_t>(index)]; }

    /** @param level how deep the element itself lies */
    Extent extent(int index, int level)
    {
        Element& whole = element(index);
        if (whole.extent.depth > 0)
            return whole.extent;
        if (level > BoundedXml::maximumDepth)
            return {0.0, level};

        Extent sum {double(whole.characters), 0};
        // Of several elements with one id only one is painted; all of them are an upper bound.
        for (int const part : whole.children + m_byId.value(whole.target)) {
            Extent const inner = extent(part, level + 1);
            sum.characters += inner.characters;
            sum.depth = qMax(sum.depth, inner.depth);
            // The rest does not matter then, and in a circle that branches it has no end.
            if (isTooDeep(sum) || isTooMuch(sum))
                break;
        }
        ++sum.depth;
        whole.extent = sum;
        return sum;
    }

    QString m_rootName;
    std::vector<Element> m_elements;
    QHash<QString, QVector<int>> m_byId;
    QMap<QString, int> m_unknown;
    int m_images = 0;
    bool m_hasInstructions = false;
    double m_characters = 0.0;
};

bool isPositive(double number)
{
    return std::isfinite(number) && number > 0.0;
}

/** Sets `error` unless a picture of `size` outline units can be imported. */
bool checkSize(QSizeF size, QString& error)
{
    if (!isPositive(size.width()) || !isPositive(size.height()))
        error = QStringLiteral("the picture has no size");
    else if (qMax(size.width(), size.height()) > maximumPictureSide)
        error = QStringLiteral("the picture would be %1 by %2 units large, more than %3")
                    .arg(size.width())
                    .arg(size.height())
                    .arg(maximumPictureSide, 0, 'f', 0);
    return error.isEmpty();
}

bool sameElements(QPainterPath const& left, QPainterPath const& right)
{
    if (left.fillRule() != right.fillRule() || left.elementCount() != right.elementCount())
        return false;
    for (int i = 0; i < left.elementCount(); ++i) {
        QPainterPath::Element const a = left.elementAt(i);
        QPainterPath::Element const b = right.elementAt(i);
        // Unlike the comparison of points or paths this one takes nearly equal for different.
        if (a.type != b.type || a.x < b.x || a.x > b.x || a.y < b.y || a.y > b.y)
            return false;
    }
    return true;
}

/** Whether `line` is the line of the shape of which `fill` is the filling. */
bool isLineOf(RecordedPath const& line, RecordedPath const& fill)
{
    return fill.pen.style() == Qt::NoPen && line.brush.style() == Qt::NoBrush
        && line.pen.style() != Qt::NoPen && line.transform == fill.transform
        && line.compositionMode == fill.compositionMode && line.renderHints == fill.renderHints
        && line.clipped == fill.clipped && sameElements(line.path, fill.path);
}

/** Qt SVG paints the filling and the line of a shape one after the other; this joins them. */
std::vector<RecordedPath> shapes(std::vector<RecordedPath> const& paths)
{
    std::vector<RecordedPath> result;
    for (RecordedPath const& path : paths) {
        if (!result.empty() && isLineOf(path, result.back())) {
            result.back().pen = path.pen;
            result.back().lineOpacity = path.lineOpacity;
        } else {
            result.push_back(path);
        }
    }
    return result;
}

bool endsAtItsStart(QPainterPath const& path)
{
    int start = path.elementCount() - 1;
    while (start > 0 && !path.elementAt(start).isMoveTo())
        --start;
    QPainterPath::Element const first = path.elementAt(start);
    QPainterPath::Element const last = path.elementAt(path.elementCount() - 1);
    return start < path.elementCount() - 1 && !(first.x < last.x || first.x > last.x)
        && !(first.y < last.y || first.y > last.y);
}

bool isFinite(QPainterPath const& path)
{
    for (int i = 0; i < path.elementCount(); ++i) {
        QPainterPath::Element const element = path.elementAt(i);
        if (!std::isfinite(element.x) || !std::isfinite(element.y))
            return false;
    }
    return true;
}

void addOutline(ImportedPicture& picture, RecordedPath const& painted, QString const& name)
{
    auto outline = outlineOf(painted, picture.size);
    if (!outline) {
        picture.warnings << QStringLiteral("%1: a coordinate is too large; left out").arg(name);
        return;
    }
    picture.outlines.push_back(std::move(outline));
    picture.names << name;
    picture.painted.push_back(painted);
}

void addShapes(ImportedPicture& picture, PathRecorder const& recorder)
{
    std::vector<RecordedPath> const painted = shapes(recorder.paths());
    for (std::size_t i = 0; i < painted.size(); ++i)
        addOutline(picture, painted[i], QStringLiteral("path %1").arg(i + 1));
}

/** Whether Qt SVG may be given `svg`, which loses what must not be given to it. */
bool prepareSvgText(QByteArray& svg, QStringList& warnings, BoundedXml::Error& error)
{
    if (svg.isEmpty()) {
        error.message = QStringLiteral("the picture is empty");
        return false;
    }
    if (isGzip(svg)) {
        auto const unpacked = gunzip(svg, BoundedXml::Limits().bytes);
        if (!unpacked) {
            error.message = QStringLiteral("the compressed picture is damaged or too large");
            return false;
        }
        svg = *unpacked;
    }
    if (!BoundedXml::check(svg, error))
        return false;
    SvgElements elements(svg);
    if (!elements.isSvg())
        error.message = QStringLiteral("not an SVG picture");
    else if (elements.check(error.message))
        warnings = elements.warnings();
    if (error.isNull() && elements.refersToOthers())
        svg = withoutReferences(svg);
    return error.isNull();
}

QString describe(uint character)
{
    return QStringLiteral("U+%1").arg(character, 4, 16, QLatin1Char('0')).toUpper();
}

/** Moves glyphs from the font's grid, y growing downwards, to their place in the picture. */
struct Typesetter
{
    QRawFont font; ///< as large as its grid
    double scale; ///< outline units a unit of the grid
    double x = 0.0;

    /** The outline of the next glyph; its advance is taken. */
    RecordedPath next(quint32 glyph)
    {
        RecordedPath painted;
        painted.transform = QTransform::fromScale(scale, scale)
            * QTransform::fromTranslate(x, font.ascent() * scale);
        painted.path = painted.transform.map(font.pathForGlyph(glyph));
        painted.path.setFillRule(Qt::WindingFill);
        painted.pen = Qt::NoPen;
        painted.brush = Qt::black;
        painted.renderHints = QPainter::Antialiasing;
        x += font.advancesForGlyphIndexes({glyph}, QRawFont::UseDesignMetrics).value(0).x() * scale;
        return painted;
    }
};

} // namespace

std::unique_ptr<KpPathSegList> outlineOf(RecordedPath const& painted, QSizeF size)
{
    if (!isFinite(painted.path))
        return nullptr;
    auto outline = std::make_unique<KpPathSegList>();
    KpPath path = KpPath::fromPainterPath(painted.path);
    outline->fromPath(path);
    outline->closed = endsAtItsStart(painted.path);
    outline->noFill = painted.brush.style() == Qt::NoBrush;
    outline->noLine = painted.pen.style() == Qt::NoPen;
    outline->updateRate(size.width(), size.height());
    return outline;
}

ImportedPicture importSvg(QByteArray const& svg, double scale, BoundedXml::Error& error)
{
    error = {};
    if (!(std::isfinite(scale) && scale >= 0.0)) {
        error.message = QStringLiteral("the scale must be a number and not negative");
        return {};
    }
    ImportedPicture picture;
    QByteArray text = svg;
    if (!prepareSvgText(text, picture.warnings, error))
        return {};

    MessageCollector const collector;
    QSvgRenderer renderer;
    if (!renderer.load(text)) {
        error.message = QStringLiteral("not an SVG picture that can be read");
        if (!collector.messages().isEmpty())
            error.message += QStringLiteral(": ") + collector.messages().constFirst();
        return {};
    }
    QSizeF const userSize = renderer.viewBoxF().size();
    double const longerSide = qMax(userSize.width(), userSize.height());
    double const unitsPerUserUnit = scale > 0.0 ? scale : defaultPictureSide / longerSide;
    picture.size = userSize * unitsPerUserUnit;
    if (!checkSize(picture.size, error.message))
        return {};

    PathRecorder recorder(userSize, unitsPerUserUnit);
    QPainter painter(&recorder);
    renderer.render(&painter, QRectF(QPointF(0.0, 0.0), userSize));
    painter.end();
    picture.warnings << collector.messages();
    addShapes(picture, recorder);
    return picture;
}

ImportedPicture importText(
    QString const& fontFile, QString const& text, double emSize, BoundedXml::Error& error)
{
    error = {};
    if (!isPositive(emSize))
        error.message = QStringLiteral("the size of an em must be a number above 0");
    else if (text.isEmpty())
        error.message = QStringLiteral("the text is empty");
    if (!error.isNull())
        return {};

    MessageCollector const collector;
    QRawFont font(fontFile, 1.0, QFont::PreferNoHinting);
    if (!font.isValid() || !isPositive(font.unitsPerEm())) {
        error.message = QStringLiteral("not a font file that can be read");
        return {};
    }
    font.setPixelSize(font.unitsPerEm());

    ImportedPicture picture;
    QVector<uint> const characters = text.toUcs4();
    Typesetter typesetter {font, emSize / font.unitsPerEm()};
    std::vector<RecordedPath> glyphs;
    QStringList names;
    for (uint const character : characters) {
        QString const name = QString::fromUcs4(&character, 1);
        quint32 const glyph = font.glyphIndexesForString(name).value(0);
        if (glyph == 0) {
            picture.warnings << QStringLiteral("no glyph for %1").arg(describe(character));
            continue;
        }
        RecordedPath const painted = typesetter.next(glyph);
        if (!painted.path.isEmpty()) {
            glyphs.push_back(painted);
            names << name;
        }
    }

    picture.size = QSizeF(typesetter.x, (font.ascent() + font.descent()) * typesetter.scale);
    if (!checkSize(picture.size, error.message))
        return {};
    for (std::size_t i = 0; i < glyphs.size(); ++i)
        addOutline(picture, glyphs[i], names.at(int(i)));
    picture.warnings.removeDuplicates();
    picture.warnings << collector.messages();
    return picture;
}
