#include "canvas/canvasaccessible.h"
#include "kpshapestesting.h"
#include "panels/boxcell.h"
#include "testing.h"
#include "window/stylechoice.h"
#include "windowtesting.h"

#include <QClipboard>
#include <QTimer>

#include <memory>

using Testing::WindowFolder;

namespace {

/** In each of the two sessions. */
constexpr int actionCount = 10000;

/** Two outlines, with what the editor does not know between them. */
QByteArray documentText()
{
    return R"(<?xml version="1.0" encoding="UTF-8"?>
<!-- kept -->
<drawing xmlns:x="urn:x" x:author="somebody">
    <shape Name='plate' Width="240" Height="160" x:id="1">
        <Geometry Closed="1"><MoveTo><X V="0" B="1" P="0"/><Y V="0" B="2" P="0"/></MoveTo>
            <LineTo><X V="200" B="3" P="40"/><Y V="0" B="2" P="0"/></LineTo>
            <CurveTo><X V="240" B="1" P="1"/><Y V="40" B="5" P="0.25"/>
                <A V="220" B="7" P="3"/><B V="0" B="2" P="0"/><C V="240" B="1" P="1"/><D V="20" B="0"/></CurveTo>
            <LineTo x:note="kept, too"><X V="240" B="1" P="1"/><Y V="160" B="2" P="1"/></LineTo>
        </Geometry>
    </shape>
    <metadata>text &amp; more</metadata>
    <shape Name="hole" Width="100" Height="100"><Geometry NoLine="1"><Ellipse>
        <X V="50" B="1" P="0.5"/><Y V="50" B="2" P="0.5"/><A V="25" B="5" P="0.25"/><B V="25" B="5" P="0.25"/>
    </Ellipse></Geometry></shape>
</drawing>
)";
}

/** One after the other, all that a user can do at random. */
class RandomUser
{
public:
    RandomUser(MainWindow& window, quint32 seed)
        : m_window(window)
        , m_random(seed)
    {
        // These end the session or ask a printer.
        QStringList const left {"close", "quit", "print", "print-preview"};
        for (QString const& id : window.actions().ids()) {
            if (left.contains(id))
                continue;
            // Units and pages are many and much the same.
            bool const isOneOfMany = id.startsWith("page-") || id.startsWith("unit-");
            (isOneOfMany ? m_seldom : m_often) << id;
        }
    }

    /** Does something. @return what */
    QString act()
    {
        QString const name = actAtRandom();
        Testing::awaitLoading(m_window);
        return name;
    }

private:
    QString actAtRandom()
    {
        switch (m_random.bounded(10)) {
        case 0:
        case 1:
        case 2:
            drag();
            return "drag";
        case 3:
        case 4:
            press();
            return "key";
        case 5:
            return trigger(any(QStringList {"undo", "undo", "redo"}));
        case 6:
            if (m_random.bounded(8) == 0)
                return resize();
            m_window.document().setCurrent(m_random.bounded(m_window.document().count() + 1));
            return "current";
        default:
            return trigger(any(m_random.bounded(12) == 0 ? m_seldom : m_often));
        }
    }

    /** Layouts and what shows later would resize the canvas at another moment in a replay. */
    QString resize()
    {
        bool const isTiny = m_random.bounded(10) == 0;
        m_window.canvas().setFixedSize(isTiny ? QSize(1, 1) : anySize());
        return "resize";
    }

    QSize anySize() { return {m_random.bounded(200, 900), m_random.bounded(150, 700)}; }

    QString trigger(QString const& id)
    {
        Testing::trigger(m_window, id);
        return id;
    }

    QString any(QStringList const& list) { return list.at(m_random.bounded(list.size())); }

    QPoint anywhere()
    {
        Canvas const& canvas = m_window.canvas();
        // Near handles something happens.
        auto const& handles = canvas.handleIds();
        if (!handles.isEmpty() && m_random.bounded(3) > 0) {
            QRect const rect = canvas.handleRect(handles.at(m_random.bounded(handles.size())));
            if (canvas.rect().contains(rect.center()))
                return rect.center();
        }
        return {m_random.bounded(canvas.width()), m_random.bounded(canvas.height())};
    }

    Qt::KeyboardModifiers modifiers()
    {
        static QVector<Qt::KeyboardModifiers> const all {Qt::NoModifier, Qt::NoModifier,
            Qt::ShiftModifier, Qt::ControlModifier, Qt::AltModifier};
        return all.at(m_random.bounded(all.size()));
    }

    void drag()
    {
        Canvas& canvas = m_window.canvas();
        Qt::KeyboardModifiers const keys = modifiers();
        QPoint const from = anywhere();
        QPoint const to = from + QPoint(m_random.bounded(-60, 60), m_random.bounded(-60, 60));
        QTest::mousePress(&canvas, Qt::LeftButton, keys, from);
        QMouseEvent move(
            QEvent::MouseMove, to, canvas.mapToGlobal(to), Qt::NoButton, Qt::LeftButton, keys);
        QApplication::sendEvent(&canvas, &move);
        disturb();
        QTest::mouseRelease(&canvas, Qt::LeftButton, keys, to);
    }

