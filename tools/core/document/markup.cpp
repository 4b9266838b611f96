#include "document/markup.h"

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

MarkupNode nodeOf(QXmlStreamReader const& reader, MarkupNode::Kind kind)
{
    return {kind, reader.qualifiedName().toString(), reader.text().toString(), {}, {},
        reader.lineNumber(), reader.columnNumber()};
}

/** Builds the tree. */
class MarkupBuilder
{
public:
    explicit MarkupBuilder(QByteArray const& text)
        : m_reader(text)
    {
        // As when the outlines were read.
        m_reader.setNamespaceProcessing(false);
    }

    Markup build()
    {
        while (!m_reader.atEnd())
            take(m_reader.readNext());
        return {m_isStandalone, std::move(m_root.children)};
    }

private:
    using Kind = MarkupNode::Kind;

    void take(QXmlStreamReader::TokenType token)
    {
        switch (token) {
        case QXmlStreamReader::StartDocument:
            m_isStandalone = m_reader.isStandaloneDocument();
            break;
        case QXmlStreamReader::StartElement:
            append(nodeOf(m_reader, Kind::Element));
            m_open.push_back(&siblings().back());
            m_open.back()->attributes = attributesOf(m_reader);
            break;
        case QXmlStreamReader::EndElement:
            m_open.pop_back();
            break;
        case QXmlStreamReader::Characters:
            append(nodeOf(m_reader, m_reader.isCDATA() ? Kind::CharacterData : Kind::Text));
            break;
        case QXmlStreamReader::EntityReference:
            append(nodeOf(m_reader, Kind::Reference));
            siblings().back().name = m_reader.name().toString();
            break;
        case QXmlStreamReader::Comment:
            append(nodeOf(m_reader, Kind::Comment));
            break;
        case QXmlStreamReader::ProcessingInstruction:
            append(nodeOf(m_reader, Kind::Instruction));
            siblings().back().name = m_reader.processingInstructionTarget().toString();
            siblings().back().text = m_reader.processingInstructionData().toString();
            break;
        case QXmlStreamReader::DTD:
            append(nodeOf(m_reader, Kind::DocumentType));
            break;
        default:
            break;
        }
    }

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

    QXmlStreamReader m_reader;
    MarkupNode m_root {Kind::Element, {}, {}, {}, {}, 0, 0};
    std::vector<MarkupNode*> m_open {&m_root};
    bool m_isStandalone = false;
};

} // namespace

Markup markupOf(QByteArray const& text)
{
    return MarkupBuilder(text).build();
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
