// SPDX-License-Identifier: MIT
#include "model/viewsettings.h"

#include "testing.h"

class TestViewSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void beginsWithMillimetresOnA4();
    void takesKnownUnitsOnly();
    void turnsThePage();
    void tellsOfChangesOnly();
};

void TestViewSettings::beginsWithMillimetresOnA4()
{
    ViewSettings const settings;
    QCOMPARE(settings.unit(), 1U);
    QVERIFY(!settings.isLandscape());
    QVERIFY(settings.showsHandles() && settings.showsRulers() && settings.showsPage());
    // 210 by 297 mm at 96 pixels an inch.
    QVERIFY(std::abs(settings.pageSize().width() - 793.7) < 1.0);
    QVERIFY(std::abs(settings.pageSize().height() - 1122.5) < 1.0);
}

void TestViewSettings::takesKnownUnitsOnly()
{
    ViewSettings settings;
    for (unsigned int unit = 0; unit <= 13; ++unit) {
        settings.setUnit(unit);
        QCOMPARE(settings.unit(), unit);
    }
    settings.setUnit(14);
    settings.setUnit(std::numeric_limits<unsigned int>::max());
    QCOMPARE(settings.unit(), 13U);
}

void TestViewSettings::turnsThePage()
{
    ViewSettings settings;
    QSizeF const upright = settings.pageSize();
    settings.setPage(settings.page(), true);
    QCOMPARE(settings.pageSize(), upright.transposed());
    settings.setPage(-7, false);
    QCOMPARE(settings.pageSize(), upright);
}

void TestViewSettings::tellsOfChangesOnly()
{
    ViewSettings settings;
    QSignalSpy const spy(&settings, &ViewSettings::changed);
    settings.setUnit(settings.unit());
    settings.setPage(settings.page(), settings.isLandscape());
    settings.setShowsPage(true);
    settings.setShowsHandles(true);
    settings.setShowsRulers(true);
    QCOMPARE(spy.count(), 0);
    settings.setUnit(3);
    settings.setPage(settings.page(), true);
    settings.setPage(0, true);
    settings.setShowsPage(false);
    settings.setShowsHandles(false);
    settings.setShowsRulers(false);
    QCOMPARE(spy.count(), 6);
}

QTEST_GUILESS_MAIN(TestViewSettings)
#include "tst_kpshapes_viewsettings.moc"
