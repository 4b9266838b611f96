// SPDX-License-Identifier: MIT
#include "kppathseglist.h"

#include "geometryformat_p.h"
#include "geometryxml_p.h"
#include "kppath.h"
#include "segmentsearch_p.h"
#include "undoreal_p.h"

#include <QPainterPath>

#include <numeric>

namespace {

/** Lets `list` hold `seg` before the segment now at `index`, or after the last. */
void hold(KpPathSegList& list, int index, KpPathSeg* seg)
{
    SegmentSearch::note(*seg, index);
    if (index == list.segs.count())
        list.segs.append(seg);
    else
        list.segs.insert(index, seg);
    seg->owner = &list;
}

/** Lets `list` hold `seg` after all others. */
void append(KpPathSegList& list, KpPathSeg* seg)
{
    hold(list, list.segs.count(), seg);
}

/** Calls `visit` with every segment, first to last. */
template <class Visitor> void forEachSegment(KpPathSegList const& list, Visitor visit)
{
    for (KpPathSeg* const seg : list.segs) {
        if (seg)
            visit(*seg);
    }
}

/** How many elements a segment of this type draws at most, unless it overrides that. */
int elementCount(KpPathSeg::SegType type)
{
    switch (type) {
    case KpPathSeg::SegCurveTo:
        return 3;
    case KpPathSeg::SegEllipse:
        return 14;
    default:
        return 1;
    }
}

/** How many reals a segment of this type has, and at least as many as one of no known type. */
int realCount(KpPathSeg::SegType type)
{
    switch (type) {
    case KpPathSeg::SegCurveTo:
        return static_cast<int>(SegmentKind::table<KpPathSegCurveTo>.size());
    case KpPathSeg::SegEllipse:
        return static_cast<int>(SegmentKind::table<KpPathSegEllipse>.size());
    default:
        return static_cast<int>(SegmentKind::table<KpPathSeg>.size());
    }
}

/** Reserves memory for `count` more entries, unless that makes the vector grow in small steps. */
template <class Entry> void reserveFor(QVector<Entry>& entries, int count)
{
    if (count >= entries.capacity())
        entries.reserve(entries.count() + count);
}

/** Sets the flags' attributes with `setAttribute`, which takes name and text. */
template <class SetAttribute> void writeFlags(KpPathSegList const& list, SetAttribute setAttribute)
{
    setAttribute(GeometryFormat::closed(), list.closed ? "1" : "0");
    if (list.noFill)
        setAttribute(GeometryFormat::noFill(), "1");
    if (list.noLine)
        setAttribute(GeometryFormat::noLine(), "1");
}

} // namespace

KpPathSegList::KpPathSegList()
    : closed(false)
    , noLine(false)
    , noFill(false)
{
}

KpPathSegList::KpPathSegList(KpPathSegList const& other)
    : KpPathSegList()
{
    assign(other);
}

KpPathSegList::~KpPathSegList()
{
    clear();
}

KpPathSegList* KpPathSegList::clone()
{
    return new KpPathSegList(*this);
}

void KpPathSegList::assign(KpPathSegList const& other)
{
    // A list may be assigned to itself: the copy stays as the loop appends.
    QVector<KpPathSeg*> const sources = other.segs;
    reserveFor(segs, sources.count());
    for (KpPathSeg* const source : sources) {
        if (KpPathSeg* const copy = source ? source->clone() : nullptr)
            append(*this, copy);
    }
    closed = other.closed;
    noLine = other.noLine;
    noFill = other.noFill;
}

void KpPathSegList::clear()
{
    closed = true;
    noLine = false;
    noFill = false;
    removeAll(true);
}

bool KpPathSegList::getClosed() const
{
    return closed;
}

bool KpPathSegList::getNoLine() const
{
    return noLine;
}

bool KpPathSegList::getNoFill() const
{
    return noFill;
}

void KpPathSegList::addTail(KpPathSeg* seg)
{
    insertAt(segs.count(), seg);
}

void KpPathSegList::insertAt(int index, KpPathSeg* seg)
{
    if (seg)
        hold(*this, qBound(0, index, segs.count()), seg);
}

void KpPathSegList::moveTo(QPointF point)
{
    append(*this, new KpPathSegMoveTo(point, this));
}

void KpPathSegList::lineTo(QPointF point)
{
    append(*this, new KpPathSegLineTo(point, this));
}

void KpPathSegList::curveTo(QPointF control1, QPointF control2, QPointF end)
{
    append(*this, new KpPathSegCurveTo(control1, control2, end, this));
}

