// SPDX-License-Identifier: MIT
#include "panels/pointpanel.h"

#include "common/text.h"
#include "model/lengthtext.h"
#include "model/operations.h"
#include "model/rules.h"
#include "panels/axiseditor.h"
#include "panels/numberbox.h"
#include "unitutil.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QVBoxLayout>

#include <algorithm>
#include <array>

namespace {

constexpr int manyHandles = 1000; ///< of so many, numbers are not worth the time of each event
constexpr int slowInterval = 150; ///< between two refreshes then, in milliseconds

struct FillRuleChoice
{
    char const* text;
    std::optional<Qt::FillRule> rule;
};

std::array<FillRuleChoice, 3> const fillRules {{
    {"Not named", std::nullopt},
    {"Even-odd", Qt::OddEvenFill},
    {"Nonzero", Qt::WindingFill},
}};

/** How many of the handles move a coordinate of this axis: each radius moves one only. */
int countOf(KpPathSegList const& list, QVector<HandleId> const& handles, Axis axis)
{
    return static_cast<int>(
        std::count_if(handles.cbegin(), handles.cend(), [&list, axis](HandleId id) {
            auto const handle = handleOf(list, id);
            return handle && (axis == Axis::Horizontal ? handle->x : handle->y);
        }));
}

} // namespace

PointPanel::PointPanel(
    ShapeDocument& document, Selection& selection, ViewSettings& settings, QWidget* parent)
    : QWidget(parent)
    , m_document(document)
    , m_selection(selection)
    , m_settings(settings)
{
    setAccessibleName(QStringLiteral("Points and rules"));
    auto* const whole = new QVBoxLayout(this);
    whole->addWidget(newPointGroup());
    whole->addWidget(newOutlineGroup());
    whole->addWidget(newBoxGroup());
    whole->addStretch(1);
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &PointPanel::refresh);
    connect(&document, &ShapeDocument::workingChanged, this, &PointPanel::scheduleRefresh);
    connect(&selection, &Selection::changed, this, &PointPanel::scheduleRefresh);
    connect(&settings, &ViewSettings::changed, this, &PointPanel::scheduleRefresh);
    refresh();
}

QGroupBox* PointPanel::newPointGroup()
{
    auto* const group = new QGroupBox(QStringLiteral("Points"), this);
    auto* const column = new QVBoxLayout(group);
    m_points = new QLabel(group);
    m_x = new AxisEditor(Axis::Horizontal, group);
    m_y = new AxisEditor(Axis::Vertical, group);
    column->addWidget(m_points);
    column->addWidget(m_x);
    column->addSpacing(6);
    column->addWidget(m_y);
    connectAxis(Axis::Horizontal, *m_x);
    connectAxis(Axis::Vertical, *m_y);
    return group;
}

void PointPanel::connectAxis(Axis axis, AxisEditor& editor)
{
    connect(&editor, &AxisEditor::valueEntered, this, [this, axis](double value) {
        changeAxis(axis, QString(), [=](WorkingShape& shape, QVector<HandleId> const& handles) {
            return setValue(shape, handles, axis, value);
        });
    });
    connect(&editor, &AxisEditor::ruleChosen, this, [this, axis](qint16 rule) {
        changeAxis(axis, QStringLiteral("rule of "),
            [=](WorkingShape& shape, QVector<HandleId> const& handles) {
                return setRule(shape, handles, axis, rule);
            });
    });
    connect(&editor, &AxisEditor::rateEntered, this, [this, axis](double rate) {
        changeAxis(axis, QStringLiteral("rate of "),
            [=](WorkingShape& shape, QVector<HandleId> const& handles) {
                return setRate(shape, handles, axis, rate);
            });
    });
}

QCheckBox* PointPanel::newFlag(QString const& text, bool KpPathSegList::*flag,
    QString const& stepToSet, QString const& stepToClear)
{
    auto* const box = new QCheckBox(text, this);
    connect(box, &QCheckBox::clicked, this, [=](bool isSet) {
        (*m_document.working().list).*flag = isSet;
        m_document.commit(isSet ? stepToSet : stepToClear);
    });
    return box;
}

QGroupBox* PointPanel::newOutlineGroup()
{
    m_outlineGroup = new QGroupBox(QStringLiteral("Outline"), this);
    m_closed = newFlag(QStringLiteral("&Closed"), &KpPathSegList::closed,
        QStringLiteral("Close outline"), QStringLiteral("Open outline"));
    m_noFill = newFlag(QStringLiteral("No &fill"), &KpPathSegList::noFill,
        QStringLiteral("Leave out fill"), QStringLiteral("Show fill"));
    m_noLine = newFlag(QStringLiteral("No &line"), &KpPathSegList::noLine,
        QStringLiteral("Leave out line"), QStringLiteral("Show line"));
    m_fillRule = new QComboBox(m_outlineGroup);
    m_fillRule->setAccessibleName(QStringLiteral("Fill rule"));
    m_fillRule->setObjectName(m_fillRule->accessibleName());
    for (FillRuleChoice const& choice : fillRules)
        m_fillRule->addItem(QString::fromLatin1(choice.text));
    connect(
        m_fillRule, QOverload<int>::of(&QComboBox::activated), this, &PointPanel::chooseFillRule);
    auto* const label = new QLabel(QStringLiteral("Fill &rule"), m_outlineGroup);
    label->setBuddy(m_fillRule);
    auto* const column = new QVBoxLayout(m_outlineGroup);
    for (QCheckBox* const flag : {m_closed, m_noFill, m_noLine})
        column->addWidget(flag);
    auto* const row = new QHBoxLayout;
    row->addWidget(label);
    row->addWidget(m_fillRule, 1);
    column->addLayout(row);
    return m_outlineGroup;
}

