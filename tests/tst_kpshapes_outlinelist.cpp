// SPDX-License-Identifier: MIT
#include "panels/outlinelist.h"
#include "panels/outlinemodel.h"
#include "panels/outlineview.h"
#include "panelstesting.h"

#include <QAbstractItemModelTester>
#include <QAction>
#include <QLineEdit>
#include <QMimeData>

using namespace PanelsTesting;

class TestKpshapesOutlineList : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_list.reset(); }

    void rowsAreTheOutlines();
    void rowsFollowStepsPrecisely_data();
    void rowsFollowStepsPrecisely();
    void theCurrentRowIsTheCurrentOutline();
    void keysMoveTheCurrentRow();
    void f2RenamesAnOutline();
    void aDoubleClickRenamesAnOutline();
    void oddNamesStayUnlessTheyAreTypedAnew_data();
    void oddNamesStayUnlessTheyAreTypedAnew();
    void keysWithinANameDoNothingElse();
    void anUnchangedNameIsNoStep();
    void keysMoveAnOutline();
    void dragMovesAnOutline_data();
    void dragMovesAnOutline();
    void foreignRowsAreNotTaken();
    void deleteRemovesTheSelected_data();
    void deleteRemovesTheSelected();
    void theLastOutlineCanBeRemoved();
    void insertAddsAnEmptyOutline();
    void duplicatesStandBehind();
    void actionsAreThereForAMenu();
    void thumbnailsAreMadeOnceForWhatIsShown();
    void thumbnailsAreKeptWithinBounds();
    void sevenThousandOutlinesAreShownAtOnce();
    void strangeNamesStayOnTheirLine();

private:
    void showList();
    QStringList names() const;
    QStringList shownNames() const;
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    QPoint middleOf(int row) const;
    QString undoText() const { return m_document->undoStack().undoText(); }

    std::unique_ptr<ShapeDocument> m_document;
    std::unique_ptr<OutlineList> m_list;
    OutlineView* m_view = nullptr;
    OutlineModel* m_model = nullptr;
};

void TestKpshapesOutlineList::init()
{
    m_document = std::make_unique<ShapeDocument>();
    m_document->reset({item("a"), item("b", {100, 200}), item("c"), item("d"), item("e")});
    m_list = std::make_unique<OutlineList>(*m_document, nullptr);
    m_view = m_list->findChild<OutlineView*>();
    m_model = m_list->findChild<OutlineModel*>();
    m_list->resize(260, 330);
    new QAbstractItemModelTester(
        m_model, QAbstractItemModelTester::FailureReportingMode::QtTest, m_list.get());
}

void TestKpshapesOutlineList::showList()
{
    QVERIFY(showAndPicture(*m_list, QStringLiteral("outlinelist")));
    m_list->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_list.get()));
    m_view->setFocus();
}

QStringList TestKpshapesOutlineList::names() const
{
    QStringList names;
    for (ItemPointer const& item : m_document->items())
        names << item->name;
    return names;
}

QStringList TestKpshapesOutlineList::shownNames() const
{
    QStringList names;
    for (int row = 0; row < m_model->rowCount(); ++row)
        names << m_model->index(row).data().toString();
    return names;
}

void TestKpshapesOutlineList::press(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
}

QPoint TestKpshapesOutlineList::middleOf(int row) const
{
    return m_view->visualRect(m_model->index(row)).center();
}

void TestKpshapesOutlineList::rowsAreTheOutlines()
{
    showList();
    QCOMPARE(shownNames(), QStringList({"a", "b", "c", "d", "e"}));
    QCOMPARE(m_model->detailsOf(1), QString::fromUtf8("4 segments, 100 \303\227 200"));
    QCOMPARE(m_model->index(1).data(Qt::AccessibleTextRole).toString(),
        QString::fromUtf8("b, outline 2 of 5, 4 segments, 100 \303\227 200"));
    QCOMPARE(m_list->selectedRows(), QVector<int>({0}));
    m_document->reset({item(""), item("")});
    QCOMPARE(shownNames(), QStringList({"Outline 1", "Outline 2"}));
    QCOMPARE(m_model->index(1).data(Qt::EditRole).toString(), QString());
}

