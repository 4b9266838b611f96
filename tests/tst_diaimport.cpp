// SPDX-License-Identifier: MIT
#include "export/pathdata.h"
#include "import/anyimport.h"
#include "outlinetesting.h"

class TestDiaImport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void importsElements_data();
    void importsElements();
    void fillsAndStrokesByDiasRules_data();
    void fillsAndStrokesByDiasRules();
    void namesOutlinesAfterTheShape();
    void keepsUnitsAtAScale();
    void coversInvisibleElements();
    void takesTheAspectRatioOfTheDefaultSize_data();
    void takesTheAspectRatioOfTheDefaultSize();
    void givesALevelLineABox();
    void saysWhatIsLeftOut_data();
    void saysWhatIsLeftOut();
    void failsInOneLine_data();
    void failsInOneLine();
    void everyBeginningIsRefused();
};

namespace {

QByteArray shapeFile(QByteArray const& elements, QByteArray const& properties = {})
{
    return "<?xml version='1.0'?>\n<shape xmlns='http://www.daa.com.au/~james/dia-shape-ns'"
           " xmlns:svg='http://www.w3.org/2000/svg'><name>Set - Thing</name>"
        + properties + "<svg:svg>" + elements + "</svg:svg></shape>";
}

struct Outcome
{
    std::optional<ImportedPictures> pictures;
    QStringList lines;

    ImportedOutlines const& picture() const { return pictures->front(); }

    QStringList data() const
    {
        QStringList list;
        for (ImportedOutline const& outline : picture().outlines)
            list << pathData(*outline.list, {}).value();
        return list;
    }
};

Outcome imported(QByteArray const& content, double scale = 1.0)
{
    Outcome outcome;
    Diagnostics diagnostics;
    outcome.pictures = importAny(content, {"in", scale, [] { return QStringList(); }}, diagnostics);
    for (Diagnostic const& diagnostic : diagnostics) {
        outcome.lines << (diagnostic.line > 0
                ? QString("%1:%2: ").arg(diagnostic.line).arg(diagnostic.column) + diagnostic.text
                : diagnostic.text);
    }
    return outcome;
}

} // namespace

void TestDiaImport::importsElements_data()
{
    QTest::addColumn<QByteArray>("element");
    QTest::addColumn<QString>("data"); // in the box of the drawing
    QTest::addColumn<QSizeF>("box");

    auto const row = [](char const* name, char const* element, char const* data,
                         QSizeF const& box) {
        QTest::newRow(name) << QByteArray(element) << QString(data) << box;
    };
    row("line", "<svg:line x1='-5' y1='1' x2='5' y2='9'/>", "M0 0 L10 8", {10, 8});
    row("polyline", "<svg:polyline points='0,0 10,0 10,5'/>", "M0 0 L10 0 L10 5", {10, 5});
    row("polygon", "<svg:polygon points='0,0 10,0 10,5'/>", "M0 0 L10 0 L10 5 L0 0 Z", {10, 5});
    row("rectangle", "<svg:rect x='3' y='4' width='20' height='10'/>",
        "M0 0 L20 0 L20 10 L0 10 L0 0 Z", {20, 10});
    row("path", "<svg:path d='M2 3h10v5z'/>", "M0 0 L10 0 L10 5 L0 0 Z", {10, 5});
    row("group", "<svg:g><svg:g><svg:line x1='-5' y1='1' x2='5' y2='9'/></svg:g></svg:g>",
        "M0 0 L10 8", {10, 8});
    row("transformation is ignored",
        "<svg:line transform='scale(9)' x1='-5' y1='1' x2='5' y2='9'/>", "M0 0 L10 8", {10, 8});
    row("escaped name", "<svg:line id='&lt;&quot;' x1='-5' y1='1' x2='5' y2='9'/>", "M0 0 L10 8",
        {10, 8});
}

void TestDiaImport::importsElements()
{
    QFETCH(QByteArray, element);
    QFETCH(QString, data);
    QFETCH(QSizeF, box);

    Outcome const outcome = imported(shapeFile(element));
    QCOMPARE(outcome.lines, QStringList());
    QCOMPARE(outcome.data(), QStringList(data));
    QCOMPARE(outcome.picture().size, box);
}

