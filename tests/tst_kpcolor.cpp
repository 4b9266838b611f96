#include "kpcolor.h"
#include "outlinetesting.h"

#include <QDataStream>

#include <type_traits>

using OutlineTesting::domDocument;
using OutlineTesting::meaning;

static_assert(!std::is_polymorphic<KpColor>::value, "clients copy it as a plain value");
static_assert(std::is_base_of<QColor, KpColor>::value, "the concrete colour is the QColor part");
static_assert(alignof(KpColor) == 4, "the application's layout");

Q_DECLARE_METATYPE(KpColor)

namespace {

QStringList logged;

void noteMessage(QtMsgType type, QMessageLogContext const&, QString const& message)
{
    if (type != QtInfoMsg)
        logged << message;
}

/** All that a colour holds: theme index, tint code, reference, concrete colour. */
QString everything(KpColor colour)
{
    QVector<int> record;
    colour.toUndoValue(record);
    return QStringLiteral("theme %1 code %2 ref %3 kind %4 %5")
        .arg(record.at(0))
        .arg(record.at(1))
        .arg(uint(record.at(2)), 6, 16, QChar('0'))
        .arg(int(colour.spec()))
        .arg(uint(record.at(3)), 8, 16, QChar('0'));
}

KpColor colourOf(QColor ref, QColor colour, int tint, int theme)
{
    KpColor result;
    result.setColorValues(ref, colour, tint, theme);
    return result;
}

/** A colour read from an undo record, which holds any numbers. */
KpColor ofRecord(QVector<int> record)
{
    KpColor colour;
    int index = 0;
    colour.fromUndoValue(record, index);
    return colour;
}

QByteArray streamXml(KpColor colour, QString const& name = QString("Fill"))
{
    QByteArray xml;
    XmlStreamWriter writer(&xml);
    colour.saveTo(writer, name);
    return xml;
}

void parseStream(KpColor& colour, QByteArray const& xml)
{
    QXmlStreamReader reader(xml);
    reader.readNextStartElement();
    colour.parse(reader);
}

void parseDom(KpColor& colour, QByteArray const& xml)
{
    QDomDocument const document = domDocument(xml);
    colour.parse(document.documentElement());
}

} // namespace

class TestKpColor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void newColourIsInvalid();
    void plainColourIsItsOwnReference();
    void tintsAreEncoded_data();
    void tintsAreEncoded();
    void everyCodeIsDecoded();
    void setTintKeepsTheRest();
    void setTintColorComputes_data();
    void setTintColorComputes();
    void themeIndicesAreStored_data();
    void themeIndicesAreStored();
    void setRefColorKeepsTheTint();
    void setRefColorWithOddCodesTakesTheReference();
    void setColorValuesComputesNothing();
    void modifyTintComputesFromTheReference();
    void setColorMakesItPlain();
    void refColourIsOpaque();
    void assignNoAlphaKeepsAlpha();
    void copiesAreWhole();
    void equality_data();
    void equality();

    void streamHoldsFourItems_data();
    void streamHoldsFourItems();
    void streamGoesThereAndBack();
    void shortStreamsAreRead();
    void unknownKindsAreInvalid_data();
    void unknownKindsAreInvalid();

    void undoRecordHoldsFourInts();
    void undoRecordGoesThereAndBack();
    void undoRecordTakesAnyNumbers();
    void shortUndoRecordsReadAsNothing_data();
    void shortUndoRecordsReadAsNothing();

    void writesItsElement_data();
    void writesItsElement();
    void writesWhatTheThemeDoesNotTell_data();
    void writesWhatTheThemeDoesNotTell();
    void nullParentTakesNothing();
    void readsItsElement_data();
    void readsItsElement();
    void readersDiffer_data();
    void readersDiffer();
    void nullElementChangesNothing();
    void withoutAttributesNothingChanges();
    void readerDoesNotMove();
    void documentsGoThereAndBack();
};

void TestKpColor::initTestCase()
{
    QCOMPARE(KpColor::s_genPreTheme, false);
}

void TestKpColor::init()
{
    logged.clear();
    qInstallMessageHandler(noteMessage);
}

void TestKpColor::cleanup()
{
    qInstallMessageHandler(nullptr);
    KpColor::s_genPreTheme = false;
    QCOMPARE(logged, QStringList());
}

void TestKpColor::newColourIsInvalid()
{
    KpColor colour;
    QVERIFY(!colour.isValid());
    QCOMPARE(everything(colour), QString("theme 0 code 0 ref 000000 kind 0 000000ff"));
    QCOMPARE(colour.tint(), 0);
    QCOMPARE(colour.themeIndex(), 0);
}

void TestKpColor::plainColourIsItsOwnReference()
{
    KpColor const colour = QColor(1, 2, 3, 4);
    QCOMPARE(everything(colour), QString("theme 0 code 0 ref 010203 kind 1 01020304"));
    QCOMPARE(colour, KpColor(QColor(1, 2, 3, 4)));
}

