// SPDX-License-Identifier: MIT
#include "boundedxml_p.h"

#include <QBuffer>
#include <QDomDocument>
#include <QIODevice>
#include <QTextCodec>
#include <QtTest>

#include <algorithm>

namespace {

/** A device without an end of its own that hands out `pieceSize` bytes at a time. */
class PiecewiseDevice : public QIODevice
{
public:
    PiecewiseDevice(QByteArray bytes, qint64 pieceSize)
        : m_bytes(std::move(bytes))
        , m_pieceSize(pieceSize)
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    /** Lets reading fail with `message` once `position` bytes are out. */
    void failAt(int position, QString const& message)
    {
        m_bytes.truncate(position);
        m_failure = message;
    }

    bool isSequential() const override { return true; }

protected:
    qint64 readData(char* target, qint64 size) override
    {
        if (m_position == m_bytes.size() && !m_failure.isEmpty()) {
            setErrorString(m_failure);
            return -1;
        }
        qint64 const count = std::min({size, m_pieceSize, qint64(m_bytes.size() - m_position)});
        std::copy_n(m_bytes.constData() + m_position, count, target);
        m_position += int(count);
        return count;
    }

    qint64 writeData(char const*, qint64) override { return -1; }

private:
    QByteArray m_bytes;
    qint64 m_pieceSize;
    QString m_failure;
    int m_position = 0;
};

/** A device of `size` spaces that takes no memory. */
class BlankDevice : public QIODevice
{
public:
    explicit BlankDevice(qint64 size)
        : m_left(size)
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    bool isSequential() const override { return true; }

protected:
    qint64 readData(char* target, qint64 size) override
    {
        qint64 const count = std::min(size, m_left);
        std::fill_n(target, count, ' ');
        m_left -= count;
        return count;
    }

    qint64 writeData(char const*, qint64) override { return -1; }

private:
    qint64 m_left;
};

QByteArray nested(int depth)
{
    return QByteArray("<a>").repeated(depth) + QByteArray("</a>").repeated(depth);
}

/** One entity of `length` characters and `references` references to it. */
QByteArray withEntity(int length, int references)
{
    return "<!DOCTYPE a [<!ENTITY e \"" + QByteArray(length, 'x') + "\">]>\n<a>"
        + QByteArray("&e;").repeated(references) + "</a>";
}

} // namespace

class TestBoundedXml : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void newErrorSaysNothing();

    void readsWhatADeviceHandsOut_data();
    void readsWhatADeviceHandsOut();
    void readsNothingFromAnEmptyDevice();
    void failingDeviceGivesItsMessage_data();
    void failingDeviceGivesItsMessage();
    void closedDeviceIsAnError();
    void greatestSizeIsRead();
    void oneByteMoreIsAnError();

    void errorsHaveLineAndColumn_data();
    void errorsHaveLineAndColumn();
    void wellFormedTextPasses_data();
    void wellFormedTextPasses();
    void depthOfOneThousandPasses();
    void depthOfOneThousandAndOneFails();
    void siblingsDoNotCountAsDepth();
    void millionNestedElementsFail();

    void shortEntityIsExpanded();
    void longEntityFails_data();
    void longEntityFails();
    void entityThatMultipliesFails();
    void referencesAreCountedBesideDeclaredEntities_data();
    void referencesAreCountedBesideDeclaredEntities();
    void expansionsAreBounded_data();
    void expansionsAreBounded();
    void manyNodesThatAreWrittenOutPass();

    void progressRunsFrom0To1();
    void progressOfShortTextsIsThatOfTheTree();
    void progressOfTheCheckIsThatOfItsToken();
    void controlCharacterInANameIsToldOf();
    void controlCharacterBehindAnUndeclaredPrefixIsRead();

    void readerGivesEachToken();
    void readerAgreesWithCheck_data();
    void readerAgreesWithCheck();
    void readerTellsWhyTheDeviceFails();
    void readerBoundsTheLengthOfATag();
    void longestTagIsOf256Mebibytes();
    void failedParseEmptiesTheDocument();
    void everyPrefixFails();

    void controlCharactersAreRead_data();
    void controlCharactersAreRead();
    void everyControlCharacterIsRead();
    void standInsAreNoneOfTheDocument_data();
    void standInsAreNoneOfTheDocument();
    void documentOfAllCandidatesIsRefused();
    void controlCharactersAreRefusedElsewhere_data();
    void controlCharactersAreRefusedElsewhere();
    void otherEncodingsAreReadAsEver();
    void placesCountControlCharacters_data();
    void placesCountControlCharacters();
    void boundsHoldWithControlCharacters();
    void controlCharactersCountAsThreeBytes();

    void configurationIsReadUpTo64Mebibytes();
    void largerDeviceIsNotRead();
    void restOfADeviceCounts();
    void namesAreNotResolved();
    void textsOfAnySizeAreReadToTheLastByte();
    void readerTakesATagOfTheGreatestLength();
    void readerReadsLittleBeyondABound_data();
    void readerReadsLittleBeyondABound();
    void progressOfAReadingIsTold();
    void boundsOfNodesAndBytesPassThemselves();
    void readerBoundsTagsAndNotTheirSum();
    void instructionsKeepWhatCouldStandIn();
    void lastOfEachBlockOfCandidatesCounts();
};

void TestBoundedXml::newErrorSaysNothing()
{
    BoundedXml::Error const error;
    QVERIFY(error.isNull());
    QCOMPARE(error.line, qint64(0));
    QCOMPARE(error.column, qint64(0));
}

void TestBoundedXml::readsWhatADeviceHandsOut_data()
{
    QTest::addColumn<int>("pieceSize");
    QTest::newRow("a byte at a time") << 1;
    QTest::newRow("seven bytes at a time") << 7;
    QTest::newRow("4,096 bytes at a time") << 4096;
    QTest::newRow("as much as asked") << 1000000;
}

