// SPDX-License-Identifier: MIT
#include "import/fillorientation.h"

#include <QPointF>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <numeric>
#include <tuple>
#include <vector>

// Both rules agree exactly if the winding number is zero wherever it is even. A line across the
// path passes from even to odd and back at every edge, so the two edges around each odd stretch
// must have opposite directions. Where an even stretch is too narrow to count, all the edges
// around it must cancel each other. Reversing a subpath changes the sign of its edges, so this
// gives equations for the signs of the subpaths; nearly all of them relate just two.

namespace {

/** QPainterPath takes coordinates of up to 1e128 only, but a transformation can exceed that. */
constexpr double largestSize = 1e100;

/** What does not count, in parts of the longer side: of the path, and of a subpath if less. */
constexpr double pathTolerance = 1e-4;
constexpr double subpathTolerance = 1e-2;
/** How far a polygon may be from its curve, in parts of the tolerance. */
constexpr double flatness = 0.1;
constexpr int maximumPiecesOfCurve = 512;
constexpr int piecesOfAllCurves = 1000000;

/** Rows at equal distances, for what lies between crossings and not at any point of the path. */
constexpr int evenRows = 512;
/** How many meetings of rows and edges are worth their time in a path, and in a part at least. */
constexpr double meetingsOfPath = 2e6;
constexpr double meetingsOfGroup = 4096.0;
/** By how much rows that each subpath needs may exceed that. */
constexpr double excessOfNeededRows = 8.0;

/** What trying directions may cost, in terms of equations and in subpaths. */
constexpr std::size_t maximumTrialCost = 4000000;

struct Interval
{
    double start = std::numeric_limits<double>::infinity();
    double end = -std::numeric_limits<double>::infinity();

    void include(double number)
    {
        start = std::min(start, number);
        end = std::max(end, number);
    }

    double length() const { return end - start; }
};

/** A side of a polygon. */
struct Edge
{
    QPointF start;
    QPointF end;

    bool isUpwards() const { return !(start.y() <= end.y()); }
    QPointF const& top() const { return isUpwards() ? end : start; }
    QPointF const& bottom() const { return isUpwards() ? start : end; }
    /** 1 if the subpath runs down here, -1 if up. */
    int direction() const { return isUpwards() ? -1 : 1; }
};

struct Subpath
{
    int firstElement;
    int elementCount;
    Interval x; ///< with the control points
    Interval y;
    double tolerance = 0.0;
    std::size_t firstEdge = 0;
    std::size_t edgeCount = 0;
    std::size_t firstLevel = 0;
    std::size_t levelCount = 0;

    double size() const { return std::max(x.length(), y.length()); }
};

/** Indices of subpaths, in ascending order. */
using Group = std::vector<std::size_t>;

std::vector<Subpath> subpathsOf(QPainterPath const& path)
{
    std::vector<Subpath> subpaths;
    for (int i = 0; i < path.elementCount(); ++i) {
        QPainterPath::Element const element = path.elementAt(i);
        if (element.isMoveTo())
            subpaths.push_back({i, 0, {}, {}});
        Subpath& subpath = subpaths.back();
        ++subpath.elementCount;
        subpath.x.include(element.x);
        subpath.y.include(element.y);
    }
    return subpaths;
}

/** A path as polygons, one a subpath. */
class FlatPath
{
public:
    explicit FlatPath(QPainterPath const& path)
        : m_subpaths(subpathsOf(path))
        , m_maximumPieces(std::clamp(
              piecesOfAllCurves / std::max(1, path.elementCount()), 4, maximumPiecesOfCurve))
    {
        Interval x;
        Interval y;
        for (Subpath const& subpath : m_subpaths) {
            x.include(subpath.x.start);
            x.include(subpath.x.end);
            y.include(subpath.y.start);
            y.include(subpath.y.end);
        }
        double const size = std::max(x.length(), y.length());
        m_isMeasurable = m_subpaths.empty() || size < largestSize;
        if (!m_isMeasurable)
            return;
        for (Subpath& subpath : m_subpaths)
            subpath.tolerance = std::min(pathTolerance * size, subpathTolerance * subpath.size());
        m_edges.reserve(countEdges(path));
        for (Subpath& subpath : m_subpaths)
            flatten(path, subpath);
    }

