// SPDX-License-Identifier: MIT
#include "panels/axiseditor.h"

#include "document/bindingrule.h"
#include "model/lengthtext.h"
#include "panels/numberbox.h"
#include "panels/rulebox.h"
#include "unitutil.h"

#include <QGridLayout>
#include <QLabel>

namespace {

constexpr double rateStep = 0.05; ///< of rates that are ratios

/** Distances from an edge are lengths, all other rates are ratios. */
bool isLengthRate(std::optional<qint16> rule)
{
    return rule && (*rule == KpReal::FromRight || *rule == KpReal::FromBottom);
}

bool hasRate(std::optional<qint16> rule)
{
    return rule && *rule != KpReal::Absolute && ruleOf(*rule) != unknownRule;
}

void showOptional(NumberBox& box, std::optional<QString> const& text, bool isMixed)
{
    if (text)
        box.showNumber(*text);
    else if (isMixed)
        box.showMixed();
    else
        box.showNone();
}

} // namespace

QString letterOf(Axis axis)
{
    return axis == Axis::Horizontal ? QStringLiteral("x") : QStringLiteral("y");
}

AxisEditor::AxisEditor(Axis axis, QWidget* parent)
    : QWidget(parent)
    , m_unitName(new QLabel(this))
    , m_rateUnit(new QLabel(this))
    , m_value(new NumberBox(QStringLiteral("Value of %1").arg(letterOf(axis)), this))
    , m_rule(new RuleBox(QStringLiteral("Rule of %1").arg(letterOf(axis)), this))
    , m_rate(new NumberBox(QStringLiteral("Rate of %1").arg(letterOf(axis)), this))
{
    auto* const grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setColumnStretch(1, 1);
    auto const addRow = [this, grid](QString const& text, QWidget* field, QWidget* behind) {
        int const row = grid->rowCount();
        auto* const label = new QLabel(text, this);
        label->setBuddy(field);
        grid->addWidget(label, row, 0);
        grid->addWidget(field, row, 1, 1, behind ? 1 : 2);
        if (behind)
            grid->addWidget(behind, row, 2);
    };
    bool const isHorizontal = axis == Axis::Horizontal;
    addRow(isHorizontal ? QStringLiteral("&x") : QStringLiteral("&y"), m_value, m_unitName);
    addRow(QStringLiteral("Rule"), m_rule, nullptr);
    addRow(QStringLiteral("Rate"), m_rate, m_rateUnit);
    connect(m_value, &NumberBox::entered, this, &AxisEditor::enterValue);
    connect(m_value, &NumberBox::stepped, this, &AxisEditor::stepValue);
    connect(m_rate, &NumberBox::entered, this, &AxisEditor::enterRate);
    connect(m_rate, &NumberBox::stepped, this, &AxisEditor::stepRate);
    connect(m_rule, QOverload<int>::of(&RuleBox::activated), this,
        [this](int rule) { Q_EMIT ruleChosen(static_cast<qint16>(rule)); });
    show({}, m_unit);
}

void AxisEditor::show(AxisState const& state, unsigned int unit)
{
    m_state = state;
    m_unit = unit;
    bool const isThere = state.count > 0;
    setEnabled(isThere);
    m_unitName->setText(UnitUtil::unitStr(unit));
    auto const value =
        state.value ? std::make_optional(lengthText(*state.value, unit)) : std::optional<QString>();
    showOptional(*m_value, value, isThere);
    if (isThere)
        m_rule->showRule(state.rule);
    else
        m_rule->showNone();
    showRate();
}

void AxisEditor::showRate()
{
    bool const isMixed = m_state.count > 0 && !m_state.rule;
    m_rate->setEnabled(isMixed || hasRate(m_state.rule));
    std::optional<QString> text;
    if (m_state.rate && hasRate(m_state.rule)) {
        text = isLengthRate(m_state.rule) ? lengthText(*m_state.rate, m_unit)
                                          : QString::number(*m_state.rate, 'g', 7);
    }
    showOptional(*m_rate, text, isMixed || hasRate(m_state.rule));
    m_rateUnit->setText(isLengthRate(m_state.rule) ? UnitUtil::unitStr(m_unit) : QString());
}

void AxisEditor::enterValue(QString const& text)
{
    if (auto const value = lengthFromText(text, m_unit))
        Q_EMIT valueEntered(*value);
}

void AxisEditor::stepValue(int steps)
{
    if (m_state.value)
        Q_EMIT valueEntered(*m_state.value + UnitUtil::unitToPixel(1.0 * steps, m_unit));
}

void AxisEditor::enterRate(QString const& text)
{
    auto const rate =
        isLengthRate(m_state.rule) ? lengthFromText(text, m_unit) : numberFromText(text);
    if (rate)
        Q_EMIT rateEntered(*rate);
}

void AxisEditor::stepRate(int steps)
{
    double const step = isLengthRate(m_state.rule) ? UnitUtil::unitToPixel(1.0, m_unit) : rateStep;
    if (m_state.rate)
        Q_EMIT rateEntered(*m_state.rate + steps * step);
}
