// SPDX-License-Identifier: MIT
#ifndef MESSAGEBAR_H
#define MESSAGEBAR_H

#include "common/diagnostic.h"

#include <QFrame>

class QLabel;
class QPlainTextEdit;
class QToolButton;

/**
 * What the window has to say, above the page: it stays until it is closed, and takes no input
 * away from what is being done.
 */
class MessageBar : public QFrame
{
    Q_OBJECT

public:
    /** Hidden until there is something to say. */
    explicit MessageBar(QWidget* parent = nullptr);

    /** Shows what went wrong: the gravest in the line, all of them behind "Details". */
    void show(Diagnostics const& diagnostics);
    /** Shows a hint. */
    void show(QString const& hint);
    /** The line that is shown; empty while it is hidden. */
    QString text() const;
    /** All messages, a line each. */
    QString details() const;

private:
    void setDetailsShown(bool isShown);
    void present(QString const& line, QString const& details);

    QLabel* m_line;
    QToolButton* m_more;
    QPlainTextEdit* m_details;
};

#endif // MESSAGEBAR_H
