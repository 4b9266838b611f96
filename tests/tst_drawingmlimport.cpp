// SPDX-License-Identifier: MIT
#include "import/drawingmlimport.h"
#include "outlinetesting.h"
#include "segmentkind_p.h"

class TestDrawingMlImport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyChildOfTheRootIsAPreset();
    void guidesPlaceThePoints();
    void pathsBecomeOutlines_data();
    void pathsBecomeOutlines();
    void anArcAtAnAngleEndsWhereItIsSeen();
    void aCurveOfAnArcKeepsToTheEllipse();
    void severalPathsAreNumbered();
    void flagsTellWhatIsPainted();
    void theFillRuleIsNamedWhereItCounts();
    void adjustmentsMoveThePoints();
    void allBoxesHaveOneStructure_data();
    void allBoxesHaveOneStructure();
    void aLineBackIsThereInEveryBoxOrInNone();
    void valuesAreNotRounded();
    void customShapesAreFoundAnywhere();
    void theBoxOfACustomShape_data();
    void theBoxOfACustomShape();
    void customShapesAreRecognised_data();
    void customShapesAreRecognised();
    void faultsAreReportedWithTheirPlace_data();
    void faultsAreReportedWithTheirPlace();
    void aFaultyShapeLeavesTheOthers();
    void whatHasNoValueIsReportedOnce();
    void tooLargeACoordinateIsReported();
    void stepsAreBounded();
    void damagedDocumentsAreReported();
    void randomShapesHaveOneStructure();
};

namespace {

/** A document of one preset shape. */
QByteArray preset(QByteArray const& content, QByteArray const& name = "shape")
{
    return "<presets><" + name + ">" + content + "</" + name + "></presets>";
}

QByteArray paths(QByteArray const& content)
{
    return "<pathLst>" + content + "</pathLst>";
}

std::vector<ShapeDefinition> definitions(QByteArray const& text)
{
    Diagnostics diagnostics;
    auto const result = readPresetShapes(text, "a.xml", diagnostics);
    return diagnostics.isEmpty() && result ? *result : std::vector<ShapeDefinition>();
}

/** The shapes of one preset in each box; empty if anything is reported. */
std::vector<Shapes> inBoxes(QByteArray const& content, std::vector<QSizeF> const& boxes,
    GuideAdjustments const& adjustments = {})
{
    Diagnostics diagnostics;
    auto const all = definitions(preset(content));
    if (all.size() != 1)
        return {};
    auto const result = shapesInBoxes(all.front(), boxes, adjustments, "a.xml", diagnostics);
    return diagnostics.isEmpty() && result ? *result : std::vector<Shapes>();
}

QString shortNumber(double number)
{
    double const rounded = std::round(number * 1000.0) / 1000.0;
    return QString::number(std::fabs(rounded) > 0.0 ? rounded : 0.0, 'g', 7);
}

/** An outline as a line of letters and numbers, to a thousandth. */
QString drawn(KpPathSegList const& list)
{
    QStringList words;
    for (KpPathSeg* const seg : list.segs) {
        words << QString(QLatin1Char("..MLCE"[seg->type]));
        SegmentKind::forEachReal(
            *seg, [&words](KpReal const& real) { words << shortNumber(real.value); });
    }
    if (list.closed)
        words << "Z";
    return words.join(' ');
}

/** The outlines in a box of 200 by 100, a line each. */
QString drawn(QByteArray const& content)
{
    auto const shapes = inBoxes(content, {QSizeF(200, 100)});
    QStringList lines;
    for (Shape const& shape : shapes.empty() ? Shapes() : shapes.front())
        lines << drawn(*shape.list);
    return lines.join('\n');
}

/** The kinds of all segments, a letter each. */
QString structure(Shapes const& shapes)
{
    QString text;
    for (Shape const& shape : shapes) {
        for (KpPathSeg* const seg : shape.list->segs)
            text += QLatin1Char("..MLCE"[seg->type]);
        text += shape.list->closed ? "Z," : ",";
    }
    return text;
}

QStringList texts(Diagnostics const& diagnostics)
{
    QStringList result;
    for (Diagnostic const& each : diagnostics) {
        result << QStringLiteral("%1:%2: %3 %4")
                      .arg(each.line)
                      .arg(each.column)
                      .arg(each.severity == Diagnostic::Severity::Error ? "error" : "warning",
                          each.text);
    }
    return result;
}

QByteArray const move = "<moveTo><pt x='l' y='t'/></moveTo>";
QByteArray const line = "<lnTo><pt x='r' y='b'/></lnTo>";

QByteArray arc(QByteArray const& radii, QByteArray const& start, QByteArray const& sweep)
{
    return "<arcTo wR='" + radii.split(' ').first() + "' hR='" + radii.split(' ').last()
        + "' stAng='" + start + "' swAng='" + sweep + "'/>";
}

QByteArray const customShape =
    "<a:custGeom><a:avLst/><a:gdLst/><a:pathLst><a:path w='40' h='20'><a:moveTo><a:pt x='0' y='0'/>"
    "</a:moveTo><a:lnTo><a:pt x='40' y='20'/></a:lnTo></a:path></a:pathLst></a:custGeom>";

} // namespace

