// SPDX-License-Identifier: MIT
#include "savedfile_p.h"

#include <QDir>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr char prefix[] = ".kpgeometry-save-";
constexpr std::size_t prefixSize = sizeof prefix - 1;
constexpr std::size_t digitCount = 16;
constexpr char digits[] = "0123456789abcdef";
/** That many names that are taken cannot be chance. */
constexpr int mostTries = 100;

/** The result of a system call that is made again as long as a signal interrupts it. */
template <class Call> auto uninterrupted(Call call)
{
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

/** Keeps errno as it is while something is cleared away. */
class KeptError
{
public:
    KeptError() = default;
    ~KeptError() { errno = m_error; }
    KeptError(KeptError const&) = delete;
    KeptError& operator=(KeptError const&) = delete;

private:
    int const m_error = errno;
};

QByteArray temporaryName()
{
    unsigned char bytes[digitCount];
    // Whatever it gives: a name that is taken is not used.
    if (getrandom(bytes, sizeof bytes, 0) != static_cast<ssize_t>(sizeof bytes)) {
        auto const number = static_cast<quintptr>(getpid()) ^ reinterpret_cast<quintptr>(bytes);
        std::memcpy(bytes, &number, sizeof number);
    }
    QByteArray name(prefix);
    for (unsigned char const byte : bytes)
        name += digits[byte % 16];
    return name;
}

bool isTemporaryName(char const* name)
{
    return std::strncmp(name, prefix, prefixSize) == 0
        && std::strlen(name) == prefixSize + digitCount
        && std::strspn(name + prefixSize, digits) == digitCount;
}

/** What a name leads to through its links: also what is not there yet. A link if there are too many. */
QByteArray placeOf(QString const& name)
{
    constexpr int mostLinks = 128;
    QFileInfo place(name);
    for (int i = 0; i < mostLinks && place.isSymLink(); ++i)
        place.setFile(place.symLinkTarget());
    return QFile::encodeName(place.filePath());
}

QByteArray folderOf(QByteArray const& place)
{
    int const slash = place.lastIndexOf('/');
    if (slash < 0)
        return QByteArrayLiteral(".");
    return slash == 0 ? QByteArrayLiteral("/") : place.left(slash);
}

QByteArray nameOf(QByteArray const& place)
{
    return place.mid(place.lastIndexOf('/') + 1);
}

/** Opens a new file without a name; -1 on failure. */
int openUnnamed(int folder, mode_t mode)
{
    // The way by which it gets a name later.
    if (access("/proc/self/fd", X_OK) != 0) {
        errno = EOPNOTSUPP;
        return -1;
    }
    int const file =
        uninterrupted([&] { return openat(folder, ".", O_TMPFILE | O_RDWR | O_CLOEXEC, mode); });
    // Nobody else can have it open.
    if (file >= 0)
        flock(file, LOCK_EX | LOCK_NB);
    return file;
}

bool isNotSupported(int error)
{
    return error == EOPNOTSUPP || error == EISDIR || error == EINVAL;
}

/** Opens a new file of a name that it puts into `name`; -1 on failure. */
int openNamed(int folder, mode_t mode, QByteArray& name)
{
    for (int i = 0; i < mostTries; ++i) {
        name = temporaryName();
        int const file = uninterrupted([&] {
            return openat(folder, name.constData(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, mode);
        });
        if (file < 0 && errno == EEXIST)
            continue;
        if (file < 0)
            break;
        uninterrupted([&] { return flock(file, LOCK_EX); });
        struct stat status = {};
        if (fstat(file, &status) == 0 && status.st_nlink > 0)
            return file;
        // Before it was locked it was taken for one that is left.
        close(file);
    }
    name.clear();
    return -1;
}

/** Opens a new file, with a name only where it has to have one; -1 on failure. */
int openNew(int folder, mode_t mode, QByteArray& name)
{
    int const file = openUnnamed(folder, mode);
    return file < 0 && isNotSupported(errno) ? openNamed(folder, mode, name) : file;
}

/** Whether all that was written to the file is safe, as far as its file system can tell. */
bool isSafe(int file)
{
    return uninterrupted([file] { return fdatasync(file); }) == 0 || errno == EINVAL
        || errno == ENOSYS || errno == EOPNOTSUPP;
}

bool isSameFile(struct stat const& left, struct stat const& right)
{
    return left.st_dev == right.st_dev && left.st_ino == right.st_ino;
}

/** Whether it may have been made by a process of this user: what root makes may be given away. */
bool isOfThisUser(struct stat const& file)
{
    return file.st_uid == geteuid() || geteuid() == 0;
}

/** Removes a file with the name of a temporary one unless its process may be running. */
void removeIfStale(int folder, char const* name)
{
    int const file = openat(folder, name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (file < 0)
        return;
    struct stat found = {};
    struct stat named = {};
    bool const isOurs = fstat(file, &found) == 0 && S_ISREG(found.st_mode) && isOfThisUser(found)
        && found.st_nlink == 1;
    // Its name may have gone to another file until it is locked.
    if (isOurs && flock(file, LOCK_EX | LOCK_NB) == 0
        && fstatat(folder, name, &named, AT_SYMLINK_NOFOLLOW) == 0 && isSameFile(found, named))
        unlinkat(folder, name, 0);
    close(file);
}

void removeStaleIn(QByteArray const& folder)
{
    std::unique_ptr<DIR, int (*)(DIR*)> const entries(opendir(folder.constData()), closedir);
    if (!entries)
        return;
    while (dirent const* const entry = readdir(entries.get())) {
        if (isTemporaryName(entry->d_name))
            removeIfStale(dirfd(entries.get()), entry->d_name);
    }
}

int openFolder(QByteArray const& folder)
{
    return uninterrupted(
        [&] { return open(folder.constData(), O_PATH | O_DIRECTORY | O_CLOEXEC); });
}

} // namespace

SavedFile::SavedFile(QString const& name)
    : QFile(name)
    , m_place(placeOf(name))
{
}

SavedFile::~SavedFile()
{
    cancel();
}

bool SavedFile::fail()
{
    QString const reason = errno == 0 ? errorString() : qt_error_string(errno);
    KeptError const kept;
    cancel();
    setErrorString(reason);
    return false;
}

bool SavedFile::begin(Unwritable unwritable)
{
    struct stat present = {};
    bool const isPresent = lstat(m_place.constData(), &present) == 0;
    if (!isPresent && errno != ENOENT)
        return fail();
    if (isPresent && S_ISLNK(present.st_mode)) {
        errno = ELOOP;
        return fail();
    }
    if (isPresent && S_ISDIR(present.st_mode)) {
        errno = EISDIR;
        return fail();
    }
    if (isPresent && access(m_place.constData(), W_OK) != 0)
        return fail();
    m_folder = openFolder(folderOf(m_place));
    // Until it has the permissions of the present one, they are the narrowest.
    mode_t const mode = isPresent ? 0600 : 0666;
    int const file = m_folder < 0 ? -1 : openNew(m_folder, mode, m_temporary);
    if (file < 0 && errno == EACCES && unwritable == Unwritable::IsBypassed)
        return beginDirectly();
    if (file < 0)
        return fail();
    if (!QFile::open(file, QIODevice::WriteOnly, QFileDevice::AutoCloseHandle)) {
        KeptError const kept;
        ::close(file);
        return fail();
    }
    return !isPresent || takePermissions(present.st_mode & 0777U) || fail();
}

bool SavedFile::beginDirectly()
{
    setFileName(QFile::decodeName(m_place));
    m_isDirect = QFile::open(QIODevice::WriteOnly);
    return m_isDirect || fail();
}

bool SavedFile::takePermissions(unsigned int present)
{
    struct stat status = {};
    return fstat(handle(), &status) == 0
        && ((status.st_mode & 0777U) == present || fchmod(handle(), present) == 0);
}

bool SavedFile::giveName()
{
    char unnamed[40];
    std::snprintf(unnamed, sizeof unnamed, "/proc/self/fd/%d", handle());
    for (int i = 0; i < mostTries; ++i) {
        m_temporary = temporaryName();
        if (linkat(AT_FDCWD, unnamed, m_folder, m_temporary.constData(), AT_SYMLINK_FOLLOW) == 0)
            return true;
        if (errno != EEXIST)
            break;
    }
    m_temporary.clear();
    return false;
}

bool SavedFile::commit()
{
    if (!isOpen())
        return false;
    if (!flush() || error() != QFileDevice::NoError || !isSafe(handle()))
        return fail();
    if (!m_isDirect) {
        if (!isNamed() && !giveName())
            return fail();
        if (renameat(m_folder, m_temporary.constData(), m_folder, nameOf(m_place).constData()) != 0)
            return fail();
        m_temporary.clear();
    }
    cancel();
    return true;
}

void SavedFile::cancel()
{
    // While it is locked: nobody else is to remove it.
    if (isNamed())
        unlinkat(m_folder, m_temporary.constData(), 0);
    m_temporary.clear();
    close();
    if (m_folder >= 0)
        ::close(m_folder);
    m_folder = -1;
}

void SavedFile::removeStale(QString const& name)
{
    removeStaleIn(folderOf(placeOf(name)));
}

bool SavedFile::openTemporary(QFile& file)
{
    QByteArray const path = QFile::encodeName(QDir::tempPath());
    int const folder = openFolder(path);
    if (folder < 0)
        return false;
    QByteArray name;
    int const descriptor = openNew(folder, 0600, name);
    {
        KeptError const kept;
        if (!name.isEmpty()) {
            unlinkat(folder, name.constData(), 0);
            removeStaleIn(path);
        }
        ::close(folder);
    }
    return descriptor >= 0
        && file.open(descriptor, QIODevice::ReadWrite, QFileDevice::AutoCloseHandle);
}