    /** False if the path is larger than largestSize. */
    bool isMeasurable() const { return m_isMeasurable; }

    std::vector<Subpath> const& subpaths() const { return m_subpaths; }
    std::vector<Edge> const& edges() const { return m_edges; }

    /** Where subpaths may begin, bend or turn back on their way up or down, one behind the other. */
    std::vector<double> const& levels() const { return m_levels; }

private:
    struct Curve
    {
        QPointF start, control1, control2, end;

        QPointF at(double t) const
        {
            double const u = 1.0 - t;
            return u * u * u * start + 3.0 * u * u * t * control1 + 3.0 * u * t * t * control2
                + t * t * t * end;
        }

        /** How far it is from a straight line that is run through evenly. */
        double bend() const
        {
            QPointF const first = start - 2.0 * control1 + control2;
            QPointF const second = control1 - 2.0 * control2 + end;
            return std::max(std::hypot(first.x(), first.y()), std::hypot(second.x(), second.y()));
        }
    };

    /** Hands over each line and each curve of a subpath, with its end. */
    template <class VisitLine, class VisitCurve>
    static void visit(QPainterPath const& path, Subpath const& subpath, VisitLine const& visitLine,
        VisitCurve const& visitCurve)
    {
        QPointF last = path.elementAt(subpath.firstElement);
        int const end = subpath.firstElement + subpath.elementCount;
        for (int i = subpath.firstElement; i < end; ++i) {
            QPainterPath::Element const element = path.elementAt(i);
            if (element.isCurveTo() && i + 2 < end) {
                visitCurve({last, element, path.elementAt(i + 1), path.elementAt(i + 2)});
                i += 2;
            } else {
                visitLine(last, element);
            }
            last = path.elementAt(i);
        }
    }

    /** At most so many edges there will be. */
    std::size_t countEdges(QPainterPath const& path) const
    {
        std::size_t count = 0;
        for (Subpath const& subpath : m_subpaths) {
            visit(
                path, subpath, [&count](QPointF const&, QPointF const&) { ++count; },
                [&](Curve const& curve) {
                    count += static_cast<std::size_t>(piecesOf(curve, subpath));
                });
            ++count;
        }
        return count;
    }

    void flatten(QPainterPath const& path, Subpath& subpath)
    {
        subpath.firstEdge = m_edges.size();
        subpath.firstLevel = m_levels.size();
        QPointF const start = path.elementAt(subpath.firstElement);
        QPointF last = start;
        visit(
            path, subpath,
            [&](QPointF const& from, QPointF const& to) {
                addEdge(from, to);
                m_levels.push_back(to.y());
                last = to;
            },
            [&](Curve const& curve) {
                addCurve(curve, piecesOf(curve, subpath));
                m_levels.push_back(curve.end.y());
                last = curve.end;
            });
        addEdge(last, start);
        subpath.edgeCount = m_edges.size() - subpath.firstEdge;
        subpath.levelCount = m_levels.size() - subpath.firstLevel;
    }

    int piecesOf(Curve const& curve, Subpath const& subpath) const
    {
        double const distance = flatness * subpath.tolerance;
        double const wanted = std::sqrt(0.75 * curve.bend() / distance);
        // The comparison is so that a curve without extent has one piece.
        return wanted > 1.0 ? static_cast<int>(std::ceil(std::min<double>(wanted, m_maximumPieces)))
                            : 1;
    }

    void addCurve(Curve const& curve, int pieces)
    {
        QPointF last = curve.start;
        double lastRise = 0.0;
        for (int i = 1; i <= pieces; ++i) {
            QPointF const next = i < pieces ? curve.at(double(i) / pieces) : curve.end;
            double const rise = next.y() - last.y();
            if (rise * lastRise < 0.0)
                m_levels.push_back(last.y());
            addEdge(last, next);
            last = next;
            lastRise = rise;
        }
    }

