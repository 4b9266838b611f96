// SPDX-License-Identifier: MIT
#ifndef UNITCUTTER_H
#define UNITCUTTER_H

#include "files/tagscanner.h"

#include <vector>

/**
 * What belongs to one outline in a text: the element around it if that holds no other and is not the
 * root; or else the Geometry alone, with the Appearance that follows directly.
 */
struct Unit
{
    TextRange whole; ///< all of it
    TextRange outline; ///< the Geometry within
    TextRange appearance; ///< the Appearance that follows it; empty if there is none
    TextRange around; ///< the start tag of the element around it all; empty for a root
    bool isBare = true; ///< there is no element around the Geometry that is its own
    int outlineCount = 1; ///< with those inside the Geometry
};

/** A text, cut into the units of its outlines and what stands between. */
struct CutText
{
    std::vector<Unit> units; ///< in the order of the text; none is inside another
    TextRange rootStart; ///< the start tag of the root
    TextRange rootEnd; ///< its end tag; empty for a root that is nothing but one tag
    bool isRootOutline = false; ///< the root itself is a Geometry
    bool hasDocumentType = false; ///< as TagScanner has it
};

/** @param text UTF-8, whose tags TagScanner finds; if it is not well-formed, cut anyhow */
CutText cutIntoUnits(QByteArray const& text);

#endif // UNITCUTTER_H
