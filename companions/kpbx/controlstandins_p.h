// SPDX-License-Identifier: MIT
#ifndef CONTROLSTANDINS_P_H
#define CONTROLSTANDINS_P_H

#include <QByteArray>
#include <QString>
#include <QStringRef>

#include <array>

/**
 * Characters that stand for control characters while a text of XML is parsed.
 *
 * Qt's reader refuses control characters. So each gives its place to a character of the private
 * use area that the document does not hold, and has it back when the tree is built. One character
 * stands for one, so that lines and columns stay what they are.
 */
class ControlStandIns
{
public:
    /**
     * Whether the text holds control characters that the reader refuses, each one a byte. It is
     * not so where there is a NUL, of UTF-16 for instance.
     */
    static bool areNeededFor(QByteArray const& text);

    /** The text with a blank for each such character. */
    static QByteArray blanked(QByteArray const& text);

    /** From now on no character of `text` is a stand-in. */
    void exclude(QStringRef const& text);

    /** Chooses the stand-ins; false if all candidates are excluded. */
    bool choose();

    /** The UTF-8 text with the stand-ins in place. */
    QByteArray putInto(QByteArray const& text) const;

    /** Whether there is a stand-in in `text`. */
    bool areIn(QStringRef const& text) const;

    /** The text with the control characters in place again. */
    QString takenOutOf(QString text) const;

private:
    static constexpr ushort firstCandidate = 0xE000; ///< the first one of the private use area
    static constexpr ushort lastCandidate = 0xF8FF;
    static constexpr int blockSize = 32; ///< as many as there are codes of control characters

    bool isStandIn(QChar character) const;

    std::array<bool, (lastCandidate - firstCandidate + 1) / blockSize> m_isExcluded {};
    ushort m_first = 0; ///< the stand-in for U+0000, if there were one
};

#endif // CONTROLSTANDINS_P_H
