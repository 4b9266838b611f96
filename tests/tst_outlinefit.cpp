// SPDX-License-Identifier: MIT
#include "document/exactcopy.h"
#include "fit/outlinefit.h"
#include "outlinetesting.h"
#include "segmentkind_p.h"

#include <cmath>

using Boxes = QVector<QSizeF>;

namespace {

Boxes const decisive {QSizeF(400, 200), QSizeF(150, 300)};

using List = std::shared_ptr<KpPathSegList>;

/** The outline of a document whose root is a Geometry. */
List listOf(QByteArray const& xml)
{
    auto list = std::make_shared<KpPathSegList>();
    list->parse(OutlineTesting::domElement(xml), 0);
    return list;
}

/** The outlines as drawn for a box: their values there, to `decimals`, and no rules. */
SizedDrawing drawn(std::vector<List> const& lists, QSizeF const& box, int decimals = 12)
{
    SizedDrawing drawing {QString("%1x%2").arg(box.width()).arg(box.height()), box, {}};
    double const unit = std::pow(10.0, decimals);
    for (List const& list : lists) {
        List const copy = exactCopy(*list);
        copy->updateValue(box.width(), box.height());
        for (KpPathSeg* const seg : copy->segs) {
            SegmentKind::forEachReal(*seg, [unit](KpReal& real) {
                real = KpReal(0, 0, std::round(real.value * unit) / unit);
            });
        }
        drawing.shapes.push_back({QString(), box, std::nullopt, copy});
    }
    return drawing;
}

std::vector<SizedDrawing> drawnAt(
    std::vector<List> const& lists, Boxes const& boxes, int decimals = 12)
{
    std::vector<SizedDrawing> drawings;
    for (QSizeF const& box : boxes)
        drawings.push_back(drawn(lists, box, decimals));
    return drawings;
}

/** The rules of an outline and their parameters to four digits: "M X1 0.5, Y2 0; L ...". */
QString rulesOf(KpPathSegList const& list)
{
    QStringList segments;
    for (KpPathSeg* const seg : list.segs) {
        QStringList reals;
        SegmentKind::forEachCoordinate(*seg, [&reals](QString const& letter, KpReal const& real) {
            reals << QStringLiteral("%1%2 %3").arg(letter).arg(real.base).arg(
                real.base ? real.rate : real.value, 0, 'g', 4);
        });
        segments << SegmentKind::find([seg](auto const& kind) { return kind.type == seg->type; })
                        ->name()
                        .left(1)
                + ' ' + reals.join(", ");
    }
    return segments.join("; ");
}

FitOptions const exactly {1e-6, true};

std::optional<FitResult> fitOf(
    std::vector<SizedDrawing> const& drawings, FitOptions const& options = exactly)
{
    Diagnostics diagnostics;
    auto result = fitDrawings(drawings, options, diagnostics);
    for (Diagnostic const& diagnostic : diagnostics)
        qInfo("%s", qPrintable(diagnostic.text));
    return result;
}

/** What is said of drawings that cannot be fitted. */
QString faultOf(std::vector<SizedDrawing> const& drawings)
{
    Diagnostics diagnostics;
    if (fitDrawings(drawings, exactly, diagnostics) || diagnostics.size() != 1)
        return QString("%1 diagnostics").arg(diagnostics.size());
    return diagnostics.at(0).file + ": " + diagnostics.at(0).text;
}

List polygon(QVector<QPointF> const& points, bool closed = true)
{
    auto list = std::make_shared<KpPathSegList>();
    list->closed = closed;
    list->moveTo(points.first());
    for (QPointF const& point : points.mid(1))
        list->lineTo(point);
    return list;
}

SizedDrawing drawingOf(QSizeF const& box, std::vector<List> const& lists)
{
    SizedDrawing drawing {QString("%1x%2").arg(box.width()).arg(box.height()), box, {}};
    for (List const& list : lists)
        drawing.shapes.push_back({QString(), box, std::nullopt, list});
    return drawing;
}

} // namespace

Q_DECLARE_METATYPE(std::vector<SizedDrawing>)

