// SPDX-License-Identifier: MIT
#include "document/outlinereader.h"

#include "boundedxml_p.h"
#include "common/xmldiagnostic.h"
#include "document/contentkind.h"
#include "document/shapeformat.h"
#include "geometryxml_p.h"

#include <QIODevice>

#include <algorithm>

/** What the element around an outline may say of it. */
struct OutlineReader::Surroundings
{
    QString name;
    QString width;
    QString height;
    QString fillRule;
};

namespace {

/** A null text for an empty one, too: in a tree that does not count either. */
QStringRef givenOnly(QStringRef const& text)
{
    return text.isEmpty() ? QStringRef() : text;
}

QStringRef valueOf(QXmlStreamAttributes const& attributes, QString const& name)
{
    return givenOnly(attributes.value(name));
}

QStringRef letterOf(QXmlStreamAttributes const& attributes, QString const& letter)
{
    return givenOnly(GeometryXml::textOf(attributes, letter));
}

QStringRef valueOf(MarkupNode const& element, QString const& name)
{
    MarkupAttribute const* const attribute = element.attribute(name);
    return attribute ? givenOnly(QStringRef(&attribute->value)) : QStringRef();
}

QStringRef letterOf(MarkupNode const& element, QString const& letter)
{
    return valueOf(element, letter);
}

/** Whether there may be attributes of an element around an outline: most are coordinates. */
bool mayBeNamed(QXmlStreamAttributes const& attributes)
{
    return std::any_of(attributes.cbegin(), attributes.cend(),
        [](auto const& attribute) { return attribute.qualifiedName().size() > 1; });
}

bool mayBeNamed(MarkupNode const& element)
{
    return !element.attributes.isEmpty();
}

} // namespace

/**
 * An outline and those inside it, made of the start and end tags that it is told, the outermost
 * first and last.
 */
class OutlineReader::Group
{
public:
    /** @param index of the outermost outline */
    Group(int index, Surroundings const& around)
        : m_index(index)
        , m_around {around}
    {
    }

    /** Where an element is, and its markup or null. */
    struct Place
    {
        qint64 line;
        qint64 column;
        MarkupNode const* markup;
    };

    template <class Attributes>
    void startElement(QStringRef const& name, Attributes const& attributes, Place const& place)
    {
        if (name == GeometryFormat::geometry())
            startOutline(attributes, place);
        else if (m_around.size() == m_open.back().depth + 1)
            startSegment(name);
        else if (m_around.size() == m_open.back().depth + 2 && m_open.back().segment)
            readCoordinate(name, attributes);
        m_around.push_back(surroundingsFrom(attributes));
    }

    void endElement()
    {
        m_around.pop_back();
        if (m_around.size() == m_open.back().depth)
            m_open.pop_back();
    }

    bool isOpen() const { return !m_open.empty(); }
    Outlines take() { return std::move(m_outlines); }

    template <class Attributes> static Surroundings surroundingsFrom(Attributes const& attributes)
    {
        if (!mayBeNamed(attributes))
            return {};
        return {valueOf(attributes, ShapeFormat::name()).toString(),
            valueOf(attributes, ShapeFormat::width()).toString(),
            valueOf(attributes, ShapeFormat::height()).toString(),
            valueOf(attributes, ShapeFormat::fillRule()).toString()};
    }

private:
    /** An outline whose end is still to come. */
    struct Open
    {
        std::size_t depth; ///< how many elements are around it
        KpPathSegList* list;
        KpPathSeg* segment; ///< at whose children it is, or null
        unsigned int given; ///< a bit for each coordinate that the segment has had
    };

    template <class Attributes> void startOutline(Attributes const& attributes, Place const& place)
    {
        Surroundings const& around = m_around.back();
        auto list = std::make_unique<KpPathSegList>();
        GeometryXml::readFlag(list->closed, valueOf(attributes, GeometryFormat::closed()));
        GeometryXml::readFlag(list->noFill, valueOf(attributes, GeometryFormat::noFill()));
        GeometryXml::readFlag(list->noLine, valueOf(attributes, GeometryFormat::noLine()));
        m_open.push_back({m_around.size(), list.get(), nullptr, 0});
        m_outlines.push_back({m_index++, around.name.simplified(),
            fillRuleFromText(around.fillRule), around.width, around.height, place.line,
            place.column, m_open.size() > 1, place.markup, std::move(list)});
    }

    void startSegment(QStringRef const& name)
    {
        Open& open = m_open.back();
        auto const* const kind =
            SegmentKind::find([&name](auto const& known) { return name == known.name(); });
        open.segment = kind ? kind->create(open.list) : nullptr;
        open.given = 0;
        open.list->addTail(open.segment);
    }

