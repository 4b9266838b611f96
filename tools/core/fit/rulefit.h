// SPDX-License-Identifier: MIT
#ifndef RULEFIT_H
#define RULEFIT_H

#include <QSizeF>
#include <QVector>
#include <QtGlobal>

#include <cstddef>

/** The direction of a coordinate, which tells what rule is customary for it. */
enum class Axis {
    Horizontal, ///< x, or the horizontal radius of an ellipse
    Vertical ///< y, or the vertical radius
};

/**
 * The axis of a real, by its index from 0 among those of its segment, or of a whole outline, in the
 * order of the document format: every segment has them in pairs, x before y.
 */
inline Axis axisOfReal(std::size_t index)
{
    return index % 2 == 0 ? Axis::Horizontal : Axis::Vertical;
}

/** A binding rule with its parameter. */
struct RuleChoice
{
    qint16 rule = 0; ///< from 0 to 7, as KpReal::Rule
    double parameter = 0.0; ///< what KpReal has as its rate, or as its value under rule 0
    double least = 0.0; ///< the least parameter that meets all samples within the tolerance
    double greatest = 0.0; ///< the greatest; below `least` where none does

    /** The value in a box, by KpReal::updateValue(). */
    double valueIn(QSizeF const& box) const;
};

/** How one coordinate follows its box. */
struct CoordinateFit
{
    RuleChoice choice; ///< the customary one of the rules that fit, or the nearest if none does
    double error = 0.0; ///< of `choice`, the largest of all samples, in units
    bool isExpressed = false; ///< whether some rule meets every sample within the tolerance
    /** Rules that fit as well, but give other values in some box; in the customary order. */
    QVector<RuleChoice> rivals;
};

/**
 * Finds the rule that a coordinate obeys from its values in several boxes.
 *
 * Each rule is a line `offset + gain * parameter` whose parameter is fitted by least squares, no
 * farther than the tolerance allows. Rules that are the same in every box count as one: rate 0 of
 * the width and rate 0 of the smaller side, say.
 */
class RuleFitter
{
public:
    /**
     * @param boxes what the samples are taken in: at least one, with sides above 0
     * @param tolerance how far a value may be off, in units; not negative
     */
    RuleFitter(QVector<QSizeF> boxes, double tolerance);

    /** In units. */
    double tolerance() const { return m_tolerance; }
    /** In the order of the samples. */
    QVector<QSizeF> const& boxes() const { return m_boxes; }

    /** @param values one for each box, in their order; finite */
    CoordinateFit fit(double const* values, Axis axis) const;

    /** What strangeness() is if no rule meets the values. */
    static constexpr int impossible = 16;

    /**
     * How unlikely it is that the values belong together: 0 if a rule of the coordinate's own
     * axis or of the smaller side meets them, 1 if only one of the other axis does, `impossible`
     * if none does.
     */
    int strangeness(double const* values, Axis axis) const;

private:
    struct Line
    {
        double offset;
        double gain;
    };

    static Line lineOf(qint16 rule, QSizeF const& box);
    Line const& line(qint16 rule, int box) const { return m_lines[rule * m_boxes.size() + box]; }
    RuleChoice fitted(qint16 rule, double const* values) const;
    bool isFeasible(qint16 rule, double const* values) const;
    bool isMetBy(qint16 rule, double parameter, double const* values) const;
    double errorOf(RuleChoice const& choice, double const* values) const;
    QVector<RuleChoice> candidates(double const* values, Axis axis) const;
    RuleChoice nearest(double const* values, Axis axis) const;

    QVector<QSizeF> m_boxes;
    double m_tolerance;
    QVector<Line> m_lines; ///< of each rule in each box
};

#endif // RULEFIT_H