void TestBoundedXml::readsWhatADeviceHandsOut()
{
    QFETCH(int, pieceSize);
    // More than one of the reader's buffers, with every byte value.
    QByteArray bytes;
    for (int i = 0; i < 150000; ++i)
        bytes.append(char(i * 7 % 256));
    PiecewiseDevice device(bytes, pieceSize);
    BoundedXml::Error error;
    QVERIFY(BoundedXml::read(device, error) == bytes);
    QVERIFY(error.isNull());
}

void TestBoundedXml::readsNothingFromAnEmptyDevice()
{
    QBuffer device;
    QVERIFY(device.open(QIODevice::ReadOnly));
    BoundedXml::Error error;
    QCOMPARE(BoundedXml::read(device, error), QByteArray());
    QVERIFY(error.isNull());
}

void TestBoundedXml::failingDeviceGivesItsMessage_data()
{
    QTest::addColumn<int>("position");
    QTest::newRow("at the start") << 0;
    QTest::newRow("in the middle") << 3;
    QTest::newRow("behind a whole document") << 4;
}

void TestBoundedXml::failingDeviceGivesItsMessage()
{
    QFETCH(int, position);
    PiecewiseDevice device("<a/>", 2);
    device.failAt(position, QStringLiteral("the cable was pulled"));
    BoundedXml::Error error;
    QCOMPARE(BoundedXml::read(device, error), QByteArray());
    QCOMPARE(error.message, QStringLiteral("the cable was pulled"));
    QCOMPARE(error.line, qint64(0));
    QCOMPARE(error.column, qint64(0));
}

void TestBoundedXml::closedDeviceIsAnError()
{
    QBuffer device;
    QTest::ignoreMessage(QtWarningMsg, "QIODevice::read (QBuffer): device not open");
    BoundedXml::Error error;
    QCOMPARE(BoundedXml::read(device, error), QByteArray());
    QVERIFY(!error.isNull());
}

void TestBoundedXml::greatestSizeIsRead()
{
    BlankDevice device(268435456);
    BoundedXml::Error error;
    QCOMPARE(BoundedXml::read(device, error).size(), 268435456);
    QVERIFY(error.isNull());
}

void TestBoundedXml::oneByteMoreIsAnError()
{
    BlankDevice device(268435457);
    BoundedXml::Error error;
    QCOMPARE(BoundedXml::read(device, error).size(), 0);
    QCOMPARE(error.message, QStringLiteral("larger than 268435456 bytes"));
}

void TestBoundedXml::errorsHaveLineAndColumn_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("line");
    QTest::addColumn<int>("column");

    // The column is the one after the text that was read when the error was seen.
    QTest::newRow("no text") << QByteArray("") << 1 << 1;
    QTest::newRow("end tag of another element") << QByteArray("<a></b>") << 1 << 8;
    QTest::newRow("end tag on the third line") << QByteArray("<a>\n<b>\n</a>") << 3 << 5;
    QTest::newRow("blank lines count") << QByteArray("\n\n<a>\n</b>") << 4 << 5;
    QTest::newRow("carriage return and line feed are one line end")
        << QByteArray("<a>\r\n</b>") << 2 << 5;
    QTest::newRow("columns count characters, not bytes") << QByteArray("<a>\xc3\xa4</b>") << 1 << 9;
    QTest::newRow("second root") << QByteArray("<a/>\n<b/>") << 2 << 5;
    QTest::newRow("text behind the root") << QByteArray("<a>\n\n</a>\n\nx") << 5 << 2;
    QTest::newRow("end inside a start tag") << QByteArray("<a>\n<b") << 2 << 3;
    QTest::newRow("end inside an attribute") << QByteArray("<a>\n<b c='x") << 2 << 8;
    QTest::newRow("end inside a comment") << QByteArray("<a>\n<b/>\n<!-- x") << 3 << 7;
    QTest::newRow("undeclared entity") << QByteArray("<a>\n&nope;</a>") << 2 << 7;
    QTest::newRow("attribute without quotes") << QByteArray("<a\nb=1/>") << 2 << 4;
    QTest::newRow("attribute twice") << QByteArray("<a b='1'\nb='2'/>") << 2 << 8;
    QTest::newRow("control character") << QByteArray("<a>\n \x01</a>") << 2 << 3;
}

void TestBoundedXml::errorsHaveLineAndColumn()
{
    QFETCH(QByteArray, text);
    QFETCH(int, line);
    QFETCH(int, column);

    BoundedXml::Error checked;
    QVERIFY(!BoundedXml::check(text, checked));
    QVERIFY(!checked.isNull());
    QCOMPARE(QStringLiteral("%1:%2").arg(checked.line).arg(checked.column),
        QStringLiteral("%1:%2").arg(line).arg(column));

    QDomDocument document;
    BoundedXml::Error parsed;
    QVERIFY(!BoundedXml::parse(text, document, parsed));
    QCOMPARE(parsed.line, checked.line);
    QCOMPARE(parsed.column, checked.column);
    QCOMPARE(parsed.message, checked.message);
}

void TestBoundedXml::wellFormedTextPasses_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("empty element") << QByteArray("<a/>");
    QTest::newRow("byte order mark") << QByteArray("\xef\xbb\xbf<a/>");
    QTest::newRow("declaration, comment, instruction")
        << QByteArray("<?xml version=\"1.0\"?><!-- c --><?p i?><a/>");
    QTest::newRow("undeclared prefix") << QByteArray("<a k:b='1'/>");
    QTest::newRow("undeclared prefix of the element") << QByteArray("<k:a/>");
    QTest::newRow("document type") << QByteArray("<!DOCTYPE a><a/>");
    QTest::newRow("character data") << QByteArray("<a><![CDATA[<&]]></a>");
}

void TestBoundedXml::wellFormedTextPasses()
{
    QFETCH(QByteArray, text);
    BoundedXml::Error error;
    QVERIFY2(BoundedXml::check(text, error), qPrintable(error.message));
    QDomDocument document;
    QVERIFY2(BoundedXml::parse(text, document, error), qPrintable(error.message));
    QVERIFY(error.isNull());
    QVERIFY(!document.documentElement().isNull());
}

