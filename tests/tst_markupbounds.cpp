// SPDX-License-Identifier: MIT
#include "boundedxml_p.h"

#include <QBuffer>
#include <QDomDocument>
#include <QTextCodec>
#include <QtTest>

namespace {

/** `count` times `pattern`, each with its number in the place of %1. */
QByteArray numbered(char const* pattern, int count)
{
    QByteArray result;
    for (int i = 0; i < count; ++i)
        result += QByteArray(pattern).replace("%1", QByteArray::number(i));
    return result;
}

QByteArray withSubset(QByteArray const& subset, QByteArray const& content = "<a/>")
{
    return "<!DOCTYPE a [" + subset + "]>" + content;
}

/** Entities of two references each to the one before; the first is empty. */
QByteArray doubling(QByteArray const& pattern, int count)
{
    QByteArray result;
    for (int i = 1; i <= count; ++i) {
        QByteArray line = pattern;
        result +=
            line.replace("%1", QByteArray::number(i)).replace("%2", QByteArray::number(i - 1));
    }
    return result;
}

QByteArray encoded(QByteArray const& text, char const* codec)
{
    return QTextCodec::codecForName(codec)->fromUnicode(QString::fromUtf8(text));
}

QByteArray encodedWithName(QByteArray const& text, char const* codec)
{
    return "<?xml version='1.0' encoding='" + QByteArray(codec) + "'?>" + encoded(text, codec);
}

/** With a mark of the byte order, and in that order. */
QByteArray marked(QString const& text, char const* codec)
{
    QString const all = QChar(QChar::ByteOrderMark) + text;
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    return QTextCodec::codecForName(codec)->fromUnicode(all.constData(), all.size(), &state);
}

/** A document type with entities of some names, the last of which has too many references. */
QString withLastOneExcessive(QString const& names)
{
    QString subset = "<!ENTITY e ''>";
    for (QChar const name : names) {
        int const references = name == names.back() ? 1001 : 1;
        subset += QString("<!ENTITY %1 '%2'>").arg(name).arg(QString("&e;").repeated(references));
    }
    return "<!DOCTYPE a [" + subset + "]><a/>";
}

} // namespace

class TestMarkupBounds : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void boundsWhatIsCostly_data();
    void boundsWhatIsCostly();
    void readsWhatOnlyLooksCostly_data();
    void readsWhatOnlyLooksCostly();
    void errorStandsWhereTheBoundIs_data();
    void errorStandsWhereTheBoundIs();
    void earlierFaultIsTold();
    void endOfAShortDeclarationIsMissed();
    void boundedTextEndsBeforeTheFault_data();
    void boundedTextEndsBeforeTheFault();
    void laterPiecesAreNoStarts();
    void boundsTakeLittleTime_data();
    void boundsTakeLittleTime();
};

