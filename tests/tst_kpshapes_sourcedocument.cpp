#include "documenttesting.h"
#include "files/sourcedocument.h"
#include "numbertext_p.h"
#include "segmentkind_p.h"

#include <QTextCodec>

using namespace DocumentTesting;

namespace {

SourceReading readingOf(QByteArray const& text, Diagnostics& diagnostics)
{
    return readSource(text, "a.xml", diagnostics);
}

/** The document of a text; a test fails without one. */
std::shared_ptr<SourceDocument const> sourceOf(QByteArray const& text)
{
    Diagnostics diagnostics;
    auto const reading = readingOf(text, diagnostics);
    if (!reading.document)
        qFatal("%s: %s", diagnostics.isEmpty() ? "" : qPrintable(diagnostics.at(0).text),
            text.constData());
    return reading.document;
}

/** An item with something of it changed. */
template <class Change> ItemPointer changed(ItemPointer const& item, Change const& change)
{
    WorkingShape shape = workingShapeOf(*item);
    change(shape);
    return std::make_shared<ShapeItem const>(itemOf(shape));
}

ItemPointer renamed(ItemPointer const& item, QString const& name)
{
    return changed(item, [&](WorkingShape& shape) { shape.name = name; });
}

Appearance themed(QString const& theme)
{
    Appearance appearance;
    appearance.theme = theme;
    return appearance;
}

/** A new item of one line. */
ItemPointer newItem(QString const& name)
{
    KpPathSegList list;
    list.moveTo(QPointF(1.0, 2.0));
    list.lineTo(QPointF(3.0, 4.0));
    return std::make_shared<ShapeItem const>(
        ShapeItem {name, QSizeF(10.0, 20.0), {}, recordOf(list), {}, -1});
}

QStringList namesIn(QByteArray const& text)
{
    QStringList names;
    for (ItemPointer const& item : sourceOf(text)->items())
        names << item->name;
    return names;
}

/** What a document can hold of an outline: six digits, and no rate where the rule takes none. */
QString asWritten(OutlineRecord const& record)
{
    auto const list = outlineOf(record);
    QString text = QString("%1%2%3").arg(list->closed).arg(list->noFill).arg(list->noLine);
    for (KpPathSeg* const seg : list->segs) {
        text += QString(" %1:").arg(seg->type);
        SegmentKind::forEachReal(*seg, [&text](KpReal const& real) {
            text += NumberText::fromReal(real.value) + '/' + NumberText::fromBase(real.base) + '/'
                + (real.base == 0 ? QString() : NumberText::fromReal(real.rate)) + ' ';
        });
    }
    return text;
}

/** What a document can hold of what stands around an outline. */
QString surroundings(ShapeItem const& item)
{
    return QString("%1 %2 %3 %4")
        .arg(item.name)
        .arg(item.box.width(), 0, 'g', 6)
        .arg(item.box.height(), 0, 'g', 6)
        .arg(item.fillRule ? *item.fillRule : -1);
}

Appearance randomAppearance(QRandomGenerator& random)
{
    Appearance appearance;
    if (random.bounded(2) == 0)
        appearance.theme = "Theme & co";
    if (random.bounded(2) == 0) {
        appearance.fill.emplace();
        appearance.fill->colour = KpColor(QColor(10, 20, random.bounded(256)));
        appearance.fill->transforms.append({"tint", 0.25});
    }
    if (random.bounded(2) == 0)
        appearance.shadow.emplace().radius = static_cast<unsigned int>(random.bounded(200));
    return appearance;
}

/** Changes anything of a shape. True if nothing of the file is gone with it. */
bool changeAnything(WorkingShape& shape, QRandomGenerator& random)
{
    auto& list = *shape.list;
    int const count = list.segs.count();
    int const index = count == 0 ? 0 : random.bounded(count);
    switch (random.bounded(7)) {
    case 0:
        list.closed = !list.closed;
        list.noLine = random.bounded(2) == 1;
        return true;
    case 1:
        shape.name = random.bounded(3) == 0 ? QString() : QString("new <&\"'> %1").arg(index);
        return true;
    case 2:
        shape.appearance = randomAppearance(random);
        return false;
    case 3:
        list.removeAt(index, true);
        return false;
    case 4: {
        KpPathSegList fresh;
        OutlineTesting::fillRandomly(fresh, 1, random);
        KpPathSeg* const seg = fresh.segs.first();
        fresh.removeAll(false);
        list.insertAt(random.bounded(count + 1), seg);
        return true;
    }
    case 5:
        shape.box = QSizeF(1 + random.bounded(500), 1 + random.bounded(500));
        shape.fillRule = random.bounded(2) == 0 ? Qt::OddEvenFill : Qt::WindingFill;
        return true;
    default:
        for (int i = random.bounded(3); i >= 0 && count > 0; --i) {
            SegmentKind::forEachReal(*list.segs.at(random.bounded(count)), [&random](KpReal& real) {
                if (random.bounded(2) == 0)
                    real = OutlineTesting::randomReal(random);
            });
        }
        return true;
    }
}

/** How often what no reader looks at stands in a text. */
int foreignIn(QByteArray const& text)
{
    int count = 0;
    for (char const* const foreign :
        {"<!-- one", "<?go on ?>", "z=\"1\"", "<![CDATA[", "p:V=\"3\"", "xml:space", "&#13;"})
        count += text.count(foreign);
    return count;
}

/** Outlines in elements of their own, with odd things around and within. */
QByteArray shapedDocument(QRandomGenerator& random)
{
    QByteArray xml = "<?xml version=\"1.0\"?>\n<!-- one\n  two --><Shapes z=\"1\">\n";
    for (int i = random.bounded(5); i >= 0; --i) {
        xml += oneOf(random, {"", " text ", " <!-- one -->\n", "<Q/>", "]]"});
        xml += oneOf(random,
            {" <Shape Name=\"a\" Width=\"50\" Height='40'>", "<Shape z=\"1\" FillRule=\"evenodd\">",
                "\n <Other Name='&lt;\"' >"});
        bool const isOther = xml.mid(xml.lastIndexOf('<')).startsWith("<Other");
        xml += oneOf(random, {"", "\n  ", "\n  <!-- one -->"});
        xml += "<Geometry Closed=\"1\">";
        for (int j = random.bounded(4); j > 0; --j)
            xml += oneOf(random, {"\n   ", "", "<?go on ?>"}) + line(j * 1.0000001, i);
        xml += "</Geometry>";
        xml += oneOf(random,
            {"", "\n  <Appearance Theme=\"x\"/>", "<Appearance z=\"1\"><Q/></Appearance>", "<R/>"});
        xml += isOther ? "</Other>" : "</Shape>";
        xml += oneOf(random, {"", ">", "\n"});
    }
    return xml.replace("]]>", "]]&gt;") + "</Shapes>";
}

} // namespace

