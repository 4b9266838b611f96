// SPDX-License-Identifier: MIT
#ifndef MARKUP_H
#define MARKUP_H

#include <QByteArray>
#include <QString>
#include <QVector>

#include <vector>

class QXmlStreamReader;

namespace BoundedXml {
class Reader;
}

/** An attribute of an element. */
struct MarkupAttribute
{
    QString name; ///< with its prefix
    QString value; ///< with references resolved
    bool isDefault; ///< it stands in the document type, not at the element
};

/**
 * A part of an XML text, with all within. Unlike a node of a DOM it keeps white space, character
 * data, references and the document type as the text has them.
 */
struct MarkupNode
{
    /** What it is. */
    enum class Kind {
        Element,
        Text, ///< white space included
        CharacterData, ///< a text in a CDATA section
        Reference, ///< to an entity that is not declared in the text
        Comment,
        Instruction, ///< a processing instruction
        DocumentType
    };

    Kind kind; ///< what it is
    QString name; ///< of an element, with its prefix; of a reference; the target of an instruction
    QString text; ///< of all but elements and references
    QVector<MarkupAttribute> attributes; ///< of an element, in the order of the text
    std::vector<MarkupNode> children; ///< of an element, in the order of the text
    qint64 line; ///< from 1, of the end of an element's start tag
    qint64 column; ///< likewise, from 1

    /** Its attribute of this name, or null. */
    MarkupAttribute const* attribute(QString const& wanted) const;
};

/** A whole XML text. */
struct Markup
{
    bool isStandalone; ///< it says so in its declaration
    std::vector<MarkupNode> nodes; ///< those outside any element: the root and what is around it
};

/**
 * Takes a text apart. It takes about as much memory as a DOM of the text.
 *
 * @param text well-formed and within BoundedXml::Limits; of any other as much as could be read
 */
Markup markupOf(QByteArray const& text);

/** What stands at the token: an element without its content, a text, a comment, or the like. */
MarkupNode nodeAt(QXmlStreamReader const& reader);

/**
 * Takes the element apart at whose start tag the reader is. It reads on to the end tag or, at a
 * fault, as far as it gets.
 */
MarkupNode markupOf(BoundedXml::Reader& reader);

/** Calls `start` for the element and each one within, in document order, and `end` at their ends. */
template <class Start, class End>
void forEachElement(MarkupNode const& element, Start const& start, End const& end)
{
    start(element);
    for (MarkupNode const& child : element.children) {
        if (child.kind == MarkupNode::Kind::Element)
            forEachElement(child, start, end);
    }
    end();
}

/** Whether it is nothing but what XML counts as white space; true for an empty text. */
bool isBlank(QString const& text);

/** The text without white space at its ends, and with one blank for each run of it within. */
QString collapsed(QString const& text);

#endif // MARKUP_H