void TestBoundedXml::depthOfOneThousandPasses()
{
    QDomDocument document;
    BoundedXml::Error error;
    QVERIFY2(BoundedXml::parse(nested(1000), document, error), qPrintable(error.message));
    int depth = 0;
    for (QDomElement e = document.documentElement(); !e.isNull(); e = e.firstChildElement())
        ++depth;
    QCOMPARE(depth, 1000);
}

void TestBoundedXml::depthOfOneThousandAndOneFails()
{
    QDomDocument document;
    BoundedXml::Error error;
    QVERIFY(!BoundedXml::parse(nested(1001), document, error));
    QCOMPARE(error.message, QStringLiteral("more than 1000 nested elements"));
    QCOMPARE(error.line, qint64(1));
    QCOMPARE(error.column, qint64(3004)); // behind 1,001 start tags of three characters
    QVERIFY(document.isNull());
}

void TestBoundedXml::siblingsDoNotCountAsDepth()
{
    QDomDocument document;
    BoundedXml::Error error;
    QByteArray const text = "<a>" + QByteArray("<b><c/></b>").repeated(20000) + "</a>";
    QVERIFY2(BoundedXml::parse(text, document, error), qPrintable(error.message));
    QCOMPARE(document.documentElement().childNodes().count(), 20000);
}

void TestBoundedXml::millionNestedElementsFail()
{
    QDomDocument document;
    BoundedXml::Error error;
    QVERIFY(!BoundedXml::parse(nested(1000000), document, error));
    QCOMPARE(error.message, QStringLiteral("more than 1000 nested elements"));
}

void TestBoundedXml::shortEntityIsExpanded()
{
    QDomDocument document;
    BoundedXml::Error error;
    QVERIFY2(BoundedXml::parse(withEntity(4096, 2), document, error), qPrintable(error.message));
    QCOMPARE(document.documentElement().text(), QString(8192, 'x'));
}

void TestBoundedXml::longEntityFails_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("in text") << withEntity(4200, 1);
    QTest::newRow("in an attribute")
        << QByteArray("<!DOCTYPE a [<!ENTITY e \"" + QByteArray(4200, 'x') + "\">]><a b=\"&e;\"/>");
}

void TestBoundedXml::longEntityFails()
{
    QFETCH(QByteArray, text);
    QDomDocument document;
    BoundedXml::Error error;
    QVERIFY(!BoundedXml::parse(text, document, error));
    QVERIFY(!error.isNull());
    QVERIFY(document.isNull());
}

void TestBoundedXml::entityThatMultipliesFails()
{
    QByteArray text = "<!DOCTYPE a [<!ENTITY e0 \"xxxxxxxxxx\">";
    for (int i = 1; i < 10; ++i) {
        QByteArray const inner = "&e" + QByteArray::number(i - 1) + ";";
        text += "<!ENTITY e" + QByteArray::number(i) + " \"" + inner.repeated(10) + "\">";
    }
    text += "]><a>&e9;</a>";
    QDomDocument document;
    BoundedXml::Error error;
    QVERIFY(!BoundedXml::parse(text, document, error));
    QVERIFY(document.isNull());
}

void TestBoundedXml::referencesAreCountedBesideDeclaredEntities_data()
{
    QByteArray const declaration = "<!DOCTYPE a [<!ENTITY e \"x\">]>";
    QString const tooMany =
        QStringLiteral("more than 10000 references in a document that declares entities");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("message");
    QTest::newRow("10,000") << withEntity(1, 10000) << QString();
    QTest::newRow("10,001") << withEntity(1, 10001) << tooMany;
    // 150 kB of text that would become 200 million characters.
    QTest::newRow("to a long entity") << withEntity(4000, 50000) << tooMany;
    QTest::newRow("in an attribute")
        << QByteArray(declaration + "<a b=\"" + QByteArray("&e;").repeated(10001) + "\"/>")
        << tooMany;
    QTest::newRow("without a declared entity")
        << QByteArray("<!DOCTYPE a><a>" + QByteArray("&amp;").repeated(50000) + "</a>")
        << QString();
}

void TestBoundedXml::referencesAreCountedBesideDeclaredEntities()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, message);
    QDomDocument document;
    BoundedXml::Error error;
    QCOMPARE(BoundedXml::parse(text, document, error), message.isEmpty());
    QCOMPARE(error.message, message);
    QCOMPARE(document.isNull(), !message.isEmpty());
}

void TestBoundedXml::expansionsAreBounded_data()
{
    QByteArray const elements = QByteArray("<b/>").repeated(1000);
    QByteArray defaults;
    for (int i = 0; i < 1000; ++i)
        defaults += " a" + QByteArray::number(i) + " CDATA 'v'";
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("elements of an entity") << QByteArray("<!DOCTYPE a [<!ENTITY e \"" + elements
        + "\">]><a>" + QByteArray("&e;").repeated(51) + "</a>");
    QTest::newRow("default attributes") << QByteArray("<!DOCTYPE a [<!ATTLIST b" + defaults
        + ">]><a>" + QByteArray("<b/>").repeated(101) + "</a>");
}

void TestBoundedXml::expansionsAreBounded()
{
    QFETCH(QByteArray, text);
    QDomDocument document;
    BoundedXml::Error error;
    QVERIFY(!BoundedXml::parse(text, document, error));
    QCOMPARE(error.message, QStringLiteral("more than 100000 nodes"));
    QVERIFY(document.isNull());
}

void TestBoundedXml::manyNodesThatAreWrittenOutPass()
{
    // As dense as XML can be: a start tag and an end tag in four bytes.
    QByteArray const text = "<a>" + QByteArray("<b/>").repeated(200000) + "</a>";
    BoundedXml::Error error;
    QVERIFY2(BoundedXml::check(text, error), qPrintable(error.message));
}

