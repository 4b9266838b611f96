// SPDX-License-Identifier: MIT
#include "document/markup.h"

#include <QtTest>

class TestMarkup : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void takesEverythingApart();
    void keepsPlaces();
    void mergesTexts();
    void knowsDefaultAttributes();
    void readsDamagedTextAsFarAsItGoes_data();
    void readsDamagedTextAsFarAsItGoes();
    void blankIsWhatXmlSaysSo_data();
    void blankIsWhatXmlSaysSo();
};

namespace {

/** All nodes with their kinds, on one line. */
QString outlined(std::vector<MarkupNode> const& nodes)
{
    static char const* const kinds[] = {
        "element", "text", "cdata", "reference", "comment", "instruction", "doctype"};
    QStringList parts;
    for (MarkupNode const& node : nodes) {
        QString part = kinds[static_cast<int>(node.kind)];
        if (!node.name.isEmpty())
            part += ' ' + node.name;
        for (MarkupAttribute const& attribute : node.attributes)
            part += QString(attribute.isDefault ? " ?%1=%2" : " %1=%2")
                        .arg(attribute.name, attribute.value);
        if (!node.text.isEmpty())
            part += " '" + node.text + "'";
        if (!node.children.empty())
            part += " (" + outlined(node.children) + ')';
        parts << part;
    }
    return parts.join(", ");
}

} // namespace

void TestMarkup::takesEverythingApart()
{
    Markup const markup =
        markupOf("<?xml version=\"1.0\" standalone=\"yes\"?><!--a--><!DOCTYPE p:D>"
                 "<p:D b=\"1\" a=\"2\"> <![CDATA[ <]]><E/><?t d?>x</p:D><?u?>");
    QVERIFY(markup.isStandalone);
    QCOMPARE(outlined(markup.nodes),
        QString("comment 'a', doctype '<!DOCTYPE p:D>', element p:D b=1 a=2 (text ' ', cdata ' <', "
                "element E, instruction t 'd', text 'x'), instruction u"));
    QVERIFY(!markupOf("<D/>").isStandalone);
}

void TestMarkup::keepsPlaces()
{
    Markup const markup = markupOf("<D>\n <E\n a=\"1\"/></D>");
    MarkupNode const& element = markup.nodes.front().children.at(1);
    QCOMPARE(element.line, qint64(3));
    QCOMPARE(element.column, qint64(8));
}

void TestMarkup::mergesTexts()
{
    QCOMPARE(outlined(markupOf("<!DOCTYPE D [<!ENTITY e \"b\">]><D>a&e;&#99;</D>").nodes),
        QString("doctype '<!DOCTYPE D [<!ENTITY e \"b\">]>', element D (text 'abc')"));
    QCOMPARE(outlined(markupOf("<!DOCTYPE D SYSTEM \"d\"><D>a&e;b</D>").nodes),
        QString(
            "doctype '<!DOCTYPE D SYSTEM \"d\">', element D (text 'a', reference e, text 'b')"));
}

void TestMarkup::knowsDefaultAttributes()
{
    QCOMPARE(outlined(markupOf("<!DOCTYPE D [<!ATTLIST D a CDATA \"1\">]><D b=\"2\"/>").nodes),
        QString("doctype '<!DOCTYPE D [<!ATTLIST D a CDATA \"1\">]>', element D b=2 ?a=1"));
}

void TestMarkup::readsDamagedTextAsFarAsItGoes_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("nodes");
    QTest::newRow("empty") << QByteArray() << "";
    QTest::newRow("truncated") << QByteArray("<D><E a=\"1\">x<F")
                               << "element D (element E a=1 (text 'x'))";
    QTest::newRow("wrong end") << QByteArray("<D><E></D>") << "element D (element E)";
    QTest::newRow("two roots") << QByteArray("<D/><E/>") << "element D";
    QTest::newRow("no XML") << QByteArray("\0\1\2", 3) << "";
}

void TestMarkup::readsDamagedTextAsFarAsItGoes()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, nodes);
    QCOMPARE(outlined(markupOf(text).nodes), nodes);
}

void TestMarkup::blankIsWhatXmlSaysSo_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("result");
    QTest::newRow("empty") << ""
                           << "";
    QTest::newRow("white space") << " \t\r\n"
                                 << "";
    QTest::newRow("words") << "\n a\t\n b "
                           << "a b";
    QTest::newRow("no-break space") << QString(" \u00a0 ") << QString("\u00a0");
}

void TestMarkup::blankIsWhatXmlSaysSo()
{
    QFETCH(QString, text);
    QFETCH(QString, result);
    QCOMPARE(collapsed(text), result);
    QCOMPARE(isBlank(text), result.isEmpty());
}

QTEST_GUILESS_MAIN(TestMarkup)

#include "tst_markup.moc"
