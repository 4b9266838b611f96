// SPDX-License-Identifier: MIT
// Any XML as how a shape looks: what is read is in range, and is read back to the bit as it was
// written, in every theme.

#include "diagnosticproperties.h"
#include "document/appearancexml.h"
#include "document/colourtheme.h"
#include "xmlstreamwriter.h"

#include <QXmlStreamReader>

#include <cmath>

namespace {

using Fuzzing::require;

/** The element that is there, or one that says nothing. */
Appearance readFrom(QByteArray const& text)
{
    QXmlStreamReader reader(text);
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isStartElement() && reader.name() == appearanceElement())
            return readAppearance(reader);
    }
    return {};
}

QByteArray written(Appearance const& appearance)
{
    QByteArray text;
    XmlStreamWriter writer(&text);
    writeAppearance(writer, appearance);
    return text;
}

void requireColour(std::optional<ShapeColour> const& part)
{
    if (!part)
        return;
    require(part->transforms.size() <= mostTransforms, "a colour has no more transforms than told");
    for (ColourTransform const& transform : part->transforms)
        require(std::isfinite(transform.value), "a transform is a number");
    require(part->steps().size() == part->transforms.size() + 1, "each transform is a step");
}

void requireRange(Appearance const& appearance)
{
    requireColour(appearance.fill);
    requireColour(appearance.line);
    if (!appearance.shadow)
        return;
    require(appearance.shadow->radius <= greatestShadowRadius, "a shadow is no larger than told");
    require(std::isfinite(appearance.shadow->offset.x())
            && std::isfinite(appearance.shadow->offset.y()),
        "a shadow is at a place");
}

/** Names lose what XML cannot hold when they are written first. */
void requireRoundTrip(Appearance const& appearance)
{
    QByteArray const text = written(appearance);
    Appearance const read = readFrom(text);
    requireRange(read);
    require(read == appearance, "an appearance is read as it was written");
    require(written(read) == text, "an appearance is written as it was read");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    Appearance const appearance = readFrom(Fuzzing::bytes(data, size));
    requireRange(appearance);
    requireRoundTrip(appearance);
    for (ColourTheme const& theme : colourThemes()) {
        Appearance const themed = withTheme(appearance, theme);
        requireRoundTrip(themed);
        require(withTheme(themed, theme) == themed, "a theme changes nothing again");
    }
    return 0;
}
