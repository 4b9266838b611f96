// SPDX-License-Identifier: MIT
#include "paint/themetable.h"

#include "colorutil.h"
#include "kpcolor.h"
#include "paint/caption.h"

#include <QPainter>
#include <QtMath>

#include <cmath>

namespace {

constexpr double plainWidth = 112.0; ///< of a swatch
constexpr double comparingWidth = 148.0; ///< of one with two captions side by side
constexpr double swatchHeight = 34.0;
constexpr double swatchCaptionHeight = 16.0;
constexpr double swatchGap = 6.0;
constexpr double labelWidth = 70.0;
constexpr double tableMargin = 12.0;
constexpr double chequerSide = 8.5; ///< four rows fill a swatch
constexpr QRgb chequerInk = 0xffcccccc;
constexpr QRgb borderInk = 0xffb0b0b0;

/** Signed percentages, lightest first. */
constexpr int tints[] = {80, 60, 40, 20, 0, -20, -40, -60, -80};
constexpr int tintCount = static_cast<int>(sizeof tints / sizeof *tints);

QString label(int tint)
{
    if (tint == 0)
        return QStringLiteral("reference");
    return tint > 0 ? QStringLiteral("tint %1 %").arg(tint)
                    : QStringLiteral("shade %1 %").arg(-tint);
}

/** A tint of a translucent colour is as translucent. */
QColor withAlphaOf(QColor const& reference, QColor colour)
{
    colour.setAlpha(reference.alpha());
    return colour;
}

QColor inLinearLight(QColor const& reference, int tint)
{
    KpColor colour;
    colour.setTintColor(reference, tint, 0);
    return withAlphaOf(reference, colour);
}

/** The mix with white or black of the channels as they are encoded. */
QColor inEncodedValues(QColor const& reference, int tint)
{
    double const part = std::abs(tint) * 0.01;
    double const target = tint > 0 ? 255.0 : 0.0;
    auto const mixed = [part, target](
                           int channel) { return qRound(channel * (1.0 - part) + target * part); };
    return withAlphaOf(reference,
        QColor(mixed(reference.red()), mixed(reference.green()), mixed(reference.blue())));
}

QString caption(QColor const& colour)
{
    return colour.alpha() < 255 ? ColorUtil::RGBToString4(colour) : ColorUtil::RGBToString(colour);
}

class ThemeTablePainter
{
public:
    ThemeTablePainter(QPainter& painter, bool compares)
        : m_painter(painter)
        , m_compares(compares)
    {
        m_painter.setFont(captionFont());
    }

    void drawLabel(int row)
    {
        drawText(label(tints[row]), QRectF(tableMargin, topOf(row), labelWidth, swatchHeight),
            Qt::AlignLeft | Qt::AlignVCenter);
    }

    void drawSwatch(int row, int column, QColor const& reference)
    {
        double const width = swatchWidth(m_compares);
        QRectF const whole(tableMargin + labelWidth + column * (width + swatchGap), topOf(row),
            width, swatchHeight);
        QColor const colour = inLinearLight(reference, tints[row]);
        QString text = caption(colour);
        if (colour.alpha() < 255)
            drawChequers(whole);
        QRectF left = whole;
        if (m_compares) {
            QColor const encoded = inEncodedValues(reference, tints[row]);
            left.setWidth(width / 2.0);
            m_painter.fillRect(left.translated(left.width(), 0.0), encoded);
            text += QLatin1Char(' ') + caption(encoded);
        }
        m_painter.fillRect(left, colour);
        // White would not be told from the ground otherwise.
        m_painter.setPen(QColor::fromRgb(borderInk));
        m_painter.setBrush(Qt::NoBrush);
        m_painter.drawRect(whole.adjusted(0.5, 0.5, -0.5, -0.5));
        drawText(text, QRectF(whole.left(), whole.bottom(), width, swatchCaptionHeight),
            Qt::AlignCenter);
    }

    static QSizeF size(int columns, bool compares)
    {
        return {2.0 * tableMargin + labelWidth + columns * (swatchWidth(compares) + swatchGap)
                - swatchGap,
            topOf(tintCount) + tableMargin - swatchGap};
    }

private:
    static double swatchWidth(bool compares) { return compares ? comparingWidth : plainWidth; }
    static double topOf(int row)
    {
        return tableMargin + row * (swatchHeight + swatchCaptionHeight + swatchGap);
    }

    /** The ground on which a translucent colour shows. */
    void drawChequers(QRectF const& place)
    {
        m_painter.fillRect(place, Qt::white);
        int const rows = qRound(place.height() / chequerSide);
        int const columns = qCeil(place.width() / chequerSide);
        for (int row = 0; row < rows; ++row) {
            for (int column = row % 2; column < columns; column += 2) {
                QRectF const chequer(place.left() + column * chequerSide,
                    place.top() + row * chequerSide, chequerSide, chequerSide);
                m_painter.fillRect(chequer & place, QColor::fromRgb(chequerInk));
            }
        }
    }

    void drawText(QString const& text, QRectF const& place, int alignment)
    {
        m_painter.setPen(Qt::black);
        m_painter.drawText(place, alignment, text);
    }

    QPainter& m_painter;
    bool const m_compares;
};

} // namespace

Picture themeTable(QVector<QColor> const& references, bool compares)
{
    auto const paint = [references, compares](QPainter& painter) {
        ThemeTablePainter table(painter, compares);
        for (int row = 0; row < tintCount; ++row) {
            table.drawLabel(row);
            for (int column = 0; column < references.size(); ++column)
                table.drawSwatch(row, column, references.at(column));
        }
    };
    return {ThemeTablePainter::size(references.size(), compares), paint};
}
