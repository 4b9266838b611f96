// SPDX-License-Identifier: MIT
#ifndef STEPLIST_H
#define STEPLIST_H

#include <QListWidget>

/**
 * A list whose rows are moved by dragging them, which is seen at once, and by Alt with the up and
 * down keys. Its owner does what the signals ask for.
 */
class StepList : public QListWidget
{
    Q_OBJECT

public:
    /** Empty. */
    explicit StepList(QWidget* parent = nullptr);

Q_SIGNALS:
    /** The row is to stand at the place `to`. While one is dragged, `isFinal` is false. */
    void moveWanted(int from, int to, bool isFinal);
    /** A row that was dragged has been dropped, somewhere else than where it was taken up. */
    void dropped();
    /** The current row is to be removed. */
    void removalWanted();

protected:
    /** Takes a row up. */
    void mousePressEvent(QMouseEvent* event) override;
    /** Drags it. */
    void mouseMoveEvent(QMouseEvent* event) override;
    /** Drops it. */
    void mouseReleaseEvent(QMouseEvent* event) override;
    /** Alt with up and down, delete. */
    void keyPressEvent(QKeyEvent* event) override;

private:
    int m_dragged = -1; ///< where the dragged row is now; -1: none is
    bool m_isMoved = false;
};

#endif // STEPLIST_H
