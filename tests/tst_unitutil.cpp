// SPDX-License-Identifier: MIT
#include "kpversion.h"
#include "testing.h"
#include "unitutil.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QPageSize>
#include <QTemporaryDir>
#include <QTextCodec>
#include <QThread>
#include <QTimer>

#include <cerrno>
#include <optional>

#include <sys/inotify.h>
#include <unistd.h>

using namespace UnitUtil;

using Testing::infinite;
using Testing::notANumber;

namespace {

int const greatestInt = std::numeric_limits<int>::max();
int const leastInt = std::numeric_limits<int>::min();

/** All variables of UnitUtil. */
struct Variables
{
    double pixPerMM = s_pixPerMM;
    double pixPerPt = s_pixPerPt;
    double pixPerDidot = s_pixPerDidot;
    double pixPerMile = s_pixPerMile;
    double logicalDpi = s_logicalDpi;
    double pixelRatio = s_pixelRatio;
    double dpiScale = s_dpiScale;
    QSize screenSize = s_screenSize;
    int cacheWidth = s_cacheWidth;
    int cacheHeight = s_cacheHeight;
    int usedMemory = s_usedMemory;
    bool inited = s_inited;

    void restore() const
    {
        s_pixPerMM = pixPerMM;
        s_pixPerPt = pixPerPt;
        s_pixPerDidot = pixPerDidot;
        s_pixPerMile = pixPerMile;
        s_logicalDpi = logicalDpi;
        s_pixelRatio = pixelRatio;
        s_dpiScale = dpiScale;
        s_screenSize = screenSize;
        s_cacheWidth = cacheWidth;
        s_cacheHeight = cacheHeight;
        s_usedMemory = usedMemory;
        s_inited = inited;
    }
};

Variables const initialVariables;

/** An event dispatcher that dispatches nothing and counts how often it is asked to. */
class CountingDispatcher : public QAbstractEventDispatcher
{
public:
    int rounds = 0;
    int roundsForSomeEventsOnly = 0;

    bool processEvents(QEventLoop::ProcessEventsFlags flags) override
    {
        ++rounds;
        roundsForSomeEventsOnly += flags == QEventLoop::AllEvents ? 0 : 1;
        return false;
    }
    bool hasPendingEvents() override { return false; }
    void registerSocketNotifier(QSocketNotifier*) override { }
    void unregisterSocketNotifier(QSocketNotifier*) override { }
    void registerTimer(int, int, Qt::TimerType, QObject*) override { }
    bool unregisterTimer(int) override { return false; }
    bool unregisterTimers(QObject*) override { return false; }
    QList<TimerInfo> registeredTimers(QObject*) const override { return {}; }
    int remainingTime(int) override { return -1; }
    void wakeUp() override { }
    void interrupt() override { }
    void flush() override { }
};

/** A thread that waits once, with the event dispatcher that it is given. */
class WaitingThread : public QThread
{
public:
    qint64 elapsed = -1;

    WaitingThread(CountingDispatcher* dispatcher, int milliseconds)
        : m_milliseconds(milliseconds)
    {
        setEventDispatcher(dispatcher);
    }

private:
    void run() override
    {
        QElapsedTimer timer;
        timer.start();
        timeDelay(m_milliseconds);
        elapsed = timer.elapsed();
    }

    int m_milliseconds;
};

/** Takes note of the events that are posted to it. */
class Receiver : public QObject
{
public:
    int received = 0;

    bool event(QEvent* event) override
    {
        received += event->type() == QEvent::User ? 1 : 0;
        return QObject::event(event);
    }
};

/** Sees what is done to the files of a directory. */
class FileWatch
{
public:
    explicit FileWatch(QString const& directory)
    {
        inotify_add_watch(m_descriptor, QFile::encodeName(directory).constData(), IN_ALL_EVENTS);
    }
    ~FileWatch() { close(m_descriptor); }
    Q_DISABLE_COPY(FileWatch)

