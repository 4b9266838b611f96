// SPDX-License-Identifier: MIT
#include "import/gunzip.h"
#include "import/svgimport.h"
#include "import/textimport.h"
#include "outlinetesting.h"
#include "process/messagelog.h"

#include <QElapsedTimer>
#include <QFile>
#include <QRegularExpression>
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
    std::optional<ImportedPictures> pictures;
    QStringList warnings;
    QString error;

    ImportedOutlines const& picture() const { return pictures->at(0); }
    std::vector<ImportedOutline> const& outlines() const { return picture().outlines; }
    KpPathSegList& list(std::size_t index) const { return *outlines().at(index).list; }

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
        pictures = import([&log] { return log.take(); }, diagnostics);
        for (Diagnostic const& diagnostic : diagnostics) {
            if (diagnostic.file != file || !error.isEmpty())
                qFatal("%s", qPrintable(diagnostic.file + diagnostic.text));
            if (diagnostic.severity == Diagnostic::Severity::Error)
                error = described(diagnostic);
            else
                warnings << described(diagnostic);
        }
        if (pictures.has_value() != error.isEmpty())
            qFatal("an error is told exactly if there is no picture");
    }
};

Imported importedSvg(QByteArray const& svg, double scale)
{
    QString const file = QStringLiteral("a.svg");
    return Imported(file, [&](TakeMessages const& takeMessages, Diagnostics& diagnostics) {
        return importSvg(svg, {file, scale, takeMessages, true, true}, diagnostics);
    });
}

