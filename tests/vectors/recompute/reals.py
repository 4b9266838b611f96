# SPDX-License-Identifier: MIT
"""Reals as the library computes with them: doubles of IEEE 754 that never raise."""
import math
import re
import struct
from decimal import ROUND_HALF_UP, Context, Decimal

NAN = math.nan
INT_MAX = 2**31 - 1
INT_MIN = -2**31

_HEX = re.compile(r"-?(0x[01](\.[0-9a-f]+)?p[+-]\d+|inf)|nan")
_DECIMAL = re.compile(r"[+-]?(\d+\.?\d*|\.\d+)(e[+-]?\d+)?", re.ASCII | re.IGNORECASE)


def decoded(value):
    """JSON of a vector with the texts of reals as floats."""
    if isinstance(value, str) and _HEX.fullmatch(value):
        return float.fromhex(value)
    if isinstance(value, list):
        return [decoded(entry) for entry in value]
    if isinstance(value, dict):
        return {name: decoded(entry) for name, entry in value.items()}
    return value


def divided(dividend, divisor):
    if divisor != 0.0:
        return dividend / divisor
    if math.isnan(dividend) or dividend == 0.0:
        return NAN
    return math.copysign(math.inf, dividend) * math.copysign(1.0, divisor)


def or_nan(function, *arguments):
    """A function of the C library, whose domain errors Python raises."""
    try:
        return function(*arguments)
    except ValueError:
        return NAN


def single(number):
    """Rounded to a float of 32 bits."""
    try:
        return struct.unpack("f", struct.pack("f", number))[0]
    except OverflowError:
        return math.copysign(math.inf, number)


def lesser(left, right):
    """The smaller one; the right one unless the left is smaller, which decides for NaN."""
    return left if left < right else right


def truncated(number):
    """To an int of 32 bits, toward zero; its nearer end beyond its range, 0 for NaN."""
    if math.isnan(number):
        return 0
    return int(max(INT_MIN, min(INT_MAX, number)))


def rounded(number):
    """To the nearest int of 32 bits, halves upward."""
    if math.isinf(number) or math.isnan(number):
        return truncated(number)
    return truncated(math.floor(number + 0.5))


def sixteen_bits(number):
    """The low 16 bits, taken as signed."""
    return (number + 0x8000) % 0x10000 - 0x8000


def six_digits(number):
    """The text of a real in documents: six significant digits, ties away from zero."""
    if math.isnan(number):
        return "nan"
    if math.isinf(number):
        return "inf" if number > 0 else "-inf"
    if number == 0.0:
        return "0"
    exact = Context(prec=6, rounding=ROUND_HALF_UP).create_decimal(Decimal(number))
    sign, digits, _ = exact.as_tuple()
    exponent = exact.adjusted()
    text = "".join(map(str, digits)).ljust(6, "0")
    if -5 < exponent < 0:
        text = "0." + "0" * (-exponent - 1) + text
    elif 0 <= exponent < 6:
        text = text[:exponent + 1] + "." + text[exponent + 1:]
    else:
        text = text[0] + "." + text[1:]
    text = text.rstrip("0").rstrip(".")
    if not -5 < exponent < 6:
        text += f"e{'-' if exponent < 0 else '+'}{abs(exponent):02}"
    return ("-" if sign else "") + text


def trimmed(text):
    """Without white space around it, and with the usual sign for a minus sign of typography."""
    return text.strip().replace("\u2212", "-")


def to_real(text):
    """What a text reads as; 0 if it is no number."""
    text = trimmed(text)
    if text.lower() in ("inf", "+inf", "-inf", "nan"):
        return float(text)
    return float(text) if _DECIMAL.fullmatch(text) else 0.0


def to_int(text):
    """What a text reads as in decimal; 0 if it is no int of 32 bits."""
    text = trimmed(text)
    if not re.fullmatch(r"[+-]?\d+", text, re.ASCII):
        return 0
    return int(text) if INT_MIN <= int(text) <= INT_MAX else 0