    /** Whether something was done since the last call. */
    bool sawSomething()
    {
        alignas(inotify_event) char events[4096];
        ssize_t const size = read(m_descriptor, events, sizeof events);
        return size > 0 || errno != EAGAIN;
    }

private:
    int m_descriptor = inotify_init1(IN_NONBLOCK);
};

/** Sets the local codec while it lives. */
class LocalCodec
{
public:
    explicit LocalCodec(char const* name)
    {
        QTextCodec::setCodecForLocale(QTextCodec::codecForName(name));
    }
    ~LocalCodec() { QTextCodec::setCodecForLocale(m_usual); }
    Q_DISABLE_COPY(LocalCodec)

private:
    QTextCodec* m_usual = QTextCodec::codecForLocale();
};

/** How long a wait took that began before there was an application. */
qint64 waitedWithoutApplication = -1;

} // namespace

class TestUnitUtil : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void variablesBeforeTheScreenIsKnown();
    void conversionsBeforeTheScreenIsKnown_data();
    void conversionsBeforeTheScreenIsKnown();
    void conversionsOnAScreen_data();
    void conversionsOnAScreen();

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
    void replacedFamilyComesThroughTheLocalCodec();
    void fontSizesFromTheOtherConvention_data();
    void fontSizesFromTheOtherConvention();
    void fontSizesAreMultiplesOfAHalf();
    void fontSizesBecomeWholePoints();
    void fontSizesToTheOtherConvention_data();
    void fontSizesToTheOtherConvention();
    void waitingHandlesEvents();
    void waitingDeliversPostedEvents();
    void waitingNeedsNoApplication();
    void waitingEndsAfterManyRounds();
    void waitingNoTimeHandlesNothing_data();
    void waitingNoTimeHandlesNothing();
    void fileDigestIsEmpty();

private:
    std::optional<Testing::MessageWatch> m_watch;
};

void TestUnitUtil::init()
{
    m_watch.emplace();
    initScreen(96.0, 1.0, QSize(1920, 1080));
}

void TestUnitUtil::cleanup()
{
    m_watch->stop();
    // The application's own: nothing here writes them.
    QCOMPARE(s_usedMemory, 0);
    QCOMPARE(s_inited, false);
    initialVariables.restore();
    KpVersion::s_fontFamilyList.clear();
    KpVersion::s_langID = 0;
    VERIFY_NOTHING_LOGGED(*m_watch);
}

void TestUnitUtil::variablesBeforeTheScreenIsKnown()
{
    initialVariables.restore();
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
    COMPARE_BITS(dpiScale(), 1.0);
    COMPARE_BITS(dpiAndPixel(), 1.0);
    QVERIFY(isSmallImgReal());
    COMPARE_BITS(pixelToUnit(96.0, 5U), 1.0);
    COMPARE_BITS(from7Val(4.0), 3.779527559055118);
}

void TestUnitUtil::conversionsBeforeTheScreenIsKnown_data()
{
    QTest::addColumn<unsigned int>("unit");
    QTest::addColumn<double>("inUnit");
    QTest::addColumn<double>("inPixels");
    QTest::newRow("0 pixel") << 0U << 12.7 << 12.7;
    QTest::newRow("1 millimetre") << 1U << 3.360208333333333 << 48.0;
    QTest::newRow("2 centimetre") << 2U << 0.3360208333333333 << 480.0;
    QTest::newRow("3 metre") << 3U << 0.003360208333333333 << 48000.0;
    QTest::newRow("4 kilometre") << 4U << 3.360208333333333e-06 << 48000000.0;
    QTest::newRow("5 inch") << 5U << 0.13229166666666667 << 1219.1999999999998;
    QTest::newRow("6 foot") << 6U << 0.011024305555555555 << 14630.399999999998;
    QTest::newRow("7 foot again") << 7U << 0.011024305555555555 << 14630.399999999998;
    QTest::newRow("8 yard") << 8U << 0.003674768518518518 << 43891.2;
    QTest::newRow("9 mile") << 9U << 2.0879366582491583e-06 << 77248512.0;
    QTest::newRow("10 point") << 10U << 9.525000000000002 << 16.93333333333333;
    QTest::newRow("11 pica") << 11U << 0.7937500000000002 << 203.19999999999996;
    QTest::newRow("12 Didot point") << 12U << 8.960555555555556 << 17.999999999999996;
    QTest::newRow("13 cicero") << 13U << 0.746712962962963 << 215.99999999999994;
    QTest::newRow("14 no unit") << 14U << 12.7 << 12.7;
}

