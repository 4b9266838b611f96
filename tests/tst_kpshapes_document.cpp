// SPDX-License-Identifier: MIT
#include "model/shapedocument.h"
#include "shapesmodeltesting.h"

#include <algorithm>

using namespace OutlineTesting;
using namespace ShapesModelTesting;

namespace {

ItemPointer itemNamed(QString const& name, int origin = -1)
{
    WorkingShape shape = shapeOf("M 0 0 L 10 0 L 10 10");
    shape.name = name;
    shape.origin = origin;
    return std::make_shared<ShapeItem const>(itemOf(shape));
}

Items itemsNamed(QString const& names)
{
    Items items;
    for (int i = 0; i < names.size(); ++i)
        items.push_back(itemNamed(names.mid(i, 1), i));
    return items;
}

QString namesOf(ShapeDocument const& document)
{
    QString names;
    for (ItemPointer const& item : document.items())
        names += item->name;
    return names;
}

/** The names, the current one in brackets. */
QString stateOf(ShapeDocument const& document)
{
    QString state = namesOf(document);
    if (document.hasCurrent()) {
        state.insert(document.current() + 1, QLatin1Char(']'));
        state.insert(document.current(), QLatin1Char('['));
    }
    return state;
}

bool isWorkingTheCurrent(ShapeDocument& document)
{
    if (!document.hasCurrent())
        return document.working().list->segs.isEmpty();
    ShapeItem const& item = document.at(document.current());
    return haveSameContent(itemOf(document.working()), item)
        && document.working().origin == item.origin;
}

} // namespace

class TestShapeDocument : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isEmptyAtFirst();
    void resetsWithoutSteps();
    void appendsWithoutSteps();
    void makesAStepOfAnEdit();
    void makesNoStepOfNothing();
    void revertsAnEdit();
    void dropsAnEditWithTheCurrentOne();
    void insertsRemovesAndMoves_data();
    void insertsRemovesAndMoves();
    void ignoresWhatIsOutOfRange();
    void replacesSeveralInOneStep();
    void keepsTheCurrentOneThatIsReplaced();
    void showsWhatIsUndone();
    void restoresOriginsWhenUndone();
    void keepsOutlinesToTheBit();
    void agreesWithSnapshots();
};

void TestShapeDocument::isEmptyAtFirst()
{
    ShapeDocument document;
    QCOMPARE(document.count(), 0);
    QCOMPARE(document.current(), -1);
    QVERIFY(document.working().list);
    QVERIFY(!document.commit("Nothing"));
    document.revert();
    document.touch();
    QCOMPARE(document.undoStack().count(), 0);
}

void TestShapeDocument::resetsWithoutSteps()
{
    ShapeDocument document;
    document.insert(0, itemsNamed("xy"), "Insert");
    QSignalSpy const replaced(&document, &ShapeDocument::itemsReplaced);
    document.reset(itemsNamed("abc"));
    QCOMPARE(stateOf(document), QString("[a]bc"));
    QCOMPARE(document.undoStack().count(), 0);
    QCOMPARE(replaced.count(), 1);
    QCOMPARE(replaced.at(0), QVariantList({0, 2, 3}));
    document.reset({});
    QCOMPARE(document.current(), -1);
    QVERIFY(document.working().list->segs.isEmpty());
}

void TestShapeDocument::appendsWithoutSteps()
{
    ShapeDocument document;
    document.append({});
    QCOMPARE(document.current(), -1);
    document.append(itemsNamed("ab"));
    QCOMPARE(stateOf(document), QString("[a]b"));
    QVERIFY(isWorkingTheCurrent(document));
    document.setCurrent(1);
    document.append(itemsNamed("c"));
    QCOMPARE(stateOf(document), QString("a[b]c"));
    QCOMPARE(document.undoStack().count(), 0);
}

void TestShapeDocument::makesAStepOfAnEdit()
{
    ShapeDocument document;
    document.reset(itemsNamed("ab"));
    QSignalSpy const replaced(&document, &ShapeDocument::itemsReplaced);
    document.working().list->segs[1]->pt.x.value = 77.0;
    document.touch();
    QCOMPARE(document.undoStack().count(), 0);
    KpPathSegList const* const kept = document.working().list.get();
    QVERIFY(document.commit("Move point"));
    QCOMPARE(document.working().list.get(), kept);
    QCOMPARE(document.undoStack().undoText(), QString("Move point"));
    QCOMPARE(replaced.count(), 1);
    QCOMPARE(replaced.at(0), QVariantList({0, 1, 1}));
    QCOMPARE(textOf(*outlineOf(document.at(0).outline)), QString("M 0 0 L 77 0 L 10 10"));
    document.undoStack().undo();
    QCOMPARE(textOf(*document.working().list), QString("M 0 0 L 10 0 L 10 10"));
    document.undoStack().redo();
    QCOMPARE(textOf(*document.working().list), QString("M 0 0 L 77 0 L 10 10"));
}

