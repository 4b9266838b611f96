// SPDX-License-Identifier: MIT
#include "canvas/canvasaccessible.h"
#include "kpshapestesting.h"
#include "testing.h"
#include "usertesting.h"
#include "window/stylechoice.h"

using Testing::WindowFolder;

namespace {

/** In each of the two sessions. */
constexpr int actionCount = 10000;

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

    static Outcome session(quint32 seed, WindowFolder& folder)
    {
        applyStyle(StyleChoice::System);
        Testing::Session session(folder);
        MainWindow& window = session.window();
        QRandomGenerator random(seed);
        Testing::AnyUser user(window, [&random](int bound) { return random.bounded(bound); });
        Outcome outcome;
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
        outcome.read = session.read();
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
