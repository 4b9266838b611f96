// SPDX-License-Identifier: MIT
// Any bytes as an SVG picture, packed or not: outlines that fill as painted, or one reason.

#include "diagnosticproperties.h"
#include "import/svgimport.h"
#include "pictureproperties.h"

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/)
{
    Fuzzing::prepareForImports();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    QByteArray const svg = Fuzzing::bytes(data, size);
    // The input is the file and nothing else; the scale follows from something that changes.
    constexpr double scales[] = {0.0, 0.0, 1.0, 0.01, 1000.0};
    double const scale = scales[size % std::size(scales)];
    Fuzzing::requireImport([&](Diagnostics& diagnostics) {
        return importSvg(
            svg, {QStringLiteral("a.svg"), scale, Fuzzing::noMessages(), true, true}, diagnostics);
    });
    return 0;
}
