// SPDX-License-Identifier: MIT
#include "export/pathdata.h"
#include "fit/drawinginput.h"
#include "fit/lastplace.h"
#include "outlinetesting.h"
#include "segmentkind_p.h"

using List = std::shared_ptr<KpPathSegList>;

namespace {

std::optional<ReadDrawing> readText(QByteArray const& text, DrawingSource const& source)
{
    Diagnostics diagnostics;
    auto read = readDrawing(
        text, source, [] { return QStringList(); }, diagnostics);
    for (Diagnostic const& diagnostic : diagnostics)
        qInfo("%s", qPrintable(diagnostic.text));
    return read;
}

QByteArray picture(QSizeF const& box, QByteArray const& content)
{
    return "<svg xmlns='http://www.w3.org/2000/svg' fill='none' stroke='black' viewBox='0 0 "
        + QByteArray::number(box.width()) + ' ' + QByteArray::number(box.height()) + "'>" + content
        + "</svg>";
}

/** A coordinate of any rule, away from the edges, where rules meet. */
KpReal randomReal(QRandomGenerator& random)
{
    auto const base = static_cast<qint16>(random.bounded(8));
    bool const isLength = base == 0 || base == 3 || base == 4;
    double const parameter = isLength ? 5.0 + random.bounded(60) : (1 + random.bounded(19)) * 0.05;
    return base ? KpReal(base, parameter, 0) : KpReal(0, 0, parameter);
}

KpPoint randomPoint(QRandomGenerator& random)
{
    KpReal const x = randomReal(random);
    return {x, randomReal(random)};
}

/** Subpaths of lines and curves, and ellipses among them. */
List randomOutline(QRandomGenerator& random)
{
    auto list = std::make_shared<KpPathSegList>();
    for (int subpath = random.bounded(1, 4); subpath > 0; --subpath) {
        if (random.bounded(4) == 0) {
            auto* const ellipse =
                new KpPathSegEllipse(randomPoint(random), KpReal(), KpReal(), nullptr);
            ellipse->a = randomReal(random);
            ellipse->b = randomReal(random);
            list->addTail(ellipse);
            continue;
        }
        list->addTail(new KpPathSegMoveTo(randomPoint(random), nullptr));
        for (int step = random.bounded(1, 8); step > 0; --step) {
            if (random.bounded(2)) {
                list->addTail(new KpPathSegLineTo(randomPoint(random), nullptr));
            } else {
                KpPoint const first = randomPoint(random);
                KpPoint const second = randomPoint(random);
                list->addTail(new KpPathSegCurveTo(first, second, randomPoint(random), nullptr));
            }
        }
    }
    return list;
}

/** The outline in a box, as a picture of which every number has two decimals. */
std::optional<SizedDrawing> drawn(List const& list, QSizeF const& box)
{
    list->updateValue(box.width(), box.height());
    PathDataOptions options;
    options.decimals = 2;
    auto const data = pathData(*list, options);
    auto read = readText(picture(box, "<path d='" + data.value_or(QString()).toLatin1() + "'/>"),
        {"picture", std::nullopt});
    if (!read)
        return std::nullopt;
    return std::move(read->drawing);
}

QVector<int> basesOf(KpPathSegList const& list)
{
    QVector<int> bases;
    for (KpPathSeg* const seg : list.segs) {
        bases << -seg->type;
        SegmentKind::forEachReal(*seg, [&bases](KpReal const& real) { bases << real.base; });
    }
    return bases;
}

} // namespace

class TestDrawingInput : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsTheBoxBehindTheFile_data();
    void findsTheBoxBehindTheFile();
    void findsTheLastPlace_data();
    void findsTheLastPlace();
    void theToleranceIsThatOfTheCoarsestDrawing_data();
    void theToleranceIsThatOfTheCoarsestDrawing();
    void picturesKeepTheirUnits();
    void documentsAreInTheirBox();
    void scalingTakesAllAlong();
    void drawingsAreReadWithTheToleranceOfAll();
    void theFirstDrawingThatCannotBeReadEndsTheReading();
    void randomOutlinesComeBackFromPicturesWithTwoDecimals();
};

void TestDrawingInput::findsTheBoxBehindTheFile_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("file");
    QTest::addColumn<QSizeF>("box"); // invalid: none
    QTest::newRow("no box") << "a.svg"
                            << "a.svg" << QSizeF();
    QTest::newRow("a box") << "a.svg@240x160"
                           << "a.svg" << QSizeF(240, 160);
    QTest::newRow("fractions") << "a.svg@0.5x1e2"
                               << "a.svg" << QSizeF(0.5, 100);
    QTest::newRow("capital letter") << "a.svg@240X160"
                                    << "a.svg" << QSizeF(240, 160);
    QTest::newRow("sign of multiplication")
        << QString::fromUtf8("a.svg@240\u00d7160") << "a.svg" << QSizeF(240, 160);
    QTest::newRow("another @ before it") << "a@2.svg@24x16"
                                         << "a@2.svg" << QSizeF(24, 16);
    QTest::newRow("an @ that is no box") << "icon@2x.svg"
                                         << "icon@2x.svg" << QSizeF();
    QTest::newRow("half a box") << "a.svg@240x"
                                << "a.svg@240x" << QSizeF();
    QTest::newRow("a box of three") << "a.svg@1x2x3"
                                    << "a.svg@1x2x3" << QSizeF();
    QTest::newRow("no file") << "@240x160"
                             << "@240x160" << QSizeF();
}

