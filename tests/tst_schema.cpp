// SPDX-License-Identifier: MIT
#include "check/outlineaudit.h"
#include "check/outlinecheck.h"
#include "document/shapes.h"
#include "documenttesting.h"
#include "kpgeomtesting.h"
#include "schematesting.h"

#include <QStandardPaths>

using namespace DocumentTesting;
using namespace KpgeomTesting;
using SchemaTesting::Schema;

namespace {

QByteArray fileContent(QString const& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("%s cannot be read", qPrintable(path));
    return file.readAll();
}

/** The documents and pictures in a folder of the examples. */
QDir exampleFiles(QString const& folder)
{
    return QDir(QString(KPGEOMETRY_EXAMPLES "/") + folder, "*.xml *.svg");
}

/** Every kind, a coordinate of every rule, in a document that is valid. */
QByteArray const whole =
    "<Shapes><Shape Name=\"a\" Width=\"100\" Height=\"50\" FillRule=\"evenodd\">"
    "<Geometry Closed=\"1\" NoFill=\"0\" NoLine=\"true\">"
    "<MoveTo><X V=\"1\" B=\"0\"/><Y V=\"2\"/></MoveTo>"
    "<LineTo><X V=\"3\" B=\"3\" P=\"97\"/><Y V=\"4\" B=\"2\" P=\"0.08\"/></LineTo>"
    "<CurveTo><X V=\"5\" B=\"1\" P=\"0.05\"/><Y V=\"6\" B=\"4\" P=\"44\"/><A V=\"7\" B=\"5\" "
    "P=\"0.14\"/>"
    "<B V=\"8\" B=\"7\" P=\"0.84\"/><C V=\"9\" B=\"6\" P=\"1.82\"/><D V=\"-1.5e-07\"/></CurveTo>"
    "<Ellipse><X V=\"10\"/><Y V=\"11\"/><A V=\"12\"/><B V=\"13\"/></Ellipse>"
    "</Geometry></Shape></Shapes>";

/** An outline whose values are those that documents hold. */
void fillPlainly(KpPathSegList& list, QRandomGenerator& random)
{
    auto const real = [&random] {
        auto const base = static_cast<qint16>(random.bounded(8));
        return KpReal(base, base == 0 ? 0.0 : random.bounded(1000) / 64.0,
            (random.generateDouble() - 0.5) * std::pow(10.0, random.bounded(-9, 9)));
    };
    auto const point = [&real] { return KpPoint(real(), real()); };
    list.noFill = random.bounded(2) == 1;
    list.noLine = random.bounded(2) == 1;
    list.addTail(new KpPathSegMoveTo(point(), nullptr));
    for (int i = 0; i < 10; ++i) {
        list.addTail(new KpPathSegLineTo(point(), nullptr));
        list.addTail(new KpPathSegCurveTo(point(), point(), point(), nullptr));
        list.addTail(new KpPathSegEllipse(point(), real(), real(), nullptr));
    }
}

/** Calls `visit` with each element in another one. */
template <class Visit> void forEachChild(MarkupNode const& element, Visit const& visit)
{
    for (MarkupNode const& child : element.children) {
        if (child.kind == MarkupNode::Kind::Element)
            visit(child);
    }
}

/** Whether each coordinate has a rate just where its rule takes one, and the outline its flag. */
bool isComplete(Outline const& outline)
{
    bool isComplete = outline.markup->attribute("Closed") != nullptr;
    forEachChild(*outline.markup, [&isComplete](MarkupNode const& segment) {
        forEachChild(segment, [&isComplete](MarkupNode const& real) {
            MarkupAttribute const* const base = real.attribute("B");
            bool const isBound = base && base->value.toInt() != 0;
            isComplete = isComplete && (real.attribute("P") != nullptr) == isBound;
        });
    });
    return isComplete;
}

/** Whether everything in the outlines is complete, and taken by both readers as it looks. */
bool isGood(QByteArray const& text)
{
    int findings = findingsIn(text, CheckScope::Reading).size();
    OutlineAudit const audit(
        [&findings](OutlineAudit::Finding, MarkupNode const&, QString const&) { ++findings; });
    forEachOutline(text, [&](Outline const& outline) {
        audit.geometry(*outline.markup, *outline.list);
        findings += isComplete(outline) ? 0 : 1;
    });
    return findings == 0;
}

} // namespace

