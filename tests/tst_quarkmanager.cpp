// SPDX-License-Identifier: MIT
#include "quarkmanager.h"
#include "testing.h"

#include <QHash>

namespace {

struct Quark
{
    int number;
    char const* name;
};

constexpr Quark table[] = {
    {0, "px"},
    {1, "mm"},
    {2, "cm"},
    {3, "m"},
    {4, "km"},
    {5, "in"},
    {6, "ft"},
    {7, "ft-in"},
    {8, "yd"},
    {9, "mi"},
    {10, "pt"},
    {11, "pc"},
    {12, "dd"},
    {13, "cc"},
    {52, "MoveTo"},
    {53, "LineTo"},
    {54, "CurveTo"},
    {55, "Ellipse"},
    {56, "X"},
    {57, "Y"},
    {58, "A"},
    {59, "B"},
    {60, "C"},
    {61, "D"},
};

QHash<int, QString> namesByNumber()
{
    QHash<int, QString> names;
    for (Quark const& quark : table)
        names.insert(quark.number, quark.name);
    return names;
}

} // namespace

class TestQuarkManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void knownNamesHaveFixedNumbers_data();
    void knownNamesHaveFixedNumbers();
    void numbersOutsideTheTableHaveNoName();
    void otherNamesHaveNoNumber_data();
    void otherNamesHaveNoNumber();
    void changedLetterCaseIsAnotherName();
    void tableNeverGrows();
};

void TestQuarkManager::knownNamesHaveFixedNumbers_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("name");
    for (Quark const& quark : table)
        QTest::newRow(quark.name) << quark.number << quark.name;
}

void TestQuarkManager::knownNamesHaveFixedNumbers()
{
    QFETCH(int, number);
    QFETCH(QString, name);
    QCOMPARE(QuarkManager::quarkFromString(name), number);
    QCOMPARE(QuarkManager::quarkToString(number), name);
}

void TestQuarkManager::numbersOutsideTheTableHaveNoName()
{
    QHash<int, QString> const names = namesByNumber();
    QCOMPARE(names.count(), 24);
    for (int number = -10; number <= 200; ++number)
        QCOMPARE(QuarkManager::quarkToString(number), names.value(number));
    QCOMPARE(QuarkManager::quarkToString(std::numeric_limits<int>::min()), QString());
    QCOMPARE(QuarkManager::quarkToString(std::numeric_limits<int>::max()), QString());
}

void TestQuarkManager::otherNamesHaveNoNumber_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("null") << QString();
    QTest::newRow("empty") << "";
    QTest::newRow("number") << "52";
    QTest::newRow("beginning of a name") << "Move";
    QTest::newRow("name and more") << "MoveTo2";
    QTest::newRow("name after white space") << " X";
    QTest::newRow("name before white space") << "X ";
    QTest::newRow("prefixed name") << "k:X";
    QTest::newRow("outline element") << "Geometry";
    QTest::newRow("next letter") << "E";
    QTest::newRow("embedded null character") << QString("X") + QChar::Null;
    QTest::newRow("letter that looks alike") << QString::fromUtf8("\xd0\xa5"); // Cyrillic X
    // Bytes that would be lost, or added to those before, where letters are packed into a number.
    QTest::newRow("letter whose lower byte is a name") << QString(QChar(0x0158));
    QTest::newRow("name of seven letters behind the number of its place")
        << QString(QChar(0x01)) + "Ellipse";
    QTest::newRow("names of seven letters, one behind the other")
        << QString("Ellipse") + QChar(0x01) + "Ellipse";
    QTest::newRow("full-width letter") << QString(QChar(0xFF38));
    QTest::newRow("long") << QString(1000000, 'X');
}

void TestQuarkManager::otherNamesHaveNoNumber()
{
    QFETCH(QString, name);
    QCOMPARE(QuarkManager::quarkFromString(name), -1);
}

void TestQuarkManager::changedLetterCaseIsAnotherName()
{
    for (Quark const& quark : table) {
        QString const name = quark.name;
        for (int i = 0; i < name.size(); ++i) {
            QString changed = name;
            changed[i] = name[i].isUpper() ? name[i].toLower() : name[i].toUpper();
            if (changed != name)
                QCOMPARE(QuarkManager::quarkFromString(changed), -1);
        }
    }
}

void TestQuarkManager::tableNeverGrows()
{
    QRandomGenerator random = Testing::seededRandom(20120);
    QHash<QString, int> numbers;
    for (Quark const& quark : table)
        numbers.insert(quark.name, quark.number);
    for (int round = 0; round < 100000; ++round) {
        QString name;
        for (int i = random.bounded(4); i >= 0; --i)
            name += QChar('A' + random.bounded(58));
        int const expected = numbers.value(name, -1);
        // Asked twice: a name that was asked for is not remembered.
        for (int i = 0; i < 2; ++i) {
            QVERIFY2(QuarkManager::quarkFromString(name) == expected, qPrintable(name));
        }
    }
    numbersOutsideTheTableHaveNoName();
}

QTEST_APPLESS_MAIN(TestQuarkManager)
#include "tst_quarkmanager.moc"
