// SPDX-License-Identifier: MIT
#include "files/sourcedocument.h"

#include "document/shapebox.h"
#include "document/shapeformat.h"
#include "files/scannedelement.h"

#include <algorithm>

namespace {

/** What ends the lines of a text. */
QByteArray newlineOf(QByteArray const& text)
{
    return text.contains("\r\n") ? QByteArrayLiteral("\r\n") : QByteArrayLiteral("\n");
}

} // namespace

/** Puts the text of a document together. */
class DocumentComposer
{
public:
    DocumentComposer(SourceDocument const& source, Items const& items)
        : m_source(source)
        , m_text(source.m_text)
        , m_items(items)
    {
    }

    WrittenDocument compose()
    {
        findPlaces();
        CutText const& cut = m_source.m_cut;
        if (cut.isRootOutline)
            composeRoot();
        else if (m_source.m_units.empty())
            composeBeforeRootEnd();
        else
            composeUnits();
        return std::move(m_result);
    }

private:
    using Index = std::size_t;

    /** The unit that the item has come from; null for a new one. */
    SourceUnit const* unitOf(ItemPointer const& item) const
    {
        auto const origin = static_cast<Index>(item->origin);
        bool const isThere = item->origin >= 0 && origin < m_source.m_units.size();
        return isThere ? &m_source.m_units[origin] : nullptr;
    }

    /** The items that keep their units, the first of each, and the units' places. */
    void findPlaces()
    {
        m_isKept.assign(m_items.size(), false);
        m_isUsed.assign(m_source.m_units.size(), false);
        for (Index i = 0; i < m_items.size(); ++i) {
            if (!unitOf(m_items[i]))
                continue;
            auto const origin = static_cast<Index>(m_items[i]->origin);
            m_isKept[i] = !m_isUsed[origin];
            m_isUsed[origin] = true;
        }
    }

    void append(QByteArray const& piece) { appendPiece(m_result.bytes, piece); }

    void copy(TextRange const& range)
    {
        if (!range.isEmpty())
            append(range.in(m_text));
    }

    static QByteArray textOf(QByteArray const& text, SourceUnit const& unit, ShapeItem const& item)
    {
        return haveSameContent(*unit.item, item) ? unit.unit.whole.in(text)
                                                 : rewrittenUnit(text, unit, item);
    }

    // -- A document with places

    void composeUnits()
    {
        // Where no unit is left, new items stand in the first place.
        bool const isAnyKept =
            std::find(m_isKept.cbegin(), m_isKept.cend(), true) != m_isKept.cend();
        if (!isAnyKept && !m_items.empty())
            m_isUsed.front() = true;
        int at = 0;
        for (Index place = 0; place < m_source.m_units.size(); ++place) {
            TextRange const& whole = m_source.m_units[place].unit.whole;
            if (m_isUsed[place]) {
                copy({at, whole.begin});
                fill(place);
            } else {
                copy({at, std::max(at, blankBefore(m_text, whole.begin))});
            }
            at = whole.end;
        }
        copy({at, m_text.size()});
        keepAppearancesApart();
    }

    /** Puts the next kept item into a place, and the new ones beside it. */
    void fill(Index place)
    {
        QByteArray const lineStart =
            lineStartBefore(m_text, m_source.m_units[place].unit.whole.begin);
        bool isFirst = true;
        bool isFilled = false;
        for (; m_next < m_items.size() && !(isFilled && m_isKept[m_next]); ++m_next) {
            if (!isFirst)
                append(lineStart);
            isFirst = false;
            if (m_isKept[m_next])
                putKept(place, *m_items[m_next]);
            else
                append(newUnit(*m_items[m_next], lineStart));
            isFilled = isFilled || m_isKept[m_next];
        }
    }

    void putKept(Index place, ShapeItem const& item)
    {
        SourceUnit const& unit = m_source.m_units[static_cast<Index>(item.origin)];
        append(textOf(m_text, unit, item));
        if (!unit.unit.isBare)
            return;
        if (item.appearance.isEmpty())
            m_bareEnds.push_back(m_result.bytes.size());
        m_result.withoutPlace += readsAlike(item, unit, place) ? 0 : 1;
    }

    /** Whether what stands around a place gives an outline in it the surroundings that it has. */
    bool readsAlike(ShapeItem const& item, SourceUnit const& unit, Index place) const
    {
        SourceUnit const& there = m_source.m_units[place];
        if (haveSameContent(item, *unit.item) && &there == &unit)
            return true;
        ShapeItem read = surroundingsAt(there.unit.around);
        if (read.box.isEmpty())
            read.box = boxOf({{QString(), QSizeF(), {}, outlineOf(item.outline)}});
        return hasSameSurroundings(item, read);
    }

