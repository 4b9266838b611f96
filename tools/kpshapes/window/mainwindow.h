// SPDX-License-Identifier: MIT
#ifndef MAINWINDOW_H
#define MAINWINDOW_H

#include "canvas/canvas.h"
#include "model/selection.h"
#include "model/shapedocument.h"
#include "model/viewsettings.h"
#include "panels/boxstrip.h"
#include "panels/outlinelist.h"
#include "window/actiontable.h"
#include "window/documentcontroller.h"
#include "window/messagebar.h"
#include "window/statusline.h"
#include "window/surroundings.h"

#include <QMainWindow>

class QDockWidget;
class QProgressBar;

/** A window with one document: the page, the panels around it, and the menus. */
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    /** An empty document. @param surroundings must outlive the window */
    explicit MainWindow(Surroundings const& surroundings, QWidget* parent = nullptr);
    ~MainWindow() override;

    /** The document of the window. */
    ShapeDocument& document() { return m_document; }
    /** What is selected of the current outline. */
    Selection& selection() { return m_selection; }
    /** What is shown, and in which unit. */
    ViewSettings& settings() { return m_settings; }
    /** The page. */
    Canvas& canvas() { return *m_canvas; }
    /** The list of outlines. */
    OutlineList& outlines() { return *m_outlines; }
    /** The shape in other boxes. */
    BoxStrip& strip() { return *m_strip; }
    /** All that the menus offer. */
    ActionTable& actions() { return m_actions; }
    /** The file of the document. */
    DocumentController& controller() { return m_controller; }
    /** The line below the page. */
    StatusLine& statusLine() { return *m_status; }
    /** The messages above the page. */
    MessageBar& messages() { return *m_messages; }

    /** Shows the docks in the order of the menu. */
    QVector<QDockWidget*> const& panels() const { return m_panels; }

Q_SIGNALS:
    /** Another window is wanted: for a file, or an empty one for an empty path. */
    void windowWanted(QString const& path);
    /** All windows are to be closed. */
    void quitWanted();

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    QDockWidget& addPanel(
        QString const& id, QString const& title, QWidget* panel, Qt::DockWidgetArea area);
    void addPanels();
    void addCentre();
    void addStatusLine();
    void followDocument();
    void followController();
    void showTitle();
    ItemPointer currentItem() const;
    void noteCurrent();
    void noteStep();
    void rememberState();
    void restoreStateOfLastTime();

    Surroundings const m_surroundings;
    ShapeDocument m_document;
    Selection m_selection;
    ViewSettings m_settings;
    DocumentController m_controller;
    ActionTable m_actions;
    Canvas* m_canvas = nullptr;
    OutlineList* m_outlines = nullptr;
    BoxStrip* m_strip = nullptr;
    StatusLine* m_status = nullptr;
    MessageBar* m_messages = nullptr;
    QProgressBar* m_progress = nullptr;
    QVector<QDockWidget*> m_panels;
    ItemPointer m_lastItem; ///< the current outline as the last step has left it
    int m_lastCurrent = -1;
    int m_lastCount = 0; ///< of outlines
};

#endif // MAINWINDOW_H
