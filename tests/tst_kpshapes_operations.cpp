// SPDX-License-Identifier: MIT
#include "model/operations.h"
#include "shapesmodeltesting.h"

#include <QKeySequence>

#include <set>

using namespace OutlineTesting;
using namespace ShapesModelTesting;

namespace {

QString const square = QStringLiteral("M 0 0 L 60 0 L 60 60 L 0 60");
QString const ring = QStringLiteral("M 0 0 L 60 0 L 60 60 L 0 60 L 0 0");
QString const twoLines = QStringLiteral("M 0 0 L 10 0 M 20 0 L 30 0");
QString const wave = QStringLiteral("M 0 0 C 0 10 20 30 30 30 C 40 30 60 10 60 0");

} // namespace

class TestOperations : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void areNamedApart();
    void areFoundByTheirNames();
    void have_data();
    void have();
    void arePossible_data();
    void arePossible();
    void keepRulesThatNeighboursShare();
    void bindInProportionBetweenOthers();
    void dividedCurvesStayWhereTheyAre();
    void splitAndJoinKeepEveryBit();
    void reversingTwiceKeepsEveryBit();
    void duplicatesKeepRulesOfRadii();
    void toggleFlags();
    void madeNodesStaySo();
    void resizeTheBox();
};

void TestOperations::areNamedApart()
{
    std::set<QString> names;
    std::set<QString> shortcuts;
    std::set<QString> mnemonics;
    for (Operation const& operation : operations()) {
        QString const text = QString::fromLatin1(operation.text);
        QVERIFY2(names.insert(operation.id).second, operation.id);
        QCOMPARE(text.count('&'), 1);
        QChar const mnemonic = text.at(text.indexOf('&') + 1).toLower();
        QVERIFY2(
            mnemonics.insert(QString::number(int(operation.menu)) + mnemonic).second, operation.id);
        bool const isSelecting = operation.menu == OperationMenu::Select;
        QCOMPARE(QByteArray(operation.step).isEmpty(), isSelecting);
        QVERIFY(operation.isPossible && operation.run);
        if (QByteArray(operation.shortcut).isEmpty())
            continue;
        QKeySequence const keys(operation.shortcut);
        QCOMPARE(keys.count(), 1);
        QVERIFY2(keys[0] != Qt::Key_unknown, operation.id);
        QVERIFY2(keys[0] < Qt::Key_A || keys[0] > Qt::Key_Z, operation.id); // those are tools
        QVERIFY2(shortcuts.insert(keys.toString()).second, operation.id);
    }
    QVERIFY(names.size() >= 22);
}

void TestOperations::areFoundByTheirNames()
{
    QCOMPARE(operationOf("delete")->step, "Delete points");
    QVERIFY(!operationOf("undelete"));
    QVERIFY(!operationOf(QString()));
}

