#ifndef OUTLINEDOCUMENT_H
#define OUTLINEDOCUMENT_H

#include "kppathseglist.h"

#include <QDomDocument>
#include <QString>

#include <memory>
#include <optional>
#include <vector>

/** One `Geometry` element of a document. */
struct Outline
{
    int index; ///< from 1, in document order
    QString name; ///< the Name of the element around it, or empty
    QDomElement element;
    std::unique_ptr<KpPathSegList> list; ///< what the DOM reader makes of the element
};

/** An XML document and all its outlines, wherever they stand. */
class OutlineDocument
{
public:
    /**
     * Reads the file, "-" being standard input. Nothing, after an error message, when it
     * cannot be read or is not well-formed.
     */
    static std::optional<OutlineDocument> load(QString const& file);

    QString const& file() const { return m_file; }
    /** The bytes as read. */
    QByteArray const& text() const { return m_text; }
    std::vector<Outline>& outlines() { return m_outlines; }

private:
    OutlineDocument() = default;

    QString m_file;
    QByteArray m_text;
    QDomDocument m_tree;
    std::vector<Outline> m_outlines;
};

/** The name of an outline in messages and captions: its own, or its number. */
QString caption(Outline const& outline);

#endif // OUTLINEDOCUMENT_H
