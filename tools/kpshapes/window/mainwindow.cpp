// SPDX-License-Identifier: MIT
#include "window/mainwindow.h"

#include "common/text.h"
#include "panels/appearancepanel.h"
#include "panels/pointpanel.h"
#include "unitcode_p.h"
#include "unitutil.h"
#include "window/commandtext.h"
#include "window/menus.h"

#include <QCloseEvent>
#include <QDockWidget>
#include <QMenuBar>
#include <QMimeData>
#include <QProgressBar>
#include <QScreen>
#include <QScrollArea>
#include <QSettings>
#include <QStatusBar>
#include <QToolButton>
#include <QUrl>
#include <QVBoxLayout>

namespace {

/** A panel that scrolls where the window is too low for it. */
QWidget* scrolling(QWidget* panel)
{
    auto* const area = new QScrollArea;
    area->setWidgetResizable(true);
    area->setFrameShape(QFrame::NoFrame);
    area->setFocusPolicy(Qt::NoFocus);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setWidget(panel);
    area->setMinimumWidth(panel->minimumSizeHint().width());
    return area;
}

} // namespace

MainWindow::MainWindow(Surroundings const& surroundings, QWidget* parent)
    : QMainWindow(parent)
    , m_surroundings(surroundings)
    , m_controller(m_document, surroundings, *this)
    , m_actions(*menuBar(), this)
{
    setObjectName(QStringLiteral("kpshapes"));
    setAcceptDrops(true);
    setDockNestingEnabled(true);
    addCentre();
    addPanels();
    addStatusLine();
    addMenus(*this, m_surroundings);
    followDocument();
    followController();
    resize(1180, 780);
    restoreStateOfLastTime();
    showTitle();
    m_canvas->setFocus();
}

MainWindow::~MainWindow()
{
    // What shows the document goes before the document does.
    qDeleteAll(m_panels);
    delete takeCentralWidget();
    delete m_status;
    m_document.undoStack().disconnect(this);
    m_document.disconnect(this);
}

void MainWindow::addCentre()
{
    auto* const centre = new QWidget(this);
    m_messages = new MessageBar(centre);
    m_canvas = new Canvas(m_document, m_selection, m_settings, centre);
    auto* const layout = new QVBoxLayout(centre);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_messages);
    layout->addWidget(m_canvas, 1);
    setCentralWidget(centre);
}

QDockWidget& MainWindow::addPanel(
    QString const& id, QString const& title, QWidget* panel, Qt::DockWidgetArea area)
{
    auto* const dock = new QDockWidget(title, this);
    dock->setObjectName(id);
    dock->setWidget(panel);
    addDockWidget(area, dock);
    m_panels.append(dock);
    return *dock;
}

void MainWindow::addPanels()
{
    m_outlines = new OutlineList(m_document, this);
    m_strip = new BoxStrip(m_document, this);
    auto* const points = new PointPanel(m_document, m_selection, m_settings, this);
    auto* const look = new AppearancePanel(m_document, this);
    addPanel(
        QStringLiteral("outlines"), QStringLiteral("Outlines"), m_outlines, Qt::LeftDockWidgetArea);
    QDockWidget& pointDock = addPanel(QStringLiteral("points"), QStringLiteral("Points and Rules"),
        scrolling(points), Qt::RightDockWidgetArea);
    QDockWidget& lookDock = addPanel(QStringLiteral("look"), QStringLiteral("Colour and Shadow"),
        scrolling(look), Qt::RightDockWidgetArea);
    addPanel(QStringLiteral("boxes"), QStringLiteral("In Other Boxes"), m_strip,
        Qt::BottomDockWidgetArea);
    tabifyDockWidget(&pointDock, &lookDock);
    pointDock.raise();
    resizeDocks({m_panels.first(), &pointDock}, {210, 290}, Qt::Horizontal);
    resizeDocks({m_panels.last()}, {150}, Qt::Vertical);
}

void MainWindow::addStatusLine()
{
    m_status = new StatusLine(m_document, m_selection, m_settings);
    m_progress = new QProgressBar;
    m_progress->setRange(0, 1000);
    m_progress->setMaximumWidth(160);
    m_progress->setAccessibleName(QStringLiteral("Progress of reading"));
    m_progress->hide();
    auto* const cancel = new QToolButton;
    cancel->setText(QStringLiteral("Cancel"));
    cancel->setAccessibleName(QStringLiteral("Cancel reading"));
    cancel->hide();
    connect(cancel, &QToolButton::clicked, &m_controller, &DocumentController::cancelLoading);
    connect(
        &m_controller, &DocumentController::loadingChanged, this, [this, cancel](bool isLoading) {
            m_progress->setVisible(isLoading);
            cancel->setVisible(isLoading);
        });
    connect(&m_controller, &DocumentController::progressed, this,
        [this](double part) { m_progress->setValue(qRound(part * 1000.0)); });
    statusBar()->addWidget(m_status, 1);
    statusBar()->addPermanentWidget(m_progress);
    statusBar()->addPermanentWidget(cancel);
    connect(m_canvas, &Canvas::pointerMoved, this, [this](QPointF const& position, bool isInside) {
        if (isInside)
            m_status->setPosition(position);
        else
            m_status->clearPosition();
    });
}

