// SPDX-License-Identifier: MIT
#include "boundedxml_p.h"

#include "controlstandins_p.h"
#include "markupbounds_p.h"

#include <QDomDocument>
#include <QIODevice>
#include <QXmlStreamReader>

#include <algorithm>
#include <array>
#include <vector>

namespace BoundedXml {

namespace {

void setError(Error& error, QXmlStreamReader const& reader, QString const& message)
{
    error = {reader.lineNumber(), reader.columnNumber() + 1, message};
}

QString tooLarge(Limits const& limits)
{
    return QStringLiteral("larger than %1 bytes").arg(limits.bytes);
}

/** Counts what a reader goes through, and says when it is too much. */
class TokenCount
{
public:
    /**
     * What is too much with the token at which the reader is now; empty if nothing is.
     *
     * @param maximumNodes how many there may be up to here
     * @param bytes how long the text is up to here, at least
     */
    QString excess(QXmlStreamReader const& reader, qint64 maximumNodes, qint64 bytes)
    {
        ++m_nodes;
        if (reader.isStartElement()) {
            if (++m_depth > maximumDepth)
                return QStringLiteral("more than %1 nested elements").arg(maximumDepth);
            QXmlStreamAttributes const attributes = reader.attributes();
            m_nodes += attributes.size();
            countDefaults(attributes);
            countNamespaces(attributes);
        } else if (reader.isEndElement()) {
            --m_depth;
            m_namespaces.pop_back();
        }
        if (!m_namespaces.empty() && m_namespaces.back() > maximumNamespaces)
            return QStringLiteral("more than %1 namespaces at one place").arg(maximumNamespaces);
        if (m_nodes > maximumNodes)
            return QStringLiteral("more than %1 nodes").arg(maximumNodes);
        qint64 const mostDefaults = std::max<qint64>(bytes, smallestDefaultLimit);
        if (m_defaults > mostDefaults)
            return QStringLiteral("more than %1 characters of default attributes")
                .arg(mostDefaults);
        return QString();
    }

private:
    /** Those that are not written at the element have no bytes there. */
    void countDefaults(QXmlStreamAttributes const& attributes)
    {
        // They come behind those that are.
        for (auto it = attributes.crbegin(); it != attributes.crend() && it->isDefault(); ++it)
            m_defaults += it->value().size();
    }

    void countNamespaces(QXmlStreamAttributes const& attributes)
    {
        auto const count = std::count_if(
            attributes.cbegin(), attributes.cend(), [](QXmlStreamAttribute const& attribute) {
                return attribute.qualifiedName().startsWith(QLatin1String("xmlns"));
            });
        m_namespaces.push_back((m_namespaces.empty() ? 0 : m_namespaces.back()) + count);
    }

    int m_depth = 0;
    std::vector<qint64> m_namespaces; ///< at each of the open elements
    qint64 m_nodes = 0;
    qint64 m_defaults = 0; ///< characters
};

/** Whether the reader is at a document type that declares entities. */
bool declaresEntities(QXmlStreamReader const& reader)
{
    return reader.isDTD() && !reader.entityDeclarations().isEmpty();
}

/** What is wrong with a text of which `bounds` let through what the reader has; or nothing. */
QString faultOf(QXmlStreamReader const& reader, MarkupBounds const& bounds)
{
    bool const isAtEnd = reader.error() == QXmlStreamReader::PrematureEndOfDocumentError;
    return isAtEnd && !bounds.fault().isEmpty() ? bounds.fault() : reader.errorString();
}

/** As check(); `faultAt` says of the reader at each token what else is wrong, or nothing. */
template <class FaultAt>
bool checkEach(QByteArray const& text, Error& error, Limits const& limits, FaultAt faultAt)
{
    MarkupBounds bounds;
    int const size = static_cast<int>(bounds.take(text.constData(), text.size()));
    QXmlStreamReader reader(size == text.size() ? text : text.left(size));
    // An undeclared prefix is no fault of well-formedness.
    reader.setNamespaceProcessing(false);
    TokenCount count;
    int const maximumNodes = std::min(std::max(text.size(), smallestNodeLimit), limits.nodes);
    while (!reader.atEnd()) {
        reader.readNext();
        QString fault = reader.hasError() ? faultOf(reader, bounds)
                                          : count.excess(reader, maximumNodes, text.size());
        // Counted beforehand: Qt gathers all references of a text before it reports any of it.
        if (fault.isEmpty() && declaresEntities(reader) && bounds.references() > maximumReferences)
            fault = tooManyReferences();
        if (fault.isEmpty())
            fault = faultAt(reader);
        if (!fault.isEmpty()) {
            setError(error, reader, fault);
            return false;
        }
    }
    return true;
}

/** How much of the time to read a tree the check takes, roughly. */
constexpr double shareOfCheck = 0.3;

/** A text that tells how much of it has been read. */
class ToldText : public QIODevice
{
public:
    ToldText(QByteArray const& text, Progress const& progress)
        : m_text(text)
        , m_progress(progress)
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

protected:
    qint64 readData(char* data, qint64 size) override
    {
        qint64 const count = std::min<qint64>(size, m_text.size() - m_position);
        std::copy_n(m_text.constData() + m_position, count, data);
        m_position += static_cast<int>(count);
        if (count > 0)
            m_progress(shareOfCheck + (1.0 - shareOfCheck) * m_position / m_text.size());
        return count;
    }

