// SPDX-License-Identifier: MIT
#ifndef BOXPOPUP_H
#define BOXPOPUP_H

#include <QFrame>
#include <QSizeF>

class QDoubleSpinBox;

/** Asks for the two sides of a box, beside the button that it is for. Enter answers, Escape does not. */
class BoxPopup : public QFrame
{
    Q_OBJECT

public:
    /** Not shown yet. */
    explicit BoxPopup(QWidget* parent);

    /** Shows it next to a widget. @param box that it begins with, in the outline's units */
    void ask(QWidget const& beside, QSizeF const& box);

Q_SIGNALS:
    /** The user has answered. */
    void answered(QSizeF const& box);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void answer();

    QDoubleSpinBox* m_width;
    QDoubleSpinBox* m_height;
};

#endif // BOXPOPUP_H
