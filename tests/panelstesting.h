// SPDX-License-Identifier: MIT
#ifndef PANELSTESTING_H
#define PANELSTESTING_H

#include "kpshapestesting.h"

#include "kppathseglineto.h"
#include "kppathsegmoveto.h"
#include "model/shapedocument.h"

#include <QPalette>

/** What the tests of panels share: shapes to show, and palettes to show them in. */
namespace PanelsTesting {

/** A closed rectangle that fills its box, and whose corner stays 10 from the right. */
inline ItemPointer item(QString const& name, QSizeF const& box = {240.0, 120.0})
{
    KpPathSegList list;
    list.closed = true;
    double const rate = 10.0;
    list.addTail(new KpPathSegMoveTo({{1, 0.0, 0.0}, {2, 0.0, 0.0}}, nullptr));
    list.addTail(new KpPathSegLineTo({{3, rate, box.width() - rate}, {2, 0.0, 0.0}}, nullptr));
    list.addTail(new KpPathSegLineTo({{1, 1.0, box.width()}, {2, 1.0, box.height()}}, nullptr));
    list.addTail(new KpPathSegLineTo({{1, 0.0, 0.0}, {2, 1.0, box.height()}}, nullptr));
    return std::make_shared<ShapeItem const>(
        ShapeItem {name, box, std::nullopt, recordOf(list), {}, -1});
}

/** As a desktop has it that is dark. */
inline QPalette darkPalette()
{
    QPalette palette(QColor(0x2d, 0x31, 0x36), QColor(0x23, 0x26, 0x2a));
    palette.setColor(QPalette::Base, QColor(0x1b, 0x1e, 0x21));
    palette.setColor(QPalette::Highlight, QColor(0x3d, 0xae, 0xe9));
    palette.setColor(QPalette::PlaceholderText, QColor(0x9a, 0xa0, 0xa6));
    return palette;
}

/** Shows a widget and waits for it; where KPSHAPES_PICTURES names a folder, puts pictures there. */
inline bool showAndPicture(QWidget& widget, QString const& name)
{
    widget.show();
    if (!QTest::qWaitForWindowExposed(&widget))
        return false;
    QString const folder = qEnvironmentVariable("KPSHAPES_PICTURES");
    if (folder.isEmpty())
        return true;
    for (bool const isDark : {false, true}) {
        if (isDark)
            QApplication::setPalette(darkPalette());
        QTest::qWait(400);
        widget.grab().save(
            QStringLiteral("%1/%2-%3.png").arg(folder, name, isDark ? "dark" : "light"));
    }
    QApplication::setPalette(QPalette());
    return true;
}

} // namespace PanelsTesting

#endif // PANELSTESTING_H
