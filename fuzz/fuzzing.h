// SPDX-License-Identifier: MIT
#ifndef FUZZING_H
#define FUZZING_H

#include <QByteArray>
#include <QString>
#include <QtGlobal>

#include <fuzzer/FuzzedDataProvider.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>

/** What fuzz targets share: telling a fault, and values out of an input. */
namespace Fuzzing {

/** Ends the process, which libFuzzer takes for a fault, unless `holds`; `promise` says what should. */
inline void require(bool holds, char const* promise)
{
    if (holds)
        return;
    std::fprintf(stderr, "broken: %s\n", promise);
    std::abort();
}

/** From now on whatever is logged is a fault: the library logs nothing. */
inline void forbidLog()
{
    qInstallMessageHandler([](QtMsgType, QMessageLogContext const&, QString const& message) {
        std::fprintf(stderr, "logged: %s\n", qPrintable(message));
        std::abort();
    });
}

/** The input as text. The bytes are not copied and must outlive it. */
inline QByteArray bytes(std::uint8_t const* data, std::size_t size)
{
    return QByteArray::fromRawData(reinterpret_cast<char const*>(data), static_cast<int>(size));
}

/** Equality of the bit patterns. */
inline bool areSameBits(double left, double right)
{
    return std::memcmp(&left, &right, sizeof left) == 0;
}

/** A double that is often awkward: any bit pattern, a special one, a small count, a fraction. */
inline double awkwardReal(FuzzedDataProvider& input)
{
    using Limits = std::numeric_limits<double>;
    static constexpr std::array<double, 24> specials {0.0, -0.0, 1.0, -1.0, 0.5, -0.5, 0.001, 1e-5,
        255.0, 360.0, 32767.5, 999999.5, 2147483647.0, 2147483648.0, -2147483648.0, -2147483649.0,
        1e15, 1e300, Limits::max(), Limits::lowest(), Limits::denorm_min(), Limits::infinity(),
        -Limits::infinity(), Limits::quiet_NaN()};
    switch (input.ConsumeIntegralInRange(0, 3)) {
    case 0:
        return input.PickValueInArray(specials);
    case 1:
        return input.ConsumeIntegral<std::int8_t>();
    case 2:
        return input.ConsumeIntegral<std::int32_t>() / 1024.0;
    default: {
        auto const bits = input.ConsumeIntegral<std::uint64_t>();
        double number = 0.0;
        std::memcpy(&number, &bits, sizeof number);
        return number;
    }
    }
}

} // namespace Fuzzing

#endif // FUZZING_H
