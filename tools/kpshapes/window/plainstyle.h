// SPDX-License-Identifier: MIT
#ifndef PLAINSTYLE_H
#define PLAINSTYLE_H

#include <QProxyStyle>

/**
 * A style that takes every colour from the palette. Its disabled texts have no shade, which blurs
 * them on dark grounds; and its controls have edges if asked to, for palettes in which one ground
 * does not stand out from another.
 */
class PlainStyle : public QProxyStyle
{
    Q_OBJECT

public:
    /**
     * One that its caller, such as QApplication::setStyle(), owns.
     *
     * @param edges how far their colour is from the ground to that of texts: 0, without, to 1
     */
    static QStyle* create(double edges);

    int styleHint(StyleHint hint, QStyleOption const* option, QWidget const* widget,
        QStyleHintReturn* result) const override;
    void drawPrimitive(PrimitiveElement element, QStyleOption const* option, QPainter* painter,
        QWidget const* widget) const override;
    void drawControl(ControlElement element, QStyleOption const* option, QPainter* painter,
        QWidget const* widget) const override;
    void drawComplexControl(ComplexControl control, QStyleOptionComplex const* option,
        QPainter* painter, QWidget const* widget) const override;

private:
    explicit PlainStyle(double edges);

    double const m_edges;
};

#endif // PLAINSTYLE_H
