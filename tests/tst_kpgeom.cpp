// SPDX-License-Identifier: MIT
#include "kpgeomtesting.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QStandardPaths>

using namespace KpgeomTesting;

/** The tool itself: usage, help, `info` and the manual. */
class TestKpgeom : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void wrongUsageIsToldInOneLine_data();
    void wrongUsageIsToldInOneLine();
    void likelyNameIsSuggested_data();
    void likelyNameIsSuggested();
    void numbersOfOptionsAreBounded_data();
    void numbersOfOptionsAreBounded();
    void valuesHaveOtherSpellings_data();
    void valuesHaveOtherSpellings();
    void quietLeavesOutNotes_data();
    void quietLeavesOutNotes();
    void helpIsPrinted();
    void helpIsPrintedWithoutArguments();
    void helpOfCommandIsPrinted_data();
    void helpOfCommandIsPrinted();
    void versionIsPrinted();
    void infoAlignsItsTable();
    void infoOfDocumentsWithoutOutlines();
    void infoSeparatesFiles();
    void infoFindsNestedOutlines();
    void infoCutsLongNames();
    void infoGoesOnAfterBadFile();
    void infoReadsStandardInput();
    void infoAsJson();
    void infoAsJsonStaysValid_data();
    void infoAsJsonStaysValid();
    void manualIsFreeOfWarnings();
    void manualNamesEveryOption_data();
    void manualNamesEveryOption();
    void manualIsMadeOfWholeFormAlone_data();
    void manualIsMadeOfWholeFormAlone();
};

namespace {

/** The commands that the tool itself lists. */
QStringList commands()
{
    QString const help = QString::fromUtf8(Workplace().run({"--help"}).out);
    QRegularExpression const command("^  ([a-z]+)  ", QRegularExpression::MultilineOption);
    QStringList names;
    for (auto match = command.globalMatch(help.mid(help.indexOf("Commands:"))); match.hasNext();)
        names << match.next().captured(1);
    return names;
}

QJsonArray jsonOf(QByteArray const& text)
{
    QJsonParseError error;
    QJsonDocument const document = QJsonDocument::fromJson(text, &error);
    if (error.error != QJsonParseError::NoError)
        qFatal("no JSON: %s", text.constData());
    return document.array();
}

QJsonObject outlineOf(QJsonArray const& files, int file, int outline)
{
    return files.at(file).toObject().value("outlines").toArray().at(outline).toObject();
}

} // namespace

