#ifndef WRITETEXT_H
#define WRITETEXT_H

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

#endif // WRITETEXT_H
