// SPDX-License-Identifier: MIT
#include "kpshapestesting.h"
#include "testing.h"
#include "windowtesting.h"

#include <QElapsedTimer>
#include <QProgressBar>
#include <QTimer>
#include <QToolButton>

#include <memory>

using Testing::trigger;
using Testing::WindowFolder;

namespace {

constexpr int outlineCount = 7000;

/** An outline of four points, and what the editor does not know. */
QByteArray outline(int number)
{
    QByteArray const name = QByteArray::number(number);
    QByteArray text = "<Shape Name='s" + name + "' Width='100' Height='100' x='" + name
        + "'><Geometry Closed='1'><MoveTo><X V='0' B='1' P='0'/><Y V='0' B='2' P='0'/></MoveTo>";
    for (int i = 1; i < 4; ++i) {
        QByteArray const at = QByteArray::number(i * 25);
        text += "<LineTo><X V='" + at + "' B='1' P='0." + at + "'/><Y V='" + at + "' B='2' P='0."
            + at + "'/></LineTo>";
    }
    return text + "</Geometry></Shape>\n";
}

QByteArray const& manyOutlines()
{
    static QByteArray const text = [] {
        QByteArray all = "<Shapes>\n";
        for (int i = 0; i < outlineCount; ++i)
            all += outline(i);
        return all + "</Shapes>";
    }();
    return text;
}

/** Measures for how long the event loop did not come to anything else. */
class Pauses : public QObject
{
public:
    Pauses()
    {
        connect(&m_timer, &QTimer::timeout, this, [this] {
            longest = std::max(longest, m_clock.restart());
            ++turns;
        });
        m_clock.start();
        m_timer.start(0);
    }

    qint64 longest = 0; ///< in milliseconds
    int turns = 0;

private:
    QElapsedTimer m_clock;
    QTimer m_timer;
};

} // namespace

