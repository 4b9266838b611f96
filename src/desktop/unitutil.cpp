#include "unitutil.h"

#include "conversion_p.h"
#include "kpversion.h"
#include "quarkmanager.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <cmath>

double UnitUtil::s_pixPerMM = 3.779527559055118;
double UnitUtil::s_pixPerPt = 1.333333333333333;
double UnitUtil::s_pixPerDidot = 1.417322834645669;
double UnitUtil::s_pixPerMile = 6082560.0;
double UnitUtil::s_logicalDpi = 96.0;
double UnitUtil::s_pixelRatio = 1.0;
double UnitUtil::s_dpiScale = 1.0;
QSize UnitUtil::s_screenSize(0, 0);
int UnitUtil::s_cacheWidth = 4800;
int UnitUtil::s_cacheHeight = 3200;
int UnitUtil::s_usedMemory = 0;
bool UnitUtil::s_inited = false;

namespace {

constexpr int millimetre = 1;
constexpr int inch = 5;

struct Page
{
    double width;
    double height;
    int unit;
};

constexpr Page pages[] = {
    {8.5, 11.0, inch},
    {8.5, 13.0, inch},
    {8.5, 14.0, inch},
    {7.5, 10.5, inch},
    {5.5, 8.5, inch},
    {4.125, 9.5, inch},
    {3.875, 7.5, inch},
    {11.0, 17.0, inch},
    {8.5, 11.0, inch},
    {17.0, 22.0, inch},
    {22.0, 34.0, inch},
    {34.0, 44.0, inch},
    {297.0, 420.0, millimetre},
    {210.0, 297.0, millimetre},
    {148.0, 210.0, millimetre},
    {250.0, 354.0, millimetre},
    {182.0, 257.0, millimetre},
    {110.0, 220.0, millimetre},
    {162.0, 229.0, millimetre},
    {215.0, 275.0, millimetre},
    {162.0, 229.0, millimetre},
    {176.0, 250.0, millimetre},
    {110.0, 230.0, millimetre},
    {210.0, 297.0, millimetre},
    {8.5, 12.0, inch},
    {8.0, 13.0, inch},
    {146.0, 215.0, millimetre},
    {97.0, 151.0, millimetre},
    {100.0, 148.0, millimetre},
    {148.0, 200.0, millimetre},
    {22.0, 36.0, inch},
    {24.0, 48.0, inch},
    {24.0, 60.0, inch},
    {24.0, 72.0, inch},
    {24.0, 84.0, inch},
    {24.0, 96.0, inch},
    {24.0, 108.0, inch},
    {36.0, 42.0, inch},
    {36.0, 60.0, inch},
    {36.0, 72.0, inch},
    {36.0, 84.0, inch},
    {36.0, 96.0, inch},
    {36.0, 108.0, inch},
    {8.5, 10.0, inch},
    {228.6, 304.8, millimetre},
    {304.8, 457.2, millimetre},
    {457.2, 609.6, millimetre},
    {609.6, 914.4, millimetre},
    {914.4, 1219.2, millimetre},
    {762.0, 1066.8, millimetre},
    {841.0, 1189.0, millimetre},
    {594.0, 841.0, millimetre},
    {420.0, 594.0, millimetre},
    {707.0, 1000.0, millimetre},
    {728.1, 1030.1, millimetre},
    {515.0, 728.1, millimetre},
    {364.0, 515.0, millimetre},
    {257.1, 364.0, millimetre},
    {182.0, 257.1, millimetre},
    {1189.0, 1682.0, millimetre},
    {1682.0, 2378.0, millimetre},
};

constexpr Page otherPage {210.0, 297.0, millimetre};

constexpr int pageCount = static_cast<int>(sizeof pages / sizeof *pages);
static_assert(pageCount == 61, "documents hold indices into this table");

/** 1 and 2 in place of what is within 0.01 of them. */
double snapped(double scale)
{
    for (double const whole : {1.0, 2.0}) {
        if (std::abs(scale - whole) < 0.01)
            return whole;
    }
    return scale;
}

/** One side of the off-screen cache, in logical pixels; `margin` and `least` are physical ones. */
int cacheSide(int screen, double ratio, int margin, int least)
{
    qint64 const physical = qint64(Conversion::truncated(ratio * screen)) + margin;
    return Conversion::truncated(static_cast<double>(qMax(physical, qint64(least))) / ratio);
}

unsigned int unitOf(QString const& name)
{
    // An unknown name becomes a code far above those of the units.
    return static_cast<unsigned int>(QuarkManager::quarkFromString(name.toLower()));
}

} // namespace

double UnitUtil::pixelToUnit(double value, unsigned int unit)
{
    switch (unit) {
    case 1:
        return value / s_pixPerMM;
    case 2:
        return value * 0.1 / s_pixPerMM;
    case 3:
        return value * 0.001 / s_pixPerMM;
    case 4:
        return value * 0.000001 / s_pixPerMM;
    case 5:
        return value / s_logicalDpi;
    case 6:
    case 7:
        return value / (12.0 * s_logicalDpi);
    case 8:
        return value / (36.0 * s_logicalDpi);
    case 9:
        return value / s_pixPerMile;
    case 10:
        return value / s_pixPerPt;
    case 11:
        return value / (12.0 * s_pixPerPt);
    case 12:
        return value / s_pixPerDidot;
    case 13:
        return value / (12.0 * s_pixPerDidot);
    default:
        return value;
    }
}

