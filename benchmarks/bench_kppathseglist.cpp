// SPDX-License-Identifier: MIT
// How the cost of an outline grows with its segments: each operation at 10,000 and at 100,000
// segments, beside a peer that does the least of the same work.

#include "kppath.h"
#include "kppathsegcurveto.h"
#include "kppathsegellipse.h"
#include "kppathseglineto.h"
#include "kppathseglist.h"

#include <QPainterPath>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <numeric>
#include <random>
#include <vector>

namespace {

void fill(KpPathSegList& list, int count)
{
    list.moveTo({0.0, 0.0});
    for (int i = 1; i < count; ++i) {
        QPointF const end(i * 1.5, i * 0.75);
        if (i % 2 == 0)
            list.lineTo(end);
        else
            list.curveTo(end * 0.25, end * 0.5, end);
    }
    list.updateRate(120.0, 80.0);
}

int countOf(benchmark::State const& state)
{
    return static_cast<int>(state.range(0));
}

void segments(benchmark::State& state)
{
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.SetComplexityN(state.range(0));
}

/** As a glyph's outline has them: short steps between whole numbers around a ring, few ellipses. */
void fillAsGlyphs(KpPathSegList& list, int count)
{
    auto const ring = [](int step) {
        double const angle = step * 0.19634954084936207;
        return QPointF(std::round(1000.0 + 700.0 * std::cos(angle) + step % 17),
            std::round(800.0 - 900.0 * std::sin(angle) - step % 13));
    };
    for (int i = 0; i < count; ++i) {
        if (i % 32 == 0)
            list.moveTo(ring(3 * i));
        else if (i % 48 == 25)
            list.addTail(new KpPathSegEllipse(ring(3 * i), 40.0, 25.0, nullptr));
        else if (i % 2 == 0)
            list.lineTo(ring(3 * i));
        else
            list.curveTo(ring(3 * i - 2), ring(3 * i - 1), ring(3 * i));
    }
    list.updateRate(2048.0, 1536.0);
}

/** An outline of as many segments as the benchmark names. */
struct Glyphs
{
    explicit Glyphs(benchmark::State const& state) { fillAsGlyphs(list, countOf(state)); }

