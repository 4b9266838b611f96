// SPDX-License-Identifier: MIT
#ifndef MARKUPBOUNDS_P_H
#define MARKUPBOUNDS_P_H

#include "markupscan_p.h"

#include <QTextCodec>

#include <memory>

/**
 * A MarkupScan of text as it is in a file, in any encoding that Qt reads.
 *
 * Anything but UTF-8 is decoded here as well, a byte at a time, so that it is known with which byte
 * a fault begins.
 */
class MarkupBounds
{
public:
    MarkupBounds() = default;

    /**
     * Goes on with more of the text.
     *
     * @param bytes the first ones, 4,096 or all, must come in one piece, as the parser has them
     * @return how many of them may be parsed: all, unless there is a fault
     */
    qint64 take(char const* bytes, qint64 size);

    /** What is too much; empty if nothing is. */
    QString const& fault() const { return m_scan.fault().isEmpty() ? m_fault : m_scan.fault(); }

    /** How many "&" there are, if the document declares entities; in any other it may be none. */
    qint64 references() const { return m_references; }

private:
    Q_DISABLE_COPY(MarkupBounds)

    bool begin(char const* bytes, qint64 size);
    qint64 takeDecoded(char const* bytes, qint64 size);

    MarkupScan m_scan;
    QString m_fault;
    bool m_isBegun = false;
    QTextCodec* m_codec = nullptr; ///< null for UTF-8
    std::unique_ptr<QTextCodec::ConverterState> m_decoding;
    qint64 m_references = 0;
    qint64 m_skipped = 0; ///< characters that are still to be left out
};

#endif // MARKUPBOUNDS_P_H
