// SPDX-License-Identifier: MIT
// Any bytes as a colour: from a data stream and from the attributes of an element. What was read
// must survive being written and read again, and every transform takes it; the readers of both
// forms of XML read the same, and what a plain model reads, into a new colour and into one that
// was changed before. Nothing is logged.

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

/** All is read, whatever the colour was before. */
void checkReading(QByteArray const& bytes, KpColor const& expected)
{
    QDataStream stream(bytes);
    KpColor used;
    used.setColorValues(QColor(9, 80, 200), QColor::fromHsv(1, 2, 3, 4), 40, 5);
    used.read(stream);
    require(written(used) == written(expected), "a stream replaces what was there");
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

enum class Form { Dom, Stream };

/** What the attributes say, each of them taken for itself, of what was `before`. */
void checkAgainstModel(
    KpColor read, KpColor const& before, QXmlStreamAttributes const& attributes, Form form)
{
    if (form == Form::Stream && attributes.isEmpty()) {
        require(written(read) == written(before), "without attributes nothing changes");
        return;
    }
    auto const has = [&](char const* name) {
        QLatin1String const attribute(name);
        return attributes.hasAttribute(attribute)
            && (form == Form::Stream || !attributes.value(attribute).isEmpty());
    };
    int tint = 0;
    if (has("Tint"))
        tint = std::clamp(numberIn(attributes, "Tint"), -100, 100);
    else if (has("Shade"))
        tint = -std::clamp(numberIn(attributes, "Shade"), -100, 100);
    require(read.tint() == tint, "the tint as modelled");
    int theme = form == Form::Stream ? before.themeIndex() : 0;
    if (has("ThemeColor"))
        theme = static_cast<qint16>(numberIn(attributes, "ThemeColor"));
    require(read.themeIndex() == theme, "the theme as modelled");
    auto const colourIn = [&](char const* name) {
        QColor colour;
        colour.setNamedColor(attributes.value(QLatin1String(name)).toString());
        return colour;
    };
    QColor const concrete = has("V") ? colourIn("V") : QColor(before);
    require(static_cast<QColor const&>(read) == concrete, "the concrete colour, too");
    QColor reference = concrete;
    if (has("Ref"))
        reference = colourIn("Ref");
    else if (tint > 0)
        reference = ColorUtil::invertTint(concrete, tint * 0.01);
    else if (tint < 0)
        reference = ColorUtil::invertShade(concrete, -tint * 0.01);
    require(read.refColor().rgb() == (reference.rgb() | 0xFF000000U), "and the reference");
}

/** The readers of both forms, into a new colour and into one of which nothing is as in that. */
void checkReaders(QXmlStreamReader& reader)
{
    QXmlStreamAttributes const attributes = reader.attributes();
    QDomDocument document;
    QDomElement element = document.createElement(QStringLiteral("Color"));
    for (QXmlStreamAttribute const& attribute : attributes)
        element.setAttribute(attribute.qualifiedName().toString(), attribute.value().toString());
    KpColor changed;
    changed.setColorValues(QColor(9, 80, 200), QColor(1, 2, 3, 4), 40, 5);
    for (KpColor const& before : {KpColor(), changed}) {
        KpColor byStream(before);
        byStream.parse(reader);
        checkAgainstModel(byStream, before, attributes, Form::Stream);
        KpColor byDom(before);
        byDom.parse(element);
        checkAgainstModel(byDom, before, attributes, Form::Dom);
    }
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
    checkReading(bytes, streamed);
    checkStream(streamed);
    checkXml(streamed);
    applyAll(streamed, value);

    QXmlStreamReader reader(bytes);
    if (reader.readNextStartElement()) {
        KpColor parsed;
        parsed.parse(reader);
        checkStream(parsed);
        checkXml(parsed);
        checkReaders(reader);
    }
    return 0;
}
