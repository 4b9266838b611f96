// SPDX-License-Identifier: MIT
#include "kpfilepathmanager.h"

#include "testing.h"

#include <QCoreApplication>
#include <QDir>
#include <QDomDocument>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTextCodec>
#include <QtTest>

#include <cstdlib>
#include <optional>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/** How many bytes this process has read so far, from whatever file; nothing if that is not counted. */
std::optional<qint64> bytesRead()
{
    QFile counts("/proc/self/io");
    QByteArray const head = "rchar:";
    QByteArray const line = counts.open(QIODevice::ReadOnly) ? counts.readLine() : QByteArray();
    return line.startsWith(head) ? std::optional(line.mid(head.size()).trimmed().toLongLong())
                                 : std::nullopt;
}

} // namespace

class TestKpFilePathManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void configPathCreatesTheDirectoryAndNotTheFile();
    void configPathIsTheSameEachTime();
    void configPathKeepsWhatIsThere();
    void configPathReturnsWhereNoDirectoryCanBe();

    void loadsWellFormedFiles_data();
    void loadsWellFormedFiles();
    void loadsControlCharacters();
    void loadedDocumentReplacesTheOneBefore();
    void refusesOtherFiles_data();
    void refusesOtherFiles();
    void refusesWhatIsNoFile_data();
    void refusesWhatIsNoFile();
    void refusesWhatIsNoRegularFile_data();
    void refusesWhatIsNoRegularFile();
    void loadsThroughALink();
    void loadsAResource();
    void terminalDoesNotTakeOver();
    void firstDescriptorIsAsGoodAsOthers();
    void textInAPipeIsNoFile();
    void refusalsLeaveNothingOpenAndSayNothing();
    void refusesEveryTruncation();
    void refusesAMillionNestedElements();
    void refusesFilesAboveTheGreatestSize();

private:
    QString path(QString const& name) const { return m_directory->filePath(name); }
    QString written(QByteArray const& bytes) const;
    void expectRefused(QString const& fileName) const;

    QScopedPointer<QTemporaryDir> m_directory;
};

void TestKpFilePathManager::initTestCase()
{
    QCoreApplication::setOrganizationName(QStringLiteral("Organization"));
    QCoreApplication::setApplicationName(QStringLiteral("Application"));
}

void TestKpFilePathManager::init()
{
    m_directory.reset(new QTemporaryDir);
    QVERIFY(m_directory->isValid());
    // The user's own configuration stays out of reach.
    QVERIFY(qputenv("XDG_CONFIG_HOME", QFile::encodeName(path("config"))));
}

/** The path of a new file that holds `bytes`. */
QString TestKpFilePathManager::written(QByteArray const& bytes) const
{
    QFile file(path("file.xml"));
    bool const whole =
        file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(bytes) == bytes.size();
    return whole ? file.fileName() : QString();
}

/** The file is not loaded, and takes away what the document held before. */
void TestKpFilePathManager::expectRefused(QString const& fileName) const
{
    QDomDocument document;
    QVERIFY(document.setContent(QByteArray("<before/>")));
    QVERIFY(!KpFilePathManager::loadXmlFile(document, fileName));
    QVERIFY(document.isNull());
    QVERIFY(!document.hasChildNodes());
}

void TestKpFilePathManager::configPathCreatesTheDirectoryAndNotTheFile()
{
    QVERIFY(!QFileInfo::exists(path("config")));
    QString const file = KpFilePathManager::configPath(QStringLiteral("Settings.xml"));
    QCOMPARE(file, path("config/Organization/Application/Settings.xml"));
    QVERIFY(QFileInfo(path("config/Organization/Application")).isDir());
    QVERIFY(!QFileInfo::exists(file));
    QVERIFY(QDir(path("config/Organization/Application")).isEmpty());
}

void TestKpFilePathManager::configPathIsTheSameEachTime()
{
    QString const first = KpFilePathManager::configPath(QStringLiteral("a.xml"));
    QCOMPARE(KpFilePathManager::configPath(QStringLiteral("a.xml")), first);
    QVERIFY(QDir(path("config")).removeRecursively());
    QCOMPARE(KpFilePathManager::configPath(QStringLiteral("a.xml")), first);
    QVERIFY(QFileInfo(QFileInfo(first).path()).isDir());
    QVERIFY(KpFilePathManager::configPath(QStringLiteral("b.xml")) != first);
}

