#include "document/documentnormalizer.h"

#include "boundedxml_p.h"
#include "common/text.h"
#include "document/geometrywalker.h"
#include "document/markup.h"
#include "document/shapes.h"
#include "document/writetext.h"
#include "geometryformat_p.h"
#include "numbertext_p.h"
#include "segmentkind_p.h"
#include "xmlstreamwriter.h"

#include <QMap>

#include <algorithm>
#include <cmath>
#include <unordered_map>

namespace {

using Kind = MarkupNode::Kind;
using Nodes = std::vector<MarkupNode const*>;

/** Names in messages are cut to this. */
constexpr int longestQuote = 40;

QString localName(QString const& name)
{
    return name.mid(name.indexOf(QLatin1Char(':')) + 1);
}

bool isBlankText(MarkupNode const& node)
{
    return node.kind == Kind::Text && isBlank(node.text);
}

/** Whether the white space in the element is part of what it says. */
bool isMixed(MarkupNode const& element)
{
    bool const isPreserved = std::any_of(element.attributes.cbegin(), element.attributes.cend(),
        [](MarkupAttribute const& attribute) {
            return attribute.name == QLatin1String("xml:space")
                && attribute.value == QLatin1String("preserve");
        });
    return isPreserved
        || std::any_of(
            element.children.cbegin(), element.children.cend(), [](MarkupNode const& child) {
                return child.kind == Kind::CharacterData || child.kind == Kind::Reference
                    || (child.kind == Kind::Text && !isBlank(child.text));
            });
}

/** Whether it holds nothing but a space, which may be meant. */
bool isOnlySpace(MarkupNode const& element)
{
    return element.children.size() == 1 && isBlankText(element.children.front())
        && !element.children.front().text.contains(QLatin1Char('\n'));
}

/** Writes one document anew. */
class Normalizer
{
public:
    Normalizer(OutlineDocument const& document, qint64 largest, Diagnostics& diagnostics)
        : m_document(document)
        , m_largest(largest)
        , m_diagnostics(diagnostics)
        , m_markup(markupOf(document.text()))
        , m_writer(&m_text)
    {
        auto next = document.outlines().cbegin();
        for (MarkupNode const& node : m_markup.nodes)
            findOutlines(node, next);
    }

    std::optional<QByteArray> make()
    {
        QString const version = QStringLiteral("1.0");
        if (m_markup.isStandalone)
            m_writer.writeStartDocument(version, true);
        else
            m_writer.writeStartDocument(version);
        for (MarkupNode const& node : m_markup.nodes) {
            startLine(0);
            write(node, 0, false);
        }
        startLine(0);
        if (isTooLarge()) {
            m_diagnostics.error(m_document.file(),
                QStringLiteral("normalised, it would be larger than %1 bytes").arg(m_largest));
            return std::nullopt;
        }
        if (m_rounded > 0) {
            m_diagnostics.warning(m_document.file(),
                QStringLiteral("rounded to six digits: %1")
                    .arg(countText(m_rounded, QStringLiteral("number"))));
        }
        return m_text;
    }

private:
    void findOutlines(MarkupNode const& node, std::vector<Outline>::const_iterator& next)
    {
        if (node.name == GeometryFormat::geometry() && node.kind == Kind::Element)
            m_outlines.emplace(&node, &*next++);
        for (MarkupNode const& child : node.children)
            findOutlines(child, next);
    }

    /** Nothing is written from here on: lines of deep elements may be much longer than these. */
    bool isTooLarge() const { return m_text.size() > m_largest; }

    void startLine(int depth)
    {
        m_writer.writeCharacters(QLatin1Char('\n') + QString(depth, QLatin1Char(' ')));
    }

    /** Texts between which something was left out are one text from now on. */
    void startPart(MarkupNode const& node, MarkupNode const* previous, int depth)
    {
        if (previous && previous->kind == Kind::Text && node.kind == Kind::Text)
            m_writer.writeCharacters(QStringLiteral(" "));
        else
            startLine(depth);
    }

    void leaveOut(MarkupNode const& element)
    {
        QString const name = elided(element.name, longestQuote);
        m_diagnostics.add(
            {Diagnostic::Severity::Warning, m_document.file(), element.line, element.column,
                QStringLiteral("element %1 is left out: the stream reader takes it for %2")
                    .arg(name, localName(name))});
    }

