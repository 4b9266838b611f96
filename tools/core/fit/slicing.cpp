// SPDX-License-Identifier: MIT
#include "fit/slicing.h"

#include "common/text.h"
#include "document/shapebox.h"
#include "segmentkind_p.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

/** Places of a document, as parts of the side, are no more exact than this. */
constexpr double samePlace = 5e-6;

/** Beyond this part of a side that doubles, a coordinate is in the wrong place. */
constexpr double sameGrowth = 1e-4;

/** The rules along one side of the box. */
struct SideRules
{
    KpReal::Rule part;
    KpReal::Rule fromFarEdge;
    KpReal::Rule fromFarEdgeInPartsOfSmallerSide;
};

constexpr SideRules horizontalRules {
    KpReal::PartOfWidth, KpReal::FromRight, KpReal::FromRightPartOfSide};
constexpr SideRules verticalRules {
    KpReal::PartOfHeight, KpReal::FromBottom, KpReal::FromBottomPartOfSide};

/**
 * A rule that a coordinate could have. While the smaller side of the box stays, every rule is a
 * straight line through the coordinate's value, so that rules differ by their growth alone: by how
 * many units the coordinate moves when the side grows by one.
 */
struct Candidate
{
    KpReal real;
    double growth;
};

/** A candidate, and by how much its growth is off. */
struct Choice
{
    KpReal real;
    double error;
};

/** One side of the box with its two margins. */
class SlicedSide
{
public:
    /** @param smallerSide of the box, or 0 where margins keep their width */
    SlicedSide(
        double length, double nearMargin, double farMargin, double smallerSide, SideRules rules)
        : m_length(length)
        , m_near(nearMargin)
        , m_far(farMargin)
        , m_smallerSide(smallerSide)
        , m_rules(rules)
    {
    }

    double length() const { return m_length; }

    /** The rule for a place. */
    Choice place(double at) const
    {
        if (isInNearMargin(at))
            return {fixed(at).real, 0.0};
        if (isInFarMargin(at))
            return {movingWithFarEdge(at), 0.0};
        Candidate const proportion = inProportion(at);
        return {proportion.real, std::abs(proportion.growth - growth(at))};
    }

    /** The rule for a distance on both sides of a place. */
    Choice radius(double centre, double distance) const
    {
        double const after = growth(centre + distance) - growth(centre);
        double const before = growth(centre) - growth(centre - distance);
        auto const error = [=](Candidate const& candidate) {
            return std::max(
                std::abs(candidate.growth - after), std::abs(candidate.growth - before));
        };
        // Both distances together grow by no more than the side does, so that one which moves with
        // the far edge is never nearer.
        Candidate const rigid = fixed(distance);
        Candidate const proportion = inProportion(distance);
        bool const isRigid =
            hasMargins() && (error(rigid) <= sameGrowth || error(rigid) < error(proportion));
        Candidate const& best = isRigid ? rigid : proportion;
        return {best.real, error(best)};
    }

private:
    bool hasMargins() const { return m_near > 0.0 || m_far > 0.0; }

    bool isInNearMargin(double at) const
    {
        return hasMargins() && at <= m_near + samePlace * m_length;
    }

    bool isInFarMargin(double at) const
    {
        return hasMargins() && at >= m_length - m_far - samePlace * m_length;
    }

    double growth(double at) const
    {
        if (isInNearMargin(at))
            return 0.0;
        if (isInFarMargin(at))
            return 1.0;
        return (at - m_near) / (m_length - m_near - m_far);
    }

    Candidate fixed(double value) const
    {
        if (m_smallerSide > 0.0)
            return {KpReal(KpReal::PartOfSide, value / m_smallerSide, value), 0.0};
        return {KpReal(KpReal::Absolute, 0.0, value), 0.0};
    }

    Candidate inProportion(double value) const
    {
        double const part = value / m_length;
        return {KpReal(m_rules.part, part, value), part};
    }

    KpReal movingWithFarEdge(double value) const
    {
        double const distance = m_length - value;
        if (m_smallerSide > 0.0)
            return {m_rules.fromFarEdgeInPartsOfSmallerSide, distance / m_smallerSide, value};
        return {m_rules.fromFarEdge, distance, value};
    }

    double m_length;
    double m_near;
    double m_far;
    double m_smallerSide;
    SideRules m_rules;
};

