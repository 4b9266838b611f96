#include "boundedxml_p.h"

#include <QDomDocument>
#include <QIODevice>
#include <QXmlStreamReader>

#include <algorithm>
#include <array>

namespace BoundedXml {

namespace {

void setError(Error& error, QXmlStreamReader const& reader, QString const& message)
{
    error = {reader.lineNumber(), reader.columnNumber() + 1, message};
}

/** Counts what a reader goes through, and says when it is too much. */
class Bounds
{
public:
    Bounds(QByteArray const& text, Limits const& limits)
        : m_text(text)
        , m_maximumNodes(std::min(std::max(text.size(), smallestNodeLimit), limits.nodes))
    {
    }

    /** What is too much with the token at which the reader is now; empty if nothing is. */
    QString excess(QXmlStreamReader const& reader)
    {
        if (reader.isStartElement() && ++m_depth > maximumDepth)
            return QStringLiteral("more than %1 nested elements").arg(maximumDepth);
        if (reader.isEndElement())
            --m_depth;
        // Counted beforehand: Qt gathers all references of a text before it reports any of it.
        if (reader.isDTD() && !reader.entityDeclarations().isEmpty()
            && m_text.count('&') > maximumReferences)
            return QStringLiteral("more than %1 references in a document that declares entities")
                .arg(maximumReferences);
        m_nodes += 1 + reader.attributes().size();
        if (m_nodes > m_maximumNodes)
            return QStringLiteral("more than %1 nodes").arg(m_maximumNodes);
        return QString();
    }

private:
    QByteArray const& m_text;
    int const m_maximumNodes;
    int m_depth = 0;
    int m_nodes = 0;
};

} // namespace

QByteArray read(QIODevice& device, Error& error, Limits const& limits)
{
    QByteArray text;
    std::array<char, 65536> chunk;
    for (;;) {
        qint64 const size = device.read(chunk.data(), static_cast<qint64>(chunk.size()));
        if (size == 0)
            return text;
        if (size < 0) {
            error.message = device.errorString();
            return QByteArray();
        }
        if (text.size() + size > limits.bytes) {
            error.message = QStringLiteral("larger than %1 bytes").arg(limits.bytes);
            return QByteArray();
        }
        text.append(chunk.data(), static_cast<int>(size));
    }
}

bool check(QByteArray const& text, Error& error, Limits const& limits)
{
    QXmlStreamReader reader(text);
    // An undeclared prefix is no fault of well-formedness.
    reader.setNamespaceProcessing(false);
    Bounds bounds(text, limits);
    while (!reader.atEnd()) {
        reader.readNext();
        QString const fault = reader.hasError() ? reader.errorString() : bounds.excess(reader);
        if (!fault.isEmpty()) {
            setError(error, reader, fault);
            return false;
        }
    }
    return true;
}

bool parse(QByteArray const& text, QDomDocument& document, Error& error, Limits const& limits)
{
    document.clear();
    if (!check(text, error, limits))
        return false;
    QXmlStreamReader reader(text);
    reader.setNamespaceProcessing(false);
    if (document.setContent(&reader, false))
        return true;
    setError(error, reader, QStringLiteral("the document tree could not be built"));
    document.clear();
    return false;
}

} // namespace BoundedXml
