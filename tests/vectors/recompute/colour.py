# SPDX-License-Identifier: MIT
"""The colour transforms, from docs/colour.md and the comments of colorutil.h."""
from colourvalue import Colour
from reals import divided, rounded, truncated
from registry import constant, gives

for variable, value in {
        "s_reversible": (71, 142, 222), "s_alignBox": (0, 220, 0), "s_subAlignBox": (255, 0, 255),
        "s_anchorDock": (254, 80, 79), "s_mouseDot": (71, 142, 222), "s_virLine": (98, 98, 98),
        "s_adisLine": (71, 142, 222), "s_editText": (255, 255, 255),
        "s_editTextGray": (181, 181, 181), "s_selectMMRefShape": (100, 130, 255),
        "s_selectMMShape": (140, 175, 245), "s_hoverMMShape": (200, 220, 245),
        "s_hoverMarkLine": (80, 0, 255), "s_hoverFloatBtn": (0, 0, 255, 30),
        "s_hoverDarkFloatBtn": (200, 200, 255, 60)}.items():
    constant(f"ColorUtil::{variable}", Colour.of_bytes(*value).written())

TRANSFORMS = {}


def transform(name):
    """Registers what a transform makes of a colour and a value."""
    def register(function):
        TRANSFORMS[name] = function

        @gives(f"ColorUtil::{name}(KpColor&, double)")
        def _(colour, value):
            return {"colour": function(Colour.read(colour), value).written()}
        return function
    return register


def byte(number):
    return max(0, min(255, number))


def clamped(number, greatest=1.0):
    return 0.0 if number < 0 else greatest if number > greatest else number


for index, channel_name in enumerate(("red", "green", "blue")):
    def change_channel(function, index=index):
        """A transform that truncates what `function` makes of one channel."""
        def changed(colour, value):
            channels = colour.rgb()
            channels[index] = byte(truncated(function(channels[index], value)))
            if colour.kind != "rgb":
                return colour.with_rgb(*channels)
            parts = list(colour.parts)
            parts[index] = channels[index] * 0x101
            return Colour("rgb", parts, colour.alpha16)
        return changed
    transform(channel_name)(change_channel(lambda channel, value: value * 255))
    transform(f"{channel_name}Off")(change_channel(lambda channel, value: channel + value * 255))
    transform(f"{channel_name}Mod")(change_channel(lambda channel, value: channel * value))


@transform("alpha")
def alpha_set(colour, value):
    return Colour(colour.kind, colour.parts, rounded(clamped(value) * 65535))


@transform("alphaOff")
def alpha_off(colour, value):
    return colour.with_alpha(byte(colour.alpha() + rounded(value * 255)))


@transform("alphaMod")
def alpha_mod(colour, value):
    return colour.with_alpha(byte(rounded(colour.alpha() * value)))


HUE, SATURATION, LIGHTNESS = range(3)


def hsl_transform(name, part, function):
    """A transform of one of hue, saturation and lightness; one out of range changes nothing."""
    @transform(name)
    def _(colour, value):
        fractions = colour.hsl()
        fractions[part] = function(fractions[part], value)
        return Colour.of_hsl(*fractions) or colour


hsl_transform("hue", HUE, lambda old, value: max(value, -1.0))
hsl_transform("hueOff", HUE, lambda old, value: max(old + value, -1.0))
hsl_transform("hueMod", HUE, lambda old, value: clamped(old * value, 360.0))
for prefix, which in (("sat", SATURATION), ("lum", LIGHTNESS)):
    hsl_transform(prefix, which, lambda old, value: clamped(value))
    hsl_transform(f"{prefix}Off", which, lambda old, value: clamped(old + value))
    hsl_transform(f"{prefix}Mod", which, lambda old, value: clamped(old * value))


@transform("comp")
@transform("gamma")
@transform("invGamma")
def unchanged(colour, value):
    del value
    return colour


@transform("inv")
def inverse(colour, value):
    del value
    return colour.with_rgb(*(255 - channel for channel in colour.rgb()))


def grey_of(colour):
    red, green, blue = colour.rgb()
    grey = byte(truncated((red * 0.3 + green * 0.59) + blue * 0.11))
    return colour.with_rgb(grey, grey, grey)


