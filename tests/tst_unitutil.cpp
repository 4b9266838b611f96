#include "kpversion.h"
#include "outlinetesting.h"
#include "unitutil.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QPageSize>
#include <QTimer>

using namespace UnitUtil;

namespace {

double const notANumber = std::numeric_limits<double>::quiet_NaN();
double const infinite = std::numeric_limits<double>::infinity();
int const greatestInt = std::numeric_limits<int>::max();
int const leastInt = std::numeric_limits<int>::min();

QStringList logged;

void noteMessage(QtMsgType type, QMessageLogContext const&, QString const& message)
{
    if (type != QtInfoMsg)
        logged << message;
}

} // namespace

class TestUnitUtil : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // What is there before the application has told of its screen.
    void initTestCase();

    void init();
    void cleanup();

    void pixelsBecomeUnits_data();
    void pixelsBecomeUnits();
    void unitsBecomePixels_data();
    void unitsBecomePixels();
    void factorsAreUsedInTheirOrder();
    void otherCodesLeaveTheValue();
    void unitsHaveNames_data();
    void unitsHaveNames();
    void otherNamesLeaveTheValue_data();
    void otherNamesLeaveTheValue();
    void inchesFollowTheScreen();

    void feetAndInches_data();
    void feetAndInches();
    void feetBecomeFeetAndInches();

    void pagesByIndex_data();
    void pagesByIndex();
    void otherIndicesGiveA4_data();
    void otherIndicesGiveA4();
    void pagesInPixels();
    void pagesFollowTheScreenInInches();
    void thirtyNinePagesAreQtsOwn();
    void quarterMillimetres();

    void screenIsTakenOver_data();
    void screenIsTakenOver();
    void screenSetsTheExactFactors();
    void screenMayBeSetAgain();
    void oddScreensSaturate_data();
    void oddScreensSaturate();
    void scalesFollowTheScreen();
    void smallImagesFitNearThePlainScale_data();
    void smallImagesFitNearThePlainScale();
    void newDocumentsAreSomeScreensLarge_data();
    void newDocumentsAreSomeScreensLarge();

    void platformIsLinux();
    void installedFamilyStays();
    void missingFamilyIsReplaced_data();
    void missingFamilyIsReplaced();
    void fontSizesFromTheOtherConvention_data();
    void fontSizesFromTheOtherConvention();
    void fontSizesAreMultiplesOfAHalf();
    void fontSizesToTheOtherConvention_data();
    void fontSizesToTheOtherConvention();
    void waitingHandlesEvents();
    void waitingNoTimeHandlesNothing_data();
    void waitingNoTimeHandlesNothing();
    void fileDigestIsEmpty();
};

void TestUnitUtil::initTestCase()
{
    COMPARE_BITS(s_pixPerMM, 3.779527559055118);
    COMPARE_BITS(s_pixPerPt, 1.333333333333333);
    COMPARE_BITS(s_pixPerDidot, 1.417322834645669);
    COMPARE_BITS(s_pixPerMile, 6082560.0);
    COMPARE_BITS(s_logicalDpi, 96.0);
    COMPARE_BITS(s_pixelRatio, 1.0);
    COMPARE_BITS(s_dpiScale, 1.0);
    QCOMPARE(s_screenSize, QSize(0, 0));
    QCOMPARE(s_cacheWidth, 4800);
    QCOMPARE(s_cacheHeight, 3200);
    QCOMPARE(s_usedMemory, 0);
    QCOMPARE(s_inited, false);
    QCOMPARE(docDefaultSize(), QSize(0, 0));
}

void TestUnitUtil::init()
{
    logged.clear();
    qInstallMessageHandler(noteMessage);
    initScreen(96.0, 1.0, QSize(1920, 1080));
}

void TestUnitUtil::cleanup()
{
    qInstallMessageHandler(nullptr);
    KpVersion::s_fontFamilyList.clear();
    KpVersion::s_langID = 0;
    QCOMPARE(logged, QStringList());
    // The application's own: nothing here writes them.
    QCOMPARE(s_usedMemory, 0);
    QCOMPARE(s_inited, false);
}