void TestKpColor::tintsAreEncoded_data()
{
    QTest::addColumn<int>("given");
    QTest::addColumn<int>("code");
    QTest::addColumn<int>("seen");
    QTest::newRow("none") << 0 << 0 << 0;
    QTest::newRow("tint") << 30 << 30 << 30;
    QTest::newRow("least tint") << 1 << 1 << 1;
    QTest::newRow("strongest tint") << 100 << 100 << 100;
    QTest::newRow("beyond it") << 250 << 100 << 100;
    QTest::newRow("greatest int") << std::numeric_limits<int>::max() << 100 << 100;
    QTest::newRow("shade") << -30 << 130 << -30;
    QTest::newRow("least shade") << -1 << 101 << -1;
    QTest::newRow("strongest shade") << -100 << 200 << -100;
    QTest::newRow("beyond it, downwards") << -250 << 200 << -100;
    QTest::newRow("least int") << std::numeric_limits<int>::min() << 200 << -100;
}

void TestKpColor::tintsAreEncoded()
{
    QFETCH(int, given);
    QFETCH(int, code);
    QFETCH(int, seen);
    KpColor colour;
    colour.setTint(given);
    QCOMPARE(colour.tint(), seen);
    QVector<int> record;
    colour.toUndoValue(record);
    QCOMPARE(record.at(1), code);
}

void TestKpColor::everyCodeIsDecoded()
{
    // Records and streams hold any 16 bits; a negative code is seen as it is.
    for (int code = -32768; code <= 32767; ++code)
        QCOMPARE(ofRecord({0, code, 0, 255}).tint(), code <= 100 ? code : 100 - code);
}

void TestKpColor::setTintKeepsTheRest()
{
    KpColor colour = colourOf(QColor(1, 2, 3), QColor(10, 20, 30, 40), 5, 6);
    colour.setTint(-50);
    QCOMPARE(everything(colour), QString("theme 6 code 150 ref 010203 kind 1 0a141e28"));
}

void TestKpColor::setTintColorComputes_data()
{
    QTest::addColumn<QColor>("ref");
    QTest::addColumn<int>("tint");
    QTest::addColumn<QString>("expected");
    QTest::newRow("tint") << QColor(0, 0, 0) << 50 << "theme 3 code 50 ref 000000 kind 1 bcbcbc80";
    QTest::newRow("shade") << QColor(0x44, 0x72, 0xc4) << -50
                           << "theme 3 code 150 ref 4472c4 kind 1 2f528f80";
    QTest::newRow("no tint") << QColor(0x44, 0x72, 0xc4) << 0
                             << "theme 3 code 0 ref 4472c4 kind 1 4472c480";
    QTest::newRow("white") << QColor(0x44, 0x72, 0xc4) << 100
                           << "theme 3 code 100 ref 4472c4 kind 1 ffffff80";
    QTest::newRow("black") << QColor(0x44, 0x72, 0xc4) << -999
                           << "theme 3 code 200 ref 4472c4 kind 1 00000080";
    QTest::newRow("the reference brings no alpha along")
        << QColor(1, 2, 3, 4) << 0 << "theme 3 code 0 ref 010203 kind 1 01020380";
    QTest::newRow("invalid reference")
        << QColor() << 50 << "theme 3 code 50 ref 000000 kind 1 bcbcbc80";
}

void TestKpColor::setTintColorComputes()
{
    QFETCH(QColor, ref);
    QFETCH(int, tint);
    QFETCH(QString, expected);
    KpColor colour = QColor(9, 9, 9, 128);
    colour.setTintColor(ref, tint, 3);
    QCOMPARE(everything(colour), expected);
    // The same by the other ways.
    KpColor modified = QColor(9, 9, 9, 128);
    modified.setRefColor(ref, 3);
    modified.modifyTint(tint);
    QCOMPARE(everything(modified), expected);
    KpColor referred = QColor(9, 9, 9, 128);
    referred.setTint(tint);
    referred.setRefColor(ref, 3);
    QCOMPARE(everything(referred), expected);
}

void TestKpColor::themeIndicesAreStored_data()
{
    QTest::addColumn<int>("given");
    QTest::addColumn<int>("stored");
    QTest::addColumn<int>("storedWithReference");
    QTest::newRow("none") << 0 << 0 << 0;
    QTest::newRow("a slot") << 12 << 12 << 12;
    QTest::newRow("minus one keeps the index of a new reference") << -1 << 0 << 7;
    QTest::newRow("negative") << -5 << 0 << 0;
    QTest::newRow("least int") << std::numeric_limits<int>::min() << 0 << 0;
    QTest::newRow("greatest of 16 bits") << 32767 << 32767 << 32767;
    QTest::newRow("truncated to 16 bits") << 32768 << -32768 << -32768;
    QTest::newRow("beyond 16 bits") << 65537 << 1 << 1;
}

void TestKpColor::themeIndicesAreStored()
{
    QFETCH(int, given);
    QFETCH(int, stored);
    QFETCH(int, storedWithReference);
    KpColor colour = colourOf(QColor(), QColor(), 0, 7);
    colour.setColorValues(QColor(), QColor(), 0, given);
    QCOMPARE(colour.themeIndex(), stored);
    colour = colourOf(QColor(), QColor(), 0, 7);
    colour.setTintColor(QColor(), 0, given);
    QCOMPARE(colour.themeIndex(), stored);
    colour = colourOf(QColor(), QColor(), 0, 7);
    colour.setRefColor(QColor(), given);
    QCOMPARE(colour.themeIndex(), storedWithReference);
}

