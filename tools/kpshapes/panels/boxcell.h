// SPDX-License-Identifier: MIT
#ifndef BOXCELL_H
#define BOXCELL_H

#include <QAbstractButton>
#include <QImage>
#include <QSizeF>

/** A box that a strip offers. */
struct OfferedBox
{
    QString name; ///< "2:1", or empty for one that the user has added
    QSizeF box; ///< in the outline's units
};

/** "240 × 120": a box in captions. */
QString captionOf(QSizeF const& box);

/**
 * The shape in one box, with a caption: a button, checked while the box is that of the page.
 *
 * Enter presses it, as the space bar does.
 */
class BoxCell : public QAbstractButton
{
    Q_OBJECT

public:
    /** Without a box and a picture yet. */
    explicit BoxCell(QWidget* parent);

    /** What it offers. */
    OfferedBox const& offer() const { return m_offer; }
    /** Offers another box; names and captions follow. */
    void setOffer(OfferedBox const& offer);
    /** Whether the user has added the box, and can remove it. */
    bool isRemovable() const { return m_offer.name.isEmpty(); }

    /** What is to be pictured, in logical pixels. */
    QSize pictureSize() const;
    /** Makes the cell as wide as a picture of this width needs it, within reason. */
    void setPictureWidth(double width);
    /** The picture that is shown. */
    QImage const& picture() const { return m_picture; }
    /** Shows a picture, of pictureSize() and the ratio of the screen. */
    void setPicture(QImage const& picture);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

    /** The height of all pictures, in logical pixels. */
    static constexpr int pictureHeight = 84;

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QString title() const;
    void paintCaption(QPainter& painter) const;

    OfferedBox m_offer;
    QImage m_picture;
    int m_pictureWidth = pictureHeight;
};

#endif // BOXCELL_H
