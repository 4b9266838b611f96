// SPDX-License-Identifier: MIT
#include "panels/fitdialog.h"
#include "panels/fitfindings.h"
#include "panels/pictureview.h"
#include "panelstesting.h"

#include "kppathsegcurveto.h"
#include "kppathsegellipse.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QListWidget>
#include <QMimeData>
#include <QPushButton>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QThreadPool>

using namespace PanelsTesting;

class TestKpshapesFitDialog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_folder.isValid()); }
    void init();
    void cleanup() { m_dialog.reset(); }

    void learnsRulesOfTwoDrawings();
    void oneDrawingIsNotEnough();
    void whatIsUndecidedIsListedWithWhatWouldDecide();
    void whatNoRuleExpressesIsListedFirst();
    void anActivatedLineIsJumpedTo();
    void lettersNameHandles_data();
    void lettersNameHandles();
    void aBoxCanBeEntered();
    void whatIsNoBoxIsTakenBack();
    void boxesBehindFileNamesAreTaken();
    void droppedFilesAreAdded();
    void deleteRemovesADrawing();
    void faultsAreShown_data();
    void faultsAreShown();
    void ellipsesCanBeLeftAsCurves();
    void learningCanBeStoppedAndStartedAgain();
    void closingWhileItLearnsDoesNotWait();
    void insertAcceptsTheDialog();
    void manyDrawingsAreBounded_data();
    void manyDrawingsAreBounded();
    void manyFindingsAreBounded_data();
    void manyFindingsAreBounded();
    void longFindingsAreCut_data();
    void longFindingsAreCut();

private:
    void showDialog();
    void add(QStringList const& files);
    void addAndLearn(QStringList const& files);
    QString write(QString const& name, QByteArray const& content);
    QString picture(QString const& name, QByteArray const& box, QByteArray const& content);
    QStringList lines() const;
    QPushButton* button(QString const& text) const;
    QTableWidget* table() const { return m_dialog->findChild<QTableWidget*>(); }
    QListWidget* list() const { return m_dialog->findChild<QListWidget*>(); }
    KpPathSegList& learnt(int index)
    {
        m_learnt = outlineOf(m_dialog->items().at(static_cast<std::size_t>(index))->outline);
        return *m_learnt;
    }

    QTemporaryDir m_folder;
    QString m_wide;
    QString m_tall;
    std::unique_ptr<KpPathSegList> m_learnt;
    std::unique_ptr<FitDialog> m_dialog;
};

void TestKpshapesFitDialog::init()
{
    // A triangle whose right corner stays 10 from the right edge.
    m_wide = picture("wide.svg", "400 200", "<polygon points='0,0 390,0 200,200'/>");
    m_tall = picture("tall.svg", "150 300", "<polygon points='0,0 140,0 75,300'/>");
    m_dialog = std::make_unique<FitDialog>();
}

QString TestKpshapesFitDialog::write(QString const& name, QByteArray const& content)
{
    QString const path = m_folder.filePath(name);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        return QString();
    return path;
}

QString TestKpshapesFitDialog::picture(
    QString const& name, QByteArray const& box, QByteArray const& content)
{
    return write(name,
        "<svg xmlns='http://www.w3.org/2000/svg' stroke='black' fill='none' viewBox='0 0 " + box
            + "'>" + content + "</svg>");
}

void TestKpshapesFitDialog::showDialog()
{
    QVERIFY(showAndPicture(*m_dialog, QStringLiteral("fitdialog")));
    m_dialog->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_dialog.get()));
}

void TestKpshapesFitDialog::add(QStringList const& files)
{
    m_dialog->addFiles(files);
}

void TestKpshapesFitDialog::addAndLearn(QStringList const& files)
{
    QSignalSpy learnt(m_dialog.get(), &FitDialog::learnt);
    add(files);
    QTRY_COMPARE(learnt.count(), 1);
}

QStringList TestKpshapesFitDialog::lines() const
{
    QStringList lines;
    for (int i = 0; i < list()->count(); ++i)
        lines << list()->item(i)->text();
    return lines;
}

