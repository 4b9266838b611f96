// SPDX-License-Identifier: MIT
#include "document/documentrewriter.h"

#include "document/coordinatetext.h"
#include "document/geometrywalker.h"
#include "document/writetext.h"
#include "xmlstreamwriter.h"

#include <QIODevice>

#include <algorithm>
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

    void writeAttributes(KpReal const& real, QVector<MarkupAttribute> const& given, bool isFirst)
    {
        auto const change = CoordinateText::changeOf(real, given, isFirst);
        for (MarkupAttribute const& attribute : change.attributes) {
            // Of a coordinate that is given again, what is empty reads as nothing.
            if (isFirst || !attribute.value.isEmpty() || CoordinateText::readsAs(real, attribute))
                m_writer.writeAttribute(attribute.name, attribute.value);
        }
        for (MarkupAttribute const& attribute : change.added)
            m_writer.writeAttribute(attribute.name, attribute.value);
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
