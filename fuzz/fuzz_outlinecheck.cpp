// SPDX-License-Identifier: MIT
// Any bytes through the tool's check of a document and through its copy, which must hold the
// same outlines.

#include "boundedxml_p.h"
#include "check/outlinecheck.h"
#include "document/documentrewriter.h"
#include "document/outlinedocument.h"
#include "document/outlinesummary.h"

#include <QBuffer>

#include <algorithm>
#include <cstdint>
#include <cstdlib>

namespace {

std::optional<OutlineDocument> loaded(QByteArray const& text)
{
    Diagnostics diagnostics;
    return OutlineDocument::read(text, QStringLiteral("a.xml"), diagnostics);
}

bool areSame(KpPathSegList& first, KpPathSegList& second)
{
    QVector<int> ints[2];
    QVector<double> doubles[2];
    first.toUndoValue(ints[0], doubles[0]);
    second.toUndoValue(ints[1], doubles[1]);
    return ints[0] == ints[1] && doubles[0].size() == doubles[1].size()
        && std::equal(doubles[0].cbegin(), doubles[0].cend(), doubles[1].cbegin(),
            [](double a, double b) { return !(a < b) && !(a > b) && (a != a) == (b != b); });
}

QByteArray copyOf(QByteArray const& text)
{
    auto const input = repeatableInput(text)();
    QBuffer output;
    output.open(QIODevice::WriteOnly);
    Diagnostics diagnostics;
    auto const edit = [](Outline& /*outline*/) { return true; };
    if (!rewriteDocument(*input, QStringLiteral("a.xml"), output, edit, diagnostics))
        std::abort();
    return output.data();
}

void checkCopy(QByteArray const& original, OutlineDocument& document)
{
    QByteArray const text = copyOf(original);
    BoundedXml::Error error;
    // Written out, what entities stand for may exceed the bounds.
    if (original.contains('&') && !BoundedXml::check(text, error))
        return;
    auto copy = loaded(text);
    if (!copy || copy->outlines().size() != document.outlines().size())
        std::abort();
    for (std::size_t i = 0; i < copy->outlines().size(); ++i) {
        if (!areSame(*copy->outlines()[i].list, *document.outlines()[i].list))
            std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    BoundedXml::Error error;
    QByteArray const text(reinterpret_cast<char const*>(data), static_cast<int>(size));
    auto document = loaded(text);
    // What begins as a file of another kind does may be well-formed all the same.
    if (document && !BoundedXml::check(text, error))
        std::abort();
    if (!document)
        return 0;
    Diagnostics diagnostics;
    checkOutlines(
        repeatableInput(text), QStringLiteral("a.xml"), CheckScope::Everything,
        [](Diagnostic const& /*finding*/) {}, diagnostics);
    if (!diagnostics.isEmpty())
        std::abort();
    for (Outline const& outline : document->outlines())
        summaryOf(*outline.list);
    checkCopy(text, *document);
    return 0;
}
