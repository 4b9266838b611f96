#include "import/svgimport.h"
#include "import/textimport.h"
#include "messagelog.h"
#include "outlinetesting.h"

#include <QFile>
#include <QTemporaryDir>

#include <sys/stat.h>
#include <zlib.h>

using Testing::infinite;
using Testing::notANumber;

namespace {

QString const sans = QStringLiteral("/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf");

/** A diagnostic without its file. */
QString described(Diagnostic const& diagnostic)
{
    return diagnostic.line == 0 ? diagnostic.text
                                : QStringLiteral("%1:%2: %3")
                                      .arg(diagnostic.line)
                                      .arg(diagnostic.column)
                                      .arg(diagnostic.text);
}

/** What an import comes to, and what it tells: no more than one error, behind all warnings. */
struct Imported
{
    std::optional<ImportedOutlines> picture;
    QStringList warnings;
    QString error;

    std::vector<ImportedOutline> const& outlines() const { return picture->outlines; }
    KpPathSegList& list(std::size_t index) const { return *picture->outlines.at(index).list; }

    QStringList names() const
    {
        QStringList all;
        for (ImportedOutline const& outline : outlines())
            all << outline.name;
        return all;
    }

    /** @param import does it, with what it is to be given */
    template <class Import> explicit Imported(QString const& file, Import import)
    {
        MessageLog log;
        Diagnostics diagnostics;
        picture = import([&log] { return log.take(); }, diagnostics);
        for (Diagnostic const& diagnostic : diagnostics) {
            if (diagnostic.file != file || !error.isEmpty())
                qFatal("%s", qPrintable(diagnostic.file + diagnostic.text));
            if (diagnostic.severity == Diagnostic::Severity::Error)
                error = described(diagnostic);
            else
                warnings << described(diagnostic);
        }
        if (picture.has_value() != error.isEmpty())
            qFatal("an error is told exactly if there is no picture");
    }
};

Imported importedSvg(QByteArray const& svg, double scale)
{
    QString const file = QStringLiteral("a.svg");
    return Imported(file, [&](TakeMessages const& takeMessages, Diagnostics& diagnostics) {
        return importSvg(svg, {file, scale, takeMessages}, diagnostics);
    });
}

Imported importedText(QString const& font, QString const& text, double emSize)
{
    return Imported(font, [&](TakeMessages const& takeMessages, Diagnostics& diagnostics) {
        return importText(
            text, {font, emSize, QStringLiteral("an em of"), takeMessages}, diagnostics);
    });
}

QByteArray testFile(char const* name)
{
    QFile file(QStringLiteral(KPGEOMETRY_TEST_DATA "/import/%1").arg(name));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("%s is missing", name);
    return file.readAll();
}

/** A picture of 10 by 10 user units with `body` in it. */
QByteArray svg(QByteArray const& body)
{
    return "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' "
           "width='10' height='10'>"
        + body + "</svg>";
}

/** A gzip file of `block` again and again. */
QByteArray compressed(QByteArray block, int repetitions = 1)
{
    QByteArray file(block.size() + 1024 * (repetitions + 1), '\0');
    z_stream stream {};
    deflateInit2(&stream, 6, Z_DEFLATED, 16 + MAX_WBITS, 8, Z_DEFAULT_STRATEGY);
    stream.next_out = reinterpret_cast<Bytef*>(file.data());
    stream.avail_out = uInt(file.size());
    for (int i = 1; i <= repetitions; ++i) {
        stream.next_in = reinterpret_cast<Bytef*>(block.data());
        stream.avail_in = uInt(block.size());
        deflate(&stream, i == repetitions ? Z_FINISH : Z_NO_FLUSH);
    }
    file.truncate(int(stream.total_out));
    deflateEnd(&stream);
    return file;
}

/** Flags and segments: "closed noFill M 1 2 L 3 4", C with its two control points first. */
QString text(KpPathSegList const& outline)
{
    QStringList parts;
    if (outline.closed)
        parts << QStringLiteral("closed");
    if (outline.noFill)
        parts << QStringLiteral("noFill");
    if (outline.noLine)
        parts << QStringLiteral("noLine");
    auto const point = [](KpPoint const& position) {
        return QStringLiteral(" %1 %2").arg(position.x.value).arg(position.y.value);
    };
    for (KpPathSeg* const seg : outline.segs) {
        QString part(QLatin1Char("MLCE"[seg->type - KpPathSeg::SegMoveTo]));
        if (KpPathSegCurveTo const* const curve = seg->toCurveTo())
            part += point(curve->ctrl1) + point(curve->ctrl2);
        parts << part + point(seg->pt);
    }
    return parts.join(QLatin1Char(' '));
}

QStringList texts(Imported const& picture)
{
    QStringList lines;
    for (ImportedOutline const& outline : picture.outlines())
        lines << text(*outline.list);
    return lines;
}

/** `count` groups, each of which uses the one before `uses` times; the first has a line. */
QByteArray groupsInGroups(int count, int uses)
{
    QByteArray body = "<g id='g0'><path d='M0 0L5 5'/></g>";
    for (int i = 1; i < count; ++i) {
        QByteArray const use = "<use xlink:href='#g" + QByteArray::number(i - 1) + "'/>";
        body += "<g id='g" + QByteArray::number(i) + "'>" + use.repeated(uses) + "</g>";
    }
    return svg(body);
}

} // namespace

