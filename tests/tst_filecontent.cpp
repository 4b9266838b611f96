// SPDX-License-Identifier: MIT
#include "common/filecontent.h"
#include "testing.h"

#include <QBuffer>
#include <QFile>
#include <QTemporaryDir>

#include <array>
#include <csignal>
#include <pty.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

QStringList linesOf(Diagnostics const& diagnostics)
{
    QStringList lines;
    for (Diagnostic const& diagnostic : diagnostics) {
        bool const isError = diagnostic.severity == Diagnostic::Severity::Error;
        lines << (isError ? diagnostic.file + ": " + diagnostic.text : "no error");
    }
    return lines;
}

/** What stands in a folder, hidden files too. */
QStringList entriesOf(QTemporaryDir const& folder)
{
    return QDir(folder.path())
        .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
}

QByteArray contentIn(QString const& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("it cannot be opened");
}

/** While it lives, no file can grow beyond this size: as on a disk that is full. */
class SizeLimit
{
public:
    explicit SizeLimit(rlim_t size)
        : m_handler(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &m_usual);
        rlimit const lower {size, m_usual.rlim_max};
        setrlimit(RLIMIT_FSIZE, &lower);
    }
    ~SizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &m_usual);
        std::signal(SIGXFSZ, m_handler);
    }
    SizeLimit(SizeLimit const&) = delete;
    SizeLimit& operator=(SizeLimit const&) = delete;

private:
    void (*m_handler)(int);
    rlimit m_usual {};
};

/** A device that fails after its first bytes. */
class FailingDevice : public QIODevice
{
public:
    FailingDevice() { open(QIODevice::ReadOnly | QIODevice::Unbuffered); }
    bool isSequential() const override { return true; }

protected:
    qint64 readData(char* data, qint64) override
    {
        if (m_isRead) {
            setErrorString("the cable is out");
            return -1;
        }
        m_isRead = true;
        *data = 'a';
        return 1;
    }
    qint64 writeData(char const*, qint64) override { return -1; }

private:
    bool m_isRead = false;
};

} // namespace

class TestFileContent : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writesAndReadsWhole_data();
    void writesAndReadsWhole();
    void writesNothingRatherThanAPart();
    void piecesAreWrittenAsAWhole();
    void noPieceIsLost();
    void keepsPermissionsAndLinks();
    void writesIntoDevicesAndPipes();
    void tellsWhyItCannotWrite_data();
    void tellsWhyItCannotWrite();
    void tellsWhyItCannotRead_data();
    void tellsWhyItCannotRead();
    void refusesInexactNames();
    void onlyFilesAreEdited_data();
    void onlyFilesAreEdited();
    void readsOpenDevices();
};

void TestFileContent::writesAndReadsWhole_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << QByteArray("");
    QTest::newRow("lines of every kind") << QByteArray("a\nb\r\nc\rd");
    QTest::newRow("every byte") << [] {
        QByteArray bytes;
        for (int i = 0; i < 256; ++i)
            bytes += char(i);
        return bytes;
    }();
    QTest::newRow("a million bytes") << QByteArray(1000000, 'x');
}

void TestFileContent::writesAndReadsWhole()
{
    QFETCH(QByteArray, content);
    QTemporaryDir const folder;
    QString const file = folder.filePath(QStringLiteral("a \u00e4"));
    Diagnostics diagnostics;
    QVERIFY(writeFile(file, "what stood there before", diagnostics));
    QVERIFY(writeFile(file, content, diagnostics));
    QCOMPARE(contentIn(file), content);
    auto const read = readFile(file, diagnostics);
    QVERIFY(read.has_value());
    QCOMPARE(*read, content);
    QCOMPARE(linesOf(diagnostics), QStringList());
    QCOMPARE(entriesOf(folder).size(), 1);
}

void TestFileContent::writesNothingRatherThanAPart()
{
    QTemporaryDir const folder;
    QString const file = folder.filePath("a");
    Diagnostics diagnostics;
    QVERIFY(writeFile(file, "old", diagnostics));
    bool isWritten = true;
    bool isNewWritten = true;
    {
        SizeLimit const limit(1000);
        isWritten = writeFile(file, QByteArray(100000, 'n'), diagnostics);
        isNewWritten = writeFile(folder.filePath("b"), QByteArray(100000, 'n'), diagnostics);
    }
    QVERIFY(!isWritten);
    QVERIFY(!isNewWritten);
    QCOMPARE(linesOf(diagnostics),
        QStringList({file + ": File too large", folder.filePath("b") + ": File too large"}));
    QCOMPARE(contentIn(file), QByteArray("old"));
    QCOMPARE(entriesOf(folder), QStringList("a"));
}

