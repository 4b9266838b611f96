// SPDX-License-Identifier: MIT
#include "colorutil.h"
#include "colourtesting.h"
#include "outlinetesting.h"

#include <QDataStream>

#include <optional>
#include <type_traits>

using ColourTesting::colourOf;
using ColourTesting::identical;
using OutlineTesting::domDocument;
using OutlineTesting::meaning;

static_assert(!std::is_polymorphic<KpColor>::value, "clients copy it as a plain value");
static_assert(std::is_base_of<QColor, KpColor>::value, "the concrete colour is the QColor part");
static_assert(sizeof(QColor) == 16 && sizeof(KpColor) == 24, "8 bytes behind the QColor part");
static_assert(alignof(KpColor) == 4, "the application's layout");
static_assert(std::is_same<decltype(KpColor::s_genPreTheme), bool>::value, "");

Q_DECLARE_METATYPE(KpColor)

namespace {

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
    void cleanup();
    void cleanupTestCase();

    void fieldsStandInOrder();
    void newColourIsInvalid();
    void plainColourIsItsOwnReference();
    void tintsAreEncoded_data();
    void tintsAreEncoded();
    void everyTintIsEncodedByEveryWay();
    void everyCodeIsDecoded();
    void everyCodeComputes();
    void computedColoursKeepTheirAlpha_data();
    void computedColoursKeepTheirAlpha();
    void aColourMayReferToItself();
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
    void concreteColoursAreComparedAsQtDoes();
    void comparisonWithAQColorIsThatOfTheLeft_data();
    void comparisonWithAQColorIsThatOfTheLeft();

    void streamHoldsFourItems_data();
    void streamHoldsFourItems();
    void streamGoesThereAndBack();
    void shortStreamsAreRead_data();
    void shortStreamsAreRead();
    void streamsOfAnyBytesAreRead();
    void unknownKindsAreInvalid_data();
    void unknownKindsAreInvalid();
    void extendedColoursWithoutAFractionAsAlphaAreInvalid_data();
    void extendedColoursWithoutAFractionAsAlphaAreInvalid();

    void undoRecordHoldsFourInts();
    void undoRecordOfOtherKindsHoldsTheirChannels();
    void undoRecordGoesThereAndBack();
    void undoRecordReplacesAnyAlpha();
    void undoRecordTakesAnyNumbers();
    void shortUndoRecordsReadAsNothing_data();
    void shortUndoRecordsReadAsNothing();

    void writesItsElement_data();
    void writesItsElement();
    void writesWhatTheThemeDoesNotTell_data();
    void writesWhatTheThemeDoesNotTell();
    void bothWritersFollowTheRules();
    void writingChangesNothing();
    void nullParentTakesNothing();
    void readsItsElement_data();
    void readsItsElement();
    void readsColourTexts_data();
    void readsColourTexts();
    void readsNumberTexts_data();
    void readsNumberTexts();
    void readersFollowTheRulesOnAllSubsets_data();
    void readersFollowTheRulesOnAllSubsets();
    void readersDiffer_data();
    void readersDiffer();
    void nullElementChangesNothing();
    void withoutAttributesNothingChanges();
    void otherTokensChangeNothing();
    void readerDoesNotMove();
    void documentsGoThereAndBack();

private:
    std::optional<Testing::MessageWatch> watch;
};

void TestKpColor::initTestCase()
{
    watch.emplace();
    QCOMPARE(KpColor::s_genPreTheme, false);
}

void TestKpColor::cleanup()
{
    KpColor::s_genPreTheme = false;
    VERIFY_NOTHING_LOGGED(*watch);
}

void TestKpColor::cleanupTestCase()
{
    watch->stop();
    VERIFY_NOTHING_LOGGED(*watch);
}

