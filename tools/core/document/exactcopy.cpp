#include "document/exactcopy.h"

std::unique_ptr<KpPathSegList> exactCopy(KpPathSegList& list)
{
    QVector<int> ints;
    QVector<double> doubles;
    list.toUndoValue(ints, doubles);
    int intPos = 0;
    int doublePos = 0;
    auto copy = std::make_unique<KpPathSegList>();
    copy->fromUndoValue(ints, doubles, intPos, doublePos, list.segs.count());
    return copy;
}