QPushButton* TestKpshapesFitDialog::button(QString const& text) const
{
    for (QPushButton* const button : m_dialog->findChildren<QPushButton*>()) {
        if (button->text() == text)
            return button;
    }
    return nullptr;
}

void TestKpshapesFitDialog::learnsRulesOfTwoDrawings()
{
    addAndLearn({m_wide, m_tall});
    showDialog();
    QCOMPARE(m_dialog->items().size(), 1u);
    QCOMPARE(m_dialog->items().at(0)->box, QSizeF(400.0, 200.0));
    QCOMPARE(m_dialog->items().at(0)->origin, -1);
    KpPathSegList const& list = learnt(0);
    QCOMPARE(list.segs.size(), 4);
    QVERIFY(list.closed);
    QCOMPARE(int(list.segs.at(1)->pt.x.base), 3);
    QCOMPARE(list.segs.at(1)->pt.x.rate, 10.0);
    QCOMPARE(list.segs.at(1)->pt.x.value, 390.0);
    QCOMPARE(int(list.segs.at(2)->pt.x.base), 1);
    QCOMPARE(lines(), QStringList());
    QVERIFY(m_dialog->findChild<PictureView*>()->hasPicture());
    QVERIFY(button("&Insert")->isEnabled());
    QCOMPARE(table()->item(0, 1)->text(), QString::fromUtf8("400 \303\227 200"));
    QCOMPARE(table()->item(1, 1)->text(), QString::fromUtf8("150 \303\227 300"));
}

void TestKpshapesFitDialog::oneDrawingIsNotEnough()
{
    QSignalSpy learnt(m_dialog.get(), &FitDialog::learnt);
    add({m_wide});
    QTest::qWait(400);
    QCOMPARE(learnt.count(), 0);
    QVERIFY(!button("&Insert")->isEnabled());
    QVERIFY(m_dialog->items().empty());
    add({m_tall});
    QTRY_COMPARE(learnt.count(), 1);
    QVERIFY(button("&Insert")->isEnabled());
}

void TestKpshapesFitDialog::whatIsUndecidedIsListedWithWhatWouldDecide()
{
    addAndLearn({picture("a.svg", "100 100", "<path d='M0 0L50 100'/>"),
        picture("b.svg", "200 200", "<path d='M0 0L100 200'/>")});
    showDialog();
    QVERIFY(!lines().isEmpty());
    QCOMPARE(lines().at(0),
        QString::fromUtf8(
            "Outline 1 \u201cpath 1\u201d, segment 1, X: follows width; right edge less "
            "smaller side or lower edge less smaller side would do as well"));
    QVERIFY2(lines().constLast().startsWith("A drawing of "), qPrintable(lines().constLast()));
    QCOMPARE(m_dialog->items().size(), 1u);
}

void TestKpshapesFitDialog::whatNoRuleExpressesIsListedFirst()
{
    addAndLearn({picture("a.svg", "400 200", "<path d='M0 0L137 200'/>"),
        picture("b.svg", "150 300", "<path d='M0 0L95 300'/>"),
        picture("c.svg", "300 450", "<path d='M0 0L11 450'/>")});
    QVERIFY2(lines().value(0).contains("segment 2, X: no rule expresses it; the nearest"),
        qPrintable(lines().join('\n')));
    showDialog();
}

