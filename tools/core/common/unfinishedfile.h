// SPDX-License-Identifier: MIT
#ifndef UNFINISHEDFILE_H
#define UNFINISHEDFILE_H

#include <QtGlobal>

/**
 * Lives while a file is written that would leave something behind if the process ended: a temporary
 * file that has a name. Threads may have one each. Its time is short: what takes long comes before.
 */
class UnfinishedFile
{
public:
    UnfinishedFile();
    ~UnfinishedFile();

    /**
     * Waits until there is none in any thread. Whoever makes another waits for ever: to be called
     * just before the process ends.
     */
    static void awaitAllForGood();

private:
    Q_DISABLE_COPY(UnfinishedFile)
};

#endif // UNFINISHEDFILE_H
