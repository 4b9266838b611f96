// Any bytes through the readers of both forms. What they make of them must be written in the
// same way by both writers, and be read back from there the same by both readers.

#include "boundedxml_p.h"
#include "kppath.h"
#include "kppathseglist.h"
#include "xmlstreamwriter.h"

#include <QDomDocument>
#include <QXmlStreamReader>

#include <cstdint>
#include <cstdlib>

namespace {

QByteArray streamText(KpPathSegList& list)
{
    QByteArray text;
    XmlStreamWriter writer(&text);
    list.saveTo(writer);
    return text;
}

void readStream(QByteArray const& text, KpPathSegList& list)
{
    QXmlStreamReader reader(text);
    if (reader.readNextStartElement())
        list.parse(reader, 0);
}

void readDom(QByteArray const& text, KpPathSegList& list)
{
    BoundedXml::Error error;
    QDomDocument document;
    if (BoundedXml::parse(text, document, error))
        list.parse(document.documentElement(), 0);
}

QByteArray throughDom(KpPathSegList& list)
{
    QDomDocument document;
    QDomElement root = document.createElement(QStringLiteral("Root"));
    document.appendChild(root);
    list.saveTo(root);
    KpPathSegList result;
    result.parse(root.firstChildElement(), 0);
    return streamText(result);
}

void exercise(KpPathSegList& list)
{
    QByteArray const saved = streamText(list);
    KpPathSegList byStream;
    readStream(saved, byStream);
    KpPathSegList byDom;
    readDom(saved, byDom);
    if (streamText(byStream) != streamText(byDom) || streamText(byStream) != throughDom(list))
        std::abort();

    list.updateRate(120.0, 80.0);
    list.updateValue(240.0, 60.0);
    KpPath path;
    list.toPath(path);
    list.fromPath(path);
    list.isClockwise();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    QByteArray const text(reinterpret_cast<char const*>(data), static_cast<int>(size));
    KpPathSegList byStream;
    readStream(text, byStream);
    exercise(byStream);
    KpPathSegList byDom;
    readDom(text, byDom);
    exercise(byDom);
    return 0;
}
