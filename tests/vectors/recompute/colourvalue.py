# SPDX-License-Identifier: MIT
"""A QColor: channels of 16 bits in red, green and blue or in hue, saturation and lightness."""
import re
from fractions import Fraction

from reals import rounded

FULL = 65535
GREY_HUE = FULL # the hue of a colour that has none
CIRCLE = 36000 # a turn in hundredths of a degree


def nearest(fraction, full=FULL):
    return rounded(fraction * full)


def eight_bits(channel):
    """Rounded; no channel is halfway between two."""
    return (channel + 0x80) // 0x101


class Colour:
    """`kind` is "rgb", "hsl" or "invalid"; `parts` are its three channels."""

    def __init__(self, kind, parts, alpha):
        self.kind, self.parts, self.alpha16 = kind, list(parts), alpha

    @staticmethod
    def invalid():
        return Colour("invalid", [0, 0, 0], FULL)

    @staticmethod
    def of_bytes(red, green, blue, alpha=255):
        return Colour("rgb", [channel * 0x101 for channel in (red, green, blue)], alpha * 0x101)

    @staticmethod
    def read(text):
        """As it stands in a vector."""
        if text == "invalid":
            return Colour.invalid()
        if isinstance(text, dict):
            hue, saturation, lightness, alpha = text["hsl"]
            hue = GREY_HUE if hue == -1 else nearest(hue, CIRCLE)
            return Colour("hsl", [hue, nearest(saturation), nearest(lightness)], nearest(alpha))
        digits = (len(text) - 1) // 4
        channels = [int(text[1 + i * digits:1 + (i + 1) * digits], 16) for i in range(4)]
        if digits == 2:
            channels = [channel * 0x101 for channel in channels]
        return Colour("rgb", channels[1:], channels[0])

    @staticmethod
    def of_hsl(hue, saturation, lightness, alpha):
        """None where a fraction is out of range."""
        numbers = [0.0 if n != n else n for n in (hue, saturation, lightness, alpha)]
        hue, saturation, lightness, alpha = numbers
        fits = all(0 <= n <= 1 for n in numbers[1:]) and (0 <= hue <= 1 or hue == -1)
        if not fits:
            return None
        hue = GREY_HUE if hue == -1 else nearest(hue, CIRCLE)
        return Colour("hsl", [hue, nearest(saturation), nearest(lightness)], nearest(alpha))

    def written(self):
        """As it stands in a vector."""
        if self.kind == "invalid":
            return "invalid"
        channels = [self.alpha16] + self.rgb16()
        if all(channel % 0x101 == 0 for channel in channels):
            text = "#" + "".join(f"{channel // 0x101:02x}" for channel in channels)
        else:
            text = "#" + "".join(f"{channel:04x}" for channel in channels)
        return {"rgb": text, "hsl": self.hsl()} if self.kind == "hsl" else text

    def rgb16(self):
        """HSL to RGB as textbooks have it, with the channels rounded to 16 bits."""
        if self.kind != "hsl":
            return self.parts
        hue, saturation, lightness = self.parts
        if saturation == 0 or hue == GREY_HUE:
            return [lightness] * 3
        if lightness == 0:
            return [0, 0, 0]
        h = (hue % CIRCLE) / CIRCLE
        s, l = saturation / FULL, lightness / FULL
        top = l * (1 + s) if l < 0.5 else l + s - l * s
        bottom = 2 * l - top
        channels = []
        for turned in (h + 1 / 3, h, h - 1 / 3):
            turned = turned + 1 if turned < 0 else turned - 1 if turned > 1 else turned
            if turned * 6 < 1:
                part = bottom + (top - bottom) * (turned * 6)
            elif turned * 2 < 1:
                part = top
            elif turned * 3 < 2:
                part = bottom + (top - bottom) * (2 / 3 - turned) * 6
            else:
                part = bottom
            channel = nearest(part)
            channels.append(0 if channel == 1 else channel)
        return channels

    def rgb(self):
        """The channels in 8 bits."""
        return list(map(eight_bits, self.rgb16()))

    def alpha(self):
        return eight_bits(self.alpha16)

    def hsl(self):
        """Hue, saturation, lightness and alpha as fractions; hue -1 for grey."""
        hue, saturation, lightness = self.parts if self.kind == "hsl" else self.hsl16()
        return [-1.0 if hue == GREY_HUE else hue / CIRCLE, saturation / FULL, lightness / FULL,
                self.alpha16 / FULL]

    def hsl16(self):
        red, green, blue = (channel / FULL for channel in self.parts)
        most, least = max(red, green, blue), min(red, green, blue)
        delta, total = most - least, most + least
        lightness = nearest(0.5 * total)
        if delta == 0:
            return [GREY_HUE, 0, lightness]
        saturation = nearest(delta / total if 0.5 * total < 0.5 else delta / (2 - total))
        if red == most:
            hue = (green - blue) / delta
        elif green == most:
            hue = 2 + (blue - red) / delta
        else:
            hue = 4 + (red - green) / delta
        hue *= 60
        return [rounded((hue + 360 if hue < 0 else hue) * 100), saturation, lightness]

    def with_rgb(self, red, green, blue):
        """Plain channels with this alpha, which is then one of 8 bits unless it was plain before."""
        colour = Colour.of_bytes(red, green, blue, self.alpha())
        if self.kind == "rgb":
            colour.alpha16 = self.alpha16
        return colour

    def with_alpha(self, alpha):
        return Colour(self.kind, self.parts, alpha * 0x101)

    def packed(self):
        red, green, blue = self.rgb()
        return red << 16 | green << 8 | blue

    def key(self):
        """Equal for equal colours."""
        return self.kind, self.parts, self.alpha16


# Of the names of colours that SVG has, those in the vectors.
NAMES = {"red": (255, 0, 0), "steelblue": (70, 130, 180), "transparent": (0, 0, 0, 0)}


def named(text):
    """The colour of "#rgb" and its longer forms, or of a name; an invalid one for other texts."""
    name = text.replace(" ", "").lower()
    if name in NAMES:
        return Colour.of_bytes(*NAMES[name])
    digits = {4: 1, 7: 2, 9: 2, 10: 3, 13: 4}.get(len(text))
    if not re.fullmatch("#[0-9A-Fa-f]+", text) or not digits:
        return Colour.invalid()
    numbers = [int(text[i:i + digits], 16) for i in range(1, len(text), digits)]
    full = 16**digits - 1
    channels = [int(Fraction(number * FULL, full)) for number in numbers]
    alpha = channels.pop(0) if len(channels) == 4 else FULL
    return Colour("rgb", channels, alpha)