void TestDiaImport::fillsAndStrokesByDiasRules_data()
{
    QTest::addColumn<QByteArray>("style");
    QTest::addColumn<QString>("flags");
    QTest::addColumn<QStringList>("lines");

    auto const row = [](char const* style, char const* flags, QStringList const& lines = {}) {
        QTest::newRow(style) << QByteArray(style) << QString(flags) << lines;
    };
    QString const coloured = "1 shape with a colour other than black: not kept";
    row("", "line");
    row("fill: foreground", "fill line");
    row("fill:fg;", "fill line");
    row("fill: background", "fill line", {coloured});
    row("fill: default", "fill line", {coloured});
    row("fill: inverse", "fill line");
    row("fill: none", "line");
    row("fill: nofill", "line");
    row("stroke: none; fill: fg", "fill");
    row("stroke: default", "line");
    row("stroke: inverse", "line", {coloured});
    row("stroke: text", "line");
    row("stroke: #ff0000", "line", {coloured});
    row("stroke: nonsense; fill", "line");
    row("fill: fg; fill: none", "line");
    row("fill: foreground stroke-width: 2", "fill line");
    row("stroke-width: 0", "line");
    row("stroke-width: 3", "line", {"1 shape with a line width other than 1: not kept"});
    row("stroke-pattern: dashed; stroke-dasharray: 2; stroke-width: 1", "line",
        {"1 shape with a dashed line: not kept"});
    row("stroke-pattern: default; stroke-dasharray: none", "line");
}

void TestDiaImport::fillsAndStrokesByDiasRules()
{
    QFETCH(QByteArray, style);
    QFETCH(QString, flags);
    QFETCH(QStringList, lines);

    QByteArray const geometry = " x='0' y='0' width='20' height='10'/>";
    for (QByteArray const& element : {"<svg:rect style='" + style + "'" + geometry,
             "<svg:g style='" + style + "'><svg:rect" + geometry + "</svg:g>"}) {
        Outcome const outcome = imported(shapeFile(element));
        QVERIFY2(outcome.pictures, qPrintable(outcome.lines.join('\n')));
        QCOMPARE(outcome.lines, lines);
        QCOMPARE(outcome.picture().outlines.size(), std::size_t(1));
        KpPathSegList const& list = *outcome.picture().outlines.front().list;
        QStringList found;
        if (!list.noFill)
            found << "fill";
        if (!list.noLine)
            found << "line";
        QCOMPARE(found.join(' '), flags);
    }
}

void TestDiaImport::namesOutlinesAfterTheShape()
{
    QByteArray const line = "<svg:line x1='0' y1='0' x2='10' y2='8'/>";
    QCOMPARE(imported(shapeFile(line)).picture().outlines.front().name, QString("Set - Thing"));
    Outcome const two = imported(shapeFile(line + line));
    QCOMPARE(two.picture().outlines.at(0).name, QString("Set - Thing 1"));
    QCOMPARE(two.picture().outlines.at(1).name, QString("Set - Thing 2"));
}

void TestDiaImport::keepsUnitsAtAScale()
{
    QByteArray const file = shapeFile("<svg:line x1='1' y1='1' x2='3' y2='2'/>");
    QCOMPARE(imported(file, 50).data(), QStringList("M0 0 L100 50"));
    // By default lines are long enough to be drawn.
    QCOMPARE(imported(file, 0).data(), QStringList("M0 0 L10000 5000"));
}

void TestDiaImport::coversInvisibleElements()
{
    Outcome const outcome =
        imported(shapeFile("<svg:line x1='0' y1='0' x2='10' y2='8'/><svg:g style='stroke: none'>"
                           "<svg:line x1='-10' y1='-2' x2='-10' y2='-2'/><svg:rect x='0' y='0' "
                           "width='20' height='30'/>"
                           "</svg:g>"));
    QCOMPARE(outcome.picture().size, QSizeF(30, 32));
    QCOMPARE(outcome.data(), QStringList("M10 2 L20 10"));
    QCOMPARE(outcome.lines, QStringList("1 shape painted with nothing: left out"));
}

void TestDiaImport::takesTheAspectRatioOfTheDefaultSize_data()
{
    QTest::addColumn<QByteArray>("properties");
    QTest::addColumn<QSizeF>("box");

    auto const row = [](char const* name, char const* properties, QSizeF const& box) {
        QTest::newRow(name) << QByteArray(properties) << box;
    };
    char const both[] = "<default-width>3cm</default-width><default-height> 2 </default-height>";
    row("none", "", {30, 10});
    row("both", both, {30, 20});
    row("free", qPrintable(QString(both) + "<aspectratio type='free'/>"), {30, 20});
    row("fixed", qPrintable(QString(both) + "<aspectratio type='fixed'/>"), {30, 10});
    row("width alone", "<default-width>3cm</default-width>", {30, 10});
    row("no numbers", "<default-width>wide</default-width><default-height>nan</default-height>",
        {30, 10});
    row("higher than wide", "<default-width>1</default-width><default-height>2</default-height>",
        {15, 30});
}