void TestOperations::have_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<QString>("before");
    QTest::addColumn<bool>("isClosed");
    QTest::addColumn<QString>("selected");
    QTest::addColumn<QString>("after");
    QTest::addColumn<QString>("selectedAfter");
    auto const add = [](char const* name, char const* id, QString const& before, bool isClosed,
                         char const* selected, QString const& after, char const* selectedAfter) {
        QTest::newRow(name) << id << before << isClosed << selected << after << selectedAfter;
    };
    add("divide a line", "insert-point", "M 0 0 L 10 20", false, "1", "M 0 0 L 5 10 L 10 20", "1");
    add("divide a curve", "insert-point", "M 0 0 C 0 40 80 40 80 0", false, "1a",
        "M 0 0 C 0 20 20 30 40 30 C 60 30 80 20 80 0", "1");
    add("divide several", "insert-point", square, false, "0 1 3",
        "M 0 0 L 30 0 L 60 0 L 60 60 L 30 60 L 0 60", "1 4");
    add("divide neighbours", "insert-point", wave, false, "1 2",
        "M 0 0 C 0 5 5 12.5 11.25 18.75 C 17.5 25 25 30 30 30 C 35 30 42.5 25 48.75 18.75 C 55 "
        "12.5 "
        "60 5 60 0",
        "1 3");

    add("delete a line's end", "delete", square, false, "2", "M 0 0 L 60 0 L 0 60", "2");
    add("delete the last", "delete", square, false, "3", "M 0 0 L 60 0 L 60 60", "2");
    add("delete the move", "delete", square, false, "0", "M 60 0 L 60 60 L 0 60", "0");
    add("delete a move and more", "delete", twoLines, false, "0 2", "M 10 0 M 30 0", "0");
    add("delete a subpath", "delete", twoLines, false, "2 3", "M 0 0 L 10 0", "1");
    add("delete all", "delete", square, true, "0 1 2 3", "", "");
    add("delete between curves", "delete", wave, false, "1", "M 0 0 C 0 10 60 10 60 0", "1");
    add("delete a curve's start", "delete", wave, false, "0", "M 30 30 C 40 30 60 10 60 0", "0");
    add("delete where a ring closes", "delete", ring, true, "0", "M 60 0 L 60 60 L 0 60 L 60 0",
        "0");
    add("delete where it closes, by its end", "delete", ring, true, "4",
        "M 60 0 L 60 60 L 0 60 L 60 0", "0");
    add("delete where curves close", "delete", "M 0 0 C 1 1 2 2 9 0 C 3 3 4 4 9 9 C 5 5 6 6 0 0",
        true, "0", "M 9 0 C 3 3 4 4 9 9 C 5 5 2 2 9 0", "0");
    add("delete the end of what is no ring", "delete", ring, false, "4", square, "3");
    add("delete an ellipse by a radius", "delete", "E 5 5 2 1 M 0 0 L 1 1", false, "0x",
        "M 0 0 L 1 1", "0");
    add("delete control points alone", "delete", wave, false, "1a 2b", "M 0 0 L 30 30 L 60 0",
        "1 2");
    add("pass control points over", "delete", wave, false, "1b 2", "M 0 0 C 0 10 20 30 30 30", "1");

    add("split", "split", square, false, "1 2 3", "M 0 0 L 60 0 M 60 0 L 60 60 M 60 60 L 0 60",
        "2 4");
    add("join by a line", "join", twoLines, false, "2", "M 0 0 L 10 0 L 20 0 L 30 0", "2");
    add("join what meets", "join", "M 0 0 L 9 0 M 9 0 L 5 5", false, "2", "M 0 0 L 9 0 L 5 5", "1");
    add("join several", "join", "M 0 0 L 9 0 M 9 0 M 9 0 M 1 1", false, "2 3 4",
        "M 0 0 L 9 0 L 1 1", "1 2");

    add("lines to curves", "to-curve", "M 0 0 L 30 60", false, "0 1", "M 0 0 C 10 20 20 40 30 60",
        "0 1");
    add("curves to lines", "to-line", wave, false, "1b 2", "M 0 0 L 30 30 L 60 0", "1 2");
    add("curves to lines, others stay", "to-line", "E 5 5 2 1 M 0 0 C 1 1 2 2 3 3", false,
        "0x 2 2a", "E 5 5 2 1 M 0 0 L 3 3", "0x 2");

    add("reverse lines", "reverse", square, false, "1", "M 0 60 L 60 60 L 60 0 L 0 0", "2");
    add("reverse curves", "reverse", "M 0 0 L 5 5 C 6 5 7 8 9 9", false, "1 2a",
        "M 9 9 C 7 8 6 5 5 5 L 0 0", "1 1b");
    add("reverse what is selected", "reverse", twoLines, false, "2", "M 0 0 L 10 0 M 30 0 L 20 0",
        "3");

    // A twentieth of the smaller side aside.
    add("duplicate", "duplicate", twoLines, false, "1", "M 0 0 L 10 0 M 5 5 L 15 5 M 20 0 L 30 0",
        "2 3");
    add("duplicate an ellipse", "duplicate", "E 5 5 2 1", false, "0y", "E 5 5 2 1 E 10 10 2 1",
        "1");
    add("duplicate what the flag closes", "duplicate", "M 0 0 L 9 0 L 9 9", true, "0",
        "M 0 0 L 9 0 L 9 9 L 0 0 M 5 5 L 14 5 L 14 14", "4 5 6");

    add("corner", "corner", wave, false, "1", "M 0 0 C 0 10 30 30 30 30 C 30 30 60 10 60 0", "1");
    add("smooth what is retracted", "smooth", "M 0 0 C 0 10 30 30 30 30 C 30 30 60 10 60 0", false,
        "1", "M 0 0 C 0 10 15.8579 30 30 30 C 44.1421 30 60 10 60 0", "1");
    add("smooth lines", "smooth", "M 0 0 L 30 30 L 60 0", false, "1",
        "M 0 0 C 10 10 15.8579 30 30 30 C 44.1421 30 50 10 60 0", "1");
    add("smooth beside a line", "smooth", "M 0 0 L 30 0 C 30 10 60 30 60 60", false, "1",
        "M 0 0 L 30 0 C 40 0 60 30 60 60", "1");
    add("smooth before a line", "smooth", "M 0 0 C 1 1 30 10 30 0 L 60 0", false, "1b",
        "M 0 0 C 1 1 20 0 30 0 L 60 0", "1b");
    add("symmetric", "symmetric", "M 0 0 C 0 10 10 30 30 30 C 40 30 60 10 60 0", false, "2a",
        "M 0 0 C 0 10 15 30 30 30 C 45 30 60 10 60 0", "2a");
    add("symmetric where a ring closes", "symmetric", "M 0 0 L 60 0 L 0 60 L 0 0", true, "0",
        "M 0 0 C 14.1421 -14.1421 40 0 60 0 L 0 60 C 0 40 -14.1421 14.1421 0 0", "0");

    add("select all", "select-all", wave, false, "1a", wave, "0 1 2");
    add("select nothing", "select-none", wave, false, "0 1a", wave, "");
    add("select the next", "select-next", wave, false, "0 1", wave, "1a");
    add("select the next point", "select-next", wave, false, "1b", wave, "2");
    add("select the first behind the last", "select-next", wave, false, "2b", wave, "0");
    add("select the first", "select-next", wave, false, "", wave, "0");
    add("select the previous", "select-previous", wave, false, "2 2a", wave, "1b");
    add("select the last before the first", "select-previous", wave, false, "0", wave, "2b");
    add("select the last", "select-previous", wave, false, "", wave, "2b");

    QString const steps = QStringLiteral("M 0 0 L 10 50 L 40 90");
    add("align left", "align-left", steps, false, "1 2", "M 0 0 L 10 50 L 10 90", "1 2");
    add("align right", "align-right", steps, false, "0 2", "M 40 0 L 10 50 L 40 90", "0 2");
    add("align in the centre", "align-centre", steps, false, "0 2", "M 20 0 L 10 50 L 20 90",
        "0 2");
    add("align at the top", "align-top", steps, false, "1 2", "M 0 0 L 10 50 L 40 50", "1 2");
    add("align at the bottom", "align-bottom", steps, false, "0 1", "M 0 50 L 10 50 L 40 90",
        "0 1");
    add("align in the middle", "align-middle", steps, false, "0 2", "M 0 45 L 10 50 L 40 45",
        "0 2");
    add("align with control points", "align-bottom", wave, false, "0 1",
        "M 0 30 C 0 40 20 30 30 30 C 40 30 60 10 60 0", "0 1");
    add("align where a ring closes", "align-right", ring, true, "0 1",
        "M 60 0 L 60 0 L 60 60 L 0 60 L 60 0", "0 1");
    add("distribute", "distribute-horizontally", steps, false, "0 1 2", "M 0 0 L 20 50 L 40 90",
        "0 1 2");
    add("distribute what is not in order", "distribute-vertically", "M 0 80 L 0 0 L 0 10", false,
        "0 1 2", "M 0 80 L 0 0 L 0 40", "0 1 2");
}

