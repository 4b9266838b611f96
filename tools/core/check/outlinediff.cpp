// SPDX-License-Identifier: MIT
#include "check/outlinediff.h"

#include "check/sequencealignment.h"
#include "common/text.h"
#include "document/bindingrule.h"
#include "geometryformat_p.h"
#include "numbertext_p.h"
#include "segmentkind_p.h"

#include <QHash>
#include <QLocale>

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>

namespace {

using Side = OutlineDifference::Side;
using Outlines = std::vector<Outline>;

/** Comparisons of segments that may be spent on finding what belongs together: about a second. */
constexpr qint64 mostComparisons = 20000000;

/** Names of outlines are cut to this where they tell a place. */
constexpr int longestShownName = 60;

/** A difference of one in the sixth digit of a rate counts as none, one of two counts. */
constexpr double rateTolerance = 1.5e-6;

QString onlyHere()
{
    return QStringLiteral("only here");
}

QString quoted(QString const& name)
{
    return QStringLiteral("\"%1\"").arg(printable(name));
}

QString change(QString const& what, QString const& before, QString const& after)
{
    return QStringLiteral("%1 %2 -> %3").arg(what, before, after);
}

/** Equal, or both NaN. */
bool isExactlySame(double left, double right)
{
    return left == right || (std::isnan(left) && std::isnan(right));
}

/** Whether documents write the same six digits. */
bool isWrittenAlike(double left, double right)
{
    if (isExactlySame(left, right))
        return true;
    // Rounding moves neither by more than half of the sixth digit.
    double const greatest = std::max(std::abs(left), std::abs(right));
    if (std::isnan(left) || std::isnan(right) || std::abs(left - right) > 1.1e-5 * greatest)
        return false;
    return NumberText::fromReal(left) == NumberText::fromReal(right);
}

bool isSameRate(double left, double right)
{
    double const scale = std::max({1.0, std::abs(left), std::abs(right)});
    return isWrittenAlike(left, right)
        || (std::isfinite(scale) && std::abs(left - right) <= rateTolerance * scale);
}

/** In six digits if these tell the two apart, or else in as many as it takes. */
QString changeOfNumber(QString const& what, double before, double after)
{
    QString const short1 = numberText(before);
    QString const short2 = numberText(after);
    if (short1 != short2)
        return change(what, short1, short2);
    auto const exact = [](double number) {
        return QString::number(number, 'g', QLocale::FloatingPointShortest);
    };
    return change(what, exact(before), exact(after));
}

QString ruleText(qint16 base)
{
    int const rule = ruleOf(base);
    return rule == unknownRule ? QString::number(base) : QLatin1String(bindingRule(rule).name);
}

QString fillRuleName(std::optional<Qt::FillRule> const& rule)
{
    return rule ? fillRuleText(*rule) : QStringLiteral("none");
}

/** A flag of an outline, by the name of its attribute. */
struct Flag
{
    QString (*name)();
    bool KpPathSegList::*value;
};

constexpr std::array<Flag, 3> flags {{
    {GeometryFormat::closed, &KpPathSegList::closed},
    {GeometryFormat::noFill, &KpPathSegList::noFill},
    {GeometryFormat::noLine, &KpPathSegList::noLine},
}};

QString kindName(KpPathSeg const& seg)
{
    auto const* const kind =
        SegmentKind::find([&seg](auto const& known) { return known.type == seg.type; });
    return kind ? kind->name() : QString::number(seg.type);
}

/** The reals of one segment, without allocating. */
class Reals
{
public:
    explicit Reals(KpPathSeg& seg)
    {
        SegmentKind::forEachReal(seg, [this](KpReal const& real) { m_reals[m_count++] = &real; });
    }

    std::size_t count() const { return m_count; }
    KpReal const& at(std::size_t index) const { return *m_reals[index]; }

private:
    std::array<KpReal const*, 6> m_reals {};
    std::size_t m_count = 0;
};

/** Says which numbers are the same. */
class Sameness
{
public:
    explicit Sameness(std::optional<double> tolerance)
        : m_tolerance(tolerance)
    {
    }

    bool ofValues(double left, double right) const
    {
        if (!m_tolerance)
            return isWrittenAlike(left, right);
        return isExactlySame(left, right) || std::abs(left - right) <= *m_tolerance;
    }

    bool ofRates(KpReal const& left, KpReal const& right) const
    {
        bool const isUnused = left.base == KpReal::Absolute && right.base == KpReal::Absolute;
        return isUnused || isSameRate(left.rate, right.rate);
    }

