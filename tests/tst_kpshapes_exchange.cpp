// SPDX-License-Identifier: MIT
#include "exchange/exporting.h"
#include "exchange/importing.h"
#include "testing.h"

#include <QFile>
#include <QGuiApplication>

/** What the editor takes in and gives away in other formats. */
class TestKpshapesExchange : public QObject
{
    Q_OBJECT

private:
    static Items star()
    {
        KpPathSegList list;
        list.moveTo({0.0, 0.0});
        list.lineTo({30.0, 0.0});
        list.lineTo({30.0, 20.0});
        list.closed = true;
        return {std::make_shared<ShapeItem const>(ShapeItem {
            QStringLiteral("star"), {30.0, 20.0}, std::nullopt, recordOf(list), {}, -1})};
    }

private Q_SLOTS:
    void aPictureBecomesItemsInItsBox()
    {
        Diagnostics diagnostics;
        auto const items =
            importedItems("<svg xmlns='http://www.w3.org/2000/svg' width='40' height='20'>"
                          "<path id='roof' d='M0 0H40V20Z'/><circle cx='10' cy='10' r='5'/></svg>",
                "a.svg", diagnostics);
        QVERIFY(items);
        QVERIFY(diagnostics.isEmpty());
        QCOMPARE(items->size(), std::size_t(2));
        QCOMPARE(items->at(0)->name, QString("roof"));
        QCOMPARE(items->at(0)->box, QSizeF(10000.0, 5000.0));
        QCOMPARE(items->at(0)->origin, -1);
        QCOMPARE(items->at(1)->outline.segmentCount, 1);
    }

    void whatIsNoPictureIsReported_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("text") << QByteArray("hello");
        QTest::newRow("unfinished") << QByteArray("<svg xmlns='http://www.w3.org/2000/svg'>");
        QTest::newRow("nothing painted")
            << QByteArray("<svg xmlns='http://www.w3.org/2000/svg' width='4' height='4'/>");
    }

    void whatIsNoPictureIsReported()
    {
        QFETCH(QByteArray, content);
        Diagnostics diagnostics;
        QVERIFY(!importedItems(content, "a.svg", diagnostics));
        QVERIFY(!diagnostics.isEmpty());
        QCOMPARE(diagnostics.at(diagnostics.size() - 1).file, QString("a.svg"));
    }

    void glyphsBecomeItems()
    {
        Diagnostics diagnostics;
        auto const items =
            glyphItems("Ab", "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf", diagnostics);
        QVERIFY(items);
        QCOMPARE(items->size(), std::size_t(2));
        QCOMPARE(items->at(0)->name, QString("A"));
        QVERIFY(!glyphItems("A", "/missing.ttf", diagnostics));
        QVERIFY(!diagnostics.isEmpty());
    }

    void customShapesKeepTheirRules()
    {
        Diagnostics diagnostics;
        auto const exportedShape =
            exported({star(), QStringLiteral("star")}, ExportFormat::CustomGeometry, diagnostics);
        QVERIFY(exportedShape);
        auto const items = importedItems(*exportedShape, "a.xml", diagnostics);
        QVERIFY(items);
        QCOMPARE(items->size(), std::size_t(1));
        QCOMPARE(items->at(0)->outline.segmentCount, 3);
    }

    void everyFormatIsWritten_data()
    {
        QTest::addColumn<int>("format");
        QTest::addColumn<QByteArray>("begin");
        QTest::newRow("SVG") << int(ExportFormat::Svg) << QByteArray("<?xml");
        QTest::newRow("PNG") << int(ExportFormat::Png) << QByteArray("\x89PNG");
        QTest::newRow("PDF") << int(ExportFormat::Pdf) << QByteArray("%PDF");
        QTest::newRow("HTML") << int(ExportFormat::Html) << QByteArray("<!DOCTYPE html>");
        QTest::newRow("DrawingML") << int(ExportFormat::CustomGeometry) << QByteArray("<?xml");
        QTest::newRow("paths") << int(ExportFormat::PathData)
                               << QByteArray("M0 0 L30 0 L30 20 Z\n");
    }

    void everyFormatIsWritten()
    {
        QFETCH(int, format);
        QFETCH(QByteArray, begin);
        Diagnostics diagnostics;
        auto const content = exported(
            {star(), QStringLiteral("star")}, static_cast<ExportFormat>(format), diagnostics);
        QVERIFY(content);
        QVERIFY2(content->startsWith(begin), content->left(40).constData());
    }

    void whatCannotBeWrittenIsReported()
    {
        for (ExportKind const& kind : exportKinds()) {
            Diagnostics diagnostics;
            QVERIFY(!exported({{}, QStringLiteral("empty")}, kind.format, diagnostics));
            QCOMPARE(diagnostics.size(), 1);
        }
        KpPathSegList list;
        list.moveTo({0.0, 0.0});
        list.lineTo({Testing::infinite, 0.0});
        list.segs.last()->pt.x.base = KpReal::Absolute;
        Items const items {std::make_shared<ShapeItem const>(
            ShapeItem {{}, {1.0, 1.0}, std::nullopt, recordOf(list), {}, -1})};
        Diagnostics diagnostics;
        QVERIFY(!exported({items, "x"}, ExportFormat::PathData, diagnostics));
        QVERIFY(!exported({items, "x"}, ExportFormat::CustomGeometry, diagnostics));
        QCOMPARE(diagnostics.size(), 2);
    }
};

QTEST_MAIN(TestKpshapesExchange)
#include "tst_kpshapes_exchange.moc"