void TestMarkupBounds::boundsWhatIsCostly_data()
{
    QString const attributes = "more than 1000 attributes of one element";
    QString const declared = "more than 1000 attributes in the document type";
    QString const nested = "more than 1000 references within an entity";
    QString const parameters = "more than 1000 references to parameter entities";
    QString const namespaces = "more than 1000 namespaces at one place";
    QString const references = "more than 10000 references in a document that declares entities";
    QString const defaults = "more than 16777216 characters of default attributes";

    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("message");

    auto const element = [](int count) { return "<a" + numbered(" b%1=''", count) + "/>"; };
    QTest::newRow("most attributes") << element(1000) << QString();
    QTest::newRow("one attribute more") << element(1001) << attributes;
    QTest::newRow("in the second element") << "<x>" + element(1) + element(1001) << attributes;
    QTest::newRow("with quotes of both kinds")
        << QByteArray("<a" + numbered(" b%1='>' c%1=\"'\"", 501) + "/>") << attributes;
    QTest::newRow("behind what looks like markup")
        << QByteArray("<x y='>'><!-- <q '> --><?p <q \"?><![CDATA[ <q ']]>" + element(1001))
        << attributes;
    QTest::newRow("behind an identifier with a percent sign")
        << "<!DOCTYPE a SYSTEM '%20'>" + element(1001) << attributes;
    QTest::newRow("behind an identifier with a bracket")
        << "<!DOCTYPE a SYSTEM '['><x>%" + element(1001) << attributes;
    QTest::newRow("most in UTF-16") << encoded(element(1000), "UTF-16") << QString();
    QTest::newRow("more in UTF-16") << encoded(element(1001), "UTF-16") << attributes;
    QTest::newRow("more in UTF-32") << encoded(element(1001), "UTF-32") << attributes;
    for (char const* const codec :
        {"ISO-8859-1", "Shift_JIS", "ISO-2022-JP", "GB18030", "UTF-7", "windows-1252", "IBM037"}) {
        QTest::addRow("most in %s", codec) << encodedWithName(element(1000), codec) << QString();
        QTest::addRow("more in %s", codec) << encodedWithName(element(1001), codec) << attributes;
    }
    // Each "=" is written as a part of a sequence.
    QByteArray disguised = element(1001);
    QTest::newRow("more in UTF-7, disguised")
        << "<?xml version='1.0' encoding='UTF-7'?>" + disguised.replace("=", "+AD0-") << attributes;

    // The last "=" is the first byte of a piece that Qt reads.
    QByteArray const latin1 = "<?xml version='1.0' encoding='ISO-8859-1'?><a";
    QByteArray const many = numbered(" b%1=''", 1000) + " c";
    QTest::newRow("more at the start of a piece")
        << latin1 + QByteArray(16384 - latin1.size() - many.size(), ' ') + many + "=''/>"
        << attributes;

    auto const list = [](int count) {
        return "<!ATTLIST a" + numbered(" b%1 CDATA #IMPLIED", count);
    };
    QTest::newRow("most declared attributes") << withSubset(list(1000) + ">") << QString();
    QTest::newRow("one declared attribute more") << withSubset(list(1001) + ">") << declared;
    QTest::newRow("most of different kinds")
        << withSubset(list(997) + " c CDATA #REQUIRED d CDATA '#' e CDATA #FIXED \"'\">")
        << QString();
    QTest::newRow("more of different kinds")
        << withSubset(list(998) + " c CDATA #REQUIRED d CDATA '#' e CDATA #FIXED \"'\">")
        << declared;
    QTest::newRow("declared in many lists")
        << withSubset(numbered("<!ATTLIST a b%1 CDATA ''>", 1001)) << declared;
    QTest::newRow("declared by a parameter entity") << withSubset(
        "<!ENTITY % p '&#60;!ATTLIST a b CDATA #IMPLIED c CDATA &#34;&#34;>'>"
        + QByteArray("%p;").repeated(501)) << declared;

    QTest::newRow("most references within an entity") << withSubset(
        "<!ENTITY e ''><!ENTITY f '" + QByteArray("&e;").repeated(1000) + "'>", "<a>&f;</a>")
                                                      << QString();
    QTest::newRow("one reference within an entity more") << withSubset(
        "<!ENTITY e ''><!ENTITY f '" + QByteArray("&e;").repeated(1001) + "'>", "<a>&f;</a>")
                                                         << nested;
    QByteArray const doubled = doubling("<!ENTITY e%1 '&e%2;&e%2;'>", 40);
    QTest::newRow("entities that double") << withSubset(doubled, "<a>&e40;</a>") << nested;
    QTest::newRow("entities that double unseen")
        << withSubset(doubling("<!ENTITY e%1 '&#38;e%2;&#x026;e%2;'>", 40), "<a>&e40;</a>")
        << nested;
    QByteArray const zeros(9000, '0');
    QTest::newRow("entities that double unseen behind zeros") << withSubset(
        doubling("<!ENTITY e%1 '&#" + zeros + "38;e%2;&#x" + zeros + "26;e%2;'>", 12),
        "<a>&e12;</a>") << nested;
    QTest::newRow("entities that double in a default")
        << withSubset("<!ENTITY e0 ''>" + doubled + "<!ATTLIST a b CDATA '&e40;'>") << nested;
    QTest::newRow("long chain of entities")
        << withSubset(numbered("<!ENTITY e%1 '&e%1x;'><!ENTITY e%1x ''>", 9999)) << QString();
    QTest::newRow("circle of entities")
        << withSubset("<!ENTITY e '&f;'><!ENTITY f '&e;'>") << QString();
    QTest::newRow("longest chain of entities")
        << withSubset(doubling("<!ENTITY e%1 '&e%2;'>", 1001), "<a/>") << nested;

    QTest::newRow("references of references") << withSubset(
        "<!ENTITY e ''><!ENTITY f '" + QByteArray("&e;").repeated(500) + "'><!ENTITY g '&f;&f;'>")
                                              << nested;
    QTest::newRow("most in a circle")
        << withSubset("<!ENTITY e '" + QByteArray("&e;").repeated(1000) + "'>") << QString();
    QTest::newRow("deepest entity in a default") << withSubset("<!ENTITY e0 ''>"
        + doubling("<!ENTITY e%1 '&e%2;'>", 1000) + "<!ATTLIST a b CDATA '&e1000;'>")
                                                 << QString();
    QTest::newRow("characters by reference in an entity")
        << withSubset("<!ENTITY e '" + QByteArray("&#38;#9;").repeated(1001) + "'>", "<a>&e;</a>")
        << QString();
    QByteArray const excessive =
        "<!ENTITY e ''><!ENTITY f '" + QByteArray("&e;").repeated(1001) + "'>";
    QTest::newRow("second declaration of an entity")
        << withSubset("<!ENTITY f ''>" + excessive) << QString();
    QTest::newRow("second declaration of an entity of many references")
        << withSubset(excessive + "<!ENTITY f ''>") << nested;
    QTest::newRow("second declaration of a parameter entity") << withSubset(
        "<!ENTITY % p ''><!ENTITY % p '&#60;!ATTLIST a b CDATA #IMPLIED c CDATA #IMPLIED>'>"
        + QByteArray("%p;").repeated(501)) << QString();

    // Each name differs from the last one in some bits of those that stand for a character.
    QString const ofTwoBytes = QString::fromUtf16(u"A\u0140\u0101\u0141");
    QString const ofThreeBytes = QString::fromUtf16(u"A\u5140\u5101\u4141\u5141");
    for (char const* const codec : {"UTF-16LE", "UTF-16BE", "UTF-32LE", "UTF-32BE"}) {
        QTest::addRow("names of two bytes in %s", codec)
            << marked(withLastOneExcessive(ofTwoBytes), codec) << nested;
        QTest::addRow("names of three bytes in %s", codec)
            << marked(withLastOneExcessive(ofThreeBytes), codec) << nested;
    }
    auto const referring = [](int count) {
        return encoded(
            withSubset("<!ENTITY e 'x'>", "<a>" + QByteArray("&e;").repeated(count) + "</a>"),
            "UTF-16");
    };
    QTest::newRow("most references in UTF-16") << referring(10000) << QString();
    QTest::newRow("one reference in UTF-16 more") << referring(10001) << references;

    QTest::newRow("before a comment") << withSubset(excessive + "<!-- c -->") << nested;
    QTest::newRow("declared behind a comment")
        << withSubset("<!-- c -->" + list(1001) + ">") << declared;
    QTest::newRow("most references in a default that is declared again") << withSubset(
        "<!ENTITY e ''><!ENTITY % p '<!ATTLIST a b CDATA \"" + QByteArray("&#38;e;").repeated(100)
        + "\">'>" + QByteArray("%p;").repeated(100)) << QString();
    QTest::newRow("more references in a default that is declared again") << withSubset(
        "<!ENTITY e ''><!ENTITY % p '<!ATTLIST a b CDATA \"" + QByteArray("&#38;e;").repeated(100)
        + "\">'>" + QByteArray("%p;").repeated(101)) << references;
    QTest::newRow("characters by reference in a default")
        << withSubset("<!ATTLIST a b CDATA '" + QByteArray("&#65;").repeated(10001) + "'>")
        << QString();
    QTest::newRow("behind a document type and a percent sign")
        << withSubset("", "<x>%" + element(1001)) << attributes;
    QTest::newRow("behind a parameter entity")
        << withSubset("<!ENTITY % p ''>" + excessive) << nested;
    QTest::newRow("behind an entity kept elsewhere")
        << withSubset("<!ENTITY x SYSTEM 'u'>" + excessive) << nested;
    QTest::newRow("second declaration of an entity kept elsewhere")
        << withSubset("<!ENTITY f SYSTEM 'u'>" + excessive) << QString();
    QTest::newRow("parameter entity kept elsewhere") << withSubset(
        "<!ENTITY % q ''><!ENTITY % p SYSTEM '%q;'>" + QByteArray("%p;").repeated(501))
                                                     << QString();
    for (char const space : {'\t', '\n', '\r'}) {
        QTest::addRow("declared attributes behind the character %d", space)
            << withSubset(QByteArray(list(1001) + ">").replace(' ', space)) << declared;
        QTest::addRow("references behind the character %d", space)
            << withSubset(QByteArray(excessive).replace(' ', space)) << nested;
    }
    auto const behind = [](int length) {
        return withSubset("<!ENTITY e ''><!ENTITY f '" + QByteArray(length, 'x')
            + QByteArray("&e;").repeated(1001) + "'>");
    };
    QTest::newRow("references to the end of the longest value") << behind(5192) << nested;
    QTest::newRow("references beyond the longest value") << behind(5193) << QString();

    auto const empty = [](int count) {
        return withSubset("<!ENTITY % p ''>" + QByteArray("%p;").repeated(count));
    };
    QTest::newRow("most parameter references") << empty(1000) << QString();
    QTest::newRow("one parameter reference more") << empty(1001) << parameters;
    QTest::newRow("parameter entities that double") << withSubset(
        doubling("<!ENTITY %% p%1 '&#37;p%2;&#37;p%2;'>", 40).replace("%%", "%") + "%p40;")
                                                    << parameters;

    auto const defaulted = [](int count) {
        return withSubset(
            "<!ENTITY e ''><!ATTLIST a b CDATA '" + QByteArray("&e;").repeated(count) + "'>");
    };
    QTest::newRow("most references in a default") << defaulted(10000) << QString();
    QTest::newRow("one reference in a default more") << defaulted(10001) << references;

    auto const longDefault = [](int length, int count) {
        return withSubset("<!ATTLIST a b CDATA '" + QByteArray(length, 'x') + "'>",
            "<c>" + QByteArray("<a/>").repeated(count) + "</c>");
    };
    QTest::newRow("most characters of defaults") << longDefault(16384, 1024) << QString();
    QTest::newRow("more characters of defaults") << longDefault(16384, 1025) << defaults;

    auto const spaces = [](int count) {
        return "<a>" + QByteArray("<b" + numbered(" xmlns:x%1='u'", count) + ">") + "<c/>";
    };
    QTest::newRow("most namespaces") << spaces(1000) + "</b></a>" << QString();
    QTest::newRow("in two elements") << spaces(600) + "<d" + numbered(" xmlns:y%1='u'", 400)
            + "/><d" + numbered(" xmlns:y%1='u'", 400)
            + "/></b></a>" << QString();
    QTest::newRow("one namespace more") << spaces(1000) + "<d xmlns='u'/></b></a>" << namespaces;

    QTest::newRow("longest declaration")
        << QByteArray("<?xml version='1.0'" + QByteArray(4075, ' ') + "?><a/>") << QString();
    QTest::newRow("longer declaration")
        << QByteArray("<?xml version='1.0'" + QByteArray(4076, ' ') + "?><a/>")
        << QString("an XML declaration of more than 4096 bytes");
}

