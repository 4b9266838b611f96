// SPDX-License-Identifier: MIT
#include "panels/transformlist.h"

#include "colorutil.h"
#include "document/appearancexml.h"
#include "panels/steplist.h"
#include "panels/swatch.h"

#include <QComboBox>
#include <QDoubleSpinBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QToolButton>

namespace {

constexpr QSize itemSwatchSize(20, 14);
constexpr double greatestValue = 1000.0;
constexpr int valueDecimals = 3;
constexpr int visibleRows = 4;

/** A value with which the transform does something that is seen. */
double firstValue(QString const& name)
{
    if (name.endsWith(QLatin1String("Mod")))
        return 0.75;
    return name.endsWith(QLatin1String("Off")) ? 0.1 : 0.5;
}

QString textOf(ColourTransform const& transform)
{
    return QStringLiteral("%1  %2").arg(transform.name).arg(transform.value);
}

} // namespace

TransformList::TransformList(QString const& noun, QWidget* parent)
    : QWidget(parent)
    , m_noun(noun)
    , m_list(new StepList(this))
{
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    m_list->setIconSize(itemSwatchSize);
    m_list->setAccessibleName(QStringLiteral("Transforms of %1").arg(noun));
    m_list->setToolTip(QStringLiteral("Drag a step, or press Alt with the up or down key"));
    m_list->setMinimumHeight(visibleRows * (itemSwatchSize.height() + 8));
    auto* const title = new QLabel(QStringLiteral("T&ransforms, in their order"), this);
    column->addWidget(title);
    column->addWidget(makeChoice());
    title->setBuddy(m_choice);
    column->addWidget(m_list, 1);
    column->addWidget(makeControls());
    connectControls();
    enableControls();
}

QWidget* TransformList::makeChoice()
{
    auto* const area = new QWidget(this);
    auto* const row = new QHBoxLayout(area);
    row->setContentsMargins(0, 0, 0, 0);
    m_choice = new QComboBox(area);
    m_choice->setAccessibleName(QStringLiteral("Transform to add to %1").arg(m_noun));
    ColorUtil::initColorFunctionMap();
    m_choice->addItems(ColorUtil::mapColorFuncs.keys());
    m_choice->setCurrentText(QStringLiteral("lumMod"));
    m_add = makeButton(QStringLiteral("Add"), QStringLiteral("Add the transform to %1"));
    row->addWidget(m_choice, 1);
    row->addWidget(m_add);
    return area;
}

QWidget* TransformList::makeControls()
{
    auto* const area = new QWidget(this);
    auto* const row = new QHBoxLayout(area);
    row->setContentsMargins(0, 0, 0, 0);
    m_value = new QDoubleSpinBox(area);
    m_value->setRange(-greatestValue, greatestValue);
    m_value->setDecimals(valueDecimals);
    m_value->setSingleStep(0.05);
    m_value->setKeyboardTracking(false);
    m_value->setAccessibleName(QStringLiteral("Value of the transform of %1").arg(m_noun));
    m_value->setToolTip(QStringLiteral("1 is 100 %, or a full channel"));
    m_up = makeButton(QStringLiteral("Up"), QStringLiteral("Move the transform of %1 up"));
    m_down = makeButton(QStringLiteral("Down"), QStringLiteral("Move the transform of %1 down"));
    m_remove = makeButton(QStringLiteral("Remove"), QStringLiteral("Remove the transform of %1"));
    row->addWidget(m_value, 1);
    for (QToolButton* const button : {m_up, m_down, m_remove})
        row->addWidget(button);
    return area;
}

/** @param what its accessible name, with a place for the noun */
QToolButton* TransformList::makeButton(QString const& text, QString const& what)
{
    auto* const button = new QToolButton(this);
    button->setText(text);
    button->setAccessibleName(what.arg(m_noun));
    button->setFocusPolicy(Qt::StrongFocus);
    return button;
}

void TransformList::connectControls()
{
    connect(m_add, &QToolButton::clicked, this, &TransformList::add);
    connect(m_remove, &QToolButton::clicked, this, &TransformList::removeCurrent);
    connect(m_up, &QToolButton::clicked, this, [this] { moveCurrent(-1); });
    connect(m_down, &QToolButton::clicked, this, [this] { moveCurrent(1); });
    connect(m_list, &StepList::moveWanted, this, &TransformList::move);
    connect(m_list, &StepList::removalWanted, this, &TransformList::removeCurrent);
    connect(m_list, &StepList::dropped, this,
        [this] { Q_EMIT finished(QStringLiteral("Move transform of %1").arg(m_noun)); });
    connect(m_list, &QListWidget::currentRowChanged, this, &TransformList::enableControls);
    connect(m_value, qOverload<double>(&QDoubleSpinBox::valueChanged), this,
        &TransformList::changeValue);
}

void TransformList::setColour(ShapeColour const& colour)
{
    m_colour = colour;
    refresh();
}

void TransformList::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        refresh();
}

void TransformList::add()
{
    QString const name = m_choice->currentText();
    m_colour.transforms.append({name, firstValue(name)});
    refresh();
    m_list->setCurrentRow(m_list->count() - 1);
    Q_EMIT edited();
    Q_EMIT finished(QStringLiteral("Add transform of %1").arg(m_noun));
}

void TransformList::removeCurrent()
{
    if (current() < 0)
        return;
    m_colour.transforms.removeAt(current());
    refresh();
    Q_EMIT edited();
    Q_EMIT finished(QStringLiteral("Remove transform of %1").arg(m_noun));
}

void TransformList::move(int from, int to, bool isFinal)
{
    m_colour.transforms.move(from, to);
    refresh();
    m_list->setCurrentRow(to);
    Q_EMIT edited();
    if (isFinal)
        Q_EMIT finished(QStringLiteral("Move transform of %1").arg(m_noun));
}

void TransformList::moveCurrent(int by)
{
    int const to = current() + by;
    if (current() >= 0 && to >= 0 && to < m_colour.transforms.size())
        move(current(), to, true);
}

void TransformList::changeValue(double value)
{
    if (current() < 0)
        return;
    m_colour.transforms[current()].value = value;
    refresh();
    Q_EMIT edited();
    Q_EMIT finished(QStringLiteral("Change transform of %1").arg(m_noun));
}

void TransformList::refresh()
{
    QSignalBlocker const blocker(m_list);
    QVector<QColor> const steps = m_colour.steps();
    int const count = m_colour.transforms.size();
    while (m_list->count() > count)
        delete m_list->takeItem(m_list->count() - 1);
    while (m_list->count() < count)
        m_list->addItem(QString());
    for (int i = 0; i < count; ++i) {
        QListWidgetItem* const item = m_list->item(i);
        QColor const& colour = steps.at(i + 1);
        item->setText(textOf(m_colour.transforms.at(i)));
        item->setIcon(swatchIcon(colour, itemSwatchSize, palette(), devicePixelRatioF()));
        item->setToolTip(colourText(colour));
    }
    enableControls();
}

void TransformList::enableControls()
{
    int const row = current();
    int const count = m_colour.transforms.size();
    QSignalBlocker const blocker(m_value);
    m_value->setValue(row >= 0 ? m_colour.transforms.at(row).value : 0.0);
    m_value->setEnabled(row >= 0);
    m_remove->setEnabled(row >= 0);
    m_up->setEnabled(row > 0);
    m_down->setEnabled(row >= 0 && row + 1 < count);
    m_add->setEnabled(count < mostTransforms);
}

/** The row of the current transform, -1 without one. */
int TransformList::current() const
{
    int const row = m_list->currentRow();
    return row < m_colour.transforms.size() ? row : -1;
}