void TestUnitUtil::pixelsBecomeUnits_data()
{
    QTest::addColumn<unsigned int>("unit");
    QTest::addColumn<double>("pixels");
    QTest::addColumn<double>("value");
    QTest::newRow("0 pixel") << 0U << 12.5 << 12.5;
    QTest::newRow("1 millimetre") << 1U << 96.0 << 25.4;
    QTest::newRow("2 centimetre") << 2U << 96.0 << 2.54;
    QTest::newRow("3 metre") << 3U << 96.0 << 0.0254;
    QTest::newRow("4 kilometre") << 4U << 9600.0 << 0.00254;
    QTest::newRow("5 inch") << 5U << 48.0 << 0.5;
    QTest::newRow("6 foot") << 6U << 1152.0 << 1.0;
    QTest::newRow("7 foot again") << 7U << 1152.0 << 1.0;
    QTest::newRow("8 yard") << 8U << 3456.0 << 1.0;
    QTest::newRow("9 mile") << 9U << 6082560.0 << 1.0;
    QTest::newRow("10 point") << 10U << 96.0 << 72.0;
    QTest::newRow("11 pica") << 11U << 96.0 << 6.0;
    QTest::newRow("12 Didot point, 0.375 mm") << 12U << 36.0 << 25.4;
    QTest::newRow("13 cicero") << 13U << 432.0 << 25.4;
}

void TestUnitUtil::pixelsBecomeUnits()
{
    QFETCH(unsigned int, unit);
    QFETCH(double, pixels);
    QFETCH(double, value);
    QVERIFY2(std::abs(pixelToUnit(pixels, unit) - value) <= 1e-15 * value,
        qPrintable(QString::number(pixelToUnit(pixels, unit), 'g', 17)));
    COMPARE_BITS(pixelToUnit(0.0, unit), 0.0);
    COMPARE_BITS(pixelToUnit(-pixels, unit), -pixelToUnit(pixels, unit));
    QVERIFY(std::isnan(pixelToUnit(notANumber, unit)));
    COMPARE_BITS(pixelToUnit(infinite, unit), infinite);
}

void TestUnitUtil::unitsBecomePixels_data()
{
    QTest::addColumn<unsigned int>("unit");
    QTest::addColumn<double>("value");
    QTest::addColumn<double>("pixels");
    QTest::newRow("0 pixel") << 0U << 12.5 << 12.5;
    QTest::newRow("1 millimetre") << 1U << 25.4 << 96.0;
    QTest::newRow("2 centimetre") << 2U << 2.54 << 96.0;
    QTest::newRow("3 metre") << 3U << 0.0254 << 96.0;
    QTest::newRow("4 kilometre") << 4U << 0.00254 << 9600.0;
    QTest::newRow("5 inch") << 5U << 0.5 << 48.0;
    QTest::newRow("6 foot") << 6U << 1.0 << 1152.0;
    QTest::newRow("7 foot again") << 7U << 1.0 << 1152.0;
    QTest::newRow("8 yard") << 8U << 1.0 << 3456.0;
    QTest::newRow("9 mile") << 9U << 1.0 << 6082560.0;
    QTest::newRow("10 point") << 10U << 72.0 << 96.0;
    QTest::newRow("11 pica") << 11U << 6.0 << 96.0;
    QTest::newRow("12 Didot point, 0.375 mm") << 12U << 25.4 << 36.0;
    QTest::newRow("13 cicero") << 13U << 25.4 << 432.0;
}

void TestUnitUtil::unitsBecomePixels()
{
    QFETCH(unsigned int, unit);
    QFETCH(double, value);
    QFETCH(double, pixels);
    QVERIFY2(std::abs(unitToPixel(value, unit) - pixels) <= 1e-15 * pixels,
        qPrintable(QString::number(unitToPixel(value, unit), 'g', 17)));
    COMPARE_BITS(unitToPixel(0.0, unit), 0.0);
    COMPARE_BITS(unitToPixel(-value, unit), -unitToPixel(value, unit));
}