    bool ofReals(KpReal const& left, KpReal const& right) const
    {
        return left.base == right.base && ofValues(left.value, right.value) && ofRates(left, right);
    }

    bool ofSegments(KpPathSeg& left, KpPathSeg& right) const
    {
        if (left.type != right.type)
            return false;
        Reals const lefts(left);
        Reals const rights(right);
        for (std::size_t i = 0; i < lefts.count(); ++i) {
            if (!ofReals(lefts.at(i), rights.at(i)))
                return false;
        }
        return true;
    }

    /** From 0 for segments that are the same to 1 for those of two kinds. */
    double distance(KpPathSeg& left, KpPathSeg& right) const
    {
        if (left.type != right.type)
            return 1.0;
        // Of one kind they are rather one that was changed.
        constexpr double farthest = 0.9;
        Reals const lefts(left);
        Reals const rights(right);
        int different = 0;
        for (std::size_t i = 0; i < lefts.count(); ++i) {
            different += lefts.at(i).base == rights.at(i).base ? 0 : 1;
            different += ofValues(lefts.at(i).value, rights.at(i).value) ? 0 : 1;
            different += ofRates(lefts.at(i), rights.at(i)) ? 0 : 1;
        }
        return farthest * different / (3.0 * static_cast<double>(lefts.count()));
    }

private:
    std::optional<double> m_tolerance;
};

/** What is different in two coordinates; empty if nothing is. */
QString changeOf(KpReal const& before, KpReal const& after, Sameness const& isSame)
{
    QStringList changes;
    if (before.base != after.base)
        changes << change(QStringLiteral("rule"), ruleText(before.base), ruleText(after.base));
    if (!isSame.ofRates(before, after))
        changes << changeOfNumber(QStringLiteral("rate"), before.rate, after.rate);
    if (!isSame.ofValues(before.value, after.value))
        changes << changeOfNumber(QStringLiteral("value"), before.value, after.value);
    return changes.join(QStringLiteral(", "));
}

/** Which of the numbers do not grow from the one before, when as few as possible are left out. */
std::vector<bool> outOfOrder(std::vector<int> const& numbers)
{
    // The longest growing sequence: for each length, where the smallest last number stands.
    std::vector<std::size_t> lastOf;
    std::vector<std::size_t> previous(numbers.size(), numbers.size());
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        auto const place = std::lower_bound(lastOf.begin(), lastOf.end(), numbers[i],
            [&numbers](std::size_t at, int number) { return numbers[at] < number; });
        if (place != lastOf.begin())
            previous[i] = *(place - 1);
        if (place == lastOf.end())
            lastOf.push_back(i);
        else
            *place = i;
    }
    std::vector<bool> isOut(numbers.size(), true);
    for (std::size_t at = lastOf.empty() ? numbers.size() : lastOf.back(); at < numbers.size();
         at = previous[at])
        isOut[at] = false;
    return isOut;
}

/** The index of each name that one outline alone has. */
QHash<QString, int> uniqueNames(Outlines const& outlines)
{
    constexpr int several = -1;
    QHash<QString, int> found;
    for (std::size_t i = 0; i < outlines.size(); ++i) {
        QString const& name = outlines[i].name;
        if (!name.isEmpty())
            found[name] = found.contains(name) ? several : static_cast<int>(i);
    }
    for (auto it = found.begin(); it != found.end();)
        it = it.value() == several ? found.erase(it) : std::next(it);
    return found;
}

/** Compares two documents. */
class Comparer
{
public:
    Comparer(Outlines const& before, Outlines const& after, std::optional<double> tolerance,
        DifferenceReport const& report)
        : m_before(before)
        , m_after(after)
        , m_isSame(tolerance)
        , m_report(report)
        , m_effort(mostComparisons)
    {
    }

    void compare()
    {
        std::vector<AlignedPair> const pairs = matchedOutlines();
        std::vector<bool> const isMoved = movedOf(pairs);
        for (std::size_t i = 0; i < pairs.size() && m_isWanted; ++i)
            comparePair(pairs[i], isMoved[i]);
    }

private:
    static Outline const& outlineAt(Outlines const& outlines, int index)
    {
        return outlines[static_cast<std::size_t>(index)];
    }

    static KpPathSeg& segmentAt(Outline const& outline, int index)
    {
        return *outline.list->segs.at(index);
    }

    // -- Which outlines belong together

