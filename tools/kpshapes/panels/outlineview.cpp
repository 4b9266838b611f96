// SPDX-License-Identifier: MIT
#include "panels/outlineview.h"

#include "panels/outlinemodel.h"

#include <QDrag>
#include <QDropEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QPainter>

#include <algorithm>
#include <limits>

namespace {

constexpr int margin = 5; ///< around a thumbnail, in logical pixels
constexpr int gap = 8; ///< between a thumbnail and its name

OutlineModel const& modelOf(QModelIndex const& index)
{
    return *static_cast<OutlineModel const*>(index.model());
}

/** The room for text in a row. */
QRect textArea(QRect const& row)
{
    return row.adjusted(margin + OutlineModel::thumbnailSide + gap, margin, -margin, -margin);
}

/** Details are as far from the background as can be read well, and stand back behind the name. */
QColor faded(QColor const& text, QColor const& background)
{
    auto const mix = [](int one, int other) { return (7 * one + 3 * other) / 10; };
    return {mix(text.red(), background.red()), mix(text.green(), background.green()),
        mix(text.blue(), background.blue())};
}

} // namespace

void OutlineDelegate::paint(
    QPainter* painter, QStyleOptionViewItem const& option, QModelIndex const& index) const
{
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    QString const name = item.text;
    item.text.clear();
    QStyle const& style = *item.widget->style();
    style.drawControl(QStyle::CE_ItemViewItem, &item, painter, item.widget);

    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    QRectF const tile(option.rect.topLeft() + QPoint(margin, margin),
        QSizeF(OutlineModel::thumbnailSide, OutlineModel::thumbnailSide));
    painter->drawImage(
        tile, modelOf(index).thumbnailOf(index.row(), painter->device()->devicePixelRatioF()));
    painter->setPen(item.palette.color(QPalette::Mid));
    painter->drawRect(tile.adjusted(0.5, 0.5, -0.5, -0.5));

    QPalette::ColorGroup const group =
        item.state & QStyle::State_Active ? QPalette::Active : QPalette::Inactive;
    bool const isSelected = item.state & QStyle::State_Selected;
    QColor const text =
        item.palette.color(group, isSelected ? QPalette::HighlightedText : QPalette::Text);
    QColor const background =
        item.palette.color(group, isSelected ? QPalette::Highlight : QPalette::Base);
    QRect const area = textArea(option.rect);
    QFont font = item.font;
    font.setItalic(!modelOf(index).isNamed(index.row()));
    painter->setFont(font);
    painter->setPen(text);
    QFontMetrics const metrics(font);
    painter->drawText(QRect(area.left(), area.top(), area.width(), area.height() / 2),
        Qt::AlignLeft | Qt::AlignVCenter, metrics.elidedText(name, Qt::ElideRight, area.width()));
    QFont small = item.font;
    small.setPointSizeF(std::max(0.85 * small.pointSizeF(), 6.0));
    painter->setFont(small);
    painter->setPen(faded(text, background));
    painter->drawText(area.adjusted(0, area.height() / 2, 0, 0), Qt::AlignLeft | Qt::AlignVCenter,
        QFontMetrics(small).elidedText(
            modelOf(index).detailsOf(index.row()), Qt::ElideRight, area.width()));
    painter->restore();
}

QSize OutlineDelegate::sizeHint(
    QStyleOptionViewItem const& option, QModelIndex const& /*index*/) const
{
    int const lines = 2 * option.fontMetrics.lineSpacing();
    return {180, std::max(OutlineModel::thumbnailSide, lines) + 2 * margin};
}

QWidget* OutlineDelegate::createEditor(
    QWidget* parent, QStyleOptionViewItem const& option, QModelIndex const& index) const
{
    QWidget* const editor = QStyledItemDelegate::createEditor(parent, option, index);
    // A name that is longer than usual keeps its end.
    if (auto* const line = qobject_cast<QLineEdit*>(editor))
        line->setMaxLength(std::numeric_limits<int>::max());
    return editor;
}

void OutlineDelegate::setModelData(
    QWidget* editor, QAbstractItemModel* model, QModelIndex const& index) const
{
    auto const* const line = qobject_cast<QLineEdit*>(editor);
    // An editor may show a name otherwise than it is; only what was typed counts.
    if (!line || line->isModified())
        QStyledItemDelegate::setModelData(editor, model, index);
}

void OutlineDelegate::updateEditorGeometry(
    QWidget* editor, QStyleOptionViewItem const& option, QModelIndex const& /*index*/) const
{
    QRect const area = textArea(option.rect);
    int const height = editor->sizeHint().height();
    editor->setGeometry(area.left() - 3, area.center().y() - height / 2, area.width() + 3, height);
}

OutlineView::OutlineView(QWidget* parent)
    : QListView(parent)
{
    setItemDelegate(new OutlineDelegate(this));
    setUniformItemSizes(true);
    // Names that are too long are cut short, not scrolled.
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setSelectionMode(ExtendedSelection);
    setEditTriggers(DoubleClicked);
    setDragEnabled(true);
    setAcceptDrops(true);
    setDropIndicatorShown(true);
    setDragDropMode(DragDrop);
    setDefaultDropAction(Qt::MoveAction);
    setVerticalScrollMode(ScrollPerPixel);
    // Names that are too long are elided instead.
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setAccessibleName(QStringLiteral("Outlines"));
}

void OutlineView::startDrag(Qt::DropActions /*actions*/)
{
    QModelIndex const dragged = currentIndex();
    if (!dragged.isValid())
        return;
    auto* const drag = new QDrag(this);
    drag->setMimeData(model()->mimeData({dragged}));
    drag->setPixmap(
        QPixmap::fromImage(modelOf(dragged).thumbnailOf(dragged.row(), devicePixelRatioF())));
    drag->exec(Qt::MoveAction, Qt::MoveAction);
}

int OutlineView::rowBefore(QPoint const& position) const
{
    QModelIndex const index = indexAt(position);
    if (!index.isValid())
        return model()->rowCount();
    return position.y() < visualRect(index).center().y() ? index.row() : index.row() + 1;
}

void OutlineView::dropEvent(QDropEvent* event)
{
    bool const isTaken = model()->dropMimeData(
        event->mimeData(), event->dropAction(), rowBefore(event->pos()), 0, QModelIndex());
    event->setAccepted(isTaken);
    stopAutoScroll();
    setState(NoState);
    viewport()->update();
}

void OutlineView::paintEvent(QPaintEvent* event)
{
    QListView::paintEvent(event);
    if (model() && model()->rowCount() > 0)
        return;
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(viewport()->rect().adjusted(12, 12, -12, -12),
        Qt::AlignCenter | Qt::TextWordWrap, QStringLiteral("No outlines yet.\nInsert adds one."));
}
