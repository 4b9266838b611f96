// SPDX-License-Identifier: MIT
#include "fit/structure.h"

#include "common/text.h"
#include "fit/alignment.h"
#include "fit/vanishedlines.h"

#include <QHash>
#include <QRegularExpression>

#include <algorithm>
#include <limits>

namespace {

constexpr double endless = std::numeric_limits<double>::infinity();

/** What it costs if some points obey no rule: more than all that extents tell. */
constexpr double costOfStrangePoints = 200.0;

/** What it costs if lines of one have to be lines of no length in the other: more than all else. */
constexpr double costOfOtherLines = 1000.0;

/** What is known of a shape before its steps are compared. */
struct Survey
{
    QVector<int> steps; ///< how many each subpath has, sorted
    QVector<int> curves; ///< how many of them are curves, sorted
    Extent extent;
};

int countCurves(Subpath const& subpath)
{
    return static_cast<int>(std::count_if(subpath.steps.begin(), subpath.steps.end(),
        [](DrawnStep const& step) { return step.isCurve; }));
}

std::vector<Survey> surveyed(std::vector<std::vector<Subpath>> const& shapes)
{
    std::vector<Survey> surveys;
    for (std::vector<Subpath> const& subpaths : shapes) {
        Survey survey {{}, {}, extentOf(subpaths)};
        for (Subpath const& subpath : subpaths) {
            survey.steps.append(static_cast<int>(subpath.steps.size()));
            survey.curves.append(countCurves(subpath));
        }
        std::sort(survey.steps.begin(), survey.steps.end());
        std::sort(survey.curves.begin(), survey.curves.end());
        surveys.push_back(survey);
    }
    return surveys;
}

std::vector<Extent> extentsOfEach(std::vector<Subpath> const& subpaths)
{
    std::vector<Extent> extents;
    extents.reserve(subpaths.size());
    for (Subpath const& subpath : subpaths)
        extents.push_back(extentOf({subpath}));
    return extents;
}

template <class Things> auto const& at(Things const& things, int index)
{
    return things[static_cast<std::size_t>(index)];
}

/** Names that importers make up count the shapes, so they say no more than the order. */
bool isMadeUp(QString const& name)
{
    static QRegularExpression const pattern(QStringLiteral("^path \\d+$"));
    return name.isEmpty() || pattern.match(name).hasMatch();
}

/** The index of each name; empty unless all shapes have names that differ and tell something. */
QHash<QString, int> indicesOfNames(Shapes const& shapes)
{
    QHash<QString, int> indices;
    for (std::size_t i = 0; i < shapes.size(); ++i) {
        if (isMadeUp(shapes[i].name) || indices.contains(shapes[i].name))
            return {};
        indices.insert(shapes[i].name, static_cast<int>(i));
    }
    return indices;
}

/** The shapes of `other` with the names of the reference's; empty unless all have one. */
std::vector<int> pairedByName(Shapes const& reference, Shapes const& other)
{
    QHash<QString, int> const indices = indicesOfNames(other);
    std::vector<int> partners;
    for (Shape const& shape : reference) {
        auto const found = indices.constFind(shape.name);
        if (found == indices.constEnd())
            return {};
        partners.push_back(*found);
    }
    return partners;
}

/** A subpath that corresponds to one of the reference once that has some more lines. */
struct AlignedSubpath
{
    Subpath subpath;
    std::vector<std::size_t> inReference; ///< as VanishedLines
};

/** Brings the shapes of one drawing into the order and the direction of those of the first. */
class DrawingAligner
{
public:
    using Subpaths = std::vector<Subpath>;

    /** @param number of the drawing, from 1 */
    DrawingAligner(SizedDrawing const& first, std::vector<Subpaths> const& references,
        SizedDrawing const& drawing, int number, double tolerance)
        : m_first(first)
        , m_references(references)
        , m_drawing(drawing)
        , m_number(number)
        , m_fitter({first.box, drawing.box}, tolerance)
    {
        for (Shape const& shape : drawing.shapes)
            m_others.push_back(subpathsOf(*shape.list, tolerance));
    }