class TestOutlineFit : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void learnsEveryKindOfSegment();
    void keepsFlagsNamesAndRulesOfFilling();
    void valuesAreThoseInTheFirstBox();
    void namesWhatIsNotDecided();
    void proposesTheBoxThatDecides();
    void namesWhatNoRuleExpresses();
    void alignsAnotherStart();
    void alignsAnotherDirection();
    void alignsAnotherOrder();
    void pairsShapesByName();
    void anImpliedClosingLineIsALine();
    void aPointThatOnlyOneDrawingHasIsNotLost();
    void curvesAreTurnedByTheirControlPoints();
    void shapesOfTheSameBoundsAreToldApart();
    void linesOfNoLengthMayBeMissing();
    void linesOfNoLengthAreWhereUsualRulesPutThem();
    void linesThatAreMissingElsewhereAreDifferences();
    void curvesThatAreAnEllipseBecomeOne();
    void curvesStayWhereOneDrawingHasNoEllipse();
    void holesThatAreEllipsesStayHoles();
    void reportsWhatCannotBeFitted_data();
    void reportsWhatCannotBeFitted();
    void recoversRandomDocuments();
    void recoversDrawingsOffByHalfAUnit();
};

void TestOutlineFit::learnsEveryKindOfSegment()
{
    List const list = listOf(R"(<Geometry Closed="0">
        <MoveTo><X B="1" P="0"/><Y B="5" P="0.25"/></MoveTo>
        <LineTo><X B="3" P="10"/><Y B="0" V="7"/></LineTo>
        <CurveTo><X B="6" P="0.125"/><Y B="4" P="20"/><A B="1" P="0.5"/><B B="2" P="0.75"/>
            <C B="5" P="1.5"/><D B="7" P="0.375"/></CurveTo>
        <Ellipse><X B="1" P="0.5"/><Y B="2" P="0.5"/><A B="5" P="0.25"/><B B="5" P="0.25"/></Ellipse>
        </Geometry>)");
    auto const result = fitOf(drawnAt({list}, decisive));
    QVERIFY(result);
    QCOMPARE(rulesOf(*result->shapes.front().list),
        QString("M X1 0, Y5 0.25; L X3 10, Y0 7; "
                "C X6 0.125, Y4 20, A1 0.5, B2 0.75, C5 1.5, D7 0.375; "
                "E X1 0.5, Y2 0.5, A5 0.25, B5 0.25"));
    QVERIFY(result->isWhole());
    QCOMPARE(result->coordinates, 14);
    QVERIFY(result->proposals.isEmpty());
}

void TestOutlineFit::keepsFlagsNamesAndRulesOfFilling()
{
    List const list = polygon({{0, 0}, {10, 0}, {10, 10}});
    list->noFill = true;
    SizedDrawing first = drawn({list}, decisive.at(0));
    first.shapes.front().name = "door";
    first.shapes.front().fillRule = Qt::OddEvenFill;
    list->noFill = false;
    list->noLine = true;
    Diagnostics diagnostics;
    auto const result = fitDrawings({first, drawn({list}, decisive.at(1))}, exactly, diagnostics);
    QVERIFY(result);
    Shape const& shape = result->shapes.front();
    QCOMPARE(shape.name, QString("door"));
    QVERIFY(shape.fillRule == Qt::OddEvenFill);
    QVERIFY(shape.list->closed && shape.list->noFill && !shape.list->noLine);
    QCOMPARE(diagnostics.size(), 2);
    QCOMPARE(diagnostics.at(0).file, QString("150x300"));
    QCOMPARE(diagnostics.at(0).text,
        QString("drawing 2, path 1: not filled in drawing 1 only; taken from there"));
    QCOMPARE(diagnostics.at(1).text,
        QString("drawing 2, path 1: with a line in drawing 1 only; taken from there"));
}

void TestOutlineFit::valuesAreThoseInTheFirstBox()
{
    List const list = listOf(R"(<Geometry Closed="1"><MoveTo><X B="3" P="10"/><Y B="0" V="7"/>
        </MoveTo></Geometry>)");
    auto const result = fitOf(drawnAt({list}, decisive));
    QVERIFY(result);
    Shape const& shape = result->shapes.front();
    QCOMPARE(shape.box, QSizeF(400, 200));
    COMPARE_BITS(shape.list->segs.first()->pt.x.value, 390.0);
    COMPARE_BITS(shape.list->segs.first()->pt.y.value, 7.0);
    COMPARE_BITS(shape.list->segs.first()->pt.y.rate, 0.0);
}

