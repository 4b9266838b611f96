// SPDX-License-Identifier: MIT
// Any text as a document, with numbers behind a NUL: a document does not differ from itself nor from
// its normalised form, which normalising leaves as it is; differences are the same in both
// directions; and a copy in another box holds what the outlines become there.

#include "check/outlinecheck.h"
#include "check/outlinediff.h"
#include "choiceoutline.h"
#include "diagnosticproperties.h"
#include "document/documentnormalizer.h"
#include "document/documentrewriter.h"
#include "document/exactcopy.h"
#include "documentproperties.h"
#include "writtenoutline.h"

#include <QBuffer>
#include <QXmlStreamReader>

#include <algorithm>

namespace {

using Fuzzing::documentName;
using Fuzzing::documentOf;
using Fuzzing::require;

int differencesOf(
    OutlineDocument const& before, OutlineDocument const& after, std::optional<double> tolerance)
{
    int count = 0;
    reportDifferences(before, after, tolerance, [&count](OutlineDifference const& difference) {
        require(!differenceText(difference).isEmpty(), "a difference is told");
        ++count;
        return true;
    });
    return count;
}

QByteArray normalized(QByteArray const& text)
{
    QBuffer output;
    output.open(QIODevice::WriteOnly);
    Diagnostics diagnostics;
    require(normalizeDocument(repeatableInput(text), documentName(), output, diagnostics),
        "what can be read can be normalised");
    require(!Fuzzing::hasError(diagnostics), "normalising warns at most");
    return output.data();
}

Diagnostics findingsIn(QByteArray const& text)
{
    Diagnostics findings;
    Diagnostics diagnostics;
    checkOutlines(
        repeatableInput(text), documentName(), CheckScope::Reading,
        [&findings](Diagnostic const& finding) { findings.add(finding); }, diagnostics);
    require(diagnostics.isEmpty(), "what can be read can be checked");
    return findings;
}

/** Whether a reader that knows namespaces ends early: it meets a prefix that nobody has declared. */
bool stopsStreamReader(QByteArray const& text)
{
    QXmlStreamReader reader(text);
    while (!reader.atEnd())
        reader.readNext();
    return reader.hasError();
}

/** Whether normalising leaves out elements that readers ignore, with an outline in one of them. */
bool losesOutlines(QByteArray const& text, OutlineDocument const& document)
{
    auto const& outlines = document.outlines();
    bool const hasNested = std::any_of(
        outlines.begin(), outlines.end(), [](Outline const& outline) { return outline.isInside; });
    Diagnostics told = findingsIn(text);
    QBuffer output;
    output.open(QIODevice::WriteOnly);
    normalizeDocument(repeatableInput(text), documentName(), output, told);
    return hasNested && std::any_of(told.begin(), told.end(), [](Diagnostic const& diagnostic) {
        return diagnostic.text.contains(QStringLiteral("given again"))
            || diagnostic.text.contains(QStringLiteral("left out"));
    });
}

void requireNormalForm(QByteArray const& text, OutlineDocument const& document)
{
    QByteArray const once = normalized(text);
    if (!Fuzzing::mustBeReadable(text, once))
        return;
    auto const read = documentOf(once);
    require(read.has_value(), "a normalised document can be read");
    require(differencesOf(document, *read, std::nullopt) == 0 || losesOutlines(text, document),
        "normalising changes no outline");
    // What a prefix means cannot be mended: it is told, and so is an outline that it cuts off.
    int const mostFindings = stopsStreamReader(text) ? 2 : 0;
    require(findingsIn(once).size() <= mostFindings, "a normalised document reads as it looks");
    require(normalized(once) == once, "a normalised document stays as it is");
}

QByteArray resized(QByteArray const& text, QSizeF const& from, QSizeF const& to)
{
    auto const input = repeatableInput(text)();
    QBuffer output;
    output.open(QIODevice::WriteOnly);
    Diagnostics diagnostics;
    auto const edit = [&](Outline& outline) {
        outline.list->updateRate(from.width(), from.height());
        outline.list->updateValue(to.width(), to.height());
        return true;
    };
    require(rewriteDocument(*input, documentName(), output, edit, diagnostics),
        "what can be read can be rewritten");
    return output.data();
}

void requireResized(OutlineDocument const& before, OutlineDocument const& after, QSizeF const& from,
    QSizeF const& to)
{
    require(after.outlines().size() == before.outlines().size(), "a copy has all outlines");
    for (std::size_t i = 0; i < before.outlines().size(); ++i) {
        auto const list = exactCopy(*before.outlines()[i].list);
        list->updateRate(from.width(), from.height());
        list->updateValue(to.width(), to.height());
        require(Fuzzing::asWritten(*after.outlines()[i].list) == Fuzzing::asWritten(*list),
            "a copy holds the outlines of the other box");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    Fuzzing::TextAndChoices input(Fuzzing::bytes(data, size));
    auto const document = documentOf(input.text);
    if (!document)
        return 0;
    require(differencesOf(*document, *document, std::nullopt) == 0,
        "a document does not differ from itself");
    requireNormalForm(input.text, *document);
    QSizeF const from = Fuzzing::boxFrom(input.choices);
    QSizeF const to = Fuzzing::boxFrom(input.choices);
    QByteArray const copy = resized(input.text, from, to);
    if (!Fuzzing::mustBeReadable(input.text, copy))
        return 0;
    auto const other = documentOf(copy);
    require(other.has_value(), "a copy can be read");
    requireResized(*document, *other, from, to);
    for (std::optional<double> const tolerance : {std::optional<double>(), std::optional(0.5)}) {
        bool const differs = differencesOf(*document, *other, tolerance) > 0;
        require(differs == (differencesOf(*other, *document, tolerance) > 0),
            "documents differ in both directions or in none");
    }
    return 0;
}