    /** The subpaths of each shape; nothing if what differs has been reported. */
    std::optional<std::vector<std::vector<AlignedSubpath>>> align(Diagnostics& diagnostics) const
    {
        auto const fail = [&](QString const& what) {
            diagnostics.error(
                m_drawing.file, QStringLiteral("drawing %1%2").arg(m_number).arg(what));
            return std::nullopt;
        };
        if (m_references.size() != m_others.size()) {
            return fail(
                QStringLiteral(": ") + difference(QStringLiteral("path"), m_others, m_references));
        }
        std::vector<int> partners = partnersOfShapes();
        std::vector<std::vector<AlignedSubpath>> result;
        for (std::size_t i = 0; i < m_references.size(); ++i) {
            std::size_t const partner =
                partners.empty() ? i : static_cast<std::size_t>(partners[i]);
            Subpaths const& other = m_others[partner];
            auto aligned = alignedSubpaths(m_references[i], other);
            if (!aligned) {
                return fail(QStringLiteral(", %1: %2")
                                .arg(callOf(partner), differenceOf(m_references[i], other)));
            }
            warnOfFlags(i, partner, diagnostics);
            result.push_back(std::move(*aligned));
        }
        return result;
    }

private:
    template <class Things>
    static QString difference(QString const& noun, Things const& things, Things const& references)
    {
        return QStringLiteral("%1 where drawing 1 has %2")
            .arg(countText(static_cast<qint64>(things.size()), noun))
            .arg(references.size());
    }

    /** What the shape is called in messages. */
    QString callOf(std::size_t index) const
    {
        QString const& name = m_drawing.shapes[index].name;
        return isMadeUp(name) ? QStringLiteral("path %1").arg(index + 1)
                              : QStringLiteral("path %1 \"%2\"").arg(index + 1).arg(name);
    }

    std::vector<int> partnersOfShapes() const
    {
        std::vector<int> partners = pairedByName(m_first.shapes, m_drawing.shapes);
        if (!partners.empty())
            return partners;
        std::vector<Survey> const references = surveyed(m_references);
        std::vector<Survey> const others = surveyed(m_others);
        return paired(static_cast<int>(others.size()), [&](int reference, int other) {
            if (reference == other && fitAsTheyAre(static_cast<std::size_t>(reference)))
                return 0.0;
            Survey const& left = at(references, reference);
            Survey const& right = at(others, other);
            if (left.curves != right.curves)
                return endless;
            double const cost = strangeness(left.extent, right.extent, m_fitter);
            if (left.steps != right.steps)
                return cost + costOfOtherLines;
            return cost + (fitTurned(reference, other) ? 0.0 : costOfStrangePoints);
        });
    }

    bool fitAsTheyAre(std::size_t shape) const
    {
        return std::equal(m_references[shape].begin(), m_references[shape].end(),
            m_others[shape].begin(), m_others[shape].end(),
            [this](Subpath const& reference, Subpath const& other) {
                return fitsAsItIs(reference, other, m_fitter);
            });
    }

    /** Likewise two shapes, of which only those with one subpath are compared. */
    bool fitTurned(int reference, int other) const
    {
        Subpaths const& left = at(m_references, reference);
        Subpaths const& right = at(m_others, other);
        return left.size() != 1 || right.size() != 1 || fitTurned(left.front(), right.front());
    }

