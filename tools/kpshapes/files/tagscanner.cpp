// SPDX-License-Identifier: MIT
#include "files/tagscanner.h"

#include <cstring>

TagScanner::TagScanner(QByteArray const& text, TextRange range)
    : m_text(text)
    , m_at(range.begin)
    , m_end(range.end)
{
}

bool TagScanner::isAt(char const* text) const
{
    auto const size = static_cast<int>(std::strlen(text));
    return m_end - m_at >= size
        && std::memcmp(m_text.constData() + m_at, text, static_cast<std::size_t>(size)) == 0;
}

bool TagScanner::skipTo(char const* closing, int from)
{
    int const found = m_text.indexOf(closing, from);
    bool const isThere = found >= 0 && found < m_end;
    m_at = isThere ? found + static_cast<int>(std::strlen(closing)) : m_end;
    return isThere;
}

bool TagScanner::skipDocumentType()
{
    m_hasDocumentType = true;
    int brackets = 0;
    while (m_at < m_end) {
        char const character = m_text.at(m_at);
        if (isAt("<!--")) {
            skipTo("-->", m_at + 4);
        } else if (isAt("<?")) {
            skipTo("?>", m_at + 2);
        } else if (character == '"' || character == '\'') {
            char const closing[] = {character, '\0'};
            skipTo(closing, m_at + 1);
        } else {
            ++m_at;
            brackets += character == '[' ? 1 : character == ']' ? -1 : 0;
            // Declarations within the brackets end so, too.
            if (character == '>' && brackets <= 0)
                return true;
        }
    }
    return false;
}

bool TagScanner::next(Tag& tag)
{
    while (m_at < m_end) {
        void const* const found =
            std::memchr(m_text.constData() + m_at, '<', static_cast<std::size_t>(m_end - m_at));
        if (!found)
            break;
        m_at = static_cast<int>(static_cast<char const*>(found) - m_text.constData());
        if (isAt("<!--"))
            skipTo("-->", m_at + 4);
        else if (isAt("<![CDATA["))
            skipTo("]]>", m_at + 9);
        else if (isAt("<?"))
            skipTo("?>", m_at + 2);
        else if (isAt("<!"))
            skipDocumentType();
        else
            return readTag(tag);
    }
    m_at = m_end;
    return false;
}

bool TagScanner::readTag(Tag& tag)
{
    tag.range.begin = m_at++;
    bool const isEnd = m_at < m_end && m_text.at(m_at) == '/';
    m_at += isEnd ? 1 : 0;
    tag.name.begin = m_at;
    auto const endsName = [](char character) {
        return isXmlSpace(character) || character == '/' || character == '>';
    };
    while (m_at < m_end && !endsName(m_text.at(m_at)))
        ++m_at;
    tag.name.end = m_at;
    char quote = '\0';
    for (; m_at < m_end; ++m_at) {
        char const character = m_text.at(m_at);
        if (quote != '\0') {
            quote = character == quote ? '\0' : quote;
        } else if (character == '"' || character == '\'') {
            quote = character;
        } else if (character == '>') {
            bool const isEmpty = !isEnd && m_text.at(m_at - 1) == '/';
            tag.kind = isEnd ? Tag::Kind::End : isEmpty ? Tag::Kind::Empty : Tag::Kind::Start;
            tag.range.end = ++m_at;
            return true;
        }
    }
    return false;
}

int blankBefore(QByteArray const& text, int place)
{
    while (place > 0 && isXmlSpace(text.at(place - 1)))
        --place;
    return place;
}

int blankBehind(QByteArray const& text, int place)
{
    while (place < text.size() && isXmlSpace(text.at(place)))
        ++place;
    return place;
}

QByteArray lineStartBefore(QByteArray const& text, int place)
{
    int const from = blankBefore(text, place);
    int line = place;
    while (line > from && text.at(line - 1) != '\n' && text.at(line - 1) != '\r')
        --line;
    if (line == from)
        return QByteArray();
    --line;
    if (line > from && text.at(line) == '\n' && text.at(line - 1) == '\r')
        --line;
    return TextRange {line, place}.in(text);
}
