// SPDX-License-Identifier: MIT
#ifndef OUTLINECHECK_H
#define OUTLINECHECK_H

#include "common/diagnostic.h"
#include "common/repeatableinput.h"
#include "document/outlinereader.h"

/** What is looked for in a document. */
enum class CheckScope {
    /** All that the readers, the writers, undo or drawing do to outlines silently. */
    Everything,
    /**
     * Of that, what is not to be seen any more when the outlines are written anew as the DOM
     * reader reads them: what reads otherwise than it looks, and in what the stream reader differs.
     */
    Reading
};

/** What a check has gone through. */
struct CheckResult
{
    int outlines; ///< how many there are
    bool isSvgPicture; ///< as OutlineReader::isSvgPicture()
};

/**
 * Looks through a document, an outline at a time. Nothing, with a diagnostic, if it is no
 * well-formed XML or goes beyond BoundedXml's bounds.
 *
 * @param file its name in diagnostics
 * @param found gets a warning for each finding, in document order for each outline
 * @param progress called now and then; may be empty
 */
std::optional<CheckResult> checkOutlines(RepeatableInput const& input, QString const& file,
    CheckScope scope, std::function<void(Diagnostic const&)> const& found, Diagnostics& diagnostics,
    ProgressFunction const& progress = {});

#endif // OUTLINECHECK_H
