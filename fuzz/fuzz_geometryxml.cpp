// SPDX-License-Identifier: MIT
// Any bytes through the readers of both forms: they read what a plain model of them reads, into a
// new outline and into one that holds something. What they make of it is written the same by both
// writers and read back the same by both readers, and from the second writing on nothing changes.

#include "boundedxml_p.h"
#include "fuzzing.h"
#include "geometrymodel.h"
#include "kppath.h"
#include "kppathseglist.h"
#include "xmlstreamwriter.h"

#include <QDomDocument>
#include <QXmlStreamReader>

using Fuzzing::require;

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
    if (!reader.readNextStartElement())
        return;
    QString const name = reader.name().toString();
    bool const isRead = list.parse(reader, 0);
    require(reader.hasError() || reader.name() == name, "the reader stays with its element");
    require(isRead ? reader.hasError() || reader.isEndElement() : reader.isStartElement(),
        "what is read is read to its end, and what is not is left where it is");
    reader.readNext();
    require(!isRead || reader.hasError() || !reader.isStartElement(), "no element is left");
}

bool readDom(QByteArray const& text, KpPathSegList& list)
{
    BoundedXml::Error error;
    QDomDocument document;
    return BoundedXml::parse(text, document, error) && list.parse(document.documentElement(), 0);
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

/** Reads into an outline that is as it was created, and into one of which nothing is. */
template <class Read> void checkReader(QByteArray const& text, GeometryModel::Form form, Read read)
{
    for (bool const isChanged : {false, true}) {
        KpPathSegList list;
        if (isChanged) {
            list.closed = list.noFill = list.noLine = true;
            list.curveTo({1.0, 2.0}, {3.0, 4.0}, {5.0, 6.0});
        }
        OutlineValue::Outline const before = OutlineValue::of(list);
        if (!read(list))
            return;
        if (auto const expected = GeometryModel::read(text, form, before))
            require(areSame(OutlineValue::of(list), *expected), "a reader is the model's");
    }
}

void checkReaders(QByteArray const& text)
{
    checkReader(text, GeometryModel::Form::Stream, [&text](KpPathSegList& list) {
        readStream(text, list);
        return true;
    });
    checkReader(text, GeometryModel::Form::Dom, [&text](KpPathSegList& list) {
        bool const isRead = readDom(text, list);
        require(!isRead || GeometryModel::read(text, GeometryModel::Form::Dom, {}),
            "what the guard passes is well-formed");
        return isRead;
    });
}

void checkWriters(KpPathSegList& list)
{
    QByteArray const saved = streamText(list);
    KpPathSegList byStream;
    readStream(saved, byStream);
    KpPathSegList byDom;
    require(readDom(saved, byDom), "what is written is well-formed");
    QByteArray const again = streamText(byStream);
    require(again == streamText(byDom), "both readers read what is written alike");
    require(again == throughDom(list), "both writers write the same");
    // Absolute coordinates have no rule in the first text, and have that of their kind from there.
    KpPathSegList third;
    readStream(again, third);
    require(streamText(third) == again, "what has been read back is written as before");
}

void checkUses(KpPathSegList& list)
{
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
    QByteArray const text = Fuzzing::bytes(data, size);
    checkReaders(text);
    KpPathSegList byStream;
    readStream(text, byStream);
    KpPathSegList byDom;
    readDom(text, byDom);
    bool const areAlike = areSame(OutlineValue::of(byStream), OutlineValue::of(byDom));
    checkWriters(byStream);
    checkUses(byStream);
    if (!areAlike) {
        checkWriters(byDom);
        checkUses(byDom);
    }
    return 0;
}