    // -- What is foreign

    /** @param isVerbatim whether white space is kept as it is */
    void write(MarkupNode const& node, int depth, bool isVerbatim)
    {
        if (isTooLarge())
            return;
        switch (node.kind) {
        case Kind::Element:
            writeElement(node, depth, isVerbatim);
            break;
        case Kind::Text:
            writeText(m_writer, isVerbatim ? node.text : collapsed(node.text));
            break;
        case Kind::CharacterData:
            m_writer.writeCDATA(node.text);
            break;
        case Kind::Reference:
            m_writer.writeEntityReference(node.name);
            break;
        case Kind::Comment:
            m_writer.writeComment(node.text);
            break;
        case Kind::Instruction:
            m_writer.writeProcessingInstruction(node.name, node.text);
            break;
        case Kind::DocumentType:
            m_hasDefaults = node.text.contains(QLatin1String("<!ATTLIST"));
            m_writer.writeDTD(node.text.trimmed());
            break;
        }
    }

    void writeElement(MarkupNode const& element, int depth, bool isVerbatim)
    {
        if (auto const outline = m_outlines.find(&element); outline != m_outlines.end()) {
            writeOutline(element, *outline->second->list, depth);
            return;
        }
        m_writer.writeStartElement(element.name);
        writeAttributes(element, {});
        if (isVerbatim || isMixed(element) || isOnlySpace(element)) {
            for (MarkupNode const& child : element.children)
                write(child, depth + 1, true);
        } else {
            writeLines(element, depth);
        }
        m_writer.writeEndElement();
    }

    /** Writes those that are not written already, sorted. */
    void writeAttributes(MarkupNode const& element, QStringList const& written)
    {
        QMap<QString, QString> attributes;
        for (MarkupAttribute const& attribute : element.attributes) {
            if (!attribute.isDefault && !written.contains(attribute.name))
                attributes.insert(attribute.name, attribute.value);
        }
        for (auto it = attributes.cbegin(); it != attributes.cend(); ++it)
            m_writer.writeAttribute(it.key(), it.value());
    }

    /** Writes the content of an element, a line for each part of it. */
    void writeLines(MarkupNode const& element, int depth)
    {
        bool hasLines = false;
        for (MarkupNode const& child : element.children) {
            if (isTooLarge() || isBlankText(child))
                continue;
            startLine(depth + 1);
            write(child, depth + 1, false);
            hasLines = true;
        }
        if (hasLines)
            startLine(depth);
    }

    // -- Outlines

    void writeOutline(MarkupNode const& element, KpPathSegList const& list, int depth)
    {
        m_writer.writeStartElement(element.name);
        writeFlags(m_writer, list);
        if (m_hasDefaults)
            writeClearFlags(list);
        writeAttributes(element,
            {GeometryFormat::closed(), GeometryFormat::noFill(), GeometryFormat::noLine()});
        GeometryWalker walker(list);
        MarkupNode const* previous = nullptr;
        for (MarkupNode const& child : element.children) {
            KpPathSeg* const seg = child.kind == Kind::Element ? walker.enter(child.name) : nullptr;
            if (isTooLarge() || isBlankText(child) || (!seg && isLeftOut(child)))
                continue;
            startPart(child, previous, depth + 1);
            previous = &child;
            if (seg)
                writeSegment(child, *seg, depth + 1);
            else
                write(child, depth + 1, false);
        }
        if (previous)
            startLine(depth);
        m_writer.writeEndElement();
    }

    /** The document type may say that a flag is set unless it is given. */
    void writeClearFlags(KpPathSegList const& list)
    {
        if (!list.noFill)
            m_writer.writeAttribute(GeometryFormat::noFill(), "0");
        if (!list.noLine)
            m_writer.writeAttribute(GeometryFormat::noLine(), "0");
    }

    /** Whether the child of an outline is no segment to the DOM reader, but to the other one. */
    bool isLeftOut(MarkupNode const& child)
    {
        QString const name = localName(child.name);
        bool const isSegment = child.kind == Kind::Element
            && SegmentKind::find(
                [&name](SegmentKind::Kind const& kind) { return kind.name() == name; });
        if (isSegment)
            leaveOut(child);
        return isSegment;
    }

