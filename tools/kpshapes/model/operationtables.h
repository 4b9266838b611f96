// SPDX-License-Identifier: MIT
#ifndef OPERATIONTABLES_H
#define OPERATIONTABLES_H

#include "model/operations.h"

/**
 * @file
 * The parts of operations(), each with the functions behind it in a file of its own. Handles that
 * the outline does not have are ignored by all of them.
 */

/** Points come and go: insert, delete, split, join. */
std::vector<Operation> pointOperations();
/** What points are: corner, smooth, symmetric. */
std::vector<Operation> nodeOperations();
/** Lines, curves and subpaths: convert, reverse, duplicate. */
std::vector<Operation> segmentOperations();
/** The flags of the outline. */
std::vector<Operation> shapeOperations();
/** Which handles are selected. */
std::vector<Operation> selectOperations();
/** Points in a row. */
std::vector<Operation> alignOperations();

/** Names the points of these segments. @param segments ascending */
QVector<HandleId> pointHandles(std::vector<int> const& segments);

#endif // OPERATIONTABLES_H
