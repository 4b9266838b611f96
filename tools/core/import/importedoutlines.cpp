// SPDX-License-Identifier: MIT
#include "import/importedoutlines.h"

#include "common/text.h"
#include "import/fillorientation.h"
#include "import/losses.h"
#include "kppath.h"
#include "kppathsegellipse.h"

#include <cmath>
#include <utility>

namespace {

bool endsAtItsStart(QPainterPath const& path)
{
    int start = path.elementCount() - 1;
    while (start > 0 && !path.elementAt(start).isMoveTo())
        --start;
    QPainterPath::Element const first = path.elementAt(start);
    QPainterPath::Element const last = path.elementAt(path.elementCount() - 1);
    return start < path.elementCount() - 1 && !(first.x < last.x || first.x > last.x)
        && !(first.y < last.y || first.y > last.y);
}

bool isFinite(QPainterPath const& path)
{
    for (int i = 0; i < path.elementCount(); ++i) {
        QPainterPath::Element const element = path.elementAt(i);
        if (!std::isfinite(element.x) || !std::isfinite(element.y))
            return false;
    }
    return true;
}

std::unique_ptr<KpPathSegList> outlineOf(QPainterPath const& path)
{
    auto outline = std::make_unique<KpPathSegList>();
    KpPath elements = KpPath::fromPainterPath(path);
    outline->fromPath(elements);
    outline->closed = endsAtItsStart(path);
    return outline;
}

std::unique_ptr<KpPathSegList> outlineOf(QRectF const& ellipse)
{
    auto outline = std::make_unique<KpPathSegList>();
    double const a = ellipse.width() / 2.0;
    double const b = ellipse.height() / 2.0;
    outline->addTail(
        new KpPathSegEllipse(QPointF(ellipse.x() + a, ellipse.y() + b), a, b, outline.get()));
    outline->closed = true;
    return outline;
}

} // namespace

bool isPositive(double number)
{
    return std::isfinite(number) && number > 0.0;
}

std::optional<ImportedOutlines> onlyPicture(
    std::optional<ImportedPictures> pictures, QString const& file, Diagnostics& diagnostics)
{
    if (!pictures)
        return std::nullopt;
    if (pictures->size() != 1) {
        diagnostics.error(file,
            QStringLiteral("it holds %1 instead of one")
                .arg(countText(static_cast<qint64>(pictures->size()), QStringLiteral("picture"))));
        return std::nullopt;
    }
    return std::move(pictures->front());
}

QString pictureSizeFault(QSizeF const& size)
{
    if (!isPositive(size.width()) || !isPositive(size.height()))
        return QStringLiteral("the picture has no size");
    if (qMax(size.width(), size.height()) <= maximumPictureSide)
        return QString();
    return QStringLiteral("the picture would be %1 by %2 units large, more than %3")
        .arg(numberText(size.width()), numberText(size.height()),
            QString::number(maximumPictureSide, 'f', 0));
}

void appendOutline(ImportedOutlines& picture, RecordedPath const& painted, QString const& name,
    QString const& file, Diagnostics& diagnostics, std::unique_ptr<KpPathSegList> list)
{
    if (!isFinite(painted.path)) {
        diagnostics.warning(
            file, QStringLiteral("%1: a coordinate is too large; left out").arg(name));
        return;
    }
    bool const isFilled = painted.brush.style() != Qt::NoBrush;
    ImportedOutline outline {
        name, nullptr, std::nullopt, lossesOf(painted, picture.scale), nullptr};
    if (picture.keepsPainted)
        outline.painted = std::make_unique<RecordedPath const>(painted);
    if (painted.ellipse) {
        outline.list = outlineOf(*painted.ellipse);
    } else {
        OrientedPath const oriented =
            isFilled ? orientedForBothRules(painted.path) : OrientedPath {painted.path, true};
        outline.list = list ? std::move(list) : outlineOf(oriented.path);
        if (!oriented.isSameForBothRules)
            outline.fillRule = painted.path.fillRule();
    }
    outline.list->updateRate(picture.size.width(), picture.size.height());
    outline.list->noFill = !isFilled;
    outline.list->noLine = painted.pen.style() == Qt::NoPen;
    picture.cover.add(painted.path.boundingRect());
    picture.outlines.push_back(std::move(outline));
}

Shapes shapesOf(ImportedPictures pictures)
{
    Shapes shapes;
    for (ImportedOutlines& picture : pictures) {
        for (ImportedOutline& outline : picture.outlines) {
            shapes.push_back(
                {outline.name, picture.size, outline.fillRule, std::move(outline.list)});
        }
    }
    return shapes;
}