void TestKpFilePathManager::configPathKeepsWhatIsThere()
{
    QString const fileName = KpFilePathManager::configPath(QStringLiteral("a.xml"));
    QFile file(fileName);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write("kept"), qint64(4));
    file.close();
    QCOMPARE(KpFilePathManager::configPath(QStringLiteral("a.xml")), fileName);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("kept"));
}

void TestKpFilePathManager::configPathReturnsWhereNoDirectoryCanBe()
{
    QFile obstacle(path("config"));
    QVERIFY(obstacle.open(QIODevice::WriteOnly));
    QString const file = KpFilePathManager::configPath(QStringLiteral("a.xml"));
    QCOMPARE(file, path("config/Organization/Application/a.xml"));
    QVERIFY(QFileInfo(path("config")).isFile());
    expectRefused(file);
}

void TestKpFilePathManager::loadsWellFormedFiles_data()
{
    QTest::addColumn<QByteArray>("bytes");

    QString const text = QStringLiteral("<Files Name=\"B\u00fccher\"/>");
    QString const declared = QStringLiteral("<?xml version=\"1.0\" encoding=\"%1\"?>") + text;
    QTest::newRow("UTF-8") << text.toUtf8();
    QTest::newRow("UTF-8 with a byte order mark") << "\xef\xbb\xbf" + text.toUtf8();
    QTest::newRow("UTF-8 that says so") << declared.arg("UTF-8").toUtf8();
    QTest::newRow("white space behind the root") << text.toUtf8() + "\r\n \n";
    QTest::newRow("Latin-1") << declared.arg("ISO-8859-1").toLatin1();

    QTextCodec::ConverterState littleEndian;
    QTextCodec::ConverterState bigEndian;
    QString const marked = QChar(QChar::ByteOrderMark) + declared.arg("UTF-16");
    littleEndian.flags = QTextCodec::IgnoreHeader;
    bigEndian.flags = QTextCodec::IgnoreHeader;
    QTest::newRow("UTF-16, low byte first")
        << QTextCodec::codecForName("UTF-16LE")
               ->fromUnicode(marked.constData(), marked.size(), &littleEndian);
    QTest::newRow("UTF-16, high byte first")
        << QTextCodec::codecForName("UTF-16BE")
               ->fromUnicode(marked.constData(), marked.size(), &bigEndian);
}

void TestKpFilePathManager::loadsWellFormedFiles()
{
    QFETCH(QByteArray, bytes);
    QDomDocument document;
    QVERIFY(KpFilePathManager::loadXmlFile(document, written(bytes)));
    QCOMPARE(document.documentElement().tagName(), QStringLiteral("Files"));
    QCOMPARE(document.documentElement().attribute("Name"), QStringLiteral("B\u00fccher"));
}

void TestKpFilePathManager::loadsControlCharacters()
{
    QDomDocument document;
    QVERIFY(KpFilePathManager::loadXmlFile(document, written("<a b='\x01\x1f'>\x02</a>")));
    QCOMPARE(document.documentElement().attribute("b"), QStringLiteral("\x01\x1f"));
    QCOMPARE(document.documentElement().text(), QStringLiteral("\x02"));
}

void TestKpFilePathManager::loadedDocumentReplacesTheOneBefore()
{
    QDomDocument document;
    QVERIFY(KpFilePathManager::loadXmlFile(document, written("<a><b/></a>")));
    QVERIFY(KpFilePathManager::loadXmlFile(document, written("<c/>")));
    QCOMPARE(document.childNodes().count(), 1);
    QCOMPARE(document.documentElement().tagName(), QStringLiteral("c"));
    QVERIFY(!document.documentElement().hasChildNodes());
}

