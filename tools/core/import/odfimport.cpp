// SPDX-License-Identifier: MIT
#include "import/odfimport.h"

#include "boundedxml_p.h"
#include "import/cover.h"
#include "import/losses.h"
#include "import/odfdrawing.h"
#include "import/svgimport.h"
#include "import/zipmember.h"

#include <algorithm>
#include <utility>

namespace {

QRectF boundsOf(OdfGroup const& group)
{
    Cover cover;
    for (OdfShape const& shape : group)
        cover.add(shape.path.boundingRect());
    return cover.bounds();
}

RecordedPath recorded(OdfShape const& shape, QTransform const& toOutline)
{
    RecordedPath path;
    path.path = toOutline.map(shape.path);
    path.transform = toOutline;
    path.pen = shape.pen;
    path.brush = shape.brush;
    return path;
}

/** The group as a picture; nothing, with a diagnostic, if it is too large. */
std::optional<ImportedOutlines> atScale(
    OdfGroup const& group, double scale, OdfImportOptions const& options, Diagnostics& diagnostics)
{
    QRectF const bounds = boundsOf(group);
    // A level or an upright line has no extent in one direction.
    QSizeF const size(
        std::max(1.0, bounds.width() * scale), std::max(1.0, bounds.height() * scale));
    ImportedOutlines picture {size, {}, scale, options.keepsPainted};
    if (QString const fault = pictureSizeFault(picture.size); !fault.isEmpty()) {
        diagnostics.error(options.file, QStringLiteral("%1: %2").arg(group.front().name, fault));
        return std::nullopt;
    }
    QTransform const toOutline = QTransform::fromTranslate(-bounds.left(), -bounds.top())
        * QTransform::fromScale(scale, scale);
    for (OdfShape const& shape : group)
        appendOutline(picture, recorded(shape, toOutline), shape.name, options.file, diagnostics);
    return picture;
}

std::optional<ImportedOutlines> atBestScale(
    OdfGroup const& group, OdfImportOptions const& options, Diagnostics& diagnostics)
{
    QRectF const bounds = boundsOf(group);
    double const longerSide = std::max(bounds.width(), bounds.height());
    // What is smaller would leave the range of numbers when it is enlarged.
    double const smallest = 1e-6;
    if (longerSide < smallest) {
        diagnostics.warning(
            options.file, QStringLiteral("%1: without a size; left out").arg(group.front().name));
        return ImportedOutlines();
    }
    Diagnostics usual;
    auto picture = atScale(group, defaultPictureSide / longerSide, options, usual);
    if (picture && countLostLines(*picture) > 0) {
        picture.reset();
        return atScale(group, finePictureSide / longerSide, options, diagnostics);
    }
    diagnostics.append(usual);
    return picture;
}

/** Reads the XML of a zip file; false, with a diagnostic, if that cannot be. */
bool readZip(
    QByteArray const& zip, OdfDrawing& drawing, QString const& file, Diagnostics& diagnostics)
{
    qint64 const most = BoundedXml::Limits().bytes;
    QString const content = QStringLiteral("content.xml");
    QString const styles = QStringLiteral("styles.xml");
    QString fault;
    auto const contentXml = zipMember(zip, content.toUtf8(), most, fault);
    if (!contentXml) {
        diagnostics.error(file, QStringLiteral("no OpenDocument drawing: %1").arg(fault));
        return false;
    }
    // The styles that those of the content come from; a file can do without.
    auto const stylesXml = zipMember(zip, styles.toUtf8(), most, fault);
    return (!stylesXml || drawing.read(*stylesXml, styles, file, diagnostics))
        && drawing.read(*contentXml, content, file, diagnostics);
}

} // namespace

std::optional<ImportedPictures> importOdf(
    QByteArray const& content, OdfImportOptions const& options, Diagnostics& diagnostics)
{
    OdfDrawing drawing;
    bool const isRead = isZip(content)
        ? readZip(content, drawing, options.file, diagnostics)
        : drawing.read(content, QString(), options.file, diagnostics);
    if (!isRead)
        return std::nullopt;
    drawing.warn(options.file, diagnostics);
    ImportedPictures pictures;
    for (OdfGroup& each : drawing.takeGroups()) {
        OdfGroup const group = std::move(each);
        if (group.empty())
            continue;
        auto picture = options.scale > 0.0 ? atScale(group, options.scale, options, diagnostics)
                                           : atBestScale(group, options, diagnostics);
        if (!picture)
            return std::nullopt;
        if (!picture->outlines.empty())
            pictures.push_back(std::move(*picture));
    }
    for (ImportedOutlines const& picture : pictures)
        warnOfLosses(picture, options.file, diagnostics);
    return pictures;
}
