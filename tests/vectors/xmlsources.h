// SPDX-License-Identifier: MIT
#ifndef VECTORS_XMLSOURCES_H
#define VECTORS_XMLSOURCES_H

#include "xmlstreamwriter.h"

#include <QDomDocument>
#include <QXmlStreamReader>

namespace Vectors {

/** The document whose text is `xml`. Keep it while elements of it are in use. */
inline QDomDocument treeOf(QString const& xml)
{
    QDomDocument document;
    document.setContent(xml);
    return document;
}

} // namespace Vectors

#endif // VECTORS_XMLSOURCES_H
