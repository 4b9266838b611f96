// SPDX-License-Identifier: MIT
#include "gaussianblur.h"
#include "kpgeomtesting.h"

#include <QBuffer>
#include <QGuiApplication>
#include <QImage>

#include <sys/resource.h>
#include <sys/stat.h>

using namespace KpgeomTesting;

namespace {

/** The picture in a file of this format. */
QByteArray encoded(QImage const& image, char const* format = "png")
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    image.save(&buffer, format);
    return bytes;
}

/** A red square of 10 pixels in the middle of nothing. */
QImage square()
{
    QImage image(30, 30, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    for (int y = 10; y < 20; ++y) {
        for (int x = 10; x < 20; ++x)
            image.setPixelColor(x, y, Qt::red);
    }
    return image;
}

QImage pictureOf(Workplace const& place, QString const& name)
{
    return QImage::fromData(place.read(name));
}

QImage sameFormat(QImage const& image)
{
    return image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

} // namespace

/** The command about pictures: blur. */
class TestKpgeomPictures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // First: of the memory of all runs it sees the most alone.
    void longChunksTakeNoMemory();
    void pictureIsBlurred_data();
    void pictureIsBlurred();
    void anyFormatIsReadAndWritten_data();
    void anyFormatIsReadAndWritten();
    void transparentPartsHaveNoHalo();
    void transparencyBecomesWhiteWhereThereIsNone();
    void shadowLiesUnderThePicture();
    void shadowIsNotCutOff_data();
    void shadowIsNotCutOff();
    void standardStreamsServe();
    void whatCannotBeReadIsTold_data();
    void whatCannotBeReadIsTold();
    void filesThatAPictureNamesAreNotOpened_data();
    void filesThatAPictureNamesAreNotOpened();
    void foldersGiveNoDrawings();
    void largePicturesAreRefused();
    void onlyGifFilesAreReadAsSuch();
    void wrongUsageIsTold_data();
    void wrongUsageIsTold();
};

void TestKpgeomPictures::pictureIsBlurred_data()
{
    QTest::addColumn<int>("radius");
    QTest::addColumn<unsigned int>("flatness");
    QTest::newRow("as it is") << 0 << 0U;
    QTest::newRow("3") << 3 << 0U;
    QTest::newRow("3, flat") << 3 << 16U;
    QTest::newRow("the greatest") << 254 << 4294967295U;
}

void TestKpgeomPictures::pictureIsBlurred()
{
    QFETCH(int, radius);
    QFETCH(unsigned int, flatness);
    Workplace const place;
    place.write("in.png", encoded(square()));
    COMPARE_EXIT(place.run({"blur", "in.png", "-o", "out.png", "-r", QString::number(radius),
                     "--flatness", QString::number(flatness)}),
        0);
    QImage const expected =
        GaussianBlur::blurBitmap(square(), unsigned(radius), flatness).toImage();
    // A file holds colours that are not premultiplied.
    QImage const stored = QImage::fromData(encoded(expected));
    QCOMPARE(sameFormat(pictureOf(place, "out.png")), sameFormat(stored));
}

void TestKpgeomPictures::anyFormatIsReadAndWritten_data()
{
    QTest::addColumn<QString>("format");
    for (char const* const format : {"png", "bmp", "jpg", "ppm", "xpm"})
        QTest::newRow(format) << format;
}

void TestKpgeomPictures::anyFormatIsReadAndWritten()
{
    QFETCH(QString, format);
    QImage opaque(20, 10, QImage::Format_RGB32);
    opaque.fill(QColor(10, 200, 30));
    Workplace const place;
    place.write("in", encoded(opaque, format.toLatin1()));
    COMPARE_EXIT(place.run({"blur", "in", "-o", "out." + format.toUpper(), "-r", "3"}), 0);
    QImage const picture = pictureOf(place, "out." + format.toUpper());
    QCOMPARE(picture.size(), QSize(20, 10));
    QColor const colour = picture.pixelColor(5, 5);
    QVERIFY(qAbs(colour.red() - 10) < 4 && qAbs(colour.green() - 200) < 4
        && qAbs(colour.blue() - 30) < 4);
}

