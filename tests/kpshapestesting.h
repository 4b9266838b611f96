// SPDX-License-Identifier: MIT
#ifndef KPSHAPESTESTING_H
#define KPSHAPESTESTING_H

#include <QApplication>
#include <QtTest>

/**
 * The main() of a test program that shows widgets: high DPI as kpshapes itself has it, and the
 * style that is the same everywhere.
 */
#define KPSHAPES_TEST_MAIN(TestClass)                                                              \
    int main(int argc, char** argv)                                                                \
    {                                                                                              \
        QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);                                  \
        QGuiApplication::setHighDpiScaleFactorRoundingPolicy(                                      \
            Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);                                    \
        QApplication application(argc, argv);                                                      \
        QApplication::setStyle(QStringLiteral("Fusion"));                                          \
        TestClass test;                                                                            \
        QTEST_SET_MAIN_SOURCE_PATH                                                                 \
        return QTest::qExec(&test, argc, argv);                                                    \
    }

#endif // KPSHAPESTESTING_H
