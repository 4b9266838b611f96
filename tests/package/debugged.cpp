// SPDX-License-Identifier: MIT
// Holds objects for gdb to look at from stop(): one of each sort in main(), and `garbage`, memory
// that never was an object. Of what kpdebug.h can show it says how, a line each: "EXPRESSION: TEXT".
#include <kpbound.h>
#include <kpdebug.h>
#include <kppathseglineto.h>
#include <kppathsegmoveto.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <random>

namespace {

using RecFile = KpRecentFileManager::RecFile;

KpReal reals[220];
/** As long as the longest type; see fillGarbage(). */
std::uint64_t garbage[40][21];

template <class Value> void say(QString const& expression, Value const& value)
{
    QString text;
    QDebug(&text).nospace() << value;
    std::printf("%s: %s\n", qPrintable(expression), qPrintable(text));
}

#define SAY(expression) say(QStringLiteral(#expression), expression)

KpPoint point(double x, double y)
{
    return KpBound::point(KpBound::absolute(x), KpBound::absolute(y));
}

/** A segment of a client. */
class UnknownSegment : public KpPathSegLineTo
{
public:
    UnknownSegment()
        : KpPathSegLineTo(point(1.0, 2.0), nullptr)
    {
        type = static_cast<SegType>(9);
    }
};

KpColor colourOf(QColor const& colour, int tint, int theme)
{
    KpColor result;
    result.setColorValues(QColor(255, 128, 64), colour, tint, theme);
    return result;
}

void forget(KpRecentFileManager& manager)
{
    manager.m_isModified = false;
    manager.m_recentFileFolder = manager.m_symbolFolder = QStringLiteral("/a");
    manager.m_libraryFolder.clear();
}

/** First the reals that each are a case of their own, then any. */
void fillReals(std::mt19937_64& random)
{
    double const nan = std::numeric_limits<double>::quiet_NaN();
    double const infinity = std::numeric_limits<double>::infinity();
    KpReal const cases[] = {KpReal(0, 0.0, 7.5), KpReal(0, 5.0, 7.0), KpReal(1, 1.0, 100.0),
        KpReal(2, 0.5, 40.0), KpReal(3, 10.0, 110.0), KpReal(4, -10.0, 90.0), KpReal(5, 0.25, 20.0),
        KpReal(6, 0.25, 100.0), KpReal(7, 0.25, 60.0), KpReal(-2, 2.0, 1.0), KpReal(0, nan, nan),
        KpReal(3, -infinity, infinity), KpReal(1, 1000002.5, 123456.5), KpReal(2, 1e-9, 1e300),
        KpReal(1, -0.0, 0.0001)};
    KpReal* next = std::copy(std::begin(cases), std::end(cases), reals);
    for (; next != std::end(reals); ++next) {
        double const power = std::pow(10.0, static_cast<double>(random() % 24) - 8.0);
        next->base = static_cast<qint16>(random() % 9);
        next->rate = static_cast<double>(random() % 4000000) / 2.0;
        next->value = power * (static_cast<double>(random() % 2000) - 1000.0) / 7.0;
    }
    for (int i = 0; i < 220; ++i)
        say(QStringLiteral("reals[%1]").arg(i), reals[i]);
}

/** The row is a pointer to a Qt array of two elements at `offset`. */
void fillArray(std::uint64_t (&row)[21], std::int64_t offset)
{
    row[0] = reinterpret_cast<std::uintptr_t>(row + 1);
    row[1] = std::uint64_t(2) << 32;
    row[2] = 2;
    row[3] = static_cast<std::uint64_t>(offset);
}

/**
 * Rows of zeros, of ones, and of arrays that are nowhere; in all others words that may be counts,
 * places, flags and numbers.
 */
void fillGarbage(std::mt19937_64& random, void const* object)
{
    std::memset(garbage[1], 0xff, sizeof garbage[1]);
    fillArray(garbage[2], std::numeric_limits<std::int64_t>::min());
    fillArray(garbage[3], -0x7fffffffffff);
    fillArray(garbage[4], std::numeric_limits<std::int64_t>::max());
    for (auto* row = garbage + 5; row != std::end(garbage); ++row) {
        for (std::uint64_t& word : *row) {
            std::uint64_t const choices[] = {0, random(), random() % 10,
                random() & 0x0000000f0000000fU, reinterpret_cast<std::uintptr_t>(object),
                reinterpret_cast<std::uintptr_t>(garbage[random() % 40] + random() % 21)};
            word = choices[random() % 6];
        }
    }
}

void stop() { }

} // namespace

