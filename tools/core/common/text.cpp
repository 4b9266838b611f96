#include "common/text.h"

QString printable(QString const& text)
{
    QString result = text;
    for (QChar& character : result) {
        if (character.category() == QChar::Other_Control)
            character = QChar::ReplacementCharacter;
    }
    return result;
}

QString elided(QString const& text, int longest)
{
    QChar const ellipsis(0x2026);
    return text.size() <= longest ? text : text.left(longest - 1) + ellipsis;
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
