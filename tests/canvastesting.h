// SPDX-License-Identifier: MIT
#ifndef CANVASTESTING_H
#define CANVASTESTING_H

#include "canvas/canvas.h"
#include "kppathseglineto.h"
#include "kppathsegmoveto.h"
#include "kpshapestesting.h"
#include "model/binding.h"
#include "testing.h"
#include "unitutil.h"

#include <cmath>
#include <memory>

/** A canvas with its document, as a window would have them, and the mouse on it. */
namespace CanvasTesting {

inline KpReal bound(qint16 rule, double value, QSizeF const& box)
{
    KpReal real(rule, 0.0, value);
    bindInPlace(real, rule, box);
    return real;
}

/** A point in proportion to the box. */
inline KpPoint point(double x, double y, QSizeF const& box)
{
    return {bound(KpReal::PartOfWidth, x, box), bound(KpReal::PartOfHeight, y, box)};
}

template <class Segment, class... Points> void add(KpPathSegList& list, Points const&... points)
{
    list.addTail(new Segment(points..., nullptr));
}

inline void addMove(KpPathSegList& list, KpPoint const& at)
{
    auto* const move = new KpPathSegMoveTo(QPointF(), nullptr);
    move->pt = at;
    list.addTail(move);
}

inline void addLine(KpPathSegList& list, KpPoint const& to)
{
    auto* const line = new KpPathSegLineTo(QPointF(), nullptr);
    line->pt = to;
    list.addTail(line);
}

inline ItemPointer itemOf(std::unique_ptr<KpPathSegList> list, QSizeF const& box)
{
    return std::make_shared<ShapeItem const>(
        ShapeItem {QString(), box, std::nullopt, recordOf(*list), {}, -1});
}

/** A ring of lines through (20, 10), (180, 10), (180, 90) and (20, 90) in a box of 200 by 100. */
inline ItemPointer rectangle()
{
    QSizeF const box(200.0, 100.0);
    auto list = std::make_unique<KpPathSegList>();
    addMove(*list, point(20.0, 10.0, box));
    addLine(*list, point(180.0, 10.0, box));
    addLine(*list, {bound(KpReal::FromRight, 180.0, box), bound(KpReal::FromBottom, 90.0, box)});
    addLine(*list, {bound(KpReal::Absolute, 20.0, box), bound(KpReal::FromBottom, 90.0, box)});
    list->closed = true;
    return itemOf(std::move(list), box);
}

/** A curve from (0, 50) over (40, 10) and (160, 10) to (200, 50), and an ellipse: 200 by 100. */
inline ItemPointer curveAndEllipse()
{
    QSizeF const box(200.0, 100.0);
    auto list = std::make_unique<KpPathSegList>();
    addMove(*list, point(0.0, 50.0, box));
    add<KpPathSegCurveTo>(*list, point(40.0, 10.0, box), point(160.0, 10.0, box),
        KpPoint(bound(KpReal::FromRightPartOfSide, 200.0, box),
            bound(KpReal::FromBottomPartOfSide, 50.0, box)));
    auto* const ellipse = new KpPathSegEllipse(point(100.0, 70.0, box),
        bound(KpReal::PartOfWidth, 30.0, box), bound(KpReal::PartOfHeight, 20.0, box), nullptr);
    ellipse->a = bound(KpReal::PartOfSide, 30.0, box);
    list->addTail(ellipse);
    return itemOf(std::move(list), box);
}

/** A shape of so many points on a spiral, each fourth a curve. */
inline ItemPointer spiral(int points)
{
    QSizeF const box(1000.0, 700.0);
    auto const at = [&](double index) {
        double const part = index / points;
        return point(500.0 + 480.0 * part * std::cos(index * 0.05),
            350.0 + 340.0 * part * std::sin(index * 0.05), box);
    };
    auto list = std::make_unique<KpPathSegList>();
    addMove(*list, at(0.0));
    for (int i = 1; i < points; ++i) {
        if (i % 4 == 0)
            add<KpPathSegCurveTo>(*list, at(i - 0.7), at(i - 0.3), at(i));
        else
            addLine(*list, at(i));
    }
    return itemOf(std::move(list), box);
}

/** All that a window with a canvas has; the canvas is 640 by 480. */
struct Bench
{
    ShapeDocument document;
    Selection selection;
    ViewSettings settings;
    Canvas canvas;

    explicit Bench(Items const& items, double zoom = 2.0)
        : canvas(document, selection, settings)
    {
        UnitUtil::initScreen(96.0, 1.0, QSize(1920, 1080));
        document.reset(items);
        canvas.resize(640, 480);
        canvas.setShowsLegend(false);
        canvas.show();
        QVERIFY(QTest::qWaitForWindowExposed(&canvas));
        canvas.activateWindow();
        canvas.setFocus();
        QTRY_VERIFY(canvas.hasFocus());
        if (zoom > 0.0)
            canvas.setZoom(zoom);
    }

    KpPathSeg& segment(int index) { return *document.working().list->segs.at(index); }
    QPointF place(HandleId id) { return handleOf(*document.working().list, id)->position; }
    QPointF place(int index) { return place({index, HandleKind::Point}); }
    QString lastStep() { return document.undoStack().undoText(); }
    int steps() { return document.undoStack().index(); }

    /** The pixel of the widget that is nearest to a place of the outline. */
    QPoint pixel(double x, double y) const { return canvas.view().fromOutline({x, y}).toPoint(); }
    void press(QPoint const& at, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::mousePress(&canvas, Qt::LeftButton, modifiers, at);
    }
    /** QTest::mouseMove() knows no modifiers and presses no button. */
    void move(QPoint const& at, Qt::KeyboardModifiers modifiers = {},
        Qt::MouseButtons buttons = Qt::LeftButton)
    {
        QMouseEvent event(
            QEvent::MouseMove, at, canvas.mapToGlobal(at), Qt::NoButton, buttons, modifiers);
        QApplication::sendEvent(&canvas, &event);
    }
    void release(QPoint const& at, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::mouseRelease(&canvas, Qt::LeftButton, modifiers, at);
    }
    void click(QPoint const& at, Qt::KeyboardModifiers modifiers = {})
    {
        press(at, modifiers);
        release(at, modifiers);
    }
    void drag(QPoint const& from, QPoint const& by, Qt::KeyboardModifiers modifiers = {})
    {
        press(from);
        move(from + by / 2, modifiers);
        move(from + by, modifiers);
        release(from + by, modifiers);
    }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(&canvas, key, modifiers);
    }
};

/** Compares points to a billionth. */
inline bool isAt(QPointF const& actual, double x, double y)
{
    bool const isSame = std::abs(actual.x() - x) < 1e-9 && std::abs(actual.y() - y) < 1e-9;
    if (!isSame)
        qWarning() << "is at" << actual << "instead of" << QPointF(x, y);
    return isSame;
}

} // namespace CanvasTesting

#endif // CANVASTESTING_H
