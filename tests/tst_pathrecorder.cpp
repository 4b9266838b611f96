// SPDX-License-Identifier: MIT
#include "recordertesting.h"

#include <QImage>
#include <QLinearGradient>
#include <QPixmap>
#include <QtTest>

#include <functional>

using RecorderTesting::KeepingRecorder;
using Drawing = std::function<void(QPainter&)>;
Q_DECLARE_METATYPE(Drawing)
Q_DECLARE_METATYPE(Qt::PenStyle)

namespace {

/** The elements of a path, "M 1 2" for a move, L for a line, C and c for a curve. */
QString text(QPainterPath const& path)
{
    QStringList parts;
    for (int i = 0; i < path.elementCount(); ++i) {
        QPainterPath::Element const element = path.elementAt(i);
        parts << QStringLiteral("%1 %2 %3")
                     .arg(QLatin1Char("MLCc"[element.type]))
                     .arg(element.x)
                     .arg(element.y);
    }
    return parts.join(QLatin1Char(' '));
}

/** One line a path: its fill, its line, its elements. */
QString text(KeepingRecorder const& recorder)
{
    QStringList lines;
    for (RecordedPath const& painted : recorder.paths()) {
        QString line = text(painted.path);
        if (painted.path.fillRule() == Qt::WindingFill)
            line.prepend(QStringLiteral("winding "));
        if (painted.brush.style() != Qt::NoBrush)
            line.prepend(QStringLiteral("filled "));
        if (painted.pen.style() != Qt::NoPen)
            line.prepend(QStringLiteral("lined "));
        lines << line;
    }
    return lines.join(QLatin1Char('\n'));
}

void record(KeepingRecorder& recorder, Drawing const& draw)
{
    QPainter painter(&recorder);
    draw(painter);
}

QPainterPath triangle()
{
    QPainterPath path(QPointF(2.0, 2.0));
    path.lineTo(30.0, 4.0);
    path.lineTo(7.5, 28.25);
    path.closeSubpath();
    return path;
}

QLinearGradient gradient()
{
    QLinearGradient gradient(2.0, 2.0, 30.0, 30.0);
    gradient.setColorAt(0.0, Qt::red);
    gradient.setColorAt(1.0, Qt::transparent);
    return gradient;
}

QImage blank()
{
    QImage image(40, 40, QImage::Format_ARGB32_Premultiplied);
    image.fill(QColor(200, 220, 240, 120));
    return image;
}

int largestDifference(QImage const& left, QImage const& right)
{
    int largest = 0;
    for (int y = 0; y < left.height(); ++y) {
        for (int i = 0; i < 4 * left.width(); ++i)
            largest = qMax(largest, std::abs(left.scanLine(y)[i] - right.scanLine(y)[i]));
    }
    return largest;
}

} // namespace

class TestPathRecorder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void recordsEveryDrawingCall_data();
    void recordsEveryDrawingCall();
    void recordsTextAsItsGlyphs();
    void notesUprightEllipses_data();
    void notesUprightEllipses();
    void recordsMarks();
    void keepsPenAndBrushInTheirOwnCoordinates();
    void countsImages();
    void marksClippedPaths();
    void paintsAgainWhatWasPainted_data();
    void paintsAgainWhatWasPainted();
    void paintsAnotherOutlineInTheSameWay();
    void leavesThePainterAsItWas();
    void paintsNothingThroughASingularTransform();
    void hasTheMetricsOfAScreen();
};

