// SPDX-License-Identifier: MIT
#ifndef KPDEBUG_H
#define KPDEBUG_H

#include "kpcolorio.h"
#include "kppath.h"
#include "kppathsegcurveto.h"
#include "kppathsegellipse.h"
#include "kppathseglist.h"
#include "kprecentfilemanager.h"

#include <QDebug>

/**
 * @file
 * The library's types in the log, in the words in which gdb shows them.
 *
 * The operators leave the settings of the stream as they were, and heed its quotes and its precision
 * of reals. Qt shows containers by the operators of their elements. That of KpColor is in
 * kpcolorio.h, which this header includes. Fields are shown as they are: nothing is computed.
 */

/** What the operators of kpdebug.h share. The streams that these functions take add no spaces. */
namespace KpDebug {

/** The rule of a bound real: W and H are the sides of its box, M is the smaller of them. */
inline void writeRule(QDebug& debug, KpReal const& real)
{
    switch (real.base) {
    case KpReal::Absolute:
        debug << " fixed";
        if (real.rate != 0.0)
            debug << " (rate " << real.rate << ')';
        break;
    case KpReal::PartOfWidth:
        debug << " = " << real.rate << " W";
        break;
    case KpReal::PartOfHeight:
        debug << " = " << real.rate << " H";
        break;
    case KpReal::FromRight:
        debug << " = W - " << real.rate;
        break;
    case KpReal::FromBottom:
        debug << " = H - " << real.rate;
        break;
    case KpReal::PartOfSide:
        debug << " = " << real.rate << " M";
        break;
    case KpReal::FromRightPartOfSide:
        debug << " = W - " << real.rate << " M";
        break;
    case KpReal::FromBottomPartOfSide:
        debug << " = H - " << real.rate << " M";
        break;
    default:
        debug << " by no rule (base " << real.base << ", rate " << real.rate << ')';
        break;
    }
}

/** What documents call a segment of this kind; null if there is no such kind. */
inline char const* kindName(KpPathSeg::SegType type)
{
    switch (type) {
    case KpPathSeg::SegMoveTo:
        return "MoveTo";
    case KpPathSeg::SegLineTo:
        return "LineTo";
    case KpPathSeg::SegCurveTo:
        return "CurveTo";
    case KpPathSeg::SegEllipse:
        return "Ellipse";
    }
    return nullptr;
}

/** What an element of a painter path is called; null if it draws nothing. */
inline char const* elementName(int type)
{
    static char const* const names[] = {"MoveTo", "LineTo", "CurveTo", "CurveData", "Close"};
    return type >= 0 && type <= 4 ? names[type] : nullptr;
}

/** The name of a KpRecentFileManager::RecFileType; null for any other number. */
inline char const* fileTypeName(int type)
{
    static char const* const names[] = {
        "RecAuto", "RecLocal", "RecPersonal", "RecTeam", "RecGoogleDrive", "RecDropbox"};
    return type >= KpRecentFileManager::RecAuto && type <= KpRecentFileManager::RecDropbox
        ? names[type]
        : nullptr;
}

/** Where a file is kept, and whether it is pinned. */
inline void writePlace(QDebug& debug, bool isTop, int type)
{
    if (isTop)
        debug << "pinned, ";
    if (char const* const name = fileTypeName(type))
        debug << name << ", ";
    else
        debug << "type " << type << ", ";
}

/** "1 segment", "2 segments". */
inline void writeCount(QDebug& debug, int count, char const* noun)
{
    debug << count << ' ' << noun << (count == 1 ? "" : "s");
}

/** " = {A, B}" behind the text about a list of A and B; nothing if it is empty. */
template <class List> void writeElements(QDebug& debug, List const& list)
{
    char const* before = " = {";
    for (auto const& element : list) {
        debug << before << element;
        before = ", ";
    }
    if (!list.isEmpty())
        debug << '}';
}

} // namespace KpDebug

/** The value and its rule: "100 = 1 W", "110 = W - 10", "20 = 0.25 M", "7 fixed". */
inline QDebug operator<<(QDebug debug, KpReal const& real)
{
    QDebugStateSaver const saver(debug);
    debug.nospace() << real.value;
    KpDebug::writeRule(debug, real);
    return debug;
}

/** "(X, Y)", each a bound real. */
inline QDebug operator<<(QDebug debug, KpPoint const& point)
{
    QDebugStateSaver const saver(debug);
    debug.nospace() << '(' << point.x << ", " << point.y << ')';
    return debug;
}

/**
 * The kind, as documents name it, and the reals in the order of documents: "LineTo(X, Y)",
 * "CurveTo(X, Y, ctrl1 (X, Y), ctrl2 (X, Y))", "Ellipse(X, Y, a A, b B)".
 */
