// SPDX-License-Identifier: MIT
#include "common/filecontent.h"
#include "common/unfinishedfile.h"

#include <QTemporaryDir>
#include <QtTest>

#include <atomic>
#include <thread>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

namespace {

/** How a child ends that does something. */
template <class Action> int exitCodeOf(Action action)
{
    pid_t const child = fork();
    if (child == 0) {
        action();
        _exit(0);
    }
    int status = -1;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace

class TestUnfinishedFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void thereMayBeSeveral();
    void allAreAwaited();
    void noneIsMadeAfterwards();
    void endAmongWritersLeavesWholeFiles();
};

void TestUnfinishedFile::thereMayBeSeveral()
{
    UnfinishedFile const one;
    UnfinishedFile const two;
    bool isMade = false;
    std::thread([&] {
        UnfinishedFile const three;
        isMade = true;
    }).join();
    QVERIFY(isMade);
}

void TestUnfinishedFile::allAreAwaited()
{
    int const code = exitCodeOf([] {
        std::atomic<int> unfinished {0};
        for (int i = 1; i <= 3; ++i) {
            ++unfinished;
            auto* const file = new UnfinishedFile;
            std::thread([&unfinished, file, i] {
                QThread::msleep(static_cast<unsigned long>(20 * i));
                --unfinished;
                delete file;
            }).detach();
        }
        UnfinishedFile::awaitAllForGood();
        _exit(unfinished);
    });
    QCOMPARE(code, 0);
}

void TestUnfinishedFile::noneIsMadeAfterwards()
{
    QTemporaryDir const folder;
    int const code = exitCodeOf([&] {
        UnfinishedFile::awaitAllForGood();
        std::thread([&] {
            Diagnostics diagnostics;
            writeFile(folder.filePath("late"), "content", diagnostics);
        }).detach();
        QThread::msleep(200);
        _exit(QDir(folder.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot).size());
    });
    QCOMPARE(code, 0);
}

void TestUnfinishedFile::endAmongWritersLeavesWholeFiles()
{
    QTemporaryDir const folder;
    QByteArray const content(10000, 'x');
    for (int round = 0; round < 20; ++round) {
        int const code = exitCodeOf([&] {
            for (int writer = 0; writer < 6; ++writer) {
                std::thread([&, writer] {
                    // Replaced again and again: that takes a temporary name.
                    for (Diagnostics diagnostics;;)
                        writeFile(folder.filePath(QString::number(writer)), content, diagnostics);
                }).detach();
            }
            QThread::msleep(5 + static_cast<unsigned long>(round));
            UnfinishedFile::awaitAllForGood();
            _exit(3);
        });
        QCOMPARE(code, 3);
    }
    QStringList const names =
        QDir(folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    QCOMPARE(names, (QStringList {"0", "1", "2", "3", "4", "5"}));
    for (QString const& name : names) {
        QFile file(folder.filePath(name));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), content);
    }
}

QTEST_GUILESS_MAIN(TestUnfinishedFile)

#include "tst_unfinishedfile.moc"
