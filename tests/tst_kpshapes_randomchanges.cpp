// SPDX-License-Identifier: MIT
#include "numbertext_p.h"
#include "segmentkind_p.h"
#include "sourcetesting.h"

using namespace DocumentTesting;
using namespace SourceTesting;

namespace {

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

class TestKpshapesRandomChanges : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keepsAllThroughRandomChanges_data();
    void keepsAllThroughRandomChanges();
    void readsOrRefusesAnyBytes();
};

void TestKpshapesRandomChanges::keepsAllThroughRandomChanges_data()
{
    QTest::addColumn<bool>("isShaped");

    QTest::newRow("odd documents") << false;
    QTest::newRow("outlines in elements of their own") << true;
}

void TestKpshapesRandomChanges::keepsAllThroughRandomChanges()
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

void TestKpshapesRandomChanges::readsOrRefusesAnyBytes()
{
    auto random = Testing::seededRandom(20261124);
    OddDocuments odd(random);
    int refused = 0;
    for (int round = 0; round < 3000; ++round) {
        QByteArray text = odd.next();
        for (int i = random.bounded(4); i > 0 && !text.isEmpty(); --i) {
            int const place = random.bounded(text.size());
            switch (random.bounded(4)) {
            case 0:
                text.truncate(place);
                break;
            case 1:
                text.remove(place, 1 + random.bounded(20));
                break;
            case 2:
                text.insert(place,
                    oneOf(random,
                        {"<", ">", "/", "\"", "'", "<!--", "]]>", "<![CDATA[", "<!DOCTYPE ", "[",
                            "&#0;", "</Geometry>", "<Geometry>", "<?", "\xff", "="}));
                break;
            default:
                text[place] = static_cast<char>(random.bounded(256));
                break;
            }
        }
        Diagnostics diagnostics;
        auto const reading = readingOf(text, diagnostics);
        refused += reading.document ? 0 : 1;
        if (reading.document) {
            Items items = reading.document->items();
            QCOMPARE(reading.document->write(items), text);
            items.push_back(newItem("n"));
            QVERIFY2(sourceOf(reading.document->write(items))->count() == int(items.size()), text);
        } else if (reading.kind == SourceKind::Document) {
            QCOMPARE(diagnostics.size(), 1);
        }
    }
    QVERIFY(refused > 500 && refused < 2500);
}

QTEST_GUILESS_MAIN(TestKpshapesRandomChanges)
#include "tst_kpshapes_randomchanges.moc"
