// SPDX-License-Identifier: MIT
#include "boundedxml_p.h"
#include "fit/alignment.h"
#include "import/anyimport.h"
#include "import/drawingmlimport.h"
#include "import/odfdrawing.h"
#include "kpfilepathmanager.h"
#include "paint/picture.h"

#include <QBuffer>
#include <QDomDocument>
#include <QTemporaryDir>
#include <QtTest>

namespace {

/** A document of so many nodes, two of which are its own start and end. */
QByteArray ofNodes(int count)
{
    int const elements = (count - 4) / 2;
    return "<a>" + QByteArray(count % 2 == 1 ? "t" : "") + QByteArray("<b/>").repeated(elements)
        + "</a>";
}

/** The same, short since an entity stands for most of them. */
QByteArray shortOfNodes(int count)
{
    int const each = 1000; // 500 empty elements
    int const expanded = (count - 5) / each;
    int const rest = count - 5 - expanded * each;
    return "<!DOCTYPE a [<!ENTITY e '" + QByteArray("<b/>").repeated(each / 2) + "'>]><a>"
        + QByteArray("&e;").repeated(expanded) + QByteArray("<b/>").repeated(rest / 2)
        + QByteArray(rest % 2 == 1 ? "t" : "") + "</a>";
}

QByteArray ofSize(int bytes)
{
    return "<a/>" + QByteArray(bytes - 4, ' ');
}

QByteArray withEntity(int characters)
{
    return "<!DOCTYPE a [<!ENTITY e '" + QByteArray(characters, 'x') + "'>]><a>&e;</a>";
}

QByteArray ofName(int characters)
{
    return '<' + QByteArray(characters, 'n') + "/>";
}

} // namespace

/** What is at a limit of docs/limits.md and what is one beyond, as far as no other test has both. */
class TestLimits : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void loadXmlFile_data();
    void loadXmlFile();
    void documents_data();
    void documents();
    void tokensOfAReader_data();
    void tokensOfAReader();
    void stepsOfAPreset();
    void shapesOfAnOpenDocument();
    void sizesOfPictures();
    void orderOfShapes_data();
    void orderOfShapes();
};

void TestLimits::loadXmlFile_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("passes");
    QTest::newRow("bytes") << ofSize(67108864) << true;
    QTest::newRow("one byte more") << ofSize(67108865) << false;
    QTest::newRow("nodes") << ofNodes(750000) << true;
    QTest::newRow("one node more") << ofNodes(750001) << false;
}

void TestLimits::loadXmlFile()
{
    QFETCH(QByteArray, text);
    QTemporaryDir const folder;
    QFile file(folder.filePath("a.xml"));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(text) == text.size());
    file.close();
    QDomDocument document;
    QTEST(KpFilePathManager::loadXmlFile(document, file.fileName()), "passes");
}

void TestLimits::documents_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("passes");
    QTest::newRow("nodes of a short one") << shortOfNodes(100000) << true;
    QTest::newRow("one more") << shortOfNodes(100001) << false;
    QTest::newRow("characters of an entity") << withEntity(4096) << true;
    QTest::newRow("a reference more") << withEntity(4100) << false;
    QTest::newRow("characters of a name") << ofName(4096) << true;
    QTest::newRow("a character of a name more") << ofName(4097) << false;
}

void TestLimits::documents()
{
    QFETCH(QByteArray, text);
    BoundedXml::Error error;
    QTEST(BoundedXml::check(text, error), "passes");
}

void TestLimits::tokensOfAReader_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<QString>("fault");
    // A reader takes 8,192 bytes at a time, and those before it has met a token do not count.
    QTest::newRow("most") << 28192 << QString();
    QTest::newRow("more") << 28193 << "more than 20000 bytes without a tag";
}

void TestLimits::tokensOfAReader()
{
    QFETCH(int, size);
    QByteArray text = "<!--" + QByteArray(size - 11, 'x') + "--><a/>";
    QCOMPARE(text.size(), size);
    QBuffer buffer(&text);
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    BoundedXml::Reader reader(buffer, 20000);
    while (reader.readNext()) { }
    QTEST(reader.error().message, "fault");
}

void TestLimits::stepsOfAPreset()
{
    auto const read = [](int steps) {
        Diagnostics diagnostics;
        QByteArray const move = "<moveTo><pt x='0' y='0'/></moveTo>";
        QByteArray const line = "<lnTo><pt x='w' y='h'/></lnTo>";
        return readPresetShapes(
            "<p><s><pathLst><path>" + move + line.repeated(steps - 1) + "</path></pathLst></s></p>",
            "a", diagnostics)
            .has_value();
    };
    QVERIFY(read(100000));
    QVERIFY(!read(100001));
}

void TestLimits::shapesOfAnOpenDocument()
{
    auto const read = [](int shapes) {
        Diagnostics diagnostics;
        OdfDrawing drawing;
        return drawing.read("<d xmlns:draw='urn:oasis:names:tc:opendocument:xmlns:drawing:1.0'>"
                + QByteArray("<draw:line/>").repeated(shapes) + "</d>",
            QString(), "a", diagnostics);
    };
    QVERIFY(read(200000));
    QVERIFY(!read(200001));
}

void TestLimits::sizesOfPictures()
{
    QCOMPARE(sizeFault({20000, 5000}), QString());
    QCOMPARE(sizeFault({5000, 20000}), QString());
    QCOMPARE(sizeFault({10000, 10000}), QString());
    for (QSizeF const size : {QSizeF(20001, 1), QSizeF(1, 20001), QSizeF(10001, 10000)})
        QVERIFY(
            sizeFault(size).endsWith("is too large: at most 20000 a side, and 100 million in all"));
}

void TestLimits::orderOfShapes_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<bool>("areReordered");
    QTest::newRow("most") << 1000 << true;
    QTest::newRow("one more") << 1001 << false;
}

void TestLimits::orderOfShapes()
{
    QFETCH(int, count);
    QFETCH(bool, areReordered);
    std::vector<int> const partners =
        paired(count, [count](int i, int j) { return i + j == count - 1 ? 0.0 : 1.0; });
    QCOMPARE(partners.front(), areReordered ? count - 1 : 0);
    QCOMPARE(partners.back(), areReordered ? 0 : count - 1);
}

QTEST_GUILESS_MAIN(TestLimits)
#include "tst_limits.moc"
