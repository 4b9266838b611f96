// SPDX-License-Identifier: MIT
#include "files/filestate.h"
#include "files/recovery.h"
#include "testing.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

#include <unistd.h>

namespace {

RecoveryContent const content {
    "/home/a b/\u00e4\n%41.xml", "0123456789abcdef0123456789abcdef", "<D>\r\n\0\n\n</D>"};

/** What a child process does: it keeps a document, if at all, says so, and waits for its end. */
int holdRecovery(QString const& folder, bool isStored)
{
    Diagnostics diagnostics;
    auto const file = RecoveryFile::create(folder, diagnostics);
    if (!file || (isStored && !file->store(content, diagnostics)))
        return 1;
    QFile out;
    if (!out.open(stdout, QIODevice::WriteOnly) || out.write("kept\n") < 0 || !out.flush())
        return 1;
    for (;;)
        pause();
}

/** Starts the child, and waits until it has kept its document, or is about to. */
bool startHolding(QProcess& child, QString const& folder, QString const& how = "--hold")
{
    child.start(QCoreApplication::applicationFilePath(), {how, folder});
    return child.waitForReadyRead(20000) && child.readAllStandardOutput() == "kept\n";
}

QStringList filesIn(QString const& folder)
{
    return QDir(folder).entryList(QDir::Files, QDir::Name);
}

} // namespace

class TestKpshapesRecovery : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void workSurvivesAKilledProcess();
    void lockOfAProcessThatKeptNothingGoes();
    void givesBackWhatWasStored();
    void replacesWhatWasStored();
    void leavesNothingBehind();
    void aRecoveredDocumentIsKeptOn();
    void listsTheLatestFirst();
    void refusesDamagedFiles_data();
    void refusesDamagedFiles();
    void headersAreBounded_data();
    void headersAreBounded();
    void skipsHeadersOfLaterVersions();
    void tellsOfAFolderThatCannotBe();
};

void TestKpshapesRecovery::workSurvivesAKilledProcess()
{
    QTemporaryDir const folder;
    QProcess child;
    QVERIFY(startHolding(child, folder.path()));
    QVERIFY(listRecoverable(folder.path()).empty());
    QStringList const files = filesIn(folder.path()).filter(".recovery");
    QCOMPARE(files.size(), 1);
    QString const file = folder.filePath(files.first());
    QVERIFY(!discardRecovery(file));
    QVERIFY(!RecoveryFile::adopt(file));

    child.kill();
    QVERIFY(child.waitForFinished());
    QCOMPARE(child.exitStatus(), QProcess::CrashExit);
    auto const left = listRecoverable(folder.path());
    QCOMPARE(left.size(), std::size_t(1));
    QCOMPARE(left[0].file, file);
    QCOMPARE(left[0].path, content.path);
    QVERIFY(qAbs(left[0].time.secsTo(QDateTime::currentDateTime())) < 60);
    Diagnostics diagnostics;
    auto const read = readRecovery(file, diagnostics);
    QVERIFY(read);
    QCOMPARE(read->text, content.text);
    QVERIFY(discardRecovery(file));
    QCOMPARE(filesIn(folder.path()), QStringList());
}

void TestKpshapesRecovery::lockOfAProcessThatKeptNothingGoes()
{
    QTemporaryDir const folder;
    QProcess child;
    QVERIFY(startHolding(child, folder.path(), "--hold-nothing"));
    QVERIFY(listRecoverable(folder.path()).empty());
    QCOMPARE(filesIn(folder.path()).filter(".lock").size(), 1);
    child.kill();
    QVERIFY(child.waitForFinished());
    QCOMPARE(filesIn(folder.path()).filter(".lock").size(), 1);
    QVERIFY(listRecoverable(folder.path()).empty());
    QCOMPARE(filesIn(folder.path()), QStringList());
}

