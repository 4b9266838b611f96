// How the cost of an outline grows with its segments: each operation at 10,000 and at 100,000
// segments, beside a peer that does the least of the same work.

#include "kppath.h"
#include "kppathsegcurveto.h"
#include "kppathseglist.h"
#include "xmlstreamwriter.h"

#include <QDomDocument>
#include <QPainterPath>
#include <QXmlStreamReader>

#include <benchmark/benchmark.h>

#include <algorithm>
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

QByteArray saved(KpPathSegList& list)
{
    QByteArray text;
    XmlStreamWriter writer(&text);
    list.saveTo(writer);
    return text;
}

void walkForwards(benchmark::State& state)
{
    KpPathSegList list;
    fill(list, countOf(state));
    for (auto _ : state) {
        for (KpPathSeg* seg = list.segs.first(); seg; seg = list.getNextSeg(seg))
            benchmark::DoNotOptimize(seg);
    }
    segments(state);
}

void walkBackwards(benchmark::State& state)
{
    KpPathSegList list;
    fill(list, countOf(state));
    for (auto _ : state) {
        for (KpPathSeg* seg = list.segs.last(); seg; seg = list.getPrevSeg(seg))
            benchmark::DoNotOptimize(seg);
    }
    segments(state);
}

void walkPeerPlainLoop(benchmark::State& state)
{
    KpPathSegList list;
    fill(list, countOf(state));
    for (auto _ : state) {
        for (KpPathSeg* const seg : qAsConst(list.segs))
            benchmark::DoNotOptimize(seg);
    }
    segments(state);
}

void startPoints(benchmark::State& state)
{
    KpPathSegList list;
    fill(list, countOf(state));
    for (auto _ : state) {
        for (KpPathSeg* const seg : qAsConst(list.segs))
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

void saveStream(benchmark::State& state)
{
    KpPathSegList list;
    fill(list, countOf(state));
    for (auto _ : state)
        benchmark::DoNotOptimize(saved(list));
    segments(state);
}

/** A tag as it is handed to a writer: a start tag, or an end tag if it has no name. */
struct Tag
{
    QString name;
    QXmlStreamAttributes attributes;
};

std::vector<Tag> tagsOf(QByteArray const& text)
{
    std::vector<Tag> tags;
    QXmlStreamReader reader(text);
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isStartElement())
            tags.push_back({reader.name().toString(), reader.attributes()});
        else if (reader.isEndElement())
            tags.emplace_back();
    }
    return tags;
}

/** The same text written by Qt, its numbers being text already. */
void saveStreamPeerBareWriter(benchmark::State& state)
{
    KpPathSegList list;
    fill(list, countOf(state));
    std::vector<Tag> const tags = tagsOf(saved(list));
    for (auto _ : state) {
        QByteArray copy;
        QXmlStreamWriter writer(&copy);
        for (Tag const& tag : tags) {
            if (tag.name.isEmpty()) {
                writer.writeEndElement();
            } else {
                writer.writeStartElement(tag.name);
                writer.writeAttributes(tag.attributes);
            }
        }
        benchmark::DoNotOptimize(copy);
    }
    segments(state);
}

void parseStream(benchmark::State& state)
{
    KpPathSegList source;
    fill(source, countOf(state));
    QByteArray const text = saved(source);
    for (auto _ : state) {
        QXmlStreamReader reader(text);
        reader.readNextStartElement();
        KpPathSegList list;
        list.parse(reader, 0);
        benchmark::DoNotOptimize(list.segs.data());
    }
    segments(state);
}

/** The reader alone, nothing kept. */
void parseStreamPeerBareReader(benchmark::State& state)
{
    KpPathSegList source;
    fill(source, countOf(state));
    QByteArray const text = saved(source);
    for (auto _ : state) {
        QXmlStreamReader reader(text);
        while (!reader.atEnd())
            benchmark::DoNotOptimize(reader.readNext());
    }
    segments(state);
}

