// SPDX-License-Identifier: MIT
#ifndef PAINTSECTION_H
#define PAINTSECTION_H

#include "document/appearance.h"
#include "document/colourtheme.h"

#include <QWidget>

class ColourButton;
class ColourSlots;
class QLabel;
class QSpinBox;
class TintSlider;
class TransformList;

/** The controls of one colour of a shape: where it comes from, its tint and its transforms. */
class PaintSection : public QWidget
{
    Q_OBJECT

public:
    /** @param noun what the colour is of, in lower case: "fill" */
    explicit PaintSection(QString const& noun, QWidget* parent = nullptr);

    /** Shows a colour; none is the usual one. */
    void setColour(std::optional<ShapeColour> const& colour, ColourTheme const& theme);
    /** The colour as the user has left it. */
    std::optional<ShapeColour> const& colour() const { return m_colour; }

Q_SIGNALS:
    /** The colour is different; more may follow. */
    void edited();
    /** What was edited is done. @param step the text of the step of undo */
    void finished(QString const& step);
    /** What was edited is to be undone. */
    void cancelled();

protected:
    /** Draws the swatch anew for another palette. */
    void changeEvent(QEvent* event) override;

private:
    QWidget* makeTint();
    void connectControls();
    void chooseSlot(int slot);
    void choosePlain(QColor const& colour);
    void changeTint(int tint);
    void finishColour();
    void finishTint();
    void refresh();
    void showResult();

    QString m_noun;
    std::optional<ShapeColour> m_colour;
    ColourTheme m_theme;
    ColourSlots* m_slots;
    ColourButton* m_plain;
    QLabel* m_result;
    QLabel* m_resultText;
    TintSlider* m_tint = nullptr;
    QSpinBox* m_tintNumber = nullptr;
    TransformList* m_transforms;
};

#endif // PAINTSECTION_H
