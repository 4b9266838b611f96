// SPDX-License-Identifier: MIT
#include "kpgeomtesting.h"
#include "testing.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <sys/resource.h>

using namespace KpgeomTesting;

namespace {

QByteArray const ofNothing = "e4c23762ed2823a27e62a64b95c024e7";
QByteArray const ofAbc = "7999dc75e8da648c6727e137c5b77803";

/** A folder with the file "abc", which holds its name. */
class DigestWorkplace : public Workplace
{
public:
    DigestWorkplace() { write("abc", "abc"); }

    Result digest(QStringList const& arguments) const
    {
        return run(QStringList("digest") + arguments);
    }
};

} // namespace

/** The command that digests files. */
class TestKpgeomDigest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void digestsArePrinted();
    void standardInputIsDigested();
    void oddNamesAreEscaped();
    void unreadableFilesAreTold();
    void helpTellsThatItIsNotMd5();
    void largeFilesShowProgress();
    void memoryDoesNotDependOnTheFile();

    void unchangedFilesAreOk();
    void changedFilesAreTold();
    void missingFilesAreTold();
    void linesOfListsAreRead_data();
    void linesOfListsAreRead();
    void listsWithoutDigestsAreTold();
    void whatIsNoListIsToldInOneLine_data();
    void whatIsNoListIsToldInOneLine();
    void jsonHoldsDigests();
    void jsonHoldsWhatHasChanged();
    void wrongUsageIsTold();
};

void TestKpgeomDigest::digestsArePrinted()
{
    DigestWorkplace const place;
    place.write("empty", "");
    Result const result = place.digest({"abc", "empty", "abc"});
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.err, QByteArray());
    QCOMPARE(
        result.out, QByteArray(ofAbc + "  abc\n" + ofNothing + "  empty\n" + ofAbc + "  abc\n"));
}

void TestKpgeomDigest::standardInputIsDigested()
{
    Workplace::Start start;
    start.input = "abc";
    Result const result = DigestWorkplace().run({"digest", "-"}, start);
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.out, QByteArray(ofAbc + "  -\n"));
}

void TestKpgeomDigest::oddNamesAreEscaped()
{
    DigestWorkplace const place;
    for (QString const& name : {QString("a\\b"), QString("c\nd"), QString("e\rf"), QString("g h")})
        place.write(name, "");
    Result const result = place.digest({"a\\b", "c\nd", "e\rf", "g h"});
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.out,
        QByteArray('\\' + ofNothing + "  a\\\\b\n\\" + ofNothing + "  c\\nd\n\\" + ofNothing
            + "  e\\rf\n" + ofNothing + "  g h\n"));
    place.write("list", result.out);
    Result const checked = place.digest({"--check", "list"});
    COMPARE_EXIT(checked, 0);
    QCOMPARE(checked.out.count(": OK\n"), 4);
}

void TestKpgeomDigest::unreadableFilesAreTold()
{
    DigestWorkplace const place;
    Result const result = place.digest({"none", "abc", "."});
    COMPARE_EXIT(result, 1);
    QCOMPARE(result.out, QByteArray(ofAbc + "  abc\n"));
    QCOMPARE(result.err,
        QByteArray("none: No such file or directory\n.: file to open is a directory\n"));
}

void TestKpgeomDigest::helpTellsThatItIsNotMd5()
{
    QVERIFY(DigestWorkplace().digest({"--help"}).out.contains("It is not the published MD5."));
}

void TestKpgeomDigest::largeFilesShowProgress()
{
    DigestWorkplace const place;
    QFile large(place.path("large"));
    QVERIFY(large.open(QIODevice::WriteOnly));
    QVERIFY(large.resize(48 << 20));
    Terminal const terminal;
    Workplace::Start start;
    start.setUp = terminal.replacing(STDERR_FILENO);
    COMPARE_EXIT(place.run({"digest", "large"}, start), 0);
    QByteArray const shown = terminal.text();
    QVERIFY2(shown.contains("] 12/12"), shown);
    QVERIFY2(!shown.contains("13/12"), shown);
    // Small files are digested without.
    COMPARE_EXIT(place.run({"digest", "abc"}, start), 0);
    QCOMPARE(terminal.text(), QByteArray());
}

