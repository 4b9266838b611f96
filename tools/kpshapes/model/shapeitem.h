// SPDX-License-Identifier: MIT
#ifndef SHAPEITEM_H
#define SHAPEITEM_H

#include "document/appearance.h"
#include "document/outlinerecord.h"

#include <QSizeF>
#include <QString>

#include <memory>
#include <optional>

/** One outline of a document with what stands beside it. It never changes: a step makes another. */
struct ShapeItem
{
    QString name; ///< what it is called, or empty
    QSizeF box; ///< that its values are for, in its own units; both sides above 0.001
    std::optional<Qt::FillRule> fillRule; ///< none where both rules fill it alike
    OutlineRecord outline; ///< the outline
    Appearance appearance; ///< how it looks
    int origin = -1; ///< its place in the file that it was read from, from 0; -1 for a new one
};

/** Shared between the document and the steps of undo. Never null. */
using ItemPointer = std::shared_ptr<ShapeItem const>;
/** In the order of a document: the first lies lowest. */
using Items = std::vector<ItemPointer>;

/** Whether they are the same in all but their origin, to the last bit. */
bool haveSameContent(ShapeItem const& left, ShapeItem const& right);

/** The shape that is being edited: an item taken apart, in which everything can be changed. */
struct WorkingShape
{
    QString name; ///< as of ShapeItem
    QSizeF box; ///< as of ShapeItem
    std::optional<Qt::FillRule> fillRule; ///< as of ShapeItem
    std::unique_ptr<KpPathSegList> list; ///< the outline; never null
    Appearance appearance; ///< as of ShapeItem
    int origin = -1; ///< as of ShapeItem
};

/** The shape of an item, to be changed. */
WorkingShape workingShapeOf(ShapeItem const& item);
/** The item of a shape, which stays as it is. */
ShapeItem itemOf(WorkingShape const& shape);

#endif // SHAPEITEM_H