void saveDom(benchmark::State& state)
{
    KpPathSegList list;
    fill(list, countOf(state));
    for (auto _ : state) {
        QDomDocument document;
        QDomElement root = document.createElement(QStringLiteral("Root"));
        document.appendChild(root);
        list.saveTo(root);
        benchmark::DoNotOptimize(root.firstChildElement());
    }
    segments(state);
}

/** Qt's own copy of the same tree. */
void saveDomPeerTreeCopy(benchmark::State& state)
{
    KpPathSegList source;
    fill(source, countOf(state));
    QDomDocument document;
    document.setContent(saved(source));
    for (auto _ : state)
        benchmark::DoNotOptimize(document.cloneNode(true));
    segments(state);
}

void parseDom(benchmark::State& state)
{
    KpPathSegList source;
    fill(source, countOf(state));
    QDomDocument document;
    document.setContent(saved(source));
    for (auto _ : state) {
        KpPathSegList list;
        list.parse(document.documentElement(), 0);
        benchmark::DoNotOptimize(list.segs.data());
    }
    segments(state);
}

void undoThereAndBack(benchmark::State& state)
{
    KpPathSegList source;
    fill(source, countOf(state));
    for (auto _ : state) {
        QVector<int> ints;
        QVector<double> doubles;
        source.toUndoValue(ints, doubles);
        int intPos = 0;
        int doublePos = 0;
        KpPathSegList list;
        list.fromUndoValue(ints, doubles, intPos, doublePos, source.segs.count());
        benchmark::DoNotOptimize(list.segs.data());
    }
    segments(state);
}

void toPath(benchmark::State& state)
{
    KpPathSegList list;
    fill(list, countOf(state));
    for (auto _ : state) {
        KpPath path;
        list.toPath(path);
        benchmark::DoNotOptimize(path.elements.data());
    }
    segments(state);
}

void toPathPeerPainterPath(benchmark::State& state)
{
    KpPathSegList list;
    fill(list, countOf(state));
    for (auto _ : state) {
        QPainterPath path;
        for (KpPathSeg* const seg : qAsConst(list.segs)) {
            QPointF const end(seg->pt.x.value, seg->pt.y.value);
            if (KpPathSegCurveTo const* const curve = seg->toCurveTo()) {
                path.cubicTo(QPointF(curve->ctrl1.x.value, curve->ctrl1.y.value),
                    QPointF(curve->ctrl2.x.value, curve->ctrl2.y.value), end);
            } else {
                path.lineTo(end);
            }
        }
        benchmark::DoNotOptimize(path.elementCount());
    }
    segments(state);
}

void resize(benchmark::State& state)
{
    KpPathSegList list;
    fill(list, countOf(state));
    for (auto _ : state) {
        list.updateValue(240.0, 60.0);
        benchmark::ClobberMemory();
    }
    segments(state);
}

} // namespace

#define OUTLINE_BENCHMARK(function)                                                                \
    BENCHMARK(function)->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond)

OUTLINE_BENCHMARK(walkForwards);
OUTLINE_BENCHMARK(walkBackwards);
OUTLINE_BENCHMARK(walkPeerPlainLoop);
OUTLINE_BENCHMARK(startPoints);
OUTLINE_BENCHMARK(removeHalf);
OUTLINE_BENCHMARK(saveStream);
OUTLINE_BENCHMARK(saveStreamPeerBareWriter);
OUTLINE_BENCHMARK(parseStream);
OUTLINE_BENCHMARK(parseStreamPeerBareReader);
OUTLINE_BENCHMARK(saveDom);
OUTLINE_BENCHMARK(saveDomPeerTreeCopy);
OUTLINE_BENCHMARK(parseDom);
OUTLINE_BENCHMARK(undoThereAndBack);
OUTLINE_BENCHMARK(toPath);
OUTLINE_BENCHMARK(toPathPeerPainterPath);
OUTLINE_BENCHMARK(resize);
