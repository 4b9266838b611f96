// SPDX-License-Identifier: MIT
#include "canvas/canvas.h"
#include "kppathseglineto.h"
#include "kppathsegmoveto.h"
#include "model/operations.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QImage>
#include <QMouseEvent>

#include <cmath>

// Frames of the editor's canvas, 1200 by 800 pixels, with all handles shown: what an outline of
// many points costs while one of them is dragged. No peer draws the same. For screens of a higher
// density: QT_SCALE_FACTOR.

namespace {

constexpr double width = 1000.0;
constexpr double height = 700.0;

QApplication& application()
{
    static int count = 1;
    static char name[] = "bench_canvas";
    static char* arguments[] = {name, nullptr};
    static QApplication* const made = [] {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        QGuiApplication::setHighDpiScaleFactorRoundingPolicy(
            Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
        return new QApplication(count, arguments);
    }();
    return *made;
}

KpPoint at(double index, int points)
{
    double const part = index / points;
    double const x = 500.0 + 480.0 * part * std::cos(index * 0.05);
    double const y = 350.0 + 340.0 * part * std::sin(index * 0.05);
    return {KpReal(KpReal::PartOfWidth, x / width, x), KpReal(KpReal::PartOfHeight, y / height, y)};
}

/** A spiral of so many points; each fourth is the end of a curve, so there are half as many more. */
ItemPointer spiral(int points)
{
    KpPathSegList list;
    auto* const move = new KpPathSegMoveTo(QPointF(), nullptr);
    move->pt = at(0.0, points);
    list.addTail(move);
    for (int i = 1; i < points; ++i) {
        if (i % 4 == 0) {
            list.addTail(new KpPathSegCurveTo(
                at(i - 0.7, points), at(i - 0.3, points), at(i, points), nullptr));
        } else {
            auto* const line = new KpPathSegLineTo(QPointF(), nullptr);
            line->pt = at(i, points);
            list.addTail(line);
        }
    }
    return std::make_shared<ShapeItem const>(ShapeItem {
        QString(), QSizeF(width, height), std::nullopt, recordOf(list), Appearance(), -1});
}

struct Scene
{
    ShapeDocument document;
    Selection selection;
    ViewSettings settings;
    Canvas canvas {document, selection, settings};
    QImage picture;

    explicit Scene(int points)
        : picture(QSize(1200, 800) * canvas.devicePixelRatioF(), QImage::Format_RGB32)
    {
        picture.setDevicePixelRatio(canvas.devicePixelRatioF());
        document.reset({spiral(points)});
        canvas.resize(1200, 800);
        canvas.fitBox();
    }

    void mouse(QEvent::Type type, QPointF const& where)
    {
        bool const isMove = type == QEvent::MouseMove;
        bool const isUp = type == QEvent::MouseButtonRelease;
        QMouseEvent event(type, where, isMove ? Qt::NoButton : Qt::LeftButton,
            isUp ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&canvas, &event);
    }
};

/** The mouse moves one pixel on, everything follows, and the canvas is painted. */
void drag(benchmark::State& state, bool isBox, bool isAllSelected)
{
    application();
    auto const points = static_cast<int>(state.range(0));
    Scene scene(points);
    QPointF grip = isBox
        ? QPointF(scene.canvas.boxHandleRect(BoxHandle::BottomRight).center())
        : QPointF(scene.canvas.handleRect({points / 2, HandleKind::Point}).center());
    if (isAllSelected)
        scene.selection.set(scene.canvas.handleIds());
    scene.mouse(QEvent::MouseButtonPress, grip);
    scene.canvas.render(&scene.picture);
    for (auto _ : state) {
        grip -= QPointF(scene.canvas.rect().center().x() < grip.x() ? 1.0 : -1.0, 0.0);
        scene.mouse(QEvent::MouseMove, grip);
        scene.canvas.render(&scene.picture);
    }
    scene.mouse(QEvent::MouseButtonRelease, grip);
}

void dragPoint(benchmark::State& state)
{
    drag(state, false, false);
}

void dragAllPoints(benchmark::State& state)
{
    drag(state, false, true);
}

void dragBox(benchmark::State& state)
{
    drag(state, true, false);
}

/** A frame alone, of an outline that has changed. */
void paint(benchmark::State& state)
{
    application();
    Scene scene(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        scene.document.touch();
        scene.canvas.render(&scene.picture);
    }
}

BENCHMARK(paint)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(dragPoint)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(dragAllPoints)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(dragBox)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

} // namespace