void TestKpshapesRecovery::givesBackWhatWasStored()
{
    QTemporaryDir const folder;
    Diagnostics diagnostics;
    auto const file = RecoveryFile::create(folder.filePath("deep/er"), diagnostics);
    QVERIFY(file);
    for (RecoveryContent const& stored :
        {content, RecoveryContent {}, RecoveryContent {"", "", QByteArray(3000000, 'x')}}) {
        QVERIFY(file->store(stored, diagnostics));
        auto const read = readRecovery(file->file(), diagnostics);
        QVERIFY(read);
        QCOMPARE(read->path, stored.path);
        QCOMPARE(read->digest, stored.digest);
        QCOMPARE(read->text, stored.text);
    }
    QVERIFY(diagnostics.isEmpty());
}

void TestKpshapesRecovery::replacesWhatWasStored()
{
    QTemporaryDir const folder;
    Diagnostics diagnostics;
    auto const file = RecoveryFile::create(folder.path(), diagnostics);
    QVERIFY(file->store({"a", "", "long text"}, diagnostics));
    QVERIFY(file->store({"b", "", "short"}, diagnostics));
    QCOMPARE(readRecovery(file->file(), diagnostics)->text, QByteArray("short"));
    QFile stored(file->file());
    QVERIFY(stored.open(QIODevice::ReadOnly));
    QCOMPARE(stored.readAll(),
        "kpshapes-recovery 1\npath: b\ndigest: \nbytes: 5\ntext-digest: " + digestOf("short")
            + "\n\nshort");
    file->discard();
    QVERIFY(!QFileInfo::exists(file->file()));
    QVERIFY(file->store({"b", "", "again"}, diagnostics));
    QCOMPARE(readRecovery(file->file(), diagnostics)->text, QByteArray("again"));
}

void TestKpshapesRecovery::leavesNothingBehind()
{
    QTemporaryDir const folder;
    Diagnostics diagnostics;
    {
        auto const first = RecoveryFile::create(folder.path(), diagnostics);
        auto const second = RecoveryFile::create(folder.path(), diagnostics);
        QVERIFY(first->file() != second->file());
        QVERIFY(first->store(content, diagnostics));
        QVERIFY(listRecoverable(folder.path()).empty());
    }
    QCOMPARE(filesIn(folder.path()), QStringList());
}

void TestKpshapesRecovery::aRecoveredDocumentIsKeptOn()
{
    QTemporaryDir const folder;
    QProcess child;
    QVERIFY(startHolding(child, folder.path()));
    child.kill();
    QVERIFY(child.waitForFinished());
    QString const file = listRecoverable(folder.path()).at(0).file;
    Diagnostics diagnostics;
    {
        auto const adopted = RecoveryFile::adopt(file);
        QVERIFY(adopted);
        QVERIFY(listRecoverable(folder.path()).empty());
        QVERIFY(!RecoveryFile::adopt(file));
        QCOMPARE(readRecovery(adopted->file(), diagnostics)->text, content.text);
        QVERIFY(adopted->store({"a", "", "later"}, diagnostics));
        QCOMPARE(readRecovery(file, diagnostics)->text, QByteArray("later"));
    }
    QCOMPARE(filesIn(folder.path()), QStringList());
    QVERIFY(!RecoveryFile::adopt(file));
    QVERIFY(!discardRecovery(file));
    QVERIFY(!discardRecovery(folder.filePath("other.xml")));
}

void TestKpshapesRecovery::listsTheLatestFirst()
{
    QTemporaryDir const folder;
    QDateTime const now = QDateTime::currentDateTime();
    for (int const age : {20, 0, 10}) {
        QFile file(folder.filePath(QString("%1.recovery").arg(age)));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("kpshapes-recovery 1\npath: x\nbytes: 0\ntext-digest: " + digestOf("") + "\n\n");
        QVERIFY(file.flush());
        QVERIFY(file.setFileTime(now.addSecs(-age), QFileDevice::FileModificationTime));
    }
    QStringList names;
    for (auto const& document : listRecoverable(folder.path()))
        names << QFileInfo(document.file).fileName();
    QCOMPARE(names, (QStringList {"0.recovery", "10.recovery", "20.recovery"}));
    QVERIFY(listRecoverable(folder.filePath("none")).empty());
}