void TestBoundedXml::progressRunsFrom0To1()
{
    // 3 + 5000 * 4 + 4 bytes.
    QByteArray const text = "<a>" + QByteArray("<b/>").repeated(5000) + "</a>";
    QVector<double> told;
    QDomDocument document;
    BoundedXml::Error error;
    QVERIFY(BoundedXml::parse(text, document, error, {}, [&told](double done) { told << done; }));
    QCOMPARE(document.documentElement().childNodes().count(), 5000);

    // The check tells of its 4096th and 8192nd token; the rest is the tree.
    QVERIFY(told.count() > 2);
    QCOMPARE(told.at(0), 0.3 * 8191 / 20007);
    QCOMPARE(told.at(1), 0.3 * 16383 / 20007);
    QVERIFY(told.at(2) > 0.3);
    QVERIFY(std::is_sorted(told.cbegin(), told.cend()));
    QCOMPARE(told.last(), 1.0);
}

void TestBoundedXml::progressOfShortTextsIsThatOfTheTree()
{
    QVector<double> told;
    QDomDocument document;
    BoundedXml::Error error;
    QVERIFY(BoundedXml::parse("<a/>", document, error, {}, [&told](double done) { told << done; }));
    QCOMPARE(document.documentElement().tagName(), QString("a"));
    QCOMPARE(told, QVector<double> {1.0});
}

void TestBoundedXml::progressOfTheCheckIsThatOfItsToken()
{
    // After the document's start and the root's tag, a tag, a text and an end are three tokens.
    QByteArray const text = "<a>" + QByteArray("<b>x</b>").repeated(5000) + "</a>";
    double first = 0.0;
    QDomDocument document;
    BoundedXml::Error error;
    QVERIFY(BoundedXml::parse(text, document, error, {}, [&first](double done) {
        if (first == 0.0)
            first = done;
    }));
    // 1,364 elements, a tag, a text and the sign that ends it.
    QCOMPARE(first, 0.3 * 10920 / 40007);
}

void TestBoundedXml::controlCharacterBehindAnUndeclaredPrefixIsRead()
{
    QDomDocument document;
    BoundedXml::Error error;
    QVERIFY(BoundedXml::parse(
        "<a><p:c/><d b='\x01'/></a>", document, error, BoundedXml::configurationLimits));
    QCOMPARE(document.documentElement().lastChildElement().attribute("b"), QString("\x01"));
}

void TestBoundedXml::controlCharacterInANameIsToldOf()
{
    QDomDocument document;
    BoundedXml::Error error;
    QVERIFY(!BoundedXml::parse("<a b\x01='1'/>", document, error, BoundedXml::configurationLimits));
    QCOMPARE(error.message, QString("a control character in a name"));
}

void TestBoundedXml::readerGivesEachToken()
{
    QByteArray const text = "<?xml version=\"1.0\"?><!DOCTYPE a [<!ENTITY e \"x\">]><!--c-->"
                            "<a p:b=\"1\">t&e;<![CDATA[d]]><?i j?><u:f/></a>\n";
    for (int const size : {1, 7, 100000}) {
        PiecewiseDevice device(text, size);
        BoundedXml::Reader reader(device);
        QStringList tokens;
        while (reader.readNext())
            tokens << reader.xml().tokenString() + ' ' + reader.xml().qualifiedName()
                    + reader.xml().text();
        QVERIFY2(reader.error().isNull(), qPrintable(reader.error().message));
        QCOMPARE(tokens,
            QStringList({"StartDocument ", "DTD <!DOCTYPE a [<!ENTITY e \"x\">]>", "Comment c",
                "StartElement a", "Characters tx", "Characters d", "ProcessingInstruction ",
                "StartElement u:f", "EndElement u:f", "EndElement a", "EndDocument "}));
        QCOMPARE(reader.bytesRead(), qint64(text.size()));
        QVERIFY(!reader.readNext());
    }
}

void TestBoundedXml::readerAgreesWithCheck_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("fine") << QByteArray("<a>b</a>");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("no end") << QByteArray("<a>\n<b>");
    QTest::newRow("no XML") << QByteArray("<a>\n <b></c></a>");
    QTest::newRow("deepest") << QByteArray("<a>").repeated(1000)
            + QByteArray("</a>").repeated(1000);
    QTest::newRow("too deep") << QByteArray("<a>").repeated(1001);
    QByteArray const entity = "<!DOCTYPE a [<!ENTITY e 'x'>]>\n<a>";
    QTest::newRow("most references") << entity + QByteArray("&e;").repeated(10000) + "</a>";
    QTest::newRow("too many references") << entity + QByteArray("&e;").repeated(10001) + "</a>";
    QTest::newRow("too many in pieces")
        << entity + QByteArray("<b>&e;</b>\n").repeated(10001) + "</a>";
    QTest::newRow("references of no entity")
        << "<a>" + QByteArray("&amp;").repeated(20000) + "</a>";
    QByteArray defaults;
    for (int i = 0; i < 1000; ++i)
        defaults += " a" + QByteArray::number(i) + " CDATA 'v'";
    QTest::newRow("too many nodes") << "<!DOCTYPE a [<!ATTLIST b" + defaults + ">]><a>"
            + QByteArray("<b/>").repeated(101) + "</a>";
}

void TestBoundedXml::readerAgreesWithCheck()
{
    QFETCH(QByteArray, text);
    BoundedXml::Error expected;
    bool const isFine = BoundedXml::check(text, expected);
    PiecewiseDevice device(text, 1000);
    BoundedXml::Reader reader(device);
    while (reader.readNext()) { }
    QCOMPARE(reader.error().message, expected.message);
    QCOMPARE(reader.error().isNull(), isFine);
    QCOMPARE(reader.error().line, expected.line);
    QCOMPARE(reader.error().column, expected.column);
}

void TestBoundedXml::readerTellsWhyTheDeviceFails()
{
    PiecewiseDevice device("<a><b/></a>", 4);
    device.failAt(6, "unplugged");
    BoundedXml::Reader reader(device);
    while (reader.readNext()) { }
    QCOMPARE(reader.error().message, QString("unplugged"));
    QCOMPARE(reader.error().line, 0);
    QVERIFY(!reader.readNext());
}

