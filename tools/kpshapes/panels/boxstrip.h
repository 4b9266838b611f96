// SPDX-License-Identifier: MIT
#ifndef BOXSTRIP_H
#define BOXSTRIP_H

#include "model/shapedocument.h"

#include <QTimer>
#include <QVector>
#include <QWidget>

class BoxCell;
class BoxPopup;
class QHBoxLayout;
class QScrollArea;
class QToolButton;

/**
 * The current shape in other boxes beside one another, live: 2:1, 1:2, 4:1, 1:4 and 1:1 of the area
 * that its box has, and those that the user has added. All have one scale, so that what keeps its
 * size is seen to; a box too large for that is shown smaller.
 *
 * A click on one, or Enter, resizes the shape to it: one step. Arrow keys move between them, Delete
 * removes one that was added. The pictures follow the shape a few times a second, the less often the
 * longer they take; of more than 50,000 segments only once it rests.
 */
class BoxStrip : public QWidget
{
    Q_OBJECT

public:
    /** @param document not owned, must outlive this */
    explicit BoxStrip(ShapeDocument& document, QWidget* parent = nullptr);

    /** The boxes that the user has added, in their order: to be remembered. */
    QVector<QSizeF> boxes() const;
    /** Takes the place of boxes(). Such as are no boxes, come twice, or exceed 16 are left out. */
    void setBoxes(QVector<QSizeF> const& boxes);

    /** How many boxes the user can add. */
    static constexpr int greatestCount = 16;

Q_SIGNALS:
    /** The user has added or removed a box. */
    void boxesChanged();
    /** All pictures were drawn anew. */
    void refreshed();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    BoxCell* appendCell(QString const& name, QSizeF const& box);
    bool add(QSizeF const& box);
    void addByUser(QSizeF const& box);
    void remove(BoxCell* cell);
    void take(BoxCell const& cell);
    void showMenu(BoxCell* cell, QPoint const& globalPosition);
    bool handleKey(BoxCell* cell, int key);
    void focusCell(int index);
    void scheduleRefresh();
    void refresh();
    void updateOffers();
    double commonScale() const;

    ShapeDocument& m_document;
    QVector<BoxCell*> m_cells; ///< those of fixed proportions first; owned by the content
    QTimer m_timer;
    qint64 m_cost = 0; ///< of the last pictures, in milliseconds
    QScrollArea* m_area;
    QWidget* m_content;
    QHBoxLayout* m_row;
    QToolButton* m_add;
    BoxPopup* m_popup;
};

#endif // BOXSTRIP_H