/** Valid is what is written here, and not what readers would pass over in silence. */
class TestSchema : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void outputOfTheToolIsValid_data();
    void outputOfTheToolIsValid();
    void exampleDocumentsAreValid();
    void outputOfTheLibraryIsValid();
    void whatNamesNothingIsValid_data();
    void whatNamesNothingIsValid();
    void everyRuleIsHeld_data();
    void everyRuleIsHeld();
    void shapesHaveTheirOwnRules_data();
    void shapesHaveTheirOwnRules();
    void validIsWhatReadersTakeAsItLooks();
};

void TestSchema::outputOfTheToolIsValid_data()
{
    QTest::addColumn<QString>("schema");
    QTest::addColumn<QString>("arguments"); // of kpgeom, which makes out.xml

    auto const row = [](char const* schema, char const* arguments) {
        QTest::newRow(arguments) << schema << arguments;
    };
    row("shapes.rng", "convert picture.svg -o out.xml");
    row("shapes.rng", "convert picture.svg -o out.xml --form dom");
    row("shapes.rng",
        "convert --font /usr/share/fonts/truetype/dejavu/DejaVuSans.ttf --text A%8 -o out.xml");
    row("shapes.rng", "resize whole.xml --from 100x50 --to 33x77 -o out.xml");
    row("geometry.rng", "resize foreign.xml --from 100x50 --to 33x77 -o out.xml");
    row("shapes.rng", "normalize whole.xml -o out.xml");
    row("geometry.rng", "normalize foreign.xml -o out.xml");
    row("geometry.rng", "normalize misread.xml -o out.xml");
    row("shapes.rng", "fit bubble-wide.svg bubble-tall.svg -o out.xml");
    row("shapes.rng", "convert --path M0,0H9V9a4,4,0,1,1,-9,0Z -o out.xml");
    row("shapes.rng", "convert stencil.shape -o out.xml");
    row("shapes.rng", "convert drawing.fodg -o out.xml");
    row("shapes.rng", "convert custom.xml -o out.xml");
    row("shapes.rng", "bind pennant.svg --slices 44,44,44,44 -o out.xml");
    row("shapes.rng", "bind pennant.svg --slices 44,44,44,30 --keep-corners -o out.xml");
    for (QString const& name : exampleFiles("documents").entryList()) {
        row("shapes.rng", qPrintable("normalize " + name + " -o out.xml"));
        row("shapes.rng",
            qPrintable("resize " + name + " --from 240x160 --to 99.5x400 -o out.xml"));
    }
}

void TestSchema::outputOfTheToolIsValid()
{
    QFETCH(QString, schema);
    QFETCH(QString, arguments);
    Workplace const place;
    place.write("picture.svg",
        "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 9 7'><path d='M1 1L8 1 5 6Z'/>"
        "<path d='M1 1C2 2 3 4 5 1' fill='none' stroke='red'/><rect width='3' height='2'/></svg>");
    place.write("whole.xml", whole);
    place.write("foreign.xml",
        "<p:D xmlns:p=\"urn:p\" a=\"1\">text<S xmlns=\"urn:s\"/><S>" + boxGeometry()
            + "</S></p:D>");
    place.write("misread.xml",
        "<D><Geometry NoFill=\"yes\"><CurveTo><D V=\"x\" B=\"\"/></CurveTo><LineTo><X V=\" 1\" "
        "B=\"65539\" "
        "P=\"1\"/><X V=\"2\"/><Y V=\"1\" B=\"65537\" P=\"0x1\"/></LineTo></Geometry></D>");
    place.write("stencil.shape",
        "<shape xmlns='http://www.daa.com.au/~james/dia-shape-ns' "
        "xmlns:svg='http://www.w3.org/2000/svg'><name>a - b</name><svg:svg><svg:line x1='0' y1='0' "
        "x2='5' y2='5'/><svg:circle cx='3' cy='3' r='2'/></svg:svg></shape>");
    place.write("drawing.fodg",
        "<office:document xmlns:office='urn:oasis:names:tc:opendocument:xmlns:office:1.0' "
        "xmlns:draw='urn:oasis:names:tc:opendocument:xmlns:drawing:1.0' "
        "xmlns:svg='urn:oasis:names:tc:opendocument:xmlns:svg-compatible:1.0'><office:body>"
        "<office:drawing><draw:page><draw:rect svg:x='1cm' svg:y='1cm' svg:width='3cm' "
        "svg:height='2cm'/></draw:page></office:drawing></office:body></office:document>");
    place.write("custom.xml",
        "<p:sp xmlns:p='urn:p' xmlns:a='http://schemas.openxmlformats.org/drawingml/2006/main'>"
        "<a:custGeom><a:pathLst><a:path w='9' h='9'><a:moveTo><a:pt x='0' "
        "y='0'/></a:moveTo><a:lnTo>"
        "<a:pt x='9' y='9'/></a:lnTo></a:path></a:pathLst></a:custGeom></p:sp>");
    for (char const* const folder : {"documents", "drawings", "pictures"}) {
        QDir const files = exampleFiles(folder);
        for (QString const& name : files.entryList())
            place.write(name, fileContent(files.filePath(name)));
    }

    Result const result = place.run(arguments.split(' '));
    QVERIFY2(result.exited && (result.code == 0 || result.code == 3), result.err.constData());
    Schema validator(schema);
    QVERIFY2(validator.invalid(place.path(), {"out.xml"}).isEmpty(), validator.said().constData());
}

