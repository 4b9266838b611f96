// SPDX-License-Identifier: MIT
#ifndef HANDLENAME_H
#define HANDLENAME_H

#include "model/handle.h"

#include <QString>

/** Which of the two coordinates of a point. */
enum class Axis {
    X, ///< to the right
    Y ///< downwards
};

/** Where a coordinate is by its rule: "x 50 % of the width", "y 12 above the lower edge". */
QString coordinateText(KpReal const& real, Axis axis);

/**
 * What a handle is called where it cannot be seen: "Point 3 of 12, line: x 50 % of the width, y 12
 * above the lower edge". Empty if the outline has no such handle.
 */
QString handleName(KpPathSegList const& list, HandleId id);

#endif // HANDLENAME_H
