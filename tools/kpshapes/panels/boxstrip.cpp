// SPDX-License-Identifier: MIT
#include "panels/boxstrip.h"

#include "document/exactcopy.h"
#include "document/shapebox.h"
#include "model/operations.h"
#include "panels/boxcell.h"
#include "panels/boxpopup.h"
#include "panels/thumbnail.h"

#include <QContextMenuEvent>
#include <QElapsedTimer>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMenu>
#include <QScrollArea>
#include <QScrollBar>
#include <QToolButton>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

struct Proportion
{
    double width;
    double height;
};

constexpr std::array<Proportion, 5> proportions {{{2, 1}, {1, 2}, {4, 1}, {1, 4}, {1, 1}}};

constexpr double shortestSide = 1.0; ///< as resizeBox() has them
constexpr int interval = 50; ///< between two refreshes, in milliseconds
constexpr int longInterval = 250; ///< the same of an outline with many segments
constexpr int manySegments = 2000;
constexpr int hugeSegments = 50000; ///< from here on the pictures wait for the end of a drag
constexpr int idleInterval = 500;
constexpr qint64 shareOfTime = 4; ///< the pause is this many times as long as the work
constexpr qint64 longestPause = 2000;

/** Room around a box, so that what leaves it a little is seen. */
constexpr double clearance = 8.0;

QString nameOf(Proportion const& proportion)
{
    return QStringLiteral("%1:%2").arg(proportion.width).arg(proportion.height);
}

/** A handy number near a length: whole units, or three digits of a small one. */
double rounded(double length)
{
    double const step = length >= 20.0 ? 1.0 : std::pow(10.0, std::floor(std::log10(length)) - 2.0);
    return std::round(length / step) * step;
}

bool isClose(double one, double other)
{
    return std::abs(one - other) <= 1e-6 * std::max(one, other);
}

bool isSameBox(QSizeF const& left, QSizeF const& right)
{
    return isClose(left.width(), right.width()) && isClose(left.height(), right.height());
}

/** The box of these proportions with about the area of another one; that one if it has them. */
QSizeF boxOf(Proportion const& proportion, QSizeF const& box)
{
    if (isClose(box.width() * proportion.height, box.height() * proportion.width))
        return box;
    double const ratio = proportion.width * proportion.height; // one of them is 1
    double const side = std::sqrt(box.width()) * std::sqrt(box.height()) / std::sqrt(ratio);
    double const smaller = rounded(qBound(shortestSide, side, greatestBoxSide / ratio));
    return {smaller * proportion.width, smaller * proportion.height};
}

bool isSide(double length)
{
    return length >= shortestSide && length <= greatestBoxSide;
}

} // namespace

BoxStrip::BoxStrip(ShapeDocument& document, QWidget* parent)
    : QWidget(parent)
    , m_document(document)
    , m_area(new QScrollArea(this))
    , m_content(new QWidget)
    , m_row(new QHBoxLayout(m_content))
    , m_add(new QToolButton(m_content))
    , m_popup(new BoxPopup(this))
{
    setAccessibleName(QStringLiteral("Shape in other boxes"));
    m_row->setContentsMargins(4, 2, 4, 2);
    m_row->setSpacing(2);
    m_add->setText(QStringLiteral("+"));
    m_add->setAccessibleName(QStringLiteral("Add a box"));
    m_add->setToolTip(QStringLiteral("Add a box"));
    m_row->addWidget(m_add);
    m_row->addStretch(1);
    for (Proportion const& proportion : proportions)
        appendCell(nameOf(proportion), QSizeF(1.0, 1.0));
    m_cells.first()->setFocusPolicy(Qt::StrongFocus);
    updateOffers();
    m_area->setWidget(m_content);
    m_area->setWidgetResizable(true);
    m_area->setFrameShape(QFrame::NoFrame);
    m_area->setFocusPolicy(Qt::NoFocus);
    m_area->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_area->setFixedHeight(
        m_content->sizeHint().height() + m_area->horizontalScrollBar()->sizeHint().height());
    auto* const whole = new QHBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addWidget(m_area);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &BoxStrip::refresh);
    connect(&document, &ShapeDocument::workingChanged, this, &BoxStrip::scheduleRefresh);
    connect(m_add, &QToolButton::clicked, this,
        [this] { m_popup->ask(*m_add, m_document.working().box); });
    connect(m_popup, &BoxPopup::answered, this, &BoxStrip::addByUser);
}

