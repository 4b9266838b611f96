// SPDX-License-Identifier: MIT
#include "panels/shadowsection.h"

#include "document/appearancexml.h"
#include "panels/colourbutton.h"

#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QSlider>
#include <QSpinBox>

#include <algorithm>
#include <limits>

namespace {

constexpr int greatestRadius = static_cast<int>(greatestShadowRadius);
constexpr int comfortableRadius = 50; ///< the slider's, more by the number
constexpr double greatestOffset = 100000.0;

QDoubleSpinBox* makeOffset(QString const& prefix, QString const& name, QWidget* parent)
{
    auto* const box = new QDoubleSpinBox(parent);
    box->setRange(-greatestOffset, greatestOffset);
    box->setDecimals(1);
    box->setPrefix(prefix);
    box->setKeyboardTracking(false);
    box->setAccessibleName(name);
    box->setToolTip(name + QStringLiteral(", in units of the shape"));
    return box;
}

/** A row of widgets, of which the mnemonic of the label leads to the first. */
void addRow(QFormLayout& form, QString const& text, QVector<QWidget*> const& widgets)
{
    auto* const label = new QLabel(text, form.parentWidget());
    label->setBuddy(widgets.first());
    auto* const row = new QHBoxLayout;
    for (QWidget* const widget : widgets)
        row->addWidget(widget, qobject_cast<QSlider*>(widget) ? 2 : 1);
    form.addRow(label, row);
}

} // namespace

ShadowSection::ShadowSection(QWidget* parent)
    : QWidget(parent)
    , m_switch(new QCheckBox(QStringLiteral("&Drop shadow"), this))
    , m_controls(new QWidget(this))
    , m_colour(new ColourButton(
          QStringLiteral("&Colour..."), QStringLiteral("Shadow colour"), m_controls))
{
    auto* const column = new QVBoxLayout(this);
    column->addWidget(m_switch);
    column->addWidget(m_controls);
    column->addStretch();
    auto* const form = new QFormLayout(m_controls);
    form->setContentsMargins(0, 0, 0, 0);
    form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    addRadius(*form);
    addOffset(*form);
    auto* const row = new QHBoxLayout;
    row->addWidget(m_colour);
    row->addStretch();
    form->addRow(QString(), row);
    connectControls();
    refresh();
}

void ShadowSection::addRadius(QFormLayout& form)
{
    m_radius = new QSlider(Qt::Horizontal, m_controls);
    m_radius->setRange(0, comfortableRadius);
    m_radius->setAccessibleName(QStringLiteral("Radius of the shadow"));
    m_radiusNumber = new QSpinBox(m_controls);
    m_radiusNumber->setRange(0, greatestRadius);
    m_radiusNumber->setKeyboardTracking(false);
    m_radiusNumber->setAccessibleName(
        QStringLiteral("Radius of the shadow, in units of the shape"));
    m_radius->setToolTip(QStringLiteral("How far the edge is blurred"));
    addRow(form, QStringLiteral("&Radius"), {m_radius, m_radiusNumber});
    m_flatness = new QSpinBox(m_controls);
    m_flatness->setRange(0, std::numeric_limits<int>::max());
    m_flatness->setKeyboardTracking(false);
    m_flatness->setAccessibleName(QStringLiteral("Flatness of the shadow"));
    m_flatness->setToolTip(QStringLiteral("0 is the softest edge, a large number nearly a ramp"));
    addRow(form, QStringLiteral("F&latness"), {m_flatness});
}

void ShadowSection::addOffset(QFormLayout& form)
{
    m_x = makeOffset(QStringLiteral("x "), QStringLiteral("Shadow to the right"), m_controls);
    m_y = makeOffset(QStringLiteral("y "), QStringLiteral("Shadow downwards"), m_controls);
    addRow(form, QStringLiteral("&Offset"), {m_x, m_y});
}

void ShadowSection::connectControls()
{
    connect(m_switch, &QCheckBox::clicked, this, &ShadowSection::switchOn);
    connect(m_radius, &QSlider::valueChanged, this, [this](int radius) {
        changeRadius(radius);
        if (!m_radius->isSliderDown())
            finish();
    });
    connect(m_radius, &QSlider::sliderReleased, this, &ShadowSection::finish);
    connect(m_radiusNumber, qOverload<int>(&QSpinBox::valueChanged), this, [this](int radius) {
        changeRadius(radius);
        finish();
    });
    connect(m_flatness, qOverload<int>(&QSpinBox::valueChanged), this, [this](int flatness) {
        changeFlatness(flatness);
        finish();
    });
    for (QDoubleSpinBox* const box : {m_x, m_y}) {
        connect(box, qOverload<double>(&QDoubleSpinBox::valueChanged), this,
            &ShadowSection::changeOffset);
    }
    connect(m_colour, &ColourButton::previewed, this, &ShadowSection::changeColour);
    connect(m_colour, &ColourButton::chosen, this, [this](QColor const& colour) {
        changeColour(colour);
        finish();
    });
    connect(m_colour, &ColourButton::cancelled, this, &ShadowSection::cancelled);
}

void ShadowSection::setShadow(std::optional<ShapeShadow> const& shadow)
{
    m_shadow = shadow;
    refresh();
}

void ShadowSection::switchOn(bool isOn)
{
    if (isOn) {
        m_shadow = m_last;
    } else if (m_shadow) {
        m_last = *m_shadow;
        m_shadow.reset();
    }
    refresh();
    Q_EMIT edited();
    finish();
}

void ShadowSection::changeRadius(int radius)
{
    change([radius](ShapeShadow& shadow) { shadow.radius = static_cast<unsigned int>(radius); });
}

void ShadowSection::changeFlatness(int flatness)
{
    change(
        [flatness](ShapeShadow& shadow) { shadow.flatness = static_cast<unsigned int>(flatness); });
}

void ShadowSection::changeColour(QColor const& colour)
{
    change([&colour](ShapeShadow& shadow) { shadow.colour = colour; });
}

void ShadowSection::changeOffset()
{
    // The other one keeps the digits that are not shown.
    bool const isX = sender() == m_x;
    change([this, isX](ShapeShadow& shadow) {
        isX ? shadow.offset.setX(m_x->value()) : shadow.offset.setY(m_y->value());
    });
    finish();
}

void ShadowSection::change(std::function<void(ShapeShadow&)> const& edit)
{
    if (!m_shadow)
        return;
    edit(*m_shadow);
    refresh();
    Q_EMIT edited();
}

void ShadowSection::finish()
{
    Q_EMIT finished(QStringLiteral("Change shadow"));
}

void ShadowSection::refresh()
{
    QSignalBlocker const blockers[] {QSignalBlocker(m_radius), QSignalBlocker(m_radiusNumber),
        QSignalBlocker(m_flatness), QSignalBlocker(m_x), QSignalBlocker(m_y)};
    ShapeShadow const shown = m_shadow.value_or(m_last);
    m_switch->setChecked(m_shadow.has_value());
    m_controls->setEnabled(m_shadow.has_value());
    int const radius = static_cast<int>(std::min(shown.radius, greatestShadowRadius));
    m_radius->setValue(std::min(radius, comfortableRadius));
    m_radiusNumber->setValue(radius);
    m_flatness->setValue(
        static_cast<int>(std::min<unsigned int>(shown.flatness, std::numeric_limits<int>::max())));
    m_x->setValue(shown.offset.x());
    m_y->setValue(shown.offset.y());
    m_colour->setColour(shown.colour);
}
