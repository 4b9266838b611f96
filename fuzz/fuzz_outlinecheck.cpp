// Any bytes through the tool's check of a document.

#include "boundedxml_p.h"
#include "outlinecheck.h"
#include "outlinefacts.h"

#include <QTemporaryFile>

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    BoundedXml::Error error;
    QByteArray const text(reinterpret_cast<char const*>(data), static_cast<int>(size));
    // What is not XML is the loader's business, and would only fill the screen with messages.
    if (!BoundedXml::check(text, error))
        return 0;
    QTemporaryFile file;
    if (!file.open() || file.write(text) != text.size() || !file.flush())
        std::abort();
    auto document = OutlineDocument::load(file.fileName());
    if (!document)
        std::abort();
    checkOutlines(*document);
    for (Outline const& outline : document->outlines())
        factsOf(*outline.list);
    document->toXml();
    return 0;
}
