// SPDX-License-Identifier: MIT
#include "model/handledrag.h"
#include "model/nodekind.h"
#include "model/outlineedit.h"
#include "shapesmodeltesting.h"

using namespace OutlineTesting;
using namespace ShapesModelTesting;

Q_DECLARE_METATYPE(NodeDrag)
Q_DECLARE_METATYPE(NodeKind)

namespace {

QString const smooth = QStringLiteral("M 0 0 C 0 10 20 30 30 30 C 50 30 60 10 60 0");
QString const symmetric = QStringLiteral("M 0 0 C 0 10 20 30 30 30 C 40 30 60 10 60 0");
QString const corner = QStringLiteral("M 0 0 C 0 10 20 20 30 30 C 40 20 60 10 60 0");
QString const ring = QStringLiteral("M 0 0 C 0 10 20 30 30 30 C 60 10 -10 0 0 0");

} // namespace

class TestHandleDrag : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void moves_data();
    void moves();
    void keepsRules();
    void keepsTheAxisThatIsNotMoved();
    void refusesWhatIsNotFinite();
    void straightensTheWay();
    void returnsToItsStart();
    void doesNotStickWhereItPassesALine();
    void leavesAnotherOutlineAlone();
    void seesKinds_data();
    void seesKinds();
    void findsNodes();
    void insertsAtAnyParameter();
    void adds();
    void addsBehindTheSubpath();
    void addsNothingThatIsNotFinite();
};

void TestHandleDrag::moves_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<bool>("isClosed");
    QTest::addColumn<QString>("handles");
    QTest::addColumn<QPointF>("by");
    QTest::addColumn<NodeDrag>("drag");
    QTest::addColumn<QString>("after");
    auto const add = [](char const* name, QString const& before, bool isClosed, char const* handles,
                         QPointF by, NodeDrag drag, char const* after) {
        QTest::newRow(name) << before << isClosed << handles << by << drag << after;
    };
    NodeDrag const keep = NodeDrag::Keep;
    add("a point with its control points", smooth, false, "1", {1, 2}, keep,
        "M 0 0 C 0 10 21 32 31 32 C 51 32 60 10 60 0");
    add("and breaking changes nothing in that", smooth, false, "1", {1, 2}, NodeDrag::Break,
        "M 0 0 C 0 10 21 32 31 32 C 51 32 60 10 60 0");
    add("a move with the control point behind", smooth, false, "0", {1, 2}, keep,
        "M 1 2 C 1 12 20 30 30 30 C 50 30 60 10 60 0");
    add("each once", smooth, false, "1 1b 2a", {1, 2}, keep,
        "M 0 0 C 0 10 21 32 31 32 C 51 32 60 10 60 0");
    add("points side by side", "M 0 0 L 5 5 L 9 9", false, "1 2", {1, 0}, keep,
        "M 0 0 L 6 5 L 10 9");
    add("a smooth one turns", smooth, false, "1b", {10, -10}, keep,
        "M 0 0 C 0 10 30 20 30 30 C 30 50 60 10 60 0");
    add("from the other side", smooth, false, "2a", {-20, 10}, keep,
        "M 0 0 C 0 10 30 20 30 30 C 30 40 60 10 60 0");
    add("a symmetric one mirrors", symmetric, false, "1b", {0, -5}, keep,
        "M 0 0 C 0 10 20 25 30 30 C 40 35 60 10 60 0");
    add("a corner does nothing", corner, false, "1b", {0, -5}, keep,
        "M 0 0 C 0 10 20 15 30 30 C 40 20 60 10 60 0");
    add("it breaks", symmetric, false, "1b", {0, -5}, NodeDrag::Break,
        "M 0 0 C 0 10 20 25 30 30 C 40 30 60 10 60 0");
    add("both control points are moved", symmetric, false, "1b 2a", {0, -5}, keep,
        "M 0 0 C 0 10 20 25 30 30 C 40 25 60 10 60 0");
    add("a smooth one onto its point", smooth, false, "1b", {10, 0}, keep,
        "M 0 0 C 0 10 30 30 30 30 C 50 30 60 10 60 0");
    add("a ring by its move", ring, true, "0", {1, 2}, keep,
        "M 1 2 C 1 12 20 30 30 30 C 60 10 -9 2 1 2");
    add("a ring by its end", ring, true, "2", {1, 2}, keep,
        "M 1 2 C 1 12 20 30 30 30 C 60 10 -9 2 1 2");
    add("a ring by both", ring, true, "0 2", {1, 2}, keep,
        "M 1 2 C 1 12 20 30 30 30 C 60 10 -9 2 1 2");
    add("no ring where it is open", ring, false, "2", {1, 2}, keep,
        "M 0 0 C 0 10 20 30 30 30 C 60 10 -9 2 1 2");
    add("across where a ring closes", "M 0 0 C 0 10 20 30 30 30 C 60 10 0 -10 0 0", true, "1a",
        {5, -10}, keep, "M 0 0 C 5 0 20 30 30 30 C 60 10 -5 0 0 0");
    add("each ring of an outline", "M 0 0 L 5 5 L 0 0 M 1 1 L 6 6 L 1 1", true, "0 5", {1, 0}, keep,
        "M 1 0 L 5 5 L 1 0 M 2 1 L 6 6 L 2 1");
    add("an ellipse", "E 5 5 2 1", false, "0", {1, 2}, keep, "E 6 7 2 1");
    add("radii", "E 5 5 2 1", false, "0x 0y", {1, 2}, keep, "E 5 5 3 3");
    add("what is not there", smooth, true, "-1 0a 1x 7", {1, 2}, keep,
        "M 0 0 C 0 10 20 30 30 30 C 50 30 60 10 60 0");
}

