// SPDX-License-Identifier: MIT
#include "window/resources.h"

#include "exchange/exporting.h"
#include "exchange/importing.h"
#include "files/sourcedocument.h"
#include "paint/drawing.h"

#include <QFile>
#include <QPainter>

/** Outside of any namespace, as what it calls wants it. */
static void initResources()
{
    Q_INIT_RESOURCE(kpshapes);
}

namespace {

Items itemsOf(QString const& name)
{
    initResources();
    QFile file(QStringLiteral(":/kpshapes/") + name);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    Diagnostics diagnostics;
    SourceReading const reading = readSource(file.readAll(), name, diagnostics);
    return reading.document ? newItems(reading.document->items()) : Items();
}

} // namespace

namespace Resources {

Items example()
{
    return itemsOf(QStringLiteral("example.xml"));
}

QIcon icon()
{
    DrawingLayout layout;
    layout.box = QSizeF(64.0, 64.0);
    layout.margin = 0.0;
    Figure const figure = figureOf(itemsOf(QStringLiteral("icon.xml")));
    QIcon icon;
    for (int const side : {16, 24, 32, 48, 64, 128, 256}) {
        layout.width = side;
        QPixmap pixmap(side, side);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        drawing(joined({figure}, layout), layout).paint(painter);
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

} // namespace Resources
