// SPDX-License-Identifier: MIT
#include "guiapplication.h"

#include <QGuiApplication>

void needGuiApplication()
{
    // Qt keeps both, and would take further arguments for its own, even behind "--".
    static char name[] = "kpgeom";
    static char* arguments[] = {name, nullptr};
    static int count = 1;
    // Never destroyed: its end reads the configuration of the fonts, even if no text was drawn.
    static auto const* const application = new QGuiApplication(count, arguments);
    Q_UNUSED(application)
}
