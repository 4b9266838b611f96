// SPDX-License-Identifier: MIT
#ifndef CANVASACCESSIBLE_H
#define CANVASACCESSIBLE_H

/**
 * Makes the handles of every Canvas known to assistive technology: each is a child of the canvas
 * with its name, place and state, those of the outline first, in its order, then those of the box.
 * To be called once, before the first canvas is shown; further calls do nothing.
 */
void installCanvasAccessibility();

#endif // CANVASACCESSIBLE_H
