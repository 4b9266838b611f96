// SPDX-License-Identifier: MIT
#include "panels/boxcell.h"
#include "panels/boxstrip.h"
#include "panels/thumbnail.h"
#include "panelstesting.h"

#include <QDoubleSpinBox>
#include <QMenu>
#include <QToolButton>

#include <cmath>

using namespace PanelsTesting;

namespace {

QColor const white = Qt::white;

/** The cell with this accessible name, or null. */
BoxCell* cellOf(BoxStrip const& strip, QString const& name)
{
    for (BoxCell* const cell : strip.findChildren<BoxCell*>()) {
        if (cell->isVisible() && cell->accessibleName() == name)
            return cell;
    }
    return nullptr;
}

QStringList cellNames(BoxStrip const& strip)
{
    QStringList names;
    for (BoxCell const* const cell : strip.findChildren<BoxCell*>()) {
        if (!cell->isHidden())
            names << cell->accessibleName();
    }
    return names;
}

/** How many of the picture's device pixels are not white. */
int inkIn(QImage const& picture)
{
    int count = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            count += picture.pixelColor(x, y) != white;
    }
    return count;
}

ItemPointer zigzag(int segments)
{
    KpPathSegList list;
    list.addTail(new KpPathSegMoveTo({{1, 0.0, 0.0}, {2, 0.0, 0.0}}, nullptr));
    for (int i = 1; i < segments; ++i) {
        double const x = 1.0 * i / segments;
        double const y = i % 2;
        list.addTail(new KpPathSegLineTo({{1, x, 240.0 * x}, {2, y, 120.0 * y}}, nullptr));
    }
    return std::make_shared<ShapeItem const>(
        ShapeItem {"zigzag", {240.0, 120.0}, std::nullopt, recordOf(list), {}, -1});
}

} // namespace

class TestKpshapesBoxStrip : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_strip.reset(); }

    void aThumbnailHasTheDevicePixelsOfItsRatio_data();
    void aThumbnailHasTheDevicePixelsOfItsRatio();
    void aThumbnailInAnotherBoxFollowsTheRules();
    void aThumbnailShowsColoursAndShadow();
    void whatCannotBeDrawnGivesBlankPaper_data();
    void whatCannotBeDrawnGivesBlankPaper();
    void aVeryLongOutlineIsPictured();

    void offersFiveBoxesOfOneArea();
    void theBoxOfTheShapeIsChecked();
    void aClickTakesTheBox();
    void keysMoveAndTake();
    void picturesFollowTheShape();
    void aDragIsNotSlowedDown();
    void aLongOutlineIsDrawnLessOften();
    void aHugeOutlineIsDrawnWhenItRests();
    void theUserAddsABoxByKeys();
    void deleteRemovesOnlyWhatWasAdded();
    void theMenuRemovesABox();
    void boxesAreRememberedWithinBounds_data();
    void boxesAreRememberedWithinBounds();
    void anEmptyDocumentTakesNoBox();
    void hugeAndTinyBoxesStayBoxes_data();
    void hugeAndTinyBoxesStayBoxes();

private:
    void showStrip();

    std::unique_ptr<ShapeDocument> m_document;
    std::unique_ptr<BoxStrip> m_strip;
};

void TestKpshapesBoxStrip::init()
{
    m_document = std::make_unique<ShapeDocument>();
    m_document->reset({item("plate")});
    m_strip = std::make_unique<BoxStrip>(*m_document, nullptr);
    m_strip->resize(900, 160);
}

void TestKpshapesBoxStrip::showStrip()
{
    QSignalSpy refreshed(m_strip.get(), &BoxStrip::refreshed);
    QVERIFY(showAndPicture(*m_strip, QStringLiteral("boxstrip")));
    m_strip->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_strip.get()));
    QTRY_VERIFY(!refreshed.isEmpty());
}

