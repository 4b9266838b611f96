// SPDX-License-Identifier: MIT
#include "outlinetesting.h"
#include "paint/overlaysheet.h"

#include <QImage>
#include <QPainter>

using Testing::infinite;
using Testing::notANumber;

namespace {

QRgb const white = 0xffffffff;

/** A rectangle, closed and without a filling. */
Figure rectangle(QRectF const& place)
{
    auto list = std::make_shared<KpPathSegList>();
    list->closed = true;
    list->noFill = true;
    list->addTail(new KpPathSegMoveTo(place.topLeft(), nullptr));
    list->addTail(new KpPathSegLineTo(place.topRight(), nullptr));
    list->addTail(new KpPathSegLineTo(place.bottomRight(), nullptr));
    list->addTail(new KpPathSegLineTo(place.bottomLeft(), nullptr));
    return {QString(), {{list, std::nullopt}}};
}

/** A box with a rectangle that is its own fit. */
Overlay overlay(QSizeF const& box, QRectF const& place)
{
    return {box, rectangle(place), rectangle(place), {}};
}

Overlay overlay(QSizeF const& box)
{
    return overlay(box, QRectF(QPointF(0, 0), box));
}

QByteArray file(std::vector<Overlay> const& overlays, PictureFormat format)
{
    PictureSettings settings;
    settings.format = format;
    Diagnostics diagnostics;
    auto const content = toFile(overlaySheet(overlays), settings, QString(), diagnostics);
    if (!content)
        qFatal("%s", qPrintable(diagnostics.at(0).text));
    return *content;
}

QImage image(std::vector<Overlay> const& overlays)
{
    return QImage::fromData(file(overlays, PictureFormat::Png))
        .convertToFormat(QImage::Format_RGB32);
}

/** The texts of the sheet, in the order in which they are drawn. */
QStringList texts(std::vector<Overlay> const& overlays)
{
    QStringList result;
    QXmlStreamReader reader(file(overlays, PictureFormat::Svg));
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isStartElement() && reader.name() == QLatin1String("text"))
            result << reader.readElementText().trimmed();
    }
    return result;
}

bool isDark(QRgb colour)
{
    return qGray(colour) < 150;
}

bool isOrange(QRgb colour)
{
    return qRed(colour) > 230 && qGreen(colour) > 180 && qBlue(colour) < 190;
}

bool isRed(QRgb colour)
{
    return qRed(colour) > 190 && qGreen(colour) < 100 && qBlue(colour) < 110;
}

/** How many pixels of the picture are such. */
template <class Predicate> int count(QImage const& picture, Predicate isSuch)
{
    int found = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            found += isSuch(picture.pixel(x, y)) ? 1 : 0;
    }
    return found;
}

} // namespace

class TestOverlaySheet : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void captionsTellTheBoxes();
    void fitLiesOnTopOfTheDrawing();
    void deviationIsSeen();
    void fillingIsThatOfTheDrawing();
    void fillRuleIsHeeded();
    void marksAreRedCircles();
    void whatIsOutsideTheBoxIsShown();
    void scaleIsCommon();
    void smallOverlayHasItsOwnScale();
    void cellsFillRows();
    void emptyFiguresAreDrawn();
    void sheetWithoutOverlaysIsTheLegend();
    void whatCannotBeDrawnIsTold_data();
    void whatCannotBeDrawnIsTold();
    void awkwardNumbersAreSurvived();
};

void TestOverlaySheet::captionsTellTheBoxes()
{
    QCOMPARE(texts({overlay({240, 160}), overlay({480.5, 0.25})}),
        QStringList(
            {QStringLiteral("240 × 160"), QStringLiteral("480.5 × 0.25"), "drawing", "fit"}));
}

/** 300 pixels for 300 units, from the left end at 12 + 14 and the upper one there too. */
void TestOverlaySheet::fitLiesOnTopOfTheDrawing()
{
    QImage const sheet = image({overlay({300, 200}, {50, 40, 200, 100})});
    QCOMPARE(sheet.size(), QSize(300 + 2 * 26, 200 + 2 * 26 + 18 + 26));
    int const left = 26 + 50;
    int const middle = 26 + 90;
    QVERIFY(isDark(sheet.pixel(left, middle)) || isDark(sheet.pixel(left - 1, middle)));
    QVERIFY(isOrange(sheet.pixel(left - 3, middle)));
    QVERIFY(isOrange(sheet.pixel(left + 2, middle)));
    QCOMPARE(sheet.pixel(left - 6, middle), white);
    QCOMPARE(sheet.pixel(left + 6, middle), white);
}

