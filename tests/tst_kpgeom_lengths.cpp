// SPDX-License-Identifier: MIT
#include "kpgeomtesting.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace KpgeomTesting;

/** The commands about lengths: units and pages. */
class TestKpgeomLengths : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lengthIsConverted_data();
    void lengthIsConverted();
    void withoutTargetAllUnitsAreTold_data();
    void withoutTargetAllUnitsAreTold();
    void jsonHoldsLengthsByUnit();
    void everyPairGoesThereAndBack();
    void wrongUsageOfUnitsIsTold_data();
    void wrongUsageOfUnitsIsTold();

    void pagesAreListed();
    void pagesAsJson();
    void pagesAreChosenByName_data();
    void pagesAreChosenByName();
    void chosenPagesAsJson();
    void unknownPagesAreTold_data();
    void unknownPagesAreTold();
};

void TestKpgeomLengths::lengthIsConverted_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("millimetres to inches")
        << QStringList {"210", "mm", "in"} << QByteArray("8.267716535 in");
    QTest::newRow("inches to millimetres")
        << QStringList {"1", "in", "mm"} << QByteArray("25.4 mm");
    QTest::newRow("the same unit") << QStringList {"0.1", "mm", "mm"} << QByteArray("0.1 mm");
    QTest::newRow("pixels to points") << QStringList {"96", "px", "pt"} << QByteArray("72 pt");
    QTest::newRow("miles to kilometres")
        << QStringList {"1", "mi", "km"} << QByteArray("1.609344 km");
    QTest::newRow("Didot points") << QStringList {"8", "dd", "mm"} << QByteArray("3 mm");
    QTest::newRow("ciceros") << QStringList {"1", "cc", "dd"} << QByteArray("12 dd");
    QTest::newRow("picas") << QStringList {"1", "in", "pc"} << QByteArray("6 pc");
    QTest::newRow("yards") << QStringList {"1", "yd", "ft"} << QByteArray("3 ft");
    QTest::newRow("feet and inches") << QStringList {"30", "in", "ft-in"} << QByteArray("2'6\"");
    QTest::newRow("decimal inches in the text")
        << QStringList {"210", "mm", "ft-in"} << QByteArray("0'8.26772\"");
    QTest::newRow("feet of the second code")
        << QStringList {"2.5", "ft-in", "in"} << QByteArray("30 in");
    QTest::newRow("any letter case") << QStringList {"1", "M", "Cm"} << QByteArray("100 cm");
    QTest::newRow("negative") << QStringList {"-25.4", "mm", "in"} << QByteArray("-1 in");
    QTest::newRow("negative behind the end of options")
        << QStringList {"--", "-25.4", "mm", "in"} << QByteArray("-1 in");
    QTest::newRow("negative feet and inches")
        << QStringList {"-30", "in", "ft-in"} << QByteArray("-2'6\"");
    QTest::newRow("exponent") << QStringList {"1e3", "mm", "m"} << QByteArray("1 m");
    QTest::newRow("length in one word") << QStringList {"5mm", "cm"} << QByteArray("0.5 cm");
    QTest::newRow("length in one word, with a blank")
        << QStringList {"2.5 IN", "mm"} << QByteArray("63.5 mm");
    QTest::newRow("negative length in one word")
        << QStringList {"-25.4mm", "in"} << QByteArray("-1 in");
    QTest::newRow("signs of feet and inches") << QStringList {"5'6\"", "in"} << QByteArray("66 in");
    QTest::newRow("sign of feet") << QStringList {"2'", "ft-in"} << QByteArray("2'");
    QTest::newRow("negative feet and inches in one word")
        << QStringList {"-5'6\"", "ft-in"} << QByteArray("-5'6\"");
    QTest::newRow("typographic signs")
        << QStringList {QString::fromUtf8("5\u20326\u2033"), "ft"} << QByteArray("5.5 ft");
    QTest::newRow("inches of a word follow the screen")
        << QStringList {"--dpi", "144", "1in", "px"} << QByteArray("144 px");
    QTest::newRow("inches follow the screen")
        << QStringList {"--dpi", "144", "1", "in", "px"} << QByteArray("144 px");
    QTest::newRow("millimetres do not")
        << QStringList {"--dpi", "144", "25.4", "mm", "px"} << QByteArray("96 px");
}

void TestKpgeomLengths::lengthIsConverted()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, text);
    Workplace const place;
    Result const result = place.run(QStringList {"units"} + arguments);
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.out, QByteArray(text + '\n'));
    QCOMPARE(result.err, QByteArray());
}

void TestKpgeomLengths::withoutTargetAllUnitsAreTold_data()
{
    QTest::addColumn<QStringList>("length");
    QTest::newRow("number and unit") << QStringList {"18", "in"};
    QTest::newRow("one word") << QStringList {"18in"};
    QTest::newRow("feet and inches") << QStringList {"1'6\""};
}