void TestKpColor::setRefColorKeepsTheTint()
{
    KpColor colour = colourOf(QColor(1, 2, 3), QColor(10, 20, 30, 40), -50, 6);
    colour.setRefColor(QColor(0x44, 0x72, 0xc4, 9), -1);
    QCOMPARE(everything(colour), QString("theme 6 code 150 ref 4472c4 kind 1 2f528f28"));
}

void TestKpColor::setRefColorWithOddCodesTakesTheReference()
{
    for (int const code : {-1, -32768, 0, 201, 32767}) {
        KpColor colour = ofRecord({1, code, 0, 0x0a141e28});
        colour.setRefColor(QColor(1, 2, 3), 2);
        QCOMPARE(
            everything(colour), QString("theme 2 code %1 ref 010203 kind 1 01020328").arg(code));
    }
}

void TestKpColor::setColorValuesComputesNothing()
{
    KpColor colour = QColor(9, 9, 9, 9);
    colour.setColorValues(QColor(1, 2, 3, 4), QColor(10, 20, 30, 40), -130, 5);
    QCOMPARE(everything(colour), QString("theme 5 code 200 ref 010203 kind 1 0a141e28"));
    colour.setColorValues(QColor(1, 2, 3), QColor::fromHsl(10, 20, 30, 40), 0, 0);
    QCOMPARE(colour.spec(), QColor::Hsl);
}

void TestKpColor::modifyTintComputesFromTheReference()
{
    KpColor colour = colourOf(QColor(0x44, 0x72, 0xc4), QColor(10, 20, 30, 40), 0, 5);
    colour.modifyTint(-50);
    QCOMPARE(everything(colour), QString("theme 5 code 150 ref 4472c4 kind 1 2f528f28"));
    colour.modifyTint(0);
    QCOMPARE(everything(colour), QString("theme 5 code 0 ref 4472c4 kind 1 4472c428"));
}

void TestKpColor::setColorMakesItPlain()
{
    KpColor colour = colourOf(QColor(1, 2, 3), QColor(10, 20, 30, 40), -50, 6);
    colour.setColor(QColor(5, 6, 7, 8));
    QCOMPARE(everything(colour), QString("theme 0 code 0 ref 050607 kind 1 05060708"));
    QVERIFY(colour.isSameInTheme(KpColor(QColor(99, 99, 99))));
}

void TestKpColor::refColourIsOpaque()
{
    KpColor colour = colourOf(QColor(255, 128, 0, 3), QColor(10, 20, 30, 40), 0, 1);
    QColor const reference = colour.refColor();
    QCOMPARE(reference, QColor(255, 128, 0, 255));
    QCOMPARE(reference.spec(), QColor::Rgb);
    // A record may hold more than 24 bits.
    QCOMPARE(ofRecord({0, 0, -1, 0}).refColor(), QColor(255, 255, 255));
    QCOMPARE(ofRecord({0, 0, 0x7f010203, 0}).refColor(), QColor(1, 2, 3));
}

void TestKpColor::assignNoAlphaKeepsAlpha()
{
    KpColor colour = QColor(1, 1, 1, 200);
    KpColor other = colourOf(QColor(1, 2, 3), QColor(10, 20, 30, 10), -50, 6);
    colour.assignNoAlpha(other);
    QCOMPARE(everything(colour), QString("theme 6 code 150 ref 010203 kind 1 0a141ec8"));
    colour.assignNoAlpha(colour);
    QCOMPARE(everything(colour), QString("theme 6 code 150 ref 010203 kind 1 0a141ec8"));
}

void TestKpColor::copiesAreWhole()
{
    KpColor const colour = colourOf(QColor(1, 2, 3), QColor(10, 20, 30, 40), -50, 6);
    KpColor const copy(colour);
    QCOMPARE(everything(copy), everything(colour));
    KpColor assigned = QColor(9, 9, 9);
    KpColor& result = assigned = colour;
    QCOMPARE(&result, &assigned);
    QCOMPARE(everything(assigned), everything(colour));
}

void TestKpColor::equality_data()
{
    QTest::addColumn<QVector<int>>("first");
    QTest::addColumn<QVector<int>>("second");
    QTest::addColumn<bool>("equal");
    QTest::addColumn<bool>("sameInTheme");
    using Record = QVector<int>;
    QTest::newRow("equal") << Record {1, 2, 3, 4} << Record {1, 2, 3, 4} << true << true;
    QTest::newRow("another theme") << Record {1, 2, 3, 4} << Record {2, 2, 3, 4} << false << false;
    QTest::newRow("another tint") << Record {1, 2, 3, 4} << Record {1, 3, 3, 4} << false << false;
    QTest::newRow("theme and tint changed over")
        << Record {1, 2, 3, 4} << Record {2, 1, 3, 4} << false << false;
    QTest::newRow("another reference")
        << Record {1, 2, 3, 4} << Record {1, 2, 4, 4} << false << true;
    QTest::newRow("another colour")
        << Record {1, 2, 3, 0x0a000004} << Record {1, 2, 3, 4} << false << true;
    QTest::newRow("another alpha") << Record {1, 2, 3, 4} << Record {1, 2, 3, 5} << false << true;
    QTest::newRow("plain colours")
        << Record {0, 0, 3, 0x0a000004} << Record {0, 0, 9, 4} << false << true;
}