void TestMarkupBounds::boundsWhatIsCostly()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, message);

    BoundedXml::Error checked;
    QCOMPARE(BoundedXml::check(text, checked), message.isEmpty());
    QCOMPARE(checked.message, message);

    QDomDocument document;
    BoundedXml::Error parsed;
    QCOMPARE(BoundedXml::parse(text, document, parsed), message.isEmpty());
    QCOMPARE(parsed.message, message);
    QCOMPARE(document.isNull(), !message.isEmpty());

    QBuffer buffer(&text);
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    BoundedXml::Reader reader(buffer);
    while (reader.readNext()) { }
    QCOMPARE(reader.error().message, message);
    QCOMPARE(reader.error().line, checked.line);
    QCOMPARE(reader.error().column, checked.column);
}

void TestMarkupBounds::readsWhatOnlyLooksCostly_data()
{
    QByteArray const attributes = numbered(" b%1='c'", 3000);
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("in a comment") << QByteArray("<a><!--<b" + attributes + "--></a>");
    QTest::newRow("in character data") << QByteArray("<a><![CDATA[<b" + attributes + "]]></a>");
    QTest::newRow("in an instruction") << QByteArray("<a><?b " + attributes + "?></a>");
    QTest::newRow("in a value") << QByteArray("<a c=\"" + attributes + "\"/>");
    QTest::newRow("in a text") << QByteArray("<a>" + attributes + "</a>");
    for (char const* const text : {"->", "]>", "]]>", "?>", "-x>", "- >", ">"}) {
        QTest::addRow("in a comment behind %s", text)
            << QByteArray("<a><!--" + QByteArray(text) + "<b" + attributes + "--></a>");
    }
    for (char const* const text : {"]>", "]]", "]x>", "] ]>", "-->", "?>", ">"}) {
        QTest::addRow("in character data behind %s", text)
            << QByteArray("<a><![CDATA[" + QByteArray(text) + "<b" + attributes + "]]></a>");
    }
    for (char const* const text : {"->", "-->", "]]>", "]>", "?", "?x>", ">"}) {
        QTest::addRow("in an instruction behind %s", text)
            << QByteArray("<a><?p " + QByteArray(text) + "<b" + attributes + "?></a>");
    }
    QTest::newRow("in a comment of the document type")
        << withSubset("<!--<!ATTLIST a" + attributes + ">-->");
    QTest::newRow("in an instruction of the document type")
        << withSubset("<?p <!ATTLIST a" + attributes + ">?>");
    QTest::newRow("in an entity") << withSubset("<!ENTITY e \"" + attributes + "\">");
    QTest::newRow("in an identifier")
        << QByteArray("<!DOCTYPE a SYSTEM \"[" + attributes + "\"><a/>");
    QTest::newRow("kinds of content")
        << withSubset("<!ELEMENT a (" + QByteArray("b|").repeated(3000) + "c)*>");
    QTest::newRow("notations") << withSubset(numbered("<!NOTATION n%1 PUBLIC 'u'>", 3000));
    QTest::newRow("entities") << withSubset(numbered("<!ENTITY e%1 'u'>", 3000));
    QTest::newRow("entities kept elsewhere")
        << withSubset(numbered("<!ENTITY e%1 PUBLIC 'u' 'v'><!ENTITY % p%1 SYSTEM \"w\">", 3000));
    QTest::newRow("enumeration") << withSubset(
        "<!ATTLIST a b (" + QByteArray("c|").repeated(3000) + "d) #IMPLIED>");
    QTest::newRow("many elements")
        << QByteArray("<a>" + QByteArray("<b c='1' d='2'/>").repeated(3000) + "</a>");
    QTest::newRow("parameter entity that declares one")
        << withSubset("<!ENTITY % p '<!ENTITY e \"x\">'>%p;", "<a>&e;</a>");
    QTest::newRow("attributes of elements within one another") << QByteArray(
        "<a" + numbered(" b%1='c'", 900) + "><a" + numbered(" b%1='c'", 900) + "/></a>");
    QTest::newRow("written attributes that become long")
        << withSubset("<!ENTITY e '" + QByteArray(4000, 'x') + "'>",
               "<a>" + QByteArray("<b c='&e;'/>").repeated(5000) + "</a>");
    // The bytes of the first character are those of a quote, the bytes of the others of "=".
    QString const signs = QString("<a b='\u2700%1'/>").arg(QString(QChar(0x3D3D)).repeated(1001));
    QString const comment = QString("<!--%1--><a/>").arg(QString("=").repeated(1001));
    for (char const* const codec : {"UTF-16LE", "UTF-16BE", "UTF-32LE", "UTF-32BE"}) {
        QTest::addRow("bytes in %s", codec) << marked(signs, codec);
        QTest::addRow("comment in %s", codec) << marked(comment, codec);
    }
    // An "L" is a "<" in this encoding, which begins behind the declaration.
    QTest::newRow("declaration in another encoding")
        << "<?xml version='1.0' encoding='EBCDIC-CP-NL'?>"
            + QTextCodec::codecForName("IBM037")->fromUnicode(comment);
    QTest::newRow("long instruction of a style sheet")
        << QByteArray("<?xml-stylesheet " + QByteArray(5000, 'x') + "?><a/>");
    QTest::newRow("long comment at the start")
        << QByteArray("<!--  " + QByteArray(5000, 'x') + "--><a/>");
    QTest::newRow("UTF-16 with a comment")
        << encoded("<!-- c --><a>" + attributes + "</a>", "UTF-16");
}