void TestKpColor::fieldsStandInOrder()
{
    KpColor const colour = colourOf(QColor(1, 2, 3), QColor(10, 20, 30, 40), -50, 6);
    char const* const bytes = reinterpret_cast<char const*>(&colour);
    QCOMPARE(static_cast<void const*>(static_cast<QColor const*>(&colour)),
        static_cast<void const*>(bytes));
    qint32 reference = 0;
    qint16 theme = 0;
    qint16 code = 0;
    std::memcpy(&reference, bytes + 16, sizeof reference);
    std::memcpy(&theme, bytes + 20, sizeof theme);
    std::memcpy(&code, bytes + 22, sizeof code);
    QCOMPARE(reference, 0x010203);
    QCOMPARE(theme, qint16(6));
    QCOMPARE(code, qint16(150));
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

void TestKpColor::everyTintIsEncodedByEveryWay()
{
    for (int tint = -200; tint <= 200; ++tint) {
        int const seen = tint < -100 ? -100 : tint > 100 ? 100 : tint;
        int const code = seen < 0 ? 100 - seen : seen;
        KpColor set;
        set.setTint(tint);
        KpColor computed;
        computed.setTintColor(QColor(1, 2, 3), tint, 4);
        KpColor modified;
        modified.modifyTint(tint);
        KpColor stored = colourOf(QColor(), QColor(), tint, 4);
        for (KpColor* const colour : {&set, &computed, &modified, &stored}) {
            QCOMPARE(colour->tint(), seen);
            QVector<int> record;
            colour->toUndoValue(record);
            QCOMPARE(record.at(1), code);
        }
    }
}

void TestKpColor::everyCodeIsDecoded()
{
    // Records and streams hold any 16 bits; a negative code is seen as it is.
    for (int code = -32768; code <= 32767; ++code)
        QCOMPARE(ofRecord({0, code, 0, 255}).tint(), code <= 100 ? code : 100 - code);
}

void TestKpColor::everyCodeComputes()
{
    using namespace ColourTesting::Powers;
    QVector<int> codes {-32768, 32767};
    for (int code = -300; code <= 400; ++code)
        codes << code;
    for (int const code : qAsConst(codes)) {
        auto const computed = [code](int level) {
            if (code >= 1 && code <= 100)
                return tint(level, code * 0.01);
            if (code >= 101 && code <= 200)
                return shade(level, (code - 100) * 0.01);
            return level;
        };
        for (int level = 0; level < 256; ++level) {
            KpColor colour = ofRecord({1, code, 0, 0x0a141e28});
            colour.setRefColor(QColor(level, 255 - level, 128, 9), 2);
            QVector<int> record;
            colour.toUndoValue(record);
            quint32 const expected = quint32(computed(level)) << 24
                | quint32(computed(255 - level)) << 16 | quint32(computed(128)) << 8 | 40U;
            QCOMPARE(record,
                (QVector<int> {2, code, level * 65536 + (255 - level) * 256 + 128, int(expected)}));
        }
    }
}

void TestKpColor::computedColoursKeepTheirAlpha_data()
{
    QTest::addColumn<QColor>("before");
    QTest::addColumn<QString>("expected");
    QTest::newRow("opaque") << QColor(9, 9, 9) << "2f528fff";
    QTest::newRow("translucent") << QColor(9, 9, 9, 40) << "2f528f28";
    QTest::newRow("transparent") << QColor(9, 9, 9, 0) << "2f528f00";
    QTest::newRow("invalid counts as opaque") << QColor() << "2f528fff";
    QTest::newRow("HSL") << QColor::fromHsl(10, 20, 30, 40) << "2f528f28";
    QTest::newRow("HSV") << QColor::fromHsv(10, 20, 30, 40) << "2f528f28";
    QTest::newRow("CMYK") << QColor::fromCmyk(10, 20, 30, 40, 50) << "2f528f32";
    QTest::newRow("extended") << QColor::fromRgbF(1.5, -0.5, 0.5, 0.5) << "2f528f80";
    QTest::newRow("16 bits become 8, rounded") << QColor::fromRgba64(1, 2, 3, 0x28ff) << "2f528f29";
}

void TestKpColor::computedColoursKeepTheirAlpha()
{
    QFETCH(QColor, before);
    QFETCH(QString, expected);
    QColor const ref(0x44, 0x72, 0xc4, 1);
    KpColor tinted = colourOf(QColor(), before, 0, 7);
    tinted.setTintColor(ref, -50, 3);
    QCOMPARE(everything(tinted), "theme 3 code 150 ref 4472c4 kind 1 " + expected);
    KpColor referred = colourOf(QColor(), before, -50, 7);
    referred.setRefColor(ref, -1);
    QCOMPARE(everything(referred), "theme 7 code 150 ref 4472c4 kind 1 " + expected);
    KpColor modified = colourOf(ref, before, 0, 7);
    modified.modifyTint(-50);
    QCOMPARE(everything(modified), "theme 7 code 150 ref 4472c4 kind 1 " + expected);
    KpColor assigned = colourOf(QColor(), before, 0, 7);
    KpColor other = colourOf(ref, QColor(0x2f, 0x52, 0x8f, 77), -50, 3);
    assigned.assignNoAlpha(other);
    QCOMPARE(everything(assigned), "theme 3 code 150 ref 4472c4 kind 1 " + expected);
}

void TestKpColor::aColourMayReferToItself()
{
    KpColor colour = colourOf(QColor(1, 2, 3), QColor(0x44, 0x72, 0xc4, 40), -50, 6);
    colour.setRefColor(colour, -1);
    QCOMPARE(everything(colour), QString("theme 6 code 150 ref 4472c4 kind 1 2f528f28"));
    colour.setTintColor(colour, 0, 5);
    QCOMPARE(everything(colour), QString("theme 5 code 0 ref 2f528f kind 1 2f528f28"));
    colour.setColor(colour);
    QCOMPARE(everything(colour), QString("theme 0 code 0 ref 2f528f kind 1 2f528f28"));
    KpColor const& same = colour;
    colour = same;
    QCOMPARE(everything(colour), QString("theme 0 code 0 ref 2f528f kind 1 2f528f28"));
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

void TestKpColor::concreteColoursAreComparedAsQtDoes()
{
    // A full turn is no other hue.
    KpColor none = colourOf(QColor(), QColor(QColor::Hsl, 65535, 0, 30000, 30000), 0, 0);
    KpColor full = colourOf(QColor(), QColor(QColor::Hsl, 65535, 36000, 30000, 30000), 0, 0);
    QVERIFY(none == full);
    QVERIFY(!(none != full));
    KpColor half = colourOf(QColor(), QColor(QColor::Hsl, 65535, 18000, 30000, 30000), 0, 0);
    QVERIFY(none != half);
    // 16 bits count.
    KpColor fine = colourOf(QColor(), QColor::fromRgba64(0x0101, 0, 0, 65535), 0, 0);
    KpColor finer = colourOf(QColor(), QColor::fromRgba64(0x0102, 0, 0, 65535), 0, 0);
    QVERIFY(fine != finer);
    QVERIFY(fine.isSameInTheme(finer));
}

void TestKpColor::comparisonWithAQColorIsThatOfTheLeft_data()
{
    QTest::addColumn<KpColor>("colour");
    QTest::addColumn<bool>("whole");
    QTest::addColumn<bool>("concrete");
    QColor const other(10, 20, 30);
    QTest::newRow("the plain colour") << KpColor(other) << true << true;
    QTest::newRow("with a theme") << colourOf(other, other, 0, 4) << false << true;
    QTest::newRow("with a tint") << colourOf(other, other, 50, 0) << false << true;
    QTest::newRow("of another reference")
        << colourOf(QColor(1, 2, 3), other, 0, 0) << false << true;
    QTest::newRow("another colour") << KpColor(QColor(10, 20, 31)) << false << false;
    QTest::newRow("another alpha") << KpColor(QColor(10, 20, 30, 40)) << false << false;
    QTest::newRow("another kind") << KpColor(other.toHsl()) << false << false;
}

void TestKpColor::comparisonWithAQColorIsThatOfTheLeft()
{
    QFETCH(KpColor, colour);
    QFETCH(bool, whole);
    QFETCH(bool, concrete);
    QColor const other(10, 20, 30);
    QCOMPARE(colour == other, whole);
    QCOMPARE(colour != other, !whole);
    QCOMPARE(other == colour, concrete);
    QCOMPARE(other != colour, !concrete);
}

void TestKpColor::streamHoldsFourItems_data()
{
    QTest::addColumn<int>("version");
    QTest::addColumn<int>("order");
    QTest::addColumn<QColor>("concrete");
    QTest::addColumn<QByteArray>("hex");
    QTest::addColumn<QString>("readBack");
    int const big = QDataStream::BigEndian;
    int const little = QDataStream::LittleEndian;
    QColor const rgb(10, 20, 30, 40);
    // Theme 6, code 150, QColor (kind, alpha, red, green, blue, padding), reference.
    auto const row = [](char const* name, int version, int order, QColor const& concrete,
                         char const* hex, char const* readBack) {
        QTest::newRow(name) << version << order << concrete << QByteArray(hex).replace(' ', "")
                            << QString(readBack);
    };
    row("big endian", QDataStream::Qt_5_15, big, rgb,
        "0006 0096 01 2828 0a0a 1414 1e1e 0000 00010203", "kind 1 0a141e28");
    row("little endian", QDataStream::Qt_5_15, little, rgb,
        "0600 9600 01 2828 0a0a 1414 1e1e 0000 03020100", "kind 1 0a141e28");
    row("the oldest version with kinds, big endian", QDataStream::Qt_4_0, big, rgb,
        "0006 0096 01 2828 0a0a 1414 1e1e 0000 00010203", "kind 1 0a141e28");
    row("the oldest version with kinds, little endian", QDataStream::Qt_4_0, little, rgb,
        "0600 9600 01 2828 0a0a 1414 1e1e 0000 03020100", "kind 1 0a141e28");
    row("a version without kinds loses alpha", QDataStream::Qt_3_3, big, rgb,
        "0006 0096 ff0a141e 00010203", "kind 1 0a141eff");
    row("a version without kinds, little endian", QDataStream::Qt_3_3, little, rgb,
        "0600 9600 1e140aff 03020100", "kind 1 0a141eff");
    row("invalid", QDataStream::Qt_5_15, big, QColor(),
        "0006 0096 00 ffff 0000 0000 0000 0000 00010203", "kind 0 000000ff");
    row("HSL", QDataStream::Qt_5_15, big, QColor::fromHsl(10, 20, 30, 40),
        "0006 0096 04 2828 03e8 1414 1e1e 0000 00010203", "kind 4 201c1c28");
    row("HSV", QDataStream::Qt_5_15, little, QColor::fromHsv(10, 20, 30, 40),
        "0600 9600 02 2828 e803 1414 1e1e 0000 03020100", "kind 2 1e1c1c28");
    row("CMYK", QDataStream::Qt_5_15, big, QColor::fromCmyk(10, 20, 30, 40, 50),
        "0006 0096 03 3232 0a0a 1414 1e1e 2828 00010203", "kind 3 cfc6be32");
    row("extended", QDataStream::Qt_5_15, big, QColor::fromRgbF(1.5, 0.25, 0.5, 1.0),
        "0006 0096 05 3c00 3e00 3400 3800 0000 00010203", "kind 5 ff4080ff");
}

void TestKpColor::streamHoldsFourItems()
{
    QFETCH(int, version);
    QFETCH(int, order);
    QFETCH(QColor, concrete);
    QFETCH(QByteArray, hex);
    QFETCH(QString, readBack);
    KpColor const colour = colourOf(QColor(1, 2, 3), concrete, -50, 6);
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setVersion(version);
    out.setByteOrder(QDataStream::ByteOrder(order));
    QCOMPARE(&colour.write(out), &out);
    QCOMPARE(bytes.toHex(), hex);
    QDataStream in(QByteArray::fromHex(hex));
    in.setVersion(version);
    in.setByteOrder(QDataStream::ByteOrder(order));
    KpColor read = colourOf(QColor(9, 9, 9), QColor(9, 9, 9, 9), 9, 9);
    QCOMPARE(&read.read(in), &in);
    QCOMPARE(in.status(), QDataStream::Ok);
    QVERIFY(in.atEnd());
    QCOMPARE(everything(read), "theme 6 code 150 ref 010203 " + readBack);
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
            QVERIFY(identical(read, colour));
        }
    }
}

