// SPDX-License-Identifier: MIT
// Any bytes as a file of the application's own: it is loaded exactly if the guard passes it, and
// what is loaded is what Qt makes of it, control characters aside; so a tree can be written and be
// loaded again. The file is in memory.

#include "boundedxml_p.h"
#include "fuzzing.h"
#include "kpfilepathmanager.h"

#include <QDomDocument>
#include <QIODevice>
#include <QXmlStreamReader>

#include <algorithm>

#include <sys/mman.h>
#include <unistd.h>

using Fuzzing::require;

namespace {

/** A file without a place on any disk, but with a path. */
class MemoryFile
{
public:
    MemoryFile()
        : m_descriptor(memfd_create("input", MFD_CLOEXEC))
        , m_path(QStringLiteral("/proc/self/fd/%1").arg(m_descriptor))
    {
        require(m_descriptor >= 0, "there is memory for a file");
    }
    ~MemoryFile() { close(m_descriptor); }
    MemoryFile(MemoryFile const&) = delete;
    MemoryFile& operator=(MemoryFile const&) = delete;

    QString const& path() const { return m_path; }

    void write(QByteArray const& content) const
    {
        require(ftruncate(m_descriptor, 0) == 0
                && pwrite(m_descriptor, content.constData(), std::size_t(content.size()), 0)
                    == content.size(),
            "the file can be written");
    }

private:
    int m_descriptor;
    QString m_path;
};

bool isControl(char byte)
{
    return byte >= 0 && byte < ' ' && byte != '\t' && byte != '\r' && byte != '\n';
}

/** How deep the elements are nested, by Qt's reader alone; -1 if it is not well-formed. */
int depthOf(QByteArray const& text)
{
    QXmlStreamReader reader(text);
    reader.setNamespaceProcessing(false);
    int depth = 0;
    int greatest = 0;
    while (!reader.atEnd()) {
        reader.readNext();
        depth += reader.isStartElement() ? 1 : 0;
        greatest = std::max(greatest, depth);
        depth -= reader.isEndElement() ? 1 : 0;
    }
    return reader.hasError() ? -1 : greatest;
}

/** Equal in what files are read for: elements, attributes and texts. */
bool areSame(QDomNode const& left, QDomNode const& right)
{
    if (left.nodeType() != right.nodeType() || left.nodeName() != right.nodeName()
        || left.nodeValue() != right.nodeValue()
        || left.childNodes().count() != right.childNodes().count())
        return false;
    QDomNamedNodeMap const attributes = left.attributes();
    if (attributes.count() != right.attributes().count())
        return false;
    for (int i = 0; i < attributes.count(); ++i) {
        QDomNode const attribute = attributes.item(i);
        QDomNode const other = right.attributes().namedItem(attribute.nodeName());
        if (other.isNull() || other.nodeValue() != attribute.nodeValue())
            return false;
    }
    QDomNode other = right.firstChild();
    for (QDomNode child = left.firstChild(); !child.isNull(); child = child.nextSibling()) {
        if (!areSame(child, other))
            return false;
        other = other.nextSibling();
    }
    return true;
}

void checkAgainstQt(QByteArray const& text, bool isLoaded, QDomDocument const& loaded)
{
    int const depth = depthOf(text);
    if (isLoaded) {
        require(depth >= 0 && depth <= BoundedXml::maximumDepth, "what is loaded is well-formed");
        QXmlStreamReader reader(text);
        reader.setNamespaceProcessing(false);
        QDomDocument expected;
        require(expected.setContent(&reader, false), "Qt builds a tree of what is loaded");
        require(areSame(loaded, expected), "the tree is the one that Qt builds");
    } else if (depth >= 0 && depth <= BoundedXml::maximumDepth) {
        require(text.contains('&'), "only what expands is refused, if it is well-formed and flat");
    }
}

/** A device that gives a few bytes at a time, and says no position: a pipe. */
class Pipe : public QIODevice
{
public:
    explicit Pipe(QByteArray const& text)
        : m_text(text)
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }
    bool isSequential() const override { return true; }

protected:
    qint64 readData(char* data, qint64 size) override
    {
        // As long as the last one, and one more: the places of the cuts change.
        int const count = std::min({int(size), 1 + m_lastSize++ % 40, m_text.size() - m_position});
        std::copy_n(m_text.constData() + m_position, count, data);
        m_position += count;
        return count;
    }
    qint64 writeData(char const* /*data*/, qint64 /*size*/) override { return -1; }

private:
    QByteArray const m_text;
    int m_position = 0;
    int m_lastSize = 0;
};

/** Token by token from a pipe, a text is what it is as a whole. */
void checkReader(QByteArray const& text)
{
    BoundedXml::Error error;
    bool const isGood = BoundedXml::check(text, error);
    Pipe pipe(text);
    BoundedXml::Reader reader(pipe);
    int depth = 0;
    while (reader.readNext()) {
        depth += reader.xml().isStartElement() ? 1 : 0;
        depth -= reader.xml().isEndElement() ? 1 : 0;
        require(depth >= 0 && depth <= BoundedXml::maximumDepth, "a reader keeps to the depth");
    }
    require(reader.error().isNull() == isGood, "a reader passes what the check passes");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    static MemoryFile const file;
    QByteArray const text = Fuzzing::bytes(data, size);
    file.write(text);
    QDomDocument loaded;
    bool const isLoaded = KpFilePathManager::loadXmlFile(loaded, file.path());
    require(
        isLoaded || loaded.isNull() || !loaded.hasChildNodes(), "what is refused is left empty");

    BoundedXml::Error error;
    QDomDocument parsed;
    bool const isParsed = BoundedXml::parse(text, parsed, error, BoundedXml::configurationLimits);
    require(isLoaded == isParsed && isLoaded == error.isNull(), "the guard decides what is loaded");
    require(isLoaded || (error.line >= 0 && error.column >= 0), "a fault has a place or none");
    checkReader(text);
    if (std::none_of(text.cbegin(), text.cend(), isControl)) {
        require(isLoaded == BoundedXml::check(text, error, BoundedXml::configurationLimits),
            "without control characters both ways of the guard agree");
        checkAgainstQt(text, isLoaded, loaded);
    }
    return 0;
}
