// SPDX-License-Identifier: MIT
#ifndef XMLTEXT_P_H
#define XMLTEXT_P_H

#include <QString>

/** What a text of XML can hold. */
namespace XmlText {

/**
 * Whether XML 1.0 has no place for the control character of this code. Documents of the
 * application hold such characters all the same, as they are; NUL is in none.
 */
constexpr bool isRefusedControl(uint code) noexcept
{
    return code >= 0x01 && code < 0x20 && code != '\t' && code != '\n' && code != '\r';
}

/** The control characters of documents that are held to XML 1.0, and of the application's own. */
enum class Controls { AreReplaced, AreKept };

/** The text with U+FFFD in the place of what cannot be read back. */
inline QString readable(QString text, Controls controls)
{
    auto const isHeld = [controls](QChar character) {
        ushort const code = character.unicode();
        if (isRefusedControl(code))
            return controls == Controls::AreKept;
        return code != 0 && !character.isSurrogate() && code < 0xFFFE;
    };
    for (int i = 0; i < text.size(); ++i) {
        bool const isPair =
            text.at(i).isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate();
        if (isPair)
            ++i;
        else if (!isHeld(text.at(i)))
            text[i] = QChar::ReplacementCharacter;
    }
    return text;
}

} // namespace XmlText

#endif // XMLTEXT_P_H