void TestKpgeom::wrongUsageIsToldInOneLine_data()
{
    QTest::addColumn<QString>("arguments"); // separated by blanks, "''" is an empty one
    QTest::addColumn<QByteArray>("line");

    auto const row = [](char const* arguments, QByteArray const& line) {
        QTest::newRow(qPrintable("kpgeom " + QString(arguments))) << QString(arguments) << line;
    };
    auto const rowOf = [&row](char const* arguments, QByteArray const& fault) {
        QByteArray const command = QByteArray(arguments).split(' ').first();
        row(arguments, "kpgeom " + command + ": " + fault + " (see kpgeom " + command + " --help)");
    };
    row("''", "kpgeom: no command given (see kpgeom --help)");
    row("draw", "kpgeom: unknown command 'draw' (see kpgeom --help)");
    row("--json", "kpgeom: unknown command '--json' (see kpgeom --help)");
    row("help draw", "kpgeom: unknown command 'draw' (see kpgeom --help)");
    row("help info svg", "kpgeom: help explains one command (see kpgeom --help)");

    rowOf("info", "no file given");
    rowOf("info --nonsense a.xml", "Unknown option 'nonsense'.");
    rowOf("info --json=yes a.xml", "Unexpected value after '--json'.");
    rowOf("svg", "no file given");
    rowOf("svg a.xml --index 0", "--index takes a number from 1, not '0'");
    rowOf("svg a.xml --size 10", "--size takes a box like 240x160, not '10'");
    rowOf("svg a.xml --size 1x1 --size 2x2", "--size is given twice");
    for (QByteArray const precision : {"-1", "16", "1.5", "many", ""}) {
        rowOf("svg a.xml --precision=" + precision,
            "--precision takes a number from 0 to 15, not '" + precision + "'");
    }
    rowOf("svg a.xml -o ''", "no output file given (-o)");
    rowOf("check", "no file given");
    rowOf("svg --json a.xml", "Unknown option 'json'.");

    rowOf("render -o a.svg", "no file given");
    rowOf("render a.xml", "no output file given (-o)");
    rowOf("render a.xml -o", "Missing value after '-o'.");
    rowOf("render a.xml -o ''", "no output file given (-o)");
    rowOf("render a.xml -o -", "the format is none of svg, png, pdf, html and custgeom.xml");
    rowOf("render a.xml -o a.gif", "the format is none of svg, png, pdf, html and custgeom.xml");
    rowOf("render a.xml -o svg", "the format is none of svg, png, pdf, html and custgeom.xml");
    rowOf("render a.xml -o a.svg --format gif",
        "the format is none of svg, png, pdf, html and custgeom.xml");
    rowOf("render a.xml -o a.svg --index 0", "--index takes a number from 1, not '0'");
    rowOf("render a.xml -o a.svg --index -1", "--index takes a number from 1, not '-1'");
    rowOf("render a.xml -o a.svg --index 1.5", "--index takes a number from 1, not '1.5'");
    rowOf("render a.xml -o a.svg --index 99999999999",
        "--index takes a number from 1, not '99999999999'");
    rowOf("render a.xml -o a.svg --scale 0",
        "--scale takes a number greater than 0 and at most 1000000");
    rowOf("render a.xml -o a.svg --scale nan",
        "--scale takes a number greater than 0 and at most 1000000");
    rowOf("render a.xml -o a.svg --scale inf",
        "--scale takes a number greater than 0 and at most 1000000");
    rowOf("render a.xml -o a.svg --scale 2,5",
        "--scale takes a number greater than 0 and at most 1000000");
    rowOf("render a.xml -o a.svg --scale 2 --sheet",
        "--scale does not go with --sheet: figures fill their cells");
    rowOf(
        "render a.xml -o a.svg --fill-rule odd", "--fill-rule takes nonzero or evenodd, not 'odd'");
    rowOf("render a.xml -o a.svg --whole-files", "--whole-files goes with --sheet");
    rowOf("render a.xml -o a.svg --size 1x1 --size 2x2", "several sizes need --sheet");
    for (QByteArray const size : {"0x0", "1e9x1", "nanxnan", "-1x5", "10", "10x", "x10", "10x10x10",
             "infx1", "1x-0", "\303\2275x5", "10mmx10", "10x10ell", "50%x50%", "1x1e9mm",
             "1000001x1mm", "1000000x1in"}) {
        rowOf("render a.xml -o a.svg --size " + size,
            "--size takes a box like 240x160, not '" + size + "'");
        rowOf("resize a.xml -o a.xml --to 1x1 --from " + size,
            "--from and --to take a box like 240x160");
        rowOf("resize a.xml -o a.xml --from 1x1 --to " + size,
            "--from and --to take a box like 240x160");
    }

    rowOf("resize", "--from and --to take a box like 240x160");
    rowOf("resize a.xml -o b.xml --from 1x1", "--from and --to take a box like 240x160");
    rowOf("resize a.xml -o b.xml --to 1x1", "--from and --to take a box like 240x160");
    rowOf("resize -o b.xml --from 1x1 --to 1x1", "exactly one file is needed");
    rowOf("resize a.xml c.xml -o b.xml --from 1x1 --to 1x1", "exactly one file is needed");
    rowOf("resize a.xml --from 1x1 --to 1x1", "no output file given (-o)");
    rowOf("resize a.xml --from 1x1 --to 1x1 -o ''", "no output file given (-o)");

    rowOf("convert", "exactly one input file is needed");
    rowOf("convert a.svg b.svg -o c.xml", "exactly one input file is needed");
    rowOf("convert a.svg", "no output file given (-o)");
    rowOf("convert a.svg -o ''", "no output file given (-o)");
    rowOf("convert --font a.ttf -o c.xml", "--font and --text go together");
    rowOf("convert --text abc -o c.xml", "--font and --text go together");
    rowOf("convert --font a.ttf --text '' -o c.xml", "--font and --text go together");
    rowOf("convert a.svg --font a.ttf --text abc -o c.xml", "--font and --text take no input file");
    rowOf("convert a.svg --scale 0 -o c.xml",
        "--scale takes a number greater than 0 and at most 1000000, and an SVG file");
    rowOf("convert --font a.ttf --text abc --scale 1 -o c.xml",
        "--scale takes a number greater than 0 and at most 1000000, and an SVG file");
    rowOf("convert --font a.ttf --text abc --em -5 -o c.xml",
        "--em takes a number greater than 0 and at most 1000000, and a font");
    rowOf("convert a.svg --em 5 -o c.xml",
        "--em takes a number greater than 0 and at most 1000000, and a font");
    rowOf("convert --path M0 --font a.ttf --text abc -o c.xml",
        "--path does not go with --font and --text");
    rowOf("convert a.svg --path M0 -o c.xml", "--path takes no input file");
    rowOf("convert a.svg --size 10x10 -o c.xml", "--size goes with --path");
    rowOf("convert --path M0 --size 10 -o c.xml", "--size takes a box like 240x160, not '10'");
    rowOf("convert --path M0 --scale 0 -o c.xml",
        "--scale takes a number greater than 0 and at most 1000000, and an SVG file");
    rowOf("convert --path M0", "no output file given (-o)");
    rowOf("convert a.svg --form sax -o c.xml", "--form takes dom or stream, not 'sax'");
}

void TestKpgeom::wrongUsageIsToldInOneLine()
{
    QFETCH(QString, arguments);
    QFETCH(QByteArray, line);

    Workplace const place;
    place.write("a.xml", "<D>" + boxGeometry() + "</D>");
    QStringList list = arguments.split(' ', Qt::SkipEmptyParts);
    list.replaceInStrings("''", "");
    COMPARE_FAILURE(place.run(list), 2, line);
    QCOMPARE(place.entries(), QStringList("a.xml"));
}

