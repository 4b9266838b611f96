// SPDX-License-Identifier: MIT
#include "import/odfdrawing.h"

#include "boundedxml_p.h"
#include "common/text.h"
#include "document/exactpath.h"
#include "import/odfstyles.h"
#include "import/odftransform.h"
#include "import/pathdataparser.h"

#include <QMap>
#include <QXmlStreamReader>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

/** Its four numbers; none if these are not such. */
std::optional<QRectF> viewBoxFromText(QString const& text)
{
    QStringList const parts = text.simplified().split(QLatin1Char(' '));
    double numbers[4] {};
    if (parts.size() != 4)
        return std::nullopt;
    for (int i = 0; i < 4; ++i) {
        bool isNumber = false;
        numbers[i] = parts.at(i).toDouble(&isNumber);
        if (!isNumber || !(std::abs(numbers[i]) <= greatestOdfNumber))
            return std::nullopt;
    }
    return QRectF(numbers[0], numbers[1], numbers[2], numbers[3]);
}

/** From a view box to where it is shown; what has no width or height is only moved there. */
QTransform toFrame(QRectF const& viewBox, QRectF const& frame)
{
    auto const factor = [](double from, double to) { return from > 0.0 ? to / from : 1.0; };
    return QTransform::fromTranslate(-viewBox.x(), -viewBox.y())
        * QTransform::fromScale(
            factor(viewBox.width(), frame.width()), factor(viewBox.height(), frame.height()))
        * QTransform::fromTranslate(frame.x(), frame.y());
}

/** What an element draws, and whether it can be filled. */
struct Drawn
{
    QPainterPath path;
    bool isArea = true;
};

/** The attributes of an element that draws; the first that cannot be read is its fault. */
class ShapeAttributes
{
public:
    explicit ShapeAttributes(QXmlStreamAttributes const& attributes)
        : m_attributes(attributes)
    {
    }

    /** Empty if all could be read. */
    QString const& fault() const { return m_fault; }

    bool has(QString const& space, char const* name) const
    {
        return m_attributes.hasAttribute(space, QLatin1String(name));
    }

    QString text(QString const& space, char const* name) const
    {
        return m_attributes.value(space, QLatin1String(name)).toString();
    }

    /** 0 if it is missing. */
    double length(QString const& space, char const* name)
    {
        QStringRef const text = m_attributes.value(space, QLatin1String(name));
        auto const length = text.isEmpty() ? std::optional(0.0) : odfLength(text);
        if (!length)
            fail(QStringLiteral("%1 is no length").arg(QLatin1String(name)));
        return length.value_or(0.0);
    }

    /** An angle in degrees, counterclockwise from the right. */
    double angle(char const* name, double otherwise)
    {
        QString const value = text(OdfNamespace::draw(), name);
        if (value.isEmpty())
            return otherwise;
        bool isNumber = false;
        double const angle = value.toDouble(&isNumber);
        if (!isNumber || !(std::abs(angle) <= greatestOdfNumber))
            fail(QStringLiteral("%1 is no angle").arg(QLatin1String(name)));
        return std::fmod(angle, 360.0);
    }

    QRectF frame()
    {
        QString const svg = OdfNamespace::svg();
        if (has(svg, "r")) {
            double const radius = length(svg, "r");
            return {
                length(svg, "cx") - radius, length(svg, "cy") - radius, 2.0 * radius, 2.0 * radius};
        }
        return {length(svg, "x"), length(svg, "y"), length(svg, "width"), length(svg, "height")};
    }

    /** Path data in the units of the view box, as a path in the frame. */
    QPainterPath path(QString const& data)
    {
        KpPathSegList list;
        if (auto const pathFault = parsePathData(data, list))
            fail(QStringLiteral("path data, character %1: %2")
                     .arg(pathFault->column)
                     .arg(pathFault->what));
        auto const viewBox = viewBoxFromText(text(OdfNamespace::svg(), "viewBox"));
        if (!viewBox)
            fail(QStringLiteral("viewBox is not four numbers"));
        return toFrame(viewBox.value_or(QRectF()), frame()).map(exactPath(list));
    }

private:
    void fail(QString const& what)
    {
        if (m_fault.isEmpty())
            m_fault = what;
    }

    QXmlStreamAttributes const m_attributes;
    QString m_fault;
};

Drawn drawPath(ShapeAttributes& attributes)
{
    QString const data = attributes.text(OdfNamespace::svg(), "d");
    return {attributes.path(data), data.contains(QLatin1Char('z'), Qt::CaseInsensitive)};
}

Drawn drawPolygon(ShapeAttributes& attributes)
{
    return {attributes.path(
        QStringLiteral("M%1Z").arg(attributes.text(OdfNamespace::draw(), "points")))};
}

Drawn drawPolyline(ShapeAttributes& attributes)
{
    return {
        attributes.path(QStringLiteral("M%1").arg(attributes.text(OdfNamespace::draw(), "points"))),
        false};
}