void TestUnitUtil::factorsAreUsedInTheirOrder()
{
    // Factors whose products and quotients depend on the order in the last bit.
    double const old[] = {s_pixPerMM, s_pixPerPt, s_pixPerDidot, s_pixPerMile, s_logicalDpi};
    s_pixPerMM = 3.7;
    s_pixPerPt = 1.3;
    s_pixPerDidot = 1.1;
    s_pixPerMile = 6.1;
    s_logicalDpi = 97.3;
    QRandomGenerator random = OutlineTesting::seededRandom(1789);
    int different = 0;
    for (int i = 0; i < 20000; ++i) {
        double const v = OutlineTesting::awkwardReal(random);
        double const toUnit[] = {v, v / 3.7, v * 0.1 / 3.7, v * 0.001 / 3.7, v * 0.000001 / 3.7,
            v / 97.3, v / (12 * 97.3), v / (12 * 97.3), v / (36 * 97.3), v / 6.1, v / 1.3,
            v / (12 * 1.3), v / 1.1, v / (12 * 1.1)};
        double const toPixel[] = {v, v * 3.7, v * 3.7 * 10, v * 3.7 * 1000, v * 3.7 * 1000000,
            v * 97.3, v * 97.3 * 12, v * 97.3 * 12, v * 97.3 * 36, v * 6.1, v * 1.3, v * 1.3 * 12,
            v * 1.1, v * 1.1 * 12};
        for (unsigned int unit = 0; unit < 14; ++unit) {
            if (std::isnan(v)) {
                different += std::isnan(pixelToUnit(v, unit)) ? 0 : 1;
                different += std::isnan(unitToPixel(v, unit)) ? 0 : 1;
                continue;
            }
            different += OutlineTesting::sameBits(pixelToUnit(v, unit), toUnit[unit]) ? 0 : 1;
            different += OutlineTesting::sameBits(unitToPixel(v, unit), toPixel[unit]) ? 0 : 1;
        }
    }
    QCOMPARE(different, 0);
    s_pixPerMM = old[0];
    s_pixPerPt = old[1];
    s_pixPerDidot = old[2];
    s_pixPerMile = old[3];
    s_logicalDpi = old[4];
}

void TestUnitUtil::otherCodesLeaveTheValue()
{
    for (unsigned int unit = 14; unit <= 200; ++unit) {
        COMPARE_BITS(pixelToUnit(12.3, unit), 12.3);
        COMPARE_BITS(unitToPixel(12.3, unit), 12.3);
    }
    COMPARE_BITS(pixelToUnit(12.3, 4294967295U), 12.3);
    COMPARE_BITS(unitToPixel(12.3, 2147483648U), 12.3);
}

void TestUnitUtil::unitsHaveNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<unsigned int>("unit");
    char const* const names[] = {
        "px", "mm", "cm", "m", "km", "in", "ft", "ft-in", "yd", "mi", "pt", "pc", "dd", "cc"};
    unsigned int unit = 0;
    for (char const* const name : names)
        QTest::newRow(name) << name << unit++;
}

void TestUnitUtil::unitsHaveNames()
{
    QFETCH(QString, name);
    QFETCH(unsigned int, unit);
    QCOMPARE(unitStr(unit), name);
    for (QString const& spelling : {name, name.toUpper(), name.left(1).toUpper() + name.mid(1)}) {
        COMPARE_BITS(pixelToUnit(12.3, spelling), pixelToUnit(12.3, unit));
        COMPARE_BITS(unitToPixel(12.3, spelling), unitToPixel(12.3, unit));
    }
}

void TestUnitUtil::otherNamesLeaveTheValue_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("no name") << "";
    QTest::newRow("unknown") << "furlong";
    QTest::newRow("blanks around") << " mm ";
    QTest::newRow("a code") << "1";
    QTest::newRow("an outline's element") << "MoveTo";
    QTest::newRow("a coordinate's letter") << "X";
}

void TestUnitUtil::otherNamesLeaveTheValue()
{
    QFETCH(QString, name);
    COMPARE_BITS(pixelToUnit(12.3, name), 12.3);
    COMPARE_BITS(unitToPixel(12.3, name), 12.3);
}

void TestUnitUtil::inchesFollowTheScreen()
{
    initScreen(144.0, 1.5, QSize(1920, 1080));
    COMPARE_BITS(pixelToUnit(144.0, 5U), 1.0);
    COMPARE_BITS(pixelToUnit(1728.0, 6U), 1.0);
    COMPARE_BITS(pixelToUnit(1728.0, 7U), 1.0);
    COMPARE_BITS(pixelToUnit(5184.0, 8U), 1.0);
    COMPARE_BITS(unitToPixel(1.0, 5U), 144.0);
    // Metric units, mile, point and Didot point do not.
    COMPARE_BITS(pixelToUnit(6082560.0, 9U), 1.0);
    COMPARE_BITS(unitToPixel(1.0, 1U), 96.0 / 25.4);
    COMPARE_BITS(unitToPixel(1.0, 10U), 96.0 / 72.0);
    COMPARE_BITS(unitToPixel(1.0, 12U), 36.0 / 25.4);
}

