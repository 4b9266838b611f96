// SPDX-License-Identifier: MIT
#include "model/operationtables.h"

namespace {

bool always(OperationTarget const&)
{
    return true;
}

template <bool KpPathSegList::*Flag> void toggle(OperationTarget& target)
{
    bool& flag = (*target.shape.list).*Flag;
    flag = !flag;
}

template <bool KpPathSegList::*Flag> bool isOn(OperationTarget const& target)
{
    return (*target.shape.list).*Flag;
}

template <bool KpPathSegList::*Flag>
Operation flagOperation(char const* id, char const* text, char const* step, char const* shortcut)
{
    return {id, text, step, shortcut, OperationMenu::Shape, always, toggle<Flag>, isOn<Flag>};
}

} // namespace

std::vector<Operation> shapeOperations()
{
    return {
        flagOperation<&KpPathSegList::closed>(
            "closed", "&Closed", "Close or open outline", "Shift+O"),
        flagOperation<&KpPathSegList::noFill>("no-fill", "No &Fill", "Change fill flag", "Shift+F"),
        flagOperation<&KpPathSegList::noLine>("no-line", "No &Line", "Change line flag", "Shift+N"),
    };
}
