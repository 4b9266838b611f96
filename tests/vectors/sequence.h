// SPDX-License-Identifier: MIT
#ifndef VECTORS_SEQUENCE_H
#define VECTORS_SEQUENCE_H

#include <QtGlobal>

namespace Vectors {

/**
 * Numbers that look random and are the same on every platform and with every compiler: a counter
 * whose bits are mixed. Qt's generator does not promise its sequence, the standard library's
 * distributions are each their own. Arguments of a call are computed in no certain order, those in
 * braces are: two numbers for one call stand in braces.
 */
class Sequence
{
public:
    explicit Sequence(quint64 seed)
        : m_counter(seed)
    {
    }

    /** 64 bits. */
    quint64 bits()
    {
        m_counter += 0x9E3779B97F4A7C15U;
        quint64 mixed = m_counter;
        mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9U;
        mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBU;
        return mixed ^ (mixed >> 31);
    }

    /** 0 to `limit` - 1. */
    int below(int limit) { return int(bits() % quint64(limit)); }

    /** `least` to `greatest`. */
    int between(int least, int greatest) { return least + below(greatest - least + 1); }

    /** 0 to just below 1, with all the digits that a double has. */
    double fraction() { return double(bits() >> 11) * 0x1p-53; }

    /** A real of all digits, `least` to just below `greatest`. */
    double real(double least, double greatest) { return least + fraction() * (greatest - least); }

    /** A multiple of 1/8, whose text is short, within `limit` either way. */
    double eighth(int limit) { return between(-8 * limit, 8 * limit) / 8.0; }

private:
    quint64 m_counter;
};

} // namespace Vectors

#endif // VECTORS_SEQUENCE_H
