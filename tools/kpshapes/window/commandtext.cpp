// SPDX-License-Identifier: MIT
#include "window/commandtext.h"

#include "colorutil.h"
#include "common/text.h"
#include "unitutil.h"

#include <QRegularExpression>

namespace {

QString nameOf(QString const& file)
{
    return file.isEmpty() ? QStringLiteral("shapes.xml") : file;
}

QString boxText(QSizeF const& box)
{
    return numberText(box.width()) + QLatin1Char('x') + numberText(box.height());
}

bool isSameShadow(Appearance const& before, Appearance const& after)
{
    Appearance one;
    Appearance other;
    one.shadow = before.shadow;
    other.shadow = after.shadow;
    return one == other;
}

bool isSameColour(std::optional<ShapeColour> const& before, std::optional<ShapeColour> const& after)
{
    Appearance one;
    Appearance other;
    one.fill = before;
    other.fill = after;
    return one == other;
}

/** The colour from its reference on, step by step. */
QString ofColour(ShapeColour const& colour)
{
    KpColor shown = colour.colour;
    QStringList words {QStringLiteral("colour"), ColorUtil::RGBToString(shown.refColor())};
    int const tint = shown.tint();
    if (tint != 0) {
        words << QStringLiteral("%1=%2").arg(
            tint > 0 ? QStringLiteral("tint") : QStringLiteral("shade"),
            numberText(qAbs(tint) / 100.0));
    }
    for (ColourTransform const& transform : colour.transforms)
        words << transform.name + QLatin1Char('=') + numberText(transform.value);
    return CommandText::of(words);
}

/** The shadow under a picture of the document. */
QString ofShadow(ShapeShadow const& shadow, QString const& file)
{
    QString const offset = QStringLiteral("%1,%2,%3")
                               .arg(qRound(shadow.offset.x()))
                               .arg(qRound(shadow.offset.y()))
                               .arg(ColorUtil::RGBToString4(shadow.colour));
    return CommandText::of({QStringLiteral("render"), nameOf(file), QStringLiteral("--background"),
               QStringLiteral("none"), QStringLiteral("-o"), QStringLiteral("shape.png")})
        + QStringLiteral(" && ")
        + CommandText::of({QStringLiteral("blur"), QStringLiteral("shape.png"),
            QStringLiteral("-r"), QString::number(shadow.radius), QStringLiteral("--flatness"),
            QString::number(shadow.flatness), QStringLiteral("--shadow"), offset,
            QStringLiteral("-o"), QStringLiteral("shadow.png")});
}

} // namespace

namespace CommandText {

QString word(QString const& text)
{
    static QRegularExpression const plain(QStringLiteral("\\A[A-Za-z0-9_@%+=:,./-]+\\z"));
    if (plain.match(text).hasMatch())
        return text;
    QString quoted = text;
    quoted.replace(QLatin1Char('\''), QStringLiteral("'\\''"));
    return QLatin1Char('\'') + quoted + QLatin1Char('\'');
}

QString of(QStringList const& words)
{
    QString line = QStringLiteral("kpgeom");
    for (QString const& text : words)
        line += QLatin1Char(' ') + word(text);
    return line;
}

QString ofStep(ShapeItem const& before, ShapeItem const& after, QString const& file)
{
    if (boxText(before.box) != boxText(after.box)) {
        return of({QStringLiteral("resize"), QStringLiteral("--from"), boxText(before.box),
            QStringLiteral("--to"), boxText(after.box), nameOf(file), QStringLiteral("-o"),
            nameOf(file)});
    }
    Appearance const& now = after.appearance;
    if (now.fill && !isSameColour(before.appearance.fill, now.fill))
        return ofColour(*now.fill);
    if (now.line && !isSameColour(before.appearance.line, now.line))
        return ofColour(*now.line);
    if (now.shadow && !isSameShadow(before.appearance, now))
        return ofShadow(*now.shadow, file);
    return {};
}

QString ofOpening(QString const& file)
{
    return of({QStringLiteral("info"), nameOf(file)});
}

QString ofCheck(QString const& file)
{
    return of({QStringLiteral("check"), nameOf(file)});
}

QString ofExport(ExportFormat format, QString const& file, QString const& output)
{
    bool const isPath = format == ExportFormat::PathData;
    return of({isPath ? QStringLiteral("svg") : QStringLiteral("render"), nameOf(file),
        QStringLiteral("-o"), output});
}

QString ofImport(QString const& file)
{
    return of({QStringLiteral("convert"), file, QStringLiteral("-o"), nameOf({})});
}

QString ofGlyphs(QString const& text, QString const& fontFile)
{
    return of({QStringLiteral("convert"), QStringLiteral("--font"), fontFile,
        QStringLiteral("--text"), text, QStringLiteral("-o"), nameOf({})});
}

QString ofPresets(QString const& file)
{
    return of({QStringLiteral("convert"), QStringLiteral("--presets"), file, QStringLiteral("-o"),
        QStringLiteral("shapes")});
}

QString ofFit(QStringList const& drawings)
{
    return of(QStringList {QStringLiteral("fit")} + drawings
        + QStringList {QStringLiteral("-o"), nameOf({})});
}

QString ofUnit(unsigned int unit)
{
    return of({QStringLiteral("units"), QStringLiteral("1"), UnitUtil::unitStr(unit)});
}

QString ofPages()
{
    return of({QStringLiteral("pages")});
}

} // namespace CommandText
