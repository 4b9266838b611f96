// SPDX-License-Identifier: MIT
#ifndef BOUNDEDXML_P_H
#define BOUNDEDXML_P_H

#include <QByteArray>
#include <QString>
#include <QXmlStreamReader>

#include <functional>
#include <limits>
#include <memory>

class QDomDocument;
class QIODevice;

/**
 * Reading XML that may be hostile.
 *
 * Qt's DOM recurses over the depth of a document when it is written or destroyed, so a deep
 * enough file overflows the stack; with a document type that declares entities or default
 * attributes, a small file becomes a tree that fills the memory; and with many attributes on one
 * element it takes hours. These functions refuse such a file before a tree of it exists; a Reader,
 * which builds none, as soon as it gets there. Whatever they take, they take in linear time.
 */
namespace BoundedXml {

/** What becomes of control characters other than tab, line feed and carriage return. */
enum class Controls {
    AreRefused, ///< as XML 1.0 has it
    /**
     * parse() reads them from UTF-8, in texts and attributes, as they are: the application has
     * always written them so. NUL, and any in a name, is refused all the same. Each counts as
     * three bytes.
     */
    AreRead
};

/** How large a document may be; by default as large as documents with outlines get. */
struct Limits
{
    qint64 bytes = 256LL * 1024 * 1024;
    int nodes = std::numeric_limits<int>::max(); ///< tags, attributes, texts
    Controls controls = Controls::AreRefused;
};

/** A file of the application's own: its tree takes at most some 600 MB. */
constexpr Limits configurationLimits {64LL * 1024 * 1024, 750000, Controls::AreRead};

constexpr int maximumDepth = 1000;
/** Ampersands of a document that declares entities; in any other they cost nothing. */
constexpr int maximumReferences = 10000;
/** References within the value of an entity and of those that it refers to. */
constexpr int maximumNestedReferences = 1000;
/** References to parameter entities, those within one another included. */
constexpr int maximumParameterReferences = 1000;
/** Attributes of an element: Qt compares each with all others. */
constexpr int maximumAttributes = 1000;
/** Attributes that a document type declares: Qt looks through all of them at each element. */
constexpr int maximumDeclaredAttributes = 1000;
/** Namespaces that are declared at an element and those around it: Qt looks through all of them. */
constexpr int maximumNamespaces = 1000;
/**
 * A document may have as many characters in attributes that only the document type gives as it has
 * bytes, and a short one as many as this.
 */
constexpr int smallestDefaultLimit = 16 * 1024 * 1024;
/**
 * A document may have as many nodes (tags, attributes, texts) as it has bytes, which holds for
 * all that do not expand, and a short one as many as this.
 */
constexpr int smallestNodeLimit = 100000;

/** Bytes of a tag or a text that a Reader reads: Qt keeps them until the end of it. */
constexpr qint64 maximumTokenBytes = 256LL * 1024 * 1024;

/** What is wrong with a text, and where: line and column count from 1, 0 is "nowhere". */
struct Error
{
    qint64 line = 0;
    qint64 column = 0;
    QString message;

    bool isNull() const { return message.isEmpty(); }
};

/** All that `device` holds; empty, with `error` set, on a read error or above the limit. */
QByteArray read(QIODevice& device, Error& error, Limits const& limits = {});

/**
 * Whether `text` is one well-formed document within the bounds, control characters refused;
 * `error` is set if not. An entity may expand to 4,096 characters, Qt's own limit.
 */
bool check(QByteArray const& text, Error& error, Limits const& limits = {});

/**
 * What of `text` a parser may be given that does not go on to check it: all of it, or the part
 * before what would take it more than linear time.
 */
QByteArray bounded(QByteArray const& text);

/** Told now and then how much of a reading is done, from 0 to 1. */
using Progress = std::function<void(double)>;

/**
 * Builds the tree of `text`; false, with `document` empty and `error` set, if it is not well-formed
 * but for its control characters, or out of bounds.
 *
 * @param progress may be empty
 */
bool parse(QByteArray const& text, QDomDocument& document, Error& error, Limits const& limits = {},
    Progress const& progress = {});

/**
 * Reads a document of any size token by token, in memory for the largest of them. Depth, references
 * and nodes are bounded as in check(), but that a document may have, at each place, as many nodes
 * as it has bytes up to there.
 */
class Reader
{
public:
    /**
     * @param device open for reading; it must outlive this
     * @param mostTokenBytes how long a tag or a text may be; a few thousand bytes more pass
     */
    explicit Reader(QIODevice& device, qint64 mostTokenBytes = maximumTokenBytes);
    ~Reader();

    /** Goes on to the next token. False behind the last one, and at a fault. */
    bool readNext();
    /** What is wrong; null unless readNext() has met a fault. */
    Error const& error() const { return m_error; }
    /** What stands at the token. Namespaces are not resolved: an undeclared prefix is no fault. */
    QXmlStreamReader const& xml() const { return m_xml; }
    /** How much of the device has been read; a little more than the tokens so far. */
    qint64 bytesRead() const;

private:
    Q_DISABLE_COPY(Reader)

    class CountingDevice;
    class Bounds;

    std::unique_ptr<CountingDevice> m_device;
    std::unique_ptr<Bounds> m_bounds;
    QXmlStreamReader m_xml;
    Error m_error;
};

} // namespace BoundedXml

#endif // BOUNDEDXML_P_H
