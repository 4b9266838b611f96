// SPDX-License-Identifier: MIT
#include "filereplacement_p.h"

#include <QTemporaryDir>
#include <QtTest>

#include <sys/stat.h>

class TestFileReplacement : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void onlyWhatIsNoFileIsDeviceOrPipe_data();
    void onlyWhatIsNoFileIsDeviceOrPipe();
    void allIsWritten();
    void missingRoomIsNoticed_data();
    void missingRoomIsNoticed();
};

void TestFileReplacement::onlyWhatIsNoFileIsDeviceOrPipe_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isDeviceOrPipe");
    QTest::newRow("missing") << "none" << false;
    QTest::newRow("file") << "file" << false;
    QTest::newRow("link to a file") << "link" << false;
    QTest::newRow("folder") << "." << true;
    QTest::newRow("pipe") << "pipe" << true;
    QTest::newRow("device") << "/dev/null" << true;
}

void TestFileReplacement::onlyWhatIsNoFileIsDeviceOrPipe()
{
    QFETCH(QString, name);
    QFETCH(bool, isDeviceOrPipe);
    QTemporaryDir const folder;
    QFile file(folder.filePath("file"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(QFile::link("file", folder.filePath("link")));
    QCOMPARE(mkfifo(QFile::encodeName(folder.filePath("pipe")).constData(), 0600), 0);
    QFileInfo const present(QDir(folder.path()).filePath(name));
    QCOMPARE(FileReplacement::isDeviceOrPipe(present), isDeviceOrPipe);
}

void TestFileReplacement::allIsWritten()
{
    QTemporaryDir const folder;
    QFile file(folder.filePath("file"));
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(FileReplacement::write(file, "some bytes"));
    QVERIFY(file.seek(0));
    QCOMPARE(file.readAll(), QByteArray("some bytes"));
}

void TestFileReplacement::missingRoomIsNoticed_data()
{
    QTest::addColumn<bool>("isBuffered");
    QTest::newRow("when it is flushed") << true;
    QTest::newRow("when it is written") << false;
}

void TestFileReplacement::missingRoomIsNoticed()
{
    QFETCH(bool, isBuffered);
    QFile full("/dev/full");
    QVERIFY(full.open(
        isBuffered ? QIODevice::WriteOnly : QIODevice::WriteOnly | QIODevice::Unbuffered));
    QVERIFY(!FileReplacement::write(full, "some bytes"));
}

QTEST_APPLESS_MAIN(TestFileReplacement)

#include "tst_filereplacement.moc"
