// SPDX-License-Identifier: MIT
#include "panels/paintsection.h"

#include "panels/colourbutton.h"
#include "panels/colourslots.h"
#include "panels/swatch.h"
#include "panels/tintslider.h"
#include "panels/transformlist.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QSpinBox>

namespace {

constexpr QSize resultSize(36, 22);

QString capitalized(QString const& noun)
{
    return noun.left(1).toUpper() + noun.mid(1);
}

int tintOf(KpColor colour)
{
    return colour.tint();
}

} // namespace

PaintSection::PaintSection(QString const& noun, QWidget* parent)
    : QWidget(parent)
    , m_noun(noun)
    , m_theme(colourThemes().front())
    , m_slots(new ColourSlots(capitalized(noun), this))
    , m_plain(new ColourButton(
          QStringLiteral("&Colour..."), capitalized(noun) + QStringLiteral(" colour"), this))
    , m_result(new QLabel(this))
    , m_resultText(new QLabel(this))
    , m_transforms(new TransformList(noun, this))
{
    auto* const column = new QVBoxLayout(this);
    column->addWidget(m_slots);
    auto* const row = new QHBoxLayout;
    row->addWidget(m_plain);
    row->addWidget(m_resultText, 1);
    m_resultText->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    row->addWidget(m_result);
    column->addLayout(row);
    column->addWidget(makeTint());
    column->addWidget(m_transforms, 1);
    m_result->setAccessibleName(QStringLiteral("Resulting %1 colour").arg(noun));
    connectControls();
    refresh();
}

QWidget* PaintSection::makeTint()
{
    auto* const area = new QWidget(this);
    auto* const row = new QHBoxLayout(area);
    row->setContentsMargins(0, 0, 0, 0);
    auto* const label = new QLabel(QStringLiteral("&Tint"), area);
    m_tint = new TintSlider(area);
    m_tint->setAccessibleName(QStringLiteral("Tint of %1").arg(m_noun));
    m_tint->setToolTip(
        QStringLiteral("To the left towards black, to the right towards white, in linear light"));
    m_tintNumber = new QSpinBox(area);
    m_tintNumber->setRange(-strongestTint, strongestTint);
    m_tintNumber->setSuffix(QStringLiteral(" %"));
    m_tintNumber->setKeyboardTracking(false);
    m_tintNumber->setAccessibleName(QStringLiteral("Tint of %1 in percent").arg(m_noun));
    label->setBuddy(m_tint);
    row->addWidget(label);
    row->addWidget(m_tint, 1);
    row->addWidget(m_tintNumber);
    return area;
}

void PaintSection::connectControls()
{
    connect(m_slots, &ColourSlots::slotChosen, this, &PaintSection::chooseSlot);
    connect(m_plain, &ColourButton::previewed, this, &PaintSection::choosePlain);
    connect(m_plain, &ColourButton::chosen, this, [this](QColor const& colour) {
        choosePlain(colour);
        finishColour();
    });
    connect(m_plain, &ColourButton::cancelled, this, &PaintSection::cancelled);
    connect(m_tint, &TintSlider::valueChanged, this, [this](int tint) {
        changeTint(tint);
        if (!m_tint->isSliderDown())
            finishTint();
    });
    connect(m_tint, &TintSlider::sliderReleased, this, &PaintSection::finishTint);
    connect(m_tintNumber, qOverload<int>(&QSpinBox::valueChanged), this, [this](int tint) {
        changeTint(tint);
        finishTint();
    });
    connect(m_transforms, &TransformList::edited, this, [this] {
        if (m_colour)
            m_colour->transforms = m_transforms->transforms();
        refresh();
        Q_EMIT edited();
    });
    connect(m_transforms, &TransformList::finished, this, &PaintSection::finished);
}

void PaintSection::setColour(std::optional<ShapeColour> const& colour, ColourTheme const& theme)
{
    m_colour = colour;
    m_theme = theme;
    m_slots->setTheme(theme);
    refresh();
}

void PaintSection::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        showResult();
}

void PaintSection::chooseSlot(int slot)
{
    if (slot == ColourSlots::Usual) {
        m_colour.reset();
    } else {
        // Tint, alpha and transforms are kept: they were chosen for any colour.
        ShapeColour changed = m_colour.value_or(ShapeColour());
        changed.colour.setRefColor(m_theme.colour(slot), slot);
        m_colour = changed;
    }
    refresh();
    Q_EMIT edited();
    finishColour();
}

void PaintSection::choosePlain(QColor const& colour)
{
    ShapeColour changed = m_colour.value_or(ShapeColour());
    changed.colour.setColor(colour);
    m_colour = changed;
    refresh();
    Q_EMIT edited();
}

void PaintSection::changeTint(int tint)
{
    if (!m_colour)
        return;
    m_colour->colour.modifyTint(tint);
    refresh();
    Q_EMIT edited();
}

void PaintSection::finishColour()
{
    Q_EMIT finished(QStringLiteral("Change %1 colour").arg(m_noun));
}

void PaintSection::finishTint()
{
    Q_EMIT finished(QStringLiteral("Change tint of %1").arg(m_noun));
}

void PaintSection::refresh()
{
    int const theme = m_colour ? m_colour->colour.themeIndex() : 0;
    int const plain = m_colour ? static_cast<int>(ColourSlots::Plain) : ColourSlots::Usual;
    m_slots->setCurrentSlot(theme > 0 ? theme : plain);
    m_plain->setColour(m_colour && theme == 0 ? QColor(m_colour->colour) : QColor());
    int const tint = m_colour ? tintOf(m_colour->colour) : 0;
    {
        QSignalBlocker const sliderBlocker(m_tint);
        QSignalBlocker const numberBlocker(m_tintNumber);
        m_tint->setValue(tint);
        m_tint->setColour(m_colour ? m_colour->colour : KpColor());
        m_tintNumber->setValue(tint);
    }
    m_tint->setEnabled(m_colour.has_value());
    m_tintNumber->setEnabled(m_colour.has_value());
    m_transforms->setEnabled(m_colour.has_value());
    m_transforms->setColour(m_colour.value_or(ShapeColour()));
    showResult();
}

/** The colour that is drawn. */
void PaintSection::showResult()
{
    QColor const shown = m_colour ? m_colour->shown() : QColor();
    m_result->setPixmap(swatchPixmap(shown, resultSize, palette(), devicePixelRatioF()));
    QString const text = shown.isValid() ? colourText(shown) : QStringLiteral("Usual colour");
    m_resultText->setText(text);
    m_result->setAccessibleDescription(text);
}