Q_DECLARE_METATYPE(std::function<void(WorkingShape&)>)

class TestKpshapesSourceDocument : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsItems();
    void readsAppearances();
    void cutsUnits_data();
    void cutsUnits();
    void changesNoMoreThanWasChanged_data();
    void changesNoMoreThanWasChanged();
    void movesUnitsAndLeavesWhatIsBetween();
    void removesUnits();
    void insertsNewItemsWhereTheyStand();
    void writesIntoRoots_data();
    void writesIntoRoots();
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
    void keepsAllThroughRandomChanges_data();
    void keepsAllThroughRandomChanges();
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

void TestKpshapesSourceDocument::changesNoMoreThanWasChanged_data()
{
    using Change = std::function<void(WorkingShape&)>;
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    QTest::addColumn<Change>("change");

    auto const row = [](char const* name, QByteArray const& before, QByteArray const& after,
                         Change const& change) {
        QTest::newRow(name) << before << after << change;
    };
    QByteArray const point =
        "<LineTo\n f='1'><Y B=\"0\" V=\"2.50\"/><!-- c --><X  V = '1.0' B='0' k=''/></LineTo>";
    QByteArray const other = "<LineTo><X V=\"7.000\" B=\"0\"/><Y V=\"8\" B=\"0\"/></LineTo>";
    QByteArray const fresh = "<MoveTo><X V=\"0\" B=\"0\"/><Y V=\"0.5\" B=\"0\"/></MoveTo>";
    auto const around = [](QByteArray const& segments) -> QByteArray {
        return "<D><S Width='9' Height=\"8\"><Geometry  z='' Closed='1'>" + segments
            + "</Geometry></S></D>";
    };
    auto const insert = [](int index) -> Change {
        return [index](WorkingShape& shape) {
            shape.list->insertAt(
                index, new KpPathSegMoveTo(KpPoint(KpReal(0, 0, 0), KpReal(0, 0, 0.5)), nullptr));
        };
    };
    row("a value", around(point), around(QByteArray(point).replace("1.0", "4")),
        [](WorkingShape& shape) { shape.list->segs.at(0)->pt.x.value = 4.0; });
    row("a rule", around(point),
        around(QByteArray(point).replace("B='0' k=''", "B='1' k='' P=\"0.5\"")),
        [](WorkingShape& shape) { shape.list->segs.at(0)->pt.x = KpReal(1, 0.5, 1.0); });
    row("a coordinate that was not there", around("<LineTo><X V='1' B='0'/></LineTo>"),
        around("<LineTo><X V='1' B='0'/><Y V=\"3\" B=\"0\"/></LineTo>"),
        [](WorkingShape& shape) { shape.list->segs.at(0)->pt.y = KpReal(0, 0, 3.0); });
    row("of an empty segment", around("<LineTo a='>' />"),
        around("<LineTo a='>'><X V=\"3\" B=\"0\"/></LineTo>"),
        [](WorkingShape& shape) { shape.list->segs.at(0)->pt.x = KpReal(0, 0, 3.0); });
    row("a coordinate given again", around("<LineTo><X V='1' B='0'/><X V='2'/><Y V='1'/></LineTo>"),
        around("<LineTo><X V='3' B='0'/><X V='3'/><Y V='1'/></LineTo>"),
        [](WorkingShape& shape) { shape.list->segs.at(0)->pt.x.value = 3.0; });
    row("flags", around(point),
        around(point).replace("z='' Closed='1'", "z='' Closed='0' NoFill=\"1\" NoLine=\"1\""),
        [](WorkingShape& shape) {
            shape.list->closed = false;
            shape.list->noFill = shape.list->noLine = true;
        });
    row("a segment in front", around("\n  " + point),
        around("\n  "
            + QByteArray(fresh)
                  .replace("<X", "\n   <X")
                  .replace("<Y", "\n   <Y")
                  .replace("</M", "\n  </M")
            + "\n  " + point),
        insert(0));
    row("a segment between", around(point + other), around(point + fresh + other), insert(1));
    row("a segment behind", around(point + "<Q/>"), around(point + fresh + "<Q/>"), insert(1));
    row("the first segment", around(" "), around(fresh + " "), insert(0));
    row("into a lone tag", "<D><S Width='1' Height='1'><Geometry /></S></D>",
        "<D><S Width='1' Height='1'><Geometry>" + fresh + "</Geometry></S></D>", insert(0));
    row("a segment less", around("<Q/> " + point + "<!-- c -->" + other),
        around("<Q/><!-- c -->" + other),
        [](WorkingShape& shape) { shape.list->removeAt(0, true); });
    row("another kind", around(point + " " + other), around(point + fresh),
        [](WorkingShape& shape) {
            shape.list->removeAt(1, true);
            shape.list->addTail(
                new KpPathSegMoveTo(KpPoint(KpReal(0, 0, 0), KpReal(0, 0, 0.5)), nullptr));
        });
    row("a name", around(point),
        around(point).replace("Height=\"8\"", "Height=\"8\" Name=\"&lt;&quot;&apos;&amp;\""),
        [](WorkingShape& shape) { shape.name = "<\"'&"; });
    row("a box", around(point), around(point).replace("'9'", "'12.5'").replace("\"8\"", "\"3\""),
        [](WorkingShape& shape) { shape.box = QSizeF(12.5, 3.0); });
    row("a fill rule", around(point),
        around(point).replace("Height=\"8\"", "Height=\"8\" FillRule=\"nonzero\""),
        [](WorkingShape& shape) { shape.fillRule = Qt::WindingFill; });
    row("no name, no fill rule", "<D><S FillRule='evenodd' a='b' Name='x' ><Geometry/></S></D>",
        "<D><S a='b' ><Geometry/></S></D>", [](WorkingShape& shape) {
            shape.name.clear();
            shape.fillRule.reset();
        });
    row("a box that nobody told", "<D><S><Geometry>" + point + "</Geometry></S></D>",
        "<D><S Width=\"1\" Height=\"2.5\"><Geometry>" + QByteArray(point).replace("1.0", "4")
            + "</Geometry></S></D>",
        [](WorkingShape& shape) { shape.list->segs.at(0)->pt.x.value = 4.0; });
    row("an appearance", "<D>\r\n  <Geometry/>\r\n</D>",
        "<D>\r\n  <Geometry/>\r\n  <Appearance Theme=\"x\"/>\r\n</D>",
        [](WorkingShape& shape) { shape.appearance.theme = "x"; });
    row("another appearance", "<D><Geometry/><Appearance z='' Theme='y'><Q/></Appearance></D>",
        "<D><Geometry/><Appearance z='' Theme='x'><Q/></Appearance></D>",
        [](WorkingShape& shape) { shape.appearance.theme = "x"; });
    row("no appearance", "<D><Geometry/>\n<Appearance Theme='y'/>\n</D>", "<D><Geometry/>\n</D>",
        [](WorkingShape& shape) { shape.appearance = Appearance(); });
    row("no appearance, but others' own",
        "<D><Geometry/><Appearance Theme='y'><Q/></Appearance></D>",
        "<D><Geometry/><Appearance><Q/></Appearance></D>",
        [](WorkingShape& shape) { shape.appearance = Appearance(); });
    row("a shadow", "<D><Geometry/><Appearance Theme='y'><Q/></Appearance></D>",
        "<D><Geometry/><Appearance Theme='y'><Q/><Shadow Radius=\"6\" Flatness=\"0\" X=\"4\" "
        "Y=\"4\" "
        "Color=\"#80000000\"/></Appearance></D>",
        [](WorkingShape& shape) { shape.appearance.shadow.emplace(); });
}