void TestUnitUtil::conversionsBeforeTheScreenIsKnown()
{
    QFETCH(unsigned int, unit);
    QFETCH(double, inUnit);
    QFETCH(double, inPixels);
    initialVariables.restore();
    COMPARE_BITS(pixelToUnit(12.7, unit), inUnit);
    COMPARE_BITS(unitToPixel(12.7, unit), inPixels);
}

void TestUnitUtil::conversionsOnAScreen_data()
{
    QTest::addColumn<double>("dpi");
    QTest::addColumn<unsigned int>("unit");
    QTest::addColumn<double>("inUnit");
    QTest::addColumn<double>("inPixels");
    QTest::newRow("0 pixel") << 144.0 << 0U << 12.7 << 12.7;
    QTest::newRow("1 millimetre") << 144.0 << 1U << 3.3602083333333326 << 48.0;
    QTest::newRow("2 centimetre") << 144.0 << 2U << 0.3360208333333333 << 480.0;
    QTest::newRow("3 metre") << 144.0 << 3U << 0.0033602083333333327 << 48000.0;
    QTest::newRow("4 kilometre") << 144.0 << 4U << 3.3602083333333325e-06 << 48000000.0;
    QTest::newRow("5 inch") << 144.0 << 5U << 0.08819444444444444 << 1828.8;
    QTest::newRow("6 foot") << 144.0 << 6U << 0.007349537037037036 << 21945.6;
    QTest::newRow("7 foot again") << 144.0 << 7U << 0.007349537037037036 << 21945.6;
    QTest::newRow("8 yard") << 144.0 << 8U << 0.0024498456790123455 << 65836.8;
    QTest::newRow("9 mile") << 144.0 << 9U << 2.0879366582491583e-06 << 77248512.0;
    QTest::newRow("10 point") << 144.0 << 10U << 9.525 << 16.93333333333333;
    QTest::newRow("11 pica") << 144.0 << 11U << 0.79375 << 203.19999999999996;
    QTest::newRow("12 Didot point") << 144.0 << 12U << 8.960555555555555 << 18.0;
    QTest::newRow("13 cicero") << 144.0 << 13U << 0.7467129629629629 << 216.0;
    QTest::newRow("14 no unit") << 144.0 << 14U << 12.7 << 12.7;
    QTest::newRow("1 millimetre at 96") << 96.0 << 1U << 3.3602083333333326 << 48.0;
    QTest::newRow("5 inch at 96") << 96.0 << 5U << 0.13229166666666667 << 1219.1999999999998;
    QTest::newRow("10 point at 96") << 96.0 << 10U << 9.525 << 16.93333333333333;
    QTest::newRow("5 inch at no DPI") << 0.0 << 5U << infinite << 0.0;
    QTest::newRow("1 millimetre at no DPI") << 0.0 << 1U << 3.3602083333333326 << 48.0;
}

void TestUnitUtil::conversionsOnAScreen()
{
    QFETCH(double, dpi);
    QFETCH(unsigned int, unit);
    QFETCH(double, inUnit);
    QFETCH(double, inPixels);
    initScreen(dpi, 1.0, QSize(1920, 1080));
    COMPARE_BITS(pixelToUnit(12.7, unit), inUnit);
    COMPARE_BITS(unitToPixel(12.7, unit), inPixels);
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
    s_pixPerMM = 3.7;
    s_pixPerPt = 1.3;
    s_pixPerDidot = 1.1;
    s_pixPerMile = 6.1;
    s_logicalDpi = 97.3;
    QRandomGenerator random = Testing::seededRandom(1789);
    int different = 0;
    for (int i = 0; i < 20000; ++i) {
        double const v = Testing::awkwardReal(random);
        double const toUnit[] = {v, v / 3.7, v * 0.1 / 3.7, v * 0.001 / 3.7, v * 0.000001 / 3.7,
            v / 97.3, v / (12 * 97.3), v / (12 * 97.3), v / (36 * 97.3), v / 6.1, v / 1.3,
            v / (12 * 1.3), v / 1.1, v / (12 * 1.1)};
        double const toPixel[] = {v, v * 3.7, v * 3.7 * 10, v * 3.7 * 1000, v * 3.7 * 1000000,
            v * 97.3, v * 97.3 * 12, v * 97.3 * 12, v * 97.3 * 36, v * 6.1, v * 1.3, v * 1.3 * 12,
            v * 1.1, v * 1.1 * 12};
        for (unsigned int unit = 0; unit < 14; ++unit) {
            different += Testing::isSame(pixelToUnit(v, unit), toUnit[unit]) ? 0 : 1;
            different += Testing::isSame(unitToPixel(v, unit), toPixel[unit]) ? 0 : 1;
        }
    }
    QCOMPARE(different, 0);
}

