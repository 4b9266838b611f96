// SPDX-License-Identifier: MIT
#include "canvas/canvasaccessible.h"
#include "kpshapestesting.h"
#include "model/operations.h"
#include "panels/boxstrip.h"
#include "testing.h"
#include "window/stylechoice.h"
#include "windowtesting.h"

#include <QAccessible>
#include <QClipboard>
#include <QDockWidget>
#include <QMenu>
#include <QMenuBar>
#include <QSettings>

#include <memory>

using Testing::trigger;
using Testing::WindowFolder;

namespace {

/** How well one colour is told from another, 1 to 21, as WCAG 2 has it. */
double contrast(QColor const& one, QColor const& other)
{
    auto const luminance = [](QColor const& colour) {
        auto const linear = [](double part) {
            return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF())
            + 0.0722 * linear(colour.blueF());
    };
    double const first = luminance(one) + 0.05;
    double const second = luminance(other) + 0.05;
    return std::max(first, second) / std::min(first, second);
}

/** All actions of a menu and the menus in it. */
QVector<QAction*> actionsOf(QList<QAction*> const& actions)
{
    QVector<QAction*> all;
    for (QAction* const action : actions) {
        if (action->menu())
            all << actionsOf(action->menu()->actions());
        else if (!action->isSeparator())
            all << action;
    }
    return all;
}

/** Whether the keys of one action could be meant for the other. */
bool holdTogether(QAction const& one, QAction const& other)
{
    if (one.shortcutContext() == Qt::WindowShortcut
        || other.shortcutContext() == Qt::WindowShortcut)
        return true;
    QList<QWidget*> const widgets = one.associatedWidgets();
    return std::any_of(widgets.cbegin(), widgets.cend(), [&other](QWidget* widget) {
        return !qobject_cast<QMenu*>(widget) && other.associatedWidgets().contains(widget);
    });
}

/** What stands in the way of a screen reader: controls without names, below an interface. */
QStringList namelessBelow(QAccessibleInterface& parent, QWidget const& window)
{
    QStringList nameless;
    for (int i = 0; i < parent.childCount(); ++i) {
        QAccessibleInterface* const child = parent.child(i);
        if (!child)
            continue;
        auto const* const widget = qobject_cast<QWidget*>(child->object());
        // What drops down from a control has the name of that.
        bool const isControl = widget && widget->focusPolicy() != Qt::NoFocus
            && !widget->focusProxy() && widget->window() == &window;
        if (isControl && child->text(QAccessible::Name).isEmpty())
            nameless << QString(widget->metaObject()->className()) + " " + widget->objectName();
        nameless << namelessBelow(*child, window);
    }
    return nameless;
}

} // namespace

/** The window itself: its menus, title, views, line below the page, and what it remembers. */
class TestKpshapesWindow : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<WindowFolder> m_folder;
    std::unique_ptr<MainWindow> m_window;

    void openDocument()
    {
        QVERIFY(
            Testing::openFile(*m_window, m_folder->write("shapes.xml", Testing::twoOutlines())));
        QCOMPARE(m_window->document().count(), 2);
    }

