// SPDX-License-Identifier: MIT
#include "document/appearance.h"

#include <QtTest>

#include <array>
#include <thread>
#include <vector>

/** What documents hold is computed in several threads at once, from the first question on. */
class TestCoreThreads : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void coloursAreTransformedInAnyThread();
};

void TestCoreThreads::coloursAreTransformedInAnyThread()
{
    std::array<QVector<QRgb>, 4> results;
    std::vector<std::thread> threads;
    for (QVector<QRgb>& result : results) {
        threads.emplace_back([&result] {
            // All of it is the thread's own: what is shared would put the threads in an order.
            ShapeColour colour;
            colour.colour = QColor(68, 114, 196);
            colour.transforms = {{"shade", 0.5}, {"alpha", 0.5}};
            for (QColor const& step : colour.steps())
                result.append(step.rgba());
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    QVector<QRgb> const expected {0xff4472c4, 0xff2f528f, 0x802f528f};
    for (QVector<QRgb> const& result : results)
        QCOMPARE(result, expected);
}

QTEST_GUILESS_MAIN(TestCoreThreads)
#include "tst_corethreads.moc"
