// SPDX-License-Identifier: MIT
#ifndef PICTUREPROPERTIES_H
#define PICTUREPROPERTIES_H

#include "import/importedoutlines.h"

#include <functional>
#include <optional>

namespace Fuzzing {

/** Nobody listens to Qt's log in a fuzz target. */
TakeMessages noMessages();

/** Makes the process ready for imports: the log is dropped, and fonts can be used. */
void prepareForImports();

/** Where an import has its outlines. */
enum class Placing {
    AsPainted, ///< where they were painted
    Resized ///< in a box of other proportions, it may be
};

/** What imports a file. */
using Import = std::function<std::optional<ImportedPictures>(Diagnostics&)>;

/**
 * Imports twice and ends the process unless both say and give the same, failures have one reason or
 * more, sizes are within their bounds, coordinates finite, names different and fillings as painted;
 * and unless the document of the outlines holds what they are.
 *
 * @param import it keeps what was painted
 */
void requireImport(Import const& import, Placing placing = Placing::AsPainted);

} // namespace Fuzzing

#endif // PICTUREPROPERTIES_H