void TestDrawingMlImport::everyChildOfTheRootIsAPreset()
{
    QByteArray const content = "<avLst><gd name='adj' fmla='val 5'/></avLst><gdLst><gd name='x' "
                               "fmla='*/ w 1 3'/></gdLst><ahLst/><cxnLst/><rect/>"
        + paths("<path>" + move + line + "<close/></path>");
    auto const all = definitions("<presets xmlns:a='urn:a'><line>" + content + "</line><a:other>"
        + content + "</a:other></presets>");
    QCOMPARE(all.size(), std::size_t(2));
    QCOMPARE(all[0].name, QString("line"));
    QCOMPARE(all[1].name, QString("other"));
    QCOMPARE(all[1].guides.adjustments(), QStringList {"adj"});
    QCOMPARE(all[1].guides.count(), 2);
    QCOMPARE(all[1].paths.size(), std::size_t(1));
    QCOMPARE(all[1].paths[0].steps.size(), std::size_t(3));
    QVERIFY(all[1].box.isEmpty());
}

void TestDrawingMlImport::guidesPlaceThePoints()
{
    QCOMPARE(drawn("<avLst><gd name='adj' fmla='val 16667'/></avLst><gdLst><gd name='a' fmla='pin "
                   "0 adj 50000'/><gd name='x1' fmla='*/ ss a 100000'/><gd name='x2' fmla='+- r 0 "
                   "x1'/></gdLst>"
                 + paths("<path><moveTo><pt x='x1' y='t'/></moveTo><lnTo><pt x='x2' y='t'/></lnTo>"
                         "<lnTo><pt x='r' y='vc'/></lnTo><close/></path>")),
        QString("M 16.667 0 L 183.333 0 L 200 50 Z"));
}