Imported importedText(QString const& font, QString const& text, double emSize)
{
    return Imported(font, [&](TakeMessages const& takeMessages, Diagnostics& diagnostics) {
        auto picture = importText(
            text, {font, emSize, QStringLiteral("an em of"), takeMessages, true}, diagnostics);
        std::optional<ImportedPictures> pictures;
        if (picture)
            pictures.emplace().push_back(std::move(*picture));
        return pictures;
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

/**
 * Flags and segments: "closed noFill M 1 2 L 3 4", C with its two control points first, E with its
 * two radii.
 */
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
        if (KpPathSegEllipse const* const ellipse = seg->toEllipse())
            part += QStringLiteral(" %1 %2").arg(ellipse->a.value).arg(ellipse->b.value);
        parts << part + point(seg->pt);
    }
    return parts.join(QLatin1Char(' '));
}

/** The warnings but those of line widths, which a scale changes. */
QStringList otherWarnings(Imported const& picture)
{
    QStringList lines;
    for (QString const& warning : picture.warnings) {
        if (!warning.contains(QLatin1String("a line width other than 1")))
            lines << warning;
    }
    return lines;
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
    void keepsEllipses_data();
    void keepsEllipses();
    void bindsEllipsesToTheBox();
    void namesOutlinesAfterIds_data();
    void namesOutlinesAfterIds();
    void idsChangeNothingElse_data();
    void idsChangeNothingElse();
    void placesNestedViews_data();
    void placesNestedViews();
    void placesSymbolsThatAreUsed_data();
    void placesSymbolsThatAreUsed();
    void importsEachSymbolOfASprite();
    void scalesSymbolsOnTheirOwn();
    void leavesOutSymbolsWithoutASize();
    void tellsOfSeveralPictures_data();
    void tellsOfSeveralPictures();
    void symbolsPaintAsTheyDoWhereTheyAreUsed();
    void takesAsLongForEachSymbol();
    void marksOfAPictureOfItsOwnDoNoHarm();
    void paintsWhatIsTooMuchOnlyWithLabels();
    void paintedPathsAreThoseOfTheOutlines();
    void warnsOfWhatHasNoEffect();
    void warnsOfEverything_data();
    void warnsOfEverything();
    void opensNoOtherFile();
    void unpacksWithinBounds_data();
    void unpacksWithinBounds();
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
    QCOMPARE(picture.picture().size, QSizeF(400.0, 200.0));
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
    QByteArray const halves = compressed(plain.left(500)) + compressed(plain.mid(500));
    QByteArray const many = compressed("") + compressed(plain) + compressed("");
    QString const ignored =
        QStringLiteral("what follows the compressed picture is no part of it: ignored");
    for (QByteArray const& file : {compressed(plain), compressed(plain) + QByteArray(512, '\0'),
             compressed(plain) + "more", halves, halves + "\x1f", many}) {
        Imported const picture = importedSvg(file, 10.0);
        QCOMPARE(picture.error, QString());
        bool const hasMore = file.endsWith("more") || file.endsWith('\x1f');
        QCOMPARE(picture.warnings.mid(0, 1) == QStringList(ignored), hasMore);
        QCOMPARE(picture.picture().size, expected.picture().size);
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
    QCOMPARE(picture.picture().size, size);
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

void TestOutlineImport::keepsEllipses_data()
{
    QTest::addColumn<QByteArray>("shape");
    QTest::addColumn<QString>("expected"); // empty for curves
    auto const row = [](char const* name, QByteArray const& shape, char const* expected) {
        QTest::newRow(name) << shape << QString::fromLatin1(expected);
    };
    QByteArray const ellipse = "<ellipse cx='5' cy='4' rx='3' ry='2' ";
    row("circle", "<circle cx='5' cy='4' r='3'/>", "closed noLine E 3 3 5 4");
    row("ellipse", ellipse + "/>", "closed noLine E 3 2 5 4");
    row("with a line", ellipse + "stroke='black'/>", "closed E 3 2 5 4");
    row("only a line", ellipse + "fill='none' stroke='black'/>", "closed noFill E 3 2 5 4");
    row("dashed", ellipse + "stroke='black' stroke-dasharray='1 1'/>", "closed E 3 2 5 4");
    row("moved and scaled", "<g transform='translate(1 2) scale(2 3)'>" + ellipse + "/></g>",
        "closed noLine E 6 6 11 14");
    row("mirrored", ellipse + "stroke='black' transform='scale(-1 1)'/>", "closed E 3 2 -5 4");
    row("a quarter turn", ellipse + "stroke='black' transform='rotate(90)'/>", "closed E 2 3 -4 5");
    row("an eighth of a turn twice",
        "<g transform='rotate(45)'>" + ellipse + "transform='rotate(45)'/></g>",
        "closed noLine E 2 3 -4 5");
    row("less than a quarter turn", ellipse + "transform='rotate(80)'/>", "");
    row("a circle turned", "<circle r='3' transform='rotate(30)'/>", "");
    row("sheared", ellipse + "transform='skewX(20)'/>", "");
    row("dashed and mirrored",
        ellipse + "stroke='black' stroke-dasharray='1 1' transform='scale(-1 1)'/>", "");
    row("arcs of a path", "<path d='M8 4A3 3 0 0 1 2 4A3 3 0 0 1 8 4Z'/>", "");
    row("a rectangle as round as can be", "<rect width='6' height='6' rx='3'/>", "");
}

void TestOutlineImport::keepsEllipses()
{
    QFETCH(QByteArray, shape);
    QFETCH(QString, expected);
    Imported const picture = importedSvg(svg(shape), 1.0);
    QCOMPARE(picture.error, QString());
    QCOMPARE(picture.outlines().size(), std::size_t(1));
    if (expected.isEmpty()) {
        QVERIFY(picture.list(0).segs.size() >= 5);
        QCOMPARE(int(picture.list(0).segs.at(0)->type), int(KpPathSeg::SegMoveTo));
        QCOMPARE(int(picture.list(0).segs.at(1)->type), int(KpPathSeg::SegCurveTo));
    } else {
        QCOMPARE(texts(picture), QStringList(expected));
    }
}

void TestOutlineImport::bindsEllipsesToTheBox()
{
    Imported const picture = importedSvg(
        "<svg width='10' height='20'><ellipse cx='5' cy='4' rx='3' ry='2'/></svg>", 2.0);
    QCOMPARE(texts(picture), QStringList("closed noLine E 6 4 10 8"));
    KpPathSegEllipse const& ellipse = *picture.list(0).segs.at(0)->toEllipse();
    QCOMPARE(int(ellipse.pt.x.base), 1);
    QCOMPARE(int(ellipse.pt.y.base), 2);
    QCOMPARE(int(ellipse.a.base), 1);
    QCOMPARE(int(ellipse.b.base), 2);
    COMPARE_BITS(ellipse.pt.x.rate, 0.5);
    COMPARE_BITS(ellipse.pt.y.rate, 0.2);
    COMPARE_BITS(ellipse.a.rate, 0.3);
    COMPARE_BITS(ellipse.b.rate, 0.1);
    picture.list(0).updateValue(100.0, 10.0);
    QCOMPARE(texts(picture), QStringList("closed noLine E 30 1 50 2"));
}

void TestOutlineImport::namesOutlinesAfterIds_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QStringList>("names");
    auto const row = [](char const* name, QByteArray const& body, QStringList const& names) {
        QTest::newRow(name) << body << names;
    };
    QByteArray const plain = "<path d='M0 0L5 5V0'/>";
    auto const shape = [](QByteArray const& id) {
        return "<path id='" + id + "' d='M0 0L5 5V0'/>";
    };
    row("some", plain + shape("a") + plain + shape("b"), {"path 1", "a", "path 3", "b"});
    row("each kind of shape",
        shape("p")
            + "<rect id='r' width='5' height='5'/><circle id='c' r='5'/>"
              "<ellipse id='e' rx='5' ry='4'/><polygon id='g' points='1,1 5,1 5,5'/>"
              "<line id='l' x2='5' stroke='red'/>"
              "<polyline id='y' points='1,1 5,1 5,5' stroke='red'/>"
              "<rect id='round' width='5' height='5' rx='1' stroke='red'/>",
        {"p", "r", "c", "e", "g", "l", "y", "round"});
    row("the same again", shape("a") + shape("a") + plain + shape("a"),
        {"a", "a 2", "path 3", "a 3"});
    row("an id like a number of a path", shape("path 2") + plain, {"path 2", "path 2 2"});
    row("an id with characters of XML", shape("&lt;&amp;&#9;x"), {"<&\tx"});
    row("an id in another script", shape("\xc3\xa4\xe4\xb8\xad"),
        {QString::fromUtf8("\xc3\xa4\xe4\xb8\xad")});
    row("an id without anything", shape(""), {"path 1"});
    row("an xml:id", "<path xml:id='a' d='M0 0L5 5V0'/>", {"a"});
    row("a long id", shape(QByteArray(300, 'x')), {QString(199, 'x') + QChar(0x2026)});
    row("shapes that paint nothing count", "<path id='n' d='M0 0L5 5' fill='none'/>" + plain,
        {"path 2"});
    row("in groups", "<g id='g'>" + shape("a") + "<g>" + shape("b") + "</g>" + plain + "</g>",
        {"a", "b", "path 3"});
    row("in what has no effect", "<clipPath id='c'>" + shape("a") + "</clipPath>", {"a"});
    row("a use", shape("a") + "<use xlink:href='#a'/><use id='u' xlink:href='#a'/>",
        {"a", "a 2", "u"});
    row("a use without the prefix", "<defs>" + shape("a") + "</defs><use id='u' href='#a'/>",
        {"u"});
    row("a use before what it uses", "<use id='u' href='#a'/>" + shape("a"), {"u", "a"});
    row("a use of a use",
        "<defs>" + shape("a")
            + "<use id='u' href='#a'/></defs><use href='#u'/><use id='v' href='#u'/>",
        {"u", "v"});
    row("a use of a group with one shape",
        "<defs><g id='g'>" + shape("a") + "</g></defs><use href='#g'/><use id='u' href='#g'/>",
        {"a", "u"});
    row("a use of a group with two",
        "<defs><g id='g'>" + shape("a") + plain + "</g></defs><use id='u' href='#g'/>",
        {"a", "path 2"});
    row("a use of a symbol with one shape",
        "<symbol id='s'>" + plain + "</symbol><use id='u' href='#s'/><use href='#s'/>",
        {"u", "path 2"});
    row("texts", "<text id='t' y='9'>a</text><text y='9'>b</text>", {"t", "path 2"});
    row("choices of a switch", "<switch>" + shape("a") + shape("b") + "</switch>" + shape("c"),
        {"path 1", "c"});
    row("fonts given to shapes",
        "<style>.f{font-family:Serif} path{font-family:Sans}</style><g font-family='Mono'>"
        "<path id='a' class='f' style='font-family:Serif' font-family='Sans' d='M0 0L5 5V0'/></g>",
        {"a"});
    row("a style sheet that insists on a font",
        "<style>path{font-family:Sans!important}</style>" + shape("a"), {"a"});
    row("a style sheet that tells of neighbours", "<style>a+b{fill:red}</style>" + shape("a"),
        {"path 1"});
}

void TestOutlineImport::namesOutlinesAfterIds()
{
    QFETCH(QByteArray, body);
    QFETCH(QStringList, names);
    Imported const picture = importedSvg(svg(body), 1.0);
    QCOMPARE(picture.error, QString());
    QCOMPARE(picture.names(), names);
}

void TestOutlineImport::idsChangeNothingElse_data()
{
    QTest::addColumn<QByteArray>("text"); // with ID where shapes have one
    auto const row = [](char const* name, QByteArray const& body, QByteArray const& attributes) {
        QTest::newRow(name) << "<svg xmlns:xlink='http://www.w3.org/1999/xlink' " + attributes + '>'
                + body + "</svg>";
    };
    QByteArray const shape = "<path ID d='M3 3L5 5V4'/>";
    QByteArray const sized = "viewBox='1 1 9 9'";
    row("a picture without a size", shape, "");
    row("a picture without a size, far from the origin",
        "<g transform='translate(70 80)' stroke='red' stroke-width='9'>" + shape + "</g>", "");
    row("stroke and filling from around", "<g fill='red' stroke='blue'>" + shape + "</g>", sized);
    row("dashes, ends, and blending",
        "<g stroke='red' stroke-dasharray='1 2' stroke-linecap='round' opacity='0.5' "
        "style='comp-op:plus'>"
            + shape + "</g>",
        sized);
    row("a gradient for the line",
        "<linearGradient id='g'><stop stop-color='red'/></linearGradient>"
        "<g stroke='url(#g)'>"
            + shape + "</g>",
        sized);
    row("a switch", "<switch>" + shape + "<rect width='3' height='3'/></switch>", sized);
    row("a switch with conditions",
        "<switch><path ID systemLanguage='xx' d='M3 3L5 5V4'/><rect ID width='3' height='3'/>"
        "</switch>",
        sized);
    row("definitions and uses",
        "<defs><path ID d='M3 3L5 5V4'/><g id='g'>" + shape
            + "<circle ID r='3'/></g></defs>"
              "<use xlink:href='#g' x='2'/><use ID xlink:href='#g'/>",
        sized);
    row("style sheets",
        "<style>g > path{fill:red} path{stroke:blue} *{stroke-width:3}</style><g>" + shape + shape
            + "</g>",
        sized);
    row("neighbours in style sheets",
        "<style>path+path{stroke:blue} text+path{stroke:blue}</style>" + shape + shape
            + "<text ID y='9'>a</text>" + shape,
        sized);
    row("children in style sheets",
        "<style>path:first-child{stroke:blue}</style><g>" + shape + shape + "</g>", sized);
    row("texts", "<text ID xml:space='preserve' y='5'> a <tspan ID fill='red'>b</tspan>\n c</text>",
        sized);
    row("what has no effect", "<clipPath id='c'>" + shape + "</clipPath><mask>" + shape + "</mask>",
        sized);
    row("messages with their lines",
        "\n\n" + shape + "\n<rect width='3' height='3' fill='url(#x)'/>", sized);
}

void TestOutlineImport::idsChangeNothingElse()
{
    QFETCH(QByteArray, text);
    QVERIFY(text.contains("ID "));
    QByteArray without = text;
    without.replace("ID ", "");
    QByteArray with = text;
    for (int number = 1; with.contains("ID "); ++number)
        with.replace(with.indexOf("ID "), 2, "id='n" + QByteArray::number(number) + '\'');
    Imported const expected = importedSvg(without, 7.0);
    Imported const picture = importedSvg(with, 7.0);
    QCOMPARE(expected.error, QString());
    QCOMPARE(picture.error, QString());
    // Messages of Qt tell the column too, which is another one.
    QRegularExpression const column("(?<=:)\\d+: (?=Could)");
    QCOMPARE(QStringList(picture.warnings).replaceInStrings(column, ""),
        QStringList(expected.warnings).replaceInStrings(column, ""));
    QCOMPARE(picture.picture().size, expected.picture().size);
    QCOMPARE(picture.outlines().size(), expected.outlines().size());
    for (std::size_t i = 0; i < expected.outlines().size(); ++i) {
        QCOMPARE(OutlineTesting::exact(picture.list(i)), OutlineTesting::exact(expected.list(i)));
        RecordedPath const& painted = *picture.outlines()[i].painted;
        RecordedPath const& meant = *expected.outlines()[i].painted;
        QCOMPARE(painted.pen, meant.pen);
        QCOMPARE(painted.brush, meant.brush);
        QCOMPARE(painted.fillOpacity, meant.fillOpacity);
        QCOMPARE(painted.lineOpacity, meant.lineOpacity);
        QCOMPARE(painted.compositionMode, meant.compositionMode);
    }
}

void TestOutlineImport::placesNestedViews_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QStringList>("outlines");
    QTest::addColumn<QStringList>("warnings");
    auto const row = [](char const* name, QByteArray const& body, QStringList const& outlines,
                         QStringList const& warnings = {},
                         QByteArray const& size = "viewBox='0 0 100 50'") {
        QTest::newRow(name) << "<svg " + size + ">" + body + "</svg>" << outlines << warnings;
    };
    // A line across the view box.
    QByteArray const line = "<path d='M0 0L10 10' fill='none' stroke='black'/>";
    auto const view = [&line](QByteArray const& attributes) {
        return "<svg " + attributes + ">" + line + "</svg>";
    };
    row("without anything", view(""), {"noFill M 0 0 L 10 10"});
    row("a place", view("x='3' y='4'"), {"noFill M 3 4 L 13 14"});
    row("a place and a size", view("x='3' y='4' width='50' height='9'"), {"noFill M 3 4 L 13 14"});
    row("a view box", view("viewBox='0 0 10 10'"), {"noFill M 25 0 L 75 50"});
    row("a view box with a place", view("x='3' y='4' width='20' height='40' viewBox='0 0 10 10'"),
        {"noFill M 3 14 L 23 34"});
    row("another corner", view("width='20' height='20' viewBox='-5 5 10 10'"),
        {"noFill M 10 -10 L 30 10"});
    row("parts of what is around",
        view("x='10%' y='20%' width='20%' height='40%' viewBox='0 0 10 10'"),
        {"noFill M 10 10 L 30 30"});
    row("parts of a nested view",
        "<svg width='50' height='50' viewBox='0 0 20 20'>"
            + view("width='50%' height='50%' "
                   "viewBox='0 0 5 5'")
            + "</svg>",
        {"noFill M 0 0 L 50 50"});
    row("units", view("x='1in' y='8pt' width='10px' height='1cm' viewBox='0 0 10 10'"),
        {"noFill M 90 22.7165 L 100 32.7165"});
    row("aligned",
        view("width='20' height='10' viewBox='0 0 10 10' preserveAspectRatio='xMaxYMin'"),
        {"noFill M 10 0 L 20 10"});
    row("stretched", view("width='20' height='30' viewBox='0 0 10 10' preserveAspectRatio='none'"),
        {"noFill M 0 0 L 20 30"});
    row("to be cut off",
        view("width='20' height='10' viewBox='0 0 10 10' preserveAspectRatio='xMidYMid slice'"),
        {"noFill M 0 -5 L 20 15"}, {"1 view that should be cut off at its edge: not cut"});
    row("a transform", view("x='1' transform='scale(2)'"), {"noFill M 2 0 L 22 20"});
    row("no width", view("width='0'"), {});
    row("a negative height", view("height='-5'"), {});
    row("an empty view box", view("viewBox='0 0 0 10'"), {});
    row("a view box that is none", view("viewBox='0 0 10'"), {"noFill M 0 0 L 10 10"});
    row("too small to be", view("width='1e-300' viewBox='0 0 1e300 1e300'"), {});
    row("too large to be", view("width='1e300' height='1e300' viewBox='0 0 1e-300 1e-300'"), {});
    row("a style from around",
        "<g fill='none' stroke='black'><svg x='1'><path d='M0 0L10 10'/></svg></g>",
        {"noFill M 1 0 L 11 10"});
    row("a style of its own", "<svg x='1' fill='none' stroke='black'><path d='M0 0L10 10'/></svg>",
        {"noFill M 1 0 L 11 10"});
    row("in a switch", "<switch>" + view("x='1'") + line + "</switch>", {"noFill M 1 0 L 11 10"});
    row("deep",
        QByteArray("<svg x='1' viewBox='0 0 100 50'>").repeated(900) + line
            + QByteArray("</svg>").repeated(900),
        {"noFill M 900 0 L 910 10"});
    row("with a prefix", "<x:svg xmlns:x='http://www.w3.org/2000/svg' x='1'>" + line + "</x:svg>",
        {"noFill M 1 0 L 11 10"});
    row("in a picture without a size",
        "<svg x='50%' viewBox='0 0 5 10'><path d='M0 0L5 0V10'/></svg>",
        {"noLine M 0 0 L 5 0 L 5 10"}, {}, "");
}

void TestOutlineImport::placesNestedViews()
{
    QFETCH(QByteArray, text);
    QFETCH(QStringList, outlines);
    QFETCH(QStringList, warnings);
    Imported const picture = importedSvg(text, 1.0);
    QCOMPARE(picture.error, QString());
    QCOMPARE(texts(picture), outlines);
    QCOMPARE(otherWarnings(picture), warnings);
}

void TestOutlineImport::placesSymbolsThatAreUsed_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QStringList>("outlines");
    QTest::addColumn<QStringList>("warnings");
    auto const row = [](char const* name, QByteArray const& body, QStringList const& outlines,
                         QStringList const& warnings = {}) {
        QTest::newRow(name) << body << outlines << warnings;
    };
    QByteArray const line = "<path d='M0 0L10 10' fill='none' stroke='black'/>";
    auto const symbol = [&line](QByteArray const& attributes) {
        return "<symbol id='s' " + attributes + ">" + line + "</symbol>";
    };
    QByteArray const box = symbol("viewBox='0 0 10 10'");
    row("not used", symbol("") + line, {"noFill M 0 0 L 10 10"});
    row("without a view box", symbol("") + "<use href='#s' x='3' y='4' width='5' height='5'/>",
        {"noFill M 3 4 L 13 14"});
    row("with a size", box + "<use href='#s' x='3' y='4' width='40' height='20'/>",
        {"noFill M 13 4 L 33 24"});
    row("as large as the picture", box + "<use xlink:href='#s'/>", {"noFill M 25 0 L 75 50"});
    row("a size of its own",
        symbol("viewBox='0 0 10 10' width='20' height='50%'")
            + "<use href='#s'/><use href='#s' width='30' height='30'/>",
        {"noFill M 0 2.5 L 20 22.5", "noFill M 0 0 L 30 30"});
    row("its way to fit",
        symbol("viewBox='0 0 10 10' preserveAspectRatio='xMinYMin slice'")
            + "<use href='#s' width='20' height='30' preserveAspectRatio='none'/>",
        {"noFill M 0 0 L 30 30"}, {"1 view that should be cut off at its edge: not cut"});
    row("a transform of the use",
        box + "<use href='#s' x='1' width='10' height='10' transform='scale(2)'/>",
        {"noFill M 2 0 L 22 20"});
    row("before it is there", "<use href='#s' width='10' height='10'/>" + box,
        {"noFill M 0 0 L 10 10"});
    row("in definitions", "<defs><g>" + box + "</g></defs><use href='#s' width='10' height='10'/>",
        {"noFill M 0 0 L 10 10"});
    row("in another one",
        box
            + "<symbol id='t' viewBox='0 0 20 20'><use href='#s' width='50%' "
              "height='50%'/></symbol>"
              "<use href='#t' width='40' height='40'/>",
        {"noFill M 0 0 L 20 20"});
    row("written in another one",
        "<symbol id='t' viewBox='0 0 20 20'>" + box + line
            + "</symbol><use href='#t' width='40' "
              "height='40'/><use href='#s' width='5' height='5'/>",
        {"noFill M 0 0 L 20 20", "noFill M 0 0 L 5 5"});
    row("of no width", box + line + "<use href='#s' width='0'/>", {"noFill M 0 0 L 10 10"});
    row("styles from the use, not from around the symbol",
        "<g fill='red' stroke='none'><symbol id='s'><path d='M0 0L10 10'/></symbol></g>"
        "<use href='#s' fill='none' stroke='black'/>",
        {"noFill M 0 0 L 10 10"});
}

