// SPDX-License-Identifier: MIT
#include "exchange/importing.h"

#include "document/shapebox.h"
#include "fit/presetfit.h"
#include "import/anyimport.h"
#include "import/drawingmlimport.h"
#include "import/textimport.h"
#include "process/messagelog.h"

namespace {

/** Nothing, with a diagnostic, if there is no outline among the shapes. */
std::optional<Items> someItems(Shapes const& shapes, QString const& file, Diagnostics& diagnostics)
{
    if (!shapes.empty())
        return itemsOf(shapes);
    diagnostics.error(file, QStringLiteral("nothing in it becomes an outline"));
    return std::nullopt;
}

/** All shapes whose rules can be learnt. */
std::optional<Items> learntItems(std::optional<std::vector<ShapeDefinition>> const& definitions,
    QString const& file, Diagnostics& diagnostics)
{
    if (!definitions)
        return std::nullopt;
    Shapes all;
    for (ShapeDefinition const& definition : *definitions) {
        auto const learnt = learntShape(definition, {}, file, diagnostics);
        if (learnt)
            all.insert(all.end(), learnt->shapes.begin(), learnt->shapes.end());
    }
    return someItems(all, file, diagnostics);
}

} // namespace

Items itemsOf(Shapes const& shapes)
{
    Items items;
    for (Shape const& shape : shapes) {
        QSizeF const box = shape.box.isEmpty() ? boxOf({shape}) : shape.box;
        items.push_back(std::make_shared<ShapeItem const>(
            ShapeItem {shape.name, box, shape.fillRule, recordOf(*shape.list), {}, -1}));
    }
    return items;
}

Items newItems(Items const& items)
{
    Items copies;
    for (ItemPointer const& item : items) {
        ShapeItem copy = *item;
        copy.origin = -1;
        copies.push_back(std::make_shared<ShapeItem const>(copy));
    }
    return copies;
}

std::optional<Items> importedItems(
    QByteArray const& content, QString const& file, Diagnostics& diagnostics)
{
    if (holdsCustomShapes(content))
        return learntItems(readCustomShapes(content, file, diagnostics), file, diagnostics);
    MessageLog log;
    QuietStandardError const quiet;
    TakeMessages const takeMessages = [&log] { return log.take(); };
    auto pictures = importAny(content, {file, 0.0, takeMessages}, diagnostics);
    if (!pictures)
        return std::nullopt;
    return someItems(shapesOf(std::move(*pictures)), file, diagnostics);
}

std::optional<Items> glyphItems(
    QString const& text, QString const& fontFile, Diagnostics& diagnostics)
{
    MessageLog log;
    TextImportOptions options;
    options.fontFile = fontFile;
    options.takeMessages = [&log] { return log.take(); };
    auto picture = importText(text, options, diagnostics);
    if (!picture)
        return std::nullopt;
    ImportedPictures pictures;
    pictures.push_back(std::move(*picture));
    return someItems(shapesOf(std::move(pictures)), fontFile, diagnostics);
}

std::optional<Items> presetItems(
    QByteArray const& content, QString const& file, Diagnostics& diagnostics)
{
    return learntItems(readPresetShapes(content, file, diagnostics), file, diagnostics);
}
