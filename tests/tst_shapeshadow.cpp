// SPDX-License-Identifier: MIT
#include "paint/shapeshadow.h"

#include "outlinetesting.h"
#include "paint/figure.h"

#include <QBuffer>
#include <QImage>
#include <QPaintEngine>
#include <QPainter>
#include <QPdfWriter>
#include <QSvgGenerator>

namespace {

QImage whiteImage(int side)
{
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    return image;
}

QPainterPath square(double left, double side)
{
    QPainterPath path;
    path.addRect(left, left, side, side);
    return path;
}

ShapeShadow shadowOf(unsigned int radius, QPointF const& offset, QColor const& colour = Qt::black)
{
    return {radius, 0, offset, colour};
}

/** A white picture of 100 pixels with the shadow of a square from (30, 30) to (60, 60). */
QImage shadowed(ShapeShadow const& shadow, double scale = 1.0)
{
    QImage image = whiteImage(100);
    QPainter painter(&image);
    drawShadow(painter, square(30.0, 30.0), shadow, scale);
    return image;
}

std::shared_ptr<KpPathSegList> rectangle(QRectF const& place)
{
    auto list = std::make_shared<KpPathSegList>();
    list->closed = true;
    list->addTail(new KpPathSegMoveTo(place.topLeft(), nullptr));
    list->addTail(new KpPathSegLineTo(place.topRight(), nullptr));
    list->addTail(new KpPathSegLineTo(place.bottomRight(), nullptr));
    list->addTail(new KpPathSegLineTo(place.bottomLeft(), nullptr));
    return list;
}

QImage drawn(Figure const& figure)
{
    QImage image = whiteImage(100);
    QPainter painter(&image);
    drawFigure(painter, figure, {}, QTransform());
    return image;
}

/** Takes pictures for a device of pixels, and keeps nothing of them but how large they are. */
class SizeEngine : public QPaintEngine
{
public:
    SizeEngine()
        : QPaintEngine(AllFeatures)
    {
    }

    bool begin(QPaintDevice* /*device*/) override { return true; }
    bool end() override { return true; }
    void updateState(QPaintEngineState const& /*state*/) override { }
    void drawPixmap(
        QRectF const& /*place*/, QPixmap const& /*pixmap*/, QRectF const& /*part*/) override
    {
    }
    void drawImage(QRectF const& /*place*/, QImage const& image, QRectF const& /*part*/,
        Qt::ImageConversionFlags /*flags*/) override
    {
        sizes << image.size();
    }
    Type type() const override { return Raster; }

    QVector<QSize> sizes;
};

/** A square screen of which there are no pixels. */
class EmptyScreen : public QPaintDevice
{
public:
    explicit EmptyScreen(int side)
        : m_side(side)
    {
    }

    QPaintEngine* paintEngine() const override { return &m_engine; }
    QVector<QSize> const& sizes() const { return m_engine.sizes; }

protected:
    int metric(PaintDeviceMetric metric) const override
    {
        switch (metric) {
        case PdmWidth:
        case PdmHeight:
            return m_side;
        case PdmDevicePixelRatio:
            return 1;
        case PdmDevicePixelRatioScaled:
            return static_cast<int>(devicePixelRatioFScale());
        default:
            return QPaintDevice::metric(metric);
        }
    }

private:
    int m_side;
    mutable SizeEngine m_engine;
};

} // namespace

class TestShapeShadow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sharpShadowIsThePathMoved();
    void edgeIsSoft();
    void lengthsFollowTheScale();
    void pixelsOfADenseScreenAreUsed();
    void painterIsLeftAsItWas();
    void greatRadiusIsAsSoftAsItShould();
    void hugeShadowIsSoft();
    void hugeShadowIsBlurredInFewPixels_data();
    void hugeShadowIsBlurredInFewPixels();
    void whatCannotBeDrawnIsNot_data();
    void whatCannotBeDrawnIsNot();
    void vectorsHaveNone();
    void boundsHoldIt();
    void figuresHaveTheirOwnColours();
    void flagsOutweighColours();
    void figureWithoutFillingThrowsItsLine();
    void drawingAtHandIsDrawnAlike();
};

