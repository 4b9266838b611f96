// SPDX-License-Identifier: MIT
#include "window/printing.h"

#include "exchange/exporting.h"

#include <QPainter>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>

#include <algorithm>

namespace Printing {

bool print(QPrinter& printer, Items const& items)
{
    Picture const picture = pictureOf(items);
    if (items.empty() || !sizeFault(picture.size).isEmpty())
        return false;
    QPainter painter;
    if (!painter.begin(&printer))
        return false;
    QRectF const page = printer.pageRect(QPrinter::DevicePixel);
    double const density = printer.resolution() / unitsAnInch;
    double const scale = std::min(
        {density, page.width() / picture.size.width(), page.height() / picture.size.height()});
    painter.translate((page.width() - picture.size.width() * scale) / 2.0,
        (page.height() - picture.size.height() * scale) / 2.0);
    painter.scale(scale, scale);
    painter.setRenderHint(QPainter::Antialiasing);
    picture.paint(painter);
    return painter.end();
}

void printWithDialog(QWidget* parent, Items const& items, QString const& title)
{
    QPrinter printer(QPrinter::HighResolution);
    printer.setDocName(title);
    QPrintDialog dialog(&printer, parent);
    if (dialog.exec() == QDialog::Accepted)
        print(printer, items);
}

void preview(QWidget* parent, Items const& items, QString const& title)
{
    QPrinter printer(QPrinter::HighResolution);
    printer.setDocName(title);
    QPrintPreviewDialog dialog(&printer, parent);
    QObject::connect(&dialog, &QPrintPreviewDialog::paintRequested, &dialog,
        [&items](QPrinter* target) { print(*target, items); });
    dialog.exec();
}

} // namespace Printing
