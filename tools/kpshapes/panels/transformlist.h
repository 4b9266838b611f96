// SPDX-License-Identifier: MIT
#ifndef TRANSFORMLIST_H
#define TRANSFORMLIST_H

#include "document/appearance.h"

#include <QWidget>

class QComboBox;
class QDoubleSpinBox;
class QToolButton;
class StepList;

/** The chain of transforms of a colour: the colour behind each step, in an order that is changed. */
class TransformList : public QWidget
{
    Q_OBJECT

public:
    /** @param noun what the colour is of: "fill" */
    explicit TransformList(QString const& noun, QWidget* parent = nullptr);

    /** Shows the chain of a colour; the same row stays the current one. */
    void setColour(ShapeColour const& colour);
    /** The chain. */
    QVector<ColourTransform> const& transforms() const { return m_colour.transforms; }

Q_SIGNALS:
    /** The chain is different; more may follow. */
    void edited();
    /** What was edited is done. @param step the text of the step of undo */
    void finished(QString const& step);

protected:
    /** Draws the swatches anew for another palette. */
    void changeEvent(QEvent* event) override;

private:
    QWidget* makeChoice();
    QWidget* makeControls();
    QToolButton* makeButton(QString const& text, QString const& what);
    void connectControls();
    void add();
    void removeCurrent();
    void move(int from, int to, bool isFinal);
    void moveCurrent(int by);
    void changeValue(double value);
    void refresh();
    void enableControls();
    int current() const;

    QString m_noun;
    ShapeColour m_colour;
    QComboBox* m_choice = nullptr;
    QToolButton* m_add = nullptr;
    StepList* m_list;
    QDoubleSpinBox* m_value = nullptr;
    QToolButton* m_up = nullptr;
    QToolButton* m_down = nullptr;
    QToolButton* m_remove = nullptr;
};

#endif // TRANSFORMLIST_H