double UnitUtil::unitToPixel(double value, unsigned int unit)
{
    switch (unit) {
    case 1:
        return value * s_pixPerMM;
    case 2:
        return value * s_pixPerMM * 10.0;
    case 3:
        return value * s_pixPerMM * 1000.0;
    case 4:
        return value * s_pixPerMM * 1000000.0;
    case 5:
        return value * s_logicalDpi;
    case 6:
    case 7:
        return value * s_logicalDpi * 12.0;
    case 8:
        return value * s_logicalDpi * 36.0;
    case 9:
        return value * s_pixPerMile;
    case 10:
        return value * s_pixPerPt;
    case 11:
        return value * s_pixPerPt * 12.0;
    case 12:
        return value * s_pixPerDidot;
    case 13:
        return value * s_pixPerDidot * 12.0;
    default:
        return value;
    }
}

double UnitUtil::pixelToUnit(double value, QString const& unitName)
{
    return pixelToUnit(value, unitOf(unitName));
}

double UnitUtil::unitToPixel(double value, QString const& unitName)
{
    return unitToPixel(value, unitOf(unitName));
}

QString UnitUtil::unitStr(unsigned int unit)
{
    return QuarkManager::quarkToString(static_cast<int>(unit));
}

QString UnitUtil::incheValtoFeetIncheStr(double inches)
{
    QString text;
    if (inches < 0.0) {
        text = QLatin1Char('-');
        inches = -inches;
    }
    int feet = 0;
    if (inches > 12.0) {
        feet = Conversion::truncated(inches / 12.0);
        inches -= feet * 12.0;
    }
    text += QString::number(feet) + QLatin1Char('\'');
    if (inches > 0.000001)
        text += QStringLiteral("%1\"").arg(inches);
    return text;
}

QString UnitUtil::feetValtoFeetIncheStr(double feet)
{
    return incheValtoFeetIncheStr(feet * 12.0);
}

int UnitUtil::preDefinedPage(int index, QSizeF& pixelSize, QSizeF& unitSize)
{
    Page const& page = index >= 0 && index < pageCount ? pages[index] : otherPage;
    auto const unit = static_cast<unsigned int>(page.unit);
    unitSize = QSizeF(page.width, page.height);
    pixelSize = QSizeF(unitToPixel(page.width, unit), unitToPixel(page.height, unit));
    return page.unit;
}

double UnitUtil::from7Val(double value)
{
    return value * s_pixPerMM * 0.25;
}

void UnitUtil::initScreen(double dpi, double pixelRatio, QSize size)
{
    s_pixelRatio = snapped(pixelRatio);
    s_cacheWidth = cacheSide(size.width(), s_pixelRatio, 200, 4100);
    s_cacheHeight = cacheSide(size.height(), s_pixelRatio, 300, 2500);
    s_logicalDpi = Conversion::rounded(dpi);
    s_dpiScale = snapped(s_logicalDpi / 96.0);
    s_screenSize = QSize(Conversion::rounded(size.width() / s_dpiScale),
        Conversion::rounded(size.height() / s_dpiScale));
    s_pixPerPt = 96.0 / 72.0;
    s_pixPerMM = 96.0 / 25.4;
    s_pixPerMile = 6082560.0;
    s_pixPerDidot = 36.0 / 25.4;
}

double UnitUtil::dpiScale()
{
    return s_dpiScale;
}

double UnitUtil::dpiScale96()
{
    return s_dpiScale;
}

double UnitUtil::dpiAndPixel()
{
    return s_dpiScale * s_pixelRatio;
}

bool UnitUtil::isSmallImg()
{
    return std::abs(dpiScale96() - 1.0) <= 0.1;
}

bool UnitUtil::isSmallImgReal()
{
    return isSmallImg() && s_pixelRatio < 1.1;
}

QSize UnitUtil::docDefaultSize()
{
    return QSize(Conversion::truncated(s_screenSize.width() * 1.2),
        Conversion::truncated(s_screenSize.height() * 1.5));
}

QString UnitUtil::platForm()
{
    return QStringLiteral("linux");
}

bool UnitUtil::isWin()
{
    return false;
}

bool UnitUtil::isMac()
{
    return false;
}

bool UnitUtil::isLinux()
{
    return true;
}

bool UnitUtil::changeToSystemExistFamily(QString& family)
{
    int const simplifiedChinese = 4;
    if (KpVersion::s_fontFamilyList.contains(family))
        return false;
    // The Chinese family's name goes through the local codec, as the name that the font system
    // knows does.
    family = KpVersion::s_langID == simplifiedChinese
        ? QString::fromLocal8Bit("\xe5\xae\x8b\xe4\xbd\x93")
        : QStringLiteral("Arial");
    return true;
}

double UnitUtil::fontSizeFromMac(double size)
{
    double const points = size * 0.75;
    int const whole = Conversion::truncated(points);
    double const fraction = points - whole;
    if (fraction < 0.26)
        return whole;
    return fraction < 0.74 ? whole + 0.5 : whole + 1.0;
}

double UnitUtil::fontSizeToMac(double size)
{
    return Conversion::rounded(size * 1.33333333);
}

void UnitUtil::timeDelay(int ms)
{
    int const mostRounds = 15000000;
    QElapsedTimer timer;
    timer.start();
    for (int round = 0; round < mostRounds && timer.elapsed() < ms; ++round)
        QCoreApplication::processEvents();
}

QString UnitUtil::FileDigest(QString /*path*/, int, int)
{
    return QString();
}