void TestKpgeomPictures::transparentPartsHaveNoHalo()
{
    Workplace const place;
    // As the file stores it: black is hidden where nothing is.
    place.write("in.png", encoded(square().convertToFormat(QImage::Format_ARGB32)));
    COMPARE_EXIT(place.run({"blur", "in.png", "-o", "out.png", "-r", "4"}), 0);
    QColor const edge = pictureOf(place, "out.png").pixelColor(8, 15);
    QVERIFY(edge.alpha() > 20 && edge.alpha() < 200);
    QVERIFY2(edge.red() > 250, qPrintable(edge.name()));
}

void TestKpgeomPictures::transparencyBecomesWhiteWhereThereIsNone()
{
    Workplace const place;
    place.write("in.png", encoded(square()));
    COMPARE_EXIT(place.run({"blur", "in.png", "-o", "out.bmp", "-r", "2"}), 0);
    QCOMPARE(pictureOf(place, "out.bmp").pixelColor(0, 0), QColor(Qt::white));
}

void TestKpgeomPictures::shadowLiesUnderThePicture()
{
    Workplace const place;
    place.write("in.png", encoded(square()));
    COMPARE_EXIT(
        place.run({"blur", "in.png", "-o", "out.png", "-r", "2", "--shadow", "3,5,#80000000"}), 0);
    QImage const picture = pictureOf(place, "out.png");
    // Two pixels more on all sides of the moved picture, united with the picture: 1 to the left
    // would be inside, so that the result begins at (0, 0).
    QCOMPARE(picture.size(), QSize(35, 37));
    QCOMPARE(picture.pixelColor(10, 10), QColor(Qt::red));
    QCOMPARE(picture.pixelColor(19, 19), QColor(Qt::red));
    QCOMPARE(picture.pixelColor(18, 22), QColor(0, 0, 0, 128));
    QCOMPARE(picture.pixelColor(9, 9).alpha(), 0);
    int const edge = picture.pixelColor(16, 25).alpha();
    QVERIFY(edge > 0 && edge < 128);
    QCOMPARE(picture.pixelColor(16, 28).alpha(), 0);
}

void TestKpgeomPictures::shadowIsNotCutOff_data()
{
    QTest::addColumn<QString>("offset");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QPoint>("corner"); // of the picture in the result
    QTest::newRow("none") << "0,0" << QSize(50, 50) << QPoint(10, 10);
    QTest::newRow("right and down") << "30,40" << QSize(70, 80) << QPoint(0, 0);
    QTest::newRow("left and up") << "-30,-40" << QSize(70, 80) << QPoint(40, 50);
    QTest::newRow("far away") << "-1000,0" << QSize(1040, 50) << QPoint(1010, 10);
}

void TestKpgeomPictures::shadowIsNotCutOff()
{
    QFETCH(QString, offset);
    QFETCH(QSize, size);
    QFETCH(QPoint, corner);
    QImage opaque(30, 30, QImage::Format_RGB32);
    opaque.fill(Qt::green);
    Workplace const place;
    place.write("in.png", encoded(opaque));
    COMPARE_EXIT(
        place.run({"blur", "in.png", "-o", "out.png", "-r", "10", "--shadow", offset + ",black"}),
        0);
    QImage const picture = pictureOf(place, "out.png");
    QCOMPARE(picture.size(), size);
    QCOMPARE(picture.pixelColor(corner), QColor(Qt::green));
    QCOMPARE(picture.pixelColor(corner + QPoint(29, 29)), QColor(Qt::green));
    // Nothing of the shadow reaches the outermost pixels at full strength.
    QCOMPARE(picture.copy(0, 0, 1, 1).pixelColor(0, 0).alpha() < 255, corner != QPoint(0, 0));
}

void TestKpgeomPictures::standardStreamsServe()
{
    Workplace const place;
    Workplace::Start start;
    start.input = encoded(square());
    Result const result =
        place.run({"blur", "-", "-o", "-", "--format", "png", "--radius", "3"}, start);
    COMPARE_EXIT(result, 0);
    QCOMPARE(QImage::fromData(result.out).size(), QSize(30, 30));
}