    KpPathSegList list;
};

/** What any function costs that the caller's compiler does not see into. */
[[gnu::noinline]] KpPathSeg* segmentAt(QVector<KpPathSeg*> const& segs, int index)
{
    return segs.at(index);
}

template <class Sequence> Sequence shuffled(Sequence sequence)
{
    std::shuffle(sequence.begin(), sequence.end(), std::mt19937(4711));
    return sequence;
}

void walkForwards(benchmark::State& state)
{
    Glyphs const glyphs(state);
    KpPathSegList const& list = glyphs.list;
    for (auto _ : state) {
        for (KpPathSeg* seg = list.segs.first(); seg; seg = list.getNextSeg(seg))
            benchmark::DoNotOptimize(seg);
    }
    segments(state);
}

void walkBackwards(benchmark::State& state)
{
    Glyphs const glyphs(state);
    KpPathSegList const& list = glyphs.list;
    for (auto _ : state) {
        for (KpPathSeg* seg = list.segs.last(); seg; seg = list.getPrevSeg(seg))
            benchmark::DoNotOptimize(seg);
    }
    segments(state);
}

void walkPeerPlainCalls(benchmark::State& state)
{
    Glyphs const glyphs(state);
    for (auto _ : state) {
        for (int i = 0; i < glyphs.list.segs.count(); ++i)
            benchmark::DoNotOptimize(segmentAt(glyphs.list.segs, i));
    }
    segments(state);
}

void neighboursAtRandom(benchmark::State& state)
{
    Glyphs const glyphs(state);
    QVector<KpPathSeg*> const asked = shuffled(glyphs.list.segs);
    for (auto _ : state) {
        for (KpPathSeg* const seg : asked)
            benchmark::DoNotOptimize(glyphs.list.getNextSeg(seg));
    }
    segments(state);
}

void neighboursAtRandomPeerPlainCalls(benchmark::State& state)
{
    Glyphs const glyphs(state);
    QVector<int> indices(glyphs.list.segs.count());
    std::iota(indices.begin(), indices.end(), 0);
    QVector<int> const asked = shuffled(indices);
    for (auto _ : state) {
        for (int const index : asked)
            benchmark::DoNotOptimize(segmentAt(glyphs.list.segs, index));
    }
    segments(state);
}

/** Takes the first segments one by one, and asks for a neighbour of any other after each. */
void neighboursWhileTheFrontGoes(benchmark::State& state)
{
    for (auto _ : state) {
        state.PauseTiming();
        Glyphs glyphs(state);
        QVector<KpPathSeg*> const asked = shuffled(glyphs.list.segs.mid(countOf(state) / 2));
        state.ResumeTiming();
        for (KpPathSeg* const seg : asked) {
            glyphs.list.removeAt(0, true);
            benchmark::DoNotOptimize(glyphs.list.getNextSeg(seg));
        }
        state.PauseTiming();
        glyphs.list.removeAll(true);
        state.ResumeTiming();
    }
    segments(state);
}

/** The same without the questions. */
void neighboursWhileTheFrontGoesPeerRemoval(benchmark::State& state)
{
    for (auto _ : state) {
        state.PauseTiming();
        Glyphs glyphs(state);
        state.ResumeTiming();
        for (int i = countOf(state) / 2; i > 0; --i)
            glyphs.list.removeAt(0, true);
        state.PauseTiming();
        glyphs.list.removeAll(true);
        state.ResumeTiming();
    }
    segments(state);
}

void startPoints(benchmark::State& state)
{
    Glyphs const glyphs(state);
    for (auto _ : state) {
        for (KpPathSeg* const seg : qAsConst(glyphs.list.segs))
            benchmark::DoNotOptimize(seg->startPt());
    }
    segments(state);
}

void removeHalf(benchmark::State& state)
{
    QVector<int> odd;
    for (int i = 1; i < countOf(state); i += 2)
        odd.append(i);
    for (auto _ : state) {
        state.PauseTiming();
        KpPathSegList list;
        fill(list, countOf(state));
        state.ResumeTiming();
        list.removeAt(odd, true);
        state.PauseTiming();
        list.removeAll(true);
        state.ResumeTiming();
    }
    segments(state);
}

void toUndo(benchmark::State& state)
{
    Glyphs glyphs(state);
    for (auto _ : state) {
        QVector<int> ints;
        QVector<double> doubles;
        glyphs.list.toUndoValue(ints, doubles);
        benchmark::DoNotOptimize(ints.constData());
        benchmark::DoNotOptimize(doubles.constData());
    }
    segments(state);
}

template <class Entry> std::unique_ptr<Entry[]> memoryFor(QVector<Entry> const& entries)
{
    return std::make_unique<Entry[]>(size_t(entries.size()));
}

template <class Entry> void copyMemory(Entry* target, QVector<Entry> const& source)
{
    std::memcpy(target, source.constData(), size_t(source.size()) * sizeof(Entry));
    benchmark::DoNotOptimize(target);
    benchmark::ClobberMemory();
}

/** The content of both vectors. */
void toUndoPeerCopyOfMemory(benchmark::State& state)
{
    Glyphs glyphs(state);
    QVector<int> ints;
    QVector<double> doubles;
    glyphs.list.toUndoValue(ints, doubles);
    auto const intCopy = memoryFor(ints);
    auto const doubleCopy = memoryFor(doubles);
    for (auto _ : state) {
        copyMemory(intCopy.get(), ints);
        copyMemory(doubleCopy.get(), doubles);
    }
    segments(state);
}

/** What is allocated for a segment, without a segment in it. */
struct Block
{
    explicit Block(KpPathSeg& seg)
        : Block(seg.toCurveTo()   ? sizeof(KpPathSegCurveTo)
                : seg.toEllipse() ? sizeof(KpPathSegEllipse)
                                  : sizeof(KpPathSegLineTo))
    {
    }
    explicit Block(size_t blockSize)
        : size(blockSize)
    {
    }

