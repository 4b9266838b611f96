// SPDX-License-Identifier: MIT
#include "import/losses.h"
#include "testing.h"

#include <QLinearGradient>

/** Changes how a shape is painted. */
using Paint = void (*)(RecordedPath&);

Q_DECLARE_METATYPE(Paint)

namespace {

/** A path as SVG paints it unless told otherwise: filled in black, with or without a line. */
RecordedPath usualShape(bool isStroked)
{
    RecordedPath shape;
    shape.path.addRect(10.0, 10.0, 50.0, 50.0);
    shape.path.setFillRule(Qt::WindingFill);
    shape.brush = Qt::black;
    shape.pen = Qt::NoPen;
    if (isStroked)
        shape.pen = QPen(Qt::black, 1.0, Qt::SolidLine, Qt::FlatCap, Qt::SvgMiterJoin);
    return shape;
}

ImportedOutlines pictureOf(std::vector<RecordedPath> const& shapes, double scale = 1.0)
{
    ImportedOutlines picture {QSizeF(100.0, 100.0), {}, scale};
    Diagnostics diagnostics;
    for (RecordedPath const& shape : shapes)
        appendOutline(picture, shape, "path", "a.svg", diagnostics);
    return picture;
}

/** @param imported one picture or several */
template <class Imported> QStringList lossesOf(Imported const& imported)
{
    Diagnostics diagnostics;
    warnOfLosses(imported, "a.svg", diagnostics);
    QStringList lines;
    for (Diagnostic const& diagnostic : diagnostics) {
        bool const isPlaced = diagnostic.file == QLatin1String("a.svg") && diagnostic.line == 0
            && diagnostic.severity == Diagnostic::Severity::Warning;
        lines << (isPlaced ? diagnostic.text : "misplaced: " + diagnostic.text);
    }
    return lines;
}

QGradient fade(QColor const& from, QColor const& to)
{
    QLinearGradient gradient(0.0, 0.0, 50.0, 0.0);
    gradient.setColorAt(0.0, from);
    gradient.setColorAt(1.0, to);
    return gradient;
}

} // namespace

class TestLosses : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void namesEachLossWithItsCount_data();
    void namesEachLossWithItsCount();
    void usualPaintIsNoLoss_data();
    void usualPaintIsNoLoss();
    void whatIsNotPaintedIsNoLoss_data();
    void whatIsNotPaintedIsNoLoss();
    void namesEveryLossOfAShape();
    void measuresWidthsInTheUnitOfThePicture_data();
    void measuresWidthsInTheUnitOfThePicture();
    void namesTheFillRuleThatCounts_data();
    void namesTheFillRuleThatCounts();
    void countsLostLines();
    void addsUpSeveralPictures();
};

void TestLosses::namesEachLossWithItsCount_data()
{
    QTest::addColumn<Paint>("paint");
    QTest::addColumn<QString>("what");
    auto const row = [](char const* name, Paint paint, char const* what) {
        QTest::newRow(name) << paint << QString(what);
    };
    char const* const colour = "a colour other than black";
    row(
        "red filling", [](RecordedPath& shape) { shape.brush = QColor(1, 0, 0); }, colour);
    row(
        "green filling", [](RecordedPath& shape) { shape.brush = QColor(0, 1, 0); }, colour);
    row(
        "blue filling", [](RecordedPath& shape) { shape.brush = QColor(0, 0, 1); }, colour);
    row(
        "white line", [](RecordedPath& shape) { shape.pen.setColor(Qt::white); }, colour);
    row(
        "filling and line",
        [](RecordedPath& shape) {
            shape.brush = Qt::red;
            shape.pen.setColor(Qt::red);
        },
        colour);

    char const* const gradient = "a gradient or pattern";
    row(
        "gradient", [](RecordedPath& shape) { shape.brush = fade(Qt::red, Qt::blue); }, gradient);
    row(
        "pattern, whatever its colour",
        [](RecordedPath& shape) { shape.brush = QBrush(Qt::red, Qt::Dense4Pattern); }, gradient);
    row(
        "gradient of the line",
        [](RecordedPath& shape) { shape.pen.setBrush(fade(Qt::red, Qt::blue)); }, gradient);

    char const* const opacity = "opacity below 1";
    row(
        "opacity of the filling", [](RecordedPath& shape) { shape.fillOpacity = 0.99; }, opacity);
    row(
        "opacity of the line", [](RecordedPath& shape) { shape.lineOpacity = 0.99; }, opacity);
    row(
        "translucent filling", [](RecordedPath& shape) { shape.brush = QColor(0, 0, 0, 254); },
        opacity);
    row(
        "translucent line", [](RecordedPath& shape) { shape.pen.setColor(QColor(0, 0, 0, 254)); },
        opacity);

    char const* const width = "a line width other than 1";
    row(
        "thin line", [](RecordedPath& shape) { shape.pen.setWidthF(0.99); }, width);
    row(
        "thick line", [](RecordedPath& shape) { shape.pen.setWidthF(1.01); }, width);
    row(
        "hairline", [](RecordedPath& shape) { shape.pen.setWidthF(0.0); }, width);

    char const* const dashes = "a dashed line";
    row(
        "dots", [](RecordedPath& shape) { shape.pen.setStyle(Qt::DotLine); }, dashes);
    row(
        "dashes of its own",
        [](RecordedPath& shape) {
            shape.pen.setDashPattern({3.0, 2.0});
        },
        dashes);

    char const* const ends = "line ends other than butt, or joins other than miter";
    row(
        "round ends", [](RecordedPath& shape) { shape.pen.setCapStyle(Qt::RoundCap); }, ends);
    row(
        "square ends", [](RecordedPath& shape) { shape.pen.setCapStyle(Qt::SquareCap); }, ends);
    row(
        "round joins", [](RecordedPath& shape) { shape.pen.setJoinStyle(Qt::RoundJoin); }, ends);
    row(
        "bevel joins", [](RecordedPath& shape) { shape.pen.setJoinStyle(Qt::BevelJoin); }, ends);

    row(
        "blending",
        [](RecordedPath& shape) { shape.compositionMode = QPainter::CompositionMode_Multiply; },
        "a way of blending");
}

