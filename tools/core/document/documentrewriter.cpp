#include "document/documentrewriter.h"

#include "document/geometrywalker.h"
#include "document/writetext.h"
#include "geometryformat_p.h"
#include "numbertext_p.h"
#include "xmlstreamwriter.h"

#include <QIODevice>

#include <algorithm>
#include <cmath>
#include <unordered_map>

namespace {

/** The outlines of a group, by their elements. */
class OutlinesByMarkup
{
public:
    explicit OutlinesByMarkup(Outlines const& outlines)
    {
        for (Outline const& outline : outlines)
            m_lists.emplace(outline.markup, outline.list.get());
    }

    /** The outline that the element is, or null. */
    KpPathSegList const* listOf(MarkupNode const& element) const
    {
        auto const found = m_lists.find(&element);
        return found == m_lists.cend() ? nullptr : found->second;
    }

private:
    std::unordered_map<MarkupNode const*, KpPathSegList const*> m_lists;
};

/** Copies a document token by token, and its outlines as they stand in their lists. */
class DocumentRewriter
{
public:
    explicit DocumentRewriter(QIODevice& output)
        : m_writer(&output)
    {
    }

    /** Copies a token outside outlines. */
    void copy(QXmlStreamReader const& reader)
    {
        switch (reader.tokenType()) {
        case QXmlStreamReader::StartDocument:
            startDocument(reader.isStandaloneDocument());
            break;
        case QXmlStreamReader::StartElement:
            m_writer.writeStartElement(reader.qualifiedName().toString());
            m_writer.writeAttributes(reader.attributes());
            ++m_depth;
            return;
        case QXmlStreamReader::EndElement:
            m_writer.writeEndElement();
            --m_depth;
            break;
        case QXmlStreamReader::EndDocument:
            return;
        default:
            writeLeaf(m_writer, nodeAt(reader));
            break;
        }
        endLine();
    }

    /** Copies an outline and those inside it. */
    void copy(Outlines const& outlines)
    {
        OutlinesByMarkup const byMarkup(outlines);
        copyElement(*outlines.front().markup, byMarkup);
        endLine();
    }

private:
    void startDocument(bool isStandalone)
    {
        QString const version = QStringLiteral("1.0");
        if (isStandalone)
            m_writer.writeStartDocument(version, true);
        else
            m_writer.writeStartDocument(version);
    }

    /** White space outside the root element is no token. */
    void endLine()
    {
        if (m_depth == 0)
            m_writer.writeCharacters(QStringLiteral("\n"));
    }

    /** @param copyChild copies an element inside */
    template <class CopyChild> void copyContent(MarkupNode const& element, CopyChild copyChild)
    {
        for (MarkupNode const& child : element.children) {
            if (child.kind == MarkupNode::Kind::Element)
                copyChild(child);
            else
                writeLeaf(m_writer, child);
        }
    }

    void startElement(MarkupNode const& element)
    {
        m_writer.writeStartElement(element.name);
        for (MarkupAttribute const& attribute : element.attributes)
            m_writer.writeAttribute(attribute.name, attribute.value);
    }

    void copyElement(MarkupNode const& element, OutlinesByMarkup const& outlines)
    {
        startElement(element);
        if (KpPathSegList const* const list = outlines.listOf(element)) {
            GeometryWalker walker(*list);
            copyContent(element, [&](MarkupNode const& child) {
                if (KpPathSeg* const seg = walker.enter(child.name))
                    copySegment(child, *seg, outlines);
                else
                    copyElement(child, outlines);
            });
        } else {
            copyContent(element, [&](MarkupNode const& child) { copyElement(child, outlines); });
        }
        m_writer.writeEndElement();
    }