void TestDrawingInput::findsTheBoxBehindTheFile()
{
    QFETCH(QString, text);
    QFETCH(QString, file);
    QFETCH(QSizeF, box);
    DrawingSource const source = drawingSource(text);
    QCOMPARE(source.file, file);
    QCOMPARE(source.box.value_or(QSizeF()), box);
}

void TestDrawingInput::findsTheLastPlace_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<double>("place");
    auto const path = [](QByteArray const& data) { return "<svg><path d='" + data + "'/></svg>"; };
    QTest::newRow("whole units") << path("M0 0L100 250") << 1.0;
    QTest::newRow("two decimals") << path("M0.5 1.25L100.12 3") << 0.01;
    QTest::newRow("numbers without blanks") << path("M.5.25-3.125.5") << 0.001;
    QTest::newRow("six significant digits") << path("M0.123456 12.3456L123.456 1.23456") << 0.001;
    QTest::newRow("exponents") << path("M1.5e2 25e-3") << 10.0;
    QTest::newRow("points, circles and coordinates")
        << QByteArray("<svg><polygon points='1.25,2'/><circle cx='3.5'/></svg>") << 0.01;
    QTest::newRow("documents") << QByteArray("<S><X V='12.345' B='1' P='0.123456789'/></S>")
                               << 0.001;
    QTest::newRow("what are no coordinates")
        << QByteArray("<svg version='1.10001'><path d='M1 2' stroke-width='0.12345'/></svg>")
        << 1.0;
    QTest::newRow("an enlarging group")
        << QByteArray("<svg><g transform='scale(4)'><path d='M1.25 2'/></g></svg>") << 0.04;
    QTest::newRow("a matrix in a group") << QByteArray(
        "<svg><g transform='scale(2)'><path transform='matrix(0,3,3,0,7,7)' "
        "d='M1.5 2'/></g></svg>") << 0.6000000000000001;
    QTest::newRow("a group that has ended")
        << QByteArray("<svg><g transform='scale(4)'/><path d='M1.25 2'/></svg>") << 0.01;
    QTest::newRow("one number of a computation among many")
        << path("M0.30000000000000004 1L1.25 2.25 3.25 4.25 5.25 6.25 7.25 8.25 9.25 1.75") << 0.01;
    QTest::newRow("no numbers") << QByteArray("<svg/>") << 1.0;
    QTest::newRow("no XML") << QByteArray("M0.25 1") << 1.0;
}

void TestDrawingInput::findsTheLastPlace()
{
    QFETCH(QByteArray, xml);
    QFETCH(double, place);
    COMPARE_BITS(lastPlaceOf(xml), place);
}

void TestDrawingInput::theToleranceIsThatOfTheCoarsestDrawing_data()
{
    QTest::addColumn<QVector<double>>("places");
    QTest::addColumn<double>("side");
    QTest::addColumn<double>("tolerance");
    using Places = QVector<double>;
    QTest::newRow("two decimals") << Places {0.01, 0.01} << 100.0 << 0.006;
    QTest::newRow("the coarser one counts") << Places {0.001, 0.01} << 100.0 << 0.006;
    QTest::newRow("whole units do not count beside decimals")
        << Places {1.0, 0.01} << 100.0 << 0.006;
    QTest::newRow("whole units") << Places {1.0, 1.0} << 100.0 << 0.06;
    QTest::newRow("one decimal") << Places {0.1} << 100.0 << 0.06;
    QTest::newRow("never the sixth digit") << Places {1e-9} << 100.0 << 0.001;
    QTest::newRow("large pictures") << Places {1.0} << 100000.0 << 1.0;
}

void TestDrawingInput::theToleranceIsThatOfTheCoarsestDrawing()
{
    QFETCH(QVector<double>, places);
    QFETCH(double, side);
    QFETCH(double, tolerance);
    QVERIFY(std::abs(toleranceFor(places, side) - tolerance) <= 1e-15);
}

