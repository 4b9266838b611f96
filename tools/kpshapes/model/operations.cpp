#include "model/operations.h"

#include "model/binding.h"

std::vector<Operation> const& operations()
{
    static std::vector<Operation> const all;
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

void moveHandles(WorkingShape& shape, QVector<HandleId> const& handles, QPointF const& by)
{
    for (HandleId const id : handles) {
        auto const handle = handleOf(*shape.list, id);
        if (handle && handle->x)
            moveBound(*handle->x, handle->x->value + by.x(), shape.box);
        if (handle && handle->y)
            moveBound(*handle->y, handle->y->value + by.y(), shape.box);
    }
}

void resizeBox(WorkingShape& shape, QSizeF const& box)
{
    auto const side = [](double length) { return qBound(1.0, length, 1e6); };
    shape.box = {side(box.width()), side(box.height())};
    shape.list->updateValue(shape.box.width(), shape.box.height());
}
