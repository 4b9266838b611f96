// SPDX-License-Identifier: MIT
#include "model/lengthtext.h"

#include <QtTest>

#include <cmath>

class TestKpshapesLengthText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lengthsAreShownInTheirUnit_data();
    void lengthsAreShownInTheirUnit();
    void lengthsAreReadInAnyUnit_data();
    void lengthsAreReadInAnyUnit();
    void numbersMayBePercentages_data();
    void numbersMayBePercentages();
    void whatIsShownIsReadAgain_data();
    void whatIsShownIsReadAgain();
};

void TestKpshapesLengthText::lengthsAreShownInTheirUnit_data()
{
    QTest::addColumn<double>("pixels");
    QTest::addColumn<int>("unit");
    QTest::addColumn<QString>("text");

    QTest::newRow("pixels") << 12.5 << 0 << "12.5";
    QTest::newRow("millimetres") << 96.0 << 1 << "25.4";
    QTest::newRow("feet") << 30.0 * 96.0 << 6 << "2.5";
    QTest::newRow("feet and inches") << 30.0 * 96.0 << 7 << "2'6\"";
    QTest::newRow("less than nothing") << -30.0 * 96.0 << 7 << "-2'6\"";
    QTest::newRow("points") << 96.0 << 10 << "72";
}

void TestKpshapesLengthText::lengthsAreShownInTheirUnit()
{
    QFETCH(double, pixels);
    QFETCH(int, unit);
    QTEST(lengthText(pixels, static_cast<unsigned int>(unit)), "text");
}

void TestKpshapesLengthText::lengthsAreReadInAnyUnit_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("unit");
    QTest::addColumn<double>("pixels"); // NaN: none

    double const none = std::nan("");
    QTest::newRow("plain") << "25.4" << 1 << 96.0;
    QTest::newRow("comma") << "25,4" << 1 << 96.0;
    QTest::newRow("another unit") << "1 in" << 1 << 96.0;
    QTest::newRow("without a space, in capitals") << "72PT" << 1 << 96.0;
    QTest::newRow("feet and inches") << "2'6\"" << 7 << 2880.0;
    QTest::newRow("feet") << "2'" << 1 << 2304.0;
    QTest::newRow("inches") << "30 \"" << 1 << 2880.0;
    QTest::newRow("primes") << QString::fromUtf8("2\u20326\u2033") << 0 << 2880.0;
    QTest::newRow("negative feet") << "-2'6\"" << 0 << -2880.0;
    QTest::newRow("a number of feet") << "2.5" << 7 << 2880.0;
    QTest::newRow("exponent") << "1e2" << 0 << 100.0;
    QTest::newRow("nothing") << "" << 0 << none;
    QTest::newRow("a word") << "wide" << 0 << none;
    QTest::newRow("unknown unit") << "5 ells" << 0 << none;
    QTest::newRow("endless") << "1e999" << 0 << none;
    QTest::newRow("no number") << "nan" << 0 << none;
    QTest::newRow("two points") << "1.2.3" << 0 << none;
    QTest::newRow("signs alone") << "'\"" << 0 << none;
}

void TestKpshapesLengthText::lengthsAreReadInAnyUnit()
{
    QFETCH(QString, text);
    QFETCH(int, unit);
    QFETCH(double, pixels);
    auto const length = lengthFromText(text, static_cast<unsigned int>(unit));
    QCOMPARE(length.has_value(), !std::isnan(pixels));
    QCOMPARE(length.value_or(0.0), std::isnan(pixels) ? 0.0 : pixels);
}

void TestKpshapesLengthText::numbersMayBePercentages_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isNumber");
    QTest::addColumn<double>("number");

    QTest::newRow("plain") << "0.25" << true << 0.25;
    QTest::newRow("percentage") << "25 %" << true << 0.25;
    QTest::newRow("comma") << "-1,5" << true << -1.5;
    QTest::newRow("nothing") << "" << false << 0.0;
    QTest::newRow("a percent sign") << "%" << false << 0.0;
    QTest::newRow("endless") << "inf" << false << 0.0;
}

void TestKpshapesLengthText::numbersMayBePercentages()
{
    QFETCH(QString, text);
    QFETCH(bool, isNumber);
    auto const number = numberFromText(text);
    QCOMPARE(number.has_value(), isNumber);
    QTEST(number.value_or(0.0), "number");
}

void TestKpshapesLengthText::whatIsShownIsReadAgain_data()
{
    QTest::addColumn<int>("unit");

    for (int unit = 0; unit <= 13; ++unit)
        QTest::newRow(qPrintable(QString::number(unit))) << unit;
}

void TestKpshapesLengthText::whatIsShownIsReadAgain()
{
    QFETCH(int, unit);
    auto const code = static_cast<unsigned int>(unit);
    for (double const pixels : {0.0, 1.0, -37.5, 1234.5}) {
        QString const text = lengthText(pixels, code);
        auto const length = lengthFromText(text, code);
        QVERIFY2(length, qPrintable(text));
        // Seven digits are shown, of inches beside feet six.
        QVERIFY2(std::abs(*length - pixels) <= 1e-5 * std::abs(pixels), qPrintable(text));
    }
}

QTEST_MAIN(TestKpshapesLengthText)
#include "tst_kpshapes_lengthtext.moc"