void TestOutlineFit::namesWhatIsNotDecided()
{
    List const list = listOf(R"(<Geometry Closed="1"><MoveTo><X B="1" P="0"/><Y B="2" P="0"/>
        </MoveTo><LineTo><X B="5" P="0.25"/><Y B="2" P="1"/></LineTo></Geometry>)");
    auto const result = fitOf(drawnAt({list}, {QSizeF(400, 200), QSizeF(500, 200)}));
    QVERIFY(result);
    QCOMPARE(result->inexact.size(), 0);
    // With one height for both, even an edge may be measured from below.
    QCOMPARE(result->undecided.size(), 4);
    CoordinateFinding const& corner = result->undecided.at(2);
    QCOMPARE(corner.shape, 0);
    QCOMPARE(corner.segment, 1);
    QCOMPARE(corner.letter, QString("X"));
    QCOMPARE(int(corner.fit.choice.rule), 0);
}

void TestOutlineFit::proposesTheBoxThatDecides()
{
    List const list = listOf(R"(<Geometry Closed="1"><MoveTo><X B="5" P="0.25"/><Y B="2" P="0.1"/>
        </MoveTo></Geometry>)");
    Boxes boxes {QSizeF(400, 200), QSizeF(600, 300)};
    auto const undecided = fitOf(drawnAt({list}, boxes));
    QVERIFY(undecided);
    QVERIFY(!undecided->isWhole());
    QVERIFY(!undecided->proposals.isEmpty());
    boxes << undecided->proposals.first().box;
    auto const decided = fitOf(drawnAt({list}, boxes));
    QVERIFY(decided);
    QVERIFY(decided->isWhole());
    QCOMPARE(rulesOf(*decided->shapes.front().list), QString("M X5 0.25, Y2 0.1"));
}

void TestOutlineFit::namesWhatNoRuleExpresses()
{
    List const first = polygon({{0, 0}, {101, 0}, {400, 200}});
    List const second = polygon({{0, 0}, {103, 0}, {150, 300}});
    auto const result =
        fitOf({drawingOf(decisive.at(0), {first}), drawingOf(decisive.at(1), {second})});
    QVERIFY(result);
    QCOMPARE(result->undecided.size(), 0);
    QCOMPARE(result->inexact.size(), 1);
    CoordinateFinding const& finding = result->inexact.first();
    QCOMPARE(finding.segment, 1);
    QCOMPARE(finding.letter, QString("X"));
    QCOMPARE(int(finding.fit.choice.rule), 0);
    COMPARE_BITS(finding.fit.choice.parameter, 102.0);
    COMPARE_BITS(finding.fit.error, 1.0);
}

void TestOutlineFit::alignsAnotherStart()
{
    List const first = polygon({{0, 0}, {400, 0}, {400, 200}, {30, 200}});
    List const second = polygon({{150, 300}, {30, 300}, {0, 0}, {150, 0}});
    auto const result =
        fitOf({drawingOf(decisive.at(0), {first}), drawingOf(decisive.at(1), {second})});
    QVERIFY(result);
    QVERIFY(result->isWhole());
    QCOMPARE(rulesOf(*result->shapes.front().list),
        QString("M X1 0, Y2 0; L X1 1, Y2 0; L X1 1, Y2 1; L X0 30, Y2 1"));
}

void TestOutlineFit::alignsAnotherDirection()
{
    List const first = polygon({{0, 0}, {400, 0}, {400, 200}, {30, 200}});
    List const second = polygon({{150, 300}, {150, 0}, {0, 0}, {30, 300}});
    auto const ring =
        fitOf({drawingOf(decisive.at(0), {first}), drawingOf(decisive.at(1), {second})});
    QVERIFY(ring);
    QCOMPARE(rulesOf(*ring->shapes.front().list),
        QString("M X1 0, Y2 0; L X1 1, Y2 0; L X1 1, Y2 1; L X0 30, Y2 1"));
    List const line = polygon({{0, 0}, {100, 200}, {390, 200}}, false);
    List const backwards = polygon({{140, 300}, {37.5, 300}, {0, 0}}, false);
    auto const open =
        fitOf({drawingOf(decisive.at(0), {line}), drawingOf(decisive.at(1), {backwards})});
    QVERIFY(open);
    QCOMPARE(rulesOf(*open->shapes.front().list),
        QString("M X1 0, Y2 0; L X1 0.25, Y2 1; L X3 10, Y2 1"));
}

