// SPDX-License-Identifier: MIT
#include "sourcetesting.h"

#include <QTextCodec>

using namespace DocumentTesting;
using namespace SourceTesting;

namespace {

Appearance themed(QString const& theme)
{
    Appearance appearance;
    appearance.theme = theme;
    return appearance;
}

} // namespace

class TestKpshapesSourceDocument : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsItems();
    void readsAppearances();
    void cutsUnits_data();
    void cutsUnits();
    void movesUnitsAndLeavesWhatIsBetween();
    void removesUnits();
    void insertsNewItemsWhereTheyStand();
    void writesIntoRoots_data();
    void writesIntoRoots();
    void isADocumentWithoutItsOutlinesToo();
    void givesBackTheFileToTheByte_data();
    void givesBackTheFileToTheByte();
    void bringsOtherTextsToUtf8_data();
    void bringsOtherTextsToUtf8();
    void warnsOfOutlinesInsideOthers();
    void tellsWhatHasNoPlace();
    void keepsAppearancesApart();
    void closesNoCharacterData();
    void refusesWhatIsNotWellFormed_data();
    void refusesWhatIsNotWellFormed();
    void knowsPictures_data();
    void knowsPictures();
    void readsManyOutlinesQuickly();
};

void TestKpshapesSourceDocument::readsItems()
{
    auto const source = sourceOf("<D><S Name=\" a  b \" Width=\"30\" Height=\"40\" "
                                 "FillRule=\"evenodd\"><Geometry Closed=\"1\">"
        + line(10, 20) + "</Geometry></S><Geometry>" + line(10, 20) + "</Geometry></D>");
    QCOMPARE(source->count(), 2);
    Items const items = source->items();
    QCOMPARE(items[0]->name, "a b");
    QCOMPARE(items[0]->box, QSizeF(30, 40));
    QVERIFY(items[0]->fillRule == Qt::OddEvenFill);
    QCOMPARE(items[0]->origin, 0);
    QCOMPARE(outlineOf(items[0]->outline)->segs.at(0)->pt.x.rate, 0.1);
    QVERIFY(outlineOf(items[0]->outline)->closed);
    QCOMPARE(items[1]->name, "");
    QCOMPARE(items[1]->box, QSizeF(10, 20));
    QVERIFY(!items[1]->fillRule);
    QCOMPARE(items[1]->origin, 1);
}

void TestKpshapesSourceDocument::readsAppearances()
{
    auto const source =
        sourceOf("<D><S><Geometry/> \n<Appearance Theme=\"one\"/></S>"
                 "<Geometry/><Appearance Theme=\"two\"/>"
                 "<Geometry/><!-- between --><Appearance Theme=\"no\"/>"
                 "<S><Appearance Theme=\"no\"/><Geometry/></S>"
                 "<Geometry/><Appearance Theme=\"no\"><Geometry/></Appearance></D>");
    QStringList themes;
    for (ItemPointer const& item : source->items())
        themes << item->appearance.theme;
    QCOMPARE(themes, (QStringList {"one", "two", "", "", "", ""}));
}

void TestKpshapesSourceDocument::cutsUnits_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after"); // without the first outline

    QTest::newRow("an element of its own")
        << QByteArray("<D>\n <S a='>'><Geometry/></S>\n <T/>\n</D>")
        << QByteArray("<D>\n <T/>\n</D>");
    QTest::newRow("all in it") << QByteArray("<D><S>x<!-- < --><Geometry/><Q/></S>y</D>")
                               << QByteArray("<D>y</D>");
    QTest::newRow("the root is none's own")
        << QByteArray("<D>\n <Geometry/>\n</D>") << QByteArray("<D>\n</D>");
    QTest::newRow("two in one element") << QByteArray("<D><S><Geometry/> <Geometry b=''/></S></D>")
                                        << QByteArray("<D><S> <Geometry b=''/></S></D>");
    QTest::newRow("one deeper") << QByteArray("<D><S><Geometry/><G><Geometry/></G></S></D>")
                                << QByteArray("<D><S><G><Geometry/></G></S></D>");
    QTest::newRow("a grandchild") << QByteArray("<D><S><G><Geometry/></G></S></D>")
                                  << QByteArray("<D><S></S></D>");
    QTest::newRow("its appearance goes along")
        << QByteArray("<D><Geometry/>\n<Appearance><Fill/></Appearance><Q/></D>")
        << QByteArray("<D><Q/></D>");
    QTest::newRow("tags that are none")
        << QByteArray(
               "<D><!--<S>--><![CDATA[<S><Geometry/>]]><?p <S>?><S/><S ><Geometry\n/></S\n></D>")
        << QByteArray("<D><!--<S>--><![CDATA[<S><Geometry/>]]><?p <S>?><S/></D>");
    QTest::newRow("other names") << QByteArray("<D><p:Geometry/><Geometry2/><Geometry/></D>")
                                 << QByteArray("<D><p:Geometry/><Geometry2/></D>");
}

