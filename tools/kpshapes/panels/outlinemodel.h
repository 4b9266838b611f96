// SPDX-License-Identifier: MIT
#ifndef OUTLINEMODEL_H
#define OUTLINEMODEL_H

#include "model/shapedocument.h"

#include <QAbstractListModel>
#include <QCache>
#include <QImage>

#include <memory>

/**
 * The outlines of a document as rows, in its order, the lowest first. Renaming and dropping a row
 * elsewhere are steps of the document. Thumbnails are made when they are asked for.
 */
class OutlineModel : public QAbstractListModel
{
    Q_OBJECT

public:
    /** @param document not owned, must outlive this */
    OutlineModel(ShapeDocument& document, QObject* parent);

    int rowCount(QModelIndex const& parent = QModelIndex()) const override;
    /** Name, name to be edited, tool tip and text for those who do not see the row. */
    QVariant data(QModelIndex const& index, int role) const override;
    /** Takes a name: the step "Rename outline". */
    bool setData(QModelIndex const& index, QVariant const& value, int role) override;
    Qt::ItemFlags flags(QModelIndex const& index) const override;

    Qt::DropActions supportedDropActions() const override { return Qt::MoveAction; }
    QStringList mimeTypes() const override;
    /** The first of the rows: one can be moved at a time. */
    QMimeData* mimeData(QModelIndexList const& indexes) const override;
    /** Whether it is a row of this very list. */
    bool canDropMimeData(QMimeData const* data, Qt::DropAction action, int row, int column,
        QModelIndex const& parent) const override;
    /** Moves the row before the row `row`: the step "Move outline". */
    bool dropMimeData(QMimeData const* data, Qt::DropAction action, int row, int column,
        QModelIndex const& parent) override;

    /** "12 segments, 240 × 120": what is to be known of an outline beside its name. */
    QString detailsOf(int row) const;
    /** Whether the outline has a name of its own. */
    bool isNamed(int row) const { return !at(row).name.isEmpty(); }

    /** The side of a thumbnail, in logical pixels. */
    static constexpr int thumbnailSide = 40;
    /** The picture of a row. @param ratio device pixels a logical one */
    QImage thumbnailOf(int row, double ratio) const;
    /** How many thumbnails are kept; never more than 500. */
    int thumbnailCount() const { return m_thumbnails.size(); }

    /** Whether rows are just being changed after the document: views have no say then. */
    bool isFollowing() const { return m_isFollowing; }

private:
    struct Thumbnail
    {
        std::weak_ptr<ShapeItem const> item;
        QImage picture;
    };

    int count() const { return static_cast<int>(m_items.size()); }
    ShapeItem const& at(int row) const { return *m_items[static_cast<std::size_t>(row)]; }
    void follow(int first, int removed, int added);
    QByteArray dragText(int row) const;
    int draggedRow(QMimeData const& data) const;

    ShapeDocument& m_document;
    Items m_items; ///< those that the rows show: the document's, but for while they follow it
    bool m_isFollowing = false;
    mutable QCache<ShapeItem const*, Thumbnail> m_thumbnails;
};

#endif // OUTLINEMODEL_H