void TestKpshapesSourceDocument::changesNoMoreThanWasChanged()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    QFETCH(std::function<void(WorkingShape&)>, change);

    auto const source = sourceOf(before);
    QCOMPARE(source->count(), 1);
    QCOMPARE(source->write({changed(source->items().front(), change)}), after);
    QCOMPARE(source->write(source->items()), before);
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

void TestKpshapesSourceDocument::keepsAllThroughRandomChanges_data()
{
    QTest::addColumn<bool>("isShaped");

    QTest::newRow("odd documents") << false;
    QTest::newRow("outlines in elements of their own") << true;
}

void TestKpshapesSourceDocument::keepsAllThroughRandomChanges()
{
    QFETCH(bool, isShaped);

    auto random = Testing::seededRandom(isShaped ? 20261122 : 20261123);
    OddDocuments odd(random);
    int keptSurroundings = 0;
    for (int round = 0; round < 1000; ++round) {
        QByteArray const text = isShaped ? shapedDocument(random) : odd.next();
        auto const source = sourceOf(text);
        Items const before = source->items();
        Items items = before;
        bool isForeignKept = true;
        for (int change = random.bounded(5); change >= 0 && !items.empty(); --change) {
            auto const index = static_cast<std::size_t>(random.bounded(int(items.size())));
            switch (random.bounded(8)) {
            case 0:
                std::swap(items[index], items.back());
                break;
            case 1:
                items.erase(items.begin() + static_cast<std::ptrdiff_t>(index));
                isForeignKept = false;
                break;
            case 2:
                items.insert(items.begin() + static_cast<std::ptrdiff_t>(index), newItem("fresh"));
                break;
            default:
                items[index] = changed(items[index], [&](WorkingShape& shape) {
                    isForeignKept = changeAnything(shape, random) && isForeignKept;
                });
                break;
            }
        }
        auto const written = source->written(items);
        Items const read = sourceOf(written.bytes)->items();
        QCOMPARE(read.size(), items.size());
        for (std::size_t i = 0; i < items.size(); ++i) {
            QVERIFY2(asWritten(read[i]->outline) == asWritten(items[i]->outline),
                text + "\nbecame\n" + written.bytes);
            QVERIFY2(read[i]->appearance == items[i]->appearance, text + "\n" + written.bytes);
            if (written.withoutPlace == 0) {
                ++keptSurroundings;
                QVERIFY2(surroundings(*read[i]) == surroundings(*items[i]),
                    surroundings(*read[i]).toUtf8() + "\nnot " + surroundings(*items[i]).toUtf8()
                        + '\n' + text + "\nbecame\n" + written.bytes);
            }
        }
        if (isForeignKept)
            QVERIFY2(
                foreignIn(written.bytes) == foreignIn(text), text + "\nbecame\n" + written.bytes);
        QCOMPARE(source->write(before), text);
    }
    QVERIFY(keptSurroundings > 200);
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