class TestOutlineImport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void importsEachShapeAsOneOutline();
    void importsPolylinesAsOneOutline_data();
    void importsPolylinesAsOneOutline();
    void importsCompressedPictures();
    void bindsOutlinesToTheBox();
    void measuresTheViewBox_data();
    void measuresTheViewBox();
    void followsUse();
    void paintedPathsAreThoseOfTheOutlines();
    void warnsOfWhatHasNoEffect();
    void warnsOfEverything_data();
    void warnsOfEverything();
    void opensNoOtherFile();
    void rejectsWithOneLine_data();
    void rejectsWithOneLine();
    void survivesEveryPrefix();
    void restoresTheMessageHandler();

    void importsGlyphsSideBySide();
    void scalesGlyphsToTheEm();
    void namesGlyphsByCharacter();
    void blankCharactersTakeRoomOnly();
    void warnsOfMissingGlyphsOnce();
    void rejectsTextWithOneLine_data();
    void rejectsTextWithOneLine();

    void leavesOutWhatIsNotFinite();
};

void TestOutlineImport::importsEachShapeAsOneOutline()
{
    Testing::MessageWatch watch;
    Imported const picture = importedSvg(testFile("shapes.svg"), 10.0);
    QCOMPARE(picture.error, QString());
    QCOMPARE(picture.picture->size, QSizeF(400.0, 200.0));
    QCOMPARE(picture.warnings,
        QStringList({"1 shape painted with nothing: left out",
            "2 shapes with a colour other than black: not kept"}));
    QCOMPARE(picture.names(), QStringList({"path 1", "path 2", "path 3", "path 4", "path 6"}));
    QCOMPARE(texts(picture),
        QStringList({"closed M 10 20 L 110 20 L 110 120 L 10 20",
            "noFill M 10 20 L 110 20 L 110 120",
            "closed noLine M 200 40 L 260 40 L 260 120 L 200 120 L 200 40",
            "noFill M 0 200 L 400 200",
            "closed noLine M 300 100 C 320 100 340 120 340 140 M 360 160 L 380 160 L 360 160"}));
    VERIFY_NOTHING_LOGGED(watch);
}

void TestOutlineImport::importsPolylinesAsOneOutline_data()
{
    QTest::addColumn<QByteArray>("shapes");
    QTest::addColumn<QStringList>("outlines");
    QTest::addColumn<QStringList>("warnings");
    QByteArray const polyline = "<polyline points='1,1 5,1 5,5' ";
    QStringList const nothing("1 shape painted with nothing: left out");
    auto const row = [](char const* name, QByteArray const& shapes, QStringList const& outlines,
                         QStringList const& warnings) {
        QTest::newRow(name) << shapes << outlines << warnings;
    };
    row("filled", polyline + "/>", {"noLine M 1 1 L 5 1 L 5 5"}, {});
    row("filled, and a line", polyline + "stroke='black'/>", {"M 1 1 L 5 1 L 5 5"}, {});
    row("a line", polyline + "fill='none' stroke='black'/>", {"noFill M 1 1 L 5 1 L 5 5"}, {});
    row("painted with nothing", polyline + "fill='none'/>", {}, nothing);
    row("filled, another with nothing", polyline + "/><path d='M1 1L5 1L5 6' fill='none'/>",
        {"noLine M 1 1 L 5 1 L 5 5"}, nothing);
    row("filled, another line", polyline + "/><path d='M1 1L5 1' fill='none' stroke='black'/>",
        {"noLine M 1 1 L 5 1 L 5 5", "noFill M 1 1 L 5 1"}, {});
    row("evenodd, and a line",
        "<polyline points='1,1 9,1 1,8 5,-1 9,8' fill-rule='evenodd' stroke='black'/>",
        {"M 1 1 L 9 1 L 1 8 L 5 -1 L 9 8"},
        {"1 shape would be filled otherwise by the other rule: FillRule=\"evenodd\" beside the "
         "outline says so"});
}

