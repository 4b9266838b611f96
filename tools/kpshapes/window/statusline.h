// SPDX-License-Identifier: MIT
#ifndef STATUSLINE_H
#define STATUSLINE_H

#include "model/selection.h"
#include "model/shapedocument.h"
#include "model/viewsettings.h"

#include <QPointF>
#include <QWidget>

class QLabel;
class QLineEdit;

/**
 * The line below the page: where the mouse is, how far it is from the current point and in which
 * direction, and the command that does what was done last.
 */
class StatusLine : public QWidget
{
    Q_OBJECT

public:
    /** All that is given must outlive this. */
    StatusLine(ShapeDocument const& document, Selection const& selection,
        ViewSettings const& settings, QWidget* parent = nullptr);

    /** Shows where the mouse is. @param position in the outline's units */
    void setPosition(QPointF const& position);
    /** Shows no position: the mouse is elsewhere. */
    void clearPosition();
    /** Shows the command line of what was done; empty if no command does it. */
    void setCommand(QString const& command);
    /** The command line that is shown; empty if there is none. */
    QString command() const { return m_commandText; }
    /** Puts the command line on the clipboard. */
    void copyCommand() const;
    /** What is said of the mouse: "x 12 mm  y 4 mm  distance 5 mm  angle 37°". */
    QString positionText() const;

private:
    QString lengthText(double length) const;

    ShapeDocument const& m_document;
    Selection const& m_selection;
    ViewSettings const& m_settings;
    QLabel* m_position;
    QLineEdit* m_command;
    QString m_commandText;
};

#endif // STATUSLINE_H