void TestKpshapesFitDialog::anActivatedLineIsJumpedTo()
{
    addAndLearn({picture("a.svg", "100 100", "<path d='M0 0L50 100'/>"),
        picture("b.svg", "200 200", "<path d='M0 0L100 200'/>")});
    showDialog();
    QSignalSpy jumped(m_dialog.get(), &FitDialog::jumpTo);
    QVERIFY(!m_dialog->place());
    list()->setFocus();
    list()->setCurrentRow(0);
    QTest::keyClick(list(), Qt::Key_Return);
    QVERIFY(m_dialog->isVisible());
    QCOMPARE(jumped.count(), 1);
    QCOMPARE(jumped.at(0), QVariantList({0, 0, "X"}));
    QVERIFY(m_dialog->place());
    QCOMPARE(m_dialog->place()->segment, 0);
    // A proposal is about no place.
    list()->setCurrentRow(list()->count() - 1);
    QTest::keyClick(list(), Qt::Key_Return);
    QCOMPARE(jumped.count(), 1);
    QVERIFY(!m_dialog->place());
    QPoint const first = list()->visualItemRect(list()->item(0)).center();
    QTest::mouseClick(list()->viewport(), Qt::LeftButton, Qt::NoModifier, first);
    QTest::mouseDClick(list()->viewport(), Qt::LeftButton, Qt::NoModifier, first);
    QVERIFY(m_dialog->place());
    QVERIFY(m_dialog->isVisible());
}

void TestKpshapesFitDialog::lettersNameHandles_data()
{
    QTest::addColumn<int>("segment");
    QTest::addColumn<QString>("letter");
    QTest::addColumn<int>("kind");

    int row = 0;
    auto const add = [&row](int segment, char const* letter, HandleKind kind) {
        QTest::newRow(qPrintable(QStringLiteral("%1 %2").arg(row++).arg(letter)))
            << segment << QString(letter) << int(kind);
    };
    add(0, "X", HandleKind::Point);
    add(1, "Y", HandleKind::Point);
    add(1, "A", HandleKind::Control1);
    add(1, "B", HandleKind::Control1);
    add(1, "C", HandleKind::Control2);
    add(1, "D", HandleKind::Control2);
    add(2, "X", HandleKind::Point);
    add(2, "A", HandleKind::RadiusA);
    add(2, "B", HandleKind::RadiusB);
}

void TestKpshapesFitDialog::lettersNameHandles()
{
    QFETCH(int, segment);
    QFETCH(QString, letter);
    QFETCH(int, kind);
    KpPathSegList list;
    list.addTail(new KpPathSegMoveTo(QPointF(), nullptr));
    list.addTail(new KpPathSegCurveTo(QPointF(), QPointF(), QPointF(), nullptr));
    list.addTail(new KpPathSegEllipse(QPointF(), 1.0, 1.0, nullptr));
    HandleId const id = handleOfLetter(*list.segs.at(segment), segment, letter);
    QCOMPARE(id.segment, segment);
    QCOMPARE(int(id.kind), kind);
}

void TestKpshapesFitDialog::aBoxCanBeEntered()
{
    addAndLearn({m_wide, m_tall});
    showDialog();
    QSignalSpy learntAgain(m_dialog.get(), &FitDialog::learnt);
    table()->setFocus();
    table()->setCurrentCell(0, 1);
    QTest::keyClick(table(), Qt::Key_F2);
    auto* const editor = table()->viewport()->findChild<QLineEdit*>();
    QVERIFY(editor);
    editor->selectAll();
    QTest::keyClicks(editor, "390 x 200");
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_COMPARE(learntAgain.count(), 1);
    QCOMPARE(m_dialog->drawings(), QStringList({m_wide + "@390x200", m_tall}));
    QCOMPARE(m_dialog->items().at(0)->box, QSizeF(390.0, 200.0));
    QCOMPARE(table()->item(0, 1)->text(), QString::fromUtf8("390 \303\227 200"));
    table()->item(0, 1)->setText("");
    QTRY_COMPARE(learntAgain.count(), 2);
    QCOMPARE(m_dialog->drawings(), QStringList({m_wide, m_tall}));
    QCOMPARE(table()->item(0, 1)->text(), QString::fromUtf8("400 \303\227 200"));
}

void TestKpshapesFitDialog::whatIsNoBoxIsTakenBack()
{
    addAndLearn({m_wide + "@390x200", m_tall});
    QSignalSpy learntAgain(m_dialog.get(), &FitDialog::learnt);
    table()->item(0, 1)->setText("large");
    QCOMPARE(table()->item(0, 1)->text(), QString::fromUtf8("390 \303\227 200"));
    QTRY_COMPARE(learntAgain.count(), 1);
    QCOMPARE(m_dialog->drawings(), QStringList({m_wide + "@390x200", m_tall}));
}