void TestOutlineImport::placesSymbolsThatAreUsed()
{
    QFETCH(QByteArray, body);
    QFETCH(QStringList, outlines);
    QFETCH(QStringList, warnings);
    Imported const picture = importedSvg("<svg xmlns:xlink='http://www.w3.org/1999/xlink' "
                                         "width='100' height='50'>"
            + body + "</svg>",
        1.0);
    QCOMPARE(picture.error, QString());
    QCOMPARE(picture.pictures->size(), std::size_t(1));
    QCOMPARE(picture.picture().size, QSizeF(100.0, 50.0));
    QCOMPARE(texts(picture), outlines);
    QCOMPARE(otherWarnings(picture), warnings);
}

void TestOutlineImport::importsEachSymbolOfASprite()
{
    Testing::MessageWatch watch;
    Imported const sprite = importedSvg(testFile("sprite.svg"), 2.0);
    QCOMPARE(sprite.error, QString());
    QCOMPARE(sprite.warnings, QStringList("1 shape painted with nothing: left out"));
    QStringList all;
    for (ImportedOutlines const& picture : *sprite.pictures) {
        for (ImportedOutline const& outline : picture.outlines) {
            all << QStringLiteral("%1 in %2 by %3: %4")
                       .arg(outline.name)
                       .arg(picture.size.width())
                       .arg(picture.size.height())
                       .arg(text(*outline.list));
        }
    }
    QCOMPARE(all,
        QStringList({"bolt in 20 by 40: noLine M 2 4 L 18 4 L 10 36",
            "washer in 48 by 24: closed noLine E 12 12 24 12",
            "washer/hole in 48 by 24: closed noLine E 4 4 24 12",
            "washer 2 in 48 by 24: noLine M 0 0 L 4 4 L 4 0",
            "washer/hole 2 in 48 by 24: noLine M 0 0 L 4 4 L 4 0",
            "plate in 60 by 80: noLine M 0 0 L 10 10 L 10 0",
            "symbol 4/copy in 10 by 20: noLine M 1 2 L 9 2 L 5 18",
            "symbol 4 in 10 by 20: closed noLine M 0 0 L 10 0 L 10 20 L 0 20 L 0 0"}));
    VERIFY_NOTHING_LOGGED(watch);
}

