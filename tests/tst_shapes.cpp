// SPDX-License-Identifier: MIT
#include "document/outlinedocument.h"
#include "document/shapes.h"
#include "outlinetesting.h"

class TestShapes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writesNameBoxAndGeometry();
    void writesEveryRule();
    void isReadBackAsWritten();
    void replacesWhatXmlForbidsInNames();
    void anEmptyNameIsLeftOut();
};

namespace {

/** One line from (10, 0.25 of the height) in a box of 80 by 40. */
Shape line()
{
    Shape shape {"bar", QSizeF(80, 40), std::nullopt, std::make_shared<KpPathSegList>()};
    shape.list->noFill = true;
    shape.list->addTail(new KpPathSegMoveTo(
        KpPoint(KpReal(KpReal::Absolute, 0, 10), KpReal(2, 0.25, 10)), nullptr));
    shape.list->addTail(new KpPathSegLineTo(
        KpPoint(KpReal(KpReal::FromRight, 5, 75), KpReal(7, 0.5, 20)), nullptr));
    return shape;
}

std::optional<OutlineDocument> read(QByteArray const& text)
{
    Diagnostics diagnostics;
    return OutlineDocument::read(text, "document", diagnostics);
}

} // namespace

void TestShapes::writesNameBoxAndGeometry()
{
    Shape shape = line();
    shape.fillRule = Qt::OddEvenFill;
    QCOMPARE(shapesDocument({shape}), QByteArray(R"(<?xml version="1.0" encoding="UTF-8"?>
<Shapes>
 <Shape Name="bar" Width="80" Height="40" FillRule="evenodd">
  <Geometry Closed="0" NoFill="1">
   <MoveTo>
    <X V="10" B="0"/>
    <Y V="10" B="2" P="0.25"/>
   </MoveTo>
   <LineTo>
    <X V="75" B="3" P="5"/>
    <Y V="20" B="7" P="0.5"/>
   </LineTo>
  </Geometry>
 </Shape>
</Shapes>
)"));
}

void TestShapes::writesEveryRule()
{
    for (qint16 base = -1; base <= 9; ++base) {
        Shape shape = line();
        shape.list->segs.first()->pt.x = KpReal(base, 0.5, 3);
        auto const document = read(shapesDocument({shape}));
        QVERIFY(document);
        QCOMPARE(document->outlines().front().list->segs.first()->pt.x.base, base);
    }
}

void TestShapes::isReadBackAsWritten()
{
    QRandomGenerator random = Testing::seededRandom(7);
    for (int round = 0; round < 200; ++round) {
        auto list = std::make_shared<KpPathSegList>();
        list->closed = random.bounded(2);
        list->noLine = random.bounded(2);
        auto const real = [&random] {
            auto const base = static_cast<qint16>(random.bounded(8));
            return KpReal(
                base, base ? random.bounded(1000) / 8.0 : 0.0, random.bounded(1000) / 4.0);
        };
        auto const point = [&real] { return KpPoint(real(), real()); };
        list->addTail(new KpPathSegMoveTo(point(), nullptr));
        list->addTail(new KpPathSegCurveTo(point(), point(), point(), nullptr));
        auto* const ellipse = new KpPathSegEllipse(point(), KpReal(), KpReal(), nullptr);
        ellipse->a = real();
        ellipse->b = real();
        list->addTail(ellipse);
        auto const document = read(shapesDocument({{"", QSizeF(9, 9), std::nullopt, list}}));
        QVERIFY(document);
        QCOMPARE(OutlineTesting::exact(*document->outlines().front().list),
            OutlineTesting::exact(*list));
    }
}

void TestShapes::replacesWhatXmlForbidsInNames()
{
    Shape shape = line();
    shape.name = QStringLiteral("a\u0001<b>");
    auto const document = read(shapesDocument({shape}));
    QVERIFY(document);
    QCOMPARE(document->outlines().front().name, QStringLiteral("a\uFFFD<b>"));
}

void TestShapes::anEmptyNameIsLeftOut()
{
    Shape shape = line();
    shape.name.clear();
    QVERIFY(!shapesDocument({shape}).contains("Name"));
}

QTEST_GUILESS_MAIN(TestShapes)

#include "tst_shapes.moc"