    size_t size;
    void* memory = nullptr;
};

std::vector<Block> blocksOf(KpPathSegList const& list)
{
    std::vector<Block> blocks;
    for (KpPathSeg* const seg : list.segs)
        blocks.emplace_back(*seg);
    return blocks;
}

void allocateAndFree(std::vector<Block>& blocks)
{
    for (Block& block : blocks)
        block.memory = ::operator new(block.size);
    benchmark::ClobberMemory();
    for (Block const& block : blocks)
        ::operator delete(block.memory);
}

void fromUndo(benchmark::State& state)
{
    Glyphs glyphs(state);
    QVector<int> ints;
    QVector<double> doubles;
    glyphs.list.toUndoValue(ints, doubles);
    for (auto _ : state) {
        int intPos = 0;
        int doublePos = 0;
        KpPathSegList list;
        list.fromUndoValue(ints, doubles, intPos, doublePos, countOf(state));
        benchmark::DoNotOptimize(list.segs.data());
    }
    segments(state);
}

/** Memory for as many segments of the same sizes, and the content of both vectors. */
void fromUndoPeerAllocation(benchmark::State& state)
{
    Glyphs glyphs(state);
    QVector<int> ints;
    QVector<double> doubles;
    glyphs.list.toUndoValue(ints, doubles);
    auto const intCopy = memoryFor(ints);
    auto const doubleCopy = memoryFor(doubles);
    std::vector<Block> blocks = blocksOf(glyphs.list);
    for (auto _ : state) {
        copyMemory(intCopy.get(), ints);
        copyMemory(doubleCopy.get(), doubles);
        allocateAndFree(blocks);
    }
    segments(state);
}

void cloneAndDestroy(benchmark::State& state)
{
    Glyphs glyphs(state);
    for (auto _ : state)
        delete glyphs.list.clone();
    segments(state);
}

/** Memory for as many segments of the same sizes. */
void cloneAndDestroyPeerAllocation(benchmark::State& state)
{
    Glyphs const glyphs(state);
    std::vector<Block> blocks = blocksOf(glyphs.list);
    for (auto _ : state)
        allocateAndFree(blocks);
    segments(state);
}

void toPath(benchmark::State& state)
{
    Glyphs const glyphs(state);
    for (auto _ : state) {
        KpPath path;
        glyphs.list.toPath(path);
        benchmark::DoNotOptimize(path.elements.data());
    }
    segments(state);
}

void fromPath(benchmark::State& state)
{
    Glyphs const glyphs(state);
    KpPath path;
    glyphs.list.toPath(path);
    for (auto _ : state) {
        KpPathSegList list;
        list.fromPath(path);
        benchmark::DoNotOptimize(list.segs.data());
    }
    segments(state);
}

QPainterPath painterPath(KpPath const& path)
{
    QPainterPath result;
    auto const point = [&path](int i) { return QPointF(path.at(i).x, path.at(i).y); };
    for (int i = 0; i < path.count(); ++i) {
        if (path.at(i).type == QPainterPath::MoveToElement) {
            result.moveTo(point(i));
        } else if (path.at(i).type == QPainterPath::LineToElement) {
            result.lineTo(point(i));
        } else if (path.at(i).type == QPainterPath::CurveToElement) {
            result.cubicTo(point(i), point(i + 1), point(i + 2));
            i += 2;
        }
    }
    return result;
}

/** The moves, lines and curves of the same points, closes left out. */
void pathPeerPainterPath(benchmark::State& state)
{
    Glyphs const glyphs(state);
    KpPath path;
    glyphs.list.toPath(path);
    for (auto _ : state)
        benchmark::DoNotOptimize(painterPath(path).elementCount());
    segments(state);
}

/** The points of an outline, side by side, and its radii. */
struct FlatReals
{
    explicit FlatReals(KpPathSegList const& list)
    {
        for (KpPathSeg* const seg : list.segs) {
            points.push_back(seg->pt);
            if (KpPathSegCurveTo const* const curve = seg->toCurveTo())
                points.insert(points.end(), {curve->ctrl1, curve->ctrl2});
            if (KpPathSegEllipse const* const ellipse = seg->toEllipse())
                radii.insert(radii.end(), {ellipse->a, ellipse->b});
        }
    }

