// SPDX-License-Identifier: MIT
#ifndef UNITREWRITER_H
#define UNITREWRITER_H

#include "files/unitcutter.h"
#include "model/shapeitem.h"

/** A unit as it was read. */
struct SourceUnit
{
    Unit unit; ///< its places in the text
    ItemPointer item; ///< what was read from it; never null
    bool isBoxNamed; ///< whether the element around it tells a box; if not, the item's is made up
};

/**
 * The text of a unit with another content.
 *
 * Of what was there all stays to the byte that means the same or that readers ignore: attributes,
 * elements, comments, white space, the spelling of numbers. Segments that are still there keep their
 * elements with all within; new ones are written behind those before them. An element around the
 * outline is given a box if the outline changes: what its rules go by must not be lost.
 *
 * For a bare unit there is no place for a name, a box and a fill rule; see hasPlace().
 */
QByteArray rewrittenUnit(QByteArray const& text, SourceUnit const& source, ShapeItem const& item);

/** The text of an item that was in no file, an element `Shape`. @param lineStart as writtenPiece() */
QByteArray newUnit(ShapeItem const& item, QByteArray const& lineStart);

/** Likewise around a text that is its Geometry already; the item's outline is not looked at. */
QByteArray newUnitAround(
    QByteArray const& geometry, ShapeItem const& item, QByteArray const& lineStart);

/** Whether both have the same name, box and fill rule. */
bool hasSameSurroundings(ShapeItem const& left, ShapeItem const& right);

#endif // UNITREWRITER_H