void TestKpshapesOutlineList::rowsFollowStepsPrecisely_data()
{
    QTest::addColumn<int>("step");
    QTest::addColumn<QStringList>("signals_");

    QTest::newRow("insert") << 0
                            << QStringList {"insert 2 3", "change 2 6", "remove 2 3", "change 2 4"};
    QTest::newRow("remove") << 1
                            << QStringList {"remove 1 2", "change 1 2", "insert 1 2", "change 1 4"};
    QTest::newRow("move") << 2 << QStringList {"change 1 3", "change 1 3"};
    QTest::newRow("replace") << 3 << QStringList {"change 4 4", "change 4 4"};
}

void TestKpshapesOutlineList::rowsFollowStepsPrecisely()
{
    QFETCH(int, step);
    QStringList seen;
    auto const note = [&seen](QString const& what, int first, int last) {
        seen << QStringLiteral("%1 %2 %3").arg(what).arg(first).arg(last);
    };
    connect(m_model, &OutlineModel::rowsInserted, this,
        [&](QModelIndex const&, int first, int last) { note("insert", first, last); });
    connect(m_model, &OutlineModel::rowsRemoved, this,
        [&](QModelIndex const&, int first, int last) { note("remove", first, last); });
    connect(m_model, &OutlineModel::dataChanged, this,
        [&](QModelIndex const& first, QModelIndex const& last) {
            note("change", first.row(), last.row());
        });
    connect(m_model, &OutlineModel::modelReset, this, [&] { note("reset", 0, 0); });
    if (step == 0)
        m_document->insert(2, {item("x"), item("y")}, "step");
    else if (step == 1)
        m_document->remove(1, 2, "step");
    else if (step == 2)
        m_document->move(1, 3, "step");
    else
        m_document->replace({{4, item("z")}}, "step");
    QStringList const done = shownNames();
    m_document->undoStack().undo();
    QCOMPARE(shownNames(), QStringList({"a", "b", "c", "d", "e"}));
    QTEST(seen, "signals_");
    m_document->undoStack().redo();
    QCOMPARE(shownNames(), done);
}

void TestKpshapesOutlineList::theCurrentRowIsTheCurrentOutline()
{
    showList();
    QTest::mouseClick(m_view->viewport(), Qt::LeftButton, Qt::NoModifier, middleOf(2));
    QCOMPARE(m_document->current(), 2);
    m_document->setCurrent(4);
    QCOMPARE(m_view->currentIndex().row(), 4);
    QCOMPARE(m_list->selectedRows(), QVector<int>({4}));
    m_document->remove(0, 2, "Remove 2 outlines");
    QCOMPARE(m_document->current(), 0);
    QCOMPARE(m_view->currentIndex().row(), 0);
    m_document->undoStack().undo();
    QCOMPARE(m_view->currentIndex().row(), m_document->current());
    m_document->reset({item("x"), item("y")});
    QCOMPARE(m_view->currentIndex().row(), 0);
    QCOMPARE(m_list->selectedRows(), QVector<int>({0}));
}

void TestKpshapesOutlineList::keysMoveTheCurrentRow()
{
    showList();
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    QCOMPARE(m_document->current(), 2);
    press(Qt::Key_End);
    QCOMPARE(m_document->current(), 4);
    press(Qt::Key_Up, Qt::ShiftModifier);
    QCOMPARE(m_document->current(), 3);
    QCOMPARE(m_list->selectedRows(), QVector<int>({3, 4}));
}

void TestKpshapesOutlineList::f2RenamesAnOutline()
{
    showList();
    press(Qt::Key_Down);
    press(Qt::Key_F2);
    auto* const editor = m_view->viewport()->findChild<QLineEdit*>();
    QVERIFY(editor);
    QCOMPARE(editor->text(), QStringLiteral("b"));
    QTest::keyClicks(editor, "plate");
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_COMPARE(m_document->at(1).name, QStringLiteral("plate"));
    QCOMPARE(names(), QStringList({"a", "plate", "c", "d", "e"}));
    QCOMPARE(undoText(), QStringLiteral("Rename outline"));
    QCOMPARE(m_document->working().name, QStringLiteral("plate"));
}

void TestKpshapesOutlineList::aDoubleClickRenamesAnOutline()
{
    showList();
    QTest::mouseClick(m_view->viewport(), Qt::LeftButton, Qt::NoModifier, middleOf(3));
    QTest::mouseDClick(m_view->viewport(), Qt::LeftButton, Qt::NoModifier, middleOf(3));
    auto* const editor = m_view->viewport()->findChild<QLineEdit*>();
    QVERIFY(editor);
    QCOMPARE(editor->text(), QStringLiteral("d"));
    QTest::keyClicks(editor, "x");
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_COMPARE(m_document->at(3).name, QStringLiteral("x"));
}