void TestSchema::exampleDocumentsAreValid()
{
    QDir const documents = exampleFiles("documents");
    QStringList const files = documents.entryList();
    QVERIFY(files.size() >= 8);
    for (QString const name : {"shapes.rng", "geometry.rng"}) {
        Schema schema(name);
        QVERIFY2(schema.invalid(documents.path(), files).isEmpty(), schema.said().constData());
    }
}

void TestSchema::outputOfTheLibraryIsValid()
{
    QRandomGenerator random = Testing::seededRandom(41);
    Workplace const place;
    QStringList saved;
    QStringList shapes;
    for (int i = 0; i < 50; ++i) {
        auto const list = std::make_shared<KpPathSegList>();
        fillPlainly(*list, random);
        QString const number = QString::number(i);
        place.write("stream" + number, OutlineTesting::streamXml(*list));
        place.write("dom" + number, OutlineTesting::domXml(*list).toByteArray());
        saved << "stream" + number << "dom" + number;
        std::optional<Qt::FillRule> const rule =
            i % 2 == 0 ? std::optional(Qt::OddEvenFill) : std::nullopt;
        place.write("shapes" + number,
            shapesDocument(
                {{"a<\u00e4", QSizeF(i, 1e-9 * i), rule, list}, {"", QSizeF(1, 1e9), {}, list}}));
        shapes << "shapes" + number;
    }
    Schema geometry("geometry.rng");
    QVERIFY2(geometry.invalid(place.path(), saved + shapes).isEmpty(), geometry.said().constData());
    Schema own("shapes.rng");
    QVERIFY2(own.invalid(place.path(), shapes).isEmpty(), own.said().constData());
    QCOMPARE(own.invalid(place.path(), saved), saved);
}

void TestSchema::whatNamesNothingIsValid_data()
{
    QTest::addColumn<QByteArray>("before"); // in `whole`
    QTest::addColumn<QByteArray>("after");
    auto const row = [](char const* name, QByteArray const& before, QByteArray const& after) {
        QTest::newRow(name) << before << after;
    };
    row("as it is", "", "");
    row("no segments", "<MoveTo>", "<!-- c --><?pi x?>\n<MoveTo>");
    row("order of coordinates", "<X V=\"10\"/><Y V=\"11\"/><A V=\"12\"/>",
        "<A V=\"12\"/><Y V=\"11\"/><X V=\"10\"/>");
    row("order of attributes", "V=\"3\" B=\"3\" P=\"97\"", "P=\"97\" B=\"3\" V=\"3\"");
    row("notation", "V=\"3\" B=\"3\" P=\"97\"", "V=\" +.3E1\" B=\" +03\" P=\"970.e-1 \"");
    row("flags in words", "Closed=\"1\" NoFill=\"0\"", "Closed=\"TRUE\" NoFill=\"False\"");
    row("greatest double", "V=\"3\"", "V=\"1.7976931348623157e308\"");
    row("foreign attributes of a shape", "<Shape ", "<Shape xmlns:p=\"urn:p\" p:id=\"1\" ");
    row("foreign elements in a shape", "<Geometry",
        "<E xmlns=\"urn:p\" a=\"1\">text<F xmlns=\"\"/></E><Geometry");
    row("foreign elements beside a shape", "<Shape ", "<E xmlns=\"urn:p\"/><Shape ");
}

void TestSchema::whatNamesNothingIsValid()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    QVERIFY(whole.contains(before));
    QByteArray document = whole;
    if (!before.isEmpty())
        document.replace(whole.indexOf(before), before.size(), after);
    for (QString const name : {"shapes.rng", "geometry.rng"}) {
        Schema schema(name);
        QVERIFY2(schema.isValid(document), schema.said().constData());
    }
    QVERIFY(isGood(document));
}