BoxCell* BoxStrip::appendCell(QString const& name, QSizeF const& box)
{
    auto* const cell = new BoxCell(m_content);
    cell->setOffer({name, box});
    cell->setFocusPolicy(Qt::ClickFocus);
    cell->installEventFilter(this);
    connect(cell, &BoxCell::clicked, this, [this, cell] { take(*cell); });
    m_row->insertWidget(m_cells.size(), cell);
    m_cells.append(cell);
    return cell;
}

QVector<QSizeF> BoxStrip::boxes() const
{
    QVector<QSizeF> boxes;
    for (BoxCell const* const cell : m_cells) {
        if (cell->isRemovable())
            boxes.append(cell->offer().box);
    }
    return boxes;
}

void BoxStrip::setBoxes(QVector<QSizeF> const& boxes)
{
    QVector<BoxCell*> const cells = m_cells;
    for (BoxCell* const cell : cells) {
        if (cell->isRemovable())
            remove(cell);
    }
    for (QSizeF const& box : boxes)
        add(box);
}

bool BoxStrip::add(QSizeF const& box)
{
    QVector<QSizeF> const known = boxes();
    bool const isNew = std::none_of(known.cbegin(), known.cend(),
        [&box](QSizeF const& other) { return isSameBox(box, other); });
    if (!isNew || known.size() >= greatestCount || !isSide(box.width()) || !isSide(box.height()))
        return false;
    appendCell(QString(), box);
    m_add->setEnabled(known.size() + 1 < greatestCount);
    scheduleRefresh();
    return true;
}

void BoxStrip::addByUser(QSizeF const& box)
{
    if (!add(box))
        return;
    focusCell(m_cells.size() - 1);
    Q_EMIT boxesChanged();
}

void BoxStrip::remove(BoxCell* cell)
{
    int const index = m_cells.indexOf(cell);
    bool const hadFocus = cell->hasFocus();
    m_cells.removeAt(index);
    m_row->removeWidget(cell);
    cell->hide();
    cell->deleteLater();
    m_add->setEnabled(true);
    if (hadFocus)
        focusCell(std::min(index, m_cells.size() - 1));
    else
        m_cells.first()->setFocusPolicy(Qt::StrongFocus);
}

void BoxStrip::take(BoxCell const& cell)
{
    OfferedBox const& offer = cell.offer();
    if (m_document.hasCurrent()) {
        resizeBox(m_document.working(), offer.box);
        QString const name = offer.name.isEmpty() ? captionOf(offer.box) : offer.name;
        if (!m_document.commit(QStringLiteral("Take box %1").arg(name)))
            m_document.revert();
    }
    // What was clicked is not what is checked: the box of the shape is.
    updateOffers();
}

void BoxStrip::showMenu(BoxCell* cell, QPoint const& globalPosition)
{
    QMenu menu(this);
    QAction const* const take = menu.addAction(QStringLiteral("&Take This Box"));
    QAction* const remove = menu.addAction(QStringLiteral("&Remove Box"));
    remove->setEnabled(cell->isRemovable());
    menu.addSeparator();
    QAction const* const add = menu.addAction(QStringLiteral("&Add Box\u2026"));
    QAction const* const chosen = menu.exec(globalPosition);
    if (chosen == take) {
        cell->click();
    } else if (chosen == remove) {
        this->remove(cell);
        Q_EMIT boxesChanged();
    } else if (chosen == add) {
        m_add->click();
    }
}