void TestKpshapesOutlineList::oddNamesStayUnlessTheyAreTypedAnew_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("long") << QString(40000, 'n');
    QTest::newRow("of lines") << QString("a\nb\tc");
    QTest::newRow("empty") << QString();
}

void TestKpshapesOutlineList::oddNamesStayUnlessTheyAreTypedAnew()
{
    QFETCH(QString, name);
    showList();
    m_document->working().name = name;
    m_document->commit("Name");
    int const steps = m_document->undoStack().index();
    for (QString const& typed : {QString(), QString("x")}) {
        press(Qt::Key_F2);
        auto* const editor = m_view->viewport()->findChild<QLineEdit*>();
        QVERIFY(editor);
        QTest::keyClick(editor, Qt::Key_End);
        QTest::keyClicks(editor, typed);
        QTest::keyClick(editor, Qt::Key_Return);
        QTRY_VERIFY(!m_view->viewport()->findChild<QLineEdit*>());
        QCOMPARE(m_document->undoStack().index(), steps + typed.size());
        QVERIFY(m_document->at(0).name == name + typed);
    }
}

void TestKpshapesOutlineList::keysWithinANameDoNothingElse()
{
    showList();
    press(Qt::Key_F2);
    auto* const editor = m_view->viewport()->findChild<QLineEdit*>();
    QVERIFY(editor);
    QTest::keyClick(editor, Qt::Key_Delete);
    QTest::keyClick(editor, Qt::Key_Insert);
    QTest::keyClick(editor, Qt::Key_Down, Qt::AltModifier);
    QTest::keyClick(editor, Qt::Key_Escape);
    QCOMPARE(m_document->undoStack().count(), 0);
    QCOMPARE(m_document->count(), 5);
}

void TestKpshapesOutlineList::anUnchangedNameIsNoStep()
{
    QVERIFY(m_model->setData(m_model->index(0), "a", Qt::EditRole));
    QCOMPARE(m_document->undoStack().count(), 0);
}

void TestKpshapesOutlineList::keysMoveAnOutline()
{
    showList();
    press(Qt::Key_Up, Qt::AltModifier);
    QCOMPARE(m_document->undoStack().count(), 0);
    press(Qt::Key_Down, Qt::AltModifier);
    press(Qt::Key_Down, Qt::AltModifier);
    QCOMPARE(names(), QStringList({"b", "c", "a", "d", "e"}));
    QCOMPARE(undoText(), QStringLiteral("Move outline"));
    QCOMPARE(m_document->undoStack().count(), 2);
    QCOMPARE(m_list->selectedRows(), QVector<int>({2}));
    press(Qt::Key_Up, Qt::AltModifier);
    QCOMPARE(names(), QStringList({"b", "a", "c", "d", "e"}));
    QCOMPARE(m_document->current(), 1);
}

void TestKpshapesOutlineList::dragMovesAnOutline_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("offset");
    QTest::addColumn<QStringList>("order");

    QTest::newRow("down, above a row") << 0 << 2 << -10 << QStringList {"b", "a", "c", "d", "e"};
    QTest::newRow("down, below a row") << 0 << 2 << 10 << QStringList {"b", "c", "a", "d", "e"};
    QTest::newRow("up, above a row") << 4 << 1 << -10 << QStringList {"a", "e", "b", "c", "d"};
    QTest::newRow("to the end") << 1 << 4 << 45 << QStringList {"a", "c", "d", "e", "b"};
    QTest::newRow("where it is") << 2 << 2 << 10 << QStringList {"a", "b", "c", "d", "e"};
}