void TestKpColor::equality()
{
    QFETCH(QVector<int>, first);
    QFETCH(QVector<int>, second);
    QFETCH(bool, equal);
    QFETCH(bool, sameInTheme);
    KpColor const a = ofRecord(first);
    KpColor const b = ofRecord(second);
    QCOMPARE(a == b, equal);
    QCOMPARE(a != b, !equal);
    QCOMPARE(a.isSameInTheme(b), sameInTheme);
    // As QColor compares: a colour of another kind is another colour.
    KpColor hsl = a;
    hsl.setColorValues(QColor(), a.toHsl(), 0, 0);
    KpColor rgb = a;
    rgb.setColorValues(QColor(), a.toRgb(), 0, 0);
    QVERIFY(hsl != rgb);
}

void TestKpColor::streamHoldsFourItems_data()
{
    QTest::addColumn<int>("version");
    QTest::addColumn<int>("order");
    QTest::addColumn<QByteArray>("hex");
    // Theme 6, code 150, QColor (kind, alpha, red, green, blue, padding), reference.
    QTest::newRow("big endian") << int(QDataStream::Qt_5_15) << int(QDataStream::BigEndian)
                                << QByteArray("0006"
                                              "0096"
                                              "01"
                                              "2828"
                                              "0a0a"
                                              "1414"
                                              "1e1e"
                                              "0000"
                                              "00010203");
    QTest::newRow("little endian") << int(QDataStream::Qt_5_15) << int(QDataStream::LittleEndian)
                                   << QByteArray("0600"
                                                 "9600"
                                                 "01"
                                                 "2828"
                                                 "0a0a"
                                                 "1414"
                                                 "1e1e"
                                                 "0000"
                                                 "03020100");
    QTest::newRow("the stream's version decides on the colour")
        << int(QDataStream::Qt_3_3) << int(QDataStream::BigEndian)
        << QByteArray("0006"
                      "0096"
                      "000a141e"
                      "00010203");
}

void TestKpColor::streamHoldsFourItems()
{
    QFETCH(int, version);
    QFETCH(int, order);
    QFETCH(QByteArray, hex);
    KpColor const colour = colourOf(QColor(1, 2, 3), QColor(10, 20, 30, 40), -50, 6);
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setVersion(version);
    out.setByteOrder(QDataStream::ByteOrder(order));
    QCOMPARE(&colour.write(out), &out);
    bool const isOld = version == QDataStream::Qt_3_3;
    if (!isOld)
        QCOMPARE(bytes.toHex(), hex);
    QDataStream in(QByteArray::fromHex(hex));
    in.setVersion(version);
    in.setByteOrder(QDataStream::ByteOrder(order));
    KpColor read;
    QCOMPARE(&read.read(in), &in);
    QVERIFY(in.atEnd());
    QCOMPARE(everything(read),
        QString("theme 6 code 150 ref 010203 kind 1 0a141e%1").arg(isOld ? "ff" : "28"));
}

void TestKpColor::streamGoesThereAndBack()
{
    for (QColor const& concrete : {QColor(), QColor(1, 2, 3, 4), QColor::fromHsl(10, 20, 30, 40),
             QColor::fromHsv(10, 20, 30, 40), QColor::fromCmyk(1, 2, 3, 4, 5),
             QColor::fromRgbF(1.5f, -0.5f, 0.25f, 1.0f)}) {
        for (int const tint : {-100, -1, 0, 50}) {
            KpColor const colour = colourOf(QColor(7, 8, 9), concrete, tint, 32767);
            QByteArray bytes;
            QDataStream out(&bytes, QIODevice::WriteOnly);
            colour.write(out);
            QDataStream in(bytes);
            KpColor read = QColor(99, 99, 99);
            read.read(in);
            QVERIFY(read == colour);
        }
    }
}

void TestKpColor::shortStreamsAreRead()
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    colourOf(QColor(1, 2, 3), QColor(10, 20, 30, 40), -50, 6).write(out);
    QCOMPARE(bytes.size(), 19);
    for (int size = 0; size < bytes.size(); ++size) {
        OutlineTesting::ExactlySized const part(bytes.left(size));
        QDataStream in(part.bytes());
        KpColor read;
        read.read(in);
        QCOMPARE(in.status(), QDataStream::ReadPastEnd);
        QCOMPARE(read.themeIndex(), size < 2 ? 0 : 6);
        QCOMPARE(read.tint(), size < 4 ? 0 : -50);
        read.red();
        read.name();
    }
}

void TestKpColor::unknownKindsAreInvalid_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<bool>("known");
    QTest::newRow("invalid") << 0 << true;
    QTest::newRow("red, green and blue") << 1 << true;
    QTest::newRow("extended") << 5 << true;
    QTest::newRow("one more") << 6 << false;
    QTest::newRow("greatest") << 127 << false;
    QTest::newRow("negative") << -1 << false;
    QTest::newRow("least") << -128 << false;
}

