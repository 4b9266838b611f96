#ifndef XMLELEMENT_P_H
#define XMLELEMENT_P_H

#include <QDomDocument>

/** Making DOM elements. */
namespace XmlElement {

/** Appends the element `name` to `parent`, a document or an element; null to a null one. */
inline QDomElement append(QDomNode& parent, QString const& name)
{
    if (parent.isNull())
        return QDomElement();
    QDomDocument document = parent.isDocument() ? parent.toDocument() : parent.ownerDocument();
    return parent.appendChild(document.createElement(name)).toElement();
}

} // namespace XmlElement

#endif // XMLELEMENT_P_H