void TestPathRecorder::recordsEveryDrawingCall_data()
{
    QTest::addColumn<Drawing>("draw");
    QTest::addColumn<double>("scale");
    QTest::addColumn<QString>("expected");
    auto const row = [](char const* name, char const* expected, Drawing const& draw,
                         double scale = 1.0) {
        QTest::newRow(name) << draw << scale << QString::fromLatin1(expected);
    };
    row("nothing", "", [](QPainter&) {});
    row("a path", "lined M 1 2 L 3 4", [](QPainter& painter) {
        QPainterPath path(QPointF(1.0, 2.0));
        path.lineTo(3.0, 4.0);
        painter.drawPath(path);
    });
    row("a path that is filled by winding", "filled winding M 1 2 C 3 4 c 5 6 c 7 8",
        [](QPainter& painter) {
            QPainterPath path(QPointF(1.0, 2.0));
            path.cubicTo(3.0, 4.0, 5.0, 6.0, 7.0, 8.0);
            path.setFillRule(Qt::WindingFill);
            painter.setPen(Qt::NoPen);
            painter.setBrush(Qt::red);
            painter.drawPath(path);
        });
    row("a path with neither fill nor line", "M 1 2 L 3 4", [](QPainter& painter) {
        QPainterPath path(QPointF(1.0, 2.0));
        path.lineTo(3.0, 4.0);
        painter.setPen(Qt::NoPen);
        painter.drawPath(path);
    });
    row("an empty path", "", [](QPainter& painter) { painter.drawPath(QPainterPath()); });
    row("a path that only moves", "",
        [](QPainter& painter) { painter.drawPath(QPainterPath(QPointF(1.0, 2.0))); });
    row("rectangles, each a path",
        "lined M 1 2 L 4 2 L 4 6 L 1 6 L 1 2\nlined M 0 0 L 1 0 L 1 1 L 0 1 L 0 0",
        [](QPainter& painter) {
            painter.drawRects(QVector<QRectF> {{1.0, 2.0, 3.0, 4.0}, {0.0, 0.0, 1.0, 1.0}});
        });
    row("a rectangle of integers", "lined M 1 2 L 4 2 L 4 6 L 1 6 L 1 2",
        [](QPainter& painter) { painter.drawRect(1, 2, 3, 4); });
    row("a filled rectangle", "filled M 1 2 L 4 2 L 4 6 L 1 6 L 1 2",
        [](QPainter& painter) { painter.fillRect(1, 2, 3, 4, Qt::red); });
    row("lines, each a path without a fill", "lined M 1 2 L 3 4\nlined M 5 6 L 7 8",
        [](QPainter& painter) {
            painter.setBrush(Qt::red);
            painter.drawLines(QVector<QLineF> {{1.0, 2.0, 3.0, 4.0}, {5.0, 6.0, 7.0, 8.0}});
        });
    row("a line of integers", "lined M 1 2 L 3 4",
        [](QPainter& painter) { painter.drawLine(1, 2, 3, 4); });
    row("a polygon is closed", "lined filled M 1 2 L 5 2 L 5 6 L 1 2", [](QPainter& painter) {
        painter.setBrush(Qt::red);
        painter.drawPolygon(QVector<QPointF> {{1.0, 2.0}, {5.0, 2.0}, {5.0, 6.0}});
    });
    row("a polygon of winding fill", "lined filled winding M 1 2 L 5 2 L 5 6 L 1 2",
        [](QPainter& painter) {
            painter.setBrush(Qt::red);
            painter.drawPolygon(
                QPolygon(QVector<QPoint> {{1, 2}, {5, 2}, {5, 6}}), Qt::WindingFill);
        });
    row("a polyline is open and has no fill", "lined M 1 2 L 5 2 L 5 6", [](QPainter& painter) {
        painter.setBrush(Qt::red);
        painter.drawPolyline(QVector<QPointF> {{1.0, 2.0}, {5.0, 2.0}, {5.0, 6.0}});
    });
    row("an ellipse",
        "lined M 4 2 C 4 3.10457 c 3.10457 4 c 2 4 C 0.895431 4 c 0 3.10457 c 0 2 "
        "C 0 0.895431 c 0.895431 0 c 2 0 C 3.10457 0 c 4 0.895431 c 4 2",
        [](QPainter& painter) { painter.drawEllipse(0, 0, 4, 4); });
    row("a point is a line too short to see", "lined M 1 2 L 1.01563 2",
        [](QPainter& painter) { painter.drawPoint(1, 2); });
    row(
        "scaled", "lined M 10 20 L 30 40", [](QPainter& painter) { painter.drawLine(1, 2, 3, 4); },
        10.0);
    row(
        "transformed, then scaled", "lined M 75 100 L 85 110",
        [](QPainter& painter) {
            painter.translate(7.0, 9.0);
            painter.scale(0.5, 0.5);
            painter.drawLine(1, 2, 3, 4);
        },
        10.0);
    row("a window on a viewport", "lined M 2 4 L 6 8", [](QPainter& painter) {
        painter.setWindow(0, 0, 50, 50);
        painter.setViewport(0, 0, 100, 100);
        painter.drawLine(1, 2, 3, 4);
    });
}

