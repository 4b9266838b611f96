// SPDX-License-Identifier: MIT
// Any arguments of kpgeom, a line each, and standard input behind a NUL, in a folder with a few small
// files: the tool ends with a status that it promises, says why unless all is well, and leaves
// nothing of its own behind.

#include "choices.h"
#include "common/fonts.h"
#include "common/text.h"
#include "fuzzing.h"
#include "guiapplication.h"
#include "tool.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QImage>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <sanitizer/common_interface_defs.h>

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

namespace {

using Fuzzing::require;

struct SmallFile
{
    char const* name;
    QByteArray content;
};

QByteArray tinyPicture()
{
    QImage picture(3, 2, QImage::Format_ARGB32);
    picture.fill(QColor(200, 30, 10, 128));
    QByteArray png;
    QBuffer buffer(&png);
    picture.save(&buffer, "PNG");
    return png;
}

/** What commands find: what each of them reads, and what none can read. */
std::vector<SmallFile> const& smallFiles()
{
    static QByteArray const line = "<MoveTo><X V='0' B='1' P='0'/><Y V='0' B='2' P='0'/></MoveTo>"
                                   "<LineTo><X V='40' B='1' P='1'/><Y V='30' B='2' P='1'/></LineTo>"
                                   "<LineTo><X V='40' B='3' P='0'/><Y V='0' B='2' P='0'/></LineTo>";
    static std::vector<SmallFile> const files {
        {"a.xml",
            "<D><S Name='a' Width='40' Height='30'><Geometry Closed='1'>" + line
                + "</Geometry></S></D>"},
        {"b.xml",
            "<D><S Name='a' Width='80' Height='60'><Geometry>" + line
                + "<Ellipse><X V='9'/><Y V='8'/><A V='5'/><B V='5'/></Ellipse></Geometry></S></D>"},
        {"d/c.xml", "<D><Geometry>" + line + "</Geometry><!-- &amp; --></D>"},
        {"bad.xml", "<D><Geometry>"},
        {"p.svg",
            "<svg xmlns='http://www.w3.org/2000/svg' width='40' height='30'>"
            "<path id='a' d='M0 0H40V30Z'/></svg>"},
        {"q.svg",
            "<svg xmlns='http://www.w3.org/2000/svg' width='80' height='60'>"
            "<path id='a' d='M0 0H80V60Z'/></svg>"},
        {"p.png", tinyPicture()}, {"RecentFiles.xml", "<RecentFiles/>"}, {"empty", ""},
        {"sums", "0123456789abcdef0123456789abcdef  a.xml\n"}};
    return files;
}

/** Where the tool is run: its folder, and beside that what it may keep for a while or for good. */
class Place
{
public:
    Place()
    {
        for (char const* const name : {"work", "temporary", "home"})
            require(QDir(m_folder.path()).mkdir(QLatin1String(name)), "a folder can be made");
        qputenv("TMPDIR", QFile::encodeName(folder("temporary")));
        qputenv("HOME", QFile::encodeName(folder("home")));
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(folder("home")));
    }
    ~Place() { close(m_usual); }
    Place(Place const&) = delete;
    Place& operator=(Place const&) = delete;

    /** Makes it the current folder. */
    void enter() const { require(QDir::setCurrent(folder("work")), "a folder can be entered"); }
    /** The current folder is the usual one again: libFuzzer knows its own by their names. */
    void leave() const { require(fchdir(m_usual) == 0, "a folder can be left"); }

    /** As it was at first. */
    void tidy() const
    {
        for (QFileInfo const& entry : QDir(folder("work")).entryInfoList(all)) {
            require(entry.isDir() ? QDir(entry.filePath()).removeRecursively()
                                  : QFile::remove(entry.filePath()),
                "what the tool makes can be removed");
        }
        QDir(folder("home")).removeRecursively();
        QDir(m_folder.path()).mkdir(QStringLiteral("home"));
        QDir(folder("work")).mkdir(QStringLiteral("d"));
        for (SmallFile const& known : smallFiles()) {
            QFile file(QString::fromLatin1(known.name));
            require(file.open(QIODevice::WriteOnly)
                    && file.write(known.content) == known.content.size(),
                "a small file can be written");
        }
    }

    /** That nothing is left which only the tool itself can have named. */
    void requireTidy(QString const& arguments) const
    {
        require(QDir(folder("temporary")).isEmpty(), "no temporary file is left");
        require(QDir(m_folder.path()).entryList(all).size() == 3, "nothing is made elsewhere");
        static QRegularExpression const random(QStringLiteral("\\.[A-Za-z]{6}$"));
        QDirIterator files(folder("work"), QDir::Files | QDir::Hidden | QDir::System,
            QDirIterator::Subdirectories);
        while (files.hasNext()) {
            files.next();
            QString const name = files.fileName();
            require(
                !name.contains(random) || arguments.contains(name.section(QLatin1Char('.'), -1)),
                "no unfinished file is left");
        }
    }

private:
    static constexpr auto all =
        QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System;

