// SPDX-License-Identifier: MIT
#include "common/ownership.h"

#include <QByteArrayList>

#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace {

constexpr char accessList[] = "system.posix_acl_access";

QByteArrayList attributesOf(QByteArray const& file)
{
    ssize_t const size = listxattr(file.constData(), nullptr, 0);
    if (size <= 0)
        return {};
    QByteArray names(static_cast<int>(size), '\0');
    ssize_t const read = listxattr(file.constData(), names.data(), static_cast<std::size_t>(size));
    names.truncate(static_cast<int>(qMax<ssize_t>(0, read)));
    return names.split('\0');
}

void copyAttribute(int fresh, QByteArray const& present, char const* name)
{
    ssize_t const size = getxattr(present.constData(), name, nullptr, 0);
    if (size < 0)
        return;
    QByteArray value(static_cast<int>(size), '\0');
    auto const room = static_cast<std::size_t>(size);
    if (getxattr(present.constData(), name, value.data(), room) == size)
        fsetxattr(fresh, name, value.constData(), room, 0);
}

void copyAttributes(int fresh, QByteArray const& present)
{
    QByteArrayList const names = attributesOf(present);
    for (QByteArray const& name : names) {
        if (name == accessList || name.startsWith("user."))
            copyAttribute(fresh, present, name.constData());
    }
    // Its folder may give every new file one.
    if (!names.contains(accessList))
        fremovexattr(fresh, accessList);
}

/** What the group may do that others may, too. */
mode_t withoutGroup(mode_t mode)
{
    return (mode & ~mode_t(S_IRWXG)) | (mode & S_IRWXG & ((mode & S_IRWXO) << 3U));
}

} // namespace

void takeOverOwnership(int fresh, QByteArray const& present)
{
    struct stat before
    {
    };
    struct stat now
    {
    };
    bool const areTwo = stat(present.constData(), &before) == 0 && fstat(fresh, &now) == 0
        && (before.st_ino != now.st_ino || before.st_dev != now.st_dev);
    if (!areTwo)
        return;
    constexpr auto unchanged = static_cast<uid_t>(-1);
    bool const hasGroup =
        before.st_gid == now.st_gid || fchown(fresh, unchanged, before.st_gid) == 0;
    // Last of all, since only its owner may change what follows.
    copyAttributes(fresh, present);
    mode_t const mode = before.st_mode & (S_IRWXU | S_IRWXG | S_IRWXO);
    fchmod(fresh, hasGroup ? mode : withoutGroup(mode));
    if (before.st_uid != now.st_uid) [[maybe_unused]]
        int const refused = fchown(fresh, before.st_uid, unchanged);
}