void TestShapeShadow::sharpShadowIsThePathMoved()
{
    QImage const image = shadowed(shadowOf(0, {10.0, -5.0}, QColor(255, 0, 0)));
    QColor const red(255, 0, 0);
    QCOMPARE(image.pixelColor(40, 25), red);
    QCOMPARE(image.pixelColor(69, 54), red);
    QCOMPARE(image.pixelColor(39, 25), QColor(Qt::white));
    QCOMPARE(image.pixelColor(40, 24), QColor(Qt::white));
    QCOMPARE(image.pixelColor(70, 54), QColor(Qt::white));
    QCOMPARE(image.pixelColor(69, 55), QColor(Qt::white));
}

void TestShapeShadow::edgeIsSoft()
{
    QImage const image = shadowed(shadowOf(8, {}));
    QCOMPARE(image.pixelColor(45, 45).red(), 0);
    // Around the edge at 60 the two pixels beside it are as far from the middle.
    int const inner = image.pixelColor(59, 45).red();
    int const outer = image.pixelColor(60, 45).red();
    QVERIFY(inner < 128 && outer > 127);
    QVERIFY(qAbs(inner + outer - 255) <= 2);
    QVERIFY(image.pixelColor(66, 45).red() < 255);
    QCOMPARE(image.pixelColor(69, 45).red(), 255);
}

void TestShapeShadow::lengthsFollowTheScale()
{
    // A radius of 4 units and an offset of 5 at two pixels a unit.
    QImage const scaled = shadowed(shadowOf(4, {5.0, 5.0}), 2.0);
    QImage const plain = shadowed(shadowOf(8, {10.0, 10.0}));
    QVERIFY(scaled == plain);
}

void TestShapeShadow::pixelsOfADenseScreenAreUsed()
{
    QImage dense = whiteImage(100);
    dense.setDevicePixelRatio(2.0);
    {
        QPainter painter(&dense);
        drawShadow(painter, square(15.0, 15.0), shadowOf(4, {5.0, 5.0}), 1.0);
    }
    dense.setDevicePixelRatio(1.0);
    QVERIFY(dense == shadowed(shadowOf(8, {10.0, 10.0})));
}

void TestShapeShadow::painterIsLeftAsItWas()
{
    QImage image = whiteImage(100);
    QPainter painter(&image);
    painter.translate(30.0, 30.0);
    painter.scale(3.0, 3.0);
    QTransform const before = painter.worldTransform();
    drawShadow(painter, square(0.0, 10.0), shadowOf(0, {}), 1.0);
    QCOMPARE(painter.worldTransform(), before);
    QVERIFY(!painter.testRenderHint(QPainter::SmoothPixmapTransform));
    painter.end();
    QVERIFY(image == shadowed(shadowOf(0, {})));
}

