// SPDX-License-Identifier: MIT
#ifndef SVGSTYLECOST_H
#define SVGSTYLECOST_H

#include <QHash>
#include <QString>
#include <QStringList>

#include <vector>

/** Any picture may have style sheets of this cost. */
constexpr double smallestStyleLimit = 50e6;
/** What style sheets may cost for each character of a long picture. */
constexpr double styleCostACharacter = 32.0;

/**
 * What it costs to apply the style sheets of an SVG picture to its elements.
 *
 * The painter of SVG compares each element with each selector, and parses the declarations of each
 * rule that fits anew: a megabyte can take minutes. The cost is at least the number of comparisons;
 * it does not matter in which order elements and style sheets come.
 */
class SvgStyleCost
{
public:
    /**
     * @param depth of the root is 1
     * @param classes its attribute `class`
     */
    void addElement(QString const& id, QString const& classes, int depth);

    /** A text in an element `style`. */
    void addSheet(QString const& text);

    /** In comparisons. */
    double cost() const;

private:
    struct Selector
    {
        QString key; ///< the class or id, with its sign, of all that it fits; empty for any
        int steps; ///< to elements around or beside the one that it fits
        bool looksBeside;
        int declarations; ///< of its rule
    };

    void addRule(QString const& selectors, int declarations);
    double costOf(Selector const& selector) const;

    std::vector<Selector> m_selectors;
    QHash<QString, int> m_elements; ///< how many there are with each class or id
    double m_count = 0.0; ///< of all elements
    double m_classes = 0.0; ///< characters of their classes
    double m_depths = 0.0; ///< the sum
    int m_greatestDepth = 0;
};

#endif // SVGSTYLECOST_H
