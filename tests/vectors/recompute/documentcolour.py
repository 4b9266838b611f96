# SPDX-License-Identifier: MIT
"""Document colours, from docs/colour.md and the comments of kpcolor.h and kpcolorio.h."""
from colour import shaded, tinted, unshaded, untinted
from colourvalue import Colour, named
from reals import sixteen_bits, to_int
from registry import constant, gives
from xmltext import Element, element_of, parsed_start, text_of

constant("KpColor::s_genPreTheme", False)


class DocumentColour:
    """A colour, its reference as a number, its theme slot and the code of its tint."""

    def __init__(self, colour, reference=0, theme=0, code=0):
        self.become(colour, reference, theme, code)

    def become(self, colour, reference, theme, code):
        self.colour, self.reference, self.theme, self.code = colour, reference, theme, code

    @staticmethod
    def read(value):
        return DocumentColour(Colour.read(value["colour"]), int(value["reference"][1:], 16),
                              value["theme"], value["tintCode"])

    @staticmethod
    def plain(colour):
        return DocumentColour(colour, colour.packed())

    def written(self):
        return {"colour": self.colour.written(), "reference": f"#{self.reference % 2**32:06x}",
                "theme": self.theme, "tintCode": self.code}

    def tint(self):
        return self.code if self.code <= 100 else 100 - self.code

    def set_tint(self, tint):
        self.code = min(tint, 100) if tint >= 0 else 100 - max(tint, -100)

    def reference_colour(self):
        return Colour.of_bytes(*(self.reference >> shift & 255 for shift in (16, 8, 0)))

    def set_theme(self, index):
        self.theme = sixteen_bits(max(index, 0))

    def compute(self, reference):
        """The concrete colour from the reference and the tint; alpha stays."""
        result = reference
        if 1 <= self.code <= 100:
            result = tinted(reference, self.code * 0.01)
        elif 101 <= self.code <= 200:
            result = shaded(reference, (self.code - 100) * 0.01)
        self.colour = Colour.of_bytes(*result.rgb(), self.colour.alpha())

    def key(self):
        return self.colour.key(), self.reference, self.theme, self.code


def changing(name):
    """Registers a change of a colour in place."""
    def register(function):
        @gives(f"KpColor::{name}")
        def _(colour, **inputs):
            changed = DocumentColour.read(colour)
            function(changed, **inputs)
            return {"colour": changed.written()}
        return function
    return register


@gives("KpColor::KpColor()")
def default():
    return {"colour": DocumentColour(Colour.invalid()).written()}


@gives("KpColor::KpColor(QColor const&)")
def from_plain(plain):
    return {"colour": DocumentColour.plain(Colour.read(plain)).written()}


@gives("KpColor::KpColor(KpColor const&)", "KpColor::operator=(KpColor const&)")
def copied(other, colour=None):
    del colour
    return {"colour": other}


@gives("KpColor::tint()")
def tint_of(colour):
    return DocumentColour.read(colour).tint()


@gives("KpColor::themeIndex() const")
def theme_of(colour):
    return colour["theme"]


@gives("KpColor::refColor()")
def reference_of(colour):
    return DocumentColour.read(colour).reference_colour().written()


def is_equal(colour, other):
    return DocumentColour.read(colour).key() == DocumentColour.read(other).key()


gives("KpColor::operator==(KpColor const&) const")(is_equal)


@gives("KpColor::operator!=(KpColor const&) const")
def is_other(colour, other):
    return not is_equal(colour, other)


@gives("KpColor::isSameInTheme(KpColor const&) const")
def is_same_in_theme(colour, other):
    return (colour["theme"], colour["tintCode"]) == (other["theme"], other["tintCode"])


@gives("operator==(KpColor const&, QColor const&)")
def is_plain(colour, plain):
    return is_equal(colour, DocumentColour.plain(Colour.read(plain)).written())


@gives("operator!=(KpColor const&, QColor const&)")
def is_not_plain(colour, plain):
    return not is_plain(colour, plain)


@gives("operator==(QColor const&, KpColor const&)")
def has_colour(colour, plain):
    return DocumentColour.read(colour).colour.key() == Colour.read(plain).key()


@gives("operator!=(QColor const&, KpColor const&)")
def has_other_colour(colour, plain):
    return not has_colour(colour, plain)


@changing("setTint(int)")
def set_tint(colour, tint):
    colour.set_tint(tint)


@changing("modifyTint(int)")
def modify_tint(colour, tint):
    colour.set_tint(tint)
    colour.compute(colour.reference_colour())


@changing("setTintColor(QColor, int, int)")
def set_tint_colour(colour, ref, tint, themeIndex):
    ref = Colour.read(ref)
    colour.set_tint(tint)
    colour.reference = ref.packed()
    colour.compute(ref)
    colour.set_theme(themeIndex)


@changing("setColorValues(QColor, QColor, int, int)")
def set_values(colour, ref, concrete, tint, themeIndex):
    colour.set_tint(tint)
    colour.reference = Colour.read(ref).packed()
    colour.colour = Colour.read(concrete)
    colour.set_theme(themeIndex)


@changing("setRefColor(QColor, int)")
def set_reference(colour, ref, themeIndex):
    ref = Colour.read(ref)
    colour.compute(ref)
    colour.reference = ref.packed()
    if themeIndex != -1:
        colour.set_theme(themeIndex)


