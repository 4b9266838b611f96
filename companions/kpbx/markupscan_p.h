// SPDX-License-Identifier: MIT
#ifndef MARKUPSCAN_P_H
#define MARKUPSCAN_P_H

#include "declaredentities_p.h"

#include <QByteArray>
#include <QString>

namespace BoundedXml {

/** What is said of a document with more than maximumReferences. */
QString tooManyReferences();

/** What is said of an entity with more than maximumNestedReferences. */
QString tooManyNestedReferences();

} // namespace BoundedXml

/**
 * Looks ahead of a parser of XML, and says where a token is for which Qt would take more than
 * linear time.
 *
 * Qt compares each attribute of an element with all others, and each one that the document type
 * declares as well; it expands entities within entities without an end to their number. All that
 * happens before anyone hears of the token. So the text goes through here first. It need not be
 * well-formed: what is wrong ends the parser, and what comes behind does not matter.
 */
class MarkupScan
{
public:
    /**
     * Goes on with more of the text.
     *
     * @param text in UTF-8; a character may be in two parts
     * @return how many bytes of it may be parsed: all, unless there is a fault
     */
    qint64 take(char const* text, qint64 size);

    /** What is too much; empty if nothing is. */
    QString const& fault() const { return m_fault; }

    /** Whether an entity was declared so far. */
    bool declaresEntities() const { return m_declaresEntities; }

private:
    enum class State {
        Content,
        Markup, ///< behind a "<", until it is clear of what
        Tag,
        TagValue,
        Instruction,
        Comment,
        CharacterData,
        Doctype, ///< outside its brackets
        DoctypeLiteral,
        Subset, ///< between its brackets
        ParameterReference,
        Declaration,
        DeclarationLiteral
    };
    enum class Kind { Entity, AttributeList, Other };

    void step(char byte);
    void stepInMarkup(char byte);
    void stepInTag(char byte);
    void stepInDoctype(char byte);
    void stepInSubset(char byte);
    void stepInDeclaration(char byte);
    void stepInLiteral(char byte);
    void endAt(char byte, char const* last, State next);

    void beginDeclaration();
    void endDeclaration();
    void endWord();
    void countDeclaredAttribute();
    void endReferenceInLiteral();
    void expandParameter();
    State around() const { return m_isInSubset ? State::Subset : State::Content; }

    State m_state = State::Content;
    bool m_isInSubset = false;
    char m_quote = '"';
    QByteArray m_word; ///< what was gathered of a name or a keyword
    char m_last[2] = {}; ///< the two bytes before, within what ends with three
    int m_attributes = 0; ///< of the tag
    int m_declaredAttributes = 0;
    int m_parameterReferences = 0;
    int m_references = 0; ///< in default attributes

    Kind m_kind = Kind::Other; ///< of the declaration
    bool m_isParameter = false;
    bool m_isExternal = false;
    bool m_isBehindHash = false;
    bool m_isInReference = false;
    QByteArray m_name;
    QByteArray m_value; ///< of the entity, references to characters resolved
    QByteArray m_reference;

    bool m_declaresEntities = false;
    DeclaredEntities m_entities;
    QString m_fault;
};

#endif // MARKUPSCAN_P_H
