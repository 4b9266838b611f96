#include "document/documentrewriter.h"

#include "document/geometrywalker.h"
#include "document/writetext.h"
#include "geometryformat_p.h"
#include "numbertext_p.h"
#include "xmlstreamwriter.h"

#include <QXmlStreamReader>

#include <cmath>

namespace {

/**
 * Copies a document token by token, with the coordinates of its outlines as they stand in their
 * lists. Whatever else there is stays: foreign elements and attributes, comments, white space,
 * the document type.
 */
class DocumentRewriter
{
public:
    explicit DocumentRewriter(OutlineDocument const& document)
        : m_reader(document.text())
        , m_writer(&m_copy)
        , m_nextOutline(document.outlines().cbegin())
    {
        // As when the outlines were read.
        m_reader.setNamespaceProcessing(false);
    }

    QByteArray make()
    {
        while (m_reader.readNext() != QXmlStreamReader::EndDocument && !m_reader.atEnd()) {
            if (m_reader.isStartDocument())
                startDocument();
            else if (m_reader.isStartElement())
                copyElement();
            else if (m_reader.isDTD())
                m_writer.writeDTD(m_reader.text().trimmed().toString());
            else
                m_writer.writeCurrentToken(m_reader);
            // White space outside the root element is no token.
            m_writer.writeCharacters(QStringLiteral("\n"));
        }
        return m_copy;
    }

private:
    void startDocument()
    {
        QString const version = QStringLiteral("1.0");
        if (m_reader.isStandaloneDocument())
            m_writer.writeStartDocument(version, true);
        else
            m_writer.writeStartDocument(version);
    }

    /** From the start tag to the end tag; `copyChild` copies the element at whose start it is. */
    template <class CopyChild> void copyContent(CopyChild copyChild)
    {
        while (m_reader.readNext() != QXmlStreamReader::EndElement && !m_reader.atEnd()) {
            if (m_reader.isStartElement())
                copyChild();
            else
                copyText();
        }
    }

    void copyText()
    {
        if (!m_reader.isCharacters() || m_reader.isCDATA()) {
            m_writer.writeCurrentToken(m_reader);
            return;
        }
        writeText(m_writer, m_reader.text().toString());
    }

    /** As writeCurrentToken(), which would leave out a prefix here. */
    void startElement()
    {
        m_writer.writeStartElement(m_reader.qualifiedName().toString());
        m_writer.writeAttributes(m_reader.attributes());
    }

    void copyElement()
    {
        if (m_reader.qualifiedName() == GeometryFormat::geometry()) {
            copyOutline();
            return;
        }
        startElement();
        copyContent([this] { copyElement(); });
        m_writer.writeEndElement();
    }

    void copyOutline()
    {
        GeometryWalker walker(*(m_nextOutline++)->list);
        startElement();
        copyContent([&] {
            if (KpPathSeg* const seg = walker.enter(m_reader.qualifiedName().toString()))
                copySegment(*seg);
            else
                copyElement();
        });
        m_writer.writeEndElement();
    }

    void copySegment(KpPathSeg& seg)
    {
        startElement();
        SegmentWalker walker(seg);
        copyContent([&] {
            auto const match = walker.enter(m_reader.qualifiedName().toString());
            if (match.real)
                copyCoordinate(*match.real, match.isFirst);
            else
                copyElement();
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
    void copyCoordinate(KpReal const& real, bool isFirst)
    {
        m_writer.writeStartElement(m_reader.qualifiedName().toString());
        writeAttributes(real, m_reader.attributes(), isFirst);
        copyContent([this] { copyElement(); });
        m_writer.writeEndElement();
    }

    /**
     * The attributes as they are if they read as the real does, and the real's in their place
     * if not. The rule of an absolute real is written down, which the document format leaves
     * out: without it it would be read back bound in proportion to the box. What a coordinate
     * that is given again leaves open stands in the first one, to all digits.
     */
    void writeAttributes(KpReal const& real, QXmlStreamAttributes const& given, bool isFirst)
    {
        QXmlStreamAttributes attributes;
        for (QXmlStreamAttribute const& attribute : given) {
            QString const name = attribute.qualifiedName().toString();
            if (readsAs(real, name, attribute.value()))
                attributes.append(attribute);
            else if (isFirst || !attribute.value().isEmpty())
                attributes.append(name, textOf(real, name));
        }
        for (QString const& name :
            {GeometryFormat::value(), GeometryFormat::base(), GeometryFormat::rate()}) {
            bool const isNeeded =
                isFirst && (name != GeometryFormat::rate() || real.base != KpReal::Absolute);
            if (isNeeded && !given.hasAttribute(name))
                attributes.append(name, textOf(real, name));
        }
        m_writer.writeAttributes(attributes);
    }

    /** True also for an attribute that is none of a coordinate's. */
    static bool readsAs(KpReal const& real, QString const& name, QStringRef const& text)
    {
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

    QByteArray m_copy;
    QXmlStreamReader m_reader;
    XmlStreamWriter m_writer;
    std::vector<Outline>::const_iterator m_nextOutline;
};

} // namespace

QByteArray rewritten(OutlineDocument const& document)
{
    return DocumentRewriter(document).make();
}