void TestUnitUtil::feetAndInches_data()
{
    QTest::addColumn<double>("inches");
    QTest::addColumn<QString>("text");
    QTest::newRow("feet and inches") << 30.0 << "2'6\"";
    QTest::newRow("whole feet") << 24.0 << "2'";
    QTest::newRow("exactly a foot stays inches") << 12.0 << "0'12\"";
    QTest::newRow("a bit more than a foot") << 12.5 << "1'0.5\"";
    QTest::newRow("less than a foot") << 5.25 << "0'5.25\"";
    QTest::newRow("nothing") << 0.0 << "0'";
    QTest::newRow("minus nothing") << -0.0 << "0'";
    QTest::newRow("negative") << -30.0 << "-2'6\"";
    QTest::newRow("exactly minus a foot") << -12.0 << "-0'12\"";
    QTest::newRow("a little below nothing") << -0.0000001 << "-0'";
    QTest::newRow("a millionth of an inch") << 0.000001 << "0'";
    QTest::newRow("more than a millionth") << 0.0000011 << "0'1.1e-06\"";
    QTest::newRow("six digits") << 1.23456789 << "0'1.23457\"";
    QTest::newRow("rounded up to a foot") << 23.9999999 << "1'12\"";
    QTest::newRow("a mile") << 63360.0 << "5280'";
    QTest::newRow("feet beyond int") << 1e12 << "2147483647'9.7423e+11\"";
    QTest::newRow("infinite") << infinite << "2147483647'inf\"";
    QTest::newRow("minus infinity") << -infinite << "-2147483647'inf\"";
    QTest::newRow("not a number") << notANumber << "0'";
}

void TestUnitUtil::feetAndInches()
{
    QFETCH(double, inches);
    QFETCH(QString, text);
    QCOMPARE(incheValtoFeetIncheStr(inches), text);
}

void TestUnitUtil::feetBecomeFeetAndInches()
{
    QCOMPARE(feetValtoFeetIncheStr(2.5), QString("2'6\""));
    QCOMPARE(feetValtoFeetIncheStr(1.0), QString("0'12\""));
    QCOMPARE(feetValtoFeetIncheStr(-0.25), QString("-0'3\""));
}

void TestUnitUtil::pagesByIndex_data()
{
    struct Row
    {
        double width;
        double height;
        int unit;
    };
    static Row const rows[] = {{8.5, 11, 5}, {8.5, 13, 5}, {8.5, 14, 5}, {7.5, 10.5, 5},
        {5.5, 8.5, 5}, {4.125, 9.5, 5}, {3.875, 7.5, 5}, {11, 17, 5}, {8.5, 11, 5}, {17, 22, 5},
        {22, 34, 5}, {34, 44, 5}, {297, 420, 1}, {210, 297, 1}, {148, 210, 1}, {250, 354, 1},
        {182, 257, 1}, {110, 220, 1}, {162, 229, 1}, {215, 275, 1}, {162, 229, 1}, {176, 250, 1},
        {110, 230, 1}, {210, 297, 1}, {8.5, 12, 5}, {8, 13, 5}, {146, 215, 1}, {97, 151, 1},
        {100, 148, 1}, {148, 200, 1}, {22, 36, 5}, {24, 48, 5}, {24, 60, 5}, {24, 72, 5},
        {24, 84, 5}, {24, 96, 5}, {24, 108, 5}, {36, 42, 5}, {36, 60, 5}, {36, 72, 5}, {36, 84, 5},
        {36, 96, 5}, {36, 108, 5}, {8.5, 10, 5}, {228.6, 304.8, 1}, {304.8, 457.2, 1},
        {457.2, 609.6, 1}, {609.6, 914.4, 1}, {914.4, 1219.2, 1}, {762, 1066.8, 1}, {841, 1189, 1},
        {594, 841, 1}, {420, 594, 1}, {707, 1000, 1}, {728.1, 1030.1, 1}, {515, 728.1, 1},
        {364, 515, 1}, {257.1, 364, 1}, {182, 257.1, 1}, {1189, 1682, 1}, {1682, 2378, 1}};
    QTest::addColumn<int>("index");
    QTest::addColumn<QSizeF>("size");
    QTest::addColumn<int>("unit");
    int index = 0;
    for (Row const& row : rows) {
        QTest::addRow("%d", index) << index << QSizeF(row.width, row.height) << row.unit;
        ++index;
    }
}

void TestUnitUtil::pagesByIndex()
{
    QFETCH(int, index);
    QFETCH(QSizeF, size);
    QFETCH(int, unit);
    QSizeF pixels;
    QSizeF inUnit;
    QCOMPARE(preDefinedPage(index, pixels, inUnit), unit);
    COMPARE_BITS(inUnit.width(), size.width());
    COMPARE_BITS(inUnit.height(), size.height());
    double const factor = unit == 5 ? 96.0 : 96.0 / 25.4;
    COMPARE_BITS(pixels.width(), size.width() * factor);
    COMPARE_BITS(pixels.height(), size.height() * factor);
}

