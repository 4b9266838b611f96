// SPDX-License-Identifier: MIT
#include "exchange/clipboard.h"

#include "exchange/exporting.h"
#include "exchange/importing.h"
#include "files/sourcedocument.h"

#include <QMimeData>

namespace {

QString svgType()
{
    return QStringLiteral("image/svg+xml");
}

/** What the clipboard is called in diagnostics. */
QString clipboardName()
{
    return QStringLiteral("clipboard");
}

/** The best of what is there; a text may hold either of the two. */
QByteArray contentOf(QMimeData const& data)
{
    for (QString const& type : {Clipboard::ownType(), svgType()}) {
        if (data.hasFormat(type))
            return data.data(type);
    }
    return data.text().toUtf8();
}

} // namespace

namespace Clipboard {

QString ownType()
{
    return QStringLiteral("application/x-kpgeometry-shapes+xml");
}

std::unique_ptr<QMimeData> dataOf(Items const& items)
{
    auto data = std::make_unique<QMimeData>();
    QByteArray const document = SourceDocument().write(newItems(items));
    data->setData(ownType(), document);
    Diagnostics diagnostics;
    auto const picture = exported({items, clipboardName()}, ExportFormat::Svg, diagnostics);
    if (picture)
        data->setData(svgType(), *picture);
    data->setText(QString::fromUtf8(picture.value_or(document)));
    return data;
}

std::optional<Items> itemsOf(QMimeData const* data, Diagnostics& diagnostics)
{
    QByteArray const content = data ? contentOf(*data) : QByteArray();
    if (content.isEmpty()) {
        diagnostics.error(clipboardName(), QStringLiteral("there is nothing to be pasted"));
        return std::nullopt;
    }
    Diagnostics ofDocument;
    SourceReading const reading = readSource(content, clipboardName(), ofDocument);
    if (reading.kind == SourceKind::Picture)
        return importedItems(content, clipboardName(), diagnostics);
    diagnostics.append(ofDocument);
    if (!reading.document)
        return std::nullopt;
    if (reading.document->count() > 0)
        return newItems(reading.document->items());
    diagnostics.error(clipboardName(), QStringLiteral("it holds no outline"));
    return std::nullopt;
}

} // namespace Clipboard
