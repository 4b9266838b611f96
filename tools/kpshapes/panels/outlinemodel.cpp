// SPDX-License-Identifier: MIT
#include "panels/outlinemodel.h"

#include "common/text.h"
#include "panels/thumbnail.h"

#include <QCoreApplication>
#include <QMimeData>

#include <algorithm>

namespace {

constexpr int greatestThumbnailCount = 500;

QString dragType()
{
    return QStringLiteral("application/x-kpshapes-outline");
}

} // namespace

OutlineModel::OutlineModel(ShapeDocument& document, QObject* parent)
    : QAbstractListModel(parent)
    , m_document(document)
    , m_items(document.items())
    , m_thumbnails(greatestThumbnailCount)
{
    connect(&document, &ShapeDocument::itemsReplaced, this, &OutlineModel::follow);
}

int OutlineModel::rowCount(QModelIndex const& parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant OutlineModel::data(QModelIndex const& index, int role) const
{
    int const row = index.row();
    if (!index.isValid() || row >= count())
        return QVariant();
    QString const& name = at(row).name;
    QString const shown = name.isEmpty() ? QStringLiteral("Outline %1").arg(row + 1) : name;
    switch (role) {
    case Qt::DisplayRole:
        return printable(elided(shown, 200));
    case Qt::EditRole:
        return name;
    case Qt::ToolTipRole:
    case Qt::AccessibleTextRole:
        return QStringLiteral("%1, outline %2 of %3, %4")
            .arg(printable(elided(shown, 200)), QString::number(row + 1), QString::number(count()),
                detailsOf(row));
    default:
        return QVariant();
    }
}

bool OutlineModel::setData(QModelIndex const& index, QVariant const& value, int role)
{
    if (role != Qt::EditRole || !index.isValid() || index.row() >= count())
        return false;
    ShapeItem item = at(index.row());
    item.name = value.toString();
    m_document.replace({{index.row(), std::make_shared<ShapeItem const>(std::move(item))}},
        QStringLiteral("Rename outline"));
    return true;
}

Qt::ItemFlags OutlineModel::flags(QModelIndex const& index) const
{
    if (!index.isValid())
        return Qt::ItemIsDropEnabled;
    return Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsEditable | Qt::ItemIsDragEnabled
        | Qt::ItemNeverHasChildren;
}

QStringList OutlineModel::mimeTypes() const
{
    return {dragType()};
}

QByteArray OutlineModel::dragText(int row) const
{
    // Of this list in this process: rows mean nothing elsewhere.
    return QStringLiteral("%1 %2 %3")
        .arg(QCoreApplication::applicationPid())
        .arg(reinterpret_cast<quintptr>(this))
        .arg(row)
        .toLatin1();
}

QMimeData* OutlineModel::mimeData(QModelIndexList const& indexes) const
{
    if (indexes.isEmpty())
        return nullptr;
    auto* const data = new QMimeData;
    data->setData(dragType(), dragText(indexes.first().row()));
    return data;
}

int OutlineModel::draggedRow(QMimeData const& data) const
{
    QByteArray const text = data.data(dragType());
    int const row = text.mid(text.lastIndexOf(' ') + 1).toInt();
    return text == dragText(row) && row >= 0 && row < count() ? row : -1;
}

bool OutlineModel::canDropMimeData(QMimeData const* data, Qt::DropAction action, int /*row*/,
    int /*column*/, QModelIndex const& /*parent*/) const
{
    return action == Qt::MoveAction && draggedRow(*data) >= 0;
}

bool OutlineModel::dropMimeData(
    QMimeData const* data, Qt::DropAction action, int row, int column, QModelIndex const& parent)
{
    if (!canDropMimeData(data, action, row, column, parent))
        return false;
    int const from = draggedRow(*data);
    int const before = row < 0 || row > count() ? count() : row;
    m_document.move(from, before > from ? before - 1 : before, QStringLiteral("Move outline"));
    return true;
}

QString OutlineModel::detailsOf(int row) const
{
    ShapeItem const& item = at(row);
    return QStringLiteral("%1, %2 \u00d7 %3")
        .arg(countText(item.outline.segmentCount, QStringLiteral("segment")),
            numberText(item.box.width()), numberText(item.box.height()));
}

QImage OutlineModel::thumbnailOf(int row, double ratio) const
{
    ItemPointer const& item = m_items[static_cast<std::size_t>(row)];
    int const side = qRound(thumbnailSide * ratio);
    Thumbnail const* const known = m_thumbnails.object(item.get());
    // An address may be used again for another outline.
    if (known && known->item.lock() == item && known->picture.width() == side)
        return known->picture;
    QImage picture = thumbnail(*item, {{thumbnailSide, thumbnailSide}, ratio, std::nullopt});
    m_thumbnails.insert(item.get(), new Thumbnail {item, picture});
    return picture;
}

void OutlineModel::follow(int first, int removed, int added)
{
    m_isFollowing = true;
    if (first == 0 && removed == count() && added != removed) {
        beginResetModel();
        m_items = m_document.items();
        endResetModel();
        m_isFollowing = false;
        return;
    }
    int const kept = std::min(removed, added);
    auto const end = m_items.begin() + first + kept;
    auto const news = m_document.items().cbegin() + first;
    std::copy(news, news + kept, m_items.begin() + first);
    if (removed > added) {
        beginRemoveRows(QModelIndex(), first + kept, first + removed - 1);
        m_items.erase(end, m_items.begin() + first + removed);
        endRemoveRows();
    } else if (added > removed) {
        beginInsertRows(QModelIndex(), first + kept, first + added - 1);
        m_items.insert(end, news + kept, news + added);
        endInsertRows();
    }
    // Those behind have another number, if not another name.
    int const last = removed == added ? first + kept - 1 : count() - 1;
    if (last >= first)
        Q_EMIT dataChanged(index(first), index(last));
    m_isFollowing = false;
}
