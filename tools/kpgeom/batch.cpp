// SPDX-License-Identifier: MIT
#include "batch.h"

#include "console.h"
#include "folderwatch.h"
#include "guiapplication.h"
#include "inputfiles.h"
#include "orderedjobs.h"
#include "outputname.h"
#include "process/termination.h"

#include <QDir>
#include <QHash>
#include <QSet>

#include <sys/stat.h>

#include <algorithm>
#include <thread>

namespace {

constexpr int mostThreads = 256;

QString const recursiveOption = QStringLiteral("recursive");
QString const jobsOption = QStringLiteral("jobs");
QString const watchOption = QStringLiteral("watch");

struct BatchOptions
{
    bool isRecursive = false;
    bool isWatching = false;
    int threads = 1;
};

/** What is wrong with the options and the operands, or nothing. */
std::optional<Diagnostic> readBatchOptions(CommandLine const& line, BatchOptions& options)
{
    options.isRecursive = line.isSet(recursiveOption);
    options.isWatching = line.isSet(watchOption);
    options.threads = qBound(1, static_cast<int>(std::thread::hardware_concurrency()), mostThreads);
    if (line.isSet(jobsOption)) {
        options.threads = line.value(jobsOption).toInt();
        if (options.threads < 1 || options.threads > mostThreads) {
            return misuse(QStringLiteral("--jobs takes a number from 1 to %1, not '%2'")
                              .arg(QString::number(mostThreads), line.value(jobsOption)));
        }
    }
    int const streams = line.operands().count(QStringLiteral("-"));
    if (streams > 1)
        return misuse(QStringLiteral("standard input is given twice"));
    if (streams > 0 && options.isWatching)
        return misuse(QStringLiteral("--watch does not go with standard input"));
    return std::nullopt;
}

/** Which file it is, and what may have been written to it; by which a change is noticed. */
struct FileState
{
    ino_t node = 0;
    off_t size = -1;
    qint64 seconds = 0;
    qint64 nanoseconds = 0;

