// SPDX-License-Identifier: MIT
#include "exchange/exporting.h"

#include "document/shapebox.h"
#include "export/custgeom.h"
#include "export/htmlpage.h"
#include "export/pathdata.h"
#include "paint/drawing.h"

namespace {

Shapes shapesOf(Items const& items)
{
    Shapes shapes;
    for (ItemPointer const& item : items)
        shapes.push_back({item->name, item->box, item->fillRule, outlineOf(item->outline)});
    return shapes;
}

PictureFormat pictureFormatOf(ExportFormat format)
{
    switch (format) {
    case ExportFormat::Png:
        return PictureFormat::Png;
    case ExportFormat::Pdf:
        return PictureFormat::Pdf;
    default:
        return PictureFormat::Svg;
    }
}

std::optional<QByteArray> picture(
    ExportInput const& input, ExportFormat format, Diagnostics& diagnostics)
{
    PictureSettings settings;
    settings.format = pictureFormatOf(format);
    settings.title = QStringLiteral("Outlines of %1").arg(input.name);
    return toFile(pictureOf(input.items), settings, input.name, diagnostics);
}

std::optional<QByteArray> customGeometry(ExportInput const& input, Diagnostics& diagnostics)
{
    Shapes const shapes = shapesOf(input.items);
    return custGeomDocument({{input.name, input.name, boxOf(shapes), shapes}}, diagnostics);
}

QByteArray page(ExportInput const& input)
{
    Shapes const shapes = shapesOf(input.items);
    return htmlPage(shapes, {input.name, boxOf(shapes), false, {}});
}

/** A line an outline. */
std::optional<QByteArray> paths(ExportInput const& input, Diagnostics& diagnostics)
{
    QByteArray lines;
    int index = 0;
    for (ItemPointer const& item : input.items) {
        ++index;
        auto const data = pathData(*outlineOf(item->outline), {});
        if (!data) {
            diagnostics.error(input.name,
                QStringLiteral("a coordinate of outline %1 is infinite, NaN or too large")
                    .arg(index));
            return std::nullopt;
        }
        lines += data->toUtf8() + '\n';
    }
    return lines;
}

} // namespace

std::array<ExportKind, 6> const& exportKinds()
{
    static constexpr std::array<ExportKind, 6> all {{
        {ExportFormat::Svg, "svg", "SVG Picture", "svg"},
        {ExportFormat::Png, "png", "PNG Picture", "png"},
        {ExportFormat::Pdf, "pdf", "PDF Page", "pdf"},
        {ExportFormat::Html, "html", "HTML Page with a Box to Drag", "html"},
        {ExportFormat::CustomGeometry, "custgeom", "DrawingML Custom Geometry", "custgeom.xml"},
        {ExportFormat::PathData, "path-data", "Path Data", "txt"},
    }};
    return all;
}

Figure figureOf(Items const& items)
{
    Figure figure;
    for (ItemPointer const& item : items)
        figure.parts.push_back({outlineOf(item->outline), item->fillRule, item->appearance});
    return figure;
}

Picture pictureOf(Items const& items)
{
    return drawing(figureOf(items), {});
}

std::optional<QByteArray> exported(
    ExportInput const& input, ExportFormat format, Diagnostics& diagnostics)
{
    if (input.items.empty()) {
        diagnostics.error(input.name, QStringLiteral("there is no outline to be exported"));
        return std::nullopt;
    }
    switch (format) {
    case ExportFormat::Svg:
    case ExportFormat::Png:
    case ExportFormat::Pdf:
        return picture(input, format, diagnostics);
    case ExportFormat::Html:
        return page(input);
    case ExportFormat::CustomGeometry:
        return customGeometry(input, diagnostics);
    case ExportFormat::PathData:
        return paths(input, diagnostics);
    }
    return std::nullopt;
}