void TestOutlineImport::importsPolylinesAsOneOutline()
{
    QFETCH(QByteArray, shapes);
    QFETCH(QStringList, outlines);
    QFETCH(QStringList, warnings);
    Imported const picture = importedSvg(svg(shapes), 1.0);
    QCOMPARE(picture.error, QString());
    QCOMPARE(texts(picture), outlines);
    QCOMPARE(picture.warnings, warnings);
}

void TestOutlineImport::importsCompressedPictures()
{
    QByteArray const plain = testFile("shapes.svg");
    Imported const expected = importedSvg(plain, 10.0);
    QVERIFY(expected.outlines().size() > 3);
    // What follows the end of the compressed text is not read.
    for (QByteArray const& file : {compressed(plain), compressed(plain) + "more"}) {
        QVERIFY(file.size() < plain.size());
        Imported const picture = importedSvg(file, 10.0);
        QCOMPARE(picture.error, QString());
        QCOMPARE(picture.picture->size, expected.picture->size);
        QCOMPARE(picture.names(), expected.names());
        QCOMPARE(picture.outlines().size(), expected.outlines().size());
        for (std::size_t i = 0; i < expected.outlines().size(); ++i)
            QCOMPARE(text(picture.list(i)), text(expected.list(i)));
    }
}

void TestOutlineImport::bindsOutlinesToTheBox()
{
    Imported const picture = importedSvg(testFile("shapes.svg"), 10.0);
    KpPathSeg const* const seg = picture.list(0).segs.at(2);
    QCOMPARE(int(seg->pt.x.base), 1);
    QCOMPARE(int(seg->pt.y.base), 2);
    COMPARE_BITS(seg->pt.x.rate, 0.275);
    COMPARE_BITS(seg->pt.y.rate, 0.6);
    picture.list(0).updateValue(40.0, 40.0);
    QCOMPARE(text(picture.list(0)), QStringLiteral("closed M 1 4 L 11 4 L 11 24 L 1 4"));
}

void TestOutlineImport::measuresTheViewBox_data()
{
    QTest::addColumn<QByteArray>("attributes");
    QTest::addColumn<double>("scale");
    QTest::addColumn<QSizeF>("size");
    QTest::addColumn<QString>("outline"); // of a line from (1, 1) to (3, 2); empty if invisible
    auto const row = [](char const* name, QByteArray const& attributes, double scale, QSizeF size,
                         char const* outline) {
        QTest::newRow(name) << attributes << scale << size << QString::fromLatin1(outline);
    };
    row("width and height", "width='10' height='5'", 2.0, {20.0, 10.0}, "noFill M 2 2 L 6 4");
    row("view box", "viewBox='0 0 10 5'", 2.0, {20.0, 10.0}, "noFill M 2 2 L 6 4");
    row("the view box counts, not what it is shown at", "viewBox='0 0 10 5' width='100'", 2.0,
        {20.0, 10.0}, "noFill M 2 2 L 6 4");
    row("another origin", "viewBox='1 -1 10 5'", 2.0, {20.0, 10.0}, "noFill M 0 4 L 4 6");
    row("a fraction", "width='10.5' height='5.25'", 2.0, {21.0, 10.5}, "noFill M 2 2 L 6 4");
    row("the picture's own bounds", "stroke-width='0'", 2.0, {4.0, 2.0}, "");
    row("no scale, wide", "width='10' height='5'", 0.0, {10000.0, 5000.0},
        "noFill M 1000 1000 L 3000 2000");
    row("no scale, high", "width='5' height='20'", 0.0, {2500.0, 10000.0},
        "noFill M 500 500 L 1500 1000");
    row("the largest size", "width='10' height='5'", 100000.0, {1e6, 5e5},
        "noFill M 100000 100000 L 300000 200000");
}