void TestPathRecorder::recordsEveryDrawingCall()
{
    QFETCH(Drawing, draw);
    QFETCH(double, scale);
    QFETCH(QString, expected);
    KeepingRecorder recorder(QSizeF(100.0, 100.0), scale);
    record(recorder, draw);
    QCOMPARE(text(recorder), expected);
    QCOMPARE(recorder.imageCount(), 0);
}

void TestPathRecorder::recordsTextAsItsGlyphs()
{
    KeepingRecorder recorder(QSizeF(100.0, 100.0), 10.0);
    record(recorder, [](QPainter& painter) {
        QFont font(QStringLiteral("DejaVu Sans"));
        font.setPixelSize(20);
        painter.setFont(font);
        painter.setPen(Qt::red);
        painter.drawText(QPointF(5.0, 30.0), QStringLiteral("ill"));
    });
    QCOMPARE(recorder.paths().size(), std::size_t(1));
    RecordedPath const& painted = recorder.paths().front();
    QCOMPARE(painted.brush.color(), QColor(Qt::red));
    QCOMPARE(painted.pen.style(), Qt::NoPen);
    QCOMPARE(painted.path.fillRule(), Qt::WindingFill);
    // A stem and a dot, and two stems.
    QCOMPARE(text(painted.path).count(QLatin1Char('M')), 4);
    QRectF const bounds = painted.path.boundingRect();
    QVERIFY2(bounds.left() > 50.0 && bounds.right() < 250.0, "about 17 units from 5, ten times");
    QVERIFY2(bounds.bottom() > 298.0 && bounds.bottom() < 302.0, "on the baseline");
    QVERIFY2(bounds.top() > 130.0 && bounds.top() < 160.0, "as high as an l");
}

void TestPathRecorder::notesUprightEllipses_data()
{
    QTest::addColumn<QTransform>("transform");
    QTest::addColumn<Qt::PenStyle>("line");
    QTest::addColumn<QRectF>("expected"); // of an ellipse of 4 by 2 at (1, 1); null if not noted
    auto const row = [](char const* name, QTransform const& transform, Qt::PenStyle line,
                         QRectF const& expected) {
        QTest::newRow(name) << transform << line << expected;
    };
    QRectF const none;
    QRectF const turned(-30.0, 10.0, 20.0, 40.0);
    row("as it is", {}, Qt::NoPen, {10.0, 10.0, 40.0, 20.0});
    row("with a line", {}, Qt::SolidLine, {10.0, 10.0, 40.0, 20.0});
    row("moved and scaled", QTransform(2.0, 0.0, 0.0, 3.0, -1.0, 4.0), Qt::SolidLine,
        {10.0, 70.0, 80.0, 60.0});
    row("a quarter turn", QTransform().rotate(90.0), Qt::SolidLine, turned);
    row("a quarter turn in three steps", QTransform().rotate(30.0).rotate(30.0).rotate(30.0),
        Qt::NoPen, turned);
    row("half a turn", QTransform().rotate(180.0), Qt::NoPen, {-50.0, -30.0, 40.0, 20.0});
    row("mirrored", QTransform().scale(-1.0, 1.0), Qt::SolidLine, {-50.0, 10.0, 40.0, 20.0});
    row("a tenth of a degree", QTransform().rotate(0.1), Qt::NoPen, none);
    row("30 degrees", QTransform().rotate(30.0), Qt::NoPen, none);
    row("sheared", QTransform().shear(0.5, 0.0), Qt::NoPen, none);
    row("in perspective", QTransform(1.0, 0.0, 0.01, 0.0, 1.0, 0.0, 0.0, 0.0, 1.0), Qt::NoPen,
        none);
    row("dashed", {}, Qt::DashLine, {10.0, 10.0, 40.0, 20.0});
    row("dashed and scaled", QTransform().scale(2.0, 3.0), Qt::DashLine, {20.0, 30.0, 80.0, 60.0});
    row("dashed and turned, where dashes begin elsewhere", QTransform().rotate(90.0), Qt::DashLine,
        none);
    row("dashed and mirrored, where dashes run the other way", QTransform().scale(1.0, -1.0),
        Qt::DashLine, none);
}

