// SPDX-License-Identifier: MIT
#include "common/filecontent.h"
#include "common/ownership.h"
#include "testing.h"

#include <QFile>
#include <QTemporaryDir>

#include <array>

#include <fcntl.h>
#include <linux/capability.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace {

constexpr uid_t otherUser = 12345;
constexpr gid_t otherGroup = 23456;
constexpr char accessList[] = "system.posix_acl_access";

/** A list by which user 34567 may read and write, and the group nothing: "user:34567:rw-" and so on. */
QByteArray listForOne()
{
    return QByteArray::fromHex("02000000" // the version
                               "01000600ffffffff" // the owner may read and write
                               "0200060007870000" // so may user 34567
                               "04000000ffffffff" // the group may nothing
                               "10000600ffffffff" // the mask, which is shown as what the group may
                               "20000000ffffffff"); // nor may others
}

class Folder
{
public:
    Folder()
    {
        Diagnostics none;
        if (!writeFile(QFile::decodeName(m_file), "old", none))
            qFatal("there is no file");
    }

    QByteArray const& file() const { return m_file; }

    /** Writes the file anew; false if that fails. */
    bool rewrite() const
    {
        Diagnostics diagnostics;
        return writeFile(QFile::decodeName(m_file), "new", diagnostics);
    }

    /** As rewrite(), without the right to give files away. */
    bool rewriteAsOneOfMany() const
    {
        pid_t const child = fork();
        if (child == 0) {
            std::array<__user_cap_data_struct, 2> none {};
            __user_cap_header_struct header {_LINUX_CAPABILITY_VERSION_3, 0};
            bool const isPlain = syscall(SYS_capset, &header, none.data()) == 0;
            _exit(isPlain && rewrite() ? 0 : 1);
        }
        int status = 0;
        return waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
    }

    struct stat status() const
    {
        struct stat result
        {
        };
        if (stat(m_file.constData(), &result) != 0)
            qFatal("the file has gone");
        return result;
    }

private:
    QTemporaryDir const m_folder;
    QByteArray const m_file = QFile::encodeName(m_folder.filePath(QStringLiteral("a")));
};

int permissionsOf(struct stat const& status)
{
    return int(status.st_mode & 07777);
}

} // namespace

// QSKIP needs an extension of the language.
#define SKIP_HERE(why)                                                                             \
    do {                                                                                           \
        QTest::qSkip(why, __FILE__, __LINE__);                                                     \
        return;                                                                                    \
    } while (false)

class TestOwnership : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void permissionsAreKept_data();
    void permissionsAreKept();
    void ownerAndGroupAreKept();
    void aGroupThatCannotBeKeptMayNoMoreThanOthers_data();
    void aGroupThatCannotBeKeptMayNoMoreThanOthers();
    void accessListsAreKept();
    void attributesOfUsersAreKept();
    void nothingIsTakenFromWhatIsNotThere();
};

void TestOwnership::permissionsAreKept_data()
{
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("after");
    for (int const mode : {0600, 0644, 0666, 0751, 0200})
        QTest::addRow("%o", unsigned(mode)) << mode << mode;
    // What runs as somebody else, or belongs to a folder, is not what is written.
    QTest::newRow("as its owner") << 04755 << 0755;
    QTest::newRow("as its group") << 02755 << 0755;
    QTest::newRow("all of them") << 07777 << 0777;
}

void TestOwnership::permissionsAreKept()
{
    QFETCH(int, before);
    QFETCH(int, after);
    Folder const folder;
    QCOMPARE(chmod(folder.file().constData(), mode_t(before)), 0);
    QVERIFY(folder.rewrite());
    QCOMPARE(permissionsOf(folder.status()), after);
}

void TestOwnership::ownerAndGroupAreKept()
{
    Folder const folder;
    if (chown(folder.file().constData(), otherUser, otherGroup) != 0)
        SKIP_HERE("files can be given away by the superuser only");
    QCOMPARE(chmod(folder.file().constData(), 06754), 0);
    ino_t const before = folder.status().st_ino;
    QVERIFY(folder.rewrite());
    struct stat const after = folder.status();
    QVERIFY(after.st_ino != before);
    QCOMPARE(after.st_uid, otherUser);
    QCOMPARE(after.st_gid, otherGroup);
    QCOMPARE(permissionsOf(after), 0754);
}

void TestOwnership::aGroupThatCannotBeKeptMayNoMoreThanOthers_data()
{
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("after");
    QTest::newRow("nothing for others") << 0660 << 0600;
    QTest::newRow("others may read") << 0664 << 0644;
    QTest::newRow("others may more") << 0646 << 0646;
    QTest::newRow("as its group") << 02775 << 0755;
}

void TestOwnership::aGroupThatCannotBeKeptMayNoMoreThanOthers()
{
    QFETCH(int, before);
    QFETCH(int, after);
    Folder const folder;
    if (chown(folder.file().constData(), getuid(), otherGroup) != 0)
        SKIP_HERE("files can be given away by the superuser only");
    QCOMPARE(chmod(folder.file().constData(), mode_t(before)), 0);
    QVERIFY(folder.rewriteAsOneOfMany());
    QVERIFY(folder.status().st_gid != otherGroup);
    QCOMPARE(permissionsOf(folder.status()), after);
}

void TestOwnership::accessListsAreKept()
{
    Folder const folder;
    QByteArray const list = listForOne();
    if (setxattr(folder.file().constData(), accessList, list.constData(), size_t(list.size()), 0)
        != 0)
        SKIP_HERE("there are no access lists here");
    QCOMPARE(permissionsOf(folder.status()), 0660);
    QVERIFY(folder.rewrite());
    // Without the list the permissions would let the group in.
    QCOMPARE(permissionsOf(folder.status()), 0660);
    QByteArray kept(256, '\0');
    kept.truncate(
        int(getxattr(folder.file().constData(), accessList, kept.data(), size_t(kept.size()))));
    QCOMPARE(kept, list);
}

void TestOwnership::attributesOfUsersAreKept()
{
    Folder const folder;
    if (setxattr(folder.file().constData(), "user.origin", "here", 4, 0) != 0)
        SKIP_HERE("there are no attributes here");
    QVERIFY(folder.rewrite());
    std::array<char, 16> value {};
    QCOMPARE(
        getxattr(folder.file().constData(), "user.origin", value.data(), value.size()), ssize_t(4));
    QCOMPARE(QByteArray(value.data()), QByteArray("here"));
}

void TestOwnership::nothingIsTakenFromWhatIsNotThere()
{
    Folder const folder;
    QCOMPARE(chmod(folder.file().constData(), 0640), 0);
    int const fresh = open(folder.file().constData(), O_RDWR | O_CLOEXEC);
    takeOverOwnership(fresh, folder.file() + "none");
    takeOverOwnership(fresh, folder.file());
    close(fresh);
    QCOMPARE(permissionsOf(folder.status()), 0640);
}

QTEST_GUILESS_MAIN(TestOwnership)

#include "tst_ownership.moc"
