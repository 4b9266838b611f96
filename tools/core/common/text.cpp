// SPDX-License-Identifier: MIT
#include "common/text.h"

namespace {

bool leavesTheLine(QChar character)
{
    QChar::Category const category = character.category();
    return category == QChar::Other_Control || category == QChar::Separator_Line
        || category == QChar::Separator_Paragraph;
}

} // namespace

QString wellFormed(QString const& text)
{
    QString result = text;
    for (int i = 0; i < result.size(); ++i) {
        bool const isPair = result.at(i).isHighSurrogate() && i + 1 < result.size()
            && result.at(i + 1).isLowSurrogate();
        if (isPair)
            ++i;
        else if (result.at(i).isSurrogate())
            result[i] = QChar::ReplacementCharacter;
    }
    return result;
}

QString printable(QString const& text)
{
    QString result = wellFormed(text);
    for (QChar& character : result) {
        if (leavesTheLine(character))
            character = QChar::ReplacementCharacter;
    }
    return result;
}

QString elided(QString const& text, int longest)
{
    if (text.size() <= longest)
        return text;
    QString beginning = text.left(longest - 1);
    // Half a character would be none.
    if (!beginning.isEmpty() && beginning.at(beginning.size() - 1).isHighSurrogate())
        beginning.chop(1);
    QChar const ellipsis(0x2026);
    return beginning + ellipsis;
}

QString numberText(double number)
{
    return QString::number(number, 'g', 6);
}

QString sizeText(QSizeF const& size)
{
    return QStringLiteral("%1 x %2").arg(numberText(size.width()), numberText(size.height()));
}

QString countText(qint64 count, QString const& noun)
{
    QString const number = QString::number(count);
    return count == 1 ? QStringLiteral("%1 %2").arg(number, noun)
                      : QStringLiteral("%1 %2s").arg(number, noun);
}
