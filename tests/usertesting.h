// SPDX-License-Identifier: MIT
#ifndef USERTESTING_H
#define USERTESTING_H

#include "panels/boxcell.h"
#include "windowtesting.h"

#include <QClipboard>
#include <QTimer>

#include <functional>
#include <memory>
#include <utility>

/** Sessions of users who do anything, whoever decides what. */
namespace Testing {

/** Two outlines, with what the editor does not know between them. */
inline QByteArray sessionDocument()
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

/** Decides: a number from 0, below the one given, which is above 0. */
using Pick = std::function<int(int)>;

/** One after the other, all that a user can do. */
class AnyUser
{
public:
    AnyUser(MainWindow& window, Pick pick)
        : m_window(window)
        , m_pick(std::move(pick))
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
        QString const name = doSomething();
        Testing::awaitLoading(m_window);
        return name;
    }

private:
    QString doSomething()
    {
        switch (m_pick(10)) {
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
            if (m_pick(8) == 0)
                return resize();
            m_window.document().setCurrent(m_pick(m_window.document().count() + 1));
            return "current";
        default:
            return trigger(any(m_pick(12) == 0 ? m_seldom : m_often));
        }
    }

    /** Layouts and what shows later would resize the canvas at another moment in a replay. */
    QString resize()
    {
        bool const isTiny = m_pick(10) == 0;
        m_window.canvas().setFixedSize(isTiny ? QSize(1, 1) : anySize());
        return "resize";
    }

    QSize anySize() { return {m_pick(700) + 200, m_pick(550) + 150}; }

    QString trigger(QString const& id)
    {
        Testing::trigger(m_window, id);
        return id;
    }

    QString any(QStringList const& list) { return list.at(m_pick(list.size())); }

    QPoint anywhere()
    {
        Canvas const& canvas = m_window.canvas();
        // Near handles something happens.
        auto const& handles = canvas.handleIds();
        if (!handles.isEmpty() && m_pick(3) > 0) {
            QRect const rect = canvas.handleRect(handles.at(m_pick(handles.size())));
            if (canvas.rect().contains(rect.center()))
                return rect.center();
        }
        return {m_pick(canvas.width()), m_pick(canvas.height())};
    }

    Qt::KeyboardModifiers modifiers()
    {
        static QVector<Qt::KeyboardModifiers> const all {Qt::NoModifier, Qt::NoModifier,
            Qt::ShiftModifier, Qt::ControlModifier, Qt::AltModifier};
        return all.at(m_pick(all.size()));
    }

    void drag()
    {
        Canvas& canvas = m_window.canvas();
        Qt::KeyboardModifiers const keys = modifiers();
        QPoint const from = anywhere();
        QPoint const to = from + QPoint(m_pick(120) - 60, m_pick(120) - 60);
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
        switch (m_pick(20)) {
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
            m_window.document().setCurrent(m_pick(m_window.document().count() + 1));
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
        QTest::keyClick(
            &m_window.canvas(), static_cast<Qt::Key>(keys.at(m_pick(keys.size()))), modifiers());
    }

    MainWindow& m_window;
    Pick m_pick;
    QStringList m_often;
    QStringList m_seldom;
};

/** A window with a document in a folder that is emptied before, and the user's answers. */
class Session
{
public:
    /** @param folder messages name it: one of another name would make them wrap elsewhere */
    explicit Session(WindowFolder& folder)
    {
        prepare(folder);
        m_window = std::make_unique<MainWindow>(folder.surroundings());
        QObject::connect(&m_window->controller(), &DocumentController::opened, m_window.get(),
            [this] { m_read = WindowFolder::read(m_window->controller().path()); });
        QObject::connect(&m_dialogs, &QTimer::timeout, [] {
            if (QWidget* const dialog = QApplication::activeModalWidget())
                dialog->close();
        });
        m_dialogs.start(1);
        m_window->resize(1000, 700);
        m_window->canvas().setFixedSize(640, 480);
        m_window->strip().setBoxes({QSizeF(120.0, 80.0)});
        m_window->show();
        openFile(*m_window, folder.path("shapes.xml"));
    }

    MainWindow& window() { return *m_window; }
    /** The file when it was read last. */
    QByteArray const& read() const { return m_read; }

private:
    static void prepare(WindowFolder& folder)
    {
        folder.clear();
        folder.write("shapes.xml", sessionDocument());
        folder.prompter.saveAs = folder.path("saved.xml");
        folder.prompter.answer = "Ab";
        folder.prompter.unsaved = Prompter::Unsaved::Discard;
        folder.prompter.isConfirmed = true;
        folder.prompter.open = QStringList {folder.write("picture.svg",
            "<svg xmlns='http://www.w3.org/2000/svg' width='40' height='20'>"
            "<path d='M0 0H40V20Z'/></svg>")};
        QGuiApplication::clipboard()->clear();
    }

    QByteArray m_read;
    std::unique_ptr<MainWindow> m_window;
    QTimer m_dialogs;
};

} // namespace Testing

#endif // USERTESTING_H