void TestKpgeomPictures::longChunksTakeNoMemory()
{
    auto const mostKilobytesOfRuns = [] {
        rusage usage {};
        getrusage(RUSAGE_CHILDREN, &usage);
        return usage.ru_maxrss;
    };
    Workplace const place;
    QByteArray png = encoded(square());
    place.write("in.png", png);
    COMPARE_EXIT(place.run({"blur", "in.png", "-o", "out.png", "-r", "3"}), 0);
    long const usual = mostKilobytesOfRuns();
    // Behind the header, a text that says that it has 600 MB.
    int const headerSize = 33;
    png.insert(headerSize, QByteArray::fromHex("24000000") + "tEXta");
    place.write("in.png", png);
    COMPARE_FAILURE(place.run({"blur", "in.png", "-o", "out.png", "-r", "3"}), 1,
        "in.png: Unable to read image data");
    long const growth = mostKilobytesOfRuns() - usual;
    QVERIFY2(growth < 100000, qPrintable(QString::number(growth)));
}

void TestKpgeomPictures::whatCannotBeReadIsTold_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("what");
    QByteArray const png = encoded(square());
    QTest::newRow("empty") << QByteArray() << QByteArray("in.png: Unsupported image format");
    QTest::newRow("text") << QByteArray("no picture\n")
                          << QByteArray("in.png: Unsupported image format");
    QTest::newRow("SVG") << QByteArray("<svg xmlns='http://www.w3.org/2000/svg'/>")
                         << QByteArray("in.png: an SVG picture, not one of pixels");
    QTest::newRow("packed") << QByteArray("\x1f\x8b\x08 and so on")
                            << QByteArray(
                                   "in.png: a compressed file (gzip), of no format that is read");
    QTest::newRow("truncated") << png.left(40) << QByteArray("in.png: Unable to read image data");
}

void TestKpgeomPictures::whatCannotBeReadIsTold()
{
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, what);
    Workplace const place;
    place.write("in.png", content);
    COMPARE_FAILURE(place.run({"blur", "in.png", "-o", "out.png", "-r", "3"}), 1, what);
    QCOMPARE(place.entries(), QStringList("in.png"));
}

void TestKpgeomPictures::filesThatAPictureNamesAreNotOpened_data()
{
    QTest::addColumn<QString>("name");
    for (char const* const name : {"in", "in.svg", "in.svgz", "in.png"})
        QTest::newRow(name) << name;
}

void TestKpgeomPictures::filesThatAPictureNamesAreNotOpened()
{
    QFETCH(QString, name);
    Workplace const place;
    QByteArray const pipe = QFile::encodeName(place.path("pipe"));
    QCOMPARE(mkfifo(pipe.constData(), 0600), 0);
    place.write(name,
        "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' "
        "width='9' height='9'><image width='9' height='9' xlink:href='"
            + pipe + "'/></svg>");
    COMPARE_FAILURE(place.run({"blur", name, "-o", "out.png", "-r", "3"}), 1,
        name.toUtf8() + ": an SVG picture, not one of pixels");
    QCOMPARE(place.entries(), (QStringList {name, "pipe"}));
}

void TestKpgeomPictures::foldersGiveNoDrawings()
{
    Workplace const place;
    QVERIFY(QDir(place.path()).mkdir("in"));
    place.write("in/a.png", encoded(square()));
    place.write("in/b.svg", "<svg xmlns='http://www.w3.org/2000/svg'/>");
    Result const result = place.run({"blur", "-R", "in", "-o", "out/", "-r", "3"});
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.err, QByteArray());
    QCOMPARE(QDir(place.path("out")).entryList(QDir::Files), QStringList("a.png"));
}