void TestKpshapesFitDialog::boxesBehindFileNamesAreTaken()
{
    add({m_wide + "@410x200", m_tall});
    QCOMPARE(m_dialog->drawings(), QStringList({m_wide + "@410x200", m_tall}));
    QCOMPARE(table()->item(0, 0)->text(), QStringLiteral("wide.svg"));
    QString const strange = picture("strange@10x20", "400 200", "<path d='M0 0L10 10'/>");
    add({strange});
    QCOMPARE(m_dialog->drawings().at(2), strange);
}

void TestKpshapesFitDialog::droppedFilesAreAdded()
{
    showDialog();
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(m_wide), QUrl("http://localhost/far.svg"),
        QUrl::fromLocalFile(m_tall)});
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(m_dialog.get(), &enter);
    QVERIFY(enter.isAccepted());
    QSignalSpy learnt(m_dialog.get(), &FitDialog::learnt);
    QDropEvent drop(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(m_dialog.get(), &drop);
    QCOMPARE(m_dialog->drawings(), QStringList({m_wide, m_tall}));
    QTRY_COMPARE(learnt.count(), 1);
    QCOMPARE(m_dialog->items().size(), 1u);
}

void TestKpshapesFitDialog::deleteRemovesADrawing()
{
    addAndLearn({m_wide, m_tall});
    showDialog();
    table()->setFocus();
    table()->selectRow(0);
    QTest::keyClick(table(), Qt::Key_Delete);
    QCOMPARE(m_dialog->drawings(), QStringList({m_tall}));
    QVERIFY(m_dialog->items().empty());
    QVERIFY(!button("&Insert")->isEnabled());
    QVERIFY(!m_dialog->findChild<PictureView*>()->hasPicture());
    table()->selectRow(0);
    QTest::mouseClick(button("&Remove"), Qt::LeftButton);
    QCOMPARE(m_dialog->drawings(), QStringList());
}

void TestKpshapesFitDialog::faultsAreShown_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("text");

    QTest::newRow("no XML") << QByteArray("not XML") << "second.svg";
    QTest::newRow("nothing drawn")
        << QByteArray("<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 10 20'/>")
        << "drawing 2: nothing is drawn in it";
    QTest::newRow("the same box") << QByteArray(
        "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 400 200'>"
        "<path stroke='black' d='M0 0L390 0L200 200Z'/></svg>")
                                  << "its box of 400 x 200 is that of drawing 1";
}

void TestKpshapesFitDialog::faultsAreShown()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, text);
    addAndLearn({m_wide, write("second.svg", content)});
    QVERIFY2(lines().join('\n').contains(text), qPrintable(lines().join('\n')));
    QVERIFY(m_dialog->items().empty());
    QVERIFY(!button("&Insert")->isEnabled());
    addAndLearn({m_folder.filePath("gone.svg")});
    QVERIFY(!button("&Insert")->isEnabled());
}

void TestKpshapesFitDialog::ellipsesCanBeLeftAsCurves()
{
    addAndLearn({picture("a.svg", "400 200",
                     "<ellipse cx='200' cy='100' rx='150' ry='50'/>"
                     "<path d='M0 0L200 100'/>"),
        picture("b.svg", "150 300",
            "<ellipse cx='75' cy='150' rx='56.25' ry='75'/>"
            "<path d='M0 0L75 150'/>")});
    QCOMPARE(learnt(0).segs.size(), 1);
    QSignalSpy learntAgain(m_dialog.get(), &FitDialog::learnt);
    auto* const box = m_dialog->findChild<QCheckBox*>();
    QVERIFY(box->isChecked());
    box->click();
    QTRY_COMPARE(learntAgain.count(), 1);
    // An ellipse element is one however it is learnt.
    QCOMPARE(m_dialog->items().size(), 2u);
}

