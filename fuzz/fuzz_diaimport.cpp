// SPDX-License-Identifier: MIT
// Any bytes as a shape file of Dia: outlines that fill as painted, or one reason.

#include "diagnosticproperties.h"
#include "import/diaimport.h"
#include "pictureproperties.h"

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/)
{
    Fuzzing::prepareForImports();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    QByteArray const shape = Fuzzing::bytes(data, size);
    double const scale = size % 3 == 0 ? 1.0 : 0.0;
    auto const import = [&](Diagnostics& diagnostics) -> std::optional<ImportedPictures> {
        auto picture = importDia(shape,
            {QStringLiteral("a.shape"), scale, Fuzzing::noMessages(), true, true}, diagnostics);
        if (!picture)
            return std::nullopt;
        ImportedPictures pictures;
        pictures.push_back(std::move(*picture));
        return pictures;
    };
    Fuzzing::requireImport(import, Fuzzing::Placing::Resized);
    return 0;
}
