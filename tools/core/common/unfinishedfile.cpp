// SPDX-License-Identifier: MIT
#include "common/unfinishedfile.h"

#include <QReadWriteLock>

namespace {

/** Taken for reading by those who write files; it lets whoever waits for all of them come first. */
QReadWriteLock& writing()
{
    // Never destroyed: a file may still be written while the process exits.
    static auto* const lock = new QReadWriteLock;
    return *lock;
}

} // namespace

UnfinishedFile::UnfinishedFile()
{
    writing().lockForRead();
}

UnfinishedFile::~UnfinishedFile()
{
    writing().unlock();
}

void UnfinishedFile::awaitAllForGood()
{
    writing().lockForWrite();
}