void TestMarkupBounds::readsWhatOnlyLooksCostly()
{
    QFETCH(QByteArray, text);
    BoundedXml::Error error;
    QVERIFY2(BoundedXml::check(text, error), qPrintable(error.message));
    QCOMPARE(BoundedXml::bounded(text), text);
}

void TestMarkupBounds::errorStandsWhereTheBoundIs_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("line");
    QTest::addColumn<int>("column");
    QTest::newRow("attributes") << QByteArray("<a>\n<b" + numbered("\nc%1=''", 1001)) << 1003 << 6;
    QTest::newRow("UTF-16") << encoded("<a>\n<b" + numbered("\nc%1=''", 1001), "UTF-16") << 1003
                            << 6;
    QTest::newRow("declaration") << QByteArray("<?xml version='1.0'\n" + QByteArray(5000, ' ')
        + "?><a/>") << 2 << 4077;
    QTest::newRow("parameter references")
        << withSubset("<!ENTITY % p ''>\n" + QByteArray("%p;\n").repeated(1001)) << 1002 << 3;
}

void TestMarkupBounds::errorStandsWhereTheBoundIs()
{
    QFETCH(QByteArray, text);
    BoundedXml::Error error;
    QVERIFY(!BoundedXml::check(text, error));
    QTEST(int(error.line), "line");
    QTEST(int(error.column), "column");
}

