// SPDX-License-Identifier: MIT
#ifndef KPCOLORIO_H
#define KPCOLORIO_H

#include "kpcolor.h"

#include <QDataStream>
#include <QDebug>
#include <QMetaType>

/**
 * @file
 * A document's colour in a QDataStream, in the log and in a QVariant.
 *
 * Without this header the operators of QColor are found, which write and show the concrete colour
 * only. Include it wherever colours are streamed, logged or kept in variants; streams of
 * containers, such as QVector<KpColor>, follow from these operators.
 *
 * Put a colour into a variant by QVariant::fromValue(). A variant that is made of the colour itself,
 * QVariant(colour), holds a QColor: the conversion is QColor's, and the theme is lost. A variant that
 * is streamed needs qRegisterMetaTypeStreamOperators<KpColor>("KpColor") beforehand.
 */

Q_DECLARE_METATYPE(KpColor)

/** KpColor::write(). */
inline QDataStream& operator<<(QDataStream& stream, KpColor const& colour)
{
    return colour.write(stream);
}

/** KpColor::read(). */
inline QDataStream& operator>>(QDataStream& stream, KpColor& colour)
{
    return colour.read(stream);
}

/** Shows the concrete colour as Qt does, theme index, signed tint and reference colour. */
inline QDebug operator<<(QDebug debug, KpColor const& colour)
{
    QDebugStateSaver const saver(debug);
    KpColor shown(colour);
    debug.nospace() << "KpColor(" << static_cast<QColor const&>(colour) << ", theme "
                    << colour.themeIndex() << ", tint " << shown.tint() << ", reference "
                    << qPrintable(shown.refColor().name()) << ')';
    return debug;
}

#endif // KPCOLORIO_H
