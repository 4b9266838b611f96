// SPDX-License-Identifier: MIT
#include "fit/alignment.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numeric>

namespace {

/** How one subpath is turned to correspond to another. */
struct Turn
{
    bool isReversed = false;
    std::size_t shift = 0; ///< of a ring: where it starts
    double cost = 0.0; ///< how badly the points obey rules
};

/** How far two points are apart in parts of their boxes. */
double farness(
    QPointF const& left, QSizeF const& leftBox, QPointF const& right, QSizeF const& rightBox)
{
    double const dx = left.x() / leftBox.width() - right.x() / rightBox.width();
    double const dy = left.y() / leftBox.height() - right.y() / rightBox.height();
    return std::hypot(dx, dy);
}

/** How unlikely it is that two points correspond. */
int costOf(QPointF const& left, QPointF const& right, RuleFitter const& fitter)
{
    std::array<double, 2> const x {left.x(), right.x()};
    std::array<double, 2> const y {left.y(), right.y()};
    return fitter.strangeness(x.data(), Axis::Horizontal)
        + fitter.strangeness(y.data(), Axis::Vertical);
}

/** Likewise two steps, with the control points of curves. */
int costOf(DrawnStep const& left, DrawnStep const& right, RuleFitter const& fitter)
{
    int const cost = costOf(left.end, right.end, fitter);
    return left.isCurve && right.isCurve ? cost + costOf(left.control1, right.control1, fitter)
            + costOf(left.control2, right.control2, fitter)
                                         : cost;
}

/** Likewise two ellipses, whose radii and centres obey rules where their points do not. */
int costOf(DrawnEllipse const& left, DrawnEllipse const& right, RuleFitter const& fitter)
{
    return costOf(left.centre, right.centre, fitter)
        + costOf(QPointF(left.a, left.b), QPointF(right.a, right.b), fitter);
}

/** Where the pattern occurs in the text, in linear time (Knuth, Morris and Pratt). */
std::vector<std::size_t> occurrences(std::string const& pattern, std::string const& text)
{
    std::vector<std::size_t> border(pattern.size() + 1, 0);
    auto const advance = [&](std::size_t matched, char letter) {
        while (matched > 0 && (matched == pattern.size() || pattern[matched] != letter))
            matched = border[matched];
        return matched < pattern.size() && pattern[matched] == letter ? matched + 1 : matched;
    };
    for (std::size_t i = 1; i < pattern.size(); ++i)
        border[i + 1] = advance(border[i], pattern[i]);
    std::vector<std::size_t> found;
    std::size_t matched = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        matched = advance(matched, text[i]);
        if (matched == pattern.size())
            found.push_back(i + 1 - matched);
    }
    return found;
}

/** Compares points of a reference with those of a subpath that is turned in all ways. */
class TurnFinder
{
public:
    TurnFinder(Subpath const& reference, Subpath const& subpath, RuleFitter const& fitter)
        : m_reference(reference)
        , m_subpath(subpath)
        , m_turned(reversed(subpath))
        , m_fitter(fitter)
    {
    }

    std::optional<Turn> find() const
    {
        std::string const kinds = m_reference.kinds();
        bool const isPossible = m_subpath.kinds() == kinds;
        if (isPossible && isLikelyAsItIs())
            return Turn {};
        std::vector<Turn> turns = possibleTurns(kinds);
        if (turns.empty())
            return std::nullopt;
        return best(turns, isPossible);
    }

private:
    /** So many points tell the good turns from the bad ones. */
    static constexpr std::size_t sampledPoints = 32;
    /** So many of the good turns are looked at as a whole. */
    static constexpr std::size_t finalists = 8;

    Subpath const& source(bool isReversed) const { return isReversed ? m_turned : m_subpath; }

    /** All points obey rules, and most of them those that are usual for their axis. */
    bool isLikelyAsItIs() const
    {
        return fitsAsItIs(m_reference, m_subpath, m_fitter)
            && cost({}, 1) <= static_cast<double>(m_reference.steps.size());
    }