void TestKpgeom::likelyNameIsSuggested_data()
{
    QTest::addColumn<QByteArray>("message"); // without where help is

    auto const row = [](char const* arguments, QByteArray const& message) {
        QTest::newRow(arguments) << message;
    };
    row("Info", "kpgeom: unknown command 'Info'; did you mean info?");
    row("color-", "kpgeom: unknown command 'color-'; did you mean color?");
    row("--verison", "kpgeom: unknown command '--verison'; did you mean --version?");
    row("hlep", "kpgeom: unknown command 'hlep'; did you mean help?");
    row("help rendr", "kpgeom: unknown command 'rendr'; did you mean render?");

    row("render a.xml --szie 1x1", "kpgeom render: Unknown option 'szie'. Did you mean --size?");
    row("render a.xml --back red",
        "kpgeom render: Unknown option 'back'. Did you mean --background?");
    row("fit --keep-curve", "kpgeom fit: Unknown option 'keep-curve'. Did you mean --keep-curves?");
    row("check --hepl", "kpgeom check: Unknown option 'hepl'. Did you mean --help?");
    row("check --size 1x1", "kpgeom check: Unknown option 'size'.");
    row("check -x", "kpgeom check: Unknown option 'x'.");

    row("units 5 kmm", "kpgeom units: there is no unit 'kmm'; did you mean mm?");
    row("units 5 mm ft_in", "kpgeom units: there is no unit 'ft_in'; did you mean ft-in?");
    row("pages tablod", "kpgeom pages: there is no page 'tablod'; did you mean Tabloid?");
    row("pages leter", "kpgeom pages: there is no page 'leter'; did you mean Letter?");
    row("colour red tnit=0.5", "kpgeom colour: there is no transform 'tnit'; did you mean tint?");
    row("colour gren", "kpgeom colour: 'gren' is no colour; did you mean green?");
    row("render a.xml -o a.svg --background bleu",
        "kpgeom render: --background takes a colour or none, not 'bleu'; did you mean blue?");
    row("recent lst", "kpgeom recent: unknown action 'lst'; did you mean list?");
}

void TestKpgeom::likelyNameIsSuggested()
{
    QFETCH(QByteArray, message);

    QByteArray const tool = message.left(message.indexOf(':'));
    COMPARE_FAILURE(Workplace().run(QString(QTest::currentDataTag()).split(' ')), 2,
        message + " (see " + tool + " --help)");
}

void TestKpgeom::numbersOfOptionsAreBounded_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QByteArray>("fault"); // empty if the number is taken
    auto const row = [](char const* name, QString const& arguments, QByteArray const& fault = {}) {
        QTest::newRow(name) << arguments << fault;
    };
    row("most decimals", "svg a.xml --precision 15");
    row("one decimal more", "svg a.xml --precision 16",
        "--precision takes a number from 0 to 15, not '16'");
    row("greatest blur", "blur a.ppm -o b.ppm -r 254");
    row("blur of one pixel more", "blur a.ppm -o b.ppm -r 255", "-r takes a number from 0 to 254");
    row("greatest tolerance", "fit a.svg b.svg -o b.xml --tolerance 100000");
    row("one unit of tolerance more", "fit a.svg b.svg -o b.xml --tolerance 100001",
        "--tolerance takes a number from 0 to 100000");
    row("most jobs", "convert a.svg b.svg -o {name}.xml -j 256");
    row("one job more", "convert a.svg b.svg -o {name}.xml -j 257",
        "--jobs takes a number from 1 to 256, not '257'");
    row("most dots an inch", "units --dpi 1000000 5 in");
    row("one dot an inch more", "units --dpi 1000001 5 in",
        "--dpi takes a number from 1 to 1000000");
    row("greatest scale", "convert a.svg -o b.xml --scale 1000000");
    row("a scale of one more", "convert a.svg -o b.xml --scale 1000001",
        "--scale takes a number greater than 0 and at most 1000000, and an SVG file");
}

void TestKpgeom::numbersOfOptionsAreBounded()
{
    QFETCH(QString, arguments);
    QFETCH(QByteArray, fault);
    Workplace const place;
    auto const picture = [](char const* sides) {
        return QByteArray("<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 ") + sides
            + "'><path d='M0 0H1V1Z'/></svg>";
    };
    place.write("a.xml", "<D>" + boxGeometry() + "</D>");
    place.write("a.svg", picture("1 1"));
    place.write("b.svg", picture("1 2"));
    place.write("a.ppm", "P6 1 1 255\nabc");
    QByteArray const command = "kpgeom " + arguments.split(' ').first().toUtf8();
    Result const result = place.run(arguments.split(' '));
    QVERIFY2(result.exited, result.err);
    // A tolerance so great leaves the rules open, which is a warning.
    bool const isTaken = result.code == 0 || result.code == 3;
    QVERIFY2(fault.isEmpty() ? isTaken : result.code == 2, result.err);
    if (!fault.isEmpty())
        QCOMPARE(result.err, command + ": " + fault + " (see " + command + " --help)\n");
}