void TestFileContent::piecesAreWrittenAsAWhole()
{
    QTemporaryDir const folder;
    QString const file = folder.filePath("a");
    Diagnostics diagnostics;
    QVERIFY(writeFile(file, "old", diagnostics));
    {
        auto const output = OutputFile::open(file, diagnostics);
        QVERIFY(output);
        output->device().write("one, ");
        QCOMPARE(contentIn(file), QByteArray("old"));
        output->device().write("two");
        QVERIFY(output->commit(diagnostics));
    }
    QCOMPARE(contentIn(file), QByteArray("one, two"));
    {
        auto const output = OutputFile::open(file, diagnostics);
        QVERIFY(output);
        output->device().write("never");
    }
    QCOMPARE(contentIn(file), QByteArray("one, two"));
    QCOMPARE(entriesOf(folder), QStringList("a"));
    QCOMPARE(linesOf(diagnostics), QStringList());
}

void TestFileContent::noPieceIsLost()
{
    QTemporaryDir const folder;
    QString const file = folder.filePath("a");
    Diagnostics diagnostics;
    bool isWritten = true;
    {
        auto const output = OutputFile::open(file, diagnostics);
        QVERIFY(output);
        {
            SizeLimit const limit(100000);
            output->device().write(QByteArray(200000, 'x'));
        }
        // There is room again, but something is missing.
        output->device().write("end");
        isWritten = output->commit(diagnostics);
    }
    QVERIFY(!isWritten);
    QCOMPARE(linesOf(diagnostics), QStringList(file + ": File too large"));
    QCOMPARE(entriesOf(folder), QStringList());
}

void TestFileContent::keepsPermissionsAndLinks()
{
    QTemporaryDir const folder;
    QString const file = folder.filePath("a");
    QString const link = folder.filePath("link");
    Diagnostics diagnostics;
    QVERIFY(writeFile(file, "old", diagnostics));
    QCOMPARE(chmod(file.toLocal8Bit().constData(), 0640), 0);
    QCOMPARE(symlink("a", link.toLocal8Bit().constData()), 0);
    QVERIFY(writeFile(link, "new", diagnostics));
    QVERIFY(QFileInfo(link).isSymLink());
    QCOMPARE(contentIn(file), QByteArray("new"));
    struct stat facts
    {
    };
    QCOMPARE(stat(file.toLocal8Bit().constData(), &facts), 0);
    QCOMPARE(int(facts.st_mode & 07777), 0640);
    QCOMPARE(linesOf(diagnostics), QStringList());
}

void TestFileContent::writesIntoDevicesAndPipes()
{
    Diagnostics diagnostics;
    // A terminal's own: nothing can replace a device among these, whoever tries.
    int screen = -1;
    int terminal = -1;
    std::array<char, 256> device {};
    QCOMPARE(openpty(&screen, &terminal, device.data(), nullptr, nullptr), 0);
    bool const isWritten = writeFile(QFile::decodeName(device.data()), "text", diagnostics);
    std::array<char, 5> shown {};
    ssize_t const size = isWritten ? read(screen, shown.data(), 4) : 0;
    close(terminal);
    close(screen);
    QCOMPARE(linesOf(diagnostics), QStringList());
    QVERIFY(isWritten);
    QCOMPARE(QByteArray(shown.data(), int(size)), QByteArray("text"));

    QTemporaryDir const folder;
    QString const pipe = folder.filePath("pipe");
    QByteArray const name = pipe.toLocal8Bit();
    QCOMPARE(mkfifo(name.constData(), 0600), 0);
    // Open for both, so that neither end waits for the other.
    QFile reader(pipe);
    QVERIFY(reader.open(QIODevice::ReadWrite | QIODevice::Unbuffered));
    QVERIFY(writeFile(pipe, "text", diagnostics));
    QCOMPARE(reader.read(4), QByteArray("text"));
    QCOMPARE(entriesOf(folder), QStringList("pipe"));
    QCOMPARE(linesOf(diagnostics), QStringList());
}

void TestFileContent::tellsWhyItCannotWrite_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("reason");
    QTest::newRow("folder") << "folder"
                            << "is a directory";
    QTest::newRow("link to a folder") << "linked"
                                      << "is a directory";
    QTest::newRow("in a folder that is missing") << "none/a"
                                                 << "No such file or directory";
    QTest::newRow("in a file") << "file/a"
                               << "Not a directory";
    QTest::newRow("name too long") << QString(300, 'a') << "File name too long";
}

void TestFileContent::tellsWhyItCannotWrite()
{
    QFETCH(QString, name);
    QFETCH(QString, reason);
    QTemporaryDir const folder;
    QVERIFY(QDir(folder.path()).mkdir("folder"));
    QVERIFY(QFile::link("folder", folder.filePath("linked")));
    Diagnostics diagnostics;
    QVERIFY(writeFile(folder.filePath("file"), "old", diagnostics));
    QStringList const before = entriesOf(folder);
    QString const file = folder.filePath(name);
    QVERIFY(!writeFile(file, "text", diagnostics));
    QCOMPARE(linesOf(diagnostics), QStringList(file + ": " + reason));
    QCOMPARE(entriesOf(folder), before);
    QCOMPARE(contentIn(folder.filePath("file")), QByteArray("old"));
}

