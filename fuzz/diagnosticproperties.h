// SPDX-License-Identifier: MIT
#ifndef DIAGNOSTICPROPERTIES_H
#define DIAGNOSTICPROPERTIES_H

#include "common/diagnostic.h"
#include "fuzzing.h"

#include <algorithm>

/** What the fuzz targets of the tools assert of diagnostics. */
namespace Fuzzing {

/** Whether an error is among them. */
inline bool hasError(Diagnostics const& diagnostics)
{
    return std::any_of(diagnostics.begin(), diagnostics.end(), [](Diagnostic const& diagnostic) {
        return diagnostic.severity == Diagnostic::Severity::Error;
    });
}

/** Whether all say something. */
inline bool haveText(Diagnostics const& diagnostics)
{
    return std::all_of(diagnostics.begin(), diagnostics.end(), [](Diagnostic const& diagnostic) {
        return !diagnostic.text.isEmpty() && diagnostic.line >= 0 && diagnostic.column >= 0;
    });
}

/** That what was not done is told, and nothing of what was done is called an error. */
inline void requireReason(bool isDone, Diagnostics const& diagnostics)
{
    require(isDone != hasError(diagnostics), "a failure has an error, and only a failure");
    require(haveText(diagnostics), "every diagnostic says something");
}

/** The same messages at the same places. */
inline bool areSame(Diagnostics const& left, Diagnostics const& right)
{
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
        [](Diagnostic const& a, Diagnostic const& b) {
            return a.severity == b.severity && a.file == b.file && a.line == b.line
                && a.column == b.column && a.text == b.text;
        });
}

} // namespace Fuzzing

#endif // DIAGNOSTICPROPERTIES_H