void TestDrawingMlImport::pathsBecomeOutlines_data()
{
    QTest::addColumn<QByteArray>("path"); // in a box of 200 by 100
    QTest::addColumn<QString>("expected");
    QByteArray const right = "<moveTo><pt x='r' y='vc'/></moveTo>";
    QByteArray const curve =
        "<cubicBezTo><pt x='1' y='2'/><pt x='3' y='4'/><pt x='5' y='6'/></cubicBezTo>";
    QByteArray const lineTo = "<lnTo><pt x='7' y='8'/></lnTo>";

    QTest::newRow("open") << move + line << "M 0 0 L 200 100";
    QTest::newRow("closed") << move + line + lineTo + "<close/>"
                            << "M 0 0 L 200 100 L 7 8 Z";
    QTest::newRow("curve") << move + curve << "M 0 0 C 5 6 1 2 3 4";
    QTest::newRow("quadratic curve")
        << move + "<quadBezTo><pt x='30' y='60'/><pt x='90' y='30'/></quadBezTo>"
        << "M 0 0 C 90 30 20 40 50 50";
    QTest::newRow("two subpaths, only the last closed") << move + line + right + lineTo + "<close/>"
                                                        << "M 0 0 L 200 100 M 200 50 L 7 8 Z";
    QTest::newRow("two subpaths, only the first closed") << move + line + lineTo + "<close/>"
            + right + lineTo << "M 0 0 L 200 100 L 7 8 L 0 0 M 200 50 L 7 8";
    QTest::newRow("a subpath that ends at its start needs no line back")
        << move + line + "<lnTo><pt x='0' y='0'/></lnTo><close/>" + right + lineTo + "<close/>"
        << "M 0 0 L 200 100 L 0 0 M 200 50 L 7 8 Z";
    QTest::newRow("what follows a close begins at the start of the subpath")
        << right + lineTo + "<close/>" + line << "M 200 50 L 7 8 L 200 50 M 200 50 L 200 100";
    QTest::newRow("a close of nothing") << right + "<close/>" + line << "M 200 50 L 200 100";
    QTest::newRow("a move without anything behind it")
        << right + move + line + right << "M 0 0 L 200 100";
    QTest::newRow("an arc of a quarter")
        << right + arc("100 50", "0", "cd4") << "M 200 50 C 100 100 200 77.614 155.228 100";
    QTest::newRow("an arc against the clock")
        << right + arc("100 50", "0", "-5400000") << "M 200 50 C 100 0 200 22.386 155.228 0";
    QTest::newRow("an arc of a half: two quarters")
        << right + arc("100 50", "0", "cd2")
        << "M 200 50 C 100 100 200 77.614 155.228 100 C 0 50 44.772 100 0 77.614";
    QTest::newRow("an arc of three eighths is cut at the quarter")
        << right + arc("50 50", "0", "3cd8")
        << "M 200 50 C 150 100 200 77.614 177.614 100 C 114.645 85.355 136.739 100 124.021 94.732";
    QTest::newRow("an arc that enters two quarters")
        << "<moveTo><pt x='0' y='0'/></moveTo>" + arc("100 100", "2700000", "cd4")
        << "M 0 0 C -70.711 29.289 -18.754 18.754 -44.189 29.289 C -141.421 0 -97.232 29.289 "
           "-122.668 18.754";
    QTest::newRow("an arc of nothing")
        << right + arc("100 50", "0", "0") << "M 200 50 C 200 50 200 50 200 50";
    QTest::newRow("an arc of a point")
        << right + arc("0 0", "0", "cd4") << "M 200 50 C 200 50 200 50 200 50";
    QTest::newRow("an arc of a line: to its end")
        << right + arc("100 0", "0", "cd2")
        << "M 200 50 C 100 50 200 50 155.228 50 C 0 50 44.772 50 0 50";
    QTest::newRow("a radius without its sign")
        << right + arc("-100 -50", "0", "cd4") << "M 200 50 C 100 100 200 77.614 155.228 100";
    QTest::newRow("whole turns of the start do not count") << right
            + arc("100 50", "-216000000", "cd4") << "M 200 50 C 100 100 200 77.614 155.228 100";
    QTest::newRow("once around: an ellipse") << right + arc("100 50", "0", "21600000") + "<close/>"
                                             << "E 100 50 100 50 Z";
    QTest::newRow("once around from anywhere")
        << right + arc("10 20", "2700000", "-21600000") << "E 191.056 41.056 10 20";
    QTest::newRow("more than once around") << right + arc("100 50", "0", "1e300") + "<close/>"
                                           << "E 100 50 100 50 Z";
    QTest::newRow("around behind a line: curves")
        << move + "<lnTo><pt x='r' y='vc'/></lnTo>" + arc("100 50", "0", "21600000")
        << "M 0 0 L 200 50 C 100 100 200 77.614 155.228 "
           "100 C 0 50 44.772 100 0 77.614 C 100 0 0 "
           "22.386 44.772 0 C 200 50 155.228 0 200 "
           "22.386";
    QTest::newRow("an ellipse between others")
        << move + line + right + arc("10 10", "0", "21600000") + "<close/>" + move + line
        << "M 0 0 L 200 100 E 190 50 10 10 M 0 0 L 200 100";
}

void TestDrawingMlImport::pathsBecomeOutlines()
{
    QFETCH(QByteArray, path);
    QFETCH(QString, expected);
    QCOMPARE(drawn(paths("<path>" + path + "</path>")), expected);
}

