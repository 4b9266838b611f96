// SPDX-License-Identifier: MIT
#include "process/filenames.h"

#include <QTextCodec>

namespace {

constexpr int utf8Mib = 106;

/** A byte that belongs to no character is this, plus its value. */
constexpr ushort strayByte = 0xdc00;

bool isStrayByte(QChar character)
{
    return character.unicode() >= strayByte + 0x80 && character.unicode() <= strayByte + 0xff;
}

QTextCodec const& utf8()
{
    static QTextCodec const* const codec = QTextCodec::codecForMib(utf8Mib);
    return *codec;
}

/** The text of bytes that are UTF-8 throughout; false if they are not. */
bool decode(char const* bytes, int size, QString& text)
{
    // Otherwise a mark at the start would be dropped.
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    text = utf8().toUnicode(bytes, size, &state);
    return state.invalidChars == 0 && state.remainingChars == 0;
}

/** How many bytes a character takes, by the first of them. */
int lengthFrom(char first)
{
    auto const byte = static_cast<unsigned char>(first);
    if (byte < 0xc0)
        return 1;
    return byte < 0xe0 ? 2 : (byte < 0xf0 ? 3 : 4);
}

/** A codec by which bytes that become text and bytes again are the same. */
class FileNameCodec : public QTextCodec
{
public:
    /** None by which a document could ask for it. */
    QByteArray name() const override { return QByteArrayLiteral("/"); }
    int mibEnum() const override { return 0; }

protected:
    QString convertToUnicode(char const* bytes, int size, ConverterState* /*state*/) const override
    {
        QString text;
        if (decode(bytes, size, text))
            return text;
        text.clear();
        QString character;
        for (int i = 0; i < size;) {
            int const length = lengthFrom(bytes[i]);
            if (i + length <= size && decode(bytes + i, length, character)) {
                text += character;
                i += length;
            } else {
                text += QChar(static_cast<ushort>(
                    strayByte + static_cast<ushort>(static_cast<unsigned char>(bytes[i]))));
                ++i;
            }
        }
        return text;
    }

    QByteArray convertFromUnicode(
        QChar const* text, int size, ConverterState* /*state*/) const override
    {
        QByteArray bytes;
        int done = 0;
        auto const appendUpTo = [&](int end) {
            bytes += QString::fromRawData(text + done, end - done).toUtf8();
        };
        for (int i = 0; i < size; ++i) {
            bool const isAlone = i == 0 || !text[i - 1].isHighSurrogate();
            if (!isAlone || !isStrayByte(text[i]))
                continue;
            appendUpTo(i);
            bytes += static_cast<char>(text[i].unicode() - strayByte);
            done = i + 1;
        }
        appendUpTo(size);
        return bytes;
    }
};

} // namespace

void keepFileNamesExact()
{
    // It belongs to Qt, which deletes all codecs at the end.
    QTextCodec::setCodecForLocale(new FileNameCodec);
}
