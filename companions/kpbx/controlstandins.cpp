// SPDX-License-Identifier: MIT
#include "controlstandins_p.h"

#include <algorithm>

namespace {

/** Whether the reader refuses the character of this byte, which is not NUL. */
bool isControl(char byte)
{
    return byte > '\0' && byte < ' ' && byte != '\t' && byte != '\n' && byte != '\r';
}

} // namespace

bool ControlStandIns::areNeededFor(QByteArray const& text)
{
    return std::any_of(text.cbegin(), text.cend(), isControl) && !text.contains('\0');
}

QByteArray ControlStandIns::blanked(QByteArray const& text)
{
    QByteArray result = text;
    std::replace_if(result.begin(), result.end(), isControl, ' ');
    return result;
}

void ControlStandIns::exclude(QStringRef const& text)
{
    for (QChar const character : text) {
        ushort const code = character.unicode();
        if (code >= firstCandidate && code <= lastCandidate)
            m_isExcluded[static_cast<std::size_t>((code - firstCandidate) / blockSize)] = true;
    }
}

bool ControlStandIns::choose()
{
    auto const* const found = std::find(m_isExcluded.cbegin(), m_isExcluded.cend(), false);
    if (found == m_isExcluded.cend())
        return false;
    m_first = static_cast<ushort>(firstCandidate + (found - m_isExcluded.cbegin()) * blockSize);
    return true;
}

QByteArray ControlStandIns::putInto(QByteArray const& text) const
{
    std::array<QByteArray, blockSize> standIns;
    for (int i = 0; i < blockSize; ++i)
        standIns[static_cast<std::size_t>(i)] = QString(QChar(m_first + i)).toUtf8();
    auto const controls = std::count_if(text.cbegin(), text.cend(), isControl);
    QByteArray result;
    result.reserve(text.size() + static_cast<int>(controls) * (standIns.front().size() - 1));
    for (char const byte : text) {
        if (isControl(byte))
            result += standIns[static_cast<uchar>(byte)];
        else
            result += byte;
    }
    return result;
}

bool ControlStandIns::areIn(QStringRef const& text) const
{
    return std::any_of(
        text.cbegin(), text.cend(), [this](QChar character) { return isStandIn(character); });
}

QString ControlStandIns::takenOutOf(QString text) const
{
    for (QChar& character : text) {
        if (isStandIn(character))
            character = QChar(character.unicode() - m_first);
    }
    return text;
}

bool ControlStandIns::isStandIn(QChar character) const
{
    return character.unicode() >= m_first && character.unicode() < m_first + blockSize;
}