void TestOutlineImport::scalesSymbolsOnTheirOwn()
{
    QByteArray const tiny = "<path d='M0 0L.0005 0L5 5'/>";
    Imported const sprite = importedSvg(
        svg("<symbol viewBox='0 0 10 5'><path d='M0 0L1 0L5 5'/></symbol>"
            "<symbol viewBox='0 0 10 5'>"
            + tiny + "</symbol><symbol viewBox='0 0 1 2'><path d='M0 0L1 1'/></symbol>"),
        0.0);
    QCOMPARE(sprite.error, QString());
    QCOMPARE(sprite.warnings, QStringList());
    QCOMPARE(sprite.pictures->size(), std::size_t(3));
    QCOMPARE(sprite.pictures->at(0).size, QSizeF(10000.0, 5000.0));
    QCOMPARE(sprite.pictures->at(1).size, QSizeF(100000.0, 50000.0));
    QCOMPARE(sprite.pictures->at(2).size, QSizeF(5000.0, 10000.0));
    QCOMPARE(sprite.pictures->at(2).scale, 5000.0);
    QCOMPARE(text(*sprite.pictures->at(0).outlines.at(0).list),
        QStringLiteral("noLine M 0 0 L 1000 0 L 5000 5000"));
    QCOMPARE(text(*sprite.pictures->at(1).outlines.at(0).list),
        QStringLiteral("noLine M 0 0 L 5 0 L 50000 50000"));
    QCOMPARE(text(*sprite.pictures->at(2).outlines.at(0).list),
        QStringLiteral("noLine M 0 0 L 5000 5000"));
}