void TestDrawingMlImport::anArcAtAnAngleEndsWhereItIsSeen()
{
    // Seen from the centre of an ellipse of 200 by 100 at 45 degrees: x = y = 89.443.
    QString const text = drawn(paths(
        "<path><moveTo><pt x='200' y='0'/></moveTo>" + arc("200 100", "0", "2700000") + "</path>"));
    QVERIFY2(text.startsWith("M 200 0 C 89.443 89.443 "), qPrintable(text));
}

void TestDrawingMlImport::aCurveOfAnArcKeepsToTheEllipse()
{
    QRandomGenerator random = Testing::seededRandom(5);
    for (int round = 0; round < 300; ++round) {
        double const a = 1.0 + random.bounded(500);
        double const b = 1.0 + random.bounded(500);
        double const start = random.bounded(360) * 60000.0;
        double const sweep = random.bounded(-359, 360) * 60000.0;
        auto const shapes =
            inBoxes(paths("<path>" + move
                        + arc(QByteArray::number(a) + ' ' + QByteArray::number(b),
                            QByteArray::number(start, 'f', 0), QByteArray::number(sweep, 'f', 0))
                        + "</path>"),
                {QSizeF(10, 10)});
        QCOMPARE(shapes.size(), std::size_t(1));
        // The centre is where it was begun, less the radius at the first angle.
        double const angle = start / 60000.0 * M_PI / 180.0;
        double const radius = 1.0 / std::hypot(std::cos(angle) / a, std::sin(angle) / b);
        QPointF const centre(-radius * std::cos(angle), -radius * std::sin(angle));
        auto const offEllipse = [&](QPointF point) {
            return std::fabs(
                std::hypot((point.x() - centre.x()) / a, (point.y() - centre.y()) / b) - 1.0);
        };
        QPointF from(0, 0);
        for (KpPathSeg* const seg : shapes.front().front().list->segs) {
            KpPathSegCurveTo const* const curve = seg->toCurveTo();
            if (!curve)
                continue;
            QPointF const control1(curve->ctrl1.x.value, curve->ctrl1.y.value);
            QPointF const control2(curve->ctrl2.x.value, curve->ctrl2.y.value);
            QPointF const to(curve->pt.x.value, curve->pt.y.value);
            QPointF const middle = (from + 3.0 * (control1 + control2) + to) / 8.0;
            QVERIFY(offEllipse(to) < 1e-9);
            QVERIFY(offEllipse(middle) < 3e-4);
            from = to;
        }
        double const endAngle = angle + sweep / 60000.0 * M_PI / 180.0;
        double const endRadius = 1.0 / std::hypot(std::cos(endAngle) / a, std::sin(endAngle) / b);
        QVERIFY(std::fabs(from.x() - centre.x() - endRadius * std::cos(endAngle)) < 1e-9 * (a + b));
        QVERIFY(std::fabs(from.y() - centre.y() - endRadius * std::sin(endAngle)) < 1e-9 * (a + b));
    }
}

void TestDrawingMlImport::severalPathsAreNumbered()
{
    QByteArray const path = "<path>" + move + line + "</path>";
    auto const one = inBoxes(paths(path), {QSizeF(2, 3)});
    QCOMPARE(one.front().size(), std::size_t(1));
    QCOMPARE(one.front()[0].name, QString("shape"));
    QCOMPARE(one.front()[0].box, QSizeF(2, 3));
    auto const three = inBoxes(paths(path + "<path>" + move + "</path>" + path), {QSizeF(2, 3)});
    QCOMPARE(three.front().size(), std::size_t(2));
    QCOMPARE(three.front()[0].name, QString("shape path 1"));
    QCOMPARE(three.front()[1].name, QString("shape path 3"));
}

void TestDrawingMlImport::flagsTellWhatIsPainted()
{
    QByteArray const content = move + line + "</path>";
    auto const shapes = inBoxes(
        paths("<path>" + content + "<path fill='none'>" + content
            + "<path fill='darkenLess' stroke='false'>" + content + "<path fill='norm' stroke='0'>"
            + content + "<path stroke='true' extrusionOk='false'>" + content),
        {QSizeF(9, 9)});
    QString flags;
    for (Shape const& shape : shapes.front())
        flags += QStringLiteral("%1%2 ").arg(shape.list->noFill).arg(shape.list->noLine);
    QCOMPARE(flags, QString("00 10 01 01 00 "));
}

