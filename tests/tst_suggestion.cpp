// SPDX-License-Identifier: MIT
#include "suggestion.h"

#include <QtTest>

class TestSuggestion : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nameIsLikely_data();
    void nameIsLikely();
    void nearestNameIsTaken();
    void onlyNameThatBeginsSoIsTaken();
    void nameWithoutEndTakesNoTime();
    void suggestionStandsBehindFault();
};

void TestSuggestion::nameIsLikely_data()
{
    QTest::addColumn<QString>("given");
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isLikely");

    auto const row = [](char const* given, char const* name, bool isLikely) {
        QTest::addRow("%s for %s", given, name) << QString(given) << QString(name) << isLikely;
    };
    row("Size", "size", true);
    row("SIZE", "size", true);
    row("sze", "size", true); // missing
    row("ize", "size", true);
    row("siize", "size", true); // too many
    row("sizes", "size", true);
    row("sise", "size", true); // wrong
    row("szie", "size", true); // swapped
    row("isze", "size", true);
    row("siez", "size", true);

    row("sezi", "size", false); // two slips in four letters
    row("isez", "size", false);
    row("mn", "mm", false);
    row("cmm", "mm", true);
    row("MM", "mm", true);
    row("ft_in", "ft-in", true);
    row("tf_in", "ft-in", false);
    row("rnedre", "render", true); // two in six
    row("redner", "render", true);
    row("dernre", "render", false);
    row("onrmlaise", "normalize", false); // three in nine
    row("onrmlaize", "normalize", true);
    row("ca", "abc", false);
    row("", "a", false);
    row("", "size", false);
    row("draw", "render", false);
    row("nonsense", "normalize", false);
}

void TestSuggestion::nameIsLikely()
{
    QFETCH(QString, given);
    QFETCH(QString, name);
    QFETCH(bool, isLikely);

    QCOMPARE(likelyName(given, {name}), isLikely ? name : QString());
    // A slip can be undone by another one.
    QCOMPARE(likelyName(name, {given}), isLikely ? given : QString());
}

void TestSuggestion::nearestNameIsTaken()
{
    QCOMPARE(likelyName("conver", {"cover", "convert"}), QString("cover"));
    QCOMPARE(likelyName("convrt", {"covert", "convert"}), QString("convert"));
    QCOMPARE(likelyName("Convert", {"converts", "convert"}), QString("convert"));
    QCOMPARE(likelyName("kmm", {"mm", "km"}), QString("mm"));
    QCOMPARE(likelyName("size", {}), QString());
}

void TestSuggestion::onlyNameThatBeginsSoIsTaken()
{
    QStringList const names {"recent", "render", "resize", "whole-files"};
    QCOMPARE(likelyName("who", names), QString("whole-files"));
    QCOMPARE(likelyName("WHOLE", names), QString("whole-files"));
    QCOMPARE(likelyName("ren", names), QString("render"));
    QCOMPARE(likelyName("wh", names), QString());
    QCOMPARE(likelyName("keep", {"keep-corners", "keep-curves"}), QString());
    // A slip counts before a beginning.
    QCOMPARE(likelyName("tin", {"tinting", "sin"}), QString("sin"));
}

void TestSuggestion::nameWithoutEndTakesNoTime()
{
    QString const endless(10 * 1000 * 1000, 'x');
    QCOMPARE(likelyName(endless, {"size", "xxxx"}), QString());
}

void TestSuggestion::suggestionStandsBehindFault()
{
    QCOMPARE(withSuggestion("no unit 'cmm'", "mm"), QString("no unit 'cmm'; did you mean mm?"));
    QCOMPARE(withSuggestion("No unit.", "mm"), QString("No unit. Did you mean mm?"));
    QCOMPARE(withSuggestion("no unit", QString()), QString("no unit"));
    QCOMPARE(withSuggestion("no unit", "cmm", {"mm", "cm"}), QString("no unit; did you mean mm?"));
    QCOMPARE(withSuggestion("no unit", "furlong", {"mm"}), QString("no unit"));
}

QTEST_APPLESS_MAIN(TestSuggestion)

#include "tst_suggestion.moc"
