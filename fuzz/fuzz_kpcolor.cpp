// Any bytes as a colour: from a data stream and from the attributes of an element. What was read
// must survive being written and read again, and every transform takes it; the readers of both
// forms of XML read the same, and what a plain model reads. Nothing is logged.

#include "colorutil.h"
#include "fuzzing.h"
#include "kpcolor.h"
#include "xmlstreamwriter.h"

#include <QDataStream>
#include <QDomDocument>
#include <QXmlStreamReader>

#include <algorithm>

using Fuzzing::require;

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
    require(written(read) == bytes, "a stream holds all");
}

/** The concrete colour, theme and tint survive as far as the format says. */
void checkXml(KpColor colour)
{
    QByteArray xml;
    XmlStreamWriter writer(&xml);
    colour.saveTo(writer, QString());
    QXmlStreamReader reader(xml);
    KpColor read;
    require(reader.readNextStartElement(), "what is written is an element");
    read.parse(reader);
    bool const hasKnownTint = colour.tint() >= -100 && colour.tint() <= 100;
    require(read.rgba() == colour.rgba() && read.themeIndex() == colour.themeIndex(),
        "the concrete colour and the theme come back");
    require(!hasKnownTint || read.tint() == colour.tint(), "so does a tint");
}

void applyAll(KpColor const& colour, double value)
{
    ColorUtil::initColorFunctionMap();
    for (ColorUtil::ColorFunc const function : qAsConst(ColorUtil::mapColorFuncs)) {
        KpColor changed = colour;
        function(changed, value);
        require(changed.isSameInTheme(colour), "a transform leaves theme and tint");
    }
}

int numberIn(QXmlStreamAttributes const& attributes, char const* name)
{
    return attributes.value(QLatin1String(name)).toInt();
}

/** What the attributes say, each of them taken for itself. */
void checkAgainstModel(KpColor read, QXmlStreamAttributes const& attributes)
{
    auto const has = [&](char const* name) { return attributes.hasAttribute(QLatin1String(name)); };
    int tint = 0;
    if (has("Tint"))
        tint = std::clamp(numberIn(attributes, "Tint"), -100, 100);
    else if (has("Shade"))
        tint = -std::clamp(numberIn(attributes, "Shade"), -100, 100);
    require(read.tint() == tint, "the tint as modelled");
    require(read.themeIndex() == static_cast<qint16>(numberIn(attributes, "ThemeColor")),
        "the theme as modelled");
    auto const colourIn = [&](char const* name) {
        QColor colour;
        colour.setNamedColor(attributes.value(QLatin1String(name)).toString());
        return colour;
    };
    if (has("V"))
        require(static_cast<QColor const&>(read) == colourIn("V"), "the concrete colour, too");
    if (has("Ref"))
        require(
            read.refColor().rgb() == (colourIn("Ref").rgb() | 0xFF000000U), "and the reference");
}

/** The readers of both forms, where they owe each other something: nothing is there and empty. */
void checkReaders(KpColor const& byStream, QXmlStreamAttributes const& attributes)
{
    QDomDocument document;
    QDomElement element = document.createElement(QStringLiteral("Color"));
    bool hasEmpty = false;
    for (QXmlStreamAttribute const& attribute : attributes) {
        hasEmpty = hasEmpty || attribute.value().isEmpty();
        element.setAttribute(attribute.qualifiedName().toString(), attribute.value().toString());
    }
    KpColor byDom;
    byDom.parse(element);
    require(hasEmpty || written(byDom) == written(byStream), "both readers read the same");
    if (!attributes.isEmpty())
        checkAgainstModel(byStream, attributes);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/)
{
    Fuzzing::forbidLog();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    QByteArray const bytes = Fuzzing::bytes(data, size);
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
        checkReaders(parsed, reader.attributes());
    }
    return 0;
}