void TestHandleDrag::moves()
{
    QFETCH(QString, before);
    QFETCH(bool, isClosed);
    QFETCH(QString, handles);
    QFETCH(QPointF, by);
    QFETCH(NodeDrag, drag);
    QFETCH(QString, after);
    WorkingShape shape = shapeOf(before, isClosed);
    moveHandles(shape, handlesOf(handles), by, drag);
    QCOMPARE(textOf(*shape.list), after);
    WorkingShape dragged = shapeOf(before, isClosed);
    HandleDrag const steps(dragged, handlesOf(handles));
    steps.moveBy(dragged, {-7.0, 3.0}, drag);
    steps.moveBy(dragged, by, drag);
    QCOMPARE(exact(*dragged.list), exact(*shape.list));
}

void TestHandleDrag::keepsRules()
{
    WorkingShape shape = shapeOf("M 20 30 L 5 5");
    shape.list->segs[0]->pt = {KpReal(KpReal::FromRight, 180.0, 20.0), KpReal(17, 3.0, 30.0)};
    moveHandles(shape, handlesOf("0"), {30.0, 1.0});
    QCOMPARE(exact(shape.list->segs[0]->pt),
        exact(KpPoint(KpReal(KpReal::FromRight, 150.0, 50.0), KpReal(17, 0.0, 31.0))));
}

void TestHandleDrag::keepsTheAxisThatIsNotMoved()
{
    WorkingShape shape = shapeOf(smooth);
    shape.list->segs[1]->pt.x = {KpReal::FromRight, 7.0, 30.0}; // not where its rate is
    QString const before = exact(shape.list->segs[1]->pt.x);
    moveHandles(shape, handlesOf("1"), {0.0, 5.0});
    QCOMPARE(exact(shape.list->segs[1]->pt.x), before);
    QCOMPARE(shape.list->segs[1]->pt.y.value, 35.0);
}

void TestHandleDrag::refusesWhatIsNotFinite()
{
    WorkingShape shape = shapeOf("M 20 30 L 1e308 5");
    QString const before = exact(*shape.list);
    moveHandles(shape, handlesOf("0"), {Testing::notANumber, 1.0});
    moveHandles(shape, handlesOf("0"), {1.0, Testing::infinite});
    QCOMPARE(exact(*shape.list), before);
    moveHandles(shape, handlesOf("1"), {1e308, 1.0});
    QCOMPARE(shape.list->segs[1]->pt.x.value, 1e308);
    QCOMPARE(shape.list->segs[1]->pt.y.value, 6.0);
}

void TestHandleDrag::straightensTheWay()
{
    QCOMPARE(straightened({5.0, -3.0}), QPointF(5.0, 0.0));
    QCOMPARE(straightened({2.0, -3.0}), QPointF(0.0, -3.0));
    QCOMPARE(straightened({3.0, -3.0}), QPointF(3.0, 0.0));
    QCOMPARE(straightened({0.0, 0.0}), QPointF(0.0, 0.0));
}

void TestHandleDrag::returnsToItsStart()
{
    QRandomGenerator random = Testing::seededRandom(7);
    for (int i = 0; i < 500; ++i) {
        WorkingShape shape = shapeOf("");
        fillRandomly(*shape.list, 8, random);
        QString const before = exact(*shape.list);
        QVector<HandleId> handles;
        forEachHandle(*shape.list, [&](Handle const& handle) {
            if (random.bounded(3) == 0)
                handles << handle.id;
        });
        HandleDrag const drag(shape, handles);
        drag.moveBy(shape, {random.generateDouble(), 3.0});
        drag.moveBy(shape, {0.0, 0.0});
        QCOMPARE(exact(*shape.list), before);
    }
}

