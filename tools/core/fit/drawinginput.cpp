// SPDX-License-Identifier: MIT
#include "fit/drawinginput.h"

#include "boundedxml_p.h"
#include "document/outlinedocument.h"
#include "document/shapebox.h"
#include "fit/lastplace.h"
#include "import/gunzip.h"
#include "import/svgimport.h"
#include "segmentkind_p.h"

#include <QRegularExpression>

#include <algorithm>

namespace {

/** The drawing of a picture; one of its units is one unit. Colours and line widths are not learnt. */
std::optional<SizedDrawing> drawingOfPicture(QByteArray const& svg, DrawingSource const& source,
    TakeMessages const& takeMessages, Diagnostics& diagnostics)
{
    auto picture = onlyPicture(importSvg(svg, {source.file, 1.0, takeMessages, false}, diagnostics),
        source.file, diagnostics);
    if (!picture)
        return std::nullopt;
    SizedDrawing drawing {source.file, source.box.value_or(picture->size), {}};
    for (ImportedOutline& outline : picture->outlines) {
        drawing.shapes.push_back(
            {outline.name, drawing.box, outline.fillRule, std::move(outline.list)});
    }
    return drawing;
}

std::optional<SizedDrawing> drawingOfDocument(
    OutlineDocument& document, DrawingSource const& source, Diagnostics& diagnostics)
{
    SizedDrawing drawing {source.file, QSizeF(), takeShapes(document, {})};
    if (!drawing.shapes.empty())
        drawing.box = source.box.value_or(drawing.shapes.front().box);
    for (Shape const& shape : drawing.shapes) {
        QSizeF const box = source.box.value_or(shape.box);
        if (!box.isValid() || box != drawing.box) {
            diagnostics.error(source.file,
                box.isValid()
                    ? QStringLiteral("its shapes have boxes of their own: name the one that they "
                                     "were drawn for, as FILE@WxH")
                    : QStringLiteral("it does not tell the box that it was drawn for: name it, as "
                                     "FILE@WxH"));
            return std::nullopt;
        }
    }
    return drawing;
}

std::optional<SizedDrawing> drawingOf(QByteArray const& content, DrawingSource const& source,
    TakeMessages const& takeMessages, Diagnostics& diagnostics)
{
    if (isGzip(content))
        return drawingOfPicture(content, source, takeMessages, diagnostics);
    auto document = OutlineDocument::read(content, source.file, diagnostics);
    if (!document)
        return std::nullopt;
    return document->isSvgPicture() ? drawingOfPicture(content, source, takeMessages, diagnostics)
                                    : drawingOfDocument(*document, source, diagnostics);
}

} // namespace

DrawingSource drawingSource(QString const& text)
{
    int const at = text.lastIndexOf(QLatin1Char('@'));
    static QRegularExpression const separator(QStringLiteral("[xX\u00d7]"));
    QStringList const sides = text.mid(at + 1).split(separator);
    bool isWidth = false;
    bool isHeight = false;
    QSizeF const box(sides.first().toDouble(&isWidth), sides.last().toDouble(&isHeight));
    if (at < 1 || sides.size() != 2 || !isWidth || !isHeight)
        return {text, std::nullopt};
    return {text.left(at), box};
}

std::optional<ReadDrawing> readDrawing(QByteArray const& content, DrawingSource const& source,
    TakeMessages const& takeMessages, Diagnostics& diagnostics)
{
    auto drawing = drawingOf(content, source, takeMessages, diagnostics);
    if (!drawing)
        return std::nullopt;
    auto const unpacked = isGzip(content) ? gunzip(content, BoundedXml::Limits().bytes)
                                          : std::make_optional(Gunzipped {content, false});
    return ReadDrawing {
        std::move(*drawing), lastPlaceOf(unpacked ? unpacked->content : QByteArray())};
}

double toleranceFor(QVector<double> const& lastPlaces, double longestSide)
{
    constexpr double shareOfSide = 1e-5;
    constexpr double shareOfPlace = 0.6;
    constexpr double wholeUnit = 1.0;
    constexpr double greatest = 0.06;
    double tolerance = 0.0;
    for (double const place : lastPlaces) {
        if (place < wholeUnit)
            tolerance = std::max(tolerance, std::min(shareOfPlace * place, greatest));
    }
    return std::max(tolerance > 0.0 ? tolerance : greatest, shareOfSide * longestSide);
}

void scale(SizedDrawing& drawing, double factor)
{
    drawing.box *= factor;
    for (Shape const& shape : drawing.shapes) {
        for (KpPathSeg* const seg : qAsConst(shape.list->segs)) {
            SegmentKind::forEachReal(*seg, [factor](KpReal& real) { real.value *= factor; });
        }
    }
}

std::optional<ReadDrawings> readDrawings(QVector<DrawingSource> const& sources, double factor,
    ReadContent const& readContent, TakeMessages const& takeMessages, Diagnostics& diagnostics)
{
    ReadDrawings all;
    QVector<double> lastPlaces;
    double longestSide = 0.0;
    for (DrawingSource const& source : sources) {
        auto const content = readContent(source.file, diagnostics);
        auto read =
            content ? readDrawing(*content, source, takeMessages, diagnostics) : std::nullopt;
        if (!read)
            return std::nullopt;
        QSizeF const box = read->drawing.box;
        longestSide = std::max({longestSide, box.width(), box.height()});
        scale(read->drawing, factor);
        lastPlaces.append(read->lastPlace);
        all.drawings.push_back(std::move(read->drawing));
    }
    all.tolerance = factor * toleranceFor(lastPlaces, longestSide);
    return all;
}
