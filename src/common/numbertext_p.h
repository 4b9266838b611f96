#ifndef NUMBERTEXT_P_H
#define NUMBERTEXT_P_H

#include "conversion_p.h"

#include <QString>

/** The text of numbers in documents. A `Text` is a QString or a QStringRef. */
namespace NumberText {

/**
 * A real in six significant digits, C locale: 1/3 gives 0.333333, 1234567 gives 1.23457e+06.
 * Not printf's "%.6g": exact ties round up and negative zero gives 0.
 */
inline QString fromReal(double real)
{
    return QString::number(real, 'g', 6);
}

inline QString fromBase(qint16 base)
{
    return QString::number(static_cast<int>(base), 10);
}

/** 0 for text that is no number; "inf", "nan" and surrounding white space are accepted. */
template <class Text> double toReal(Text const& text)
{
    return text.toDouble();
}

/** The low 16 bits of a decimal int; 0 for text that is none. */
template <class Text> qint16 toBase(Text const& text)
{
    return Conversion::lowSixteenBits(text.toInt(nullptr, 10));
}

} // namespace NumberText

#endif // NUMBERTEXT_P_H
