// SPDX-License-Identifier: MIT
#include "kpgeomtesting.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QStandardPaths>

using namespace KpgeomTesting;

/** What the shells make of the scripts for them: each is asked how lines may go on. */
class TestKpgeomCompletion : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lineIsCompleted_data();
    void lineIsCompleted();
    void allThatHelpNamesIsOffered_data();
    void allThatHelpNamesIsOffered();
    void offeredUnitsAreAll();
    void offeredWordsAreTaken_data();
    void offeredWordsAreTaken();
};

namespace {

/** A shell, and the script for it under the name by which it is found. */
struct Shell
{
    QString name;
    QStringList options;
    QString script;
};

Shell const shells[] = {
    {"bash", {"--norc", "--noprofile"}, "kpgeom.bash"},
    {"fish", {"--no-config"}, "kpgeom.fish"},
    {"zsh", {"-f"}, "_kpgeom"},
};

/** By line what it may go on with: each once, without what only ends it, and sorted. */
using Answers = QMap<QString, QStringList>;

QStringList sorted(QStringList words)
{
    for (QString& word : words) {
        if (word.size() > 1 && (word.endsWith('/') || word.endsWith('=')))
            word.chop(1);
    }
    words.removeDuplicates();
    words.sort();
    return words;
}

/** What a shell answers in a folder with a few files. */
Answers answersOf(Shell const& shell, QStringList const& lines)
{
    Workplace const scripts;
    Workplace const place;
    QDir(place.path()).mkpath("folder");
    for (char const* const name : {"a.xml", "b.svg", "c.txt", "d.ttf"})
        place.write(name, "");
    QString const script = scripts.path(shell.script);
    QFile::copy(QString(KPGEOM_COMPLETIONS "/kpgeom.") + shell.name, script);
    Workplace::Start start;
    start.program = QStandardPaths::findExecutable(shell.name);
    if (start.program.isEmpty())
        qFatal("%s is not installed", qPrintable(shell.name));
    start.variables = {{"TERM", "dumb"}, {"HOME", scripts.path()},
        {"XDG_CONFIG_HOME", scripts.path()}, {"XDG_DATA_HOME", scripts.path()}};
    Result const result = place.run(
        shell.options + QStringList {KPGEOM_COMPLETION_TESTS "/ask." + shell.name, script} + lines,
        start);
    if (!result.err.isEmpty())
        qFatal("%s: %s", qPrintable(shell.name), result.err.constData());
    Answers answers;
    for (QString const& answer : QString::fromUtf8(result.out).remove('\r').split('\n')) {
        QStringList const parts = answer.split('\t');
        if (parts.size() == 3 && parts.first() == "ANSWER")
            answers.insert(parts.at(1), sorted(parts.at(2).split(' ', Qt::SkipEmptyParts)));
    }
    return answers;
}

/** The line and what it may go on with, in any shell. */
struct Row
{
    char const* line;
    char const* words;
    char const* zshWords = words; ///< where it has options, or other files, rather than nothing
};

constexpr Row rows[] = {
    {"kpgeom re", "recent render resize"},
    {"kpgeom h", "help"},
    {"kpgeom --", "--help --version"},
    {"kpgeom help re", "recent render resize"},
    {"kpgeom help render ", ""},
    {"kpgeom nonsense ", ""},
    {"kpgeom render --f", "--fill-rule --format"},
    {"kpgeom render --watch --rec", "--recursive"},
    {"kpgeom pages -", "--help --json -h"},
    {"kpgeom pages ", ""},
    {"kpgeom render --format ", "custgeom html pdf png svg"},
    {"kpgeom render --format p", "pdf png"},
    {"kpgeom render --size ", ""},
    {"kpgeom convert --form d", "dom"},
    {"kpgeom convert --font ", "d.ttf folder"},
    {"kpgeom info ", "a.xml folder"},
    {"kpgeom info b", "", "b.svg"},
    {"kpgeom info -j 4 a.xml ", "a.xml folder"},
    {"kpgeom fit ", "a.xml b.svg folder"},
    {"kpgeom convert ", "b.svg folder"},
    {"kpgeom convert b.svg -o ", "a.xml b.svg c.txt d.ttf folder"},
    {"kpgeom digest ", "a.xml b.svg c.txt d.ttf folder"},
    {"kpgeom units ", "", "--dpi"},
    {"kpgeom units 5 f", "ft ft-in"},
    {"kpgeom units --dpi 90 5 mm c", "cc cm"},
    {"kpgeom colour red lumM", "lumMod"},
    {"kpgeom color red lumM", "lumMod"},
    {"kpgeom color --comp", "--compare"},
    {"kpgeom recent ", "add folders list pin remove unpin"},
    {"kpgeom recent --config ", "folder"},
    {"kpgeom recent --config folder p", "pin"},
    {"kpgeom recent add ", "a.xml b.svg c.txt d.ttf folder"},
};

QStringList linesOfRows()
{
    QStringList lines;
    for (Row const& row : rows)
        lines << row.line;
    return lines;
}

/** What the expression finds in a help. */
QStringList namedIn(QStringList const& command, char const* expression)
{
    QString const help = QString::fromUtf8(Workplace().run(command + QStringList("--help")).out);
    QRegularExpression const name(expression, QRegularExpression::MultilineOption);
    QStringList names;
    for (auto match = name.globalMatch(help); match.hasNext();)
        names << match.next().captured(1).split(", ");
    return names;
}

/** The commands and their options, by the lines behind which they are offered. */
Answers const& namesInHelp()
{
    static Answers const names = [] {
        QStringList const commands = namedIn({}, "^  ([a-z]+)  ");
        Answers result {{"kpgeom ", sorted(commands + QStringList("help"))}};
        for (QString const& command : commands) {
            result.insert("kpgeom " + command + " -",
                sorted(namedIn({command}, "^  ((?:-\\w, )?--[a-z-]+)")));
        }
        return result;
    }();
    return names;
}

/** What bash offers behind a line. */
QStringList offered(QString const& line)
{
    return answersOf(shells[0], {line}).value(line);
}

} // namespace

