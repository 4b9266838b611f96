// SPDX-License-Identifier: MIT
#include "process/filenames.h"
#include "testing.h"

#include <QDir>
#include <QImage>
#include <QProcess>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>

/** The program's command line, and what is installed beside it. */
class TestKpshapesProgram : public QObject
{
    Q_OBJECT

private:
    struct Result
    {
        int exitCode;
        QString out;
        QString err;
    };

    QTemporaryDir m_folder;

    Result run(QStringList const& arguments, bool hasDisplay = true) const
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("XDG_CONFIG_HOME", m_folder.filePath("config"));
        environment.insert("XDG_DATA_HOME", m_folder.filePath("data"));
        environment.insert("XDG_RUNTIME_DIR", m_folder.path());
        environment.insert("QT_QPA_PLATFORM", hasDisplay ? "offscreen" : "xcb");
        environment.remove("DISPLAY");
        QProcess process;
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(m_folder.path());
        process.start(KPSHAPES_EXECUTABLE, arguments);
        bool const isFinished = process.waitForFinished(60000);
        return {
            isFinished && process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
    }

private Q_SLOTS:
    void initTestCase() { keepFileNamesExact(); }

    void helpAndVersionNeedNoDisplay()
    {
        Result const version = run({"--version"}, false);
        QCOMPARE(version.exitCode, 0);
        QCOMPARE(version.out, QString("kpshapes " KPSHAPES_VERSION "\n"));
        Result const help = run({"-h"}, false);
        QCOMPARE(help.exitCode, 0);
        for (QString const option : {"--help", "--version", "--colours", "--picture", "FILE"})
            QVERIFY2(help.out.contains(option), qPrintable(option));
    }

    void whatIsNotUnderstoodIsSaid_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("message");
        QTest::newRow("option") << QStringList {"--foo"} << "kpshapes: Unknown option 'foo'.\n";
        QTest::newRow("colours") << QStringList {"--colours", "pink"}
                                 << "kpshapes: --colours takes system, light, dark or "
                                    "high-contrast\n";
    }

    void whatIsNotUnderstoodIsSaid()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, message);
        Result const result = run(arguments);
        QCOMPARE(result.exitCode, 2);
        QVERIFY2(result.err.endsWith(message), qPrintable(result.err));
    }

    void theWindowIsDrawnInItsColours_data()
    {
        QTest::addColumn<QString>("colours");
        QTest::addColumn<QRgb>("ground");
        QTest::newRow("light") << "light" << 0xfff3f4f6;
        QTest::newRow("dark") << "dark" << 0xff23272e;
        QTest::newRow("high contrast") << "high-contrast" << 0xff000000;
    }

    void theWindowIsDrawnInItsColours()
    {
        QFETCH(QString, colours);
        QFETCH(QRgb, ground);
        QString const picture = m_folder.filePath(colours + ".png");
        QCOMPARE(run({"--colours", colours, "--picture", picture}).exitCode, 0);
        QImage const drawn(picture);
        QVERIFY(drawn.width() >= 800);
        // The empty part of the line of menus.
        QCOMPARE(drawn.pixel(drawn.width() - 40, 4), ground);
    }

    void aFileNameIsItsBytes_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("a byte-order mark") << QString(QChar(0xfeff)) + "a.png";
        QTest::newRow("a byte that is no text") << QString(QChar(0xdcff)) + "a.png";
        QTest::newRow("a colon") << ":a.png";
    }

    void aFileNameIsItsBytes()
    {
        QFETCH(QString, name);
        QCOMPARE(run({"--picture", name}).exitCode, 0);
        QVERIFY(QDir(m_folder.path()).entryList(QDir::Files).contains(name));
        QVERIFY(QFile::remove(m_folder.filePath("./" + name)));
    }

    void aMessageStaysOnItsLine()
    {
        QString const err = run({"--picture", "missing\n/a.png"}).err;
        QString const line = QString("kpshapes: missing%1/a.png: No such file or directory\n")
                                 .arg(QChar(QChar::ReplacementCharacter));
        QVERIFY2(err.endsWith(line), qPrintable(err));
    }

    void aPictureThatCannotBeWrittenIsSaid()
    {
        Result const result = run({"--picture", m_folder.filePath("missing/a.png")});
        QCOMPARE(result.exitCode, 1);
        QVERIFY2(result.err.contains("missing/a.png: No such file or directory\n"),
            qPrintable(result.err));
    }

    void theManualIsFreeOfWarningsAndNamesEveryOption()
    {
        QProcess man;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("MANWIDTH", "80");
        environment.insert("MANROFFSEQ", "");
        environment.insert("LC_ALL", "C.UTF-8");
        man.setProcessEnvironment(environment);
        man.start("man", {"--warnings", "-E", "UTF-8", "-l", KPSHAPES_DATA "/kpshapes.1"});
        QVERIFY(man.waitForFinished());
        QCOMPARE(man.exitCode(), 0);
        QCOMPARE(man.readAllStandardError(), QByteArray());
        QByteArray const text = man.readAllStandardOutput();
        for (char const* const option : {"--help", "--version", "--colours", "--picture"})
            QVERIFY2(text.contains(option), option);
    }

    void theDesktopEntryNamesTheProgramAndItsIcon()
    {
        QSettings const entry(KPSHAPES_DATA "/kpshapes.desktop", QSettings::IniFormat);
        QCOMPARE(entry.value("Desktop Entry/Type").toString(), QString("Application"));
        QCOMPARE(entry.value("Desktop Entry/Exec").toString(), QString("kpshapes %F"));
        QCOMPARE(entry.value("Desktop Entry/Icon").toString(), QString("kpshapes"));
    }
};

QTEST_MAIN(TestKpshapesProgram)
#include "tst_kpshapes_program.moc"