void TestKpshapesSourceDocument::cutsUnits()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);

    auto const source = sourceOf(before);
    Items items = source->items();
    items.erase(items.begin());
    QCOMPARE(source->write(items), after);
}

void TestKpshapesSourceDocument::movesUnitsAndLeavesWhatIsBetween()
{
    auto const source = sourceOf("<D>\n <!-- 1 -->\n <S Name='a'><Geometry/></S>\n <!-- 2 -->\n "
                                 "<S Name='b'><Geometry/></S>\n <!-- 3 -->\n</D>\n");
    Items const items = source->items();
    QCOMPARE(source->write({items[1], items[0]}),
        QByteArray("<D>\n <!-- 1 -->\n <S Name='b'><Geometry/></S>\n <!-- 2 -->\n "
                   "<S Name='a'><Geometry/></S>\n <!-- 3 -->\n</D>\n"));
    QCOMPARE(source->write({renamed(items[1], "c"), items[0]}),
        QByteArray("<D>\n <!-- 1 -->\n <S Name='c'><Geometry/></S>\n <!-- 2 -->\n "
                   "<S Name='a'><Geometry/></S>\n <!-- 3 -->\n</D>\n"));
}

void TestKpshapesSourceDocument::removesUnits()
{
    auto const source = sourceOf("<D>\n <S Name='a'><Geometry/></S>\n <!-- b -->\n "
                                 "<S Name='b'><Geometry/></S>\n <S Name='c'><Geometry/></S>\n</D>");
    Items const items = source->items();
    QCOMPARE(source->write({items[0], items[2]}),
        QByteArray("<D>\n <S Name='a'><Geometry/></S>\n <!-- b -->\n "
                   "<S Name='c'><Geometry/></S>\n</D>"));
    QCOMPARE(source->write({items[2], items[1]}),
        QByteArray("<D>\n <!-- b -->\n <S Name='c'><Geometry/></S>\n "
                   "<S Name='b'><Geometry/></S>\n</D>"));
    QCOMPARE(source->write({}), QByteArray("<D>\n <!-- b -->\n</D>"));
}

void TestKpshapesSourceDocument::insertsNewItemsWhereTheyStand()
{
    auto const source = sourceOf("<D>\r\n\t<G><!-- 1 -->\r\n\t\t<S Name='a'><Geometry/></S>\r\n\t"
                                 "</G>\r\n\t<S Name='b'><Geometry/></S>\r\n</D>");
    Items const items = source->items();
    auto const copy = std::make_shared<ShapeItem const>(*items[1]);
    auto const fresh = newItem("n");
    QCOMPARE(namesIn(source->write({fresh, items[0], fresh, items[1], copy, fresh})),
        (QStringList {"n", "a", "n", "b", "b", "n"}));
    QCOMPARE(namesIn(source->write({fresh, fresh})), (QStringList {"n", "n"}));
    ShapeItem empty {"e", QSizeF(1, 2), Qt::WindingFill, {}, themed("x"), -1};
    KpPathSegList nothing;
    empty.outline = recordOf(nothing);
    QCOMPARE(source->write({items[0], std::make_shared<ShapeItem const>(empty), items[1]}),
        QByteArray("<D>\r\n\t<G><!-- 1 -->\r\n\t\t<S Name='a'><Geometry/></S>"
                   "\r\n\t\t<Shape Name=\"e\" Width=\"1\" Height=\"2\" FillRule=\"nonzero\">"
                   "\r\n\t\t <Geometry Closed=\"0\"/>\r\n\t\t <Appearance Theme=\"x\"/>"
                   "\r\n\t\t</Shape>\r\n\t"
                   "</G>\r\n\t<S Name='b'><Geometry/></S>\r\n</D>"));
}