void TestOverlaySheet::deviationIsSeen()
{
    Overlay shifted = overlay({300, 200}, {50, 40, 200, 100});
    shifted.fit = rectangle({70, 40, 180, 100});
    QImage const sheet = image({shifted});
    int const middle = 26 + 90;
    QVERIFY(isOrange(sheet.pixel(26 + 50, middle)));
    QVERIFY(isDark(sheet.pixel(26 + 70, middle)) || isDark(sheet.pixel(26 + 69, middle)));
    QCOMPARE(sheet.pixel(26 + 74, middle), white);
}

void TestOverlaySheet::fillingIsThatOfTheDrawing()
{
    Overlay filled = overlay({300, 200}, {50, 40, 200, 100});
    filled.fit.parts.front().list->noFill = false;
    QCOMPARE(image({filled}).pixel(26 + 100, 26 + 90), white);
    filled.drawing.parts.front().list->noFill = false;
    QRgb const inside = image({filled}).pixel(26 + 100, 26 + 90);
    QVERIFY(inside != white);
    QVERIFY(qGray(inside) > 230);
}

void TestOverlaySheet::fillRuleIsHeeded()
{
    Overlay nested = overlay({300, 200}, {50, 40, 200, 100});
    KpPathSegList& list = *nested.drawing.parts.front().list;
    list.noFill = false;
    Figure const hole = rectangle({100, 60, 100, 60});
    for (KpPathSeg* const segment : qAsConst(hole.parts.front().list->segs))
        list.addTail(segment->clone());
    QVERIFY(image({nested}).pixel(26 + 150, 26 + 90) != white);
    nested.drawing.parts.front().fillRule = Qt::OddEvenFill;
    QCOMPARE(image({nested}).pixel(26 + 150, 26 + 90), white);
}

void TestOverlaySheet::marksAreRedCircles()
{
    Overlay marked = overlay({300, 200});
    QCOMPARE(count(image({marked}), isRed), 0);
    marked.marks = {{100, 50}, {notANumber, 50}, {0, infinite}};
    QImage const sheet = image({marked});
    QVERIFY(isRed(sheet.pixel(26 + 95, 26 + 50)) || isRed(sheet.pixel(26 + 94, 26 + 50)));
    QCOMPARE(sheet.pixel(26 + 100, 26 + 50), white);
    QCOMPARE(
        texts({marked}), QStringList({QStringLiteral("300 × 200"), "drawing", "fit", "not exact"}));
    // One of them here and one in the legend.
    int const circles = count(sheet, isRed);
    QVERIFY2(circles > 30 && circles < 150, qPrintable(QString::number(circles)));
}

void TestOverlaySheet::whatIsOutsideTheBoxIsShown()
{
    // From -50 to 250, so that the scale is 1.
    Overlay outside = overlay({200, 100}, {-50, 20, 100, 60});
    outside.fit = rectangle({150, 20, 100, 60});
    QImage const sheet = image({outside});
    QCOMPARE(sheet.width(), 300 + 2 * 26);
    QVERIFY(isOrange(sheet.pixel(26, 26 + 50)));
    QVERIFY(isDark(sheet.pixel(26 + 299, 26 + 50)) || isDark(sheet.pixel(26 + 300, 26 + 50)));
}

void TestOverlaySheet::scaleIsCommon()
{
    QSizeF const size = overlaySheet({overlay({300, 200}), overlay({150, 100})}).size;
    QCOMPARE(size, QSizeF(300 + 150 + 4 * 14 + 2 * 12, 200 + 2 * 14 + 18 + 26 + 2 * 12));
}

void TestOverlaySheet::smallOverlayHasItsOwnScale()
{
    QSizeF const size = overlaySheet({overlay({300, 200}), overlay({30, 20})}).size;
    QCOMPARE(size, QSizeF(2 * 300 + 4 * 14 + 2 * 12, 200 + 2 * 14 + 18 + 26 + 2 * 12));
}

void TestOverlaySheet::cellsFillRows()
{
    // Two cells of 328 in a row: three would be wider than 960.
    std::vector<Overlay> const overlays(5, overlay({300, 100}));
    QCOMPARE(overlaySheet(overlays).size, QSizeF(2 * 328 + 2 * 12, 3 * (128 + 18) + 26 + 2 * 12));
    QImage const sheet = image(overlays);
    QVERIFY(count(sheet.copy(0, 12 + 2 * 146, 12 + 328, 146), isDark) > 400);
    QVERIFY(count(sheet.copy(12 + 328, 12 + 2 * 146, 328, 146), isDark) == 0);
}

