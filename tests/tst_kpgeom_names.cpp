// SPDX-License-Identifier: MIT
#include "kpgeomtesting.h"
#include "testing.h"

#include <cstdlib>
#include <vector>

#include <dirent.h>
#include <sys/stat.h>

using namespace KpgeomTesting;

namespace {

/** Runs the tool with arguments that need not be text. */
Result runWithBytes(
    Workplace const& place, QByteArrayList const& arguments, QByteArray const& locale)
{
    Workplace::Start start;
    start.setUp = [&] {
        std::vector<char*> argv {const_cast<char*>(KPGEOM_EXECUTABLE)};
        for (QByteArray const& argument : arguments)
            argv.push_back(const_cast<char*>(argument.constData()));
        argv.push_back(nullptr);
        setenv("LC_ALL", locale.constData(), 1);
        execv(KPGEOM_EXECUTABLE, argv.data());
        _exit(127);
    };
    return place.run({}, start);
}

/** A file of this name in the folder, to the byte. */
class NamedFile
{
public:
    NamedFile(Workplace const& place, QByteArray const& name)
        : m_path(QFile::encodeName(place.path()) + '/' + name)
    {
    }
    /** The folder of Qt's cannot be removed with names that are no text. */
    ~NamedFile() { unlink(m_path.constData()); }
    NamedFile(NamedFile const&) = delete;
    NamedFile& operator=(NamedFile const&) = delete;

    void write(QByteArray const& content) const
    {
        int const file = open(m_path.constData(), O_CREAT | O_WRONLY | O_TRUNC | O_CLOEXEC, 0600);
        bool const isWritten = ::write(file, content.constData(), std::size_t(content.size()))
            == ssize_t(content.size());
        if (close(file) != 0 || !isWritten)
            qFatal("%s cannot be written", m_path.constData());
    }

    /** What it holds; empty if there is none. */
    QByteArray content() const
    {
        QFile file;
        int const descriptor = open(m_path.constData(), O_RDONLY | O_CLOEXEC);
        if (!file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
            return QByteArray();
        return file.readAll();
    }

private:
    QByteArray const m_path;
};

/** The names of all that is in the folder, to the byte, sorted. */
QByteArrayList namesIn(QString const& folder)
{
    QByteArrayList names;
    DIR* const entries = opendir(QFile::encodeName(folder).constData());
    for (dirent const* entry = readdir(entries); entry; entry = readdir(entries))
        names << QByteArray(entry->d_name);
    closedir(entries);
    names.removeAll(".");
    names.removeAll("..");
    std::sort(names.begin(), names.end());
    return names;
}

void addLocales()
{
    QTest::addColumn<QByteArray>("locale");
    QTest::newRow("UTF-8") << QByteArray("C.UTF-8");
    QTest::newRow("C") << QByteArray("C");
}

/** A name, how messages show it, and another one for which a careless program would take it. */
void addNames()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("shown");
    QTest::addColumn<QByteArray>("other");
    QTest::addColumn<QByteArray>("locale");
    QByteArray const replacement = "\xef\xbf\xbd";
    QByteArray const mark = "\xef\xbb\xbf";
    for (QByteArray const& locale : {QByteArray("C.UTF-8"), QByteArray("C")}) {
        auto const row = [&locale](char const* what, QByteArray const& name,
                             QByteArray const& shown, QByteArray const& other) {
            QTest::addRow("%s, %s", what, locale.constData()) << name << shown << other << locale;
        };
        row("a byte that is no text", "\xffz", replacement + "z", replacement + "z");
        row("the end of a character", "z\x80", "z" + replacement, "z" + replacement);
        row("the start of a character", "z\xe2\x82", "z" + replacement + replacement,
            "z" + replacement + replacement);
        row("a surrogate", "\xed\xb3\xbf", replacement + replacement + replacement, "\xff");
        row("a replacement character", replacement + "z", replacement + "z", "\xffz");
        row("a byte-order mark", mark + "z", mark + "z", "z");
        row("a mark alone", mark, mark, mark + mark);
        row("a resource of Qt", ":z", "./:z", "z");
        row("beyond 16 bits", "\xf0\x9d\x94\xb8z", "\xf0\x9d\x94\xb8z", "z");
    }
}

} // namespace

