#ifndef RECENTAUDIT_H
#define RECENTAUDIT_H

#include "boundedxml_p.h"

#include <QVector>

class QDomDocument;

/**
 * What the library changes or leaves out, without a word, when it reads the document as the file
 * of recent files: where, and what. In the order of the document.
 */
QVector<BoundedXml::Error> odditiesOf(QDomDocument const& document);

#endif // RECENTAUDIT_H