/** A large document is read while the window goes on. */
class TestKpshapesLoading : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<WindowFolder> m_folder;
    std::unique_ptr<MainWindow> m_window;
    QString m_path;

    DocumentController& controller() { return m_window->controller(); }

    /** Begins to open the document, and waits until some of it is there. */
    void begin()
    {
        controller().open(m_path);
        QVERIFY(QTest::qWaitFor([this] { return m_window->document().count() > 0; }));
        QVERIFY(controller().isLoading());
    }

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<WindowFolder>();
        m_path = m_folder->write("many.xml", manyOutlines());
        m_window = std::make_unique<MainWindow>(m_folder->surroundings());
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    }

    void cleanup()
    {
        m_window.reset();
        m_folder.reset();
    }

    void theWindowGoesOn()
    {
        QElapsedTimer clock;
        clock.start();
        qint64 first = -1;
        connect(&m_window->document(), &ShapeDocument::itemsReplaced, this, [&] {
            if (first < 0 && m_window->document().count() > 0)
                first = clock.elapsed();
        });
        Pauses const pauses;
        controller().open(m_path);
        QVERIFY(Testing::awaitLoading(*m_window));
        qint64 const whole = clock.elapsed();
        QCoreApplication::processEvents();
        m_window->document().disconnect(this);
        qInfo("first outlines after %lld ms, all after %lld ms, longest pause %lld ms", first,
            whole, pauses.longest);
        QCOMPARE(m_window->document().count(), outlineCount);
        QCOMPARE(m_window->document().at(outlineCount - 1).name, QString("s6999"));
        QVERIFY(pauses.turns > 3);
        QVERIFY(first >= 0 && first < whole);
        QCOMPARE(controller().text(), manyOutlines());
    }

    void progressIsShown()
    {
        auto* const progress = m_window->findChild<QProgressBar*>();
        QVERIFY(progress && !progress->isVisible());
        begin();
        QVERIFY(progress->isVisible());
        QCOMPARE(controller().title(), QString("many.xml"));
        QVERIFY(Testing::awaitLoading(*m_window));
        QVERIFY(!progress->isVisible());
        QVERIFY(progress->value() > 500);
    }

    void readingIsCancelled()
    {
        begin();
        QToolButton* cancel = nullptr;
        for (QToolButton* const button : m_window->findChildren<QToolButton*>()) {
            if (button->accessibleName() == "Cancel reading")
                cancel = button;
        }
        QVERIFY(cancel && cancel->isVisible());
        cancel->click();
        QVERIFY(Testing::awaitLoading(*m_window));
        QVERIFY(!cancel->isVisible());
        // Half of a document must not pass for the whole.
        QCOMPARE(m_window->document().count(), 0);
        QCOMPARE(controller().path(), QString());
        QCOMPARE(controller().title(), QString("New shapes"));
        QVERIFY(!controller().isModified());
    }

    void halfADocumentIsNotSaved()
    {
        begin();
        trigger(*m_window, "save");
        m_folder->prompter.saveAs = m_folder->path("other.xml");
        trigger(*m_window, "save-as");
        QVERIFY2(m_window->messages().text().contains("it is still being read"),
            qPrintable(m_window->messages().text()));
        QVERIFY(!QFile::exists(m_folder->path("other.xml")));
        QCOMPARE(WindowFolder::read(m_path), manyOutlines());
        QVERIFY(Testing::awaitLoading(*m_window));
        QCOMPARE(m_window->document().count(), outlineCount);
    }

    void whatIsDoneMeanwhileIsKept()
    {
        begin();
        Testing::movePoint(*m_window, 7.0);
        QVERIFY(controller().isModified());
        controller().storeRecovery();
        QVERIFY(Testing::awaitLoading(*m_window));
        QCOMPARE(m_window->document().count(), outlineCount);
        QCOMPARE(m_window->document().working().list->segs.first()->pt.x.value, 7.0);
        QVERIFY(controller().isModified());
        trigger(*m_window, "undo");
        QCOMPARE(controller().text(), manyOutlines());
    }

    /** What was changed before the file is read anew goes; what is changed meanwhile does not. */
    void whatIsDoneWhileTheFileIsReadAnewIsKept()
    {
        QVERIFY(Testing::openFile(*m_window, m_path));
        Testing::movePoint(*m_window, 5.0);
        m_folder->prompter.isConfirmed = true;
        trigger(*m_window, "reload");
        QVERIFY(controller().isLoading());
        // As many steps as before, and yet another one.
        trigger(*m_window, "undo");
        Testing::movePoint(*m_window, 7.0);
        QVERIFY(Testing::awaitLoading(*m_window));
        QCOMPARE(m_window->document().working().list->segs.first()->pt.x.value, 7.0);
        QVERIFY(controller().isModified());
        QVERIFY2(m_window->messages().text().contains("it was changed here while"),
            qPrintable(m_window->messages().text()));
    }

    void anotherFileIsOpenedMeanwhile()
    {
        begin();
        QString const other = m_folder->write("other.xml", Testing::twoOutlines());
        QVERIFY(Testing::openFile(*m_window, other));
        QCOMPARE(controller().path(), other);
        QCOMPARE(m_window->document().count(), 2);
        QTest::qWait(50);
        QCOMPARE(m_window->document().count(), 2);
    }

    void theWindowClosesMeanwhile()
    {
        begin();
        QVERIFY(m_window->close());
        QVERIFY(!m_window->controller().isModified());
        m_window.reset();
    }

    void aBrokenEndDropsTheBeginning()
    {
        QByteArray broken = manyOutlines();
        broken.chop(9);
        m_folder->write("many.xml", broken);
        QVERIFY(Testing::openFile(*m_window, m_path));
        QCOMPARE(m_window->document().count(), 0);
        QVERIFY2(m_window->messages().text().contains("many.xml:7002:"),
            qPrintable(m_window->messages().text()));
    }
};

KPSHAPES_TEST_MAIN(TestKpshapesLoading)
#include "tst_kpshapes_loading.moc"
