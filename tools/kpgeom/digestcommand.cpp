// SPDX-License-Identifier: MIT
#include "batch.h"
#include "commandline.h"
#include "common/text.h"
#include "console.h"
#include "document/contentkind.h"
#include "filereports.h"
#include "longjson.h"
#include "md5.h"
#include "progress.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace {

constexpr qint64 chunkSize = 1 << 16;
constexpr qint64 bytesAStep = 64 * chunkSize;

/** How many steps of the progress bar a file takes. */
int stepsOf(QString const& file)
{
    qint64 const size = file == QLatin1String("-") ? 0 : QFileInfo(file).size();
    return static_cast<int>(qBound<qint64>(1, size / bytesAStep, 1000000));
}

int stepsOf(QStringList const& files)
{
    int steps = 0;
    for (QString const& file : files)
        steps = qMin(steps + stepsOf(file), 1000000000);
    return steps;
}

/**
 * The digest of all that the file holds; nothing, after an error message, on failure.
 *
 * @param step called for each of its steps
 */
std::optional<QString> digestOf(QString const& file, std::function<void()> const& step)
{
    QFile input;
    Diagnostics diagnostics;
    bool const isOpen = openInput(input, file, diagnostics);
    report(diagnostics);
    if (!isOpen)
        return std::nullopt;
    MD5 md5;
    QByteArray chunk(chunkSize, '\0');
    step();
    for (qint64 read = 0, total = 0; (read = input.read(chunk.data(), chunkSize)) != 0;) {
        if (read < 0) {
            report({Diagnostic::Severity::Error, file, 0, 0, input.errorString()});
            return std::nullopt;
        }
        md5.update(chunk.constData(), static_cast<std::size_t>(read));
        total += read;
        if (total % bytesAStep == 0 && total / bytesAStep > 1)
            step();
    }
    return QString::fromStdString(md5.toString());
}

/** A digest with its file, as in a line of the output. */
struct Entry
{
    QString digest;
    QString file;
};

/** As the digest tools of the system write it: a backslash in front tells of others behind. */
QByteArray lineOf(Entry const& entry)
{
    QString name = entry.file;
    name.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
    name.replace(QLatin1Char('\n'), QLatin1String("\\n"));
    name.replace(QLatin1Char('\r'), QLatin1String("\\r"));
    QString const mark = name == entry.file ? QString() : QStringLiteral("\\");
    return QFile::encodeName(QStringLiteral("%1%2  %3\n").arg(mark, entry.digest, name));
}

/** The name without the backslashes of lineOf(); nothing if they are not from there. */
std::optional<QString> nameFromLine(QString const& text)
{
    QString name;
    for (int i = 0; i < text.size(); ++i) {
        if (text.at(i) != QLatin1Char('\\')) {
            name += text.at(i);
            continue;
        }
        QChar const next = ++i < text.size() ? text.at(i) : QChar();
        if (next == QLatin1Char('\\'))
            name += QLatin1Char('\\');
        else if (next == QLatin1Char('n'))
            name += QLatin1Char('\n');
        else if (next == QLatin1Char('r'))
            name += QLatin1Char('\r');
        else
            return std::nullopt;
    }
    return name;
}

/** What a line of lineOf() says; nothing if it is none. */
std::optional<Entry> entryFromLine(QString line)
{
    bool const isEscaped = line.startsWith(QLatin1Char('\\'));
    line = line.mid(isEscaped ? 1 : 0);
    int const digits = 32;
    QString const digest = line.left(digits).toLower();
    QString const between = line.mid(digits, 2);
    QString const name = line.mid(digits + 2);
    auto const isDigit = [](QChar character) {
        return QLatin1String("0123456789abcdef").contains(character);
    };
    bool const isEntry = digest.size() == digits
        && std::all_of(digest.begin(), digest.end(), isDigit)
        && (between == QLatin1String("  ") || between == QLatin1String(" *")) && !name.isEmpty();
    auto const file = isEscaped ? nameFromLine(name) : std::optional(name);
    if (!isEntry || !file)
        return std::nullopt;
    return Entry {digest, *file};
}

Outcome printDigest(QString const& file)
{
    std::optional<QString> digest;
    {
        Progress progress(stepsOf(file));
        digest = digestOf(file, [&progress] { progress.step(); });
    }
    return digest && printOut(lineOf({*digest, file})) ? Outcome::Done : Outcome::Failed;
}

QJsonObject toJson(Entry const& entry)
{
    return {
        {QStringLiteral("file"), wellFormed(entry.file)}, {QStringLiteral("digest"), entry.digest}};
}

Outcome writeDigest(QString const& file, QIODevice& device, ProgressFunction const& progress)
{
    int const steps = stepsOf(file);
    int step = 0;
    auto const digest = digestOf(file, [&] {
        if (progress)
            progress(static_cast<double>(step++) / steps);
    });
    if (!digest)
        return Outcome::Failed;
    device.write(indentedJson(toJson({*digest, file}), jsonOfFileIndentation));
    return Outcome::Done;
}

/** Whether a file is still as a list says. */
struct Verdict
{
    char const* text; ///< as the digest tools of the system put it
    char const* key; ///< in JSON
};

constexpr Verdict isSame {"OK", "same"};
constexpr Verdict isDifferent {"FAILED", "different"};
constexpr Verdict isUnreadable {"FAILED open or read", "unreadable"};

