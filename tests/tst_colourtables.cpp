// SPDX-License-Identifier: MIT
#include "colorutil.h"
#include "testing.h"

#include <dlfcn.h>

using namespace ColorUtil;

namespace {

int powers = 0;

/** How many powers `work` takes. */
template <class Work> int powersOf(Work work)
{
    int const before = powers;
    work();
    return powers - before;
}

} // namespace

/** Stands in for the one of the mathematical library, which it calls: the library calls this one. */
extern "C" double calledPow(double base, double exponent) __asm__("pow");

double calledPow(double base, double exponent)
{
    using Pow = double (*)(double, double);
    static Pow const usual = reinterpret_cast<Pow>(dlsym(RTLD_NEXT, "pow"));
    ++powers;
    return usual(base, exponent);
}

/** What the tables of the colour transforms are for: without them, all would be as it is but slow. */
class TestColourTables : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void powersAreCounted();
    void mixesTakeNoPower();
    void intensitiesAreWrittenWithoutAPower();
};

void TestColourTables::initTestCase()
{
    // Makes the tables.
    tint(QColor(1, 2, 3), 0.5);
}

void TestColourTables::powersAreCounted()
{
    QCOMPARE(powersOf([] { SRGB_To_SCRGB(0.5); }), 1);
    QCOMPARE(powersOf([] { SCRGB_To_SRGB(0.5); }), 1);
}

void TestColourTables::mixesTakeNoPower()
{
    for (int level = 0; level < 256; ++level) {
        QColor const colour(level, 255 - level, level / 2);
        for (int i = 1; i < 50; ++i) {
            double const value = 0.02 * i;
            QCOMPARE(powersOf([&] { tint(colour, value); }), 0);
            QCOMPARE(powersOf([&] { shade(colour, value); }), 0);
        }
    }
}

void TestColourTables::intensitiesAreWrittenWithoutAPower()
{
    // Sixteen within each of the parts that a table has an entry for, the last one at its end.
    int const count = 16 * 4096;
    SCRGB light {QColor()};
    QColor colour;
    int taken = 0;
    for (int i = 0; i < count; ++i) {
        light.red = light.green = light.blue = (i + 0.9) / count;
        taken += powersOf([&] { light.toColor(colour); });
    }
    QCOMPARE(taken, 0);
}

QTEST_GUILESS_MAIN(TestColourTables)
#include "tst_colourtables.moc"