void TestKpColor::shortStreamsAreRead_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<QString>("expected");
    char const* const expected[] = {
        "theme 0 code 0 ref 000000 kind 0 00000000",
        "theme 0 code 0 ref 000000 kind 0 00000000",
        "theme 6 code 0 ref 000000 kind 0 00000000",
        "theme 6 code 0 ref 000000 kind 0 00000000",
        "theme 6 code 150 ref 000000 kind 0 00000000",
        "theme 6 code 150 ref 000000 kind 1 00000000",
        "theme 6 code 150 ref 000000 kind 1 00000000",
        "theme 6 code 150 ref 000000 kind 1 00000028",
        "theme 6 code 150 ref 000000 kind 1 00000028",
        "theme 6 code 150 ref 000000 kind 1 0a000028",
        "theme 6 code 150 ref 000000 kind 1 0a000028",
        "theme 6 code 150 ref 000000 kind 1 0a140028",
        "theme 6 code 150 ref 000000 kind 1 0a140028",
        "theme 6 code 150 ref 000000 kind 1 0a141e28",
        "theme 6 code 150 ref 000000 kind 1 0a141e28",
        "theme 6 code 150 ref 000000 kind 1 0a141e28",
        "theme 6 code 150 ref 000000 kind 1 0a141e28",
        "theme 6 code 150 ref 000000 kind 1 0a141e28",
        "theme 6 code 150 ref 000000 kind 1 0a141e28",
    };
    for (int size = 0; size < int(std::size(expected)); ++size)
        QTest::addRow("%d bytes", size) << size << expected[size];
}

