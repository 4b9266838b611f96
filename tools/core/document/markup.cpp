// SPDX-License-Identifier: MIT
#include "document/markup.h"

#include "boundedxml_p.h"

#include <QStringList>
#include <QXmlStreamReader>

#include <algorithm>

namespace {

/** As XML has it: a no-break space, say, is none. */
bool isSpace(QChar character)
{
    return character == QLatin1Char(' ') || character == QLatin1Char('\t')
        || character == QLatin1Char('\n') || character == QLatin1Char('\r');
}

QVector<MarkupAttribute> attributesOf(QXmlStreamReader const& reader)
{
    QVector<MarkupAttribute> attributes;
    QXmlStreamAttributes const given = reader.attributes();
    attributes.reserve(given.size());
    for (QXmlStreamAttribute const& attribute : given) {
        attributes.append({attribute.qualifiedName().toString(), attribute.value().toString(),
            attribute.isDefault()});
    }
    return attributes;
}

/** For a token that is part of a tree. */
MarkupNode::Kind kindAt(QXmlStreamReader const& reader)
{
    using Kind = MarkupNode::Kind;
    switch (reader.tokenType()) {
    case QXmlStreamReader::Characters:
        return reader.isCDATA() ? Kind::CharacterData : Kind::Text;
    case QXmlStreamReader::EntityReference:
        return Kind::Reference;
    case QXmlStreamReader::Comment:
        return Kind::Comment;
    case QXmlStreamReader::ProcessingInstruction:
        return Kind::Instruction;
    case QXmlStreamReader::DTD:
        return Kind::DocumentType;
    default:
        return Kind::Element;
    }
}

/** Builds the tree of what a reader goes through. */
class MarkupBuilder
{
public:
    /** @param reader one that does not resolve namespaces; it must outlive this */
    explicit MarkupBuilder(QXmlStreamReader const& reader)
        : m_reader(reader)
    {
    }

    /** Takes the token at which the reader is. */
    void take()
    {
        switch (m_reader.tokenType()) {
        case QXmlStreamReader::StartElement:
            append(nodeAt(m_reader));
            m_open.push_back(&siblings().back());
            break;
        case QXmlStreamReader::EndElement:
            m_open.pop_back();
            break;
        case QXmlStreamReader::Characters:
        case QXmlStreamReader::EntityReference:
        case QXmlStreamReader::Comment:
        case QXmlStreamReader::ProcessingInstruction:
        case QXmlStreamReader::DTD:
            append(nodeAt(m_reader));
            break;
        default:
            break;
        }
    }

    /** Whether the end tag of an element is still to come. */
    bool isOpen() const { return m_open.size() > 1; }
    /** What was taken. */
    std::vector<MarkupNode> takeNodes() { return std::move(m_root.children); }

private:
    using Kind = MarkupNode::Kind;

    // An element that is open is the last among its siblings, so its address stays.
    std::vector<MarkupNode>& siblings() { return m_open.back()->children; }

    void append(MarkupNode&& node)
    {
        bool const isContinued =
            node.kind == Kind::Text && !siblings().empty() && siblings().back().kind == Kind::Text;
        if (isContinued)
            siblings().back().text += node.text;
        else
            siblings().push_back(std::move(node));
    }

    QXmlStreamReader const& m_reader;
    MarkupNode m_root {Kind::Element, {}, {}, {}, {}, 0, 0};
    std::vector<MarkupNode*> m_open {&m_root};
};

} // namespace

MarkupNode nodeAt(QXmlStreamReader const& reader)
{
    using Kind = MarkupNode::Kind;
    MarkupNode node {kindAt(reader), {}, {}, {}, {}, reader.lineNumber(), reader.columnNumber()};
    switch (node.kind) {
    case Kind::Element:
        node.name = reader.qualifiedName().toString();
        node.attributes = attributesOf(reader);
        break;
    case Kind::Reference:
        node.name = reader.name().toString();
        break;
    case Kind::Instruction:
        node.name = reader.processingInstructionTarget().toString();
        node.text = reader.processingInstructionData().toString();
        break;
    default:
        node.text = reader.text().toString();
        break;
    }
    return node;
}

MarkupAttribute const* MarkupNode::attribute(QString const& wanted) const
{
    auto const found = std::find_if(attributes.cbegin(), attributes.cend(),
        [&wanted](MarkupAttribute const& known) { return known.name == wanted; });
    return found == attributes.cend() ? nullptr : &*found;
}

Markup markupOf(QByteArray const& text)
{
    QXmlStreamReader reader(text);
    // As when the outlines were read.
    reader.setNamespaceProcessing(false);
    MarkupBuilder builder(reader);
    bool isStandalone = false;
    while (!reader.atEnd()) {
        if (reader.readNext() == QXmlStreamReader::StartDocument)
            isStandalone = reader.isStandaloneDocument();
        builder.take();
    }
    return {isStandalone, builder.takeNodes()};
}

MarkupNode markupOf(BoundedXml::Reader& reader)
{
    MarkupBuilder builder(reader.xml());
    do {
        builder.take();
    } while (builder.isOpen() && reader.readNext());
    return std::move(builder.takeNodes().front());
}

bool isBlank(QString const& text)
{
    return std::all_of(text.cbegin(), text.cend(), isSpace);
}

QString collapsed(QString const& text)
{
    QString result;
    bool isPending = false;
    for (QChar const character : text) {
        if (isSpace(character)) {
            isPending = !result.isEmpty();
            continue;
        }
        if (isPending)
            result += QLatin1Char(' ');
        isPending = false;
        result += character;
    }
    return result;
}
