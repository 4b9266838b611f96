// SPDX-License-Identifier: MIT
// Any outlines as path data, as a page and as DrawingML: what can be read back is where it was.

#include "choiceoutline.h"
#include "diagnosticproperties.h"
#include "document/exactcopy.h"
#include "export/custgeom.h"
#include "export/htmlpage.h"
#include "export/pathdata.h"
#include "import/drawingmlimport.h"
#include "import/pathdataparser.h"
#include "segmentkind_p.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>
#include <limits>

namespace {

using Fuzzing::Choices;
using Fuzzing::require;

QString const file = QStringLiteral("a.xml");

bool hasEllipse(KpPathSegList const& list)
{
    return std::any_of(list.segs.cbegin(), list.segs.cend(),
        [](KpPathSeg* segment) { return segment->type == KpPathSeg::SegEllipse; });
}

std::vector<double> valuesOf(KpPathSegList const& list)
{
    std::vector<double> values;
    for (KpPathSeg* const segment : list.segs) {
        SegmentKind::forEachReal(
            *segment, [&](KpReal const& real) { values.push_back(real.value); });
    }
    return values;
}

/** Without moves from which nothing is drawn. */
std::vector<double> drawnValuesOf(KpPathSegList const& list)
{
    std::vector<double> values;
    for (int i = 0; i < list.segs.size(); ++i) {
        bool const isMove = list.segs.at(i)->type == KpPathSeg::SegMoveTo;
        if (isMove
            && (i + 1 == list.segs.size() || list.segs.at(i + 1)->type == KpPathSeg::SegMoveTo))
            continue;
        SegmentKind::forEachReal(
            *list.segs.at(i), [&](KpReal const& real) { values.push_back(real.value); });
    }
    return values;
}

double largestOf(std::vector<double> const& values)
{
    double largest = 0.0;
    for (double const value : values)
        largest = std::max(largest, std::fabs(value));
    return largest;
}

/** A coordinate is off by half a unit of its last place at most, however many there are. */
void requirePathData(KpPathSegList const& list, PathDataOptions const& options)
{
    auto const text = pathData(list, options);
    if (!text)
        return;
    KpPathSegList read;
    require(!parsePathData(*text, read), "path data that is written can be read");
    // An ellipse becomes arcs, and those curves; what begins with a line gets a move before it, and a
    // move at the end draws nothing.
    bool const isAlike = !hasEllipse(list) && !list.segs.isEmpty()
        && list.segs.first()->type == KpPathSeg::SegMoveTo
        && list.segs.last()->type != KpPathSeg::SegMoveTo;
    if (!isAlike)
        return;
    require(read.closed == list.closed, "path data closes what is closed");
    std::vector<double> const wanted = valuesOf(list);
    std::vector<double> const values = valuesOf(read);
    // Moves that nothing is drawn from may be left out.
    if (values.size() != wanted.size())
        return;
    double const digits = largestOf(wanted) * 1e-14 * static_cast<double>(wanted.size());
    double const most = digits
        + (options.decimals ? 0.5000001 * std::pow(10.0, -*options.decimals)
                            : largestOf(wanted) * 5.000001e-6);
    for (std::size_t i = 0; i < wanted.size(); ++i)
        require(std::fabs(values[i] - wanted[i]) <= most, "path data is where the outline is");
}

/** The data of a page, which must not end the element around it. */
void requirePage(Shapes const& shapes, PageSettings const& settings)
{
    QByteArray const page = htmlPage(shapes, settings);
    require(page == htmlPage(shapes, settings), "a page is made of the same bytes again");
    int const begin = page.indexOf('>', page.indexOf("application/json")) + 1;
    QByteArray const data = page.mid(begin, page.indexOf("</script>", begin) - begin);
    QJsonObject const object = QJsonDocument::fromJson(data).object();
    QJsonArray const outlines = object.value(QStringLiteral("outlines")).toArray();
    require(outlines.size() == static_cast<int>(shapes.size()), "a page has all outlines");
    for (int i = 0; i < outlines.size(); ++i) {
        Shape const& shape = shapes[static_cast<std::size_t>(i)];
        QJsonObject const outline = outlines.at(i).toObject();
        require(outline.value(QStringLiteral("name")).toString() == shape.name,
            "a page has the names as they are");
        require(
            outline.value(QStringLiteral("segments")).toArray().size() == shape.list->segs.size(),
            "a page has all segments");
    }
}

double distanceTo(double value, std::vector<double> const& others)
{
    double distance = std::numeric_limits<double>::infinity();
    for (double const other : others)
        distance = std::min(distance, std::fabs(other - value));
    return distance;
}

/** That every coordinate of the outline in a box is one of the shape in DrawingML there. */
void requirePlaces(KpPathSegList& list, QSizeF const& box, Shapes const& read, double scale)
{
    std::vector<double> values;
    for (Shape const& shape : read) {
        for (double const value : valuesOf(*shape.list))
            values.push_back(value);
    }
    auto const placed = exactCopy(list);
    placed->updateValue(box.width(), box.height());
    double const side = std::max(box.width(), box.height()) * scale;
    for (double const value : drawnValuesOf(*placed)) {
        double const most = 1.0 + side * 1.1e-6 + std::fabs(value) * scale * 1e-9;
        require(distanceTo(value * scale, values) <= most,
            "DrawingML places a coordinate where its rule does");
    }
}

void requireCustomShape(Shape const& shape, QSizeF const& box, QSizeF const& otherBox)
{
    Diagnostics diagnostics;
    auto const text = custGeomDocument(
        {{shape.name, file, box, {{shape.name, box, shape.fillRule, shape.list}}}}, diagnostics);
    Fuzzing::requireReason(text.has_value(), diagnostics);
    if (!text)
        return;
    auto const definitions = readCustomShapes(*text, file, diagnostics);
    bool const isDrawn = !drawnValuesOf(*shape.list).empty();
    if (!isDrawn)
        return;
    require(definitions && definitions->size() == 1, "DrawingML that is written can be read");
    double const scale = unitScale(box);
    std::vector<QSizeF> const boxes {box, otherBox};
    auto const inBoxes =
        shapesInBoxes(definitions->front(), {box * scale, otherBox * scale}, {}, file, diagnostics);
    require(inBoxes.has_value(), "DrawingML that is written has outlines");
    if (hasEllipse(*shape.list))
        return;
    for (std::size_t i = 0; i < boxes.size(); ++i)
        requirePlaces(*shape.list, boxes[i], (*inBoxes)[i], scale);
}

Shapes shapesFrom(Choices& choices, QSizeF const& box)
{
    Shapes shapes(static_cast<std::size_t>(1 + choices.bounded(3)));
    for (Shape& shape : shapes) {
        shape.box = box;
        if (choices.flag())
            shape.fillRule = Qt::OddEvenFill;
        shape.list = Fuzzing::outlineFrom(choices, 16);
        shape.list->updateValue(box.width(), box.height());
    }
    return shapes;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    Choices choices(Fuzzing::bytes(data, size));
    QSizeF const box = Fuzzing::boxFrom(choices);
    QSizeF const otherBox = Fuzzing::boxFrom(choices);
    PathDataOptions options;
    options.isRelative = choices.flag();
    if (choices.flag())
        options.decimals = choices.bounded(maximumPathDecimals + 1);
    Shapes shapes = shapesFrom(choices, box);
    QString const name = QString::fromUtf8(choices.rest());
    for (Shape& shape : shapes) {
        shape.name = name;
        requirePathData(*shape.list, options);
        requireCustomShape(shape, box, otherBox);
    }
    requirePage(shapes, {name, box, size % 2 == 0, QColor()});
    return 0;
}
