// SPDX-License-Identifier: MIT
#include "sourcetesting.h"

using namespace SourceTesting;

Q_DECLARE_METATYPE(std::function<void(WorkingShape&)>)

class TestKpshapesUnitRewriter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void changesNoMoreThanWasChanged_data();
    void changesNoMoreThanWasChanged();
    void changesManySegments_data();
    void changesManySegments();
};

void TestKpshapesUnitRewriter::changesNoMoreThanWasChanged_data()
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

void TestKpshapesUnitRewriter::changesNoMoreThanWasChanged()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    QFETCH(std::function<void(WorkingShape&)>, change);

    auto const source = sourceOf(before);
    QCOMPARE(source->count(), 1);
    QCOMPARE(source->write({changed(source->items().front(), change)}), after);
    QCOMPARE(source->write(source->items()), before);
}

void TestKpshapesUnitRewriter::changesManySegments_data()
{
    QTest::addColumn<QByteArray>("segment");
    QTest::addColumn<bool>("isOtherKind");

    QTest::newRow("moved") << DocumentTesting::line(1, 2) << false;
    QTest::newRow("lone tags") << QByteArray("<LineTo/>") << false;
    QTest::newRow("of another kind") << DocumentTesting::line(1, 2) << true;
}

void TestKpshapesUnitRewriter::changesManySegments()
{
    QFETCH(QByteArray, segment);
    QFETCH(bool, isOtherKind);

    int const count = 10000;
    auto const source = sourceOf("<D><S Width='9' Height='8'><!-- c --><Geometry Closed='1'>"
        + segment.repeated(count) + "</Geometry></S></D>");
    QElapsedTimer timer;
    timer.start();
    auto const item = changed(source->items().front(), [&](WorkingShape& shape) {
        KpPathSegList& list = *shape.list;
        for (int i = 0; i < count; ++i) {
            KpPoint const point(KpReal(1, 0.5, i + 3.0), KpReal(2, 0.25, i + 4.0));
            if (isOtherKind) {
                list.insertAt(i, new KpPathSegMoveTo(point, nullptr));
                list.removeAt(i + 1, true);
            } else {
                list.segs.at(i)->pt = point;
            }
        }
    });
    QByteArray const written = source->write({item});
    qInfo("%d segments in %lld ms", count, timer.elapsed());
    QVERIFY(haveSameContent(*sourceOf(written)->items().front(), *item));
    QCOMPARE(written.count("<LineTo"), isOtherKind ? 0 : count);
    QCOMPARE(written.count("<!-- c -->"), 1);
}

QTEST_GUILESS_MAIN(TestKpshapesUnitRewriter)
#include "tst_kpshapes_unitrewriter.moc"
