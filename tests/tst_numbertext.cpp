// SPDX-License-Identifier: MIT
#include "numbertext_p.h"
#include "testing.h"

namespace {

/**
 * How many reals are compared. KPGEOMETRY_NUMBER_TEXTS asks for more than a test run has time for;
 * QTEST_FUNCTION_TIMEOUT then has to grant the milliseconds.
 */
qint64 realCount()
{
    bool isNumber = false;
    qint64 const count = qEnvironmentVariable("KPGEOMETRY_NUMBER_TEXTS").toLongLong(&isNumber);
    return isNumber ? count : Testing::sanitized ? 500000 : 10000000;
}

double fromBits(quint64 bits)
{
    double number = 0.0;
    std::memcpy(&number, &bits, sizeof number);
    return number;
}

/** Seven digits of which the last is a 5, at some decimal exponent: a tie of six digits. */
double tie(QRandomGenerator& random, int exponent)
{
    int const digits = random.bounded(100000, 1000000) * 10 + 5;
    return QStringLiteral("%1e%2").arg(digits).arg(exponent).toDouble();
}

/** A tie that a double holds exactly: an odd number of parts of a power of two. */
double exactTie(QRandomGenerator& random)
{
    int const places = random.bounded(0, 10);
    double const parts = std::ldexp(1.0, places + 1);
    double const greatest = 999999.5 / std::pow(10.0, places) * parts;
    double const count = std::floor(random.generateDouble() * greatest / 2) * 2 + 1;
    return count / parts;
}

/** A real of the `kind`-th of ten kinds. */
double drawReal(QRandomGenerator& random, int kind)
{
    double const sign = random.bounded(2) == 0 ? 1.0 : -1.0;
    switch (kind) {
    case 0:
        return fromBits(random.generate64());
    case 1: // subnormal
        return sign * fromBits(random.generate64() >> 12);
    case 2: { // a short decimal
        double const power = std::pow(10.0, random.bounded(10));
        return sign * random.bounded(10000000) / power;
    }
    case 3:
        return sign * tie(random, random.bounded(-330, 303));
    case 4:
        return sign * tie(random, random.bounded(-13, 2));
    case 5:
        return sign * exactTie(random);
    case 6: // as a glyph has them
        return random.bounded(-2048, 4096) * 1000.0 / 2048.0;
    case 7: { // a power of ten, or all nines
        double const power = std::pow(10.0, random.bounded(-12, 12));
        return sign * (random.bounded(2) == 0 ? power : power - power * 1e-6 / 2);
    }
    default: // spread over what documents have
        return sign * std::pow(10.0, random.generateDouble() * 12 - 5);
    }
}

QString quoted(QString const& text)
{
    return QLatin1Char('"') + text.left(60) + QLatin1Char('"');
}

/** What differs between the texts of `real`, or nothing. */
QString writingDifference(double real)
{
    QString const text = NumberText::fromReal(real);
    QString const expected = QString::number(real, 'g', 6);
    if (text == expected)
        return QString();
    return Testing::exact(real) + " gives " + quoted(text) + ", not " + quoted(expected);
}

/** What differs between the numbers read from `text`, or nothing. */
QString readingDifference(QString const& text)
{
    QString const framed = QLatin1Char('7') + text + QLatin1Char('7');
    QStringRef const reference = framed.midRef(1, text.size());
    double const expected = text.toDouble();
    auto const expectedBase = qint16(quint16(text.toInt() & 0xFFFF));
    bool const isSame = Testing::isSame(NumberText::toReal(text), expected)
        && Testing::isSame(NumberText::toReal(reference), expected)
        && std::signbit(NumberText::toReal(text)) == std::signbit(expected)
        && NumberText::toBase(text) == expectedBase
        && NumberText::toBase(reference) == expectedBase;
    if (isSame)
        return QString();
    return quoted(text) + " gives " + Testing::exact(NumberText::toReal(text)) + " and "
        + QString::number(NumberText::toBase(text)) + ", not " + Testing::exact(expected) + " and "
        + QString::number(expectedBase);
}

/** Characters of numbers, drawn so that many of the texts are some. */
QString drawText(QRandomGenerator& random)
{
    auto const digits = [&random](int count) {
        QString text;
        for (int i = 0; i < count; ++i)
            text += QLatin1Char(char('0' + random.bounded(10)));
        return text;
    };
    auto const maybe = [&random](QString const& text) {
        return random.bounded(4) == 0 ? text : QString();
    };
    static char32_t const odd[] = {' ', '\t', '\n', '+', '-', '.', ',', 'e', 'E', '_', '\'', 'x',
        0xA0, 0x2212, 0x0661, 0x0967, 0xFF11, 0x66B, 0x1D7CE, 0};
    QString text = maybe(QStringLiteral(" "))
        + QStringList {QString(), QString(), QStringLiteral("-"), QStringLiteral("+")}.at(
            random.bounded(4));
    text += digits(random.bounded(10));
    if (random.bounded(3) != 0)
        text += QLatin1Char('.') + digits(random.bounded(12));
    if (random.bounded(4) == 0) {
        text += QLatin1Char(random.bounded(2) == 0 ? 'e' : 'E') + maybe(QStringLiteral("-"))
            + maybe(QStringLiteral("+")) + digits(random.bounded(1, 4));
    }
    text += maybe(QStringLiteral("\n"));
    if (random.bounded(4) == 0) {
        char32_t const character = odd[random.bounded(int(std::size(odd)))];
        text.insert(random.bounded(text.size() + 1), QString::fromUcs4(&character, 1));
    }
    return text;
}

} // namespace