void TestOperations::have()
{
    QFETCH(QString, id);
    QFETCH(QString, before);
    QFETCH(bool, isClosed);
    QFETCH(QString, selected);
    QFETCH(QString, after);
    QFETCH(QString, selectedAfter);
    WorkingShape shape = shapeOf(before, isClosed);
    OperationTarget target {shape, handlesOf(selected)};
    Operation const* const operation = operationOf(id);
    QVERIFY(operation);
    QVERIFY(operation->isPossible(target));
    operation->run(target);
    QCOMPARE(textOf(*shape.list), after);
    QCOMPARE(textOf(target.handles), selectedAfter);
    QCOMPARE(shape.list->closed, isClosed);
    // All of it is bound in proportion still, and its rates give its places.
    forEachReal(*shape.list, [](KpReal const& real) {
        bool const isHorizontal = real.base == KpReal::PartOfWidth;
        QVERIFY(isHorizontal || real.base == KpReal::PartOfHeight);
        QVERIFY(std::abs(real.rate * (isHorizontal ? 200.0 : 100.0) - real.value) < 1e-9);
    });
}

void TestOperations::arePossible_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<QString>("before");
    QTest::addColumn<bool>("isClosed");
    QTest::addColumn<QString>("selected");
    auto const add = [](char const* name, char const* id, QString const& before, bool isClosed,
                         char const* selected) {
        QTest::newRow(name) << id << before << isClosed << selected;
    };
    for (Operation const& operation : operations()) {
        if (operation.menu == OperationMenu::Shape || operation.menu == OperationMenu::Select)
            continue;
        QTest::addRow("%s: nothing selected", operation.id)
            << operation.id << wave << false << QString();
        QTest::addRow("%s: nothing there", operation.id)
            << operation.id << QString() << false << QString("0 1a 7x -3");
        QTest::addRow("%s: not of this outline", operation.id)
            << operation.id << wave << true << QString("-1 0a 1x 3 99b");
    }
    add("no segment ends at a move", "insert-point", square, false, "0");
    add("no dividing of what is infinite", "insert-point", "M inf 0 L 1 1", false, "1");
    add("no dividing of what is no number", "insert-point", "M 0 0 C nan 0 1 1 2 2", false, "1");
    add("no dividing of ellipses", "insert-point", "E 5 5 1 1", false, "0");
    add("no splitting at ends", "split", twoLines, false, "0 1 3");
    add("no joining to nothing", "join", twoLines, false, "0 1 3");
    add("no joining to ellipses", "join", "E 5 5 1 1 M 0 0 L 1 1", false, "1");
    add("no curves of curves", "to-curve", wave, false, "0 1 2");
    add("no lines of lines", "to-line", square, false, "0 1 2 3");
    add("no direction of a point", "reverse", "M 0 0 M 1 1 E 5 5 1 1", false, "0 1 2");
    add("no direction without a move", "reverse", "L 0 0 L 1 1", true, "0 1");
    add("no copy without a move", "duplicate", "L 0 0 L 1 1", false, "0 1");
    add("corners are corners", "corner", square, false, "0 1 2 3");
    add("ends are corners", "smooth", wave, false, "0 2");
    add("smooth already", "smooth", wave, false, "1");
    add("symmetric already", "symmetric", "M 0 0 C 0 9 20 30 30 30 C 40 30 60 10 60 0", false, "1");
    add("symmetric is smooth", "smooth", "M 0 0 C 0 9 20 30 30 30 C 40 30 60 10 60 0", false, "1");
    add("no direction through one place", "smooth", "M 5 5 L 5 5 L 5 5", false, "1");
    add("one point is in a row", "align-left", square, false, "0");
    add("points are in a row", "align-left", square, false, "0 3");
    add("a ring's end is one point", "align-left", ring, true, "0 4");
    add("distributed already", "distribute-vertically", "M 0 0 L 9 10 L 0 20", false, "0 1 2");
    add("two are distributed", "distribute-vertically", square, false, "0 2");
}

