// SPDX-License-Identifier: MIT
#include "pictureproperties.h"

#include "common/fonts.h"
#include "diagnosticproperties.h"
#include "document/exactpath.h"
#include "document/outlinedocument.h"
#include "document/outlinerecord.h"
#include "segmentkind_p.h"
#include "writtenoutline.h"

#include <QGuiApplication>
#include <QHash>
#include <QImage>
#include <QPainter>
#include <QSet>

#include <cmath>

namespace Fuzzing {

namespace {

void dropMessage(
    QtMsgType /*type*/, QMessageLogContext const& /*context*/, QString const& /*message*/)
{
}

void startApplication()
{
    static char name[] = "fuzz";
    static char* arguments[] = {name, nullptr};
    static int count = 1;
    static auto const* const application = new QGuiApplication(count, arguments);
    Q_UNUSED(application)
}

bool isFinite(KpPathSegList const& list)
{
    bool result = true;
    for (KpPathSeg* const segment : list.segs) {
        SegmentKind::forEachReal(
            *segment, [&](KpReal const& real) { result = result && std::isfinite(real.value); });
    }
    return result;
}

constexpr int rasterSide = 64;

/** What the path covers, in black, drawn so that `bounds` are as large as the image. */
QImage filling(QPainterPath path, Qt::FillRule rule, QRectF const& bounds)
{
    double const scale = rasterSide / std::max(bounds.width(), bounds.height());
    path = QTransform::fromTranslate(-bounds.x(), -bounds.y()).map(path);
    path = QTransform::fromScale(scale, scale).map(path);
    path.setFillRule(rule);
    QImage image(rasterSide, rasterSide, QImage::Format_Grayscale8);
    image.fill(Qt::white);
    QPainter(&image).fillPath(path, Qt::black);
    return image;
}

/** Whether they differ in a square of three pixels, which is more than edges and rounding do. */
bool differ(QImage const& left, QImage const& right)
{
    if (left == right)
        return false;
    auto const differsAt = [&](int x, int y) { return left.pixel(x, y) != right.pixel(x, y); };
    auto const differsAround = [&](int x, int y) {
        for (int i = 0; i < 9; ++i) {
            if (!differsAt(x + i % 3 - 1, y + i / 3 - 1))
                return false;
        }
        return true;
    };
    for (int y = 1; y < rasterSide - 1; ++y) {
        for (int x = 1; x < rasterSide - 1; ++x) {
            if (differsAt(x, y) && differsAround(x, y))
                return true;
        }
    }
    return false;
}

/** Above this many elements the promise is weaker, and drawing takes long. */
constexpr int mostElements = 2000;

void requireFilling(ImportedOutline const& outline, Placing placing)
{
    QPainterPath const path = exactPath(*outline.list);
    QRectF const bounds = path.boundingRect().united(outline.painted->path.boundingRect());
    bool const canBeDrawn = std::isfinite(bounds.width()) && std::isfinite(bounds.height())
        && std::isfinite(bounds.x()) && std::isfinite(bounds.y()) && !bounds.isEmpty();
    if (outline.list->noFill || !canBeDrawn || path.elementCount() > mostElements)
        return;
    Qt::FillRule const rule = outline.fillRule.value_or(Qt::OddEvenFill);
    QImage const filled = filling(path, rule, bounds);
    if (!outline.fillRule) {
        require(!differ(filling(path, Qt::WindingFill, bounds), filled),
            "both rules fill an outline alike unless one is named");
    }
    if (placing == Placing::AsPainted) {
        QPainterPath const& painted = outline.painted->path;
        require(!differ(filling(painted, painted.fillRule(), bounds), filled),
            "an outline fills as painted");
    }
}

void requireOutline(ImportedOutline const& outline, Placing placing)
{
    require(outline.list && !outline.list->segs.isEmpty(), "an outline has segments");
    require(outline.painted != nullptr, "what was painted is kept for who asks");
    require(isFinite(*outline.list), "coordinates are finite");
    require(outline.list->noFill == (outline.painted->brush.style() == Qt::NoBrush),
        "what is not painted is not filled");
    requireFilling(outline, placing);
}

void requirePictures(ImportedPictures const& pictures, Placing placing)
{
    for (ImportedOutlines const& picture : pictures) {
        require(pictureSizeFault(picture.size).isEmpty(), "a picture is as large as it may be");
        require(isPositive(picture.scale), "a scale is a number above 0");
        for (ImportedOutline const& outline : picture.outlines)
            requireOutline(outline, placing);
    }
}

void requireDocument(ImportedPictures pictures)
{
    Shapes const shapes = shapesOf(std::move(pictures));
    Diagnostics diagnostics;
    auto const document =
        OutlineDocument::read(shapesDocument(shapes), QStringLiteral("a.xml"), diagnostics);
    require(document && diagnostics.isEmpty(), "the document of the outlines can be read");
    require(document->outlines().size() == shapes.size(), "it holds all outlines");
    for (std::size_t i = 0; i < shapes.size(); ++i) {
        Outline const& read = document->outlines()[i];
        require(read.fillRule == shapes[i].fillRule, "it holds the fill rules");
        require(asWritten(*read.list) == asWritten(*shapes[i].list), "it holds the coordinates");
    }
}

bool areSame(ImportedOutline const& left, ImportedOutline const& right)
{
    return left.name == right.name && left.fillRule == right.fillRule
        && recordOf(*left.list) == recordOf(*right.list);
}

bool areSame(
    std::optional<ImportedPictures> const& left, std::optional<ImportedPictures> const& right)
{
    if (!left || !right)
        return !left && !right;
    return std::equal(left->begin(), left->end(), right->begin(), right->end(),
        [](ImportedOutlines const& a, ImportedOutlines const& b) {
            return a.size == b.size
                && std::equal(a.outlines.begin(), a.outlines.end(), b.outlines.begin(),
                    b.outlines.end(), [](auto const& c, auto const& d) { return areSame(c, d); });
        });
}

} // namespace

TakeMessages noMessages()
{
    return [] { return QStringList(); };
}

void prepareForImports()
{
    qInstallMessageHandler(dropMessage);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qSetGlobalQHashSeed(0);
    setFontStarter(startApplication);
}

void requireImport(Import const& import, Placing placing)
{
    Diagnostics diagnostics;
    auto pictures = import(diagnostics);
    requireReason(pictures.has_value(), diagnostics);
    Diagnostics again;
    require(areSame(pictures, import(again)), "an import gives the same again");
    require(areSame(diagnostics, again), "an import says the same again");
    if (!pictures)
        return;
    requirePictures(*pictures, placing);
    requireDocument(std::move(*pictures));
}

} // namespace Fuzzing