void TestKpgeomDigest::memoryDoesNotDependOnTheFile()
{
    DigestWorkplace const place;
    QFile large(place.path("large"));
    QVERIFY(large.open(QIODevice::WriteOnly));
    QVERIFY(large.resize(300 << 20));
    Workplace::Start start;
    start.setUp = [] {
        rlimit const limit {400U << 20, 400U << 20};
        // A sanitizer needs more than any limit.
        if (!Testing::sanitized)
            setrlimit(RLIMIT_AS, &limit);
    };
    COMPARE_EXIT(place.run({"digest", "large"}, start), 0);
}

void TestKpgeomDigest::unchangedFilesAreOk()
{
    DigestWorkplace const place;
    place.write("list", place.digest({"abc"}).out);
    for (QString const& option : {QString("-c"), QString("--check")}) {
        Result const result = place.digest({option, "list"});
        COMPARE_EXIT(result, 0);
        QCOMPARE(result.out, QByteArray("abc: OK\n"));
        QCOMPARE(result.err, QByteArray());
    }
    Workplace::Start start;
    start.input = ofAbc + "  abc\n";
    QCOMPARE(place.run({"digest", "-c", "-"}, start).out, QByteArray("abc: OK\n"));
}

void TestKpgeomDigest::changedFilesAreTold()
{
    DigestWorkplace const place;
    place.write("list", ofAbc + "  abc\n" + ofNothing + "  abc\n");
    Result const result = place.digest({"-c", "list"});
    COMPARE_EXIT(result, 1);
    QCOMPARE(result.out, QByteArray("abc: OK\nabc: FAILED\n"));
    QCOMPARE(result.err, QByteArray("kpgeom digest: digests that differ: 1\n"));
}

void TestKpgeomDigest::missingFilesAreTold()
{
    DigestWorkplace const place;
    place.write("list", ofAbc + "  none\n" + ofAbc + "  abc\n");
    Result const result = place.digest({"-c", "list"});
    COMPARE_EXIT(result, 1);
    QCOMPARE(result.out, QByteArray("none: FAILED open or read\nabc: OK\n"));
    QCOMPARE(result.err,
        QByteArray("none: No such file or directory\n"
                   "kpgeom digest: files that cannot be read: 1\n"));
}

void TestKpgeomDigest::linesOfListsAreRead_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<bool>("isRead");
    QTest::newRow("text") << QByteArray(ofAbc + "  abc") << true;
    QTest::newRow("binary") << QByteArray(ofAbc + " *abc") << true;
    QTest::newRow("capital letters") << QByteArray(ofAbc.toUpper() + "  abc") << true;
    QTest::newRow("escaped") << QByteArray('\\' + ofAbc + "  abc") << true;
    QTest::newRow("wrongly escaped") << QByteArray('\\' + ofAbc + "  a\\bc") << false;
    QTest::newRow("escape at the end") << QByteArray('\\' + ofAbc + "  abc\\") << false;
    QTest::newRow("one space") << QByteArray(ofAbc + " abc") << false;
    QTest::newRow("short digest") << QByteArray(ofAbc.mid(1) + "  abc") << false;
    QTest::newRow("no digits") << QByteArray(ofAbc.mid(1) + "g  abc") << false;
    QTest::newRow("no name") << QByteArray(ofAbc + "  ") << false;
    QTest::newRow("empty") << QByteArray() << false;
}

void TestKpgeomDigest::linesOfListsAreRead()
{
    QFETCH(QByteArray, line);
    QFETCH(bool, isRead);
    DigestWorkplace const place;
    place.write("list", ofAbc + "  abc\n" + line + '\n');
    Result const result = place.digest({"-c", "list"});
    COMPARE_EXIT(result, isRead ? 0 : 3);
    QCOMPARE(result.out.count("abc: OK\n"), isRead ? 2 : 1);
    QCOMPARE(result.err, isRead ? QByteArray() : QByteArray("list:2:1: no line with a digest\n"));
}