void TestKpgeom::valuesHaveOtherSpellings_data()
{
    QTest::addColumn<QString>("arguments"); // with a place for the value
    QTest::addColumn<QString>("spelling");
    QTest::addColumn<QString>("value");
    auto const row = [](char const* arguments, char const* spelling, char const* value) {
        QTest::addRow("%s, %s", arguments, spelling)
            << QString(arguments) << QString::fromUtf8(spelling) << QString(value);
    };
    QString const font = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";
    for (char const* const spelling :
        {"240X96", "240\u00d796", "2.5inx1in", "2.5in X 1in", "2.5x1in", "180ptx72pt", "15x6pc",
            "240pxx96px", "240x96px", "63.5mm\u00d725.4MM", "2.5\"x1\"", "6.35cmx0'1\""})
        row("svg a.xml --size %1", spelling, "240x96");
    row("render a.xml --format svg -o - --size %1", "2.5x1in", "240x96");
    row("resize a.xml --from %1 --to 240x96 -o -", "1inx0.5in", "96x48");
    row("resize a.xml --from 240x96 --to %1 -o -", "1inx0.5in", "96x48");
    row("convert --path M0,0H9V9Z -o - --size %1", "1inx0.5in", "96x48");
    row("bind a.xml -o - --slices 1,1,1,1 --size %1", "1inx0.5in", "96x48");
    row("render a.xml --format svg -o - --scale %1", "50%", "0.5");
    row("convert a.svg -o - --scale %1", "250%", "2.5");
    row("bind a.svg -o - --slices 1,1,1,1 --scale %1", "250 %", "2.5");
    row("fit a.svg b.svg -o - --scale %1", "250%", "2.5");
    row("render a.xml --format svg -o - --width %1", "1in", "96");
    row("render a.xml --format svg -o - --height %1", "72 pt", "96");
    row("render a.xml --format svg -o - --margin %1", "0.25in", "24");
    row("bind a.xml -o - --size 200x200 --slices %1", "0.25in,0,18pt,6px", "24,0,24,6");
    row("fit a.svg b.svg -o - --tolerance %1", "0.5px", "0.5");
    row("fit a.svg%1 b.svg -o -", "@96X96", "@96x96");
    row("fit a.svg%1 b.svg -o -", "@96\u00d796", "@96x96");
    row("diff a.xml b.xml --tolerance %1", "1in", "96");
    row(qPrintable("convert -o - --text x --font " + font + " --em %1"), "1in", "96");
    row("render a.xml --format svg -o - --background %1", "rgb(0,0,255)", "blue");
    row("blur a.ppm --format ppm -o - -r 1 --shadow 4,4,%1", "rgba(0,0,0,50%)", "#80000000");
}

void TestKpgeom::valuesHaveOtherSpellings()
{
    QFETCH(QString, arguments);
    QFETCH(QString, spelling);
    QFETCH(QString, value);
    Workplace const place;
    place.write("a.xml", "<D>" + boxGeometry() + "</D>");
    place.write("b.xml", "<D>" + boxGeometry().replace("\"100\"", "\"150\"") + "</D>");
    place.write("a.ppm", "P6 1 1 255\nabc");
    for (QByteArray const& name : {QByteArray("a"), QByteArray("b")}) {
        QByteArray const side = name == "a" ? "96" : "192";
        place.write(name + ".svg",
            "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 96 " + side
                + "'><path d='M9 9H80V80Z'/></svg>");
    }
    auto const run = [&](QString const& text) {
        QStringList list = arguments.split(' ');
        return place.run(list.replaceInStrings("%1", text));
    };
    Result const expected = run(value);
    QVERIFY2(expected.exited && (expected.code == 0 || expected.code == 3), expected.err);
    Result const result = run(spelling);
    QVERIFY2(result.exited && result.code == expected.code, result.err);
    QCOMPARE(result.out, expected.out);
    QCOMPARE(result.err, expected.err);
}

void TestKpgeom::quietLeavesOutNotes_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<int>("code");
    QTest::addColumn<QByteArray>("errors"); // that are told all the same
    auto const row = [](char const* arguments, int code, char const* errors = "") {
        QTest::newRow(arguments) << QString(arguments) << code << QByteArray(errors);
    };
    char const* const noDocument = "a.svg: an SVG picture: kpgeom convert makes a document of it\n";
    row("info a.svg", 0);
    row("info a.svg missing", 1, "missing: No such file or directory\n");
    row("check a.svg", 0);
    row("check odd.xml", 3);
    row("check -R empty", 3);
    row("check a.svg missing -j 2", 1, "missing: No such file or directory\n");
    row("normalize odd.xml", 3);
    row("render a.xml -o out.svg --size 0.5x0.5", 0);
    row("resize a.xml -o - --from 100x60 --to 0.5x0.5", 0);
    row("convert a.svg -o -", 0);
    row("bind a.svg -o - --slices 1,1,1,2", 3);
    row("fit a.svg b.svg -o -", 3);
    row("recent list --config cfg", 3);
    // What else would fail without a word.
    row("svg a.svg", 1, noDocument);
    row("render a.svg -o out.svg", 1, noDocument);
    row("render a.svg -o out.svg --sheet", 1, noDocument);
    row("svg -R empty", 1, "empty: no file in it to be taken\n");
    row("fit a.svg b.svg -o - --strict", 1,
        "not written: not all coordinates are decided and exact\n");
    row("normalize missing", 1, "missing: No such file or directory\n");
    row("digest -c list", 3, "list:2:1: no line with a digest\n");
}

