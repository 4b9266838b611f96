// SPDX-License-Identifier: MIT
#ifndef DOCUMENTPROPERTIES_H
#define DOCUMENTPROPERTIES_H

#include "boundedxml_p.h"
#include "document/outlinedocument.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace Fuzzing {

/** What documents are called in diagnostics. */
inline QString documentName()
{
    return QStringLiteral("a.xml");
}

/** The document of the text; nothing where there is none. */
inline std::optional<OutlineDocument> documentOf(QByteArray const& text)
{
    Diagnostics diagnostics;
    return OutlineDocument::read(text, documentName(), diagnostics);
}

/**
 * Whether a text that was made of the original must be readable: written out, what entities stand
 * for may exceed the bounds.
 */
inline bool mustBeReadable(QByteArray const& original, QByteArray const& text)
{
    BoundedXml::Error error;
    return !original.contains('&') || BoundedXml::check(text, error);
}

} // namespace Fuzzing

#endif // DOCUMENTPROPERTIES_H