class TestNumberText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writesReals_data();
    void writesReals();
    void writesRealsAsQtDoes();
    void writesTiesAtEveryExponentAsQtDoes();
    void writesEveryBaseAsQtDoes();
    void readsDecimals_data();
    void readsDecimals();
    void readsTextsAsQtDoes_data();
    void readsTextsAsQtDoes();
    void readsAnyTextAsQtDoes();
    void readsWhatWasWritten();
};

void TestNumberText::writesReals_data()
{
    QTest::addColumn<double>("real");
    QTest::addColumn<QString>("text");
    QTest::newRow("zero") << 0.0 << "0";
    QTest::newRow("negative zero") << -0.0 << "0";
    QTest::newRow("integer") << 120.0 << "120";
    QTest::newRow("six digits") << 0.333333 << "0.333333";
    QTest::newRow("a little above 100,000") << 100000.625 << "100001";
    QTest::newRow("a little above 10,000") << 10000.5 << "10000.5";
    QTest::newRow("a little above 1000") << 1000.25 << "1000.25";
    QTest::newRow("a little above 100") << 100.125 << "100.125";
    QTest::newRow("a little above 10") << 10.0625 << "10.0625";
    QTest::newRow("a little above 1") << 1.03125 << "1.03125";
    QTest::newRow("rounded") << 1.0 / 3.0 << "0.333333";
    QTest::newRow("rounded up") << -2.0 / 3.0 << "-0.666667";
    QTest::newRow("zeros at the end") << 12.5000004 << "12.5";
    QTest::newRow("zeros behind the point") << 0.00123456789 << "0.00123457";
    QTest::newRow("exact tie") << 123456.5 << "123457";
    QTest::newRow("exact tie above an even digit") << 0.5 + 4.0 / 65536 << "0.500061";
    QTest::newRow("nines") << 9.9999996 << "10";
    QTest::newRow("nines below one") << 0.99999951 << "1";
    QTest::newRow("last without an exponent") << 999999.0 << "999999";
    QTest::newRow("first with an exponent") << 999999.5 << "1e+06";
    QTest::newRow("large") << 1234567.0 << "1.23457e+06";
    QTest::newRow("smallest without an exponent") << 0.0001 << "0.0001";
    QTest::newRow("below that") << 0.00009999994 << "9.99999e-05";
    QTest::newRow("infinity") << -Testing::infinite << "-inf";
    QTest::newRow("NaN") << Testing::notANumber << "nan";
}

void TestNumberText::writesReals()
{
    QFETCH(double, real);
    QFETCH(QString, text);
    QCOMPARE(NumberText::fromReal(real), text);
    QCOMPARE(QString::number(real, 'g', 6), text);
}

void TestNumberText::writesRealsAsQtDoes()
{
    qint64 const count = realCount();
    qInfo("%lld reals", count);
    QRandomGenerator random = Testing::seededRandom(60221);
    qint64 inFixedNotation = 0;
    for (qint64 i = 0; i < count; ++i) {
        if (i > 0 && i % 100000000 == 0)
            qInfo("%lld are the same", i);
        double real = drawReal(random, int(i % 10));
        if (random.bounded(4) == 0)
            real = std::nextafter(real, random.bounded(2) == 0 ? 0.0 : Testing::infinite);
        inFixedNotation += std::fabs(real) >= 1e-4 && std::fabs(real) < 1e6 ? 1 : 0;
        QString const difference = writingDifference(real);
        QVERIFY2(difference.isEmpty(), qPrintable(difference));
    }
    QVERIFY(inFixedNotation > count / 3);
}

void TestNumberText::writesTiesAtEveryExponentAsQtDoes()
{
    QRandomGenerator random = Testing::seededRandom(14142);
    for (int exponent = -330; exponent <= 303; ++exponent) {
        for (int i = 0; i < 50; ++i) {
            double const middle = tie(random, exponent);
            for (double const real : {middle, std::nextafter(middle, 0.0),
                     std::nextafter(middle, Testing::infinite), -middle}) {
                QString const difference = writingDifference(real);
                QVERIFY2(difference.isEmpty(), qPrintable(difference));
            }
        }
    }
}

void TestNumberText::writesEveryBaseAsQtDoes()
{
    for (int base = -32768; base <= 32767; ++base) {
        QString const text = NumberText::fromBase(qint16(base));
        QCOMPARE(text, QString::number(base));
        QCOMPARE(int(NumberText::toBase(text)), base);
    }
}