    void addEdge(QPointF const& start, QPointF const& end)
    {
        bool const isPoint = !(start.x() < end.x() || start.x() > end.x())
            && !(start.y() < end.y() || start.y() > end.y());
        if (!isPoint)
            m_edges.push_back({start, end});
    }

    std::vector<Subpath> m_subpaths;
    std::vector<double> m_levels;
    std::vector<Edge> m_edges;
    int m_maximumPieces;
    bool m_isMeasurable = false;
};

/** Divides the group where a line along the other axis separates its subpaths. */
void split(std::vector<Subpath> const& subpaths, Interval Subpath::*axis, Group group,
    std::vector<Group>& parts)
{
    std::sort(group.begin(), group.end(), [&](std::size_t a, std::size_t b) {
        return (subpaths[a].*axis).start < (subpaths[b].*axis).start;
    });
    double reach = -std::numeric_limits<double>::infinity();
    for (std::size_t const index : group) {
        Interval const& interval = subpaths[index].*axis;
        if (interval.start >= reach)
            parts.emplace_back();
        parts.back().push_back(index);
        reach = std::max(reach, interval.end);
    }
}

/** The subpaths in groups whose boxes do not overlap, as far as straight cuts part them. */
std::vector<Group> separateGroups(std::vector<Subpath> const& subpaths)
{
    // Lines of text, characters in them, dots above characters.
    Interval Subpath::*const axes[] = {&Subpath::y, &Subpath::x, &Subpath::y, &Subpath::x};

    Group all(subpaths.size());
    std::iota(all.begin(), all.end(), std::size_t(0));
    std::vector<Group> groups {all};
    for (auto const axis : axes) {
        std::vector<Group> parts;
        for (Group const& group : groups)
            split(subpaths, axis, group, parts);
        groups = std::move(parts);
    }
    for (Group& group : groups)
        std::sort(group.begin(), group.end());
    return groups;
}

/** A number times the direction of a subpath. */
struct Term
{
    std::size_t subpath;
    int factor;

    bool operator==(Term const& other) const
    {
        return subpath == other.subpath && factor == other.factor;
    }

    bool operator<(Term const& other) const
    {
        return std::tie(subpath, factor) < std::tie(other.subpath, other.factor);
    }
};

/** Terms whose sum is to be zero, at most one a subpath. */
using Equation = std::vector<Term>;

/** Sorts the terms, and puts together those of one subpath; what cancels out vanishes. */
void simplify(Equation& terms)
{
    std::sort(terms.begin(), terms.end());
    std::size_t count = 0;
    for (std::size_t i = 0; i < terms.size();) {
        Term sum {terms[i].subpath, 0};
        for (; i < terms.size() && terms[i].subpath == sum.subpath; ++i)
            sum.factor += terms[i].factor;
        if (sum.factor != 0)
            terms[count++] = sum;
    }
    terms.resize(count);
}

/** The directions of some subpaths, 1 or -1, as far as they follow from one another. */
class Directions
{
public:
    explicit Directions(std::size_t count)
        : m_links(count)
    {
        for (std::size_t i = 0; i < count; ++i)
            m_links[i] = {i, 1};
    }

    std::size_t count() const { return m_links.size(); }

    /** The direction, if those on which no other bears are 1. */
    int direction(std::size_t subpath) { return find(subpath).factor; }

    /** What the equation says about subpaths of which none follows from another. */
    Equation reduced(Equation const& equation)
    {
        Equation result;
        for (Term const& term : equation) {
            Term const root = find(term.subpath);
            result.push_back({root.subpath, term.factor * root.factor});
        }
        simplify(result);
        return result;
    }