void TestLosses::namesEachLossWithItsCount()
{
    QFETCH(Paint, paint);
    QFETCH(QString, what);
    RecordedPath const usual = usualShape(true);
    RecordedPath changed = usual;
    paint(changed);
    QCOMPARE(lossesOf(pictureOf({changed})),
        QStringList(QStringLiteral("1 shape with %1: not kept").arg(what)));
    QCOMPARE(lossesOf(pictureOf({changed, usual, changed, changed, usual})),
        QStringList(QStringLiteral("3 shapes with %1: not kept").arg(what)));
}

void TestLosses::usualPaintIsNoLoss_data()
{
    QTest::addColumn<Paint>("paint");
    auto const row = [](char const* name, Paint paint) { QTest::newRow(name) << paint; };
    row("filling and line", [](RecordedPath&) {});
    row("filling", [](RecordedPath& shape) { shape.pen = Qt::NoPen; });
    row("line", [](RecordedPath& shape) { shape.brush = Qt::NoBrush; });
    row("plain miter joins", [](RecordedPath& shape) { shape.pen.setJoinStyle(Qt::MiterJoin); });
    row("even-odd filling", [](RecordedPath& shape) { shape.path.setFillRule(Qt::OddEvenFill); });
    row("smooth edges", [](RecordedPath& shape) { shape.renderHints = QPainter::Antialiasing; });
    row("moved and turned", [](RecordedPath& shape) {
        shape.transform = QTransform().rotate(30.0).translate(1e4, 1e4);
    });
}

void TestLosses::usualPaintIsNoLoss()
{
    QFETCH(Paint, paint);
    RecordedPath shape = usualShape(true);
    paint(shape);
    QCOMPARE(lossesOf(pictureOf({shape, shape})), QStringList());
    QCOMPARE(lossesOf(pictureOf({})), QStringList());
}

void TestLosses::whatIsNotPaintedIsNoLoss_data()
{
    QTest::addColumn<Paint>("paint");
    auto const row = [](char const* name, Paint paint) { QTest::newRow(name) << paint; };
    row("without a line", [](RecordedPath& shape) {
        shape.pen = QPen(Qt::red, 5.0, Qt::DotLine, Qt::RoundCap, Qt::RoundJoin);
        shape.pen.setStyle(Qt::NoPen);
        shape.lineOpacity = 0.5;
    });
    row("without a filling", [](RecordedPath& shape) {
        shape.brush = QBrush(QColor(255, 0, 0, 128), Qt::NoBrush);
        shape.fillOpacity = 0.5;
    });
}

void TestLosses::whatIsNotPaintedIsNoLoss()
{
    QFETCH(Paint, paint);
    RecordedPath shape = usualShape(true);
    paint(shape);
    QCOMPARE(lossesOf(pictureOf({shape})), QStringList());
}

void TestLosses::namesEveryLossOfAShape()
{
    RecordedPath shape = usualShape(true);
    shape.brush = fade(Qt::red, Qt::blue);
    shape.pen = QPen(QColor(0, 255, 0, 128), 5.0, Qt::DotLine, Qt::RoundCap, Qt::RoundJoin);
    shape.compositionMode = QPainter::CompositionMode_Plus;
    QCOMPARE(lossesOf(pictureOf({shape})),
        QStringList({"1 shape with a colour other than black: not kept",
            "1 shape with a gradient or pattern: not kept",
            "1 shape with opacity below 1: not kept",
            "1 shape with a line width other than 1: not kept",
            "1 shape with a dashed line: not kept",
            "1 shape with line ends other than butt, or joins other than miter: not kept",
            "1 shape with a way of blending: not kept"}));
}