void TestOutlineFit::alignsAnotherOrder()
{
    auto const box = [](double x, double width) {
        return polygon({{x, 10}, {x + width, 10}, {x + width, 40}, {x, 40}});
    };
    // Shapes of one structure, in another order.
    auto const shapes = fitOf({drawingOf(decisive.at(0), {box(10, 20), box(50, 30)}),
        drawingOf(decisive.at(1), {box(50, 30), box(10, 20)})});
    QVERIFY(shapes);
    QVERIFY(shapes->isWhole());
    QCOMPARE(rulesOf(*shapes->shapes.at(1).list),
        QString("M X0 50, Y0 10; L X0 80, Y0 10; L X0 80, Y0 40; L X0 50, Y0 40"));
    // Subpaths of one shape.
    auto const joined = [&](double first, double second) {
        List const list = polygon({{first, 0}, {first + 5, 0}, {first, 5}, {first, 0}});
        list->moveTo({second, 20});
        list->lineTo({second + 5, 20});
        list->lineTo({second, 25});
        list->lineTo({second, 20});
        return list;
    };
    List const swapped = polygon({{50, 20}, {55, 20}, {50, 25}, {50, 20}});
    swapped->moveTo({10, 0});
    swapped->lineTo({15, 0});
    swapped->lineTo({10, 5});
    swapped->lineTo({10, 0});
    auto const subpaths =
        fitOf({drawingOf(decisive.at(0), {joined(10, 50)}), drawingOf(decisive.at(1), {swapped})});
    QVERIFY(subpaths);
    QVERIFY(subpaths->isWhole());
}

void TestOutlineFit::pairsShapesByName()
{
    SizedDrawing first = drawingOf(decisive.at(0),
        {polygon({{0, 0}, {400, 0}, {0, 200}}), polygon({{10, 10}, {20, 10}, {10, 20}})});
    SizedDrawing second = drawingOf(decisive.at(1),
        {polygon({{10, 10}, {20, 10}, {10, 20}}), polygon({{0, 0}, {150, 0}, {0, 300}})});
    first.shapes[0].name = second.shapes[1].name = "frame";
    first.shapes[1].name = second.shapes[0].name = "mark";
    auto const result = fitOf({first, second});
    QVERIFY(result);
    QVERIFY(result->isWhole());
    QCOMPARE(rulesOf(*result->shapes.at(1).list),
        QString("M X0 10, Y0 10; L X0 20, Y0 10; L X0 10, Y0 20"));
}

void TestOutlineFit::anImpliedClosingLineIsALine()
{
    List const implied = polygon({{0, 0}, {400, 0}, {400, 200}});
    List const given = polygon({{0, 0}, {150, 0}, {150, 300}, {0, 0}});
    auto const result =
        fitOf({drawingOf(decisive.at(0), {implied}), drawingOf(decisive.at(1), {given})});
    QVERIFY(result);
    QCOMPARE(
        rulesOf(*result->shapes.front().list), QString("M X1 0, Y2 0; L X1 1, Y2 0; L X1 1, Y2 1"));
}

void TestOutlineFit::aPointThatOnlyOneDrawingHasIsNotLost()
{
    List const closed = polygon({{0, 0}, {400, 0}, {400, 200}});
    List const open = polygon({{0, 0}, {150, 0}, {150, 300}, {77, 123}}, false);
    auto const result =
        fitOf({drawingOf(decisive.at(0), {closed}), drawingOf(decisive.at(1), {open})});
    QVERIFY(result);
    QCOMPARE(result->shapes.front().list->segs.size(), 4);
    QCOMPARE(result->inexact.size(), 2);
    QCOMPARE(result->inexact.first().segment, 3);
}

void TestOutlineFit::curvesAreTurnedByTheirControlPoints()
{
    // A lens: backwards, its ends are where they were.
    auto const lens = [](double w, double h, bool isTurned) {
        auto list = std::make_shared<KpPathSegList>();
        QPointF const left(0, h / 2);
        QPointF const right(w, h / 2);
        list->moveTo(left);
        double const first = isTurned ? h - 20 : 0;
        list->curveTo({50, first}, {w - 50, first}, right);
        list->curveTo({w - 50, h - 20 - first}, {50, h - 20 - first}, left);
        return list;
    };
    auto const result = fitOf({drawingOf(decisive.at(0), {lens(400, 200, false)}),
        drawingOf(decisive.at(1), {lens(150, 300, true)})});
    QVERIFY(result);
    QVERIFY(result->isWhole());
    QCOMPARE(rulesOf(*result->shapes.front().list),
        QString("M X1 0, Y2 0.5; C X1 1, Y2 0.5, A0 50, B2 0, C3 50, D2 0; "
                "C X1 0, Y2 0.5, A3 50, B4 20, C0 50, D4 20"));
}