    template <class Attributes>
    void readCoordinate(QStringRef const& name, Attributes const& attributes)
    {
        Open& open = m_open.back();
        bool const isFirstTaken = open.segment->type == KpPathSeg::SegMoveTo
            || open.segment->type == KpPathSeg::SegLineTo;
        unsigned int bit = 1;
        SegmentKind::forEachCoordinate(*open.segment, [&](QString const& letter, KpReal& real) {
            bool const isSkipped = isFirstTaken && (open.given & bit) != 0;
            if (GeometryXml::isLetter(name, letter) && !isSkipped) {
                open.given |= bit;
                GeometryXml::readReal(real, [&attributes](QString const& attribute) {
                    return letterOf(attributes, attribute);
                });
            }
            bit <<= 1U;
        });
    }

    int m_index;
    std::vector<Surroundings>
        m_around; ///< the elements that are open, the outlines' own among them
    std::vector<Open> m_open;
    Outlines m_outlines;
};

OutlineReader::OutlineReader(QIODevice& device, QString const& file, Detail detail)
    : m_device(device)
    , m_file(file)
    , m_detail(detail)
    , m_reader(std::make_unique<BoundedXml::Reader>(device))
    , m_markup {MarkupNode::Kind::Element, {}, {}, {}, {}, 0, 0}
{
    constexpr int enoughToTell = 1024;
    if (QString const kind = kindOfContent(device.peek(enoughToTell)); !kind.isEmpty()) {
        m_fault = {Diagnostic::Severity::Error, file, 0, 0,
            QStringLiteral("%1, not an XML document").arg(kind)};
    }
}

OutlineReader::~OutlineReader() = default;

Outlines OutlineReader::next()
{
    QXmlStreamReader const& xml = m_reader->xml();
    while (readNext()) {
        if (xml.isStartElement() && xml.qualifiedName() == GeometryFormat::geometry())
            return readGroup();
        if (xml.isStartElement()) {
            if (m_root.isNull())
                m_root = xml.qualifiedName().toString();
            m_open.push_back(Group::surroundingsFrom(xml.attributes()));
        } else if (xml.isEndElement()) {
            m_open.pop_back();
        }
        if (m_visit)
            m_visit(xml);
    }
    return {};
}

bool OutlineReader::readNext()
{
    if (m_fault)
        return false;
    bool const isThere = m_reader->readNext();
    if (!m_reader->error().isNull())
        m_fault = xmlDiagnostic(m_reader->error(), m_file);
    if (m_progress && m_reader->bytesRead() >= m_nextTold)
        tellProgress();
    return isThere;
}

void OutlineReader::tellProgress()
{
    constexpr int manyBytes = 1 << 18;
    double const size = std::max(1.0, static_cast<double>(m_device.size()));
    m_progress(std::min(1.0, static_cast<double>(m_reader->bytesRead()) / size));
    m_nextTold = m_reader->bytesRead() + manyBytes;
}

Outlines OutlineReader::readGroup()
{
    QXmlStreamReader const& xml = m_reader->xml();
    Group group(m_count + 1, m_open.empty() ? Surroundings() : m_open.back());
    if (m_detail == Detail::Markup) {
        m_markup = markupOf(*m_reader);
        forEachElement(
            m_markup,
            [&group](MarkupNode const& element) {
                group.startElement(
                    QStringRef(&element.name), element, {element.line, element.column, &element});
            },
            [&group] { group.endElement(); });
    } else {
        do {
            if (xml.isStartElement())
                group.startElement(xml.qualifiedName(), xml.attributes(),
                    {xml.lineNumber(), xml.columnNumber(), nullptr});
            else if (xml.isEndElement())
                group.endElement();
        } while (group.isOpen() && readNext());
    }
    if (!m_reader->error().isNull())
        m_fault = xmlDiagnostic(m_reader->error(), m_file);
    if (m_fault)
        return {};
    Outlines outlines = group.take();
    m_count += static_cast<int>(outlines.size());
    return outlines;
}

bool OutlineReader::isSvgPicture() const
{
    return m_count == 0 && m_root.section(QLatin1Char(':'), -1) == QLatin1String("svg");
}

QString caption(Outline const& outline)
{
    return outline.name.isEmpty() ? QStringLiteral("#%1").arg(outline.index) : outline.name;
}

QString fillRuleText(Qt::FillRule rule)
{
    return rule == Qt::OddEvenFill ? QStringLiteral("evenodd") : QStringLiteral("nonzero");
}

std::optional<Qt::FillRule> fillRuleFromText(QString const& text)
{
    for (Qt::FillRule const rule : {Qt::OddEvenFill, Qt::WindingFill}) {
        if (text == fillRuleText(rule))
            return rule;
    }
    return std::nullopt;
}
