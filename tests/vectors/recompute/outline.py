# SPDX-License-Identifier: MIT
"""Bound reals, segments and outlines, from docs/outlines.md and the headers.

As in the vectors, a real is [base, rate, value], a segment [type, real...] in the order of its undo
record, an outline a dict, and a path a list of [type, x, y].
"""
import copy
from fractions import Fraction

from reals import lesser, sixteen_bits
from registry import gives

MOVE, LINE, CURVE, ELLIPSE = 2, 3, 4, 5
REALS = {MOVE: 2, LINE: 2, CURVE: 6, ELLIPSE: 4}
BASE, RATE, VALUE = range(3)
CLOSE = 4


def update_value(real, width, height):
    base, rate, value = real
    side = lesser(width, height)
    values = {1: rate * width, 2: rate * height, 3: width - rate, 4: height - rate, 5: side * rate,
              6: width - side * rate, 7: height - side * rate}
    return [base, rate, values.get(base, value)]


def update_rate(real, width, height):
    base, rate, value = real
    side = {1: width, 2: height}.get(base, 0.0)
    return [base, value / side if side > 0.001 else rate, value]


def at(x, y):
    """A point bound in proportion to the box."""
    return [[1, 0.0, x], [2, 0.0, y]]


def on_segment(change):
    """The change of a real, of all reals of a segment."""
    return lambda segment, *box: [segment[0]] + [change(real, *box) for real in segment[1:]]


def moved(real, value):
    return real[:VALUE] + [value]


def mapped(segment, function):
    """The segment with each of its points, but no radius, at the place that `function` gives."""
    points = 1 if segment[0] == ELLIPSE else len(segment) // 2
    result = list(segment)
    for i in range(1, 2 * points, 2):
        x, y = function(segment[i][VALUE], segment[i + 1][VALUE])
        result[i:i + 2] = moved(segment[i], x), moved(segment[i + 1], y)
    return result


def translated(segment, dx, dy):
    return mapped(segment, lambda x, y: (x + dx, y + dy))


def transformed(segment, matrix):
    m11, m12, m21, m22, dx, dy = matrix
    return mapped(segment, lambda x, y: (m11 * x + m21 * y + dx, m12 * x + m22 * y + dy))


def cloned(segment):
    """Radii take the rules 1 and 2."""
    if segment[0] != ELLIPSE:
        return segment
    return segment[:3] + [[1] + segment[3][RATE:], [2] + segment[4][RATE:]]


QUARTER = 0.55228474983079340


def ellipse_elements(x, y, w, h):
    a, b = w / 2, h / 2
    cx, cy = x + a, y + b
    ka, kb = a * QUARTER, b * QUARTER
    right, low, left, top = (cx + a, cy), (cx, cy + b), (cx - a, cy), (cx, cy - b)
    points = [(0, right), (2, (cx + a, cy + kb)), (3, (cx + ka, cy + b)), (3, low),
              (2, (cx - ka, cy + b)), (3, (cx - a, cy + kb)), (3, left),
              (2, (cx - a, cy - kb)), (3, (cx - ka, cy - b)), (3, top),
              (2, (cx + ka, cy - b)), (3, (cx + a, cy - kb)), (3, right), (CLOSE, right)]
    return [[kind, px, py] for kind, (px, py) in points]


def drawn(segment, path):
    """The path with the segment's elements."""
    kind = segment[0]
    values = [real[VALUE] for real in segment[1:]]
    x, y = values[:2]
    if kind == MOVE:
        return path + [[0, x, y]]
    if kind == LINE:
        is_short = path and abs(x - path[-1][1]) < 1 and abs(y - path[-1][2]) < 1
        return path if is_short else path + [[1, x, y]]
    if kind == CURVE:
        return path + [[2] + values[2:4], [3] + values[4:6], [3, x, y]]
    a, b = values[2:]
    return path + ellipse_elements(x - a, y - b, 2 * a, 2 * b)


