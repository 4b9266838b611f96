#ifndef PLAINSTYLE_H
#define PLAINSTYLE_H

#include <QProxyStyle>

/**
 * A style that takes every colour from the palette. Its disabled texts have no shade, which blurs
 * them on dark grounds; and its controls have edges in the colour of texts if asked to, for palettes
 * in which one ground does not stand out from another.
 */
class PlainStyle : public QProxyStyle
{
    Q_OBJECT

public:
    /** @param hasEdges whether controls have edges in the colour of texts */
    explicit PlainStyle(bool hasEdges);

    int styleHint(StyleHint hint, QStyleOption const* option, QWidget const* widget,
        QStyleHintReturn* result) const override;
    void drawPrimitive(PrimitiveElement element, QStyleOption const* option, QPainter* painter,
        QWidget const* widget) const override;
    void drawControl(ControlElement element, QStyleOption const* option, QPainter* painter,
        QWidget const* widget) const override;
    void drawComplexControl(ComplexControl control, QStyleOptionComplex const* option,
        QPainter* painter, QWidget const* widget) const override;

private:
    bool const m_hasEdges;
};

#endif // PLAINSTYLE_H