    QString folder(char const* name) const { return m_folder.filePath(QLatin1String(name)); }

    int const m_usual = open(".", O_PATH | O_CLOEXEC);
    QTemporaryDir m_folder;
};

/** A standard stream that is memory for the time of a run. */
class StreamInMemory
{
public:
    explicit StreamInMemory(int stream)
        : m_stream(stream)
        , m_memory(memfd_create("stream", MFD_CLOEXEC))
        , m_usual(dup(stream))
    {
        require(m_memory >= 0 && m_usual >= 0, "streams can be exchanged");
    }

    void begin(QByteArray const& content = {})
    {
        require(ftruncate(m_memory, 0) == 0 && lseek(m_memory, 0, SEEK_SET) == 0
                && write(m_memory, content.constData(), static_cast<std::size_t>(content.size()))
                    == content.size()
                && lseek(m_memory, 0, SEEK_SET) == 0,
            "memory can be written");
        dup2(m_memory, m_stream);
    }

    /** What was written. */
    QByteArray end()
    {
        dup2(m_usual, m_stream);
        lseek(m_memory, 0, SEEK_SET);
        QFile file;
        require(file.open(m_memory, QIODevice::ReadOnly), "memory can be read");
        return file.readAll();
    }

    int usual() const { return m_usual; }

private:
    int const m_stream;
    int const m_memory;
    int const m_usual;
};

/** All that a run needs, made once. */
struct Surroundings
{
    Place place;
    StreamInMemory input {STDIN_FILENO};
    StreamInMemory output {STDOUT_FILENO};
    StreamInMemory error {STDERR_FILENO};
};

Surroundings& surroundings()
{
    static Surroundings all;
    return all;
}

/**
 * Whether it can name nothing outside the folder, makes nobody wait for ever, and asks for no
 * picture that takes long.
 */
bool isHarmless(QString const& argument)
{
    static QRegularExpression const elsewhere(
        QStringLiteral("\\.\\.|^/|[^A-Za-z0-9}]/|^-[^=]*/|^:"));
    static QRegularExpression const endless(
        QStringLiteral("watch|(^|[^#0-9A-Fa-f])\\d{4}|[0-9.][eE]\\+?\\d"));
    return !argument.contains(elsewhere) && !argument.contains(endless);
}

void requireMessages(Outcome outcome, QByteArray const& error, QStringList const& arguments)
{
    require(error.isEmpty() || error.endsWith('\n'), "messages are lines");
    QString const text = QString::fromUtf8(error);
    QStringList const lines = text.split(QLatin1Char('\n')).mid(0, text.count(QLatin1Char('\n')));
    for (QString const& line : lines)
        require(!line.isEmpty() && printable(line) == line, "a message is one printable line");
    bool const isDiff = arguments.value(0) == QLatin1String("diff");
    if (outcome == Outcome::Misused && !isDiff)
        require(lines.size() >= 1, "wrong usage is told");
    if (outcome == Outcome::Failed && !isDiff)
        require(lines.size() >= 1, "a failure is told");
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/)
{
    qInstallMessageHandler([](QtMsgType, QMessageLogContext const&, QString const&) {});
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qSetGlobalQHashSeed(0);
    setFontStarter(needGuiApplication);
    QCoreApplication::setApplicationName(QStringLiteral("kpgeom"));
    needGuiApplication();
    // What is found is told where it is seen.
    auto const usual = static_cast<std::intptr_t>(surroundings().error.usual());
    __sanitizer_set_report_fd(reinterpret_cast<void*>(usual));
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    Fuzzing::TextAndChoices parts(Fuzzing::bytes(data, size));
    QStringList const arguments = QString::fromUtf8(parts.text).split(QLatin1Char('\n'));
    if (!std::all_of(arguments.begin(), arguments.end(), isHarmless))
        return 0;
    Surroundings& all = surroundings();
    all.place.enter();
    all.place.tidy();
    all.input.begin(parts.choices.rest());
    std::rewind(stdin);
    all.output.begin();
    all.error.begin();
    Outcome const outcome = runTool(arguments);
    std::fflush(stdout);
    all.input.end();
    all.output.end();
    QByteArray const error = all.error.end();
    all.place.leave();
    require(outcome == Outcome::Done || outcome == Outcome::Failed || outcome == Outcome::Misused
            || outcome == Outcome::Warned,
        "the status is one of those promised");
    requireMessages(outcome, error, arguments);
    all.place.requireTidy(arguments.join(QLatin1Char('\n')));
    return 0;
}