void TestShapeDocument::makesNoStepOfNothing()
{
    ShapeDocument document;
    document.reset(itemsNamed("ab"));
    QVERIFY(!document.commit("Nothing"));
    document.working().list->segs[1]->pt.x.value = 77.0;
    document.working().list->segs[1]->pt.x.value = 10.0;
    QVERIFY(!document.commit("Nothing"));
    document.replace({{1, itemNamed("b", 5)}}, "Nothing");
    document.replace({}, "Nothing");
    document.move(1, 1, "Nothing");
    document.insert(1, {}, "Nothing");
    QCOMPARE(document.undoStack().count(), 0);
    // A zero of another sign is something.
    document.working().list->segs[1]->pt.y.value = -0.0;
    QVERIFY(document.commit("Sign"));
}

void TestShapeDocument::revertsAnEdit()
{
    ShapeDocument document;
    document.reset(itemsNamed("ab"));
    document.working().name = "z";
    document.working().list->removeAll(true);
    document.revert();
    QVERIFY(isWorkingTheCurrent(document));
    QVERIFY(!document.commit("Nothing"));
}

void TestShapeDocument::dropsAnEditWithTheCurrentOne()
{
    ShapeDocument document;
    document.reset(itemsNamed("ab"));
    document.working().name = "z";
    document.setCurrent(1);
    QCOMPARE(document.working().name, QString("b"));
    document.setCurrent(0);
    QCOMPARE(document.working().name, QString("a"));
}

void TestShapeDocument::insertsRemovesAndMoves_data()
{
    QTest::addColumn<QString>("action");
    QTest::addColumn<QString>("after");
    QTest::addColumn<QString>("undone");
    QTest::newRow("insert in front") << "i0"
                                     << "[x]yabcd"
                                     << "[a]bcd";
    QTest::newRow("insert within") << "i2"
                                   << "ab[x]ycd"
                                   << "ab[c]d";
    QTest::newRow("insert at the end") << "i4"
                                       << "abcd[x]y"
                                       << "abc[d]";
    QTest::newRow("remove the first") << "r0"
                                      << "[c]d"
                                      << "[a]bcd";
    QTest::newRow("remove the last") << "r2"
                                     << "a[b]"
                                     << "ab[c]d";
    QTest::newRow("move down") << "m03"
                               << "bcd[a]"
                               << "[a]bcd";
    QTest::newRow("move up") << "m31"
                             << "a[d]bc"
                             << "abc[d]";
    QTest::newRow("swap") << "m12"
                          << "ac[b]d"
                          << "a[b]cd";
}

void TestShapeDocument::insertsRemovesAndMoves()
{
    QFETCH(QString, action);
    QFETCH(QString, after);
    QFETCH(QString, undone);
    ShapeDocument document;
    document.reset(itemsNamed("abcd"));
    int const first = action.mid(1, 1).toInt();
    if (action.startsWith('i'))
        document.insert(first, itemsNamed("xy"), "Step");
    else if (action.startsWith('r'))
        document.remove(first, 2, "Step");
    else
        document.move(first, action.mid(2).toInt(), "Step");
    QCOMPARE(stateOf(document), after);
    QVERIFY(isWorkingTheCurrent(document));
    QCOMPARE(document.undoStack().count(), 1);
    QCOMPARE(document.undoStack().undoText(), QString("Step"));
    document.undoStack().undo();
    QCOMPARE(stateOf(document), undone);
    QVERIFY(isWorkingTheCurrent(document));
    document.undoStack().redo();
    QCOMPARE(stateOf(document), after);
}

void TestShapeDocument::ignoresWhatIsOutOfRange()
{
    ShapeDocument document;
    document.reset(itemsNamed("abc"));
    int const huge = std::numeric_limits<int>::max();
    document.insert(-1, itemsNamed("x"), "Step");
    document.insert(4, itemsNamed("x"), "Step");
    document.remove(-1, 1, "Step");
    document.remove(2, 2, "Step");
    document.remove(1, huge, "Step");
    document.remove(huge, huge, "Step");
    document.remove(0, 0, "Step");
    document.move(0, 3, "Step");
    document.move(-1, 0, "Step");
    document.replace({{3, itemNamed("x")}, {-1, itemNamed("x")}}, "Step");
    document.setCurrent(3);
    document.setCurrent(-1);
    QCOMPARE(stateOf(document), QString("[a]bc"));
    QCOMPARE(document.undoStack().count(), 0);
}

void TestShapeDocument::replacesSeveralInOneStep()
{
    ShapeDocument document;
    document.reset(itemsNamed("abcd"));
    QSignalSpy const current(&document, &ShapeDocument::currentChanged);
    document.replace({{1, itemNamed("x")}, {2, document.items()[2]}, {3, itemNamed("y")}}, "Step");
    QCOMPARE(stateOf(document), QString("a[x]cy"));
    QCOMPARE(current.count(), 1);
    QCOMPARE(document.undoStack().count(), 1);
    document.undoStack().undo();
    QCOMPARE(namesOf(document), QString("abcd"));
}