void TestOutlineFit::shapesOfTheSameBoundsAreToldApart()
{
    auto const frame = [](double w, double h) { return polygon({{0, 0}, {w, 0}, {w, h}, {0, h}}); };
    auto const diamond = [](double w, double h) {
        return polygon({{w / 2, 0}, {w, h / 2}, {w / 2, h}, {0, h / 2}});
    };
    auto const result = fitOf({drawingOf(decisive.at(0), {frame(400, 200), diamond(400, 200)}),
        drawingOf(decisive.at(1), {diamond(150, 300), frame(150, 300)})});
    QVERIFY(result);
    QVERIFY(result->isWhole());
    QCOMPARE(rulesOf(*result->shapes.at(1).list),
        QString("M X1 0.5, Y2 0; L X1 1, Y2 0.5; L X1 0.5, Y2 1; L X1 0, Y2 0.5"));
    auto const joined = [](List const& first, List const& second) {
        auto all = std::make_shared<KpPathSegList>();
        for (List const& list : {first, second}) {
            for (KpPathSeg* const seg : list->segs)
                all->addTail(seg->clone());
            all->addTail(new KpPathSegLineTo(list->segs.first()->pt, nullptr));
        }
        return all;
    };
    auto const subpaths =
        fitOf({drawingOf(decisive.at(0), {joined(frame(400, 200), diamond(400, 200))}),
            drawingOf(decisive.at(1), {joined(diamond(150, 300), frame(150, 300))})});
    QVERIFY(subpaths);
    QVERIFY(subpaths->isWhole());
}

void TestOutlineFit::linesOfNoLengthAreWhereUsualRulesPutThem()
{
    QVector<QPointF> const wide {{0, 0}, {200, 37.5}, {75, 120.25}, {0, 0}};
    QVector<QPointF> const tall {{0, 0}, {100, 50}, {100, 125}, {75, 170.25}, {0, 0}};
    auto const result =
        fitOf({drawingOf({200, 150}, {polygon(wide)}), drawingOf({100, 200}, {polygon(tall)})});
    QVERIFY(result);
    QVERIFY(result->inexact.isEmpty());
    // Not at the origin, from where x would have to follow the height.
    QCOMPARE(rulesOf(*result->shapes.front().list),
        QString("M X1 0, Y2 0; L X1 1, Y2 0.25; L X1 1, Y7 0.75; L X0 75, Y4 29.75; "
                "L X1 0, Y2 0"));
}

void TestOutlineFit::linesOfNoLengthMayBeMissing()
{
    // A plate whose corners are cut at half the smaller side: one pair of sides has no length.
    double const w = 400;
    double const h = 150;
    List const wide =
        polygon({{75, 0}, {w - 75, 0}, {w, 75}, {w - 75, h}, {75, h}, {0, 75}, {75, 0}});
    List const tall =
        polygon({{75, 0}, {150, 75}, {150, 225}, {75, 300}, {0, 225}, {0, 75}, {75, 0}});
    List const taller =
        polygon({{100, 0}, {200, 100}, {200, 500}, {100, 600}, {0, 500}, {0, 100}, {100, 0}});
    auto const result = fitOf({drawingOf({w, h}, {wide}), drawingOf({150, 300}, {tall}),
        drawingOf({200, 600}, {taller})});
    QVERIFY(result);
    QVERIFY(result->isWhole());
    QCOMPARE(rulesOf(*result->shapes.front().list),
        QString("M X5 0.5, Y2 0; L X6 0.5, Y2 0; L X1 1, Y5 0.5; L X1 1, Y7 0.5; L X6 0.5, Y2 1; "
                "L X5 0.5, Y2 1; L X1 0, Y7 0.5; L X1 0, Y5 0.5; L X5 0.5, Y2 0"));
}

void TestOutlineFit::linesThatAreMissingElsewhereAreDifferences()
{
    List const first = polygon({{0, 0}, {400, 0}, {400, 200}, {0, 200}});
    List const second = polygon({{0, 0}, {150, 0}, {17, 300}});
    QCOMPARE(faultOf({drawingOf(decisive.at(0), {first}), drawingOf(decisive.at(1), {second})}),
        QString("150x300: drawing 2, path 1: 3 lines where drawing 1 has 4"));
}

