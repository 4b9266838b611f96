// SPDX-License-Identifier: MIT
#include "xmlstreamwriter.h"

#include <QBuffer>
#include <QXmlStreamReader>
#include <QtTest>

#include <limits>
#include <type_traits>
#include <utility>

namespace {

/** Whether writeAttribute can be called on an XmlStreamWriter with these arguments. */
template <class Enable, class... Arguments> struct AcceptsImplementation : std::false_type
{
};

template <class... Arguments>
struct AcceptsImplementation<std::void_t<decltype(std::declval<XmlStreamWriter&>().writeAttribute(
                                 std::declval<Arguments>()...))>,
    Arguments...> : std::true_type
{
};

template <class... Arguments> constexpr bool accepts()
{
    return AcceptsImplementation<void, Arguments...>::value;
}

/** The same small document for every kind of target. */
void writeDocument(XmlStreamWriter& writer)
{
    writer.writeStartElement(QStringLiteral("Shape"));
    writer.writeAttribute(QStringLiteral("Name"), QStringLiteral("R\u00f6hre"));
    writer.writeAttribute(QStringLiteral("Closed"), "1");
    writer.writeAttribute(QStringLiteral("Page"), 19);
    writer.writeEndElement();
}

QString const writtenDocument =
    QStringLiteral("<Shape Name=\"R\u00f6hre\" Closed=\"1\" Page=\"19\"/>");

/** What `write` writes on the start tag of the element `e`. */
template <class Write> QByteArray element(Write write)
{
    QByteArray text;
    XmlStreamWriter writer(&text);
    writer.writeStartElement(QStringLiteral("e"));
    write(writer);
    writer.writeEndElement();
    return text;
}

/** The value of the attribute `v` of the only element. */
QString readBack(QByteArray const& text)
{
    QXmlStreamReader reader(text);
    reader.readNextStartElement();
    return reader.attributes().value(QLatin1String("v")).toString();
}

} // namespace

class TestXmlStreamWriter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writesToADevice();
    void writesToAByteArray();
    void writesToAString();
    void appendsToWhatTheTargetHolds();
    void hasThreeConstructors();
    void hasExactlyThreeWriteAttributes();

    void escapesText_data();
    void escapesText();
    void writesNumbers_data();
    void writesNumbers();
    void nullTextGivesAnEmptyValue();
    void attributesKeepTheOrderOfTheCalls();
    void attributesOfNestedElementsStayApart();
};

void TestXmlStreamWriter::writesToADevice()
{
    QBuffer buffer;
    QVERIFY(buffer.open(QIODevice::WriteOnly));
    XmlStreamWriter writer(&buffer);
    QCOMPARE(writer.device(), &buffer);
    writeDocument(writer);
    QCOMPARE(QString::fromUtf8(buffer.data()), writtenDocument);
}

void TestXmlStreamWriter::writesToAByteArray()
{
    QByteArray array;
    XmlStreamWriter writer(&array);
    writeDocument(writer);
    QCOMPARE(array, writtenDocument.toUtf8());
}

void TestXmlStreamWriter::writesToAString()
{
    QString string;
    XmlStreamWriter writer(&string);
    writeDocument(writer);
    QCOMPARE(string, writtenDocument);
}

void TestXmlStreamWriter::appendsToWhatTheTargetHolds()
{
    QString string = QStringLiteral("before ");
    XmlStreamWriter writer(&string);
    writeDocument(writer);
    QCOMPARE(string, QStringLiteral("before ") + writtenDocument);
}

void TestXmlStreamWriter::hasThreeConstructors()
{
    QVERIFY((std::is_base_of<QXmlStreamWriter, XmlStreamWriter>::value));
    QCOMPARE(sizeof(XmlStreamWriter), sizeof(QXmlStreamWriter));

    QVERIFY((std::is_constructible<XmlStreamWriter, QIODevice*>::value));
    QVERIFY((std::is_constructible<XmlStreamWriter, QByteArray*>::value));
    QVERIFY((std::is_constructible<XmlStreamWriter, QString*>::value));

    QVERIFY((!std::is_convertible<QIODevice*, XmlStreamWriter>::value));
    QVERIFY((!std::is_convertible<QByteArray*, XmlStreamWriter>::value));
    QVERIFY((!std::is_convertible<QString*, XmlStreamWriter>::value));
    QVERIFY(!std::is_default_constructible<XmlStreamWriter>::value);
    QVERIFY(!std::is_copy_constructible<XmlStreamWriter>::value);
}

void TestXmlStreamWriter::hasExactlyThreeWriteAttributes()
{
    // Taking the address asks for exactly this signature.
    QVERIFY((static_cast<void (XmlStreamWriter::*)(QString const&, QString)>(
        &XmlStreamWriter::writeAttribute)));
    QVERIFY((static_cast<void (XmlStreamWriter::*)(QString const&, char const*)>(
        &XmlStreamWriter::writeAttribute)));
    QVERIFY((static_cast<void (XmlStreamWriter::*)(QString const&, int)>(
        &XmlStreamWriter::writeAttribute)));

    QVERIFY((accepts<QString, QString>()));
    QVERIFY((accepts<QString, char const*>()));
    QVERIFY((accepts<QString, int>()));
    // Qt's other overloads are hidden.
    QVERIFY((!accepts<QString, QString, QString>()));
    QVERIFY((!accepts<QXmlStreamAttribute>()));
}