void KpPathSegList::removeAll(bool deleteSegs)
{
    if (deleteSegs) {
        for (KpPathSeg*& seg : segs) {
            delete seg;
            seg = nullptr;
        }
    }
    segs.resize(0);
}

void KpPathSegList::removeAt(int index, bool deleteSeg)
{
    if (index < 0 || index >= segs.count())
        return;
    if (deleteSeg)
        delete segs.at(index);
    segs.remove(index);
}

void KpPathSegList::removeAt(QVector<int> indices, bool deleteSegs)
{
    if (indices.isEmpty())
        return;

    // An index means the segment that stood there at the call or, once that is gone, the next
    // one that still stands. So nothing needs to move before all are found: next leads from
    // every slot to the first one from there on that still stands, count being the end.
    int const count = segs.count();
    QVector<int> next(count + 1);
    std::iota(next.begin(), next.end(), 0);
    auto const standingFrom = [&next](int slot) {
        while (next.at(slot) != slot) {
            next[slot] = next.at(next.at(slot));
            slot = next.at(slot);
        }
        return slot;
    };

    QVector<KpPathSeg*> removed;
    for (int const index : qAsConst(indices)) {
        int const slot = index >= 0 && index < count ? standingFrom(index) : count;
        if (slot == count)
            break;
        if (KpPathSeg* const seg = segs.at(slot)) {
            removed.append(seg);
            next[slot] = slot + 1;
        }
    }

    int kept = 0;
    for (int slot = 0; slot < count; ++slot) {
        if (next.at(slot) == slot)
            segs[kept++] = segs.at(slot);
    }
    segs.resize(kept);
    if (deleteSegs)
        qDeleteAll(removed);
}

KpPathSeg* KpPathSegList::getNextSeg(KpPathSeg* seg) const
{
    if (!seg)
        return nullptr;
    int const next = SegmentSearch::indexOf(*this, *seg, 1) + 1;
    return segs.value(closed && next >= segs.count() ? 0 : next);
}

KpPathSeg* KpPathSegList::getPrevSeg(KpPathSeg* seg) const
{
    if (!seg)
        return nullptr;
    int const previous = SegmentSearch::indexOf(*this, *seg, -1) - 1;
    return segs.value(closed && previous < 0 ? segs.count() - 1 : previous);
}

void KpPathSegList::translate(double dx, double dy)
{
    forEachSegment(*this, [=](KpPathSeg& seg) { seg.translate(dx, dy); });
}

void KpPathSegList::updateValue(double width, double height)
{
    forEachSegment(*this, [=](KpPathSeg& seg) { seg.updateValue(width, height); });
}

void KpPathSegList::updateRate(double width, double height)
{
    forEachSegment(*this, [=](KpPathSeg& seg) { seg.updateRate(width, height); });
}

void KpPathSegList::applyTransform(QMatrix matrix)
{
    forEachSegment(*this, [&matrix](KpPathSeg& seg) { seg.applyTransform(matrix); });
}

void KpPathSegList::toPath(KpPath& path) const
{
    int elements = closed ? 1 : 0;
    forEachSegment(
        *this, [&elements](KpPathSeg const& seg) { elements += elementCount(seg.type); });
    reserveFor(path.elements, elements);
    forEachSegment(*this, [&path](KpPathSeg& seg) { seg.addToPath(path); });
    if (closed)
        path.closeSubpath();
}

void KpPathSegList::fromPath(KpPath& path)
{
    int const close = 4;
    int const count = path.count();
    auto const pointAt = [&path](int index) { return QPointF(path.at(index).x, path.at(index).y); };
    for (int i = 0; i < count; ++i) {
        switch (path.at(i).type) {
        case QPainterPath::MoveToElement:
            append(*this, new KpPathSegMoveTo(pointAt(i), this));
            break;
        case QPainterPath::LineToElement:
            append(*this, new KpPathSegLineTo(pointAt(i), this));
            break;
        case QPainterPath::CurveToElement:
            if (i + 2 < count) {
                append(
                    *this, new KpPathSegCurveTo(pointAt(i), pointAt(i + 1), pointAt(i + 2), this));
                i += 2;
            }
            break;
        case close:
            closed = true;
            break;
        default:
            break;
        }
    }
}

bool KpPathSegList::isClockwise()
{
    KpPath path;
    toPath(path);
    return path.isClockWise();
}