namespace {

List circle(QPointF const& centre, double radius)
{
    auto list = std::make_shared<KpPathSegList>();
    QPainterPath path;
    path.addEllipse(centre, radius, radius);
    KpPath drawing = KpPath::fromPainterPath(path);
    list->fromPath(drawing);
    list->closed = true;
    return list;
}

} // namespace

void TestOutlineFit::curvesThatAreAnEllipseBecomeOne()
{
    // A radius of a quarter of the smaller side, in the middle: its points obey no rule.
    std::vector<SizedDrawing> const drawings {drawingOf(decisive.at(0), {circle({200, 100}, 50)}),
        drawingOf(decisive.at(1), {circle({75, 150}, 37.5)})};
    auto const result = fitOf(drawings);
    QVERIFY(result);
    QVERIFY(result->isWhole());
    QCOMPARE(rulesOf(*result->shapes.front().list), QString("E X1 0.5, Y2 0.5, A5 0.25, B5 0.25"));
    auto const curves = fitOf(drawings, {1e-6, false});
    QVERIFY(curves);
    QCOMPARE(curves->shapes.front().list->segs.size(), 5);
    QVERIFY(!curves->inexact.isEmpty());
}

void TestOutlineFit::curvesStayWhereOneDrawingHasNoEllipse()
{
    List const other = circle({75, 150}, 37.5);
    other->segs.at(2)->toCurveTo()->ctrl1.x.value += 5.0;
    auto const result = fitOf(
        {drawingOf(decisive.at(0), {circle({200, 100}, 50)}), drawingOf(decisive.at(1), {other})});
    QVERIFY(result);
    QCOMPARE(result->shapes.front().list->segs.size(), 5);
}

void TestOutlineFit::holesThatAreEllipsesStayHoles()
{
    auto const plate = [](QSizeF const& box, bool isFrameTurned) {
        QPainterPath frame;
        frame.addRect(QRectF(QPointF(), box));
        QPainterPath hole;
        hole.addEllipse(QRectF(QPointF(10, 10), QSizeF(20, 20)));
        QPainterPath path = isFrameTurned ? frame.toReversed() : frame;
        path.addPath(isFrameTurned ? hole : hole.toReversed());
        auto list = std::make_shared<KpPathSegList>();
        KpPath drawing = KpPath::fromPainterPath(path);
        list->fromPath(drawing);
        list->closed = true;
        return drawingOf(box, {list});
    };
    for (bool const isFrameTurned : {false, true}) {
        auto const result =
            fitOf({plate(decisive.at(0), isFrameTurned), plate(decisive.at(1), isFrameTurned)});
        QVERIFY(result);
        QVERIFY(result->isWhole());
        Shape const& shape = result->shapes.front();
        QCOMPARE(shape.list->segs.size(), 6);
        QVERIFY(shape.list->segs.last()->toEllipse());
        QVERIFY(!shape.fillRule);
        // The frame runs against the clock, the ellipse with it.
        QVERIFY(
            !polygon({{shape.list->segs.at(0)->pt.x.value, shape.list->segs.at(0)->pt.y.value},
                         {shape.list->segs.at(1)->pt.x.value, shape.list->segs.at(1)->pt.y.value},
                         {shape.list->segs.at(2)->pt.x.value, shape.list->segs.at(2)->pt.y.value}})
                 ->isClockwise());
    }
}

