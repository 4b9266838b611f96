// SPDX-License-Identifier: MIT
#include "document/outlinerecord.h"

#include <cstring>

bool operator==(OutlineRecord const& left, OutlineRecord const& right)
{
    auto const count = static_cast<std::size_t>(left.doubles.size());
    return left.segmentCount == right.segmentCount && left.ints == right.ints
        && left.doubles.size() == right.doubles.size()
        && (count == 0
            || std::memcmp(
                   left.doubles.constData(), right.doubles.constData(), count * sizeof(double))
                == 0);
}

OutlineRecord recordOf(KpPathSegList& list)
{
    OutlineRecord record;
    list.toUndoValue(record.ints, record.doubles);
    // Steps of undo keep many of them.
    record.ints.squeeze();
    record.doubles.squeeze();
    record.segmentCount = list.segs.count();
    return record;
}

std::unique_ptr<KpPathSegList> outlineOf(OutlineRecord const& record)
{
    // The library takes vectors that it might change; shared ones are not copied for that.
    QVector<int> ints = record.ints;
    QVector<double> doubles = record.doubles;
    int intPos = 0;
    int doublePos = 0;
    auto list = std::make_unique<KpPathSegList>();
    list->fromUndoValue(ints, doubles, intPos, doublePos, record.segmentCount);
    return list;
}