    std::optional<std::vector<AlignedSubpath>> alignedSubpaths(
        Subpaths const& references, Subpaths const& others) const
    {
        if (references.size() != others.size())
            return std::nullopt;
        std::vector<Extent> const referenceExtents = extentsOfEach(references);
        std::vector<Extent> const extents = extentsOfEach(others);
        std::vector<int> const partners =
            paired(static_cast<int>(others.size()), [&](int reference, int other) {
                Subpath const& left = at(references, reference);
                Subpath const& right = at(others, other);
                if (reference == other && fitsAsItIs(left, right, m_fitter))
                    return 0.0;
                if (countCurves(left) != countCurves(right))
                    return endless;
                if (!canAlign(left, right))
                    return costOfOtherLines
                        + strangeness(
                            at(referenceExtents, reference), at(extents, other), m_fitter);
                return strangeness(at(referenceExtents, reference), at(extents, other), m_fitter)
                    + (fitTurned(left, right) ? 0.0 : costOfStrangePoints);
            });
        if (partners.size() != references.size())
            return std::nullopt;
        std::vector<AlignedSubpath> result;
        for (std::size_t i = 0; i < references.size(); ++i) {
            auto subpath = alignedSubpath(references[i], at(others, partners[i]));
            if (!subpath)
                return std::nullopt;
            result.push_back(std::move(*subpath));
        }
        return result;
    }

    /** Whether all points obey rules once the other has the start and the direction of the first. */
    bool fitTurned(Subpath const& reference, Subpath const& other) const
    {
        std::size_t const steps = reference.steps.size() + 1;
        if (steps > m_stepsLeft)
            return true;
        m_stepsLeft -= steps;
        auto const turned = aligned(reference, other, m_fitter);
        return turned && fitsAsItIs(reference, *turned, m_fitter);
    }

    std::optional<AlignedSubpath> alignedSubpath(
        Subpath const& reference, Subpath const& other) const
    {
        auto asDrawn = aligned(reference, other, m_fitter);
        if (asDrawn && fitsAsItIs(reference, *asDrawn, m_fitter))
            return AlignedSubpath {std::move(*asDrawn), {}};
        if (auto completed = completedSubpath(reference, other))
            return completed;
        if (asDrawn)
            return AlignedSubpath {std::move(*asDrawn), {}};
        return std::nullopt;
    }

    /** With the lines that have no length at one of the sizes, if these are all that is missing. */
    std::optional<AlignedSubpath> completedSubpath(
        Subpath const& reference, Subpath const& other) const
    {
        std::optional<AlignedSubpath> best;
        VanishedLines::Cost least = std::numeric_limits<VanishedLines::Cost>::max();
        std::size_t const cells = (reference.steps.size() + 1) * (other.steps.size() + 1);
        for (Subpath& turned : turns(reference, other)) {
            if (cells > m_cellsLeft)
                break;
            m_cellsLeft -= cells;
            auto const lines = vanishedLines(reference, turned, m_fitter);
            if (!lines || lines->cost >= least)
                continue;
            least = lines->cost;
            putIn(turned, lines->inOther);
            best = AlignedSubpath {std::move(turned), lines->inReference};
        }
        return best;
    }

    /** The subpath as it is and backwards, and, of a short ring, from every start. */
    static Subpaths turns(Subpath const& reference, Subpath const& subpath)
    {
        constexpr std::size_t greatestRing = 100;
        Subpaths all;
        bool const isShortRing = reference.isRing && subpath.isRing
            && std::max(reference.steps.size(), subpath.steps.size()) <= greatestRing;
        for (Subpath const& directed : {subpath, reversed(subpath)}) {
            all.push_back(directed);
            for (std::size_t shift = 1; isShortRing && shift < directed.steps.size(); ++shift)
                all.push_back(rotated(directed, shift));
        }
        return all;
    }

    /** The first difference of two shapes that cannot be brought together. */
    static QString differenceOf(Subpaths const& references, Subpaths const& others)
    {
        if (references.size() != others.size())
            return difference(QStringLiteral("subpath"), others, references);
        for (bool const ofCurves : {true, false}) {
            qint64 const here = stepsOf(others, ofCurves);
            qint64 const there = stepsOf(references, ofCurves);
            if (here != there) {
                return QStringLiteral("%1 where drawing 1 has %2")
                    .arg(countText(
                        here, ofCurves ? QStringLiteral("curve") : QStringLiteral("line")))
                    .arg(there);
            }
        }
        return QStringLiteral("its lines and curves come in another order than in drawing 1");
    }

