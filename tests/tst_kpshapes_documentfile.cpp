// SPDX-License-Identifier: MIT
#include "documenttesting.h"
#include "files/documentfile.h"
#include "model/shapedocument.h"

#include <QSet>
#include <QTemporaryDir>

#include <csignal>

#include <sys/wait.h>
#include <unistd.h>

namespace {

QByteArray contentOf(QString const& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : "cannot be read";
}

void write(QString const& path, QByteArray const& content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(path));
}

/** A file in a folder of its own, read as the loader reads it. */
struct Opened
{
    explicit Opened(QByteArray const& content)
        : path(folder.filePath("a.xml"))
    {
        write(path, content);
        FileState state = stateOf(path);
        state.digest = digestOf(content);
        file = DocumentFile(path, readSource(content, path, diagnostics).document, state);
    }

    QTemporaryDir folder;
    QString path;
    Diagnostics diagnostics;
    DocumentFile file;
};

QByteArray const twoShapes = "<D>\n <S Name='a' z=''><Geometry/></S> <!-- c -->\n "
                             "<S Name='b'><Geometry/></S>\n</D>\n";

/** A process that does something until it is killed. */
class Child
{
public:
    explicit Child(std::function<void()> const& work)
        : m_id(fork())
    {
        if (m_id != 0)
            return;
        work();
        _exit(0);
    }
    Child(Child const&) = delete;
    Child& operator=(Child const&) = delete;

    /** Ends it. @return the signal that it ended by, or 0 */
    int kill() const
    {
        int status = 0;
        ::kill(m_id, SIGKILL);
        waitpid(m_id, &status, 0);
        return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    }

private:
    pid_t const m_id;
};

/** Becomes a user who may not do everything, if it was one who may. */
class OrdinaryUser
{
public:
    OrdinaryUser()
        : m_wasRoot(getuid() == 0 && setresuid(65534, 65534, 0) == 0)
    {
    }
    ~OrdinaryUser()
    {
        if (m_wasRoot && setresuid(0, 0, 0) != 0)
            qFatal("root no more");
    }
    OrdinaryUser(OrdinaryUser const&) = delete;
    OrdinaryUser& operator=(OrdinaryUser const&) = delete;

private:
    bool m_wasRoot;
};

} // namespace

Q_DECLARE_METATYPE(std::function<void(QString const&)>)

class TestKpshapesDocumentFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void undoAfterASaveGivesBackTheFile();
    void undoBringsBackWhatWasSavedAway();
    void aKilledSaveLeavesAWholeFile();
    void savesUnderAnotherName();
    void savesANewDocument();
    void keepsTheFileWhenItCannotBeWritten();
    void tellsWhatHasNoPlace();
    void noticesChangesOnDisk_data();
    void noticesChangesOnDisk();
    void knowsWhatCannotBeWritten();
};

void TestKpshapesDocumentFile::undoAfterASaveGivesBackTheFile()
{
    Opened opened(twoShapes);
    ShapeDocument document;
    document.reset(opened.file.source().items());
    document.working().name = "x";
    QVERIFY(document.commit("Rename"));
    document.remove(1, 1, "Remove");
    QVERIFY(opened.file.save(document.items(), opened.path, opened.diagnostics));
    QCOMPARE(contentOf(opened.path),
        QByteArray("<D>\n <S Name='x' z=''><Geometry/></S> <!-- c -->\n</D>\n"));
    document.undoStack().undo();
    document.undoStack().undo();
    QVERIFY(opened.file.save(document.items(), opened.path, opened.diagnostics));
    QCOMPARE(contentOf(opened.path), twoShapes);
    document.undoStack().redo();
    QVERIFY(opened.file.save(document.items(), opened.path, opened.diagnostics));
    QCOMPARE(contentOf(opened.path), QByteArray(twoShapes).replace("'a'", "'x'"));
    QVERIFY(opened.diagnostics.isEmpty());
}