void TestUnitUtil::otherIndicesGiveA4_data()
{
    QTest::addColumn<int>("index");
    QTest::newRow("before the first") << -1;
    QTest::newRow("behind the last") << 61;
    QTest::newRow("greatest") << greatestInt;
    QTest::newRow("least") << leastInt;
}

void TestUnitUtil::otherIndicesGiveA4()
{
    QFETCH(int, index);
    QSizeF pixels;
    QSizeF inUnit;
    QCOMPARE(preDefinedPage(index, pixels, inUnit), 1);
    QCOMPARE(inUnit, QSizeF(210, 297));
    QSizeF pixelsOfA4;
    preDefinedPage(13, pixelsOfA4, inUnit);
    QCOMPARE(pixels, pixelsOfA4);
}

void TestUnitUtil::pagesInPixels()
{
    QSizeF pixels;
    QSizeF inUnit;
    preDefinedPage(13, pixels, inUnit);
    QVERIFY(std::abs(pixels.width() - 793.7007874015748) < 1e-12);
    QVERIFY(std::abs(pixels.height() - 1122.5196850393702) < 1e-12);
    preDefinedPage(0, pixels, inUnit);
    QCOMPARE(pixels, QSizeF(816, 1056));
}

void TestUnitUtil::pagesFollowTheScreenInInches()
{
    initScreen(192.0, 2.0, QSize(1920, 1080));
    QSizeF pixels;
    QSizeF inUnit;
    preDefinedPage(0, pixels, inUnit);
    QCOMPARE(pixels, QSizeF(1632, 2112));
    preDefinedPage(13, pixels, inUnit);
    QVERIFY(std::abs(pixels.width() - 793.7007874015748) < 1e-12);
}

void TestUnitUtil::thirtyNinePagesAreQtsOwn()
{
    int count = 0;
    for (int index = 0; index <= 60; ++index) {
        QSizeF pixels;
        QSizeF inUnit;
        QPageSize::Unit const unit =
            preDefinedPage(index, pixels, inUnit) == 5 ? QPageSize::Inch : QPageSize::Millimeter;
        bool const isKnown =
            QPageSize::id(inUnit, unit, QPageSize::ExactMatch) != QPageSize::Custom;
        count += isKnown ? 1 : 0;
        // They resemble a norm and differ from it.
        if (index == 15 || index == 19)
            QVERIFY(!isKnown);
    }
    QCOMPARE(count, 39);
}

void TestUnitUtil::quarterMillimetres()
{
    COMPARE_BITS(from7Val(4.0), 96.0 / 25.4);
    COMPARE_BITS(from7Val(0.0), 0.0);
    COMPARE_BITS(from7Val(1.1), 1.1 * (96.0 / 25.4) * 0.25);
}

void TestUnitUtil::screenIsTakenOver_data()
{
    QTest::addColumn<double>("dpi");
    QTest::addColumn<double>("ratio");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<double>("expectedRatio");
    QTest::addColumn<double>("expectedDpi");
    QTest::addColumn<double>("expectedScale");
    QTest::addColumn<QSize>("expectedScreen");
    QTest::addColumn<QSize>("expectedCache");
    auto const row = [](char const* name, double dpi, double ratio, QSize size,
                         double expectedRatio, double expectedDpi, double expectedScale,
                         QSize expectedScreen, QSize expectedCache) {
        QTest::newRow(name) << dpi << ratio << size << expectedRatio << expectedDpi << expectedScale
                            << expectedScreen << expectedCache;
    };
    row("plain", 96, 1, {1920, 1080}, 1, 96, 1, {1920, 1080}, {4100, 2500});
    row("twice as dense", 192, 2.005, {2880, 1800}, 2, 192, 2, {1440, 900}, {2980, 1950});
    row("half more", 144, 1.5, {1920, 1080}, 1.5, 144, 1.5, {1280, 720}, {2733, 1666});
    row("ratio a little above 1", 96, 1.009, {4000, 4000}, 1, 96, 1, {4000, 4000}, {4200, 4300});
    row("ratio a little below 1", 96, 0.991, {4000, 4000}, 1, 96, 1, {4000, 4000}, {4200, 4300});
    row("ratio too far above 1", 96, 1.0625, {4000, 4000}, 1.0625, 96, 1, {4000, 4000},
        {4188, 4282});
    row("DPI rounded down", 100.4, 1, {1000, 1000}, 1, 100, 100.0 / 96.0, {960, 960}, {4100, 2500});
    row("DPI rounded up at the half", 100.5, 1, {1010, 505}, 1, 101, 101.0 / 96.0, {960, 480},
        {4100, 2500});
    row("DPI nearly 96", 95.7, 1, {100, 100}, 1, 96, 1, {100, 100}, {4100, 2500});
    row("scale snapped to 1", 96.9, 1, {100, 100}, 1, 97, 97.0 / 96.0, {99, 99}, {4100, 2500});
    row("scale snapped to 2", 192.9, 1, {100, 100}, 1, 193, 193.0 / 96.0 - 0.0, {50, 50},
        {4100, 2500});
    row("no screen", 96, 1, {0, 0}, 1, 96, 1, {0, 0}, {4100, 2500});
    row("negative screen", 96, 1, {-5, -7}, 1, 96, 1, {-5, -7}, {4100, 2500});
    row("screen larger than the least cache", 96, 1, {5000, 3000}, 1, 96, 1, {5000, 3000},
        {5200, 3300});
}

