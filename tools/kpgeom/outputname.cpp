// SPDX-License-Identifier: MIT
#include "outputname.h"

#include "common/text.h"

#include <QFileInfo>
#include <QStringList>
#include <QVector>

namespace {

/** A place in a pattern that is replaced. */
struct Placeholder
{
    int start;
    int end; ///< behind its last character
    QString name; ///< that of a brace is empty
};

bool isLetter(QChar character)
{
    return character >= QLatin1Char('a') && character <= QLatin1Char('z');
}

/** That which begins with a brace; nothing if it is none. */
std::optional<Placeholder> placeholderAt(QString const& pattern, int start)
{
    auto const at = [&pattern](
                        int index) { return index < pattern.size() ? pattern.at(index) : QChar(); };
    if (at(start + 1) == QLatin1Char('{'))
        return Placeholder {start, start + 2, QString()};
    int end = start + 1;
    while (isLetter(at(end)))
        ++end;
    if (end == start + 1 || at(end) != QLatin1Char('}'))
        return std::nullopt;
    return Placeholder {start, end + 1, pattern.mid(start + 1, end - start - 1)};
}

/** All of them. A regular expression would find none where a name holds bytes that are no text. */
QVector<Placeholder> placeholdersIn(QString const& pattern)
{
    QVector<Placeholder> result;
    int start = 0;
    while ((start = pattern.indexOf(QLatin1Char('{'), start)) >= 0) {
        auto const found = placeholderAt(pattern, start);
        if (found)
            result << *found;
        start = found ? found->end : start + 1;
    }
    return result;
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
    for (Placeholder const& placeholder : placeholdersIn(pattern))
        names << placeholder.name;
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
    for (Placeholder const& placeholder : placeholdersIn(pattern)) {
        result += pattern.mid(end, placeholder.start - end)
            + textOf(placeholder.name, parts).value_or(QString());
        end = placeholder.end;
    }
    return result + pattern.mid(end);
}
