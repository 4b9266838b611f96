// SPDX-License-Identifier: MIT
#include "panels/numberbox.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QWheelEvent>

NumberBox::NumberBox(QString const& name, QWidget* parent)
    : QAbstractSpinBox(parent)
{
    setAccessibleName(name);
    setObjectName(name);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    // The wheel scrolls the panel unless the field was chosen.
    setFocusPolicy(Qt::StrongFocus);
    connect(this, &NumberBox::editingFinished, this, &NumberBox::finish);
}

void NumberBox::show(QString const& text, QString const& placeholder)
{
    lineEdit()->setPlaceholderText(placeholder);
    bool const isChanging = hasFocus() && lineEdit()->text() != m_shown;
    m_shown = text;
    if (!isChanging && lineEdit()->text() != text)
        lineEdit()->setText(text);
    update();
}

void NumberBox::showNumber(QString const& text)
{
    show(text, QString());
}

void NumberBox::showMixed()
{
    show(QString(), QStringLiteral("mixed"));
}

void NumberBox::showNone()
{
    show(QString(), QString());
}

void NumberBox::finish()
{
    QString const text = lineEdit()->text();
    if (text == m_shown)
        return;
    lineEdit()->setText(m_shown);
    Q_EMIT entered(text);
}

void NumberBox::stepBy(int steps)
{
    finish();
    Q_EMIT stepped(steps);
}

QSize NumberBox::sizeHint() const
{
    int const text = fontMetrics().horizontalAdvance(QStringLiteral("-00000.00"));
    return {text + 30, lineEdit()->sizeHint().height() + 2};
}

QValidator::State NumberBox::validate(QString& /*input*/, int& /*position*/) const
{
    return QValidator::Acceptable;
}

QAbstractSpinBox::StepEnabled NumberBox::stepEnabled() const
{
    return m_shown.isEmpty() ? StepNone : StepUpEnabled | StepDownEnabled;
}

void NumberBox::wheelEvent(QWheelEvent* event)
{
    if (hasFocus())
        QAbstractSpinBox::wheelEvent(event);
    else
        event->ignore();
}

void NumberBox::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape && lineEdit()->text() != m_shown) {
        lineEdit()->setText(m_shown);
        lineEdit()->selectAll();
    } else {
        QAbstractSpinBox::keyPressEvent(event);
    }
}