void TestKpFilePathManager::refusesOtherFiles_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QByteArray allBytes;
    for (int i = 0; i < 256; ++i)
        allBytes.append(char(i));
    QByteArray bomb = "<!DOCTYPE a [<!ENTITY e0 \"xxxxxxxxxx\">";
    for (int i = 1; i < 12; ++i) {
        bomb += "<!ENTITY e" + QByteArray::number(i) + " \""
            + QByteArray("&e" + QByteArray::number(i - 1) + ";").repeated(10) + "\">";
    }

    QTest::newRow("empty") << QByteArray();
    QTest::newRow("white space") << QByteArray(" \n\t");
    QTest::newRow("text") << QByteArray("no markup");
    QTest::newRow("binary") << allBytes;
    QTest::newRow("null bytes") << QByteArray(1000, '\0');
    QTest::newRow("declaration only") << QByteArray("<?xml version=\"1.0\"?>");
    QTest::newRow("start tag only") << QByteArray("<a>");
    QTest::newRow("tags that do not match") << QByteArray("<a></b>");
    QTest::newRow("two roots") << QByteArray("<a/><b/>");
    QTest::newRow("text behind the root") << QByteArray("<a/>x");
    QTest::newRow("NUL in an attribute") << QByteArray("<a b='\0'/>", 9);
    QTest::newRow("control character in a name") << QByteArray("<a\x01/>");
    QTest::newRow("reference to a control character") << QByteArray("<a>&#1;</a>");
    QTest::newRow("undeclared entity") << QByteArray("<a>&x;</a>");
    QTest::newRow("attribute twice") << QByteArray("<a b='1' b='2'/>");
    QTest::newRow("Latin-1 that does not say so") << QByteArray("<a b='\xfc'/>");
    QTest::newRow("Latin-1 that says UTF-8")
        << QByteArray("<?xml version='1.0' encoding='UTF-8'?><a b='\xfc'/>");
    QTest::newRow("unknown encoding") << QByteArray("<?xml version='1.0' encoding='x-none'?><a/>");
    QTest::newRow("UTF-16 cut in the middle of a character") << QByteArray("\xff\xfe<\0a\0/\0>", 9);
    QTest::newRow("entity that multiplies") << bomb + "]><a>&e11;</a>";
    QTest::newRow("entity that holds itself")
        << QByteArray("<!DOCTYPE a [<!ENTITY e \"&f;\"><!ENTITY f \"&e;\">]><a>&e;</a>");
}

void TestKpFilePathManager::refusesOtherFiles()
{
    QFETCH(QByteArray, bytes);
    expectRefused(written(bytes));
}

void TestKpFilePathManager::refusesWhatIsNoFile_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("missing file") << "missing.xml";
    QTest::newRow("missing directory") << "missing/file.xml";
    QTest::newRow("directory") << ".";
}

void TestKpFilePathManager::refusesWhatIsNoFile()
{
    QFETCH(QString, name);
    expectRefused(path(name));
    QVERIFY(QDir(path(".")).isEmpty());
}

void TestKpFilePathManager::refusesWhatIsNoRegularFile_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("pipe that nobody writes to") << "pipe";
    QTest::newRow("link to such a pipe") << "link";
    QTest::newRow("device without an end") << "/dev/zero";
    QTest::newRow("device without content") << "/dev/null";
    QTest::newRow("link without a file") << "broken";
}

void TestKpFilePathManager::refusesWhatIsNoRegularFile()
{
    QFETCH(QString, name);
    QCOMPARE(::mkfifo(QFile::encodeName(path("pipe")).constData(), 0600), 0);
    QVERIFY(QFile::link("pipe", path("link")));
    QVERIFY(QFile::link("nothing", path("broken")));
    expectRefused(name.startsWith('/') ? name : path(name));
}

void TestKpFilePathManager::loadsThroughALink()
{
    QVERIFY(QFile::link(written("<a/>"), path("link.xml")));
    QDomDocument document;
    QVERIFY(KpFilePathManager::loadXmlFile(document, path("link.xml")));
    QCOMPARE(document.documentElement().tagName(), QStringLiteral("a"));
}