void TestSchema::everyRuleIsHeld_data()
{
    QTest::addColumn<QByteArray>("before"); // in `whole`, which is valid
    QTest::addColumn<QByteArray>("after");
    auto const row = [](char const* name, QByteArray const& before, QByteArray const& after) {
        QTest::newRow(name) << before << after;
    };
    row("no Closed", "Closed=\"1\" ", "");
    row("empty flag", "NoFill=\"0\"", "NoFill=\"\"");
    row("flag in another word", "NoFill=\"0\"", "NoFill=\"yes\"");
    row("flag with a blank", "Closed=\"1\"", "Closed=\" 1\"");
    row("flag by another number", "Closed=\"1\"", "Closed=\"2\"");
    row("unknown attribute of the outline", "Closed=\"1\"", "Closed=\"1\" NoPaint=\"1\"");
    row("foreign attribute of the outline", "Closed=\"1\"",
        "Closed=\"1\" xmlns:p=\"urn:p\" p:a=\"1\"");
    row("text in the outline", "<MoveTo>", "text<MoveTo>");
    row("unknown segment", "<MoveTo>", "<ArcTo/><MoveTo>");
    row("segment in another case", "LineTo>", "Lineto>");
    row("segment of a namespace", "<MoveTo>", "<p:LineTo xmlns:p=\"urn:p\"/><MoveTo>");
    row("outline in the outline", "<MoveTo>", "<Geometry Closed=\"1\"/><MoveTo>");
    row("coordinate without a segment", "<MoveTo>", "<X V=\"1\"/><MoveTo>");
    row("attribute of a segment", "<MoveTo>", "<MoveTo id=\"1\">");
    row("text in a segment", "<MoveTo>", "<MoveTo>1");
    row("missing coordinate", "<Y V=\"2\"/>", "");
    row("missing control point", "<D V=\"-1.5e-07\"/>", "");
    row("missing radius", "<B V=\"13\"/>", "");
    row("coordinate given again", "<Y V=\"2\"/>", "<Y V=\"2\"/><Y V=\"2\"/>");
    row("coordinate of another kind", "<Y V=\"2\"/>", "<Y V=\"2\"/><A V=\"2\"/>");
    row("control point of an ellipse", "<B V=\"13\"/>", "<B V=\"13\"/><C V=\"1\"/>");
    row("unknown coordinate", "<Y V=\"2\"/>", "<Y V=\"2\"/><Z V=\"2\"/>");
    row("content of a coordinate", "<Y V=\"2\"/>", "<Y V=\"2\"><Z/></Y>");
    row("text in a coordinate", "<Y V=\"2\"/>", "<Y V=\"2\">2</Y>");
    row("unknown attribute of a coordinate", "<Y V=\"2\"/>", "<Y V=\"2\" unit=\"px\"/>");
    row("attribute in another case", "V=\"2\"", "v=\"2\"");
    row("no value", "<Y V=\"2\"/>", "<Y/>");
    for (char const* const number : {"", " ", "x", "1x", "1,5", "0x10", "1e", ".", "--1", "1 2",
             "nan", "NaN", "inf", "-inf", "INF", "1e309", "-1e999", "1e-999", "\302\262"}) {
        row(qPrintable(QString("value \"%1\"").arg(number)), "V=\"3\"",
            "V=\"" + QByteArray(number) + '"');
        row(qPrintable(QString("rate \"%1\"").arg(number)), "P=\"97\"",
            "P=\"" + QByteArray(number) + '"');
    }
    for (char const* const base :
        {"", " ", "x", "8", "-1", "1.0", "1e0", "65537", "99999999999999999999"}) {
        row(qPrintable(QString("rule \"%1\"").arg(base)), "B=\"3\"",
            "B=\"" + QByteArray(base) + '"');
    }
    row("rule without a rate", "B=\"3\" P=\"97\"", "B=\"3\"");
    row("rate without a rule", "B=\"3\" P=\"97\"", "P=\"97\"");
    row("rate of an absolute coordinate", "B=\"0\"", "B=\"0\" P=\"1\"");
}

void TestSchema::everyRuleIsHeld()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    QVERIFY(whole.contains(before));
    QByteArray document = whole;
    document.replace(before, after);
    QVERIFY(!Schema("shapes.rng").isValid(document));
    Workplace const place;
    place.write("a", document);
    place.write("b", "<p:D xmlns:p=\"urn:p\">text<E a=\"1\">" + document + "</E></p:D>");
    QCOMPARE(Schema("geometry.rng").invalid(place.path(), {"a", "b"}), QStringList({"a", "b"}));
}

