// SPDX-License-Identifier: MIT
#include "documenttesting.h"
#include "files/documentloader.h"

#include <QTemporaryDir>

#include <sys/stat.h>

using namespace DocumentTesting;

namespace {

/** Writes a file into a folder of its own, and loads it. */
class Loading
{
public:
    explicit Loading(QByteArray const& content)
        : path(m_folder.filePath("a.xml"))
    {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("cannot write %s", qPrintable(path));
    }

    /** Loads what is at the path to the end. */
    void run()
    {
        DocumentLoader loader(path);
        follow(loader);
        loader.start();
        waitFor(loader);
    }

    void follow(DocumentLoader& loader)
    {
        timer.start();
        QObject::connect(&loader, &DocumentLoader::loaded, &loader, [this](Items const& items) {
            if (batches++ == 0)
                firstAfter = timer.elapsed();
            all.insert(all.end(), items.begin(), items.end());
            if (isFinished)
                qFatal("items after the end");
        });
        QObject::connect(&loader, &DocumentLoader::progress, &loader, [this](double done) {
            isProgressInOrder = isProgressInOrder && done >= progress && done <= 1.0;
            progress = done;
        });
        QObject::connect(
            &loader, &DocumentLoader::finished, &loader, [this](LoadResult const& loaded) {
                isFinished = true;
                result = loaded;
            });
    }

    void waitFor(DocumentLoader&)
    {
        if (!QTest::qWaitFor([this] { return isFinished; }, 60000))
            qFatal("never finished");
    }

private:
    QTemporaryDir m_folder;

public:
    QString path;
    QElapsedTimer timer;
    Items all;
    int batches = 0;
    qint64 firstAfter = -1;
    double progress = 0.0;
    bool isProgressInOrder = true;
    bool isFinished = false;
    LoadResult result;
};

/** So many outlines of some 3 kB. */
QByteArray documentOf(int outlines)
{
    QByteArray const segments = line(12.25, 34.75).repeated(48);
    QByteArray text = "<Shapes>\n";
    for (int i = 0; i < outlines; ++i)
        text += shape(QByteArray::number(i), segments) + '\n';
    return text + "</Shapes>\n";
}

} // namespace

class TestKpshapesLoader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void loadsItemsInOrder();
    void givesTheFirstItemsEarly();
    void leavesTheEventLoopFree();
    void tellsWhatIsWrong_data();
    void tellsWhatIsWrong();
    void handsPicturesBack();
    void stopsWhenCancelled_data();
    void stopsWhenCancelled();
    void stopsWhenDestroyed();
    void waitsForNoPipe();
};

void TestKpshapesLoader::loadsItemsInOrder()
{
    QByteArray const text = documentOf(100);
    Loading loading(text);
    loading.run();
    QCOMPARE(loading.result.reading.kind, SourceKind::Document);
    QVERIFY(!loading.result.reading.wasCancelled);
    QVERIFY(loading.result.diagnostics.isEmpty());
    QCOMPARE(loading.all.size(), std::size_t(100));
    QVERIFY(loading.all == loading.result.reading.document->items());
    QCOMPARE(loading.all[99]->name, "99");
    QCOMPARE(loading.all[99]->origin, 99);
    QCOMPARE(loading.result.state.size, qint64(text.size()));
    QCOMPARE(loading.result.state.digest, digestOf(text));
    QVERIFY(!hasChanged(loading.path, loading.result.state));
    QVERIFY(loading.isProgressInOrder);
    QVERIFY(loading.result.content.isEmpty());
}

void TestKpshapesLoader::givesTheFirstItemsEarly()
{
    QByteArray const text = documentOf(7000);
    QVERIFY(text.size() > 20000000);
    Loading loading(text);
    loading.run();
    qInfo("%d bytes: first items after %lld ms, all after %lld ms, %d batches", text.size(),
        loading.firstAfter, loading.timer.elapsed(), loading.batches);
    QCOMPARE(loading.all.size(), std::size_t(7000));
    QVERIFY(loading.batches > 2);
    QVERIFY(loading.progress > 0.9);
    QCOMPARE(loading.result.reading.document->write(loading.all), text);
}

