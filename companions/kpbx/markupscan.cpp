// SPDX-License-Identifier: MIT
#include "markupscan_p.h"

#include "boundedxml_p.h"

#include <QChar>

#include <cstring>

namespace {

/** Qt expands no longer value of an entity, and reads no longer name. */
constexpr int longestValue = 8192;
/** No "<!" with a word behind it is longer. */
constexpr int longestKeyword = 16;

bool isSpace(char byte)
{
    return byte == ' ' || byte == '\t' || byte == '\n' || byte == '\r';
}

bool isQuote(char byte)
{
    return byte == '"' || byte == '\'';
}

template <class Bytes> void appendWithin(QByteArray& text, Bytes const& more)
{
    if (text.size() <= longestValue)
        text += more;
}

/** The character of a reference without its "&" and ";", in UTF-8; empty if it is none. */
QByteArray characterOf(QByteArray const& reference)
{
    bool const isHexadecimal = reference.startsWith("#x");
    bool isNumber = false;
    uint const code =
        reference.mid(isHexadecimal ? 2 : 1).toUInt(&isNumber, isHexadecimal ? 16 : 10);
    return isNumber && code <= QChar::LastValidCodePoint ? QString::fromUcs4(&code, 1).toUtf8()
                                                         : QByteArray();
}

} // namespace

QString BoundedXml::tooManyReferences()
{
    return QStringLiteral("more than %1 references in a document that declares entities")
        .arg(maximumReferences);
}

QString BoundedXml::tooManyNestedReferences()
{
    return QStringLiteral("more than %1 references within an entity").arg(maximumNestedReferences);
}

qint64 MarkupScan::take(char const* text, qint64 size)
{
    char const* const end = text + size;
    for (char const* at = text; at != end; ++at) {
        // Most of a document is texts and values.
        if (m_state == State::Content || m_state == State::TagValue) {
            char const wanted = m_state == State::Content ? '<' : m_quote;
            at = static_cast<char const*>(
                std::memchr(at, wanted, static_cast<std::size_t>(end - at)));
            if (!at)
                return size;
        }
        step(*at);
        if (!m_fault.isEmpty())
            return at - text;
    }
    return size;
}

void MarkupScan::step(char byte)
{
    switch (m_state) {
    case State::Content: // at a "<"
        m_word.clear();
        m_state = State::Markup;
        break;
    case State::Markup:
        stepInMarkup(byte);
        break;
    case State::Tag:
        stepInTag(byte);
        break;
    case State::TagValue: // at its end
        m_state = State::Tag;
        break;
    case State::Instruction:
        endAt(byte, "?", around());
        break;
    case State::Comment:
        endAt(byte, "--", around());
        break;
    case State::CharacterData:
        endAt(byte, "]]", around());
        break;
    case State::Doctype:
    case State::DoctypeLiteral:
        stepInDoctype(byte);
        break;
    case State::Subset:
    case State::ParameterReference:
        stepInSubset(byte);
        break;
    case State::Declaration:
        stepInDeclaration(byte);
        break;
    case State::DeclarationLiteral:
        stepInLiteral(byte);
        break;
    }
}

/** Goes on until there is a ">" behind what `last` says. */
void MarkupScan::endAt(char byte, char const* last, State next)
{
    bool const isOfTwo = last[1] != '\0';
    bool const isEnd = byte == '>' && m_last[1] == last[0] && (!isOfTwo || m_last[0] == last[1]);
    m_last[0] = isEnd ? '\0' : m_last[1];
    m_last[1] = isEnd ? '\0' : byte;
    if (isEnd)
        m_state = next;
}

void MarkupScan::stepInMarkup(char byte)
{
    m_word += byte;
    if (byte == '?' && m_word.size() == 1) {
        m_state = State::Instruction;
    } else if (m_word == "!--") {
        m_state = State::Comment;
    } else if (m_word == "![CDATA[") {
        m_state = State::CharacterData;
    } else if (m_word == "!DOCTYPE") {
        m_state = State::Doctype;
    } else if (m_word.front() != '!' || m_word.size() > longestKeyword) {
        m_attributes = 0;
        m_state = State::Tag;
        stepInTag(byte);
    } else if (m_isInSubset && (isSpace(byte) || byte == '>')) {
        beginDeclaration();
        stepInDeclaration(byte);
    }
}

void MarkupScan::stepInTag(char byte)
{
    if (isQuote(byte)) {
        m_quote = byte;
        m_state = State::TagValue;
    } else if (byte == '>') {
        m_state = around();
    } else if (byte == '=' && ++m_attributes > BoundedXml::maximumAttributes) {
        m_fault = QStringLiteral("more than %1 attributes of one element")
                      .arg(BoundedXml::maximumAttributes);
    }
}

void MarkupScan::stepInDoctype(char byte)
{
    if (m_state == State::DoctypeLiteral) {
        if (byte == m_quote)
            m_state = State::Doctype;
    } else if (isQuote(byte)) {
        m_quote = byte;
        m_state = State::DoctypeLiteral;
    } else if (byte == '[') {
        m_isInSubset = true;
        m_state = State::Subset;
    } else if (byte == '>') {
        m_state = State::Content;
    }
}