void TestOutlineFit::reportsWhatCannotBeFitted_data()
{
    QTest::addColumn<std::vector<SizedDrawing>>("drawings");
    QTest::addColumn<QString>("fault");
    using Drawings = std::vector<SizedDrawing>;
    QSizeF const wide(400, 200);
    QSizeF const tall(150, 300);
    List const triangle = polygon({{0, 0}, {10, 0}, {10, 10}});
    List const square = polygon({{0, 0}, {10, 0}, {10, 10}, {0, 10}});
    double const nan = Testing::notANumber;
    QTest::newRow("another number of paths") << Drawings {drawingOf(wide, {triangle, square}),
        drawingOf(tall, {triangle})} << "150x300: drawing 2: 1 path where drawing 1 has 2";
    QTest::newRow("another number of lines")
        << Drawings {drawingOf(wide, {square, triangle}), drawingOf(tall, {square, square})}
        << "150x300: drawing 2, path 2: 4 lines where drawing 1 has 3";
    QTest::newRow("another number of curves") << Drawings {drawingOf(wide, {circle({50, 50}, 9)}),
        drawingOf(tall, {square})} << "150x300: drawing 2, path 1: 0 curves where drawing 1 has 4";
    QTest::newRow("another number of subpaths")
        << Drawings {drawingOf(wide, {triangle}),
               drawingOf(tall,
                   {listOf("<Geometry Closed='0'><MoveTo/><LineTo/><MoveTo/><LineTo/>"
                           "</Geometry>")})}
        << "150x300: drawing 2, path 1: 2 subpaths where drawing 1 has 1";
    QTest::newRow("another order of kinds")
        << Drawings {drawingOf(wide,
                         {listOf("<Geometry Closed='0'><MoveTo/><LineTo><X V='9'/></LineTo>"
                                 "<LineTo><X V='8'/></LineTo><CurveTo><X V='50'/></CurveTo>"
                                 "<LineTo><X V='7'/></LineTo></Geometry>")}),
               drawingOf(tall,
                   {listOf("<Geometry Closed='0'><MoveTo/><CurveTo><X V='50'/></CurveTo>"
                           "<LineTo><X V='9'/></LineTo><LineTo><X V='7'/></LineTo>"
                           "<LineTo><X V='4'/></LineTo></Geometry>")})}
        << "150x300: drawing 2, path 1: its lines and curves come in another order than in "
           "drawing 1";
    QTest::newRow("one box twice")
        << Drawings {drawingOf(wide, {triangle}), drawingOf(tall, {triangle}),
               drawingOf(wide, {triangle})}
        << "400x200: drawing 3: its box of 400 x 200 is that of drawing 1: two drawings of one "
           "size tell nothing";
    QTest::newRow("nothing drawn") << Drawings {drawingOf(wide, {}), drawingOf(tall, {})}
                                   << "400x200: drawing 1: nothing is drawn in it";
    QTest::newRow("a box without a height")
        << Drawings {drawingOf(wide, {triangle}), drawingOf({10, 0}, {triangle})}
        << "10x0: drawing 2: a box of 10 x 0 is none to draw for: both sides must be above 0 and "
           "at most a million units";
    QTest::newRow("a box as large as a country")
        << Drawings {drawingOf({1e9, 10}, {triangle}), drawingOf(tall, {triangle})}
        << "1e+09x10: drawing 1: a box of 1e+09 x 10 is none to draw for: both sides must be above "
           "0 and at most a million units";
    QTest::newRow("a box that is no number")
        << Drawings {drawingOf({nan, 10}, {triangle}), drawingOf(tall, {triangle})}
        << "nanx10: drawing 1: a box of nan x 10 is none to draw for: both sides must be above 0 "
           "and at most a million units";
    QTest::newRow("a coordinate that is no number")
        << Drawings {drawingOf(wide, {triangle}),
               drawingOf(tall, {polygon({{0, 0}, {nan, 0}, {10, 10}})})}
        << "150x300: drawing 2: a coordinate is no number, or too large";
}

void TestOutlineFit::reportsWhatCannotBeFitted()
{
    QFETCH(std::vector<SizedDrawing>, drawings);
    QFETCH(QString, fault);
    QCOMPARE(faultOf(drawings), fault);
}