void TestOutlineImport::leavesOutSymbolsWithoutASize()
{
    QByteArray const symbols = "<symbol id='a'><path d='M0 0L5 5'/></symbol>"
                               "<symbol id='b' viewBox='0 0 5 0'><path d='M0 0L5 5'/></symbol>"
                               "<symbol id='c' viewBox='0 0 5 5'><path d='M0 0L5 5'/></symbol>"
                               "<symbol id='d' width='7' height='8'><path d='M0 0L5 5'/></symbol>";
    Imported const sprite = importedSvg("<svg>" + symbols + "</svg>", 1.0);
    QCOMPARE(sprite.error, QString());
    QCOMPARE(sprite.warnings, QStringList("2 symbols without a size: left out"));
    QCOMPARE(sprite.pictures->size(), std::size_t(2));
    QCOMPARE(sprite.names(), QStringList("c"));
    QCOMPARE(sprite.pictures->at(1).size, QSizeF(7.0, 8.0));
    Imported const large = importedSvg("<svg>" + symbols + "</svg>", 200000.0);
    QCOMPARE(large.error,
        QStringLiteral(
            "d: the picture would be 1.4e+06 by 1.6e+06 units large, more than 1000000"));
    Imported const none = importedSvg("<svg><symbol><path d='M0 0L5 5'/></symbol></svg>", 1.0);
    QCOMPARE(none.error, QString());
    QVERIFY(none.pictures->empty());
}

