// SPDX-License-Identifier: MIT
#include "model/selection.h"
#include "shapesmodeltesting.h"

using namespace ShapesModelTesting;

class TestSelection : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isEmptyAtFirst();
    void isSortedAndHoldsNothingTwice();
    void theLastGivenIsTheCurrentOne();
    void togglesBesideTheOthers();
    void keepsItsCurrentOneWhileItIsSelected();
    void dropsWhatTheOutlineDoesNotHave();
    void tellsOfChangesOnly();
    void namesItsSegments();
};

void TestSelection::isEmptyAtFirst()
{
    Selection const selection;
    QVERIFY(selection.isEmpty());
    QVERIFY(!selection.current());
    QVERIFY(!selection.contains({0, HandleKind::Point}));
}

void TestSelection::isSortedAndHoldsNothingTwice()
{
    Selection selection;
    selection.set(handlesOf("3 1b 1 3 1a"));
    QCOMPARE(textOf(selection.handles()), QString("1 1a 1b 3"));
    QVERIFY(selection.contains({1, HandleKind::Control2}));
    QVERIFY(!selection.contains({3, HandleKind::Control2}));
}

void TestSelection::theLastGivenIsTheCurrentOne()
{
    Selection selection;
    selection.set(handlesOf("3 1b 2"));
    QCOMPARE(textOf({*selection.current()}), QString("2"));
    selection.clear();
    QVERIFY(!selection.current());
}

void TestSelection::togglesBesideTheOthers()
{
    Selection selection;
    selection.set(handlesOf("3"));
    selection.toggle({1, HandleKind::Point});
    QCOMPARE(textOf(selection.handles()), QString("1 3"));
    QCOMPARE(textOf({*selection.current()}), QString("1"));
    selection.toggle({1, HandleKind::Point});
    QCOMPARE(textOf(selection.handles()), QString("3"));
    QCOMPARE(textOf({*selection.current()}), QString("3"));
    selection.toggle({3, HandleKind::Point});
    QVERIFY(selection.isEmpty());
    QVERIFY(!selection.current());
}

void TestSelection::keepsItsCurrentOneWhileItIsSelected()
{
    WorkingShape const shape = shapeOf("M 0 0 L 1 1 L 2 2");
    Selection selection;
    selection.set(handlesOf("2 7 9 1"));
    selection.toggle({9, HandleKind::Point});
    QCOMPARE(textOf({*selection.current()}), QString("1"));
    selection.restrictTo(*shape.list);
    QCOMPARE(textOf(selection.handles()), QString("1 2"));
    QCOMPARE(textOf({*selection.current()}), QString("1"));
}

void TestSelection::dropsWhatTheOutlineDoesNotHave()
{
    WorkingShape const shape = shapeOf("M 0 0 L 1 1 C 1 1 2 2 3 3 E 5 5 2 2");
    Selection selection;
    selection.set(handlesOf("-1 0 1a 2b 2x 3x 3a 4 99"));
    selection.restrictTo(*shape.list);
    QCOMPARE(textOf(selection.handles()), QString("0 2b 3x"));
    QCOMPARE(textOf({*selection.current()}), QString("3x"));
    selection.restrictTo(KpPathSegList());
    QVERIFY(selection.isEmpty());
    QVERIFY(!selection.current());
}

void TestSelection::tellsOfChangesOnly()
{
    WorkingShape const shape = shapeOf("M 0 0 L 1 1 L 2 2");
    Selection selection;
    QSignalSpy const spy(&selection, &Selection::changed);
    selection.clear();
    QCOMPARE(spy.count(), 0);
    selection.set(handlesOf("0 1"));
    QCOMPARE(spy.count(), 1);
    selection.set(handlesOf("0 1"));
    selection.restrictTo(*shape.list);
    QCOMPARE(spy.count(), 1);
    selection.set(handlesOf("1 0")); // another one is the current one
    QCOMPARE(spy.count(), 2);
    selection.toggle({2, HandleKind::Point});
    QCOMPARE(spy.count(), 3);
}

void TestSelection::namesItsSegments()
{
    Selection selection;
    selection.set(handlesOf("4 2a 2 2b 0x 4"));
    QCOMPARE(selection.segments(), QVector<int>({0, 2, 4}));
}

QTEST_GUILESS_MAIN(TestSelection)
#include "tst_kpshapes_selection.moc"