void TestKpshapesRecovery::refusesDamagedFiles_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("isListed");
    QTest::addColumn<QString>("text");

    QByteArray const head = "kpshapes-recovery 1\npath: x\n";
    QByteArray const good = head + "bytes: 3\ntext-digest: " + digestOf("abc") + "\n\n";
    QTest::newRow("empty") << QByteArray() << false << "is no recovery file";
    QTest::newRow("another file") << QByteArray("<D/>") << false << "is no recovery file";
    QTest::newRow("another version")
        << QByteArray(good).replace(" 1\n", " 2\n") + "abc" << false << "is no recovery file";
    QTest::newRow("header cut") << head << false << "is no recovery file";
    QTest::newRow("an endless header")
        << head + QByteArray("a: b\n").repeated(1000) << false << "is no recovery file";
    QTest::newRow("an endless line")
        << head + QByteArray(200000, 'x') << false << "is no recovery file";
    QTest::newRow("text cut") << good + "ab" << false << "is damaged";
    QTest::newRow("text too long") << good + "abcd" << false << "is damaged";
    QTest::newRow("another text") << good + "abd" << true << "is damaged";
    QTest::newRow("no size") << head + "\nabc" << false << "is damaged";
}

void TestKpshapesRecovery::refusesDamagedFiles()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, isListed);
    QFETCH(QString, text);

    QTemporaryDir const folder;
    QFile file(folder.filePath("a.recovery"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
    file.close();
    QCOMPARE(!listRecoverable(folder.path()).empty(), isListed);
    Diagnostics diagnostics;
    QVERIFY(!readRecovery(file.fileName(), diagnostics));
    QCOMPARE(diagnostics.size(), 1);
    QCOMPARE(diagnostics.at(0).text, text);
}

void TestKpshapesRecovery::headersAreBounded_data()
{
    QTest::addColumn<QByteArray>("more"); // lines beside three that are needed, and the empty one
    QTest::addColumn<bool>("isRead");
    QTest::newRow("most lines") << QByteArray("a: b\n").repeated(96) << true;
    QTest::newRow("one line more") << QByteArray("a: b\n").repeated(97) << false;
    QTest::newRow("longest line") << "a: " + QByteArray(65531, 'x') + "\n" << true;
    QTest::newRow("a line of one byte more") << "a: " + QByteArray(65532, 'x') + "\n" << false;
}

void TestKpshapesRecovery::headersAreBounded()
{
    QFETCH(QByteArray, more);
    QTemporaryDir const folder;
    QFile file(folder.filePath("a.recovery"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("kpshapes-recovery 1\npath: x\n" + more + "bytes: 3\ntext-digest: " + digestOf("abc")
        + "\n\nabc");
    file.close();
    Diagnostics diagnostics;
    QTEST(readRecovery(file.fileName(), diagnostics).has_value(), "isRead");
}

void TestKpshapesRecovery::skipsHeadersOfLaterVersions()
{
    QTemporaryDir const folder;
    QFile file(folder.filePath("a.recovery"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("kpshapes-recovery 1\npath: x\nzoom: 3\nbytes: 3\ntext-digest: " + digestOf("abc")
        + "\n\nabc");
    file.close();
    Diagnostics diagnostics;
    QCOMPARE(readRecovery(file.fileName(), diagnostics)->text, QByteArray("abc"));
}

void TestKpshapesRecovery::tellsOfAFolderThatCannotBe()
{
    QTemporaryDir const folder;
    QFile file(folder.filePath("a"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    Diagnostics diagnostics;
    QVERIFY(!RecoveryFile::create(folder.filePath("a/b"), diagnostics));
    QCOMPARE(diagnostics.size(), 1);
    QCOMPARE(diagnostics.at(0).text, "work cannot be kept there for recovery");
}

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    QStringList const arguments = QCoreApplication::arguments();
    if (arguments.size() == 3 && arguments.at(1).startsWith("--hold"))
        return holdRecovery(arguments.at(2), arguments.at(1) == "--hold");
    TestKpshapesRecovery test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

#include "tst_kpshapes_recovery.moc"