    std::vector<KpPoint> points;
    std::vector<KpReal> radii;
};

template <class Change> void changeFlat(benchmark::State& state, Change change)
{
    FlatReals flat(Glyphs(state).list);
    for (auto _ : state) {
        change(flat);
        benchmark::DoNotOptimize(flat.points.data());
        benchmark::ClobberMemory();
    }
    segments(state);
}

template <class Change> void changeOutline(benchmark::State& state, Change change)
{
    Glyphs glyphs(state);
    for (auto _ : state) {
        change(glyphs.list);
        benchmark::ClobberMemory();
    }
    segments(state);
}

void updateValue(benchmark::State& state)
{
    changeOutline(state, [](KpPathSegList& list) { list.updateValue(240.0, 60.0); });
}

void updateValuePeerFlatArray(benchmark::State& state)
{
    changeFlat(state, [](FlatReals& flat) {
        for (KpPoint& point : flat.points)
            point.updateValue(240.0, 60.0);
        for (KpReal& radius : flat.radii)
            radius.updateValue(240.0, 60.0);
    });
}

void updateRate(benchmark::State& state)
{
    changeOutline(state, [](KpPathSegList& list) { list.updateRate(240.0, 60.0); });
}

void updateRatePeerFlatArray(benchmark::State& state)
{
    changeFlat(state, [](FlatReals& flat) {
        for (KpPoint& point : flat.points)
            point.updateRate(240.0, 60.0);
        for (KpReal& radius : flat.radii)
            radius.updateRate(240.0, 60.0);
    });
}

/** A quarter turn: the numbers stay as they are, however often it is applied. */
QMatrix const quarterTurn(0.0, 1.0, -1.0, 0.0, 0.0, 0.0);

void applyTransform(benchmark::State& state)
{
    changeOutline(state, [](KpPathSegList& list) { list.applyTransform(quarterTurn); });
}

void applyTransformPeerFlatArray(benchmark::State& state)
{
    changeFlat(state, [](FlatReals& flat) {
        for (KpPoint& point : flat.points) {
            QPointF const mapped = quarterTurn.map(QPointF(point.x.value, point.y.value));
            point.x.value = mapped.x();
            point.y.value = mapped.y();
        }
    });
}

void translate(benchmark::State& state)
{
    changeOutline(state, [](KpPathSegList& list) { list.translate(0.5, -0.25); });
}

void translatePeerFlatArray(benchmark::State& state)
{
    changeFlat(state, [](FlatReals& flat) {
        for (KpPoint& point : flat.points) {
            point.x.value += 0.5;
            point.y.value += -0.25;
        }
    });
}

} // namespace

#define OUTLINE_BENCHMARK(function)                                                                \
    BENCHMARK(function)->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond)

OUTLINE_BENCHMARK(walkForwards);
OUTLINE_BENCHMARK(walkBackwards);
OUTLINE_BENCHMARK(walkPeerPlainCalls);
OUTLINE_BENCHMARK(neighboursAtRandom);
OUTLINE_BENCHMARK(neighboursAtRandomPeerPlainCalls);
OUTLINE_BENCHMARK(neighboursWhileTheFrontGoes);
OUTLINE_BENCHMARK(neighboursWhileTheFrontGoesPeerRemoval);
OUTLINE_BENCHMARK(startPoints);
OUTLINE_BENCHMARK(removeHalf);
OUTLINE_BENCHMARK(toUndo);
OUTLINE_BENCHMARK(toUndoPeerCopyOfMemory);
OUTLINE_BENCHMARK(fromUndo);
OUTLINE_BENCHMARK(fromUndoPeerAllocation);
OUTLINE_BENCHMARK(cloneAndDestroy);
OUTLINE_BENCHMARK(cloneAndDestroyPeerAllocation);
OUTLINE_BENCHMARK(toPath);
OUTLINE_BENCHMARK(fromPath);
OUTLINE_BENCHMARK(pathPeerPainterPath);
OUTLINE_BENCHMARK(updateValue);
OUTLINE_BENCHMARK(updateValuePeerFlatArray);
OUTLINE_BENCHMARK(updateRate);
OUTLINE_BENCHMARK(updateRatePeerFlatArray);
OUTLINE_BENCHMARK(applyTransform);
OUTLINE_BENCHMARK(applyTransformPeerFlatArray);
OUTLINE_BENCHMARK(translate);
OUTLINE_BENCHMARK(translatePeerFlatArray);