/** A file name is its bytes: for reading and for writing, in any locale. */
class TestKpgeomNames : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void inputIsTheFileOfJustThisName_data() { addNames(); }
    void inputIsTheFileOfJustThisName();
    void outputIsTheFileOfJustThisName_data() { addNames(); }
    void outputIsTheFileOfJustThisName();
    void missingFileIsToldByItsName_data() { addNames(); }
    void missingFileIsToldByItsName();
    void foldersGiveEachFileItsName_data() { addNames(); }
    void foldersGiveEachFileItsName();
    void digestsKeepNames_data() { addNames(); }
    void digestsKeepNames();
    void recentFilesAreNamedByText_data() { addNames(); }
    void recentFilesAreNamedByText();
    void otherFileStaysBesideEachCommand_data();
    void otherFileStaysBesideEachCommand();
    void messagesAreUtf8InEveryLocale_data();
    void messagesAreUtf8InEveryLocale();
};

void TestKpgeomNames::inputIsTheFileOfJustThisName()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, shown);
    QFETCH(QByteArray, other);
    QFETCH(QByteArray, locale);
    Workplace const place;
    NamedFile const meant(place, name);
    NamedFile const mistaken(place, other);
    meant.write(boxGeometry());
    mistaken.write("<D/>");
    Result const info = runWithBytes(place, {"info", name}, locale);
    COMPARE_EXIT(info, 0);
    QCOMPARE(info.err, QByteArray());
    QVERIFY2(info.out.startsWith(shown + ": 1 outline\n"), info.out.constData());
    Result const json = runWithBytes(place, {"info", "--json", name}, locale);
    COMPARE_EXIT(json, 0);
    QVERIFY2(json.out.contains("\"file\": \"" + shown + "\",\n"), json.out.constData());
}

void TestKpgeomNames::outputIsTheFileOfJustThisName()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, other);
    QFETCH(QByteArray, locale);
    Workplace const place;
    place.write("in.xml", boxGeometry());
    NamedFile const meant(place, name);
    NamedFile const mistaken(place, other);
    mistaken.write("old");
    QByteArrayList const arguments {"render", "in.xml", "--format", "svg", "-o", name};
    for (int i = 0; i < 2; ++i) {
        COMPARE_EXIT(runWithBytes(place, arguments, locale), 0);
        QVERIFY(meant.content().startsWith("<?xml"));
        QCOMPARE(mistaken.content(), QByteArray("old"));
        QCOMPARE(namesIn(place.path()).size(), 3);
        meant.write("old");
    }
}

void TestKpgeomNames::missingFileIsToldByItsName()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, shown);
    QFETCH(QByteArray, other);
    QFETCH(QByteArray, locale);
    Workplace const place;
    NamedFile const mistaken(place, other);
    mistaken.write(boxGeometry());
    COMPARE_FAILURE(
        runWithBytes(place, {"info", name}, locale), 1, shown + ": No such file or directory");
}

void TestKpgeomNames::foldersGiveEachFileItsName()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, other);
    QFETCH(QByteArray, locale);
    Workplace const place;
    QVERIFY(QDir(place.path()).mkdir("in"));
    NamedFile const meant(place, "in/" + name + ".xml");
    NamedFile const mistaken(place, "in/" + other + ".xml");
    meant.write(boxGeometry());
    mistaken.write("<D/>");
    for (QByteArray const& output :
        {QByteArray("out/"), QByteArray("{name}.xml"), QByteArray("\xff{name}.xml")}) {
        Result const result = runWithBytes(
            place, {"resize", "-R", "in", "--from", "1x1", "--to", "2x2", "-o", output}, locale);
        COMPARE_EXIT(result, 0);
        QByteArray const folder = output.endsWith('/') ? output : output.left(output.indexOf('{'));
        NamedFile const first(place, folder + name + ".xml");
        NamedFile const second(place, folder + other + ".xml");
        QVERIFY(first.content().contains("<MoveTo>"));
        QCOMPARE(second.content().contains("<D"), true);
    }
}

void TestKpgeomNames::digestsKeepNames()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, other);
    QFETCH(QByteArray, locale);
    Workplace const place;
    NamedFile const meant(place, name);
    NamedFile const mistaken(place, other);
    meant.write("one");
    mistaken.write("two");
    Result const digest = runWithBytes(place, {"digest", name}, locale);
    COMPARE_EXIT(digest, 0);
    QVERIFY2(digest.out.endsWith(name + '\n'), digest.out.constData());
    for (QByteArray const& mark : {QByteArray(), QByteArray("\xef\xbb\xbf")}) {
        place.write("list", mark + digest.out);
        Result const check = runWithBytes(place, {"digest", "-c", "list"}, locale);
        COMPARE_EXIT(check, 0);
        QVERIFY2(check.out.endsWith(": OK\n"), check.out.constData());
    }
}