void TestMarkupBounds::earlierFaultIsTold()
{
    BoundedXml::Error error;
    QVERIFY(!BoundedXml::check("<a>\n</b><c" + numbered(" d%1=''", 1001) + "/>", error));
    QCOMPARE(error.line, qint64(2));
    QCOMPARE(error.message, QString("Opening and ending tag mismatch."));
}

void TestMarkupBounds::endOfAShortDeclarationIsMissed()
{
    BoundedXml::Error error;
    QVERIFY(!BoundedXml::check("<?xml version='1.0' ", error));
    QCOMPARE(error.message, QString("Premature end of document."));
}

void TestMarkupBounds::boundedTextEndsBeforeTheFault_data()
{
    QByteArray const start = "<a" + numbered(" b%1=''", 1000) + " c";
    QByteArray const rest = "='x'/>";
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("UTF-8") << start + rest << start;
    for (char const* const codec : {"UTF-16LE", "UTF-16BE", "UTF-32LE"})
        QTest::newRow(codec) << marked(start + rest, codec) << marked(start, codec);
    QByteArray const declaration = "<?xml version='1.0' encoding='ISO-8859-1'?>";
    QTest::newRow("ISO-8859-1") << declaration + start + rest << declaration + start;
    QTest::newRow("declaration without an end")
        << QByteArray("<?xml version='1.0'" + QByteArray(9000, ' '))
        << QByteArray("<?xml version='1.0'" + QByteArray(4077, ' '));
}

