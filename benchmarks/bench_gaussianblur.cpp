// SPDX-License-Identifier: MIT
// The blur of a picture of 1920 by 1080, against a copy of its memory, a scalar stack blur, and
// the Gaussian and box blurs of an image library, each into a result that is allocated anew; and
// of one of 7680 by 4320, against 16 of the former, which have as many pixels. All with one thread.

#include "gaussianblur.h"
#include "stackblur_p.h"

#include <QGuiApplication>

#include <benchmark/benchmark.h>
#include <opencv2/core/utility.hpp>
#include <opencv2/imgproc.hpp>

#include <cmath>
#include <cstring>
#include <utility>
#include <vector>

namespace {

/** Any premultiplied pixels. */
QImage picture(int width, int height)
{
    QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
    quint32 state = 1;
    for (int y = 0; y < height; ++y) {
        auto* const row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < width; ++x) {
            state = state * 1664525U + 1013904223U;
            row[x] = qPremultiply(state);
        }
    }
    return image;
}

cv::Mat matrix(QImage& image)
{
    return cv::Mat(
        image.height(), image.width(), CV_8UC4, image.bits(), std::size_t(image.bytesPerLine()));
}

StackBlur::Kernel kernelOf(benchmark::State const& state)
{
    int const radius = int(state.range(0));
    quint32 const flatness = quint32(state.range(1));
    quint32 const side = quint32(radius) + 1;
    return {radius, flatness, flatness * (2 * side - 1) + side * side};
}

void blurBitmap(benchmark::State& state, int width, int height)
{
    QImage const image = picture(width, height);
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            GaussianBlur::blurBitmap(image, unsigned(state.range(0)), unsigned(state.range(1))));
    }
}

/** Of a picture that belongs to nobody else. */
void blurMoved(benchmark::State& state, int width, int height)
{
    QImage const image = picture(width, height);
    for (auto _ : state) {
        state.PauseTiming();
        QImage own = image.copy();
        state.ResumeTiming();
        benchmark::DoNotOptimize(GaussianBlur::blurBitmap(
            std::move(own), unsigned(state.range(0)), unsigned(state.range(1))));
    }
}

void scalarBlur(benchmark::State& state, int width, int height)
{
    QImage const image = picture(width, height);
    for (auto _ : state) {
        QImage copy = image;
        quint8* const data = copy.bits();
        StackBlur::blurPlain(
            {data, copy.bytesPerLine(), data, copy.bytesPerLine(), width, height}, kernelOf(state));
        benchmark::DoNotOptimize(QPixmap::fromImage(copy));
    }
}

constexpr int width = 1920;
constexpr int height = 1080;
constexpr int times = 4; ///< as wide and as high is the large picture

void copyOfMemory(benchmark::State& state)
{
    QImage const image = picture(width, height);
    std::vector<char> copy(std::size_t(image.sizeInBytes()));
    for (auto _ : state) {
        std::memcpy(copy.data(), image.constBits(), copy.size());
        benchmark::ClobberMemory();
    }
}

void ours(benchmark::State& state)
{
    blurBitmap(state, width, height);
}

void oursMoved(benchmark::State& state)
{
    blurMoved(state, width, height);
}

void largeOurs(benchmark::State& state)
{
    blurBitmap(state, times * width, times * height);
}

void largeOursMoved(benchmark::State& state)
{
    blurMoved(state, times * width, times * height);
}

void largeInParts(benchmark::State& state)
{
    QImage const image = picture(width, height);
    for (auto _ : state) {
        for (int i = 0; i < times * times; ++i)
            benchmark::DoNotOptimize(GaussianBlur::blurBitmap(
                image, unsigned(state.range(0)), unsigned(state.range(1))));
    }
}

void scalar(benchmark::State& state)
{
    scalarBlur(state, width, height);
}

void smallOurs(benchmark::State& state)
{
    blurBitmap(state, 64, 64);
}

void smallScalar(benchmark::State& state)
{
    scalarBlur(state, 64, 64);
}

/** Of the same span and the same variance. */
void peerGaussian(benchmark::State& state)
{
    QImage image = picture(width, height);
    int const radius = int(state.range(0));
    double const sigma = std::sqrt(radius * (radius + 2) / 6.0);
    for (auto _ : state) {
        cv::Mat result;
        cv::GaussianBlur(matrix(image), result, cv::Size(2 * radius + 1, 2 * radius + 1), sigma,
            sigma, cv::BORDER_REPLICATE);
        benchmark::DoNotOptimize(result.data);
    }
}

void peerTwoBoxes(benchmark::State& state)
{
    QImage image = picture(width, height);
    int const span = 2 * int(state.range(0)) + 1;
    for (auto _ : state) {
        cv::Mat between;
        cv::Mat result;
        cv::blur(
            matrix(image), between, cv::Size(span, span), cv::Point(-1, -1), cv::BORDER_REPLICATE);
        cv::blur(between, result, cv::Size(span, span), cv::Point(-1, -1), cv::BORDER_REPLICATE);
        benchmark::DoNotOptimize(result.data);
    }
}

void kernels(benchmark::internal::Benchmark* benchmark)
{
    benchmark->ArgNames({"radius", "flatness"})->Unit(benchmark::kMillisecond);
    benchmark->ArgsProduct({{1, 2, 3, 5, 10, 15, 16, 20, 50, 127, 128, 254}, {0, 1, 16, 977}});
}

void someKernels(benchmark::internal::Benchmark* benchmark)
{
    benchmark->ArgNames({"radius", "flatness"})->Unit(benchmark::kMillisecond);
    benchmark->ArgsProduct({{3, 20, 254}, {0, 16}});
}

void radii(benchmark::internal::Benchmark* benchmark)
{
    benchmark->ArgName("radius")->Unit(benchmark::kMillisecond);
    for (int const radius : {1, 2, 3, 5, 10, 15, 16, 20, 50, 127, 128, 254})
        benchmark->Arg(radius);
}

BENCHMARK(copyOfMemory)->Unit(benchmark::kMillisecond);
BENCHMARK(ours)->Apply(kernels);
BENCHMARK(oursMoved)->Apply(someKernels);
BENCHMARK(largeOurs)->Apply(someKernels);
BENCHMARK(largeOursMoved)->Apply(someKernels);
BENCHMARK(largeInParts)->Apply(someKernels);
BENCHMARK(scalar)->Apply(someKernels);
BENCHMARK(peerGaussian)->Apply(radii);
BENCHMARK(peerTwoBoxes)->Apply(radii);
BENCHMARK(smallOurs)->Apply(someKernels)->Unit(benchmark::kMicrosecond);
BENCHMARK(smallScalar)->Apply(someKernels)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication const application(argc, argv);
    cv::setNumThreads(1);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
}