void TestShapeShadow::greatRadiusIsAsSoftAsItShould()
{
    // 508 pixels, twice what the kernel reaches: reduced by two, and as soft as a ramp of 1016.
    QImage image(2000, 400, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    {
        QPainter painter(&image);
        QPainterPath path;
        path.addRect(-5000.0, -5000.0, 6000.0, 10000.0);
        drawShadow(painter, path, shadowOf(127, {}), 4.0);
    }
    QVERIFY(image.pixelColor(485, 200).red() <= 3);
    QVERIFY(qAbs(image.pixelColor(1000, 200).red() - 128) <= 2);
    QVERIFY(image.pixelColor(1400, 200).red() < 255);
    QVERIFY(image.pixelColor(1515, 200).red() >= 252);
    for (int x = 1; x < 2000; ++x)
        QVERIFY(image.pixelColor(x, 200).red() >= image.pixelColor(x - 1, 200).red());
}

void TestShapeShadow::hugeShadowIsSoft()
{
    QImage image = whiteImage(100);
    QPainter painter(&image);
    drawShadow(painter, square(0.0, 1e9), shadowOf(254, {4.0, 4.0}), 1e4);
    painter.end();
    // Within a corner of it, which is far larger than the picture: a quarter of the kernel.
    QVERIFY(qAbs(image.pixelColor(50, 50).red() - 191) <= 8);
}

void TestShapeShadow::hugeShadowIsBlurredInFewPixels_data()
{
    QTest::addColumn<int>("side"); // of the screen
    QTest::addColumn<int>("radius");
    QTest::addColumn<double>("scale");
    QTest::addColumn<QSize>("blurred");
    // The kernel reaches 254 pixels on each side; one more for the edge is less than a pixel then.
    QTest::newRow("large radius") << 100 << 254 << 1e4 << QSize(509, 509);
    // 80,000 pixels a side with what the shadow reaches, of which 16 million are left.
    QTest::newRow("large screen") << 79996 << 1 << 1.0 << QSize(4000, 4000);
}

void TestShapeShadow::hugeShadowIsBlurredInFewPixels()
{
    QFETCH(int, side);
    QFETCH(int, radius);
    QFETCH(double, scale);
    QFETCH(QSize, blurred);
    EmptyScreen screen(side);
    QPainter painter(&screen);
    drawShadow(painter, square(0.0, 1e9), shadowOf(static_cast<unsigned int>(radius), {}), scale);
    painter.end();
    QCOMPARE(screen.sizes().size(), 1);
    QCOMPARE(screen.sizes().first(), blurred);
}

void TestShapeShadow::whatCannotBeDrawnIsNot_data()
{
    QTest::addColumn<QPointF>("offset");
    QTest::addColumn<double>("scale");
    QTest::newRow("no number") << QPointF(Testing::notANumber, 0.0) << 1.0;
    QTest::newRow("infinite") << QPointF(0.0, Testing::infinite) << 1.0;
    QTest::newRow("far away") << QPointF(1e300, 0.0) << 1.0;
    QTest::newRow("scale no number") << QPointF() << Testing::notANumber;
    QTest::newRow("scale infinite") << QPointF() << Testing::infinite;
    QTest::newRow("out of the picture") << QPointF(1e6, 0.0) << 1.0;
}

void TestShapeShadow::whatCannotBeDrawnIsNot()
{
    QFETCH(QPointF, offset);
    QFETCH(double, scale);
    QVERIFY(shadowed(shadowOf(8, offset), scale) == whiteImage(100));
}

void TestShapeShadow::vectorsHaveNone()
{
    auto const svg = [](bool isShadowed) {
        QByteArray file;
        QBuffer buffer(&file);
        QSvgGenerator generator;
        generator.setOutputDevice(&buffer);
        QPainter painter(&generator);
        if (isShadowed)
            drawShadow(painter, square(30.0, 30.0), shadowOf(8, {}), 1.0);
        painter.drawPath(square(30.0, 30.0));
        painter.end();
        return file;
    };
    QVERIFY(svg(false).contains("<path"));
    QCOMPARE(svg(true), svg(false));
    QByteArray file;
    QBuffer buffer(&file);
    buffer.open(QIODevice::WriteOnly);
    {
        QPdfWriter writer(&buffer);
        QPainter painter(&writer);
        drawShadow(painter, square(30.0, 30.0), shadowOf(8, {}), 1.0);
    }
    QVERIFY(file.startsWith("%PDF"));
    QVERIFY(!file.contains("/Subtype /Image"));
}

void TestShapeShadow::boundsHoldIt()
{
    QRectF const bounds(0.0, 0.0, 30.0, 20.0);
    QCOMPARE(withShadow(bounds, shadowOf(0, {})), bounds);
    QCOMPARE(withShadow(bounds, shadowOf(5, {10.0, -20.0})), QRectF(0.0, -25.0, 45.0, 45.0));
    Figure figure {QString(), {{rectangle(bounds), std::nullopt}}};
    QCOMPARE(boundsOf(figure, {}), bounds);
    figure.parts[0].appearance.shadow = shadowOf(5, {10.0, -20.0});
    QCOMPARE(boundsOf(figure, {}), QRectF(0.0, -25.0, 45.0, 45.0));
    QVERIFY(resized(figure, QSizeF(30.0, 20.0)).parts[0].appearance.shadow);
}

void TestShapeShadow::figuresHaveTheirOwnColours()
{
    Figure figure {QString(), {{rectangle({20.0, 20.0, 60.0, 60.0}), std::nullopt}}};
    QImage const usual = drawn(figure);
    QCOMPARE(usual.pixelColor(50, 50), QColor(0xdb, 0xe9, 0xf6));
    Appearance& appearance = figure.parts[0].appearance;
    appearance.fill = ShapeColour {KpColor(QColor(0, 255, 0)), {{"inv", 0.0}}};
    appearance.line = ShapeColour {KpColor(QColor(255, 0, 0)), {}};
    QImage const own = drawn(figure);
    QCOMPARE(own.pixelColor(50, 50), QColor(255, 0, 255));
    QCOMPARE(own.pixelColor(20, 50), QColor(255, 0, 0));
    appearance = Appearance();
    appearance.theme = "Harbour";
    QVERIFY(drawn(figure) == usual);
}

void TestShapeShadow::flagsOutweighColours()
{
    auto const list = rectangle({20.0, 20.0, 60.0, 60.0});
    list->noFill = true;
    list->noLine = true;
    Figure figure {QString(), {{list, std::nullopt}}};
    Appearance& appearance = figure.parts[0].appearance;
    appearance.fill = ShapeColour {KpColor(QColor(0, 255, 0)), {}};
    appearance.line = appearance.fill;
    appearance.shadow = shadowOf(3, {3.0, 3.0});
    QVERIFY(drawn(figure) == whiteImage(100));
}

void TestShapeShadow::figureWithoutFillingThrowsItsLine()
{
    auto const list = rectangle({20.0, 20.0, 60.0, 60.0});
    list->noFill = true;
    Figure figure {QString(), {{list, std::nullopt}}};
    figure.parts[0].appearance.shadow = shadowOf(0, {10.0, 10.0});
    QImage const image = drawn(figure);
    QCOMPARE(image.pixelColor(50, 50), QColor(Qt::white));
    QVERIFY(image.pixelColor(30, 50).red() < 128);
    QCOMPARE(image.pixelColor(60, 60), QColor(Qt::white));
}

void TestShapeShadow::drawingAtHandIsDrawnAlike()
{
    auto const list = rectangle({10.0, 10.0, 20.0, 20.0});
    Appearance appearance;
    appearance.fill = ShapeColour {KpColor(QColor(0, 200, 0)), {}};
    appearance.shadow = shadowOf(4, {6.0, 6.0});
    QTransform const twice = QTransform::fromScale(2.0, 2.0);
    QImage whole = whiteImage(100);
    QImage mapped = whiteImage(100);
    {
        QPainter painter(&whole);
        OutlinePainter(painter, {}).draw(*list, Qt::WindingFill, twice, appearance);
        QPainter other(&mapped);
        QPainterPath const path = twice.map(painterPathOf(*list));
        OutlinePainter(other, {}).drawMapped(*list, Qt::WindingFill, {path, path, 2.0}, appearance);
    }
    QVERIFY(whole == mapped);
    QVERIFY(mapped.pixelColor(66, 66).red() < 128);
    QCOMPARE(mapped.pixelColor(40, 40), QColor(0, 200, 0));
    QImage broad = whiteImage(100);
    QPainter painter(&broad);
    OutlineStyle style;
    style.lineWidth = 8.0;
    QPainterPath const path = twice.map(painterPathOf(*list));
    OutlinePainter(painter, style).drawMapped(*list, Qt::WindingFill, {path, path, 2.0});
    painter.end();
    QCOMPARE(broad.pixelColor(17, 40), QColor(0x1f, 0x3a, 0x5f));
}

QTEST_MAIN(TestShapeShadow)
#include "tst_shapeshadow.moc"
