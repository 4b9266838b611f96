#ifndef OUTLINECHECK_H
#define OUTLINECHECK_H

#include "document/outlinedocument.h"

#include <QString>
#include <QVector>

/** Something that the readers, the writers, undo or drawing do to an outline silently. */
struct Finding
{
    int line; ///< from 1; 0 where the position is not known
    int column;
    QString text;
};

/** All that there is to find in a document, in document order for each outline. */
QVector<Finding> checkOutlines(OutlineDocument& document);

#endif // OUTLINECHECK_H