    /** In the order of the first document, then what only the second holds. */
    std::vector<AlignedPair> matchedOutlines()
    {
        std::vector<int> restBefore;
        std::vector<int> restAfter;
        std::vector<AlignedPair> pairs = matchedByName(restBefore, restAfter);
        auto const before = [&](int i) -> Outline const& {
            return outlineAt(m_before, restBefore[static_cast<std::size_t>(i)]);
        };
        auto const after = [&](int i) -> Outline const& {
            return outlineAt(m_after, restAfter[static_cast<std::size_t>(i)]);
        };
        Sequences const rest {static_cast<int>(restBefore.size()),
            static_cast<int>(restAfter.size()),
            [&](int i, int j) { return areSame(before(i), after(j)); },
            [&](int i, int j) { return distance(before(i), after(j)); }};
        for (AlignedPair const& pair : alignedInOrder(rest, m_effort)) {
            pairs.push_back({pair.before < 0 ? -1 : before(pair.before).index - 1,
                pair.after < 0 ? -1 : after(pair.after).index - 1});
        }
        std::sort(pairs.begin(), pairs.end(), [](AlignedPair const& l, AlignedPair const& r) {
            if (l.before < 0 || r.before < 0)
                return l.before < 0 && r.before < 0 ? l.after < r.after
                                                    : r.before < 0 && l.before >= 0;
            return l.before < r.before;
        });
        return pairs;
    }

    /** @param restBefore gets the indices of those that have no counterpart of their name */
    std::vector<AlignedPair> matchedByName(
        std::vector<int>& restBefore, std::vector<int>& restAfter) const
    {
        QHash<QString, int> const namesBefore = uniqueNames(m_before);
        QHash<QString, int> const namesAfter = uniqueNames(m_after);
        std::vector<AlignedPair> pairs;
        for (Outline const& outline : m_before) {
            int const index = outline.index - 1;
            if (namesBefore.contains(outline.name) && namesAfter.contains(outline.name))
                pairs.push_back({index, namesAfter.value(outline.name)});
            else
                restBefore.push_back(index);
        }
        for (Outline const& outline : m_after) {
            if (!namesBefore.contains(outline.name) || !namesAfter.contains(outline.name))
                restAfter.push_back(outline.index - 1);
        }
        return pairs;
    }

    bool areSame(Outline const& before, Outline const& after)
    {
        int const count = before.list->segs.count();
        if (count != after.list->segs.count() || !changeOf(before, after).isEmpty())
            return false;
        int same = 0;
        while (same < count && m_isSame.ofSegments(segmentAt(before, same), segmentAt(after, same)))
            ++same;
        m_effort.spend(same);
        return same == count;
    }

    /** By their names, and by some segments from either end. */
    double distance(Outline const& before, Outline const& after) const
    {
        int const countBefore = before.list->segs.count();
        int const countAfter = after.list->segs.count();
        constexpr int mostSegments = 16;
        int const sample = std::min({countBefore, countAfter, mostSegments});
        double fromStart = 0.0;
        double fromEnd = 0.0;
        for (int i = 0; i < sample; ++i) {
            fromStart += m_isSame.distance(segmentAt(before, i), segmentAt(after, i));
            fromEnd += m_isSame.distance(
                segmentAt(before, countBefore - 1 - i), segmentAt(after, countAfter - 1 - i));
        }
        int const most = std::max(countBefore, countAfter);
        double const added =
            most == 0 ? 0.0 : 0.5 * std::abs(countBefore - countAfter) / static_cast<double>(most);
        double const changed = sample == 0 ? 0.0 : std::min(fromStart, fromEnd) / sample;
        return changed + added + (before.name == after.name ? 0.0 : 0.5);
    }

    /** For each pair whether it stands elsewhere among the others. */
    static std::vector<bool> movedOf(std::vector<AlignedPair> const& pairs)
    {
        std::vector<int> places;
        for (AlignedPair const& pair : pairs) {
            if (pair.before >= 0 && pair.after >= 0)
                places.push_back(pair.after);
        }
        std::vector<bool> const isOut = outOfOrder(places);
        std::vector<bool> isMoved(pairs.size(), false);
        std::size_t next = 0;
        for (std::size_t i = 0; i < pairs.size(); ++i)
            isMoved[i] = pairs[i].before >= 0 && pairs[i].after >= 0 && isOut[next++];
        return isMoved;
    }

    // -- What is different

    void report(OutlineDifference const& difference)
    {
        m_isWanted = m_isWanted && m_report(difference);
    }

    static OutlineDifference placeOf(Side side, Outline const& outline, QString const& what)
    {
        return {side, outline.index, outline.name, 0, QString(), QString(), what};
    }