void TestFileContent::tellsWhyItCannotRead_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("reason");
    QTest::newRow("missing") << "none"
                             << "No such file or directory";
    QTest::newRow("folder") << "folder"
                            << "file to open is a directory";
    QTest::newRow("in a file") << "file/a"
                               << "Not a directory";
}

void TestFileContent::tellsWhyItCannotRead()
{
    QFETCH(QString, name);
    QFETCH(QString, reason);
    QTemporaryDir const folder;
    QVERIFY(QDir(folder.path()).mkdir("folder"));
    Diagnostics diagnostics;
    QVERIFY(writeFile(folder.filePath("file"), "old", diagnostics));
    QString const file = folder.filePath(name);
    QVERIFY(!readFile(file, diagnostics).has_value());
    QCOMPARE(linesOf(diagnostics), QStringList(file + ": " + reason));
}

void TestFileContent::refusesInexactNames()
{
    QTemporaryDir const folder;
    // Half a character, for which Qt would take the name of the file that is there.
    QString const file = folder.filePath(QString("a") + QChar(0xd800));
    QString const other = QFile::decodeName(QFile::encodeName(file));
    QFile present(other);
    QVERIFY(present.open(QIODevice::WriteOnly));
    present.close();
    QStringList const refused(file + ": the name is not valid text");

    Diagnostics ofRead;
    QVERIFY(!readFile(file, ofRead).has_value());
    QCOMPARE(linesOf(ofRead), refused);
    Diagnostics ofWrite;
    QVERIFY(!writeFile(file, "text", ofWrite));
    QCOMPARE(linesOf(ofWrite), refused);
    QCOMPARE(contentIn(other), QByteArray());
    Diagnostics ofName;
    QVERIFY(!isNameExact(file, ofName));
    QCOMPARE(linesOf(ofName), refused);
    Diagnostics none;
    QVERIFY(isNameExact(folder.filePath(QStringLiteral("a\u00e4\ufffd")), none));
    QVERIFY(none.isEmpty());
}

void TestFileContent::onlyFilesAreEdited_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isFile");
    QTest::newRow("file") << "file" << true;
    QTest::newRow("link to a file") << "link" << true;
    QTest::newRow("folder") << "folder" << false;
    QTest::newRow("device") << "/dev/null" << false;
    QTest::newRow("pipe") << "pipe" << false;
}

void TestFileContent::onlyFilesAreEdited()
{
    QFETCH(QString, name);
    QFETCH(bool, isFile);
    QTemporaryDir const folder;
    QVERIFY(QDir(folder.path()).mkdir("folder"));
    QVERIFY(QFile::link("file", folder.filePath("link")));
    QCOMPARE(mkfifo(QFile::encodeName(folder.filePath("pipe")).constData(), 0600), 0);
    QString const file = QDir(folder.path()).filePath(name);
    Diagnostics none;
    QVERIFY(writePlainFile(folder.filePath("file"), "old", none));
    QVERIFY(none.isEmpty());

    QStringList const refused(file + ": is no file that can be edited");
    Diagnostics ofRead;
    std::optional<QByteArray> const content = readPlainFile(file, ofRead);
    QCOMPARE(content, isFile ? std::optional<QByteArray>("old") : std::nullopt);
    QCOMPARE(linesOf(ofRead), isFile ? QStringList() : refused);
    Diagnostics ofWrite;
    QCOMPARE(writePlainFile(file, "new", ofWrite), isFile);
    QCOMPARE(linesOf(ofWrite), isFile ? QStringList() : refused);
    QCOMPARE(contentIn(folder.filePath("file")), QByteArray(isFile ? "new" : "old"));

    Diagnostics ofMissing;
    QVERIFY(!readPlainFile(folder.filePath("none"), ofMissing));
    QCOMPARE(
        linesOf(ofMissing), QStringList(folder.filePath("none") + ": No such file or directory"));
}

void TestFileContent::readsOpenDevices()
{
    QBuffer buffer;
    buffer.setData("text");
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    Diagnostics diagnostics;
    auto const content = contentOf(buffer, "its name", diagnostics);
    QVERIFY(content.has_value());
    QCOMPARE(*content, QByteArray("text"));
    QVERIFY(diagnostics.isEmpty());

    FailingDevice failing;
    QVERIFY(!contentOf(failing, "its name", diagnostics).has_value());
    QCOMPARE(linesOf(diagnostics), QStringList("its name: the cable is out"));
}

QTEST_GUILESS_MAIN(TestFileContent)

#include "tst_filecontent.moc"