    static qint64 stepsOf(Subpaths const& subpaths, bool curves)
    {
        qint64 count = 0;
        for (Subpath const& subpath : subpaths) {
            count += std::count_if(subpath.steps.begin(), subpath.steps.end(),
                [curves](DrawnStep const& step) { return step.isCurve == curves; });
        }
        return count;
    }

    void warnOfFlags(std::size_t reference, std::size_t other, Diagnostics& diagnostics) const
    {
        KpPathSegList const& there = *m_first.shapes[reference].list;
        KpPathSegList const& here = *m_drawing.shapes[other].list;
        auto const warn = [&](bool isHere, bool isThere, QString const& what) {
            if (isHere == isThere)
                return;
            diagnostics.warning(m_drawing.file,
                QStringLiteral("drawing %1, %2: %3 in drawing 1 only; taken from there")
                    .arg(QString::number(m_number), callOf(other),
                        (isThere ? QString() : QStringLiteral("not ")) + what));
        };
        warn(!here.noFill, !there.noFill, QStringLiteral("filled"));
        warn(!here.noLine, !there.noLine, QStringLiteral("with a line"));
        auto const ruleThere = m_first.shapes[reference].fillRule;
        auto const ruleHere = m_drawing.shapes[other].fillRule;
        if (ruleThere && ruleHere && *ruleThere != *ruleHere) {
            diagnostics.warning(m_drawing.file,
                QStringLiteral(
                    "drawing %1, %2: another fill rule than in drawing 1; taken from there")
                    .arg(QString::number(m_number), callOf(other)));
        }
    }

    SizedDrawing const& m_first;
    std::vector<Subpaths> const& m_references;
    SizedDrawing const& m_drawing;
    int m_number;
    RuleFitter m_fitter;
    std::vector<Subpaths> m_others;
    /** How many pairs of steps may still be compared in search of lines that are not there. */
    mutable std::size_t m_cellsLeft = 1000000;
    /** How many steps may still be compared in search of partners; then their extents must do. */
    mutable std::size_t m_stepsLeft = 200000;
};

/** Adds a drawing to the shape; the drawings before it get the lines that only this one has. */
void append(std::vector<AlignedSubpath>& aligned, AlignedShape& shape)
{
    std::vector<Subpath> subpaths;
    for (std::size_t i = 0; i < aligned.size(); ++i) {
        for (std::vector<Subpath>& drawing : shape.drawings)
            putIn(drawing[i], aligned[i].inReference);
        subpaths.push_back(std::move(aligned[i].subpath));
    }
    shape.drawings.push_back(std::move(subpaths));
}

} // namespace

std::optional<std::vector<AlignedShape>> alignedShapes(
    std::vector<SizedDrawing> const& drawings, double tolerance, Diagnostics& diagnostics)
{
    SizedDrawing const& first = drawings.front();
    std::vector<AlignedShape> shapes;
    for (Shape const& shape : first.shapes)
        shapes.push_back({&shape, {subpathsOf(*shape.list, tolerance)}});
    for (std::size_t i = 1; i < drawings.size(); ++i) {
        std::vector<std::vector<Subpath>> references;
        references.reserve(shapes.size());
        for (AlignedShape const& shape : shapes)
            references.push_back(shape.drawings.front());
        DrawingAligner const aligner(
            first, references, drawings[i], static_cast<int>(i) + 1, tolerance);
        auto aligned = aligner.align(diagnostics);
        if (!aligned)
            return std::nullopt;
        for (std::size_t s = 0; s < shapes.size(); ++s)
            append((*aligned)[s], shapes[s]);
    }
    return shapes;
}
