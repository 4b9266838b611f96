// SPDX-License-Identifier: MIT
#include "process/messagelog.h"
#include "testing.h"

#include <QTemporaryFile>

#include <thread>
#include <vector>

#include <unistd.h>

class TestMessageLog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keepsMessagesFromTheUsualHandler();
    void takesEachMessageOnce();
    void putsEachMessageOnOneLine();
    void countsWhatIsTooMuch_data();
    void countsWhatIsTooMuch();
    void countsRepeatedMessagesOnce();
    void forgetsWhatIsTaken();
    void restoresTheHandler();
    void threadsHaveTheirOwn();
    void quietStandardErrorDropsAndRestores();
    void errorsAreNeverDropped();
};

namespace {

void logNumbered(int first, int last)
{
    for (int i = first; i <= last; ++i)
        qWarning("message %d", i);
}

} // namespace

void TestMessageLog::keepsMessagesFromTheUsualHandler()
{
    Testing::MessageWatch watch;
    MessageLog log;
    qDebug("debug");
    qInfo("info");
    qWarning("warning");
    qCritical("critical");
    QCOMPARE(log.take(), QStringList({"debug", "info", "warning", "critical"}));
    VERIFY_NOTHING_LOGGED(watch);
}

void TestMessageLog::takesEachMessageOnce()
{
    MessageLog log;
    QCOMPARE(log.take(), QStringList());
    qWarning("one");
    qWarning("two");
    qCritical("one");
    QCOMPARE(log.take(), QStringList({"one", "two"}));
}

void TestMessageLog::putsEachMessageOnOneLine()
{
    MessageLog log;
    qWarning(" one\n\ttwo  three\r\n");
    QCOMPARE(log.take(), QStringList("one two three"));
}

void TestMessageLog::countsWhatIsTooMuch_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("lines");
    QTest::addColumn<QString>("last");
    QTest::newRow("twenty") << 20 << 20 << "message 20";
    QTest::newRow("one more") << 21 << 21 << "1 more message of this kind";
    QTest::newRow("many") << 1000 << 21 << "980 more messages of this kind";
}

void TestMessageLog::countsWhatIsTooMuch()
{
    QFETCH(int, count);
    QFETCH(int, lines);
    QFETCH(QString, last);
    QStringList taken;
    {
        MessageLog log;
        logNumbered(1, count);
        taken = log.take();
    }
    QCOMPARE(taken.size(), lines);
    QCOMPARE(taken.at(19), QStringLiteral("message 20"));
    QCOMPARE(taken.last(), last);
}

void TestMessageLog::countsRepeatedMessagesOnce()
{
    QStringList taken;
    {
        MessageLog log;
        for (int i = 0; i < 3; ++i)
            logNumbered(1, 22);
        taken = log.take();
    }
    QCOMPARE(taken.size(), 21);
    QCOMPARE(taken.last(), QStringLiteral("2 more messages of this kind"));
}

void TestMessageLog::forgetsWhatIsTaken()
{
    QStringList first;
    QStringList second;
    QStringList third;
    {
        MessageLog log;
        logNumbered(1, 30);
        first = log.take();
        logNumbered(25, 26);
        logNumbered(1, 1);
        second = log.take();
        third = log.take();
    }
    QCOMPARE(first.size(), 21);
    QCOMPARE(second, QStringList({"message 25", "message 26", "message 1"}));
    QCOMPARE(third, QStringList());
}

void TestMessageLog::restoresTheHandler()
{
    Testing::MessageWatch watch;
    for (int i = 0; i < 2; ++i) {
        MessageLog const log;
        qWarning("inside");
    }
    qWarning("outside");
    QCOMPARE(watch.take(), QStringList("outside"));
}

void TestMessageLog::threadsHaveTheirOwn()
{
    Testing::MessageWatch watch;
    MessageLog own;
    std::vector<QStringList> taken(4);
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < taken.size(); ++i) {
        threads.emplace_back([&taken, i] {
            for (int round = 0; round < 500; ++round) {
                MessageLog log;
                qWarning("thread %d", int(i));
                taken[i] += log.take();
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    for (std::size_t i = 0; i < taken.size(); ++i) {
        QCOMPARE(taken[i].size(), 500);
        QCOMPARE(taken[i].count(QStringLiteral("thread %1").arg(i)), 500);
    }
    QCOMPARE(own.take(), QStringList());
    std::thread([] { qWarning("without a log"); }).join();
    QCOMPARE(own.take(), QStringList());
    QCOMPARE(watch.take(), QStringList("without a log"));
}

void TestMessageLog::quietStandardErrorDropsAndRestores()
{
    QTemporaryFile file;
    QVERIFY(file.open());
    int const usual = dup(STDERR_FILENO);
    dup2(file.handle(), STDERR_FILENO);
    auto const say = [](QByteArray const& text) {
        return write(STDERR_FILENO, text.constData(), std::size_t(text.size())) == text.size();
    };
    bool isSaid = say("before ");
    {
        QuietStandardError const quiet;
        isSaid = say("dropped ") && isSaid;
    }
    isSaid = say("after") && isSaid;
    dup2(usual, STDERR_FILENO);
    close(usual);
    QVERIFY(isSaid);
    QVERIFY(file.seek(0));
    QCOMPARE(file.readAll(), QByteArray("before after"));
}

void TestMessageLog::errorsAreNeverDropped()
{
    QTemporaryFile file;
    QVERIFY(file.open());
    int const usual = dup(STDERR_FILENO);
    dup2(file.handle(), STDERR_FILENO);
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([] {
            for (int round = 0; round < 200; ++round) {
                QuietStandardError const quiet;
                bool const isDropped = write(STDERR_FILENO, "dropped\n", 8) == 8;
                printError(isDropped ? "kept\n" : "fault\n");
            }
        });
    }
    for (int i = 0; i < 200; ++i)
        printError("kept\n");
    for (std::thread& thread : threads)
        thread.join();
    printError("kept\n");
    dup2(usual, STDERR_FILENO);
    close(usual);
    QVERIFY(file.seek(0));
    QCOMPARE(file.readAll(), QByteArray("kept\n").repeated(1001));
}

QTEST_GUILESS_MAIN(TestMessageLog)

#include "tst_messagelog.moc"
