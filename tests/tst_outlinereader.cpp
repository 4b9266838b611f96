// SPDX-License-Identifier: MIT
#include "document/outlinereader.h"

#include "common/repeatableinput.h"
#include "document/elements.h"
#include "document/shapeformat.h"
#include "documenttesting.h"

#include <QBuffer>
#include <QDomDocument>

using namespace DocumentTesting;

namespace {

/** Everything that is known of an outline and must be the same however it was read. */
QString described(Outline const& outline, KpPathSegList& list)
{
    QVector<int> ints;
    QVector<double> doubles;
    list.toUndoValue(ints, doubles);
    QString text = QString("%1 '%2' %3x%4 %5 at %6:%7 inside %8")
                       .arg(outline.index)
                       .arg(outline.name, outline.width, outline.height)
                       .arg(outline.fillRule ? fillRuleText(*outline.fillRule) : "none")
                       .arg(outline.line)
                       .arg(outline.column)
                       .arg(outline.isInside);
    for (int const number : ints)
        text += QString(" %1").arg(number);
    for (double const number : doubles)
        text += ' ' + Testing::exact(number);
    return text;
}

QStringList readFrom(QByteArray const& text, OutlineReader::Detail detail)
{
    QStringList outlines;
    auto const device = repeatableInput(text)();
    OutlineReader reader(*device, "a.xml", detail);
    for (Outlines group = reader.next(); !group.empty(); group = reader.next()) {
        for (Outline const& outline : group)
            outlines << described(outline, *outline.list);
    }
    return outlines;
}

bool isInside(QDomElement const& element)
{
    QDomNode parent = element.parentNode();
    while (!parent.isNull() && parent.nodeName() != "Geometry")
        parent = parent.parentNode();
    return !parent.isNull();
}

/** As the library reads them from a tree of the whole document. */
QStringList readFromTree(QByteArray const& text)
{
    QStringList outlines;
    QDomDocument document;
    QXmlStreamReader reader(text);
    reader.setNamespaceProcessing(false);
    document.setContent(&reader, false);
    for (QDomElement element = document.documentElement(); !element.isNull();
         element = nextElement(element)) {
        if (element.tagName() != "Geometry")
            continue;
        KpPathSegList list;
        list.parse(element, 0);
        QDomElement const around = element.parentNode().toElement();
        Outline const outline {static_cast<int>(outlines.size()) + 1,
            around.attribute("Name").simplified(), fillRuleFromText(around.attribute("FillRule")),
            around.attribute("Width"), around.attribute("Height"), element.lineNumber(),
            element.columnNumber(), isInside(element), nullptr, nullptr};
        outlines << described(outline, list);
    }
    return outlines;
}

} // namespace

class TestOutlineReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsAsFromATree();
    void readsWhatIsAroundAnOutline();
    void visitsWhatIsOutsideOutlines();
    void faultEndsTheDocument_data();
    void faultEndsTheDocument();
    void otherFilesAreNamed();
    void tellsAPicture();
    void tellsProgress();
};

void TestOutlineReader::readsAsFromATree()
{
    QRandomGenerator random = Testing::seededRandom(57);
    OddDocuments documents(random);
    int outlines = 0;
    for (int round = 0; round < 3000; ++round) {
        QByteArray const text = documents.next();
        QStringList const expected = readFromTree(text);
        outlines += expected.size();
        for (auto const detail : {OutlineReader::Detail::Lists, OutlineReader::Detail::Markup}) {
            QStringList const read = readFrom(text, detail);
            QVERIFY2(read == expected,
                qPrintable(read.join('\n') + "\n\n" + expected.join('\n') + "\n\n" + text));
        }
    }
    QVERIFY(outlines > 3000);
}

void TestOutlineReader::readsWhatIsAroundAnOutline()
{
    QByteArray const text = "<D Name=\"no\">\n<S FillRule=\"evenodd\" Name=\" a  b \" Width=\"3\" "
                            "Height=\"x\"><Geometry Closed=\"1\"\n><MoveTo Name=\"in\"><Geometry/>"
                            "</MoveTo></Geometry></S><S><Geometry/></S></D>";
    auto const device = repeatableInput(text)();
    OutlineReader reader(*device, "a.xml");
    Outlines const group = reader.next();
    QCOMPARE(group.size(), std::size_t(2));
    QCOMPARE(group[0].index, 1);
    QCOMPARE(group[0].name, QString("a b"));
    QCOMPARE(group[0].width, QString("3"));
    QCOMPARE(group[0].height, QString("x"));
    QVERIFY(group[0].fillRule == Qt::OddEvenFill);
    QCOMPARE(group[0].line, 3);
    QCOMPARE(group[0].column, 1);
    QVERIFY(!group[0].isInside);
    QVERIFY(!group[0].markup);
    QVERIFY(group[0].list->closed);
    QCOMPARE(group[0].list->segs.size(), 1);
    QCOMPARE(group[1].index, 2);
    QCOMPARE(group[1].name, QString("in"));
    QVERIFY(group[1].isInside);
    Outlines const next = reader.next();
    QCOMPARE(next.size(), std::size_t(1));
    QCOMPARE(next[0].index, 3);
    QVERIFY(next[0].name.isEmpty());
    QVERIFY(reader.next().empty());
    QCOMPARE(reader.count(), 3);
    QVERIFY(!reader.fault());
}