void MarkupScan::stepInSubset(char byte)
{
    if (m_state == State::ParameterReference) {
        if (byte == ';')
            expandParameter();
        else
            appendWithin(m_word, byte);
    } else if (byte == '<') {
        m_word.clear();
        m_state = State::Markup;
    } else if (byte == '%') {
        m_word.clear();
        m_state = State::ParameterReference;
    } else if (byte == ']') {
        m_isInSubset = false;
        m_state = State::Doctype;
        if (m_entities.areAnyExcessive())
            m_fault = BoundedXml::tooManyNestedReferences();
    }
}

/** What stands for it is declarations, as if they were written here. */
void MarkupScan::expandParameter()
{
    m_state = State::Subset;
    if (++m_parameterReferences > BoundedXml::maximumParameterReferences) {
        m_fault = QStringLiteral("more than %1 references to parameter entities")
                      .arg(BoundedXml::maximumParameterReferences);
        return;
    }
    QByteArray const value = m_entities.parameter(m_word);
    if (value.size() <= longestValue)
        take(value.constData(), value.size());
    m_state = State::Subset;
}

void MarkupScan::beginDeclaration()
{
    QByteArray const keyword = m_word.left(m_word.size() - 1);
    m_kind = keyword == "!ENTITY" ? Kind::Entity
        : keyword == "!ATTLIST"   ? Kind::AttributeList
                                  : Kind::Other;
    m_declaresEntities = m_declaresEntities || m_kind == Kind::Entity;
    m_isParameter = false;
    m_isExternal = false;
    m_isBehindHash = false;
    m_name.clear();
    m_value = QByteArrayLiteral("");
    m_word.clear();
    m_state = State::Declaration;
}

void MarkupScan::stepInDeclaration(char byte)
{
    // "#FIXED" has the default behind it, "#REQUIRED" and "#IMPLIED" have none.
    if (m_isBehindHash && byte != 'F')
        countDeclaredAttribute();
    m_isBehindHash = m_kind == Kind::AttributeList && byte == '#';
    if (isQuote(byte)) {
        endWord();
        if (m_kind == Kind::AttributeList)
            countDeclaredAttribute();
        m_quote = byte;
        m_isInReference = false;
        m_state = State::DeclarationLiteral;
    } else if (byte == '>') {
        endDeclaration();
        m_state = State::Subset;
    } else if (isSpace(byte)) {
        endWord();
    } else if (m_kind == Kind::Entity) {
        appendWithin(m_word, byte);
    }
}

void MarkupScan::countDeclaredAttribute()
{
    if (++m_declaredAttributes > BoundedXml::maximumDeclaredAttributes) {
        m_fault = QStringLiteral("more than %1 attributes in the document type")
                      .arg(BoundedXml::maximumDeclaredAttributes);
    }
}

/** Of the declaration of an entity: a sign, its name, where it is kept. */
void MarkupScan::endWord()
{
    if (m_word.isEmpty())
        return;
    if (m_word == "%")
        m_isParameter = true;
    else if (m_name.isEmpty())
        m_name = m_word;
    else
        m_isExternal = true;
    m_word.clear();
}

void MarkupScan::endDeclaration()
{
    if (m_kind != Kind::Entity)
        return;
    if (m_isParameter)
        m_entities.declareParameter(m_name, m_isExternal ? QByteArray() : m_value);
    else if (!m_isExternal)
        m_entities.declare(m_name, m_value);
    else
        m_entities.declare(m_name, QByteArray());
}

void MarkupScan::stepInLiteral(char byte)
{
    if (byte == m_quote) {
        m_state = State::Declaration;
    } else if (m_kind == Kind::Other) {
        return;
    } else if (byte == '&') {
        m_reference.clear();
        m_isInReference = true;
    } else if (m_isInReference && byte == ';') {
        m_isInReference = false;
        endReferenceInLiteral();
    } else if (m_isInReference) {
        // Zeros at the start of a number say nothing, however many there are.
        if (byte != '0' || (m_reference != "#" && m_reference != "#x"))
            appendWithin(m_reference, byte);
    } else if (m_kind == Kind::Entity) {
        appendWithin(m_value, byte);
    }
}

void MarkupScan::endReferenceInLiteral()
{
    bool const isCharacter = m_reference.startsWith('#');
    if (m_kind == Kind::Entity) {
        appendWithin(m_value, isCharacter ? characterOf(m_reference) : '&' + m_reference + ';');
    } else if (!isCharacter) {
        // Qt expands it when the attribute is declared.
        if (++m_references > BoundedXml::maximumReferences)
            m_fault = BoundedXml::tooManyReferences();
        else if (m_entities.isExcessive(m_reference))
            m_fault = BoundedXml::tooManyNestedReferences();
    }
}
