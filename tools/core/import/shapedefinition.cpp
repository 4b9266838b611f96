// SPDX-License-Identifier: MIT
#include "import/shapedefinition.h"

#include "common/text.h"
#include "import/fillorientation.h"
#include "kppath.h"
#include "kppathsegcurveto.h"
#include "kppathsegellipse.h"
#include "kppathseglineto.h"
#include "kppathsegmoveto.h"

#include <QStringList>
#include <QtMath>

#include <algorithm>
#include <cmath>

namespace {

constexpr double quarter = M_PI / 2.0;

/** What rounding may change of a length or an angle, as a part of it. */
constexpr double angleError = 1e-9;

/** The quarters of a turn, by number, that an arc enters. */
struct Quarters
{
    int first;
    int behind; ///< behind the last
};

/** Where an arc is cut into curves, in every box alike. */
struct Cuts
{
    bool areAtQuarters; ///< at the ends of the axes, or else in equal pieces
    int pieces; ///< above 0
};

/** Part of an ellipse whose axes lie along those of the page. */
struct Arc
{
    QPointF centre;
    QPointF radii; ///< none below 0
    double start = 0.0; ///< the parameter, in radians
    double sweep = 0.0; ///< of the parameter; below 0 against the clock

    QPointF pointAt(double parameter) const
    {
        return centre + QPointF(radii.x() * std::cos(parameter), radii.y() * std::sin(parameter));
    }

    Quarters quarters() const
    {
        double const end = start + sweep;
        return {qFloor(std::min(start, end) / quarter + angleError),
            qCeil(std::max(start, end) / quarter - angleError)};
    }

    /** The parameter where the piece of this number ends, from 1. */
    double cut(Cuts const& cuts, int number) const
    {
        if (!cuts.areAtQuarters)
            return start + sweep * number / cuts.pieces;
        Quarters const entered = quarters();
        return quarter * (sweep < 0.0 ? entered.behind - number : entered.first + number);
    }

    /** How the point moves with the parameter. */
    QPointF tangentAt(double parameter) const
    {
        return {-radii.x() * std::sin(parameter), radii.y() * std::cos(parameter)};
    }
};

/** One step of a path in one box. */
struct TracedStep
{
    QPointF begin;
    QPointF control1; ///< of a curve
    QPointF control2; ///< of a curve
    QPointF end;
    Arc arc; ///< if it is one
};

/** The steps of a path in one box; a step has the same index in all of them. */
using Trace = std::vector<TracedStep>;

/** The traces of a path, one for each box. */
using Traces = std::vector<Trace>;

/**
 * The parameter of the point of an ellipse that is seen from the centre at an angle. Both are the
 * same at whole quarters, and grow alike: the arc of any angles has the ends that it should have.
 */
double parameterAt(double angle, QPointF radii)
{
    if (radii.x() <= 0.0 || radii.y() <= 0.0)
        return angle;
    double const parameter = std::atan2(radii.x() * std::sin(angle), radii.y() * std::cos(angle));
    return angle + std::remainder(parameter - angle, 4.0 * quarter);
}

/** Computes the points of a path in one box. */
class Tracer
{
public:
    Tracer(PathDefinition const& path, QSizeF const& box, std::vector<double> const& values)
        : m_path(path)
        , m_scale(scaleOf(path.extent.width(), box.width()),
              scaleOf(path.extent.height(), box.height()))
        , m_values(values)
    {
    }

    Trace trace()
    {
        Trace result;
        result.reserve(m_path.steps.size());
        for (PathStep const& step : m_path.steps)
            result.push_back(traced(step));
        return result;
    }

private:
    static double scaleOf(double pathSide, double boxSide)
    {
        return pathSide > 0.0 ? boxSide / pathSide : 1.0;
    }

    double number(PathStep const& step, std::size_t index) const
    {
        return valueOf(step.numbers[index], m_values);
    }

    QPointF scaled(double x, double y) const { return {x * m_scale.x(), y * m_scale.y()}; }

    QPointF point(PathStep const& step, std::size_t index) const
    {
        return scaled(number(step, 2 * index), number(step, 2 * index + 1));
    }