void TestKpColor::shortStreamsAreRead()
{
    QFETCH(int, size);
    QFETCH(QString, expected);
    QByteArray const bytes = QByteArray::fromHex("000600960128280a0a14141e1e000000010203");
    QCOMPARE(bytes.size(), 19);
    OutlineTesting::ExactlySized const part(bytes.left(size));
    QDataStream in(part.bytes());
    // What stood there before does not shine through.
    KpColor read = colourOf(QColor(9, 9, 9), QColor(9, 9, 9, 9), 9, 9);
    read.read(in);
    QCOMPARE(in.status(), QDataStream::ReadPastEnd);
    QCOMPARE(everything(read), expected);
    // A stream that has failed gives nothing more.
    KpColor next = colourOf(QColor(9, 9, 9), QColor(9, 9, 9, 9), 9, 9);
    next.read(in);
    QCOMPARE(everything(next), QString("theme 0 code 0 ref 000000 kind 0 00000000"));
}

void TestKpColor::streamsOfAnyBytesAreRead()
{
    QRandomGenerator random = Testing::seededRandom(1644);
    int kinds[6] = {};
    for (int i = 0; i < 20000; ++i) {
        QByteArray bytes(19, '\0');
        for (char& byte : bytes)
            byte = char(random.generate());
        bytes[4] = char(random.bounded(-1, 7));
        QDataStream in(bytes);
        KpColor read;
        read.read(in);
        QVERIFY(read.spec() >= QColor::Invalid && read.spec() <= QColor::ExtendedRgb);
        ++kinds[read.spec()];
        // Every operation takes what came in, and the result is a colour.
        KpColor computed = read;
        computed.modifyTint(read.tint());
        QCOMPARE(computed.spec(), QColor::Rgb);
        KpColor assigned;
        assigned.assignNoAlpha(read);
        QCOMPARE(assigned.spec(), QColor::Rgb);
        KpColor transformed = read;
        ColorUtil::tint(transformed, 0.5);
        ColorUtil::hueOff(transformed, 0.25);
        ColorUtil::redOff(transformed, 0.25);
        QCOMPARE(transformed.spec(), QColor::Rgb);
        QVector<int> record;
        read.toUndoValue(record);
        int index = 0;
        KpColor undone;
        undone.fromUndoValue(record, index);
        QCOMPARE(undone.rgba(), read.rgba());
        KpColor parsed;
        parseStream(parsed, streamXml(read));
        QCOMPARE(parsed.rgba(), read.rgba());
    }
    for (int const count : kinds)
        QVERIFY(count > 300);
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

void TestKpColor::extendedColoursWithoutAFractionAsAlphaAreInvalid_data()
{
    QTest::addColumn<QByteArray>("half");
    QTest::addColumn<bool>("isFraction");
    QTest::newRow("none") << QByteArray("0000") << true;
    QTest::newRow("a half") << QByteArray("3800") << true;
    QTest::newRow("all") << QByteArray("3c00") << true;
    QTest::newRow("just beyond all") << QByteArray("3c01") << false;
    QTest::newRow("just below none") << QByteArray("8001") << false;
    QTest::newRow("minus a quarter") << QByteArray("b400") << false;
    QTest::newRow("greatest") << QByteArray("7bff") << false;
    QTest::newRow("least") << QByteArray("fbff") << false;
    QTest::newRow("infinite") << QByteArray("7c00") << false;
    QTest::newRow("minus infinite") << QByteArray("fc00") << false;
    QTest::newRow("not a number") << QByteArray("7e00") << false;
}

void TestKpColor::extendedColoursWithoutAFractionAsAlphaAreInvalid()
{
    QFETCH(QByteArray, half);
    QFETCH(bool, isFraction);
    QDataStream in(QByteArray::fromHex("00020032"
                                       "05"
        + half
        + "3c00"
          "3800"
          "0000"
          "0000"
          "00010203"));
    KpColor read;
    read.read(in);
    QCOMPARE(read.spec(), isFraction ? QColor::ExtendedRgb : QColor::Invalid);
    KpColor computed = read;
    computed.modifyTint(0);
    QCOMPARE(computed.rgb(), qRgb(1, 2, 3));
    ColorUtil::red(read, 0.5);
    QCOMPARE(read.red(), 127);
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

void TestKpColor::undoRecordOfOtherKindsHoldsTheirChannels()
{
    QVector<int> values;
    colourOf(QColor(), QColor::fromHsl(10, 20, 30, 40), 0, 0).toUndoValue(values);
    colourOf(QColor(), QColor::fromRgbF(1.5, 0.25, 0.5, 1.0), 0, 0).toUndoValue(values);
    KpColor().toUndoValue(values);
    QCOMPARE(values,
        (QVector<int> {0, 0, 0, 0x201c1c28, 0, 0, 0, int(0xff4080ffU), 0, 0, 0, 0x000000ff}));
    // Read back, all of them are red, green and blue, whatever stood there before.
    for (QColor const& before :
        {QColor(), QColor(9, 9, 9, 9), QColor::fromHsl(1, 2, 3, 4), QColor::fromHsv(1, 2, 3, 4),
            QColor::fromCmyk(1, 2, 3, 4, 5), QColor::fromRgbF(1.5, -0.5, 0.25, 0.5)}) {
        KpColor read = colourOf(QColor(9, 9, 9), before, 9, 9);
        int index = 4;
        read.fromUndoValue(values, index);
        QCOMPARE(everything(read), QString("theme 0 code 0 ref 000000 kind 1 ff4080ff"));
        QVERIFY(identical(read, QColor(255, 64, 128)));
        QCOMPARE(index, 8);
    }
}

void TestKpColor::undoRecordGoesThereAndBack()
{
    QRandomGenerator random = Testing::seededRandom(1848);
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

void TestKpColor::undoRecordReplacesAnyAlpha()
{
    // An extended colour of a stream may hold an alpha that no 8 bits hold, which must be gone
    // before a channel makes the colour one of red, green and blue.
    for (char const* const alpha : {"4000", "b400", "7c00", "fc00", "7e00"}) {
        QDataStream in(QByteArray::fromHex(QByteArray("05") + alpha + "3c00380000000000"));
        QColor extended;
        in >> extended;
        QCOMPARE(extended.spec(), QColor::ExtendedRgb);
        KpColor colour = colourOf(QColor(), extended, 0, 0);
        QVector<int> values {1, 2, 3, 0x0a141e28};
        int index = 0;
        colour.fromUndoValue(values, index);
        QCOMPARE(everything(colour), QString("theme 1 code 2 ref 000003 kind 1 0a141e28"));
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
    auto const themeColour = [&ref](
                                 QColor const& concrete) { return colourOf(ref, concrete, 0, 2); };
    QTest::newRow("nearly opaque theme colour") << themeColour(
        QColor(9, 9, 9, 254)) << QByteArray("<Fill ThemeColor=\"2\" V=\"#fe090909\"/>");
    // What counts is the alpha of 8 bits, to which 16 are rounded.
    QTest::newRow("almost opaque in 16 bits")
        << themeColour(QColor::fromRgba64(0x0909, 0x0909, 0x0909, 0xfffe))
        << QByteArray("<Fill ThemeColor=\"2\"/>");
    QTest::newRow("least of 16 bits that counts as opaque")
        << themeColour(QColor::fromRgba64(0x0909, 0x0909, 0x0909, 0xff7f))
        << QByteArray("<Fill ThemeColor=\"2\"/>");
    QTest::newRow("greatest of 16 bits that does not")
        << themeColour(QColor::fromRgba64(0x0909, 0x0909, 0x0909, 0xff7e))
        << QByteArray("<Fill ThemeColor=\"2\" V=\"#fe090909\"/>");
    QTest::newRow("extended, alpha rounded to opaque") << themeColour(
        QColor::fromRgbF(1.5, 0.0, 0.0, 0.9985)) << QByteArray("<Fill ThemeColor=\"2\"/>");
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

void TestKpColor::bothWritersFollowTheRules()
{
    QRandomGenerator random = Testing::seededRandom(1582);
    for (int i = 0; i < 4000; ++i) {
        KpColor::s_genPreTheme = random.bounded(2) == 1;
        int const theme = random.bounded(2) == 1 ? random.bounded(-32768, 32768) : 0;
        int const code = random.bounded(3) == 0 ? 0 : random.bounded(201);
        // Channels of one digit are frequent.
        int const mask = random.bounded(2) == 1 ? 0x0f0f0f : 0xffffff;
        int const reference = int(random.generate()) & mask;
        quint32 const rgba = random.generate() | (random.bounded(2) == 1 ? 0xffU : 0U);
        KpColor colour = ofRecord({theme, code, reference, int(rgba)});

        QString text = "<Fill";
        if (theme != 0)
            text += " ThemeColor=\"" + QString::number(theme) + "\"";
        if (code >= 1 && code <= 100)
            text += " Tint=\"" + QString::number(code) + "\"";
        if (code > 100)
            text += " Shade=\"" + QString::number(code - 100) + "\"";
        bool const isLeftToTheTheme = KpColor::s_genPreTheme && theme != 0;
        if (!isLeftToTheTheme || (rgba & 0xffU) != 0xffU)
            text += QString::asprintf(" V=\"#%02x%06x\"", rgba & 0xffU, rgba >> 8);
        if (!isLeftToTheTheme && code != 0) {
            text += QString::asprintf(" Ref=\"#%x%x%x\"", uint(reference) >> 16,
                uint(reference) >> 8 & 0xffU, uint(reference) & 0xffU);
        }
        text += "/>";
        QByteArray const expected = text.toUtf8();
        QCOMPARE(streamXml(colour), expected);
        QDomDocument document = domDocument("<Page/>");
        QDomElement page = document.documentElement();
        colour.saveTo(page, "Fill");
        QDomDocument const expectedDocument = domDocument(expected);
        QCOMPARE(meaning(page.firstChildElement()), meaning(expectedDocument.documentElement()));
    }
}

void TestKpColor::writingChangesNothing()
{
    KpColor colour = colourOf(QColor(1, 2, 3), QColor::fromHsl(10, 20, 30, 40), -50, 6);
    KpColor const before = colour;
    streamXml(colour);
    QByteArray xml;
    XmlStreamWriter writer(&xml);
    colour.saveTo(writer, "Fill");
    QDomDocument document = domDocument("<Page/>");
    QDomElement page = document.documentElement();
    colour.saveTo(page, "Fill");
    QVector<int> record;
    colour.toUndoValue(record);
    QVERIFY(colour == before);
    QVERIFY(identical(colour, before));
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

void TestKpColor::readsColourTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("rgba");
    auto const row = [](char const* name, QString const& text, char const* rgba) {
        QTest::newRow(name) << text << QString(rgba);
    };
    row("alpha, red, green, blue", "#80ff0102", "kind 1 ff010280");
    row("red, green, blue", "#ff0102", "kind 1 ff0102ff");
    row("upper case", "#ABCDEF", "kind 1 abcdefff");
    row("three digits", "#123", "kind 1 112233ff");
    row("nine digits", "#123456789", "kind 1 124578ff");
    row("twelve digits", "#123456789012", "kind 1 125690ff");
    row("four digits", "#1234", "kind 0 000000ff");
    row("five digits", "#12345", "kind 0 000000ff");
    row("seven digits", "#1234567", "kind 0 000000ff");
    row("thirteen digits", "#1234567890123", "kind 0 000000ff");
    row("no digits", "#", "kind 0 000000ff");
    row("not all digits", "#12g", "kind 0 000000ff");
    row("a sign among the digits", "#+12", "kind 0 000000ff");
    row("a blank behind", "#ff0000 ", "kind 0 000000ff");
    row("another notation", "0x112233", "kind 0 000000ff");
    row("a blank", " ", "kind 0 000000ff");
    row("a name", "steelblue", "kind 1 4682b4ff");
    row("a name in upper case", "RED", "kind 1 ff0000ff");
    row("a name with blanks", " light steel blue ", "kind 1 b0c4deff");
    row("transparent", "transparent", "kind 1 00000000");
    row("an unknown name", "blurple", "kind 0 000000ff");
    row("digits of another script", QString::fromUtf8("#\u0661\u0662\u0663"), "kind 0 000000ff");
    row("a number", "99999999999999999999", "kind 0 000000ff");
    row("many digits", "#" + QString(100000, 'f'), "kind 0 000000ff");
    row("a name of 256 letters", QString(256, 'r'), "kind 0 000000ff");
}

void TestKpColor::readsColourTexts()
{
    QFETCH(QString, text);
    QFETCH(QString, rgba);
    QString const packed = rgba.mid(7, 6);
    QByteArray const v = "<Fill V='" + text.toUtf8() + "'/>";
    QByteArray const ref = "<Fill Tint='1' Ref='" + text.toUtf8() + "'/>";
    for (auto* const parse : {&parseDom, &parseStream}) {
        KpColor ofV = colourOf(QColor(1, 2, 3), QColor(10, 20, 30, 40), -50, 0);
        parse(ofV, v);
        QCOMPARE(everything(ofV), "theme 0 code 0 ref " + packed + " " + rgba);
        KpColor ofRef = colourOf(QColor(1, 2, 3), QColor(10, 20, 30, 40), -50, 0);
        parse(ofRef, ref);
        QCOMPARE(everything(ofRef), "theme 0 code 1 ref " + packed + " kind 1 0a141e28");
    }
}

void TestKpColor::readsNumberTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("theme");
    QTest::addColumn<int>("tintCode");
    QTest::addColumn<int>("shadeCode");
    auto const row = [](char const* name, QString const& text, int theme, int tint, int shade) {
        QTest::newRow(name) << text << theme << tint << shade;
    };
    row("zero", "0", 0, 0, 0);
    row("one", "1", 1, 1, 101);
    row("a hundred", "100", 100, 100, 200);
    row("a hundred and one", "101", 101, 100, 200);
    row("minus one", "-1", -1, 101, 1);
    row("minus a hundred and one", "-101", -101, 200, 100);
    row("greatest of 16 bits", "32767", 32767, 100, 200);
    row("one more", "32768", -32768, 100, 200);
    row("of 16 bits only zeros", "65536", 0, 100, 200);
    row("beyond 16 bits", "70000", 4464, 100, 200);
    row("far below 16 bits", "-70000", -4464, 200, 100);
    row("greatest int", "2147483647", -1, 100, 200);
    row("least int", "-2147483648", 0, 200, 100);
    row("beyond int", "2147483648", 0, 0, 0);
    row("below int", "-2147483649", 0, 0, 0);
    row("huge", QString(1000, '9'), 0, 0, 0);
    row("a sign", "+30", 30, 30, 130);
    row("blanks around", " 30 ", 30, 30, 130);
    row("leading zeros", "0030", 30, 30, 130);
    row("hexadecimal", "0x10", 0, 0, 0);
    row("a fraction", "30.0", 0, 0, 0);
    row("an exponent", "1e2", 0, 0, 0);
    row("a percentage", "30%", 0, 0, 0);
    row("digits of another script", QString::fromUtf8("\u0663\u0660"), 0, 0, 0);
    row("a word", "thirty", 0, 0, 0);
    row("a blank", " ", 0, 0, 0);
}

void TestKpColor::readsNumberTexts()
{
    QFETCH(QString, text);
    QFETCH(int, theme);
    QFETCH(int, tintCode);
    QFETCH(int, shadeCode);
    auto const xml = [&text](char const* attribute) {
        return QByteArray("<Fill Ref='#010203' ") + attribute + "='" + text.toUtf8() + "'/>";
    };
    auto const found = [](int themeIndex, int code) {
        return QString("theme %1 code %2 ref 010203 kind 1 0a141e28").arg(themeIndex).arg(code);
    };
    for (auto* const parse : {&parseDom, &parseStream}) {
        KpColor colour = colourOf(QColor(9, 9, 9), QColor(10, 20, 30, 40), -50, 0);
        parse(colour, xml("ThemeColor"));
        QCOMPARE(everything(colour), found(theme, 0));
        colour = colourOf(QColor(9, 9, 9), QColor(10, 20, 30, 40), -50, 0);
        parse(colour, xml("Tint"));
        QCOMPARE(everything(colour), found(0, tintCode));
        colour = colourOf(QColor(9, 9, 9), QColor(10, 20, 30, 40), -50, 0);
        parse(colour, xml("Shade"));
        QCOMPARE(everything(colour), found(0, shadeCode));
    }
}

namespace {

/** The text of each attribute that is there. */
using AttributeTexts = QMap<QString, QString>;

int asInt(QString const& text)
{
    return text.toInt(nullptr, 10);
}

int packed(QColor const& colour)
{
    return colour.red() * 65536 + colour.green() * 256 + colour.blue();
}

/** The undo record of a colour that has read an element, by the rules of the document. */
QVector<int> recordRead(AttributeTexts const& texts, bool isStream, int theme, QColor concrete)
{
    auto const isGiven = [&](char const* name) {
        return isStream ? texts.contains(name) : !texts.value(name).isEmpty();
    };
    if (isGiven("V")) {
        QColor fresh;
        fresh.setNamedColor(texts.value("V"));
        concrete = fresh;
    }
    if (isGiven("ThemeColor"))
        theme = asInt(texts.value("ThemeColor"));
    else if (!isStream)
        theme = 0;
    int tint = 0;
    if (isGiven("Tint"))
        tint = asInt(texts.value("Tint"));
    else if (isGiven("Shade"))
        tint = -asInt(texts.value("Shade"));
    tint = std::max(-100, std::min(100, tint));

    using namespace ColourTesting::Powers;
    auto* const undo = tint > 0 ? &untint : &unshade;
    double const t = std::abs(tint) * 0.01;
    auto const reference = [&](int level) { return tint == 0 ? level : undo(level, t); };
    int ref = reference(concrete.red()) * 65536 + reference(concrete.green()) * 256
        + reference(concrete.blue());
    if (isGiven("Ref")) {
        QColor fresh;
        fresh.setNamedColor(texts.value("Ref"));
        ref = packed(fresh);
    }
    quint32 const rgba = quint32(packed(concrete)) << 8 | quint32(concrete.alpha());
    return {theme, tint < 0 ? 100 - tint : tint, ref, int(rgba)};
}

} // namespace

void TestKpColor::readersFollowTheRulesOnAllSubsets_data()
{
    QTest::addColumn<bool>("isStream");
    QTest::addColumn<bool>("genPreTheme");
    QTest::newRow("DOM") << false << false;
    QTest::newRow("stream") << true << false;
    QTest::newRow("DOM, the writer's flag does not matter") << false << true;
    QTest::newRow("stream, the writer's flag does not matter") << true << true;
}

void TestKpColor::readersFollowTheRulesOnAllSubsets()
{
    QFETCH(bool, isStream);
    QFETCH(bool, genPreTheme);
    KpColor::s_genPreTheme = genPreTheme;
    struct Attribute
    {
        char const* name;
        int count;
        char const* texts[7]; ///< null where the attribute is absent
    };
    Attribute const attributes[] = {
        {"V", 4, {nullptr, "", "#80bc2f8f", "blurple"}},
        {"ThemeColor", 4, {nullptr, "", "4", "four"}},
        {"Tint", 7, {nullptr, "", "0", "50", "100", "-30", "x"}},
        {"Shade", 7, {nullptr, "", "0", "50", "100", "-30", "x"}},
        {"Ref", 4, {nullptr, "", "#ff8040", "#ff010"}},
    };
    for (int i = 0; i < 4 * 4 * 7 * 7 * 4; ++i) {
        AttributeTexts texts;
        QByteArray xml = "<Fill";
        int choice = i;
        for (Attribute const& attribute : attributes) {
            char const* const text = attribute.texts[choice % attribute.count];
            choice /= attribute.count;
            if (text == nullptr)
                continue;
            texts.insert(attribute.name, text);
            xml += QByteArray(" ") + attribute.name + "='" + text + "'";
        }
        xml += "/>";
        KpColor colour = colourOf(QColor(1, 2, 3), QColor(10, 20, 30, 40), -50, 7);
        (isStream ? parseStream : parseDom)(colour, xml);
        QVector<int> found;
        colour.toUndoValue(found);
        QVector<int> const expected = isStream && texts.isEmpty()
            ? QVector<int> {7, 150, 0x010203, 0x0a141e28}
            : recordRead(texts, isStream, 7, QColor(10, 20, 30, 40));
        QVERIFY2(found == expected, xml.constData());
    }
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

void TestKpColor::otherTokensChangeNothing()
{
    KpColor colour = colourOf(QColor(1, 2, 3), QColor(10, 20, 30, 40), -50, 7);
    QString const before = everything(colour);
    QXmlStreamReader reader(
        QByteArray("<?xml version='1.0'?><Fill V='#fff'>text<!-- V --></Fill>"));
    int others = 0;
    while (!reader.atEnd()) {
        bool const isStart = reader.readNext() == QXmlStreamReader::StartElement;
        KpColor read = colour;
        read.parse(reader);
        QCOMPARE(everything(read) == before, !isStart);
        others += isStart ? 0 : 1;
    }
    QCOMPARE(others, 5);
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
    QRandomGenerator random = Testing::seededRandom(1955);
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