void TestUnitUtil::screenIsTakenOver()
{
    QFETCH(double, dpi);
    QFETCH(double, ratio);
    QFETCH(QSize, size);
    QFETCH(double, expectedRatio);
    QFETCH(double, expectedDpi);
    QFETCH(double, expectedScale);
    QFETCH(QSize, expectedScreen);
    QFETCH(QSize, expectedCache);
    initScreen(dpi, ratio, size);
    COMPARE_BITS(s_pixelRatio, expectedRatio);
    COMPARE_BITS(s_logicalDpi, expectedDpi);
    COMPARE_BITS(s_dpiScale, expectedScale);
    QCOMPARE(s_screenSize, expectedScreen);
    QCOMPARE(QSize(s_cacheWidth, s_cacheHeight), expectedCache);
}

void TestUnitUtil::screenSetsTheExactFactors()
{
    s_pixPerMM = s_pixPerPt = s_pixPerDidot = s_pixPerMile = 1.0;
    initScreen(144.0, 1.5, QSize(10, 10));
    COMPARE_BITS(s_pixPerMM, 96.0 / 25.4);
    COMPARE_BITS(s_pixPerPt, 96.0 / 72.0);
    COMPARE_BITS(s_pixPerDidot, 36.0 / 25.4);
    COMPARE_BITS(s_pixPerMile, 6082560.0);
}

void TestUnitUtil::screenMayBeSetAgain()
{
    initScreen(192.0, 2.0, QSize(2880, 1800));
    initScreen(96.0, 1.0, QSize(1920, 1080));
    QCOMPARE(s_screenSize, QSize(1920, 1080));
    QCOMPARE(QSize(s_cacheWidth, s_cacheHeight), QSize(4100, 2500));
    COMPARE_BITS(s_dpiScale, 1.0);
}

void TestUnitUtil::oddScreensSaturate_data()
{
    QTest::addColumn<double>("dpi");
    QTest::addColumn<double>("ratio");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<double>("expectedDpi");
    QTest::addColumn<QSize>("expectedScreen");
    QTest::addColumn<QSize>("expectedCache");
    QSize const plain(100, 100);
    QSize const most(greatestInt, greatestInt);
    QTest::newRow("ratio 0") << 96.0 << 0.0 << plain << 96.0 << plain << most;
    QTest::newRow("negative ratio")
        << 96.0 << -1.0 << plain << 96.0 << plain << QSize(-4100, -2500);
    QTest::newRow("ratio that is no number")
        << 96.0 << notANumber << plain << 96.0 << plain << QSize(0, 0);
    QTest::newRow("infinite ratio") << 96.0 << infinite << plain << 96.0 << plain << QSize(0, 0);
    QTest::newRow("DPI 0") << 0.0 << 1.0 << plain << 0.0 << most << QSize(4100, 2500);
    QTest::newRow("DPI that is no number")
        << notANumber << 1.0 << plain << 0.0 << most << QSize(4100, 2500);
    QTest::newRow("infinite DPI") << infinite << 1.0 << plain << 2147483647.0 << QSize(0, 0)
                                  << QSize(4100, 2500);
    QTest::newRow("negative DPI") << -96.0 << 1.0 << plain << -96.0 << QSize(-100, -100)
                                  << QSize(4100, 2500);
    QTest::newRow("greatest screen")
        << 96.0 << 2.0 << most << 96.0 << most << QSize(1073741923, 1073741973);
    QTest::newRow("least screen") << 96.0 << 2.0 << QSize(leastInt, leastInt) << 96.0
                                  << QSize(leastInt, leastInt) << QSize(2050, 1250);
}