    Arc arc(PathStep const& step) const
    {
        QPointF const radii(std::fabs(number(step, 0)), std::fabs(number(step, 1)));
        double const turn = GuideAngle::wholeTurn;
        double const angle = GuideAngle::toRadians(std::fmod(number(step, 2), turn));
        double const sweep = GuideAngle::toRadians(qBound(-turn, number(step, 3), turn));
        Arc result;
        result.radii = scaled(radii.x(), radii.y());
        result.start = parameterAt(angle, radii);
        result.sweep = parameterAt(angle + sweep, radii) - result.start;
        result.centre = m_pen - (result.pointAt(result.start) - result.centre);
        return result;
    }

    TracedStep traced(PathStep const& step)
    {
        TracedStep result;
        result.begin = m_pen;
        switch (step.kind) {
        case PathStep::Kind::Move:
            m_start = point(step, 0);
            m_pen = m_start;
            break;
        case PathStep::Kind::Line:
            m_pen = point(step, 0);
            break;
        case PathStep::Kind::Cubic:
            result.control1 = point(step, 0);
            result.control2 = point(step, 1);
            m_pen = point(step, 2);
            break;
        case PathStep::Kind::Quadratic:
            m_pen = point(step, 1);
            result.control1 = result.begin + (point(step, 0) - result.begin) * (2.0 / 3.0);
            result.control2 = m_pen + (point(step, 0) - m_pen) * (2.0 / 3.0);
            break;
        case PathStep::Kind::Arc:
            result.arc = arc(step);
            m_pen = result.arc.pointAt(result.arc.start + result.arc.sweep);
            break;
        case PathStep::Kind::Close:
            m_pen = m_start;
            break;
        }
        result.end = m_pen;
        return result;
    }

    PathDefinition const& m_path;
    QPointF const m_scale;
    std::vector<double> const& m_values;
    QPointF m_start;
    QPointF m_pen;
};

bool isFinite(QPointF point)
{
    return std::isfinite(point.x()) && std::isfinite(point.y());
}

bool isFinite(Trace const& trace)
{
    return std::all_of(trace.begin(), trace.end(), [](TracedStep const& step) {
        return isFinite(step.begin) && isFinite(step.control1) && isFinite(step.control2)
            && isFinite(step.end) && isFinite(step.arc.centre) && isFinite(step.arc.radii);
    });
}

/** Steps that draw, one after the other. */
struct StepRange
{
    std::size_t first; ///< index of a step
    std::size_t behind; ///< index behind the last one
    bool isClosed;
};

std::vector<StepRange> subpathsOf(PathDefinition const& path)
{
    std::vector<StepRange> result;
    std::size_t first = 0;
    auto const end = [&result, &first](std::size_t behind, bool isClosed) {
        if (behind > first)
            result.push_back({first, behind, isClosed});
        first = behind + 1;
    };
    for (std::size_t i = 0; i < path.steps.size(); ++i) {
        PathStep::Kind const kind = path.steps[i].kind;
        if (kind == PathStep::Kind::Move || kind == PathStep::Kind::Close)
            end(i, kind == PathStep::Kind::Close);
    }
    end(path.steps.size(), false);
    return result;
}

bool areNear(QPointF left, QPointF right, double size)
{
    QPointF const distance = left - right;
    return std::max(std::fabs(distance.x()), std::fabs(distance.y())) <= angleError * size;
}

double reach(QPointF point)
{
    return std::max(std::fabs(point.x()), std::fabs(point.y()));
}

/** Makes the outlines of one path, of one structure in all boxes. */
class OutlineMaker
{
public:
    OutlineMaker(PathDefinition const& path, Traces const& traces)
        : m_path(path)
        , m_traces(traces)
        , m_subpaths(subpathsOf(path))
    {
    }

    bool isEmpty() const { return m_subpaths.empty(); }