void TestKpshapesOutlineList::dragMovesAnOutline()
{
    QFETCH(int, from);
    QFETCH(int, row);
    QFETCH(int, offset);
    QFETCH(QStringList, order);
    showList();
    std::unique_ptr<QMimeData> const data(m_model->mimeData({m_model->index(from)}));
    QPoint const to = middleOf(row) + QPoint(0, offset);
    QDragEnterEvent enter(to, Qt::MoveAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(m_view->viewport(), &enter);
    QVERIFY(enter.isAccepted());
    QDragMoveEvent move(to, Qt::MoveAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(m_view->viewport(), &move);
    QVERIFY(move.isAccepted());
    QDropEvent drop(to, Qt::MoveAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(m_view->viewport(), &drop);
    QVERIFY(drop.isAccepted());
    QCOMPARE(names(), order);
    bool const isMoved = order != QStringList({"a", "b", "c", "d", "e"});
    QCOMPARE(m_document->undoStack().count(), isMoved ? 1 : 0);
    QCOMPARE(undoText(), isMoved ? QStringLiteral("Move outline") : QString());
}

void TestKpshapesOutlineList::foreignRowsAreNotTaken()
{
    OutlineModel other(*m_document, nullptr);
    std::unique_ptr<QMimeData> const foreign(other.mimeData({other.index(1)}));
    QVERIFY(!m_model->canDropMimeData(foreign.get(), Qt::MoveAction, 0, 0, QModelIndex()));
    QVERIFY(!m_model->dropMimeData(foreign.get(), Qt::MoveAction, 0, 0, QModelIndex()));
    QMimeData text;
    text.setText("0");
    QVERIFY(!m_model->dropMimeData(&text, Qt::MoveAction, 0, 0, QModelIndex()));
    std::unique_ptr<QMimeData> const own(m_model->mimeData({m_model->index(4)}));
    m_document->remove(1, 4, "Remove 4 outlines");
    QVERIFY(!m_model->dropMimeData(own.get(), Qt::MoveAction, 0, 0, QModelIndex()));
    QCOMPARE(m_document->undoStack().count(), 1);
}

void TestKpshapesOutlineList::deleteRemovesTheSelected_data()
{
    QTest::addColumn<QVector<int>>("rows");
    QTest::addColumn<QStringList>("left");
    QTest::addColumn<QString>("text");

    QTest::newRow("one") << QVector<int> {1} << QStringList {"a", "c", "d", "e"}
                         << "Remove outline";
    QTest::newRow("neighbours") << QVector<int> {1, 2, 3} << QStringList {"a", "e"}
                                << "Remove 3 outlines";
    QTest::newRow("apart") << QVector<int> {0, 2, 4} << QStringList {"b", "d"}
                           << "Remove 3 outlines";
    QTest::newRow("both") << QVector<int> {0, 3, 4} << QStringList {"b", "c"}
                          << "Remove 3 outlines";
}

void TestKpshapesOutlineList::deleteRemovesTheSelected()
{
    QFETCH(QVector<int>, rows);
    showList();
    QTest::mouseClick(
        m_view->viewport(), Qt::LeftButton, Qt::NoModifier, middleOf(rows.takeFirst()));
    for (int const row : rows)
        QTest::mouseClick(m_view->viewport(), Qt::LeftButton, Qt::ControlModifier, middleOf(row));
    press(Qt::Key_Delete);
    QTEST(names(), "left");
    QTEST(undoText(), "text");
    QCOMPARE(m_document->undoStack().count(), 1);
    QCOMPARE(m_list->selectedRows(), QVector<int>({m_document->current()}));
    m_document->undoStack().undo();
    QCOMPARE(names(), QStringList({"a", "b", "c", "d", "e"}));
}

void TestKpshapesOutlineList::theLastOutlineCanBeRemoved()
{
    showList();
    press(Qt::Key_A, Qt::ControlModifier);
    press(Qt::Key_Delete);
    QCOMPARE(m_document->count(), 0);
    QCOMPARE(undoText(), QStringLiteral("Remove 5 outlines"));
    press(Qt::Key_Delete);
    QCOMPARE(m_document->undoStack().count(), 1);
    QVERIFY(!m_list->actions().constLast()->isEnabled());
    QVERIFY(showAndPicture(*m_list, QStringLiteral("outlinelist-empty")));
    m_view->setFocus();
    press(Qt::Key_Insert);
    QCOMPARE(m_document->count(), 1);
    QCOMPARE(m_document->at(0).box, QSizeF(100.0, 100.0));
}

void TestKpshapesOutlineList::insertAddsAnEmptyOutline()
{
    showList();
    press(Qt::Key_Down);
    press(Qt::Key_Insert);
    QCOMPARE(names(), QStringList({"a", "b", "", "c", "d", "e"}));
    QCOMPARE(undoText(), QStringLiteral("New outline"));
    QCOMPARE(m_document->current(), 2);
    QCOMPARE(m_document->at(2).box, QSizeF(100.0, 200.0));
    QCOMPARE(m_document->at(2).outline.segmentCount, 0);
    QCOMPARE(m_list->selectedRows(), QVector<int>({2}));
}

void TestKpshapesOutlineList::duplicatesStandBehind()
{
    showList();
    press(Qt::Key_Down, Qt::ShiftModifier);
    press(Qt::Key_D, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(names(), QStringList({"a", "b", "a copy", "b copy", "c", "d", "e"}));
    QCOMPARE(undoText(), QStringLiteral("Duplicate 2 outlines"));
    QCOMPARE(m_document->at(3).box, QSizeF(100.0, 200.0));
    QVERIFY(m_document->at(3).outline == m_document->at(1).outline);
    QCOMPARE(m_list->selectedRows(), QVector<int>({2, 3}));
}

void TestKpshapesOutlineList::actionsAreThereForAMenu()
{
    QStringList texts;
    for (QAction const* const action : m_list->actions())
        texts << (action->isSeparator() ? "-" : action->text());
    QCOMPARE(texts,
        QStringList(
            {"&New Outline", "&Duplicate Outline", QString::fromUtf8("&Rename Outline\u2026"),
                "Move Outline &Up", "Move Outline Do&wn", "-", "R&emove Outline"}));
    QVERIFY(!m_list->actions().at(3)->isEnabled());
    m_list->actions().at(4)->trigger();
    QCOMPARE(names(), QStringList({"b", "a", "c", "d", "e"}));
    QVERIFY(m_list->actions().at(3)->isEnabled());
}

void TestKpshapesOutlineList::thumbnailsAreMadeOnceForWhatIsShown()
{
    showList();
    QTRY_COMPARE(m_model->thumbnailCount(), 5);
    QImage const before = m_model->thumbnailOf(0, 2.0);
    QCOMPARE(before.size(), QSize(80, 80));
    QCOMPARE(m_model->thumbnailOf(0, 2.0).cacheKey(), before.cacheKey());
    m_document->replace({{0, item("a", {30, 240})}}, "step");
    QVERIFY(m_model->thumbnailOf(0, 2.0) != before);
    m_document->undoStack().undo();
    QCOMPARE(m_model->thumbnailOf(0, 2.0), before);
}

void TestKpshapesOutlineList::thumbnailsAreKeptWithinBounds()
{
    Items many;
    for (int i = 0; i < 501; ++i)
        many.push_back(item("a", {30.0 + i, 240}));
    m_document->reset(many);
    for (int row = 0; row < 500; ++row)
        m_model->thumbnailOf(row, 1.0);
    QCOMPARE(m_model->thumbnailCount(), 500);
    m_model->thumbnailOf(500, 1.0);
    QCOMPARE(m_model->thumbnailCount(), 500);
}

void TestKpshapesOutlineList::sevenThousandOutlinesAreShownAtOnce()
{
    Items many;
    for (int i = 0; i < 7000; ++i)
        many.push_back(item(QStringLiteral("outline %1").arg(i), {100.0 + i, 300.0}));
    showList();
    QElapsedTimer clock;
    clock.start();
    m_document->reset(many);
    m_list->repaint();
    qint64 const shown = clock.restart();
    QVERIFY2(m_model->thumbnailCount() < 20, QByteArray::number(m_model->thumbnailCount()));
    press(Qt::Key_End);
    m_list->repaint();
    qint64 const scrolled = clock.restart();
    QCOMPARE(m_document->current(), 6999);
    for (int row = 0; row < 7000; row += 5)
        m_model->thumbnailOf(row, 1.0);
    QCOMPARE(m_model->thumbnailCount(), 500);
    clock.restart();
    press(Qt::Key_A, Qt::ControlModifier);
    press(Qt::Key_Delete);
    qInfo("shown in %lld ms, end in %lld ms, removed in %lld ms", shown, scrolled, clock.elapsed());
    QCOMPARE(m_document->count(), 0);
    QVERIFY(shown < 500);
    QVERIFY(scrolled < 500);
}

void TestKpshapesOutlineList::strangeNamesStayOnTheirLine()
{
    m_document->reset({item("two\nlines"), item(QString(100000, 'x'))});
    QCOMPARE(shownNames().at(0), QString::fromUtf8("two\uFFFDlines"));
    QCOMPARE(shownNames().at(1).size(), 200);
    showList();
}

KPSHAPES_TEST_MAIN(TestKpshapesOutlineList)
#include "tst_kpshapes_outlinelist.moc"