void TestOutlineReader::visitsWhatIsOutsideOutlines()
{
    QStringList visited;
    auto const device = repeatableInput("<!--a--><D>b<Geometry>c<!--d--></Geometry><E/></D>")();
    OutlineReader reader(*device, "a.xml");
    reader.setVisitor([&visited](QXmlStreamReader const& xml) {
        visited << xml.tokenString() + xml.qualifiedName() + xml.text();
    });
    QCOMPARE(reader.next().size(), std::size_t(1));
    QCOMPARE(visited, QStringList({"StartDocument", "Commenta", "StartElementD", "Charactersb"}));
    visited.clear();
    QVERIFY(reader.next().empty());
    QCOMPARE(visited, QStringList({"StartElementE", "EndElementE", "EndElementD", "EndDocument"}));
}

void TestOutlineReader::faultEndsTheDocument_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("outlines");
    QTest::addColumn<QString>("fault");
    QTest::newRow("nothing") << QByteArray() << 0 << "1:1: Premature end of document.";
    QTest::newRow("between outlines") << QByteArray("<D><Geometry/><Geometry/>\n</E>") << 2
                                      << "2:5: Opening and ending tag mismatch.";
    QTest::newRow("in an outline") << QByteArray("<D><Geometry/><Geometry>\n</E>") << 1
                                   << "2:5: Opening and ending tag mismatch.";
    QTest::newRow("too deep") << "<D><Geometry>" + QByteArray("<a>").repeated(999) << 0
                              << "1:3011: more than 1000 nested elements";
    QTest::newRow("too many references")
        << "<!DOCTYPE D [<!ENTITY e \"ab\">]><D><Geometry/>" + QByteArray("&e;\n").repeated(10001)
        << 1 << "1:32: more than 10000 references in a document that declares entities";
    QTest::newRow("too many defaults")
        << "<!DOCTYPE D [<!ATTLIST a b CDATA 'v' c CDATA 'v' d CDATA 'v' e CDATA 'v'>]><D>"
            + QByteArray("<a/>").repeated(40000)
        << 0 << "1:66747: more than 100000 nodes";
}

void TestOutlineReader::faultEndsTheDocument()
{
    QFETCH(QByteArray, text);
    QFETCH(int, outlines);
    QFETCH(QString, fault);
    for (auto const detail : {OutlineReader::Detail::Lists, OutlineReader::Detail::Markup}) {
        auto const device = repeatableInput(text)();
        OutlineReader reader(*device, "a.xml", detail);
        int count = 0;
        while (!reader.next().empty())
            ++count;
        QCOMPARE(count, outlines);
        QVERIFY(reader.fault());
        QCOMPARE(reader.fault()->file, QString("a.xml"));
        QCOMPARE(QString("%1:%2: %3")
                     .arg(reader.fault()->line)
                     .arg(reader.fault()->column)
                     .arg(reader.fault()->text),
            fault);
        QVERIFY(reader.next().empty());
    }
}

void TestOutlineReader::otherFilesAreNamed()
{
    auto const device = repeatableInput(QByteArray("\x89PNG\r\n\x1a\n<D/>"))();
    OutlineReader reader(*device, "a.png");
    QVERIFY(reader.next().empty());
    QVERIFY(reader.fault());
    QCOMPARE(reader.fault()->text, QString("a PNG picture, not an XML document"));
}

void TestOutlineReader::tellsAPicture()
{
    for (auto const& [text, isPicture] : {std::pair("<svg/>", true), std::pair("<s:svg/>", true),
             std::pair("<svg><Geometry/></svg>", false), std::pair("<D><svg/></D>", false)}) {
        auto const device = repeatableInput(QByteArray(text))();
        OutlineReader reader(*device, "a.svg");
        while (!reader.next().empty()) { }
        QCOMPARE(reader.isSvgPicture(), isPicture);
    }
}

void TestOutlineReader::tellsProgress()
{
    QVector<double> told;
    auto const device =
        repeatableInput("<D>" + QByteArray("<Geometry/>").repeated(100000) + "</D>")();
    OutlineReader reader(*device, "a.xml");
    reader.setProgress([&told](double share) { told << share; });
    while (!reader.next().empty()) { }
    QVERIFY(told.size() >= 3 && told.size() < 20);
    QVERIFY(std::is_sorted(told.cbegin(), told.cend()));
    QVERIFY(told.first() >= 0.0 && told.last() > 0.6 && told.last() <= 1.0);
}

QTEST_GUILESS_MAIN(TestOutlineReader)

#include "tst_outlinereader.moc"
