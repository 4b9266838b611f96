// SPDX-License-Identifier: MIT
// Puts a soft shadow under a picture.

#include <gaussianblur.h>

#include <QGuiApplication>
#include <QPainter>

#include <cstdio>

//! [shadow]
QImage withShadow(QImage const& picture, unsigned int radius, QPoint offset, QColor const& colour)
{
    int const reach = int(radius); // the blur grows by as much on each side
    QSize const size = picture.size() + 2 * QSize(reach, reach);

    // Premultiplied: else the colour that is hidden in transparent pixels comes out as a halo.
    QImage shadow(size, QImage::Format_ARGB32_Premultiplied);
    shadow.fill(Qt::transparent);
    QPainter painter(&shadow);
    painter.drawImage(QPoint(reach, reach) + offset, picture);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(shadow.rect(), colour);
    painter.end();

    // Moved in, it is blurred where it is.
    QImage result = GaussianBlur::blurBitmap(std::move(shadow), radius, 0).toImage();
    painter.begin(&result);
    painter.drawImage(reach, reach, picture);
    return result;
}
//! [shadow]

int main(int argc, char** argv)
{
    QGuiApplication const application(argc, argv); // pixmaps need one
    QImage square(8, 8, QImage::Format_ARGB32_Premultiplied);
    square.fill(Qt::black);
    QImage const picture = withShadow(square, 4, QPoint(1, 2), QColor(0, 0, 0, 128));
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            std::printf("%4d", qAlpha(picture.pixel(x, y)));
        std::putchar('\n');
    }
}