void TestKpshapesFitDialog::learningCanBeStoppedAndStartedAgain()
{
    // Long enough to be stopped.
    QByteArray path = "<path d='M0 0";
    for (int i = 0; i < 60000; ++i)
        path += " L" + QByteArray::number(i % 390) + ' ' + QByteArray::number((i * 7) % 190);
    path += "'/>";
    QString const one = picture("long1.svg", "400 200", path);
    QString const other = picture("long2.svg", "200 400", path);
    showDialog();
    QSignalSpy learnt(m_dialog.get(), &FitDialog::learnt);
    add({one, other});
    QTRY_VERIFY(m_dialog->isRunning());
    QVERIFY(button("&Stop")->isVisible());
    QTest::mouseClick(button("&Stop"), Qt::LeftButton);
    QVERIFY(!m_dialog->isRunning());
    QVERIFY(m_dialog->items().empty());
    QTest::qWait(200);
    QCOMPARE(learnt.count(), 0);
    QTest::mouseClick(button("&Learn Again"), Qt::LeftButton);
    QVERIFY(m_dialog->isRunning());
    QTRY_COMPARE_WITH_TIMEOUT(learnt.count(), 1, 20000);
    QCOMPARE(m_dialog->items().size(), 1u);
    // No rule expresses such a drawing: the list stays short.
    QVERIFY2(list()->count() < 3000, QByteArray::number(list()->count()));
}

void TestKpshapesFitDialog::closingWhileItLearnsDoesNotWait()
{
    add({m_wide, m_tall});
    QTRY_VERIFY(m_dialog->isRunning() || !m_dialog->items().empty());
    m_dialog.reset();
    QVERIFY(QThreadPool::globalInstance()->waitForDone(5000));
}

void TestKpshapesFitDialog::insertAcceptsTheDialog()
{
    addAndLearn({m_wide, m_tall});
    showDialog();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_I, Qt::AltModifier);
    QTRY_COMPARE(m_dialog->result(), int(QDialog::Accepted));
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(m_dialog->items().size(), 1u);
}

void TestKpshapesFitDialog::manyFindingsAreBounded_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("last");
    QTest::newRow("most") << 1000 << "a.svg: fault 1000";
    QTest::newRow("one more") << 1001 << QString(QChar(0x2026)) + " and 1 more";
}

void TestKpshapesFitDialog::manyFindingsAreBounded()
{
    QFETCH(int, count);
    Diagnostics diagnostics;
    for (int i = 1; i <= count; ++i)
        diagnostics.error("a.svg", QString("fault %1").arg(i));
    QTEST(findingsOf(diagnostics).last().text, "last");
}

void TestKpshapesFitDialog::longFindingsAreCut_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<QString>("text");
    QTest::newRow("longest") << 1000 << QString(1000, 'x');
    QTest::newRow("longer") << 1001 << QString(999, 'x') + QChar(0x2026);
}

void TestKpshapesFitDialog::longFindingsAreCut()
{
    QFETCH(int, length);
    Diagnostics diagnostics;
    diagnostics.error(QString(), QString(length, 'x'));
    QTEST(findingsOf(diagnostics).first().text, "text");
}

void TestKpshapesFitDialog::manyDrawingsAreBounded_data()
{
    QTest::addColumn<int>("added");
    QTest::addColumn<int>("taken");
    QTest::newRow("most") << 50 << 50;
    QTest::newRow("one more") << 51 << 50;
    QTest::newRow("many") << 200 << 50;
}

void TestKpshapesFitDialog::manyDrawingsAreBounded()
{
    QFETCH(int, added);
    QStringList many;
    for (int i = 0; i < added; ++i)
        many << m_wide;
    add(many);
    QTEST(m_dialog->drawings().size(), "taken");
}

KPSHAPES_TEST_MAIN(TestKpshapesFitDialog)
#include "tst_kpshapes_fitdialog.moc"
