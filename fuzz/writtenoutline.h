// SPDX-License-Identifier: MIT
#ifndef WRITTENOUTLINE_H
#define WRITTENOUTLINE_H

#include "numbertext_p.h"
#include "segmentkind_p.h"

#include "kppathseglist.h"

#include <QString>

namespace Fuzzing {

/** Kinds, rules and six digits of all values, which is what a document holds. */
inline QString asWritten(KpPathSegList const& list)
{
    QString text = QStringLiteral("%1%2%3").arg(list.closed).arg(list.noFill).arg(list.noLine);
    for (KpPathSeg* const segment : list.segs) {
        text += QStringLiteral(" %1:").arg(segment->type);
        SegmentKind::forEachReal(*segment, [&text](KpReal const& real) {
            text += QStringLiteral("%1/%2 ").arg(NumberText::fromReal(real.value)).arg(real.base);
        });
    }
    return text;
}

} // namespace Fuzzing

#endif // WRITTENOUTLINE_H
