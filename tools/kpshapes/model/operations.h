// SPDX-License-Identifier: MIT
#ifndef OPERATIONS_H
#define OPERATIONS_H

#include "model/handle.h"
#include "model/handledrag.h"
#include "model/shapeitem.h"

#include <QVector>

#include <vector>

/** What an operation changes: the shape, and the handles that are selected. */
struct OperationTarget
{
    WorkingShape& shape; ///< its list, flags, box
    QVector<HandleId>
        handles; ///< sorted, none twice; an operation leaves those to be selected then
};

/** The menu that an operation stands in. */
enum class OperationMenu {
    Point, ///< what is done to points
    Segment, ///< what is done to lines, curves and subpaths
    Shape, ///< what is done to the whole outline
    Select, ///< which handles are selected; nothing of it can be undone
    Align ///< where points stand beside each other
};

/** Something that menus offer to do with what is selected. */
struct Operation
{
    char const* id; ///< its name in settings and tests: "insert-point"
    char const* text; ///< in the menu, in title case, with its mnemonic: "&Insert Point"
    char const* step; ///< the text of its step of undo: "Insert point"; empty: it changes the
        ///< selected handles only, and there is no step
    char const* shortcut; ///< as QKeySequence has it, or empty
    OperationMenu menu; ///< where it stands
    bool (*isPossible)(OperationTarget const&); ///< whether it would change anything
    void (*run)(OperationTarget&); ///< does it; without any effect if it is not possible
    bool (*isOn)(OperationTarget const&) = nullptr; ///< whether its check mark is set; null for one
        ///< without
};

/** All of them, in the order of the menus. */
std::vector<Operation> const& operations();

/** The operation with this id, or null. */
Operation const* operationOf(QString const& id);

/**
 * Changes the box: every coordinate follows its rule.
 *
 * @param box sides below 1 become 1, above a million a million
 */
void resizeBox(WorkingShape& shape, QSizeF const& box);

#endif // OPERATIONS_H