void TestOperations::arePossible()
{
    QFETCH(QString, id);
    QFETCH(QString, before);
    QFETCH(bool, isClosed);
    QFETCH(QString, selected);
    WorkingShape shape = shapeOf(before, isClosed);
    OperationTarget target {shape, handlesOf(selected)};
    QString const outline = exact(*shape.list);
    QVERIFY(!operationOf(id)->isPossible(target));
    operationOf(id)->run(target);
    QCOMPARE(exact(*shape.list), outline);
    QCOMPARE(textOf(target.handles), textOf(handlesOf(selected)));
}

void TestOperations::keepRulesThatNeighboursShare()
{
    WorkingShape shape = shapeOf("M 100 20 L 160 40");
    for (KpPathSeg* const segment : qAsConst(shape.list->segs))
        bindInPlace(segment->pt.x, KpReal::FromRight, shape.box);
    shape.list->segs[1]->pt.y = {KpReal::PartOfSide, 0.4, 40.0};
    OperationTarget target {shape, handlesOf("1")};
    operationOf("insert-point")->run(target);
    QCOMPARE(exact(shape.list->segs[1]->pt),
        exact(KpPoint(
            KpReal(KpReal::FromRight, 70.0, 130.0), KpReal(KpReal::PartOfHeight, 0.3, 30.0))));
    operationOf("to-curve")->run(target);
    KpPathSegCurveTo const& curve = *shape.list->segs[1]->toCurveTo();
    QCOMPARE(int(curve.ctrl1.x.base), int(KpReal::FromRight));
    QCOMPARE(int(curve.ctrl2.y.base), int(KpReal::PartOfHeight));
    QCOMPARE(curve.ctrl1.x.rate, 90.0);
}