void TestKpshapesDocumentFile::undoBringsBackWhatWasSavedAway()
{
    Opened opened(twoShapes);
    ShapeDocument document;
    document.reset(opened.file.source().items());
    document.remove(0, 2, "Remove");
    QVERIFY(opened.file.save(document.items(), opened.path, opened.diagnostics));
    QCOMPARE(contentOf(opened.path), QByteArray("<D> <!-- c -->\n</D>\n"));
    document.undoStack().undo();
    document.move(0, 1, "Move");
    QVERIFY(opened.file.save(document.items(), opened.path, opened.diagnostics));
    QCOMPARE(contentOf(opened.path),
        QByteArray("<D>\n <S Name='b'><Geometry/></S> <!-- c -->\n "
                   "<S Name='a' z=''><Geometry/></S>\n</D>\n"));
}

void TestKpshapesDocumentFile::aKilledSaveLeavesAWholeFile()
{
    QByteArray const shape = "<S Name='a'><Geometry/></S>\n";
    QByteArray const all = "<D>\n" + shape.repeated(3000) + "</D>\n";
    Opened opened(all);
    Items const items = opened.file.source().items();
    // All but the first are removed, and are there again.
    QByteArray const removed = opened.file.source().write({items.front()});
    QVERIFY(removed.size() < all.size());
    int const rounds = Testing::sanitized ? 20 : 100;
    QRandomGenerator random = Testing::seededRandom(7);
    QSet<int> sizes;
    // On a busy machine it takes longer until both have been met.
    for (int round = 0; round < rounds || (sizes.size() < 2 && round < 100 * rounds); ++round) {
        Child child([&] {
            for (;;) {
                opened.file.save({items.front()}, opened.path, opened.diagnostics);
                opened.file.save(items, opened.path, opened.diagnostics);
            }
        });
        usleep(useconds_t(random.bounded(20000)));
        QCOMPARE(child.kill(), SIGKILL);
        QByteArray const left = contentOf(opened.path);
        QVERIFY2(left == all || left == removed, left.left(200).constData());
        sizes << left.size();
    }
    QCOMPARE(sizes.size(), 2);
}

void TestKpshapesDocumentFile::savesUnderAnotherName()
{
    Opened opened(twoShapes);
    QString const other = opened.folder.filePath("b.xml");
    Items const items = opened.file.source().items();
    QVERIFY(opened.file.save({items[1]}, other, opened.diagnostics));
    QCOMPARE(opened.file.path(), other);
    QCOMPARE(contentOf(opened.path), twoShapes);
    QCOMPARE(contentOf(other), QByteArray("<D> <!-- c -->\n <S Name='b'><Geometry/></S>\n</D>\n"));
    QVERIFY(!opened.file.hasChangedOnDisk());
    QVERIFY(opened.file.save(items, other, opened.diagnostics));
    QCOMPARE(contentOf(other), twoShapes);
}

void TestKpshapesDocumentFile::savesANewDocument()
{
    QTemporaryDir const folder;
    DocumentFile file;
    QVERIFY(file.path().isEmpty());
    QVERIFY(!file.hasChangedOnDisk());
    QVERIFY(!file.isReadOnly());
    KpPathSegList list;
    auto const item = std::make_shared<ShapeItem const>(
        ShapeItem {"a", QSizeF(2, 3), {}, recordOf(list), {}, -1});
    Diagnostics diagnostics;
    QVERIFY(file.save({item}, folder.filePath("a.xml"), diagnostics));
    QCOMPARE(contentOf(file.path()),
        QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Shapes>\n"
                   " <Shape Name=\"a\" Width=\"2\" Height=\"3\">\n  <Geometry Closed=\"0\"/>\n"
                   " </Shape>\n</Shapes>\n"));
    QCOMPARE(file.state().size, QFileInfo(file.path()).size());
    QVERIFY(!file.hasChangedOnDisk());
    QVERIFY(diagnostics.isEmpty());
}

