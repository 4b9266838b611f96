// SPDX-License-Identifier: MIT
#include "files/unitcutter.h"

#include "boundedxml_p.h"

namespace {

bool isNamed(QByteArray const& text, Tag const& tag, char const* name)
{
    return QByteArray::fromRawData(text.constData() + tag.name.begin, tag.name.end - tag.name.begin)
        == name;
}

/** Follows the tags of a text, and keeps the elements that are open. */
class UnitCutter
{
public:
    explicit UnitCutter(QByteArray const& text)
        : m_text(text)
    {
    }

    CutText cut()
    {
        TagScanner scanner(m_text, {0, m_text.size()});
        Tag tag;
        // Deeper ones are refused by those who read the outlines.
        constexpr std::size_t deepest = BoundedXml::maximumDepth;
        while (m_open.size() <= deepest && scanner.next(tag)) {
            if (tag.kind != Tag::Kind::End)
                start(tag);
            if (tag.kind != Tag::Kind::Start)
                end(tag);
        }
        m_cut.hasDocumentType = scanner.hasDocumentType();
        return std::move(m_cut);
    }

private:
    struct Element
    {
        TextRange startTag;
        bool isAppearance; ///< one that may be of the last unit
        int outlines; ///< how many there are within, none inside another one
        int children; ///< how many of them are its children
    };

    void start(Tag const& tag)
    {
        bool const isOutline = isNamed(m_text, tag, "Geometry");
        if (m_open.empty()) {
            m_cut.rootStart = tag.range;
            m_cut.rootEnd = {tag.range.end, tag.range.end};
            m_cut.isRootOutline = isOutline;
        }
        bool const isAppearance = m_followed >= 0 && isNamed(m_text, tag, "Appearance")
            && blankBefore(m_text, tag.range.begin) <= m_followed;
        m_followed = -1;
        m_open.push_back({tag.range, isAppearance, 0, 0});
        if (isOutline)
            startOutline(tag);
    }

    void startOutline(Tag const& tag)
    {
        if (m_outlineDepth > 0) {
            ++m_cut.units.back().outlineCount;
            return;
        }
        m_outlineDepth = m_open.size();
        Unit unit;
        unit.whole.begin = unit.outline.begin = tag.range.begin;
        m_cut.units.push_back(unit);
    }

    void end(Tag const& tag)
    {
        m_followed = -1;
        if (m_open.empty())
            return;
        Element const element = m_open.back();
        bool const isOutlineEnd = m_outlineDepth == m_open.size();
        m_open.pop_back();
        if (isOutlineEnd)
            endOutline(tag);
        else if (element.isAppearance && element.outlines == 0)
            endAppearance({element.startTag.begin, tag.range.end});
        else if (element.outlines == 1 && element.children == 1 && !m_open.empty())
            endSurroundings({element.startTag.begin, tag.range.end});
        if (!m_open.empty())
            m_open.back().outlines += isOutlineEnd ? 1 : element.outlines;
        else if (tag.kind == Tag::Kind::End)
            m_cut.rootEnd = tag.range;
    }

    void endOutline(Tag const& tag)
    {
        m_outlineDepth = 0;
        Unit& unit = m_cut.units.back();
        unit.whole.end = unit.outline.end = tag.range.end;
        m_followed = tag.range.end;
        if (m_open.empty())
            return;
        unit.around = m_open.back().startTag;
        ++m_open.back().children;
    }

    void endAppearance(TextRange const& range)
    {
        Unit& unit = m_cut.units.back();
        unit.appearance = range;
        unit.whole.end = range.end;
    }

    void endSurroundings(TextRange const& range)
    {
        Unit& unit = m_cut.units.back();
        unit.whole = range;
        unit.around = m_open.back().startTag;
        unit.isBare = false;
    }

    QByteArray const& m_text;
    CutText m_cut;
    std::vector<Element> m_open;
    std::size_t m_outlineDepth = 0; ///< of the outline that is open; 0 if none is
    int m_followed = -1; ///< the end of the outline that was the last tag; -1 if it was another
};

} // namespace

CutText cutIntoUnits(QByteArray const& text)
{
    return UnitCutter(text).cut();
}