void TestOperations::bindInProportionBetweenOthers()
{
    WorkingShape shape = shapeOf("M 100 20 L 160 40");
    for (KpPathSeg* const segment : qAsConst(shape.list->segs))
        segment->pt.x.base = 17; // what no one knows is not handed on
    OperationTarget target {shape, handlesOf("1")};
    operationOf("insert-point")->run(target);
    QCOMPARE(exact(shape.list->segs[1]->pt.x), exact(KpReal(KpReal::PartOfWidth, 0.65, 130.0)));
    QCOMPARE(int(shape.list->segs[0]->pt.x.base), 17);
    QCOMPARE(int(shape.list->segs[2]->pt.x.base), 17);
}

void TestOperations::dividedCurvesStayWhereTheyAre()
{
    auto const pointOn = [](KpPathSegList const& list, int segment, double t) {
        KpPathSegCurveTo const& curve = *list.segs[segment]->toCurveTo();
        KpPoint const& start = list.segs[segment - 1]->pt;
        double const s = 1.0 - t;
        auto const at = [=](KpReal a, KpReal b, KpReal c, KpReal d) {
            return s * s * s * a.value + 3 * s * s * t * b.value + 3 * s * t * t * c.value
                + t * t * t * d.value;
        };
        return QPointF(at(start.x, curve.ctrl1.x, curve.ctrl2.x, curve.pt.x),
            at(start.y, curve.ctrl1.y, curve.ctrl2.y, curve.pt.y));
    };
    WorkingShape const whole = shapeOf("M 10 0 C 20 90 150 -30 180 80");
    WorkingShape divided = shapeOf("M 10 0 C 20 90 150 -30 180 80");
    OperationTarget target {divided, handlesOf("1")};
    operationOf("insert-point")->run(target);
    // The same in another box, too.
    for (double const scale : {1.0, 3.0}) {
        divided.list->updateValue(200.0 * scale, 100.0);
        whole.list->updateValue(200.0 * scale, 100.0);
        for (double t = 0.0; t <= 1.0; t += 0.0625) {
            bool const isFirst = t <= 0.5;
            QPointF const there =
                pointOn(*divided.list, isFirst ? 1 : 2, isFirst ? 2.0 * t : 2.0 * t - 1.0);
            QPointF const difference = there - pointOn(*whole.list, 1, t);
            QVERIFY(difference.manhattanLength() < 1e-9);
        }
    }
}