void TestUnitUtil::oddScreensSaturate()
{
    QFETCH(double, dpi);
    QFETCH(double, ratio);
    QFETCH(QSize, size);
    QFETCH(double, expectedDpi);
    QFETCH(QSize, expectedScreen);
    QFETCH(QSize, expectedCache);
    initScreen(dpi, ratio, size);
    COMPARE_BITS(s_logicalDpi, expectedDpi);
    QCOMPARE(s_screenSize, expectedScreen);
    QCOMPARE(QSize(s_cacheWidth, s_cacheHeight), expectedCache);
    docDefaultSize();
}

void TestUnitUtil::scalesFollowTheScreen()
{
    initScreen(144.0, 1.25, QSize(100, 100));
    COMPARE_BITS(dpiScale(), 1.5);
    COMPARE_BITS(dpiScale96(), 1.5);
    COMPARE_BITS(dpiAndPixel(), 1.875);
}

void TestUnitUtil::smallImagesFitNearThePlainScale_data()
{
    QTest::addColumn<double>("dpi");
    QTest::addColumn<double>("ratio");
    QTest::addColumn<bool>("small");
    QTest::addColumn<bool>("reallySmall");
    QTest::newRow("plain") << 96.0 << 1.0 << true << true;
    QTest::newRow("dense pixels") << 96.0 << 2.0 << true << false;
    QTest::newRow("pixels a little denser") << 96.0 << 1.09 << true << true;
    QTest::newRow("pixels denser by a tenth") << 96.0 << 1.1 << true << false;
    QTest::newRow("a little larger") << 100.4 << 1.0 << true << true;
    QTest::newRow("a tenth larger") << 106.0 << 1.0 << false << false;
    QTest::newRow("a little smaller") << 87.0 << 1.0 << true << true;
    QTest::newRow("a tenth smaller") << 86.0 << 1.0 << false << false;
    QTest::newRow("half more") << 144.0 << 1.5 << false << false;
}

void TestUnitUtil::smallImagesFitNearThePlainScale()
{
    QFETCH(double, dpi);
    QFETCH(double, ratio);
    QFETCH(bool, small);
    QFETCH(bool, reallySmall);
    initScreen(dpi, ratio, QSize(100, 100));
    QCOMPARE(isSmallImg(), small);
    QCOMPARE(isSmallImgReal(), reallySmall);
}

void TestUnitUtil::newDocumentsAreSomeScreensLarge_data()
{
    QTest::addColumn<QSize>("screen");
    QTest::addColumn<QSize>("document");
    QTest::newRow("plain") << QSize(1920, 1080) << QSize(2304, 1620);
    QTest::newRow("truncated") << QSize(1919, 1079) << QSize(2302, 1618);
    QTest::newRow("none") << QSize(0, 0) << QSize(0, 0);
    QTest::newRow("greatest") << QSize(greatestInt, greatestInt) << QSize(greatestInt, greatestInt);
}

void TestUnitUtil::newDocumentsAreSomeScreensLarge()
{
    QFETCH(QSize, screen);
    QFETCH(QSize, document);
    initScreen(96.0, 1.0, screen);
    QCOMPARE(docDefaultSize(), document);
}

void TestUnitUtil::platformIsLinux()
{
    QCOMPARE(platForm(), QString("linux"));
    QVERIFY(!isWin());
    QVERIFY(!isMac());
    QVERIFY(isLinux());
}

void TestUnitUtil::installedFamilyStays()
{
    KpVersion::s_fontFamilyList = QStringList {"Serif", "Some Sans"};
    QString family = "Some Sans";
    QVERIFY(!changeToSystemExistFamily(family));
    QCOMPARE(family, QString("Some Sans"));
}

void TestUnitUtil::missingFamilyIsReplaced_data()
{
    QTest::addColumn<QStringList>("installed");
    QTest::addColumn<QString>("family");
    QTest::addColumn<int>("language");
    QTest::addColumn<QString>("replacement");
    QString const chinese = QString::fromUtf8("\xe5\xae\x8b\xe4\xbd\x93");
    QTest::newRow("not in the list") << QStringList {"Serif"} << "Sans" << 0 << "Arial";
    QTest::newRow("no list") << QStringList {} << "Sans" << 1 << "Arial";
    QTest::newRow("other letter case") << QStringList {"Sans"} << "sans" << 3 << "Arial";
    QTest::newRow("part of a name") << QStringList {"Some Sans"} << "Sans" << 5 << "Arial";
    QTest::newRow("no name") << QStringList {"Sans"} << "" << 0 << "Arial";
    QTest::newRow("in Chinese") << QStringList {"Serif"} << "Sans" << 4 << chinese;
}