void TestKpshapesBoxStrip::aThumbnailHasTheDevicePixelsOfItsRatio_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<double>("ratio");
    QTest::addColumn<QSize>("pixels");

    QTest::newRow("plain") << QSize(40, 30) << 1.0 << QSize(40, 30);
    QTest::newRow("one and a half") << QSize(40, 30) << 1.5 << QSize(60, 45);
    QTest::newRow("double") << QSize(40, 30) << 2.0 << QSize(80, 60);
    QTest::newRow("too large") << QSize(100000, 30) << 1.0 << QSize(1024, 30);
    QTest::newRow("no size") << QSize(-1, 0) << 1.0 << QSize(1, 1);
    QTest::newRow("no ratio") << QSize(40, 30) << std::nan("") << QSize(40, 30);
}

void TestKpshapesBoxStrip::aThumbnailHasTheDevicePixelsOfItsRatio()
{
    QFETCH(QSize, size);
    QFETCH(double, ratio);
    QFETCH(QSize, pixels);
    QCOMPARE(thumbnail(*item("plate"), {size, ratio, {}}).size(), pixels);
}

void TestKpshapesBoxStrip::aThumbnailInAnotherBoxFollowsTheRules()
{
    // 1 pixel a unit, the box of 20 x 20 in the middle of 40 x 40: its right corner stays 10 away.
    QImage const picture = thumbnail(*item("plate"), {20.0, 20.0}, {{40, 40}, 1.0, 1.0});
    QCOMPARE(picture.pixelColor(25, 13), white);
    QVERIFY(picture.pixelColor(14, 26) != white);
    QVERIFY(picture.pixelColor(25, 27) != white);
}

void TestKpshapesBoxStrip::aThumbnailShowsColoursAndShadow()
{
    ShapeItem shape = *item("plate");
    shape.appearance.fill = ShapeColour {KpColor(QColor(255, 0, 0)), {}};
    // Moved by half of the box, so that a good part of it is not covered.
    shape.appearance.shadow = ShapeShadow {0, 0, {10.0, 10.0}, QColor(0, 0, 255)};
    QImage const picture = thumbnail(shape, {20.0, 20.0}, {{40, 40}, 1.0, 1.0});
    int fill = 0;
    int shadow = 0;
    for (int y = 0; y < 40; ++y) {
        for (int x = 0; x < 40; ++x) {
            fill += picture.pixelColor(x, y) == QColor(255, 0, 0) ? 1 : 0;
            shadow += picture.pixelColor(x, y) == QColor(0, 0, 255) ? 1 : 0;
        }
    }
    QVERIFY(fill > 50);
    QVERIFY(shadow > 50);
}

void TestKpshapesBoxStrip::whatCannotBeDrawnGivesBlankPaper_data()
{
    QTest::addColumn<double>("x");
    QTest::addColumn<QSizeF>("box");

    QTest::newRow("no number") << std::nan("") << QSizeF(100, 100);
    QTest::newRow("endless") << HUGE_VAL << QSizeF(100, 100);
    QTest::newRow("huge") << 1e300 << QSizeF(100, 100);
    QTest::newRow("endless box") << 5.0 << QSizeF(HUGE_VAL, 100);
    QTest::newRow("box without a number") << 5.0 << QSizeF(100, std::nan(""));
    QTest::newRow("no box") << 5.0 << QSizeF(0, 0);
}

void TestKpshapesBoxStrip::whatCannotBeDrawnGivesBlankPaper()
{
    QFETCH(double, x);
    QFETCH(QSizeF, box);
    KpPathSegList list;
    list.addTail(new KpPathSegMoveTo({{0, 0.0, x}, {0, 0.0, 0.0}}, nullptr));
    list.addTail(new KpPathSegLineTo({{0, 0.0, 50.0}, {0, 0.0, 50.0}}, nullptr));
    ShapeItem const shape {"", box, std::nullopt, recordOf(list), {}, -1};
    QCOMPARE(inkIn(thumbnail(shape, {{40, 40}, 1.0, {}})), 0);
}

void TestKpshapesBoxStrip::aVeryLongOutlineIsPictured()
{
    ItemPointer const shape = zigzag(1000000);
    QElapsedTimer clock;
    clock.start();
    QImage const picture = thumbnail(*shape, {{48, 48}, 2.0, {}});
    qInfo("a million segments: %lld ms", clock.elapsed());
    QVERIFY(inkIn(picture) > 0);
}