void TestBoundedXml::readerBoundsTheLengthOfATag()
{
    QByteArray const longest(5000, 'x');
    for (QByteArray const& text : {"<a b='" + longest + "'/>", "<a>" + longest + "</a>",
             "<!--" + longest + "--><a/>", QByteArray(5000, ' ')}) {
        PiecewiseDevice device(text, 100);
        BoundedXml::Reader reader(device, 4000);
        while (reader.readNext()) { }
        QCOMPARE(reader.error().message, QString("more than 4000 bytes without a tag"));
        PiecewiseDevice same(text + (text.startsWith(' ') ? "<a/>" : ""), 100);
        BoundedXml::Reader wider(same, 20000);
        while (wider.readNext()) { }
        QCOMPARE(wider.error().message, QString());
    }
}

/** To read one takes more memory than a test should. */
void TestBoundedXml::longestTagIsOf256Mebibytes()
{
    qint64 const most = BoundedXml::maximumTokenBytes;
    QCOMPARE(most, qint64(268435456));
}

void TestBoundedXml::failedParseEmptiesTheDocument()
{
    QDomDocument document;
    BoundedXml::Error error;
    QVERIFY(BoundedXml::parse("<a/>", document, error));
    QVERIFY(!document.isNull());
    QVERIFY(!BoundedXml::parse("<a>", document, error));
    QVERIFY(document.isNull());
    QVERIFY(!document.hasChildNodes());
}

void TestBoundedXml::everyPrefixFails()
{
    QByteArray const text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                            "<!DOCTYPE a [<!ENTITY e \"x\">]>\n"
                            "<!-- c -->\n"
                            "<a b=\"\xc3\xa4&e;\">\n"
                            "  <c><![CDATA[<&]]></c>&e;&#228;\n"
                            "</a>";
    BoundedXml::Error error;
    QVERIFY2(BoundedXml::check(text, error), qPrintable(error.message));
    for (int size = 0; size < text.size(); ++size) {
        // A copy of its own, so that a read behind its end is seen.
        QByteArray const prefix(text.constData(), size);
        QDomDocument document;
        BoundedXml::Error prefixError;
        QVERIFY2(!BoundedXml::parse(prefix, document, prefixError), prefix.constData());
        QVERIFY(!prefixError.isNull());
        QVERIFY(document.isNull());
    }
}

void TestBoundedXml::controlCharactersAreRead_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("value"); // of the attribute b of the root, and its text
    QTest::newRow("attribute") << QByteArray("<a b='x\x01y'/>") << "x\x01y|";
    QTest::newRow("text") << QByteArray("<a>\x02</a>") << "|\x02";
    QTest::newRow("character data") << QByteArray("<a><![CDATA[\x1f<]]></a>") << "|\x1f<";
    QTest::newRow("beside line ends")
        << QByteArray("<a b='\x01&#10;\x02\n\x03\t'>\r\n\x04\t</a>") << "\x01\n\x02 \x03 |\n\x04\t";
    QTest::newRow("before ends of markup")
        << QByteArray("<a b='\x1d]]>\x1d' c='>'>\x1d></a>") << "\x1d]]>\x1d|\x1d>";
    QTest::newRow("declared UTF-8")
        << QByteArray("<?xml version='1.0' encoding='utf-8'?><a b='\x01\xc3\xa4'/>")
        << QString::fromUtf8("\x01\xc3\xa4|");
    QTest::newRow("byte order mark") << QByteArray("\xef\xbb\xbf<a b='\x01'/>") << "\x01|";
    QTest::newRow("behind an undeclared prefix") << QByteArray("<a p:c='' b='\x01'/>") << "\x01|";
    QTest::newRow("in an entity") << QByteArray(
        "<!DOCTYPE a [<!ENTITY e '\x0b'>]><a b='&e;'>&e;&e;</a>")
                                  << "\x0b|\x0b\x0b";
    QTest::newRow("in a default") << QByteArray("<!DOCTYPE a [<!ATTLIST a b CDATA '\x0b'>]><a/>")
                                  << "\x0b|";
    QTest::newRow("deleting and C1 characters")
        << QByteArray("<a b='\x7f\xc2\x80\xc2\x85\xc2\x9f\x01'/>")
        << QString::fromUtf8("\x7f\xc2\x80\xc2\x85\xc2\x9f\x01|");
}

void TestBoundedXml::controlCharactersAreRead()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, value);
    QDomDocument document;
    BoundedXml::Error error;
    QVERIFY2(BoundedXml::parse(text, document, error, BoundedXml::configurationLimits),
        qPrintable(error.message));
    QVERIFY(error.isNull());
    QDomElement const root = document.documentElement();
    QCOMPARE(root.attribute("b") + '|' + root.text(), value);
    // Only where they are asked for.
    QVERIFY(!BoundedXml::parse(text, document, error));
    QVERIFY(document.isNull());
    QVERIFY(!BoundedXml::check(text, error, BoundedXml::configurationLimits));
}

void TestBoundedXml::everyControlCharacterIsRead()
{
    QByteArray all;
    for (char code = 0x01; code < 0x20; ++code) {
        if (code != '\t' && code != '\n' && code != '\r')
            all += code;
    }
    QCOMPARE(all.size(), 28);
    QByteArrayList values {all, all + all, "x" + all + "y"};
    for (char const code : qAsConst(all))
        values << QByteArray(1, code);
    QByteArray text = "<?p " + all + "?><a><!--" + all + "-->";
    for (QByteArray const& value : values)
        text += "<b v='" + value + "' w='plain' x='" + value + "'>" + value + "<c/>end</b>";
    QDomDocument document;
    BoundedXml::Error error;
    QVERIFY2(BoundedXml::parse(text + "</a>", document, error, BoundedXml::configurationLimits),
        qPrintable(error.message));
    QDomElement const root = document.documentElement();
    QCOMPARE(root.previousSibling().toProcessingInstruction().data(), QString(all));
    QCOMPARE(root.firstChild().toComment().data(), QString(all));
    QDomElement element = root.firstChildElement();
    for (QByteArray const& value : values) {
        QCOMPARE(element.attribute("v"), QString(value));
        QCOMPARE(element.attribute("w"), QString("plain"));
        QCOMPARE(element.attribute("x"), QString(value));
        QCOMPARE(element.firstChild().nodeValue(), QString(value));
        QCOMPARE(element.lastChild().nodeValue(), QString("end"));
        element = element.nextSiblingElement();
    }
    QVERIFY(element.isNull());
}

