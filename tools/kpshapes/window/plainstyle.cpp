// SPDX-License-Identifier: MIT
#include "window/plainstyle.h"

#include <QPainter>
#include <QStyleOption>

namespace {

bool hasEdge(QStyle::PrimitiveElement element)
{
    switch (element) {
    case QStyle::PE_Frame:
    case QStyle::PE_FrameLineEdit:
    case QStyle::PE_FrameTabWidget:
    case QStyle::PE_FrameMenu:
    case QStyle::PE_PanelButtonCommand:
    case QStyle::PE_IndicatorCheckBox:
    case QStyle::PE_PanelTipLabel:
        return true;
    default:
        return false;
    }
}

/** The part of a control that has an edge; all parts of it for one whose whole has. */
QRect edgeOf(QStyle const& style, QStyle::ComplexControl control, QStyleOptionComplex const& option,
    QWidget const* widget)
{
    switch (control) {
    case QStyle::CC_SpinBox:
    case QStyle::CC_ComboBox:
        return option.rect;
    case QStyle::CC_ScrollBar:
        return style.subControlRect(control, &option, QStyle::SC_ScrollBarSlider, widget);
    case QStyle::CC_Slider:
        return style.subControlRect(control, &option, QStyle::SC_SliderHandle, widget);
    case QStyle::CC_ToolButton:
        // Those that are flat have none until the mouse is over them.
        return option.state & QStyle::State_AutoRaise ? QRect() : option.rect;
    default:
        return {};
    }
}

/** The colour that is a part of the way from one to the other. */
QColor between(QColor const& one, QColor const& other, double part)
{
    auto const mix = [part](int from, int to) { return qRound(from + part * (to - from)); };
    return {mix(one.red(), other.red()), mix(one.green(), other.green()),
        mix(one.blue(), other.blue())};
}

void drawEdge(QPainter& painter, QStyleOption const& option, QRect const& rect, double strength)
{
    if (strength <= 0.0 || rect.isEmpty())
        return;
    QPalette const& palette = option.palette;
    QColor const colour = option.state & QStyle::State_HasFocus
        ? palette.color(QPalette::Highlight)
        : between(palette.color(QPalette::Window), palette.color(QPalette::WindowText), strength);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(colour, 1.0));
    painter.drawRect(QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5));
    painter.restore();
}

} // namespace

PlainStyle::PlainStyle(double edges)
    : QProxyStyle(QStringLiteral("Fusion"))
    , m_edges(edges)
{
}

QStyle* PlainStyle::create(double edges)
{
    return new PlainStyle(edges);
}

int PlainStyle::styleHint(StyleHint hint, QStyleOption const* option, QWidget const* widget,
    QStyleHintReturn* result) const
{
    return hint == SH_EtchDisabledText ? 0 : QProxyStyle::styleHint(hint, option, widget, result);
}

void PlainStyle::drawPrimitive(PrimitiveElement element, QStyleOption const* option,
    QPainter* painter, QWidget const* widget) const
{
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    if (hasEdge(element))
        drawEdge(*painter, *option, option->rect, m_edges);
}

void PlainStyle::drawControl(ControlElement element, QStyleOption const* option, QPainter* painter,
    QWidget const* widget) const
{
    QProxyStyle::drawControl(element, option, painter, widget);
    if (element == CE_TabBarTabShape && (option->state & State_Selected))
        drawEdge(*painter, *option, option->rect, m_edges);
}

void PlainStyle::drawComplexControl(ComplexControl control, QStyleOptionComplex const* option,
    QPainter* painter, QWidget const* widget) const
{
    QProxyStyle::drawComplexControl(control, option, painter, widget);
    drawEdge(*painter, *option, edgeOf(*proxy(), control, *option, widget), m_edges);
}
