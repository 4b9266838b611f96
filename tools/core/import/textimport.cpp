// SPDX-License-Identifier: MIT
#include "import/textimport.h"

#include "common/filecontent.h"
#include "common/fonts.h"
#include "import/losses.h"

#include <QFileInfo>
#include <QRawFont>
#include <QVector>

#include <cmath>

namespace {

QString describe(uint character)
{
    return QStringLiteral("U+%1").arg(character, 4, 16, QLatin1Char('0')).toUpper();
}

/** Moves glyphs from the font's grid, y growing downwards, to their place in the picture. */
struct Typesetter
{
    QRawFont font; ///< as large as its grid
    double scale; ///< outline units a unit of the grid
    double x = 0.0;

    /** The outline of the next glyph; its advance is taken. */
    RecordedPath next(quint32 glyph)
    {
        RecordedPath painted;
        painted.transform = QTransform::fromScale(scale, scale)
            * QTransform::fromTranslate(x, font.ascent() * scale);
        painted.path = painted.transform.map(font.pathForGlyph(glyph));
        painted.path.setFillRule(Qt::WindingFill);
        painted.pen = Qt::NoPen;
        painted.brush = Qt::black;
        painted.renderHints = QPainter::Antialiasing;
        x += font.advancesForGlyphIndexes({glyph}, QRawFont::UseDesignMetrics).value(0).x() * scale;
        return painted;
    }
};

/** Why there is nothing to import; empty if there may be. */
QString requestFault(QString const& text, TextImportOptions const& options)
{
    if (!isPositive(options.emSize))
        return QStringLiteral("the size of an em must be a number above 0");
    return text.isEmpty() ? QStringLiteral("the text is empty") : QString();
}

/** Why the font cannot be read, as far as its file tells; empty if it may be. */
QString fileFault(QFileInfo const& file)
{
    if (!file.exists())
        return QStringLiteral("there is no such font file");
    if (!file.isFile() || !file.isReadable())
        return QStringLiteral("the font file cannot be read");
    return QString();
}

/** The font in the size of its own grid; nothing, with a diagnostic, if it is none. */
std::optional<QRawFont> fontFrom(QString const& file, Diagnostics& diagnostics)
{
    if (!isNameExact(file, diagnostics))
        return std::nullopt;
    if (QString const fault = fileFault(QFileInfo(file)); !fault.isEmpty()) {
        diagnostics.error(file, fault);
        return std::nullopt;
    }
    QRawFont font(file, 1.0, QFont::PreferNoHinting);
    if (!font.isValid() || !isPositive(font.unitsPerEm())) {
        diagnostics.error(file, QStringLiteral("not a font file that can be read"));
        return std::nullopt;
    }
    font.setPixelSize(font.unitsPerEm());
    return font;
}

struct Glyph
{
    QString name; ///< the character
    RecordedPath painted;
};

/** The glyphs with ink, and warnings, each once, of characters without any glyph. */
std::vector<Glyph> typeset(
    Typesetter& typesetter, QString const& text, QString const& file, Diagnostics& diagnostics)
{
    std::vector<Glyph> glyphs;
    QVector<uint> missing;
    for (uint const character : text.toUcs4()) {
        QString const name = QString::fromUcs4(&character, 1);
        quint32 const glyph = typesetter.font.glyphIndexesForString(name).value(0);
        if (glyph == 0) {
            if (!missing.contains(character)) {
                diagnostics.warning(
                    file, QStringLiteral("no glyph for %1").arg(describe(character)));
                missing << character;
            }
            continue;
        }
        RecordedPath const painted = typesetter.next(glyph);
        if (!painted.path.isEmpty())
            glyphs.push_back({name, painted});
    }
    return glyphs;
}

/** pictureSizeFault(), with the size of an em at which the text would do. */
QString textSizeFault(QSizeF const& size, TextImportOptions const& options)
{
    QString fault = pictureSizeFault(size);
    double const longerSide = qMax(size.width(), size.height());
    if (fault.isEmpty() || !isPositive(longerSide) || longerSide <= maximumPictureSide)
        return fault;
    double const fitting = std::floor(options.emSize * maximumPictureSide / longerSide);
    return fitting < 1.0 ? fault
                         : QStringLiteral("%1; %2 %3 would do")
                               .arg(fault, options.emName, QString::number(fitting, 'f', 0));
}

} // namespace

std::optional<ImportedOutlines> importText(
    QString const& text, TextImportOptions const& options, Diagnostics& diagnostics)
{
    QString const& file = options.fontFile;
    if (QString const fault = requestFault(text, options); !fault.isEmpty()) {
        diagnostics.error(file, fault);
        return std::nullopt;
    }
    startFonts();
    options.takeMessages();
    auto const font = fontFrom(file, diagnostics);
    if (!font)
        return std::nullopt;
    Typesetter typesetter {*font, options.emSize / font->unitsPerEm()};
    std::vector<Glyph> const glyphs = typeset(typesetter, text, file, diagnostics);

    ImportedOutlines picture {
        QSizeF(typesetter.x, (font->ascent() + font->descent()) * typesetter.scale), {},
        typesetter.scale, options.keepsPainted};
    if (QString const fault = textSizeFault(picture.size, options); !fault.isEmpty()) {
        diagnostics.error(file, fault);
        return std::nullopt;
    }
    for (Glyph const& glyph : glyphs)
        appendOutline(picture, glyph.painted, glyph.name, file, diagnostics);
    for (QString const& message : options.takeMessages())
        diagnostics.warning(file, message);
    warnOfLosses(picture, file, diagnostics);
    return picture;
}
