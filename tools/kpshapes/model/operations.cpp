// SPDX-License-Identifier: MIT
#include "model/operations.h"

#include "document/shapebox.h"
#include "model/operationtables.h"

std::vector<Operation> const& operations()
{
    static std::vector<Operation> const all = [] {
        std::vector<Operation> collected;
        for (auto const& table : {pointOperations(), nodeOperations(), segmentOperations(),
                 shapeOperations(), selectOperations(), alignOperations()})
            collected.insert(collected.end(), table.cbegin(), table.cend());
        return collected;
    }();
    return all;
}

Operation const* operationOf(QString const& id)
{
    for (Operation const& operation : operations()) {
        if (id == QLatin1String(operation.id))
            return &operation;
    }
    return nullptr;
}

void resizeBox(WorkingShape& shape, QSizeF const& box)
{
    auto const side = [](double length) { return qBound(1.0, length, greatestBoxSide); };
    shape.box = {side(box.width()), side(box.height())};
    shape.list->updateValue(shape.box.width(), shape.box.height());
}