void TestBoundedXml::standInsAreNoneOfTheDocument_data()
{
    QTest::addColumn<QString>("held"); // of the private use area
    QTest::addColumn<QString>("form"); // as it is written
    auto const row = [](char const* name, uint code, QString const& form) {
        QTest::newRow(name) << QString(QChar(code)) << form;
    };
    QTest::newRow("none") << QString() << QString();
    row("first", 0xE000, QString(QChar(0xE000)));
    row("stand-in for the code 1", 0xE001, QString(QChar(0xE001)));
    row("the one behind the first stand-ins", 0xE020, QString(QChar(0xE020)));
    row("last", 0xF8FF, QString(QChar(0xF8FF)));
    row("the one behind the candidates", 0xF900, QString(QChar(0xF900)));
    row("hexadecimal reference", 0xE001, "&#xE001;");
    row("small letters and zeros", 0xE001, "&#x0000000000e001;");
    row("decimal reference", 0xE001, "&#57345;");
    QString some;
    for (uint code = 0xE001; code < 0xF8E0; code += 32)
        some += QChar(code);
    QTest::newRow("all but the last ones") << some << some;
}

void TestBoundedXml::standInsAreNoneOfTheDocument()
{
    QFETCH(QString, held);
    QFETCH(QString, form);
    QByteArrayList const texts {"<a b='\x01%1\x02'>x</a>", "<a c='%1' b='\x01&#xE101;\x02'/>",
        "<a b='\x01\x02'>%1</a>", "<a b='\x01\x02'><![CDATA[]]>%1<c/></a>",
        "<!DOCTYPE a [<!ENTITY e '&#xE001;'>]><a b='\x01&e;\x02'>%1</a>"};
    for (QByteArray const& text : texts) {
        QDomDocument document;
        BoundedXml::Error error;
        QVERIFY2(BoundedXml::parse(QString(text).arg(form).toUtf8(), document, error,
                     BoundedXml::configurationLimits),
            qPrintable(error.message));
        QDomElement const root = document.documentElement();
        QString const value = root.attribute("b");
        QVERIFY(value.startsWith('\x01') && value.endsWith('\x02'));
        if (text.contains("c="))
            QCOMPARE(root.attribute("c") + value.mid(1, 1), held + QChar(0xE101));
        else if (text.contains("ENTITY"))
            QCOMPARE(value.mid(1, 1) + root.text(), QChar(0xE001) + held);
        else
            QCOMPARE(value.mid(1, value.size() - 2) + root.text().remove('x'), held);
    }
}

void TestBoundedXml::documentOfAllCandidatesIsRefused()
{
    QString all;
    for (uint code = 0xE000; code < 0xF900; code += 32)
        all += QChar(code);
    QDomDocument document;
    BoundedXml::Error error;
    QByteArray const text = "<a b='" + all.toUtf8() + "'>";
    QVERIFY(
        !BoundedXml::parse(text + "\x01</a>", document, error, BoundedXml::configurationLimits));
    QVERIFY(document.isNull());
    QVERIFY(BoundedXml::parse(text + "x</a>", document, error, BoundedXml::configurationLimits));
}

void TestBoundedXml::controlCharactersAreRefusedElsewhere_data()
{
    QTest::addColumn<QByteArray>("text");
    auto const row = [](QByteArray const& text) {
        QTest::newRow(QByteArray(text).replace('\x01', '!').replace('\0', '0').constData()) << text;
    };
    for (char const* const text : {"<a\x01/>", "<\x01/>",
             "<\x01"
             "a/>",
             "<a \x01='1'/>", "<a b\x01='1'/>", "<a \x01 b='1'/>", "<a b=\x01'1'/>",
             "<a b='1'\x01/>", "<a/\x01>", "<a></a\x01>",
             "<a></\x01"
             "a>",
             "\x01<a/>", "<a/>\x01", "<a>&\x01;</a>", "<a>&am\x01p;</a>", "<a>&#\x01;</a>",
             "<?p\x01?><a/>", "<?p\x01 d?><a/>", "<?\x01p d?><a/>", "<?xml\x01 version='1.0'?><a/>",
             "<?xml version='1.0\x01'?><a/>", "<?xml version='1.0' encoding='UTF-8\x01'?><a/>",
             "<!\x01-- --><a/>", "<a><![CDATA\x01[]]></a>", "<a>&#1;</a>", "<a b='&#x1;'/>"})
        row(text);
    row(QByteArray("<a b='\0'/>", 9));
    row(QByteArray("<a b='\x01\0'/>", 10));
    row("<a b='\x01\xc3'/>");
    row("<?xml version='1.0' encoding='ISO-8859-1'?><a b='\x01'/>");
}

void TestBoundedXml::controlCharactersAreRefusedElsewhere()
{
    QFETCH(QByteArray, text);
    QDomDocument document;
    BoundedXml::Error error;
    QVERIFY(!BoundedXml::parse(text, document, error, BoundedXml::configurationLimits));
    QVERIFY(!error.isNull());
    QVERIFY(document.isNull());
}