void TestKpshapesSourceDocument::writesIntoRoots_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after"); // @ is where the new item stands

    QTest::newRow("one tag") << QByteArray("<!-- c --><Shapes a='1' /><!-- d -->")
                             << QByteArray("<!-- c --><Shapes a='1'>\n @\n</Shapes><!-- d -->");
    QTest::newRow("two tags") << QByteArray("<D></D>") << QByteArray("<D>\n @\n</D>");
    QTest::newRow("lines") << QByteArray("<D>\r\n <!-- c -->\r\n</D>\r\n")
                           << QByteArray("<D>\r\n <!-- c -->\r\n @\r\n</D>\r\n");
    QTest::newRow("an outline") << QByteArray("<!-- c --><Geometry f=''><Q/></Geometry>\n")
                                << QByteArray("<!-- c --><Shapes>\n @\n</Shapes>\n");
}

void TestKpshapesSourceDocument::writesIntoRoots()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);

    auto const source = sourceOf(before);
    QByteArray const newline = before.contains("\r\n") ? "\r\n" : "\n";
    QCOMPARE(
        source->write({newItem("n")}), after.replace("@", newUnit(*newItem("n"), newline + ' ')));
    QCOMPARE(source->write(source->items()), before);
}

void TestKpshapesSourceDocument::isADocumentWithoutItsOutlinesToo()
{
    QByteArray const emptied = sourceOf("<Shape Name='a'><Geometry/></Shape>")->write({});

    QCOMPARE(emptied, QByteArray("<Shape Name='a'></Shape>"));
    auto const source = sourceOf(emptied);
    QCOMPARE(source->count(), 0);
    QCOMPARE(source->write(source->items()), emptied);
}

void TestKpshapesSourceDocument::givesBackTheFileToTheByte_data()
{
    QTest::addColumn<QByteArray>("text");

    QByteArray const outline = "<D>\r\n <S\tName='\u00e4'><Geometry Closed = \"1\" >" + line(1, 2)
        + "</Geometry\n></S></D>\r\n\r\n";
    QTest::newRow("plain") << outline;
    QTest::newRow("a mark") << "\xef\xbb\xbf" + outline;
    QTest::newRow("declared") << "<?xml version='1.0' encoding='utf-8' standalone='yes' ?>"
            + outline;
    QTest::newRow("Latin-1") << "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>"
            + QString::fromUtf8(outline).toLatin1();
    QTest::newRow("UTF-16") << QTextCodec::codecForName("UTF-16")->fromUnicode(
        QString::fromUtf8(outline));
    QTest::newRow("a document type")
        << "<!DOCTYPE D [ <!ENTITY e \"<Geometry/>\"> <!-- ]> --> ]>" + outline;
    QTest::newRow("nested") << QByteArray("<D><Geometry><N><Geometry/></N></Geometry></D>");
    QTest::newRow("nothing") << QByteArray("<D/>");
}

void TestKpshapesSourceDocument::givesBackTheFileToTheByte()
{
    QFETCH(QByteArray, text);

    auto const source = sourceOf(text);
    Items items = source->items();
    QCOMPARE(source->write(items), text);
    // As undo leaves them: others of the same content.
    for (ItemPointer& item : items)
        item = changed(item, [](WorkingShape&) {});
    QVERIFY(source->isUnchanged(items));
    QCOMPARE(source->write(items), text);
    items.push_back(newItem("n"));
    QVERIFY(!source->isUnchanged(items));
    QVERIFY(source->write(items) != text);
    items.pop_back();
    QCOMPARE(source->write(items), text);
}