void TestDrawingMlImport::theFillRuleIsNamedWhereItCounts()
{
    auto const square = [](QByteArray const& from, QByteArray const& to, bool isClockwise) {
        QByteArray const right = "<lnTo><pt x='" + to + "' y='" + from + "'/></lnTo>";
        QByteArray const down = "<lnTo><pt x='" + from + "' y='" + to + "'/></lnTo>";
        QByteArray const corner = "<lnTo><pt x='" + to + "' y='" + to + "'/></lnTo>";
        return "<moveTo><pt x='" + from + "' y='" + from + "'/></moveTo>"
            + (isClockwise ? right + corner + down : down + corner + right) + "<close/>";
    };
    auto const ruleOf = [](QByteArray const& path) {
        return inBoxes(paths(path), {QSizeF(1000, 1000)}).front().front().fillRule;
    };
    QVERIFY(!ruleOf("<path>" + square("0", "900", true) + "</path>"));
    QVERIFY(!ruleOf("<path>" + square("0", "900", true) + square("300", "600", false) + "</path>"));
    QByteArray const holes = square("0", "900", true) + square("300", "600", true) + "</path>";
    QCOMPARE(ruleOf("<path>" + holes), std::make_optional(Qt::OddEvenFill));
    QVERIFY(!ruleOf("<path fill='none'>" + holes));
}

void TestDrawingMlImport::adjustmentsMoveThePoints()
{
    QByteArray const content = "<avLst><gd name='adj' fmla='val 1'/></avLst>"
        + paths("<path>" + move + "<lnTo><pt x='adj' y='2'/></lnTo></path>");
    QCOMPARE(drawn(content), QString("M 0 0 L 1 2"));
    auto const shapes = inBoxes(content, {QSizeF(5, 5)}, {{"adj", -7.5}, {"elsewhere", 3.0}});
    QCOMPARE(drawn(*shapes.front().front().list), QString("M 0 0 L -7.5 2"));
}

void TestDrawingMlImport::allBoxesHaveOneStructure_data()
{
    QTest::addColumn<QByteArray>("sweep");
    QTest::addColumn<QString>("expected"); // in 400 by 100 and in 100 by 400
    QTest::newRow("nothing in the second box") << QByteArray("?: s cd2 0") << "MCC,";
    QTest::newRow("an eighth in the second") << QByteArray("?: s 21600000 cd8") << "MCCCC,";
    QTest::newRow("back in the second") << QByteArray("?: s cd4 -5400000") << "MC,";
    QTest::newRow("a point in the first") << QByteArray("?: s 0 21600000") << "MCCCC,";
    QTest::newRow("around in both") << QByteArray("?: s 21600000 -21600000") << "E,";
    QTest::newRow("the angle of the diagonal") << QByteArray("at2 w h") << "MC,";
}

void TestDrawingMlImport::allBoxesHaveOneStructure()
{
    QFETCH(QByteArray, sweep);
    QFETCH(QString, expected);
    QByteArray const content = "<gdLst><gd name='s' fmla='+- w 0 h'/><gd name='sw' fmla='" + sweep
        + "'/></gdLst>" + paths("<path>" + move + arc("wd2 hd2", "0", "sw") + "</path>");
    auto const shapes = inBoxes(content, {QSizeF(400, 100), QSizeF(100, 400)});
    QCOMPARE(shapes.size(), std::size_t(2));
    QCOMPARE(structure(shapes[1]), structure(shapes[0]));
    QCOMPARE(structure(shapes[0]), expected);
}

void TestDrawingMlImport::aLineBackIsThereInEveryBoxOrInNone()
{
    QByteArray const content = paths("<path>" + move + line
        + "<lnTo><pt x='0' y='y'/></lnTo><close/>" + move + line + "<close/></path>");
    auto const shapes = inBoxes("<gdLst><gd name='y' fmla='max 0 h'/><gd name='y' fmla='+- y 0 "
                                "100'/></gdLst>"
            + content,
        {QSizeF(100, 100), QSizeF(100, 200)});
    QCOMPARE(structure(shapes[0]), QString("MLLLMLZ,"));
    QCOMPARE(structure(shapes[1]), QString("MLLLMLZ,"));
}

