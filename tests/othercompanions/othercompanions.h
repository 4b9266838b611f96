// SPDX-License-Identifier: MIT
#ifndef OTHERCOMPANIONS_H
#define OTHERCOMPANIONS_H

/** These libraries are compiled with hidden visibility: what they offer says so. */
#define OTHERCOMPANIONS_EXPORT __attribute__((visibility("default")))

#endif
