// SPDX-License-Identifier: MIT
#ifndef KPPOINT_H
#define KPPOINT_H

#include "kpgeometry_export.h"

#include <QVector>
#include <QtGlobal>

/**
 * A real number bound to the reference box of its outline: a current value and the rule that
 * recomputes it when the box gets another size.
 *
 * W and H are the width and the height of the box, M is the smaller of the two; all are in
 * the outline's own units, as `value` is.
 *
 * | `base`              | updateValue: `value` becomes | updateRate: `rate` becomes     |
 * |---------------------|------------------------------|--------------------------------|
 * | Absolute            | unchanged                    | unchanged                      |
 * | PartOfWidth         | rate * W                     | value / W, only if W > 0.001   |
 * | PartOfHeight        | rate * H                     | value / H, only if H > 0.001   |
 * | FromRight           | W - rate                     | unchanged                      |
 * | FromBottom          | H - rate                     | unchanged                      |
 * | PartOfSide          | M * rate                     | unchanged                      |
 * | FromRightPartOfSide | W - M * rate                 | unchanged                      |
 * | FromBottomPartOfSide| H - M * rate                 | unchanged                      |
 * | any other number    | unchanged                    | unchanged                      |
 *
 * That only the two proportional rules take their rate back from the value is deliberate: a
 * corner radius or a margin that was edited by hand returns to its parameter at the next
 * updateValue, and documents rely on it.
 */
struct KpReal
{
    /** The binding rules. `base` may hold any other number too: it is kept and binds nothing. */
    enum Rule : qint16 {
        Absolute = 0,
        PartOfWidth = 1,
        PartOfHeight = 2,
        FromRight = 3,
        FromBottom = 4,
        PartOfSide = 5,
        FromRightPartOfSide = 6,
        FromBottomPartOfSide = 7
    };

    qint16 base; ///< the binding rule
    double rate; ///< the rule's parameter: a ratio or an offset
    double value; ///< the current value, in the outline's units

    /** Absolute, all zero. */
    KpReal() noexcept
        : base(Absolute)
        , rate(0.0)
        , value(0.0)
    {
    }

    /**
     * The three fields, in their order. Nothing is computed: whatever the rule, the value is the
     * one given here until updateValue() with the size of the box.
     */
    KpReal(qint16 rule, double parameter, double current) noexcept
        : base(rule)
        , rate(parameter)
        , value(current)
    {
    }

    /** Recomputes `value` for a box of `width` by `height`. Any numbers are taken as they are. */
    void updateValue(double width, double height) noexcept
    {
        double const side = qMin(width, height);
        switch (base) {
        case PartOfWidth:
            value = rate * width;
            break;
        case PartOfHeight:
            value = rate * height;
            break;
        case FromRight:
            value = width - rate;
            break;
        case FromBottom:
            value = height - rate;
            break;
        case PartOfSide:
            value = side * rate;
            break;
        case FromRightPartOfSide:
            value = width - side * rate;
            break;
        case FromBottomPartOfSide:
            value = height - side * rate;
            break;
        default:
            break;
        }
    }

    /**
     * Takes `value` as the reference for a box of `width` by `height`. A side of 0.001 or
     * less, or NaN, leaves the rate as it was, so a collapsed box never
     * gives an infinite rate.
     */
    void updateRate(double width, double height) noexcept
    {
        double const collapsed = 0.001;
        if (base == PartOfWidth && width > collapsed)
            rate = value / width;
        else if (base == PartOfHeight && height > collapsed)
            rate = value / height;
    }
};

static_assert(sizeof(KpReal) == 24, "the application's layout of a bound real");

Q_DECLARE_TYPEINFO(KpReal, Q_MOVABLE_TYPE);

/** A point of two bound reals. x grows to the right, y grows downwards. */
struct KpPoint
{
    KpReal x; ///< to the right
    KpReal y; ///< downwards

    /** All zero: absolute and at the origin. */
    KpPoint() noexcept = default;

    /** The two coordinates, with all their fields; nothing is computed. */
    KpPoint(KpReal const& horizontal, KpReal const& vertical) noexcept
        : x(horizontal)
        , y(vertical)
    {
    }

    /** KpReal::updateValue of both coordinates. */
    void updateValue(double width, double height) noexcept
    {
        x.updateValue(width, height);
        y.updateValue(width, height);
    }

    /** KpReal::updateRate of both coordinates. */
    void updateRate(double width, double height) noexcept
    {
        x.updateRate(width, height);
        y.updateRate(width, height);
    }

    /**
     * Reads the point back from an undo record: `ints` holds the bases of x and y, `doubles`
     * the value and the rate of x, then those of y.
     *
     * `intPos` advances by 2 and `doublePos` by 4, always; an entry at a position outside its
     * vector reads as 0.
     */
    KPGEOMETRY_EXPORT void fromUndoValue(
        QVector<int> ints, QVector<double> doubles, int& intPos, int& doublePos);
};

static_assert(sizeof(KpPoint) == 48, "the application's layout of a bound point");

Q_DECLARE_TYPEINFO(KpPoint, Q_MOVABLE_TYPE);

#endif // KPPOINT_H
