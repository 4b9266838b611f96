// SPDX-License-Identifier: MIT
#include "files/outlineedits.h"

#include "check/sequencealignment.h"
#include "document/appearancexml.h"
#include "document/coordinatetext.h"
#include "document/geometrywalker.h"
#include "document/shapes.h"
#include "geometryformat_p.h"
#include "xmlstreamwriter.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace {

/** As QVector::at(), for an index of the standard library. */
template <class Container> auto const& at(Container const& container, int index)
{
    return container[static_cast<std::size_t>(index)];
}

quint64 bitsOf(double number)
{
    quint64 bits = 0;
    std::memcpy(&bits, &number, sizeof bits);
    return bits;
}

bool isSame(KpReal const& left, KpReal const& right)
{
    return left.base == right.base && bitsOf(left.value) == bitsOf(right.value)
        && bitsOf(left.rate) == bitsOf(right.rate);
}

/** The coordinates of a segment in the order of the format. */
QVector<KpReal const*> realsOf(KpPathSeg& segment)
{
    QVector<KpReal const*> reals;
    SegmentWalker const walker(segment);
    for (SegmentWalker::Coordinate const& coordinate : walker.coordinates())
        reals.append(coordinate.real);
    return reals;
}

/** 2 for other kinds, and for the same kind the part of the coordinates that differ, below 1. */
double distance(KpPathSeg& left, KpPathSeg& right)
{
    if (left.type != right.type)
        return 2.0;
    QVector<KpReal const*> const before = realsOf(left);
    QVector<KpReal const*> const after = realsOf(right);
    int different = 0;
    for (int i = 0; i < before.size(); ++i)
        different += isSame(*before.at(i), *after.at(i)) ? 0 : 1;
    return different / (before.size() + 1.0);
}

/** Changes one outline. */
class OutlineEditor
{
public:
    OutlineEditor(TextEdits& edits, QByteArray const& text, ScannedElement const& geometry)
        : m_edits(edits)
        , m_text(text)
        , m_geometry(geometry)
    {
    }

    void change(KpPathSegList const& before, KpPathSegList const& after)
    {
        setFlag(GeometryFormat::closed(), before.closed, after.closed);
        setFlag(GeometryFormat::noFill(), before.noFill, after.noFill);
        setFlag(GeometryFormat::noLine(), before.noLine, after.noLine);
        findSegments(before);
        for (AlignedPair const& pair : pairs(before, after)) {
            KpPathSeg* const old = pair.before < 0 ? nullptr : before.segs.at(pair.before);
            KpPathSeg* const now = pair.after < 0 ? nullptr : after.segs.at(pair.after);
            if (!old) {
                if (now)
                    insert(*now);
                continue;
            }
            m_current = pair.before;
            ScannedElement const& element = *at(m_segments, pair.before);
            if (!now)
                m_edits.remove(element.range());
            else if (old->type == now->type)
                changeSegment(element, *old, *now);
            else
                m_edits.replace(element.range(), written(*now, lineStartOf(element)));
        }
    }

private:
    void setFlag(QString const& name, bool before, bool after)
    {
        if (before != after) {
            m_edits.setAttribute(
                m_geometry, name, after ? QStringLiteral("1") : QStringLiteral("0"));
        }
    }

    void findSegments(KpPathSegList const& list)
    {
        GeometryWalker walker(list);
        for (ScannedElement const& child : m_geometry.children) {
            if (walker.enter(child.name))
                m_segments.push_back(&child);
        }
    }

    static std::vector<AlignedPair> pairs(KpPathSegList const& before, KpPathSegList const& after)
    {
        auto const distanceOf = [&](int left, int right) {
            return distance(*before.segs.at(left), *after.segs.at(right));
        };
        // Enough for some hundred segments beside one another; more are paired one by one.
        constexpr qint64 comparisons = 200000;
        Effort effort(comparisons);
        return alignedInOrder(
            {before.segs.count(), after.segs.count(),
                [&](int left, int right) { return distanceOf(left, right) <= 0.0; }, distanceOf},
            effort);
    }

    QByteArray lineStartOf(ScannedElement const& element) const
    {
        return lineStartBefore(m_text, element.startTag.begin);
    }

    static QByteArray written(KpPathSeg& segment, QByteArray const& lineStart)
    {
        return writtenPiece(
            [&segment](XmlStreamWriter& writer) { writeSegment(writer, segment); }, lineStart);
    }

    /** Behind the element where it is, or before the first. */
    void insert(KpPathSeg& segment)
    {
        if (m_segments.empty()) {
            QByteArray const around = lineStartOf(m_geometry);
            QByteArray const lineStart = around.isEmpty() ? around : around + ' ';
            m_edits.append(m_geometry, lineStart + written(segment, lineStart));
            return;
        }
        ScannedElement const& beside = *at(m_segments, std::max(0, m_current));
        QByteArray const lineStart = lineStartOf(beside);
        int const place =
            m_current < 0 ? beside.startTag.begin - lineStart.size() : beside.range().end;
        m_edits.insert(place, lineStart + written(segment, lineStart));
    }