void TestOutlineImport::tellsOfSeveralPictures_data()
{
    QTest::addColumn<int>("count"); // -1 for none to be had
    QTest::addColumn<QStringList>("faults");
    QTest::newRow("not imported") << -1 << QStringList();
    QTest::newRow("one") << 1 << QStringList();
    QTest::newRow("none") << 0 << QStringList("it holds 0 pictures instead of one");
    QTest::newRow("two") << 2 << QStringList("it holds 2 pictures instead of one");
}

void TestOutlineImport::tellsOfSeveralPictures()
{
    QFETCH(int, count);
    QFETCH(QStringList, faults);
    std::optional<ImportedPictures> pictures;
    if (count >= 0)
        pictures.emplace(std::size_t(count));
    if (count > 0)
        pictures->front().scale = 7.0;
    Diagnostics diagnostics;
    auto const picture = onlyPicture(std::move(pictures), QStringLiteral("a"), diagnostics);
    QCOMPARE(picture.has_value(), count == 1);
    if (picture)
        QCOMPARE(picture->scale, 7.0);
    QStringList told;
    for (Diagnostic const& diagnostic : diagnostics)
        told << described(diagnostic);
    QCOMPARE(told, faults);
}

void TestOutlineImport::symbolsPaintAsTheyDoWhereTheyAreUsed()
{
    QByteArray const definitions =
        "<defs><linearGradient id='l'><stop stop-color='red'/></linearGradient></defs>"
        "<style>.thick{stroke-width:3}</style>"
        "<symbol id='s' viewBox='2 1 20 20'><g transform='rotate(20)'><path class='thick' "
        "d='M1 1L9 2Q5 5 3 9Z' stroke='url(#l)' fill-opacity='0.5'/></g><circle id='c' cx='9' "
        "r='3'/>"
        "<text x='3' y='9'>x</text></symbol>";
    Imported const sprite = importedSvg(svg(definitions), 3.0);
    Imported const used = importedSvg("<svg viewBox='2 1 20 20'>" + definitions
            + "<use href='#s' x='2' y='1' width='20' height='20'/></svg>",
        3.0);
    QCOMPARE(sprite.error, QString());
    QCOMPARE(sprite.warnings, used.warnings);
    QCOMPARE(sprite.names(), QStringList({"s", "s/c", "s 2"}));
    QCOMPARE(used.names(), QStringList({"path 1", "c", "path 3"}));
    for (std::size_t i = 0; i < 3; ++i) {
        RecordedPath const& one = *sprite.outlines()[i].painted;
        RecordedPath const& other = *used.outlines()[i].painted;
        QCOMPARE(one.pen, other.pen);
        QCOMPARE(one.brush, other.brush);
        QCOMPARE(one.fillOpacity, other.fillOpacity);
        QCOMPARE(one.path.elementCount(), other.path.elementCount());
        for (int k = 0; k < one.path.elementCount(); ++k) {
            QPointF const difference = QPointF(one.path.elementAt(k)) - other.path.elementAt(k);
            QVERIFY2(difference.manhattanLength() < 1e-9, qPrintable(QString::number(k)));
        }
    }
}