@changing("setColor(QColor)")
def set_colour(colour, plain):
    plain = Colour.read(plain)
    colour.become(plain, plain.packed(), 0, 0)


@changing("assignNoAlpha(KpColor&)")
def assign_no_alpha(colour, other):
    other = DocumentColour.read(other)
    concrete = Colour.of_bytes(*other.colour.rgb(), colour.colour.alpha())
    colour.become(concrete, other.reference, other.theme, other.code)


def signed(number):
    return (number + 2**31) % 2**32 - 2**31


@gives("KpColor::toUndoValue(QVector<int>&)")
def to_undo(colour, values):
    colour = DocumentColour.read(colour)
    packed = colour.colour.packed() << 8 | colour.colour.alpha()
    return {"values": values + [colour.theme, colour.code, signed(colour.reference),
                                signed(packed)]}


@gives("KpColor::fromUndoValue(QVector<int>&, int&)")
def from_undo(colour, values, index):
    del colour # all of it is replaced
    theme, code, reference, packed = (
        values[i] if 0 <= i < len(values) else 0 for i in range(index, index + 4))
    red, green, blue, alpha = (packed >> shift & 255 for shift in (24, 16, 8, 0))
    result = DocumentColour(Colour.of_bytes(red, green, blue, alpha), reference,
                            sixteen_bits(theme), sixteen_bits(code))
    return {"colour": result.written(), "index": index + 4}


RGB_IN_STREAM = 1


def stream_bytes(colour):
    def word(number, size):
        return (number % 256**size).to_bytes(size, "big")
    channels = [colour.colour.alpha16] + colour.colour.rgb16() + [0]
    return (word(colour.theme, 2) + word(colour.code, 2) + bytes([RGB_IN_STREAM])
            + b"".join(word(channel, 2) for channel in channels) + word(colour.reference, 4)).hex()


@gives("KpColor::write(QDataStream&) const")
def write(colour):
    return {"bytes": stream_bytes(DocumentColour.read(colour))}


def from_bytes(text):
    words = [int(text[i:i + 4], 16) for i in (0, 4, 10, 14, 18, 22)]
    colour = Colour("rgb", words[3:], words[2])
    return DocumentColour(colour, int(text[30:38], 16), sixteen_bits(words[0]),
                          sixteen_bits(words[1])).written()


@gives("KpColor::read(QDataStream&)")
def read(bytes):  # pylint: disable=redefined-builtin
    return {"colour": from_bytes(bytes)}


@gives("operator<<(QDataStream&, KpColor const&)")
def write_two(colour):
    return {"bytesOfTwo": stream_bytes(DocumentColour.read(colour)) * 2}


@gives("operator>>(QDataStream&, KpColor&)")
def read_two(bytesOfTwo):
    return {"first": from_bytes(bytesOfTwo[:38]), "second": from_bytes(bytesOfTwo[38:])}


def element(colour, name, s_genPreTheme):
    colour = DocumentColour.read(colour)
    tint = colour.tint()
    attributes = {}
    if colour.theme:
        attributes["ThemeColor"] = str(colour.theme)
    if tint:
        attributes["Tint" if tint > 0 else "Shade"] = str(abs(tint))
    channels = [colour.colour.alpha()] + colour.colour.rgb()
    value = "#" + "".join(f"{channel:02x}" for channel in channels)
    if s_genPreTheme and colour.theme:
        if channels[0] != 255:
            attributes["V"] = value
    else:
        attributes["V"] = value
        if tint:
            attributes["Ref"] = "#" + "".join(
                f"{colour.reference >> shift & 255:x}" for shift in (16, 8, 0))
    return Element(name or "Color", attributes)


@gives("KpColor::saveTo(XmlStreamWriter&, QString const&)")
def save_to_stream(**inputs):
    return {"xml": text_of(element(**inputs))}


@gives("KpColor::saveTo(QDomElement&, QString const&)")
def save_to_tree(**inputs):
    return {"parent": Element("Style", {}, [element(**inputs)]).written()}


def parse(colour, given, keeps_theme):
    """Reads what is given of a colour's attributes."""
    if "V" in given:
        colour.colour = named(given["V"])
    if "ThemeColor" in given or not keeps_theme:
        colour.theme = sixteen_bits(to_int(given.get("ThemeColor", "0")))
    colour.code = 0
    if "Tint" in given:
        colour.set_tint(to_int(given["Tint"]))
    elif "Shade" in given:
        colour.set_tint(-to_int(given["Shade"]))
    if "Ref" in given:
        reference = named(given["Ref"])
    elif colour.code == 0:
        reference = colour.colour
    elif colour.code <= 100:
        reference = untinted(colour.colour, colour.code * 0.01)
    else:
        reference = unshaded(colour.colour, (colour.code - 100) * 0.01)
    colour.reference = reference.packed()


@changing("parse(QDomElement const&)")
def parse_tree(colour, xml):
    attributes = element_of(xml).attributes
    parse(colour, {name: text for name, text in attributes.items() if text}, False)


@changing("parse(QXmlStreamReader&)")
def parse_stream(colour, xml):
    attributes = parsed_start(xml).attributes
    if attributes:
        parse(colour, attributes, True)