void TestKpgeom::quietLeavesOutNotes()
{
    QFETCH(QString, arguments);
    QFETCH(int, code);
    QFETCH(QByteArray, errors);
    Workplace const place;
    QDir(place.path()).mkdir("cfg");
    QDir(place.path()).mkdir("empty");
    place.write("cfg/RecentFiles.xml", "<RecentFiles><Other/></RecentFiles>");
    place.write("a.xml", "<D>" + boxGeometry() + "</D>");
    place.write("odd.xml", "<D>" + boxGeometry().replace("\"60\"", "\"six\"") + "</D>");
    for (QByteArray const& name : {QByteArray("a"), QByteArray("b")}) {
        place.write(name + ".svg",
            QByteArray("<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 9 ")
                + (name == "a" ? "9" : "18") + "'><path fill='red' d='M2 1H8V8Z'/></svg>");
    }
    place.write("list", place.run({"digest", "a.xml"}).out + "no digest\n");
    QStringList const list = arguments.split(' ');
    Result const loud = place.run(list);
    COMPARE_EXIT(loud, code);
    QVERIFY2(errors.isEmpty() ? !loud.err.isEmpty() || list.first() == "check"
                              : loud.err.contains(errors),
        loud.err.constData());
    for (QString const& option : {QString("-q"), QString("--quiet")}) {
        Result const quiet = place.run(list + QStringList(option));
        COMPARE_EXIT(quiet, code);
        QCOMPARE(quiet.out, loud.out);
        QCOMPARE(quiet.err, errors);
    }
}

void TestKpgeom::helpIsPrinted()
{
    Workplace const place;
    Result const result = place.run({"--help"});
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.err, QByteArray());
    QCOMPARE(result.out, QByteArray(R"(Usage: kpgeom COMMAND ...

Reads, draws, resizes, makes, checks and compares outlines; applies colour transforms;
converts lengths; blurs pictures; digests files; shows and changes recent files.

Commands:
  info       Says what outlines the documents hold.
  render     Draws outlines.
  resize     Fits the outlines of a document to a box of another size.
  convert    Makes a document of a picture, a stencil, path data or text in a font.
  fit        Learns how outlines follow their box from drawings at several sizes.
  bind       Binds the outlines of one drawing to its margins.
  svg        Prints outlines as the path data of SVG.
  check      Says what reading, saving and undo change in outlines.
  diff       Says where the outlines of two documents differ in meaning.
  normalize  Spells a document in the one way that line diffs can compare.
  colour     Applies colour transforms in order. Also "color".
  units      Converts a length to another unit, or to all.
  pages      Lists the predefined page sizes.
  blur       Blurs a picture, or puts a blurred shadow under it.
  digest     Prints the application's own digest of files. It is not the published MD5.
  recent     Shows and changes the recent files of a configuration directory.

Options:
  -h, --help     Print this help and exit.
  -V, --version  Print the version and exit.

"kpgeom help COMMAND" or "kpgeom COMMAND --help" explains a command.
"-" is standard input or output.
Exit status: 0 done, 1 bad input or a failed operation, 2 wrong usage, 3 done with warnings.
Of diff: 0 the same, 1 different, 2 anything else.
)"));
    for (QStringList const& asked :
        {QStringList {"-h"}, {"help"}, {"help", "help"}, {"help", "-h"}}) {
        Result const again = place.run(asked);
        COMPARE_EXIT(again, 0);
        QCOMPARE(again.out, result.out);
        QCOMPARE(again.err, QByteArray());
    }
}

/** As a message, so that whoever has forgotten a variable in a script does not take it for output. */
void TestKpgeom::helpIsPrintedWithoutArguments()
{
    Workplace const place;
    Result const result = place.run({});
    COMPARE_EXIT(result, 2);
    QCOMPARE(result.out, QByteArray());
    QCOMPARE(
        result.err, "kpgeom: no command given (see kpgeom --help)\n\n" + place.run({"--help"}).out);
}

void TestKpgeom::helpOfCommandIsPrinted_data()
{
    QTest::addColumn<QByteArray>("usage");

    QTest::newRow("info") << QByteArray("Usage: kpgeom info [options] FILE...\n");
    QTest::newRow("render") << QByteArray(
        "Usage: kpgeom render [options] FILE... -o OUT.{svg,png,pdf}\n");
    QTest::newRow("resize") << QByteArray(
        "Usage: kpgeom resize [options] FILE... --from WxH --to WxH -o OUT.xml\n");
    QTest::newRow("convert") << QByteArray("Usage: kpgeom convert [options] IN... -o OUT.xml\n");
    QTest::newRow("bind") << QByteArray(
        "Usage: kpgeom bind [options] FILE... --slices L,T,R,B -o OUT.xml\n");
    QTest::newRow("svg") << QByteArray("Usage: kpgeom svg [options] FILE...\n");
    QTest::newRow("check") << QByteArray("Usage: kpgeom check [options] FILE...\n");
    QTest::newRow("diff") << QByteArray("Usage: kpgeom diff [options] A B\n");
    QTest::newRow("normalize") << QByteArray("Usage: kpgeom normalize [options] FILE...\n");
    QTest::newRow("colour") << QByteArray(
        "Usage: kpgeom colour [options] COLOUR... [TRANSFORM=VALUE...]\n");
    QTest::newRow("units") << QByteArray("Usage: kpgeom units [options] VALUE UNIT [UNIT]\n");
    QTest::newRow("pages") << QByteArray("Usage: kpgeom pages [options] [NAME...]\n");
    QTest::newRow("blur") << QByteArray("Usage: kpgeom blur [options] IN... -o OUT -r RADIUS\n");
    QTest::newRow("digest") << QByteArray("Usage: kpgeom digest [options] FILE...\n");
    QTest::newRow("recent") << QByteArray("Usage: kpgeom recent [options] ACTION [OPERAND...]\n");
}