void TestKpColor::unknownKindsAreInvalid()
{
    QFETCH(int, kind);
    QFETCH(bool, known);
    QByteArray bytes = QByteArray::fromHex("000600960128280a0a14141e1e000000010203");
    bytes[4] = char(kind);
    QDataStream in(bytes);
    KpColor read;
    read.read(in);
    QCOMPARE(int(read.spec()), known ? kind : 0);
    QCOMPARE(read.themeIndex(), 6);
    QCOMPARE(read.tint(), -50);
    QCOMPARE(read.refColor(), QColor(1, 2, 3));
    QVERIFY(read == KpColor(read));
}

void TestKpColor::undoRecordHoldsFourInts()
{
    QVector<int> values {77};
    KpColor colour = colourOf(QColor(1, 2, 3), QColor(10, 20, 30, 40), -50, 6);
    colour.toUndoValue(values);
    QCOMPARE(values, (QVector<int> {77, 6, 150, 0x010203, 0x0a141e28}));
    colour = colourOf(QColor(255, 255, 255), QColor(255, 254, 253, 252), 0, 32768);
    values.clear();
    colour.toUndoValue(values);
    QCOMPARE(values, (QVector<int> {-32768, 0, 0xffffff, int(0xfffefdfcU)}));
}

void TestKpColor::undoRecordGoesThereAndBack()
{
    QRandomGenerator random = OutlineTesting::seededRandom(1848);
    for (int i = 0; i < 10000; ++i) {
        KpColor colour = colourOf(QColor(QRgb(random.generate())),
            QColor::fromRgba(random.generate()), random.bounded(-120, 120), random.bounded(70000));
        QVector<int> values(random.bounded(3), 5);
        int index = values.size();
        int const start = index;
        colour.toUndoValue(values);
        values << 6;
        KpColor read = QColor::fromHsl(1, 2, 3, 4);
        read.fromUndoValue(values, index);
        QVERIFY(read == colour);
        QCOMPARE(index, start + 4);
    }
}

void TestKpColor::undoRecordTakesAnyNumbers()
{
    QCOMPARE(everything(ofRecord({70000, -70000, -1, -1})),
        QString("theme 4464 code -4464 ref ffffffff kind 1 ffffffff"));
    QCOMPARE(everything(ofRecord({std::numeric_limits<int>::min(), std::numeric_limits<int>::max(),
                 std::numeric_limits<int>::min(), std::numeric_limits<int>::min()})),
        QString("theme 0 code -1 ref 80000000 kind 1 80000000"));
}

void TestKpColor::shortUndoRecordsReadAsNothing_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("start");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<int>("end");
    int const most = std::numeric_limits<int>::max();
    int const least = std::numeric_limits<int>::min();
    QString const nothing = "theme 0 code 0 ref 000000 kind 1 00000000";
    QTest::newRow("whole") << 4 << 0 << "theme 1 code 2 ref 000003 kind 1 04040404" << 4;
    QTest::newRow("without the colour")
        << 3 << 0 << "theme 1 code 2 ref 000003 kind 1 00000000" << 4;
    QTest::newRow("theme only") << 1 << 0 << "theme 1 code 0 ref 000000 kind 1 00000000" << 4;
    QTest::newRow("empty") << 0 << 0 << nothing << 4;
    QTest::newRow("from the second") << 4 << 1 << "theme 2 code 3 ref 4040404 kind 1 00000000" << 5;
    QTest::newRow("from the end") << 4 << 4 << nothing << 8;
    QTest::newRow("before the start")
        << 4 << -2 << "theme 0 code 0 ref 000001 kind 1 00000002" << 2;
    QTest::newRow("far before the start") << 4 << least << nothing << least + 4;
    QTest::newRow("at the greatest int")
        << 4 << most << "theme 0 code 0 ref 000000 kind 1 00000000" << least + 3;
}

void TestKpColor::shortUndoRecordsReadAsNothing()
{
    QFETCH(int, size);
    QFETCH(int, start);
    QFETCH(QString, expected);
    QFETCH(int, end);
    QVector<int> values = QVector<int> {1, 2, 3, 0x04040404}.mid(0, size);
    values.squeeze();
    KpColor colour = colourOf(QColor(9, 9, 9), QColor(9, 9, 9, 9), 9, 9);
    int index = start;
    colour.fromUndoValue(values, index);
    QCOMPARE(everything(colour), expected);
    QCOMPARE(index, end);
}

