#include "boundedxml_p.h"

#include <QBuffer>
#include <QDomDocument>
#include <QIODevice>
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

    void failedParseEmptiesTheDocument();
    void everyPrefixFails();
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

QTEST_APPLESS_MAIN(TestBoundedXml)
#include "tst_boundedxml.moc"
