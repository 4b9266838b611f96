// SPDX-License-Identifier: MIT
#include "kppoint.h"

#include "undoreal_p.h"

void KpPoint::fromUndoValue(QVector<int> ints, QVector<double> doubles, int& intPos, int& doublePos)
{
    x = UndoValue::takeReal(ints, doubles, intPos, doublePos);
    y = UndoValue::takeReal(ints, doubles, intPos, doublePos);
}
