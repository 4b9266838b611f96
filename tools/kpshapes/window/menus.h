// SPDX-License-Identifier: MIT
#ifndef MENUS_H
#define MENUS_H

#include "window/surroundings.h"

#include <QString>

class MainWindow;

/** Fills the menus of a window, whose parts are all there. */
void addMenus(MainWindow& window, Surroundings const& surroundings);

/** The line that says what there is to be dragged. */
QString whatToDrag();

#endif // MENUS_H