void TestPathRecorder::notesUprightEllipses()
{
    QFETCH(QTransform, transform);
    QFETCH(Qt::PenStyle, line);
    QFETCH(QRectF, expected);
    KeepingRecorder recorder(QSizeF(100.0, 100.0), 10.0);
    record(recorder, [&](QPainter& painter) {
        painter.setTransform(transform);
        painter.setPen(line);
        painter.drawEllipse(QRectF(1.0, 1.0, 4.0, 2.0));
        painter.drawRect(QRectF(1.0, 1.0, 4.0, 2.0));
        painter.drawRoundedRect(QRectF(1.0, 1.0, 4.0, 2.0), 2.0, 1.0);
        painter.drawEllipse(QRectF(1.0, 1.0, 0.0, 2.0));
    });
    QCOMPARE(recorder.paths().size(), std::size_t(4));
    RecordedPath const& painted = recorder.paths().front();
    QCOMPARE(painted.ellipse.value_or(QRectF()), expected);
    if (painted.ellipse)
        QCOMPARE(painted.path.boundingRect(), *painted.ellipse);
    for (std::size_t i = 1; i < recorder.paths().size(); ++i)
        QVERIFY(!recorder.paths()[i].ellipse);
}

void TestPathRecorder::recordsMarks()
{
    KeepingRecorder recorder(QSizeF(100.0, 100.0), 1.0);
    record(recorder, [](QPainter& painter) {
        QFont font;
        painter.setPen(Qt::NoPen);
        font.setFamily(QStringLiteral("one"));
        painter.setFont(font);
        painter.drawPath(QPainterPath());
        painter.drawRect(1, 1, 2, 2);
        painter.drawRect(1, 1, 3, 3);
        font.setFamilies({QStringLiteral("two"), QStringLiteral("three")});
        painter.setFont(font);
        painter.drawPath(QPainterPath(QPointF(5.0, 5.0)));
        // Not with a line or a filling, however little there is of it.
        painter.setBrush(Qt::red);
        painter.drawPath(QPainterPath());
        painter.setBrush(Qt::NoBrush);
        painter.setPen(Qt::red);
        painter.drawPath(QPainterPath());
    });
    QCOMPARE(recorder.paths().size(), std::size_t(2));
    QCOMPARE(recorder.marks().size(), std::size_t(2));
    QCOMPARE(recorder.marks().at(0).fontFamily, QStringLiteral("one"));
    QCOMPARE(recorder.marks().at(0).pathCount, std::size_t(0));
    QCOMPARE(recorder.marks().at(1).fontFamily, QStringLiteral("two"));
    QCOMPARE(recorder.marks().at(1).pathCount, std::size_t(2));
}

void TestPathRecorder::keepsPenAndBrushInTheirOwnCoordinates()
{
    KeepingRecorder recorder(QSizeF(100.0, 100.0), 10.0);
    QBrush const brush = gradient();
    QPen const pen(Qt::blue, 3.0, Qt::DashLine);
    record(recorder, [&](QPainter& painter) {
        painter.translate(7.0, 9.0);
        painter.setOpacity(0.25);
        painter.setPen(pen);
        painter.setBrush(brush);
        painter.setBrushOrigin(1, 2);
        painter.setCompositionMode(QPainter::CompositionMode_Plus);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.drawRect(0, 0, 5, 5);
    });
    RecordedPath const& painted = recorder.paths().front();
    QCOMPARE(painted.transform, QTransform(10.0, 0.0, 0.0, 10.0, 70.0, 90.0));
    QCOMPARE(painted.pen, pen);
    QCOMPARE(painted.brush, brush);
    QCOMPARE(painted.brushOrigin, QPointF(1.0, 2.0));
    QCOMPARE(painted.fillOpacity, 0.25);
    QCOMPARE(painted.lineOpacity, 0.25);
    QCOMPARE(painted.compositionMode, QPainter::CompositionMode_Plus);
    QVERIFY(painted.renderHints.testFlag(QPainter::Antialiasing));
}

void TestPathRecorder::countsImages()
{
    KeepingRecorder recorder(QSizeF(100.0, 100.0), 1.0);
    record(recorder, [](QPainter& painter) {
        QImage const image = blank();
        painter.drawImage(0, 0, image);
        painter.drawPixmap(0, 0, QPixmap::fromImage(image));
        painter.drawTiledPixmap(0, 0, 100, 100, QPixmap::fromImage(image));
    });
    QCOMPARE(recorder.imageCount(), 3);
    QVERIFY(recorder.paths().empty());
}