void TestOutlineImport::measuresTheViewBox()
{
    QFETCH(QByteArray, attributes);
    QFETCH(double, scale);
    QFETCH(QSizeF, size);
    QFETCH(QString, outline);
    Imported const picture = importedSvg("<svg xmlns='http://www.w3.org/2000/svg' " + attributes
            + "><path d='M1 1L3 2' fill='none' stroke='red'/></svg>",
        scale);
    QCOMPARE(picture.error, QString());
    QCOMPARE(picture.picture->size, size);
    QCOMPARE(texts(picture), outline.isEmpty() ? QStringList() : QStringList(outline));
}

void TestOutlineImport::followsUse()
{
    Imported const picture = importedSvg(testFile("used.svg"), 1.0);
    QCOMPARE(picture.error, QString());
    QCOMPARE(texts(picture),
        QStringList({"closed noLine M 5 5 L 6 5 L 6 6 L 5 6 L 5 5",
            "closed noLine M 5 5 L 7 5 L 7 6 L 5 6 L 5 5",
            "closed noLine M 7 5 L 8 5 L 8 6 L 7 6 L 7 5",
            "closed noLine M 7 5 L 9 5 L 9 6 L 7 6 L 7 5"}));
}

void TestOutlineImport::paintedPathsAreThoseOfTheOutlines()
{
    Imported const picture =
        importedSvg(svg("<path d='M0 0L5 5L0 5' fill='red' stroke='blue' fill-opacity='0.5' "
                        "stroke-opacity='0.25' stroke-width='2' fill-rule='evenodd'/>"),
            1.0);
    QCOMPARE(picture.outlines().size(), std::size_t(1));
    QCOMPARE(picture.outlines().size(), std::size_t(1));
    RecordedPath const& painted = picture.outlines().front().painted;
    QCOMPARE(painted.brush.color(), QColor(Qt::red));
    QCOMPARE(painted.pen.color(), QColor(Qt::blue));
    QCOMPARE(painted.pen.widthF(), 2.0);
    QCOMPARE(painted.fillOpacity, 0.5);
    QCOMPARE(painted.lineOpacity, 0.25);
    QCOMPARE(painted.path.fillRule(), Qt::OddEvenFill);
}

void TestOutlineImport::warnsOfWhatHasNoEffect()
{
    Testing::MessageWatch watch;
    Imported const picture = importedSvg(testFile("ignored.svg"), 1.0);
    QCOMPARE(picture.error, QString());
    // Three rectangles stand in clip path and masks, and one is filled with nothing.
    QCOMPARE(picture.outlines().size(), std::size_t(4));
    QCOMPARE(picture.warnings,
        QStringList({"1 clipPath: without effect, shapes in it may be painted",
            "2 mask: without effect, shapes in it may be painted", "1 image: left out",
            "1 shape painted with nothing: left out",
            "<input>:9: Could not resolve property: #nowhere"}));
    VERIFY_NOTHING_LOGGED(watch);
}

void TestOutlineImport::warnsOfEverything_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QStringList>("warnings");
    QTest::addColumn<int>("outlines");
    QTest::newRow("path data that ends in an error")
        << svg("<path d='M0 0L1 1L2 nan'/>") << QStringList("Invalid path data; path truncated.")
        << 1;
    QTest::newRow("the same message many times is one warning")
        << svg(QByteArray("<path d='M0 0L1 1L2 nan'/>").repeated(100))
        << QStringList("Invalid path data; path truncated.") << 100;
    QTest::newRow("a coordinate that overflows")
        << svg("<path d='M0 0L1 1'/>" + QByteArray("<g transform='scale(100000000)'>").repeated(40)
               + "<path d='M0 0L1 1'/>" + QByteArray("</g>").repeated(40))
        << QStringList("path 2: a coordinate is too large; left out") << 1;
    QTest::newRow("two images") << svg(
        "<path d='M0 0L1 1'/>" + QByteArray("<image width='1' height='1'/>").repeated(2))
                                << QStringList("2 images: left out") << 1;
    QTest::newRow("a use of nothing") << svg("<path d='M0 0L1 1'/><use xlink:href='#a'/>")
                                      << QStringList("link #a is undefined!") << 1;
}

