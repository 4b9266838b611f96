// SPDX-License-Identifier: MIT
// Any bytes as an OpenDocument drawing: outlines that fill as painted, or one reason. What begins as
// a zip file or as XML is taken as it is. Anything else is put into a zip file: the first byte tells
// how, then come content and styles with a NUL between them.

#include "../tests/ziptesting.h"
#include "choices.h"
#include "diagnosticproperties.h"
#include "import/odfimport.h"
#include "import/zipmember.h"
#include "pictureproperties.h"

namespace {

QByteArray packed(QByteArray const& input)
{
    Fuzzing::Choices choices(input);
    bool const isDeflated = choices.flag();
    Fuzzing::TextAndChoices parts(choices.rest());
    return ZipTesting::zipOf({{"mimetype", "application/vnd.oasis.opendocument.graphics"},
        {"styles.xml", parts.choices.rest(), !isDeflated},
        {"content.xml", parts.text, isDeflated}});
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/)
{
    Fuzzing::prepareForImports();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    QByteArray const input = Fuzzing::bytes(data, size);
    bool const isFile = isZip(input) || input.startsWith('<');
    QByteArray const content = isFile ? input : packed(input);
    double const scale = size % 3 == 0 ? 1.0 : 0.0;
    Fuzzing::requireImport([&](Diagnostics& diagnostics) {
        return importOdf(content, {QStringLiteral("a.odg"), scale, true}, diagnostics);
    });
    return 0;
}
