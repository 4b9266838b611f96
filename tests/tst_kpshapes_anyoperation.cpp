// SPDX-License-Identifier: MIT
#include "model/nodekind.h"
#include "model/operations.h"
#include "model/outlineedit.h"
#include "model/rules.h"
#include "shapesmodeltesting.h"

#include <map>

using namespace OutlineTesting;
using namespace ShapesModelTesting;

namespace {

void addBits(QByteArray& bits, KpReal const& real)
{
    bits.append(reinterpret_cast<char const*>(&real.base), sizeof real.base);
    bits.append(reinterpret_cast<char const*>(&real.rate), sizeof real.rate);
    bits.append(reinterpret_cast<char const*>(&real.value), sizeof real.value);
}

QByteArray bitsOf(KpPoint const& point)
{
    QByteArray bits;
    addBits(bits, point.x);
    addBits(bits, point.y);
    return bits;
}

/** Kind and every field. */
QByteArray bitsOf(KpPathSeg& segment)
{
    QByteArray bits(1, char(segment.type));
    forEachHandle(segment, 0, [&bits](Handle const& handle) {
        if (handle.x)
            addBits(bits, *handle.x);
        if (handle.y)
            addBits(bits, *handle.y);
    });
    return bits;
}

/** What must be there still when an operation has done its part. */
class Untouched
{
public:
    explicit Untouched(OperationTarget const& target)
    {
        KpPathSegList const& list = *target.shape.list;
        QVector<HandleId> const concerned = withTwins(list, target.handles);
        for (int i = 0; i < list.segs.count(); ++i) {
            if (!concerned.contains({i, HandleKind::Point})
                && !isSelectedEllipse(list, i, concerned))
                ++m_points[bitsOf(list.segs[i]->pt)];
        }
        for (SubpathRange const& range : allSubpaths(list)) {
            bool const isConcerned = std::any_of(concerned.cbegin(), concerned.cend(),
                [&](HandleId id) { return id.segment >= range.first && id.segment < range.end; });
            for (int i = range.first; !isConcerned && i < range.end; ++i)
                m_segments << bitsOf(*list.segs[i]);
        }
    }

    /** All segments of other subpaths are there in their order, and all other points. */
    bool isIn(KpPathSegList const& list) const
    {
        int found = 0;
        auto points = m_points;
        for (KpPathSeg* const segment : list.segs) {
            if (found < m_segments.size() && bitsOf(*segment) == m_segments.at(found))
                ++found;
            auto const point = points.find(bitsOf(segment->pt));
            if (point != points.end() && --point->second == 0)
                points.erase(point);
        }
        return found == m_segments.size() && points.empty();
    }

private:
    static bool isSelectedEllipse(
        KpPathSegList const& list, int segment, QVector<HandleId> const& concerned)
    {
        return list.segs[segment]->toEllipse()
            && (concerned.contains({segment, HandleKind::RadiusA})
                || concerned.contains({segment, HandleKind::RadiusB}));
    }

    std::map<QByteArray, int> m_points;
    QVector<QByteArray> m_segments;
};

bool isWhole(KpPathSegList const& list)
{
    return std::all_of(list.segs.cbegin(), list.segs.cend(),
        [&list](KpPathSeg const* segment) { return segment && segment->owner == &list; });
}

bool isInOrder(QVector<HandleId> const& handles)
{
    return std::adjacent_find(handles.cbegin(), handles.cend(), [](HandleId left, HandleId right) {
        return !(left < right);
    }) == handles.cend();
}

bool areOf(KpPathSegList const& list, QVector<HandleId> const& handles)
{
    return std::all_of(handles.cbegin(), handles.cend(),
        [&list](HandleId id) { return handleOf(list, id).has_value(); });
}

/** Outlines of awkward and of tame numbers, with rings and points that meet among them. */
void drawAnything(WorkingShape& shape, QRandomGenerator& random)
{
    QSizeF const boxes[] = {{200.0, 100.0}, {0.002, 300.0}, {1e6, 1e6}, {50.0, 80.0}};
    shape.box = boxes[random.bounded(4)];
    KpPathSegList& list = *shape.list;
    list.removeAll(true);
    fillRandomly(list, random.bounded(14), random);
    if (random.bounded(4) == 0)
        return;
    forEachReal(list, [&random](KpReal& real) {
        real.value = random.bounded(10) * 5.0;
        real.rate = random.generateDouble();
    });
    for (int i = 1; i < list.segs.count(); ++i) {
        if (random.bounded(4) == 0)
            list.segs[i]->pt = list.segs[random.bounded(i)]->pt;
    }
    for (SubpathRange const& range : allSubpaths(list)) {
        if (random.bounded(2) == 0)
            list.segs[range.end - 1]->pt = list.segs[range.first]->pt;
    }
}

QVector<HandleId> anyHandles(KpPathSegList const& list, QRandomGenerator& random)
{
    QVector<HandleId> handles;
    int const rarity = 1 + random.bounded(8);
    forEachHandle(list, [&](Handle const& handle) {
        if (random.bounded(rarity) == 0)
            handles << handle.id;
    });
    return handles;
}

QVector<HandleId> strangeHandles(QRandomGenerator& random)
{
    QVector<HandleId> handles;
    for (int segment = -2; segment < 20; ++segment) {
        if (random.bounded(3) == 0)
            handles << HandleId {segment, static_cast<HandleKind>(random.bounded(5))};
    }
    return handles;
}

double anyReal(QRandomGenerator& random)
{
    return random.bounded(2) == 0 ? Testing::awkwardReal(random) : random.bounded(10) * 5.0;
}

QPointF anyPlace(QRandomGenerator& random)
{
    double const x = anyReal(random);
    return {x, anyReal(random)};
}

/** Does one of what is no operation of the table. */
void editAnything(OperationTarget& target, QRandomGenerator& random)
{
    WorkingShape& shape = target.shape;
    int const segment = random.bounded(-2, shape.list->segs.count() + 2);
    Axis const axis = random.bounded(2) == 0 ? Axis::Horizontal : Axis::Vertical;
    QPointF const place = anyPlace(random);
    NodeDrag const drag = random.bounded(2) == 0 ? NodeDrag::Keep : NodeDrag::Break;
    switch (random.bounded(9)) {
    case 0:
        moveHandles(shape, target.handles, place, drag);
        break;
    case 1:
        setRule(shape, target.handles, axis, qint16(random.bounded(-1, 10)));
        break;
    case 2:
        setRate(shape, target.handles, axis, place.x());
        break;
    case 3:
        setValue(shape, target.handles, axis, place.x());
        break;
    case 4:
        if (!target.handles.isEmpty())
            insertPoint(shape, target.handles.constFirst().segment, anyReal(random));
        break;
    case 5:
        addLine(shape, segment, place);
        break;
    case 6:
        addCurve(shape, segment, anyPlace(random), anyPlace(random), place);
        break;
    case 7:
        addMove(shape, segment, place);
        break;
    default:
        addEllipse(shape, segment, place, anyReal(random), anyReal(random));
        break;
    }
}

} // namespace

