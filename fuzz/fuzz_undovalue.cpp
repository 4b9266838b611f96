// SPDX-License-Identifier: MIT
// Any numbers as an undo record. They are read as a plain model reads them, into a new outline and
// into one that holds something. What is read must survive being recorded and read again, alone and
// behind other records; a change that is undone and done again by records leaves what was there; the
// positions must stay inside the vectors.

#include "fuzzing.h"
#include "kpcolor.h"
#include "outlinevalue.h"

using Fuzzing::require;
using OutlineValue::Outline;
using OutlineValue::Segment;

namespace {

struct Record
{
    QVector<int> ints;
    QVector<double> doubles;

    bool operator==(Record const& other) const
    {
        return ints == other.ints && doubles.size() == other.doubles.size()
            && std::memcmp(doubles.constData(), other.doubles.constData(),
                   static_cast<std::size_t>(doubles.size()) * sizeof(double))
            == 0;
    }
};

Record record(KpPathSegList& list)
{
    Record result;
    list.toUndoValue(result.ints, result.doubles);
    return result;
}

/** Where a record is read. */
struct Place
{
    int ints;
    int doubles;
};

/** Makes an outline what a record holds, as the application undoes: its flags stay till then. */
void restore(KpPathSegList& list, Record& from, Place& place, int segmentCount)
{
    list.removeAll(true);
    list.fromUndoValue(from.ints, from.doubles, place.ints, place.doubles, segmentCount);
}

/** Mostly small numbers, so that types and bases are hit often. */
Record anyRecord(FuzzedDataProvider& input)
{
    Record result;
    while (input.remaining_bytes() > 0) {
        bool const isSmall = input.ConsumeIntegralInRange(0, 15) != 0;
        result.ints.append(isSmall ? input.ConsumeIntegral<qint8>() : input.ConsumeIntegral<int>());
        int const reals = input.ConsumeIntegralInRange(0, 2);
        for (int i = 0; i < reals; ++i)
            result.doubles.append(Fuzzing::awkwardReal(input));
    }
    return result;
}

template <class Entry> bool holds(QVector<Entry> const& entries, int position, int count)
{
    return position >= 0 && position + count <= entries.size();
}

/** How many reals the record of a segment has; none if there is no segment of that type. */
int realCount(int type)
{
    switch (type) {
    case KpPathSeg::SegMoveTo:
    case KpPathSeg::SegLineTo:
        return 2;
    case KpPathSeg::SegCurveTo:
        return 6;
    case KpPathSeg::SegEllipse:
        return 4;
    default:
        return 0;
    }
}

/** What reading a record makes of `outline`. The first segment that is not there whole ends it. */
void readRecord(Record const& record, Place& place, int segmentCount, Outline& outline)
{
    if (!holds(record.ints, place.ints, 3))
        return;
    for (bool* const flag : {&outline.closed, &outline.noFill, &outline.noLine})
        *flag = record.ints.at(place.ints++) == 1;
    for (int i = 0; i < segmentCount && holds(record.ints, place.ints, 1); ++i) {
        int const reals = realCount(record.ints.at(place.ints));
        if (reals > 0
            && !(holds(record.ints, place.ints, 1 + reals)
                && holds(record.doubles, place.doubles, 2 * reals)))
            return;
        Segment segment {record.ints.at(place.ints++), {}};
        for (int j = 0; j < reals; ++j) {
            double const value = record.doubles.at(place.doubles++);
            double const rate = record.doubles.at(place.doubles++);
            segment.reals.push_back(
                {static_cast<std::int16_t>(record.ints.at(place.ints++)), rate, value});
        }
        if (reals > 0)
            outline.segments.push_back(segment);
    }
}

void checkReading(Record& input, Place const& place, int segmentCount)
{
    for (bool const isChanged : {false, true}) {
        KpPathSegList list;
        if (isChanged) {
            list.closed = list.noFill = list.noLine = true;
            list.lineTo({7.0, 8.0});
        }
        Outline expected = OutlineValue::of(list);
        Place end = place;
        readRecord(input, end, segmentCount, expected);
        Place position = place;
        list.fromUndoValue(
            input.ints, input.doubles, position.ints, position.doubles, segmentCount);
        require(areSame(OutlineValue::of(list), expected), "a record is read as modelled");
        require(position.ints == end.ints && position.doubles == end.doubles, "as far as modelled");
    }
}

void checkPoint(Record const& input, Place const& place)
{
    int ints = place.ints;
    int doubles = place.doubles;
    KpPoint point;
    point.fromUndoValue(input.ints, input.doubles, ints, doubles);
    require(ints == place.ints + 2 && doubles == place.doubles + 4, "a point moves both positions");
    KpReal const* const reals[] = {&point.x, &point.y};
    for (int i = 0; i < 2; ++i) {
        require(reals[i]->base == static_cast<qint16>(input.ints.value(place.ints + i))
                && Fuzzing::areSameBits(reals[i]->value, input.doubles.value(place.doubles + 2 * i))
                && Fuzzing::areSameBits(
                    reals[i]->rate, input.doubles.value(place.doubles + 2 * i + 1)),
            "a point is what the record holds, or 0 outside of it");
    }
}

void checkColour(Record& input, int place)
{
    KpColor colour(QColor(1, 2, 3, 4));
    int index = place;
    colour.fromUndoValue(input.ints, index);
    require(index == place + 4, "a colour moves the position");
    QVector<int> first;
    colour.toUndoValue(first);
    KpColor again;
    index = 0;
    again.fromUndoValue(first, index);
    QVector<int> second;
    again.toUndoValue(second);
    require(first == second && first.size() == 4, "a colour survives its record");
    for (int i = 0; i < 4; ++i) {
        int const held = input.ints.value(place + i);
        require(first.at(i) == (i < 2 ? static_cast<qint16>(held) : held),
            "a colour is what the record holds, or 0 outside of it");
    }
}

/** Changes an outline as an editor does, and undoes and repeats that, with all in one record. */
void checkUndo(KpPathSegList& list, FuzzedDataProvider& change)
{
    Record const before = record(list);
    Outline const outlineBefore = OutlineValue::of(list);
    int const countBefore = list.segs.count();
    Record history = before;
    double const width = Fuzzing::awkwardReal(change);
    list.updateValue(width, Fuzzing::awkwardReal(change));
    list.removeAt(change.ConsumeIntegralInRange(0, 3), true);
    list.lineTo({width, 1.0});
    list.closed = !list.closed;
    list.noFill = change.ConsumeBool();
    list.noLine = change.ConsumeBool();
    list.toUndoValue(history.ints, history.doubles);
    Record const after = record(list);
    Outline const outlineAfter = OutlineValue::of(list);
    int const countAfter = list.segs.count();

    Place place {0, 0};
    restore(list, history, place, countBefore);
    require(record(list) == before && areSame(OutlineValue::of(list), outlineBefore),
        "what is undone is as before");
    restore(list, history, place, countAfter);
    require(record(list) == after && areSame(OutlineValue::of(list), outlineAfter),
        "what is done again is as after");
    require(place.ints == history.ints.size() && place.doubles == history.doubles.size(),
        "records stand one behind the other");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    FuzzedDataProvider values(data, size);
    Place place {values.ConsumeIntegralInRange(-3, 6), values.ConsumeIntegralInRange(-3, 6)};
    int const segmentCount = values.ConsumeBool() ? values.ConsumeIntegralInRange(-1, 40)
                                                  : values.ConsumeIntegral<int>();
    Record input = anyRecord(values);
    checkPoint(input, place);
    checkColour(input, place.ints);
    checkReading(input, place, segmentCount);

    KpPathSegList list;
    list.fromUndoValue(input.ints, input.doubles, place.ints, place.doubles, segmentCount);
    require(
        place.ints <= input.ints.size() || list.segs.isEmpty(), "nothing is read behind the end");
    Record const first = record(list);
    KpPathSegList again;
    Record copy = first;
    Place start {0, 0};
    restore(again, copy, start, list.segs.count());
    require(record(again) == first, "what is read survives its record");
    require(start.ints == copy.ints.size() && start.doubles == copy.doubles.size(),
        "and all of it is read");
    FuzzedDataProvider change(data, size);
    checkUndo(list, change);
    return 0;
}
