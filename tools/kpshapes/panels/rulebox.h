// SPDX-License-Identifier: MIT
#ifndef RULEBOX_H
#define RULEBOX_H

#include <QComboBox>

#include <optional>

/** A choice of the binding rules, each with the colour of its marks and what it means. */
class RuleBox : public QComboBox
{
    Q_OBJECT

public:
    /** @param name for those who do not see it */
    RuleBox(QString const& name, QWidget* parent);

    /** Shows a rule, whatever number it is; without one, that there are several. */
    void showRule(std::optional<qint16> rule);
    /** Shows that there is nothing that could have a rule. */
    void showNone();

protected:
    void paintEvent(QPaintEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void show(int index, QString const& placeholder);
};

#endif // RULEBOX_H