void TestKpshapesBoxStrip::offersFiveBoxesOfOneArea()
{
    showStrip();
    QCOMPARE(cellNames(*m_strip),
        QStringList({"Box 2:1, 240 by 120", "Box 1:2, 120 by 240", "Box 4:1, 340 by 85",
            "Box 1:4, 85 by 340", "Box 1:1, 170 by 170"}));
}

void TestKpshapesBoxStrip::theBoxOfTheShapeIsChecked()
{
    showStrip();
    QVERIFY(cellOf(*m_strip, "Box 2:1, 240 by 120")->isChecked());
    QVERIFY(!cellOf(*m_strip, "Box 1:1, 170 by 170")->isChecked());
}

void TestKpshapesBoxStrip::aClickTakesTheBox()
{
    showStrip();
    QTest::mouseClick(cellOf(*m_strip, "Box 1:1, 170 by 170"), Qt::LeftButton);
    QCOMPARE(m_document->at(0).box, QSizeF(170.0, 170.0));
    QCOMPARE(m_document->working().list->segs.at(1)->pt.x.value, 160.0);
    QCOMPARE(m_document->undoStack().count(), 1);
    QCOMPARE(m_document->undoStack().undoText(), QStringLiteral("Take box 1:1"));
    QVERIFY(cellOf(*m_strip, "Box 1:1, 170 by 170")->isChecked());
    QTest::mouseClick(cellOf(*m_strip, "Box 1:1, 170 by 170"), Qt::LeftButton);
    QCOMPARE(m_document->undoStack().count(), 1);
    QVERIFY(cellOf(*m_strip, "Box 1:1, 170 by 170")->isChecked());
    m_document->undoStack().undo();
    QCOMPARE(m_document->at(0).box, QSizeF(240.0, 120.0));
    QTRY_VERIFY(cellOf(*m_strip, "Box 2:1, 240 by 120")->isChecked());
}

void TestKpshapesBoxStrip::keysMoveAndTake()
{
    showStrip();
    QTest::keyClick(m_strip.get(), Qt::Key_Tab);
    cellOf(*m_strip, "Box 2:1, 240 by 120")->setFocus();
    auto const press = [](int key) { QTest::keyClick(QApplication::focusWidget(), Qt::Key(key)); };
    auto const focused = [] { return QApplication::focusWidget()->accessibleName(); };
    press(Qt::Key_Left);
    QCOMPARE(focused(), QStringLiteral("Box 2:1, 240 by 120"));
    press(Qt::Key_Right);
    QCOMPARE(focused(), QStringLiteral("Box 1:2, 120 by 240"));
    press(Qt::Key_End);
    QCOMPARE(focused(), QStringLiteral("Box 1:1, 170 by 170"));
    press(Qt::Key_Right);
    QCOMPARE(focused(), QStringLiteral("Box 1:1, 170 by 170"));
    press(Qt::Key_Home);
    press(Qt::Key_Right);
    press(Qt::Key_Return);
    QCOMPARE(m_document->at(0).box, QSizeF(120.0, 240.0));
    QCOMPARE(m_document->undoStack().undoText(), QStringLiteral("Take box 1:2"));
    press(Qt::Key_Left);
    press(Qt::Key_Space);
    QCOMPARE(m_document->at(0).box, QSizeF(240.0, 120.0));
    QCOMPARE(m_document->undoStack().count(), 2);
}

void TestKpshapesBoxStrip::picturesFollowTheShape()
{
    showStrip();
    BoxCell const* const cell = cellOf(*m_strip, "Box 1:1, 170 by 170");
    QImage const before = cell->picture();
    QCOMPARE(before.size(), (QSizeF(cell->pictureSize()) * m_strip->devicePixelRatioF()).toSize());
    QSignalSpy refreshed(m_strip.get(), &BoxStrip::refreshed);
    m_document->working().list->segs.at(1)->pt.x.rate = 100.0;
    m_document->touch();
    QVERIFY(refreshed.isEmpty());
    QTRY_COMPARE(refreshed.count(), 1);
    QVERIFY(cell->picture() != before);
    m_document->revert();
    QTRY_COMPARE(refreshed.count(), 2);
    QCOMPARE(cell->picture(), before);
    // The shape itself was only looked at.
    QCOMPARE(m_document->working().list->segs.at(1)->pt.x.value, 230.0);
}

