// SPDX-License-Identifier: MIT
#ifndef WRITETEXT_H
#define WRITETEXT_H

#include "document/markup.h"

#include <QStringList>
#include <QXmlStreamWriter>

/** Writes a text between tags so that it is read back as it is. */
inline void writeText(QXmlStreamWriter& writer, QString const& text)
{
    // A carriage return in a text was a character reference; as such it would become a line feed
    // when the copy is read.
    QStringList const parts = text.split(QLatin1Char('\r'));
    for (int i = 0; i < parts.size(); ++i) {
        if (i > 0)
            writer.writeEntityReference(QStringLiteral("#13"));
        writer.writeCharacters(parts.at(i));
    }
}

/** Writes a node that holds no other, so that it is read back as it is; nothing for an element. */
inline void writeLeaf(QXmlStreamWriter& writer, MarkupNode const& node)
{
    switch (node.kind) {
    case MarkupNode::Kind::Element:
        break;
    case MarkupNode::Kind::Text:
        writeText(writer, node.text);
        break;
    case MarkupNode::Kind::CharacterData:
        writer.writeCDATA(node.text);
        break;
    case MarkupNode::Kind::Reference:
        writer.writeEntityReference(node.name);
        break;
    case MarkupNode::Kind::Comment:
        writer.writeComment(node.text);
        break;
    case MarkupNode::Kind::Instruction:
        writer.writeProcessingInstruction(node.name, node.text);
        break;
    case MarkupNode::Kind::DocumentType:
        writer.writeDTD(node.text.trimmed());
        break;
    }
}

#endif // WRITETEXT_H
