// SPDX-License-Identifier: MIT
#include "colourtesting.h"
#include "kpbound.h"
#include "kpdebug.h"
#include "kppathseglineto.h"
#include "kppathsegmoveto.h"

#include <functional>

using Testing::infinite;
using Testing::notANumber;
using RecFile = KpRecentFileManager::RecFile;
using RecFileInfo = KpRecentFileManager::RecFileInfo;

Q_DECLARE_METATYPE(KpReal)

namespace {

QString logged(std::function<void(QDebug&)> const& log)
{
    QString text;
    {
        QDebug debug(&text);
        log(debug);
    }
    return text;
}

template <class Value> QString shown(Value const& value)
{
    return logged([&value](QDebug& debug) { debug.nospace() << value; });
}

/** 1 fixed, 2 fixed */
KpPoint point(double x = 1.0, double y = 2.0)
{
    return KpBound::point(KpBound::absolute(x), KpBound::absolute(y));
}

/** A segment of a client, of a kind that the library does not know. */
class UnknownSegment : public KpPathSegLineTo
{
public:
    UnknownSegment()
        : KpPathSegLineTo(point(), nullptr)
    {
        type = static_cast<SegType>(9);
    }
};

/** Appends a move and a line. */
void fill(KpPathSegList& list)
{
    list.addTail(new KpPathSegMoveTo(point(), nullptr));
    list.addTail(new KpPathSegLineTo(point(3.0, 4.0), nullptr));
}

} // namespace

class TestKpDebug : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsBoundReals_data();
    void showsBoundReals();
    void showsPoints();
    void showsEachKindOfSegment();
    void showsSegmentsOfClients();
    void showsNoSegment();
    void showsOutlines_data();
    void showsOutlines();
    void showsContainersOfSegments();
    void showsPaths();
    void showsColours();
    void showsRecentFiles_data();
    void showsRecentFiles();
    void showsRecentFilesAsTheyAreListed();
    void showsManagersOfRecentFiles();
    void keepsTheSettingsOfTheStream();
    void heedsPrecisionAndQuotes();
};

void TestKpDebug::showsBoundReals_data()
{
    QTest::addColumn<KpReal>("real");
    QTest::addColumn<QString>("text");
    QTest::newRow("absolute") << KpReal(0, 0.0, 7.5) << "7.5 fixed";
    QTest::newRow("absolute with a rate") << KpReal(0, 5.0, 7.0) << "7 fixed (rate 5)";
    QTest::newRow("part of width") << KpReal(1, 1.0, 100.0) << "100 = 1 W";
    QTest::newRow("part of height") << KpReal(2, 0.5, 40.0) << "40 = 0.5 H";
    QTest::newRow("from right") << KpReal(3, 10.0, 110.0) << "110 = W - 10";
    QTest::newRow("right of the right edge") << KpReal(3, -10.0, 130.0) << "130 = W - -10";
    QTest::newRow("from bottom") << KpReal(4, 10.0, 70.0) << "70 = H - 10";
    QTest::newRow("part of side") << KpReal(5, 0.25, 20.0) << "20 = 0.25 M";
    QTest::newRow("from right, part of side") << KpReal(6, 0.25, 100.0) << "100 = W - 0.25 M";
    QTest::newRow("from bottom, part of side") << KpReal(7, 0.25, 60.0) << "60 = H - 0.25 M";
    QTest::newRow("beyond the rules") << KpReal(8, 2.0, 1.0) << "1 by no rule (base 8, rate 2)";
    QTest::newRow("negative rule") << KpReal(-1, 0.0, 1.0) << "1 by no rule (base -1, rate 0)";
    QTest::newRow("not yet computed") << KpReal(1, 0.5, 0.0) << "0 = 0.5 W";
    QTest::newRow("NaN") << KpReal(1, notANumber, notANumber) << "nan = nan W";
    QTest::newRow("absolute with NaN") << KpReal(0, notANumber, 1.0) << "1 fixed (rate nan)";
    QTest::newRow("infinite") << KpReal(3, infinite, -infinite) << "-inf = W - inf";
    QTest::newRow("six digits") << KpReal(1, 1.0 / 3.0, 123456.5) << "123457 = 0.333333 W";
    QTest::newRow("exponents") << KpReal(2, 1e-9, 1e300) << "1e+300 = 1e-09 H";
}

void TestKpDebug::showsBoundReals()
{
    QFETCH(KpReal, real);
    QFETCH(QString, text);
    QCOMPARE(shown(real), text);
}

void TestKpDebug::showsPoints()
{
    QCOMPARE(shown(KpPoint()), QString("(0 fixed, 0 fixed)"));
    QCOMPARE(shown(KpPoint(KpReal(1, 0.5, 60.0), KpReal(4, 0.0, 80.0))),
        QString("(60 = 0.5 W, 80 = H - 0)"));
}

