// SPDX-License-Identifier: MIT
#include "panels/colourbutton.h"

#include "panels/swatch.h"

#include <QEvent>

namespace {

constexpr QSize swatchSize(22, 16);

/** Of the kind that documents hold: a colour by its hue would not compare equal. */
QColor ofChannels(QColor const& colour)
{
    return QColor::fromRgba(colour.rgba());
}

} // namespace

ColourButton::ColourButton(QString const& text, QString const& title, QWidget* parent)
    : QPushButton(text, parent)
    , m_title(title)
{
    setAutoDefault(false);
    setIconSize(swatchSize);
    connect(this, &QPushButton::clicked, this, &ColourButton::openDialog);
    showColour();
}

void ColourButton::setColour(QColor const& colour)
{
    m_colour = colour;
    showColour();
}

void ColourButton::changeEvent(QEvent* event)
{
    QPushButton::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        showColour();
}

void ColourButton::showColour()
{
    setIcon(swatchIcon(m_colour, swatchSize, palette(), devicePixelRatioF()));
    QString const value = m_colour.isValid() ? colourText(m_colour) : QStringLiteral("not chosen");
    setToolTip(QStringLiteral("%1: %2").arg(m_title, value));
    setAccessibleName(m_title);
    setAccessibleDescription(value);
}

void ColourButton::openDialog()
{
    if (m_dialog)
        return;
    m_dialog = new QColorDialog(m_colour.isValid() ? m_colour : QColor(Qt::gray), this);
    m_dialog->setAttribute(Qt::WA_DeleteOnClose);
    m_dialog->setOption(QColorDialog::ShowAlphaChannel);
    m_dialog->setWindowTitle(m_title);
    connect(m_dialog, &QColorDialog::currentColorChanged, this,
        [this](QColor const& colour) { Q_EMIT previewed(ofChannels(colour)); });
    connect(m_dialog, &QColorDialog::colorSelected, this,
        [this](QColor const& colour) { Q_EMIT chosen(ofChannels(colour)); });
    connect(m_dialog, &QColorDialog::rejected, this, &ColourButton::cancelled);
    m_dialog->open();
}