void TestKpColor::writesItsElement_data()
{
    QTest::addColumn<KpColor>("colour");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("xml");
    QTest::newRow("plain") << KpColor(QColor(255, 0, 0)) << "Fill"
                           << QByteArray("<Fill V=\"#ffff0000\"/>");
    QTest::newRow("without a name")
        << KpColor(QColor(255, 0, 0)) << "" << QByteArray("<Color V=\"#ffff0000\"/>");
    QTest::newRow("alpha first, lower case")
        << KpColor(QColor(171, 205, 239, 18)) << "Fill" << QByteArray("<Fill V=\"#12abcdef\"/>");
    QTest::newRow("invalid") << KpColor() << "Fill" << QByteArray("<Fill V=\"#ff000000\"/>");
    QTest::newRow("theme") << colourOf(QColor(1, 2, 3), QColor(255, 0, 0), 0, 4) << "Fill"
                           << QByteArray("<Fill ThemeColor=\"4\" V=\"#ffff0000\"/>");
    QTest::newRow("shaded theme")
        << colourOf(QColor(255, 128, 64), QColor(0xda, 0x6c, 0x35), -30, 4) << "Fill"
        << QByteArray("<Fill ThemeColor=\"4\" Shade=\"30\" V=\"#ffda6c35\" Ref=\"#ff8040\"/>");
    QTest::newRow("tinted without a theme") << colourOf(QColor(171, 205, 239), QColor(9, 9, 9), 100,
        0) << "Fill" << QByteArray("<Fill Tint=\"100\" V=\"#ff090909\" Ref=\"#abcdef\"/>");
    QTest::newRow("one digit for small channels") << colourOf(QColor(1, 2, 3), QColor(9, 9, 9), 1,
        0) << "Fill" << QByteArray("<Fill Tint=\"1\" V=\"#ff090909\" Ref=\"#123\"/>");
    QTest::newRow("five digits in all") << colourOf(QColor(255, 0, 16), QColor(9, 9, 9), 1,
        0) << "Fill" << QByteArray("<Fill Tint=\"1\" V=\"#ff090909\" Ref=\"#ff010\"/>");
    QTest::newRow("negative theme and odd codes of a record")
        << ofRecord({-7, 250, 0x0f0f0f0f, 0x090909ff}) << "Fill"
        << QByteArray("<Fill ThemeColor=\"-7\" Shade=\"150\" V=\"#ff090909\" Ref=\"#fff\"/>");
}

void TestKpColor::writesItsElement()
{
    QFETCH(KpColor, colour);
    QFETCH(QString, name);
    QFETCH(QByteArray, xml);
    QCOMPARE(streamXml(colour, name), xml);
    QDomDocument document = domDocument("<Page><Old/></Page>");
    QDomElement page = document.documentElement();
    colour.saveTo(page, name);
    QDomElement const element = page.lastChildElement();
    QCOMPARE(meaning(element), meaning(domDocument(xml).documentElement()));
    QCOMPARE(page.childNodes().count(), 2);
    QVERIFY(element.ownerDocument() == document);
    QVERIFY(!element.hasChildNodes());
}

void TestKpColor::writesWhatTheThemeDoesNotTell_data()
{
    QTest::addColumn<KpColor>("colour");
    QTest::addColumn<QByteArray>("xml");
    QColor const ref(255, 128, 64);
    QTest::newRow("opaque theme colour")
        << colourOf(ref, QColor(9, 9, 9), 0, 2) << QByteArray("<Fill ThemeColor=\"2\"/>");
    QTest::newRow("tinted theme colour") << colourOf(ref, QColor(9, 9, 9), 20, 2)
                                         << QByteArray("<Fill ThemeColor=\"2\" Tint=\"20\"/>");
    QTest::newRow("translucent theme colour") << colourOf(ref, QColor(9, 9, 9, 128), -20,
        2) << QByteArray("<Fill ThemeColor=\"2\" Shade=\"20\" V=\"#80090909\"/>");
    QTest::newRow("plain colour") << KpColor(QColor(9, 9, 9))
                                  << QByteArray("<Fill V=\"#ff090909\"/>");
    QTest::newRow("tinted colour without a theme") << colourOf(ref, QColor(9, 9, 9), 20,
        0) << QByteArray("<Fill Tint=\"20\" V=\"#ff090909\" Ref=\"#ff8040\"/>");
}

void TestKpColor::writesWhatTheThemeDoesNotTell()
{
    QFETCH(KpColor, colour);
    QFETCH(QByteArray, xml);
    KpColor::s_genPreTheme = true;
    QCOMPARE(streamXml(colour), xml);
    QDomDocument document = domDocument("<Page/>");
    QDomElement page = document.documentElement();
    colour.saveTo(page, "Fill");
    QCOMPARE(meaning(page.firstChildElement()), meaning(domDocument(xml).documentElement()));
}

void TestKpColor::nullParentTakesNothing()
{
    QDomElement parent;
    KpColor(QColor(1, 2, 3)).saveTo(parent, "Fill");
    QVERIFY(parent.isNull());
}

