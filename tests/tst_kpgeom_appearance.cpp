// SPDX-License-Identifier: MIT
#include "kpgeomtesting.h"

#include <QImage>

using namespace KpgeomTesting;

namespace {

QByteArray documentWith(QByteArray const& appearance)
{
    return "<Shapes><Shape>" + boxGeometry() + "\n" + appearance + "</Shape></Shapes>";
}

QImage png(QByteArray const& file)
{
    return QImage::fromData(file, "PNG").convertToFormat(QImage::Format_RGB32);
}

QByteArray const colours =
    "<Fill><Color V='#00ff00'/><Transform Name='inv' Value='1'/></Fill><Line><Color V='#ff0000'/>"
    "</Line>";

} // namespace

/** `kpgeom render`: outlines with an appearance of their own. */
class TestKpgeomAppearance : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void outlineHasItsColours();
    void vectorsHaveColoursAndNoShadow();
    void shadowIsDrawn();
    void shadowIsDrawnInSheets();
    void nothingSaidChangesNothing();
};

void TestKpgeomAppearance::outlineHasItsColours()
{
    Workplace const place;
    place.write("a.xml", documentWith("<Appearance>" + colours + "</Appearance>"));
    COMPARE_EXIT(place.run({"render", "a.xml", "--scale", "4", "-o", "a.png"}), 0);
    QImage const image = png(place.read("a.png"));
    QCOMPARE(image.size(), QSize(420, 260));
    QCOMPARE(image.pixelColor(210, 130), QColor(255, 0, 255));
    // A line of 1.5 pixels covers half of the last pixel outside and the first one inside.
    QVERIFY(image.pixelColor(10, 130).red() == 255);
    QVERIFY(image.pixelColor(10, 130).blue() < 100);
}

void TestKpgeomAppearance::vectorsHaveColoursAndNoShadow()
{
    Workplace const place;
    place.write("a.xml",
        documentWith("<Appearance>" + colours + "<Shadow Radius='9' X='9'/></Appearance>"));
    COMPARE_EXIT(place.run({"render", "a.xml", "-o", "a.svg"}), 0);
    QByteArray const svg = place.read("a.svg");
    QVERIFY(svg.contains("fill=\"#ff00ff\""));
    QVERIFY(svg.contains("stroke=\"#ff0000\""));
    QVERIFY(!svg.contains("<image"));
}

void TestKpgeomAppearance::shadowIsDrawn()
{
    Workplace const place;
    place.write("a.xml",
        documentWith("<Appearance><Shadow Radius='5' X='20' Y='10' Color='#ff0000ff'/>"
                     "</Appearance>"));
    COMPARE_EXIT(place.run({"render", "a.xml", "-o", "a.png"}), 0);
    QImage const image = png(place.read("a.png"));
    // The box of 100 by 60 and what its shadow adds, with a margin of 10.
    QCOMPARE(image.size(), QSize(145, 95));
    QCOMPARE(image.pixelColor(120, 60), QColor(0, 0, 255));
    QCOMPARE(image.pixelColor(60, 40), QColor(0xdb, 0xe9, 0xf6));
    QCOMPARE(image.pixelColor(140, 60), QColor(Qt::white));
    QVERIFY(image.pixelColor(129, 60).red() > 64);
    QVERIFY(image.pixelColor(129, 60).red() < 191);
}

void TestKpgeomAppearance::shadowIsDrawnInSheets()
{
    Workplace const place;
    place.write(
        "a.xml", documentWith("<Appearance><Shadow Radius='5' X='20' Y='10'/></Appearance>"));
    place.write("b.xml", documentWith(""));
    QStringList const sheet {"--sheet", "--size", "100x60"};
    COMPARE_EXIT(place.run(QStringList {"render", "a.xml", "-o", "a.png"} + sheet), 0);
    COMPARE_EXIT(place.run(QStringList {"render", "b.xml", "-o", "b.png"} + sheet), 0);
    QVERIFY(png(place.read("a.png")) != png(place.read("b.png")));
}

void TestKpgeomAppearance::nothingSaidChangesNothing()
{
    Workplace const place;
    place.write("a.xml", documentWith("<Appearance Theme='Harbour'><Fill/></Appearance>"));
    place.write("b.xml", documentWith(""));
    for (QString const format : {"png", "svg", "pdf"}) {
        COMPARE_EXIT(place.run({"render", "a.xml", "-o", "same." + format}), 0);
        QByteArray const one = place.read("same." + format);
        COMPARE_EXIT(place.run({"render", "b.xml", "-o", "same." + format}), 0);
        QByteArray const other = place.read("same." + format);
        QVERIFY(!one.isEmpty());
        // The title holds the name of the file.
        QCOMPARE(QByteArray(one).replace("a.xml", "b.xml").size(), other.size());
        if (format == "png")
            QVERIFY(png(one) == png(other));
    }
}

QTEST_MAIN(TestKpgeomAppearance)
#include "tst_kpgeom_appearance.moc"
