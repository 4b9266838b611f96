// SPDX-License-Identifier: MIT
#include "document/followingappearance.h"

#include <QXmlStreamReader>

void FollowingAppearance::expect()
{
    m_isExpected = true;
    m_reader.reset();
}

std::optional<Appearance> FollowingAppearance::visit(QXmlStreamReader const& token)
{
    if (m_isExpected && !token.isWhitespace() && !token.isComment()) {
        m_isExpected = false;
        if (token.isStartElement() && token.qualifiedName() == appearanceElement())
            m_reader.emplace();
    }
    if (!m_reader)
        return std::nullopt;
    if (token.isStartElement())
        m_reader->startElement(token.qualifiedName(), token.attributes());
    else if (token.isEndElement())
        m_reader->endElement();
    if (!m_reader->isComplete())
        return std::nullopt;
    Appearance const read = m_reader->appearance();
    m_reader.reset();
    return read;
}
