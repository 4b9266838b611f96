// SPDX-License-Identifier: MIT
#ifndef OUTLINEEDITS_H
#define OUTLINEEDITS_H

#include "document/appearance.h"
#include "document/outlinerecord.h"
#include "files/scannedelement.h"

/** Changes the element of an outline so that it reads as another one than before. */
void changeOutline(TextEdits& edits, QByteArray const& text, ScannedElement const& geometry,
    OutlineRecord const& before, OutlineRecord const& after);

/**
 * Changes the element of an appearance likewise; what else is within it stays, but for what is
 * within a colour or a shadow that changes. One that says nothing any more is removed.
 */
void changeAppearance(TextEdits& edits, QByteArray const& text, ScannedElement const& element,
    Appearance const& before, Appearance const& after);

#endif // OUTLINEEDITS_H