    void changeSegment(ScannedElement const& element, KpPathSeg& before, KpPathSeg& after)
    {
        QVector<KpReal const*> const reals = realsOf(after);
        SegmentWalker walker(before);
        auto const nowOf = [&](KpReal const* real) {
            auto const all = realsOf(before);
            return reals.at(all.indexOf(real));
        };
        for (ScannedElement const& child : element.children) {
            auto const match = walker.enter(child.name);
            if (match.real && !isSame(*match.real, *nowOf(match.real)))
                changeCoordinate(child, *nowOf(match.real), match.isFirst);
        }
        for (SegmentWalker::Coordinate const& coordinate : walker.coordinates()) {
            KpReal const& now = *nowOf(coordinate.real);
            if (!coordinate.isGiven && !isSame(*coordinate.real, now))
                addCoordinate(element, coordinate.letter, now);
        }
    }

    void changeCoordinate(ScannedElement const& element, KpReal const& real, bool isFirst)
    {
        auto const change = CoordinateText::changeOf(real, element.attributes, isFirst);
        for (int const index : change.changed) {
            MarkupAttribute const& attribute = change.attributes.at(index);
            m_edits.setAttribute(element, attribute.name, attribute.value);
        }
        for (MarkupAttribute const& attribute : change.added)
            m_edits.setAttribute(element, attribute.name, attribute.value);
    }

    void addCoordinate(ScannedElement const& element, QString const& letter, KpReal const& real)
    {
        QByteArray const lineStart =
            element.children.empty() ? QByteArray() : lineStartOf(element.children.back());
        m_edits.append(element,
            lineStart
                + writtenPiece(
                    [&](XmlStreamWriter& writer) {
                        writer.writeStartElement(letter);
                        writeReal(writer, real);
                        writer.writeEndElement();
                    },
                    lineStart));
    }

    TextEdits& m_edits;
    QByteArray const& m_text;
    ScannedElement const& m_geometry;
    std::vector<ScannedElement const*> m_segments; ///< the elements of the segments before
    int m_current = -1; ///< the last of them that was gone past
};

/** The parts of an appearance, each written alone, by the names of their elements. */
struct AppearancePart
{
    QString name;
    QByteArray before;
    QByteArray after;
};

QByteArray partOf(Appearance const& appearance, QString const& name)
{
    QByteArray const text = writtenPiece(
        [&appearance](XmlStreamWriter& writer) { writeAppearance(writer, appearance); }, {});
    for (ScannedElement const& root : scannedElements(text, {0, text.size()})) {
        for (ScannedElement const& part : root.children) {
            if (part.name == name)
                return part.range().in(text);
        }
    }
    return QByteArray();
}

std::array<AppearancePart, 3> partsOf(Appearance const& before, Appearance const& after)
{
    std::array<AppearancePart, 3> parts {{{QStringLiteral("Fill"), {}, {}},
        {QStringLiteral("Line"), {}, {}}, {QStringLiteral("Shadow"), {}, {}}}};
    for (AppearancePart& part : parts) {
        part.before = partOf(before, part.name);
        part.after = partOf(after, part.name);
    }
    return parts;
}

QString themeAttribute()
{
    return QStringLiteral("Theme");
}

/** Whether there is anything in the element that is no appearance's. */
bool hasForeign(ScannedElement const& element, QByteArray const& text)
{
    bool const isForeignTag = std::any_of(element.attributes.cbegin(), element.attributes.cend(),
        [](MarkupAttribute const& attribute) { return attribute.name != themeAttribute(); });
    int at = element.content().begin;
    for (ScannedElement const& child : element.children) {
        bool const isPart = child.name == QLatin1String("Fill")
            || child.name == QLatin1String("Line") || child.name == QLatin1String("Shadow");
        if (!isPart || blankBehind(text, at) < child.startTag.begin)
            return true;
        at = child.range().end;
    }
    return isForeignTag || blankBehind(text, at) < element.content().end;
}

void changePart(TextEdits& edits, QByteArray const& text, ScannedElement const& element,
    AppearancePart const& part)
{
    bool isWritten = part.after.isEmpty();
    for (ScannedElement const& child : element.children) {
        if (child.name != part.name)
            continue;
        if (isWritten)
            edits.remove(child.range());
        else
            edits.replace(child.range(), part.after);
        isWritten = true;
    }
    if (isWritten)
        return;
    QByteArray const around = lineStartBefore(text, element.startTag.begin);
    edits.append(element, (around.isEmpty() ? around : around + ' ') + part.after);
}

} // namespace

void changeOutline(TextEdits& edits, QByteArray const& text, ScannedElement const& geometry,
    OutlineRecord const& before, OutlineRecord const& after)
{
    OutlineEditor(edits, text, geometry).change(*outlineOf(before), *outlineOf(after));
}

void changeAppearance(TextEdits& edits, QByteArray const& text, ScannedElement const& element,
    Appearance const& before, Appearance const& after)
{
    if (after.isEmpty() && !hasForeign(element, text)) {
        edits.remove(element.range());
        return;
    }
    if (after.theme.isEmpty())
        edits.removeAttribute(element, themeAttribute());
    else if (after.theme != before.theme)
        edits.setAttribute(element, themeAttribute(), after.theme);
    for (AppearancePart const& part : partsOf(before, after)) {
        if (part.before != part.after)
            changePart(edits, text, element, part);
    }
}