void TestUnitUtil::missingFamilyIsReplaced()
{
    QFETCH(QStringList, installed);
    QFETCH(QString, family);
    QFETCH(int, language);
    QFETCH(QString, replacement);
    KpVersion::s_fontFamilyList = installed;
    KpVersion::s_langID = language;
    QVERIFY(changeToSystemExistFamily(family));
    QCOMPARE(family, replacement);
    QCOMPARE(KpVersion::s_fontFamilyList, installed);
}

void TestUnitUtil::fontSizesFromTheOtherConvention_data()
{
    QTest::addColumn<double>("size");
    QTest::addColumn<double>("expected");
    QTest::newRow("fraction 0.75 goes up") << 13.0 << 10.0;
    QTest::newRow("fraction 0.5 stays") << 14.0 << 10.5;
    QTest::newRow("whole") << 12.0 << 9.0;
    QTest::newRow("fraction 0.25 goes down") << 11.0 << 8.0;
    QTest::newRow("fraction just below 0.26") << 11.0133 << 8.0;
    QTest::newRow("fraction above 0.26") << 11.0134 << 8.5;
    QTest::newRow("fraction just below 0.74") << 12.9866 << 9.5;
    QTest::newRow("nothing") << 0.0 << 0.0;
    QTest::newRow("negative") << -13.0 << -9.0;
    QTest::newRow("not a number") << notANumber << 1.0;
    QTest::newRow("beyond int") << 1e300 << 2147483648.0;
    QTest::newRow("below int") << -1e300 << -2147483648.0;
}

void TestUnitUtil::fontSizesFromTheOtherConvention()
{
    QFETCH(double, size);
    QFETCH(double, expected);
    COMPARE_BITS(fontSizeFromMac(size), expected);
}

void TestUnitUtil::fontSizesAreMultiplesOfAHalf()
{
    // Quarters of a point: three quarters of them have fractions of sixteenths.
    for (int quarters = 0; quarters <= 1200; ++quarters) {
        int const sixteenths = 3 * quarters; // of the result
        int const whole = sixteenths / 16;
        int const rest = sixteenths % 16;
        double const expected = rest <= 4 ? whole : rest <= 11 ? whole + 0.5 : whole + 1.0;
        COMPARE_BITS(fontSizeFromMac(quarters * 0.25), expected);
    }
}

void TestUnitUtil::fontSizesToTheOtherConvention_data()
{
    QTest::addColumn<double>("size");
    QTest::addColumn<double>("expected");
    QTest::newRow("nine") << 9.0 << 12.0;
    QTest::newRow("ten and a half") << 10.5 << 14.0;
    QTest::newRow("ten") << 10.0 << 13.0;
    QTest::newRow("eleven") << 11.0 << 15.0;
    // Four thirds would give a half here, which goes up; the factor is a bit less.
    QTest::newRow("a half by four thirds") << 1.125 << 1.0;
    QTest::newRow("negative") << -9.0 << -12.0;
    QTest::newRow("nothing") << 0.0 << 0.0;
    QTest::newRow("not a number") << notANumber << 0.0;
    QTest::newRow("beyond int") << 1e300 << 2147483647.0;
}

void TestUnitUtil::fontSizesToTheOtherConvention()
{
    QFETCH(double, size);
    QFETCH(double, expected);
    COMPARE_BITS(fontSizeToMac(size), expected);
}

void TestUnitUtil::waitingHandlesEvents()
{
    int handled = 0;
    QTimer::singleShot(0, this, [&handled] { ++handled; });
    QTimer::singleShot(20, this, [&handled] { ++handled; });
    QElapsedTimer timer;
    timer.start();
    timeDelay(100);
    QVERIFY(timer.elapsed() >= 100);
    QCOMPARE(handled, 2);
}

void TestUnitUtil::waitingNoTimeHandlesNothing_data()
{
    QTest::addColumn<int>("milliseconds");
    QTest::newRow("none") << 0;
    QTest::newRow("negative") << -1;
    QTest::newRow("least") << leastInt;
}

void TestUnitUtil::waitingNoTimeHandlesNothing()
{
    QFETCH(int, milliseconds);
    int handled = 0;
    QTimer::singleShot(0, this, [&handled] { ++handled; });
    timeDelay(milliseconds);
    QCOMPARE(handled, 0);
    QCoreApplication::processEvents();
    QCOMPARE(handled, 1);
}

void TestUnitUtil::fileDigestIsEmpty()
{
    QCOMPARE(FileDigest(QCoreApplication::applicationFilePath(), 1, 2), QString());
    QVERIFY(FileDigest(QString(), 0, 0).isEmpty());
}

QTEST_GUILESS_MAIN(TestUnitUtil)
#include "tst_unitutil.moc"
