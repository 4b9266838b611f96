// SPDX-License-Identifier: MIT
#include "fit/outlinefit.h"

#include "common/samenumber.h"
#include "common/text.h"
#include "fit/structure.h"
#include "segmentkind_p.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

/** Beyond this, squares of coordinates leave the range in which least squares are exact enough. */
constexpr double greatestLength = 1e6;

/** Even exact drawings are computed: so much of the longest side may be lost on the way. */
constexpr double computingError = 1e-12;

bool isSide(double length)
{
    return length > 0.0 && length <= greatestLength;
}

bool areFinite(KpPathSegList const& list)
{
    return std::all_of(list.segs.cbegin(), list.segs.cend(), [](KpPathSeg* seg) {
        bool isFinite = true;
        SegmentKind::forEachReal(*seg, [&isFinite](KpReal const& real) {
            isFinite = isFinite && std::abs(real.value) <= 1e3 * greatestLength;
        });
        return isFinite;
    });
}

/** What forbids to learn from a drawing, or nothing. */
QString faultOf(SizedDrawing const& drawing)
{
    if (drawing.shapes.empty())
        return QStringLiteral("nothing is drawn in it");
    if (!isSide(drawing.box.width()) || !isSide(drawing.box.height())) {
        return QStringLiteral("a box of %1 is none to draw for: both sides must be above 0 and at "
                              "most a million units")
            .arg(sizeText(drawing.box));
    }
    for (Shape const& shape : drawing.shapes) {
        if (!areFinite(*shape.list))
            return QStringLiteral("a coordinate is no number, or too large");
    }
    return QString();
}

bool areUsable(std::vector<SizedDrawing> const& drawings, Diagnostics& diagnostics)
{
    for (std::size_t i = 0; i < drawings.size(); ++i) {
        SizedDrawing const& drawing = drawings[i];
        QString fault = faultOf(drawing);
        auto const same =
            std::find_if(drawings.begin(), drawings.begin() + static_cast<std::ptrdiff_t>(i),
                [&drawing](SizedDrawing const& other) {
                    return isSameNumber(other.box.width(), drawing.box.width())
                        && isSameNumber(other.box.height(), drawing.box.height());
                });
        if (fault.isEmpty() && same != drawings.begin() + static_cast<std::ptrdiff_t>(i)) {
            fault = QStringLiteral("its box of %1 is that of drawing %2: two drawings of one size "
                                   "tell nothing")
                        .arg(sizeText(drawing.box))
                        .arg(same - drawings.begin() + 1);
        }
        if (!fault.isEmpty()) {
            diagnostics.error(drawing.file, QStringLiteral("drawing %1: %2").arg(i + 1).arg(fault));
            return false;
        }
    }
    return true;
}

/** The reals of one segment in one drawing, in the order of the format. */
struct Numbers
{
    std::array<double, 6> at {};

    static Numbers of(QPointF const& point) { return {{point.x(), point.y()}}; }
    static Numbers of(DrawnStep const& step)
    {
        return {{step.end.x(), step.end.y(), step.control1.x(), step.control1.y(),
            step.control2.x(), step.control2.y()}};
    }
    static Numbers of(DrawnEllipse const& ellipse)
    {
        return {{ellipse.centre.x(), ellipse.centre.y(), ellipse.a, ellipse.b}};
    }
};

/** Makes the list of one shape, with a rule for each coordinate. */
class ShapeFitter
{
public:
    ShapeFitter(AlignedShape& shape, int index, FitOptions const& options, RuleFitter const& fitter,
        FitResult& result)
        : m_shape(shape)
        , m_index(index)
        , m_fitter(fitter)
        , m_result(result)
        , m_fitted(*shape.reference)
        , m_isEllipse(reference().size(), false)
    {
        m_fitted.box = fitter.boxes().first();
        m_fitted.list = std::make_shared<KpPathSegList>();
        m_fitted.list->closed = shape.reference->list->closed;
        m_fitted.list->noFill = shape.reference->list->noFill;
        m_fitted.list->noLine = shape.reference->list->noLine;
        for (std::size_t i = 0; i < m_isEllipse.size(); ++i)
            m_isEllipse[i] = isEllipseInAll(i, options.findsEllipses);
    }

    void fit()
    {
        directEllipses();
        for (std::size_t i = 0; i < reference().size(); ++i) {
            if (m_isEllipse[i])
                addEllipse(i);
            else
                addSteps(i);
        }
        m_fitted.list->updateValue(m_fitted.box.width(), m_fitted.box.height());
        m_result.shapes.push_back(std::move(m_fitted));
    }

private:
    std::vector<Subpath> const& reference() const { return m_shape.drawings.front(); }

    /** Whether the condition holds of a subpath in all drawings. */
    template <class Condition> bool holdsInAll(std::size_t subpath, Condition condition) const
    {
        return std::all_of(m_shape.drawings.begin(), m_shape.drawings.end(),
            [&](std::vector<Subpath> const& subpaths) { return condition(subpaths[subpath]); });
    }

    bool isRingInAll(std::size_t subpath) const
    {
        return holdsInAll(subpath, [](Subpath const& part) { return part.isRing; });
    }

    bool isEllipseInAll(std::size_t subpath, bool findsEllipses) const
    {
        return holdsInAll(subpath, [](Subpath const& part) { return part.isEllipseSegment; })
            || (findsEllipses && holdsInAll(subpath, [](Subpath const& part) {
                   return part.ellipse.has_value();
               }));
    }