    void copySegment(MarkupNode const& element, KpPathSeg& seg, OutlinesByMarkup const& outlines)
    {
        startElement(element);
        SegmentWalker walker(seg);
        copyContent(element, [&](MarkupNode const& child) {
            auto const match = walker.enter(child.name);
            if (match.real)
                copyCoordinate(child, *match.real, match.isFirst, outlines);
            else
                copyElement(child, outlines);
        });
        for (SegmentWalker::Coordinate const& coordinate : walker.coordinates()) {
            if (coordinate.isGiven)
                continue;
            m_writer.writeStartElement(coordinate.letter);
            writeAttributes(*coordinate.real, {}, true);
            m_writer.writeEndElement();
        }
        m_writer.writeEndElement();
    }

    /** @param isFirst false for a coordinate that its segment has had before */
    void copyCoordinate(MarkupNode const& element, KpReal const& real, bool isFirst,
        OutlinesByMarkup const& outlines)
    {
        m_writer.writeStartElement(element.name);
        writeAttributes(real, element.attributes, isFirst);
        copyContent(element, [&](MarkupNode const& child) { copyElement(child, outlines); });
        m_writer.writeEndElement();
    }

    /**
     * The attributes as they are if they read as the real does, and the real's in their place
     * if not. The rule of an absolute real is written down, which the document format leaves
     * out: without it it would be read back bound in proportion to the box. What a coordinate
     * that is given again leaves open stands in the first one, to all digits.
     */
    void writeAttributes(KpReal const& real, QVector<MarkupAttribute> const& given, bool isFirst)
    {
        for (MarkupAttribute const& attribute : given) {
            if (readsAs(real, attribute))
                m_writer.writeAttribute(attribute.name, attribute.value);
            else if (isFirst || !attribute.value.isEmpty())
                m_writer.writeAttribute(attribute.name, textOf(real, attribute.name));
        }
        for (QString const& name :
            {GeometryFormat::value(), GeometryFormat::base(), GeometryFormat::rate()}) {
            bool const isNeeded =
                isFirst && (name != GeometryFormat::rate() || real.base != KpReal::Absolute);
            bool const isGiven = std::any_of(given.cbegin(), given.cend(),
                [&name](MarkupAttribute const& attribute) { return attribute.name == name; });
            if (isNeeded && !isGiven)
                m_writer.writeAttribute(name, textOf(real, name));
        }
    }

    /** True also for an attribute that is none of a coordinate's. */
    static bool readsAs(KpReal const& real, MarkupAttribute const& attribute)
    {
        QString const& name = attribute.name;
        QString const& text = attribute.value;
        if (name == GeometryFormat::base())
            return !text.isEmpty() && NumberText::toBase(text) == real.base;
        if (name != GeometryFormat::value() && name != GeometryFormat::rate())
            return true;
        double const number = name == GeometryFormat::value() ? real.value : real.rate;
        double const read = NumberText::toReal(text);
        return !text.isEmpty() && std::isnan(read) == std::isnan(number) && !(read < number)
            && !(read > number);
    }

    static QString textOf(KpReal const& real, QString const& name)
    {
        if (name == GeometryFormat::base())
            return NumberText::fromBase(real.base);
        return NumberText::fromReal(name == GeometryFormat::value() ? real.value : real.rate);
    }

    XmlStreamWriter m_writer;
    int m_depth = 0; ///< how many elements are open, outlines left out
};

} // namespace

bool rewriteDocument(QIODevice& input, QString const& file, QIODevice& output,
    OutlineEdit const& edit, Diagnostics& diagnostics, ProgressFunction const& progress)
{
    DocumentRewriter rewriter(output);
    OutlineReader reader(input, file, OutlineReader::Detail::Markup);
    reader.setProgress(progress);
    reader.setVisitor([&rewriter](QXmlStreamReader const& xml) { rewriter.copy(xml); });
    for (Outlines group = reader.next(); !group.empty(); group = reader.next()) {
        if (!std::all_of(group.begin(), group.end(), edit))
            return false;
        rewriter.copy(group);
    }
    if (reader.fault())
        diagnostics.add(*reader.fault());
    return !reader.fault();
}