void TestUnitUtil::otherCodesLeaveTheValue()
{
    for (unsigned int unit = 14; unit <= 200; ++unit) {
        COMPARE_BITS(pixelToUnit(12.3, unit), 12.3);
        COMPARE_BITS(unitToPixel(12.3, unit), 12.3);
    }
    for (unsigned int const unit : {255U, 256U, 65537U, 2147483647U, 2147483648U, 4294967295U}) {
        COMPARE_BITS(pixelToUnit(12.3, unit), 12.3);
        COMPARE_BITS(unitToPixel(12.3, unit), 12.3);
        QCOMPARE(unitStr(unit), QString());
    }
    COMPARE_BITS(pixelToUnit(-0.0, 14U), -0.0);
    COMPARE_BITS(unitToPixel(infinite, 14U), infinite);
    QVERIFY(std::isnan(pixelToUnit(notANumber, 14U)));
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
    for (QString const& spelling : {name, name.toUpper(), name.left(1).toUpper() + name.mid(1),
             name.left(1) + name.mid(1).toUpper()}) {
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
    QTest::newRow("a unit's name twice") << "mmmm";
    QTest::newRow("a unit's plural") << "inches";
    QTest::newRow("not in ASCII") << QString::fromUtf8("\xe3\x8e\x9c");
    for (char const* const element :
        {"MoveTo", "LineTo", "CurveTo", "Ellipse", "X", "Y", "A", "B", "C", "D"})
        QTest::addRow("%s of an outline", element) << element;
    for (char const* const element : {"moveto", "ELLIPSE", "x", "d"})
        QTest::addRow("%s, nearly of an outline", element) << element;
}

void TestUnitUtil::otherNamesLeaveTheValue()
{
    QFETCH(QString, name);
    COMPARE_BITS(pixelToUnit(12.3, name), 12.3);
    COMPARE_BITS(unitToPixel(12.3, name), 12.3);
    COMPARE_BITS(pixelToUnit(-0.0, name), -0.0);
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
    QTest::newRow("negative, whole feet") << -24.0 << "-2'";
    QTest::newRow("negative, less than a foot") << -0.5 << "-0'0.5\"";
    QTest::newRow("one bit less than a foot") << 11.999999999999998 << "0'12\"";
    QTest::newRow("one bit more than a foot") << 12.000000000000002 << "1'";
    QTest::newRow("a remainder of less than a millionth") << 24.0000005 << "2'";
    QTest::newRow("a remainder of more than a millionth, at a tie")
        << 24.0009765625 << "2'0.000976563\"";
    QTest::newRow("a negative remainder of less than a millionth") << -24.0000005 << "-2'";
    QTest::newRow("one bit more than a millionth") << 1.0000000000000002e-06 << "0'1e-06\"";
    QTest::newRow("the sixth digit at a tie goes up") << 1.015625 << "0'1.01563\"";
    QTest::newRow("least positive number") << 5e-324 << "0'";
    QTest::newRow("a mile") << 63360.0 << "5280'";
    QTest::newRow("the most feet that an int holds") << 25769803764.0 << "2147483647'";
    QTest::newRow("a foot more") << 25769803776.0 << "2147483647'12\"";
    QTest::newRow("as many below zero") << -25769803776.0 << "-2147483647'12\"";
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
    QCOMPARE(feetValtoFeetIncheStr(0.0), QString("0'"));
    QCOMPARE(feetValtoFeetIncheStr(-2.5), QString("-2'6\""));
    QCOMPARE(feetValtoFeetIncheStr(5280.0), QString("5280'"));
    QCOMPARE(feetValtoFeetIncheStr(infinite), QString("2147483647'inf\""));
    QCOMPARE(feetValtoFeetIncheStr(1e308), QString("2147483647'inf\""));
    QCOMPARE(feetValtoFeetIncheStr(notANumber), QString("0'"));
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
    QVERIFY(inUnit.width() < inUnit.height());
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
    COMPARE_BITS(inUnit.width(), 210.0);
    COMPARE_BITS(inUnit.height(), 297.0);
    COMPARE_BITS(pixels.width(), 793.7007874015749);
    COMPARE_BITS(pixels.height(), 1122.5196850393702);
}

void TestUnitUtil::pagesInPixels()
{
    QSizeF pixels;
    QSizeF inUnit;
    preDefinedPage(13, pixels, inUnit);
    COMPARE_BITS(pixels.width(), 793.7007874015749);
    COMPARE_BITS(pixels.height(), 1122.5196850393702);
    preDefinedPage(0, pixels, inUnit);
    COMPARE_BITS(pixels.width(), 816.0);
    COMPARE_BITS(pixels.height(), 1056.0);
}

void TestUnitUtil::pagesFollowTheScreenInInches()
{
    initScreen(192.0, 2.0, QSize(1920, 1080));
    QSizeF pixels;
    QSizeF inUnit;
    preDefinedPage(0, pixels, inUnit);
    COMPARE_BITS(pixels.width(), 1632.0);
    COMPARE_BITS(pixels.height(), 2112.0);
    preDefinedPage(13, pixels, inUnit);
    COMPARE_BITS(pixels.width(), 793.7007874015749);
    COMPARE_BITS(pixels.height(), 1122.5196850393702);
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
    row("one more DPI is too far from 1 to snap", 96.9, 1, {100, 100}, 1, 97, 1.0104166666666667,
        {99, 99}, {4100, 2500});
    row("one less DPI is too far from 1 to snap", 95.0, 1, {100, 100}, 1, 95, 0.9895833333333334,
        {101, 101}, {4100, 2500});
    row("scale 2", 191.5, 1, {101, 99}, 1, 192, 2, {51, 50}, {4100, 2500});
    row("one more DPI is too far from 2 to snap", 192.9, 1, {100, 100}, 1, 193, 2.0104166666666665,
        {50, 50}, {4100, 2500});
    row("ratio 0.01 above 1", 96, 1.01, {100, 100}, 1.01, 96, 1, {100, 100}, {4059, 2475});
    row("ratio a bit less than 0.01 above 1", 96, 1.0099999999999998, {100, 100}, 1, 96, 1,
        {100, 100}, {4100, 2500});
    row("ratio 0.01 below 1", 96, 0.99, {100, 100}, 0.99, 96, 1, {100, 100}, {4141, 2525});
    // In doubles 2.01 - 2 is just below 0.01.
    row("ratio 0.01 above 2", 96, 2.01, {100, 100}, 2, 96, 1, {100, 100}, {2050, 1250});
    row("ratio 0.01 below 2", 96, 1.99, {100, 100}, 1.99, 96, 1, {100, 100}, {2060, 1256});
    row("ratio 3 does not snap", 96, 3.001, {100, 100}, 3.001, 96, 1, {100, 100}, {1366, 833});
    row("physical size is truncated", 96, 1.5, {2667, 1467}, 1.5, 96, 1, {2667, 1467},
        {2800, 1666});
    row("cache just at its least", 96, 1, {3900, 2200}, 1, 96, 1, {3900, 2200}, {4100, 2500});
    row("cache just above its least", 96, 1, {3901, 2201}, 1, 96, 1, {3901, 2201}, {4101, 2501});
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
    QTest::addColumn<QSize>("expectedDocument");
    QSize const plain(100, 100);
    QSize const plainDocument(120, 150);
    QSize const most(greatestInt, greatestInt);
    QSize const least(leastInt, leastInt);
    QSize const none(0, 0);
    auto const row = [](char const* name, double dpi, double ratio, QSize size, double expectedDpi,
                         QSize expectedScreen, QSize expectedCache, QSize expectedDocument) {
        QTest::newRow(name) << dpi << ratio << size << expectedDpi << expectedScreen
                            << expectedCache << expectedDocument;
    };
    row("ratio 0", 96.0, 0.0, plain, 96.0, plain, most, plainDocument);
    row("ratio minus 0", 96.0, -0.0, plain, 96.0, plain, least, plainDocument);
    row("negative ratio", 96.0, -1.0, plain, 96.0, plain, {-4100, -2500}, plainDocument);
    row("ratio no number", 96.0, notANumber, plain, 96.0, plain, none, plainDocument);
    row("infinite ratio", 96.0, infinite, plain, 96.0, plain, none, plainDocument);
    row("infinite ratio, no screen", 96.0, infinite, none, 96.0, none, none, none);
    row("minus infinite ratio", 96.0, -infinite, plain, 96.0, plain, none, plainDocument);
    row("tiny ratio", 96.0, 1e-300, plain, 96.0, plain, most, plainDocument);
    row("huge ratio", 96.0, 1e300, plain, 96.0, plain, none, plainDocument);
    row("DPI 0", 0.0, 1.0, plain, 0.0, most, {4100, 2500}, most);
    row("DPI 0, no screen", 0.0, 1.0, none, 0.0, none, {4100, 2500}, none);
    row("DPI less than a half", 0.4, 1.0, plain, 0.0, most, {4100, 2500}, most);
    row("DPI minus a half", -0.5, 1.0, plain, 0.0, most, {4100, 2500}, most);
    row("DPI no number", notANumber, 1.0, plain, 0.0, most, {4100, 2500}, most);
    row("infinite DPI", infinite, 1.0, plain, 2147483647.0, none, {4100, 2500}, none);
    row("minus infinite DPI", -infinite, 1.0, plain, -2147483648.0, none, {4100, 2500}, none);
    row("negative DPI", -96.0, 1.0, plain, -96.0, {-100, -100}, {4100, 2500}, {-120, -150});
    row("greatest screen", 96.0, 2.0, most, 96.0, most, {1073741923, 1073741973}, most);
    row("greatest screen, plain", 96.0, 1.0, most, 96.0, most, most, most);
    row("least screen", 96.0, 2.0, least, 96.0, least, {2050, 1250}, least);
    row("greatest screen of few DPI", 1.0, 1.0, most, 1.0, most, most, most);
}

void TestUnitUtil::oddScreensSaturate()
{
    QFETCH(double, dpi);
    QFETCH(double, ratio);
    QFETCH(QSize, size);
    QFETCH(double, expectedDpi);
    QFETCH(QSize, expectedScreen);
    QFETCH(QSize, expectedCache);
    QFETCH(QSize, expectedDocument);
    initScreen(dpi, ratio, size);
    COMPARE_BITS(s_logicalDpi, expectedDpi);
    QCOMPARE(s_screenSize, expectedScreen);
    QCOMPARE(QSize(s_cacheWidth, s_cacheHeight), expectedCache);
    QCOMPARE(docDefaultSize(), expectedDocument);
    QVERIFY(Testing::sameBits(s_pixelRatio, ratio));
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
    QTest::newRow("nearly a tenth larger") << 105.0 << 1.0 << true << true;
    QTest::newRow("pixels coarser than plain") << 96.0 << 0.5 << true << true;
    QTest::newRow("pixels of no number") << 96.0 << notANumber << true << false;
    QTest::newRow("no DPI") << 0.0 << 1.0 << false << false;
    QTest::newRow("twice as large") << 192.0 << 2.0 << false << false;
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
    QTest::newRow("negative, towards zero") << QSize(-3, -3) << QSize(-3, -4);
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
    LocalCodec const codec("UTF-8");
    KpVersion::s_fontFamilyList = installed;
    KpVersion::s_langID = language;
    QVERIFY(changeToSystemExistFamily(family));
    QCOMPARE(family, replacement);
    QCOMPARE(KpVersion::s_fontFamilyList, installed);
}

void TestUnitUtil::replacedFamilyComesThroughTheLocalCodec()
{
    KpVersion::s_langID = 4;
    LocalCodec const codec("ISO-8859-1");
    QString family = "Sans";
    QVERIFY(changeToSystemExistFamily(family));
    QCOMPARE(family, QString::fromLatin1("\xe5\xae\x8b\xe4\xbd\x93"));
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
    QTest::newRow("fraction of exactly 0.26") << 0.3466666666666667 << 0.5;
    QTest::newRow("fraction of exactly 0.74") << 0.9866666666666667 << 1.0;
    QTest::newRow("fraction above 0.26") << 11.0134 << 8.5;
    QTest::newRow("fraction just below 0.74") << 12.9866 << 9.5;
    QTest::newRow("fraction above 0.74") << 12.9867 << 10.0;
    QTest::newRow("less than a quarter") << 0.3 << 0.0;
    QTest::newRow("half a point") << 0.5 << 0.5;
    QTest::newRow("negative, less than a point") << -1.0 << 0.0;
    QTest::newRow("minus nothing") << -0.0 << 0.0;
    QTest::newRow("infinite") << infinite << 2147483648.0;
    QTest::newRow("minus infinity") << -infinite << -2147483648.0;
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
    for (int quarters = -400; quarters <= 1200; ++quarters) {
        int const sixteenths = 3 * quarters; // of the result
        int const whole = sixteenths / 16;
        int const rest = sixteenths % 16; // negative below zero, where it makes no difference
        double const expected = rest <= 4 ? whole : rest <= 11 ? whole + 0.5 : whole + 1.0;
        COMPARE_BITS(fontSizeFromMac(quarters * 0.25), expected);
    }
}

void TestUnitUtil::fontSizesBecomeWholePoints()
{
    // Four thirds of quarters of a point are thirds: never near a half.
    for (int quarters = -400; quarters <= 1200; ++quarters) {
        int const thirdsUpwards = quarters + 1 + 3 * 200; // positive: division rounds down
        int const expected = thirdsUpwards / 3 - 200;
        COMPARE_BITS(fontSizeToMac(quarters * 0.25), expected);
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
    QTest::newRow("minus a half by four thirds") << -1.125 << -1.0;
    QTest::newRow("beyond int") << 1e300 << 2147483647.0;
    QTest::newRow("below int") << -1e300 << -2147483648.0;
    // 375000000 by four thirds is 500000000.
    QTest::newRow("the factor has eight decimals") << 375000000.0 << 499999999.0;
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

void TestUnitUtil::waitingDeliversPostedEvents()
{
    Receiver receiver;
    QCoreApplication::postEvent(&receiver, new QEvent(QEvent::User));
    QCOMPARE(receiver.received, 0);
    timeDelay(1);
    QCOMPARE(receiver.received, 1);
}

void TestUnitUtil::waitingNeedsNoApplication()
{
    QVERIFY2(waitedWithoutApplication >= 20, qPrintable(QString::number(waitedWithoutApplication)));
}

void TestUnitUtil::waitingEndsAfterManyRounds()
{
    auto* const dispatcher = new CountingDispatcher; // owned by the thread
    WaitingThread thread(dispatcher, greatestInt);
    int rounds = 0;
    int roundsForSomeEventsOnly = 0;
    connect(
        &thread, &QThread::finished, &thread,
        [&] {
            rounds = dispatcher->rounds;
            roundsForSomeEventsOnly = dispatcher->roundsForSomeEventsOnly;
        },
        Qt::DirectConnection);
    thread.start();
    QVERIFY(thread.wait(60000));
    QCOMPARE(rounds, 15000000);
    QCOMPARE(roundsForSomeEventsOnly, 0);
    QVERIFY(thread.elapsed < 60000);
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
    QTemporaryDir const directory;
    QString const path = directory.filePath("file");
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("content");
    file.close();

    FileWatch watch(directory.path());
    QVERIFY(FileDigest(path, 1, 2).isEmpty());
    QVERIFY(FileDigest(directory.filePath("missing"), 0, 0).isEmpty());
    QVERIFY(FileDigest(QString(), leastInt, greatestInt).isEmpty());
    QVERIFY(!watch.sawSomething());

    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(watch.sawSomething());
}

int main(int argc, char* argv[])
{
    QElapsedTimer timer;
    timer.start();
    Testing::MessageWatch watch;
    timeDelay(20);
    watch.stop();
    // A message would have been logged before any test could see it.
    waitedWithoutApplication = watch.take().isEmpty() ? timer.elapsed() : -1;

    QCoreApplication const application(argc, argv);
    TestUnitUtil test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_unitutil.moc"