void TestKpgeom::helpOfCommandIsPrinted()
{
    QFETCH(QByteArray, usage);

    Workplace const place;
    QString const command = QTest::currentDataTag();
    for (QStringList const& asked :
        {QStringList {command, "--help"}, {command, "-h"}, {"help", command}}) {
        Result const result = place.run(asked);
        COMPARE_EXIT(result, 0);
        QCOMPARE(result.err, QByteArray());
        QCOMPARE(result.out.left(usage.size()), usage);
        QVERIFY2(result.out.contains("\n  -h, --help"), result.out);
    }
}

void TestKpgeom::versionIsPrinted()
{
    for (QString const& option : {QString("--version"), QString("-V")}) {
        Result const result = Workplace().run({option});
        COMPARE_EXIT(result, 0);
        QCOMPARE(result.out, QByteArray("kpgeom " KPGEOM_VERSION "\n"));
        QCOMPARE(result.err, QByteArray());
    }
}

void TestKpgeom::infoAlignsItsTable()
{
    Workplace const place;
    place.write("a.xml",
        "<D><S Name=\"Box\">" + boxGeometry()
            + "</S>"
              "<S Name=\" two \n words \"><Geometry Closed=\"0\" NoFill=\"1\" NoLine=\"1\">"
              "<MoveTo><X V=\"-12.5\" B=\"0\"/><Y V=\"0\" B=\"3\"/></MoveTo>"
              "<LineTo><X V=\"-12.5\" B=\"4\"/><Y V=\"10\" B=\"5\"/></LineTo>"
              "<CurveTo><X V=\"10\" B=\"6\"/><Y V=\"10\" B=\"7\"/><A V=\"0\"/><B V=\"10\"/>"
              "<C V=\"5\"/><D V=\"10\"/></CurveTo>"
              "<Ellipse><X V=\"0\" B=\"8\"/><Y V=\"0\" B=\"-1\"/><A V=\"1\"/><B V=\"2\"/></Ellipse>"
              "</Geometry></S><Geometry/></D>");
    Result const result = place.run({"info", "a.xml"});
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.err, QByteArray());
    QCOMPARE(QString::fromUtf8(result.out),
        // clang-format off
        QString("a.xml: 3 outlines\n"
                "#  name       flags          move  line  curve  ellipse  bounds            direction         coordinates by rule\n"
                "1  Box        closed            1     3      0        0  0,0 100x60        clockwise         width 4, height 4\n"
                "2  two words  nofill,noline     1     1      1        1  -12.5,-2 22.5x12  counterclockwise  "
                "absolute 1, width 3, height 3, right 1, bottom 1, side 1, right-side 1, bottom-side 1, unknown 2\n"
                "3  #3         -                 0     0      0        0  -                 none              -\n"));
    // clang-format on
}

void TestKpgeom::infoOfDocumentsWithoutOutlines()
{
    Workplace const place;
    place.write("a.xml", "<D/>");
    Result const result = place.run({"info", "a.xml"});
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.out, QByteArray("a.xml: 0 outlines\n"));
    QCOMPARE(result.err, QByteArray());
}

void TestKpgeom::infoSeparatesFiles()
{
    Workplace const place;
    place.write("a.xml", "<D/>");
    place.write("b.xml", boxGeometry());
    Result const result = place.run({"info", "a.xml", "b.xml"});
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.out,
        QByteArray("a.xml: 0 outlines\n"
                   "\n"
                   "b.xml: 1 outline\n"
                   "#  name  flags   move  line  curve  ellipse  bounds      direction  "
                   "coordinates by rule\n"
                   "1  #1    closed     1     3      0        0  0,0 100x60  clockwise  "
                   "width 4, height 4\n"));
}

void TestKpgeom::infoFindsNestedOutlines()
{
    Workplace const place;
    place.write("a.xml",
        "<Geometry Closed=\"1\"><Other><Geometry Closed=\"0\"/></Other><MoveTo><Geometry/>"
        "</MoveTo></Geometry>");
    QJsonArray const files = jsonOf(place.run({"info", "--json", "a.xml"}).out);
    QCOMPARE(files.at(0).toObject().value("outlines").toArray().count(), 3);
    QCOMPARE(outlineOf(files, 0, 0).value("closed").toBool(), true);
    QCOMPARE(outlineOf(files, 0, 1).value("closed").toBool(), false);
    QCOMPARE(outlineOf(files, 0, 2).value("index").toInt(), 3);
}