void TestPathRecorder::marksClippedPaths()
{
    KeepingRecorder recorder(QSizeF(100.0, 100.0), 1.0);
    record(recorder, [](QPainter& painter) {
        painter.drawRect(0, 0, 50, 50);
        painter.setClipRect(0, 0, 10, 10);
        painter.drawRect(0, 0, 60, 60);
        painter.setClipping(false);
        painter.drawRect(0, 0, 70, 70);
    });
    QCOMPARE(recorder.paths().size(), std::size_t(3));
    QVERIFY(!recorder.paths()[0].clipped);
    QVERIFY(recorder.paths()[1].clipped);
    QCOMPARE(recorder.paths()[1].path.boundingRect(), QRectF(0.0, 0.0, 60.0, 60.0));
    QVERIFY(!recorder.paths()[2].clipped);
}

void TestPathRecorder::paintsAgainWhatWasPainted_data()
{
    QTest::addColumn<Drawing>("draw");
    auto const row = [](char const* name, Drawing const& draw) { QTest::newRow(name) << draw; };
    row("a filled path", [](QPainter& painter) { painter.fillPath(triangle(), Qt::red); });
    row("a path with a wide line", [](QPainter& painter) {
        painter.setPen(QPen(Qt::blue, 3.5, Qt::DashLine, Qt::RoundCap, Qt::MiterJoin));
        painter.setBrush(Qt::green);
        painter.drawPath(triangle());
    });
    row("fill and line, half transparent", [](QPainter& painter) {
        painter.setPen(QPen(Qt::blue, 5.0));
        painter.setBrush(Qt::green);
        painter.setOpacity(0.5);
        painter.drawPath(triangle());
    });
    row("a gradient, rotated and sheared", [](QPainter& painter) {
        painter.rotate(10.0);
        painter.shear(0.2, 0.1);
        painter.setBrush(gradient());
        painter.drawPath(triangle());
    });
    row("a gradient of the shape's own box, scaled unevenly", [](QPainter& painter) {
        QLinearGradient box(0.0, 0.0, 1.0, 1.0);
        box.setColorAt(0.0, Qt::red);
        box.setColorAt(1.0, Qt::blue);
        box.setCoordinateMode(QGradient::ObjectMode);
        painter.scale(1.25, 0.5);
        painter.setBrush(box);
        painter.drawPath(triangle());
    });
    row("a pattern from another origin", [](QPainter& painter) {
        painter.setBrushOrigin(3, 5);
        painter.setBrush(QBrush(Qt::black, Qt::DiagCrossPattern));
        painter.drawPath(triangle());
    });
    row("a line as wide on every scale", [](QPainter& painter) {
        QPen pen(Qt::black, 2.0);
        pen.setCosmetic(true);
        painter.scale(0.5, 0.75);
        painter.setPen(pen);
        painter.drawPath(triangle());
    });
    row("a line as wide as its scale", [](QPainter& painter) {
        painter.scale(0.5, 1.25);
        painter.setPen(QPen(Qt::black, 4.0));
        painter.drawPath(triangle());
    });
    row("erasing", [](QPainter& painter) {
        painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
        painter.fillPath(triangle(), QColor(0, 0, 0, 200));
    });
    row("without smooth edges", [](QPainter& painter) {
        painter.setRenderHint(QPainter::Antialiasing, false);
        painter.fillPath(triangle(), Qt::red);
    });
    row("points", [](QPainter& painter) {
        painter.setPen(QPen(Qt::red, 6.0));
        painter.drawPoint(QPointF(10.0, 10.0));
        painter.setPen(QPen(Qt::red, 6.0, Qt::SolidLine, Qt::RoundCap));
        painter.drawPoint(QPointF(20.0, 10.5));
    });
    row("shapes", [](QPainter& painter) {
        painter.setPen(QPen(Qt::blue, 1.5));
        painter.setBrush(Qt::yellow);
        painter.drawRect(QRectF(2.5, 3.25, 10.0, 20.0));
        painter.drawEllipse(QRectF(10.5, 3.25, 20.0, 12.0));
        painter.drawLine(QLineF(1.0, 38.0, 39.0, 30.0));
        painter.drawRoundedRect(QRectF(15.0, 20.0, 20.0, 12.0), 4.0, 3.0);
    });
}

