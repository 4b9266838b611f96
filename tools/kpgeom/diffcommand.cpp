// SPDX-License-Identifier: MIT
#include "check/outlinediff.h"
#include "commandline.h"
#include "common/text.h"
#include "console.h"
#include "documentinput.h"
#include "longjson.h"
#include "progress.h"
#include "valuetext.h"

#include <QIODevice>
#include <QJsonObject>

#include <cmath>
#include <new>

namespace {

// As programs that compare files have it: a difference must not be taken for a failure to compare.
constexpr Outcome same = Outcome::Done;
constexpr Outcome different = Outcome::Failed;
constexpr Outcome trouble = Outcome::Misused;

/** Prints lines, many at a time. */
class LinePrinter
{
public:
    /** False if it cannot be printed. */
    bool print(QString const& line)
    {
        m_lines += line + QLatin1Char('\n');
        constexpr int manyCharacters = 1 << 16;
        return m_lines.size() < manyCharacters || flush();
    }

    bool flush()
    {
        Progress::clear();
        m_isPrinted = m_isPrinted && (m_lines.isEmpty() || printOut(m_lines));
        m_lines.clear();
        return m_isPrinted;
    }

private:
    QString m_lines;
    bool m_isPrinted = true;
};

struct DiffOptions
{
    std::optional<double> tolerance;
    bool isQuiet = false;
    bool isJson = false;
};

/** The document, if it is one of outlines. */
std::optional<OutlineDocument> loadOutlines(QString const& operand, Progress& progress)
{
    progress.step();
    auto document = loadDocument(operand, progress.ofStep());
    if (document && document->isSvgPicture())
        document.reset(); // nothing in it is compared, which must not look like sameness
    return document;
}

Outcome printLines(
    OutlineDocument const& before, OutlineDocument const& after, DiffOptions const& options)
{
    Outcome outcome = same;
    LinePrinter printer;
    bool isPrinted = true;
    reportDifferences(before, after, options.tolerance, [&](OutlineDifference const& difference) {
        outcome = different;
        if (options.isQuiet)
            return false;
        bool const isBefore = difference.side == OutlineDifference::Side::Before;
        QString const file = isBefore ? before.file() : after.file();
        isPrinted = printer.print(
            QStringLiteral("%1: ").arg(displayName(file)) + differenceText(difference));
        return isPrinted;
    });
    return printer.flush() && isPrinted ? outcome : trouble;
}

QJsonObject toJson(OutlineDifference const& difference)
{
    auto const orNull = [](QString const& text) {
        return text.isEmpty() ? QJsonValue() : QJsonValue(wellFormed(text));
    };
    bool const isBefore = difference.side == OutlineDifference::Side::Before;
    return {{QStringLiteral("side"), isBefore ? QStringLiteral("before") : QStringLiteral("after")},
        {QStringLiteral("outline"), difference.outline},
        {QStringLiteral("name"), wellFormed(difference.name)},
        {QStringLiteral("segment"),
            difference.segment > 0 ? QJsonValue(difference.segment) : QJsonValue()},
        {QStringLiteral("kind"), orNull(difference.kind)},
        {QStringLiteral("coordinate"), orNull(difference.letter)},
        {QStringLiteral("what"), wellFormed(difference.what)}};
}

Outcome printJson(
    OutlineDocument const& before, OutlineDocument const& after, DiffOptions const& options)
{
    LongJson json("differences", 0);
    bool areSame = true;
    reportDifferences(before, after, options.tolerance, [&](OutlineDifference const& difference) {
        areSame = false;
        json.add(toJson(difference));
        return true;
    });
    Progress::clear();
    Output output(QStringLiteral("-"));
    if (!output.open())
        return trouble;
    json.writeTo(output.device(),
        {{QStringLiteral("before"), wellFormed(before.file())},
            {QStringLiteral("after"), wellFormed(after.file())},
            {QStringLiteral("same"), areSame}});
    output.device().write("\n");
    if (!output.commit())
        return trouble;
    return areSame ? same : different;
}

Outcome compare(QStringList const& operands, DiffOptions const& options)
{
    Progress progress(operands);
    auto const before = loadOutlines(operands.first(), progress);
    auto const after = loadOutlines(operands.last(), progress);
    if (!before || !after)
        return trouble;
    return options.isJson ? printJson(*before, *after, options)
                          : printLines(*before, *after, options);
}

/** Nothing for what is no number of units from 0. */
std::optional<double> toleranceFromText(QString const& text)
{
    return lengthFromText(text, 0.0, std::numeric_limits<double>::max());
}

Outcome runDiff(Command const& command, QStringList const& arguments)
{
    CommandLine line(command);
    if (auto const end = line.parse(arguments))
        return *end;
    QStringList const operands = line.operands();
    if (operands.size() != 2)
        return line.misused(misuse(QStringLiteral("exactly two files are needed")));
    if (operands.first() == operands.last() && operands.first() == QLatin1String("-"))
        return line.misused(misuse(QStringLiteral("only one of the files can be standard input")));
    DiffOptions options {
        std::nullopt, line.isSet(QStringLiteral("quiet")), line.isSet(QStringLiteral("json"))};
    if (options.isQuiet && options.isJson)
        return line.misused(misuse(QStringLiteral("--quiet prints nothing, --json what differs")));
    if (line.isSet(QStringLiteral("tolerance"))) {
        options.tolerance = toleranceFromText(line.value(QStringLiteral("tolerance")));
        if (!options.tolerance)
            return line.misused(misuse(QStringLiteral("--tolerance takes a number from 0")));
    }
    try {
        return compare(operands, options);
    } catch (std::bad_alloc const&) {
        report(misuse(QStringLiteral("kpgeom: out of memory")));
        return trouble;
    }
}

constexpr CommandOption diffOptions[] = {
    {"", "tolerance", {"UNITS"},
        "How far values may be apart, in units; 0 compares them exactly. By default their six "
        "digits must be the same."},
    {"", "json", {}, "Print JSON instead of lines."},
    {"q", "quiet", {}, "Print nothing; the exit status tells."},
};

} // namespace

constexpr Command diffCommand {"diff", "A B", fileHelp, {documentValue, documentValue},
    "Says where the outlines of two documents differ in meaning.", runDiff, {diffOptions}};