    /** A coordinate of a segment with what belongs to it. */
    struct CoordinatePart
    {
        MarkupNode const* element = nullptr; ///< null if it is missing
        Nodes before; ///< what is foreign before it: comments on it, say
    };

    void writeSegment(MarkupNode const& element, KpPathSeg& seg, int depth)
    {
        SegmentWalker walker(seg);
        std::vector<CoordinatePart> parts(static_cast<std::size_t>(walker.coordinates().size()));
        Nodes const rest = distribute(element, walker, parts);

        m_writer.writeStartElement(element.name);
        writeAttributes(element, {});
        std::size_t next = 0;
        for (SegmentWalker::Coordinate const& coordinate : walker.coordinates()) {
            CoordinatePart const& part = parts[next++];
            writeEach(part.before, depth + 1);
            startLine(depth + 1);
            writeCoordinate(coordinate, part.element, depth + 1);
        }
        writeEach(rest, depth + 1);
        startLine(depth);
        m_writer.writeEndElement();
    }

    /** Finds what belongs to each coordinate; what is left stands behind the last of them. */
    Nodes distribute(
        MarkupNode const& element, SegmentWalker& walker, std::vector<CoordinatePart>& parts)
    {
        Nodes pending;
        for (MarkupNode const& child : element.children) {
            if (isBlankText(child))
                continue;
            if (child.kind != Kind::Element) {
                pending.push_back(&child);
                continue;
            }
            auto const match = walker.enter(child.name);
            if (match.real && match.isFirst) {
                CoordinatePart& part = parts[indexOf(walker, child.name)];
                part.element = &child;
                part.before.swap(pending);
            } else if (!match.real && indexOf(walker, localName(child.name)) < parts.size()) {
                leaveOut(child);
            } else if (!match.real) {
                pending.push_back(&child);
            }
        }
        return pending;
    }

    /** Of a coordinate of the segment; how many there are, if it is none. */
    static std::size_t indexOf(SegmentWalker const& walker, QString const& letter)
    {
        auto const& known = walker.coordinates();
        auto const found = std::find_if(known.cbegin(), known.cend(),
            [&letter](auto const& coordinate) { return coordinate.letter == letter; });
        return static_cast<std::size_t>(std::distance(known.cbegin(), found));
    }

    void writeEach(Nodes const& nodes, int depth)
    {
        MarkupNode const* previous = nullptr;
        for (MarkupNode const* const node : nodes) {
            startPart(*node, previous, depth);
            write(*node, depth, false);
            previous = node;
        }
    }

    /** @param element null for a coordinate that is missing */
    void writeCoordinate(
        SegmentWalker::Coordinate const& coordinate, MarkupNode const* element, int depth)
    {
        m_writer.writeStartElement(coordinate.letter);
        writeReal(m_writer, *coordinate.real);
        countRounded(*coordinate.real);
        if (element) {
            writeAttributes(*element,
                {GeometryFormat::value(), GeometryFormat::base(), GeometryFormat::rate()});
            writeLines(*element, depth);
        }
        m_writer.writeEndElement();
    }

    void countRounded(KpReal const& real)
    {
        auto const isRounded = [](double number) {
            double const written = NumberText::toReal(NumberText::fromReal(number));
            return !std::isnan(number) && !(written >= number && written <= number);
        };
        m_rounded += isRounded(real.value) ? 1 : 0;
        m_rounded += real.base != KpReal::Absolute && isRounded(real.rate) ? 1 : 0;
    }

    OutlineDocument const& m_document;
    qint64 const m_largest;
    Diagnostics& m_diagnostics;
    Markup const m_markup;
    QByteArray m_text;
    XmlStreamWriter m_writer;
    std::unordered_map<MarkupNode const*, Outline const*> m_outlines;
    bool m_hasDefaults = false; ///< the document type gives elements attributes
    qint64 m_rounded = 0;
};

} // namespace

std::optional<QByteArray> normalized(OutlineDocument const& document, Diagnostics& diagnostics)
{
    return normalized(document, BoundedXml::Limits().bytes, diagnostics);
}

std::optional<QByteArray> normalized(
    OutlineDocument const& document, qint64 largest, Diagnostics& diagnostics)
{
    return Normalizer(document, largest, diagnostics).make();
}
