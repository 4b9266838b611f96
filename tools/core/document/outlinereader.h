// SPDX-License-Identifier: MIT
#ifndef OUTLINEREADER_H
#define OUTLINEREADER_H

#include "common/diagnostic.h"
#include "document/appearance.h"
#include "document/markup.h"
#include "kppathseglist.h"

#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QIODevice;
class QXmlStreamReader;

namespace BoundedXml {
class Reader;
}

/** One `Geometry` element of a document. */
struct Outline
{
    int index; ///< from 1, in document order
    QString name; ///< the Name of the element around it, or empty
    /** The FillRule of the element around it; none if that names no rule. */
    std::optional<Qt::FillRule> fillRule;
    QString width; ///< the Width of the element around it as it is written, or empty
    QString height; ///< likewise the Height
    qint64 line; ///< from 1, of the end of its start tag
    qint64 column; ///< likewise, from 1
    bool isInside; ///< another outline, whose readers skip it
    MarkupNode const* markup; ///< its element, or null; not owned
    std::unique_ptr<KpPathSegList> list; ///< what the library's DOM reader makes of the element
    Appearance appearance {}; ///< as the document tells behind it; OutlineDocument alone reads it
};

/** In document order. */
using Outlines = std::vector<Outline>;

/** Told now and then how much of a long operation is done, from 0 to 1. */
using ProgressFunction = std::function<void(double)>;

/**
 * Reads the outlines of a document in one pass, in memory for the largest of them.
 *
 * An outline is read from the stream as the DOM reader would read it from a tree: empty attributes
 * do not count, of the coordinates of a move or line the first of each letter does. Documents are
 * bounded as BoundedXml::Reader has it.
 */
class OutlineReader
{
public:
    /** What is made of an outline. */
    enum class Detail {
        Lists, ///< its list
        Markup ///< its element, too
    };

    /**
     * @param device open for reading; it must outlive this
     * @param file its name in diagnostics
     */
    OutlineReader(QIODevice& device, QString const& file, Detail detail = Detail::Lists);
    ~OutlineReader();

    /** Has `visit` called at each token outside outlines. */
    void setVisitor(std::function<void(QXmlStreamReader const&)> const& visit) { m_visit = visit; }
    /** Has `progress` called now and then. */
    void setProgress(ProgressFunction const& progress) { m_progress = progress; }

    /**
     * Reads on to the next outline. That, followed by those inside it; none when the document is
     * at its end, or at a fault. Their markup() lasts until the next call.
     */
    Outlines next();

    /** What ended the document before its end, if anything did. */
    std::optional<Diagnostic> const& fault() const { return m_fault; }
    /** Whether the document, of which all has been read, is an SVG picture and holds no outline. */
    bool isSvgPicture() const;
    /** How many outlines there have been. */
    int count() const { return m_count; }

private:
    class Group;

    /** Of an element around outlines. */
    struct Surroundings;

    Q_DISABLE_COPY(OutlineReader)

    bool readNext();
    Outlines readGroup();
    void tellProgress();

    QIODevice& m_device;
    QString const m_file;
    Detail const m_detail;
    std::unique_ptr<BoundedXml::Reader> m_reader;
    std::function<void(QXmlStreamReader const&)> m_visit;
    ProgressFunction m_progress;
    std::optional<Diagnostic> m_fault;
    std::vector<Surroundings> m_open; ///< the elements around the place where it is
    QString m_root;
    MarkupNode m_markup; ///< of the outline that was read last
    int m_count = 0;
    qint64 m_nextTold = 0; ///< bytes read when progress is told again
};

/** The name of an outline in messages and captions: its own, or its number. */
QString caption(Outline const& outline);

/** The value of FillRule for a rule: "evenodd" or "nonzero". */
QString fillRuleText(Qt::FillRule rule);

/** The rule that such a text names; none for any other. */
std::optional<Qt::FillRule> fillRuleFromText(QString const& text);

#endif // OUTLINEREADER_H
