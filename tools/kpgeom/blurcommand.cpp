// SPDX-License-Identifier: MIT
#include "batch.h"
#include "commandline.h"
#include "console.h"
#include "gaussianblur.h"
#include "guiapplication.h"
#include "paint/colourtext.h"
#include "paint/dropshadow.h"
#include "paint/imagefile.h"
#include "paint/picture.h"
#include "process/messagelog.h"
#include "stackblur_p.h"

#include <QFileInfo>

namespace {

constexpr int greatestOffset = 20000;

struct BlurOptions
{
    QString output;
    QString format;
    BlurKernel kernel {0, 0};
    std::optional<DropShadow> shadow;
};

/** "DX,DY,COLOUR" */
std::optional<DropShadow> shadowFromText(QString const& text)
{
    QString const comma = QStringLiteral(",");
    bool isNumber[2] = {};
    // A colour may have commas of its own.
    DropShadow const shadow {QPoint(text.section(comma, 0, 0).toInt(&isNumber[0]),
                                 text.section(comma, 1, 1).toInt(&isNumber[1])),
        colourFromText(text.section(comma, 2))};
    bool const isNear =
        qAbs(shadow.offset.x()) <= greatestOffset && qAbs(shadow.offset.y()) <= greatestOffset;
    if (!isNumber[0] || !isNumber[1] || !isNear || !shadow.colour.isValid())
        return std::nullopt;
    return shadow;
}

/** What is wrong with where the pictures go, or nothing. */
std::optional<Diagnostic> readOutput(CommandLine const& line, BlurOptions& options)
{
    options.output = line.file(QStringLiteral("output"));
    bool const isMany = isBatch(line, options.output);
    int const count = line.operands().size();
    if (count == 0 || (count > 1 && !isMany))
        return misuse(QStringLiteral("one picture is taken"));
    if (options.output.isEmpty())
        return misuse(QStringLiteral("no output file given (-o)"));
    bool const isGiven = line.isSet(QStringLiteral("format"));
    options.format =
        isGiven ? line.value(QStringLiteral("format")) : QFileInfo(options.output).suffix();
    // In a folder each picture keeps its own.
    if (!isWritableFormat(options.format) && (isGiven || !isMany || !options.format.isEmpty()))
        return misuse(
            QStringLiteral("pictures of the format '%1' are not written").arg(options.format));
    return std::nullopt;
}

/** What is wrong with the options, or nothing. */
std::optional<Diagnostic> readOptions(CommandLine const& line, BlurOptions& options)
{
    if (auto fault = readOutput(line, options))
        return fault;
    bool isNumber = false;
    options.kernel.radius = line.value(QStringLiteral("radius")).toUInt(&isNumber);
    if (!isNumber || options.kernel.radius > StackBlur::greatestRadius)
        return misuse(
            QStringLiteral("-r takes a number from 0 to %1").arg(StackBlur::greatestRadius));
    options.kernel.flatness = line.value(QStringLiteral("flatness")).toUInt(&isNumber);
    if (!isNumber)
        return misuse(QStringLiteral("--flatness takes a number from 0 to 4294967295"));
    if (line.isSet(QStringLiteral("shadow"))) {
        options.shadow = shadowFromText(line.value(QStringLiteral("shadow")));
        if (!options.shadow) {
            return misuse(
                QStringLiteral("--shadow takes an offset of at most %1 pixels and a colour, "
                               "like 4,4,#80000000")
                    .arg(greatestOffset));
        }
    }
    return std::nullopt;
}

QImage blurred(QImage const& picture, BlurOptions const& options)
{
    return options.shadow
        ? withDropShadow(picture, *options.shadow, options.kernel)
        : GaussianBlur::blurBitmap(picture, options.kernel.radius, options.kernel.flatness)
              .toImage();
}

std::optional<QImage> decoded(
    QByteArray const& content, QString const& operand, Diagnostics& diagnostics)
{
    QuietStandardError const quiet;
    return decodedPicture(content, operand, diagnostics);
}

/** The blurred picture as a file; empty, with a diagnostic, on failure. */
QByteArray blurredFile(QString const& operand, BlurOptions const& options, Diagnostics& diagnostics)
{
    auto const content = readInput(operand, diagnostics);
    if (!content)
        return QByteArray();
    auto const picture = decoded(*content, operand, diagnostics);
    if (!picture)
        return QByteArray();
    QString fault;
    if (options.shadow)
        fault = sizeFault(shadowedArea(picture->size(), *options.shadow, options.kernel).size());
    QByteArray file =
        fault.isEmpty() ? encodedPicture(blurred(*picture, options), options.format) : QByteArray();
    if (fault.isEmpty() && file.isEmpty())
        fault = QStringLiteral("the picture cannot be written in this format");
    if (!fault.isEmpty())
        diagnostics.error(operand, fault);
    return file;
}

Outcome blurFile(BlurOptions options, BatchJob const& job)
{
    QString const& output = job.outputs.first();
    Diagnostics diagnostics;
    if (options.format.isEmpty())
        options.format = QFileInfo(output).suffix();
    QByteArray const file = blurredFile(job.input, options, diagnostics);
    report(diagnostics);
    return diagnostics.isEmpty() && writeOutput(output, file) ? Outcome::Done : Outcome::Failed;
}

Outcome runBlur(Command const& command, QStringList const& arguments)
{
    CommandLine line(command);
    if (auto const end = line.parse(arguments))
        return *end;
    line.fallBackOnStandardInput();
    BlurOptions options;
    if (auto const fault = readOptions(line, options))
        return line.misused(*fault);
    // For pixmaps.
    needGuiApplication();
    return runBatch(line,
        {readableFormats(), options.output, options.format.toLower(), {},
            [&](BatchJob const& job) { return blurFile(options, job); }, true});
}

static_assert(StackBlur::greatestRadius == 254, "as --radius says");

constexpr CommandOption blurOptions[] = {
    {"o", "output", {"OUT", Value::Kind::File},
        "Write the picture to <OUT>; its suffix is the format.", manyOutputsHelp},
    {"", "format", {"NAME"}, "The format, like png. Needed with -o -."},
    {"r", "radius", {"RADIUS"},
        "How far a pixel spreads, 0 to 254 pixels; a Gaussian blur of about 0.41 times that."},
    {"", "flatness", {"N", Value::Kind::Text, "", "0"},
        "Added to all weights: 0 is a triangle (the default), a large one a box."},
    {"", "shadow", {"DX,DY,COLOUR"},
        "Leave the picture sharp and blur a shadow of it, moved to the right and down. The result "
        "grows to hold both."},
};

} // namespace

constexpr Command blurCommand {"blur", "IN... -o OUT -r RADIUS", fileHelp, {fileValue, fileValue},
    "Blurs a picture, or puts a blurred shadow under it.", runBlur, {blurOptions, batchOptions}};