void TestOverlaySheet::emptyFiguresAreDrawn()
{
    Overlay empty {{300, 200}, {}, {}, {}};
    QCOMPARE(texts({empty}), QStringList({QStringLiteral("300 × 200"), "drawing", "fit"}));
    empty.drawing.parts.push_back({std::make_shared<KpPathSegList>(), std::nullopt});
    QCOMPARE(texts({empty}), QStringList({QStringLiteral("300 × 200"), "drawing", "fit"}));
    empty.fit = rectangle({50, 40, 200, 100});
    QVERIFY(isDark(image({empty}).pixel(26 + 50, 26 + 90))
        || isDark(image({empty}).pixel(26 + 49, 26 + 90)));
    QCOMPARE(
        texts({{{0, 0}, {}, {}, {}}}), QStringList({QStringLiteral("0 × 0"), "drawing", "fit"}));
}

void TestOverlaySheet::sheetWithoutOverlaysIsTheLegend()
{
    QCOMPARE(texts({}), QStringList({"drawing", "fit"}));
    QCOMPARE(overlaySheet({}).size.height(), 26.0 + 2 * 12);
}

void TestOverlaySheet::whatCannotBeDrawnIsTold_data()
{
    QTest::addColumn<QSizeF>("box");
    QTest::addColumn<double>("drawn");
    QTest::addColumn<double>("fitted");
    QTest::addColumn<QString>("caption");
    QTest::newRow("drawing of no number") << QSizeF(9, 9) << notANumber << 1.0 << "9 × 9";
    QTest::newRow("endless drawing") << QSizeF(9, 9) << infinite << 1.0 << "9 × 9";
    QTest::newRow("drawing too large") << QSizeF(9, 9) << -1e101 << 1.0 << "9 × 9";
    QTest::newRow("fit of no number") << QSizeF(9, 9) << 1.0 << notANumber << "9 × 9";
    QTest::newRow("box of no number") << QSizeF(notANumber, 9) << 1.0 << 1.0 << "nan × 9";
    QTest::newRow("endless box") << QSizeF(9, infinite) << 1.0 << 1.0 << "9 × inf";
    QTest::newRow("negative box") << QSizeF(-9, 9) << 1.0 << 1.0 << "-9 × 9";
}

void TestOverlaySheet::whatCannotBeDrawnIsTold()
{
    QFETCH(QSizeF, box);
    QFETCH(double, drawn);
    QFETCH(double, fitted);
    QFETCH(QString, caption);
    auto const line = [](double x) {
        auto list = std::make_shared<KpPathSegList>();
        list->addTail(new KpPathSegMoveTo(QPointF(5, 5), nullptr));
        list->addTail(new KpPathSegLineTo(QPointF(x, 9), nullptr));
        return Figure {QString(), {{list, std::nullopt}}};
    };
    Overlay const bad {box, line(drawn), line(fitted), {{1, 1}}};
    QCOMPARE(texts({bad, overlay({300, 200})}),
        QStringList({"cannot be drawn", caption, QStringLiteral("300 × 200"), "drawing", "fit",
            "not exact"}));
    // The other one is as large as without it.
    QCOMPARE(overlaySheet({bad, overlay({300, 200})}).size.height(),
        overlaySheet({overlay({300, 200})}).size.height());
}

void TestOverlaySheet::awkwardNumbersAreSurvived()
{
    QRandomGenerator random = Testing::seededRandom(6);
    for (int round = 0; round < 40; ++round) {
        std::vector<Overlay> overlays;
        for (int i = random.bounded(5); i >= 0; --i) {
            auto const figure = [&random] {
                auto list = std::make_shared<KpPathSegList>();
                OutlineTesting::fillRandomly(*list, 3, random);
                return Figure {QString(), {{list, std::nullopt}}};
            };
            overlays.push_back(
                {{std::pow(10.0, random.bounded(-20, 99)), Testing::awkwardReal(random)}, figure(),
                    figure(), {{Testing::awkwardReal(random), Testing::awkwardReal(random)}}});
        }
        QImage const sheet = image(overlays);
        QVERIFY(!sheet.isNull() && sheet.width() <= 984);
    }
}

QTEST_MAIN(TestOverlaySheet)

#include "tst_overlaysheet.moc"