void TestKpColor::readsItsElement_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<QString>("expected");
    // Both readers, on a colour of theme 0.
    QTest::newRow("plain") << QByteArray("<Fill V='#ffff0000'/>")
                           << "theme 0 code 0 ref ff0000 kind 1 ff0000ff";
    QTest::newRow("alpha") << QByteArray("<Fill V='#80ff0000'/>")
                           << "theme 0 code 0 ref ff0000 kind 1 ff000080";
    QTest::newRow("without alpha")
        << QByteArray("<Fill V='#ff0000'/>") << "theme 0 code 0 ref ff0000 kind 1 ff0000ff";
    QTest::newRow("short form") << QByteArray("<Fill V='#123'/>")
                                << "theme 0 code 0 ref 112233 kind 1 112233ff";
    QTest::newRow("name") << QByteArray("<Fill V='SteelBlue'/>")
                          << "theme 0 code 0 ref 4682b4 kind 1 4682b4ff";
    QTest::newRow("no colour") << QByteArray("<Fill V='blurple'/>")
                               << "theme 0 code 0 ref 000000 kind 0 000000ff";
    QTest::newRow("five digits") << QByteArray("<Fill V='#12345'/>")
                                 << "theme 0 code 0 ref 000000 kind 0 000000ff";
    QTest::newRow("no value keeps the colour")
        << QByteArray("<Fill ThemeColor='3'/>") << "theme 3 code 0 ref 0a141e kind 1 0a141e28";
    QTest::newRow("shaded theme colour")
        << QByteArray("<Fill ThemeColor='4' Shade='30' V='#ffda6c35' Ref='#ff8040'/>")
        << "theme 4 code 130 ref ff8040 kind 1 da6c35ff";
    QTest::newRow("reference from the tint undone") << QByteArray("<Fill Tint='50' V='#ffbcbcbc'/>")
                                                    << "theme 0 code 50 ref 111111 kind 1 bcbcbcff";
    QTest::newRow("reference from the shade undone") << QByteArray(
        "<Fill Shade='50' V='#ff2f528f'/>") << "theme 0 code 150 ref 4372c4 kind 1 2f528fff";
    QTest::newRow("reference from the kept colour")
        << QByteArray("<Fill Shade='100'/>") << "theme 0 code 200 ref ffffff kind 1 0a141e28";
    QTest::newRow("tint outweighs shade") << QByteArray("<Fill Shade='40' Tint='20' Ref='#fff'/>")
                                          << "theme 0 code 20 ref ffffff kind 1 0a141e28";
    QTest::newRow("tint of 0 outweighs shade")
        << QByteArray("<Fill Shade='40' Tint='0'/>") << "theme 0 code 0 ref 0a141e kind 1 0a141e28";
    QTest::newRow("no number") << QByteArray("<Fill ThemeColor='four' Tint='half'/>")
                               << "theme 0 code 0 ref 0a141e kind 1 0a141e28";
    QTest::newRow("decimal numbers only") << QByteArray("<Fill ThemeColor='0x10' Tint='1.5'/>")
                                          << "theme 0 code 0 ref 0a141e kind 1 0a141e28";
    QTest::newRow("tint beyond") << QByteArray("<Fill Tint='250' Ref='#fff'/>")
                                 << "theme 0 code 100 ref ffffff kind 1 0a141e28";
    QTest::newRow("negative tint is a shade") << QByteArray("<Fill Tint='-30' Ref='#fff'/>")
                                              << "theme 0 code 130 ref ffffff kind 1 0a141e28";
    QTest::newRow("negative shade is a tint") << QByteArray("<Fill Shade='-30' Ref='#fff'/>")
                                              << "theme 0 code 30 ref ffffff kind 1 0a141e28";
    QTest::newRow("least int as shade") << QByteArray("<Fill Shade='-2147483648' Ref='#fff'/>")
                                        << "theme 0 code 100 ref ffffff kind 1 0a141e28";
    QTest::newRow("beyond int") << QByteArray("<Fill Shade='3000000000' Ref='#fff'/>")
                                << "theme 0 code 0 ref ffffff kind 1 0a141e28";
    QTest::newRow("theme of 16 bits") << QByteArray("<Fill ThemeColor='70000'/>")
                                      << "theme 4464 code 0 ref 0a141e kind 1 0a141e28";
    QTest::newRow("negative theme")
        << QByteArray("<Fill ThemeColor='-3'/>") << "theme -3 code 0 ref 0a141e kind 1 0a141e28";
    QTest::newRow("reference of small channels")
        << QByteArray("<Fill Tint='1' V='#ff090909' Ref='#123'/>")
        << "theme 0 code 1 ref 112233 kind 1 090909ff";
    QTest::newRow("reference of five digits")
        << QByteArray("<Fill Tint='1' V='#ff090909' Ref='#ff010'/>")
        << "theme 0 code 1 ref 000000 kind 1 090909ff";
    QTest::newRow("other letter cases are not known")
        << QByteArray("<Fill v='#fff' themecolor='4' TINT='5' ref='#fff'/>")
        << "theme 0 code 0 ref 0a141e kind 1 0a141e28";
    QTest::newRow("children are not read")
        << QByteArray("<Fill Tint='0'><V/><Fill V='#fff'/></Fill>")
        << "theme 0 code 0 ref 0a141e kind 1 0a141e28";
    QTest::newRow("a very long name") << QByteArray("<Fill V='" + QByteArray(10000, 'x') + "'/>")
                                      << "theme 0 code 0 ref 000000 kind 0 000000ff";
}