    bool operator==(FileState const& other) const
    {
        return node == other.node && size == other.size && seconds == other.seconds
            && nanoseconds == other.nanoseconds;
    }
};

/** As it is now; that of no file if there is none. */
FileState stateOf(QString const& file)
{
    struct stat status
    {
    };
    if (stat(QFile::encodeName(file).constData(), &status) != 0)
        return {};
    return {status.st_ino, status.st_size, status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
}

/** Where a file is or would be, however it is named and whatever links lead there. */
QString placeOf(QString const& file)
{
    QFileInfo const info(file);
    if (QString place = info.canonicalFilePath(); !place.isEmpty())
        return place;
    QString const folder = QFileInfo(info.absolutePath()).canonicalFilePath();
    return folder.isEmpty() ? QDir::cleanPath(info.absoluteFilePath())
                            : folder + QLatin1Char('/') + info.fileName();
}

/** What there is to be done. */
struct Plan
{
    QVector<BatchJob> jobs;
    QStringList folders; ///< to be watched
    Diagnostics diagnostics;
    std::optional<Diagnostic> fault; ///< why none of it may be done
};

class Batch
{
public:
    Batch(CommandLine const& line, BatchTask const& task, BatchOptions const& options)
        : m_line(line)
        , m_task(task)
        , m_options(options)
        , m_pattern(isBatch(line, task.output)
                  ? outputPattern(task.output, task.suffix, task.sizes.size() > 1)
                  : QString())
    {
    }

    /** What is wrong with the output for so many files, or nothing. */
    std::optional<Diagnostic> outputFault() const
    {
        if (m_task.output.isNull())
            return std::nullopt;
        if (isOutputPattern(m_pattern)) {
            QString const fault = patternFault(m_pattern, !m_task.sizes.isEmpty());
            return fault.isEmpty() ? std::nullopt : std::optional(misuse(fault));
        }
        if (!m_options.isRecursive && m_line.operands().size() == 1)
            return std::nullopt;
        return misuse(QStringLiteral(
            "many files go to a folder or a pattern, like -o DIR/ or -o '{name}.out'"));
    }

    Outcome run()
    {
        if (m_options.isWatching)
            return watch();
        Plan const plan = planned();
        return plan.fault ? m_line.misused(*plan.fault) : run(plan);
    }

private:
    Plan planned() const
    {
        bool const isOutputFolder = QFileInfo(m_task.output).isDir();
        InputFiles inputs = inputFiles(m_line.operands(),
            {m_options.isRecursive, m_task.suffixes, isOutputFolder ? m_task.output : QString()});
        Plan plan;
        plan.folders = inputs.folders;
        plan.diagnostics = inputs.diagnostics;
        leaveOutResults(inputs.files);
        QHash<QString, QString> inputOf; // by the place of the output
        QSet<QString> places;
        for (InputFile const& file : qAsConst(inputs.files))
            places << placeOf(file.operand);
        for (InputFile const& file : qAsConst(inputs.files)) {
            BatchJob const job {file.operand, outputsOf(file)};
            for (QString const& output : job.outputs) {
                if (!plan.fault && isOutputPattern(m_pattern))
                    plan.fault = clash(file.operand, output, places, inputOf);
            }
            plan.jobs.append(job);
            if (file.isNamed) {
                plan.folders << QFileInfo(file.operand).path();
                if (QFileInfo(file.operand).isSymLink())
                    plan.folders << QFileInfo(QFileInfo(file.operand).canonicalFilePath()).path();
            }
        }
        return plan;
    }

    /** Files that were not named, but are what becomes of others: of an earlier run, say. */
    void leaveOutResults(QVector<InputFile>& files) const
    {
        QSet<QString> results;
        for (InputFile const& file : qAsConst(files)) {
            for (QString const& output : outputsOf(file)) {
                if (QString const place = placeOf(output); place != placeOf(file.operand))
                    results << place;
            }
        }
        files.erase(std::remove_if(files.begin(), files.end(),
                        [&](InputFile const& file) {
                            return !file.isNamed && results.contains(placeOf(file.operand));
                        }),
            files.end());
    }

    QStringList outputsOf(InputFile const& file) const
    {
        if (m_task.output.isNull())
            return {};
        if (!isOutputPattern(m_pattern))
            return {m_task.output};
        QString pattern = m_pattern;
        if (pattern.endsWith(QLatin1Char('.')))
            pattern += QFileInfo(file.operand).suffix();
        if (m_task.sizes.isEmpty())
            return {localFileName(outputName(pattern, {file.path, std::nullopt}))};
        QStringList result;
        for (QSizeF const& size : m_task.sizes)
            result << localFileName(outputName(pattern, {file.path, size}));
        return result;
    }

    /** Why an output must not be written, or nothing; notes whose output it is. */
    std::optional<Diagnostic> clash(QString const& input, QString const& output,
        QSet<QString> const& inputs, QHash<QString, QString>& inputOf) const
    {
        QString const place = placeOf(output);
        bool const isItself = place == placeOf(input);
        if (inputs.contains(place) && (!isItself || m_options.isWatching))
            return misuse(QStringLiteral("%1 is an input and would become an output").arg(output));
        QString const other = inputOf.value(place);
        inputOf.insert(place, input);
        if (other.isNull())
            return std::nullopt;
        return misuse(QStringLiteral("%1 and %2 would both become %3").arg(other, input, output));
    }

    Outcome run(Plan const& plan)
    {
        report(plan.diagnostics);
        Outcome outcome = Outcome::Done;
        for (Diagnostic const& diagnostic : plan.diagnostics) {
            outcome = worse(outcome,
                diagnostic.severity == Diagnostic::Severity::Error ? Outcome::Failed
                                                                   : Outcome::Warned);
        }
        bool const isOne = plan.jobs.size() == 1 && !m_options.isWatching;
        return worse(outcome, isOne ? run(plan.jobs.first()) : run(plan.jobs));
    }

    Outcome run(QVector<BatchJob> const& jobs)
    {
        // Any thread may need them, and their application belongs to this one.
        if (m_task.needsFonts)
            needGuiApplication();
        return runInOrder(
            {jobs.size(), m_options.threads, [&](int index) { return jobs.at(index).input; },
                [&](int index) { return run(jobs.at(index)); }});
    }

    Outcome run(BatchJob const& job) const
    {
        for (QString const& output : job.outputs) {
            QString const folder = QFileInfo(output).path();
            if (isOutputPattern(m_pattern) && !QDir().mkpath(folder)) {
                report({Diagnostic::Severity::Error, folder, 0, 0,
                    QStringLiteral("cannot be made a folder")});
                return Outcome::Failed;
            }
        }
        Outcome const outcome = m_task.run(job);
        if (m_isRepeating && HeldOutput::ofThread()->pieces().empty())
            report({Diagnostic::Severity::Warning, job.input, 0, 0, QStringLiteral("done")});
        return outcome;
    }

    Outcome watch()
    {
        FolderWatch folders;
        for (;; m_isRepeating = true) {
            Plan plan = plannedAndWatched(folders);
            if (!m_isRepeating && plan.fault)
                return m_line.misused(*plan.fault);
            if (!m_isRepeating && !folders.fault().isEmpty()) {
                report(misuse(folders.fault()));
                return Outcome::Failed;
            }
            if (plan.fault)
                report(*plan.fault);
            else
                keepChanged(plan.jobs);
            if (m_isRepeating)
                plan.diagnostics = Diagnostics();
            if (!plan.fault && (!plan.jobs.isEmpty() || !m_isRepeating))
                run(plan);
            if (!folders.wait())
                return Outcome::Failed;
        }
    }

    /** A plan whose folders are watched: what changes from then on is told. */
    Plan plannedAndWatched(FolderWatch& folders) const
    {
        for (;;) {
            Plan plan = planned();
            bool isNew = false;
            for (QString const& folder : qAsConst(plan.folders))
                isNew = folders.add(folder) || isNew;
            if (!isNew)
                return plan;
        }
    }

    /** Leaves out the jobs whose files are as they were, or are gone. */
    void keepChanged(QVector<BatchJob>& jobs)
    {
        QVector<BatchJob> changed;
        for (BatchJob const& job : qAsConst(jobs)) {
            FileState const state = stateOf(job.input);
            FileState& known = m_states[job.input];
            bool const isGone = m_isRepeating && state == FileState();
            if (!isGone && (!m_isRepeating || !(state == known)))
                changed << job;
            known = state;
        }
        jobs = changed;
    }

    CommandLine const& m_line;
    BatchTask const& m_task;
    BatchOptions const m_options;
    QString const m_pattern; ///< of the outputs; without a placeholder if there is just one
    bool m_isRepeating = false;
    QHash<QString, FileState> m_states;
};

} // namespace

constexpr CommandOption batchOptions[4] = {
    {"R", "recursive", {},
        "Take all files below folders that the command reads, by their suffixes."},
    {"j", "jobs", {"N"}, "Work on <N> files at a time, by default one a processor."},
    {"", "watch", {}, "Go on, and do again what changes, until interrupted."},
    quietOption,
};

std::optional<Diagnostic> batchOptionFault(CommandLine const& line, QString const& what)
{
    for (QString const& option : {recursiveOption, jobsOption, watchOption}) {
        if (line.isSet(option))
            return misuse(QStringLiteral("--%1 does not go with %2").arg(option, what));
    }
    return std::nullopt;
}

bool isBatch(CommandLine const& line, QString const& output)
{
    bool const isSingle = line.operands().size() == 1 && !batchOptionFault(line, QString());
    return isSingle ? isOutputPattern(output) : namesManyOutputs(output);
}

Outcome runBatch(CommandLine const& line, BatchTask const& task)
{
    BatchOptions options;
    if (auto const fault = readBatchOptions(line, options))
        return line.misused(*fault);
    endTidily();
    Batch batch(line, task, options);
    if (auto const fault = batch.outputFault())
        return line.misused(*fault);
    return batch.run();
}

std::optional<Outcome> readOperands(
    CommandLine const& line, QStringList const& suffixes, QStringList& operands)
{
    BatchOptions options;
    if (auto const fault = readBatchOptions(line, options))
        return line.misused(*fault);
    if (options.isWatching)
        return line.misused(misuse(QStringLiteral("--watch needs an output a file")));
    InputFiles const inputs =
        inputFiles(line.operands(), {options.isRecursive, suffixes, QString()});
    for (InputFile const& file : inputs.files)
        operands << file.operand;
    // One thing is made of all, or none: what is a warning elsewhere is the reason here.
    for (Diagnostic diagnostic : inputs.diagnostics) {
        diagnostic.severity = Diagnostic::Severity::Error;
        report(diagnostic);
    }
    if (!inputs.diagnostics.isEmpty() || operands.isEmpty())
        return Outcome::Failed;
    return std::nullopt;
}

int jobLimit(CommandLine const& line)
{
    BatchOptions options;
    readBatchOptions(line, options);
    return options.threads;
}
