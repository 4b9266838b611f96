// SPDX-License-Identifier: MIT
// Reading documents of many outlines one at a time, against a bare reader that goes through them.

#include "document/outlinereader.h"
#include "document/shapes.h"
#include "kppathsegcurveto.h"
#include "kppathseglineto.h"
#include "kppathsegmoveto.h"

#include <QBuffer>
#include <QXmlStreamReader>

#include <benchmark/benchmark.h>

#include <cmath>

namespace {

/** Coordinates in proportion to a box, no two alike. */
class Coordinates
{
public:
    KpPoint point() { return {real(KpReal::PartOfWidth), real(KpReal::PartOfHeight)}; }

private:
    KpReal real(qint16 rule)
    {
        double const share = std::fmod(++m_count * 0.618034, 1.0);
        return {rule, share, 1000.0 * share};
    }

    int m_count = 0;
};

/** As drawn shapes are: a start, then lines and curves by turns. */
QByteArray document(int outlines)
{
    constexpr int segments = 13;
    Coordinates next;
    Shapes shapes;
    for (int i = 0; i < outlines; ++i) {
        auto const list = std::make_shared<KpPathSegList>();
        list->closed = true;
        list->addTail(new KpPathSegMoveTo(next.point(), nullptr));
        for (int segment = 1; segment < segments; ++segment) {
            if (segment % 2 == 0) {
                list->addTail(
                    new KpPathSegCurveTo(next.point(), next.point(), next.point(), nullptr));
            } else {
                list->addTail(new KpPathSegLineTo(next.point(), nullptr));
            }
        }
        shapes.push_back(
            {QStringLiteral("shape %1").arg(i), QSizeF(1000.0, 1000.0), std::nullopt, list});
    }
    return shapesDocument(shapes);
}

void readEach(benchmark::State& state, OutlineReader::Detail detail)
{
    QByteArray text = document(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        QBuffer buffer(&text);
        buffer.open(QIODevice::ReadOnly);
        OutlineReader reader(buffer, QString(), detail);
        for (Outlines group = reader.next(); !group.empty(); group = reader.next())
            benchmark::DoNotOptimize(group.data());
        if (reader.fault())
            state.SkipWithError("the document cannot be read");
    }
    state.SetBytesProcessed(state.iterations() * text.size());
}

void readOutlines(benchmark::State& state)
{
    readEach(state, OutlineReader::Detail::Lists);
}
BENCHMARK(readOutlines)->Arg(1000)->Arg(7000)->Unit(benchmark::kMillisecond);

void readOutlinesAndMarkup(benchmark::State& state)
{
    readEach(state, OutlineReader::Detail::Markup);
}
BENCHMARK(readOutlinesAndMarkup)->Arg(1000)->Arg(7000)->Unit(benchmark::kMillisecond);

void readOutlinesPeerBareReader(benchmark::State& state)
{
    QByteArray text = document(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        QBuffer buffer(&text);
        buffer.open(QIODevice::ReadOnly);
        QXmlStreamReader reader(&buffer);
        while (!reader.atEnd())
            benchmark::DoNotOptimize(reader.readNext());
    }
    state.SetBytesProcessed(state.iterations() * text.size());
}
BENCHMARK(readOutlinesPeerBareReader)->Arg(1000)->Arg(7000)->Unit(benchmark::kMillisecond);

} // namespace