NumberBox* PointPanel::newSide(QString const& name, bool isWidth)
{
    auto* const side = new NumberBox(name, this);
    connect(side, &NumberBox::entered, this, [this, isWidth](QString const& text) {
        if (auto const length = lengthFromText(text, m_settings.unit()))
            enterSide(isWidth, *length);
    });
    connect(side, &NumberBox::stepped, this, [this, isWidth](int steps) {
        QSizeF const box = m_document.working().box;
        double const length = UnitUtil::unitToPixel(1.0 * steps, m_settings.unit());
        enterSide(isWidth, (isWidth ? box.width() : box.height()) + length);
    });
    return side;
}

QGroupBox* PointPanel::newBoxGroup()
{
    m_boxGroup = new QGroupBox(QStringLiteral("Box"), this);
    m_width = newSide(QStringLiteral("Width of the box"), true);
    m_height = newSide(QStringLiteral("Height of the box"), false);
    m_unitName = new QLabel(m_boxGroup);
    auto* const row = new QHBoxLayout(m_boxGroup);
    row->addWidget(m_width, 1);
    row->addWidget(new QLabel(QStringLiteral("\u00d7"), m_boxGroup));
    row->addWidget(m_height, 1);
    row->addWidget(m_unitName);
    return m_boxGroup;
}

void PointPanel::scheduleRefresh()
{
    if (!m_timer.isActive())
        m_timer.start(m_selection.handles().size() > manyHandles ? slowInterval : 0);
}

void PointPanel::refresh()
{
    showAxis(Axis::Horizontal, *m_x);
    showAxis(Axis::Vertical, *m_y);
    m_points->setText(pointsText());
    WorkingShape const& shape = m_document.working();
    m_outlineGroup->setEnabled(m_document.hasCurrent());
    m_boxGroup->setEnabled(m_document.hasCurrent());
    m_closed->setChecked(shape.list->closed);
    m_noFill->setChecked(shape.list->noFill);
    m_noLine->setChecked(shape.list->noLine);
    for (std::size_t i = 0; i < fillRules.size(); ++i) {
        if (fillRules[i].rule == shape.fillRule)
            m_fillRule->setCurrentIndex(static_cast<int>(i));
    }
    unsigned int const unit = m_settings.unit();
    m_width->showNumber(lengthText(shape.box.width(), unit));
    m_height->showNumber(lengthText(shape.box.height(), unit));
    m_unitName->setText(UnitUtil::unitStr(unit));
}

void PointPanel::showAxis(Axis axis, AxisEditor& editor)
{
    KpPathSegList const& list = *m_document.working().list;
    QVector<HandleId> const& handles = m_selection.handles();
    editor.show({countOf(list, handles, axis), commonValue(list, handles, axis),
                    commonRule(list, handles, axis), commonRate(list, handles, axis)},
        m_settings.unit());
}

QString PointPanel::pointsText() const
{
    QVector<HandleId> const& handles = m_selection.handles();
    if (handles.isEmpty())
        return QStringLiteral("Nothing is selected.");
    if (handles.size() > 1)
        return QStringLiteral("%1 are selected")
            .arg(countText(handles.size(), QStringLiteral("point")));
    QString const segment = QString::number(handles.first().segment + 1);
    switch (handles.first().kind) {
    case HandleKind::Control1:
        return QStringLiteral("First control point of segment %1").arg(segment);
    case HandleKind::Control2:
        return QStringLiteral("Second control point of segment %1").arg(segment);
    case HandleKind::RadiusA:
        return QStringLiteral("Horizontal radius of segment %1").arg(segment);
    case HandleKind::RadiusB:
        return QStringLiteral("Vertical radius of segment %1").arg(segment);
    default:
        return QStringLiteral("Point of segment %1").arg(segment);
    }
}

template <class Change> void PointPanel::changeAxis(Axis axis, QString const& what, Change change)
{
    WorkingShape& shape = m_document.working();
    QVector<HandleId> const handles = m_selection.handles();
    int const count = countOf(*shape.list, handles, axis);
    QString const points = count == 1
        ? QString()
        : QStringLiteral(" of %1").arg(countText(count, QStringLiteral("point")));
    if (change(shape, handles))
        m_document.commit(QStringLiteral("Change %1%2%3").arg(what, letterOf(axis), points));
    scheduleRefresh();
}

void PointPanel::resizeTo(QSizeF const& box)
{
    resizeBox(m_document.working(), box);
    if (!m_document.commit(QStringLiteral("Resize box")))
        m_document.revert();
}

void PointPanel::enterSide(bool isWidth, double length)
{
    QSizeF const box = m_document.working().box;
    resizeTo(isWidth ? QSizeF(length, box.height()) : QSizeF(box.width(), length));
}

void PointPanel::chooseFillRule(int index)
{
    m_document.working().fillRule = fillRules[static_cast<std::size_t>(index)].rule;
    m_document.commit(QStringLiteral("Change fill rule"));
}
