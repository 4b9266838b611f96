// SPDX-License-Identifier: MIT
#ifndef ELEMENTS_H
#define ELEMENTS_H

#include <QDomElement>
#include <QString>

/** The name without a prefix. */
inline QString localName(QString const& name)
{
    return name.mid(name.indexOf(QLatin1Char(':')) + 1);
}

/** The name of an element without its prefix. */
inline QString localName(QDomElement const& element)
{
    return localName(element.tagName());
}

/** The element that follows `element` in document order, or a null one. */
inline QDomElement nextElement(QDomElement const& element)
{
    QDomElement next = element.firstChildElement();
    for (QDomElement from = element; next.isNull() && !from.isNull();
         from = from.parentNode().toElement())
        next = from.nextSiblingElement();
    return next;
}

/** The first child of this name, whatever its prefix, or a null element. */
inline QDomElement childElement(QDomElement const& parent, QString const& name)
{
    QDomElement child = parent.firstChildElement();
    while (!child.isNull() && localName(child) != name)
        child = child.nextSiblingElement();
    return child;
}

#endif // ELEMENTS_H
