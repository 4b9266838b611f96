// SPDX-License-Identifier: MIT
#ifndef FOLLOWINGAPPEARANCE_H
#define FOLLOWINGAPPEARANCE_H

#include "document/appearancexml.h"

class QXmlStreamReader;

/**
 * Finds the `Appearance` element that directly follows an outline, white space and comments aside,
 * while a document is read token by token: see OutlineReader::setVisitor().
 */
class FollowingAppearance
{
public:
    /** The element of an outline has just ended. */
    void expect();
    /** Takes the next token outside outlines; the appearance of the outline, at its end. */
    std::optional<Appearance> visit(QXmlStreamReader const& token);

private:
    bool m_isExpected = false;
    std::optional<AppearanceReader> m_reader; ///< while it is within the element
};

#endif // FOLLOWINGAPPEARANCE_H
