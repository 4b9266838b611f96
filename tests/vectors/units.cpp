// SPDX-License-Identifier: MIT
#include "kpversion.h"
#include "sequence.h"
#include "themes.h"
#include "unitutil.h"

using namespace UnitUtil;

namespace {

/** What initScreen() writes, as it was at first: put back at the end. */
class ScreenState
{
public:
    ScreenState() = default;
    ScreenState(ScreenState const&) = delete;
    ScreenState& operator=(ScreenState const&) = delete;
    ~ScreenState()
    {
        s_pixPerMM = m_pixPerMM;
        s_pixPerPt = m_pixPerPt;
        s_pixPerDidot = m_pixPerDidot;
        s_pixPerMile = m_pixPerMile;
        s_logicalDpi = m_logicalDpi;
        s_pixelRatio = m_pixelRatio;
        s_dpiScale = m_dpiScale;
        s_screenSize = m_screenSize;
        s_cacheWidth = m_cacheWidth;
        s_cacheHeight = m_cacheHeight;
    }

private:
    double const m_pixPerMM = s_pixPerMM;
    double const m_pixPerPt = s_pixPerPt;
    double const m_pixPerDidot = s_pixPerDidot;
    double const m_pixPerMile = s_pixPerMile;
    double const m_logicalDpi = s_logicalDpi;
    double const m_pixelRatio = s_pixelRatio;
    double const m_dpiScale = s_dpiScale;
    QSize const m_screenSize = s_screenSize;
    int const m_cacheWidth = s_cacheWidth;
    int const m_cacheHeight = s_cacheHeight;
};

struct Screen
{
    double dpi;
    double pixelRatio;
    QSize size;
};

Vectors::Fields fields(Screen const& screen)
{
    return {{"dpi", screen.dpi}, {"pixelRatio", screen.pixelRatio}, {"size", screen.size}};
}

QVector<Screen> screens()
{
    return {{96, 1, {1920, 1080}}, {192, 2.005, {2880, 1800}}, {144, 1.5, {2560, 1440}},
        {100.4, 1, {1600, 900}}, {95.5, 0.9905, {1366, 768}}, {96.96, 1.01, {1367, 769}},
        {105.6, 1.1, {1024, 768}}, {106, 1.09, {5120, 2880}}, {191, 1.99, {3840, 2160}},
        {72, 0.5, {800, 600}}, {288, 3, {7680, 4320}}, {0, 1, {10, 10}}, {96, 0, {10, 10}},
        {-96, -1, {10, 10}}, {1e300, 1e300, {1000, 1000}}, {96, 1, {0, -5}}};
}

void addVariables(Vectors::Theme& theme)
{
    theme.add("UnitUtil::s_pixPerMM", {}, {{"value", s_pixPerMM}});
    theme.add("UnitUtil::s_pixPerPt", {}, {{"value", s_pixPerPt}});
    theme.add("UnitUtil::s_pixPerDidot", {}, {{"value", s_pixPerDidot}});
    theme.add("UnitUtil::s_pixPerMile", {}, {{"value", s_pixPerMile}});
    theme.add("UnitUtil::s_logicalDpi", {}, {{"value", s_logicalDpi}});
    theme.add("UnitUtil::s_pixelRatio", {}, {{"value", s_pixelRatio}});
    theme.add("UnitUtil::s_dpiScale", {}, {{"value", s_dpiScale}});
    theme.add("UnitUtil::s_screenSize", {}, {{"value", s_screenSize}});
    theme.add("UnitUtil::s_cacheWidth", {}, {{"value", s_cacheWidth}});
    theme.add("UnitUtil::s_cacheHeight", {}, {{"value", s_cacheHeight}});
    theme.add("UnitUtil::s_usedMemory", {}, {{"value", s_usedMemory}});
    theme.add("UnitUtil::s_inited", {}, {{"value", s_inited}});
}

void addScreens(Vectors::Theme& theme)
{
    for (Screen const& screen : screens()) {
        initScreen(screen.dpi, screen.pixelRatio, screen.size);
        Vectors::Fields const inputs = fields(screen);
        theme.add("UnitUtil::initScreen(double, double, QSize)", inputs,
            {{"s_pixPerMM", s_pixPerMM}, {"s_pixPerPt", s_pixPerPt},
                {"s_pixPerDidot", s_pixPerDidot}, {"s_pixPerMile", s_pixPerMile},
                {"s_logicalDpi", s_logicalDpi}, {"s_pixelRatio", s_pixelRatio},
                {"s_dpiScale", s_dpiScale}, {"s_screenSize", s_screenSize},
                {"s_cacheWidth", s_cacheWidth}, {"s_cacheHeight", s_cacheHeight}});
        theme.add("UnitUtil::dpiScale()", inputs, {{"result", dpiScale()}});
        theme.add("UnitUtil::dpiScale96()", inputs, {{"result", dpiScale96()}});
        theme.add("UnitUtil::dpiAndPixel()", inputs, {{"result", dpiAndPixel()}});
        theme.add("UnitUtil::isSmallImg()", inputs, {{"result", isSmallImg()}});
        theme.add("UnitUtil::isSmallImgReal()", inputs, {{"result", isSmallImgReal()}});
        theme.add("UnitUtil::docDefaultSize()", inputs, {{"result", docDefaultSize()}});
    }
}

void addConversions(Vectors::Theme& theme, double dpi, unsigned int first, unsigned int last)
{
    initScreen(dpi, 1.0, QSize(1920, 1080));
    Vectors::Sequence sequence(70);
    QVector<double> const values {
        0.0, -0.0, 96.0, 1e308, sequence.real(-1000, 1000), sequence.eighth(1000)};
    for (unsigned int unit = first; unit <= last; ++unit) {
        for (double const value : values) {
            Vectors::Fields const inputs {{"dpi", dpi}, {"value", value}, {"unit", unit}};
            theme.add("UnitUtil::pixelToUnit(double, unsigned int)", inputs,
                {{"result", pixelToUnit(value, unit)}});
            theme.add("UnitUtil::unitToPixel(double, unsigned int)", inputs,
                {{"result", unitToPixel(value, unit)}});
        }
    }
}

void addNames(Vectors::Theme& theme)
{
    initScreen(96, 1.0, QSize(1920, 1080));
    for (unsigned int unit = 0; unit <= 14; ++unit)
        theme.add("UnitUtil::unitStr(unsigned int)", {{"unit", unit}}, {{"result", unitStr(unit)}});
    theme.add("UnitUtil::unitStr(unsigned int)", {{"unit", 4294967295U}},
        {{"result", unitStr(4294967295U)}});
    for (QString const name : {"px", "mm", "cm", "m", "km", "in", "ft", "ft-in", "yd", "mi", "pt",
             "pc", "dd", "cc", "MM", "Ft-In", "", "inch", " mm", "MoveTo"}) {
        Vectors::Fields const inputs {{"dpi", 96.0}, {"value", 12.375}, {"unitName", name}};
        theme.add("UnitUtil::pixelToUnit(double, QString const&)", inputs,
            {{"result", pixelToUnit(12.375, name)}});
        theme.add("UnitUtil::unitToPixel(double, QString const&)", inputs,
            {{"result", unitToPixel(12.375, name)}});
    }
}

void addLengths(Vectors::Theme& theme)
{
    for (double const inches : {0.0, -0.0, 30.0, 24.0, 12.0, 5.25, -30.0, 12.000001, 12.0000001,
             0.000001, 0.0000011, -0.5, 1.0 / 3, 1234567.875, 99.9999999, 24.5, 123456789012.0}) {
        theme.add("UnitUtil::incheValtoFeetIncheStr(double)", {{"inches", inches}},
            {{"result", incheValtoFeetIncheStr(inches)}});
    }
    for (double const feet : {0.0, 1.0, 2.0, 2.5, -0.25, 100.0 / 3, 1.0000001})
        theme.add("UnitUtil::feetValtoFeetIncheStr(double)", {{"feet", feet}},
            {{"result", feetValtoFeetIncheStr(feet)}});
    for (double const quarters : {0.0, 1.0, 4.0, -2.5, 1189.0})
        theme.add(
            "UnitUtil::from7Val(double)", {{"value", quarters}}, {{"result", from7Val(quarters)}});
}

void addPages(Vectors::Theme& theme)
{
    for (int index = -1; index <= 61; ++index) {
        QSizeF pixelSize;
        QSizeF unitSize;
        int const unit = preDefinedPage(index, pixelSize, unitSize);
        theme.add("UnitUtil::preDefinedPage(int, QSizeF&, QSizeF&)",
            {{"dpi", 96.0}, {"index", index}},
            {{"result", unit}, {"pixelSize", pixelSize}, {"unitSize", unitSize}});
    }
}

void addFonts(Vectors::Theme& theme)
{
    Vectors::Sequence sequence(71);
    QVector<double> sizes {
        0, 9, 10, 10.5, 11, 12, 13, 14, 72, -5, -10.5, 0.346, 0.347, 0.986, 0.987};
    for (int i = 0; i < 8; ++i)
        sizes.append(sequence.real(0, 100));
    for (double const size : qAsConst(sizes)) {
        theme.add("UnitUtil::fontSizeFromMac(double)", {{"size", size}},
            {{"result", fontSizeFromMac(size)}});
        theme.add(
            "UnitUtil::fontSizeToMac(double)", {{"size", size}}, {{"result", fontSizeToMac(size)}});
    }

    QStringList const families = KpVersion::s_fontFamilyList;
    int const language = KpVersion::s_langID;
    KpVersion::s_fontFamilyList = QStringList {"Courier", "Times"};
    for (int const langId : {0, 4}) {
        KpVersion::s_langID = langId;
        for (QString const name : {"Times", "times", "Arial", ""}) {
            QString family = name;
            bool const isReplaced = changeToSystemExistFamily(family);
            theme.add("UnitUtil::changeToSystemExistFamily(QString&)",
                {{"families", QVector<QString> {"Courier", "Times"}}, {"langID", langId},
                    {"family", name}},
                {{"result", isReplaced}, {"family", family}});
        }
    }
    KpVersion::s_fontFamilyList = families;
    KpVersion::s_langID = language;
}

void addPlatform(Vectors::Theme& theme)
{
    theme.add("UnitUtil::platForm()", {}, {{"result", platForm()}});
    theme.add("UnitUtil::isWin()", {}, {{"result", isWin()}});
    theme.add("UnitUtil::isMac()", {}, {{"result", isMac()}});
    theme.add("UnitUtil::isLinux()", {}, {{"result", isLinux()}});
    theme.add("UnitUtil::FileDigest(QString, int, int)", {{"path", "any"}},
        {{"result", FileDigest("any", 1, 2)}});
}

} // namespace

void Vectors::addUnits(Theme& theme)
{
    ScreenState const restoring;
    addVariables(theme);
    addScreens(theme);
    addConversions(theme, 96, 0, 15);
    addConversions(theme, 144, 4, 9);
    addNames(theme);
    addLengths(theme);
    addPages(theme);
    addFonts(theme);
    addPlatform(theme);
}