void TestOutlineImport::takesAsLongForEachSymbol()
{
    int const count = Testing::sanitized ? 1000 : 10000;
    QByteArray symbols;
    for (int i = 0; i < count; ++i) {
        QByteArray const used = QByteArray::number(qMax(0, i - 1) / 100 * 100);
        symbols += "<symbol id='s" + QByteArray::number(i) + "' viewBox='0 0 9 9'>"
            + (i % 100 == 0 ? QByteArray("<path d='M0 0L9 9'/>") : "<use href='#s" + used + "'/>")
            + "</symbol>";
    }
    QElapsedTimer timer;
    timer.start();
    Imported const sprite = importedSvg(svg(symbols), 1.0);
    QCOMPARE(sprite.error, QString());
    QCOMPARE(int(sprite.pictures->size()), count);
    for (ImportedOutlines const& picture : *sprite.pictures)
        QCOMPARE(picture.outlines.size(), std::size_t(1));
    QCOMPARE(sprite.pictures->back().outlines.front().name, QStringLiteral("s%1").arg(count - 1));
    qInfo("%d symbols: %lld ms", count, timer.elapsed());
}

void TestOutlineImport::marksOfAPictureOfItsOwnDoNoHarm()
{
    QByteArray const marks =
        "<g fill='none'><path font-family='kpgeom-symbol-9'/><path font-family='kpgeom-begin-0'/>"
        "<path font-family='kpgeom-begin-77'/><path font-family='kpgeom-end-2147483647'/>"
        "<path font-family='kpgeom-begin--5'/><path font-family='kpgeom-symbol--1'/></g>";
    QByteArray const shape = "<path id='a' d='M0 0L5 5'/>";
    Imported const picture = importedSvg(svg(marks + shape + marks + shape), 1.0);
    QCOMPARE(picture.error, QString());
    QCOMPARE(picture.outlines().size(), std::size_t(2));
    Imported const sprite = importedSvg(
        svg("<symbol id='s'>" + marks + shape + marks + shape + "</symbol><symbol id='t'/>"), 1.0);
    QCOMPARE(sprite.error, QString());
    QCOMPARE(sprite.pictures->size(), std::size_t(2));
    QCOMPARE(sprite.pictures->at(0).outlines.size() + sprite.pictures->at(1).outlines.size(),
        std::size_t(2));
}

void TestOutlineImport::paintsWhatIsTooMuchOnlyWithLabels()
{
    // 16 MiB may be painted: 1,500 times a group of a hundred short shapes, but not their marks.
    QByteArray const group = "<g id='g'>" + QByteArray("<path id='a'/>").repeated(100) + "</g>";
    QByteArray const shape = "<path id='b' d='M0 0L5 5'/>";
    Imported const picture =
        importedSvg(svg(group + QByteArray("<use href='#g'/>").repeated(1500) + shape), 1.0);
    QCOMPARE(picture.error, QString());
    QCOMPARE(picture.names(), QStringList("path 1"));
    Imported const smaller =
        importedSvg(svg(group + QByteArray("<use href='#g'/>").repeated(150) + shape), 1.0);
    QCOMPARE(smaller.names(), QStringList("b"));
}