@transform("gray")
def grey_transform(colour, value):
    del value
    return grey_of(colour)


@gives("ColorUtil::toGray(QColor)")
def to_grey(colour):
    return grey_of(Colour.read(colour)).written()


def to_linear(v):
    if v < 0:
        return 0.0
    if v <= 0.04045:
        return v / 12.92
    return 1.0 if v >= 1 else ((v + 0.055) / 1.055)**2.4


def from_linear(v):
    if v < 0:
        return 0.0
    if v <= 0.0031308:
        return v * 12.92
    return 1.0 if v >= 1 else 1.055 * v**0.4166666666666667 - 0.055


gives("ColorUtil::SRGB_To_SCRGB(double)")(to_linear)
gives("ColorUtil::SCRGB_To_SRGB(double)")(from_linear)


def light_of(colour):
    return [to_linear(channel / 255.0) for channel in colour.rgb()]


def channel_of(intensity):
    """Rounded to 8 bits: the same everywhere as long as no power that is rounded is near a tie."""
    channel = from_linear(intensity) * 255.0
    is_power = 0.0031308 < intensity < 1
    assert not is_power or abs(channel % 1 - 0.5) > 1e-9, f"{channel} is near a tie"
    return byte(rounded(channel))


def lit(colour, intensities):
    return colour.with_rgb(*map(channel_of, intensities))


@gives("ColorUtil::SCRGB::SCRGB(QColor)", "ColorUtil::SCRGB::SCRGB(KpColor)")
def light(colour):
    return dict(zip(("red", "green", "blue"), light_of(Colour.read(colour))))


@gives("ColorUtil::SCRGB::toColor(QColor&)", "ColorUtil::SCRGB::toSRGB(KpColor&)")
def colour_of_light(red, green, blue, colour):
    return {"colour": lit(Colour.read(colour), (red, green, blue)).written()}


def mixed_with_white(colour, t):
    return [x * (1 - t) + t for x in light_of(colour)]


def mixed_with_black(colour, t):
    return [x * (1 - t) for x in light_of(colour)]


def tinted(colour, value):
    """Opaque, unless nothing is done."""
    return lit(Colour.invalid(), mixed_with_white(colour, value)) if value != 0 else colour


def shaded(colour, value):
    """Opaque, unless nothing is done."""
    return lit(Colour.invalid(), mixed_with_black(colour, value)) if value != 0 else colour


def untinted(colour, value):
    if value == 0:
        return colour
    return lit(colour, [divided(x - value, 1 - value) for x in light_of(colour)])


def unshaded(colour, value):
    return lit(colour, [divided(x, 1 - value) for x in light_of(colour)]) if value != 0 else colour


@transform("tint")
def tint_transform(colour, value):
    return lit(colour, mixed_with_white(colour, value)) if value != 0 else colour


@transform("shade")
def shade_transform(colour, value):
    return lit(colour, mixed_with_black(colour, value)) if value != 0 else colour


for name, operation in {"tint(QColor const&, double)": tinted,
                        "shade(QColor const&, double)": shaded,
                        "invertTint(QColor, double)": untinted,
                        "invertShade(QColor, double)": unshaded}.items():
    gives(f"ColorUtil::{name}")(
        lambda colour, value, operation=operation: operation(Colour.read(colour), value).written())


def hex_text(prefix, channels):
    return prefix + "".join(f"{channel:02X}" for channel in channels)


@gives("ColorUtil::RGBToString(QColor)")
def rgb_text(colour):
    return hex_text("#", Colour.read(colour).rgb())


@gives("ColorUtil::RGBToStringPPT(QColor)")
def plain_text(colour):
    return hex_text("", Colour.read(colour).rgb())


@gives("ColorUtil::RGBToString4(QColor)")
def argb_text(colour):
    colour = Colour.read(colour)
    return hex_text("#", [colour.alpha()] + colour.rgb())


@gives("ColorUtil::initColorFunctionMap()")
def table():
    return {"names": sorted(TRANSFORMS), "initedColorFuncMap": True}


@gives("ColorUtil::getColorFunc(QString)")
def found(name):
    return {"isThere": name in TRANSFORMS}