    /** Makes the product of two directions `product`; false if it is the opposite already. */
    bool relate(std::size_t a, std::size_t b, int product)
    {
        Term const rootA = find(a);
        Term const rootB = find(b);
        int const link = rootA.factor * rootB.factor * product;
        if (rootA.subpath == rootB.subpath)
            return link == 1;
        m_links[std::max(rootA.subpath, rootB.subpath)] = {
            std::min(rootA.subpath, rootB.subpath), link};
        return true;
    }

private:
    /** The subpath that decides, and the direction if that one's is 1. */
    Term find(std::size_t subpath)
    {
        Term root {subpath, 1};
        while (m_links[root.subpath].subpath != root.subpath) {
            root.factor *= m_links[root.subpath].factor;
            root.subpath = m_links[root.subpath].subpath;
        }
        int factor = root.factor;
        for (std::size_t i = subpath; i != root.subpath;) {
            Term const link = m_links[i];
            m_links[i] = {root.subpath, factor};
            factor *= link.factor;
            i = link.subpath;
        }
        return root;
    }

    std::vector<Term> m_links; ///< each to a subpath with a lower index, or to itself
};

/** Where an edge meets a row, with the tolerance around it. */
struct Meeting
{
    Interval x;
    double tolerance;
    Term term; ///< of factor 0 if the edge is beside the row
};

/** A group of subpaths that have nothing to do with the rest of the path. */
class GroupSweep
{
public:
    /** @param path it must outlive this */
    GroupSweep(FlatPath const& path, Group const& group)
        : m_path(path)
    {
        std::size_t edges = 0;
        std::size_t levels = 0;
        for (std::size_t const index : group) {
            Subpath const& subpath = path.subpaths()[index];
            m_subpaths.push_back(&subpath);
            edges += subpath.edgeCount;
            levels += subpath.levelCount;
        }
        m_sides.reserve(edges);
        m_rows.reserve(levels + evenRows);
        for (std::size_t local = 0; local < group.size(); ++local) {
            Subpath const& subpath = *m_subpaths[local];
            for (std::size_t i = 0; i < subpath.edgeCount; ++i) {
                m_sides.push_back(
                    {static_cast<quint32>(subpath.firstEdge + i), static_cast<quint32>(local)});
            }
            auto const first =
                path.levels().begin() + static_cast<std::ptrdiff_t>(subpath.firstLevel);
            m_rows.insert(
                m_rows.end(), first, first + static_cast<std::ptrdiff_t>(subpath.levelCount));
        }
        std::sort(m_sides.begin(), m_sides.end(),
            [this](Side const& a, Side const& b) { return upperEnd(a) < upperEnd(b); });
        double const share =
            double(m_sides.size()) / double(std::max<std::size_t>(1, path.edges().size()));
        chooseRows(meetingsOfGroup + meetingsOfPath * share);
    }

    /** False if there are not rows enough to tell anything. */
    bool hasRows() const { return m_hasEnoughRows; }

    /** Hands over every equation of every row, until `visit` returns false. */
    template <class Visit> void visitEquations(Visit visit) const
    {
        std::vector<std::size_t> active;
        std::vector<Meeting> meetings;
        std::size_t next = 0;
        for (double const row : m_rows) {
            for (; next < m_sides.size() && upperEnd(m_sides[next]) <= row; ++next)
                active.push_back(next);
            meetings.clear();
            std::size_t kept = 0;
            for (std::size_t const index : active) {
                if (lowerEnd(m_sides[index]) < row)
                    continue;
                active[kept++] = index;
                meetings.push_back(meeting(m_sides[index], row));
            }
            active.resize(kept);
            if (!visitRow(meetings, visit))
                return;
        }
    }

private:
    /** An edge of the path. */
    struct Side
    {
        quint32 edge; ///< its index in the path: of a text of 256 MiB there are fewer
        quint32 subpath; ///< counted from 0 in the group
    };

    Edge const& edgeOf(Side const& side) const { return m_path.edges()[side.edge]; }
    double tolerance(Side const& side) const { return m_subpaths[side.subpath]->tolerance; }
    double upperEnd(Side const& side) const
    {
        return edgeOf(side).top().y() - 0.5 * tolerance(side);
    }
    double lowerEnd(Side const& side) const
    {
        return edgeOf(side).bottom().y() + 0.5 * tolerance(side);
    }

