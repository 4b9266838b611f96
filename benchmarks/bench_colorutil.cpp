// SPDX-License-Identifier: MIT
#include "colorutil.h"
#include "kpcolor.h"

#include <benchmark/benchmark.h>

#include <cmath>

namespace {

/** The conversions of IEC 61966-2-1 as a first draft has them: a power for every channel. */
double toLinear(double v)
{
    return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
}

double toEncoded(double v)
{
    return v <= 0.0031308 ? v * 12.92 : 1.055 * std::pow(v, 1.0 / 2.4) - 0.055;
}

template <class Change> QColor changedByPowers(QColor const& c, Change change)
{
    auto const channel = [change](int level) {
        return qBound(0, qRound(255.0 * toEncoded(change(toLinear(level / 255.0)))), 255);
    };
    return QColor(channel(c.red()), channel(c.green()), channel(c.blue()));
}

QColor tintByPowers(QColor const& c, double t)
{
    return changedByPowers(c, [t](double x) { return x * (1.0 - t) + t; });
}

QColor shadeByPowers(QColor const& c, double t)
{
    return changedByPowers(c, [t](double x) { return x * (1.0 - t); });
}

/** Colours and fractions that no branch predictor learns by heart. */
template <class Function> void run(benchmark::State& state, Function function)
{
    unsigned int number = 1;
    for (auto _ : state) {
        number = number * 1664525U + 1013904223U;
        QColor const colour(QRgb(0xff000000U | (number >> 8U)));
        benchmark::DoNotOptimize(function(colour, 0.01 * (1 + number % 99)));
    }
}

void tint(benchmark::State& state)
{
    run(state, [](QColor const& c, double t) { return ColorUtil::tint(c, t); });
}

void tintPeerSixPowers(benchmark::State& state)
{
    run(state, tintByPowers);
}

void shade(benchmark::State& state)
{
    run(state, [](QColor const& c, double t) { return ColorUtil::shade(c, t); });
}

void shadePeerSixPowers(benchmark::State& state)
{
    run(state, shadeByPowers);
}

/** Every name in turn, as a document with many transforms asks for them. */
template <class LookUp> void lookUpAll(benchmark::State& state, LookUp lookUp)
{
    ColorUtil::initColorFunctionMap();
    QStringList const names = ColorUtil::mapColorFuncs.keys();
    int i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(lookUp(names.at(i)));
        i = i + 1 < names.size() ? i + 1 : 0;
    }
}

void getColorFunc(benchmark::State& state)
{
    lookUpAll(state, [](QString const& name) { return ColorUtil::getColorFunc(name); });
}

/** The same signature, which copies the name, around nothing but a look-up. */
[[gnu::noinline]] ColorUtil::ColorFunc lookUpByValue(QString name)
{
    return ColorUtil::mapColorFuncs.value(name);
}

void getColorFuncPeerMapByValue(benchmark::State& state)
{
    lookUpAll(state, lookUpByValue);
}

void getColorFuncPeerMap(benchmark::State& state)
{
    lookUpAll(state, [](QString const& name) { return ColorUtil::mapColorFuncs.value(name); });
}

} // namespace

BENCHMARK(tint);
BENCHMARK(tintPeerSixPowers);
BENCHMARK(shade);
BENCHMARK(shadePeerSixPowers);
BENCHMARK(getColorFunc);
BENCHMARK(getColorFuncPeerMap);
BENCHMARK(getColorFuncPeerMapByValue);