void TestKpshapesBoxStrip::aDragIsNotSlowedDown()
{
    showStrip();
    QSignalSpy refreshed(m_strip.get(), &BoxStrip::refreshed);
    QElapsedTimer clock;
    clock.start();
    int touches = 0;
    while (clock.elapsed() < 500) {
        m_document->touch();
        ++touches;
        QTest::qWait(1);
    }
    QVERIFY2(touches > 20, QByteArray::number(touches));
    QVERIFY(refreshed.count() >= 1);
    QVERIFY2(refreshed.count() <= 10, QByteArray::number(refreshed.count()));
}

void TestKpshapesBoxStrip::aLongOutlineIsDrawnLessOften()
{
    m_document->reset({zigzag(3000)});
    showStrip();
    QSignalSpy refreshed(m_strip.get(), &BoxStrip::refreshed);
    QElapsedTimer clock;
    clock.start();
    m_document->touch();
    QTRY_COMPARE(refreshed.count(), 1);
    QVERIFY(clock.restart() >= 200);
    refreshed.clear();
    while (clock.elapsed() < 1000) {
        m_document->touch();
        QTest::qWait(5);
    }
    QVERIFY2(refreshed.count() <= 4, QByteArray::number(refreshed.count()));
}

void TestKpshapesBoxStrip::aHugeOutlineIsDrawnWhenItRests()
{
    m_document->reset({zigzag(60000)});
    showStrip();
    QSignalSpy refreshed(m_strip.get(), &BoxStrip::refreshed);
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < 1000) {
        m_document->touch();
        QTest::qWait(5);
    }
    QCOMPARE(refreshed.count(), 0);
    QTRY_COMPARE(refreshed.count(), 1);
}

void TestKpshapesBoxStrip::theUserAddsABoxByKeys()
{
    showStrip();
    QSignalSpy changed(m_strip.get(), &BoxStrip::boxesChanged);
    QTest::mouseClick(m_strip->findChild<QToolButton*>(), Qt::LeftButton);
    auto* const width = m_strip->findChild<QDoubleSpinBox*>("Width of the box");
    auto* const height = m_strip->findChild<QDoubleSpinBox*>("Height of the box");
    QTRY_VERIFY(width->isVisible());
    QCOMPARE(width->value(), 240.0);
    width->selectAll();
    QTest::keyClicks(width, "300");
    height->setFocus();
    height->selectAll();
    QTest::keyClicks(height, "45.5");
    QTest::keyClick(height, Qt::Key_Return);
    QCOMPARE(m_strip->boxes(), QVector<QSizeF>({{300.0, 45.5}}));
    QCOMPARE(changed.count(), 1);
    QVERIFY(!width->isVisible());
    QTRY_VERIFY(cellOf(*m_strip, "Box 300 by 45.5"));
    QTest::mouseClick(cellOf(*m_strip, "Box 300 by 45.5"), Qt::LeftButton);
    QCOMPARE(m_document->at(0).box, QSizeF(300.0, 45.5));
    QCOMPARE(m_document->undoStack().undoText(), QString::fromUtf8("Take box 300 \303\227 45.5"));
}

void TestKpshapesBoxStrip::deleteRemovesOnlyWhatWasAdded()
{
    m_strip->setBoxes({{300.0, 45.5}, {10.0, 20.0}});
    showStrip();
    QSignalSpy changed(m_strip.get(), &BoxStrip::boxesChanged);
    QTest::keyClick(cellOf(*m_strip, "Box 2:1, 240 by 120"), Qt::Key_Delete);
    QVERIFY(changed.isEmpty());
    cellOf(*m_strip, "Box 300 by 45.5")->setFocus();
    QTest::keyClick(cellOf(*m_strip, "Box 300 by 45.5"), Qt::Key_Delete);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(m_strip->boxes(), QVector<QSizeF>({{10.0, 20.0}}));
    QCOMPARE(QApplication::focusWidget()->accessibleName(), QStringLiteral("Box 10 by 20"));
}

