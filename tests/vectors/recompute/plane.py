# SPDX-License-Identifier: MIT
"""Plane geometry, from the comments of kpmath.h. Points are (x, y), y grows downwards."""
import math

from reals import divided, lesser, or_nan, single, truncated
from registry import gives

DEGREES = 57.29577951308232
PI = 3.141592653589793


def minus(a, b):
    return a[0] - b[0], a[1] - b[1]


def dot(u, w):
    return u[0] * w[0] + u[1] * w[1]


def length(v):
    return math.sqrt(dot(v, v))


@gives("KpMath::kpIsUnitVector(QPointF)")
def is_unit_vector(v):
    return abs(1.0 - length(v)) < 0.0001


@gives("KpMath::kpUnitVector(QPointF)")
def unit_vector(v):
    size = length(v)
    if size == 0.0 or math.isnan(size):
        return v
    return [v[0] / size, v[1] / size]


@gives("KpMath::kpDeterminate(double*, double*, double*)")
def determinate(r0, r1, r2):
    return (r0[0] * r1[1] * r2[2] + r1[0] * r2[1] * r0[2] + r2[0] * r0[1] * r1[2]
            - r0[2] * r1[1] * r2[0] - r1[2] * r2[1] * r0[0] - r0[1] * r2[2] * r1[0])


@gives("KpMath::kpAtan(QPointF, QPointF)")
def atan(a, b):
    dx, dy = minus(a, b)
    radians = math.atan(divided(dy, dx))
    if b[0] > a[0]:
        radians += PI
    if radians > PI:
        radians -= 2 * PI
    return radians * DEGREES


@gives("KpMath::kpAtan2(QPointF, QPointF)")
def atan2(a, b):
    dx, dy = minus(a, b)
    if -0.1 < dx < 0.1:
        if abs(dy) > abs(dx):
            return 270.0 if a[1] < b[1] else 90.0
        radians = 0.0
    else:
        radians = math.atan(divided(dy, dx))
    if b[0] > a[0]:
        radians += PI
    if radians < 0:
        radians += 2 * PI
    return radians * DEGREES


@gives("KpMath::kpLineSide(QPointF, QPointF, QPointF)")
def line_side(p, a, b):
    area = (p[0] - b[0]) * (a[1] - b[1]) - (p[1] - b[1]) * (a[0] - b[0])
    if abs(area) < 1:
        if b[0] < a[0]:
            return 4
        return 4 if p[0] < b[0] else 3
    return 1 if area > 0 else 2


@gives("KpMath::kpProjection(QPointF const&, QPointF const&, QPointF const&)")
def projection(a, p, b):
    u = minus(b, a)
    t = divided(dot(minus(p, a), u), dot(u, u))
    return [a[0] + t * u[0], a[1] + t * u[1]]


@gives("KpMath::kpVectorDir(QPointF const&, QPointF const&, QPointF const&, double)")
def vector_dir(o, a, b, eps):
    cross = (a[0] - o[0]) * (b[1] - o[1]) - (b[0] - o[0]) * (a[1] - o[1])
    return -1 if cross < -eps else int(cross > eps)


@gives("KpMath::kpOrtTurnOrder(QPointF const&, QPointF const&, QPointF const&)")
def turn_order(o, a, b):
    direction = vector_dir(o, a, b, 0.0)
    if direction:
        return 1 if direction > 0 else 2
    axis = 1 if a[0] == b[0] else 0
    from_o, at_a, to_b = o[axis], a[axis], b[axis]
    is_greatest = at_a > from_o and at_a > to_b
    is_least = from_o > at_a and to_b > at_a
    return 0 if is_greatest or is_least else 3


@gives("KpMath::kpDegree(QPointF, QPointF, QPointF)")
def degree(a, o, b):
    u = (a[0] - o[0], o[1] - a[1])
    w = (b[0] - o[0], o[1] - b[1])
    radians = or_nan(math.acos, divided(dot(u, w), math.sqrt(dot(u, u) * dot(w, w))))
    return (-radians if line_side(o, a, b) == 2 else radians) * DEGREES


@gives("KpMath::kpNormalizeRect(QPointF, QPointF)")
def normalize_rect(p1, p2):
    sides = []
    corner = [lesser(p1[axis], p2[axis]) for axis in (0, 1)]
    for axis in (0, 1):
        side = abs(p1[axis] - p2[axis])
        sides.append(side if side != 0 else (0.5 + corner[axis]) - corner[axis])
    return corner + sides


@gives("KpMath::kpEllipsePoint(QRectF, double)")
def ellipse_point(rect, angle):
    x, y, w, h = rect
    half_w = 0.5 * w
    half_h = 0.05 if h < 0.1 else 0.5 * h
    h = 0.1 if h < 0.1 else h
    if abs(angle) > 360:
        angle -= 360 * truncated(angle / 360)
    if angle < -180:
        angle += 360
    if angle > 180:
        angle -= 360
    direction = PI * angle / 180
    t = math.atan(or_nan(math.tan, direction) * w / h)
    if direction < 0 < t:
        t -= PI
    elif t < 0 < direction:
        t += PI
    return [x + half_w + half_w * math.cos(t), y + half_h + half_h * math.sin(t)]


@gives("KpMath::kpUprightPoint(QPointF, QPointF, QPointF)")
def upright_point(a, b, p):
    if abs(a[0] - b[0]) < 0.001:
        return [(a[0] + b[0]) * 0.5, p[1]]
    if abs(a[1] - b[1]) < 0.001:
        return [p[0], (a[1] + b[1]) * 0.5]
    k = divided(a[1] - b[1], a[0] - b[0])
    x = single(divided(k * b[0] - b[1] + divided(p[0], k) + p[1], divided(1.0, k) + k))
    return [x, single(divided(p[0] - x, k) + p[1])]


def crossing(a1, a2, b1, b2):
    """Both directions, the way between the starts, their cross product and whether they cross."""
    d1, d2, w = minus(a2, a1), minus(b2, b1), minus(b1, a1)
    cross = d1[0] * d2[1] - d1[1] * d2[0]
    limit = 1e-8 * dot(d1, d1) * dot(d2, d2)
    return d1, d2, w, cross, limit


def along(a1, d1, s):
    return [a1[0] + s * d1[0], a1[1] + s * d1[1]]


@gives("KpMath::kpCrossPoint(QPointF, QPointF, QPointF, QPointF, QPointF&)")
def cross_point(a1, a2, b1, b2, out):
    d1, d2, w, cross, limit = crossing(a1, a2, b1, b2)
    if cross * cross > limit:
        return {"result": 1, "out": along(a1, d1, (d2[1] * w[0] - d2[0] * w[1]) / cross)}
    apart = d1[1] * w[0] - d1[0] * w[1]
    is_apart = apart * apart > 1e-6 * dot(d1, d1) * dot(w, w)
    return {"result": 2 if is_apart else 0, "out": out}


@gives("KpMath::kpCrossPoint3(QPointF, QPointF, QPointF, QPointF, QPointF&, double)")
def cross_point_within(a1, a2, b1, b2, out, margin):
    d1, d2, w, cross, limit = crossing(a1, a2, b1, b2)
    outside = {"result": 0, "out": out}
    if cross * cross <= limit:
        return outside
    s = divided(d2[1] * w[0] - d2[0] * w[1], cross)
    t = divided(w[0] * d1[1] - w[1] * d1[0], cross)
    for position, direction in ((s, d1), (t, d2)):
        end = divided(margin, length(direction))
        if position < end or position > 1 - end:
            return outside
    return {"result": 1, "out": along(a1, d1, s)}
