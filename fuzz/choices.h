// SPDX-License-Identifier: MIT
#ifndef CHOICES_H
#define CHOICES_H

#include <QByteArray>

#include <cmath>

namespace Fuzzing {

/** The bytes of an input as decisions, one after the other. When they are used up, all are 0. */
class Choices
{
public:
    explicit Choices(QByteArray bytes)
        : m_bytes(std::move(bytes))
    {
    }

    /** Whether every decision was taken. */
    bool isAtEnd() const { return m_next >= m_bytes.size(); }

    /** From 0 to 255. */
    int byte() { return isAtEnd() ? 0 : static_cast<unsigned char>(m_bytes.at(m_next++)); }

    /** From 0, below `bound`, which is from 1 to 65536. */
    int bounded(int bound)
    {
        int const high = bound > 256 ? byte() << 8 : 0;
        return (high + byte()) % bound;
    }

    /** One of two. */
    bool flag() { return byte() % 2 == 1; }

    /** A finite number, small and round more often than not. */
    double real()
    {
        int const kind = byte();
        double const number = bounded(65536) - 32768;
        if (kind < 160)
            return std::round(number / 64.0);
        if (kind < 224)
            return number / 64.0;
        return std::ldexp(number, kind % 64 - 40);
    }

    /** Those that are left, none of which is then. */
    QByteArray rest()
    {
        QByteArray const bytes = m_bytes.mid(m_next);
        m_next = m_bytes.size();
        return bytes;
    }

private:
    QByteArray m_bytes;
    int m_next = 0;
};

/** A text, and the decisions behind the first NUL, which is in no XML and no path data. */
struct TextAndChoices
{
    QByteArray text;
    Choices choices;

    explicit TextAndChoices(QByteArray const& input)
        : text(input.contains('\0') ? input.left(input.indexOf('\0')) : input)
        , choices(text.size() < input.size() ? input.mid(text.size() + 1) : QByteArray())
    {
    }
};

} // namespace Fuzzing

#endif // CHOICES_H
