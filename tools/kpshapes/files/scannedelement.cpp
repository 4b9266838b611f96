// SPDX-License-Identifier: MIT
#include "files/scannedelement.h"

#include "xmlstreamwriter.h"

#include <QXmlStreamReader>

#include <algorithm>

namespace {

/** The value that is written so between quotes. */
QString valueOf(QByteArray const& written)
{
    bool const isPlain = std::none_of(written.cbegin(), written.cend(), [](char character) {
        return character == '&' || (isXmlSpace(character) && character != ' ');
    });
    if (isPlain)
        return QString::fromUtf8(written);
    QByteArray quoted = written;
    QXmlStreamReader reader("<a b=\"" + quoted.replace('"', "&quot;") + "\"/>");
    reader.readNextStartElement();
    return reader.attributes().value(QStringLiteral("b")).toString();
}

void scanAttributes(ScannedElement& element, QByteArray const& text, int place)
{
    for (int begin = place;;) {
        int at = blankBehind(text, begin);
        int const name = at;
        while (at < element.startTag.end && text.at(at) != '=' && !isXmlSpace(text.at(at))
            && text.at(at) != '>' && text.at(at) != '/')
            ++at;
        TextRange const nameRange {name, at};
        at = blankBehind(text, at);
        if (nameRange.isEmpty() || at >= element.startTag.end || text.at(at) != '=')
            return;
        at = blankBehind(text, at + 1);
        int const closing = at < element.startTag.end ? text.indexOf(text.at(at), at + 1) : -1;
        if (closing < 0 || closing >= element.startTag.end)
            return;
        TextRange const value {at + 1, closing};
        element.attributes.append(
            {QString::fromUtf8(nameRange.in(text)), valueOf(value.in(text)), false});
        element.valueRanges.push_back(value);
        element.attributeRanges.push_back({begin, closing + 1});
        begin = closing + 1;
    }
}

ScannedElement elementAt(QByteArray const& text, Tag const& tag)
{
    ScannedElement element;
    element.name = QString::fromUtf8(tag.name.in(text));
    element.startTag = tag.range;
    element.endTag = {tag.range.end, tag.range.end};
    scanAttributes(element, text, tag.name.end);
    return element;
}

QByteArray escaped(QString const& value)
{
    QByteArray text;
    XmlStreamWriter writer(&text);
    writer.writeEmptyElement(QStringLiteral("a"));
    writer.writeAttribute(QStringLiteral("b"), value);
    writer.writeEndDocument();
    // Between the quotes; those of the text itself may be single ones.
    int const begin = text.indexOf('"') + 1;
    QByteArray bytes = text.mid(begin, text.lastIndexOf('"') - begin);
    return bytes.replace('\'', "&apos;");
}

int indexOf(ScannedElement const& element, QString const& name)
{
    auto const& all = element.attributes;
    auto const found = std::find_if(all.cbegin(), all.cend(),
        [&name](MarkupAttribute const& attribute) { return attribute.name == name; });
    return found == all.cend() ? -1 : static_cast<int>(found - all.cbegin());
}

/** The "/>" of an element that is nothing but one tag, with the white space before it. */
TextRange closingOf(ScannedElement const& element, QByteArray const& text)
{
    return {blankBefore(text, element.startTag.end - 2), element.startTag.end};
}

bool hasEndTag(ScannedElement const& element)
{
    return !element.endTag.isEmpty();
}

/** Where further attributes stand. */
int endOfAttributes(ScannedElement const& element, QByteArray const& text)
{
    if (!element.attributeRanges.empty())
        return element.attributeRanges.back().end;
    return hasEndTag(element) ? blankBefore(text, element.startTag.end - 1)
                              : closingOf(element, text).begin;
}

} // namespace

std::vector<ScannedElement> scannedElements(QByteArray const& text, TextRange range)
{
    std::vector<ScannedElement> all;
    // An element that is open is the last among its siblings, so its address stays.
    std::vector<ScannedElement*> open;
    TagScanner scanner(text, range);
    for (Tag tag; scanner.next(tag);) {
        if (tag.kind == Tag::Kind::End) {
            if (open.empty())
                break;
            open.back()->endTag = tag.range;
            open.pop_back();
            continue;
        }
        auto& siblings = open.empty() ? all : open.back()->children;
        siblings.push_back(elementAt(text, tag));
        if (tag.kind == Tag::Kind::Start)
            open.push_back(&siblings.back());
    }
    return all;
}

void TextEdits::remove(TextRange range)
{
    replace({blankBefore(m_text, range.begin), range.end}, QByteArray());
}

void TextEdits::setAttribute(
    ScannedElement const& element, QString const& name, QString const& value)
{
    int const index = indexOf(element, name);
    if (index >= 0)
        replace(element.valueRanges[static_cast<std::size_t>(index)], escaped(value));
    else
        insert(
            endOfAttributes(element, m_text), ' ' + name.toUtf8() + "=\"" + escaped(value) + '"');
}

void TextEdits::removeAttribute(ScannedElement const& element, QString const& name)
{
    int const index = indexOf(element, name);
    if (index >= 0)
        replace(element.attributeRanges[static_cast<std::size_t>(index)], QByteArray());
}

void TextEdits::append(ScannedElement const& element, QByteArray const& bytes)
{
    if (hasEndTag(element)) {
        insert(blankBefore(m_text, element.endTag.begin), bytes);
        return;
    }
    int const begin = element.startTag.begin;
    auto const known = std::find_if(m_opened.begin(), m_opened.end(),
        [begin](Opened const& opened) { return opened.begin == begin; });
    if (known != m_opened.end()) {
        known->content += bytes;
        return;
    }
    QByteArray const endTag = "</" + element.name.toUtf8() + '>';
    bool const isOnLines = bytes.startsWith('\n') || bytes.startsWith('\r');
    m_opened.push_back({begin, closingOf(element, m_text), bytes,
        isOnLines ? lineStartBefore(m_text, begin) + endTag : endTag});
}

QByteArray TextEdits::applied(TextRange range)
{
    for (Opened const& opened : m_opened)
        replace(opened.closing, '>' + opened.content + opened.endTag);
    m_opened.clear();
    std::stable_sort(m_edits.begin(), m_edits.end(),
        [](Edit const& left, Edit const& right) { return left.range.begin < right.range.begin; });
    QByteArray result;
    int at = range.begin;
    for (Edit const& edit : m_edits) {
        if (edit.range.begin > at)
            appendPiece(result, TextRange {at, edit.range.begin}.in(m_text));
        appendPiece(result, edit.bytes);
        at = std::max(at, edit.range.end);
    }
    appendPiece(result, TextRange {at, std::max(at, range.end)}.in(m_text));
    return result;
}

void appendPiece(QByteArray& text, QByteArray const& piece)
{
    bool const isClosing = (text.endsWith("]]") && piece.startsWith('>'))
        || (text.endsWith(']') && piece.startsWith("]>"));
    if (isClosing)
        text += "<!---->";
    text += piece;
}

QByteArray writtenPiece(
    std::function<void(XmlStreamWriter&)> const& write, QByteArray const& lineStart)
{
    QByteArray text;
    XmlStreamWriter writer(&text);
    writer.setAutoFormatting(!lineStart.isEmpty());
    writer.setAutoFormattingIndent(1);
    write(writer);
    return text.trimmed().replace("\n", lineStart);
}
