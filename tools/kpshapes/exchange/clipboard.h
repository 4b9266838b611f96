// SPDX-License-Identifier: MIT
#ifndef CLIPBOARD_H
#define CLIPBOARD_H

#include "common/diagnostic.h"
#include "model/shapeitem.h"

#include <QString>

#include <memory>
#include <optional>

class QMimeData;

/** Outlines on the clipboard: as documents of our own, which keep everything, and as SVG pictures. */
namespace Clipboard {

/** The type of our own documents. */
QString ownType();

/** The outlines as both. */
std::unique_ptr<QMimeData> dataOf(Items const& items);

/**
 * The outlines of what is on the clipboard: our own, an SVG picture, or either as text. Nothing, with
 * a diagnostic, if it holds none.
 *
 * @param data null for an empty clipboard; not owned
 */
std::optional<Items> itemsOf(QMimeData const* data, Diagnostics& diagnostics);

} // namespace Clipboard

#endif // CLIPBOARD_H
