// SPDX-License-Identifier: MIT
// Any text as path data: what is read of it is finite, and is read back as it was written.

#include "export/pathdata.h"
#include "import/pathdataparser.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    QString const text =
        QString::fromUtf8(reinterpret_cast<char const*>(data), static_cast<int>(size));
    KpPathSegList list;
    auto const fault = parsePathData(text, list);
    if (fault && (fault->line < 1 || fault->column < 1 || fault->what.isEmpty()))
        std::abort();
    auto const written = pathData(list, {});
    // The ends of an ellipse may be out of the range of numbers, though its centre is not.
    if (!written)
        return 0;
    KpPathSegList again;
    if (parsePathData(*written, again))
        std::abort();
    // The digits of an ellipse may not suffice to tell its ends from its centre.
    bool const hasEllipse = std::any_of(list.segs.cbegin(), list.segs.cend(),
        [](KpPathSeg* seg) { return seg->type == KpPathSeg::SegEllipse; });
    bool const isSame = again.segs.count() == list.segs.count() && again.closed == list.closed;
    if (!hasEllipse && !isSame)
        std::abort();
    return 0;
}