def closed_path(path):
    starts = [element for element in path if element[0] == 0] or path[:1] or [[0, 0.0, 0.0]]
    return path + [[CLOSE] + starts[-1][1:]]


def path_of(outline, path):
    for segment in outline["segments"]:
        path = drawn(segment, path)
    return closed_path(path) if outline["closed"] else path


def is_clockwise(path):
    """By the exact area of the polygon through all points."""
    points = [(Fraction(x), Fraction(y)) for _, x, y in path]
    return sum(x1 * y2 - x2 * y1
               for (x1, y1), (x2, y2) in zip(points[-1:] + points, points)) > 0


# Reals and points

@gives("KpReal::KpReal()")
def default_real():
    return {"real": [0, 0.0, 0.0]}


@gives("KpReal::KpReal(qint16, double, double)")
def real_of(rule, parameter, current):
    return {"real": [rule, parameter, current]}


@gives("KpReal::updateValue(double, double)")
def real_value(real, width, height):
    return {"real": update_value(real, width, height)}


@gives("KpReal::updateRate(double, double)")
def real_rate(real, width, height):
    return {"real": update_rate(real, width, height)}


@gives("KpBound::absolute(double)")
def absolute(value):
    return {"real": [0, 0.0, value]}


for rule, name in enumerate(("partOfWidth", "partOfHeight", "fromRight", "fromBottom", "partOfSide",
                             "fromRightPartOfSide", "fromBottomPartOfSide"), 1):
    argument = "distance" if rule in (3, 4) else "rate"
    gives(f"KpBound::{name}(double)")(
        lambda rule=rule, argument=argument, **inputs: {"real": [rule, inputs[argument], 0.0]})


@gives("KpPoint::KpPoint()")
def default_point():
    return {"point": [[0, 0.0, 0.0], [0, 0.0, 0.0]]}


@gives("KpPoint::KpPoint(KpReal const&, KpReal const&)",
       "KpBound::point(KpReal const&, KpReal const&)")
def point_of(x, y):
    return {"point": [x, y]}


@gives("KpPoint::updateValue(double, double)")
def point_value(point, width, height):
    return {"point": [update_value(real, width, height) for real in point]}


@gives("KpPoint::updateRate(double, double)")
def point_rate(point, width, height):
    return {"point": [update_rate(real, width, height) for real in point]}


def entry(entries, position, default):
    return entries[position] if 0 <= position < len(entries) else default


@gives("KpPoint::fromUndoValue(QVector<int>, QVector<double>, int&, int&)")
def point_of_record(ints, doubles, intPos, doublePos):
    reals = [[sixteen_bits(entry(ints, intPos + i, 0)), entry(doubles, doublePos + 2 * i + 1, 0.0),
              entry(doubles, doublePos + 2 * i, 0.0)] for i in (0, 1)]
    return {"point": reals, "intPos": intPos + 2, "doublePos": doublePos + 4}


# Segments

CLASSES = {MOVE: "KpPathSegMoveTo", LINE: "KpPathSegLineTo", CURVE: "KpPathSegCurveTo",
           ELLIPSE: "KpPathSegEllipse"}

for kind in (MOVE, LINE):
    gives(f"{CLASSES[kind]}::{CLASSES[kind]}(QPointF const&, KpPathSegList*)")(
        lambda point, kind=kind: {"segment": [kind] + at(*point)})
    gives(f"{CLASSES[kind]}::{CLASSES[kind]}(KpPoint const&, KpPathSegList*)")(
        lambda point, kind=kind: {"segment": [kind] + point})


@gives("KpPathSegCurveTo::KpPathSegCurveTo"
       "(QPointF const&, QPointF const&, QPointF const&, KpPathSegList*)")
def curve_at(control1, control2, end):
    return {"segment": [CURVE] + at(*end) + at(*control1) + at(*control2)}