void TestOutlineImport::paintedPathsAreThoseOfTheOutlines()
{
    Imported const picture =
        importedSvg(svg("<path d='M0 0L5 5L0 5' fill='red' stroke='blue' fill-opacity='0.5' "
                        "stroke-opacity='0.25' stroke-width='2' fill-rule='evenodd'/>"),
            1.0);
    QCOMPARE(picture.outlines().size(), std::size_t(1));
    QCOMPARE(picture.outlines().size(), std::size_t(1));
    RecordedPath const& painted = *picture.outlines().front().painted;
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

void TestOutlineImport::unpacksWithinBounds_data()
{
    QTest::addColumn<int>("more"); // bytes than 256 MiB
    QTest::addColumn<bool>("isUnpacked");
    QTest::newRow("most") << 0 << true;
    QTest::newRow("one byte more") << 1 << false;
}

void TestOutlineImport::unpacksWithinBounds()
{
    QFETCH(int, more);
    QFETCH(bool, isUnpacked);
    QByteArray const zip =
        compressed(QByteArray(1 << 20, ' '), 256) + compressed(QByteArray(more, ' '));
    auto const unpacked = gunzip(zip, 1 << 28);
    QCOMPARE(unpacked.has_value(), isUnpacked);
    QCOMPARE(unpacked ? unpacked->content.size() : 0, isUnpacked ? 1 << 28 : 0);
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
    row("compressed spaces of several members beyond what is read",
        compressed(QByteArray(1 << 20, ' '), 200) + compressed(QByteArray(1 << 20, ' '), 57),
        "the compressed picture is damaged or too large");
    row("half of a second member", compressed("<svg/>") + compressed("<svg/>").left(12),
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
    row("a size one unit too large",
        "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 1000001 5'/>",
        "the picture would be 1e+06 by 5 units large, more than 1000000");
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
    row("a symbol that uses itself", svg("<symbol id='a'><use href='#a'/></symbol>"), circle);
    row("a symbol that uses what paints it",
        svg("<symbol id='a'><use href='#kpgeom-symbol-0'/></symbol>"), circle);
    row("symbols that use each other",
        svg("<symbol id='a'><use href='#b'/></symbol><symbol id='b'><use href='#a'/></symbol>"),
        circle);
    row("symbols in one another, too deep as groups",
        svg(QByteArray("<symbol>").repeated(900) + line + QByteArray("</symbol>").repeated(900)),
        circle);
    QByteArray symbols = "<symbol id='s0'>" + line + "</symbol>";
    for (int i = 1; i < 100; ++i) {
        symbols += "<symbol id='s" + QByteArray::number(i) + "'>"
            + QByteArray("<use href='#s" + QByteArray::number(i - 1) + "'/>").repeated(2)
            + "</symbol>";
    }
    row("symbols that use one another twice", svg(symbols),
        "its use elements repeat too much of it");
    row("a million nested pictures in one another",
        svg(QByteArray("<svg>").repeated(1000000) + line + QByteArray("</svg>").repeated(1000000)),
        "1:5107: more than 1000 nested elements");
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
    for (char const* const name : {"shapes.svg", "ignored.svg", "used.svg", "sprite.svg"}) {
        // Without the line break at its end, every shorter text lacks the end of its root.
        QByteArray const whole = testFile(name).trimmed();
        for (int size = 0; size < whole.size(); ++size) {
            Imported const picture = importedSvg(whole.left(size), 1.0);
            QVERIFY2(!picture.pictures, qPrintable(QStringLiteral("%1: %2").arg(name).arg(size)));
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
    QCOMPARE(picture.picture().size, QSizeF(1173.0, 2384.0));
    QCOMPARE(texts(picture),
        QStringList({"closed noLine M 193 345 L 377 345 L 377 1901 L 193 1901 L 193 345",
            "closed noLine M 770 408 L 972 408 L 972 1901 L 770 1901 L 770 408"}));
    QCOMPARE(picture.outlines().at(0).painted->path.fillRule(), Qt::WindingFill);
    COMPARE_BITS(picture.list(1).segs.at(0)->pt.x.rate, 770.0 / 1173.0);
    COMPARE_BITS(picture.list(1).segs.at(0)->pt.y.rate, 408.0 / 2384.0);
    VERIFY_NOTHING_LOGGED(watch);
}

void TestOutlineImport::scalesGlyphsToTheEm()
{
    Imported const picture = importedText(sans, QStringLiteral("l"), 512.0);
    QCOMPARE(picture.picture().size, QSizeF(142.25, 596.0));
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
    QCOMPARE(picture.picture().size, QSizeF(651.0 + 569.0 + 651.0, 2384.0));
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
    QCOMPARE(picture.picture().size, QSizeF(569.0, 2384.0));
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
    row("a name of no bytes", QString(QChar(0xd800)) + ".ttf", letter, 2048.0,
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