void TestDrawingMlImport::valuesAreNotRounded()
{
    auto const shapes =
        inBoxes(paths("<path w='3' h='7'><moveTo><pt x='1' y='1'/></moveTo>" + line + "</path>"),
            {QSizeF(1, 1)});
    KpPathSeg const& first = *shapes.front().front().list->segs.first();
    COMPARE_BITS(first.pt.x.value, 1.0 / 3.0);
    COMPARE_BITS(first.pt.y.value, 1.0 / 7.0);
    QCOMPARE(first.pt.x.base, qint16(KpReal::PartOfWidth));
}

void TestDrawingMlImport::customShapesAreFoundAnywhere()
{
    QByteArray const text =
        "<p:sld xmlns:p='urn:p' xmlns:a='urn:a'><p:sp><p:nvSpPr><p:cNvPr id='2' "
        "name='First  one'/></p:nvSpPr><p:spPr><a:xfrm><a:off x='1' y='2'/>"
        "<a:ext cx='80' cy='60'/></a:xfrm>"
        + customShape + "</p:spPr></p:sp><p:grpSp><wsp><cNvPr name='second'/><spPr>" + customShape
        + "</spPr></wsp></p:grpSp></p:sld>";
    Diagnostics diagnostics;
    auto const all = readCustomShapes(text, "a.xml", diagnostics);
    QVERIFY(all);
    QCOMPARE(texts(diagnostics), QStringList());
    QCOMPARE(all->size(), std::size_t(2));
    QCOMPARE((*all)[0].name, QString("First one"));
    QCOMPARE((*all)[0].box, QSizeF(80, 60));
    QCOMPARE((*all)[1].name, QString("second"));
    QCOMPARE((*all)[1].box, QSizeF(40, 20));
    auto const shapes = shapesInBoxes((*all)[0], {(*all)[0].box}, {}, "a.xml", diagnostics);
    QCOMPARE(drawn(*shapes->front().front().list), QString("M 0 0 L 80 60"));
}

void TestDrawingMlImport::theBoxOfACustomShape_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QSizeF>("box");
    QTest::newRow("its extent") << QByteArray("<xfrm><ext cx='3' cy='4'/></xfrm>") << QSizeF(3, 4);
    QTest::newRow("none: its path") << QByteArray() << QSizeF(40, 20);
    QTest::newRow("no height") << QByteArray("<xfrm><ext cx='3' cy='0'/></xfrm>") << QSizeF(40, 20);
    QTest::newRow("negative") << QByteArray("<xfrm><ext cx='-3' cy='4'/></xfrm>") << QSizeF(40, 20);
    QTest::newRow("no number") << QByteArray("<xfrm><ext cx='nan' cy='inf'/></xfrm>")
                               << QSizeF(40, 20);
}

void TestDrawingMlImport::theBoxOfACustomShape()
{
    QFETCH(QByteArray, before);
    QFETCH(QSizeF, box);
    Diagnostics diagnostics;
    auto const all =
        readCustomShapes("<spPr>" + before + customShape + "</spPr>", "a", diagnostics);
    QVERIFY(all);
    QCOMPARE(all->front().box, box);
    QCOMPARE(all->front().name, QString());
}

void TestDrawingMlImport::customShapesAreRecognised_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("expected");
    QTest::newRow("as the root") << customShape << true;
    QTest::newRow("within") << "<p><q/>" + customShape + "</p>" << true;
    QTest::newRow("in a picture") << "<svg>" + customShape + "</svg>" << false;
    QTest::newRow("only in a text") << QByteArray("<p>custGeom &lt;custGeom/></p>") << false;
    QTest::newRow("presets") << preset(paths("<path/>")) << false;
    QTest::newRow("no XML") << QByteArray("custGeom") << false;
    QTest::newRow("nothing") << QByteArray() << false;
}

void TestDrawingMlImport::customShapesAreRecognised()
{
    QFETCH(QByteArray, text);
    QFETCH(bool, expected);
    QCOMPARE(holdsCustomShapes(text), expected);
}

