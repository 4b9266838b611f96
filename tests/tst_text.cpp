// SPDX-License-Identifier: MIT
#include "common/text.h"
#include "testing.h"

class TestText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void elidesAtTheLimit_data();
    void elidesAtTheLimit();
    void replacesWhatWouldLeaveTheLine_data();
    void replacesWhatWouldLeaveTheLine();
    void countsInTheRightNumber_data();
    void countsInTheRightNumber();
    void writesNumbersInSixDigits_data();
    void writesNumbersInSixDigits();
    void writesSizes();
};

void TestText::elidesAtTheLimit_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("longest");
    QTest::addColumn<QString>("shown");
    QTest::newRow("empty") << "" << 3 << "";
    QTest::newRow("shorter") << "ab" << 3 << "ab";
    QTest::newRow("as long as may be") << "abc" << 3 << "abc";
    QTest::newRow("one more") << "abcd" << 3 << QStringLiteral("ab\u2026");
    QTest::newRow("much longer") << QString(1000, 'a') << 3 << QStringLiteral("aa\u2026");
    QTest::newRow("one character") << "a" << 1 << "a";
    QTest::newRow("room for the ellipsis alone") << "ab" << 1 << QStringLiteral("\u2026");
    QTest::newRow("a character of two units at the end")
        << QStringLiteral("a\U0001D538b") << 3 << QStringLiteral("a\u2026");
    QTest::newRow("a character of two units before the end")
        << QStringLiteral("\U0001D538bc") << 3 << QStringLiteral("\U0001D538\u2026");
}

void TestText::elidesAtTheLimit()
{
    QFETCH(QString, text);
    QFETCH(int, longest);
    QFETCH(QString, shown);
    QCOMPARE(elided(text, longest), shown);
    QVERIFY(elided(text, longest).size() <= longest);
}

void TestText::replacesWhatWouldLeaveTheLine_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("shown");
    auto const unchanged = [](char const* name, QString const& text) {
        QTest::newRow(name) << text << text;
    };
    auto const replaced = [](char const* name, ushort character) {
        QTest::newRow(name) << QStringLiteral("a%1b").arg(QChar(character))
                            << QStringLiteral("a\ufffdb");
    };
    unchanged("empty", "");
    unchanged("letters and spaces", QStringLiteral("a b \u00e4\u00a0\u4e2d"));
    unchanged("a character of two units", QStringLiteral("\U0001D538"));
    replaced("null", 0x0000);
    replaced("half a character", 0xd800);
    replaced("the other half", 0xdcff);
    replaced("tabulator", 0x0009);
    replaced("line feed", 0x000a);
    replaced("carriage return", 0x000d);
    replaced("escape", 0x001b);
    replaced("delete", 0x007f);
    replaced("control sequence introducer", 0x009b);
    replaced("line separator", 0x2028);
    replaced("paragraph separator", 0x2029);
}

void TestText::replacesWhatWouldLeaveTheLine()
{
    QFETCH(QString, text);
    QFETCH(QString, shown);
    QCOMPARE(printable(text), shown);
}

void TestText::countsInTheRightNumber_data()
{
    QTest::addColumn<qint64>("count");
    QTest::addColumn<QString>("text");
    QTest::newRow("none") << qint64(0) << "0 shapes";
    QTest::newRow("one") << qint64(1) << "1 shape";
    QTest::newRow("two") << qint64(2) << "2 shapes";
    QTest::newRow("ends in one") << qint64(101) << "101 shapes";
    QTest::newRow("beyond 32 bits") << qint64(4294967297) << "4294967297 shapes";
}

void TestText::countsInTheRightNumber()
{
    QFETCH(qint64, count);
    QFETCH(QString, text);
    QCOMPARE(countText(count, "shape"), text);
}

void TestText::writesNumbersInSixDigits_data()
{
    QTest::addColumn<double>("number");
    QTest::addColumn<QString>("text");
    QTest::newRow("whole") << 240.0 << "240";
    QTest::newRow("third") << 1.0 / 3.0 << "0.333333";
    QTest::newRow("six digits") << 123456.4 << "123456";
    QTest::newRow("large") << 12345678.0 << "1.23457e+07";
    QTest::newRow("not a number") << Testing::notANumber << "nan";
}

void TestText::writesNumbersInSixDigits()
{
    QFETCH(double, number);
    QFETCH(QString, text);
    QCOMPARE(numberText(number), text);
}

void TestText::writesSizes()
{
    QCOMPARE(sizeText(QSizeF(240.0, 160.5)), QStringLiteral("240 x 160.5"));
}

QTEST_GUILESS_MAIN(TestText)

#include "tst_text.moc"
