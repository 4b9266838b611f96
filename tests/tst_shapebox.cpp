// SPDX-License-Identifier: MIT
#include "document/shapebox.h"
#include "outlinetesting.h"

Q_DECLARE_METATYPE(Shape)

/** The box that the outlines of a document are shown in. */
class TestShapeBox : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void elementNamesItsBox_data();
    void elementNamesItsBox();
    void shapesAreThoseAskedFor();
    void largestNamedSidesCount();
    void drawingGivesTheBoxThatNothingNames_data();
    void drawingGivesTheBoxThatNothingNames();
};

namespace {

QByteArray const line = "<Geometry Closed=\"1\"><MoveTo><X V=\"1\"/></MoveTo></Geometry>";

OutlineDocument documentOf(QByteArray const& content)
{
    Diagnostics diagnostics;
    auto document =
        OutlineDocument::read("<Shapes>" + content + "</Shapes>", "document", diagnostics);
    return std::move(*document);
}

Shape shapeOf(std::initializer_list<QPointF> const& points, QSizeF const& box = QSizeF())
{
    Shape shape {"", box, std::nullopt, std::make_shared<KpPathSegList>()};
    for (QPointF const& point : points)
        shape.list->lineTo(point);
    return shape;
}

} // namespace

void TestShapeBox::elementNamesItsBox_data()
{
    QTest::addColumn<QByteArray>("attributes");
    QTest::addColumn<QSizeF>("expected");
    QTest::newRow("both") << QByteArray("Width=\"240.5\" Height=\"1e3\"") << QSizeF(240.5, 1000);
    QTest::newRow("the largest") << QByteArray("Width=\"1000000\" Height=\"1\"") << QSizeF(1e6, 1);
    QTest::newRow("one unit more") << QByteArray("Width=\"1000001\" Height=\"1\"") << QSizeF();
    for (char const* const attributes : {"", "Width=\"240\"", "Height=\"160\"",
             "Width=\"wide\" Height=\"160\"", "Width=\"240\" Height=\"0\"",
             "Width=\"-240\" Height=\"160\"", "Width=\"nan\" Height=\"160\"",
             "Width=\"240\" Height=\"inf\"", "Width=\"0.001\" Height=\"1\""})
        QTest::newRow(qPrintable(QString("none: ") + attributes))
            << QByteArray(attributes) << QSizeF();
}

void TestShapeBox::elementNamesItsBox()
{
    QFETCH(QByteArray, attributes);
    QFETCH(QSizeF, expected);
    OutlineDocument const document = documentOf("<Shape " + attributes + ">" + line + "</Shape>");
    QCOMPARE(namedBox(document.outlines().front()), expected);
}

void TestShapeBox::shapesAreThoseAskedFor()
{
    QByteArray const content = "<Shape Name=\"a\">" + line
        + "</Shape><Shape Name=\"b\" FillRule=\"evenodd\" Width=\"3\" Height=\"4\">" + line
        + "</Shape>" + line;
    OutlineDocument document = documentOf(content);
    Shapes const one = takeShapes(document, {2});
    QCOMPARE(one.size(), std::size_t(1));
    QCOMPARE(one.front().name, QString("b"));
    QCOMPARE(one.front().box, QSizeF(3, 4));
    QVERIFY(one.front().fillRule == Qt::OddEvenFill);
    QCOMPARE(one.front().list->segs.size(), 1);

    OutlineDocument again = documentOf(content);
    Shapes const all = takeShapes(again, {});
    QCOMPARE(all.size(), std::size_t(3));
    QCOMPARE(all.back().name, QString());
    QVERIFY(!all.back().fillRule);
}

void TestShapeBox::largestNamedSidesCount()
{
    QCOMPARE(
        boxOf({shapeOf({{500, 500}}), shapeOf({{1, 1}}, {30, 10}), shapeOf({{1, 1}}, {20, 40})}),
        QSizeF(30, 40));
}

void TestShapeBox::drawingGivesTheBoxThatNothingNames_data()
{
    using Testing::infinite;
    using Testing::notANumber;
    QTest::addColumn<Shapes>("shapes");
    QTest::addColumn<QSizeF>("expected");
    QTest::newRow("reach") << Shapes {shapeOf({{10, 20}, {30, 5}}), shapeOf({{7, 50}})}
                           << QSizeF(30, 50);
    QTest::newRow("six digits") << Shapes {shapeOf({{100.00000001, 33.33333333}})}
                                << QSizeF(100, 33.3333);
    QTest::newRow("no side in six digits")
        << Shapes {shapeOf({{80, 0.0010000000001}})} << QSizeF(80, 80);
    QTest::newRow("level line") << Shapes {shapeOf({{0, 0}, {80, 0}})} << QSizeF(80, 80);
    QTest::newRow("left of the origin") << Shapes {shapeOf({{-30, 12}})} << QSizeF(12, 12);
    QTest::newRow("nothing drawn") << Shapes {shapeOf({})} << QSizeF(100, 100);
    QTest::newRow("no outline") << Shapes {} << QSizeF(100, 100);
    QTest::newRow("not a number") << Shapes {shapeOf({{notANumber, 5}, {20, 10}})}
                                  << QSizeF(20, 10);
    QTest::newRow("infinite") << Shapes {shapeOf({{infinite, 5}, {20, 10}})} << QSizeF(20, 10);
    QTest::newRow("too far") << Shapes {shapeOf({{20, 10}, {1e9, 40}})} << QSizeF(40, 40);
}

void TestShapeBox::drawingGivesTheBoxThatNothingNames()
{
    QFETCH(Shapes, shapes);
    QFETCH(QSizeF, expected);
    Testing::MessageWatch watch; // Qt tells of coordinates that it leaves out
    QCOMPARE(boxOf(shapes), expected);
}

QTEST_GUILESS_MAIN(TestShapeBox)

#include "tst_shapebox.moc"