    std::vector<std::shared_ptr<KpPathSegList>> outlines() const
    {
        std::vector<std::shared_ptr<KpPathSegList>> result;
        for (std::size_t box = 0; box < m_traces.size(); ++box) {
            auto list = std::make_shared<KpPathSegList>();
            list->noFill = !m_path.isFilled;
            list->noLine = !m_path.isStroked;
            list->closed = m_subpaths.back().isClosed;
            result.push_back(list);
        }
        for (StepRange const& subpath : m_subpaths)
            append(subpath, result);
        return result;
    }

private:
    void append(StepRange const& subpath, std::vector<std::shared_ptr<KpPathSegList>>& lists) const
    {
        bool const isEllipse = isWholeEllipse(subpath);
        bool const hasLineBack = needsLineBack(subpath);
        std::vector<Cuts> cuts;
        for (std::size_t i = subpath.first; i < subpath.behind; ++i)
            cuts.push_back(cutsOf(i));
        for (std::size_t box = 0; box < lists.size(); ++box) {
            KpPathSegList& list = *lists[box];
            TracedStep const& first = m_traces[box][subpath.first];
            if (isEllipse) {
                Arc const& arc = first.arc;
                list.addTail(
                    new KpPathSegEllipse(arc.centre, arc.radii.x(), arc.radii.y(), nullptr));
                continue;
            }
            list.moveTo(first.begin);
            for (std::size_t i = subpath.first; i < subpath.behind; ++i)
                appendStep(list, m_path.steps[i].kind, m_traces[box][i], cuts[i - subpath.first]);
            if (hasLineBack)
                list.lineTo(first.begin);
        }
    }

    /** @param cuts of an arc, as cutsOf() gives them */
    static void appendStep(
        KpPathSegList& list, PathStep::Kind kind, TracedStep const& step, Cuts const& cuts)
    {
        if (kind == PathStep::Kind::Line)
            list.lineTo(step.end);
        else if (kind == PathStep::Kind::Arc)
            appendArc(list, step.arc, cuts);
        else
            list.curveTo(step.control1, step.control2, step.end);
    }

    static void appendArc(KpPathSegList& list, Arc const& arc, Cuts const& cuts)
    {
        double from = arc.start;
        for (int i = 1; i <= cuts.pieces; ++i) {
            double const to = i == cuts.pieces ? arc.start + arc.sweep : arc.cut(cuts, i);
            double const arm = 4.0 / 3.0 * std::tan((to - from) / 4.0);
            list.curveTo(arc.pointAt(from) + arm * arc.tangentAt(from),
                arc.pointAt(to) - arm * arc.tangentAt(to), arc.pointAt(to));
            from = to;
        }
    }

    /** How the arc at a step falls into curves. */
    Cuts cutsOf(std::size_t step) const
    {
        Quarters const quarters = m_traces.front()[step].arc.quarters();
        bool areSame = true;
        int pieces = 1;
        for (Trace const& trace : m_traces) {
            Arc const& arc = trace[step].arc;
            Quarters const others = arc.quarters();
            areSame = areSame && others.first == quarters.first && others.behind == quarters.behind
                && (arc.sweep < 0.0) == (m_traces.front()[step].arc.sweep < 0.0);
            pieces = std::max(pieces, qCeil(std::fabs(arc.sweep) / quarter - angleError));
        }
        if (areSame)
            return {true, std::max(1, quarters.behind - quarters.first)};
        return {false, pieces};
    }

    /** Whether the subpath is one arc once around: only that is one ellipse in every box. */
    bool isWholeEllipse(StepRange const& subpath) const
    {
        if (subpath.behind != subpath.first + 1
            || m_path.steps[subpath.first].kind != PathStep::Kind::Arc)
            return false;
        return std::all_of(m_traces.begin(), m_traces.end(), [&subpath](Trace const& trace) {
            double const sweep = std::fabs(trace[subpath.first].arc.sweep);
            return sweep >= (4.0 - angleError) * quarter;
        });
    }

    bool needsLineBack(StepRange const& subpath) const
    {
        if (!subpath.isClosed || subpath.behind == m_subpaths.back().behind)
            return false;
        return !std::all_of(m_traces.begin(), m_traces.end(), [&subpath](Trace const& trace) {
            QPointF const start = trace[subpath.first].begin;
            QPointF const end = trace[subpath.behind - 1].end;
            return areNear(start, end, reach(start) + reach(end));
        });
    }