void TestShapeDocument::keepsTheCurrentOneThatIsReplaced()
{
    ShapeDocument document;
    document.reset(itemsNamed("abcd"));
    document.setCurrent(2);
    document.replace({{3, itemNamed("x")}, {2, itemNamed("y")}, {0, itemNamed("z")}}, "Step");
    QCOMPARE(stateOf(document), QString("zb[y]x"));
    document.undoStack().undo();
    QCOMPARE(stateOf(document), QString("ab[c]d"));
    QVERIFY(isWorkingTheCurrent(document));
}

void TestShapeDocument::showsWhatIsUndone()
{
    ShapeDocument document;
    document.reset(itemsNamed("abcd"));
    document.working().name = "z";
    document.commit("Rename");
    document.setCurrent(3);
    document.undoStack().undo();
    QCOMPARE(stateOf(document), QString("[a]bcd"));
    document.setCurrent(2);
    document.undoStack().redo();
    QCOMPARE(stateOf(document), QString("[z]bcd"));
    QVERIFY(isWorkingTheCurrent(document));
}

void TestShapeDocument::restoresOriginsWhenUndone()
{
    ShapeDocument document;
    Items const items = itemsNamed("abc");
    document.reset(items);
    document.setCurrent(1);
    document.working().name = "z";
    document.commit("Rename");
    QCOMPARE(document.at(1).origin, 1);
    document.move(1, 0, "Move");
    document.remove(0, 2, "Remove");
    document.insert(1, itemsNamed("xy"), "Insert");
    while (document.undoStack().canUndo())
        document.undoStack().undo();
    QCOMPARE(document.items(), items); // the very same
    QCOMPARE(document.working().origin, 1);
}

void TestShapeDocument::keepsOutlinesToTheBit()
{
    QRandomGenerator random = Testing::seededRandom(1);
    ShapeDocument document;
    document.reset(itemsNamed("a"));
    QVector<OutlineRecord> records {document.at(0).outline};
    for (int i = 0; i < 100; ++i) {
        document.working().list->removeAll(true);
        fillRandomly(*document.working().list, 10, random);
        document.commit("Draw");
        records << document.at(0).outline;
        QCOMPARE(document.undoStack().count(), i + 1);
    }
    for (int i = 99; i >= 0; --i) {
        document.undoStack().undo();
        QVERIFY(recordOf(*document.working().list) == records.at(i));
    }
}

void TestShapeDocument::agreesWithSnapshots()
{
    QRandomGenerator random = Testing::seededRandom(2);
    ShapeDocument document;
    document.reset(itemsNamed("abcde"));
    std::vector<Items> snapshots {document.items()};
    std::size_t at = 0;
    for (int i = 0; i < 20000; ++i) {
        int const count = document.count();
        int const first = random.bounded(count + 1);
        int const steps = document.undoStack().index();
        Items expected = document.items();
        switch (random.bounded(8)) {
        case 0: {
            Items const added = itemsNamed(count < 20 ? "xyz" : "");
            document.insert(first, added, "Insert");
            expected.insert(expected.begin() + first, added.begin(), added.end());
            break;
        }
        case 1: {
            int const removed = random.bounded(4);
            document.remove(first, removed, "Remove");
            if (first + removed <= count)
                expected.erase(expected.begin() + first, expected.begin() + first + removed);
            break;
        }
        case 2: {
            int const to = random.bounded(count + 1);
            document.move(first, to, "Move");
            if (first < count && to < count) {
                ItemPointer const moved = expected[std::size_t(first)];
                expected.erase(expected.begin() + first);
                expected.insert(expected.begin() + to, moved);
            }
            break;
        }
        case 3: {
            ItemPointer const other = itemNamed(QString::number(i));
            document.replace({{first, other}}, "Replace");
            if (first < count)
                expected[std::size_t(first)] = other;
            break;
        }
        case 4:
            document.working().name = QString::number(-i);
            document.commit("Rename");
            if (count > 0) {
                QCOMPARE(document.at(document.current()).name, QString::number(-i));
                expected[std::size_t(document.current())] =
                    document.items()[std::size_t(document.current())];
            }
            break;
        case 5:
            document.setCurrent(first);
            break;
        case 6:
            document.undoStack().undo();
            at -= steps > 0 ? 1 : 0;
            expected = snapshots[at];
            break;
        default:
            at += document.undoStack().canRedo() ? 1 : 0;
            document.undoStack().redo();
            expected = snapshots[at];
            break;
        }
        QCOMPARE(document.items(), expected);
        if (document.undoStack().index() > steps && snapshots[at] != expected) {
            snapshots.resize(++at);
            snapshots.push_back(expected);
        }
        QCOMPARE(document.undoStack().index(), int(at));
        QVERIFY(isWorkingTheCurrent(document));
        QCOMPARE(document.hasCurrent(), document.count() > 0);
        QVERIFY(document.current() < document.count());
    }
    QVERIFY(document.undoStack().count() > 10);
    while (document.undoStack().canUndo())
        document.undoStack().undo();
    QCOMPARE(document.items(), snapshots.front());
}

QTEST_GUILESS_MAIN(TestShapeDocument)
#include "tst_kpshapes_document.moc"
