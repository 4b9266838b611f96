// SPDX-License-Identifier: MIT
#ifndef BOXPROPOSAL_H
#define BOXPROPOSAL_H

#include "fit/rulefit.h"

#include <QSizeF>
#include <QVector>

/** A drawing that would decide between rules that the drawings at hand do not tell apart. */
struct BoxProposal
{
    QSizeF box; ///< to be drawn for, in units
    qint16 rule; ///< that was taken, as KpReal::Rule
    qint16 rival; ///< that would do as well
    int coordinates; ///< for which the box decides between the two
};

/**
 * The box, or the few boxes, in which most of the rivals give other values than the rules taken:
 * of sides like those of the boxes at hand, their halves and their doubles.
 *
 * @param undecided those with rivals
 * @param fitter whose boxes did not decide
 */
QVector<BoxProposal> proposals(QVector<CoordinateFit> const& undecided, RuleFitter const& fitter);

#endif // BOXPROPOSAL_H