void TestKpshapesSourceDocument::bringsOtherTextsToUtf8_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after"); // of outlines in the opposite order

    QByteArray const shapes =
        "<D>\u00e9<S Name=\"\u00e4\"><Geometry/></S><S Name=\"b\"><Geometry/></S></D>";
    QByteArray const turned =
        "<D>\u00e9<S Name=\"b\"><Geometry/></S><S Name=\"\u00e4\"><Geometry/></S></D>\n";
    QByteArray const head = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    QTest::newRow("UTF-16") << QTextCodec::codecForName("UTF-16")->fromUnicode(QString::fromUtf8(
        shapes)) << head + turned;
    QTest::newRow("Latin-1") << "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>"
            + QString::fromUtf8(shapes).toLatin1()
                             << head + turned;
    QTest::newRow("entities") << "<!DOCTYPE D [<!ENTITY e \"<S Name='b'><Geometry/></S>\">]>"
            + QByteArray(shapes).replace("<S Name=\"b\"><Geometry/></S>", "&e;")
                              << head
            + "<!DOCTYPE D [<!ENTITY e \"<S Name='b'><Geometry/></S>\">]>\n" + turned;
    QTest::newRow("a mark, which stays")
        << "\xef\xbb\xbf" + shapes << QByteArray("\xef\xbb\xbf" + turned).trimmed();
}

void TestKpshapesSourceDocument::bringsOtherTextsToUtf8()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);

    auto const source = sourceOf(before);
    Items const items = source->items();
    QCOMPARE(source->count(), 2);
    QByteArray const written = source->write({items[1], items[0]});
    QCOMPARE(written.right(written.size() - written.indexOf("<D>")),
        after.right(after.size() - after.indexOf("<D>")));
    QCOMPARE(written.left(written.indexOf("<D>")), after.left(after.indexOf("<D>")));
    QCOMPARE(namesIn(written), (QStringList {"b", "\u00e4"}));
}

void TestKpshapesSourceDocument::warnsOfOutlinesInsideOthers()
{
    Diagnostics diagnostics;
    auto const reading = readingOf("<D><S><Geometry><N><Geometry/><Geometry/></N></Geometry></S>"
                                   "<Geometry><Geometry/></Geometry></D>",
        diagnostics);
    QCOMPARE(reading.document->count(), 2);
    QCOMPARE(diagnostics.size(), 1);
    QCOMPARE(diagnostics.at(0).severity, Diagnostic::Severity::Warning);
    QCOMPARE(diagnostics.at(0).text, "3 outlines inside others: not shown, but kept");
    Items const items = reading.document->items();
    QCOMPARE(reading.document->write({renamed(items[0], "a"), items[1]}),
        QByteArray("<D><S Name=\"a\"><Geometry><N><Geometry/><Geometry/></N></Geometry></S>"
                   "<Geometry><Geometry/></Geometry></D>"));
}

void TestKpshapesSourceDocument::tellsWhatHasNoPlace()
{
    auto const source = sourceOf("<D><S Name='g' Width='9' Height='9'><Geometry/><Geometry/></S>"
                                 "<S><Geometry/></S></D>");
    Items items = source->items();
    QCOMPARE(source->written({items[1], items[0], items[2]}).withoutPlace, 0);
    QCOMPARE(source->written({items[0], items[2], items[1]}).withoutPlace, 1);
    items[0] = renamed(items[0], "other");
    items[2] = renamed(items[2], "other");
    auto const written = source->written(items);
    QCOMPARE(written.withoutPlace, 1);
    QCOMPARE(namesIn(written.bytes), (QStringList {"g", "g", "other"}));
}

void TestKpshapesSourceDocument::keepsAppearancesApart()
{
    auto const source =
        sourceOf("<D><Geometry/><S><Geometry/></S><Appearance Theme='foreign'/></D>");
    Items const items = source->items();
    QByteArray const written = source->write({items[0]});
    QCOMPARE(written, QByteArray("<D><Geometry/><Appearance/><Appearance Theme='foreign'/></D>"));
    QVERIFY(sourceOf(written)->items().front()->appearance.isEmpty());
}

