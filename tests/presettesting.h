// SPDX-License-Identifier: MIT
#ifndef PRESETTESTING_H
#define PRESETTESTING_H

#include <QtTest>

/** What the tests share that read the preset shapes of the standard. */
namespace PresetTesting {

/**
 * The row of a test that takes the file of the preset shapes: what KPGEOMETRY_PRESETS names in the
 * environment. If it names none, the test is skipped; if that file is not there, it must fail.
 */
inline void addFile()
{
    QTest::addColumn<QString>("file");
    QString const file = qEnvironmentVariable("KPGEOMETRY_PRESETS");
    if (file.isEmpty())
        QTest::qSkip(
            "KPGEOMETRY_PRESETS names no file; scripts/presets fetches one", __FILE__, __LINE__);
    else
        QTest::newRow("all") << file;
}

} // namespace PresetTesting

#endif // PRESETTESTING_H