void TestKpshapesLoader::leavesTheEventLoopFree()
{
    Loading loading(documentOf(3000));
    DocumentLoader loader(loading.path);
    loading.follow(loader);
    QElapsedTimer sinceLast;
    qint64 longest = 0;
    int turns = 0;
    QTimer ticks;
    connect(&ticks, &QTimer::timeout, this, [&] {
        longest = std::max(longest, sinceLast.restart());
        ++turns;
    });
    ticks.start(1);
    sinceLast.start();
    loader.start();
    loading.waitFor(loader);
    qInfo("longest pause %lld ms of %lld ms", longest, loading.timer.elapsed());
    QVERIFY(turns > 5);
}

void TestKpshapesLoader::tellsWhatIsWrong_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("text");

    QTest::newRow("broken at the end")
        << QByteArray("<D><Geometry/><Geometry/></E>") << "Opening and ending tag mismatch.";
    QTest::newRow("no file") << QByteArray() << "No such file or directory";
    QTest::newRow("a folder") << QByteArray() << "is no file that can be edited";
}

void TestKpshapesLoader::tellsWhatIsWrong()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, text);

    Loading loading(content);
    if (text.startsWith("No such"))
        QVERIFY(QFile::remove(loading.path));
    if (text.startsWith("is no"))
        loading.path = QFileInfo(loading.path).path();
    loading.run();
    QVERIFY(!loading.result.reading.document);
    QVERIFY(!loading.result.reading.wasCancelled);
    QCOMPARE(loading.result.diagnostics.size(), 1);
    QCOMPARE(loading.result.diagnostics.at(0).text, text);
    QCOMPARE(loading.result.diagnostics.at(0).file, loading.path);
}

void TestKpshapesLoader::handsPicturesBack()
{
    Loading loading("<svg xmlns=\"http://www.w3.org/2000/svg\"/>");
    loading.run();
    QCOMPARE(loading.result.reading.kind, SourceKind::Picture);
    QVERIFY(!loading.result.reading.document);
    QCOMPARE(loading.result.content, QByteArray("<svg xmlns=\"http://www.w3.org/2000/svg\"/>"));
    QVERIFY(loading.result.diagnostics.isEmpty());
}

void TestKpshapesLoader::stopsWhenCancelled_data()
{
    QTest::addColumn<QByteArray>("head");

    QTest::newRow("plain") << QByteArray();
    QTest::newRow("to be brought to UTF-8") << QByteArray("<!DOCTYPE Shapes>");
}

void TestKpshapesLoader::stopsWhenCancelled()
{
    QFETCH(QByteArray, head);

    Loading loading(head + documentOf(7000));
    DocumentLoader loader(loading.path);
    loading.follow(loader);
    loader.start();
    // Of a document that is rewritten first, no item comes this early.
    QVERIFY(QTest::qWaitFor(
        [&] { return loading.timer.elapsed() > 100 && (loading.batches > 0 || !head.isEmpty()); },
        60000));
    loader.cancel();
    int const batches = loading.batches;
    loading.waitFor(loader);
    QCOMPARE(loading.batches, batches);
    QVERIFY(loading.result.reading.wasCancelled);
    QVERIFY(!loading.result.reading.document);
    QVERIFY(loading.all.size() < 7000);
    QVERIFY(loading.result.diagnostics.isEmpty());
}

void TestKpshapesLoader::stopsWhenDestroyed()
{
    Loading loading(documentOf(7000));
    {
        DocumentLoader loader(loading.path);
        loading.follow(loader);
        loader.start();
        QVERIFY(QTest::qWaitFor([&] { return loading.batches > 0; }));
    }
    int const batches = loading.batches;
    QTest::qWait(50);
    QCOMPARE(loading.batches, batches);
    QVERIFY(!loading.isFinished);
    DocumentLoader const neverStarted(loading.path);
}

void TestKpshapesLoader::waitsForNoPipe()
{
    Loading loading("");
    QVERIFY(QFile::remove(loading.path));
    QCOMPARE(mkfifo(loading.path.toLocal8Bit().constData(), 0600), 0);
    loading.run();
    QCOMPARE(loading.result.diagnostics.size(), 1);
    QCOMPARE(loading.result.diagnostics.at(0).text, "is no file that can be edited");
}

QTEST_GUILESS_MAIN(TestKpshapesLoader)
#include "tst_kpshapes_loader.moc"
