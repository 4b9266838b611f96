// SPDX-License-Identifier: MIT
// Keeps an outline as it was, changes it, and goes back and forth.

#include <kppathseglist.h>

#include <cstdio>

//! [record]
struct Record
{
    QVector<int> ints;
    QVector<double> doubles;
    int segments; // not in the record itself
};

Record record(KpPathSegList& outline)
{
    Record kept;
    outline.toUndoValue(kept.ints, kept.doubles);
    kept.segments = outline.segs.count();
    return kept;
}

void restore(KpPathSegList& outline, Record& kept)
{
    outline.removeAll(true); // reading appends
    int ints = 0;
    int doubles = 0;
    outline.fromUndoValue(kept.ints, kept.doubles, ints, doubles, kept.segments);
}
//! [record]

void print(char const* step, KpPathSegList const& outline)
{
    std::printf("%-6s %d segments, %s\n", step, int(outline.segs.count()),
        outline.closed ? "closed" : "open");
}

int main()
{
    //! [undo]
    KpPathSegList outline;
    outline.moveTo(QPointF(0, 0));
    outline.lineTo(QPointF(40, 0));
    Record before = record(outline);

    outline.lineTo(QPointF(40, 30));
    outline.closed = true;
    Record after = record(outline);
    print("edit", outline);

    restore(outline, before);
    print("undo", outline);
    restore(outline, after);
    print("redo", outline);
    //! [undo]
}