    void chooseRows(double affordableMeetings)
    {
        Interval height;
        for (Subpath const* const subpath : m_subpaths) {
            height.include(subpath->y.start);
            height.include(subpath->y.end);
        }
        std::sort(m_rows.begin(), m_rows.end());
        // Halfway between the levels: on a level itself an edge may be in the way.
        std::transform(m_rows.begin() + 1, m_rows.end(), m_rows.begin(), m_rows.begin(),
            [](double lower, double upper) { return upper + 0.5 * (lower - upper); });
        m_rows.pop_back();
        for (int i = 0; i < evenRows; ++i)
            m_rows.push_back(height.start + (i + 0.5) / evenRows * height.length());
        std::sort(m_rows.begin(), m_rows.end());
        m_rows.erase(std::unique(m_rows.begin(), m_rows.end()), m_rows.end());

        thinRows(affordableMeetings);
        addNeededRows();
        m_hasEnoughRows = countMeetings() <= excessOfNeededRows * affordableMeetings;
    }

    double countMeetings() const
    {
        double count = 0.0;
        for (Side const& side : m_sides) {
            auto const first = std::lower_bound(m_rows.begin(), m_rows.end(), upperEnd(side));
            count += double(std::upper_bound(first, m_rows.end(), lowerEnd(side)) - first);
        }
        return count;
    }

    void thinRows(double affordableMeetings)
    {
        auto const step = static_cast<std::size_t>(
            std::max(1.0, std::ceil(countMeetings() / affordableMeetings)));
        std::size_t kept = 0;
        for (std::size_t i = step / 2; i < m_rows.size(); i += step)
            m_rows[kept++] = m_rows[i];
        m_rows.resize(kept);
    }

    /** Sees to it that each subpath is met well within its height. */
    void addNeededRows()
    {
        std::vector<Interval> middles;
        for (Subpath const* const subpath : m_subpaths) {
            double const quarter = 0.25 * subpath->y.length();
            middles.push_back({subpath->y.start + quarter, subpath->y.end - quarter});
        }
        std::sort(middles.begin(), middles.end(),
            [](Interval const& a, Interval const& b) { return a.end < b.end; });
        std::vector<double> needed;
        for (Interval const& middle : middles) {
            auto const row = std::lower_bound(m_rows.begin(), m_rows.end(), middle.start);
            bool const isMet = (row != m_rows.end() && *row <= middle.end)
                || (!needed.empty() && needed.back() >= middle.start);
            if (!isMet)
                needed.push_back(middle.end);
        }
        m_rows.insert(m_rows.end(), needed.begin(), needed.end());
        std::sort(m_rows.begin(), m_rows.end());
    }

    Meeting meeting(Side const& side, double row) const
    {
        Edge const& edge = edgeOf(side);
        QPointF const& top = edge.top();
        QPointF const& bottom = edge.bottom();
        double const margin = 0.5 * tolerance(side);
        bool const crosses = top.y() <= row && row < bottom.y();
        Meeting result {{}, tolerance(side), {side.subpath, crosses ? edge.direction() : 0}};
        double const height = bottom.y() - top.y();
        if (height > 0.0) {
            for (double const y : {row - margin, row + margin}) {
                double const part = std::clamp((y - top.y()) / height, 0.0, 1.0);
                result.x.include(top.x() + part * (bottom.x() - top.x()));
            }
        } else {
            result.x.include(top.x());
            result.x.include(bottom.x());
        }
        return result;
    }

    /** One equation for all that lies between even stretches that count. */
    template <class Visit> static bool visitRow(std::vector<Meeting>& meetings, Visit const& visit)
    {
        std::sort(meetings.begin(), meetings.end(),
            [](Meeting const& a, Meeting const& b) { return a.x.start < b.x.start; });
        Equation equation;
        bool isEven = true;
        double reach = -std::numeric_limits<double>::infinity();
        double tolerance = 0.0;
        for (Meeting const& meeting : meetings) {
            double const gap = meeting.x.start - reach;
            if (isEven && gap >= std::min(tolerance, meeting.tolerance)) {
                simplify(equation);
                if (!equation.empty() && !visit(equation))
                    return false;
                equation.clear();
            }
            if (meeting.term.factor != 0) {
                equation.push_back(meeting.term);
                isEven = !isEven;
            }
            if (meeting.x.end > reach) {
                reach = meeting.x.end;
                tolerance = meeting.tolerance;
            }
        }
        simplify(equation);
        return equation.empty() || visit(equation);
    }