void TestOutlineImport::warnsOfEverything()
{
    QFETCH(QByteArray, text);
    QFETCH(QStringList, warnings);
    QFETCH(int, outlines);
    Testing::MessageWatch watch;
    Imported const picture = importedSvg(text, 1.0);
    QCOMPARE(picture.error, QString());
    QCOMPARE(picture.warnings, warnings);
    QCOMPARE(int(picture.outlines().size()), outlines);
    QCOMPARE(picture.names().count(), outlines);
    VERIFY_NOTHING_LOGGED(watch);
}

void TestOutlineImport::opensNoOtherFile()
{
    QTemporaryDir directory;
    QString const pipe = directory.filePath(QStringLiteral("pipe"));
    // Whoever opens it waits for a writer, who never comes.
    QCOMPARE(::mkfifo(pipe.toLocal8Bit().constData(), 0600), 0);
    Imported const picture =
        importedSvg("<?xml-stylesheet type=\"text/css\" href=\"" + pipe.toLocal8Bit() + "\"?>"
                + svg("<image width='1' height='1' xlink:href='" + pipe.toLocal8Bit()
                    + "'/><path d='M0 0L1 1'/><text>&lt;</text>"),
            1.0);
    QCOMPARE(picture.error, QString());
    QCOMPARE(picture.warnings,
        QStringList({"1 image: left out",
            "1 line of less than one unit: not drawn, unless at a larger scale"}));
    QCOMPARE(texts(picture).mid(0, 1), QStringList("noLine M 0 0 L 1 1"));
}

void TestOutlineImport::rejectsWithOneLine_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<double>("scale");
    QTest::addColumn<QString>("expected");
    QByteArray const line = "<path d='M0 0L5 5'/>";
    auto const row = [](char const* name, QByteArray const& text, char const* expected,
                         double scale = 1.0) {
        QTest::newRow(name) << text << scale << QString::fromLatin1(expected);
    };
    row("nothing", "", "the picture is empty");
    row("no XML", "just text", "1:2: Start tag expected.");
    row("XML that ends early", "<svg><path d='M0 0L5 5'/>", "1:26: Premature end of document.");
    row("binary", QByteArray("\x00\xff\xfe\x01\x80", 5), "a binary file, not an SVG picture");
    row("bytes that are no UTF-8", "\x81\xff\xfe\x01\x80",
        "1:2: Encountered incorrectly encoded content.");
    row("damaged compression", "\x1f\x8b\x08 and so on",
        "the compressed picture is damaged or too large");
    row("half of a compressed picture", compressed("<svg/>").left(12),
        "the compressed picture is damaged or too large");
    row("malformed compressed picture", compressed("<svg>\n</D>"),
        "2:5: Opening and ending tag mismatch.");
    row("compressed spaces beyond what is read", compressed(QByteArray(1 << 20, ' '), 257),
        "the compressed picture is damaged or too large");
    row("another document", "<html><body/></html>", "not an SVG picture");
    row("no size and nothing in it", "<svg xmlns='http://www.w3.org/2000/svg'/>",
        "the picture has no size");
    row("no height", "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 10 0'/>",
        "the picture has no size");
    row("size that is no number", "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 nan 5'/>",
        "the picture has no size");
    row("a size too large", "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 1e9 5'/>",
        "the picture would be 1e+09 by 5 units large, more than 1000000");
    row("a scale too large", svg(line),
        "the picture would be 1e+301 by 1e+301 units large, more than 1000000", 1e300);
    row("a scale that overflows", svg(line), "the picture has no size", 1e308);
    row("a negative scale", svg(line), "the scale must be a number and not negative", -1.0);
    row("a scale that is no number", svg(line), "the scale must be a number and not negative",
        notANumber);
    row("an infinite scale", svg(line), "the scale must be a number and not negative", infinite);
    row("a million groups in one another",
        svg(QByteArray("<g>").repeated(1000000) + line + QByteArray("</g>").repeated(1000000)),
        "1:3107: more than 1000 nested elements");
    char const* const circle = "its use elements go round in circles or nest more than 1000 deep";
    row("a group that uses itself", svg("<g id='a'>" + line + "<use xlink:href='#a'/></g>"),
        circle);
    row("groups that use each other",
        svg("<g id='a'><use xlink:href='#b'/><use xlink:href='#b'/></g>"
            "<g id='b'><use xlink:href='#a'/><use xlink:href='#a'/></g>"),
        circle);
    row("groups that use one another, 100000 of them", groupsInGroups(100000, 1), circle);
    row("groups that use one another twice", groupsInGroups(100, 2),
        "its use elements repeat too much of it");
}

