// SPDX-License-Identifier: MIT
#include "colorutil.h"
#include "kpcolor.h"
#include "kppathseglist.h"
#include "kprecentfilemanager.h"
#include "kpversion.h"
#include "md5.h"
#include "outlinetesting.h"
#include "recentfilestesting.h"
#include "unitutil.h"

#include <QProcess>

#include <cstdio>

#include <unistd.h>

using namespace RecentFilesTesting;

namespace {

void say(QString const& line)
{
    std::fprintf(stdout, "%s\n", line.toUtf8().constData());
}

void useRecentFiles(KpRecentFileManager& manager)
{
    manager.addOpenFileInfo(manager.m_symbolFolder + "/plans/house.x", 0, "");
    manager.addSaveFileInfo("u#$#/Dropbox/garden.x", 0, "");
    manager.moveRecentFileTop(1);
    QVector<RecFileInfo> infos;
    manager.getRecentFiles(infos);
    manager.getRecentFolder(infos);
    for (RecFileInfo const& info : infos)
        say(QString("%1%2 in %3").arg(info.isTop ? "*" : "", info.name, info.location));
    manager.m_libraryFolder = QString::fromUtf8("/B\xc3\xbc"
                                                "cher");
    manager.save();
    KpRecentFileManager::s_isLoaded = false;
    KpRecentFileManager loaded;
    loaded.load();
    say(QString("%1 files read, %2").arg(loaded.m_files.size()).arg(loaded.m_libraryFolder));
}

void useOutline(KpPathSegList& list)
{
    QByteArray const xml = "<Geometry Closed='1'><MoveTo><X V='1'/><Y V='2'/></MoveTo>"
                           "<LineTo><X V='3'/><Y V='4'/></LineTo>"
                           "<CurveTo><X V='5'/><Y V='6'/><A V='7'/><D V='8'/></CurveTo>"
                           "<Ellipse><X V='5'/><Y V='6'/><A V='7'/><B V='8'/></Ellipse></Geometry>";
    QXmlStreamReader reader(xml);
    reader.readNextStartElement();
    list.parse(reader, 0);
    list.parse(OutlineTesting::domElement(xml), 0);
    // Neighbours, seen from either end: the start of a segment is the end of the one before it.
    say(QString("%1 segments, from %2, last %3")
            .arg(list.segs.size())
            .arg(list.segs.at(1)->startPt().x())
            .arg(list.segs.last()->isLastSeg()));
    QVector<int> ints;
    QVector<double> doubles;
    list.toUndoValue(ints, doubles);
    int at = 0;
    int doubleAt = 0;
    KpPathSegList restored;
    restored.fromUndoValue(ints, doubles, at, doubleAt, list.segs.size());
    QByteArray text;
    XmlStreamWriter writer(&text);
    restored.saveTo(writer);
    QDomDocument document;
    QDomElement root = document.createElement("Shape");
    list.saveTo(root);
    say(QString("%1 bytes, %2 elements")
            .arg(text.size())
            .arg(root.firstChildElement().childNodes().size()));
}

void useColours(KpColor& colour)
{
    for (char const* const name : {"tint", "satMod", "lumOff"})
        ColorUtil::getColorFunc(name)(colour, 0.5);
    QDomDocument document;
    QDomElement root = document.createElement("Fill");
    colour.saveTo(root, QString());
    say(QString("%1 transforms, %2, %3")
            .arg(ColorUtil::mapColorFuncs.size())
            .arg(ColorUtil::RGBToString(colour), root.firstChildElement().tagName()));
}

void useTheRest()
{
    KpVersion::s_fontFamilyList << "Serif";
    say(QString("%1 px, %2 fonts, digest of %3")
            .arg(UnitUtil::unitToPixel(1.0, 5))
            .arg(KpVersion::s_fontFamilyList.size())
            .arg(MD5(std::string("abc")).toString().size()));
}

/** Not in ASCII: a file name needs its encoding at exit, too. */
char const applicationName[] = "\xc3\x84pplication";

bool isChild = false; ///< whether the objects below use the library when they are destroyed

/** Destroyed after what was first used in main(), and before what was made before it. */
class User
{
public:
    ~User()
    {
        if (!isChild)
            return;
        // Not a member, which would have used what it needs before main().
        KpRecentFileManager manager;
        useRecentFiles(manager);
        useOutline(m_list);
        useColours(m_colour);
        useTheRest();
    }

private:
    KpPathSegList m_list;
    KpColor m_colour {QColor(71, 142, 222)};
};

User user;

} // namespace

/** The library used by destructors that run at exit. */
class TestUseAtExit : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everythingWorks_data();
    void everythingWorks();
};

void TestUseAtExit::everythingWorks_data()
{
    QTest::addColumn<QString>("mode");
    QTest::newRow("used for the first time") << "first";
    QTest::newRow("used before") << "again";
}

void TestUseAtExit::everythingWorks()
{
    QFETCH(QString, mode);
    Home const home;
    QProcess child;
    child.start(QCoreApplication::applicationFilePath(), {"--child", mode});
    QVERIFY(child.waitForFinished());
    QCOMPARE(QString::fromUtf8(child.readAllStandardError()), QString());
    QStringList const lines =
        QString::fromUtf8(child.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts);
    QStringList expected {
        "*house.x in Papers>plans",
        "garden.x in >Dropbox",
        "plans in Papers>plans",
        QString::fromUtf8("2 files read, /B\xc3\xbc"
                          "cher"),
        "8 segments, from 1, last 1",
        "792 bytes, 8 elements",
        "28 transforms, #FFFFFF, Color",
        "96 px, 1 fonts, digest of 32",
    };
    if (mode == "again") {
        QStringList const before = expected;
        expected.last().replace("1 fonts", "2 fonts");
        expected = before + expected;
    }
    QCOMPARE(lines, expected);
    QByteArray const saved =
        QFile::encodeName(home.path()) + "/config/" + applicationName + "/RecentFiles.xml";
    QCOMPARE(access(saved.constData(), R_OK), 0);
    QCOMPARE(child.exitStatus(), QProcess::NormalExit);
    QCOMPARE(child.exitCode(), 0);
}

int main(int argc, char* argv[])
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QString::fromUtf8(applicationName));
    QStringList const arguments = application.arguments();
    if (arguments.value(1) != "--child") {
        TestUseAtExit test;
        return QTest::qExec(&test, argc, argv);
    }
    isChild = true;
    if (arguments.value(2) == "again") {
        KpRecentFileManager manager;
        useRecentFiles(manager);
        KpPathSegList list;
        useOutline(list);
        KpColor colour(QColor(71, 142, 222));
        useColours(colour);
        useTheRest();
    }
    return 0;
}

#include "tst_useatexit.moc"