    static OutlineDifference placeOf(
        Side side, Outline const& outline, int segment, QString const& what)
    {
        return {side, outline.index, outline.name, segment + 1,
            kindName(segmentAt(outline, segment)), QString(), what};
    }

    void comparePair(AlignedPair const& pair, bool isMoved)
    {
        if (pair.after < 0)
            report(placeOf(Side::Before, outlineAt(m_before, pair.before), onlyHere()));
        else if (pair.before < 0)
            report(placeOf(Side::After, outlineAt(m_after, pair.after), onlyHere()));
        else
            compareOutlines(
                outlineAt(m_before, pair.before), outlineAt(m_after, pair.after), isMoved);
    }

    /** What is different in the outlines themselves; empty if nothing is. */
    static QString changeOf(Outline const& before, Outline const& after)
    {
        QStringList changes;
        if (before.name != after.name)
            changes << change(QStringLiteral("name"), quoted(before.name), quoted(after.name));
        for (Flag const& flag : flags) {
            bool const isSet = (*before.list).*flag.value;
            if (isSet != (*after.list).*flag.value) {
                changes << change(
                    flag.name(), QString::number(isSet ? 1 : 0), QString::number(isSet ? 0 : 1));
            }
        }
        if (before.fillRule != after.fillRule) {
            changes << change(QStringLiteral("fill rule"), fillRuleName(before.fillRule),
                fillRuleName(after.fillRule));
        }
        return changes.join(QStringLiteral(", "));
    }

    void compareOutlines(Outline const& before, Outline const& after, bool isMoved)
    {
        QStringList changes;
        if (isMoved)
            changes << QStringLiteral("moved, outline %1 there").arg(after.index);
        if (QString const change = changeOf(before, after); !change.isEmpty())
            changes << change;
        if (!changes.isEmpty())
            report(placeOf(Side::Before, before, changes.join(QStringLiteral(", "))));
        compareSegments(before, after);
    }

    void compareSegments(Outline const& before, Outline const& after)
    {
        Sequences const segments {before.list->segs.count(), after.list->segs.count(),
            [&](int i, int j) {
                return m_isSame.ofSegments(segmentAt(before, i), segmentAt(after, j));
            },
            [&](int i, int j) {
                return m_isSame.distance(segmentAt(before, i), segmentAt(after, j));
            }};
        for (AlignedPair const& pair : alignedInOrder(segments, m_effort)) {
            if (!m_isWanted)
                return;
            if (pair.after < 0)
                report(placeOf(Side::Before, before, pair.before, onlyHere()));
            else if (pair.before < 0)
                report(placeOf(Side::After, after, pair.after, onlyHere()));
            else
                compareSegment(before, after, pair);
        }
    }

    void compareSegment(Outline const& before, Outline const& after, AlignedPair const& pair)
    {
        KpPathSeg& segment = segmentAt(before, pair.before);
        KpPathSeg& counterpart = segmentAt(after, pair.after);
        OutlineDifference difference = placeOf(Side::Before, before, pair.before, QString());
        if (segment.type != counterpart.type) {
            difference.what =
                change(QStringLiteral("kind"), kindName(segment), kindName(counterpart));
            report(difference);
            return;
        }
        Reals const reals(counterpart);
        std::size_t next = 0;
        SegmentKind::forEachCoordinate(segment, [&](QString const& letter, KpReal const& real) {
            difference.letter = letter;
            difference.what = ::changeOf(real, reals.at(next++), m_isSame);
            if (!difference.what.isEmpty())
                report(difference);
        });
    }

    Outlines const& m_before;
    Outlines const& m_after;
    Sameness const m_isSame;
    DifferenceReport const& m_report;
    Effort m_effort;
    bool m_isWanted = true;
};

} // namespace

QString differenceText(OutlineDifference const& difference)
{
    QString text = QStringLiteral("outline %1").arg(difference.outline);
    if (!difference.name.isEmpty())
        text += QLatin1Char(' ') + quoted(elided(difference.name, longestShownName));
    if (difference.segment > 0) {
        text += QStringLiteral(", segment %1 (").arg(difference.segment) + difference.kind
            + QLatin1Char(')');
    }
    if (!difference.letter.isEmpty())
        text += QStringLiteral(", ") + difference.letter;
    return text + QStringLiteral(": ") + difference.what;
}

void reportDifferences(OutlineDocument const& before, OutlineDocument const& after,
    std::optional<double> tolerance, DifferenceReport const& report)
{
    Comparer(before.outlines(), after.outlines(), tolerance, report).compare();
}
