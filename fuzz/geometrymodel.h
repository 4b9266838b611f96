// SPDX-License-Identifier: MIT
#ifndef GEOMETRYMODEL_H
#define GEOMETRYMODEL_H

#include "outlinevalue.h"

#include <QByteArray>

#include <optional>

/**
 * What the two readers of outlines should make of a document, said once more and plainly: from a
 * tree of the whole document, with Qt's own conversion of numbers.
 */
namespace GeometryModel {

enum class Form { Dom, Stream };

/** What reading the root element makes of `outline`; none if the text is not well-formed. */
std::optional<OutlineValue::Outline> read(
    QByteArray const& text, Form form, OutlineValue::Outline outline);

} // namespace GeometryModel

#endif // GEOMETRYMODEL_H
