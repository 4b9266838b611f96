// SPDX-License-Identifier: MIT
#include "folderwatch.h"

#include <QFile>

#include <cerrno>

#include <poll.h>
#include <sys/inotify.h>
#include <unistd.h>

namespace {

constexpr int calmMilliseconds = 100;
constexpr int mostWaits = 1000;

/** Not each write: a file is whole when it is closed, or gets its name. */
constexpr uint32_t changes = IN_CLOSE_WRITE | IN_CREATE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE;

/** Whether there is something to read within a time; a negative one has no end. */
bool isReadable(int descriptor, int milliseconds)
{
    pollfd events {descriptor, POLLIN, 0};
    int ready = 0;
    do {
        ready = poll(&events, 1, milliseconds);
    } while (ready < 0 && errno == EINTR);
    return ready > 0;
}

} // namespace

FolderWatch::FolderWatch()
    : m_events(inotify_init1(IN_CLOEXEC | IN_NONBLOCK))
{
}

FolderWatch::~FolderWatch()
{
    if (m_events >= 0)
        close(m_events);
}

bool FolderWatch::add(QString const& folder)
{
    int const watch =
        inotify_add_watch(m_events, QFile::encodeName(folder).constData(), changes | IN_ONLYDIR);
    if (watch < 0)
        m_fault = QStringLiteral("%1: cannot be watched: %2").arg(folder, qt_error_string(errno));
    if (watch < 0 || m_watches.contains(watch))
        return false;
    m_watches << watch;
    return true;
}

bool FolderWatch::wait()
{
    if (!isReadable(m_events, -1))
        return false;
    // Where it is never calm, what has happened by then is all right, too.
    for (int i = 0; i < mostWaits && isReadable(m_events, calmMilliseconds); ++i) {
        // What has happened is seen from the files themselves.
        if (!readEvents())
            return false;
    }
    return true;
}

bool FolderWatch::readEvents()
{
    char events[16384];
    return read(m_events, events, sizeof events) > 0;
}