void TestDrawingMlImport::faultsAreReportedWithTheirPlace_data()
{
    QTest::addColumn<QByteArray>("content"); // of the third line
    QTest::addColumn<QString>("fault");
    auto const path = [](QByteArray const& content) {
        return paths("\n<path>" + content + "</path>");
    };
    QTest::newRow("no path list") << QByteArray("<gdLst/>") << "2:3: warning no path";
    QTest::newRow("no path") << paths("") << "2:3: warning no path";
    QTest::newRow("no operator") << QByteArray("<gdLst><gd name='x' fmla='? 1 2 3'/></gdLst>")
                                 << "3:36: warning guide 'x': '?' is no operator";
    QTest::newRow("no formula") << QByteArray("<avLst><gd name='x'/></avLst>")
                                << "3:21: warning guide 'x': '' is no operator";
    QTest::newRow("unknown name in a path")
        << path("<moveTo><pt x='1' y='top'/></moveTo>")
        << "4:14: warning moveTo: 'top' is no number and no guide";
    QTest::newRow("no coordinate") << path("<moveTo><pt x='1'/></moveTo>")
                                   << "4:14: warning moveTo: '' is no number and no guide";
    QTest::newRow("too few points") << path(move + "<quadBezTo><pt x='1' y='1'/></quadBezTo>")
                                    << "4:51: warning quadBezTo: '' is no number and no guide";
    QTest::newRow("no sweep") << path(move + "<arcTo wR='1' hR='1' stAng='0'/>")
                              << "4:72: warning arcTo: '' is no number and no guide";
    QTest::newRow("unknown step") << path(move + "<lineTo/>")
                                  << "4:49: warning element lineTo in a path";
    QTest::newRow("no start") << path(line)
                              << "4:12: warning a path that does not begin with moveTo";
}

void TestDrawingMlImport::faultsAreReportedWithTheirPlace()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, fault);
    Diagnostics diagnostics;
    QVERIFY(!readPresetShapes("<presets>\n<x>\n" + content + "</x></presets>", "a", diagnostics));
    QCOMPARE(texts(diagnostics),
        (QStringList {fault + ": shape left out", "0:0: error no shape is defined in it"}));
}

void TestDrawingMlImport::aFaultyShapeLeavesTheOthers()
{
    Diagnostics diagnostics;
    auto const all = readPresetShapes("<p><one/><two>" + paths("<path>" + move + line + "</path>")
            + "</two><three><gdLst><gd/></gdLst></three></p>",
        "a", diagnostics);
    QVERIFY(all);
    QCOMPARE(all->size(), std::size_t(1));
    QCOMPARE(all->front().name, QString("two"));
    QCOMPARE(diagnostics.size(), 2);
}

void TestDrawingMlImport::whatHasNoValueIsReportedOnce()
{
    auto const all = definitions(preset("<gdLst><gd name='x' fmla='*/ w 1 l'/></gdLst>"
        + paths("<path>" + move + "<lnTo><pt x='x' y='b'/></lnTo></path>")));
    Diagnostics diagnostics;
    auto const shapes =
        shapesInBoxes(all.front(), {QSizeF(10, 20), QSizeF(20, 20)}, {}, "a", diagnostics);
    QVERIFY(shapes);
    QCOMPARE(drawn(*shapes->front().front().list), QString("M 0 0 L 0 20"));
    QCOMPARE(texts(diagnostics),
        (QStringList {"1:16: warning shape: guides without a value count as 0: x"}));
}

void TestDrawingMlImport::tooLargeACoordinateIsReported()
{
    auto const all =
        definitions(preset(paths("<path w='1e-300' h='1'>" + move + line + "</path>")));
    Diagnostics diagnostics;
    QVERIFY(!shapesInBoxes(all.front(), {QSizeF(1e9, 20)}, {}, "a", diagnostics));
    QCOMPARE(texts(diagnostics),
        (QStringList {
            "1:16: error shape: a coordinate is too large in a box of 1e+09 x 20: left out"}));
}