void TestKpgeomDigest::listsWithoutDigestsAreTold()
{
    DigestWorkplace const place;
    place.write("list", "");
    COMPARE_FAILURE(place.digest({"-c", "list"}), 1, "list: no digest found");
    COMPARE_FAILURE(place.digest({"-c", "none"}), 1, "none: No such file or directory");
}

void TestKpgeomDigest::whatIsNoListIsToldInOneLine_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("picture") << QByteArray("\x89PNG\r\n\x1a\n\n\n\n")
                             << QByteArray("list: a PNG picture, not a list of digests");
    QTest::newRow("other bytes") << QByteArray("\1\2\n\0\n", 5)
                                 << QByteArray("list: a binary file, not a list of digests");
    QTest::newRow("picture that is text")
        << QByteArray("<svg>\n<path/>\n</svg>\n") << QByteArray("list: no digest found");
    QTest::newRow("text") << QByteArray("a\n").repeated(1000)
                          << QByteArray("list: no digest found");
}

void TestKpgeomDigest::whatIsNoListIsToldInOneLine()
{
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, line);
    DigestWorkplace const place;
    place.write("list", content);
    COMPARE_FAILURE(place.digest({"-c", "list"}), 1, line);
}

void TestKpgeomDigest::jsonHoldsDigests()
{
    DigestWorkplace const place;
    QString const odd = QFile::decodeName("a\"\\\xff\n");
    place.write("empty", "");
    QFile file(place.path(odd));
    QVERIFY(file.open(QIODevice::WriteOnly));
    Result const result = place.digest({"--json", "abc", "none", "empty", odd});
    COMPARE_EXIT(result, 1);
    QCOMPARE(result.err, QByteArray("none: No such file or directory\n"));
    QJsonObject const first {{"digest", QString(ofAbc)}, {"file", "abc"}};
    QJsonObject const second {{"digest", QString(ofNothing)}, {"file", "empty"}};
    QJsonObject const third {
        {"digest", QString(ofNothing)}, {"file", QString("a\"\\") + QChar(0xfffd) + "\n"}};
    QCOMPARE(QJsonDocument::fromJson(result.out).array(), (QJsonArray {first, second, third}));
}

void TestKpgeomDigest::jsonHoldsWhatHasChanged()
{
    DigestWorkplace const place;
    place.write("changed", "def");
    place.write(
        "list", ofAbc + "  abc\n" + ofNothing + "  none\nno digest\n" + ofAbc + "  changed\n");
    Result const result = place.digest({"--check", "--json", "list"});
    COMPARE_EXIT(result, 1);
    QVERIFY2(result.err.contains("list:3:1: no line with a digest\n"), result.err);
    auto const entry = [](QByteArray const& digest, char const* file, char const* status) {
        return QJsonObject {
            {"digest", QString(digest)}, {"file", file}, {"list", "list"}, {"status", status}};
    };
    QCOMPARE(QJsonDocument::fromJson(result.out).array(),
        (QJsonArray {entry(ofAbc, "abc", "same"), entry(ofNothing, "none", "unreadable"),
            entry(ofAbc, "changed", "different")}));
    Result const noList = place.digest({"--check", "--json", "none"});
    COMPARE_EXIT(noList, 1);
    QCOMPARE(noList.out, QByteArray("[\n]\n"));
}

void TestKpgeomDigest::wrongUsageIsTold()
{
    COMPARE_FAILURE(
        DigestWorkplace().digest({}), 2, "kpgeom digest: no file given (see kpgeom digest --help)");
    COMPARE_FAILURE(DigestWorkplace().digest({"--md5", "abc"}), 2,
        "kpgeom digest: Unknown option 'md5'. (see kpgeom digest --help)");
}

QTEST_GUILESS_MAIN(TestKpgeomDigest)
#include "tst_kpgeom_digest.moc"
