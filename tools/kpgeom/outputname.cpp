#include "outputname.h"

#include "common/text.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QStringList>

namespace {

QRegularExpression const& placeholder()
{
    static QRegularExpression const pattern(QStringLiteral("\\{(?:\\{|([a-z]+)\\})"));
    return pattern;
}

QString const sizeName = QStringLiteral("size");

/** The text of a placeholder; nothing if it is unknown. */
std::optional<QString> textOf(QString const& name, OutputNameParts const& parts)
{
    if (name.isEmpty())
        return QStringLiteral("{");
    if (name == QLatin1String("name"))
        return parts.path.section(QLatin1Char('/'), -1);
    if (name == QLatin1String("path"))
        return parts.path;
    if (name == sizeName && parts.size) {
        return numberText(parts.size->width()) + QLatin1Char('x')
            + numberText(parts.size->height());
    }
    return std::nullopt;
}

/** The names of the placeholders, that of a brace being empty. */
QStringList placeholders(QString const& pattern)
{
    QStringList names;
    for (auto match = placeholder().globalMatch(pattern); match.hasNext();)
        names << match.next().captured(1);
    return names;
}

bool isFolder(QString const& output)
{
    return output.endsWith(QLatin1Char('/')) || QFileInfo(output).isDir();
}

} // namespace

bool isOutputPattern(QString const& output)
{
    QStringList names = placeholders(output);
    names.removeAll(QString());
    return !names.isEmpty();
}

bool namesManyOutputs(QString const& output)
{
    return isFolder(output) || isOutputPattern(output);
}

QString outputPattern(QString const& output, QString const& suffix, bool hasSizes)
{
    if (!isFolder(output))
        return output;
    QString const slash = output.endsWith(QLatin1Char('/')) ? QString() : QStringLiteral("/");
    return output + slash
        + (hasSizes ? QStringLiteral("{path}-{size}.") : QStringLiteral("{path}.")) + suffix;
}

QString patternFault(QString const& pattern, bool hasSizes)
{
    for (QString const& name : placeholders(pattern)) {
        if (name == sizeName && !hasSizes)
            return QStringLiteral("{size} in -o needs a --size of its own");
        if (!textOf(name, {QString(), QSizeF()}))
            return QStringLiteral("-o takes {name}, {path} and {size}, not '{%1}'").arg(name);
    }
    return QString();
}

QString outputName(QString const& pattern, OutputNameParts const& parts)
{
    QString result;
    int end = 0;
    for (auto matches = placeholder().globalMatch(pattern); matches.hasNext();) {
        auto const match = matches.next();
        result += pattern.mid(end, match.capturedStart() - end)
            + textOf(match.captured(1), parts).value_or(QString());
        end = match.capturedEnd();
    }
    return result + pattern.mid(end);
}
