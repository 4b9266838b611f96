// SPDX-License-Identifier: MIT
#ifndef AXISEDITOR_H
#define AXISEDITOR_H

#include "fit/rulefit.h"

#include <QWidget>

#include <optional>

class NumberBox;
class RuleBox;
class QLabel;

/** What is shown of the coordinates of one axis. Nothing where they differ. */
struct AxisState
{
    int count = 0; ///< how many coordinates there are; without any, nothing can be entered
    std::optional<double> value; ///< in the outline's units
    std::optional<qint16> rule; ///< any number
    std::optional<double> rate; ///< as KpReal has it
};

/** "x" or "y". */
QString letterOf(Axis axis);

/** Value, rule and rate of the coordinates of one axis. */
class AxisEditor : public QWidget
{
    Q_OBJECT

public:
    /** Shows none yet. */
    AxisEditor(Axis axis, QWidget* parent);

    /** Shows these. @param unit a code of UnitUtil, for lengths */
    void show(AxisState const& state, unsigned int unit);

Q_SIGNALS:
    /** The user has entered a value, in the outline's units. */
    void valueEntered(double value);
    /** The user has chosen a rule, from 0 to 7. */
    void ruleChosen(qint16 rule);
    /** The user has entered a rate, as KpReal has it. */
    void rateEntered(double rate);

private:
    void showRate();
    void enterValue(QString const& text);
    void enterRate(QString const& text);
    void stepValue(int steps);
    void stepRate(int steps);

    AxisState m_state;
    unsigned int m_unit = 0;
    QLabel* m_unitName;
    QLabel* m_rateUnit;
    NumberBox* m_value;
    RuleBox* m_rule;
    NumberBox* m_rate;
};

#endif // AXISEDITOR_H
