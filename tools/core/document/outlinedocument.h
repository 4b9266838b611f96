#ifndef OUTLINEDOCUMENT_H
#define OUTLINEDOCUMENT_H

#include "common/diagnostic.h"
#include "kppathseglist.h"

#include <QDomDocument>
#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

/** One `Geometry` element of a document. */
struct Outline
{
    int index; ///< from 1, in document order
    QString name; ///< the Name of the element around it, or empty
    /** The FillRule of the element around it; none if that names no rule. */
    std::optional<Qt::FillRule> fillRule;
    QDomElement element; ///< in the tree of the document
    std::unique_ptr<KpPathSegList> list; ///< what the DOM reader makes of the element
};

/** Told now and then how much of a long operation is done, from 0 to 1. */
using ProgressFunction = std::function<void(double)>;

/** An XML document and all its outlines, wherever they stand. */
class OutlineDocument
{
public:
    /**
     * Reads a document. Nothing, with a diagnostic, when it is no well-formed XML or goes beyond
     * BoundedXml::Limits.
     *
     * @param file its name in diagnostics
     * @param progress called now and then; not empty
     */
    static std::optional<OutlineDocument> read(QByteArray const& text, QString const& file,
        Diagnostics& diagnostics, ProgressFunction const& progress);

    /** The name that it was read under. */
    QString const& file() const { return m_file; }
    /** The bytes as read. */
    QByteArray const& text() const { return m_text; }
    /** In document order. Their lists may be changed, and written by rewritten(). */
    std::vector<Outline>& outlines() { return m_outlines; }
    /** In document order. */
    std::vector<Outline> const& outlines() const { return m_outlines; }
    /** Whether it is an SVG picture, which importSvg() reads, rather than a document of outlines. */
    bool isSvgPicture() const;

private:
    OutlineDocument() = default;
    void addOutline(QDomElement const& element);

    QString m_file;
    QByteArray m_text;
    QDomDocument m_tree;
    std::vector<Outline> m_outlines;
};

/** The name of an outline in messages and captions: its own, or its number. */
QString caption(Outline const& outline);

/** The value of FillRule for a rule: "evenodd" or "nonzero". */
QString fillRuleText(Qt::FillRule rule);

/** The rule that such a text names; none for any other. */
std::optional<Qt::FillRule> fillRuleFromText(QString const& text);

#endif // OUTLINEDOCUMENT_H
