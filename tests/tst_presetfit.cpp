// SPDX-License-Identifier: MIT
#include "document/outlinedocument.h"
#include "fit/presetfit.h"
#include "import/drawingmlimport.h"
#include "outlinetesting.h"
#include "presettesting.h"
#include "segmentkind_p.h"

#include <QFile>

class TestPresetFit : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void comparesInSevenBoxes();
    void everyRuleIsLearnt_data();
    void everyRuleIsLearnt();
    void radiiOfEllipsesAreLearnt();
    void valuesAreThoseOfTheBox();
    void aSwitchIsReported_data();
    void aSwitchIsReported();
    void whatNoRuleExpressesGetsTheNearest();
    void aConstantThatFollowsTheSizeIsReported();
    void theWorstIsFound();
    void adjustmentsCount();
    void aShapeWithoutOutlinesIsWhole();
    void tooLargeAShapeIsRefused();
    void presetsOfTheStandard_data();
    void presetsOfTheStandard();
};

namespace {

QSizeF const square(100, 100);

/** A preset shape of one line, from (x, y) to the lower right end. */
ShapeDefinition definition(
    QByteArray const& guides, QByteArray const& x = "x", QByteArray const& y = "t")
{
    Diagnostics diagnostics;
    auto const all =
        readPresetShapes("<p><shape>" + guides + "<pathLst><path><moveTo><pt x='" + x + "' y='" + y
                + "'/></moveTo><lnTo><pt x='r' y='b'/></lnTo></path></pathLst></shape></p>",
            "a", diagnostics);
    return all ? all->front() : ShapeDefinition();
}

QByteArray guide(QByteArray const& formula, QByteArray const& name = "x")
{
    return "<gdLst><gd name='" + name + "' fmla='" + formula + "'/></gdLst>";
}

LearntPreset learnt(ShapeDefinition const& shape, QSizeF const& box = square,
    GuideAdjustments const& adjustments = {})
{
    Diagnostics diagnostics;
    auto const result = learntPreset(shape, box, adjustments, "a", diagnostics);
    return result && diagnostics.isEmpty() ? *result : LearntPreset();
}

KpReal const& firstX(LearntPreset const& preset)
{
    return preset.shapes.front().list->segs.first()->pt.x;
}

KpReal const& firstY(LearntPreset const& preset)
{
    return preset.shapes.front().list->segs.first()->pt.y;
}

/** The largest difference of any coordinate, as part of the longer side. */
double distance(KpPathSegList const& left, KpPathSegList const& right, QSizeF const& box)
{
    QVector<int> ints[2];
    QVector<double> doubles[2];
    KpPathSegList(left).toUndoValue(ints[0], doubles[0]);
    KpPathSegList(right).toUndoValue(ints[1], doubles[1]);
    if (doubles[0].size() != doubles[1].size())
        return Testing::infinite;
    double result = 0.0;
    // Values and rates take turns.
    for (int i = 0; i < doubles[0].size(); i += 2)
        result = std::max(result, std::fabs(doubles[0].at(i) - doubles[1].at(i)));
    return result / std::max(box.width(), box.height());
}

} // namespace

void TestPresetFit::comparesInSevenBoxes()
{
    QVector<QSizeF> const boxes = presetBoxes(QSizeF(400, 100));
    QCOMPARE(boxes.size(), 7);
    QCOMPARE(boxes.first(), QSizeF(400, 100));
    QCOMPARE(boxes.last(), QSizeF(105, 420));
    for (QSizeF const& box : boxes) {
        double const aspect = box.width() / box.height();
        QVERIFY(aspect > 0.2499 && aspect < 4.0001);
    }
}

void TestPresetFit::everyRuleIsLearnt_data()
{
    QTest::addColumn<QByteArray>("formula");
    QTest::addColumn<int>("rule");
    QTest::addColumn<double>("parameter"); // the rate, or else the value
    QTest::newRow("absolute") << QByteArray("val 30") << 0 << 30.0;
    QTest::newRow("part of the width") << QByteArray("*/ w 3 8") << 1 << 0.375;
    QTest::newRow("part of the height") << QByteArray("*/ h 3 8") << 2 << 0.375;
    QTest::newRow("from the right") << QByteArray("+- r 0 12") << 3 << 12.0;
    QTest::newRow("from the bottom") << QByteArray("+- b 0 12") << 4 << 12.0;
    QTest::newRow("part of the side") << QByteArray("*/ ss 1 4") << 5 << 0.25;
    QTest::newRow("from the right by a part") << QByteArray("+- r 0 ssd8") << 6 << 0.125;
    QTest::newRow("from the bottom by a part") << QByteArray("+- b 0 ssd8") << 7 << 0.125;
    QTest::newRow("beyond the left") << QByteArray("*/ w -8333 100000") << 1 << -0.08333;
    QTest::newRow("a minimum that is the side") << QByteArray("min w h") << 5 << 1.0;
}

