// SPDX-License-Identifier: MIT
#include "document/documentnormalizer.h"

#include "common/text.h"
#include "document/elements.h"
#include "document/geometrywalker.h"
#include "document/shapes.h"
#include "document/writetext.h"
#include "geometryformat_p.h"
#include "numbertext_p.h"
#include "segmentkind_p.h"
#include "xmlstreamwriter.h"

#include <QIODevice>
#include <QMap>

#include <algorithm>
#include <cmath>
#include <unordered_map>

namespace {

using Kind = MarkupNode::Kind;
using Nodes = std::vector<MarkupNode const*>;

/** Names in messages are cut to this. */
constexpr int longestElementName = 40;

bool isBlankText(MarkupNode const& node)
{
    return node.kind == Kind::Text && isBlank(node.text);
}

/**
 * Finds whether the white space in an element is part of what it says, as one goes through its
 * content: there is text beside it, it says so, or nothing else is there.
 */
class SpaceFinder
{
public:
    explicit SpaceFinder(MarkupNode const& element)
    {
        MarkupAttribute const* const space = element.attribute(QStringLiteral("xml:space"));
        m_isKept = space && space->value == QLatin1String("preserve");
    }

    /** Texts in a row are one. */
    void add(MarkupNode const& child)
    {
        bool const isBlankChild = isBlankText(child);
        m_isKept = m_isKept || child.kind == Kind::CharacterData || child.kind == Kind::Reference
            || (child.kind == Kind::Text && !isBlankChild);
        m_isOnlySpace =
            isBlankChild && (m_isEmpty || m_isOnlySpace) && !child.text.contains(QLatin1Char('\n'));
        m_isEmpty = false;
    }

    bool isKept() const { return m_isKept || m_isOnlySpace; }

private:
    bool m_isKept;
    bool m_isEmpty = true;
    bool m_isOnlySpace = false; ///< within a line
};

bool isSpaceKept(MarkupNode const& element)
{
    SpaceFinder finder(element);
    for (MarkupNode const& child : element.children)
        finder.add(child);
    return finder.isKept();
}

/** Goes through a document and finds of each element outside outlines whether its space is kept. */
class SpaceSurvey
{
public:
    /** Takes the token at which the reader is. */
    void take(QXmlStreamReader const& reader)
    {
        if (reader.isStartElement()) {
            MarkupNode const element = nodeAt(reader);
            addChild(element);
            m_open.push_back({m_isKept.size(), SpaceFinder(element)});
            m_isKept.push_back(false);
        } else if (reader.isEndElement()) {
            m_isKept[m_open.back().index] = m_open.back().finder.isKept();
            m_open.pop_back();
        } else if (!m_open.empty()) {
            addChild(nodeAt(reader));
        }
    }

    /** Takes an element that is not told of otherwise. */
    void addChild(MarkupNode const& child)
    {
        if (!m_open.empty())
            m_open.back().finder.add(child);
    }

    /** For each element, in document order. */
    std::vector<bool> const& isKept() const { return m_isKept; }

private:
    struct Open
    {
        std::size_t index;
        SpaceFinder finder;
    };

    std::vector<Open> m_open;
    std::vector<bool> m_isKept;
};

/** Writes one document anew, of which it is told piece by piece. */
class Normalizer
{
public:
    /** @param isSpaceKept as SpaceSurvey has found it */
    Normalizer(QString const& file, std::vector<bool> const& isSpaceKept, QIODevice& output,
        Diagnostics& diagnostics)
        : m_file(file)
        , m_isSpaceKept(isSpaceKept)
        , m_diagnostics(diagnostics)
        , m_writer(&output)
    {
    }

    /** Takes a token outside outlines. */
    void take(QXmlStreamReader const& reader)
    {
        bool const isText = reader.isCharacters() && !reader.isCDATA();
        if (isText)
            m_text.text += reader.text();
        else
            endText();
        switch (reader.tokenType()) {
        case QXmlStreamReader::StartDocument:
            startDocument(reader.isStandaloneDocument());
            break;
        case QXmlStreamReader::StartElement:
            startElement(nodeAt(reader));
            break;
        case QXmlStreamReader::EndElement:
            endElement();
            break;
        case QXmlStreamReader::EndDocument:
            endDocument();
            break;
        default:
            if (!isText)
                put(nodeAt(reader));
            break;
        }
    }

    /** Takes an outline with those inside it. */
    void take(Outlines const& outlines)
    {
        endText();
        m_outlines.clear();
        for (Outline const& outline : outlines)
            m_outlines.emplace(outline.markup, &outline);
        put(*outlines.front().markup);
    }

private:
    /** An element outside outlines whose end is still to come. */
    struct Open
    {
        bool isSpaceKept;
        bool hasLines;
    };

    void startDocument(bool isStandalone)
    {
        QString const version = QStringLiteral("1.0");
        if (isStandalone)
            m_writer.writeStartDocument(version, true);
        else
            m_writer.writeStartDocument(version);
    }