class SliceBinder
{
public:
    SliceBinder(QSizeF const& box, Slices const& slices)
        : m_width(box.width(), slices.left, slices.right, smallerSide(box, slices), horizontalRules)
        , m_height(box.height(), slices.top, slices.bottom, smallerSide(box, slices), verticalRules)
        , m_growsCorners(slices.growsCorners)
    {
    }

    /** @param index of the segment */
    void bind(KpPathSeg& segment, int index)
    {
        KpPathSegEllipse const* const ellipse = segment.toEllipse();
        SegmentKind::forEachCoordinate(segment, [&](QString const& letter, KpReal& real) {
            bool const isHorizontal = runsAcross(letter);
            SlicedSide const& side = isHorizontal ? m_width : m_height;
            Choice const choice = ellipse && !isOfPoint(letter)
                ? side.radius(isHorizontal ? ellipse->pt.x.value : ellipse->pt.y.value, real.value)
                : side.place(real.value);
            bool const isBindable = std::isfinite(real.value) && std::isfinite(choice.real.rate)
                && std::isfinite(choice.error);
            if (isBindable)
                real = choice.real;
            if (isBindable && choice.error <= sameGrowth)
                return;
            QSizeF const box = testBox(isHorizontal);
            double const growth = (isHorizontal ? box.width() : box.height()) - side.length();
            m_inexact.push_back({index, letter, real.base, box,
                isBindable ? choice.error * growth : std::numeric_limits<double>::quiet_NaN()});
        });
    }

    std::vector<InexactBinding> takeInexact() { return std::move(m_inexact); }

private:
    static bool isOfPoint(QString const& letter)
    {
        return letter == SegmentKind::Letter::x() || letter == SegmentKind::Letter::y();
    }

    /** Whether the coordinates under this letter are measured along the width. */
    static bool runsAcross(QString const& letter)
    {
        return letter == SegmentKind::Letter::x() || letter == SegmentKind::Letter::a()
            || letter == SegmentKind::Letter::c();
    }

    /** 0 where margins keep their width. */
    static double smallerSide(QSizeF const& box, Slices const& slices)
    {
        return slices.growsCorners ? std::min(box.width(), box.height()) : 0.0;
    }

    /** Where an error is measured: in a box in which rules of different growth differ. */
    QSizeF testBox(bool isHorizontal) const
    {
        if (!m_growsCorners)
            return {2.0 * m_width.length(), 2.0 * m_height.length()};
        double const longer = 2.0 * std::max(m_width.length(), m_height.length());
        double const smaller = std::min(m_width.length(), m_height.length());
        return isHorizontal ? QSizeF(longer, smaller) : QSizeF(smaller, longer);
    }

    SlicedSide m_width;
    SlicedSide m_height;
    bool m_growsCorners;
    std::vector<InexactBinding> m_inexact;
};

/** Why a side cannot have these two margins; empty if it can. */
QString sideFault(double length, double nearMargin, double farMargin, QString const& names,
    QString const& nameOfLength)
{
    // Written so that NaN fails. Sums of decimal fractions are not exact.
    if (nearMargin + farMargin <= length * (1.0 + samePlace))
        return QString();
    return QStringLiteral("the %1 margins, %2 and %3, do not fit into a %4 of %5")
        .arg(
            names, numberText(nearMargin), numberText(farMargin), nameOfLength, numberText(length));
}

} // namespace

QString slicesFault(Slices const& slices, QSizeF const& box)
{
    auto const isSide = [](double side) { return side > 0.0 && side <= greatestBoxSide; };
    if (!isSide(box.width()) || !isSide(box.height()))
        return QStringLiteral("no box to slice: %1").arg(sizeText(box));
    for (double const margin : {slices.left, slices.top, slices.right, slices.bottom}) {
        if (!(margin >= 0.0))
            return QStringLiteral("a margin of %1").arg(numberText(margin));
    }
    QString fault = sideFault(box.width(), slices.left, slices.right,
        QStringLiteral("left and right"), QStringLiteral("width"));
    if (!fault.isEmpty())
        return fault;
    return sideFault(box.height(), slices.top, slices.bottom, QStringLiteral("upper and lower"),
        QStringLiteral("height"));
}

std::vector<InexactBinding> bindToSlices(
    KpPathSegList& list, QSizeF const& box, Slices const& slices)
{
    SliceBinder binder(box, slices);
    for (int i = 0; i < list.segs.count(); ++i)
        binder.bind(*list.segs.at(i), i);
    return binder.takeInexact();
}