void TestKpFilePathManager::loadsAResource()
{
    QDomDocument document;
    QVERIFY(KpFilePathManager::loadXmlFile(document, ":/kpfilepathmanager/document.xml"));
    QCOMPARE(document.documentElement().attribute("Name"), QString("resource"));
    expectRefused(":/kpfilepathmanager/missing.xml");
}

/** A session without a terminal does not get one by opening it. */
void TestKpFilePathManager::terminalDoesNotTakeOver()
{
    pid_t const child = fork();
    if (child == 0) {
        int const master = setsid() < 0 ? -1 : posix_openpt(O_RDWR | O_NOCTTY);
        if (master < 0 || grantpt(master) != 0 || unlockpt(master) != 0)
            _exit(1);
        QDomDocument document;
        if (KpFilePathManager::loadXmlFile(document, ptsname(master)))
            _exit(2);
        _exit(open("/dev/tty", O_RDWR) < 0 ? 0 : 3);
    }
    int status = -1;
    QCOMPARE(waitpid(child, &status, 0), child);
    QVERIFY(WIFEXITED(status));
    QCOMPARE(WEXITSTATUS(status), 0);
}

void TestKpFilePathManager::firstDescriptorIsAsGoodAsOthers()
{
    QString const file = written("<a/>");
    pid_t const child = fork();
    if (child == 0) {
        close(0);
        QDomDocument document;
        _exit(KpFilePathManager::loadXmlFile(document, file) ? 0 : 1);
    }
    int status = -1;
    QCOMPARE(waitpid(child, &status, 0), child);
    QCOMPARE(status, 0);
}

void TestKpFilePathManager::textInAPipeIsNoFile()
{
    QByteArray const pipe = QFile::encodeName(path("pipe"));
    QCOMPARE(mkfifo(pipe.constData(), 0600), 0);
    int const reader = open(pipe.constData(), O_RDONLY | O_NONBLOCK);
    int const writer = open(pipe.constData(), O_WRONLY);
    QCOMPARE(write(writer, "<a/>", 4), ssize_t(4));
    close(writer);
    expectRefused(path("pipe"));
    close(reader);
}

void TestKpFilePathManager::refusalsLeaveNothingOpenAndSayNothing()
{
    auto const descriptors = [] {
        return QDir("/proc/self/fd")
            .entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
    };
    QStringList const before = descriptors();
    Testing::MessageWatch watch;
    expectRefused(path("missing.xml"));
    expectRefused(path("."));
    expectRefused("/dev/null");
    VERIFY_NOTHING_LOGGED(watch);
    watch.stop();
    QCOMPARE(descriptors(), before);
}

void TestKpFilePathManager::refusesEveryTruncation()
{
    QByteArray const text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                            "<RecentFiles Version=\"1\">\n"
                            "  <File Path=\"folder/\xc3\xa4&amp;b\"><!-- c --></File>\n"
                            "</RecentFiles>";
    QDomDocument document;
    QVERIFY(KpFilePathManager::loadXmlFile(document, written(text)));
    for (int size = 0; size < text.size(); ++size) {
        expectRefused(written(text.left(size)));
        QVERIFY2(!QTest::currentTestFailed(), text.left(size).constData());
    }
}

void TestKpFilePathManager::refusesAMillionNestedElements()
{
    int const depth = 1000000;
    expectRefused(written(QByteArray("<a>").repeated(depth) + QByteArray("</a>").repeated(depth)));
}

void TestKpFilePathManager::refusesFilesAboveTheGreatestSize()
{
    QString const fileName = written("<a/>");
    // The file takes no room on the disk: its end is a hole.
    QVERIFY(QFile::resize(fileName, qint64(1) << 40));
    auto const before = bytesRead();
    if (!before) {
        // QSKIP needs an extension of the language.
        QTest::qSkip("what is read is not counted here", __FILE__, __LINE__);
        return;
    }
    expectRefused(fileName);
    // It is not read further than the largest file may be, and what counts that takes little.
    qint64 const read = *bytesRead() - *before;
    QVERIFY2(read < (65 << 20), qPrintable(QString::number(read)));
}

QTEST_GUILESS_MAIN(TestKpFilePathManager)
#include "tst_kpfilepathmanager.moc"