Drawn drawLine(ShapeAttributes& attributes)
{
    QString const svg = OdfNamespace::svg();
    QPainterPath path(QPointF(attributes.length(svg, "x1"), attributes.length(svg, "y1")));
    path.lineTo(attributes.length(svg, "x2"), attributes.length(svg, "y2"));
    return {path, false};
}

Drawn drawRectangle(ShapeAttributes& attributes)
{
    QPainterPath path;
    double const radius = attributes.length(OdfNamespace::draw(), "corner-radius");
    if (radius > 0.0)
        path.addRoundedRect(attributes.frame(), radius, radius);
    else
        path.addRect(attributes.frame());
    return {path};
}

Drawn drawEllipse(ShapeAttributes& attributes)
{
    QRectF const frame = attributes.frame();
    QString const kind = attributes.text(OdfNamespace::draw(), "kind");
    QPainterPath path;
    if (kind.isEmpty() || kind == QLatin1String("full")) {
        path.addEllipse(frame);
        return {path};
    }
    double const start = attributes.angle("start-angle", 0.0);
    double const turn = std::fmod(attributes.angle("end-angle", 360.0) - start + 720.0, 360.0);
    double const wholeTurn = 360.0;
    path.arcMoveTo(frame, start);
    path.arcTo(frame, start, turn > 0.0 ? turn : wholeTurn);
    if (kind == QLatin1String("arc"))
        return {path, false};
    if (kind == QLatin1String("section"))
        path.lineTo(frame.center());
    path.closeSubpath();
    return {path};
}

/** An element that is read. */
struct ShapeKind
{
    char const* name;
    Drawn (*draw)(ShapeAttributes&);
};

constexpr ShapeKind shapeKinds[] = {
    {"circle", drawEllipse},
    {"ellipse", drawEllipse},
    {"line", drawLine},
    {"path", drawPath},
    {"polygon", drawPolygon},
    {"polyline", drawPolyline},
    {"rect", drawRectangle},
};

/** Elements that draw something else. */
constexpr char const* unreadKinds[] = {"caption", "connector", "control", "custom-shape", "frame",
    "measure", "regular-polygon", "scene"};

} // namespace

class OdfDrawing::Reader
{
public:
    bool read(
        QByteArray const& xml, QString const& part, QString const& file, Diagnostics& diagnostics)
    {
        m_part = part;
        BoundedXml::Error error;
        if (!BoundedXml::check(xml, error)) {
            diagnostics.add(faultAt(error.line, error.column, error.message.simplified(), file));
            return false;
        }
        QXmlStreamReader reader(xml);
        while (!reader.atEnd() && m_count <= maximumOdfShapes) {
            reader.readNext();
            if (reader.isStartElement())
                begin(reader, file);
            else if (reader.isEndElement())
                end(reader);
        }
        if (reader.hasError()) {
            diagnostics.add(faultAt(
                reader.lineNumber(), reader.columnNumber() + 1, reader.errorString(), file));
        } else if (m_count > maximumOdfShapes) {
            diagnostics.error(
                file, QStringLiteral("it draws more than %1 elements").arg(maximumOdfShapes));
        }
        return !reader.hasError() && m_count <= maximumOdfShapes;
    }

    std::vector<OdfGroup> takeGroups() { return std::exchange(m_groups, {}); }

    void warn(QString const& file, Diagnostics& diagnostics) const
    {
        for (auto it = m_unread.constBegin(); it != m_unread.constEnd(); ++it) {
            diagnostics.warning(
                file, QStringLiteral("%1 draw:%2: left out").arg(it.value()).arg(it.key()));
        }
        if (m_firstFault)
            diagnostics.add(*m_firstFault);
        warnOf(m_faults - 1, "more that cannot be read: left out", file, diagnostics);
        warnOf(m_unpainted, "painted with nothing: left out", file, diagnostics);
        warnOf(m_transformed, "with a draw:transform that is not heeded", file, diagnostics);
        warnOf(m_withText, "with text: not kept", file, diagnostics);
    }

private:
    static void warnOf(int count, char const* what, QString const& file, Diagnostics& diagnostics)
    {
        if (count > 0) {
            diagnostics.warning(file,
                QStringLiteral("%1 %2").arg(
                    countText(count, QStringLiteral("shape")), QLatin1String(what)));
        }
    }

    /** An error at a place of the part that is read. */
    Diagnostic faultAt(qint64 line, qint64 column, QString const& what, QString const& file) const
    {
        if (m_part.isEmpty())
            return {Diagnostic::Severity::Error, file, line, column, what};
        return {Diagnostic::Severity::Error, file, 0, 0,
            QStringLiteral("%1:%2:%3: %4").arg(m_part).arg(line).arg(column).arg(what)};
    }

    /** Whether an element holds drawings that are no stencils: backgrounds of pages, and notes. */
    static bool isOffThePage(QStringRef const& space, QStringRef const& name)
    {
        return (space == OdfNamespace::office() && name == QLatin1String("master-styles"))
            || (space == OdfNamespace::presentation() && name == QLatin1String("notes"));
    }

