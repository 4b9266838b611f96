// SPDX-License-Identifier: MIT
#ifndef SVGSCAN_H
#define SVGSCAN_H

#include <QByteArray>
#include <QHash>
#include <QRectF>
#include <QString>
#include <QXmlStreamAttributes>

#include <optional>
#include <vector>

/** What an element of an SVG text is for those who rewrite it. */
enum class SvgKind {
    Shape, ///< painted as one shape
    Text,
    Use,
    Image,
    Symbol,
    Svg,
    Switch,
    Hidden, ///< what is in it should not be painted where it stands
    Style,
    Other ///< a group, or nothing that matters
};

/** The kind of an element, whose name may have a prefix: Qt SVG does not look at it. */
SvgKind svgKind(QString const& name);

/** The id of an element, or empty. */
QString svgId(QXmlStreamAttributes const& attributes);

/** The id of the element that a `use` paints, or empty. */
QString svgTarget(QXmlStreamAttributes const& attributes);

/** Whether texts or shapes are in it, or nothing that is painted: no place for further elements. */
bool isLeaf(SvgKind kind);

/** What an element says of its own view. */
struct SvgView
{
    SvgView() = default;
    /** That of the element with these attributes. */
    explicit SvgView(QXmlStreamAttributes const& attributes);

    std::optional<QRectF> viewBox; ///< none, or one that cannot be read; it may be empty
    QString aspect; ///< its preserveAspectRatio
    QString width; ///< its width, as it stands there; empty if there is none
    QString height; ///< likewise its height
};

/** A `symbol` of an SVG text. */
struct SvgSymbolElement
{
    QString id; ///< or empty
    SvgView view; ///< its own
    bool isOutermost; ///< whether it is in no other symbol
};

/** What must be known of the whole of an SVG text before any of it is rewritten. */
class SvgScan
{
public:
    /** @param svg a well-formed text within the bounds of BoundedXml */
    explicit SvgScan(QByteArray const& svg);

    /** Whether Qt SVG can have the text as it is, and no element has a label. */
    bool isPlain() const;
    /** Whether there are symbols, and nothing else is painted. */
    bool isSprite() const { return !m_symbols.empty() && !m_isPainted; }
    /** Whether there is an element of text, painted or not. */
    bool hasText() const { return m_hasText; }
    /** Whether elements can stand between marks and the picture stays as it is. */
    bool isMarkable() const { return !m_tellsOfNeighbours; }
    /** What of the picture's coordinates is seen; null if the text does not say so. */
    QRectF const& box() const { return m_box; }
    /** In the order in which they begin. */
    std::vector<SvgSymbolElement> const& symbols() const { return m_symbols; }
    /** The symbol with the id; null for any other element. */
    SvgSymbolElement const* symbol(QString const& id) const;
    /**
     * What the one shape is called that a `use` paints; empty if it has no name, or does not paint
     * exactly one.
     *
     * @param id its own, or empty
     * @param target what it paints
     */
    QString labelOfUse(QString const& id, QString const& target) const;

private:
    struct Element
    {
        SvgKind kind;
        QString id;
        QString target; ///< of a use
        int symbol; ///< its index
        int shapes; ///< painted by it; 2 for more
    };
    struct Open
    {
        Element element;
        bool isHidden;
        bool isInSymbol;
    };

    void begin(SvgKind kind, QXmlStreamAttributes const& attributes);
    void end();

    std::vector<Open> m_open;
    QHash<QString, Element> m_byId;
    std::vector<SvgSymbolElement> m_symbols;
    QRectF m_box;
    bool m_isPainted = false;
    bool m_hasNestedViews = false;
    bool m_hasLabels = false;
    bool m_hasText = false;
    bool m_refersToOthers = false;
    bool m_tellsOfNeighbours = false;
};

#endif // SVGSCAN_H