inline QDebug operator<<(QDebug debug, KpPathSeg const& seg)
{
    QDebugStateSaver const saver(debug);
    if (char const* const name = KpDebug::kindName(seg.type))
        debug.nospace() << name << '(';
    else
        debug.nospace() << "KpPathSeg(type " << int(seg.type) << ", ";
    debug << seg.pt.x << ", " << seg.pt.y;
    // These two change nothing, and are not const.
    KpPathSeg& asked = const_cast<KpPathSeg&>(seg);
    if (KpPathSegCurveTo const* const curve = asked.toCurveTo())
        debug << ", ctrl1 " << curve->ctrl1 << ", ctrl2 " << curve->ctrl2;
    if (KpPathSegEllipse const* const ellipse = asked.toEllipse())
        debug << ", a " << ellipse->a << ", b " << ellipse->b;
    debug << ')';
    return debug;
}

/** The segment; "KpPathSeg(0x0)" for null. */
inline QDebug operator<<(QDebug debug, KpPathSeg const* seg)
{
    if (seg)
        return debug << *seg;
    QDebugStateSaver const saver(debug);
    debug.nospace() << "KpPathSeg(0x0)";
    return debug;
}

/** The flags that are set, and the segments: "KpPathSegList(closed, 1 segment) = {LineTo(X, Y)}". */
inline QDebug operator<<(QDebug debug, KpPathSegList const& list)
{
    QDebugStateSaver const saver(debug);
    debug.nospace() << "KpPathSegList(" << (list.closed ? "closed, " : "")
                    << (list.noLine ? "noLine, " : "") << (list.noFill ? "noFill, " : "");
    KpDebug::writeCount(debug, list.segs.count(), "segment");
    debug << ')';
    KpDebug::writeElements(debug, list.segs);
    return debug;
}

/** Its type and its place: "LineTo(3, 4)", "CurveData(3, 4)", "Close(0, 0)", "type 9(3, 4)". */
inline QDebug operator<<(QDebug debug, KpPath::KpElement const& element)
{
    QDebugStateSaver const saver(debug);
    debug.nospace();
    if (char const* const name = KpDebug::elementName(element.type))
        debug << name;
    else
        debug << "type " << element.type;
    debug << '(' << element.x << ", " << element.y << ')';
    return debug;
}

/** All elements: "KpPath(2 elements) = {MoveTo(1, 2), LineTo(3, 4)}". */
inline QDebug operator<<(QDebug debug, KpPath const& path)
{
    QDebugStateSaver const saver(debug);
    debug.nospace() << "KpPath(";
    KpDebug::writeCount(debug, path.elements.count(), "element");
    debug << ')';
    KpDebug::writeElements(debug, path.elements);
    return debug;
}

/** As "RecFile(pinned, RecTeam, "/plans/a.x", team "design")"; an empty team is left out. */
inline QDebug operator<<(QDebug debug, KpRecentFileManager::RecFile const& file)
{
    QDebugStateSaver const saver(debug);
    debug.nospace() << "RecFile(";
    KpDebug::writePlace(debug, file.isTop, file.type);
    debug << file.path;
    if (!file.teamName.isEmpty())
        debug << ", team " << file.teamName;
    debug << ')';
    return debug;
}

/** As "RecFileInfo(RecLocal, "/plans/a.x", name "a.x", location "plans")". */
inline QDebug operator<<(QDebug debug, KpRecentFileManager::RecFileInfo const& info)
{
    QDebugStateSaver const saver(debug);
    debug.nospace() << "RecFileInfo(";
    KpDebug::writePlace(debug, info.isTop, info.type);
    debug << info.path << ", name " << info.name << ", location " << info.location << ')';
    return debug;
}

/** What it remembers; the braces hold the files, and then the folders. */
inline QDebug operator<<(QDebug debug, KpRecentFileManager const& manager)
{
    QDebugStateSaver const saver(debug);
    debug.nospace() << "KpRecentFileManager(" << (manager.m_isModified ? "modified, " : "");
    KpDebug::writeCount(debug, manager.m_files.count(), "file");
    debug << ", ";
    KpDebug::writeCount(debug, manager.m_folders.count(), "folder");
    debug << ", at most " << manager.m_maxCount << ", last file from " << manager.m_recentFileFolder
          << ", library from " << manager.m_libraryFolder << ", symbol from "
          << manager.m_symbolFolder << ')';
    KpDebug::writeElements(debug, manager.m_files + manager.m_folders);
    return debug;
}

#endif // KPDEBUG_H
