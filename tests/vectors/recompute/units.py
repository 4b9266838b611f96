# SPDX-License-Identifier: MIT
"""Units, pages and the screen, from the comments of unitutil.h."""
from reals import divided, rounded, six_digits, truncated
from registry import constant, gives

NAMES = ["px", "mm", "cm", "m", "km", "in", "ft", "ft-in", "yd", "mi", "pt", "pc", "dd", "cc"]
PER_MILE = 6082560.0

constant("UnitUtil::s_pixPerMM", 3.779527559055118)
constant("UnitUtil::s_pixPerPt", 1.333333333333333)
constant("UnitUtil::s_pixPerDidot", 1.417322834645669)
constant("UnitUtil::s_pixPerMile", PER_MILE)
constant("UnitUtil::s_logicalDpi", 96.0)
constant("UnitUtil::s_pixelRatio", 1.0)
constant("UnitUtil::s_dpiScale", 1.0)
constant("UnitUtil::s_screenSize", [0, 0])
constant("UnitUtil::s_cacheWidth", 4800)
constant("UnitUtil::s_cacheHeight", 3200)
constant("UnitUtil::s_usedMemory", 0)
constant("UnitUtil::s_inited", False)

INCH, MM = 5, 1
PAGES = (
    [(w, h, INCH) for w, h in (
        (8.5, 11), (8.5, 13), (8.5, 14), (7.5, 10.5), (5.5, 8.5), (4.125, 9.5), (3.875, 7.5),
        (11, 17), (8.5, 11), (17, 22), (22, 34), (34, 44))]
    + [(w, h, MM) for w, h in (
        (297, 420), (210, 297), (148, 210), (250, 354), (182, 257), (110, 220), (162, 229),
        (215, 275), (162, 229), (176, 250), (110, 230), (210, 297))]
    + [(8.5, 12, INCH), (8, 13, INCH), (146, 215, MM), (97, 151, MM), (100, 148, MM),
       (148, 200, MM), (22, 36, INCH)]
    + [(24, length, INCH) for length in (48, 60, 72, 84, 96, 108)]
    + [(36, length, INCH) for length in (42, 60, 72, 84, 96, 108)]
    + [(8.5, 10, INCH)]
    + [(w, h, MM) for w, h in (
        (228.6, 304.8), (304.8, 457.2), (457.2, 609.6), (609.6, 914.4), (914.4, 1219.2),
        (762, 1066.8), (841, 1189), (594, 841), (420, 594), (707, 1000), (728.1, 1030.1),
        (515, 728.1), (364, 515), (257.1, 364), (182, 257.1), (1189, 1682), (1682, 2378))])
assert len(PAGES) == 61


def per_unit(unit, dpi):
    """Pixels to the unit that a code is built on, and how many of those it is."""
    return {1: (96 / 25.4, 1), 2: (96 / 25.4, 10), 3: (96 / 25.4, 1000), 4: (96 / 25.4, 1000000),
            5: (dpi, 1), 6: (dpi, 12), 7: (dpi, 12), 8: (dpi, 36), 9: (PER_MILE, 1),
            10: (96 / 72, 1), 11: (96 / 72, 12), 12: (36 / 25.4, 1),
            13: (36 / 25.4, 12)}.get(unit)


@gives("UnitUtil::pixelToUnit(double, unsigned int)")
def pixel_to_unit(dpi, value, unit):
    found = per_unit(unit, float(rounded(dpi)))
    if not found:
        return value
    pixels, times = found
    metric = {10: 0.1, 1000: 0.001, 1000000: 0.000001}
    if times in metric:
        return value * metric[times] / pixels
    return value / (times * pixels)


@gives("UnitUtil::unitToPixel(double, unsigned int)")
def unit_to_pixel(dpi, value, unit):
    found = per_unit(unit, float(rounded(dpi)))
    return value * found[0] * found[1] if found else value


def code_of(name):
    return NAMES.index(name.lower()) if name.lower() in NAMES else -1


@gives("UnitUtil::pixelToUnit(double, QString const&)")
def pixel_to_named(dpi, value, unitName):
    return pixel_to_unit(dpi, value, code_of(unitName))


@gives("UnitUtil::unitToPixel(double, QString const&)")
def named_to_pixel(dpi, value, unitName):
    return unit_to_pixel(dpi, value, code_of(unitName))


