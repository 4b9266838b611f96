// SPDX-License-Identifier: MIT
// Any text as a document of the editor, with edits behind a NUL: unchanged it is written to the byte,
// what was changed is read back, what was not stays as it is, and without the edits the bytes are
// those of the file.

#include "choiceoutline.h"
#include "diagnosticproperties.h"
#include "documentproperties.h"
#include "files/sourcedocument.h"
#include "writtenoutline.h"

namespace {

using Fuzzing::Choices;
using Fuzzing::require;

SourceReading readingOf(QByteArray const& text)
{
    Diagnostics diagnostics;
    auto const reading = readSource(text, Fuzzing::documentName(), diagnostics);
    require(reading.document != nullptr || reading.kind == SourceKind::Picture
            || Fuzzing::hasError(diagnostics),
        "what cannot be read has a reason");
    return reading;
}

void change(WorkingShape& shape, Choices& choices)
{
    switch (choices.bounded(6)) {
    case 0:
        shape.name = QStringLiteral("n<&\"%1").arg(choices.byte());
        break;
    case 1:
        shape.box = Fuzzing::boxFrom(choices);
        break;
    case 2:
        shape.fillRule = choices.flag() ? Qt::OddEvenFill : Qt::WindingFill;
        break;
    case 3:
        shape.list->removeAt(choices.byte(), true);
        break;
    case 4:
        shape.list = Fuzzing::outlineFrom(choices, 8);
        break;
    default:
        shape.list->closed = !shape.list->closed;
        shape.list->translate(choices.real(), choices.real());
        break;
    }
}

ItemPointer changed(ShapeItem const& item, Choices& choices)
{
    WorkingShape shape = workingShapeOf(item);
    change(shape, choices);
    return std::make_shared<ShapeItem const>(itemOf(shape));
}

/** Changes, removes, doubles or moves one of them. */
void edit(Items& items, Choices& choices)
{
    if (items.empty())
        return;
    auto const place = items.begin() + choices.bounded(static_cast<int>(items.size()));
    switch (choices.bounded(6)) {
    case 0:
        items.erase(place);
        break;
    case 1:
        items.insert(place, *place);
        break;
    case 2:
        std::rotate(items.begin(), place, items.end());
        break;
    default:
        *place = changed(**place, choices);
        break;
    }
}

/** What a document holds of an item. Where there is no place, names and boxes are not written. */
QString asWritten(ShapeItem const& item, bool hasPlace)
{
    QString const outline = Fuzzing::asWritten(*outlineOf(item.outline));
    return hasPlace ? item.name + QLatin1Char('|') + outline : outline;
}

void requireItems(Items const& items, WrittenDocument const& document)
{
    auto const reading = readingOf(document.bytes);
    // Without outlines it may be taken for a file of another format.
    if (items.empty() && reading.kind == SourceKind::Picture)
        return;
    require(reading.document != nullptr, "an edited document can be read");
    Items const read = reading.document->items();
    require(read.size() == items.size(), "an edited document has all outlines");
    bool const hasPlace = document.withoutPlace == 0;
    for (std::size_t i = 0; i < items.size(); ++i) {
        require(asWritten(*read[i], hasPlace) == asWritten(*items[i], hasPlace),
            "an edited document holds the outlines");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    Fuzzing::TextAndChoices input(Fuzzing::bytes(data, size));
    auto const reading = readingOf(input.text);
    if (!reading.document)
        return 0;
    SourceDocument const& source = *reading.document;
    Items const original = source.items();
    require(source.write(original) == input.text, "unchanged, a document is its file to the byte");
    Items items = original;
    for (int i = 0; i < 8 && !input.choices.isAtEnd(); ++i)
        edit(items, input.choices);
    WrittenDocument const written = source.written(items);
    require(source.write(items) == written.bytes, "the same items give the same bytes");
    if (Fuzzing::mustBeReadable(input.text, written.bytes))
        requireItems(items, written);
    require(source.write(original) == input.text, "without its edits it is the file to the byte");
    return 0;
}