void TestHandleDrag::doesNotStickWhereItPassesALine()
{
    WorkingShape shape = shapeOf(corner);
    HandleDrag const drag(shape, handlesOf("1b"));
    drag.moveBy(shape, {0.0, 20.0}); // straight on, here
    QCOMPARE(nodeKindOf(*shape.list, nodeAt(*shape.list, 1)), NodeKind::Symmetric);
    drag.moveBy(shape, {0.0, 25.0});
    QCOMPARE(textOf(*shape.list), QString("M 0 0 C 0 10 20 45 30 30 C 40 20 60 10 60 0"));
}

void TestHandleDrag::leavesAnotherOutlineAlone()
{
    WorkingShape shape = shapeOf(smooth);
    HandleDrag const drag(shape, handlesOf("1"));
    shape.list->removeAt(2, true);
    QString const before = exact(*shape.list);
    drag.moveBy(shape, {5.0, 5.0});
    QCOMPARE(exact(*shape.list), before);
}

void TestHandleDrag::seesKinds_data()
{
    QTest::addColumn<QString>("outline");
    QTest::addColumn<int>("segment");
    QTest::addColumn<NodeKind>("kind");
    QTest::newRow("smooth") << smooth << 1 << NodeKind::Smooth;
    QTest::newRow("symmetric") << symmetric << 1 << NodeKind::Symmetric;
    QTest::newRow("corner") << corner << 1 << NodeKind::Corner;
    QTest::newRow("begin") << smooth << 0 << NodeKind::Corner;
    QTest::newRow("end") << smooth << 2 << NodeKind::Corner;
    QTest::newRow("beside a line") << "M 0 0 L 10 0 C 15 0 9 9 20 20" << 1 << NodeKind::Smooth;
    QTest::newRow("before a line") << "M 0 0 C 0 9 9 0 10 0 L 20 0" << 1 << NodeKind::Smooth;
    QTest::newRow("lines") << "M 0 0 L 10 0 L 20 0" << 1 << NodeKind::Corner;
    QTest::newRow("back") << "M 0 0 C 0 9 5 0 10 0 C 5 0 9 9 20 20" << 1 << NodeKind::Corner;
    QTest::newRow("on the point") << "M 0 0 C 0 9 10 0 10 0 C 15 0 9 9 20 20" << 1
                                  << NodeKind::Corner;
    QTest::newRow("no number") << "M 0 0 C 0 9 nan 0 10 0 C 15 0 9 9 20 20" << 1
                               << NodeKind::Corner;
    QTest::newRow("infinite") << "M 0 0 C 0 9 -inf 0 10 0 C 15 0 9 9 20 20" << 1
                              << NodeKind::Corner;
    QTest::newRow("ellipse") << "E 0 0 5 5" << 0 << NodeKind::Corner;
    // A degree is a sine of 0.01745.
    QTest::newRow("a third of a degree")
        << "M 0 0 C 0 9 0 0 10 0 C 20 0.06 9 9 20 20" << 1 << NodeKind::Symmetric;
    QTest::newRow("a degree") << "M 0 0 C 0 9 0 0 10 0 C 20 0.17 9 9 20 20" << 1
                              << NodeKind::Corner;
    QTest::newRow("a percent longer")
        << "M 0 0 C 0 9 0 0 10 0 C 20.1 0 9 9 20 20" << 1 << NodeKind::Smooth;
}

void TestHandleDrag::seesKinds()
{
    QFETCH(QString, outline);
    QFETCH(int, segment);
    QFETCH(NodeKind, kind);
    WorkingShape const shape = shapeOf(outline);
    QCOMPARE(nodeKindOf(*shape.list, nodeAt(*shape.list, segment)), kind);
}

void TestHandleDrag::findsNodes()
{
    WorkingShape const shape = shapeOf(ring + " E 5 5 1 1 C 1 1 2 2 3 3", true);
    KpPathSegList const& list = *shape.list;
    auto const nodes = nodesOf(list, handlesOf("0 1a 1b 2a 2b 3 3x 4a 4b"));
    QCOMPARE(int(nodes.size()), 4);
    QCOMPARE(nodes[0].point, 0);
    QCOMPARE(nodes[0].twin, 2);
    QCOMPARE(nodes[0].incoming, 2);
    QCOMPARE(nodes[0].outgoing, 1);
    QCOMPARE(nodes[1].point, 1);
    QCOMPARE(nodes[1].twin, -1);
    QCOMPARE(nodes[2].point, 3);
    QCOMPARE(nodes[2].outgoing, -1); // nothing goes on from an ellipse
    QCOMPARE(nodes[3].point, 4);
    QCOMPARE(nodes[3].incoming, 4);
    QCOMPARE(textOf(withTwins(list, handlesOf("1 2 3x"))), QString("0 1 2 3x"));
}