void TestKpgeomNames::recentFilesAreNamedByText()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, shown);
    QFETCH(QByteArray, locale);
    bool const isText = QString::fromUtf8('x' + name).toUtf8() == 'x' + name;
    Workplace const place;
    QVERIFY(QDir(place.path()).mkdir("config"));
    Result const result =
        runWithBytes(place, {"recent", "--config", "config", "add", name}, locale);
    if (!isText) {
        COMPARE_FAILURE(result, 1, shown + ": the name is not valid text");
        QCOMPARE(namesIn(place.path("config")), QByteArrayList());
        return;
    }
    COMPARE_EXIT(result, 0);
    QVERIFY2(place.read("config/RecentFiles.xml").contains('/' + name + '"'),
        place.read("config/RecentFiles.xml").constData());
}

void TestKpgeomNames::otherFileStaysBesideEachCommand_data()
{
    QTest::addColumn<QByteArrayList>("arguments");
    auto const row = [](char const* name, QByteArrayList const& arguments) {
        QTest::newRow(name) << arguments;
    };
    row("render", {"render", "\xff.xml", "--format", "svg"});
    row("resize", {"resize", "\xff.xml", "--from", "1x1", "--to", "2x2"});
    row("convert", {"convert", "\xff.svg"});
    row("bind", {"bind", "\xff.xml", "--slices", "1,1,1,1", "--size", "100x60"});
    row("fit", {"fit", "\xff.xml@100x60", "two.xml@200x90"});
    row("svg", {"svg", "\xff.xml"});
    row("normalize", {"normalize", "\xff.xml"});
    row("blur", {"blur", "\xff.ppm", "--format", "png", "-r", "1"});
}

void TestKpgeomNames::otherFileStaysBesideEachCommand()
{
    QFETCH(QByteArrayList, arguments);
    Workplace const place;
    NamedFile const document(place, "\xff.xml");
    NamedFile const drawing(place, "\xff.svg");
    NamedFile const picture(place, "\xff.ppm");
    document.write(boxGeometry());
    drawing.write("<svg xmlns='http://www.w3.org/2000/svg' width='20' height='10'>"
                  "<rect width='10' height='5'/></svg>");
    picture.write("P3 1 1 255 1 2 3\n");
    place.write("two.xml", boxGeometry().replace("\"100\"", "\"200\"").replace("\"60\"", "\"90\""));
    NamedFile const mistaken(place, "\xef\xbf\xbd.out");
    mistaken.write("old");
    NamedFile const meant(place, "\xff.out");
    Result const result =
        runWithBytes(place, arguments + QByteArrayList {"-o", "\xff.out"}, "C.UTF-8");
    QVERIFY2(result.exited && (result.code == 0 || result.code == 3), result.err.constData());
    QVERIFY(meant.content().size() > 10);
    QCOMPARE(mistaken.content(), QByteArray("old"));
}

void TestKpgeomNames::messagesAreUtf8InEveryLocale_data()
{
    addLocales();
}

void TestKpgeomNames::messagesAreUtf8InEveryLocale()
{
    QFETCH(QByteArray, locale);
    Workplace const place;
    place.write(QString::fromUtf8("\xc3\xa4.xml"), "<D/>");
    COMPARE_FAILURE(runWithBytes(place, {"info", "\xc3\xb6.xml"}, locale), 1,
        "\xc3\xb6.xml: No such file or directory");
    Result const found = runWithBytes(place, {"info", "\xc3\xa4.xml"}, locale);
    COMPARE_EXIT(found, 0);
    QCOMPARE(found.out, QByteArray("\xc3\xa4.xml: 0 outlines\n"));
    COMPARE_EXIT(
        runWithBytes(place,
            {"resize", "\xc3\xa4.xml", "--from", "1x1", "--to", "2x2", "-o", "\xe4\xb8\xad.xml"},
            locale),
        0);
    QCOMPARE(place.entries(),
        (QStringList {QString::fromUtf8("\xc3\xa4.xml"), QString::fromUtf8("\xe4\xb8\xad.xml")}));
}

QTEST_GUILESS_MAIN(TestKpgeomNames)

#include "tst_kpgeom_names.moc"