    std::vector<Turn> possibleTurns(std::string const& kinds) const
    {
        std::vector<Turn> turns;
        bool const isRing = m_reference.isRing && m_subpath.isRing;
        for (bool const isReversed : {false, true}) {
            std::string own = source(isReversed).kinds();
            if (isRing)
                own += own.substr(0, own.size() - 1);
            for (std::size_t const shift : occurrences(kinds, own))
                turns.push_back({isReversed, shift, 0.0});
        }
        return turns;
    }

    Turn best(std::vector<Turn>& turns, bool asItIsIsPossible) const
    {
        std::size_t const stride = 1 + m_reference.steps.size() / sampledPoints;
        for (Turn& turn : turns)
            turn.cost = cost(turn, stride);
        std::stable_sort(turns.begin(), turns.end(), isCheaper);
        turns.resize(std::min(turns.size(), finalists));
        if (asItIsIsPossible)
            turns.insert(turns.begin(), Turn {});
        for (Turn& turn : turns)
            turn.cost = cost(turn, 1);
        return *std::min_element(turns.begin(), turns.end(), isCheaper);
    }

    static bool isCheaper(Turn const& left, Turn const& right) { return left.cost < right.cost; }

    double cost(Turn const& turn, std::size_t stride) const
    {
        Subpath const& other = source(turn.isReversed);
        std::size_t const count = other.steps.size();
        // Of a ring that starts elsewhere, the start is the end of a step.
        double sum = turn.shift == 0 ? costOf(m_reference.start, other.start, m_fitter) : 0.0;
        double apart = 0.0;
        for (std::size_t i = 0; i < count; i += stride) {
            DrawnStep const& step = m_reference.steps[i];
            DrawnStep const& partner = other.steps[(i + turn.shift) % count];
            sum += costOf(step, partner, m_fitter);
            apart +=
                farness(step.end, m_fitter.boxes().first(), partner.end, m_fitter.boxes().last());
        }
        // Only between turns that are equally likely does the distance count.
        return sum > 0.0 ? sum + apart / (1.0 + apart) : 0.0;
    }

    Subpath const& m_reference;
    Subpath const& m_subpath;
    Subpath const m_turned;
    RuleFitter const& m_fitter;
};

/** Gives the cheapest pairs of all to one another; some references may be left without. */
std::vector<int> cheapestPairs(int count, std::function<double(int, int)> const& strangeness)
{
    struct Pair
    {
        double cost;
        int reference;
        int partner;
    };
    std::vector<Pair> pairs;
    for (int i = 0; i < count; ++i) {
        for (int j = 0; j < count; ++j) {
            if (double const cost = strangeness(i, j); std::isfinite(cost))
                pairs.push_back({cost, i, j});
        }
    }
    std::stable_sort(pairs.begin(), pairs.end(), [](Pair const& left, Pair const& right) {
        if (left.cost < right.cost || right.cost < left.cost)
            return left.cost < right.cost;
        return std::abs(left.reference - left.partner) < std::abs(right.reference - right.partner);
    });
    std::vector<int> partners(static_cast<std::size_t>(count), -1);
    std::vector<bool> isTaken(static_cast<std::size_t>(count), false);
    for (Pair const& pair : pairs) {
        auto const reference = static_cast<std::size_t>(pair.reference);
        auto const partner = static_cast<std::size_t>(pair.partner);
        if (partners[reference] < 0 && !isTaken[partner]) {
            partners[reference] = pair.partner;
            isTaken[partner] = true;
        }
    }
    return partners;
}

/** Infinite if one has no partner. */
double costOf(std::vector<int> const& partners, std::function<double(int, int)> const& strangeness)
{
    double sum = 0.0;
    for (std::size_t i = 0; i < partners.size(); ++i) {
        if (partners[i] < 0)
            return std::numeric_limits<double>::infinity();
        sum += strangeness(static_cast<int>(i), partners[i]);
    }
    return sum;
}

} // namespace