    FlatPath const& m_path;
    std::vector<Subpath const*> m_subpaths;
    std::vector<Side> m_sides; ///< from the top down
    std::vector<double> m_rows; ///< from the top down
    bool m_hasEnoughRows = false;
};

bool holdsAsItIs(Equation const& equation)
{
    return std::accumulate(equation.begin(), equation.end(), 0, [](int sum, Term const& term) {
        return sum + term.factor;
    }) == 0;
}

/** The product of their directions with which two terms have opposite signs. */
int cancellingProduct(Term const& a, Term const& b)
{
    return (a.factor > 0) == (b.factor > 0) ? -1 : 1;
}

/** Draws the conclusion from an equation of one or two terms; false if there is none. */
bool conclude(Directions& directions, Equation const& equation)
{
    if (equation.size() != 2)
        return equation.empty();
    Term const& a = equation.front();
    Term const& b = equation.back();
    return std::abs(a.factor) == std::abs(b.factor)
        && directions.relate(a.subpath, b.subpath, cancellingProduct(a, b));
}

/** What is known about directions, and the equations from which nothing follows yet. */
struct Knowledge
{
    Directions directions;
    std::vector<Equation> equations;

    /** Draws all conclusions there are; false if they contradict each other. */
    bool concludeAll()
    {
        for (std::size_t before = equations.size() + 1; before > equations.size();) {
            before = equations.size();
            std::vector<Equation> rest;
            for (Equation const& equation : equations) {
                Equation const reduced = directions.reduced(equation);
                if (reduced.size() > 2)
                    rest.push_back(reduced);
                else if (!conclude(directions, reduced))
                    return false;
            }
            std::sort(rest.begin(), rest.end());
            rest.erase(std::unique(rest.begin(), rest.end()), rest.end());
            equations = std::move(rest);
        }
        return true;
    }

    std::size_t size() const
    {
        return std::accumulate(equations.begin(), equations.end(), directions.count(),
            [](std::size_t sum, Equation const& equation) { return sum + equation.size(); });
    }
};

/** Tries directions until all equations hold; false if none are found at a bearable cost. */
bool solve(Knowledge& knowledge)
{
    std::vector<Knowledge> trials {knowledge};
    std::size_t cost = 0;
    while (!trials.empty() && cost < maximumTrialCost) {
        Knowledge trial = std::move(trials.back());
        trials.pop_back();
        cost += trial.size();
        if (!trial.concludeAll())
            continue;
        if (trial.equations.empty()) {
            knowledge = std::move(trial);
            return true;
        }
        // Last in, first out: that two edges cancel each other is likelier.
        Term const a = trial.equations.front()[0];
        Term const b = trial.equations.front()[1];
        int const cancelling = cancellingProduct(a, b);
        for (int const product : {-cancelling, cancelling}) {
            trials.push_back(trial);
            trials.back().directions.relate(a.subpath, b.subpath, product);
        }
    }
    return false;
}

bool drawsAlike(GroupSweep const& sweep)
{
    bool isAlike = sweep.hasRows();
    sweep.visitEquations([&](Equation const& equation) {
        isAlike = isAlike && holdsAsItIs(equation);
        return isAlike;
    });
    return isAlike;
}

/** Whether both rules draw the path alike as it is. */
bool drawsAlike(FlatPath const& path)
{
    std::vector<Group> const groups = separateGroups(path.subpaths());
    return std::all_of(groups.begin(), groups.end(),
        [&](Group const& group) { return drawsAlike(GroupSweep(path, group)); });
}

/** Adds the subpaths of the group that are to be reversed; false if that does not help. */
bool orient(FlatPath const& path, Group const& group, std::vector<std::size_t>& reversed)
{
    GroupSweep const sweep(path, group);
    if (!sweep.hasRows())
        return false;
    Knowledge knowledge {Directions(group.size()), {}};
    bool isAlike = true;
    bool isPossible = true;
    sweep.visitEquations([&](Equation const& equation) {
        isAlike = isAlike && holdsAsItIs(equation);
        if (equation.size() > 2)
            knowledge.equations.push_back(equation);
        else
            isPossible = conclude(knowledge.directions, equation);
        return isPossible;
    });
    if (!isPossible || isAlike)
        return isPossible;
    if (!solve(knowledge))
        return false;
    for (std::size_t i = 0; i < group.size(); ++i) {
        if (knowledge.directions.direction(i) < 0)
            reversed.push_back(group[i]);
    }
    return true;
}

/** The elements of a path, which QPainterPath itself lets nobody change but for their place. */
class PathElements
{
public:
    explicit PathElements(QPainterPath const& path)
        : m_fillRule(path.fillRule())
    {
        for (int i = 0; i < path.elementCount(); ++i) {
            QPainterPath::Element const element = path.elementAt(i);
            m_points.push_back(element);
            m_types.push_back(element.type);
        }
    }

