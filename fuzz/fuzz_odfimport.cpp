// Any bytes as an OpenDocument drawing, packed or flat: outlines or one reason.

#include "import/odfimport.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    QByteArray const content(reinterpret_cast<char const*>(data), static_cast<int>(size));
    Diagnostics diagnostics;
    auto const pictures = importOdf(content, {QStringLiteral("a.odg"), 0.0}, diagnostics);
    if (!pictures && diagnostics.isEmpty())
        std::abort();
    return 0;
}
