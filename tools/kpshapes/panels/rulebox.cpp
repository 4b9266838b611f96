// SPDX-License-Identifier: MIT
#include "panels/rulebox.h"

#include "document/bindingrule.h"

#include <QAbstractItemView>
#include <QPainter>
#include <QStylePainter>
#include <QWheelEvent>

namespace {

constexpr int markSide = 12; ///< in logical pixels
constexpr int iconRoom = 8; ///< around the mark, as styles have it

/** A round mark in the colour of a rule. */
QIcon markOf(BindingRule const& rule)
{
    constexpr int density = 4; // crisp on every screen
    QPixmap mark(density * markSide, density * markSide);
    mark.setDevicePixelRatio(density);
    mark.fill(Qt::transparent);
    QPainter painter(&mark);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Qt::white, 1.0));
    painter.setBrush(QColor::fromRgb(rule.colour));
    painter.drawEllipse(QRectF(0.5, 0.5, markSide - 1.0, markSide - 1.0));
    return mark;
}

} // namespace

RuleBox::RuleBox(QString const& name, QWidget* parent)
    : QComboBox(parent)
{
    setAccessibleName(name);
    setObjectName(name);
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(12);
    setFocusPolicy(Qt::StrongFocus);
    for (int rule = 0; rule < unknownRule; ++rule) {
        BindingRule const& shown = bindingRule(rule);
        addItem(markOf(shown),
            QStringLiteral("%1: %2").arg(
                QString::fromUtf8(shown.name), QString::fromUtf8(shown.meaning)),
            rule);
    }
    view()->setMinimumWidth(view()->sizeHintForColumn(0) + 2 * iconRoom);
}

void RuleBox::show(int index, QString const& placeholder)
{
    setPlaceholderText(placeholder);
    setCurrentIndex(index);
    setToolTip(index < 0 ? placeholder : currentText());
    update();
}

void RuleBox::showRule(std::optional<qint16> rule)
{
    if (!rule)
        show(-1, QStringLiteral("mixed"));
    else if (ruleOf(*rule) == unknownRule)
        show(-1, QStringLiteral("unknown (%1)").arg(*rule));
    else
        show(*rule, QString());
}

void RuleBox::showNone()
{
    show(-1, QString());
}

void RuleBox::paintEvent(QPaintEvent* /*event*/)
{
    QStylePainter painter(this);
    QStyleOptionComboBox option;
    initStyleOption(&option);
    if (currentIndex() < 0) {
        option.currentText = placeholderText();
        option.palette.setColor(QPalette::ButtonText, palette().color(QPalette::PlaceholderText));
    }
    QRect const field =
        style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this);
    int const mark = option.currentIcon.isNull() ? 0 : option.iconSize.width() + iconRoom;
    option.currentText =
        option.fontMetrics.elidedText(option.currentText, Qt::ElideRight, field.width() - mark);
    painter.drawComplexControl(QStyle::CC_ComboBox, option);
    painter.drawControl(QStyle::CE_ComboBoxLabel, option);
}

void RuleBox::wheelEvent(QWheelEvent* event)
{
    // The wheel scrolls the panel unless the box was chosen.
    if (hasFocus())
        QComboBox::wheelEvent(event);
    else
        event->ignore();
}