void TestKpgeomLengths::withoutTargetAllUnitsAreTold()
{
    QFETCH(QStringList, length);
    Workplace const place;
    Result const result = place.run(QStringList {"units"} + length);
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.out,
        QByteArray("1728 px\n"
                   "457.2 mm\n"
                   "45.72 cm\n"
                   "0.4572 m\n"
                   "0.0004572 km\n"
                   "18 in\n"
                   "1.5 ft\n"
                   "1'6\"\n"
                   "0.5 yd\n"
                   "0.0002840909091 mi\n"
                   "1296 pt\n"
                   "108 pc\n"
                   "1219.2 dd\n"
                   "101.6 cc\n"));
}

void TestKpgeomLengths::jsonHoldsLengthsByUnit()
{
    Workplace const place;
    Result const all = place.run({"units", "--json", "18", "in"});
    COMPARE_EXIT(all, 0);
    QJsonObject const lengths = QJsonDocument::fromJson(all.out).object();
    QCOMPARE(lengths.size(), 14);
    QCOMPARE(lengths.value("px").toDouble(), 1728.0);
    QCOMPARE(lengths.value("mm").toDouble(), 457.2);
    QCOMPARE(lengths.value("ft-in").toString(), QString("1'6\""));

    Result const one = place.run({"units", "--json", "18", "in", "yd"});
    COMPARE_EXIT(one, 0);
    QCOMPARE(QJsonDocument::fromJson(one.out).object(), (QJsonObject {{"yd", 0.5}}));
}

void TestKpgeomLengths::everyPairGoesThereAndBack()
{
    QStringList const units {
        "px", "mm", "cm", "m", "km", "in", "ft", "ft-in", "yd", "mi", "pt", "pc", "dd", "cc"};
    Workplace const place;
    for (QString const& unit : units) {
        Result const all = place.run({"units", "--json", "7", unit});
        COMPARE_EXIT(all, 0);
        QJsonObject const lengths = QJsonDocument::fromJson(all.out).object();
        QCOMPARE(lengths.size(), units.size());
        for (QString const& other : units) {
            if (other == "ft-in")
                continue;
            QString const there = QString::number(lengths.value(other).toDouble(), 'g', 17);
            Result const back =
                place.run({"units", "--json", there, other, unit == "ft-in" ? "ft" : unit});
            COMPARE_EXIT(back, 0);
            double const returned =
                QJsonDocument::fromJson(back.out).object().begin().value().toDouble();
            QVERIFY2(qAbs(returned - 7.0) < 1e-12, qPrintable(unit + " to " + other));
        }
    }
}

void TestKpgeomLengths::wrongUsageOfUnitsIsTold_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("what");
    QByteArray const operands = "a number, its unit and perhaps another unit are needed";
    QTest::newRow("nothing") << QStringList {} << operands;
    QTest::newRow("no unit") << QStringList {"5"} << operands;
    QTest::newRow("too much") << QStringList {"5", "mm", "in", "ft"} << operands;
    QTest::newRow("too much behind a length") << QStringList {"5mm", "in", "ft"} << operands;
    QTest::newRow("unknown target of a length")
        << QStringList {"5mm", "parsec"} << QByteArray("there is no unit 'parsec'");
    QTest::newRow("unknown unit in one word")
        << QStringList {"5ells", "mm"} << QByteArray("'5ells' is no number");
    QTest::newRow("no number") << QStringList {"five", "mm"} << QByteArray("'five' is no number");
    QTest::newRow("infinite") << QStringList {"inf", "mm"} << QByteArray("'inf' is no number");
    QTest::newRow("too large a number")
        << QStringList {"1e999", "mm"} << QByteArray("'1e999' is no number");
    QTest::newRow("unknown unit") << QStringList {"5", "furlong"}
                                  << QByteArray("there is no unit 'furlong'");
    QTest::newRow("unknown target")
        << QStringList {"5", "mm", "parsec"} << QByteArray("there is no unit 'parsec'");
    QTest::newRow("name of an outline's element")
        << QStringList {"5", "MoveTo"} << QByteArray("there is no unit 'MoveTo'");
    QTest::newRow("not a number") << QStringList {"nan", "mm"} << QByteArray("'nan' is no number");
    QTest::newRow("a result beyond a number") << QStringList {
        "1e308", "km", "px"} << QByteArray("1e+308 km is too large to be told in px");
    QTest::newRow("one of the results")
        << QStringList {"-1e308", "km"} << QByteArray("-1e+308 km is too large to be told in px");
    QTest::newRow("dots without an end") << QStringList {"--dpi", "inf", "5", "in"}
                                         << QByteArray("--dpi takes a number from 1 to 1000000");
    QTest::newRow("too many dots an inch") << QStringList {"--dpi", "1000001", "5", "in"}
                                           << QByteArray("--dpi takes a number from 1 to 1000000");
    QTest::newRow("no dots an inch") << QStringList {"--dpi", "0", "5", "in"}
                                     << QByteArray("--dpi takes a number from 1 to 1000000");
}

void TestKpgeomLengths::wrongUsageOfUnitsIsTold()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, what);
    Workplace const place;
    COMPARE_FAILURE(place.run(QStringList {"units"} + arguments), 2,
        "kpgeom units: " + what + " (see kpgeom units --help)");
}