void TestKpColor::readsItsElement()
{
    QFETCH(QByteArray, xml);
    QFETCH(QString, expected);
    KpColor fromDom = colourOf(QColor(1, 2, 3), QColor(10, 20, 30, 40), -50, 0);
    KpColor fromStream = fromDom;
    parseDom(fromDom, xml);
    QCOMPARE(everything(fromDom), expected);
    parseStream(fromStream, xml);
    QCOMPARE(everything(fromStream), expected);
}

void TestKpColor::readersDiffer_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<QString>("dom");
    QTest::addColumn<QString>("stream");
    QTest::newRow("without a theme")
        << QByteArray("<Fill V='#ffff0000'/>") << "theme 0 code 0 ref ff0000 kind 1 ff0000ff"
        << "theme 7 code 0 ref ff0000 kind 1 ff0000ff";
    QTest::newRow("empty theme") << QByteArray("<Fill ThemeColor='' V='#ffff0000'/>")
                                 << "theme 0 code 0 ref ff0000 kind 1 ff0000ff"
                                 << "theme 0 code 0 ref ff0000 kind 1 ff0000ff";
    QTest::newRow("empty value") << QByteArray("<Fill ThemeColor='2' V=''/>")
                                 << "theme 2 code 0 ref 0a141e kind 1 0a141e28"
                                 << "theme 2 code 0 ref 000000 kind 0 000000ff";
    QTest::newRow("empty reference") << QByteArray("<Fill ThemeColor='2' Ref=''/>")
                                     << "theme 2 code 0 ref 0a141e kind 1 0a141e28"
                                     << "theme 2 code 0 ref 000000 kind 1 0a141e28";
    QTest::newRow("empty tint beside a shade")
        << QByteArray("<Fill ThemeColor='2' Tint='' Shade='40' Ref='#fff'/>")
        << "theme 2 code 140 ref ffffff kind 1 0a141e28"
        << "theme 2 code 0 ref ffffff kind 1 0a141e28";
    QTest::newRow("prefixed") << QByteArray("<Fill xmlns:p='urn:p' ThemeColor='2' p:V='#fff'/>")
                              << "theme 2 code 0 ref 0a141e kind 1 0a141e28"
                              << "theme 2 code 0 ref 0a141e kind 1 0a141e28";
}

void TestKpColor::readersDiffer()
{
    QFETCH(QByteArray, xml);
    QFETCH(QString, dom);
    QFETCH(QString, stream);
    KpColor fromDom = colourOf(QColor(1, 2, 3), QColor(10, 20, 30, 40), -50, 7);
    KpColor fromStream = fromDom;
    parseDom(fromDom, xml);
    QCOMPARE(everything(fromDom), dom);
    parseStream(fromStream, xml);
    QCOMPARE(everything(fromStream), stream);
}

void TestKpColor::nullElementChangesNothing()
{
    KpColor colour = colourOf(QColor(1, 2, 3), QColor(10, 20, 30, 40), -50, 7);
    QString const before = everything(colour);
    colour.parse(QDomElement());
    QCOMPARE(everything(colour), before);
}

void TestKpColor::withoutAttributesNothingChanges()
{
    KpColor colour = colourOf(QColor(1, 2, 3), QColor(10, 20, 30, 40), -50, 7);
    QString const before = everything(colour);
    parseStream(colour, "<Fill/>");
    QCOMPARE(everything(colour), before);
    QXmlStreamReader none;
    colour.parse(none);
    QCOMPARE(everything(colour), before);
    // The DOM reader reads such an element: theme and tint go, the colour stays.
    parseDom(colour, "<Fill/>");
    QCOMPARE(everything(colour), QString("theme 0 code 0 ref 0a141e kind 1 0a141e28"));
}

void TestKpColor::readerDoesNotMove()
{
    QXmlStreamReader reader(QByteArray("<Page><Fill V='#ff010203'><Child/></Fill></Page>"));
    reader.readNextStartElement();
    reader.readNextStartElement();
    qint64 const place = reader.characterOffset();
    KpColor colour;
    colour.parse(reader);
    QCOMPARE(everything(colour), QString("theme 0 code 0 ref 010203 kind 1 010203ff"));
    QVERIFY(reader.isStartElement());
    QCOMPARE(reader.name().toString(), QString("Fill"));
    QCOMPARE(reader.characterOffset(), place);
}

void TestKpColor::documentsGoThereAndBack()
{
    QRandomGenerator random = OutlineTesting::seededRandom(1955);
    for (int i = 0; i < 5000; ++i) {
        // References of two digits a channel, which the format keeps.
        QRgb const reference = 0x101010 | random.generate();
        KpColor colour = colourOf(QColor(reference), QColor::fromRgba(random.generate()),
            random.bounded(-100, 101), random.bounded(20));
        if (colour.tint() == 0)
            colour.setColorValues(QColor(colour.rgb()), colour, 0, colour.themeIndex());
        QByteArray const xml = streamXml(colour);
        KpColor fromDom;
        parseDom(fromDom, xml);
        QVERIFY2(fromDom == colour, xml.constData());
        KpColor fromStream;
        parseStream(fromStream, xml);
        QVERIFY2(fromStream == colour, xml.constData());
    }
}

QTEST_APPLESS_MAIN(TestKpColor)
#include "tst_kpcolor.moc"
