// SPDX-License-Identifier: MIT
#ifndef CHOICEOUTLINE_H
#define CHOICEOUTLINE_H

#include "choices.h"
#include "kppathseglist.h"

#include <QSizeF>

#include <memory>

namespace Fuzzing {

/**
 * An outline of up to `mostSegments` segments of all kinds, whose coordinates have any of the rules
 * and finite numbers.
 */
std::unique_ptr<KpPathSegList> outlineFrom(Choices& choices, int mostSegments);

/** A box with sides from 1 to 4096. */
QSizeF boxFrom(Choices& choices);

} // namespace Fuzzing

#endif // CHOICEOUTLINE_H
