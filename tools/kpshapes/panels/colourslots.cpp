// SPDX-License-Identifier: MIT
#include "panels/colourslots.h"

#include "panels/swatch.h"

#include <QAbstractButton>
#include <QButtonGroup>
#include <QHBoxLayout>
#include <QPainter>

namespace {

constexpr int swatchSide = 20;
constexpr int ringWidth = 3; ///< around the swatch, for the focus and what is chosen
constexpr int buttonSide = swatchSide + 2 * ringWidth;

/** One of the swatches. */
class SlotButton : public QAbstractButton
{
public:
    explicit SlotButton(QWidget* parent)
        : QAbstractButton(parent)
    {
        setCheckable(true);
        setFocusPolicy(Qt::StrongFocus);
        setFixedSize(buttonSide, buttonSide);
    }

    void setColour(QColor const& colour)
    {
        m_colour = colour;
        update();
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        QRectF const whole(rect());
        if (isChecked() || hasFocus()) {
            QPen ring(palette().color(isChecked() ? QPalette::Highlight : QPalette::Text), 2.0);
            if (!isChecked())
                ring = QPen(ring.color(), 1.0, Qt::DotLine);
            painter.setPen(ring);
            painter.drawRoundedRect(whole.adjusted(1.0, 1.0, -1.0, -1.0), 4.0, 4.0);
        }
        QRectF const place = whole.adjusted(ringWidth, ringWidth, -ringWidth, -ringWidth);
        if (!isEnabled())
            painter.setOpacity(0.4);
        paintSwatch(painter, place, m_colour, palette());
        if (isChecked() && hasFocus()) {
            painter.setPen(QPen(palette().color(QPalette::Text), 1.0, Qt::DotLine));
            painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
            painter.drawRect(place.adjusted(2.5, 2.5, -2.5, -2.5));
        }
    }

private:
    QColor m_colour;
};

QString nameOf(int slot)
{
    return slot == ColourSlots::Usual ? QStringLiteral("Usual colour") : themeSlotName(slot);
}

} // namespace

ColourSlots::ColourSlots(QString const& noun, QWidget* parent)
    : QWidget(parent)
    , m_noun(noun)
    , m_group(new QButtonGroup(this))
{
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    for (int slot = Usual; slot <= themeSlotCount; ++slot) {
        auto* const button = new SlotButton(this);
        m_group->addButton(button, slot);
        row->addWidget(button);
        if (slot == Usual)
            row->addSpacing(6);
    }
    row->addStretch();
    setTheme(colourThemes().front());
    setAccessibleName(QStringLiteral("%1 slots of the theme").arg(noun));
    connect(m_group, &QButtonGroup::idClicked, this, &ColourSlots::slotChosen);
}

void ColourSlots::setTheme(ColourTheme const& theme)
{
    for (int slot = Usual; slot <= themeSlotCount; ++slot) {
        auto* const swatch = static_cast<SlotButton*>(button(slot));
        QColor const colour = theme.colour(slot);
        swatch->setColour(colour);
        swatch->setAccessibleName(QStringLiteral("%1: %2").arg(m_noun, nameOf(slot)));
        QString const value = colour.isValid() ? colourText(colour) : QString();
        swatch->setAccessibleDescription(value);
        swatch->setToolTip(QStringLiteral("%1 %2").arg(nameOf(slot), value).trimmed());
    }
}

void ColourSlots::setCurrentSlot(int slot)
{
    // A group in which always one is checked does not let go of it.
    m_group->setExclusive(false);
    for (QAbstractButton* const button : m_group->buttons())
        button->setChecked(m_group->id(button) == slot);
    m_group->setExclusive(true);
}

int ColourSlots::currentSlot() const
{
    return m_group->checkedButton() ? m_group->checkedId() : Plain;
}

QAbstractButton* ColourSlots::button(int slot) const
{
    return m_group->button(slot);
}