void TestSchema::shapesHaveTheirOwnRules_data()
{
    QTest::addColumn<QByteArray>("before"); // in `whole`, which is valid
    QTest::addColumn<QByteArray>("after");
    auto const row = [](char const* name, QByteArray const& before, QByteArray const& after) {
        QTest::newRow(name) << before << after;
    };
    row("another root", "Shapes>", "Forms>");
    row("unknown element beside a shape", "<Shape ", "<Note/><Shape ");
    row("unknown element in a shape", "<Geometry", "<Note/><Geometry");
    row("unknown attribute", "Name=", "Title=");
    row("text", "<Geometry", "text<Geometry");
    row("two outlines in a shape", "<Geometry", "<Geometry Closed=\"1\"/><Geometry");
    row("no width", "Width=\"100\"", "");
    row("negative height", "Height=\"50\"", "Height=\"-50\"");
    row("width that is no number", "Width=\"100\"", "Width=\"inf\"");
    row("unknown fill rule", "evenodd", "odd");
    row("fill rule with a blank", "evenodd", "evenodd ");
}

void TestSchema::shapesHaveTheirOwnRules()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    QVERIFY(whole.contains(before));
    QByteArray document = whole;
    document.replace(before, after);
    QVERIFY(!Schema("shapes.rng").isValid(document));
    Schema geometry("geometry.rng");
    QVERIFY2(geometry.isValid(document), geometry.said().constData());
}

void TestSchema::validIsWhatReadersTakeAsItLooks()
{
    QRandomGenerator random = Testing::seededRandom(42);
    QList<QByteArray> const numbers {"", "x", "nan", "-inf", "1e999", "1e-999", "1e-0307", " 5 ",
        "0x10", "-0", "+1.", ".5", "1e-320", "5e", "1,5", "00", "1e+05", "INF", "1\t", "- 1",
        "1e4.5"};
    QList<QByteArray> const bases {"", "0", "8", "-1", "+4", " 6", "1.0", "70000", "x", "07", "-0"};
    QList<QByteArray> const flags {"0", "1", "true", "False", "TRUE", "", "no", " 1", "10"};
    auto const isOdd = [&random] { return random.bounded(150) == 0; };
    auto const number = [&]() -> QByteArray {
        return isOdd() ? oneOf(random, numbers) : QByteArray::number(random.bounded(1000) / 8.0);
    };
    auto const coordinate = [&](QByteArray const& letter) {
        QByteArray const base =
            isOdd() ? oneOf(random, bases) : QByteArray::number(random.bounded(8));
        bool const takesRate = (base.trimmed().toInt() != 0) != isOdd();
        return '<' + letter + (isOdd() ? "" : " V=\"" + number() + '"') + " B=\"" + base + '"'
            + (takesRate ? " P=\"" + number() + '"' : "") + "/>";
    };
    auto const outline = [&] {
        QByteArray xml = "<Geometry"
            + (isOdd() ? "" : " Closed=\"" + oneOf(random, flags.mid(0, isOdd() ? 9 : 5)) + '"')
            + ">" + (isOdd() ? "x" : "");
        for (QByteArray const letters : {"XY", "XYABCD", "XYAB"}) {
            QByteArray const name = letters == "XY" ? "LineTo"
                : letters == "XYAB"                 ? "Ellipse"
                                                    : "CurveTo";
            xml += '<' + name + '>';
            for (char const letter : letters)
                xml += isOdd() ? "" : coordinate(QByteArray(1, isOdd() ? 'Z' : letter));
            xml += "</" + name + '>';
        }
        return xml + "</Geometry>";
    };
    Workplace const place;
    QStringList files;
    QMap<QString, QByteArray> documents;
    for (int i = 0; i < 1000; ++i) {
        files << QString::number(i);
        documents[files.last()] = "<D>" + outline() + "</D>";
        place.write(files.last(), documents[files.last()]);
    }
    QStringList const invalid = Schema("geometry.rng").invalid(place.path(), files);
    // Both sorts are there.
    QVERIFY(invalid.size() > 200 && invalid.size() < 800);
    for (QString const& file : files) {
        QVERIFY2(invalid.contains(file) != isGood(documents[file]), documents[file].constData());
    }
}

QTEST_GUILESS_MAIN(TestSchema)

#include "tst_schema.moc"
