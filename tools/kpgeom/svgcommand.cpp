// SPDX-License-Identifier: MIT
#include "batch.h"
#include "commandline.h"
#include "common/text.h"
#include "console.h"
#include "documentinput.h"
#include "export/pathdata.h"
#include "progress.h"
#include "valuetext.h"

#include <QIODevice>

namespace {

struct SvgOptions
{
    QVector<int> indices; ///< the outlines to print; all if empty
    std::optional<QSizeF> box; ///< that their values are recomputed for
    bool hasNames = false;
    PathDataOptions form;
};

/** What is wrong with the options, or nothing. */
std::optional<Diagnostic> readOptions(CommandLine const& line, SvgOptions& options)
{
    options.hasNames = line.isSet(QStringLiteral("names"));
    options.form.isRelative = line.isSet(QStringLiteral("relative"));
    if (line.file(QStringLiteral("output")).isEmpty())
        return misuse(QStringLiteral("no output file given (-o)"));
    if (auto fault = readIndices(line.values(QStringLiteral("index")), options.indices))
        return fault;
    QStringList const sizes = line.values(QStringLiteral("size"));
    if (sizes.size() > 1)
        return misuse(QStringLiteral("--size is given twice"));
    if (!sizes.isEmpty()) {
        options.box = sizeFromText(sizes.first());
        if (!options.box) {
            return misuse(
                QStringLiteral("--size takes a box like 240x160, not '%1'").arg(sizes.first()));
        }
    }
    if (line.isSet(QStringLiteral("precision"))) {
        QString const text = line.value(QStringLiteral("precision"));
        bool isNumber = false;
        options.form.decimals = text.toInt(&isNumber);
        if (!isNumber || *options.form.decimals < 0
            || *options.form.decimals > maximumPathDecimals) {
            return misuse(QStringLiteral("--precision takes a number from 0 to %1, not '%2'")
                              .arg(QString::number(maximumPathDecimals), text));
        }
    }
    return std::nullopt;
}

/** Writes a line an outline of the file; false, after a message, if one cannot be written. */
bool writeLines(QString const& operand, SvgOptions const& options, QIODevice& device,
    ProgressFunction const& progress)
{
    auto const write = [&](Outline& outline) {
        if (options.box)
            outline.list->updateValue(options.box->width(), options.box->height());
        auto const data = pathData(*outline.list, options.form);
        if (!data) {
            report({Diagnostic::Severity::Error, operand, 0, 0,
                QStringLiteral("a coordinate of outline %1 is infinite, NaN or too large")
                    .arg(outline.index)});
            return false;
        }
        if (options.hasNames)
            device.write(printable(caption(outline)).toUtf8() + '\t');
        device.write(data->toUtf8() + '\n');
        return true;
    };
    return forEachOutline(operand, options.indices, write, progress);
}

/** Writes the lines of each file to one of its own. */
Outcome writeEach(CommandLine const& line, SvgOptions const& options)
{
    return runBatch(line,
        {line.suffixes(), line.file(QStringLiteral("output")), QStringLiteral("txt"), {},
            [&](BatchJob const& job) {
                Progress progress({job.input});
                progress.step();
                Output output(job.outputs.first());
                bool const isWritten = output.open()
                    && writeLines(job.input, options, output.device(), progress.ofStep())
                    && output.commit();
                return isWritten ? Outcome::Done : Outcome::Failed;
            }});
}

Outcome runSvg(Command const& command, QStringList const& arguments)
{
    CommandLine line(command);
    if (auto const end = line.parse(arguments))
        return *end;
    line.fallBackOnStandardInput();
    if (line.operands().isEmpty())
        return line.misused(misuse(QStringLiteral("no file given")));
    SvgOptions options;
    if (auto const fault = readOptions(line, options))
        return line.misused(*fault);
    if (isBatch(line, line.file(QStringLiteral("output"))))
        return writeEach(line, options);
    QStringList operands;
    if (auto const end = readOperands(line, line.suffixes(), operands))
        return *end;

    Output output(line.file(QStringLiteral("output")));
    if (!output.open())
        return Outcome::Failed;
    {
        Progress progress(operands);
        for (QString const& operand : qAsConst(operands)) {
            progress.step();
            if (!writeLines(operand, options, output.device(), progress.ofStep()))
                return Outcome::Failed;
        }
    }
    return output.commit() ? Outcome::Done : Outcome::Failed;
}

constexpr CommandOption svgOptions[] = {
    {"o", "output", {"OUT", Value::Kind::File, "", "-"},
        "Write the lines to <OUT> instead of standard output. For a file a file of lines a folder, "
        "\"DIR/\", or a pattern with \"{name}\" or \"{path}\"."},
    {"", "names", {}, "Put the name of each outline, or its number, and a tab before it."},
    {"", "index", {"N"}, "Print only outline <N> of each file, counting from 1. Repeatable."},
    {"", "size", {"WxH"}, "Resize the outlines to this box."},
    {"", "relative", {}, "Count each command from where the one before it ends."},
    {"", "precision", {"N"}, "Round to <N> decimals, by default to six significant digits."},
};

} // namespace

constexpr Command svgCommand {"svg", "FILE...", fileHelp, {documentValue, documentValue},
    "Prints outlines as the path data of SVG.", runSvg, {svgOptions, batchOptions}};