    qint64 writeData(char const* /*data*/, qint64 /*size*/) override { return -1; }

private:
    QByteArray const m_text;
    Progress const& m_progress;
    int m_position = 0;
};

/** Builds the tree of a text that has been checked. */
bool build(QByteArray const& text, QDomDocument& document, Error& error, Progress const& progress)
{
    ToldText device(text, progress);
    QXmlStreamReader reader;
    if (progress)
        reader.setDevice(&device);
    else
        reader.addData(text);
    reader.setNamespaceProcessing(false);
    if (document.setContent(&reader, false))
        return true;
    setError(error, reader, QStringLiteral("the document tree could not be built"));
    document.clear();
    return false;
}

bool isUtf8(QStringRef const& encoding)
{
    return encoding.isEmpty() || encoding.compare(QLatin1String("UTF-8"), Qt::CaseInsensitive) == 0;
}

/** Whether there is a stand-in where the reader is and only a name can be. */
bool areInName(ControlStandIns const& standIns, QXmlStreamReader const& reader)
{
    QXmlStreamAttributes const attributes = reader.attributes();
    return standIns.areIn(reader.processingInstructionTarget())
        || std::any_of(attributes.cbegin(), attributes.cend(),
            [&standIns](QXmlStreamAttribute const& attribute) {
                return standIns.areIn(attribute.qualifiedName());
            });
}

/**
 * Puts the control characters in place again, in a node and all within.
 *
 * @param reader reads the text that the tree is of, and is before the node's start tag: the
 * attributes of a DOM element have no order by which one could go through them
 */
void restore(QDomNode node, QXmlStreamReader& reader, ControlStandIns const& standIns)
{
    if (node.isElement()) {
        do {
            reader.readNext();
        } while (!reader.isStartElement() && !reader.atEnd());
        QXmlStreamAttributes const attributes = reader.attributes();
        for (QXmlStreamAttribute const& attribute : attributes) {
            if (standIns.areIn(attribute.value())) {
                node.toElement().setAttribute(attribute.qualifiedName().toString(),
                    standIns.takenOutOf(attribute.value().toString()));
            }
        }
    } else if (QString const text = node.nodeValue(); standIns.areIn(QStringRef(&text))) {
        node.setNodeValue(standIns.takenOutOf(text));
    }
    for (QDomNode child = node.firstChild(); !child.isNull(); child = child.nextSibling())
        restore(child, reader, standIns);
}

/** parse() of a text that holds control characters. */
bool parseWithControls(QByteArray const& text, QDomDocument& document, Error& error,
    Limits const& limits, Progress const& progress)
{
    ControlStandIns standIns;
    bool isReadable = true;
    // References are resolved here, so that no character can come in by one later.
    auto const exclude = [&](QXmlStreamReader const& reader) {
        isReadable = isReadable && isUtf8(reader.documentEncoding());
        standIns.exclude(reader.text());
        standIns.exclude(reader.processingInstructionData());
        QXmlStreamAttributes const attributes = reader.attributes();
        for (QXmlStreamAttribute const& attribute : attributes)
            standIns.exclude(attribute.value());
        return QString();
    };
    if (!checkEach(ControlStandIns::blanked(text), error, limits, exclude))
        return false;
    if (!isReadable || !standIns.choose())
        return check(text, error, limits) && build(text, document, error, progress);

    QByteArray const parsed = standIns.putInto(text);
    if (parsed.size() > limits.bytes) {
        error.message = tooLarge(limits);
        return false;
    }
    auto const faultOf = [&standIns](QXmlStreamReader const& reader) {
        return areInName(standIns, reader) ? QStringLiteral("a control character in a name")
                                           : QString();
    };
    if (!checkEach(parsed, error, limits, faultOf) || !build(parsed, document, error, progress))
        return false;
    QXmlStreamReader reader(parsed);
    reader.setNamespaceProcessing(false);
    restore(document, reader, standIns);
    return true;
}

} // namespace

/** The device of a reader, with a count of what it has given. */
class Reader::CountingDevice : public QIODevice
{
public:
    CountingDevice(QIODevice& source, qint64 mostTokenBytes)
        : m_source(source)
        , m_mostTokenBytes(mostTokenBytes)
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    qint64 bytes() const { return m_bytes; }
    bool hasTooManyReferences() const { return m_bounds.references() > maximumReferences; }
    /** What was let through of the text. */
    MarkupBounds const& bounds() const { return m_bounds; }
    /** From now on it ends where there are too many. */
    void boundReferences() { m_areReferencesBounded = true; }
    /** Another token begins. */
    void startToken() { m_tokenStart = m_bytes; }
    /** Why it could not be read; empty if it could. */
    QString const& fault() const { return m_fault; }