void TestHandleDrag::insertsAtAnyParameter()
{
    WorkingShape shape = shapeOf("M 0 0 L 100 40");
    QCOMPARE(insertPoint(shape, 1, 0.25), 1);
    QCOMPARE(textOf(*shape.list), QString("M 0 0 L 25 10 L 100 40"));
    QCOMPARE(insertPoint(shape, 2, 0.0), 2);
    QCOMPARE(insertPoint(shape, 3, 1.0), 3);
    QCOMPARE(textOf(*shape.list), QString("M 0 0 L 25 10 L 25 10 L 100 40 L 100 40"));
    QString const before = exact(*shape.list);
    for (double const t : {-0.1, 1.1, Testing::notANumber, Testing::infinite})
        QCOMPARE(insertPoint(shape, 1, t), -1);
    for (int const segment : {-1, 0, 5, 99})
        QCOMPARE(insertPoint(shape, segment, 0.5), -1);
    QCOMPARE(exact(*shape.list), before);
}

void TestHandleDrag::adds()
{
    WorkingShape shape = shapeOf("");
    QCOMPARE(segmentToAddAfter(shape, {}), -1);
    QCOMPARE(addMove(shape, -1, {20.0, 10.0}), 0);
    QCOMPARE(segmentToAddAfter(shape, {}), 0);
    QCOMPARE(addLine(shape, 0, {40.0, 20.0}), 1);
    QCOMPARE(addCurve(shape, 1, {1.0, 2.0}, {3.0, 4.0}, {5.0, 6.0}), 2);
    QCOMPARE(addEllipse(shape, 99, {50.0, 50.0}, -30.0, 10.0), 3);
    QCOMPARE(addLine(shape, 0, {30.0, 15.0}), 1);
    QCOMPARE(segmentToAddAfter(shape, handlesOf("0 2 77")), 2);
    QCOMPARE(textOf(*shape.list), QString("M 20 10 L 30 15 L 40 20 C 1 2 3 4 5 6 E 50 50 30 10"));
    QCOMPARE(
        exact(shape.list->segs[0]->pt), exact(KpPoint(KpReal(1, 0.1, 20), KpReal(2, 0.1, 10))));
    QCOMPARE(exact(shape.list->segs[4]->toEllipse()->a), exact(KpReal(1, 0.15, 30.0)));
    QCOMPARE(exact(shape.list->segs[4]->toEllipse()->b), exact(KpReal(2, 0.1, 10.0)));
}

void TestHandleDrag::addsBehindTheSubpath()
{
    WorkingShape shape = shapeOf("M 0 0 L 1 1 L 2 2 M 3 3 L 4 4");
    QCOMPARE(addEllipse(shape, 0, {9.0, 9.0}, 1.0, 1.0), 3);
    QCOMPARE(addMove(shape, 1, {8.0, 8.0}), 3);
    QCOMPARE(textOf(*shape.list), QString("M 0 0 L 1 1 L 2 2 M 8 8 E 9 9 1 1 M 3 3 L 4 4"));
}

void TestHandleDrag::addsNothingThatIsNotFinite()
{
    WorkingShape shape = shapeOf("M 0 0");
    QPointF const good(1.0, 2.0);
    for (double const bad : {Testing::notANumber, Testing::infinite, -Testing::infinite}) {
        for (QPointF const& point : {QPointF(bad, 1.0), QPointF(1.0, bad)}) {
            QCOMPARE(addMove(shape, 0, point), -1);
            QCOMPARE(addLine(shape, 0, point), -1);
            QCOMPARE(addCurve(shape, 0, point, good, good), -1);
            QCOMPARE(addCurve(shape, 0, good, point, good), -1);
            QCOMPARE(addCurve(shape, 0, good, good, point), -1);
            QCOMPARE(addEllipse(shape, 0, point, 1.0, 1.0), -1);
            QCOMPARE(addEllipse(shape, 0, good, point.x(), point.y()), -1);
        }
    }
    QCOMPARE(textOf(*shape.list), QString("M 0 0"));
}

QTEST_GUILESS_MAIN(TestHandleDrag)
#include "tst_kpshapes_handledrag.moc"