namespace {

/** A coordinate of any rule, well away from the edges, where rules meet. */
KpReal randomReal(QRandomGenerator& random, double step)
{
    auto const base = static_cast<qint16>(random.bounded(8));
    bool const isLength = base == 0 || base == 3 || base == 4;
    double const parameter = isLength ? 5.0 + random.bounded(60) : (1 + random.bounded(19)) * step;
    return base ? KpReal(base, parameter, 0) : KpReal(0, 0, parameter);
}

List randomOutline(QRandomGenerator& random)
{
    auto list = std::make_shared<KpPathSegList>();
    auto const real = [&random] { return randomReal(random, 0.05); };
    auto const point = [&real] { return KpPoint(real(), real()); };
    list->closed = random.bounded(2);
    list->addTail(new KpPathSegMoveTo(point(), nullptr));
    for (int i = random.bounded(1, 30); i > 0; --i) {
        switch (random.bounded(5)) {
        case 0:
            list->addTail(new KpPathSegMoveTo(point(), nullptr));
            break;
        case 1: {
            auto* const ellipse = new KpPathSegEllipse(point(), KpReal(), KpReal(), nullptr);
            ellipse->a = real();
            ellipse->b = real();
            list->addTail(ellipse);
            break;
        }
        case 2:
            list->addTail(new KpPathSegLineTo(point(), nullptr));
            break;
        default:
            list->addTail(new KpPathSegCurveTo(point(), point(), point(), nullptr));
        }
    }
    return list;
}

/** How many coordinates that the drawings decide have another rule than the outlines. */
int countWrong(FitResult const& result, std::vector<List> const& lists, int& decided)
{
    QSet<QString> undecided;
    for (auto const& findings : {result.undecided, result.inexact}) {
        for (CoordinateFinding const& finding : findings)
            undecided.insert(
                QString("%1/%2/%3").arg(finding.shape).arg(finding.segment) + finding.letter);
    }
    int wrong = 0;
    for (std::size_t i = 0; i < lists.size(); ++i) {
        KpPathSegList const& fitted = *result.shapes.at(i).list;
        if (fitted.segs.size() != lists[i]->segs.size())
            return 1000000;
        for (int s = 0; s < fitted.segs.size(); ++s) {
            QVector<qint16> bases;
            SegmentKind::forEachReal(
                *lists[i]->segs.at(s), [&bases](KpReal const& real) { bases << real.base; });
            int next = 0;
            SegmentKind::forEachCoordinate(
                *fitted.segs.at(s), [&](QString const& letter, KpReal const& real) {
                    qint16 const base = bases.at(next++);
                    if (undecided.contains(QString("%1/%2/%3").arg(i).arg(s) + letter))
                        return;
                    ++decided;
                    wrong += base == real.base ? 0 : 1;
                });
        }
    }
    return wrong;
}

} // namespace

void TestOutlineFit::recoversRandomDocuments()
{
    QRandomGenerator random = Testing::seededRandom(21);
    int decided = 0;
    int all = 0;
    for (int round = 0; round < 400; ++round) {
        std::vector<List> lists;
        for (int i = random.bounded(1, 4); i > 0; --i)
            lists.push_back(randomOutline(random));
        auto const result =
            fitOf(drawnAt(lists, {QSizeF(400, 200), QSizeF(170, 310)}, 2), {0.006, true});
        QVERIFY(result);
        QVERIFY2(result->inexact.isEmpty(),
            qPrintable(QString("round %1: segment %2, %3 is off by %4")
                           .arg(round)
                           .arg(result->inexact.value(0).segment)
                           .arg(result->inexact.value(0).letter)
                           .arg(result->inexact.value(0).fit.error)));
        all += result->coordinates;
        QCOMPARE(countWrong(*result, lists, decided), 0);
    }
    qInfo("%d of %d coordinates decided", decided, all);
    QVERIFY(decided > all * 98 / 100);
}

void TestOutlineFit::recoversDrawingsOffByHalfAUnit()
{
    QRandomGenerator random = Testing::seededRandom(22);
    int decided = 0;
    int all = 0;
    for (int round = 0; round < 400; ++round) {
        std::vector<List> const lists {randomOutline(random)};
        auto drawings = drawnAt(lists, {QSizeF(400, 200), QSizeF(170, 310), QSizeF(330, 590)});
        for (SizedDrawing& drawing : drawings) {
            for (KpPathSeg* const seg : drawing.shapes.front().list->segs) {
                SegmentKind::forEachReal(
                    *seg, [&random](KpReal& real) { real.value += random.bounded(1.0) - 0.5; });
            }
        }
        auto const result = fitOf(drawings, {0.5, true});
        QVERIFY(result);
        QVERIFY2(result->inexact.isEmpty(),
            qPrintable(QString("round %1: segment %2, %3 is off by %4")
                           .arg(round)
                           .arg(result->inexact.value(0).segment)
                           .arg(result->inexact.value(0).letter)
                           .arg(result->inexact.value(0).fit.error)));
        all += result->coordinates;
        QCOMPARE(countWrong(*result, lists, decided), 0);
    }
    qInfo("%d of %d coordinates decided", decided, all);
    QVERIFY(decided > all * 95 / 100);
}

QTEST_GUILESS_MAIN(TestOutlineFit)

#include "tst_outlinefit.moc"
