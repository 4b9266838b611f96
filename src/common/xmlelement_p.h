// SPDX-License-Identifier: MIT
#ifndef XMLELEMENT_P_H
#define XMLELEMENT_P_H

#include <QDomDocument>

/** Making DOM elements. */
namespace XmlElement {

/** Appends the element `name` to `parent`, which is not null and belongs to `document`. */
inline QDomElement append(QDomDocument& document, QDomNode& parent, QString const& name)
{
    QDomElement element = document.createElement(name);
    parent.appendChild(element);
    return element;
}

/** Appends the element `name` to `parent`, a document or an element; null to a null one. */
inline QDomElement append(QDomNode& parent, QString const& name)
{
    if (parent.isNull())
        return QDomElement();
    QDomDocument document = parent.isDocument() ? parent.toDocument() : parent.ownerDocument();
    return append(document, parent, name);
}

} // namespace XmlElement

#endif // XMLELEMENT_P_H