    /** What an element says of an outline right within. */
    ShapeItem surroundingsAt(TextRange const& startTag) const
    {
        ShapeItem item;
        for (ScannedElement const& element : scannedElements(m_text, startTag)) {
            Outline outline {};
            for (MarkupAttribute const& attribute : element.attributes) {
                if (attribute.name == ShapeFormat::name())
                    item.name = attribute.value.simplified();
                else if (attribute.name == ShapeFormat::fillRule())
                    item.fillRule = fillRuleFromText(attribute.value);
                else if (attribute.name == ShapeFormat::width())
                    outline.width = attribute.value;
                else if (attribute.name == ShapeFormat::height())
                    outline.height = attribute.value;
            }
            item.box = namedBox(outline);
        }
        return item;
    }

    /** An appearance that was no outline's must not become one's. */
    void keepAppearancesApart()
    {
        QByteArray& bytes = m_result.bytes;
        for (auto end = m_bareEnds.crbegin(); end != m_bareEnds.crend(); ++end) {
            int const next = blankBehind(bytes, *end);
            if (bytes.mid(next).startsWith("<Appearance"))
                bytes.insert(*end, "<Appearance/>");
        }
    }

    // -- A document without places

    void composeBeforeRootEnd()
    {
        CutText const& cut = m_source.m_cut;
        QByteArray const newline = newlineOf(m_text);
        QByteArray shapes;
        for (ItemPointer const& item : m_items)
            shapes += newline + ' ' + newUnit(*item, newline + ' ');
        std::vector<ScannedElement> const roots =
            scannedElements(m_text, {cut.rootStart.begin, m_text.size()});
        TextEdits edits(m_text);
        if (!m_items.empty() && !roots.empty()) {
            bool const isOnLine =
                !cut.rootEnd.isEmpty() && !lineStartBefore(m_text, cut.rootEnd.begin).isEmpty();
            edits.append(roots.front(), isOnLine ? shapes : shapes + newline);
        }
        m_result.bytes = edits.applied({0, m_text.size()});
    }

    /** The root is the only outline. */
    void composeRoot()
    {
        SourceUnit const& unit = m_source.m_units.front();
        TextRange const& whole = unit.unit.whole;
        copy({0, whole.begin});
        bool const isAlone = m_items.size() == 1 && m_isKept.front()
            && hasSameSurroundings(*m_items.front(), *unit.item)
            && m_items.front()->appearance.isEmpty();
        if (isAlone)
            append(textOf(m_text, unit, *m_items.front()));
        else
            append(wrapped(unit));
        copy({whole.end, m_text.size()});
    }

    QByteArray wrapped(SourceUnit const& unit) const
    {
        QByteArray const newline = newlineOf(m_text);
        QByteArray const lineStart = newline + ' ';
        QByteArray text = QByteArrayLiteral("<Shapes>");
        for (Index i = 0; i < m_items.size(); ++i) {
            ShapeItem const& item = *m_items[i];
            text += lineStart
                + (m_isKept[i] ? newUnitAround(withOutlineOf(unit, item), item, lineStart)
                               : newUnit(item, lineStart));
        }
        return text + newline + "</Shapes>";
    }

    /** The Geometry alone. */
    QByteArray withOutlineOf(SourceUnit const& unit, ShapeItem const& item) const
    {
        ShapeItem outline = *unit.item;
        outline.outline = item.outline;
        return textOf(m_text, unit, outline);
    }

    SourceDocument const& m_source;
    QByteArray const& m_text;
    Items const& m_items;
    std::vector<bool> m_isKept; ///< of each item: its unit is its own
    std::vector<bool> m_isUsed; ///< of each unit: its place is filled
    Index m_next = 0; ///< the item that is written next
    std::vector<int> m_bareEnds; ///< of bare outlines without an appearance, in the result
    WrittenDocument m_result;
};

Items SourceDocument::items() const
{
    Items items;
    items.reserve(m_units.size());
    for (SourceUnit const& unit : m_units)
        items.push_back(unit.item);
    return items;
}

bool SourceDocument::isUnchanged(Items const& items) const
{
    return std::equal(items.cbegin(), items.cend(), m_units.cbegin(), m_units.cend(),
        [](ItemPointer const& item, SourceUnit const& unit) {
            return item == unit.item
                || (item->origin == unit.item->origin && haveSameContent(*item, *unit.item));
        });
}

WrittenDocument SourceDocument::written(Items const& items) const
{
    if (isUnchanged(items))
        return {m_original, 0};
    return DocumentComposer(*this, items).compose();
}