void TestKpshapesBoxStrip::theMenuRemovesABox()
{
    m_strip->setBoxes({{300.0, 45.5}});
    showStrip();
    BoxCell* const cell = cellOf(*m_strip, "Box 300 by 45.5");
    bool wasShown = false;
    QTimer::singleShot(0, this, [&] {
        auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        QVERIFY(menu);
        wasShown = true;
        QTest::keyClick(menu, Qt::Key_R);
    });
    QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(5, 5), cell->mapToGlobal({5, 5}));
    QApplication::sendEvent(cell, &event);
    QVERIFY(wasShown);
    QVERIFY(m_strip->boxes().isEmpty());
}

void TestKpshapesBoxStrip::boxesAreRememberedWithinBounds_data()
{
    QTest::addColumn<QVector<QSizeF>>("boxes");
    QTest::addColumn<QVector<QSizeF>>("kept");
    using Boxes = QVector<QSizeF>;

    QTest::newRow("none") << Boxes() << Boxes();
    QTest::newRow("two") << Boxes {{10, 20}, {30, 5}} << Boxes {{10, 20}, {30, 5}};
    QTest::newRow("twice") << Boxes {{10, 20}, {10, 20}} << Boxes {{10, 20}};
    QTest::newRow("none of them a box")
        << Boxes {{std::nan(""), 20}, {0, 20}, {-5, 5}, {HUGE_VAL, 1}, {2e6, 1}, {}} << Boxes();
    Boxes many;
    for (int i = 1; i <= 40; ++i)
        many.append(QSizeF(10 * i, 10));
    QTest::newRow("most") << many.mid(0, 16) << many.mid(0, 16);
    QTest::newRow("one more") << many.mid(0, 17) << many.mid(0, 16);
    QTest::newRow("many") << many << many.mid(0, 16);
}

void TestKpshapesBoxStrip::boxesAreRememberedWithinBounds()
{
    QFETCH(QVector<QSizeF>, boxes);
    m_strip->setBoxes({{7.0, 7.0}});
    m_strip->setBoxes(boxes);
    QTEST(m_strip->boxes(), "kept");
}

void TestKpshapesBoxStrip::anEmptyDocumentTakesNoBox()
{
    m_document->reset({});
    showStrip();
    QTest::mouseClick(cellOf(*m_strip, "Box 1:1, 100 by 100"), Qt::LeftButton);
    QCOMPARE(m_document->undoStack().count(), 0);
    QVERIFY(!cellOf(*m_strip, "Box 1:1, 100 by 100")->isChecked());
}

void TestKpshapesBoxStrip::hugeAndTinyBoxesStayBoxes_data()
{
    QTest::addColumn<QSizeF>("box");
    QTest::addColumn<QString>("wide");

    QTest::newRow("huge") << QSizeF(1e6, 1e6) << "Box 4:1, 1e+06 by 250000";
    QTest::newRow("tiny") << QSizeF(0.01, 0.01) << "Box 4:1, 4 by 1";
    QTest::newRow("long") << QSizeF(1e6, 1.0) << "Box 4:1, 2000 by 500";
}

void TestKpshapesBoxStrip::hugeAndTinyBoxesStayBoxes()
{
    QFETCH(QSizeF, box);
    QFETCH(QString, wide);
    m_document->reset({item("plate", box)});
    showStrip();
    QVERIFY2(cellOf(*m_strip, wide), qPrintable(cellNames(*m_strip).join("; ")));
    QTest::mouseClick(cellOf(*m_strip, wide), Qt::LeftButton);
    QCOMPARE(m_document->at(0).box.width() / m_document->at(0).box.height(), 4.0);
}

KPSHAPES_TEST_MAIN(TestKpshapesBoxStrip)
#include "tst_kpshapes_boxstrip.moc"