class TestAnyOperation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void changesWhatItConcerns();
    void survivesHandlesThatAreNotThere();
};

void TestAnyOperation::changesWhatItConcerns()
{
    QRandomGenerator random = Testing::seededRandom(8);
    int const operationCount = int(operations().size());
    std::map<QByteArray, int> changes;
    WorkingShape shape = shapeOf("");
    for (int i = 0; i < 200000; ++i) {
        if (i % 10 == 0 || shape.list->segs.count() > 40)
            drawAnything(shape, random);
        OperationTarget target {shape, anyHandles(*shape.list, random)};
        QVector<HandleId> const handles = target.handles;
        OutlineRecord const before = recordOf(*shape.list);
        Untouched const untouched(target);
        int const chosen = random.bounded(operationCount + 6);
        if (chosen >= operationCount) {
            editAnything(target, random);
        } else {
            Operation const& operation = operations()[std::size_t(chosen)];
            bool const isPossible = operation.isPossible(target);
            QVERIFY(recordOf(*shape.list) == before);
            operation.run(target);
            bool const isChanged = recordOf(*shape.list) != before;
            QVERIFY2(isPossible || (!isChanged && target.handles == handles), operation.id);
            QVERIFY2(areOf(*shape.list, target.handles), operation.id);
            QVERIFY2(isInOrder(target.handles), operation.id);
            QVERIFY2(*operation.step || !isChanged, operation.id);
            changes[operation.id] += isChanged || target.handles != handles ? 1 : 0;
        }
        QVERIFY(isWhole(*shape.list));
        QVERIFY2(untouched.isIn(*shape.list),
            chosen < operationCount ? operations()[std::size_t(chosen)].id : "edit");
        QCOMPARE(outlineOf(recordOf(*shape.list))->segs.count(), shape.list->segs.count());
    }
    QCOMPARE(int(changes.size()), operationCount);
    for (auto const& [id, count] : changes)
        QVERIFY2(count > 200, id + ' ' + QByteArray::number(count));
}

void TestAnyOperation::survivesHandlesThatAreNotThere()
{
    QRandomGenerator random = Testing::seededRandom(9);
    WorkingShape shape = shapeOf("");
    for (int i = 0; i < 50000; ++i) {
        if (i % 10 == 0 || shape.list->segs.count() > 40)
            drawAnything(shape, random);
        OperationTarget target {shape, strangeHandles(random)};
        std::sort(target.handles.begin(), target.handles.end());
        if (random.bounded(5) == 0) {
            editAnything(target, random);
        } else {
            std::size_t const chosen = random.bounded(quint32(operations().size()));
            Operation const& operation = operations()[chosen];
            OutlineRecord const before = recordOf(*shape.list);
            bool const isPossible = operation.isPossible(target);
            operation.run(target);
            QVERIFY2(isPossible || recordOf(*shape.list) == before, operation.id);
        }
        QVERIFY(isWhole(*shape.list));
    }
}

QTEST_GUILESS_MAIN(TestAnyOperation)
#include "tst_kpshapes_anyoperation.moc"