    bool isSequential() const override { return true; }

protected:
    qint64 readData(char* data, qint64 size) override
    {
        // A device may give a few bytes at a time, of which Qt would take the first for all.
        qint64 count = 0;
        qint64 piece = 0;
        do {
            piece = m_source.read(data + count, size - count);
            count += std::max<qint64>(piece, 0);
        } while (piece > 0 && count < size);
        if (piece < 0)
            m_fault = m_source.errorString();
        if (count == 0)
            return piece;
        m_bytes += count;
        if (m_bytes - m_tokenStart > m_mostTokenBytes) {
            m_fault = QStringLiteral("more than %1 bytes without a tag").arg(m_mostTokenBytes);
            return -1;
        }
        if (!m_bounds.fault().isEmpty())
            return -1;
        qint64 const bounded = m_bounds.take(data, count);
        return m_areReferencesBounded && hasTooManyReferences() ? -1 : bounded;
    }

    qint64 writeData(char const* /*data*/, qint64 /*size*/) override { return -1; }

private:
    QIODevice& m_source;
    qint64 const m_mostTokenBytes;
    qint64 m_bytes = 0;
    qint64 m_tokenStart = 0;
    MarkupBounds m_bounds;
    bool m_areReferencesBounded = false;
    QString m_fault;
};

/** What a reader keeps to its bounds by. */
class Reader::Bounds
{
public:
    /** Sets `error` if something is too much with the token. */
    void check(QXmlStreamReader const& reader, CountingDevice& device, Error& error)
    {
        if (declaresEntities(reader)) {
            setError(m_entities, reader, tooManyReferences());
            device.boundReferences();
        }
        qint64 const maximumNodes = std::max<qint64>(device.bytes(), smallestNodeLimit);
        if (QString const fault = m_count.excess(reader, maximumNodes, device.bytes());
            !fault.isEmpty())
            setError(error, reader, fault);
        if (!m_entities.isNull() && device.hasTooManyReferences())
            error = m_entities;
    }

private:
    TokenCount m_count;
    Error m_entities; ///< where they are declared, and what is wrong if they are used too often
};

Reader::Reader(QIODevice& device, qint64 mostTokenBytes)
    : m_device(std::make_unique<CountingDevice>(device, mostTokenBytes))
    , m_bounds(std::make_unique<Bounds>())
    , m_xml(m_device.get())
{
    m_xml.setNamespaceProcessing(false);
}

Reader::~Reader() = default;

bool Reader::readNext()
{
    if (!m_error.isNull() || m_xml.atEnd())
        return false;
    m_device->startToken();
    m_xml.readNext();
    if (!m_device->fault().isEmpty())
        m_error.message = m_device->fault();
    else
        m_bounds->check(m_xml, *m_device, m_error);
    if (m_error.isNull() && m_xml.hasError())
        setError(m_error, m_xml, faultOf(m_xml, m_device->bounds()));
    return m_error.isNull();
}

qint64 Reader::bytesRead() const
{
    return m_device->bytes();
}

QByteArray read(QIODevice& device, Error& error, Limits const& limits)
{
    // Before any of it takes memory; what tells no size is found to be too large on the way.
    if (!device.isSequential() && device.size() - device.pos() > limits.bytes) {
        error.message = tooLarge(limits);
        return QByteArray();
    }
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
            error.message = tooLarge(limits);
            return QByteArray();
        }
        text.append(chunk.data(), static_cast<int>(size));
    }
}

QByteArray bounded(QByteArray const& text)
{
    MarkupBounds bounds;
    return text.left(static_cast<int>(bounds.take(text.constData(), text.size())));
}

bool check(QByteArray const& text, Error& error, Limits const& limits)
{
    return checkEach(text, error, limits, [](QXmlStreamReader const&) { return QString(); });
}

bool parse(QByteArray const& text, QDomDocument& document, Error& error, Limits const& limits,
    Progress const& progress)
{
    document.clear();
    if (limits.controls == Controls::AreRead && ControlStandIns::areNeededFor(text))
        return parseWithControls(text, document, error, limits, progress);
    int tokens = 0;
    auto const tell = [&](QXmlStreamReader const& reader) {
        constexpr int manyTokens = 4096;
        if (progress && ++tokens % manyTokens == 0)
            progress(shareOfCheck * static_cast<double>(reader.characterOffset()) / text.size());
        return QString();
    };
    return checkEach(text, error, limits, tell) && build(text, document, error, progress);
}

} // namespace BoundedXml