void TestBoundedXml::otherEncodingsAreReadAsEver()
{
    // Bytes that would be control characters are halves of others in UTF-16, and change the set
    // of characters in ISO-2022-JP.
    QByteArrayList texts;
    QString const value = QString::fromUtf8("\xc5\x81\xc4\x8b");
    for (char const* const name : {"UTF-16LE", "UTF-16BE"}) {
        QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
        QString const text = QChar(QChar::ByteOrderMark) + QString("<a b='%1'/>").arg(value);
        texts << QTextCodec::codecForName(name)->fromUnicode(text.constData(), text.size(), &state);
    }
    QDomDocument document;
    BoundedXml::Error error;
    for (QByteArray const& text : texts) {
        QVERIFY(BoundedXml::parse(text, document, error, BoundedXml::configurationLimits));
        QCOMPARE(document.documentElement().attribute("b"), value);
    }
    QByteArray const japanese =
        "<?xml version='1.0' encoding='ISO-2022-JP'?><a b='\x1b$B$\"\x1b(B'/>";
    QVERIFY2(BoundedXml::parse(japanese, document, error, BoundedXml::configurationLimits),
        qPrintable(error.message));
    QCOMPARE(document.documentElement().attribute("b"), QString::fromUtf8("\xe3\x81\x82"));
}

void TestBoundedXml::placesCountControlCharacters_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("name") << QByteArray("<a b='\x01'>\n\x02\x03<c></d></a>");
    QTest::newRow("end") << QByteArray("<a b='\x01\x02'");
    QTest::newRow("behind the root") << QByteArray("<a b='\x01'/>\n x");
}

/** A control character takes one column, as any other. */
void TestBoundedXml::placesCountControlCharacters()
{
    QFETCH(QByteArray, text);
    QByteArray plain = text;
    for (char const code : {'\x01', '\x02', '\x03'})
        plain.replace(code, '-');
    QDomDocument document;
    BoundedXml::Error error;
    BoundedXml::Error expected;
    QVERIFY(!BoundedXml::parse(text, document, error, BoundedXml::configurationLimits));
    QVERIFY(!BoundedXml::parse(plain, document, expected, BoundedXml::configurationLimits));
    QCOMPARE(error.line, expected.line);
    QCOMPARE(error.column, expected.column);
    QCOMPARE(error.message, expected.message);
}

void TestBoundedXml::boundsOfNodesAndBytesPassThemselves()
{
    QDomDocument document;
    BoundedXml::Error error;
    // Beginning and end of the document, beginning and end of the element.
    BoundedXml::Limits limits;
    limits.nodes = 4;
    QVERIFY(BoundedXml::parse("<a/>", document, error, limits));
    limits.nodes = 3;
    QVERIFY(!BoundedXml::parse("<a/>", document, error, limits));
    QCOMPARE(error.message, QString("more than 3 nodes"));

    // A control character counts as three bytes.
    BoundedXml::Limits withControls = BoundedXml::configurationLimits;
    withControls.bytes = 10;
    error = BoundedXml::Error();
    QVERIFY(BoundedXml::parse("<a>\x01</a>", document, error, withControls));
    QCOMPARE(document.documentElement().text(), QString("\x01"));
    withControls.bytes = 9;
    QVERIFY(!BoundedXml::parse("<a>\x01</a>", document, error, withControls));
    QVERIFY(!error.isNull());
}

void TestBoundedXml::readerBoundsTagsAndNotTheirSum()
{
    PiecewiseDevice device("<a>" + QByteArray("<b/>").repeated(50000) + "</a>", 100);
    BoundedXml::Reader reader(device, 20000);
    int elements = 0;
    while (reader.readNext())
        elements += reader.xml().isStartElement() ? 1 : 0;
    QCOMPARE(reader.error().message, QString());
    QCOMPARE(elements, 50001);
    QCOMPARE(reader.bytesRead(), qint64(200007));
}

void TestBoundedXml::instructionsKeepWhatCouldStandIn()
{
    QString const held = QString(QChar(0xE001)) + "x";
    QDomDocument document;
    BoundedXml::Error error;
    QVERIFY(BoundedXml::parse(("<?p " + held + "?><a>\x01</a>").toUtf8(), document, error,
        BoundedXml::configurationLimits));
    QCOMPARE(document.firstChild().toProcessingInstruction().data(), held);
    QCOMPARE(document.documentElement().text(), QString("\x01"));
}

void TestBoundedXml::lastOfEachBlockOfCandidatesCounts()
{
    QString candidates;
    for (uint code = 0xE01F; code <= 0xF8FF; code += 32)
        candidates += QChar(code);
    QDomDocument document;
    BoundedXml::Error error;
    QVERIFY(!BoundedXml::parse(("<a>\x01" + candidates + "</a>").toUtf8(), document, error,
        BoundedXml::configurationLimits));
    candidates.chop(1);
    QVERIFY(BoundedXml::parse(("<a>\x01" + candidates + "</a>").toUtf8(), document, error,
        BoundedXml::configurationLimits));
    QCOMPARE(document.documentElement().text(), "\x01" + candidates);
}

void TestBoundedXml::boundsHoldWithControlCharacters()
{
    QDomDocument document;
    BoundedXml::Error error;
    QVERIFY(!BoundedXml::parse(
        "<x b='\x01'>" + nested(1000) + "</x>", document, error, BoundedXml::configurationLimits));
    QCOMPARE(error.message, QStringLiteral("more than 1000 nested elements"));
    QVERIFY(!BoundedXml::parse("<a b='\x01'>" + QByteArray("<b/>").repeated(400000) + "</a>",
        document, error, BoundedXml::configurationLimits));
    QCOMPARE(error.message, QStringLiteral("more than 750000 nodes"));
    QByteArray attributes;
    for (int i = 0; i < 1000; ++i)
        attributes += " a" + QByteArray::number(i) + "='\x01'";
    QVERIFY(BoundedXml::parse(
        "<a" + attributes + "/>", document, error, BoundedXml::configurationLimits));
    QCOMPARE(document.documentElement().attribute("a999"), QString("\x01"));
}

void TestBoundedXml::controlCharactersCountAsThreeBytes()
{
    QByteArray const text = "<a b='\x01\x02'/>";
    BoundedXml::Limits limits = BoundedXml::configurationLimits;
    limits.bytes = 15;
    QDomDocument document;
    BoundedXml::Error error;
    QVERIFY(BoundedXml::parse(text, document, error, limits));
    QCOMPARE(document.documentElement().attribute("b"), QString("\x01\x02"));
    limits.bytes = 14;
    QVERIFY(!BoundedXml::parse(text, document, error, limits));
    QCOMPARE(error.message, QStringLiteral("larger than 14 bytes"));
    QVERIFY(document.isNull());
}

