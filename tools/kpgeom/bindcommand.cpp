// SPDX-License-Identifier: MIT
#include "batch.h"
#include "commandline.h"
#include "common/text.h"
#include "console.h"
#include "document/bindingrule.h"
#include "document/documentrewriter.h"
#include "document/geometrywalker.h"
#include "document/shapes.h"
#include "document/shortlines.h"
#include "documentinput.h"
#include "fit/slicing.h"
#include "import/gunzip.h"
#include "import/svgimport.h"
#include "process/messagelog.h"
#include "progress.h"
#include "valuetext.h"

#include <cmath>

namespace {

struct BindOptions
{
    QString operand;
    QString output;
    Slices slices; ///< in the drawing's units
    std::optional<QSizeF> box; ///< of all outlines of a document
    std::optional<double> scale; ///< outline units a unit of a picture
};

/** "L,T,R,B": none is negative. */
std::optional<Slices> slicesFromText(QString const& text)
{
    QStringList const parts = text.split(QLatin1Char(','));
    Slices slices;
    double* const margins[] = {&slices.left, &slices.top, &slices.right, &slices.bottom};
    if (parts.size() != 4)
        return std::nullopt;
    for (int i = 0; i < parts.size(); ++i) {
        auto const margin = marginFromText(parts.at(i));
        if (!margin)
            return std::nullopt;
        *margins[i] = *margin;
    }
    return slices;
}

/** What is wrong with the options, or nothing. */
std::optional<Diagnostic> readOptions(CommandLine const& line, BindOptions& options)
{
    auto const slices = slicesFromText(line.value(QStringLiteral("slices")));
    if (!slices) {
        return misuse(QStringLiteral("--slices takes four margins from 0, like 20,10,20,10, "
                                     "not '%1'")
                          .arg(line.value(QStringLiteral("slices"))));
    }
    options.slices = *slices;
    options.slices.growsCorners = line.isSet(QStringLiteral("keep-corners"));
    if (line.isSet(QStringLiteral("size"))) {
        options.box = sizeFromText(line.value(QStringLiteral("size")));
        if (!options.box) {
            return misuse(QStringLiteral("--size takes a box like 240x160, not '%1'")
                              .arg(line.value(QStringLiteral("size"))));
        }
        if (QString const fault = slicesFault(options.slices, *options.box); !fault.isEmpty())
            return misuse(fault);
    }
    if (line.isSet(QStringLiteral("scale"))) {
        options.scale = factorFromText(line.value(QStringLiteral("scale")));
        if (!options.scale)
            return misuse(
                QStringLiteral("--scale takes a number greater than 0 and at most 1000000"));
    }
    options.output = line.file(QStringLiteral("output"));
    int const count = line.operands().size();
    if (count == 0 || (count > 1 && !isBatch(line, options.output)))
        return misuse(QStringLiteral("exactly one file is needed"));
    if (options.output.isEmpty())
        return misuse(QStringLiteral("no output file given (-o)"));
    return std::nullopt;
}

/** What is told of a coordinate that does not follow the slices. */
QString inexactText(int outline, InexactBinding const& inexact)
{
    QString const where =
        QStringLiteral("outline %1, segment %2, %3")
            .arg(QString::number(outline), QString::number(inexact.segment + 1), inexact.letter);
    if (std::isnan(inexact.error))
        return QStringLiteral("%1: cannot be bound and is left as it is").arg(where);
    return QStringLiteral("%1: no rule expresses it; %2 is taken, off by %3 in a box of %4")
        .arg(where, QString::fromUtf8(bindingRule(ruleOf(inexact.base)).phrase),
            numberText(inexact.error), sizeText(inexact.box));
}

/** The elements of the segments of an outline, in their order. */
QVector<MarkupNode const*> segmentElements(Outline const& outline)
{
    QVector<MarkupNode const*> elements;
    GeometryWalker walker(*outline.list);
    for (MarkupNode const& child : outline.markup->children) {
        if (child.kind == MarkupNode::Kind::Element && walker.enter(child.name))
            elements << &child;
    }
    return elements;
}

/** The box that an outline of a document is drawn for; nothing, after a message, if none is given. */
std::optional<QSizeF> boxOf(Outline const& outline, BindOptions const& options)
{
    if (options.box)
        return options.box;
    // In a document sides are numbers.
    auto const width = numberFromText(outline.width, 0.0, greatestFactor);
    auto const height = numberFromText(outline.height, 0.0, greatestFactor);
    if (width && height && *width > 0.0 && *height > 0.0)
        return QSizeF(*width, *height);
    QString const fault = outline.width.isEmpty() || outline.height.isEmpty()
        ? QStringLiteral("has no box: its element has no Width and Height")
        : QStringLiteral("has no box: Width '%1' and Height '%2'")
              .arg(elided(outline.width, 20), elided(outline.height, 20));
    report({Diagnostic::Severity::Error, options.operand, outline.line, outline.column,
        QStringLiteral("outline %1 %2; --size gives one").arg(outline.index).arg(fault)});
    return std::nullopt;
}

Outcome bindDocument(CommandLine const& line, QByteArray const& text,
    OutlineDocument const& document, BindOptions const& options)
{
    if (document.outlines().empty()) {
        report({Diagnostic::Severity::Error, options.operand, 0, 0,
            QStringLiteral("no outline to bind")});
        return Outcome::Failed;
    }
    QVector<QSizeF> boxes;
    for (Outline const& outline : document.outlines()) {
        auto const box = boxOf(outline, options);
        if (!box)
            return Outcome::Failed;
        if (QString const fault = slicesFault(options.slices, *box); !fault.isEmpty()) {
            return line.misused(
                misuse(QStringLiteral("outline %1: %2").arg(outline.index).arg(fault)));
        }
        boxes << *box;
    }
    Diagnostics diagnostics;
    QVector<int> lost;
    auto const bind = [&](Outline& outline) {
        QSizeF const& box = boxes.at(outline.index - 1);
        QVector<MarkupNode const*> const elements = segmentElements(outline);
        for (InexactBinding const& inexact : bindToSlices(*outline.list, box, options.slices)) {
            MarkupNode const& element = *elements.at(inexact.segment);
            diagnostics.add({Diagnostic::Severity::Warning, options.operand, element.line,
                element.column, inexactText(outline.index, inexact)});
        }
        lost << countLostLines(*outline.list);
        return true;
    };
    Output output(options.output);
    auto const input = repeatableInput(text)();
    if (!output.open()
        || !rewriteDocument(*input, options.operand, output.device(), bind, diagnostics)) {
        report(diagnostics);
        return Outcome::Failed;
    }
    bool const isExact = diagnostics.isEmpty();
    for (int i = 0; i < lost.size(); ++i) {
        if (lost.at(i) > 0)
            diagnostics.add(lostLinesIn(boxes.at(i), lost.at(i), options.operand));
    }
    report(diagnostics);
    if (!output.commit())
        return Outcome::Failed;
    return isExact ? Outcome::Done : Outcome::Warned;
}

/** The slices in other units, of which `factor` make one. */
Slices scaled(Slices const& slices, double factor)
{
    return {slices.left * factor, slices.top * factor, slices.right * factor,
        slices.bottom * factor, slices.growsCorners};
}

Outcome bindPicture(CommandLine const& line, QByteArray const& svg, BindOptions const& options)
{
    Diagnostics diagnostics;
    MessageLog log;
    double const scale = options.scale.value_or(1.0);
    auto picture = onlyPicture(
        importSvg(svg, {options.operand, scale, [&log] { return log.take(); }}, diagnostics),
        options.operand, diagnostics);
    if (picture && picture->outlines.empty()) {
        diagnostics.error(options.operand, QStringLiteral("nothing in it becomes an outline"));
        picture.reset();
    }
    report(diagnostics);
    if (!picture)
        return Outcome::Failed;
    Slices const slices = scaled(options.slices, scale);
    if (QString const fault = slicesFault(slices, picture->size); !fault.isEmpty())
        return line.misused(misuse(fault));
    Diagnostics inexact;
    Shapes shapes;
    for (ImportedOutline& outline : picture->outlines) {
        int const number = static_cast<int>(shapes.size()) + 1;
        for (InexactBinding const& one : bindToSlices(*outline.list, picture->size, slices))
            inexact.warning(options.operand, inexactText(number, one));
        shapes.push_back({outline.name, picture->size, outline.fillRule, std::move(outline.list)});
    }
    report(inexact);
    if (!writeOutput(options.output, shapesDocument(shapes)))
        return Outcome::Failed;
    return inexact.isEmpty() ? Outcome::Done : Outcome::Warned;
}

Outcome bindFile(CommandLine const& line, BindOptions options, BatchJob const& job)
{
    options.operand = job.input;
    options.output = job.outputs.first();
    Diagnostics diagnostics;
    std::optional<OutlineDocument> document;
    auto const text = readInput(options.operand, diagnostics);
    bool isPicture = text && isGzip(*text);
    if (text && !isPicture) {
        Progress progress({options.operand});
        progress.step();
        auto const input = repeatableInput(*text)();
        document = OutlineDocument::read(*input, options.operand, diagnostics, progress.ofStep());
        isPicture = document && document->isSvgPicture();
    }
    report(diagnostics);
    if (!document && !isPicture)
        return Outcome::Failed;
    if (isPicture && options.box)
        return line.misused(misuse(
            QStringLiteral("--size goes with a document of outlines: a picture has its own")));
    if (!isPicture && options.scale)
        return line.misused(misuse(QStringLiteral("--scale goes with an SVG picture")));
    return isPicture ? bindPicture(line, *text, options)
                     : bindDocument(line, *text, *document, options);
}

Outcome runBind(Command const& command, QStringList const& arguments)
{
    CommandLine line(command);
    if (auto const end = line.parse(arguments))
        return *end;
    line.fallBackOnStandardInput();
    BindOptions options;
    if (auto const fault = readOptions(line, options))
        return line.misused(*fault);
    return runBatch(line,
        {line.suffixes(), options.output, QStringLiteral("xml"), {},
            [&](BatchJob const& job) { return bindFile(line, options, job); }, true});
}

constexpr CommandOption bindOptions[] = {
    {"", "slices", {"L,T,R,B"},
        "The margins at the left, upper, right and lower edge, in units of the drawing: what lies "
        "in them keeps its distance from the edge."},
    {"", "keep-corners", {}, "Let the margins grow with the smaller side of the box."},
    {"", "size", {"WxH"},
        "The box that a document's outlines are drawn for, by default Width and Height of the "
        "elements around them."},
    {"", "scale", {"FACTOR"}, "Outline units a unit of an SVG picture, by default 1."},
    {"o", "output", {"OUT", Value::Kind::File}, "Write the document to <OUT>.", manyOutputsHelp},
};

} // namespace

constexpr Command bindCommand {"bind", "FILE... --slices L,T,R,B -o OUT.xml", fileHelp,
    {drawingValue, drawingValue}, "Binds the outlines of one drawing to its margins.", runBind,
    {bindOptions, batchOptions}};
