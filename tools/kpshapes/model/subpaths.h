// SPDX-License-Identifier: MIT
#ifndef SUBPATHS_H
#define SUBPATHS_H

#include "document/place.h"
#include "model/handle.h"

#include <QVector>

#include <memory>
#include <vector>

/** Segments of an outline that are drawn in one go: from a move to the next, or an ellipse. */
struct SubpathRange
{
    int first; ///< the index of its first segment
    int end; ///< the index behind its last one
    bool hasMove; ///< false for an ellipse, and for steps that no move stands before

    /** How many segments it has: at least one. */
    int count() const { return end - first; }
};

/** Whether the segment goes on from where the one before it ends: a line or a curve. */
bool isStep(KpPathSeg const& segment);

/** All of an outline, in its order. Each segment is in one of them. */
std::vector<SubpathRange> allSubpaths(KpPathSegList const& list);
/** The one that a segment is in. @param segment an index of the outline */
SubpathRange subpathAt(KpPathSegList const& list, int segment);
/** Those that have any of the handles, in the order of the outline. @param handles sorted */
std::vector<SubpathRange> subpathsOf(KpPathSegList const& list, QVector<HandleId> const& handles);

/**
 * Whether a subpath ends where its move stands, in an outline that is closed. The two points are
 * one node then: what is done to one of them is done to both.
 */
bool isRing(KpPathSegList const& list, SubpathRange const& range);

/**
 * Where a segment starts, with the rules of that point: the end of the one before it, which on a
 * closed outline wraps around; else the origin, in proportion to the box.
 */
KpPoint startPointOf(KpPathSegList const& list, int segment);

/** The segments whose points are among the handles, ascending, none twice. */
std::vector<int> pointsAmong(KpPathSegList const& list, QVector<HandleId> const& handles);
/** The segments that have any of the handles, ascending, none twice. */
std::vector<int> segmentsAmong(KpPathSegList const& list, QVector<HandleId> const& handles);

/** Segments that no outline holds. */
using Segments = std::vector<std::unique_ptr<KpPathSeg>>;

/** Takes all segments out of an outline, whose flags stay. */
Segments takeSegments(KpPathSegList& list);
/** Appends segments to an outline. @param segments no null among them */
void appendSegments(KpPathSegList& list, Segments segments);
/** Puts another segment in the place of one, which is destroyed. @param segment never null */
void replaceSegment(KpPathSegList& list, int index, std::unique_ptr<KpPathSeg> segment);
/** A copy with every field: other than KpPathSeg::clone(), it keeps the rules of radii too. */
std::unique_ptr<KpPathSeg> copyOf(KpPathSeg& segment);

/** Whether two points are as good as the same: less than a millionth of a unit apart. */
bool coincide(QPointF const& left, QPointF const& right);
/** Whether both are numbers and finite. */
bool isFinite(QPointF const& point);

#endif // SUBPATHS_H