@gives("KpPathSegCurveTo::KpPathSegCurveTo"
       "(KpPoint const&, KpPoint const&, KpPoint const&, KpPathSegList*)")
def curve_of(control1, control2, end):
    return {"segment": [CURVE] + end + control1 + control2}


@gives("KpPathSegEllipse::KpPathSegEllipse(QPointF const&, double, double, KpPathSegList*)")
def ellipse_at(centre, horizontalRadius, verticalRadius):
    return {"segment": [ELLIPSE] + at(*centre) + at(horizontalRadius, verticalRadius)}


@gives("KpPathSegEllipse::KpPathSegEllipse"
       "(KpPoint const&, KpReal const&, KpReal const&, KpPathSegList*)")
def ellipse_of(centre, horizontalRadius, verticalRadius):
    return {"segment": cloned([ELLIPSE] + centre + [horizontalRadius, verticalRadius])}


@gives(*(f"{owner}::clone()" for owner in CLASSES.values()))
def clone(segment):
    return {"clone": cloned(segment)}


@gives(*(f"{owner}::addToPath(KpPath&)" for owner in CLASSES.values()))
def add_to_path(segment, path):
    return {"path": drawn(segment, path)}


@gives("KpPathSeg::toCurveTo()", "KpPathSegCurveTo::toCurveTo()")
def to_curve(segment):
    return {"isItself": segment[0] == CURVE}


@gives("KpPathSeg::toEllipse()", "KpPathSegEllipse::toEllipse()")
def to_ellipse(segment):
    return {"isItself": segment[0] == ELLIPSE}


def on_copies(change, *owners):
    """Registers a change of a segment for its classes and of all segments for the list."""
    signature = change.__doc__
    gives(*(f"{owner}::{signature}" for owner in owners))(
        lambda segment, **inputs: {"segment": change(segment, **inputs)})
    gives(f"KpPathSegList::{signature}")(
        lambda outline, **inputs: {"outline": {**outline, "segments": [
            change(segment, **inputs) for segment in outline["segments"]]}})


def segment_value(segment, width, height):
    """updateValue(double, double)"""
    return on_segment(update_value)(segment, width, height)


def segment_rate(segment, width, height):
    """updateRate(double, double)"""
    return on_segment(update_rate)(segment, width, height)


def segment_translated(segment, dx, dy):
    """translate(double, double)"""
    return translated(segment, dx, dy)


def segment_transformed(segment, matrix):
    """applyTransform(QMatrix)"""
    return transformed(segment, matrix)


on_copies(segment_value, "KpPathSeg", CLASSES[CURVE], CLASSES[ELLIPSE])
on_copies(segment_rate, "KpPathSeg", CLASSES[CURVE], CLASSES[ELLIPSE])
on_copies(segment_translated, "KpPathSeg", CLASSES[CURVE])
on_copies(segment_transformed, "KpPathSeg", CLASSES[CURVE])


def previous(outline, index):
    """The index of the segment before; -1 if there is none."""
    if index > 0:
        return index - 1
    return len(outline["segments"]) - 1 if outline["closed"] else -1


def start_index(outline, index):
    is_move = outline["segments"][index][0] == MOVE
    return index if is_move else previous(outline, index)


@gives("KpPathSeg::startPt()", "KpPathSegMoveTo::startPt()")
def start(outline, index):
    place = start_index(outline, index)
    if place < 0:
        return [0.0, 0.0]
    return [real[VALUE] for real in outline["segments"][place][1:3]]


@gives("KpPathSeg::setStartPt(QPointF)", "KpPathSegMoveTo::setStartPt(QPointF)")
def set_start(outline, index, point):
    place = start_index(outline, index)
    result = copy.deepcopy(outline)
    if place >= 0:
        for real, value in zip(result["segments"][place][1:3], point):
            real[VALUE] = value
    return {"outline": result}


@gives("KpPathSeg::isLastSeg()")
def is_last(outline, index):
    return index == len(outline["segments"]) - 1
