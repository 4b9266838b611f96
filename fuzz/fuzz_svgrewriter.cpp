// SPDX-License-Identifier: MIT
// Any bytes through the guard of SVG pictures and what is handed to Qt SVG instead: XML that can be
// read, in which nothing is left to be rewritten, and no file or image is named.

#include "import/svgguard.h"
#include "import/svgrewriter.h"

#include <QXmlStreamReader>

#include <cstdint>
#include <cstdlib>

namespace {

QString const file = QStringLiteral("a.svg");

void require(bool condition)
{
    if (!condition)
        std::abort();
}

/** An element that Qt SVG does not know or must not see, by its name without a prefix. */
bool isForeign(QString const& name, bool isRoot)
{
    QString const local = name.mid(name.indexOf(QLatin1Char(':')) + 1);
    return local == QLatin1String("symbol") || local == QLatin1String("image")
        || (local == QLatin1String("svg") && !isRoot);
}

void checkText(QByteArray const& text)
{
    QXmlStreamReader reader(text);
    reader.setNamespaceProcessing(false);
    bool isRoot = true;
    while (!reader.atEnd()) {
        reader.readNext();
        require(!reader.isProcessingInstruction());
        if (reader.isStartElement()) {
            require(!isForeign(reader.qualifiedName().toString(), isRoot));
            isRoot = false;
        }
    }
    require(!reader.hasError());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    Diagnostics diagnostics;
    QByteArray const svg(reinterpret_cast<char const*>(data), static_cast<int>(size));
    auto const text = guardedSvg(svg, file, diagnostics);
    if (!text)
        return 0;
    for (SvgLabels const labels : {SvgLabels::AreMarked, SvgLabels::AreLeftOut}) {
        auto const rewritten = rewrittenSvg(*text, labels, file, diagnostics);
        require(rewritten.has_value());
        checkText(rewritten->text);
        require(rewritten->text == *text || rewritten->text.count('\n') >= text->count('\n'));
        // It may go too deep now, but that must be found out.
        useFault(rewritten->text);
    }
    return 0;
}