    void endDocument()
    {
        startLine(0);
        if (m_rounded > 0) {
            m_diagnostics.warning(m_file,
                QStringLiteral("rounded to six digits: %1")
                    .arg(countText(m_rounded, QStringLiteral("number"))));
        }
    }

    void startElement(MarkupNode const& element)
    {
        bool const isInKept = !m_open.empty() && m_open.back().isSpaceKept;
        put(element, [&] {
            m_writer.writeStartElement(element.name);
            writeAttributes(element, {});
        });
        // The document may have changed meanwhile.
        bool const isKept = m_next < m_isSpaceKept.size() && m_isSpaceKept[m_next];
        m_open.push_back({isInKept || isKept, false});
        ++m_next;
    }

    void endElement()
    {
        Open const element = m_open.back();
        m_open.pop_back();
        if (element.hasLines)
            startLine(depth());
        m_writer.writeEndElement();
    }

    /** The text that was gathered is at its end. */
    void endText()
    {
        if (m_text.text.isEmpty())
            return;
        put(m_text);
        m_text.text.clear();
    }

    /** Puts a part of the open element where it belongs. */
    template <class Write> void put(MarkupNode const& node, Write const& write)
    {
        bool const isSpaceKept = !m_open.empty() && m_open.back().isSpaceKept;
        if (!isSpaceKept) {
            if (isBlankText(node))
                return;
            startLine(depth());
            if (!m_open.empty())
                m_open.back().hasLines = true;
        }
        write();
    }

    void put(MarkupNode const& node)
    {
        bool const isSpaceKept = !m_open.empty() && m_open.back().isSpaceKept;
        put(node, [&] { write(node, depth(), isSpaceKept); });
    }

    int depth() const { return static_cast<int>(m_open.size()); }

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
        m_diagnostics.add({Diagnostic::Severity::Warning, m_file, element.line, element.column,
            QStringLiteral("element %1 is left out: the stream reader takes it for %2")
                .arg(elided(element.name, longestElementName), localName(element.name))});
    }

    // -- What is foreign

    /** @param isVerbatim whether white space is kept as it is */
    void write(MarkupNode const& node, int depth, bool isVerbatim)
    {
        switch (node.kind) {
        case Kind::Element:
            writeElement(node, depth, isVerbatim);
            break;
        case Kind::Text:
            writeText(m_writer, isVerbatim ? node.text : collapsed(node.text));
            break;
        case Kind::DocumentType:
            m_hasDefaults = node.text.contains(QLatin1String("<!ATTLIST"));
            writeLeaf(m_writer, node);
            break;
        default:
            writeLeaf(m_writer, node);
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
        if (isVerbatim || isSpaceKept(element)) {
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
            if (isBlankText(child))
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
            if (isBlankText(child) || (!seg && isLeftOut(child)))
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

    QString const m_file;
    std::vector<bool> const& m_isSpaceKept;
    Diagnostics& m_diagnostics;
    XmlStreamWriter m_writer;
    std::vector<Open> m_open;
    std::size_t m_next = 0; ///< index of the next element outside outlines
    MarkupNode m_text {Kind::Text, {}, {}, {}, {}, 0, 0}; ///< what was gathered of a text
    std::unordered_map<MarkupNode const*, Outline const*> m_outlines;
    bool m_hasDefaults = false; ///< the document type gives elements attributes
    qint64 m_rounded = 0;
};

/**
 * Reads all of a document: `takeToken` is called with each token outside outlines, `takeOutlines`
 * with each group of outlines. False, with a diagnostic, if it cannot be read.
 */
template <class TakeToken, class TakeOutlines>
bool readAll(OutlineReader& reader, TakeToken const& takeToken, TakeOutlines const& takeOutlines,
    Diagnostics& diagnostics)
{
    reader.setVisitor(takeToken);
    for (Outlines group = reader.next(); !group.empty(); group = reader.next())
        takeOutlines(group);
    if (reader.fault())
        diagnostics.add(*reader.fault());
    return !reader.fault();
}

} // namespace

bool normalizeDocument(
    RepeatableInput const& input, QString const& file, QIODevice& output, Diagnostics& diagnostics)
{
    SpaceSurvey survey;
    auto const first = input();
    OutlineReader surveyed(*first, file);
    MarkupNode const outline {Kind::Element, GeometryFormat::geometry(), {}, {}, {}, 0, 0};
    bool const isRead = readAll(
        surveyed, [&survey](QXmlStreamReader const& xml) { survey.take(xml); },
        [&](Outlines const& /*group*/) { survey.addChild(outline); }, diagnostics);
    if (!isRead)
        return false;

    Normalizer normalizer(file, survey.isKept(), output, diagnostics);
    auto const second = input();
    OutlineReader reader(*second, file, OutlineReader::Detail::Markup);
    return readAll(
        reader, [&normalizer](QXmlStreamReader const& xml) { normalizer.take(xml); },
        [&normalizer](Outlines const& group) { normalizer.take(group); }, diagnostics);
}