void TestKpgeomPictures::largePicturesAreRefused()
{
    Workplace const place;
    // The header claims 30000 by 30000 pixels, which would take 3.6 GB.
    QByteArray const header = QByteArray::fromHex("89504e470d0a1a0a0000000d49484452"
                                                  "000075300000753008060000006627f8ba");
    place.write("claim.png", header + encoded(square()).mid(header.size()));
    COMPARE_FAILURE(place.run({"blur", "claim.png", "-o", "out.png", "-r", "3"}), 1,
        "claim.png: a picture of 30000 by 30000 is too large: at most 20000 a side, and 100 "
        "million in all");
    // So does this one, and ends before its first line: Qt tells nothing of its size.
    place.write("cut.gif", "GIF89a\xff\xff\xff\xff\x80");
    COMPARE_FAILURE(place.run({"blur", "cut.gif", "-o", "out.png", "-r", "3"}), 1,
        "cut.gif: a picture of 65535 by 65535 is too large: at most 20000 a side, and 100 "
        "million in all");
    place.write("in.png", encoded(square()));
    COMPARE_FAILURE(
        place.run({"blur", "in.png", "-o", "out.png", "-r", "3", "--shadow", "20000,0,red"}), 1,
        "in.png: a picture of 20033 by 36 is too large: at most 20000 a side, and 100 million "
        "in all");
    QCOMPARE(place.entries(), QStringList({"claim.png", "cut.gif", "in.png"}));
}

void TestKpgeomPictures::onlyGifFilesAreReadAsSuch()
{
    Workplace const place;
    // All but the first bytes say that there is a GIF picture of 16383 by 16383 pixels.
    QByteArray const rest = QByteArray::fromHex("ff3fff3f0000002c00000000ff3fff3f0002024c01003b");
    for (QByteArray const start : {"NOTGIF", "GIF88a", "gif89a"}) {
        place.write("in.bin", start + rest);
        Result const result = place.run({"blur", "in.bin", "-o", "out.png", "-r", "3"});
        COMPARE_EXIT(result, 1);
        QVERIFY2(result.err.endsWith(", of no format that is read\n"), result.err.constData());
    }
}

void TestKpgeomPictures::wrongUsageIsTold_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("what");
    auto const with = [](QStringList const& more) {
        return QStringList {"in.png", "-o", "out.png"} + more;
    };
    QByteArray const radius = "-r takes a number from 0 to 254";
    QByteArray const shadow =
        "--shadow takes an offset of at most 20000 pixels and a colour, like 4,4,#80000000";
    QTest::newRow("no picture") << QStringList {"-o", "out.png", "-r", "3"}
                                << QByteArray("one picture is taken");
    QTest::newRow("two pictures") << with({"b.png", "-r", "3"})
                                  << QByteArray("one picture is taken");
    QTest::newRow("no output") << QStringList {"in.png", "-r", "3"}
                               << QByteArray("no output file given (-o)");
    QTest::newRow("unknown format") << QStringList {"in.png", "-o", "out.xyz", "-r", "3"}
                                    << QByteArray("pictures of the format 'xyz' are not written");
    QTest::newRow("no format") << QStringList {"in.png", "-o", "-", "-r", "3"}
                               << QByteArray("pictures of the format '' are not written");
    QTest::newRow("no radius") << with({}) << radius;
    QTest::newRow("radius too great") << with({"-r", "255"}) << radius;
    QTest::newRow("negative radius") << with({"-r", "-1"}) << radius;
    QTest::newRow("radius is no number") << with({"-r", "x"}) << radius;
    QTest::newRow("negative flatness")
        << with({"-r", "1", "--flatness", "-1"})
        << QByteArray("--flatness takes a number from 0 to 4294967295");
    QTest::newRow("shadow without colour") << with({"-r", "1", "--shadow", "1,2"}) << shadow;
    QTest::newRow("shadow of no colour") << with({"-r", "1", "--shadow", "1,2,xyz"}) << shadow;
    QTest::newRow("shadow without offset") << with({"-r", "1", "--shadow", "red"}) << shadow;
    QTest::newRow("shadow too far") << with({"-r", "1", "--shadow", "0,20001,red"}) << shadow;
}

void TestKpgeomPictures::wrongUsageIsTold()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, what);
    Workplace const place;
    place.write("in.png", encoded(square()));
    COMPARE_FAILURE(place.run(QStringList("blur") + arguments), 2,
        "kpgeom blur: " + what + " (see kpgeom blur --help)");
    QCOMPARE(place.entries(), QStringList("in.png"));
}

QTEST_MAIN(TestKpgeomPictures)
#include "tst_kpgeom_pictures.moc"
