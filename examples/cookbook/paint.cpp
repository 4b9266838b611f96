// SPDX-License-Identifier: MIT
// Reads an outline from a document and paints it.

#include <kpfilepathmanager.h>
#include <kppath.h>
#include <kppathseglist.h>

#include <QDomDocument>
#include <QImage>
#include <QPainter>

#include <cstdio>

//! [paint]
QImage paint(QDomElement const& geometry, QSize size)
{
    KpPathSegList outline;
    outline.parse(geometry, 0);
    outline.updateValue(size.width(), size.height()); // each coordinate by its own rule

    KpPath path;
    outline.toPath(path);

    QImage picture(size, QImage::Format_RGB32);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    if (!outline.noFill)
        painter.fillPath(path.toPainterPath(), Qt::black);
    return picture;
}
//! [paint]

int main()
{
    //! [read]
    QDomDocument document;
    if (!KpFilePathManager::loadXmlFile(document, QStringLiteral("examples/documents/arrow.xml"))) {
        std::fputs("missing, not well-formed, or too large\n", stderr);
        return 1;
    }
    QDomElement const geometry =
        document.elementsByTagName(QStringLiteral("Geometry")).at(0).toElement();
    //! [read]

    QImage const picture = paint(geometry, QSize(60, 16));
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            std::putchar(picture.pixelColor(x, y) == QColor(Qt::black) ? '#' : '.');
        std::putchar('\n');
    }
}
