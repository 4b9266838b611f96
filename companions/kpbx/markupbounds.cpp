// SPDX-License-Identifier: MIT
#include "markupbounds_p.h"

#include <QXmlStreamReader>

#include <algorithm>

namespace {

/** Within these bytes the declaration of a document has its end: Qt looks no farther back. */
constexpr qint64 longestDeclaration = 4096;

/** The one that Qt takes for a text until its declaration names another. */
QTextCodec* codecByMark(QByteArray const& text)
{
    constexpr int utf8 = 106;
    constexpr int utf16 = 1015;
    constexpr int utf32 = 1017;
    auto const startsWith = [&text](char const* hexadecimal) {
        return text.startsWith(QByteArray::fromHex(hexadecimal));
    };
    if (startsWith("0000feff") || startsWith("fffe0000"))
        return QTextCodec::codecForMib(utf32);
    if (startsWith("feff") || startsWith("fffe"))
        return QTextCodec::codecForMib(utf16);
    return QTextCodec::codecForMib(utf8);
}

/** What stands for a unit of UTF-16; of a pair each half has its own bytes. */
QByteArray bytesOf(QChar unit)
{
    ushort const code = unit.unicode();
    auto const last = [](int bits) { return static_cast<char>(0x80 | (bits & 0x3f)); };
    if (code < 0x80)
        return QByteArray(1, static_cast<char>(code));
    if (code < 0x800)
        return QByteArray(1, static_cast<char>(0xc0 | code >> 6)) + last(code);
    return QByteArray(1, static_cast<char>(0xe0 | code >> 12)) + last(code >> 6) + last(code);
}

bool beginsWithDeclaration(QString const& text)
{
    QLatin1String const start("<?xml");
    return text.startsWith(start) && text.size() > start.size() && text.at(start.size()).isSpace();
}

} // namespace

qint64 MarkupBounds::take(char const* bytes, qint64 size)
{
    if (!m_isBegun && !begin(bytes, size))
        return std::min(size, longestDeclaration);
    if (m_codec)
        return takeDecoded(bytes, size);
    qint64 const taken = m_scan.take(bytes, size);
    if (m_scan.declaresEntities())
        m_references += std::count(bytes, bytes + taken, '&');
    return taken;
}

/** Finds the encoding; false if the declaration has no end where it should. */
bool MarkupBounds::begin(char const* bytes, qint64 size)
{
    m_isBegun = true;
    QByteArray const head =
        QByteArray::fromRawData(bytes, static_cast<int>(std::min(size, longestDeclaration)));
    QXmlStreamReader reader(head);
    reader.readNext();
    QTextCodec* const marked = codecByMark(head);
    if (beginsWithDeclaration(marked->toUnicode(head)) && size > head.size()
        && reader.error() == QXmlStreamReader::PrematureEndOfDocumentError) {
        m_fault =
            QStringLiteral("an XML declaration of more than %1 bytes").arg(longestDeclaration);
        return false;
    }
    QByteArray const name = reader.documentEncoding().toLatin1();
    QTextCodec* const declared = name.isEmpty() ? marked : QTextCodec::codecForName(name);
    QTextCodec* const codec = declared ? declared : marked;
    if (codec == codecByMark(QByteArray()))
        return true;
    m_codec = codec;
    m_decoding = std::make_unique<QTextCodec::ConverterState>();
    // Qt decodes from the start again, and goes on behind as many characters.
    if (codec != marked)
        m_skipped = reader.characterOffset();
    return true;
}

qint64 MarkupBounds::takeDecoded(char const* bytes, qint64 size)
{
    qint64 end = 0; // of the last character
    for (qint64 i = 0; i < size; ++i) {
        QString const text = m_codec->toUnicode(bytes + i, 1, m_decoding.get());
        for (QChar const unit : text) {
            if (m_skipped > 0) {
                --m_skipped;
                continue;
            }
            m_references += unit == QLatin1Char('&') ? 1 : 0;
            QByteArray const written = bytesOf(unit);
            if (m_scan.take(written.constData(), written.size()) < written.size())
                return end;
        }
        if (!text.isEmpty())
            end = i + 1;
    }
    return size;
}
