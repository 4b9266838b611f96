// SPDX-License-Identifier: MIT
#ifndef PALETTECOLOURS_H
#define PALETTECOLOURS_H

#include <QColor>

/** A colour between two. @param part 0: the first one, 1: the other one */
inline QColor mixed(QColor const& one, QColor const& other, double part)
{
    auto const channel = [part](double left, double right) { return left + (right - left) * part; };
    return QColor::fromRgbF(channel(one.redF(), other.redF()),
        channel(one.greenF(), other.greenF()), channel(one.blueF(), other.blueF()));
}

#endif // PALETTECOLOURS_H