@gives("UnitUtil::unitStr(unsigned int)")
def unit_name(unit):
    return NAMES[unit] if unit < len(NAMES) else ""


@gives("UnitUtil::incheValtoFeetIncheStr(double)")
def feet_and_inches(inches):
    rest = abs(inches)
    feet = 0
    if rest > 12:
        feet = truncated(rest / 12)
        rest -= feet * 12
    text = ("-" if inches < 0 else "") + f"{feet}'"
    return text + (six_digits(rest) + '"' if rest > 0.000001 else "")


@gives("UnitUtil::feetValtoFeetIncheStr(double)")
def feet_text(feet):
    return feet_and_inches(feet * 12)


@gives("UnitUtil::from7Val(double)")
def quarter_millimetres(value):
    return value * (96 / 25.4) * 0.25


@gives("UnitUtil::preDefinedPage(int, QSizeF&, QSizeF&)")
def page(dpi, index):
    width, height, unit = PAGES[index] if 0 <= index <= 60 else (210, 297, MM)
    sides = [float(width), float(height)]
    return {"result": unit, "unitSize": sides,
            "pixelSize": [unit_to_pixel(dpi, side, unit) for side in sides]}


def snapped(number):
    for whole in (1.0, 2.0):
        if abs(number - whole) < 0.01:
            return whole
    return number


class Screen:
    """What initScreen() makes of its arguments."""

    def __init__(self, dpi, pixelRatio, size):
        self.ratio = snapped(pixelRatio)
        self.dpi = float(rounded(dpi))
        self.scale = snapped(self.dpi / 96)
        self.size = [rounded(divided(float(side), self.scale)) for side in size]
        self.cache = [
            truncated(divided(float(max(truncated(self.ratio * side) + margin, least)), self.ratio))
            for side, margin, least in zip(size, (200, 300), (4100, 2500))]


@gives("UnitUtil::initScreen(double, double, QSize)")
def init_screen(**inputs):
    screen = Screen(**inputs)
    return {"s_pixPerMM": 96 / 25.4, "s_pixPerPt": 96 / 72, "s_pixPerDidot": 36 / 25.4,
            "s_pixPerMile": PER_MILE, "s_logicalDpi": screen.dpi, "s_pixelRatio": screen.ratio,
            "s_dpiScale": screen.scale, "s_screenSize": screen.size,
            "s_cacheWidth": screen.cache[0], "s_cacheHeight": screen.cache[1]}


@gives("UnitUtil::dpiScale()", "UnitUtil::dpiScale96()")
def dpi_scale(**inputs):
    return Screen(**inputs).scale


@gives("UnitUtil::dpiAndPixel()")
def dpi_and_pixel(**inputs):
    screen = Screen(**inputs)
    return screen.scale * screen.ratio


@gives("UnitUtil::isSmallImg()")
def is_small(**inputs):
    return abs(Screen(**inputs).scale - 1) <= 0.1


@gives("UnitUtil::isSmallImgReal()")
def is_small_and_plain(**inputs):
    return is_small(**inputs) and Screen(**inputs).ratio < 1.1


@gives("UnitUtil::docDefaultSize()")
def default_size(**inputs):
    width, height = Screen(**inputs).size
    return [truncated(width * 1.2), truncated(height * 1.5)]


@gives("UnitUtil::fontSizeFromMac(double)")
def font_from(size):
    exact = size * 0.75
    whole = truncated(exact)
    rest = exact - whole
    if rest < 0.26:
        return float(whole)
    return whole + (0.5 if rest < 0.74 else 1.0)


@gives("UnitUtil::fontSizeToMac(double)")
def font_to(size):
    return float(rounded(size * 1.33333333))


@gives("UnitUtil::changeToSystemExistFamily(QString&)")
def family_there(families, langID, family):
    if family in families:
        return {"result": False, "family": family}
    return {"result": True, "family": "\u5b8b\u4f53" if langID == 4 else "Arial"}


@gives("UnitUtil::platForm()")
def platform():
    return "linux"


@gives("UnitUtil::isWin()", "UnitUtil::isMac()")
def is_other():
    return False


@gives("UnitUtil::isLinux()")
def is_linux():
    return True


@gives("UnitUtil::FileDigest(QString, int, int)")
def file_digest(path):
    del path
    return ""
