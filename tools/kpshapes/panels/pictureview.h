// SPDX-License-Identifier: MIT
#ifndef PICTUREVIEW_H
#define PICTUREVIEW_H

#include "paint/picture.h"

#include <QImage>
#include <QWidget>

/** A picture on white paper, as large as there is room for, or a text while there is none. */
class PictureView : public QWidget
{
    Q_OBJECT

public:
    /** Without a picture yet. @param text to be shown instead */
    PictureView(QString const& text, QWidget* parent);

    /** Shows a picture. */
    void setPicture(Picture const& picture);
    /** Shows none, but a text. */
    void clear(QString const& text);
    /** Whether there is a picture. */
    bool hasPicture() const { return m_picture.paint != nullptr; }

    QSize sizeHint() const override { return {480, 320}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QImage drawn(QSize const& size) const;

    Picture m_picture;
    QString m_text;
    QImage m_drawn; ///< for the size and the ratio that it was painted with last
};

#endif // PICTUREVIEW_H
