// SPDX-License-Identifier: MIT
#ifndef APPEARANCE_H
#define APPEARANCE_H

#include "kpcolor.h"

#include <QPointF>
#include <QString>
#include <QVector>

#include <optional>

/** One named transform of a colour, see ColorUtil::getColorFunc(). */
struct ColourTransform
{
    QString name; ///< case-sensitive; an unknown one changes nothing
    double value; ///< what the transform takes: 1 is 100 %, or a full channel
};

/** A colour of a shape: a document colour and what is done to it then. */
struct ShapeColour
{
    KpColor colour; ///< from a slot of the theme, or plain
    QVector<ColourTransform> transforms; ///< applied in their order

    /** The colour behind each step: the document colour first, then one for each transform. */
    QVector<QColor> steps() const;
    /** The last of the steps: what is drawn. */
    QColor shown() const { return steps().constLast(); }
};

/** The shadow of a shape, see GaussianBlur::blurBitmap(). */
struct ShapeShadow
{
    unsigned int radius = 6; ///< in the outline's units, 0 to 254
    unsigned int flatness = 0; ///< of the kernel
    QPointF offset {4.0, 4.0}; ///< to the right and downwards, in the outline's units
    QColor colour {0, 0, 0, 128}; ///< with its alpha
};

/** How a shape looks: what stands beside its outline in a document. */
struct Appearance
{
    QString theme; ///< the name of the theme that the colours are of, or empty
    std::optional<ShapeColour> fill; ///< none: the usual one
    std::optional<ShapeColour> line; ///< none: the usual one
    std::optional<ShapeShadow> shadow; ///< none: no shadow

    /** Whether it says nothing. */
    bool isEmpty() const { return theme.isEmpty() && !fill && !line && !shadow; }
};

/** Equal in every field; the values of transforms and lengths exactly. */
bool operator==(Appearance const& left, Appearance const& right);

#endif // APPEARANCE_H