void TestNumberText::readsDecimals_data()
{
    QTest::addColumn<double>("real");
    QTest::newRow("3") << 3.0;
    QTest::newRow("3.1") << 3.1;
    QTest::newRow("3.14") << 3.14;
    QTest::newRow("3.141") << 3.141;
    QTest::newRow("3.1415") << 3.1415;
    QTest::newRow("3.14159") << 3.14159;
    QTest::newRow("3.141592") << 3.141592;
    QTest::newRow("3.1415926") << 3.1415926;
    QTest::newRow("3.14159265") << 3.14159265;
    QTest::newRow("3.141592653") << 3.141592653;
    QTest::newRow("3.1415926535") << 3.1415926535;
    QTest::newRow("3.14159265358") << 3.14159265358;
    QTest::newRow("3.141592653589") << 3.141592653589;
    QTest::newRow("3.1415926535897") << 3.1415926535897;
    QTest::newRow(".31415926535897") << .31415926535897;
}

void TestNumberText::readsDecimals()
{
    QFETCH(double, real);
    COMPARE_BITS(NumberText::toReal(QString(QTest::currentDataTag())), real);
    COMPARE_BITS(NumberText::toReal("-" + QString(QTest::currentDataTag())), -real);
}

void TestNumberText::readsTextsAsQtDoes_data()
{
    QTest::addColumn<QString>("text");
    for (char const* const text :
        {"", " ", "0", "-0", "+0", "-0.0", ".", "-", "-.", "+", "5.", ".5", "-.5", "-5.", "..5",
            "5..", "1.2.3", "--1", "-+1", "1-", "1e5", "1e+06", "1.5E-7", "1e", "e5", "1e400",
            "-1e400", "1e-400", "4.9e-324", "2.2250738585072011e-308", "inf", "-inf", "+inf", "INF",
            "infinity", "nan", "NaN", "-nan", " 1.5", "1.5 ", "\t-2\n", "1 2", "1,000", "1,5",
            "1'000", "0x10", "0X1p3", "1_0", "$5", "%1", "10%", "1f", "1d", "0001.5000",
            "123456789012345", "1234567890123456", "0.12345678901234", "0.123456789012345",
            "9007199254740993", "999999999999999", "-99999999999999", "0.000000000000001",
            "00000000000000.1", "70000", "32768", "-32769", "2147483647", "2147483648",
            "-2147483648", "3.0", "+7", " 7", "7 ", "07", "1e1"}) {
        QTest::newRow(*text ? text : "empty") << QString::fromLatin1(text);
    }
    QTest::newRow("null") << QString();
    QTest::newRow("NUL") << QString(QChar(0));
    QTest::newRow("character before the digits") << QString("1/5");
    QTest::newRow("character behind the digits") << QString("1:5");
    QTest::newRow("character as far above the digits as the point is below")
        << "1" + QString(QChar(0x8E)) + "5";
    QTest::newRow("NUL at the end") << QString("1") + QChar(0);
    QTest::newRow("Arabic digit") << QString(QChar(0x0665));
    QTest::newRow("Devanagari digits") << QString(3, QChar(0x0967));
    QTest::newRow("full-width digit") << QString(QChar(0xFF15));
    QTest::newRow("minus sign") << QString(QChar(0x2212)) + "5";
    QTest::newRow("no-break space") << QString(QChar(0xA0)) + "5";
    QTest::newRow("digit beyond Latin-1 whose low byte is one") << QString(QChar(0x0131));
    QTest::newRow("10,000 digits") << QString(10000, '7');
    QTest::newRow("10,000 decimals") << "0." + QString(9998, '3');
    QTest::newRow("10,000 zeros and a digit") << QString(10000, '0') + "4";
    QTest::newRow("10,000 spaces and a digit") << QString(10000, ' ') + "4";
    QTest::newRow("10,000 letters") << QString(10000, 'x');
}

void TestNumberText::readsTextsAsQtDoes()
{
    QFETCH(QString, text);
    QString const difference = readingDifference(text);
    QVERIFY2(difference.isEmpty(), qPrintable(difference));
}

void TestNumberText::readsAnyTextAsQtDoes()
{
    int const count = Testing::sanitized ? 100000 : 1000000;
    QRandomGenerator random = Testing::seededRandom(27182);
    int numbers = 0;
    for (int i = 0; i < count; ++i) {
        QString const text = drawText(random);
        bool isNumber = false;
        text.toDouble(&isNumber);
        numbers += isNumber ? 1 : 0;
        QString const difference = readingDifference(text);
        QVERIFY2(difference.isEmpty(), qPrintable(difference));
    }
    QVERIFY(numbers > count / 3 && numbers < count);
}

void TestNumberText::readsWhatWasWritten()
{
    QRandomGenerator random = Testing::seededRandom(31415);
    for (int i = 0; i < 200000; ++i) {
        double const real = drawReal(random, i % 10);
        for (int const precision : {6, 9, 15, 17}) {
            QString const difference = readingDifference(QString::number(real, 'g', precision));
            QVERIFY2(difference.isEmpty(), qPrintable(difference));
        }
    }
}

QTEST_APPLESS_MAIN(TestNumberText)
#include "tst_numbertext.moc"
