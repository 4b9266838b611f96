// SPDX-License-Identifier: MIT
#ifndef TINTSLIDER_H
#define TINTSLIDER_H

#include "kpcolor.h"

#include <QSlider>

/** Tints are from its negative to it. */
constexpr int strongestTint = 100;

/** Chooses a tint, from -100 to 100, along the colours that it gives: black at the left, white at the right. */
class TintSlider : public QSlider
{
    Q_OBJECT

public:
    /** Without a tint. */
    explicit TintSlider(QWidget* parent = nullptr);

    /** The colour that is tinted. */
    void setColour(KpColor const& colour);

protected:
    /** Draws the colours along the groove, and the style's handle. */
    void paintEvent(QPaintEvent* event) override;

private:
    KpColor m_colour;
};

#endif // TINTSLIDER_H
