// SPDX-License-Identifier: MIT
#ifndef SOURCEDOCUMENT_H
#define SOURCEDOCUMENT_H

#include "files/unitrewriter.h"

#include "common/diagnostic.h"

#include <QByteArray>

#include <functional>
#include <memory>
#include <vector>

/** What becomes of items when they are written. */
struct WrittenDocument
{
    QByteArray bytes; ///< the whole document
    /**
     * How many outlines have a name, a box or a fill rule that the document has no place for: their
     * Geometry stands alone in an element that is not theirs. They will be read back otherwise.
     */
    int withoutPlace = 0;
};

/**
 * The text that a document was read from, cut into the units of its outlines and what stands
 * between. It never changes: the origin of an item names its unit here for good, however often the
 * document is saved. Copies share all; any thread may use one.
 */
class SourceDocument
{
public:
    /** A new document: an empty root. */
    SourceDocument();

    /** What was read from it, in its order: the origin of each is its index. */
    Items items() const;
    /** How many there are. */
    int count() const { return static_cast<int>(m_units.size()); }
    /** Whether these are the items that were read, so that they are written as they were. */
    bool isUnchanged(Items const& items) const;

    /**
     * The document of these items. If they are those that were read it is the file that was read,
     * to the byte. If not, it is in UTF-8, and all that has not changed stays as it was.
     *
     * Units take the places that there are in the order of the items; what stands between the places
     * stays. The place of a unit that is gone vanishes with the white space before it. An item that
     * is new, or whose unit an item before it has taken, stands behind the one before it.
     */
    WrittenDocument written(Items const& items) const;
    /** Its bytes alone. */
    QByteArray write(Items const& items) const { return written(items).bytes; }

private:
    friend class SourceReader;
    friend class DocumentComposer;

    QByteArray m_original; ///< the file
    QByteArray m_text; ///< what was cut: the file, or the same document in UTF-8
    CutText m_cut; ///< its units have moved to m_units
    std::vector<SourceUnit> m_units;
};

/** What a file is. */
enum class SourceKind {
    Document, ///< a document of outlines
    Picture ///< something to be imported: a picture, a drawing, shapes of another kind
};

/** What came of reading a document. */
struct SourceReading
{
    SourceKind kind = SourceKind::Document; ///< what it is
    std::shared_ptr<SourceDocument const>
        document; ///< null if it could not be read, or is a picture
    bool wasCancelled = false; ///< it was not read to the end
};

/** Who follows a reading, in the thread that reads. */
struct ReadingObserver
{
    std::function<void(ItemPointer const&)> take; ///< told each item; may be empty
    std::function<void(double)> progress; ///< told from 0 to 1, now and then; may be empty
    std::function<bool()> isCancelled; ///< asked now and then; may be empty
};

/**
 * Reads a document. Errors and warnings, among them one for outlines inside others, which stay a
 * part of these, become diagnostics. Items that were told of a document which turns out not to be
 * well-formed are of no use.
 *
 * @param content up to the size that readFile() reads
 * @param file its name in diagnostics
 */
SourceReading readSource(QByteArray const& content, QString const& file, Diagnostics& diagnostics,
    ReadingObserver const& observer = {});

#endif // SOURCEDOCUMENT_H
