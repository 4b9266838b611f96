// SPDX-License-Identifier: MIT
#ifndef NUMBERBOX_H
#define NUMBERBOX_H

#include <QAbstractSpinBox>

/**
 * A field for a number in any notation. It shows nothing where several values differ, and hands
 * over what the user has entered as text: on Enter, and when the focus leaves a changed text.
 */
class NumberBox : public QAbstractSpinBox
{
    Q_OBJECT

public:
    /** @param name for those who do not see it */
    NumberBox(QString const& name, QWidget* parent);

    /** Shows a number, unless the user is just changing the text. */
    void showNumber(QString const& text);
    /** Shows that there are several, as showNumber(). */
    void showMixed();
    /** Shows nothing: there is no number. */
    void showNone();

    void stepBy(int steps) override;
    QSize sizeHint() const override;

Q_SIGNALS:
    /** The user has entered a text, which may be anything. */
    void entered(QString const& text);
    /** The user asks for a number that is greater by so many units, or less. */
    void stepped(int steps);

protected:
    QValidator::State validate(QString& input, int& position) const override;
    StepEnabled stepEnabled() const override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void show(QString const& text, QString const& placeholder);
    void finish();

    QString m_shown;
};

#endif // NUMBERBOX_H