int main()
{
    std::mt19937_64 random(1);
    fillReals(random);

    KpPoint const bound(KpReal(1, 0.5, 60.0), KpReal(4, 0.0, 80.0));
    SAY(bound);
    KpPoint const& reference = bound;
    SAY(reference);

    KpPathSegMoveTo move(point(1.0, 2.0), nullptr);
    SAY(move);
    KpPathSegLineTo line(point(1.0, 2.0), nullptr);
    SAY(line);
    KpPathSegCurveTo curve(point(3.0, 4.0), point(5.0, 6.0), point(1.0, 2.0), nullptr);
    SAY(curve);
    KpPathSegEllipse ellipse(point(1.0, 2.0), KpReal(1, 0.5, 3.0), KpReal(2, 0.25, 4.0), nullptr);
    SAY(ellipse);
    UnknownSegment unknown;
    KpPathSeg& unknownBase = unknown;
    SAY(unknownBase);
    KpPathSeg const* const curveBase = &curve;
    SAY(*curveBase);
    KpPathSeg const& ellipseBase = ellipse;
    SAY(ellipseBase);

    KpPathSegList empty;
    SAY(empty);
    KpPathSegList flagged;
    flagged.closed = flagged.noLine = flagged.noFill = true;
    flagged.moveTo(QPointF(0.5, 2.0));
    SAY(flagged);
    KpPathSegList drawn;
    drawn.moveTo(QPointF(0.0, 80.0));
    drawn.curveTo(QPointF(20.0, 0.0), QPointF(100.0, 0.0), QPointF(120.0, 80.0));
    drawn.addTail(new KpPathSegEllipse(QPointF(60.0, 40.0), 6.0, 8.0, nullptr));
    drawn.updateRate(120.0, 80.0);
    SAY(drawn);
    KpPathSegList holed;
    holed.segs << nullptr << &move << reinterpret_cast<KpPathSeg*>(std::uintptr_t(8));

    KpPath noPath;
    SAY(noPath);
    KpPath path;
    for (int const type : {0, 1, 2, 3, 4, 5, -1})
        path.append(KpPath::KpElement {0.5, 2.0, 0.0, 0.0, type});
    SAY(path);

    KpColor const none;
    SAY(none);
    KpColor const plain = QColor(1, 2, 3);
    SAY(plain);
    KpColor const tinted = colourOf(QColor(255, 0, 0, 51), 40, 4);
    SAY(tinted);
    KpColor const shaded = colourOf(QColor(255, 0, 0), -30, 12);
    SAY(shaded);
    KpColor const hsv = colourOf(QColor::fromHsv(120, 51, 102, 204), 0, 0);
    SAY(hsv);
    KpColor const grey = colourOf(QColor::fromHsv(-1, 0, 102), 0, 0);
    SAY(grey);
    KpColor const cmyk = colourOf(QColor::fromCmyk(0, 51, 102, 153), 0, 0);
    SAY(cmyk);
    KpColor const hsl = colourOf(QColor::fromHsl(240, 51, 102), 0, 0);
    SAY(hsl);
    KpColor const extended = colourOf(QColor::fromRgbF(1.5, -0.25, 0.5, 0.75), 0, 0);
    SAY(extended);

    RecFile const local {false, 1, QStringLiteral("/a/b.x"), QString()};
    SAY(local);
    RecFile const team {true, 3, QStringLiteral("/a/b.x"), QStringLiteral("design")};
    SAY(team);
    RecFile const odd {false, -1, QString(), QString()};
    SAY(odd);
    RecFile const escaped {false, 5,
        QString::fromUtf8("\"\\\b\f\n\r\t\x01\x7f\xc3\xa9\xc2\xad\xf0\x9f\x99\x82\xf3\xa0\x80\x81"),
        QString(QChar(0xd800))};
    SAY(escaped);
    RecFile const endless {false, 1, QString(1001, QLatin1Char('x')), QString()};
    KpRecentFileManager::RecFileInfo const info {
        true, 1, QStringLiteral("b.x"), QStringLiteral("a > c"), QStringLiteral("/a/c/b.x")};
    SAY(info);
    KpRecentFileManager fresh;
    forget(fresh);
    SAY(fresh);
    KpRecentFileManager used;
    used.addOpenFileInfo(QStringLiteral("/a/b.x"), 1, QString());
    used.addOpenFileInfo(QStringLiteral("/c/d.x"), 1, QString());
    forget(used);
    SAY(used);

    fillGarbage(random, &drawn);
    std::fflush(stdout);
    stop();
    holed.segs.clear();
    return 0;
}