void TestDrawingInput::picturesKeepTheirUnits()
{
    auto const read = readText(
        picture({300, 200}, "<path id='line' d='M10 20L300 200'/>"), {"a.svg", std::nullopt});
    QVERIFY(read);
    QCOMPARE(read->drawing.file, QString("a.svg"));
    QCOMPARE(read->drawing.box, QSizeF(300, 200));
    QCOMPARE(read->drawing.shapes.size(), std::size_t(1));
    QCOMPARE(read->drawing.shapes.front().name, QString("line"));
    KpPathSegList const& list = *read->drawing.shapes.front().list;
    QCOMPARE(list.segs.size(), 2);
    COMPARE_BITS(list.segs.at(0)->pt.y.value, 20.0);
    COMPARE_BITS(list.segs.at(1)->pt.x.value, 300.0);
    auto const boxed =
        readText(picture({300, 200}, "<path d='M10 20L300 200'/>"), {"a.svg", QSizeF(50, 60)});
    QVERIFY(boxed);
    QCOMPARE(boxed->drawing.box, QSizeF(50, 60));
}

void TestDrawingInput::documentsAreInTheirBox()
{
    QByteArray const document = "<Shapes><Shape Name='a' Width='80' Height='40'><Geometry "
                                "Closed='0'><MoveTo><X V='7' B='1' "
                                "P='9'/><Y V='8'/></MoveTo></Geometry></Shape></Shapes>";
    auto const read = readText(document, {"a.xml", std::nullopt});
    QVERIFY(read);
    QCOMPARE(read->drawing.box, QSizeF(80, 40));
    // As it was drawn, whatever its rules say.
    COMPARE_BITS(read->drawing.shapes.front().list->segs.front()->pt.x.value, 7.0);
    QVERIFY(!readText("<D><Geometry Closed='0'><MoveTo/></Geometry></D>", {"b.xml", std::nullopt}));
}

void TestDrawingInput::scalingTakesAllAlong()
{
    auto read = readText(
        picture({300, 200}, "<ellipse cx='10' cy='20' rx='3' ry='4'/>"), {"a.svg", std::nullopt});
    QVERIFY(read);
    scale(read->drawing, 2.5);
    QCOMPARE(read->drawing.box, QSizeF(750, 500));
    KpPathSegEllipse const* const ellipse =
        read->drawing.shapes.front().list->segs.front()->toEllipse();
    QVERIFY(ellipse);
    QCOMPARE(ellipse->pt.x.value, 25.0);
    QCOMPARE(ellipse->b.value, 10.0);
}

void TestDrawingInput::drawingsAreReadWithTheToleranceOfAll()
{
    QMap<QString, QByteArray> const files {
        {"a", picture({100, 50}, "<path d='M0 0L9.25 5'/>")},
        {"b", picture({60, 90}, "<path d='M0 0L7.125 5'/>")},
    };
    Diagnostics diagnostics;
    auto const read = readDrawings(
        {{"a", std::nullopt}, {"b", QSizeF(80, 90)}}, 2.0,
        [&](QString const& file, Diagnostics&) { return std::optional(files.value(file)); },
        [] { return QStringList(); }, diagnostics);
    QVERIFY(read);
    QVERIFY(diagnostics.isEmpty());
    QCOMPARE(read->drawings.size(), 2u);
    QCOMPARE(read->drawings[0].box, QSizeF(200, 100));
    QCOMPARE(read->drawings[1].box, QSizeF(160, 180));
    QCOMPARE(read->drawings[1].shapes.at(0).list->segs.at(1)->pt.x.value, 14.25);
    QCOMPARE(read->tolerance, 0.012);
}

void TestDrawingInput::theFirstDrawingThatCannotBeReadEndsTheReading()
{
    Diagnostics diagnostics;
    QStringList asked;
    auto const read = readDrawings(
        {{"a", std::nullopt}, {"gone", std::nullopt}, {"b", std::nullopt}}, 1.0,
        [&](QString const& file, Diagnostics& found) -> std::optional<QByteArray> {
            asked << file;
            if (file == "gone") {
                found.error(file, "it is gone");
                return std::nullopt;
            }
            return picture({100, 50}, "<path d='M0 0L9.25 5'/>");
        },
        [] { return QStringList(); }, diagnostics);
    QVERIFY(!read);
    QCOMPARE(asked, QStringList({"a", "gone"}));
    QCOMPARE(diagnostics.size(), 1);
    QCOMPARE(diagnostics.at(0).text, QStringLiteral("it is gone"));
}

void TestDrawingInput::randomOutlinesComeBackFromPicturesWithTwoDecimals()
{
    QRandomGenerator random = Testing::seededRandom(31);
    int coordinates = 0;
    for (int round = 0; round < 500; ++round) {
        List const list = randomOutline(random);
        auto const wide = drawn(list, {400, 200});
        auto const tall = drawn(list, {170, 310});
        QVERIFY(wide && tall);
        Diagnostics diagnostics;
        auto const result = fitDrawings({*wide, *tall}, {0.006, true}, diagnostics);
        QVERIFY(result);
        QVERIFY2(result->isWhole(), qPrintable(QString("round %1").arg(round)));
        QCOMPARE(basesOf(*result->shapes.front().list), basesOf(*list));
        coordinates += result->coordinates;
    }
    qInfo("%d coordinates", coordinates);
    QVERIFY(coordinates > 10000);
}

QTEST_MAIN(TestDrawingInput)

#include "tst_drawinginput.moc"