void TestPresetFit::everyRuleIsLearnt()
{
    QFETCH(QByteArray, formula);
    QFETCH(int, rule);
    QFETCH(double, parameter);
    for (bool const isHorizontal : {true, false}) {
        LearntPreset const preset =
            learnt(definition(guide(formula), isHorizontal ? "x" : "r", isHorizontal ? "t" : "x"));
        QCOMPARE(preset.coordinates, 4);
        QVERIFY(preset.isWhole());
        QVERIFY(!preset.worst());
        QVERIFY(preset.error < 1e-12);
        KpReal const& real = isHorizontal ? firstX(preset) : firstY(preset);
        QCOMPARE(int(real.base), rule);
        QVERIFY(std::fabs((rule == 0 ? real.value : real.rate) - parameter) < 1e-12 * 100);
    }
}

void TestPresetFit::radiiOfEllipsesAreLearnt()
{
    Diagnostics diagnostics;
    auto const all =
        readPresetShapes("<p><o><pathLst><path><moveTo><pt x='r' y='vc'/></moveTo><arcTo "
                         "wR='ssd4' hR='hd2' stAng='0' swAng='21600000'/></path>"
                         "</pathLst></o></p>",
            "a", diagnostics);
    QVERIFY(all);
    LearntPreset const preset = learnt(all->front());
    QVERIFY(preset.isWhole());
    QCOMPARE(preset.coordinates, 4);
    KpPathSegEllipse const* const ellipse = preset.shapes.front().list->segs.first()->toEllipse();
    QVERIFY(ellipse);
    QCOMPARE(ellipse->pt.x.base, qint16(KpReal::FromRightPartOfSide));
    QCOMPARE(ellipse->pt.x.value, 75.0);
    QCOMPARE(ellipse->a.base, qint16(KpReal::PartOfSide));
    QCOMPARE(ellipse->a.value, 25.0);
    QCOMPARE(ellipse->b.base, qint16(KpReal::PartOfHeight));
    QCOMPARE(ellipse->b.rate, 0.5);
}

void TestPresetFit::valuesAreThoseOfTheBox()
{
    LearntPreset const preset = learnt(definition(guide("+- r 0 ssd8")), QSizeF(300, 80));
    QCOMPARE(preset.shapes.front().box, QSizeF(300, 80));
    QCOMPARE(firstX(preset).value, 290.0);
    QCOMPARE(preset.shapes.front().list->segs.last()->pt.y.value, 80.0);
}

void TestPresetFit::aSwitchIsReported_data()
{
    QTest::addColumn<QByteArray>("formula");
    QTest::addColumn<int>("rule"); // in the boxes about the square
    QTest::addColumn<double>("error");
    QTest::addColumn<QSizeF>("box"); // where it is so large
    // The boxes are 200 x 50, ..., and 52.5 x 210.
    QTest::newRow("minimum in a high box")
        << QByteArray("min w hd2") << 2 << 0.25 << QSizeF(52.5, 210);
    QTest::newRow("maximum in a wide box") << QByteArray("max h wd4") << 2 << 0.0 << QSizeF();
    QTest::newRow("maximum in a wider box")
        << QByteArray("max h wd3") << 2 << 1.0 / 12 << QSizeF(200, 50);
    QTest::newRow("pin in a wide box") << QByteArray("pin 0 wd2 80") << 1 << 0.1 << QSizeF(200, 50);
    QTest::newRow("condition in a high box")
        << QByteArray("?: s w l") << 1 << 0.25 << QSizeF(52.5, 210);
}

void TestPresetFit::aSwitchIsReported()
{
    QFETCH(QByteArray, formula);
    QFETCH(int, rule);
    QFETCH(double, error);
    QFETCH(QSizeF, box);
    LearntPreset const preset =
        learnt(definition("<gdLst><gd name='s' fmla='+- w w 0'/><gd name='s' "
                          "fmla='+- s w h'/><gd name='x' fmla='"
            + formula + "'/></gdLst>"));
    QCOMPARE(int(firstX(preset).base), rule);
    QCOMPARE(preset.isWhole(), error < 1e-6);
    QVERIFY(std::fabs(preset.error - error) < 1e-12);
    if (preset.isWhole())
        return;
    QCOMPARE(preset.inexact.size(), 1);
    PresetDeviation const& deviation = preset.inexact.first();
    QCOMPARE(deviation.shape, 0);
    QCOMPARE(deviation.segment, 0);
    QCOMPARE(deviation.letter, QString("X"));
    QVERIFY(std::fabs(deviation.error - error) < 1e-12);
    QVERIFY(std::fabs(deviation.box.width() - box.width()) < 1e-9);
    QVERIFY(std::fabs(deviation.box.height() - box.height()) < 1e-9);
}