void KpPathSegList::toUndoValue(QVector<int>& ints, QVector<double>& doubles)
{
    // What a segment casts to tells whether its reals are written, and only its type how many.
    int reals = 0;
    forEachSegment(*this, [&reals](KpPathSeg const& seg) { reals += realCount(seg.type); });
    UndoValue::Writer writer {
        UndoValue::grow(ints, 3 + segs.count() + reals), UndoValue::grow(doubles, 2 * reals)};

    // The order of the flags is the record's own, not that of the fields.
    for (bool const flag : {closed, noFill, noLine})
        *writer.ints++ = flag ? 1 : 0;
    forEachSegment(*this, [&writer](KpPathSeg& seg) {
        int* const type = writer.ints++;
        SegmentKind::forEachReal(seg, [&writer](KpReal const& real) { writer.write(real); });
        if (writer.ints == type + 1)
            writer.ints = type;
        else
            *type = seg.type;
    });
    UndoValue::endAt(ints, writer.ints);
    UndoValue::endAt(doubles, writer.doubles);
}

void KpPathSegList::fromUndoValue(
    QVector<int>& ints, QVector<double>& doubles, int& intPos, int& doublePos, int segmentCount)
{
    if (!UndoValue::holds(ints, intPos, 3))
        return;
    closed = UndoValue::take(ints, intPos) == 1;
    noFill = UndoValue::take(ints, intPos) == 1;
    noLine = UndoValue::take(ints, intPos) == 1;

    for (int i = 0; i < segmentCount && UndoValue::holds(ints, intPos, 1); ++i) {
        int const type = ints.at(intPos);
        auto const* const kind = SegmentKind::find([=](auto const& k) { return k.type == type; });
        if (!kind) {
            ++intPos;
            continue;
        }
        int const reals = realCount(kind->type);
        if (!UndoValue::holds(ints, intPos, 1 + reals)
            || !UndoValue::holds(doubles, doublePos, 2 * reals))
            return;
        UndoValue::Reader reader {ints.constData() + intPos + 1, doubles.constData() + doublePos};
        KpPathSeg* const seg = kind->create(this);
        SegmentKind::forEachReal(*seg, [&reader](KpReal& real) { real = reader.read(); });
        append(*this, seg);
        intPos += 1 + reals;
        doublePos += 2 * reals;
    }
}

void KpPathSegList::saveTo(QDomElement& parent)
{
    QDomElement geometry = XmlElement::append(parent, GeometryFormat::geometry());
    writeFlags(*this, [&geometry](QString const& name, char const* text) {
        geometry.setAttribute(name, QLatin1String(text));
    });
    forEachSegment(*this, [&geometry](KpPathSeg& seg) { seg.saveTo(geometry); });
}

void KpPathSegList::saveTo(XmlStreamWriter& writer)
{
    writer.writeStartElement(GeometryFormat::geometry());
    writeFlags(*this,
        [&writer](QString const& name, char const* text) { writer.writeAttribute(name, text); });
    forEachSegment(*this, [&writer](KpPathSeg& seg) { seg.saveTo(writer); });
    writer.writeEndElement();
}

bool KpPathSegList::parse(QDomElement const& geometry, unsigned int context)
{
    GeometryXml::readFlag(closed, geometry.attribute(GeometryFormat::closed()));
    GeometryXml::readFlag(noFill, geometry.attribute(GeometryFormat::noFill()));
    GeometryXml::readFlag(noLine, geometry.attribute(GeometryFormat::noLine()));
    for (QDomElement child = geometry.firstChildElement(); !child.isNull();
         child = child.nextSiblingElement()) {
        int const quark = QuarkManager::quarkFromString(child.tagName());
        auto const* const kind = SegmentKind::find([=](auto const& k) { return k.quark == quark; });
        if (!kind)
            continue;
        KpPathSeg* const seg = kind->create(this);
        seg->parse(child, context);
        addTail(seg);
    }
    return true;
}

bool KpPathSegList::parse(QXmlStreamReader& reader, unsigned int context)
{
    QXmlStreamAttributes const attributes = reader.attributes();
    if (attributes.isEmpty())
        return false;
    // An empty Closed is ignored as in a DOM, an empty NoFill or NoLine is not: deliberate,
    // documents are read this way.
    GeometryXml::readFlag(closed, attributes.value(GeometryFormat::closed()).toString());
    GeometryXml::readFlag(noFill, attributes.value(GeometryFormat::noFill()));
    GeometryXml::readFlag(noLine, attributes.value(GeometryFormat::noLine()));
    while (reader.readNextStartElement()) {
        auto const* const kind =
            SegmentKind::find([&reader](auto const& k) { return reader.name() == k.name(); });
        if (!kind) {
            reader.skipCurrentElement();
            continue;
        }
        KpPathSeg* const seg = kind->create(this);
        seg->parse(reader, context);
        addTail(seg);
    }
    return true;
}
