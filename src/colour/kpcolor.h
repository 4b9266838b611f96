// SPDX-License-Identifier: MIT
#ifndef KPCOLOR_H
#define KPCOLOR_H

#include "kpgeometry_export.h"

#include <QColor>
#include <QString>
#include <QVector>

class QDataStream;
class QDomElement;
class QXmlStreamReader;
class XmlStreamWriter;

/**
 * The colour of a document: the concrete colour that is drawn, which is the QColor part, and where
 * it comes from.
 *
 * A theme colour knows the slot of the theme, the slot's reference colour and a tint or shade, so
 * that the concrete colour can be computed again when the theme changes. A plain colour has the
 * theme index 0. Tints are signed percentages: 1 to 100 towards white, -1 to -100 towards black,
 * in linear light (ColorUtil::tint and shade), and 0 none; what lies beyond is clamped.
 *
 * The concrete colour's alpha is its own: a reference colour never brings one along.
 *
 * To stream, log or keep colours in a QVariant, include kpcolorio.h: without it the operators of
 * QColor are found, silently, and theme, tint and reference are lost.
 *
 * refColor(), tint(), toUndoValue() and saveTo() change nothing and are not const, and
 * assignNoAlpha() leaves its argument as it is: the application's binary interface has them so.
 */
class KPGEOMETRY_EXPORT KpColor : public QColor
{
public:
    /**
     * Whether saveTo() leaves out of a theme colour what the theme tells: false until the
     * application sets it.
     */
    static bool s_genPreTheme;

    /** An invalid colour without theme, tint and reference. */
    KpColor();
    /** As setColor(). */
    KpColor(QColor const& colour);
    /** All of `other`. */
    KpColor(KpColor const& other);

    /** Becomes all of `other`. */
    KpColor& operator=(KpColor const& other);

    /** Equal in theme index, tint, concrete colour (QColor's comparison) and reference colour. */
    bool operator==(KpColor const& other) const;
    /** The negation of ==. */
    bool operator!=(KpColor const& other) const;
    /**
     * `left` against all of the plain colour `right`, which has no theme, no tint, and itself as
     * reference.
     */
    friend bool operator==(KpColor const& left, QColor const& right)
    {
        return left == KpColor(right);
    }
    /**
     * The concrete colours, as QColor compares them: whatever theme `right` is of. So the order
     * of the two sides matters: deliberate, the comparison is that of the left one's class.
     */
    friend bool operator==(QColor const& left, KpColor const& right)
    {
        return left == static_cast<QColor const&>(right);
    }
    /** The negation of ==, in the same order. */
    friend bool operator!=(KpColor const& left, QColor const& right) { return !(left == right); }
    /** The negation of ==, in the same order. */
    friend bool operator!=(QColor const& left, KpColor const& right) { return !(left == right); }

    /** Equal in theme index and tint; two plain colours always are. */
    bool isSameInTheme(KpColor const& other) const;

    /**
     * Stores the reference colour and computes the concrete one with the present tint.
     *
     * @param themeIndex -1 keeps the theme index, any other negative number stores 0
     */
    void setRefColor(QColor ref, int themeIndex);
    /** The reference colour, opaque. */
    QColor refColor();
    /** Stores everything as it is. @param themeIndex a negative number stores 0 */
    void setColorValues(QColor ref, QColor colour, int tint, int themeIndex);
    /** Stores reference, tint and theme index (negative stores 0); computes the concrete colour. */
    void setTintColor(QColor ref, int tint, int themeIndex);
    /** Stores the tint and computes the concrete colour from the reference colour. */
    void modifyTint(int tint);
    /** Stores the tint; the concrete colour stays. */
    void setTint(int tint);
    /** The tint, -100 to 100. */
    int tint();
    /** The slot of the theme; 0 for a plain colour. */
    int themeIndex() const;
    /** Becomes a plain colour: no theme, no tint, `colour` the concrete and the reference one. */
    void setColor(QColor colour);
    /** Becomes `other` but for alpha. */
    void assignNoAlpha(KpColor& other);

    /**
     * Reads what write() writes. A colour of a kind that QColor does not know is read as an invalid
     * one; what the stream lacks is read as Qt reads it.
     */
    QDataStream& read(QDataStream& stream);
    /**
     * Writes theme index and tint code (0, 1...100, 101...200 for shades) as qint16, the concrete
     * colour as Qt does, the reference colour as qint32 0x00RRGGBB. Version and byte order are the
     * stream's.
     */
    QDataStream& write(QDataStream& stream) const;

    /** Appends the four ints of its undo record. */
    void toUndoValue(QVector<int>& values);
    /**
     * Reads the four ints from `index` on, counted from 0, which advances by 4 in any case; an
     * entry outside of `values` reads as 0. The concrete colour becomes one of red, green and blue.
     */
    void fromUndoValue(QVector<int>& values, int& index);

    /** Appends the colour's element to `parent`, called `name` or, if that is empty, "Color". */
    void saveTo(QDomElement& parent, QString const& name);
    /** Writes the same element, its attributes in the order ThemeColor, Tint or Shade, V, Ref. */
    void saveTo(XmlStreamWriter& writer, QString const& name);
    /**
     * Reads the attributes of `element`; a null element changes nothing.
     *
     * A missing or empty V keeps the concrete colour, a missing ThemeColor stores 0. Tint
     * outweighs Shade. Without Ref the reference colour is computed from the concrete one. Text
     * that is no number reads as 0, and text that is no colour as an invalid one.
     */
    void parse(QDomElement const& element);
    /**
     * Reads the attributes of the element on whose start tag the reader stands, and does not move
     * it; without any attribute nothing changes.
     *
     * As the DOM reader, but a missing ThemeColor keeps the theme index, and an empty V or Ref
     * is there and reads as an invalid colour: deliberate, documents are read this way.
     */
    void parse(QXmlStreamReader& reader);

private:
    struct Attributes;
    KPGEOMETRY_NO_EXPORT void compute(QColor const& ref);
    KPGEOMETRY_NO_EXPORT void take(Attributes const& attributes);

    qint32 m_reference; ///< 0x00RRGGBB
    qint16 m_themeIndex;
    qint16 m_tintCode; ///< 0 none, 1 to 100 tint, 101 to 200 shade by 100 less
};

static_assert(sizeof(KpColor) == 24, "the application's layout of a document colour");

#endif // KPCOLOR_H