void TestKpgeomCompletion::lineIsCompleted_data()
{
    QTest::addColumn<Answers>("answers");
    QTest::addColumn<QString>("line");
    QTest::addColumn<QStringList>("words");

    for (Shell const& shell : shells) {
        Answers const answers = answersOf(shell, linesOfRows());
        for (Row const& row : rows) {
            QTest::newRow(qPrintable(shell.name + ": " + row.line))
                << answers << QString(row.line)
                << QString(shell.name == "zsh" ? row.zshWords : row.words)
                       .split(' ', Qt::SkipEmptyParts);
        }
    }
}

void TestKpgeomCompletion::lineIsCompleted()
{
    QFETCH(Answers, answers);
    QFETCH(QString, line);
    QFETCH(QStringList, words);

    QVERIFY(answers.contains(line));
    QCOMPARE(answers.value(line), words);
}

void TestKpgeomCompletion::allThatHelpNamesIsOffered_data()
{
    QTest::addColumn<Answers>("answers");

    for (Shell const& shell : shells)
        QTest::newRow(qPrintable(shell.name)) << answersOf(shell, namesInHelp().keys());
}

void TestKpgeomCompletion::allThatHelpNamesIsOffered()
{
    QFETCH(Answers, answers);

    QCOMPARE(namesInHelp().size(), 17);
    // Bash and zsh have options there too.
    for (QString const option : {"--help", "--version", "-V", "-h"})
        answers["kpgeom "].removeAll(option);
    for (QString const& line : namesInHelp().keys())
        QCOMPARE(answers.value(line), namesInHelp().value(line));
}

void TestKpgeomCompletion::offeredUnitsAreAll()
{
    QByteArray const lengths = Workplace().run({"units", "1", "px", "--json"}).out;
    QStringList const units = QJsonDocument::fromJson(lengths).object().keys();
    QVERIFY(units.contains("ft-in"));
    QCOMPARE(offered("kpgeom units 1 "), sorted(units));
}

void TestKpgeomCompletion::offeredWordsAreTaken_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("end"); // behind a word
    QTest::addColumn<int>("count");

    auto const row = [](char const* line, char const* end, int count) {
        QTest::newRow(line) << QString(line) << QString(end) << count;
    };
    row("colour red ", "=0.5", 28);
    row("render a.xml -o - --format ", "", 5);
    row("render a.xml -o a.svg --fill-rule ", "", 2);
    row("convert a.svg -o - --form ", "", 2);
    row("recent --config . ", " 1", 6);
}

void TestKpgeomCompletion::offeredWordsAreTaken()
{
    QFETCH(QString, line);
    QFETCH(QString, end);
    QFETCH(int, count);

    Workplace const place;
    place.write("a.xml", boxGeometry());
    place.write("a.svg",
        "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"9\" height=\"9\">"
        "<rect width=\"9\" height=\"9\"/></svg>");
    QStringList const words = offered("kpgeom " + line);
    QCOMPARE(words.size(), count);
    for (QString const& word : words) {
        Result const result = place.run((line + word + end).split(' '));
        QVERIFY(result.exited);
        // An action may complain of its operands.
        bool const isTaken = result.code != 2 || result.err.contains(" recent: " + word.toUtf8());
        QVERIFY2(isTaken, result.err.constData());
    }
}

QTEST_GUILESS_MAIN(TestKpgeomCompletion)

#include "tst_kpgeom_completion.moc"
