// SPDX-License-Identifier: MIT
#include "common/spool.h"

#include "testing.h"

#include <csignal>
#include <sys/resource.h>

/** What is written comes back, however much it is. */
class TestSpool : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void givesBackWhatWasWritten_data();
    void givesBackWhatWasWritten();
    void tellsWhatIsLost();
};

void TestSpool::givesBackWhatWasWritten_data()
{
    QTest::addColumn<int>("pieces");
    QTest::addColumn<int>("pieceSize");
    QTest::newRow("nothing") << 0 << 1;
    QTest::newRow("a byte") << 1 << 1;
    QTest::newRow("all in memory") << 1024 << 1024;
    QTest::newRow("a byte more") << 1048577 << 1;
    QTest::newRow("a large piece") << 1 << 3000000;
    QTest::newRow("many pieces") << 5000 << 999;
}

void TestSpool::givesBackWhatWasWritten()
{
    QFETCH(int, pieces);
    QFETCH(int, pieceSize);
    QRandomGenerator random = Testing::seededRandom(8);
    QByteArray all;
    Spool spool;
    for (int i = 0; i < pieces; ++i) {
        QByteArray const piece(pieceSize, char(random.bounded(256)));
        QCOMPARE(spool.write(piece), qint64(pieceSize));
        all += piece;
    }
    QVERIFY(spool.content().readAll() == all);
    QVERIFY(spool.content().readAll() == all);
    QVERIFY(!spool.hasFailed());
}

void TestSpool::tellsWhatIsLost()
{
    rlimit usual {};
    getrlimit(RLIMIT_FSIZE, &usual);
    rlimit const lower {1500000, usual.rlim_max};
    auto* const handler = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &lower);
    Spool spool;
    QByteArray const half(1000000, 'x');
    bool const isFirstKept = spool.write(half) == half.size() && !spool.hasFailed();
    spool.write(half);
    spool.content();
    setrlimit(RLIMIT_FSIZE, &usual);
    std::signal(SIGXFSZ, handler);
    QVERIFY(isFirstKept);
    QVERIFY(spool.hasFailed());
    QCOMPARE(spool.errorString(), QString("File too large"));
}

QTEST_GUILESS_MAIN(TestSpool)

#include "tst_spool.moc"
