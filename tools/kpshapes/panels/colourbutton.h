// SPDX-License-Identifier: MIT
#ifndef COLOURBUTTON_H
#define COLOURBUTTON_H

#include <QColor>
#include <QColorDialog>
#include <QPointer>
#include <QPushButton>

/** A button with the swatch of a colour, which opens the dialog to choose another one. */
class ColourButton : public QPushButton
{
    Q_OBJECT

public:
    /** @param title of the dialog, and the accessible name: "Fill colour" */
    ColourButton(QString const& text, QString const& title, QWidget* parent = nullptr);

    /** The colour that is shown, and that the dialog begins with. Invalid: none yet. */
    void setColour(QColor const& colour);
    /** The colour that is shown. */
    QColor colour() const { return m_colour; }
    /** The dialog while it is open, or null. */
    QColorDialog* dialog() const { return m_dialog; }

Q_SIGNALS:
    /** One that the dialog shows; it is not chosen yet. With alpha, of red, green and blue. */
    void previewed(QColor const& colour);
    /** The dialog was closed with this one. */
    void chosen(QColor const& colour);
    /** The dialog was closed without any. */
    void cancelled();

protected:
    /** Draws the swatch anew for another palette. */
    void changeEvent(QEvent* event) override;

private:
    void openDialog();
    void showColour();

    QString m_title;
    QColor m_colour;
    QPointer<QColorDialog> m_dialog;
};

#endif // COLOURBUTTON_H
