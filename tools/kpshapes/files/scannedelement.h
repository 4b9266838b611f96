// SPDX-License-Identifier: MIT
#ifndef SCANNEDELEMENT_H
#define SCANNEDELEMENT_H

#include "document/markup.h"
#include "files/tagscanner.h"

#include <functional>
#include <vector>

class XmlStreamWriter;

/** An element of a text, with the places of its parts there. */
struct ScannedElement
{
    QString name; ///< with its prefix
    TextRange startTag; ///< or all of it, if it is nothing but one tag
    TextRange endTag; ///< empty, behind the start tag, if it is nothing but one tag
    QVector<MarkupAttribute> attributes; ///< in the order of the text
    std::vector<TextRange> attributeRanges; ///< of each attribute, with the white space before it
    std::vector<TextRange> valueRanges; ///< of the value of each attribute, without its quotes
    std::vector<ScannedElement> children; ///< the elements within, in the order of the text

    /** From its start tag to behind its end tag. */
    TextRange range() const { return {startTag.begin, endTag.end}; }
    /** What is between its tags. */
    TextRange content() const { return {startTag.end, endTag.begin}; }
};

/** The elements of a part of a well-formed text in UTF-8 that are within no other. */
std::vector<ScannedElement> scannedElements(QByteArray const& text, TextRange range);

/** Changes of a text, made all at once. Everything else stays to the byte. */
class TextEdits
{
public:
    /** @param text it must outlive this, and stay as it is */
    explicit TextEdits(QByteArray const& text)
        : m_text(text)
    {
    }

    /** Puts other bytes in the place of a part. */
    void replace(TextRange range, QByteArray const& bytes) { m_edits.push_back({range, bytes}); }
    /** Puts bytes at a place, behind those that were put there before. */
    void insert(int place, QByteArray const& bytes) { replace({place, place}, bytes); }
    /** Removes a part with the white space before it. */
    void remove(TextRange range);

    /** Gives an attribute a value, at the end of the tag if it was not there. */
    void setAttribute(ScannedElement const& element, QString const& name, QString const& value);
    /** Removes an attribute, if it is there. */
    void removeAttribute(ScannedElement const& element, QString const& name);
    /** Puts bytes in front of an end tag, which is made for an element that has none. */
    void append(ScannedElement const& element, QByteArray const& bytes);

    /** The part of the text with its changes. */
    QByteArray applied(TextRange range);

private:
    struct Edit
    {
        TextRange range;
        QByteArray bytes;
    };

    /** An element that was nothing but one tag. */
    struct Opened
    {
        int begin; ///< of its tag
        TextRange closing; ///< what becomes the end of its start tag
        QByteArray content;
        QByteArray endTag;
    };

    QByteArray const& m_text;
    std::vector<Edit> m_edits;
    std::vector<Opened> m_opened;
};

/** Appends a piece of a document to another one, so that no end of a CDATA section comes about. */
void appendPiece(QByteArray& text, QByteArray const& piece);

/**
 * What is written, each element on a line of its own.
 *
 * @param lineStart begins each line but the first; if empty, all is on one line
 */
QByteArray writtenPiece(
    std::function<void(XmlStreamWriter&)> const& write, QByteArray const& lineStart);

#endif // SCANNEDELEMENT_H
