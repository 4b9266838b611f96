// SPDX-License-Identifier: MIT
#include "colorutil.h"
#include "kpcolor.h"
#include "kpmath.h"
#include "md5.h"
#include "outlinetesting.h"
#include "stackblur_p.h"

#include <QPoint>

#include <atomic>
#include <thread>

using namespace OutlineTesting;
using namespace Testing;

namespace {

constexpr int threadCount = 4;
constexpr int rounds = sanitized ? 5 : 25;

/** What a thread works on, of which each has its own. */
using Work = QByteArray (*)();

QByteArray const curvedOutline =
    "<Geometry Closed='1'><MoveTo><X V='1' B='1' P='0.5'/><Y V='2' B='2' P='0.25'/></MoveTo>"
    "<LineTo><X V='30' B='3' P='4'/><Y V='4' B='7' P='0.5'/></LineTo>"
    "<CurveTo><X V='5'/><Y V='6'/><A V='7'/><B V='9'/><C V='8'/><D V='10'/></CurveTo>"
    "<Ellipse><X V='5'/><Y V='6'/><A V='7'/><B V='8'/></Ellipse></Geometry>";

QByteArray readAndWriteInStreamForm()
{
    KpPathSegList list;
    parseStream(list, curvedOutline);
    return streamXml(list);
}

QByteArray readAndWriteInDomForm()
{
    KpPathSegList list;
    parseDom(list, curvedOutline);
    return meaning(domXml(list).documentElement()).toUtf8();
}

QByteArray drawAndImport()
{
    KpPathSegList list;
    parseStream(list, curvedOutline);
    KpPath path;
    list.toPath(path);
    KpPathSegList imported;
    imported.fromPath(path);
    return (exact(path) + exact(imported)).toUtf8() + (list.isClockwise() ? "clockwise" : "");
}

QByteArray resizeMoveAndTurn()
{
    KpPathSegList list;
    parseStream(list, curvedOutline);
    list.updateValue(200.0, 100.0);
    list.translate(3.0, -4.0);
    list.applyTransform(QMatrix().rotate(30.0));
    list.updateRate(200.0, 100.0);
    KpPathSegList copy(list);
    copy.removeAt(1, true);
    return exact(copy).toUtf8();
}

QByteArray takeBackByUndoRecord()
{
    KpPathSegList list;
    parseStream(list, curvedOutline);
    QVector<int> ints;
    QVector<double> doubles;
    list.toUndoValue(ints, doubles);
    int at = 0;
    int doubleAt = 0;
    KpPathSegList restored;
    restored.fromUndoValue(ints, doubles, at, doubleAt, list.segs.size());
    return exact(restored).toUtf8();
}

QByteArray blurPixels()
{
    QRandomGenerator random(5);
    QVector<quint32> pixels(40 * 30);
    random.fillRange(pixels.data(), pixels.size());
    auto* const bytes = reinterpret_cast<quint8*>(pixels.data());
    StackBlur::Kernel const kernel {6, 0, 49};
    StackBlur::blurPlain({bytes, 160, bytes, 160, 40, 30}, kernel);
    StackBlur::blurWide({bytes, 160, bytes, 160, 40, 30}, kernel);
    return {reinterpret_cast<char const*>(bytes), pixels.size() * 4};
}

QByteArray computeDigest()
{
    MD5 message(std::string(1000, 'k'));
    message.update(curvedOutline.toStdString());
    return QByteArray::fromStdString(message.toString());
}

QByteArray askPlane()
{
    QPointF cross;
    int const kind = KpMath::kpCrossPoint({0, 0}, {10, 10}, {0, 10}, {10, 0}, cross);
    QPointF const unit = KpMath::kpUnitVector({3, 4});
    return QStringLiteral("%1 %2 %3 %4")
        .arg(kind)
        .arg(exact(cross.x()), exact(unit.x()), exact(KpMath::kpAtan({1, 2}, {5, 3})))
        .toUtf8();
}

QByteArray tintAndStoreColours()
{
    KpColor colour(QColor(47, 109, 181));
    ColorUtil::tint(colour, 0.25);
    ColorUtil::satMod(colour, 0.5);
    ColorUtil::gamma(colour, 0.0);
    ColorUtil::getColorFunc("shade")(colour, 0.5);
    QByteArray text;
    XmlStreamWriter writer(&text);
    colour.saveTo(writer, "Fill");
    return text + ColorUtil::RGBToString4(colour).toUtf8();
}

/** What `threadCount` threads got that do the same at once, `rounds` times each. */
QVector<QByteArray> resultsOfThreads(Work work)
{
    QVector<QByteArray> results(threadCount * rounds);
    QByteArray* const first = results.data();
    std::atomic<int> waiting {threadCount};
    std::vector<std::thread> threads;
    for (int i = 0; i < threadCount; ++i) {
        threads.emplace_back([=, &waiting] {
            --waiting;
            while (waiting > 0)
                std::this_thread::yield();
            for (int round = 0; round < rounds; ++round)
                first[i * rounds + round] = work();
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    return results;
}

} // namespace

Q_DECLARE_METATYPE(Work)

/** Several threads use the library at once, each what is its own, and get what one alone gets. */
class TestThreads : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void threadsGetWhatOneAloneGets_data();
    void threadsGetWhatOneAloneGets();
    void listsMayBeAskedAboutSegmentsOfOthers();
};

void TestThreads::threadsGetWhatOneAloneGets_data()
{
    QTest::addColumn<Work>("work");
    QTest::newRow("outline in stream form") << Work(readAndWriteInStreamForm);
    QTest::newRow("outline in DOM form") << Work(readAndWriteInDomForm);
    QTest::newRow("painter path") << Work(drawAndImport);
    QTest::newRow("resizing and turning") << Work(resizeMoveAndTurn);
    QTest::newRow("undo record") << Work(takeBackByUndoRecord);
    QTest::newRow("blur of bytes") << Work(blurPixels);
    QTest::newRow("digest") << Work(computeDigest);
    QTest::newRow("plane") << Work(askPlane);
    QTest::newRow("colours") << Work(tintAndStoreColours);
}

void TestThreads::threadsGetWhatOneAloneGets()
{
    QFETCH(Work, work);
    // The table of transforms belongs to one thread while it is filled.
    ColorUtil::initColorFunctionMap();
    QVector<QByteArray> const results = resultsOfThreads(work);
    QByteArray const alone = work();
    QVERIFY(!alone.isEmpty());
    for (QByteArray const& result : results)
        QCOMPARE(result, alone);
}

/** A thread asks its own list about its own segments, and about one that is not in it. */
void TestThreads::listsMayBeAskedAboutSegmentsOfOthers()
{
    std::array<KpPathSegList, threadCount> lists;
    for (KpPathSegList& list : lists) {
        for (int i = 0; i < 50; ++i)
            list.lineTo(QPointF(i, i));
    }
    std::array<int, threadCount> strays {};
    std::vector<std::thread> threads;
    for (std::size_t own = 0; own < lists.size(); ++own) {
        threads.emplace_back([own, &lists, &strays] {
            KpPathSegList const& list = lists[own];
            KpPathSegList const& other = lists[(own + 1) % lists.size()];
            for (int round = 0; round < rounds; ++round) {
                for (int i = 0; i + 1 < list.segs.size(); ++i) {
                    if (list.getNextSeg(list.segs.at(i)) != list.segs.at(i + 1))
                        ++strays[own];
                    if (list.getNextSeg(other.segs.at(i)) != list.segs.at(0))
                        ++strays[own];
                }
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    for (int const stray : strays)
        QCOMPARE(stray, 0);
}

QTEST_GUILESS_MAIN(TestThreads)
#include "tst_threads.moc"