    PathDefinition const& m_path;
    Traces const& m_traces;
    std::vector<StepRange> const m_subpaths;
};

/** Even-odd if the other rule would fill the outline differently. */
std::optional<Qt::FillRule> fillRuleOf(KpPathSegList const& list)
{
    if (list.noFill)
        return std::nullopt;
    KpPath elements;
    list.toPath(elements);
    QPainterPath path = elements.toPainterPath();
    path.setFillRule(Qt::OddEvenFill);
    OrientedPath const oriented = orientedForBothRules(path);
    bool const isSame = oriented.isSameForBothRules && oriented.path == path;
    return isSame ? std::nullopt : std::make_optional(Qt::OddEvenFill);
}

Diagnostic diagnosticAt(ShapeDefinition const& definition, QString const& file,
    Diagnostic::Severity severity, QString const& text)
{
    return {severity, file, definition.line, definition.column, text};
}

/** The values of the guides in each box. */
std::vector<std::vector<double>> valuesInBoxes(ShapeDefinition const& definition,
    std::vector<QSizeF> const& boxes, GuideAdjustments const& adjustments, QString const& file,
    Diagnostics& diagnostics)
{
    std::vector<std::vector<double>> result;
    QStringList undefined;
    for (QSizeF const& box : boxes) {
        Guides::Values const guides = definition.guides.values(box, adjustments);
        result.push_back(guides.values);
        undefined += guides.undefined;
    }
    undefined.removeDuplicates();
    if (!undefined.isEmpty()) {
        int const longest = 100;
        diagnostics.add(diagnosticAt(definition, file, Diagnostic::Severity::Warning,
            QStringLiteral("%1: guides without a value count as 0: %2")
                .arg(titleOf(definition), elided(undefined.join(QStringLiteral(", ")), longest))));
    }
    return result;
}

} // namespace

QString titleOf(ShapeDefinition const& definition)
{
    return definition.name.isEmpty() ? QStringLiteral("shape") : definition.name;
}

int numberCount(PathStep::Kind kind)
{
    switch (kind) {
    case PathStep::Kind::Move:
    case PathStep::Kind::Line:
        return 2;
    case PathStep::Kind::Cubic:
        return 6;
    case PathStep::Kind::Quadratic:
    case PathStep::Kind::Arc:
        return 4;
    case PathStep::Kind::Close:
        break;
    }
    return 0;
}

std::optional<std::vector<Shapes>> shapesInBoxes(ShapeDefinition const& definition,
    std::vector<QSizeF> const& boxes, GuideAdjustments const& adjustments, QString const& file,
    Diagnostics& diagnostics)
{
    auto const values = valuesInBoxes(definition, boxes, adjustments, file, diagnostics);
    std::vector<Shapes> result(boxes.size());
    int number = 0;
    for (PathDefinition const& path : definition.paths) {
        ++number;
        Traces traces;
        for (std::size_t box = 0; box < boxes.size(); ++box) {
            traces.push_back(Tracer(path, boxes[box], values[box]).trace());
            if (isFinite(traces.back()))
                continue;
            diagnostics.add(diagnosticAt(definition, file, Diagnostic::Severity::Error,
                QStringLiteral("%1: a coordinate is too large in a box of %2: left out")
                    .arg(titleOf(definition), sizeText(boxes[box]))));
            return std::nullopt;
        }
        OutlineMaker const maker(path, traces);
        if (maker.isEmpty() || boxes.empty())
            continue;
        auto const outlines = maker.outlines();
        QString const name = definition.paths.size() == 1
            ? definition.name
            : QStringLiteral("%1 path %2").arg(definition.name).arg(number).trimmed();
        auto const fillRule = fillRuleOf(*outlines.front());
        for (std::size_t box = 0; box < boxes.size(); ++box)
            result[box].push_back({name, boxes[box], fillRule, outlines[box]});
    }
    return result;
}