void TestKpgeom::infoCutsLongNames()
{
    Workplace const place;
    place.write("a.xml",
        "<D><S Name=\"" + QByteArray(40, 'a') + "\"><Geometry/></S><S Name=\"" + QByteArray(41, 'b')
            + "\"><Geometry/></S><S Name=\"\302\233[31m\"><Geometry/></S></D>");
    QString const text = QString::fromUtf8(place.run({"info", "a.xml"}).out);
    QVERIFY2(text.contains("\n1  " + QString(40, 'a') + "  -"), qPrintable(text));
    QVERIFY2(text.contains("\n2  " + QString(39, 'b') + QChar(0x2026) + "  -"), qPrintable(text));
    // A terminal takes the character for the start of a command.
    QVERIFY2(text.contains(QStringLiteral("\n3  ") + QChar(0xfffd) + "[31m  "), qPrintable(text));
}

void TestKpgeom::infoGoesOnAfterBadFile()
{
    Workplace const place;
    place.write("a.xml", "<D>\n");
    place.write("b.xml", "<D/>");
    Result const result = place.run({"info", "a.xml", "missing.xml", "b.xml"});
    COMPARE_EXIT(result, 1);
    QCOMPARE(result.out, QByteArray("b.xml: 0 outlines\n"));
    QCOMPARE(result.err,
        QByteArray("a.xml:2:1: Premature end of document.\n"
                   "missing.xml: No such file or directory\n"));
}

void TestKpgeom::infoReadsStandardInput()
{
    Workplace const place;
    Result const result = place.run({"info", "-"}, {"<D/>"});
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.out, QByteArray("<stdin>: 0 outlines\n"));
    COMPARE_FAILURE(place.run({"info", "-"}, {"<D>\n</E>"}), 1,
        "<stdin>:2:5: Opening and ending tag mismatch.");
}

void TestKpgeom::infoAsJson()
{
    Workplace const place;
    place.write("a.xml",
        "<D><S Name=\"Box \303\251 &quot;\">" + boxGeometry("Closed=\"1\" NoLine=\"1\"")
            + "</S><Geometry NoFill=\"1\"/></D>");
    place.write("b.xml", "<D/>");
    Result const result = place.run({"info", "--json", "a.xml", "b.xml"});
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.err, QByteArray());
    QJsonArray const expected = jsonOf(R"json([
        {"file": "a.xml", "outlines": [
            {"index": 1, "name": "Box é \"", "closed": true, "noFill": false, "noLine": true,
             "segments": {"moveTo": 1, "lineTo": 3, "curveTo": 0, "ellipse": 0},
             "bounds": {"x": 0, "y": 0, "width": 100, "height": 60},
             "direction": "clockwise",
             "rules": {"absolute": 0, "width": 4, "height": 4, "right": 0, "bottom": 0,
                       "side": 0, "rightLessSide": 0, "bottomLessSide": 0, "unknown": 0}},
            {"index": 2, "name": "", "closed": false, "noFill": true, "noLine": false,
             "segments": {"moveTo": 0, "lineTo": 0, "curveTo": 0, "ellipse": 0},
             "bounds": null,
             "direction": "none",
             "rules": {"absolute": 0, "width": 0, "height": 0, "right": 0, "bottom": 0,
                       "side": 0, "rightLessSide": 0, "bottomLessSide": 0, "unknown": 0}}]},
        {"file": "b.xml", "outlines": []}])json");
    QCOMPARE(jsonOf(result.out), expected);
}

void TestKpgeom::infoAsJsonStaysValid_data()
{
    QTest::addColumn<QByteArray>("x");

    for (char const* const x : {"nan", "inf", "-inf", "1e308", "-1e308", "1e127", "1e129", "5e-324",
             "abc", "", "1e999", "0x10"})
        QTest::newRow(*x ? x : "empty") << QByteArray(x);
}

void TestKpgeom::infoAsJsonStaysValid()
{
    QFETCH(QByteArray, x);

    Workplace const place;
    QByteArray const coordinates = "<X V=\"" + x + "\"/><Y V=\"1\"/><A V=\"" + x + "\"/><B V=\"" + x
        + "\"/><C V=\"5\"/><D V=\"6\"/>";
    place.write("a.xml",
        "<Geometry Closed=\"1\"><MoveTo>" + coordinates + "</MoveTo><LineTo>" + coordinates
            + "</LineTo><CurveTo>" + coordinates + "</CurveTo><Ellipse>" + coordinates
            + "</Ellipse><LineTo><X V=\"7\"/></LineTo></Geometry>");
    Result const result = place.run({"info", "--json", "a.xml"});
    COMPARE_EXIT(result, 0);
    QJsonArray const files = jsonOf(result.out);
    QCOMPARE(outlineOf(files, 0, 0).value("segments").toObject().value("lineTo").toInt(), 2);
    QJsonValue const bounds = outlineOf(files, 0, 0).value("bounds");
    QVERIFY(bounds.isNull() || bounds.isObject());
    for (QJsonValue const& number : bounds.toObject())
        QVERIFY2(number.isDouble() || number.isNull(), result.out);
}

