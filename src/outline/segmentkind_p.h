// SPDX-License-Identifier: MIT
#ifndef SEGMENTKIND_P_H
#define SEGMENTKIND_P_H

#include "kppathsegcurveto.h"
#include "kppathsegellipse.h"
#include "kppathseglineto.h"
#include "kppathsegmoveto.h"

#include <QString>

#include <array>
#include <type_traits>
#include <utility>

/**
 * What each segment kind is called and which reals it holds, under which letter and number
 * and in which order: that of documents and of undo records.
 */
namespace SegmentKind {

/** The numbers that libKPBX's QuarkManager gives to the names of outline elements. */
enum Quark {
    QuarkMoveTo = 52,
    QuarkLineTo = 53,
    QuarkCurveTo = 54,
    QuarkEllipse = 55,
    QuarkX = 56,
    QuarkY = 57,
    QuarkA = 58,
    QuarkB = 59,
    QuarkC = 60,
    QuarkD = 61
};

/** The name of the element of a segment kind. */
template <class Segment> QString elementName();

template <> inline QString elementName<KpPathSegMoveTo>()
{
    return QStringLiteral("MoveTo");
}

template <> inline QString elementName<KpPathSegLineTo>()
{
    return QStringLiteral("LineTo");
}

template <> inline QString elementName<KpPathSegCurveTo>()
{
    return QStringLiteral("CurveTo");
}

template <> inline QString elementName<KpPathSegEllipse>()
{
    return QStringLiteral("Ellipse");
}

/** The names of coordinate elements. */
namespace Letter {

inline QString x()
{
    return QStringLiteral("X");
}

inline QString y()
{
    return QStringLiteral("Y");
}

inline QString a()
{
    return QStringLiteral("A");
}

inline QString b()
{
    return QStringLiteral("B");
}

inline QString c()
{
    return QStringLiteral("C");
}

inline QString d()
{
    return QStringLiteral("D");
}

} // namespace Letter

// In these tables a name is a function, not a string: a string would have to be destroyed at exit,
// and outlines are used even then.

/** One real of a segment kind. */
template <class Segment> struct Coordinate
{
    QString (*letter)(); ///< the name of its element
    int quark; ///< the number of that name
    KpReal& (*real)(Segment&);
};

/** The reals of a segment kind. Here those of the one-point kinds, move and line. */
template <class Segment>
inline constexpr std::array<Coordinate<KpPathSeg>, 2> table {{
    {Letter::x, QuarkX, [](KpPathSeg& s) -> KpReal& { return s.pt.x; }},
    {Letter::y, QuarkY, [](KpPathSeg& s) -> KpReal& { return s.pt.y; }},
}};

/** The end point comes first, although the constructor takes it last. */
template <>
inline constexpr std::array<Coordinate<KpPathSegCurveTo>, 6> table<KpPathSegCurveTo> {{
    {Letter::x, QuarkX, [](KpPathSegCurveTo& s) -> KpReal& { return s.pt.x; }},
    {Letter::y, QuarkY, [](KpPathSegCurveTo& s) -> KpReal& { return s.pt.y; }},
    {Letter::a, QuarkA, [](KpPathSegCurveTo& s) -> KpReal& { return s.ctrl1.x; }},
    {Letter::b, QuarkB, [](KpPathSegCurveTo& s) -> KpReal& { return s.ctrl1.y; }},
    {Letter::c, QuarkC, [](KpPathSegCurveTo& s) -> KpReal& { return s.ctrl2.x; }},
    {Letter::d, QuarkD, [](KpPathSegCurveTo& s) -> KpReal& { return s.ctrl2.y; }},
}};

template <>
inline constexpr std::array<Coordinate<KpPathSegEllipse>, 4> table<KpPathSegEllipse> {{
    {Letter::x, QuarkX, [](KpPathSegEllipse& s) -> KpReal& { return s.pt.x; }},
    {Letter::y, QuarkY, [](KpPathSegEllipse& s) -> KpReal& { return s.pt.y; }},
    {Letter::a, QuarkA, [](KpPathSegEllipse& s) -> KpReal& { return s.a; }},
    {Letter::b, QuarkB, [](KpPathSegEllipse& s) -> KpReal& { return s.b; }},
}};

/** The table of the kind of a segment. */
template <class Segment> constexpr auto const& coordinates(Segment const&)
{
    return table<Segment>;
}

/** One kind as the readers of a whole outline know it. */
struct Kind
{
    KpPathSeg::SegType type;
    QString (*name)(); ///< of its element
    int quark; ///< the number of that name
    KpPathSeg* (*create)(KpPathSegList*); ///< a new segment at the origin
};

inline std::array<Kind, 4> const& all()
{
    static constexpr QPointF origin(0.0, 0.0);
    static constexpr std::array<Kind, 4> table {{
        {KpPathSeg::SegMoveTo, elementName<KpPathSegMoveTo>, QuarkMoveTo,
            [](KpPathSegList* owner) -> KpPathSeg* { return new KpPathSegMoveTo(origin, owner); }},
        {KpPathSeg::SegLineTo, elementName<KpPathSegLineTo>, QuarkLineTo,
            [](KpPathSegList* owner) -> KpPathSeg* { return new KpPathSegLineTo(origin, owner); }},
        {KpPathSeg::SegCurveTo, elementName<KpPathSegCurveTo>, QuarkCurveTo,
            [](KpPathSegList* owner) -> KpPathSeg* {
                return new KpPathSegCurveTo(origin, origin, origin, owner);
            }},
        {KpPathSeg::SegEllipse, elementName<KpPathSegEllipse>, QuarkEllipse,
            [](KpPathSegList* owner) -> KpPathSeg* {
                return new KpPathSegEllipse(origin, 0.0, 0.0, owner);
            }},
    }};
    return table;
}

/** The kind for which `matches` is true, or null. */
template <class Predicate> Kind const* find(Predicate matches)
{
    for (Kind const& kind : all()) {
        if (matches(kind))
            return &kind;
    }
    return nullptr;
}

/**
 * Calls `visit` with `segment` as the kind that it is of. No call for a segment of no known kind,
 * or one that does not cast to the kind that its type names.
 */
template <class Visitor> void visitAsKind(KpPathSeg& segment, Visitor visit)
{
    switch (segment.type) {
    case KpPathSeg::SegMoveTo:
    case KpPathSeg::SegLineTo:
        visit(segment);
        break;
    case KpPathSeg::SegCurveTo:
        if (KpPathSegCurveTo* const curve = segment.toCurveTo())
            visit(*curve);
        break;
    case KpPathSeg::SegEllipse:
        if (KpPathSegEllipse* const ellipse = segment.toEllipse())
            visit(*ellipse);
        break;
    }
}

/**
 * Calls `visit` with each coordinate of `segment`, in the order of the tables, and the segment as
 * visitAsKind gives it.
 */
template <class Visitor> void forEachEntry(KpPathSeg& segment, Visitor visit)
{
    visitAsKind(segment, [&visit](auto& typed) {
        for (auto const& coordinate : coordinates(typed))
            visit(coordinate, typed);
    });
}

/** Calls `visit` with the letter and the real of each coordinate of `segment`, as forEachEntry. */
template <class Visitor> void forEachCoordinate(KpPathSeg& segment, Visitor visit)
{
    forEachEntry(segment, [&visit](auto const& coordinate, auto& typed) {
        visit(coordinate.letter(), coordinate.real(typed));
    });
}

/** Calls `visit` with the reals of `segment`, each found when this is compiled. */
template <class Segment, class Visitor, std::size_t... index>
void forEachRealOf(Segment& segment, Visitor& visit, std::index_sequence<index...>)
{
    (visit(table<Segment>[index].real(segment)), ...);
}

/** Calls `visit` with each real of `segment`, as forEachEntry. */
template <class Visitor> void forEachReal(KpPathSeg& segment, Visitor visit)
{
    visitAsKind(segment, [&visit](auto& typed) {
        auto const& reals = table<std::decay_t<decltype(typed)>>;
        forEachRealOf(typed, visit, std::make_index_sequence<reals.size()>());
    });
}

inline int realCount(KpPathSeg& segment)
{
    int count = 0;
    forEachReal(segment, [&count](KpReal const&) { ++count; });
    return count;
}

} // namespace SegmentKind

#endif // SEGMENTKIND_P_H
