// SPDX-License-Identifier: MIT
#ifndef COORDINATETEXT_H
#define COORDINATETEXT_H

#include "document/markup.h"
#include "kppoint.h"

#include <QString>
#include <QVector>

/** The attributes of a coordinate's element, as those who change documents leave them. */
namespace CoordinateText {

/**
 * Whether the attribute reads as the real does; true also for one that is none of a coordinate's.
 * All NaN are the same, and so are the zeros.
 */
bool readsAs(KpReal const& real, MarkupAttribute const& attribute);

/** What the real's attribute of this name, one of a coordinate's, is written as. */
QString textOf(KpReal const& real, QString const& name);

/** What becomes of the attributes of one element. */
struct Change
{
    QVector<MarkupAttribute> attributes; ///< all that were there, in their order
    QVector<int> changed; ///< the indices of those whose value is another one
    QVector<MarkupAttribute> added; ///< behind them
};

/**
 * The attributes as they are if they read as the real does, and the real's in their place if not.
 * The rule of an absolute real is written down, which the document format leaves out: without it it
 * would be read back bound in proportion to the box. What a coordinate that is given again leaves
 * open stands in the first one, to all digits.
 *
 * @param isFirst false for a coordinate that its segment has had before
 */
Change changeOf(KpReal const& real, QVector<MarkupAttribute> const& given, bool isFirst);

} // namespace CoordinateText

#endif // COORDINATETEXT_H