void TestMarkupBounds::boundedTextEndsBeforeTheFault()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, expected);
    QCOMPARE(BoundedXml::bounded(text), expected);
    QCOMPARE(BoundedXml::bounded(expected), expected);
}

void TestMarkupBounds::laterPiecesAreNoStarts()
{
    // Qt reads pieces of 4,096 bytes or a multiple of that.
    QByteArray text = "<a><!--";
    for (int piece = 1; piece < 8; ++piece)
        text += QByteArray(piece * 4096 - text.size(), ' ') + "<?xml ";
    text += QByteArray(10000, ' ') + "--></a>";
    QBuffer buffer(&text);
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    BoundedXml::Reader reader(buffer);
    while (reader.readNext()) { }
    QCOMPARE(reader.error().message, QString());
}

void TestMarkupBounds::boundsTakeLittleTime_data()
{
    QTest::addColumn<QByteArray>("text");
    // Each took minutes or more.
    QTest::newRow("attributes") << QByteArray("<a" + numbered(" b%1=''", 300000) + "/>");
    QTest::newRow("declared attributes")
        << withSubset("<!ATTLIST a" + numbered(" b%1 CDATA ''", 100000) + ">");
    QTest::newRow("entities") << withSubset(
        "<!ENTITY e0 ''>" + doubling("<!ENTITY e%1 '&e%2;&e%2;'>", 60), "<a>&e60;</a>");
    QTest::newRow("chain of entities") << withSubset(
        doubling("<!ENTITY e%1 '&e%2;'>", 100000) + "<!ATTLIST a b CDATA '&e100000;'>");
    QTest::newRow("parameter entities") << withSubset("<!ENTITY % p0 ''>"
        + doubling("<!ENTITY %% p%1 '&#37;p%2;&#37;p%2;'>", 60).replace("%%", "%") + "%p60;");
}

void TestMarkupBounds::boundsTakeLittleTime()
{
    QFETCH(QByteArray, text);
    BoundedXml::Error error;
    QVERIFY(!BoundedXml::check(text, error));
    QVERIFY(BoundedXml::bounded(text).size() < text.size());
}

QTEST_APPLESS_MAIN(TestMarkupBounds)
#include "tst_markupbounds.moc"
