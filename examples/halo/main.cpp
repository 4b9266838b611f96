// SPDX-License-Identifier: MIT
// Blurs the same picture twice: on the left in a premultiplied format, on the right in one that
// keeps colours apart from alpha, where the black of transparent pixels comes out as a halo.
//
// usage: example_halo OUT.png

#include <gaussianblur.h>

#include <QGuiApplication>
#include <QPainter>

#include <cstdio>

namespace {

constexpr int side = 160;
constexpr int radius = 16;

QImage disc(QImage::Format format)
{
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(255, 200, 40));
    painter.drawEllipse(image.rect().adjusted(32, 32, -32, -32));
    painter.end();
    return image.convertToFormat(format);
}

} // namespace

int main(int argc, char** argv)
{
    QGuiApplication const application(argc, argv);
    if (argc != 2) {
        std::fputs("usage: example_halo OUT.png\n", stderr);
        return 2;
    }
    QImage sheet(2 * side, side, QImage::Format_RGB32);
    sheet.fill(Qt::white);
    QPainter painter(&sheet);
    int left = 0;
    for (QImage::Format const format :
        {QImage::Format_ARGB32_Premultiplied, QImage::Format_ARGB32}) {
        painter.drawPixmap(left, 0, GaussianBlur::blurBitmap(disc(format), radius, 0));
        left += side;
    }
    painter.end();
    QString const file = QString::fromLocal8Bit(argv[1]);
    if (sheet.save(file))
        return 0;
    std::fprintf(stderr, "%s: cannot be written\n", qPrintable(file));
    return 1;
}
