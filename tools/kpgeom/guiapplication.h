// SPDX-License-Identifier: MIT
#ifndef GUIAPPLICATION_H
#define GUIAPPLICATION_H

/**
 * Makes the QGuiApplication of the tool, unless it is there: for those about to use a font or a
 * pixmap, which need one. Most work needs neither, and starts sooner without it.
 *
 * It lives as long as the process. Who starts threads that may draw text calls this before: Qt
 * wants the application to be of the main thread.
 */
void needGuiApplication();

#endif // GUIAPPLICATION_H