/** What checking the lines of lists came to. */
struct Tally
{
    bool isJson = false;
    QJsonArray verdicts; ///< to be printed when all is done
    int malformed = 0;
    int unreadable = 0;
    int different = 0;
    bool isPrinted = true;
};

Verdict verdictOn(Entry const& entry, Progress& progress, Tally& tally)
{
    auto const digest = digestOf(entry.file, [&progress] { progress.step(); });
    Progress::clear();
    if (!digest) {
        ++tally.unreadable;
        return isUnreadable;
    }
    if (*digest == entry.digest)
        return isSame;
    ++tally.different;
    return isDifferent;
}

void checkEntry(QString const& list, Entry const& entry, Progress& progress, Tally& tally)
{
    Verdict const verdict = verdictOn(entry, progress, tally);
    if (tally.isJson) {
        QJsonObject object = toJson(entry);
        object.insert(QStringLiteral("list"), wellFormed(list));
        object.insert(QStringLiteral("status"), QLatin1String(verdict.key));
        tally.verdicts.append(object);
        return;
    }
    tally.isPrinted = tally.isPrinted
        && printOut(
            QStringLiteral("%1: %2\n").arg(printable(entry.file), QLatin1String(verdict.text)));
}

bool isBinary(QByteArray const& content)
{
    return !kindOfContent(content).isEmpty() || content.contains('\0');
}

QString noListText(QByteArray const& content)
{
    QString const kind = kindOfContent(content);
    return QStringLiteral("%1, not a list of digests")
        .arg(kind.isEmpty() ? QStringLiteral("a binary file") : kind);
}

/** False, after an error message, when the list cannot be read or holds no digest. */
bool checkList(QString const& list, Tally& tally)
{
    Diagnostics diagnostics;
    auto const content = readInput(list, diagnostics);
    if (content && isBinary(*content))
        diagnostics.error(list, noListText(*content));
    report(diagnostics);
    if (!diagnostics.isEmpty())
        return false;
    // Names are bytes; a mark of UTF-8 in front is none of them.
    QByteArray const mark = QByteArrayLiteral("\xef\xbb\xbf");
    QStringList lines = QFile::decodeName(content->mid(content->startsWith(mark) ? mark.size() : 0))
                            .split(QLatin1Char('\n'));
    if (lines.last().isEmpty())
        lines.removeLast();
    QVector<Entry> entries;
    QStringList files;
    QVector<int> malformed;
    for (int i = 0; i < lines.size(); ++i) {
        if (auto const entry = entryFromLine(lines.at(i))) {
            entries.append(*entry);
            files.append(entry->file);
        } else {
            malformed.append(i + 1);
        }
    }
    // Whoever has named the wrong file is not told of each of its lines.
    if (entries.isEmpty()) {
        report({Diagnostic::Severity::Error, list, 0, 0, QStringLiteral("no digest found")});
        return false;
    }
    for (int const number : qAsConst(malformed)) {
        report({Diagnostic::Severity::Error, list, number, 1,
            QStringLiteral("no line with a digest")});
    }
    tally.malformed += malformed.size();
    Progress progress(stepsOf(files));
    for (Entry const& entry : qAsConst(entries))
        checkEntry(list, entry, progress, tally);
    return true;
}

void reportTotal(char const* what, int count)
{
    report({Diagnostic::Severity::Error, QString(), 0, 0,
        QStringLiteral("kpgeom digest: %1: %2").arg(QLatin1String(what)).arg(count)});
}

Outcome checkLists(QStringList const& lists, bool isJson)
{
    Tally tally;
    tally.isJson = isJson;
    bool areRead = true;
    for (QString const& list : lists)
        areRead = checkList(list, tally) && areRead;
    if (isJson)
        tally.isPrinted = printOut(QJsonDocument(tally.verdicts).toJson());
    if (tally.unreadable > 0)
        reportTotal("files that cannot be read", tally.unreadable);
    if (tally.different > 0)
        reportTotal("digests that differ", tally.different);
    if (!areRead || !tally.isPrinted || tally.unreadable > 0 || tally.different > 0)
        return Outcome::Failed;
    return tally.malformed > 0 ? Outcome::Warned : Outcome::Done;
}

Outcome runDigest(Command const& command, QStringList const& arguments)
{
    CommandLine line(command);
    if (auto const end = line.parse(arguments))
        return *end;
    line.fallBackOnStandardInput();
    if (line.operands().isEmpty())
        return line.misused(misuse(QStringLiteral("no file given")));
    bool const isJson = line.isSet(QStringLiteral("json"));
    if (!line.isSet(QStringLiteral("check"))) {
        if (isJson)
            return tellOfEach(line, ReportForm::Json, writeDigest);
        return runBatch(
            line, {{}, {}, {}, {}, [](BatchJob const& job) { return printDigest(job.input); }});
    }
    if (auto const fault = batchOptionFault(line, QStringLiteral("--check")))
        return line.misused(*fault);
    return checkLists(line.operands(), isJson);
}

constexpr CommandOption digestOptions[] = {
    {"c", "check", {},
        "Read such lines from the files, and say which of the files that they name are still the "
        "same."},
    {"", "json", {}, "Print JSON instead of lines."},
};

} // namespace

constexpr Command digestCommand {"digest", "FILE...", fileHelp, {fileValue, fileValue},
    "Prints the application's own digest of files. It is not the published MD5.", runDigest,
    {digestOptions, batchOptions}};