void TestPresetFit::whatNoRuleExpressesGetsTheNearest()
{
    // The diagonal: no rule has it, and one that keeps its place would be worst of all.
    LearntPreset const preset = learnt(definition(guide("mod wd4 hd4 0")));
    QCOMPARE(preset.inexact.size(), 1);
    QVERIFY(firstX(preset).base == KpReal::PartOfWidth || firstX(preset).base == KpReal::PartOfSide
        || firstX(preset).base == KpReal::PartOfHeight);
    QVERIFY(preset.error > 0.01 && preset.error < 0.3);
}

void TestPresetFit::aConstantThatFollowsTheSizeIsReported()
{
    QVERIFY(!learnt(definition(guide("*/ w h 300"))).isWhole());
    QVERIFY(!learnt(definition(guide("*/ 5000 1 w"))).isWhole());
}

void TestPresetFit::theWorstIsFound()
{
    LearntPreset const preset =
        learnt(definition("<gdLst><gd name='x' fmla='pin 0 wd2 80'/><gd name='y' fmla='min w "
                          "hd2'/></gdLst>",
            "x", "y"));
    QCOMPARE(preset.inexact.size(), 2);
    QCOMPARE(preset.worst(), &preset.inexact.at(1));
    QCOMPARE(preset.worst()->letter, QString("Y"));
}

void TestPresetFit::adjustmentsCount()
{
    ShapeDefinition const shape =
        definition("<avLst><gd name='adj' fmla='val 25000'/></avLst>" + guide("*/ ss adj 100000"));
    QCOMPARE(firstX(learnt(shape)).rate, 0.25);
    QCOMPARE(firstX(learnt(shape, square, {{"adj", 10000}})).rate, 0.1);
}

void TestPresetFit::aShapeWithoutOutlinesIsWhole()
{
    ShapeDefinition shape = definition(guide("val 1"));
    shape.paths.front().steps.clear();
    LearntPreset const preset = learnt(shape);
    QVERIFY(preset.isWhole());
    QVERIFY(preset.shapes.empty());
    QCOMPARE(preset.coordinates, 0);
}

void TestPresetFit::tooLargeAShapeIsRefused()
{
    Diagnostics diagnostics;
    ShapeDefinition shape = definition(guide("val 1e308"));
    shape.paths.front().extent = QSizeF(1e-9, 1e-9);
    QVERIFY(!learntPreset(shape, square, {}, "a", diagnostics));
    QCOMPARE(diagnostics.size(), 1);
}

void TestPresetFit::presetsOfTheStandard_data()
{
    PresetTesting::addFile();
}

void TestPresetFit::presetsOfTheStandard()
{
    QFETCH(QString, file);
    QFile input(file);
    QVERIFY2(input.open(QIODevice::ReadOnly), qPrintable(file));
    Diagnostics diagnostics;
    auto const all = readPresetShapes(input.readAll(), file, diagnostics);
    QVERIFY(all);
    QCOMPARE(all->size(), std::size_t(187));
    QRandomGenerator random = Testing::seededRandom(41);
    int whole = 0;
    int coordinates = 0;
    int inexact = 0;
    for (ShapeDefinition const& shape : *all) {
        auto const preset = learntPreset(shape, QSizeF(12000, 9000), {}, file, diagnostics);
        QVERIFY(preset);
        coordinates += preset->coordinates;
        inexact += preset->inexact.size();
        if (!preset->isWhole())
            continue;
        ++whole;
        // What is said to be whole is so in any other box, too, and as it is read from a document.
        auto document = OutlineDocument::read(shapesDocument(preset->shapes), file, diagnostics);
        QVERIFY(document);
        for (int i = 0; i < 20; ++i) {
            double const height = 1000.0 + random.bounded(20000);
            QSizeF const box(height * std::pow(4.0, random.generateDouble() * 2.0 - 1.0), height);
            auto const expected = shapesInBoxes(shape, {box}, {}, file, diagnostics);
            QVERIFY(expected);
            for (std::size_t part = 0; part < preset->shapes.size(); ++part) {
                KpPathSegList const& wanted = *expected->front()[part].list;
                KpPathSegList& list = *preset->shapes[part].list;
                list.updateValue(box.width(), box.height());
                double const error = distance(list, wanted, box);
                QVERIFY2(error < 1e-9, qPrintable(shape.name + QString::number(error)));
                KpPathSegList& read = *document->outlines()[part].list;
                read.updateValue(box.width(), box.height());
                double const errorRead = distance(read, wanted, box);
                QVERIFY2(errorRead < 6e-6, qPrintable(shape.name + QString::number(errorRead)));
            }
        }
    }
    QCOMPARE(diagnostics.size(), 0);
    QCOMPARE(whole, 138);
    QCOMPARE(coordinates, 7946);
    QCOMPARE(coordinates - inexact, 6379);
}

QTEST_GUILESS_MAIN(TestPresetFit)

#include "tst_presetfit.moc"