void TestBoundedXml::configurationIsReadUpTo64Mebibytes()
{
    BoundedXml::Error error;
    BlankDevice greatest(67108864);
    QCOMPARE(BoundedXml::read(greatest, error, BoundedXml::configurationLimits).size(), 67108864);
    QVERIFY(error.isNull());
    BlankDevice larger(67108865);
    QCOMPARE(BoundedXml::read(larger, error, BoundedXml::configurationLimits).size(), 0);
    QCOMPARE(error.message, QString("larger than 67108864 bytes"));
}

void TestBoundedXml::largerDeviceIsNotRead()
{
    QByteArray bytes("<abcdefgh/>");
    QBuffer device(&bytes);
    QVERIFY(device.open(QIODevice::ReadOnly));
    BoundedXml::Limits limits;
    limits.bytes = 10;
    BoundedXml::Error error;
    QCOMPARE(BoundedXml::read(device, error, limits), QByteArray());
    QCOMPARE(error.message, QString("larger than 10 bytes"));
    QCOMPARE(device.pos(), qint64(0));
}

void TestBoundedXml::restOfADeviceCounts()
{
    QByteArray bytes("1234567890");
    QBuffer device(&bytes);
    QVERIFY(device.open(QIODevice::ReadOnly));
    BoundedXml::Limits limits;
    limits.bytes = 10;
    BoundedXml::Error error;
    QCOMPARE(BoundedXml::read(device, error, limits), QByteArray("1234567890"));
    QVERIFY(device.seek(4));
    limits.bytes = 6;
    QCOMPARE(BoundedXml::read(device, error, limits), QByteArray("567890"));
    QVERIFY(error.isNull());
}

void TestBoundedXml::namesAreNotResolved()
{
    QDomDocument document;
    BoundedXml::Error error;
    QVERIFY(BoundedXml::parse("<p:a xmlns:p='u' p:b='1'/>", document, error));
    QDomElement const root = document.documentElement();
    QCOMPARE(root.tagName(), QString("p:a"));
    QCOMPARE(root.localName(), QString());
    QCOMPARE(root.namespaceURI(), QString());
    QCOMPARE(root.attribute("p:b"), QString("1"));
    QCOMPARE(root.attribute("xmlns:p"), QString("u"));
}

void TestBoundedXml::textsOfAnySizeAreReadToTheLastByte()
{
    // Qt reads pieces of some thousand bytes, the last of which may be of one.
    for (int size = 4090; size < 16400; size += size % 4096 == 8 ? 4096 - 16 : 1) {
        QByteArray const text = "<a>" + QByteArray(size - 7, 'x') + "</a>";
        PiecewiseDevice device(text, 100000);
        BoundedXml::Reader reader(device);
        while (reader.readNext()) { }
        QCOMPARE(reader.error().message, QString());
        QCOMPARE(reader.bytesRead(), qint64(size));

        double told = 0.0;
        QDomDocument document;
        BoundedXml::Error error;
        QVERIFY(
            BoundedXml::parse(text, document, error, {}, [&told](double share) { told = share; }));
        QCOMPARE(document.documentElement().text().size(), size - 7);
        QCOMPARE(told, 1.0);
    }
}

void TestBoundedXml::readerTakesATagOfTheGreatestLength()
{
    for (int const most : {3, 4}) {
        PiecewiseDevice device("<a/>", 100);
        BoundedXml::Reader reader(device, most);
        while (reader.readNext()) { }
        QCOMPARE(reader.error().message,
            most == 4 ? QString() : QString("more than 3 bytes without a tag"));
    }
}

void TestBoundedXml::readerReadsLittleBeyondABound_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("message");
    QTest::newRow("bytes") << "<a>" + QByteArray(200000, 'x') + "</a>"
                           << "more than 40000 bytes without a tag";
    QTest::newRow("references") << withEntity(
        0, 60000) << "more than 10000 references in a document that declares entities";
    QTest::newRow("references before a text")
        << withEntity(0, 10001) + QByteArray(100000, 'x')
        << "more than 10000 references in a document that declares entities";
    QByteArray attributes;
    for (int i = 0; i < 20000; ++i)
        attributes += " a" + QByteArray::number(i) + "=''";
    QTest::newRow("attributes") << "<a" + attributes + "/>"
                                << "more than 1000 attributes of one element";
}

void TestBoundedXml::readerReadsLittleBeyondABound()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, message);
    PiecewiseDevice device(text, 1000);
    BoundedXml::Reader reader(device, 40000);
    while (reader.readNext()) { }
    QCOMPARE(reader.error().message, message);
    QVERIFY(reader.bytesRead() < 60000);
    QVERIFY(!reader.readNext());
}

void TestBoundedXml::progressOfAReadingIsTold()
{
    QVector<double> shares;
    auto const note = [&shares](double share) { shares << share; };
    QDomDocument document;
    BoundedXml::Error error;
    QByteArray const text = "<a>" + QByteArray("<b/>").repeated(10000) + "</a>";
    QVERIFY(BoundedXml::parse(text, document, error, {}, note));
    QCOMPARE(document.documentElement().childNodes().count(), 10000);
    QVERIFY(std::is_sorted(shares.cbegin(), shares.cend()));
    // The check goes through 20,004 tokens and tells of each 4,096th; the tree takes the rest.
    QVERIFY(shares.count() > 5);
    QVERIFY(shares.at(0) > 0.05 && shares.at(0) < 0.07);
    QVERIFY(shares.at(3) > 0.23 && shares.at(3) < 0.26);
    QVERIFY(shares.at(4) > 0.3);
    QCOMPARE(shares.last(), 1.0);

    shares.clear();
    QVERIFY(!BoundedXml::parse(text + "<c/>", document, error, {}, note));
    QCOMPARE(shares.count(), 4);
    QVERIFY(document.isNull());
}

QTEST_APPLESS_MAIN(TestBoundedXml)
#include "tst_boundedxml.moc"