    /** What may come between within a drag. */
    void disturb()
    {
        switch (m_random.bounded(20)) {
        case 0:
        case 1:
            QTest::keyClick(&m_window.canvas(), Qt::Key_Escape);
            break;
        case 2:
            trigger(any(m_often));
            break;
        case 3:
            QTest::keyClick(&m_window.canvas(), Qt::Key_Z, Qt::ControlModifier);
            break;
        case 4:
            m_window.document().setCurrent(m_random.bounded(m_window.document().count() + 1));
            break;
        case 5:
            // The box of the user: the others follow the shape a little later.
            m_window.strip().findChildren<BoxCell*>().last()->click();
            break;
        default:
            break;
        }
    }

    void press()
    {
        static QVector<int> const keys {Qt::Key_Left, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down,
            Qt::Key_Tab, Qt::Key_Backtab, Qt::Key_Escape, Qt::Key_Return, Qt::Key_Space,
            Qt::Key_Plus, Qt::Key_Minus, Qt::Key_0};
        QTest::keyClick(&m_window.canvas(),
            static_cast<Qt::Key>(keys.at(m_random.bounded(keys.size()))), modifiers());
    }

    MainWindow& m_window;
    QRandomGenerator m_random;
    QStringList m_often;
    QStringList m_seldom;
};

} // namespace

/** Many random actions in one window: nothing breaks, and nothing is lost. */
class TestKpshapesSession : public QObject
{
    Q_OBJECT

private:
    /** What came of a session. */
    struct Outcome
    {
        QByteArray text; ///< of the document at the end
        QByteArray read; ///< the file when it was read last
        QByteArray undone; ///< of the document with all steps undone
        int steps = 0; ///< that could be undone at the end
        int greatestSteps = 0;
        QStringList states; ///< behind each action
    };

    /** What is to be the same in a replay. */
    static QString stateOf(MainWindow& window)
    {
        Canvas const& canvas = window.canvas();
        QPointF const centre = canvas.view().centre();
        return QString("outline %1 of %2, step %3 (%4), %5 selected, tool %6, zoom %7 at %8, %9")
            .arg(window.document().current())
            .arg(window.document().count())
            .arg(window.document().undoStack().index())
            .arg(window.document().undoStack().undoText())
            .arg(window.selection().handles().size())
            .arg(int(canvas.tool()))
            .arg(canvas.zoom())
            .arg(centre.x())
            .arg(centre.y());
    }

    static void prepare(WindowFolder& folder)
    {
        folder.prompter.saveAs = folder.path("saved.xml");
        folder.prompter.answer = "Ab";
        folder.prompter.unsaved = Prompter::Unsaved::Discard;
        folder.prompter.isConfirmed = true;
        folder.prompter.open = QStringList {folder.write("picture.svg",
            "<svg xmlns='http://www.w3.org/2000/svg' width='40' height='20'>"
            "<path d='M0 0H40V20Z'/></svg>")};
        QGuiApplication::clipboard()->clear();
    }

    /** @param folder messages name it: one of another name would make them wrap elsewhere */
    static Outcome session(quint32 seed, WindowFolder& folder)
    {
        folder.clear();
        prepare(folder);
        applyStyle(StyleChoice::System);
        QString const file = folder.write("shapes.xml", documentText());
        Outcome outcome;
        MainWindow window(folder.surroundings());
        QObject::connect(&window.controller(), &DocumentController::opened, &window,
            [&] { outcome.read = WindowFolder::read(window.controller().path()); });
        QTimer dialogs;
        QObject::connect(&dialogs, &QTimer::timeout, [] {
            if (QWidget* const dialog = QApplication::activeModalWidget())
                dialog->close();
        });
        dialogs.start(1);
        window.resize(1000, 700);
        window.canvas().setFixedSize(640, 480);
        window.strip().setBoxes({QSizeF(120.0, 80.0)});
        window.show();
        Testing::openFile(window, file);
        RandomUser user(window, seed);
        for (int i = 0; i < actionCount; ++i) {
            QString const action = user.act();
            outcome.states << action + ": " + stateOf(window);
            outcome.greatestSteps =
                std::max(outcome.greatestSteps, window.document().undoStack().count());
            if (i % 16 == 0)
                QCoreApplication::processEvents();
        }
        outcome.text = window.controller().text();
        outcome.steps = window.document().undoStack().index();
        window.document().undoStack().setIndex(0);
        outcome.undone = window.controller().text();
        return outcome;
    }

private Q_SLOTS:
    void initTestCase() { installCanvasAccessibility(); }

    void aReplayEndsTheSameAndUndoGivesTheFileBack()
    {
        // Another session: KPSHAPES_SESSION_SEED is a number.
        bool isGiven = false;
        int const given = qEnvironmentVariableIntValue("KPSHAPES_SESSION_SEED", &isGiven);
        quint32 const seed = isGiven ? static_cast<quint32>(given) : 20261121;
        qInfo("random seed %u, %d actions", seed, actionCount);
        WindowFolder folder;
        Outcome const first = session(seed, folder);
        QVERIFY(first.greatestSteps > 100);
        QCOMPARE(first.undone, first.read);
        Outcome const second = session(seed, folder);
        for (int i = 0; i < actionCount; ++i) {
            if (second.states.at(i) != first.states.at(i))
                qInfo("action %d, after %s", i, qPrintable(first.states.value(i - 1)));
            QCOMPARE(second.states.at(i), first.states.at(i));
        }
        QCOMPARE(second.steps, first.steps);
        QCOMPARE(second.text, first.text);
        QCOMPARE(second.undone, second.read);
    }
};

KPSHAPES_TEST_MAIN(TestKpshapesSession)
#include "tst_kpshapes_session.moc"