void TestDrawingMlImport::stepsAreBounded()
{
    Diagnostics diagnostics;
    QByteArray const text = preset(
        paths("<path>" + move + QByteArray("<close/>").repeated(maximumPathSteps) + "</path>"));
    QVERIFY(!readPresetShapes(text, "a", diagnostics));
    QVERIFY(diagnostics.at(0).text.startsWith("more than 100000 steps"));
}

void TestDrawingMlImport::damagedDocumentsAreReported()
{
    QByteArray const text = "<p>" + customShape + "</p>";
    for (int size = 0; size < text.size(); ++size) {
        Diagnostics diagnostics;
        QVERIFY(!readCustomShapes(text.left(size), "a", diagnostics));
        QVERIFY(!readPresetShapes(text.left(size), "a", diagnostics));
        QCOMPARE(diagnostics.size(), 2);
        holdsCustomShapes(text.left(size));
    }
    QByteArray const deep = QByteArray("<a>").repeated(5000) + QByteArray("</a>").repeated(5000);
    Diagnostics diagnostics;
    QVERIFY(!readCustomShapes(deep, "a", diagnostics));
    QVERIFY(!readPresetShapes("\x89PNG\r\n\x1a\n", "a", diagnostics));
    QVERIFY(!readCustomShapes("<p/>", "a", diagnostics));
    QCOMPARE(diagnostics.size(), 3);
}

void TestDrawingMlImport::randomShapesHaveOneStructure()
{
    QRandomGenerator random = Testing::seededRandom(23);
    QByteArrayList const numbers {
        "0", "l", "w", "hd2", "x0", "x1", "x2", "cd4", "21600000", "-5e9", "1e307", "7"};
    auto const number = [&] { return numbers.at(random.bounded(numbers.size())); };
    auto const point = [&] { return "<pt x='" + number() + "' y='" + number() + "'/>"; };
    QByteArrayList const formulas {
        "+- w 0 h", "at2 w h", "?: x0 cd4 -3", "pin 0 h ssd4", "*/ w 1 0"};
    int drawnShapes = 0;
    for (int round = 0; round < 2000; ++round) {
        QByteArray guides;
        for (QByteArray const name : {"x0", "x1", "x2"}) {
            // The first must not name a guide.
            QByteArray const formula =
                name == "x0" ? formulas.first() : formulas.at(random.bounded(formulas.size()));
            guides += "<gd name='" + name + "' fmla='" + formula + "'/>";
        }
        QByteArray path = "<moveTo>" + point() + "</moveTo>";
        for (int i = random.bounded(12); i > 0; --i) {
            switch (random.bounded(6)) {
            case 0:
                path += "<moveTo>" + point() + "</moveTo>";
                break;
            case 1:
                path += "<lnTo>" + point() + "</lnTo>";
                break;
            case 2:
                path += "<cubicBezTo>" + point() + point() + point() + "</cubicBezTo>";
                break;
            case 3:
                path += "<quadBezTo>" + point() + point() + "</quadBezTo>";
                break;
            case 4:
                path += arc(number() + ' ' + number(), number(), number());
                break;
            default:
                path += "<close/>";
            }
        }
        auto const all = definitions(
            preset("<gdLst>" + guides + "</gdLst>" + paths("<path>" + path + "</path>")));
        QCOMPARE(all.size(), std::size_t(1));
        std::vector<QSizeF> const boxes {QSizeF(400, 100), QSizeF(100, 100), QSizeF(100, 300)};
        Diagnostics diagnostics;
        auto const shapes = shapesInBoxes(all.front(), boxes, {}, "a", diagnostics);
        if (!shapes)
            continue;
        ++drawnShapes;
        for (Shapes const& inOneBox : *shapes) {
            QCOMPARE(structure(inOneBox), structure(shapes->front()));
            for (Shape const& shape : inOneBox) {
                for (KpPathSeg* const seg : shape.list->segs)
                    SegmentKind::forEachReal(
                        *seg, [](KpReal const& real) { QVERIFY(std::isfinite(real.value)); });
            }
        }
    }
    QVERIFY(drawnShapes > 1500);
}

QTEST_GUILESS_MAIN(TestDrawingMlImport)

#include "tst_drawingmlimport.moc"
