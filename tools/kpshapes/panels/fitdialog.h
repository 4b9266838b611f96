// SPDX-License-Identifier: MIT
#ifndef FITDIALOG_H
#define FITDIALOG_H

#include "model/shapeitem.h"
#include "panels/fitfindings.h"
#include "panels/fitrun.h"

#include <QDialog>
#include <QTimer>

#include <memory>

class PictureView;
class QCheckBox;
class QLabel;
class QListWidget;
class QListWidgetItem;
class QProgressBar;
class QPushButton;
class QTableWidget;

/**
 * Learns the binding rules of outlines from drawings of them in several boxes: SVG pictures, or
 * documents of outlines. Whatever changes, all is learnt anew, in a thread; drawings and what was
 * learnt of them are shown over one another, with a list of all that is not decided or not exact.
 *
 * It changes no document: accepted, it has items().
 */
class FitDialog : public QDialog
{
    Q_OBJECT

public:
    /** Without drawings yet. */
    explicit FitDialog(QWidget* parent = nullptr);
    ~FitDialog() override;

    /** Appends drawings, each in the box that "FILE@WxH" names, or in that of the picture. */
    void addFiles(QStringList const& files);
    /** The drawings, as addFiles() takes them. */
    QStringList drawings() const;
    /** What was learnt, its values in the box of the first drawing; empty if nothing was yet. */
    Items items() const;
    /** What the user wants to see first of it; nothing unless a line of the list was activated. */
    std::optional<FitPlace> place() const { return m_place; }
    /** Whether something is being learnt. */
    bool isRunning() const { return m_run != nullptr; }

    /** How many drawings it takes. */
    static constexpr int greatestCount = 50;

Q_SIGNALS:
    /** The user has activated a line that is about a coordinate, as FitPlace has it. */
    void jumpTo(int shape, int segment, QString const& letter);
    /** Something was learnt, or could not be. */
    void learnt();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    QWidget* newDrawings();
    QWidget* newResult();
    void addRow(DrawingSource const& source);
    void chooseFiles();
    void removeSelected();
    QVector<DrawingSource> sources() const;
    DrawingSource sourceAt(int row) const;
    void scheduleRun();
    void start();
    void stop();
    void stopOrStart();
    void enterBox(int row);
    void poll();
    void take(FitOutcome outcome);
    void showFindings(QVector<FitFinding> const& findings);
    void activate(int line);
    void showState();

    bool m_isStopped = false; ///< by the user, who may want to go on
    QTimer m_delay; ///< until what was changed is learnt from
    QTimer m_poll;
    std::unique_ptr<FitRun> m_run; ///< null unless one is going on
    FitOutcome m_outcome;
    QVector<FitFinding> m_findings;
    std::optional<FitPlace> m_place;
    QTableWidget* m_table = nullptr;
    QPushButton* m_remove = nullptr;
    QCheckBox* m_findsEllipses = nullptr;
    PictureView* m_picture = nullptr;
    QListWidget* m_list = nullptr;
    QLabel* m_summary = nullptr;
    QProgressBar* m_progress = nullptr;
    QPushButton* m_stop = nullptr;
    QPushButton* m_insert = nullptr;
};

#endif // FITDIALOG_H