    void reverse(Subpath const& subpath)
    {
        auto const points = m_points.begin() + subpath.firstElement;
        std::reverse(points, points + subpath.elementCount);
        auto const types = m_types.begin() + subpath.firstElement;
        auto const end = types + subpath.elementCount;
        std::reverse(types + 1, end);
        // A curve is marked at the first of its three points, which was the last just now.
        for (auto type = types + 1; type != end; ++type) {
            if (*type == QPainterPath::CurveToElement)
                std::iter_swap(type, type - 2);
        }
    }

    /** False if QPainterPath would not take the elements as they are. */
    bool toPath(QPainterPath& path) const
    {
        path = QPainterPath();
        path.setFillRule(m_fillRule);
        int const count = static_cast<int>(m_types.size());
        // It drops segments without length, so places are given when all elements are there.
        for (int i = 0; i < count; ++i) {
            QPointF const place(i, 0.0);
            switch (m_types[static_cast<std::size_t>(i)]) {
            case QPainterPath::MoveToElement:
                path.moveTo(place);
                break;
            case QPainterPath::LineToElement:
                path.lineTo(place);
                break;
            case QPainterPath::CurveToElement:
                path.cubicTo(place, place + QPointF(1.0, 0.0), place + QPointF(2.0, 0.0));
                break;
            case QPainterPath::CurveToDataElement:
                break;
            }
        }
        if (path.elementCount() != count)
            return false;
        for (int i = 0; i < count; ++i) {
            QPointF const& point = m_points[static_cast<std::size_t>(i)];
            path.setElementPositionAt(i, point.x(), point.y());
        }
        return true;
    }

private:
    Qt::FillRule m_fillRule;
    std::vector<QPointF> m_points;
    std::vector<QPainterPath::ElementType> m_types;
};

/** What to reverse so that both rules draw alike a path meant even-odd; false if nothing helps. */
bool orient(FlatPath const& path, std::vector<std::size_t>& reversed)
{
    std::vector<Group> const groups = separateGroups(path.subpaths());
    return std::all_of(groups.begin(), groups.end(),
        [&](Group const& group) { return orient(path, group, reversed); });
}

} // namespace

OrientedPath orientedForBothRules(QPainterPath const& path)
{
    FlatPath const flat(path);
    if (!flat.isMeasurable())
        return {path, false};
    if (path.fillRule() == Qt::WindingFill)
        return {path, drawsAlike(flat)};

    std::vector<std::size_t> reversed;
    if (!orient(flat, reversed))
        return {path, false};
    if (reversed.empty())
        return {path, true};
    PathElements elements(path);
    for (std::size_t const index : reversed)
        elements.reverse(flat.subpaths()[index]);
    QPainterPath result;
    bool const isSame = elements.toPath(result) && drawsAlike(FlatPath(result));
    return {isSame ? result : path, isSame};
}
