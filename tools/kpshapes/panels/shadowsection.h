// SPDX-License-Identifier: MIT
#ifndef SHADOWSECTION_H
#define SHADOWSECTION_H

#include "document/appearance.h"

#include <QWidget>

#include <functional>

class ColourButton;
class QCheckBox;
class QDoubleSpinBox;
class QFormLayout;
class QSlider;
class QSpinBox;

/** The controls of the shadow of a shape. */
class ShadowSection : public QWidget
{
    Q_OBJECT

public:
    /** Shows none. */
    explicit ShadowSection(QWidget* parent = nullptr);

    /** Shows a shadow, or none. */
    void setShadow(std::optional<ShapeShadow> const& shadow);
    /** The shadow as the user has left it. */
    std::optional<ShapeShadow> const& shadow() const { return m_shadow; }

Q_SIGNALS:
    /** The shadow is different; more may follow. */
    void edited();
    /** What was edited is done. @param step the text of the step of undo */
    void finished(QString const& step);
    /** What was edited is to be undone. */
    void cancelled();

private:
    void addRadius(QFormLayout& form);
    void addOffset(QFormLayout& form);
    void connectControls();
    void switchOn(bool isOn);
    void changeRadius(int radius);
    void changeOffset();
    void changeFlatness(int flatness);
    void changeColour(QColor const& colour);
    void change(std::function<void(ShapeShadow&)> const& edit);
    void finish();
    void refresh();

    std::optional<ShapeShadow> m_shadow;
    ShapeShadow m_last; ///< that there was, for switching it on again
    QCheckBox* m_switch;
    QWidget* m_controls;
    QSlider* m_radius = nullptr;
    QSpinBox* m_radiusNumber = nullptr;
    QSpinBox* m_flatness = nullptr;
    QDoubleSpinBox* m_x = nullptr;
    QDoubleSpinBox* m_y = nullptr;
    ColourButton* m_colour;
};

#endif // SHADOWSECTION_H