void TestPathRecorder::paintsAgainWhatWasPainted()
{
    QFETCH(Drawing, draw);
    auto const drawSmoothly = [&draw](QPainter& painter) {
        painter.setRenderHint(QPainter::Antialiasing);
        draw(painter);
    };
    QImage direct = blank();
    {
        QPainter painter(&direct);
        drawSmoothly(painter);
    }
    QVERIFY(direct != blank());

    for (double const scale : {1.0, 8.0}) {
        KeepingRecorder recorder(QSizeF(40.0, 40.0), scale);
        record(recorder, drawSmoothly);
        QImage again = blank();
        QPainter painter(&again);
        painter.scale(1.0 / scale, 1.0 / scale);
        for (RecordedPath const& painted : recorder.paths())
            painted.paint(painter);
        painter.end();
        QVERIFY2(largestDifference(direct, again) <= 1,
            qPrintable(QString::number(largestDifference(direct, again))));
    }
}

void TestPathRecorder::paintsAnotherOutlineInTheSameWay()
{
    KeepingRecorder recorder(QSizeF(40.0, 40.0), 2.0);
    record(recorder, [](QPainter& painter) { painter.fillRect(0, 0, 10, 10, Qt::red); });
    QPainterPath square;
    square.addRect(20.0, 20.0, 40.0, 40.0);
    QImage image = blank();
    QPainter painter(&image);
    painter.scale(0.5, 0.5);
    recorder.paths().front().paint(painter, square);
    painter.end();
    QCOMPARE(image.pixelColor(5, 5), blank().pixelColor(5, 5));
    QCOMPARE(image.pixelColor(15, 15), QColor(Qt::red));
    QCOMPARE(image.pixelColor(29, 29), QColor(Qt::red));
    QCOMPARE(image.pixelColor(31, 31), blank().pixelColor(31, 31));
}

void TestPathRecorder::leavesThePainterAsItWas()
{
    KeepingRecorder recorder(QSizeF(40.0, 40.0), 2.0);
    record(recorder, [](QPainter& painter) {
        painter.rotate(30.0);
        painter.fillPath(triangle(), Qt::red);
    });
    QImage image = blank();
    QPainter painter(&image);
    painter.setPen(Qt::green);
    painter.setOpacity(0.5);
    recorder.paths().front().paint(painter);
    QCOMPARE(painter.pen(), QPen(Qt::green));
    QCOMPARE(painter.brush(), QBrush(Qt::NoBrush));
    QCOMPARE(painter.opacity(), 0.5);
    QVERIFY(painter.transform().isIdentity());
    QVERIFY(!painter.testRenderHint(QPainter::Antialiasing));
}

void TestPathRecorder::paintsNothingThroughASingularTransform()
{
    KeepingRecorder recorder(QSizeF(40.0, 40.0), 1.0);
    record(recorder, [](QPainter& painter) {
        painter.scale(1.0, 0.0);
        painter.fillPath(triangle(), Qt::red);
    });
    QCOMPARE(text(recorder), QStringLiteral("filled M 2 0 L 30 0 L 7.5 0 L 2 0"));
    QImage image = blank();
    QPainter painter(&image);
    recorder.paths().front().paint(painter);
    painter.end();
    QCOMPARE(image, blank());
}

void TestPathRecorder::hasTheMetricsOfAScreen()
{
    KeepingRecorder const recorder(QSizeF(192.0, 95.5), 10.0);
    QCOMPARE(recorder.width(), 192);
    QCOMPARE(recorder.height(), 96);
    QCOMPARE(recorder.widthMM(), 51); // two inches
    QCOMPARE(recorder.heightMM(), 25);
    QCOMPARE(recorder.logicalDpiX(), 96);
    QCOMPARE(recorder.logicalDpiY(), 96);
    QCOMPARE(recorder.physicalDpiX(), 96);
    QCOMPARE(recorder.physicalDpiY(), 96);
    QCOMPARE(recorder.depth(), 32);
    QCOMPARE(recorder.devicePixelRatioF(), 1.0);
    KeepingRecorder const boundless(QSizeF(1e300, -1.0), 1.0);
    QCOMPARE(boundless.width(), 1000000000);
    QCOMPARE(boundless.height(), 0);
}

QTEST_MAIN(TestPathRecorder)
#include "tst_pathrecorder.moc"