void TestOutlineImport::rejectsWithOneLine()
{
    QFETCH(QByteArray, text);
    QFETCH(double, scale);
    QFETCH(QString, expected);
    Testing::MessageWatch watch;
    Imported const picture = importedSvg(text, scale);
    QCOMPARE(picture.error, expected);
    QCOMPARE(picture.warnings, QStringList());
    VERIFY_NOTHING_LOGGED(watch);
}

void TestOutlineImport::survivesEveryPrefix()
{
    for (char const* const name : {"shapes.svg", "ignored.svg", "used.svg"}) {
        // Without the line break at its end, every shorter text lacks the end of its root.
        QByteArray const whole = testFile(name).trimmed();
        for (int size = 0; size < whole.size(); ++size) {
            Imported const picture = importedSvg(whole.left(size), 1.0);
            QVERIFY2(!picture.picture, qPrintable(QStringLiteral("%1: %2").arg(name).arg(size)));
        }
    }
}

void TestOutlineImport::restoresTheMessageHandler()
{
    Testing::MessageWatch watch;
    importedSvg(svg("<path d='M0 0L1 1L2 nan'/>"), 1.0);
    importedSvg("no SVG", 1.0);
    importedText(sans, QStringLiteral("A"), 2048.0);
    qWarning("after all that");
    QCOMPARE(watch.take(), QStringList("after all that"));
}

void TestOutlineImport::importsGlyphsSideBySide()
{
    Testing::MessageWatch watch;
    Imported const picture = importedText(sans, QStringLiteral("lI"), 2048.0);
    QCOMPARE(picture.error, QString());
    QCOMPARE(picture.warnings, QStringList());
    QCOMPARE(picture.names(), QStringList({"l", "I"}));
    // The font's own numbers: advances of 569 and 604, an ascent of 1901, a descent of 483.
    QCOMPARE(picture.picture->size, QSizeF(1173.0, 2384.0));
    QCOMPARE(texts(picture),
        QStringList({"closed noLine M 193 345 L 377 345 L 377 1901 L 193 1901 L 193 345",
            "closed noLine M 770 408 L 972 408 L 972 1901 L 770 1901 L 770 408"}));
    QCOMPARE(picture.outlines().at(0).painted.path.fillRule(), Qt::WindingFill);
    COMPARE_BITS(picture.list(1).segs.at(0)->pt.x.rate, 770.0 / 1173.0);
    COMPARE_BITS(picture.list(1).segs.at(0)->pt.y.rate, 408.0 / 2384.0);
    VERIFY_NOTHING_LOGGED(watch);
}

void TestOutlineImport::scalesGlyphsToTheEm()
{
    Imported const picture = importedText(sans, QStringLiteral("l"), 512.0);
    QCOMPARE(picture.picture->size, QSizeF(142.25, 596.0));
    QCOMPARE(texts(picture),
        QStringList("closed noLine M 48.25 86.25 L 94.25 86.25 L 94.25 475.25 L 48.25 475.25 "
                    "L 48.25 86.25"));
}

void TestOutlineImport::namesGlyphsByCharacter()
{
    uint const beyondTheBasicPlane = 0x1d538; // a double-struck A
    QString const text = QStringLiteral("a\u00e9") + QString::fromUcs4(&beyondTheBasicPlane, 1);
    Imported const picture = importedText(sans, text, 2048.0);
    QCOMPARE(picture.error, QString());
    QCOMPARE(picture.warnings, QStringList());
    QCOMPARE(picture.names(),
        QStringList({QStringLiteral("a"), QStringLiteral("\u00e9"),
            QString::fromUcs4(&beyondTheBasicPlane, 1)}));
}

