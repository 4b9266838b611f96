// SPDX-License-Identifier: MIT
#include "commandline.h"
#include "common/text.h"
#include "console.h"
#include "fit/drawinginput.h"
#include "fit/fitreport.h"
#include "paint/fitsheet.h"
#include "pictureoutput.h"
#include "process/messagelog.h"
#include "valuetext.h"

#include <QFileInfo>
#include <QJsonDocument>

namespace {

/** A million units would leave no place for a drawing. */
constexpr double greatestTolerance = 1e5;

struct FitCommandOptions
{
    QString output;
    double scale = 1.0;
    std::optional<double> tolerance; ///< in units; none: what the drawings' digits suggest
    bool isStrict = false;
    bool isJson = false;
    bool findsEllipses = true;
    QString picture; ///< drawings and fit over one another; empty for none
    PictureSettings pictureSettings;
};

/** What is wrong with the report that is asked for, or nothing. */
std::optional<Diagnostic> readPicture(CommandLine const& line, FitCommandOptions& options)
{
    if (!line.isSet(QStringLiteral("report")))
        return std::nullopt;
    options.picture = line.file(QStringLiteral("report"));
    auto const format = pictureFormat(QFileInfo(options.picture).suffix());
    if (!format)
        return misuse(QStringLiteral("--report takes a file named .svg, .png or .pdf"));
    if (options.picture == options.output)
        return misuse(QStringLiteral("--report and -o name the same file"));
    options.pictureSettings.format = *format;
    options.pictureSettings.title = QStringLiteral("Drawings and what was learnt of them");
    return std::nullopt;
}

/** What is wrong with the options, or nothing. */
std::optional<Diagnostic> readOptions(CommandLine const& line, FitCommandOptions& options)
{
    if (line.operands().size() < 2)
        return misuse(QStringLiteral("at least two drawings are needed"));
    options.output = line.file(QStringLiteral("output"));
    if (options.output.isEmpty())
        return misuse(QStringLiteral("no output file given (-o)"));
    options.isStrict = line.isSet(QStringLiteral("strict"));
    options.isJson = line.isSet(QStringLiteral("json"));
    options.findsEllipses = !line.isSet(QStringLiteral("keep-curves"));
    if (options.isJson && options.output == QLatin1String("-"))
        return misuse(QStringLiteral("--json and -o - both want standard output"));
    if (auto fault = readPicture(line, options))
        return fault;
    if (line.isSet(QStringLiteral("scale"))) {
        auto const scale = factorFromText(line.value(QStringLiteral("scale")));
        if (!scale)
            return misuse(
                QStringLiteral("--scale takes a number greater than 0 and at most 1000000"));
        options.scale = *scale;
    }
    if (line.isSet(QStringLiteral("tolerance"))) {
        options.tolerance =
            lengthFromText(line.value(QStringLiteral("tolerance")), 0.0, greatestTolerance);
        if (!options.tolerance)
            return misuse(QStringLiteral("--tolerance takes a number from 0 to 100000"));
    }
    return std::nullopt;
}

/** The drawings that the operands name, after all messages about them; nothing if one cannot be had. */
std::optional<ReadDrawings> drawingsOf(QStringList const& operands, double factor)
{
    QVector<DrawingSource> sources;
    for (QString const& operand : operands) {
        // A file may have an @ in its name.
        sources.append(QFileInfo::exists(operand) ? DrawingSource {operand, std::nullopt}
                                                  : drawingSource(operand));
    }
    Diagnostics diagnostics;
    MessageLog log;
    auto all = readDrawings(
        sources, factor, readInput, [&log] { return log.take(); }, diagnostics);
    report(diagnostics);
    return all;
}

QString summaryText(FitResult const& result)
{
    int const unclear = result.undecided.size() + result.inexact.size();
    return QStringLiteral("%1 of %2 in %3 decided and exact, tolerance %4\n")
        .arg(result.coordinates - unclear)
        .arg(countText(result.coordinates, QStringLiteral("coordinate")),
            countText(static_cast<qint64>(result.shapes.size()), QStringLiteral("outline")),
            numberText(result.tolerance));
}

Outcome runFit(Command const& command, QStringList const& arguments)
{
    CommandLine line(command);
    if (auto const end = line.parse(arguments))
        return *end;
    FitCommandOptions options;
    if (auto const fault = readOptions(line, options))
        return line.misused(*fault);

    auto const all = drawingsOf(line.operands(), options.scale);
    if (!all)
        return Outcome::Failed;
    Diagnostics diagnostics;
    auto const result = fitDrawings(all->drawings,
        {options.tolerance.value_or(all->tolerance), options.findsEllipses}, diagnostics);
    if (!result) {
        report(diagnostics);
        return Outcome::Failed;
    }
    bool const isPiped = options.output == QLatin1String("-");
    diagnostics.append(fitWarnings(*result, all->drawings, isPiped ? QString() : options.output));
    bool const fails = options.isStrict && !result->isWhole();
    if (fails) {
        diagnostics.error(isPiped ? QString() : options.output,
            QStringLiteral("not written: not all coordinates are decided and exact"));
    }
    report(diagnostics);
    if (options.isJson
        && !printOut(QString::fromUtf8(QJsonDocument(fitJson(*result, all->drawings)).toJson())))
        return Outcome::Failed;
    if (!options.picture.isEmpty()
        && !writePicture(fitSheet(all->drawings, *result), options.pictureSettings,
            QStringLiteral("kpgeom fit"), options.picture))
        return Outcome::Failed;
    if (fails || !writeOutput(options.output, shapesDocument(result->shapes)))
        return Outcome::Failed;
    if (!options.isJson && options.output != QLatin1String("-") && !printOut(summaryText(*result)))
        return Outcome::Failed;
    return diagnostics.isEmpty() ? Outcome::Done : Outcome::Warned;
}

constexpr CommandOption fitOptions[] = {
    {"o", "output", {"OUT", Value::Kind::File}, "Write the document to <OUT>."},
    {"", "tolerance", {"UNITS"},
        "How far a coordinate may be off, in units. By default what the drawings' digits suggest: "
        "0.006 for two decimals."},
    {"", "scale", {"FACTOR"}, "Outline units a unit of the drawings, by default 1."},
    {"", "keep-curves", {}, "Leave four curves that are an ellipse as they are."},
    {"", "strict", {}, "Fail, and write no document, unless all is decided and exact."},
    {"", "report", {"OUT", Value::Kind::File, "svg png pdf"},
        "Draw each drawing with the fit over it, as SVG, PNG or PDF."},
    {"", "json", {}, "Print what was found as JSON."},
    quietOption,
};

} // namespace

constexpr Command fitCommand {"fit", "DRAWING[@WxH] DRAWING[@WxH]... -o OUT.xml",
    "An SVG picture or a document, and the box that it was drawn for.",
    {drawingValue, drawingValue},
    "Learns how outlines follow their box from drawings at several sizes.", runFit, {fitOptions}};