void TestKpgeom::manualIsFreeOfWarnings()
{
    QString const man = QStandardPaths::findExecutable("man");
    QVERIFY2(!man.isEmpty(), "the man program is not installed");
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("MANWIDTH", "80");
    environment.insert("MANROFFSEQ", "");
    environment.insert("LC_ALL", "C.UTF-8");
    process.setProcessEnvironment(environment);
    process.start(man, {"--warnings", "-E", "UTF-8", "-l", KPGEOM_MANUAL});
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 0);
    QCOMPARE(process.readAllStandardError(), QByteArray());
    QVERIFY(process.readAllStandardOutput().contains("EXIT STATUS"));
}

void TestKpgeom::manualNamesEveryOption_data()
{
    QTest::addColumn<QString>("command");

    QStringList const all = commands();
    QVERIFY(all.contains("info") && all.contains("recent"));
    for (QString const& command : all)
        QTest::newRow(qPrintable(command)) << command;
}

void TestKpgeom::manualNamesEveryOption()
{
    QFETCH(QString, command);

    QFile manual(KPGEOM_MANUAL);
    QVERIFY(manual.open(QIODevice::ReadOnly));
    QString text = QString::fromUtf8(manual.readAll()).remove('\\');
    // The section of the command, then what holds for all of them.
    int const start = text.indexOf("\n.SS " + command + "\n");
    QVERIFY(start > 0);
    int const end = text.indexOf("\n.S", start + 1);
    QString const section =
        text.mid(start, end - start) + text.mid(text.indexOf("\n.SH OPTIONS\n"));
    QVERIFY(text.contains("kpgeom " + command));

    QString const help = QString::fromUtf8(Workplace().run({command, "--help"}).out);
    QRegularExpression const option(
        "^  (?:-\\w, )?(--[a-z-]+)", QRegularExpression::MultilineOption);
    int count = 0;
    for (auto match = option.globalMatch(help); match.hasNext(); ++count) {
        QString const name = match.next().captured(1);
        QRegularExpression const word(QRegularExpression::escape(name) + "(?![a-z-])");
        QVERIFY2(section.contains(word), qPrintable(name));
    }
    QVERIFY(count > 0);
}

void TestKpgeom::manualIsMadeOfWholeFormAlone_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    QTest::addColumn<QByteArray>("fault"); // nothing if it is made

    auto const row = [](char const* name, QByteArray const& before, QByteArray const& after,
                         QByteArray const& fault) {
        QTest::newRow(name) << before << after << fault;
    };
    row("as it is", "", "", "");
    row("other prose", "Draw a contact sheet", "Draw a sheet", "");
    row("last option left out", "@--fill-rule@\n", "", "--fill-rule is not explained");
    row("option left out", "@--dpi@\n", "", "@--background@ is not the next option");
    row("option that there is not", "@--dpi@\n", "@--dots@\n", "@--dots@ is not the next option");
    row("option of no command", ".SH EXAMPLES\n", ".SH EXAMPLES\n@--dpi@\n",
        "@--dpi@ is not the next option");
    row("order of options", "@--from@\n", "@--to@\n@--from@\n", "@--to@ is not the next option");
    row("shared option left out", "@--watch@\n", "", "--watch is not explained");
    row("section of shared options left out", ".SH MANY FILES\n", ".SH OTHERS\n",
        "there is no .SH MANY FILES");
    row("option of the tool left out", "@--version@\n", "", "--version is not explained");
    row("command left out", ".SS svg\n", ".PP\n", "check is not the next command");
    row("last command left out", ".SS recent\n", ".PP\n", "the command recent has no section");
    row("command that there is not", ".SS svg\n", ".SS path\n", "path is not the next command");
    row("no version", "@version@", "1", "there is no @version@");
}

void TestKpgeom::manualIsMadeOfWholeFormAlone()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    QFETCH(QByteArray, fault);

    QFile file(KPGEOM_MANUAL_FORM);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QByteArray form = file.readAll();
    QVERIFY(form.contains(before));
    if (!before.isEmpty())
        form.replace(form.indexOf(before), before.size(), after);
    Workplace const place;
    place.write("form", form);
    Workplace::Start start;
    start.program = KPGEOM_TABLES;
    Result const result = place.run({"manual", "form", "made"}, start);
    if (fault.isEmpty()) {
        COMPARE_EXIT(result, 0);
        QByteArray const made = place.read("made");
        QVERIFY(made.contains(".TP\n.BR \\-o \", \" \\-\\-output \" \\fIOUT\\fR\"\n"));
        QVERIFY(made.contains(".TP\n.BR \\-\\-size \" \\fIW\\fRx\\fIH\\fR\"\n"));
        QVERIFY(made.contains(".TP\n.BR \\-\\-whole\\-files\n"));
        QVERIFY(!made.contains('@' + QByteArray("--")));
    } else {
        QCOMPARE(result.code, 1);
        QVERIFY2(result.err.startsWith("form:"), result.err.constData());
        QVERIFY2(result.err.contains(": " + fault + "\n"), result.err.constData());
        QVERIFY(!place.entries().contains("made"));
    }
}

QTEST_GUILESS_MAIN(TestKpgeom)

#include "tst_kpgeom.moc"