void TestXmlStreamWriter::escapesText_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QByteArray>("written");

    QTest::newRow("plain") << "abc" << QByteArray("abc");
    QTest::newRow("empty") << "" << QByteArray("");
    QTest::newRow("less") << "a<b" << QByteArray("a&lt;b");
    QTest::newRow("greater") << "a>b" << QByteArray("a&gt;b");
    QTest::newRow("ampersand") << "a&b" << QByteArray("a&amp;b");
    QTest::newRow("quotation mark") << "a\"b" << QByteArray("a&quot;b");
    QTest::newRow("apostrophe stays") << "a'b" << QByteArray("a'b");
    QTest::newRow("what looks escaped is escaped again") << "&lt;" << QByteArray("&amp;lt;");
    QTest::newRow("tab") << "a\tb" << QByteArray("a&#9;b");
    QTest::newRow("line feed") << "a\nb" << QByteArray("a&#10;b");
    QTest::newRow("carriage return") << "a\rb" << QByteArray("a&#13;b");
    QTest::newRow("spaces stay") << "  a  " << QByteArray("  a  ");
    QTest::newRow("umlaut") << QString::fromUtf8("\xc3\xa4") << QByteArray("\xc3\xa4");
    QTest::newRow("byte order mark at the start")
        << QString(QChar(0xFEFF)) + "x" << QByteArray("\xef\xbb\xbfx");
    QTest::newRow("Chinese") << QString::fromUtf8("\xe4\xb8\xad") << QByteArray("\xe4\xb8\xad");
    QTest::newRow("beyond the basic plane")
        << QString::fromUtf8("\xf0\x9f\x93\x90") << QByteArray("\xf0\x9f\x93\x90");
}

void TestXmlStreamWriter::escapesText()
{
    QFETCH(QString, value);
    QFETCH(QByteArray, written);
    QByteArray const expected = "<e v=\"" + written + "\"/>";

    QByteArray const fromString = element(
        [&](XmlStreamWriter& writer) { writer.writeAttribute(QStringLiteral("v"), value); });
    QCOMPARE(fromString, expected);
    QCOMPARE(readBack(fromString), value);

    QByteArray const utf8 = value.toUtf8();
    QCOMPARE(element([&](XmlStreamWriter& writer) {
        writer.writeAttribute(QStringLiteral("v"), utf8.constData());
    }),
        expected);
}

void TestXmlStreamWriter::writesNumbers_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<QByteArray>("written");
    QTest::newRow("zero") << 0 << QByteArray("0");
    QTest::newRow("negative") << -1 << QByteArray("-1");
    QTest::newRow("no grouping") << 1234567 << QByteArray("1234567");
    QTest::newRow("least") << std::numeric_limits<int>::min() << QByteArray("-2147483648");
    QTest::newRow("greatest") << std::numeric_limits<int>::max() << QByteArray("2147483647");
}

void TestXmlStreamWriter::writesNumbers()
{
    QFETCH(int, value);
    QFETCH(QByteArray, written);
    QCOMPARE(element([&](XmlStreamWriter& writer) {
        writer.writeAttribute(QStringLiteral("v"), value);
    }),
        QByteArray("<e v=\"" + written + "\"/>"));
}

void TestXmlStreamWriter::nullTextGivesAnEmptyValue()
{
    QCOMPARE(element([](XmlStreamWriter& writer) {
        writer.writeAttribute(QStringLiteral("v"), static_cast<char const*>(nullptr));
        writer.writeAttribute(QStringLiteral("w"), QString());
    }),
        QByteArray("<e v=\"\" w=\"\"/>"));
}

void TestXmlStreamWriter::attributesKeepTheOrderOfTheCalls()
{
    QCOMPARE(element([](XmlStreamWriter& writer) {
        writer.writeAttribute(QStringLiteral("z"), 1);
        writer.writeAttribute(QStringLiteral("a"), "2");
        writer.writeAttribute(QStringLiteral("m"), QStringLiteral("3"));
        writer.writeAttribute(QStringLiteral("b"), 4);
    }),
        QByteArray("<e z=\"1\" a=\"2\" m=\"3\" b=\"4\"/>"));
}

void TestXmlStreamWriter::attributesOfNestedElementsStayApart()
{
    QCOMPARE(element([](XmlStreamWriter& writer) {
        writer.writeAttribute(QStringLiteral("v"), 1);
        writer.writeStartElement(QStringLiteral("f"));
        writer.writeAttribute(QStringLiteral("v"), 2);
        writer.writeEndElement();
        writer.writeCharacters(QStringLiteral("x"));
    }),
        QByteArray("<e v=\"1\"><f v=\"2\"/>x</e>"));
}

QTEST_APPLESS_MAIN(TestXmlStreamWriter)
#include "tst_xmlstreamwriter.moc"
