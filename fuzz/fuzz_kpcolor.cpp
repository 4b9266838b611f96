// Any bytes as a colour: from a data stream and from the attributes of an element. What was read
// must survive being written and read again, and every transform takes it.

#include "colorutil.h"
#include "kpcolor.h"
#include "xmlstreamwriter.h"

#include <QDataStream>
#include <QXmlStreamReader>

#include <cstdint>
#include <cstdlib>

namespace {

QByteArray written(KpColor const& colour)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    colour.write(out);
    return bytes;
}

/** Compares bytes: the floats of an extended colour may be no numbers, which equal nothing. */
void checkStream(KpColor const& colour)
{
    QByteArray const bytes = written(colour);
    QDataStream in(bytes);
    KpColor read;
    read.read(in);
    if (written(read) != bytes)
        std::abort();
}

/** The concrete colour, theme and tint survive as far as the format says. */
void checkXml(KpColor colour)
{
    QByteArray xml;
    XmlStreamWriter writer(&xml);
    colour.saveTo(writer, QString());
    QXmlStreamReader reader(xml);
    KpColor read;
    if (!reader.readNextStartElement())
        std::abort();
    read.parse(reader);
    bool const hasKnownTint = colour.tint() >= -100 && colour.tint() <= 100;
    if (read.rgba() != colour.rgba() || read.themeIndex() != colour.themeIndex()
        || (hasKnownTint && read.tint() != colour.tint()))
        std::abort();
}

void applyAll(KpColor const& colour, double value)
{
    ColorUtil::initColorFunctionMap();
    for (ColorUtil::ColorFunc const function : qAsConst(ColorUtil::mapColorFuncs)) {
        KpColor changed = colour;
        function(changed, value);
        if (!changed.isSameInTheme(colour))
            std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    QByteArray const bytes(reinterpret_cast<char const*>(data), static_cast<int>(size));
    QDataStream stream(bytes);
    KpColor streamed;
    double value = 0.0;
    streamed.read(stream);
    stream >> value;
    checkStream(streamed);
    checkXml(streamed);
    applyAll(streamed, value);

    QXmlStreamReader reader(bytes);
    if (reader.readNextStartElement()) {
        KpColor parsed;
        parsed.parse(reader);
        checkStream(parsed);
        checkXml(parsed);
    }
    return 0;
}