std::optional<Subpath> aligned(
    Subpath const& reference, Subpath const& subpath, RuleFitter const& fitter)
{
    if (!canAlign(reference, subpath))
        return std::nullopt;
    if (reference.steps.empty() || !reference.hasMove)
        return subpath;
    auto const turn = TurnFinder(reference, subpath, fitter).find();
    if (!turn)
        return std::nullopt;
    Subpath result = turn->isReversed ? reversed(subpath) : subpath;
    return turn->shift > 0 ? rotated(result, turn->shift) : result;
}

bool canAlign(Subpath const& reference, Subpath const& subpath)
{
    if (reference.hasMove != subpath.hasMove || reference.steps.size() != subpath.steps.size())
        return false;
    std::string const wanted = reference.kinds();
    std::string const kinds = subpath.kinds();
    if (kinds == wanted)
        return true;
    if (!subpath.hasMove)
        return false;
    std::string const backwards(kinds.rbegin(), kinds.rend());
    if (!reference.isRing || !subpath.isRing)
        return backwards == wanted;
    return (kinds + kinds).find(wanted) != std::string::npos
        || (backwards + backwards).find(wanted) != std::string::npos;
}

bool fitsAsItIs(Subpath const& reference, Subpath const& subpath, RuleFitter const& fitter)
{
    if (reference.hasMove != subpath.hasMove || reference.kinds() != subpath.kinds())
        return false;
    if (reference.ellipse && subpath.ellipse)
        return costOf(*reference.ellipse, *subpath.ellipse, fitter) < RuleFitter::impossible;
    if (costOf(reference.start, subpath.start, fitter) >= RuleFitter::impossible)
        return false;
    for (std::size_t i = 0; i < reference.steps.size(); ++i) {
        if (costOf(reference.steps[i], subpath.steps[i], fitter) >= RuleFitter::impossible)
            return false;
    }
    return true;
}

Extent extentOf(std::vector<Subpath> const& subpaths)
{
    double const endless = std::numeric_limits<double>::infinity();
    QPointF least(endless, endless);
    QPointF greatest(-endless, -endless);
    for (Subpath const& subpath : subpaths) {
        for (std::size_t i = 0; i <= subpath.steps.size(); ++i) {
            QPointF const point = subpath.point(i);
            least = {std::min(least.x(), point.x()), std::min(least.y(), point.y())};
            greatest = {std::max(greatest.x(), point.x()), std::max(greatest.y(), point.y())};
        }
    }
    return {
        QRectF(least, greatest), subpaths.size() == 1 ? subpaths.front().ellipse : std::nullopt};
}

double strangeness(Extent const& reference, Extent const& other, RuleFitter const& fitter)
{
    QRectF const& left = reference.bounds;
    QRectF const& right = other.bounds;
    int const cost = reference.ellipse && other.ellipse
        ? costOf(*reference.ellipse, *other.ellipse, fitter)
        : costOf(left.topLeft(), right.topLeft(), fitter)
            + costOf(left.bottomRight(), right.bottomRight(), fitter);
    double const apart =
        farness(left.center(), fitter.boxes().first(), right.center(), fitter.boxes().last());
    return cost > 0 ? cost + apart / (1.0 + apart) : 0.0;
}

std::vector<int> paired(int count, std::function<double(int, int)> const& strangeness)
{
    constexpr int greatestSearch = 1000;
    std::vector<int> asTheyAre(static_cast<std::size_t>(count));
    std::iota(asTheyAre.begin(), asTheyAre.end(), 0);
    double const cost = costOf(asTheyAre, strangeness);
    if (cost <= 0.0)
        return asTheyAre;
    if (count <= greatestSearch) {
        std::vector<int> pairs = cheapestPairs(count, strangeness);
        if (costOf(pairs, strangeness) < cost)
            return pairs;
    }
    return std::isfinite(cost) ? asTheyAre : std::vector<int>();
}