    void begin(QXmlStreamReader& reader, QString const& file)
    {
        QStringRef const space = reader.namespaceUri();
        QStringRef const name = reader.name();
        if (space == OdfNamespace::style()) {
            m_styles.read(reader);
        } else if (isOffThePage(space, name)) {
            reader.skipCurrentElement();
        } else if (space == OdfNamespace::draw() && name == QLatin1String("g")) {
            if (m_depth++ == 0)
                m_groups.emplace_back();
        } else if (space == OdfNamespace::draw()) {
            beginShape(reader, file);
        }
    }

    void end(QXmlStreamReader const& reader)
    {
        if (reader.namespaceUri() == OdfNamespace::draw() && reader.name() == QLatin1String("g"))
            --m_depth;
    }

    void beginShape(QXmlStreamReader& reader, QString const& file)
    {
        QString const kind = reader.name().toString();
        auto const* const known = std::find_if(std::begin(shapeKinds), std::end(shapeKinds),
            [&kind](ShapeKind const& shape) { return kind == QLatin1String(shape.name); });
        if (known != std::end(shapeKinds)) {
            add(*known, reader, file);
            return;
        }
        bool const isUnread = std::any_of(std::begin(unreadKinds), std::end(unreadKinds),
            [&kind](char const* unread) { return kind == QLatin1String(unread); });
        if (!isUnread)
            return;
        ++m_unread[kind];
        reader.skipCurrentElement();
    }

    void add(ShapeKind const& kind, QXmlStreamReader& reader, QString const& file)
    {
        ++m_count;
        ShapeAttributes attributes(reader.attributes());
        Drawn const drawn = kind.draw(attributes);
        if (!attributes.fault().isEmpty()) {
            noteFault(reader,
                QStringLiteral("draw:%1 left out: %2")
                    .arg(QLatin1String(kind.name), attributes.fault()),
                file);
        } else {
            add(drawn, kind, attributes);
        }
        m_withText += skipContent(reader) ? 1 : 0;
    }

    /** Goes to the end of the element; whether there is text in it, beside titles and the like. */
    static bool skipContent(QXmlStreamReader& reader)
    {
        bool hasText = false;
        while (reader.readNextStartElement()) {
            if (reader.namespaceUri() == OdfNamespace::text()) {
                QString const text = reader.readElementText(QXmlStreamReader::IncludeChildElements);
                hasText = hasText || !text.trimmed().isEmpty();
            } else {
                reader.skipCurrentElement();
            }
        }
        return hasText;
    }

    void add(Drawn const& drawn, ShapeKind const& kind, ShapeAttributes const& attributes)
    {
        QString const style = attributes.text(OdfNamespace::draw(), "style-name");
        auto const transform = odfTransform(attributes.text(OdfNamespace::draw(), "transform"));
        m_transformed += transform ? 0 : 1;
        OdfShape shape {attributes.text(OdfNamespace::draw(), "name").simplified(),
            transform.value_or(QTransform()).map(drawn.path), m_styles.pen(style),
            drawn.isArea ? m_styles.brush(style) : QBrush(Qt::NoBrush)};
        if (shape.name.isEmpty())
            shape.name = QStringLiteral("%1 %2").arg(QLatin1String(kind.name)).arg(m_count);
        if (shape.path.isEmpty()
            || (shape.pen.style() == Qt::NoPen && shape.brush.style() == Qt::NoBrush)) {
            ++m_unpainted;
            return;
        }
        if (m_depth == 0)
            m_groups.emplace_back();
        m_groups.back().push_back(shape);
    }

    void noteFault(QXmlStreamReader const& reader, QString const& what, QString const& file)
    {
        if (m_faults++ > 0)
            return;
        m_firstFault = faultAt(reader.lineNumber(), reader.columnNumber() + 1, what, file);
        m_firstFault->severity = Diagnostic::Severity::Warning;
    }

    OdfStyles m_styles;
    std::vector<OdfGroup> m_groups;
    QString m_part;
    QMap<QString, int> m_unread;
    std::optional<Diagnostic> m_firstFault;
    int m_depth = 0; ///< of draw:g
    int m_count = 0; ///< of elements that are read
    int m_faults = 0;
    int m_unpainted = 0;
    int m_transformed = 0; ///< in a way that is not read
    int m_withText = 0;
};

OdfDrawing::OdfDrawing()
    : m_reader(std::make_unique<Reader>())
{
}

OdfDrawing::~OdfDrawing() = default;

bool OdfDrawing::read(
    QByteArray const& xml, QString const& part, QString const& file, Diagnostics& diagnostics)
{
    return m_reader->read(xml, part, file, diagnostics);
}

std::vector<OdfGroup> OdfDrawing::takeGroups()
{
    return m_reader->takeGroups();
}

void OdfDrawing::warn(QString const& file, Diagnostics& diagnostics) const
{
    m_reader->warn(file, diagnostics);
}
