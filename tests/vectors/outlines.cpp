// SPDX-License-Identifier: MIT
#include "kppathseglineto.h"
#include "kppathsegmoveto.h"
#include "outlinesamples.h"
#include "sequence.h"
#include "themes.h"

#include <functional>

namespace {

using Vectors::exactCopy;
using Vectors::Fields;
using Vectors::Outline;
using Vectors::sampleOutlines;
using Vectors::Theme;

/** A member of the list that is called on a copy of `outline`, and what it made of it. */
void addChange(Theme& theme, QString const& member, KpPathSegList& outline, Fields inputs,
    std::function<void(KpPathSegList&)> const& change)
{
    inputs.push_back({"outline", outline});
    Outline const after = exactCopy(outline);
    change(*after);
    theme.add("KpPathSegList::" + member, inputs, {{"outline", *after}});
}

int indexOf(KpPathSegList const& outline, KpPathSeg* segment)
{
    return segment ? outline.segs.indexOf(segment) : -1;
}

void addConstruction(Theme& theme)
{
    theme.add("KpPathSegList::KpPathSegList()", {}, {{"outline", KpPathSegList()}});
    std::vector<Outline> const all = sampleOutlines();
    for (std::size_t i = 0; i < all.size(); ++i) {
        KpPathSegList& outline = *all[i];
        Fields const inputs {{"outline", outline}};
        theme.add("KpPathSegList::KpPathSegList(KpPathSegList const&)", inputs,
            {{"copy", KpPathSegList(outline)}});
        theme.add("KpPathSegList::clone()", inputs, {{"copy", *Outline(outline.clone())}});
        theme.add("KpPathSegList::getClosed() const", inputs, {{"result", outline.getClosed()}});
        theme.add("KpPathSegList::getNoFill() const", inputs, {{"result", outline.getNoFill()}});
        theme.add("KpPathSegList::getNoLine() const", inputs, {{"result", outline.getNoLine()}});
        KpPathSegList& other = *all[(i + 5) % all.size()];
        addChange(theme, "assign(KpPathSegList const&)", outline, {{"other", other}},
            [&other](KpPathSegList& list) { list.assign(other); });
    }
}

void addEditing(Theme& theme, KpPathSegList& outline)
{
    QPointF const p(12.5, -3);
    addChange(theme, "clear()", outline, {}, [](KpPathSegList& list) { list.clear(); });
    addChange(theme, "removeAll(bool)", outline, {{"deleteSegs", true}},
        [](KpPathSegList& list) { list.removeAll(true); });
    addChange(theme, "moveTo(QPointF)", outline, {{"point", p}},
        [&p](KpPathSegList& list) { list.moveTo(p); });
    addChange(theme, "lineTo(QPointF)", outline, {{"point", p}},
        [&p](KpPathSegList& list) { list.lineTo(p); });
    addChange(theme, "curveTo(QPointF, QPointF, QPointF)", outline,
        {{"control1", QPointF(1, 2)}, {"control2", QPointF(3, 4)}, {"end", p}},
        [&p](KpPathSegList& list) {
            list.curveTo({1, 2}, {3, 4}, p);
        });
    KpPathSegLineTo const line(p, nullptr);
    addChange(theme, "addTail(KpPathSeg*)", outline,
        {{"segment", static_cast<KpPathSeg const&>(line)}},
        [&p](KpPathSegList& list) { list.addTail(new KpPathSegLineTo(p, nullptr)); });
    addChange(theme, "addTail(KpPathSeg*)", outline, {{"segment", QJsonValue()}},
        [](KpPathSegList& list) { list.addTail(nullptr); });
    for (int const index : {-5, 1, 100}) {
        addChange(theme, "insertAt(int, KpPathSeg*)", outline,
            {{"index", index}, {"segment", static_cast<KpPathSeg const&>(line)}},
            [&p, index](
                KpPathSegList& list) { list.insertAt(index, new KpPathSegLineTo(p, nullptr)); });
        addChange(theme, "removeAt(int, bool)", outline, {{"index", index}, {"deleteSeg", true}},
            [index](KpPathSegList& list) { list.removeAt(index, true); });
    }
}

/** Of an outline in which each segment can be told from the others. */
void addRemovals(Theme& theme)
{
    KpPathSegList outline;
    for (int i = 0; i < 6; ++i)
        outline.moveTo(QPointF(i, 0));
    QVector<QVector<int>> all {{}, {0, 2}, {2, 0}, {5, 0}, {6, 0}, {2, 2}, {2, 2, 2, 2, 2, 2},
        {5, 4, 3, 2, 1, 0}, {1, -1, 2}, {4, 4, 4}, {3, 0, 3}};
    Vectors::Sequence sequence(12);
    for (int i = 0; i < 12; ++i) {
        QVector<int> indices;
        for (int k = sequence.between(1, 6); k > 0; --k)
            indices.append(sequence.below(7));
        all.append(indices);
    }
    for (QVector<int> const& indices : qAsConst(all)) {
        addChange(theme, "removeAt(QVector<int>, bool)", outline,
            {{"indices", indices}, {"deleteSegs", true}},
            [&indices](KpPathSegList& list) { list.removeAt(indices, true); });
    }
}

void addNeighbours(Theme& theme, KpPathSegList& outline)
{
    KpPathSegMoveTo foreign(QPointF(0, 0), nullptr);
    for (int index = -2; index < outline.segs.count(); ++index) {
        // -1 is a segment of no list, -2 is none.
        KpPathSeg* const segment = index == -2 ? nullptr : outline.segs.value(index, &foreign);
        Fields const inputs {{"outline", outline}, {"index", index}};
        theme.add("KpPathSegList::getNextSeg(KpPathSeg*) const", inputs,
            {{"index", indexOf(outline, outline.getNextSeg(segment))}});
        theme.add("KpPathSegList::getPrevSeg(KpPathSeg*) const", inputs,
            {{"index", indexOf(outline, outline.getPrevSeg(segment))}});
    }
}

void addWhole(Theme& theme, KpPathSegList& outline)
{
    for (QSizeF const& box : {QSizeF(240, 160), QSizeF(33.3, 66.6)}) {
        Fields const inputs {{"width", box.width()}, {"height", box.height()}};
        addChange(theme, "updateValue(double, double)", outline, inputs,
            [&box](KpPathSegList& list) { list.updateValue(box.width(), box.height()); });
        addChange(theme, "updateRate(double, double)", outline, inputs,
            [&box](KpPathSegList& list) { list.updateRate(box.width(), box.height()); });
    }
    addChange(theme, "translate(double, double)", outline, {{"dx", 0.1}, {"dy", -7.5}},
        [](KpPathSegList& list) { list.translate(0.1, -7.5); });
    QMatrix const matrix(1.5, 0.25, 0.1, 2, -3, 4);
    addChange(theme, "applyTransform(QMatrix)", outline, {{"matrix", matrix}},
        [&matrix](KpPathSegList& list) { list.applyTransform(matrix); });

    KpPath begun;
    begun.append({1, 2, 0, 0, 0});
    for (KpPath const& before : {KpPath(), begun}) {
        KpPath after = before;
        outline.toPath(after);
        theme.add("KpPathSegList::toPath(KpPath&) const", {{"outline", outline}, {"path", before}},
            {{"path", after}});
    }
    theme.add("KpPathSegList::isClockwise()", {{"outline", outline}},
        {{"result", outline.isClockwise()}});
}

void addImports(Theme& theme)
{
    QVector<KpPath> paths(6);
    for (int type = -1; type <= 5; ++type)
        paths[0].append({type + 0.5, 2, 0, 0, type});
    for (int const type : {0, 2, 3, 3, 4})
        paths[1].append({type * 2.0, -1, 0, 0, type});
    for (int const type : {0, 2, 3})
        paths[2].append({type * 2.0, -1, 0, 0, type});
    for (int const type : {2, 0, 1, 1, 4, 0, 4})
        paths[3].append({type * 2.0, -1, 0, 0, type});
    paths[4].elements = KpPath::ellipse(QRectF(10, 20, 30, 40));
    for (KpPath& path : paths) {
        for (bool const isClosed : {false, true}) {
            KpPathSegList before;
            before.closed = isClosed;
            before.moveTo(QPointF(5, 5));
            addChange(theme, "fromPath(KpPath&)", before, {{"path", path}},
                [&path](KpPathSegList& list) { list.fromPath(path); });
        }
    }
}

void addRecord(Theme& theme, KpPathSegList& outline)
{
    QVector<int> ints {-9};
    QVector<double> doubles {0.5};
    outline.toUndoValue(ints, doubles);
    theme.add("KpPathSegList::toUndoValue(QVector<int>&, QVector<double>&)",
        {{"outline", outline}, {"ints", QVector<int> {-9}}, {"doubles", QVector<double> {0.5}}},
        {{"ints", ints}, {"doubles", doubles}});
}

struct Record
{
    QVector<int> ints;
    QVector<double> doubles;
    int intPos;
    int doublePos;
    int count;
};

void addReading(Theme& theme, Record record)
{
    KpPathSegList before;
    before.noLine = true;
    before.moveTo(QPointF(5, 5));
    Fields const inputs {{"outline", before}, {"ints", record.ints}, {"doubles", record.doubles},
        {"intPos", record.intPos}, {"doublePos", record.doublePos}, {"segmentCount", record.count}};
    Outline const after = exactCopy(before);
    after->fromUndoValue(
        record.ints, record.doubles, record.intPos, record.doublePos, record.count);
    theme.add("KpPathSegList::fromUndoValue(QVector<int>&, QVector<double>&, int&, int&, int)",
        inputs, {{"outline", *after}, {"intPos", record.intPos}, {"doublePos", record.doublePos}});
}

void addRecords(Theme& theme)
{
    for (Outline const& outline : sampleOutlines()) {
        addRecord(theme, *outline);
        QVector<int> ints {-9};
        QVector<double> doubles {0.5};
        outline->toUndoValue(ints, doubles);
        addReading(theme, {ints, doubles, 1, 1, outline->segs.count()});
        ints.removeLast();
        addReading(theme, {ints, doubles, 1, 1, outline->segs.count()});
    }
    QVector<double> const four {10, 0, 20, 0};
    for (Record const& record :
        {Record {{1, 0, 0, 2, 1, 2, 3, 1, 2}, {10, 0, 20, 0, 30, 0, 40, 0}, 0, 0, 2},
            {{0, 1, 0}, {}, 0, 0, 0}, {{2, 2, 1}, {}, 0, 0, 0}, {{1, 1}, {}, 0, 0, 1},
            {{1, 1, 1, 2, 1, 2}, four, -1, 0, 1}, {{1, 1, 1, 2, 1, 2}, four, 0, -1, 1},
            {{1, 1, 1, 9, 2, 65537, 2}, four, 0, 0, 2}, {{1, 1, 1, 2, 1, 2}, {10, 0, 20}, 0, 0, 1},
            {{1, 1, 1, 2, 1, 2}, four, 0, 0, 5}, {{1, 1, 1, 2, 1, 2}, four, 0, 0, -1}})
        addReading(theme, record);
}

} // namespace

void Vectors::addOutlines(Theme& theme)
{
    addConstruction(theme);
    for (Outline const& outline : sampleOutlines()) {
        if (outline->segs.count() <= 4) {
            addEditing(theme, *outline);
            addNeighbours(theme, *outline);
        }
        addWhole(theme, *outline);
    }
    addRemovals(theme);
    addImports(theme);
    addRecords(theme);
}