void TestDiaImport::takesTheAspectRatioOfTheDefaultSize()
{
    QFETCH(QByteArray, properties);
    QFETCH(QSizeF, box);

    Outcome const outcome =
        imported(shapeFile("<svg:line x1='0' y1='0' x2='30' y2='10'/>", properties));
    QCOMPARE(outcome.picture().size, box);
    QCOMPARE(
        outcome.data(), QStringList(QString("M0 0 L%1 %2").arg(box.width()).arg(box.height())));
}

void TestDiaImport::givesALevelLineABox()
{
    Outcome const outcome = imported(shapeFile("<svg:line x1='0' y1='7' x2='30' y2='7'/>"), 0);
    QCOMPARE(outcome.picture().size, QSizeF(10000, 1));
    QCOMPARE(outcome.data(), QStringList("M0 0 L10000 0"));
}

void TestDiaImport::saysWhatIsLeftOut_data()
{
    QTest::addColumn<QByteArray>("elements");
    QTest::addColumn<QString>("line");

    QTest::newRow("text") << QByteArray("<svg:text x='0' y='0'>a</svg:text>") << "1 text: left out";
    QTest::newRow("image") << QByteArray("<svg:image width='9' height='9'/><svg:image/>")
                           << "2 image: left out";
    QTest::newRow("path data") << QByteArray("<svg:path d='M0 0L5 5 L6'/>")
                               << "2:198: path data, character 12: a number is missing at the end; "
                                  "drawn up to there";
}

void TestDiaImport::saysWhatIsLeftOut()
{
    QFETCH(QByteArray, elements);
    QFETCH(QString, line);

    Outcome const outcome =
        imported(shapeFile("<svg:line x1='0' y1='0' x2='30' y2='10'/>" + elements));
    QVERIFY(outcome.pictures);
    QCOMPARE(outcome.data().first(), QString("M0 0 L30 10"));
    QCOMPARE(outcome.lines, QStringList(line));
}

void TestDiaImport::failsInOneLine_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("line");

    QByteArray const root = "<shape xmlns='http://www.daa.com.au/~james/dia-shape-ns'>";
    QTest::newRow("no drawing") << root + "<name>a</name></shape>"
                                << "there is no svg element in the shape";
    QTest::newRow("empty drawing") << shapeFile("") << "the shape draws nothing";
    QTest::newRow("a point") << shapeFile("<svg:line x1='1' y1='1' x2='1' y2='1'/>")
                             << "the shape draws nothing";
    QTest::newRow("NaN") << shapeFile("<svg:line x1='nan' y1='1' x2='1' y2='inf'/>")
                         << "the shape draws nothing";
    QTest::newRow("unclosed") << root + "<svg>"
                              << "1:63: Premature end of document.";
    QTest::newRow("undeclared prefix") << root + "<svg:svg/></shape>"
                                       << "1:68: Namespace prefix 'svg' not declared";
    QTest::newRow("another shape") << QByteArray("<shape/>") << "not an SVG picture";
    QTest::newRow("deep") << shapeFile(
        QByteArray("<svg:g>").repeated(1001) + QByteArray("</svg:g>").repeated(1001))
                          << "2:7123: more than 1000 nested elements";
}

void TestDiaImport::failsInOneLine()
{
    QFETCH(QByteArray, file);
    QFETCH(QString, line);

    Outcome const outcome = imported(file);
    QVERIFY(!outcome.pictures);
    QCOMPARE(outcome.lines, QStringList(line));
}

void TestDiaImport::everyBeginningIsRefused()
{
    QByteArray const file = shapeFile("<svg:path d='M0 0L5 5'/>");
    for (int size = 0; size < file.size(); ++size) {
        Outcome const outcome = imported(file.left(size));
        QVERIFY(!outcome.pictures);
        QCOMPARE(outcome.lines.size(), 1);
    }
}

QTEST_MAIN(TestDiaImport)

#include "tst_diaimport.moc"