void MainWindow::followDocument()
{
    connect(&m_document, &ShapeDocument::currentChanged, this, [this] {
        if (m_document.current() != m_lastCurrent) {
            m_selection.clear();
            noteCurrent();
        }
        m_selection.restrictTo(*m_document.working().list);
    });
    connect(&m_document.undoStack(), &QUndoStack::indexChanged, this, &MainWindow::noteStep);
    connect(&m_document.undoStack(), &QUndoStack::cleanChanged, this, &MainWindow::showTitle);
}

void MainWindow::followController()
{
    connect(&m_controller, &DocumentController::titleChanged, this, &MainWindow::showTitle);
    connect(&m_controller, &DocumentController::reported, this,
        [this](Diagnostics const& diagnostics) { m_messages->show(diagnostics); });
    connect(&m_controller, &DocumentController::did, m_status, &StatusLine::setCommand);
    connect(&m_controller, &DocumentController::opened, m_canvas, &Canvas::fitBox);
    connect(&m_controller, &DocumentController::opened, this, &MainWindow::noteCurrent);
    connect(&m_controller, &DocumentController::windowWanted, this, &MainWindow::windowWanted);
}

ItemPointer MainWindow::currentItem() const
{
    return m_document.hasCurrent()
        ? m_document.items()[static_cast<std::size_t>(m_document.current())]
        : nullptr;
}

void MainWindow::noteCurrent()
{
    m_lastCurrent = m_document.current();
    m_lastItem = currentItem();
    m_lastCount = m_document.count();
}

void MainWindow::noteStep()
{
    ItemPointer const now = currentItem();
    bool const isSameCount = m_document.count() == m_lastCount;
    // What came or went is no other state of the same outline.
    bool const isChanged = isSameCount && m_lastItem && now && now->origin == m_lastItem->origin;
    if (now != m_lastItem || !isSameCount) {
        m_status->setCommand(
            isChanged ? CommandText::ofStep(*m_lastItem, *now, m_controller.path()) : QString());
    }
    noteCurrent();
}

void MainWindow::showTitle()
{
    // A name may hold what marks the place of the asterisk: doubled, it stands for itself.
    QString const placeholder = QStringLiteral("[*]");
    QString const name =
        printable(m_controller.title()).replace(placeholder, placeholder + placeholder);
    setWindowTitle(name + placeholder + QStringLiteral(" \u2014 kpshapes"));
    setWindowFilePath(m_controller.path());
    setWindowModified(m_controller.isModified());
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    if (!m_controller.mayClose()) {
        event->ignore();
        return;
    }
    rememberState();
    m_controller.forgetRecovery();
    event->accept();
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event)
{
    if (event->mimeData()->hasUrls())
        event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event)
{
    Diagnostics diagnostics;
    for (QUrl const& url : event->mimeData()->urls()) {
        if (url.isLocalFile())
            m_controller.openHereOrElsewhere(url.toLocalFile());
        else
            diagnostics.error(url.toDisplayString(), QStringLiteral("is no file of this computer"));
    }
    m_messages->show(diagnostics);
    event->acceptProposedAction();
}

void MainWindow::changeEvent(QEvent* event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        m_controller.lookAtFile();
}

void MainWindow::rememberState()
{
    QSettings settings(m_surroundings.settingsFile, QSettings::IniFormat);
    settings.setValue(QStringLiteral("window/geometry"), saveGeometry());
    settings.setValue(QStringLiteral("window/state"), saveState());
    settings.setValue(QStringLiteral("view/unit"), m_settings.unit());
    settings.setValue(QStringLiteral("view/page"), m_settings.page());
    settings.setValue(QStringLiteral("view/landscape"), m_settings.isLandscape());
    settings.setValue(QStringLiteral("view/handles"), m_settings.showsHandles());
    settings.setValue(QStringLiteral("view/rulers"), m_settings.showsRulers());
    settings.setValue(QStringLiteral("view/sheet"), m_settings.showsPage());
    QVariantList boxes;
    for (QSizeF const& box : m_strip->boxes())
        boxes << box;
    settings.setValue(QStringLiteral("view/boxes"), boxes);
}

void MainWindow::restoreStateOfLastTime()
{
    QSettings const settings(m_surroundings.settingsFile, QSettings::IniFormat);
    auto const isOn = [&settings](
                          QString const& key) { return settings.value(key, true).toBool(); };
    restoreGeometry(settings.value(QStringLiteral("window/geometry")).toByteArray());
    restoreState(settings.value(QStringLiteral("window/state")).toByteArray());
    m_settings.setUnit(
        settings.value(QStringLiteral("view/unit"), static_cast<uint>(UnitMillimetre)).toUInt());
    m_settings.setPage(settings.value(QStringLiteral("view/page"), m_settings.page()).toInt(),
        settings.value(QStringLiteral("view/landscape"), false).toBool());
    m_settings.setShowsHandles(isOn(QStringLiteral("view/handles")));
    m_settings.setShowsRulers(isOn(QStringLiteral("view/rulers")));
    m_settings.setShowsPage(isOn(QStringLiteral("view/sheet")));
    if (!settings.contains(QStringLiteral("view/boxes")))
        return;
    QVector<QSizeF> boxes;
    for (QVariant const& box : settings.value(QStringLiteral("view/boxes")).toList())
        boxes << box.toSizeF();
    m_strip->setBoxes(boxes);
}