void TestLosses::measuresWidthsInTheUnitOfThePicture_data()
{
    QTest::addColumn<double>("scale");
    QTest::addColumn<QTransform>("transform");
    QTest::addColumn<double>("width");
    QTest::addColumn<bool>("isCosmetic");
    QTest::addColumn<bool>("isLoss");
    QTransform const plain = QTransform::fromScale(333.3, 333.3);
    QTransform const doubled = QTransform::fromScale(666.6, 666.6);
    QTest::newRow("as usual") << 333.3 << plain << 1.0 << false << false;
    QTest::newRow("turned") << 333.3 << QTransform(plain).rotate(30.0) << 1.0 << false << false;
    QTest::newRow("mirrored") << 333.3 << QTransform(plain).scale(-1.0, 1.0) << 1.0 << false
                              << false;
    QTest::newRow("in a part that is enlarged") << 333.3 << doubled << 1.0 << false << true;
    QTest::newRow("there and back") << 333.3 << doubled << 0.5 << false << false;
    QTest::newRow("there and back, rounded")
        << 333.3 << QTransform::fromScale(333.3 * 7.0, 333.3 * 7.0) << 1.0 / 7.0 << false << false;
    QTest::newRow("that does not grow") << 333.3 << doubled << 1.0 << true << false;
    QTest::newRow("too thick and does not grow") << 333.3 << doubled << 2.0 << true << true;
}

void TestLosses::measuresWidthsInTheUnitOfThePicture()
{
    QFETCH(double, scale);
    QFETCH(QTransform, transform);
    QFETCH(double, width);
    QFETCH(bool, isCosmetic);
    QFETCH(bool, isLoss);
    RecordedPath shape = usualShape(true);
    shape.transform = transform;
    shape.pen.setWidthF(width);
    shape.pen.setCosmetic(isCosmetic);
    QCOMPARE(lossesOf(pictureOf({shape}, scale)),
        isLoss ? QStringList("1 shape with a line width other than 1: not kept") : QStringList());
}

void TestLosses::namesTheFillRuleThatCounts_data()
{
    QTest::addColumn<Qt::FillRule>("rule");
    QTest::addColumn<QString>("text");
    QTest::newRow("even-odd") << Qt::OddEvenFill << "evenodd";
    QTest::newRow("nonzero") << Qt::WindingFill << "nonzero";
}

void TestLosses::namesTheFillRuleThatCounts()
{
    QFETCH(Qt::FillRule, rule);
    QFETCH(QString, text);
    // A pentagram crosses itself, so no direction makes the rules agree in its middle.
    RecordedPath star = usualShape(false);
    star.path = QPainterPath(QPointF(50.0, 5.0));
    for (QPointF const& point : {QPointF(80.0, 95.0), QPointF(5.0, 38.0), QPointF(95.0, 38.0),
             QPointF(20.0, 95.0), QPointF(50.0, 5.0)})
        star.path.lineTo(point);
    star.path.setFillRule(rule);
    QString const line = QStringLiteral(" would be filled otherwise by the other rule: "
                                        "FillRule=\"%1\" beside the outline says so")
                             .arg(text);
    RecordedPath const usual = usualShape(false);
    QCOMPARE(lossesOf(pictureOf({usual, star})), QStringList("1 shape" + line));
    QCOMPARE(lossesOf(pictureOf({star, usual, star})), QStringList("2 shapes" + line));
    star.brush = Qt::NoBrush;
    star.pen = Qt::SolidLine;
    star.pen.setCapStyle(Qt::FlatCap);
    star.pen.setJoinStyle(Qt::MiterJoin);
    QCOMPARE(lossesOf(pictureOf({star})), QStringList());
}

void TestLosses::countsLostLines()
{
    RecordedPath one = usualShape(false);
    one.path.moveTo(5.0, 5.0);
    one.path.lineTo(5.5, 5.5);
    RecordedPath two = one;
    two.path.lineTo(5.6, 5.6);
    QString const line = QStringLiteral("%1 of less than one unit: not drawn, unless at a larger "
                                        "scale");
    QCOMPARE(lossesOf(pictureOf({one})), QStringList(line.arg("1 line")));
    ImportedOutlines const both = pictureOf({one, usualShape(false), two});
    QCOMPARE(lossesOf(both), QStringList(line.arg("3 lines")));
    QCOMPARE(countLostLines(both), 3);
    QCOMPARE(countLostLines(pictureOf({})), 0);
}

void TestLosses::addsUpSeveralPictures()
{
    RecordedPath wide = usualShape(true);
    wide.pen.setWidthF(2.0);
    RecordedPath shortLine = usualShape(false);
    shortLine.path.moveTo(5.0, 5.0);
    shortLine.path.lineTo(5.5, 5.5);
    ImportedPictures pictures;
    pictures.push_back(pictureOf({wide, shortLine}));
    pictures.push_back(pictureOf({wide, wide, shortLine}));
    // A line of 2 units is 1 wide in the unit of what this picture was made from.
    pictures.push_back(pictureOf({wide}, 2.0));
    QCOMPARE(lossesOf(pictures),
        QStringList({"3 shapes with a line width other than 1: not kept",
            "2 lines of less than one unit: not drawn, unless at a larger scale"}));
    QCOMPARE(lossesOf(ImportedPictures()), QStringList());
}

QTEST_GUILESS_MAIN(TestLosses)

#include "tst_losses.moc"
