#ifndef SEGMENTKIND_P_H
#define SEGMENTKIND_P_H

#include "kppathsegcurveto.h"
#include "kppathsegellipse.h"
#include "kppathseglineto.h"
#include "kppathsegmoveto.h"

#include <QString>

#include <array>

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

/** One real of a segment kind. */
template <class Segment> struct Coordinate
{
    QString letter; ///< the name of its element
    int quark; ///< the number of that name
    KpReal& (*real)(Segment&);
};

/** The reals of the one-point kinds, move and line. */
inline std::array<Coordinate<KpPathSeg>, 2> const& coordinates(KpPathSeg const&)
{
    static std::array<Coordinate<KpPathSeg>, 2> const table {{
        {QStringLiteral("X"), QuarkX, [](KpPathSeg& s) -> KpReal& { return s.pt.x; }},
        {QStringLiteral("Y"), QuarkY, [](KpPathSeg& s) -> KpReal& { return s.pt.y; }},
    }};
    return table;
}

/** The end point comes first, although the constructor takes it last. */
inline std::array<Coordinate<KpPathSegCurveTo>, 6> const& coordinates(KpPathSegCurveTo const&)
{
    using Curve = KpPathSegCurveTo;
    static std::array<Coordinate<Curve>, 6> const table {{
        {QStringLiteral("X"), QuarkX, [](Curve& s) -> KpReal& { return s.pt.x; }},
        {QStringLiteral("Y"), QuarkY, [](Curve& s) -> KpReal& { return s.pt.y; }},
        {QStringLiteral("A"), QuarkA, [](Curve& s) -> KpReal& { return s.ctrl1.x; }},
        {QStringLiteral("B"), QuarkB, [](Curve& s) -> KpReal& { return s.ctrl1.y; }},
        {QStringLiteral("C"), QuarkC, [](Curve& s) -> KpReal& { return s.ctrl2.x; }},
        {QStringLiteral("D"), QuarkD, [](Curve& s) -> KpReal& { return s.ctrl2.y; }},
    }};
    return table;
}

inline std::array<Coordinate<KpPathSegEllipse>, 4> const& coordinates(KpPathSegEllipse const&)
{
    using Ellipse = KpPathSegEllipse;
    static std::array<Coordinate<Ellipse>, 4> const table {{
        {QStringLiteral("X"), QuarkX, [](Ellipse& s) -> KpReal& { return s.pt.x; }},
        {QStringLiteral("Y"), QuarkY, [](Ellipse& s) -> KpReal& { return s.pt.y; }},
        {QStringLiteral("A"), QuarkA, [](Ellipse& s) -> KpReal& { return s.a; }},
        {QStringLiteral("B"), QuarkB, [](Ellipse& s) -> KpReal& { return s.b; }},
    }};
    return table;
}

/** One kind as the readers of a whole outline know it. */
struct Kind
{
    KpPathSeg::SegType type;
    QString name; ///< of its element
    int quark; ///< the number of that name
    KpPathSeg* (*create)(KpPathSegList*); ///< a new segment at the origin
};

inline std::array<Kind, 4> const& all()
{
    static QPointF const origin(0.0, 0.0);
    static std::array<Kind, 4> const table {{
        {KpPathSeg::SegMoveTo, elementName<KpPathSegMoveTo>(), QuarkMoveTo,
            [](KpPathSegList* owner) -> KpPathSeg* { return new KpPathSegMoveTo(origin, owner); }},
        {KpPathSeg::SegLineTo, elementName<KpPathSegLineTo>(), QuarkLineTo,
            [](KpPathSegList* owner) -> KpPathSeg* { return new KpPathSegLineTo(origin, owner); }},
        {KpPathSeg::SegCurveTo, elementName<KpPathSegCurveTo>(), QuarkCurveTo,
            [](KpPathSegList* owner) -> KpPathSeg* {
                return new KpPathSegCurveTo(origin, origin, origin, owner);
            }},
        {KpPathSeg::SegEllipse, elementName<KpPathSegEllipse>(), QuarkEllipse,
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
 * Calls `visit` with the letter and the real of each coordinate of `segment`, in the order of
 * the tables. None for a segment of no known kind, or one that does not cast to the kind that
 * its type names.
 */
template <class Visitor> void forEachCoordinate(KpPathSeg& segment, Visitor visit)
{
    auto const visitAll = [&visit](auto& typed) {
        for (auto const& coordinate : coordinates(typed))
            visit(coordinate.letter, coordinate.real(typed));
    };
    switch (segment.type) {
    case KpPathSeg::SegMoveTo:
    case KpPathSeg::SegLineTo:
        visitAll(segment);
        break;
    case KpPathSeg::SegCurveTo:
        if (KpPathSegCurveTo* const curve = segment.toCurveTo())
            visitAll(*curve);
        break;
    case KpPathSeg::SegEllipse:
        if (KpPathSegEllipse* const ellipse = segment.toEllipse())
            visitAll(*ellipse);
        break;
    }
}

/** Calls `visit` with each real of `segment`, as forEachCoordinate. */
template <class Visitor> void forEachReal(KpPathSeg& segment, Visitor visit)
{
    forEachCoordinate(segment, [&visit](QString const&, KpReal& real) { visit(real); });
}

inline int realCount(KpPathSeg& segment)
{
    int count = 0;
    forEachReal(segment, [&count](KpReal const&) { ++count; });
    return count;
}

} // namespace SegmentKind

#endif // SEGMENTKIND_P_H
