// SPDX-License-Identifier: MIT
#include "window/menus.h"

#include "common/text.h"
#include "model/operations.h"
#include "unitcode_p.h"
#include "unitutil.h"
#include "window/commandtext.h"
#include "window/exchangecontroller.h"
#include "window/mainwindow.h"
#include "window/recentfiles.h"
#include "window/stylechoice.h"

#include <QActionGroup>
#include <QCoreApplication>
#include <QDockWidget>
#include <QMenu>
#include <QMessageBox>
#include <QPageSize>
#include <QSet>
#include <QSettings>

namespace {

void addFileMenu(MainWindow& window, RecentFiles& recentFiles, ExchangeController& exchange)
{
    ActionTable& actions = window.actions();
    DocumentController& controller = window.controller();
    QMenu& menu = actions.addMenu(QStringLiteral("&File"));
    actions.add(menu, {"new", "&New", "Ctrl+N", [&] { controller.newDocument(); }});
    actions.add(menu,
        {"new-window", "New &Window", "Ctrl+Shift+N", [&] { Q_EMIT window.windowWanted({}); }});
    actions.add(menu, {"open", "&Open\u2026", "Ctrl+O", [&] { controller.openWithDialog(); }});
    QMenu& recent = actions.addMenu(menu, QStringLiteral("Open &Recent"));
    QObject::connect(&recent, &QMenu::aboutToShow, &window, [&recent, &recentFiles, &controller] {
        recentFiles.fill(
            recent, [&controller](QString const& path) { controller.openHereOrElsewhere(path); },
            [&controller](QString const& path) { controller.openWithDialog(path); });
    });
    menu.addSeparator();
    actions.add(menu, {"save", "&Save", "Ctrl+S", [&] { controller.save(); }});
    actions.add(menu, {"save-as", "Save &As\u2026", "Ctrl+Shift+S", [&] { controller.saveAs(); }});
    actions.add(menu, {"reload", "Re&load", "F5", [&] { controller.reload(); }});
    menu.addSeparator();
    exchange.addActions(menu, actions);
    menu.addSeparator();
    actions.add(menu, {"close", "&Close", "Ctrl+W", [&] { window.close(); }});
    actions.add(menu, {"quit", "&Quit", "Ctrl+Q", [&] { Q_EMIT window.quitWanted(); }});
}

/** "&Rename Outline..." becomes "rename-outline". */
QString idOf(QString const& text)
{
    QString id;
    for (QChar const character : text.toLower()) {
        if (character.isLetter())
            id += character;
        else if (character.isSpace())
            id += QLatin1Char('-');
    }
    return id;
}

void addOutlineMenu(MainWindow& window)
{
    QMenu& menu = window.actions().addMenu(QStringLiteral("&Outline"));
    for (QAction* const action : window.outlines().actions()) {
        if (action->isSeparator())
            menu.addSeparator();
        else
            window.actions().add(menu, idOf(action->text()), *action);
    }
}

/** Does an operation to what is selected: one step, unless it only selects. */
void runOperation(MainWindow& window, Operation const& operation)
{
    ShapeDocument& document = window.document();
    OperationTarget target {document.working(), window.selection().handles()};
    if (!document.hasCurrent() || !operation.isPossible(target))
        return;
    operation.run(target);
    if (*operation.step != '\0')
        document.commit(QString::fromUtf8(operation.step));
    window.selection().set(target.handles);
}

/** Operations whose menu opens tell whether they would do anything, and what is on. */
void updateOperations(MainWindow& window, OperationMenu menu)
{
    OperationTarget const target {window.document().working(), window.selection().handles()};
    bool const isAny = window.document().hasCurrent();
    for (Operation const& operation : operations()) {
        if (operation.menu != menu)
            continue;
        QAction& action = *window.actions().action(QString::fromLatin1(operation.id));
        action.setEnabled(isAny && operation.isPossible(target));
        if (operation.isOn)
            action.setChecked(isAny && operation.isOn(target));
    }
}

/** A shortcut works whatever was possible when the menu was open last. */
void enableOperations(MainWindow& window, OperationMenu menu)
{
    for (Operation const& operation : operations()) {
        if (operation.menu == menu)
            window.actions().action(QString::fromLatin1(operation.id))->setEnabled(true);
    }
}

/** Appends the operations of a kind to a menu that may hold other actions. */
void addOperations(MainWindow& window, QMenu& menu, OperationMenu kind)
{
    for (Operation const& operation : operations()) {
        if (operation.menu != kind)
            continue;
        QAction& action = window.actions().add(menu,
            {operation.id, operation.text, operation.shortcut,
                [&window, &operation] { runOperation(window, operation); }});
        action.setCheckable(operation.isOn != nullptr);
        bool const isForWindow = !action.shortcut().isEmpty()
            && (action.shortcut()[0] & int(Qt::CTRL)) != 0 && kind != OperationMenu::Select;
        if (action.shortcut().isEmpty() || isForWindow)
            continue;
        // Keys such as Delete, or Ctrl+A, mean something else in lists.
        action.setShortcutContext(Qt::WidgetWithChildrenShortcut);
        window.canvas().addAction(&action);
    }
    QObject::connect(
        &menu, &QMenu::aboutToShow, &window, [&window, kind] { updateOperations(window, kind); });
    QObject::connect(
        &menu, &QMenu::aboutToHide, &window, [&window, kind] { enableOperations(window, kind); },
        Qt::QueuedConnection);
}

void addOperationMenus(MainWindow& window)
{
    ActionTable& actions = window.actions();
    QMenu& point = actions.addMenu(QStringLiteral("&Point"));
    addOperations(window, point, OperationMenu::Point);
    addOperations(window, actions.addMenu(point, QStringLiteral("&Align")), OperationMenu::Align);
    addOperations(window, actions.addMenu(point, QStringLiteral("S&elect")), OperationMenu::Select);
    addOperations(window, actions.addMenu(QStringLiteral("Se&gment")), OperationMenu::Segment);
    addOperations(window, actions.addMenu(QStringLiteral("&Shape")), OperationMenu::Shape);
}

void addEditMenu(MainWindow& window, ExchangeController& exchange)
{
    ActionTable& actions = window.actions();
    QUndoStack& stack = window.document().undoStack();
    QMenu& menu = actions.addMenu(QStringLiteral("&Edit"));
    QAction* const undo = stack.createUndoAction(&window, QStringLiteral("&Undo"));
    undo->setShortcut(QKeySequence(QStringLiteral("Ctrl+Z")));
    actions.add(menu, QStringLiteral("undo"), *undo);
    QAction* const redo = stack.createRedoAction(&window, QStringLiteral("&Redo"));
    redo->setShortcuts(
        {QKeySequence(QStringLiteral("Ctrl+Shift+Z")), QKeySequence(QStringLiteral("Ctrl+Y"))});
    actions.add(menu, QStringLiteral("redo"), *redo);
    menu.addSeparator();
    exchange.addClipboardActions(menu, actions);
    menu.addSeparator();
    actions.add(menu, {"copy-command", "Copy as a Co&mmand", "Ctrl+Shift+C", [&] {
                           window.statusLine().copyCommand();
                       }});
}

struct ToolEntry
{
    Tool tool;
    char const* id;
    char const* text;
    char const* shortcut;
};

constexpr std::array<ToolEntry, 8> toolEntries {{
    {Tool::Select, "tool-select", "&Select", "V"},
    {Tool::Line, "tool-line", "&Line", "L"},
    {Tool::Curve, "tool-curve", "&Curve", "C"},
    {Tool::Ellipse, "tool-ellipse", "&Ellipse", "E"},
    {Tool::Move, "tool-move", "&Move the Pen", "M"},
    {Tool::Insert, "tool-insert", "&Insert Point", "I"},
    {Tool::Hand, "tool-hand", "&Hand", "H"},
    {Tool::Zoom, "tool-zoom", "&Zoom", "Z"},
}};

void addToolMenu(MainWindow& window)
{
    Canvas& canvas = window.canvas();
    QMenu& menu = window.actions().addMenu(QStringLiteral("&Tools"));
    QActionGroup& group = window.actions().addGroup();
    for (ToolEntry const& entry : toolEntries) {
        QAction& action =
            window.actions().addSwitch(menu, {entry.id, entry.text, entry.shortcut, {}},
                canvas.tool() == entry.tool, [&canvas, tool = entry.tool](bool) {
                    canvas.setTool(tool);
                    canvas.setFocus();
                });
        group.addAction(&action);
        QObject::connect(&canvas, &Canvas::toolChanged, &action,
            [&action, tool = entry.tool](Tool now) { action.setChecked(now == tool); });
    }
}

/** Sets a check mark as the settings are, whoever changes them. */
void follow(
    MainWindow& window, QAction& action, std::function<bool(ViewSettings const&)> const& isOn)
{
    ViewSettings const& settings = window.settings();
    QObject::connect(&settings, &ViewSettings::changed, &action,
        [&action, &settings, isOn] { action.setChecked(isOn(settings)); });
}

void addUnitMenu(MainWindow& window, QMenu& view)
{
    QMenu& menu = window.actions().addMenu(view, QStringLiteral("&Unit"));
    QActionGroup& group = window.actions().addGroup();
    for (unsigned int unit = 0; unit < unitCount; ++unit) {
        QString const name = UnitUtil::unitStr(unit);
        QByteArray const id = "unit-" + name.toLatin1();
        QAction& action =
            window.actions().addSwitch(menu, {id.constData(), name.toLatin1().constData(), "", {}},
                window.settings().unit() == unit, [&window, unit](bool) {
                    window.settings().setUnit(unit);
                    window.statusLine().setCommand(CommandText::ofUnit(unit));
                });
        group.addAction(&action);
        follow(window, action, [unit](ViewSettings const& now) { return now.unit() == unit; });
    }
}

/** "ISO A4 (210 x 297 mm)" or, for a size without a name, the size alone. */
QString pageText(int index)
{
    QSizeF pixels;
    QSizeF size;
    auto const unit = static_cast<unsigned int>(UnitUtil::preDefinedPage(index, pixels, size));
    QPageSize::PageSizeId const id = QPageSize::id(
        size, unit == UnitInch ? QPageSize::Inch : QPageSize::Millimeter, QPageSize::ExactMatch);
    QString const measure = sizeText(size) + QLatin1Char(' ') + UnitUtil::unitStr(unit);
    return id == QPageSize::Custom ? measure
                                   : QStringLiteral("%1 (%2)").arg(QPageSize::name(id), measure);
}

void addPageMenu(MainWindow& window, QMenu& view)
{
    ViewSettings& settings = window.settings();
    QMenu& menu = window.actions().addMenu(view, QStringLiteral("Pa&ge"));
    QAction& landscape = window.actions().addSwitch(menu, {"page-landscape", "&Landscape", "", {}},
        settings.isLandscape(),
        [&settings](bool isOn) { settings.setPage(settings.page(), isOn); });
    follow(window, landscape, [](ViewSettings const& now) { return now.isLandscape(); });
    menu.addSeparator();
    QActionGroup& group = window.actions().addGroup();
    QSet<QString> texts;
    for (int page = 0; page < predefinedPageCount; ++page) {
        QString const text = pageText(page);
        // Some sizes are known by two names, of which only one is at hand.
        if (texts.contains(text))
            continue;
        texts << text;
        QByteArray const id = "page-" + QByteArray::number(page);
        QAction& action =
            window.actions().addSwitch(menu, {id.constData(), text.toUtf8().constData(), "", {}},
                settings.page() == page, [&window, &settings, page](bool) {
                    settings.setPage(page, settings.isLandscape());
                    window.statusLine().setCommand(CommandText::ofPages());
                });
        group.addAction(&action);
        follow(window, action, [page](ViewSettings const& now) { return now.page() == page; });
    }
}

void addStyleMenu(MainWindow& window, QMenu& view, QString const& settingsFile)
{
    QMenu& menu = window.actions().addMenu(view, QStringLiteral("&Style"));
    QSettings const settings(settingsFile, QSettings::IniFormat);
    StyleChoice const now = styleOf(settings.value(QStringLiteral("view/style")).toString())
                                .value_or(StyleChoice::System);
    QActionGroup& group = window.actions().addGroup();
    for (StyleName const& name : styleNames()) {
        QByteArray const id = QByteArray("style-") + name.id;
        QAction& action = window.actions().addSwitch(menu, {id.constData(), name.text, "", {}},
            now == name.choice, [settingsFile, name](bool) {
                applyStyle(name.choice);
                QSettings(settingsFile, QSettings::IniFormat)
                    .setValue(QStringLiteral("view/style"), QString::fromLatin1(name.id));
            });
        group.addAction(&action);
    }
}

void addViewSwitch(MainWindow& window, QMenu& menu, ActionEntry const& entry,
    bool (ViewSettings::*isShown)() const, void (ViewSettings::*show)(bool))
{
    ViewSettings& settings = window.settings();
    QAction& action = window.actions().addSwitch(menu, entry, (settings.*isShown)(),
        [&settings, show](bool isOn) { (settings.*show)(isOn); });
    follow(window, action, [isShown](ViewSettings const& now) { return (now.*isShown)(); });
}

void addViewMenu(MainWindow& window, QString const& settingsFile)
{
    ActionTable& actions = window.actions();
    Canvas& canvas = window.canvas();
    QMenu& menu = actions.addMenu(QStringLiteral("&View"));
    actions.add(menu, {"zoom-in", "Zoom &In", "Ctrl++", [&canvas] { canvas.zoomIn(); }});
    actions.add(menu, {"zoom-out", "Zoom &Out", "Ctrl+-", [&canvas] { canvas.zoomOut(); }});
    actions.add(menu, {"zoom-box", "Fit the &Box", "Ctrl+1", [&canvas] { canvas.fitBox(); }});
    actions.add(menu, {"zoom-page", "Fit the &Page", "Ctrl+0", [&canvas] { canvas.fitPage(); }});
    menu.addSeparator();
    addViewSwitch(window, menu, {"show-handles", "Show &Handles", "Ctrl+H", {}},
        &ViewSettings::showsHandles, &ViewSettings::setShowsHandles);
    addViewSwitch(window, menu, {"show-rulers", "Show &Rulers", "Ctrl+R", {}},
        &ViewSettings::showsRulers, &ViewSettings::setShowsRulers);
    addViewSwitch(window, menu, {"show-page", "Show the S&heet", "", {}}, &ViewSettings::showsPage,
        &ViewSettings::setShowsPage);
    actions.addSwitch(menu, {"show-legend", "Show the &Legend", "", {}}, canvas.showsLegend(),
        [&canvas](bool isOn) { canvas.setShowsLegend(isOn); });
    menu.addSeparator();
    addUnitMenu(window, menu);
    addPageMenu(window, menu);
    addStyleMenu(window, menu, settingsFile);
    menu.addSeparator();
    for (QDockWidget* const panel : window.panels())
        actions.add(
            menu, QStringLiteral("panel-") + panel->objectName(), *panel->toggleViewAction());
}

void addHelpMenu(MainWindow& window)
{
    ActionTable& actions = window.actions();
    QMenu& menu = actions.addMenu(QStringLiteral("&Help"));
    actions.add(menu, {"what-to-drag", "&What to Drag", "F1", [&window] {
                           window.messages().show(whatToDrag());
                       }});
    actions.add(menu, {"about", "&About kpshapes", "", [&window] {
                           QMessageBox::about(&window, QStringLiteral("About kpshapes"),
                               QStringLiteral("kpshapes %1\n\nAn editor for shapes that follow "
                                              "their box.")
                                   .arg(QCoreApplication::applicationVersion()));
                       }});
}

} // namespace

QString whatToDrag()
{
    return QStringLiteral(
        "Drag a corner of the box: every point follows its rule. Drag a point to move it; its "
        "colours say which rule it follows, and \"Points and Rules\" changes that.");
}

void addMenus(MainWindow& window, Surroundings const& surroundings)
{
    auto* const exchange = new ExchangeController(window, surroundings);
    addFileMenu(window, surroundings.recent, *exchange);
    addEditMenu(window, *exchange);
    addOutlineMenu(window);
    addOperationMenus(window);
    addToolMenu(window);
    addViewMenu(window, surroundings.settingsFile);
    addHelpMenu(window);
}
