// SPDX-License-Identifier: MIT
#ifndef XMLATTRIBUTE_P_H
#define XMLATTRIBUTE_P_H

#include <QString>
#include <QStringRef>

/** When an attribute counts as given: the two forms of XML differ, and documents count on it. */
namespace XmlAttribute {

/** An attribute of a DOM element counts unless it is absent or empty. */
inline bool isGiven(QString const& text)
{
    return !text.isEmpty();
}

/** An attribute of a start tag in the stream counts unless it is absent. */
inline bool isGiven(QStringRef const& text)
{
    return !text.isNull();
}

} // namespace XmlAttribute

#endif // XMLATTRIBUTE_P_H