    /**
     * An Ellipse segment runs clockwise. Where one was drawn the other way, as a hole, what is
     * around it is turned too, or else the outline gets the rule under which directions do not
     * count, or if even that would change it, the hole stays as it is.
     */
    void directEllipses()
    {
        int turned = 0;
        int asTheyAre = 0;
        for (std::size_t i = 0; i < m_isEllipse.size(); ++i) {
            if (m_isEllipse[i])
                ++(reference()[i].ellipse->isClockwise ? asTheyAre : turned);
        }
        if (turned == 0 || m_fitted.list->noFill || m_isEllipse.size() == 1)
            return;
        if (m_fitted.fillRule == Qt::WindingFill)
            keepTurnedEllipses();
        else if (asTheyAre == 0 && turned < static_cast<int>(m_isEllipse.size()))
            reverseOthers();
        else
            m_fitted.fillRule = Qt::OddEvenFill;
    }

    void keepTurnedEllipses()
    {
        for (std::size_t i = 0; i < m_isEllipse.size(); ++i)
            m_isEllipse[i] = m_isEllipse[i] && reference()[i].ellipse->isClockwise;
    }

    void reverseOthers()
    {
        for (std::vector<Subpath>& subpaths : m_shape.drawings) {
            for (std::size_t i = 0; i < subpaths.size(); ++i) {
                if (m_isEllipse[i])
                    continue;
                subpaths[i] = reversed(subpaths[i]);
                subpaths[i].isClosedByFlag = false;
            }
        }
    }

    void addEllipse(std::size_t subpath)
    {
        add(new KpPathSegEllipse(QPointF(), 0.0, 0.0, nullptr),
            [=](auto const& subpaths) { return Numbers::of(*subpaths[subpath].ellipse); });
    }

    void addSteps(std::size_t subpath)
    {
        Subpath const& drawn = reference()[subpath];
        if (drawn.hasMove) {
            add(new KpPathSegMoveTo(QPointF(), nullptr),
                [=](auto const& subpaths) { return Numbers::of(subpaths[subpath].start); });
        }
        // The line that the flag draws is no segment, unless it leads elsewhere in another drawing.
        bool const isImplied = drawn.isClosedByFlag && isRingInAll(subpath);
        std::size_t const count = drawn.steps.size() - (isImplied ? 1 : 0);
        for (std::size_t step = 0; step < count; ++step) {
            auto const numbers = [=](auto const& subpaths) {
                return Numbers::of(subpaths[subpath].steps[step]);
            };
            if (drawn.steps[step].isCurve)
                add(new KpPathSegCurveTo(QPointF(), QPointF(), QPointF(), nullptr), numbers);
            else
                add(new KpPathSegLineTo(QPointF(), nullptr), numbers);
        }
    }

    /** @param numbersIn gives the segment's numbers in the subpaths of a drawing */
    template <class NumbersIn> void add(KpPathSeg* segment, NumbersIn numbersIn)
    {
        int const index = m_fitted.list->segs.size();
        m_fitted.list->addTail(segment);
        m_numbers.clear();
        for (std::vector<Subpath> const& subpaths : m_shape.drawings)
            m_numbers.push_back(numbersIn(subpaths));
        std::size_t position = 0;
        SegmentKind::forEachCoordinate(*segment, [&](QString const& letter, KpReal& real) {
            m_values.clear();
            for (Numbers const& numbers : m_numbers)
                m_values.push_back(numbers.at[position]);
            Axis const axis = axisOfReal(position);
            ++position;
            note({m_index, index, letter, m_fitter.fit(m_values.data(), axis)}, real);
        });
    }

    void note(CoordinateFinding const& finding, KpReal& real)
    {
        RuleChoice const& choice = finding.fit.choice;
        real = KpReal(choice.rule, choice.rule == KpReal::Absolute ? 0.0 : choice.parameter,
            choice.parameter);
        ++m_result.coordinates;
        if (!finding.fit.isExpressed)
            m_result.inexact.append(finding);
        else if (!finding.fit.rivals.isEmpty())
            m_result.undecided.append(finding);
    }

    AlignedShape& m_shape;
    int m_index;
    RuleFitter const& m_fitter;
    FitResult& m_result;
    Shape m_fitted;
    std::vector<bool> m_isEllipse; ///< for each subpath
    std::vector<Numbers> m_numbers; ///< of the segment that is added, in each drawing
    std::vector<double> m_values; ///< of one coordinate, likewise
};

} // namespace

std::optional<FitResult> fitDrawings(
    std::vector<SizedDrawing> const& drawings, FitOptions const& options, Diagnostics& diagnostics)
{
    if (!areUsable(drawings, diagnostics))
        return std::nullopt;
    QVector<QSizeF> boxes;
    double longestSide = 0.0;
    for (SizedDrawing const& drawing : drawings) {
        boxes.append(drawing.box);
        longestSide = std::max({longestSide, drawing.box.width(), drawing.box.height()});
    }
    double const tolerance = std::max(options.tolerance, computingError * longestSide);
    auto shapes = alignedShapes(drawings, tolerance, diagnostics);
    if (!shapes)
        return std::nullopt;
    RuleFitter const fitter(boxes, tolerance);
    FitResult result;
    result.tolerance = tolerance;
    for (std::size_t i = 0; i < shapes->size(); ++i)
        ShapeFitter((*shapes)[i], static_cast<int>(i), options, fitter, result).fit();
    QVector<CoordinateFit> undecided;
    for (CoordinateFinding const& finding : qAsConst(result.undecided))
        undecided.append(finding.fit);
    result.proposals = proposals(undecided, fitter);
    return result;
}
