// SPDX-License-Identifier: MIT
#include "unitutil.h"

#include "conversion_p.h"
#include "kpversion.h"
#include "quarkmanager.h"
#include "unitcode_p.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <cmath>
#include <iterator>

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

struct Page
{
    double width;
    double height;
    UnitCode unit;
};

/**
 * The pages by their index, which documents hold: no row is ever moved, dropped or put right, nor
 * those that differ from the standard that they resemble: 15, 19, and by 0.1 mm 54, 55, 57 and 58.
 *
 * ANSI and architectural sizes are those of ANSI/ASME Y14.1, ISO A and B those of ISO 216, 2A0 and
 * 4A0 of DIN 476, ISO C and DL of ISO 269, JIS B of JIS P 0138; the other names are those of trade.
 * A row without a name has a size of no standard: 31 to 36 are 2 feet wide, 37 to 42 are 3.
 */
constexpr Page pages[] = {
    {8.5, 11.0, UnitInch}, // 0: Letter, ANSI A
    {8.5, 13.0, UnitInch}, // 1: Folio
    {8.5, 14.0, UnitInch}, // 2: Legal
    {7.5, 10.5, UnitInch}, // 3
    {5.5, 8.5, UnitInch}, // 4: Statement, half a Letter
    {4.125, 9.5, UnitInch}, // 5: envelope No. 10
    {3.875, 7.5, UnitInch}, // 6: envelope Monarch
    {11.0, 17.0, UnitInch}, // 7: Tabloid, ANSI B
    {8.5, 11.0, UnitInch}, // 8: Letter, ANSI A
    {17.0, 22.0, UnitInch}, // 9: ANSI C
    {22.0, 34.0, UnitInch}, // 10: ANSI D
    {34.0, 44.0, UnitInch}, // 11: ANSI E
    {297.0, 420.0, UnitMillimetre}, // 12: ISO A3
    {210.0, 297.0, UnitMillimetre}, // 13: ISO A4
    {148.0, 210.0, UnitMillimetre}, // 14: ISO A5
    {250.0, 354.0, UnitMillimetre}, // 15: near ISO B4, which is 250 x 353
    {182.0, 257.0, UnitMillimetre}, // 16: JIS B5
    {110.0, 220.0, UnitMillimetre}, // 17: ISO DL
    {162.0, 229.0, UnitMillimetre}, // 18: ISO C5
    {215.0, 275.0, UnitMillimetre}, // 19: near Letter, which is 215.9 x 279.4
    {162.0, 229.0, UnitMillimetre}, // 20: ISO C5
    {176.0, 250.0, UnitMillimetre}, // 21: ISO B5
    {110.0, 230.0, UnitMillimetre}, // 22: Italian envelope
    {210.0, 297.0, UnitMillimetre}, // 23: ISO A4
    {8.5, 12.0, UnitInch}, // 24: German fanfold
    {8.0, 13.0, UnitInch}, // 25
    {146.0, 215.0, UnitMillimetre}, // 26: Chinese 16K
    {97.0, 151.0, UnitMillimetre}, // 27: Chinese 32K
    {100.0, 148.0, UnitMillimetre}, // 28: Japanese postcard
    {148.0, 200.0, UnitMillimetre}, // 29: two Japanese postcards
    {22.0, 36.0, UnitInch}, // 30
    {24.0, 48.0, UnitInch}, // 31
    {24.0, 60.0, UnitInch}, // 32
    {24.0, 72.0, UnitInch}, // 33
    {24.0, 84.0, UnitInch}, // 34
    {24.0, 96.0, UnitInch}, // 35
    {24.0, 108.0, UnitInch}, // 36
    {36.0, 42.0, UnitInch}, // 37
    {36.0, 60.0, UnitInch}, // 38
    {36.0, 72.0, UnitInch}, // 39
    {36.0, 84.0, UnitInch}, // 40
    {36.0, 96.0, UnitInch}, // 41
    {36.0, 108.0, UnitInch}, // 42
    {8.5, 10.0, UnitInch}, // 43
    {228.6, 304.8, UnitMillimetre}, // 44: Architectural A: 9 x 12 in
    {304.8, 457.2, UnitMillimetre}, // 45: Architectural B: 12 x 18 in
    {457.2, 609.6, UnitMillimetre}, // 46: Architectural C: 18 x 24 in
    {609.6, 914.4, UnitMillimetre}, // 47: Architectural D: 24 x 36 in
    {914.4, 1219.2, UnitMillimetre}, // 48: Architectural E: 36 x 48 in
    {762.0, 1066.8, UnitMillimetre}, // 49: Architectural E1: 30 x 42 in
    {841.0, 1189.0, UnitMillimetre}, // 50: ISO A0
    {594.0, 841.0, UnitMillimetre}, // 51: ISO A1
    {420.0, 594.0, UnitMillimetre}, // 52: ISO A2
    {707.0, 1000.0, UnitMillimetre}, // 53: ISO B1
    {728.1, 1030.1, UnitMillimetre}, // 54: JIS B1, which is 728 x 1030
    {515.0, 728.1, UnitMillimetre}, // 55: JIS B2, which is 515 x 728
    {364.0, 515.0, UnitMillimetre}, // 56: JIS B3
    {257.1, 364.0, UnitMillimetre}, // 57: JIS B4, which is 257 x 364
    {182.0, 257.1, UnitMillimetre}, // 58: JIS B5, which is 182 x 257
    {1189.0, 1682.0, UnitMillimetre}, // 59: DIN 2A0
    {1682.0, 2378.0, UnitMillimetre}, // 60: DIN 4A0
};

