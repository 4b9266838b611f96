// SPDX-License-Identifier: MIT
#ifndef TAGSCANNER_H
#define TAGSCANNER_H

#include <QByteArray>

/** A part of a text, in bytes from its start. */
struct TextRange
{
    int begin = 0; ///< of its first byte
    int end = 0; ///< behind its last byte

    /** Whether it holds nothing. */
    bool isEmpty() const { return begin >= end; }
    /** Its bytes. */
    QByteArray in(QByteArray const& text) const { return text.mid(begin, end - begin); }
};

/** A tag of an element. */
struct Tag
{
    /** What it does. */
    enum class Kind {
        Start, ///< its element goes on to an end tag
        End,
        Empty ///< its element is nothing but this tag
    };

    Kind kind = Kind::Start; ///< what it does
    TextRange range; ///< from its "<" to behind its ">"
    TextRange name; ///< with its prefix
};

/**
 * Finds the tags of an XML text in UTF-8. It checks nothing: of what is not well-formed it finds
 * anything, but it reads nothing outside the text, and comes to an end.
 */
class TagScanner
{
public:
    /** @param text it must outlive this; read within `range` only */
    TagScanner(QByteArray const& text, TextRange range);

    /** Goes on to the next tag; false when there is none. */
    bool next(Tag& tag);
    /** Whether there has been a document type. */
    bool hasDocumentType() const { return m_hasDocumentType; }

private:
    bool skipTo(char const* closing, int from);
    bool skipDocumentType();
    bool readTag(Tag& tag);
    bool isAt(char const* text) const;

    QByteArray const& m_text;
    int m_at;
    int const m_end;
    bool m_hasDocumentType = false;
};

/** Whether it is what XML counts as white space. */
inline bool isXmlSpace(char character)
{
    return character == ' ' || character == '\t' || character == '\n' || character == '\r';
}

/** Where the white space before a place begins. */
int blankBefore(QByteArray const& text, int place);

/** Where the white space behind a place ends. */
int blankBehind(QByteArray const& text, int place);

/** The end of the line before a place and the white space behind it; empty if anything else is. */
QByteArray lineStartBefore(QByteArray const& text, int place);

#endif // TAGSCANNER_H