void TestKpshapesDocumentFile::keepsTheFileWhenItCannotBeWritten()
{
    Opened opened(twoShapes);
    FileState const before = opened.file.state();
    QVERIFY(!opened.file.save({}, opened.folder.filePath("none/a.xml"), opened.diagnostics));
    QVERIFY(!opened.file.save({}, opened.folder.path(), opened.diagnostics));
    QCOMPARE(opened.diagnostics.size(), 2);
    QCOMPARE(opened.diagnostics.at(1).text, "is no file that can be edited");
    QCOMPARE(opened.file.path(), opened.path);
    QCOMPARE(opened.file.state().digest, before.digest);
    QCOMPARE(contentOf(opened.path), twoShapes);
}

void TestKpshapesDocumentFile::tellsWhatHasNoPlace()
{
    Opened opened("<D><Geometry/></D>");
    ShapeDocument document;
    document.reset(opened.file.source().items());
    document.working().name = "x";
    QVERIFY(document.commit("Rename"));
    QVERIFY(opened.file.save(document.items(), opened.path, opened.diagnostics));
    QCOMPARE(opened.diagnostics.size(), 1);
    QCOMPARE(opened.diagnostics.at(0).severity, Diagnostic::Severity::Warning);
    QCOMPARE(opened.diagnostics.at(0).text,
        "in this document there is no place for the name, box or fill rule of 1 outline");
}

void TestKpshapesDocumentFile::noticesChangesOnDisk_data()
{
    using Change = std::function<void(QString const&)>;
    QTest::addColumn<Change>("change");
    QTest::addColumn<bool>("isChanged");

    auto const later = [](QString const& path) {
        QFile file(path);
        if (!file.open(QIODevice::ReadWrite)
            || !file.setFileTime(
                QDateTime::currentDateTime().addSecs(60), QFileDevice::FileModificationTime))
            qFatal("no time for %s", qPrintable(path));
    };
    QTest::newRow("none") << Change([](QString const&) {}) << false;
    QTest::newRow("another size") << Change([](QString const& path) {
        write(path, twoShapes + '\n');
    }) << true;
    QTest::newRow("another content") << Change([later](QString const& path) {
        write(path, QByteArray(twoShapes).replace('a', 'b'));
        later(path);
    }) << true;
    QTest::newRow("another time alone") << Change(later) << false;
    QTest::newRow("gone") << Change([](QString const& path) { QFile::remove(path); }) << true;
}

void TestKpshapesDocumentFile::noticesChangesOnDisk()
{
    QFETCH(std::function<void(QString const&)>, change);
    QFETCH(bool, isChanged);

    Opened opened(twoShapes);
    change(opened.path);
    QCOMPARE(opened.file.hasChangedOnDisk(), isChanged);
    QVERIFY(opened.file.save({}, opened.path, opened.diagnostics));
    QVERIFY(!opened.file.hasChangedOnDisk());
    QVERIFY(opened.file.save(opened.file.source().items(), opened.path, opened.diagnostics));
    change(opened.path);
    QCOMPARE(opened.file.hasChangedOnDisk(), isChanged);
}

void TestKpshapesDocumentFile::knowsWhatCannotBeWritten()
{
    OrdinaryUser const user;
    Opened other(twoShapes);
    QVERIFY(QFile::setPermissions(other.path, QFile::Permissions(0x4444)));
    QVERIFY(other.file.isReadOnly());
    QVERIFY(QFile::setPermissions(other.path, QFile::Permissions(0x6666)));
    QVERIFY(!other.file.isReadOnly());
    QVERIFY(QFile::setPermissions(other.folder.path(), QFile::Permissions(0x5555)));
    QVERIFY(other.file.isReadOnly());
    QVERIFY(!other.file.save({}, other.path, other.diagnostics));
    QVERIFY(QFile::setPermissions(other.folder.path(), QFile::Permissions(0x7777)));
    QCOMPARE(contentOf(other.path), twoShapes);
}

QTEST_GUILESS_MAIN(TestKpshapesDocumentFile)
#include "tst_kpshapes_documentfile.moc"
