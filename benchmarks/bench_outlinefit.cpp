// SPDX-License-Identifier: MIT
// Learning the rules of an outline from two drawings, against reading the two drawings.

#include "document/exactcopy.h"
#include "fit/outlinefit.h"
#include "kppathsegcurveto.h"
#include "kppathseglineto.h"
#include "kppathsegmoveto.h"
#include "xmlstreamwriter.h"

#include <QXmlStreamReader>

#include <benchmark/benchmark.h>

#include <cmath>

namespace {

QSizeF const wide(4000, 2000);
QSizeF const tall(1500, 3100);

/** Coordinates of all the rules that are usual for their axis, one after the other. */
class Coordinates
{
public:
    KpPoint point() { return {real(0), real(1)}; }

private:
    KpReal real(int axis)
    {
        static constexpr qint16 rules[2][5] {{0, 1, 3, 5, 6}, {0, 2, 4, 5, 7}};
        ++m_count;
        qint16 const rule = rules[axis][m_count % 5];
        bool const isLength = rule == 0 || rule == 3 || rule == 4;
        double const share = std::fmod(m_count * 0.618034, 1.0);
        double const parameter = isLength ? 10.0 + 300.0 * share : 0.05 + 0.9 * share;
        return {rule, parameter, parameter};
    }

    int m_count = 0;
};

/** Half lines, half curves, one subpath. */
std::shared_ptr<KpPathSegList> outline(int segments)
{
    auto list = std::make_shared<KpPathSegList>();
    list->closed = true;
    Coordinates next;
    list->addTail(new KpPathSegMoveTo(next.point(), nullptr));
    for (int i = 1; i < segments; ++i) {
        if (i % 2 == 0) {
            list->addTail(new KpPathSegLineTo(next.point(), nullptr));
        } else {
            list->addTail(new KpPathSegCurveTo(next.point(), next.point(), next.point(), nullptr));
        }
    }
    return list;
}

SizedDrawing drawn(std::shared_ptr<KpPathSegList> const& list, QSizeF const& box)
{
    list->updateValue(box.width(), box.height());
    return {QString(), box, {{QString(), box, std::nullopt, exactCopy(*list)}}};
}

std::vector<SizedDrawing> drawings(benchmark::State const& state)
{
    auto const list = outline(static_cast<int>(state.range(0)));
    return {drawn(list, wide), drawn(list, tall)};
}

void fitOutlines(benchmark::State& state)
{
    std::vector<SizedDrawing> const both = drawings(state);
    for (auto _ : state) {
        Diagnostics diagnostics;
        auto const result = fitDrawings(both, {0.001, true}, diagnostics);
        if (!result || !result->inexact.isEmpty())
            state.SkipWithError("the outline was not learnt");
        benchmark::DoNotOptimize(result);
    }
}

void fitOutlinesPeerReading(benchmark::State& state)
{
    std::vector<SizedDrawing> const both = drawings(state);
    std::vector<QByteArray> texts;
    for (SizedDrawing const& drawing : both) {
        texts.emplace_back();
        XmlStreamWriter writer(&texts.back());
        writeGeometry(writer, *drawing.shapes.front().list);
    }
    for (auto _ : state) {
        for (QByteArray const& text : texts) {
            QXmlStreamReader reader(text);
            reader.readNextStartElement();
            KpPathSegList list;
            list.parse(reader, 0);
            benchmark::DoNotOptimize(list.segs.size());
        }
    }
}

BENCHMARK(fitOutlines)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(fitOutlinesPeerReading)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

} // namespace