void TestKpshapesSourceDocument::closesNoCharacterData()
{
    auto const source = sourceOf("<D>]]<Geometry/>></D>");
    QByteArray const written = source->write({});
    QCOMPARE(written, QByteArray("<D>]]<!---->></D>"));
    QCOMPARE(sourceOf(written)->count(), 0);
}

void TestKpshapesSourceDocument::refusesWhatIsNotWellFormed_data()
{
    QTest::addColumn<QByteArray>("text");

    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("no end") << QByteArray("<D><Geometry/>");
    QTest::newRow("ends in a tag") << QByteArray("<D><Geometry a='");
    QTest::newRow("ends in a comment") << QByteArray("<D><!-- ");
    QTest::newRow("ends in a document type") << QByteArray("<!DOCTYPE D [ <!-- ");
    QTest::newRow("end tags alone") << QByteArray("</D></Geometry>");
    QTest::newRow("not UTF-8") << QByteArray("<D>\xff<Geometry/></D>");
    QTest::newRow("deep") << QByteArray("<D>").repeated(100000);
    QTest::newRow("deep outlines") << QByteArray("<Geometry>").repeated(100000);
}

void TestKpshapesSourceDocument::refusesWhatIsNotWellFormed()
{
    QFETCH(QByteArray, text);

    Diagnostics diagnostics;
    auto const reading = readingOf(text, diagnostics);
    QVERIFY(!reading.document);
    QVERIFY(!reading.wasCancelled);
    QCOMPARE(reading.kind, SourceKind::Document);
    QCOMPARE(diagnostics.size(), 1);
    QCOMPARE(diagnostics.at(0).severity, Diagnostic::Severity::Error);
}

void TestKpshapesSourceDocument::knowsPictures_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("isPicture");

    QTest::newRow("SVG") << QByteArray("<svg/>") << true;
    QTest::newRow("SVG with a prefix") << QByteArray("<s:svg xmlns:s='x'><s:g/></s:svg>") << true;
    QTest::newRow("zip") << QByteArray("PK\x03\x04 and so on") << true;
    QTest::newRow("in a namespace") << QByteArray("<document xmlns='x'/>") << true;
    QTest::newRow("presets") << QByteArray("<presetShapeDefinitons/>") << true;
    QTest::newRow("SVG around an outline") << QByteArray("<svg><Geometry/></svg>") << false;
    QTest::newRow("no outlines") << QByteArray("<D xmlns:p='x'/>") << false;
    QTest::newRow("our own") << QByteArray("<Shapes/>") << false;
}

void TestKpshapesSourceDocument::knowsPictures()
{
    QFETCH(QByteArray, text);
    QFETCH(bool, isPicture);

    Diagnostics diagnostics;
    auto const reading = readingOf(text, diagnostics);
    QCOMPARE(reading.kind, isPicture ? SourceKind::Picture : SourceKind::Document);
    QCOMPARE(reading.document == nullptr, isPicture);
    QVERIFY(diagnostics.isEmpty());
}

void TestKpshapesSourceDocument::readsManyOutlinesQuickly()
{
    QByteArray text = "<Shapes>\n";
    QByteArray const segments = line(12.25, 34.75).repeated(60);
    for (int i = 0; i < 3000; ++i)
        text += shape(QByteArray::number(i), segments) + '\n';
    text += "</Shapes>\n";
    QElapsedTimer timer;
    timer.start();
    auto const source = sourceOf(text);
    qint64 const reading = timer.restart();
    Items items = source->items();
    items[1500] = renamed(items[1500], "other");
    QByteArray const written = source->write(items);
    qInfo("%d bytes: read in %lld ms, written in %lld ms", text.size(), reading, timer.elapsed());
    QCOMPARE(written, QByteArray(text).replace("\"1500\"", "\"other\""));
}

QTEST_GUILESS_MAIN(TestKpshapesSourceDocument)
#include "tst_kpshapes_sourcedocument.moc"