void TestKpDebug::showsEachKindOfSegment()
{
    QCOMPARE(shown(KpPathSegMoveTo(point(), nullptr)), QString("MoveTo(1 fixed, 2 fixed)"));
    QCOMPARE(shown(KpPathSegLineTo(point(), nullptr)), QString("LineTo(1 fixed, 2 fixed)"));
    QCOMPARE(shown(KpPathSegCurveTo(point(3.0, 4.0), point(5.0, 6.0), point(), nullptr)),
        QString("CurveTo(1 fixed, 2 fixed, ctrl1 (3 fixed, 4 fixed), ctrl2 (5 fixed, 6 fixed))"));
    KpPathSegEllipse ellipse(point(), KpReal(1, 0.5, 3.0), KpReal(2, 0.25, 4.0), nullptr);
    ellipse.b = KpReal(5, 0.125, 4.0);
    QCOMPARE(shown(ellipse), QString("Ellipse(1 fixed, 2 fixed, a 3 = 0.5 W, b 4 = 0.125 M)"));
}

void TestKpDebug::showsSegmentsOfClients()
{
    QCOMPARE(shown(UnknownSegment()), QString("KpPathSeg(type 9, 1 fixed, 2 fixed)"));
}

void TestKpDebug::showsNoSegment()
{
    KpPathSeg* none = nullptr;
    QCOMPARE(shown(none), QString("KpPathSeg(0x0)"));
    KpPathSegLineTo line(point(), nullptr);
    QCOMPARE(shown(&line), QString("LineTo(1 fixed, 2 fixed)"));
    KpPathSeg const& base = line;
    QCOMPARE(shown(base), QString("LineTo(1 fixed, 2 fixed)"));
}

void TestKpDebug::showsOutlines_data()
{
    QTest::addColumn<QVector<bool>>("flags"); // closed, noLine, noFill
    QTest::addColumn<QString>("text");
    QTest::newRow("none") << QVector<bool> {false, false, false} << "";
    QTest::newRow("closed") << QVector<bool> {true, false, false} << "closed, ";
    QTest::newRow("no line") << QVector<bool> {false, true, false} << "noLine, ";
    QTest::newRow("no fill") << QVector<bool> {false, false, true} << "noFill, ";
    QTest::newRow("all") << QVector<bool> {true, true, true} << "closed, noLine, noFill, ";
}

void TestKpDebug::showsOutlines()
{
    QFETCH(QVector<bool>, flags);
    QFETCH(QString, text);
    KpPathSegList list;
    list.closed = flags.at(0);
    list.noLine = flags.at(1);
    list.noFill = flags.at(2);
    QCOMPARE(shown(list), "KpPathSegList(" + text + "0 segments)");
    list.addTail(new KpPathSegMoveTo(point(), nullptr));
    QCOMPARE(shown(list), "KpPathSegList(" + text + "1 segment) = {MoveTo(1 fixed, 2 fixed)}");
    list.addTail(new KpPathSegLineTo(point(3.0, 4.0), nullptr));
    QCOMPARE(shown(list),
        "KpPathSegList(" + text
            + "2 segments) = {MoveTo(1 fixed, 2 fixed), LineTo(3 fixed, 4 fixed)}");
}

void TestKpDebug::showsContainersOfSegments()
{
    KpPathSegMoveTo move(point(), nullptr);
    QVector<KpPathSeg*> const segs {&move, nullptr};
    QCOMPARE(shown(segs), QString("QVector(MoveTo(1 fixed, 2 fixed), KpPathSeg(0x0))"));
}

void TestKpDebug::showsPaths()
{
    KpPath path;
    QCOMPARE(shown(path), QString("KpPath(0 elements)"));
    for (int const type : {0, 1, 2, 3, 4, 5, -1})
        path.append({0.5, 2.0, 3.0, 4.0, type});
    QCOMPARE(shown(path),
        QString("KpPath(7 elements) = {MoveTo(0.5, 2), LineTo(0.5, 2), CurveTo(0.5, 2), "
                "CurveData(0.5, 2), Close(0.5, 2), type 5(0.5, 2), type -1(0.5, 2)}"));
}

void TestKpDebug::showsColours()
{
    KpColor const colour =
        ColourTesting::colourOf(QColor(255, 128, 64), QColor(255, 0, 0, 51), -30, 4);
    QCOMPARE(shown(colour),
        QString("KpColor(QColor(ARGB 0.2, 1, 0, 0), theme 4, tint -30, reference #ff8040)"));
}