void TestKpgeomLengths::pagesAreListed()
{
    Workplace const place;
    Result const result = place.run({"pages"});
    COMPARE_EXIT(result, 0);
    QByteArrayList const lines = result.out.split('\n');
    QCOMPARE(lines.size(), 1 + 61 + 1);
    QCOMPARE(lines.at(0).simplified(), QByteArray("index mm in px unit name"));
    auto const page = [&lines](int index) { return lines.at(1 + index).simplified(); };
    QCOMPARE(page(0), QByteArray("0 215.9 x 279.4 8.5 x 11 816 x 1056 in Letter / ANSI A"));
    QCOMPARE(page(13), QByteArray("13 210 x 297 8.26772 x 11.6929 793.701 x 1122.52 mm A4"));
    QCOMPARE(page(15), QByteArray("15 250 x 354 9.84252 x 13.937 944.882 x 1337.95 mm -"));
    QCOMPARE(page(23), QByteArray("23 210 x 297 8.26772 x 11.6929 793.701 x 1122.52 mm A4"));
    QCOMPARE(page(60), QByteArray("60 1682 x 2378 66.2205 x 93.622 6357.17 x 8987.72 mm -"));
}

void TestKpgeomLengths::pagesAsJson()
{
    Workplace const place;
    Result const result = place.run({"pages", "--json"});
    COMPARE_EXIT(result, 0);
    QJsonArray const pages = QJsonDocument::fromJson(result.out).array();
    QCOMPARE(pages.size(), 61);
    int named = 0;
    for (int i = 0; i < pages.size(); ++i) {
        QJsonObject const page = pages.at(i).toObject();
        QCOMPARE(page.value("index").toInt(-1), i);
        named += page.value("name").isString() ? 1 : 0;
    }
    QCOMPARE(named, 39);
    QJsonObject const tabloid = pages.at(7).toObject();
    QCOMPARE(tabloid.value("unit").toString(), QString("in"));
    QCOMPARE(tabloid.value("in").toObject(), (QJsonObject {{"width", 11}, {"height", 17}}));
    QCOMPARE(tabloid.value("px").toObject(), (QJsonObject {{"width", 1056}, {"height", 1632}}));
    QCOMPARE(tabloid.value("name").toString(), QString("Tabloid / ANSI B"));
}

void TestKpgeomLengths::pagesAreChosenByName_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QByteArrayList>("indices");
    QTest::newRow("name") << QStringList {"A5"} << QByteArrayList {"14"};
    QTest::newRow("name of two pages") << QStringList {"A4"} << QByteArrayList {"13", "23"};
    QTest::newRow("any letter case") << QStringList {"a5"} << QByteArrayList {"14"};
    QTest::newRow("one of two names") << QStringList {"tabloid"} << QByteArrayList {"7"};
    QTest::newRow("the other one") << QStringList {"ansi b"} << QByteArrayList {"7"};
    QTest::newRow("both") << QStringList {"Tabloid / ANSI B"} << QByteArrayList {"7"};
    QTest::newRow("several, in their order")
        << QStringList {"tabloid", "A3", "a5"} << QByteArrayList {"7", "12", "14"};
}

void TestKpgeomLengths::pagesAreChosenByName()
{
    QFETCH(QStringList, names);
    QFETCH(QByteArrayList, indices);
    Workplace const place;
    QByteArrayList const all = place.run({"pages"}).out.split('\n');
    Result const result = place.run(QStringList {"pages"} + names);
    COMPARE_EXIT(result, 0);
    QByteArrayList lines = result.out.split('\n');
    QCOMPARE(lines.takeLast(), QByteArray());
    QCOMPARE(lines.takeFirst().simplified(), all.first().simplified());
    QCOMPARE(lines.size(), indices.size());
    for (int i = 0; i < lines.size(); ++i)
        QCOMPARE(lines.at(i).simplified(), all.at(1 + indices.at(i).toInt()).simplified());
}

void TestKpgeomLengths::chosenPagesAsJson()
{
    Workplace const place;
    QJsonArray const all = QJsonDocument::fromJson(place.run({"pages", "--json"}).out).array();
    Result const result = place.run({"pages", "--json", "letter"});
    COMPARE_EXIT(result, 0);
    QCOMPARE(QJsonDocument::fromJson(result.out).array(), (QJsonArray {all.at(0), all.at(8)}));
}

void TestKpgeomLengths::unknownPagesAreTold_data()
{
    QTest::addColumn<QString>("name");
    for (char const* const name : {"13", "A", "-", "", "A 4 ", "Custom"})
        QTest::addRow("'%s'", name) << QString(name);
}

void TestKpgeomLengths::unknownPagesAreTold()
{
    QFETCH(QString, name);
    Workplace const place;
    COMPARE_FAILURE(place.run({"pages", "A4", name}), 2,
        "kpgeom pages: there is no page '" + name.toUtf8() + "' (see kpgeom pages --help)");
}

QTEST_GUILESS_MAIN(TestKpgeomLengths)

#include "tst_kpgeom_lengths.moc"
