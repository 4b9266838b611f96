// SPDX-License-Identifier: MIT
#ifndef PRINTING_H
#define PRINTING_H

#include "model/shapeitem.h"

#include <QSizeF>

class QPrinter;
class QWidget;

/** Printing of outlines, each page in the middle of a sheet. */
namespace Printing {

/**
 * Paints the outlines over one another on a page: as large as they are, or smaller where they would
 * not fit. False if the printer cannot be written to, or there is nothing that can be drawn.
 */
bool print(QPrinter& printer, Items const& items);

/** Asks for a printer, and prints. */
void printWithDialog(QWidget* parent, Items const& items, QString const& title);
/** Shows what would be printed, and prints it if asked to. */
void preview(QWidget* parent, Items const& items, QString const& title);

} // namespace Printing

#endif // PRINTING_H