void TestKpDebug::showsRecentFiles_data()
{
    QTest::addColumn<bool>("pinned");
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("team");
    QTest::addColumn<QString>("text");
    QTest::newRow("automatic") << false << 0 << ""
                               << "RecFile(RecAuto, \"/a/b.x\")";
    QTest::newRow("local") << false << 1 << ""
                           << "RecFile(RecLocal, \"/a/b.x\")";
    QTest::newRow("pinned") << true << 2 << ""
                            << "RecFile(pinned, RecPersonal, \"/a/b.x\")";
    QTest::newRow("team") << false << 3 << "design"
                          << "RecFile(RecTeam, \"/a/b.x\", team \"design\")";
    QTest::newRow("cloud") << false << 4 << ""
                           << "RecFile(RecGoogleDrive, \"/a/b.x\")";
    QTest::newRow("the last type") << false << 5 << ""
                                   << "RecFile(RecDropbox, \"/a/b.x\")";
    QTest::newRow("beyond the types") << true << 6 << ""
                                      << "RecFile(pinned, type 6, \"/a/b.x\")";
    QTest::newRow("negative type") << false << -1 << ""
                                   << "RecFile(type -1, \"/a/b.x\")";
}

void TestKpDebug::showsRecentFiles()
{
    QFETCH(bool, pinned);
    QFETCH(int, type);
    QFETCH(QString, team);
    QFETCH(QString, text);
    QCOMPARE(shown(RecFile {pinned, type, "/a/b.x", team}), text);
}

void TestKpDebug::showsRecentFilesAsTheyAreListed()
{
    QCOMPARE(shown(RecFileInfo {true, 1, "b.x", "a > c", "/a/c/b.x"}),
        QString("RecFileInfo(pinned, RecLocal, \"/a/c/b.x\", name \"b.x\", location \"a > c\")"));
    QCOMPARE(shown(RecFileInfo {false, 9, QString(), QString(), QString()}),
        QString("RecFileInfo(type 9, \"\", name \"\", location \"\")"));
}

void TestKpDebug::showsManagersOfRecentFiles()
{
    KpRecentFileManager manager;
    manager.m_isModified = false;
    manager.m_recentFileFolder = "/a";
    manager.m_libraryFolder = "/b \"c\"";
    manager.m_symbolFolder.clear();
    QString const folders =
        "at most 60, last file from \"/a\", library from \"/b \\\"c\\\"\", symbol from \"\")";
    QCOMPARE(shown(manager), "KpRecentFileManager(0 files, 0 folders, " + folders);
    manager.m_folders << RecFile {false, 1, "/a", QString()};
    QCOMPARE(shown(manager),
        "KpRecentFileManager(0 files, 1 folder, " + folders + " = {RecFile(RecLocal, \"/a\")}");
    manager.m_files << RecFile {true, 1, "/a/b.x", QString()};
    manager.m_isModified = true;
    QCOMPARE(shown(manager),
        "KpRecentFileManager(modified, 1 file, 1 folder, " + folders
            + " = {RecFile(pinned, RecLocal, \"/a/b.x\"), RecFile(RecLocal, \"/a\")}");
}

void TestKpDebug::keepsTheSettingsOfTheStream()
{
    KpPathSegList list;
    fill(list);
    KpPath path;
    path.append({1.0, 2.0, 0.0, 0.0, 0});
    KpPathSeg const* none = nullptr;
    RecFile const file {false, 1, "/a", QString()};
    QCOMPARE(logged([&](QDebug& debug) { debug << 1 << list << path << none << file << 2; }),
        QString("1 KpPathSegList(2 segments) = {MoveTo(1 fixed, 2 fixed), LineTo(3 fixed, 4 "
                "fixed)} KpPath(1 element) = {MoveTo(1, 2)} KpPathSeg(0x0) RecFile(RecLocal, "
                "\"/a\") 2 "));
    QCOMPARE(logged([&](QDebug& debug) {
        debug.nospace() << 1 << point() << KpReal() << KpRecentFileManager::RecFileInfo {} << 2;
    }),
        QString("1(1 fixed, 2 fixed)0 fixedRecFileInfo(RecAuto, \"\", name \"\", location \"\")2"));
}

void TestKpDebug::heedsPrecisionAndQuotes()
{
    QCOMPARE(logged([](QDebug& debug) {
        debug.nospace() << qSetRealNumberPrecision(3) << KpReal(1, 1.0 / 3.0, 2.0 / 3.0) << ' '
                        << 1.0 / 3.0;
    }),
        QString("0.667 = 0.333 W 0.333"));
    QCOMPARE(logged([](QDebug& debug) {
        debug.noquote() << RecFile {false, 1, "/a", QString()} << QString("text");
    }),
        QString("RecFile(RecLocal, /a) text "));
}

QTEST_APPLESS_MAIN(TestKpDebug)
#include "tst_kpdebug.moc"