private Q_SLOTS:
    void initTestCase() { installCanvasAccessibility(); }

    void init()
    {
        m_folder = std::make_unique<WindowFolder>();
        m_window = std::make_unique<MainWindow>(m_folder->surroundings());
        m_window->show();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    }

    void cleanup()
    {
        m_window.reset();
        m_folder.reset();
        applyStyle(StyleChoice::Light);
    }

    void menusHaveAllActions()
    {
        QVector<QAction*> const inMenus = actionsOf(m_window->menuBar()->actions());
        QStringList const ids = m_window->actions().ids();
        QVERIFY(ids.size() > 60);
        for (QString const& id : ids) {
            QAction* const action = m_window->actions().action(id);
            // Recent files come when their menu opens.
            QVERIFY2(inMenus.contains(action), qPrintable(id));
            QVERIFY2(!action->text().isEmpty(), qPrintable(id));
        }
        QCOMPARE(QSet<QString>(ids.begin(), ids.end()).size(), ids.size());
        for (Operation const& operation : operations())
            QVERIFY2(ids.contains(operation.id), operation.id);
    }

    void noTwoEntriesOfAMenuHaveTheSameText()
    {
        for (QMenu const* const menu : m_window->findChildren<QMenu*>()) {
            QSet<QString> texts;
            for (QAction const* const action : menu->actions()) {
                QString const text = action->text().remove('&');
                QVERIFY2(action->isSeparator() || !texts.contains(text), qPrintable(text));
                texts << text;
            }
        }
    }

    void keysMeanOneThingEach()
    {
        QList<QAction*> const all = m_window->findChildren<QAction*>();
        int keys = 0;
        for (int i = 0; i < all.size(); ++i) {
            keys += all.at(i)->shortcuts().size();
            for (int k = i + 1; k < all.size(); ++k) {
                for (QKeySequence const& shortcut : all.at(i)->shortcuts()) {
                    bool const isShared = all.at(k)->shortcuts().contains(shortcut)
                        && holdTogether(*all.at(i), *all.at(k));
                    QVERIFY2(!isShared,
                        qPrintable(all.at(i)->text() + " and " + all.at(k)->text() + " have "
                            + shortcut.toString()));
                }
            }
        }
        QVERIFY(keys > 40);
    }

    void everyControlHasAName()
    {
        openDocument();
        for (QDockWidget* const panel : m_window->panels()) {
            panel->raise();
            QCoreApplication::processEvents();
        }
        QAccessibleInterface* const whole = QAccessible::queryAccessibleInterface(m_window.get());
        QVERIFY(whole);
        QCOMPARE(namelessBelow(*whole, *m_window).join(", "), QString());
        // A walk that sees nothing would find nothing: as many controls as there are at least.
        int controls = 0;
        for (QWidget const* const widget : m_window->findChildren<QWidget*>())
            controls += widget->focusPolicy() != Qt::NoFocus ? 1 : 0;
        QVERIFY(controls > 20);
    }

    void stepsAreNamedInTheMenu()
    {
        openDocument();
        QAction const& undo = *m_window->actions().action("undo");
        QAction const& redo = *m_window->actions().action("redo");
        QVERIFY(!undo.isEnabled());
        Testing::movePoint(*m_window, 7.0);
        QCOMPARE(undo.text(), QString("&Undo Move point"));
        QVERIFY(!redo.isEnabled());
        trigger(*m_window, "undo");
        QVERIFY(!undo.isEnabled());
        QCOMPARE(redo.text(), QString("&Redo Move point"));
        QCOMPARE(m_window->document().working().list->segs.first()->pt.x.value, 0.0);
        QTest::keyClick(&m_window->canvas(), Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(m_window->document().working().list->segs.first()->pt.x.value, 7.0);
        QTest::keyClick(&m_window->canvas(), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(m_window->document().working().list->segs.first()->pt.x.value, 0.0);
    }

    void theTitleTellsOfChanges()
    {
        QString const end = QString::fromUtf8("[*] \u2014 kpshapes");
        QCOMPARE(m_window->windowTitle(), "New shapes" + end);
        QVERIFY(!m_window->isWindowModified());
        openDocument();
        QCOMPARE(m_window->windowTitle(), "shapes.xml" + end);
        QCOMPARE(m_window->windowFilePath(), m_folder->path("shapes.xml"));
        Testing::movePoint(*m_window, 7.0);
        QVERIFY(m_window->isWindowModified());
        trigger(*m_window, "undo");
        QVERIFY(!m_window->isWindowModified());
        Testing::movePoint(*m_window, 9.0);
        trigger(*m_window, "save");
        QVERIFY(!m_window->isWindowModified());
        trigger(*m_window, "undo");
        QVERIFY(m_window->isWindowModified());
    }

    void anyNameIsATitle_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("title");
        QTest::newRow("mark of changes") << "a[*].xml"
                                         << "a[*][*].xml";
        QTest::newRow("line feed") << "a\nb.xml" << QString::fromUtf8("a\ufffdb.xml");
    }

    void anyNameIsATitle()
    {
        QFETCH(QString, name);
        QVERIFY(Testing::openFile(*m_window, m_folder->write(name, Testing::twoOutlines())));
        QCOMPARE(m_window->document().count(), 2);
        QVERIFY(!m_window->windowTitle().contains('\n'));
        QString const shown = m_window->windowTitle().section(QChar(0x2014), 0, 0);
        QTEST(shown.left(shown.size() - 4), "title");
    }

    void lettersChooseTools_data()
    {
        QTest::addColumn<QString>("id");
        QTest::addColumn<int>("tool");
        QTest::addColumn<char>("letter");
        QTest::newRow("line") << "tool-line" << int(Tool::Line) << 'l';
        QTest::newRow("curve") << "tool-curve" << int(Tool::Curve) << 'c';
        QTest::newRow("ellipse") << "tool-ellipse" << int(Tool::Ellipse) << 'e';
        QTest::newRow("move") << "tool-move" << int(Tool::Move) << 'm';
        QTest::newRow("insert") << "tool-insert" << int(Tool::Insert) << 'i';
        QTest::newRow("hand") << "tool-hand" << int(Tool::Hand) << 'h';
        QTest::newRow("zoom") << "tool-zoom" << int(Tool::Zoom) << 'z';
    }

    void lettersChooseTools()
    {
        QFETCH(QString, id);
        QFETCH(int, tool);
        QFETCH(char, letter);
        openDocument();
        m_window->canvas().setFocus();
        QAction const& select = *m_window->actions().action("tool-select");
        QVERIFY(select.isChecked());
        QTest::keyClick(&m_window->canvas(), letter);
        QCOMPARE(int(m_window->canvas().tool()), tool);
        QVERIFY(m_window->actions().action(id)->isChecked());
        QVERIFY(!select.isChecked());
        QTest::keyClick(&m_window->canvas(), 'v');
        QVERIFY(m_window->canvas().tool() == Tool::Select);
        QVERIFY(select.isChecked());
        trigger(*m_window, id);
        QCOMPARE(int(m_window->canvas().tool()), tool);
    }

    void zoomIsInTheMenu()
    {
        openDocument();
        trigger(*m_window, "zoom-box");
        double const before = m_window->canvas().zoom();
        trigger(*m_window, "zoom-in");
        QVERIFY(m_window->canvas().zoom() > before);
        trigger(*m_window, "zoom-out");
        QCOMPARE(m_window->canvas().zoom(), before);
        trigger(*m_window, "zoom-page");
        QVERIFY(m_window->canvas().zoom() < before);
    }

    void viewsAreSwitched()
    {
        ViewSettings& settings = m_window->settings();
        trigger(*m_window, "unit-in");
        QCOMPARE(settings.unit(), 5U);
        QVERIFY(m_window->actions().action("unit-in")->isChecked());
        QVERIFY(!m_window->actions().action("unit-mm")->isChecked());
        trigger(*m_window, "page-3");
        trigger(*m_window, "page-landscape");
        QCOMPARE(settings.page(), 3);
        QVERIFY(settings.isLandscape());
        for (QString const id : {"show-handles", "show-rulers", "show-page"})
            trigger(*m_window, id);
        QVERIFY(!settings.showsHandles() && !settings.showsRulers() && !settings.showsPage());
        trigger(*m_window, "show-rulers");
        QVERIFY(settings.showsRulers());
        settings.setShowsHandles(true);
        QVERIFY(m_window->actions().action("show-handles")->isChecked());
    }

    void stylesAreReadable_data()
    {
        QTest::addColumn<QString>("id");
        QTest::addColumn<QRgb>("window");
        QTest::addColumn<double>("least");
        QTest::newRow("light") << "light" << 0xfff3f4f6 << 4.5;
        QTest::newRow("dark") << "dark" << 0xff23272e << 4.5;
        QTest::newRow("high contrast") << "high-contrast" << 0xff000000 << 7.0;
    }

    void stylesAreReadable()
    {
        QFETCH(QString, id);
        QFETCH(QRgb, window);
        QFETCH(double, least);
        trigger(*m_window, "style-" + id);
        QPalette const palette = m_window->palette();
        QCOMPARE(palette.color(QPalette::Window).rgb(), window);
        QVector<QPair<QPalette::ColorRole, QPalette::ColorRole>> const pairs {
            {QPalette::WindowText, QPalette::Window}, {QPalette::Text, QPalette::Base},
            {QPalette::ButtonText, QPalette::Button}, {QPalette::Text, QPalette::AlternateBase},
            {QPalette::ToolTipText, QPalette::ToolTipBase}, {QPalette::Link, QPalette::Base},
            {QPalette::HighlightedText, QPalette::Highlight}};
        for (auto const& [text, ground] : pairs) {
            double const found = contrast(palette.color(text), palette.color(ground));
            QVERIFY2(found >= least,
                qPrintable(QString("%1 on %2: %3").arg(text).arg(ground).arg(found)));
        }
        QVERIFY(contrast(palette.color(QPalette::Disabled, QPalette::WindowText),
                    palette.color(QPalette::Window))
            >= 3.0);
        QVERIFY(contrast(palette.color(QPalette::PlaceholderText), palette.color(QPalette::Base))
            >= 3.0);
        QSettings const settings(m_folder->path("window.ini"), QSettings::IniFormat);
        QCOMPARE(settings.value("view/style").toString(), id);
    }

    void theSystemsStyleComesBack()
    {
        applyStyle(StyleChoice::System);
        QString const style = QApplication::style()->objectName();
        QPalette const palette = QApplication::palette();
        trigger(*m_window, "style-high-contrast");
        QVERIFY(QApplication::palette().color(QPalette::Window) != palette.color(QPalette::Window));
        trigger(*m_window, "style-system");
        QCOMPARE(QApplication::style()->objectName(), style);
        for (QPalette::ColorRole const role : {QPalette::Window, QPalette::Text, QPalette::Base})
            QCOMPARE(QApplication::palette().color(role), palette.color(role));
    }

    void controlsHaveEdgesInDarkStyles_data()
    {
        QTest::addColumn<int>("style");
        QTest::addColumn<double>("least");
        QTest::newRow("dark") << int(StyleChoice::Dark) << 3.0;
        QTest::newRow("high contrast") << int(StyleChoice::HighContrast) << 7.0;
    }

    /** Where one ground is much like another, edges alone show where a control is. */
    void controlsHaveEdgesInDarkStyles()
    {
        QFETCH(int, style);
        QFETCH(double, least);
        applyStyle(static_cast<StyleChoice>(style));
        QWidget parent;
        auto* const layout = new QVBoxLayout(&parent);
        QVector<QWidget*> const controls {new QCheckBox, new QPushButton, new QLineEdit,
            new QSpinBox, new QComboBox, new QListWidget, new QToolButton, new QPlainTextEdit};
        for (QWidget* const control : controls)
            layout->addWidget(control);
        parent.show();
        QVERIFY(QTest::qWaitForWindowExposed(&parent));
        QImage const shown = parent.grab().toImage();
        QColor const ground = parent.palette().color(QPalette::Window);
        for (QWidget* const control : controls) {
            double best = 1.0;
            int const y = qRound(control->geometry().center().y() * shown.devicePixelRatio());
            for (int x = 0; x < 10; ++x) {
                int const at = qRound((control->x() + x) * shown.devicePixelRatio());
                best = std::max(best, contrast(shown.pixelColor(at, y), ground));
            }
            QVERIFY2(best >= least,
                qPrintable(QString("%1: %2").arg(control->metaObject()->className()).arg(best)));
        }
    }

    void theNextWindowIsAsTheLastOne()
    {
        trigger(*m_window, "unit-in");
        trigger(*m_window, "page-3");
        trigger(*m_window, "page-landscape");
        trigger(*m_window, "show-rulers");
        m_window->strip().setBoxes({{300.0, 45.5}});
        m_window->resize(901, 647);
        m_window->panels().first()->hide();
        QVERIFY(m_window->close());
        MainWindow next(m_folder->surroundings());
        QCOMPARE(next.settings().unit(), 5U);
        QCOMPARE(next.settings().page(), 3);
        QVERIFY(next.settings().isLandscape());
        QVERIFY(!next.settings().showsRulers());
        QVERIFY(next.settings().showsHandles());
        QVERIFY(!next.actions().action("show-rulers")->isChecked());
        QVERIFY(next.actions().action("unit-in")->isChecked());
        QVERIFY(!next.actions().action("unit-mm")->isChecked());
        QVERIFY(next.actions().action("page-3")->isChecked());
        QVERIFY(next.actions().action("page-landscape")->isChecked());
        QCOMPARE(next.strip().boxes(), QVector<QSizeF>({{300.0, 45.5}}));
        QCOMPARE(next.size(), QSize(901, 647));
        QVERIFY(next.panels().first()->isHidden());
    }

    void damagedSettingsDoNoHarm()
    {
        m_folder->write("window.ini",
            "[window]\ngeometry=x\nstate=@ByteArray(\\0)\n[view]\nunit=4000000000\npage=-7\n"
            "boxes=@Invalid()\nstyle=none\n");
        MainWindow next(m_folder->surroundings());
        QCOMPARE(next.settings().unit(), 1U);
        QVERIFY(next.strip().boxes().isEmpty());
        QVERIFY(next.settings().pageSize().width() > 100.0);
        next.show();
        QVERIFY(!next.grab().isNull());
    }

    void theSelectionBelongsToItsOutline()
    {
        openDocument();
        m_window->selection().set({{1, HandleKind::Point}});
        Testing::movePoint(*m_window, 3.0);
        QCOMPARE(m_window->selection().handles().size(), 1);
        trigger(*m_window, "undo");
        QCOMPARE(m_window->selection().handles().size(), 1);
        m_window->document().setCurrent(1);
        QVERIFY(m_window->selection().isEmpty());
        m_window->selection().set({{1, HandleKind::Point}});
        trigger(*m_window, "delete");
        QCOMPARE(m_window->document().working().list->segs.size(), 1);
        for (HandleId const& handle : m_window->selection().handles())
            QVERIFY(handleOf(*m_window->document().working().list, handle));
        QCOMPARE(m_window->document().undoStack().undoText(), QString("Delete points"));
    }

    void operationsWorkOnTheSelection()
    {
        openDocument();
        QTest::keyClick(&m_window->canvas(), Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(m_window->selection().handles().size(), 3);
        QTest::keyClick(&m_window->canvas(), Qt::Key_O, Qt::ShiftModifier);
        QVERIFY(!m_window->document().working().list->closed);
        QCOMPARE(m_window->document().undoStack().undoText(), QString("Close or open outline"));
        trigger(*m_window, "to-curve");
        QCOMPARE(m_window->document().undoStack().undoText(), QString("Change to curve"));
        QTest::keyClick(&m_window->canvas(), Qt::Key_Delete);
        QCOMPARE(m_window->document().undoStack().undoText(), QString("Delete points"));
        QVERIFY(m_window->document().working().list->segs.isEmpty());
    }

    void anEmptyWindowTakesEveryAction()
    {
        QStringList const left {"close", "quit", "print", "print-preview", "about", "fit"};
        for (QString const& id : m_window->actions().ids()) {
            if (!left.contains(id))
                trigger(*m_window, id);
        }
        QVERIFY(m_window->isVisible());
    }
};

KPSHAPES_TEST_MAIN(TestKpshapesWindow)
#include "tst_kpshapes_window.moc"