bool BoxStrip::handleKey(BoxCell* cell, int key)
{
    int const index = m_cells.indexOf(cell);
    switch (key) {
    case Qt::Key_Left:
    case Qt::Key_Up:
        focusCell(std::max(index - 1, 0));
        return true;
    case Qt::Key_Right:
    case Qt::Key_Down:
        focusCell(std::min(index + 1, m_cells.size() - 1));
        return true;
    case Qt::Key_Home:
        focusCell(0);
        return true;
    case Qt::Key_End:
        focusCell(m_cells.size() - 1);
        return true;
    case Qt::Key_Delete:
        if (cell->isRemovable()) {
            remove(cell);
            Q_EMIT boxesChanged();
        }
        return true;
    default:
        return false;
    }
}

void BoxStrip::focusCell(int index)
{
    // The tab key stops at one of them only, where the focus was last.
    for (BoxCell* const cell : qAsConst(m_cells))
        cell->setFocusPolicy(Qt::ClickFocus);
    m_cells.at(index)->setFocusPolicy(Qt::StrongFocus);
    m_cells.at(index)->setFocus(Qt::OtherFocusReason);
    m_content->layout()->activate();
    m_area->ensureWidgetVisible(m_cells.at(index));
}

bool BoxStrip::eventFilter(QObject* watched, QEvent* event)
{
    auto* const cell = qobject_cast<BoxCell*>(watched);
    if (cell && event->type() == QEvent::KeyPress
        && handleKey(cell, static_cast<QKeyEvent*>(event)->key()))
        return true;
    if (cell && event->type() == QEvent::ContextMenu) {
        showMenu(cell, static_cast<QContextMenuEvent*>(event)->globalPos());
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void BoxStrip::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    scheduleRefresh();
}

void BoxStrip::scheduleRefresh()
{
    int const segments = m_document.working().list->segs.size();
    if (segments > hugeSegments) {
        m_timer.start(idleInterval);
        return;
    }
    if (m_timer.isActive())
        return;
    qint64 const pause = std::min(shareOfTime * m_cost, longestPause);
    m_timer.start(
        std::max(segments > manySegments ? longInterval : interval, static_cast<int>(pause)));
}

double BoxStrip::commonScale() const
{
    double longest = shortestSide;
    for (BoxCell const* const cell : m_cells) {
        if (!cell->isRemovable())
            longest = std::max({longest, cell->offer().box.height()});
    }
    return (BoxCell::pictureHeight - 2.0 * clearance) / longest;
}

void BoxStrip::updateOffers()
{
    QSizeF const box = m_document.working().box;
    for (int i = 0; i < m_cells.size(); ++i) {
        if (i < static_cast<int>(proportions.size())) {
            Proportion const& proportion = proportions[static_cast<std::size_t>(i)];
            m_cells.at(i)->setOffer({nameOf(proportion), boxOf(proportion, box)});
        }
        m_cells.at(i)->setChecked(
            m_document.hasCurrent() && isSameBox(m_cells.at(i)->offer().box, box));
    }
}

void BoxStrip::refresh()
{
    if (!isVisible())
        return;
    QElapsedTimer clock;
    clock.start();
    updateOffers();
    WorkingShape const& working = m_document.working();
    auto const list = exactCopy(*working.list);
    double const scale = commonScale();
    for (BoxCell* const cell : qAsConst(m_cells)) {
        QSizeF const box = cell->offer().box;
        double const fitting = std::min({scale,
            (BoxCell::pictureHeight - 2.0 * clearance) / box.height(), 300.0 / box.width()});
        cell->setPictureWidth(box.width() * fitting + 2.0 * clearance);
        list->updateValue(box.width(), box.height());
        cell->setPicture(thumbnail({*list, box, working.fillRule, working.appearance},
            {cell->pictureSize(), devicePixelRatioF(), fitting}));
    }
    m_cost = clock.elapsed();
    Q_EMIT refreshed();
}