void TestOutlineImport::blankCharactersTakeRoomOnly()
{
    Imported const picture = importedText(sans, QStringLiteral(" l "), 2048.0);
    QCOMPARE(picture.names(), QStringList("l"));
    QCOMPARE(picture.picture->size, QSizeF(651.0 + 569.0 + 651.0, 2384.0));
    QCOMPARE(picture.list(0).segs.at(0)->pt.x.value, 651.0 + 193.0);
    QVERIFY(importedText(sans, QStringLiteral(" "), 2048.0).outlines().empty());
    QCOMPARE(picture.error, QString());
}

void TestOutlineImport::warnsOfMissingGlyphsOnce()
{
    uint const cuneiform = 0x12000;
    QString const text = QStringLiteral("l\u4e2d\u4e2d") + QString::fromUcs4(&cuneiform, 1);
    Imported const picture = importedText(sans, text, 2048.0);
    QCOMPARE(picture.error, QString());
    QCOMPARE(picture.names(), QStringList("l"));
    QCOMPARE(picture.warnings, QStringList({"no glyph for U+4E2D", "no glyph for U+12000"}));
    QCOMPARE(picture.picture->size, QSizeF(569.0, 2384.0));
}

void TestOutlineImport::rejectsTextWithOneLine_data()
{
    QTest::addColumn<QString>("font");
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("emSize");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<QStringList>("warnings");
    QString const noFont = QStringLiteral(KPGEOMETRY_TEST_DATA "/import/shapes.svg");
    QString const missing = QStringLiteral("missing.ttf");
    QString const letter = QStringLiteral("l");
    QString const noSize = QStringLiteral("the size of an em must be a number above 0");
    auto const row = [](char const* name, QString const& font, QString const& text, double emSize,
                         QString const& expected, QStringList const& warnings = {}) {
        QTest::newRow(name) << font << text << emSize << expected << warnings;
    };
    row("no text", sans, QString(), 2048.0, QStringLiteral("the text is empty"));
    row("no such file", missing, letter, 2048.0, QStringLiteral("there is no such font file"));
    row("a name whose bytes are no text", QStringLiteral("a\ufffd.ttf"), letter, 2048.0,
        QStringLiteral("the name is not valid text"));
    row("a folder", QStringLiteral(KPGEOMETRY_TEST_DATA), letter, 2048.0,
        QStringLiteral("the font file cannot be read"));
    row("no font", noFont, letter, 2048.0, QStringLiteral("not a font file that can be read"));
    row("an em of zero", sans, letter, 0.0, noSize);
    row("a negative em", sans, letter, -1.0, noSize);
    row("an em that is no number", sans, letter, notANumber, noSize);
    row("only characters without a glyph", sans, QStringLiteral("\u4e2d"), 2048.0,
        QStringLiteral("the picture has no size"), {"no glyph for U+4E2D"});
    row("a text too long", sans, QString(2000, QLatin1Char('l')), 2048.0,
        QStringLiteral("the picture would be 1.138e+06 by 2384 units large, more than 1000000; an "
                       "em of 1799 would do"));
}

void TestOutlineImport::rejectsTextWithOneLine()
{
    QFETCH(QString, font);
    QFETCH(QString, text);
    QFETCH(double, emSize);
    QFETCH(QString, expected);
    QFETCH(QStringList, warnings);
    Testing::MessageWatch watch;
    Imported const picture = importedText(font, text, emSize);
    QCOMPARE(picture.error, expected);
    QCOMPARE(picture.warnings, warnings);
    VERIFY_NOTHING_LOGGED(watch);
}

void TestOutlineImport::leavesOutWhatIsNotFinite()
{
    RecordedPath painted;
    painted.path.moveTo(1.0, 2.0);
    painted.path.lineTo(3.0, 4.0);
    ImportedOutlines picture {QSizeF(10.0, 10.0), {}};
    Diagnostics diagnostics;
    appendOutline(picture, painted, QStringLiteral("one"), QStringLiteral("a"), diagnostics);
    painted.path.translate(infinite, 0.0);
    appendOutline(picture, painted, QStringLiteral("two"), QStringLiteral("a"), diagnostics);
    QCOMPARE(picture.outlines.size(), std::size_t(1));
    QCOMPARE(picture.outlines.front().name, QStringLiteral("one"));
    QCOMPARE(diagnostics.size(), 1);
    QCOMPARE(diagnostics.at(0).text, QStringLiteral("two: a coordinate is too large; left out"));
}

QTEST_MAIN(TestOutlineImport)
#include "tst_outlineimport.moc"