void TestOperations::splitAndJoinKeepEveryBit()
{
    WorkingShape shape = shapeOf(wave);
    shape.list->segs[1]->pt.x = {17, 5.0, -0.0};
    QString const before = exact(*shape.list);
    OperationTarget target {shape, handlesOf("1")};
    operationOf("split")->run(target);
    QCOMPARE(exact(shape.list->segs[2]->pt), exact(shape.list->segs[1]->pt));
    operationOf("join")->run(target);
    QCOMPARE(exact(*shape.list), before);
}

void TestOperations::reversingTwiceKeepsEveryBit()
{
    QRandomGenerator random = Testing::seededRandom(5);
    for (int i = 0; i < 500; ++i) {
        WorkingShape shape = shapeOf("");
        fillRandomly(*shape.list, 10, random);
        QString const before = exact(*shape.list);
        OperationTarget target {shape, {}};
        operationOf("select-all")->run(target);
        auto const handles = target.handles;
        operationOf("reverse")->run(target);
        operationOf("reverse")->run(target);
        QCOMPARE(exact(*shape.list), before);
        QCOMPARE(target.handles, handles);
    }
}

void TestOperations::duplicatesKeepRulesOfRadii()
{
    WorkingShape shape = shapeOf("E 50 50 20 10");
    shape.list->segs[0]->toEllipse()->a = {KpReal::PartOfSide, 0.2, 20.0};
    shape.list->segs[0]->toEllipse()->b = {17, 3.0, 10.0};
    OperationTarget target {shape, handlesOf("0")};
    operationOf("duplicate")->run(target);
    QCOMPARE(exact(shape.list->segs[1]->toEllipse()->a), exact(KpReal(5, 0.2, 20.0)));
    QCOMPARE(exact(shape.list->segs[1]->toEllipse()->b), exact(KpReal(17, 3.0, 10.0)));
}

void TestOperations::toggleFlags()
{
    WorkingShape shape = shapeOf(square);
    OperationTarget target {shape, handlesOf("2")};
    QString const before = exact(*shape.list);
    std::pair<char const*, bool*> const flags[] = {{"closed", &shape.list->closed},
        {"no-fill", &shape.list->noFill}, {"no-line", &shape.list->noLine}};
    for (auto const& [id, flag] : flags) {
        Operation const& operation = *operationOf(id);
        QVERIFY(operation.isPossible(target));
        QVERIFY(!operation.isOn(target));
        operation.run(target);
        QVERIFY(*flag);
        QVERIFY(operation.isOn(target));
        operation.run(target);
        QCOMPARE(exact(*shape.list), before);
        QCOMPARE(textOf(target.handles), QString("2"));
    }
}

void TestOperations::madeNodesStaySo()
{
    QRandomGenerator random = Testing::seededRandom(6);
    auto const number = [&random] { return QString::number(random.bounded(100)); };
    int made = 0;
    for (int i = 0; i < 3000; ++i) {
        QStringList words {"M", number(), number()};
        for (int step = 0; step < 4; ++step) {
            bool const isCurve = random.bounded(2) == 1;
            words << (isCurve ? "C" : "L");
            for (int k = 0; k < (isCurve ? 6 : 2); ++k)
                words << number();
        }
        for (char const* const id : {"corner", "smooth", "symmetric"}) {
            WorkingShape shape = shapeOf(words.join(' '));
            OperationTarget target {shape, handlesOf("2")};
            if (!operationOf(id)->isPossible(target))
                continue;
            operationOf(id)->run(target);
            QVERIFY2(!operationOf(id)->isPossible(target), qPrintable(words.join(' ')));
            ++made;
        }
    }
    QVERIFY(made > 5000);
}

void TestOperations::resizeTheBox()
{
    WorkingShape shape = shapeOf("M 20 30 L 50 100");
    resizeBox(shape, {400.0, 50.0});
    QCOMPARE(textOf(*shape.list), QString("M 40 15 L 100 50"));
    resizeBox(shape, {0.0, Testing::notANumber});
    QCOMPARE(shape.box, QSizeF(1.0, 1.0));
    resizeBox(shape, {Testing::infinite, -3.0});
    QCOMPARE(shape.box, QSizeF(1e6, 1.0));
}

QTEST_GUILESS_MAIN(TestOperations)
#include "tst_kpshapes_operations.moc"
