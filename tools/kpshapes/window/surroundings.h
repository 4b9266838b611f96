// SPDX-License-Identifier: MIT
#ifndef SURROUNDINGS_H
#define SURROUNDINGS_H

#include <QString>

class Prompter;
class RecentFiles;

/** What the windows of one program share. Not owned; it outlives them. */
struct Surroundings
{
    Prompter& prompter; ///< asks the user
    RecentFiles& recent; ///< recent files and folders
    QString settingsFile; ///< where the state of the windows is remembered
    QString recoveryFolder; ///< where unsaved work is kept
    /** How long after a change that is done, in milliseconds: less than a minute is lost at worst. */
    int recoveryDelay = 20000;
};

#endif // SURROUNDINGS_H