static_assert(std::size(pages) == predefinedPageCount, "documents hold indices into this table");

constexpr Page isoA4 {210.0, 297.0, UnitMillimetre};

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
    case UnitMillimetre:
        return value / s_pixPerMM;
    case UnitCentimetre:
        return value * 0.1 / s_pixPerMM;
    case UnitMetre:
        return value * 0.001 / s_pixPerMM;
    case UnitKilometre:
        return value * 0.000001 / s_pixPerMM;
    case UnitInch:
        return value / s_logicalDpi;
    case UnitFoot:
    case UnitFeetAndInches:
        return value / (12.0 * s_logicalDpi);
    case UnitYard:
        return value / (36.0 * s_logicalDpi);
    case UnitMile:
        return value / s_pixPerMile;
    case UnitPoint:
        return value / s_pixPerPt;
    case UnitPica:
        return value / (12.0 * s_pixPerPt);
    case UnitDidot:
        return value / s_pixPerDidot;
    case UnitCicero:
        return value / (12.0 * s_pixPerDidot);
    default:
        return value;
    }
}

double UnitUtil::unitToPixel(double value, unsigned int unit)
{
    switch (unit) {
    case UnitMillimetre:
        return value * s_pixPerMM;
    case UnitCentimetre:
        return value * s_pixPerMM * 10.0;
    case UnitMetre:
        return value * s_pixPerMM * 1000.0;
    case UnitKilometre:
        return value * s_pixPerMM * 1000000.0;
    case UnitInch:
        return value * s_logicalDpi;
    case UnitFoot:
    case UnitFeetAndInches:
        return value * s_logicalDpi * 12.0;
    case UnitYard:
        return value * s_logicalDpi * 36.0;
    case UnitMile:
        return value * s_pixPerMile;
    case UnitPoint:
        return value * s_pixPerPt;
    case UnitPica:
        return value * s_pixPerPt * 12.0;
    case UnitDidot:
        return value * s_pixPerDidot;
    case UnitCicero:
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
    Page const& page = index >= 0 && index < predefinedPageCount ? pages[index] : isoA4;
    unitSize = QSizeF(page.width, page.height);
    pixelSize = QSizeF(unitToPixel(page.width, page.unit), unitToPixel(page.height, page.unit));
    return static_cast<int>(page.unit);
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
