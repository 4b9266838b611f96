// SPDX-License-Identifier: MIT
#include "tool.h"

#include "command.h"
#include "console.h"

namespace {

constexpr char fileHelp[] = "\"-\" is standard input.";

constexpr Command commands[] = {
    {"info", "FILE...", fileHelp, "Says what outlines the documents hold.", runInfo},
    {"render", "FILE... -o OUT.{svg,png,pdf}", fileHelp, "Draws outlines.", runRender},
    {"resize", "FILE... --from WxH --to WxH -o OUT.xml", fileHelp,
        "Fits the outlines of a document to a box of another size.", runResize},
    {"convert", "IN... -o OUT.xml", fileHelp,
        "Makes a document of a picture, a stencil, path data or text in a font.", runConvert},
    {"fit", "DRAWING[@WxH] DRAWING[@WxH]... -o OUT.xml",
        "An SVG picture or a document, and the box that it was drawn for.",
        "Learns how outlines follow their box from drawings at several sizes.", runFit},
    {"bind", "FILE... --slices L,T,R,B -o OUT.xml", fileHelp,
        "Binds the outlines of one drawing to its margins.", runBind},
    {"svg", "FILE...", fileHelp, "Prints outlines as the path data of SVG.", runSvg},
    {"check", "FILE...", fileHelp, "Says what reading, saving and undo change in outlines.",
        runCheck},
    {"diff", "A B", fileHelp, "Says where the outlines of two documents differ in meaning.",
        runDiff},
    {"normalize", "FILE...", fileHelp,
        "Spells a document in the one way that line diffs can compare.", runNormalize},
    {"colour", "COLOUR... [TRANSFORM=VALUE...]",
        "\"#RRGGBB\", also without the sign, \"#AARRGGBB\", or a name.",
        "Applies colour transforms in order.", runColour},
    {"units", "VALUE UNIT [UNIT]", "A number; options stand before a negative one.",
        "Converts a length to another unit, or to all.", runUnits},
    {"pages", "", "", "Lists the predefined page sizes.", runPages},
    {"blur", "IN... -o OUT -r RADIUS", fileHelp,
        "Blurs a picture, or puts a blurred shadow under it.", runBlur},
    {"digest", "FILE...", fileHelp,
        "Prints the application's own digest of files. It is not the published MD5.", runDigest},
    {"recent", "ACTION [OPERAND...]",
        "list, folders, add PATH..., pin ROW, unpin INDEX, remove ROW or remove PATH.",
        "Shows and changes the recent files of a configuration directory.", runRecent},
};

QString helpText()
{
    QString text = QStringLiteral(
        "Usage: kpgeom COMMAND ...\n\n"
        "Reads, draws, resizes, makes, checks and compares outlines; applies colour transforms;\n"
        "converts lengths; blurs pictures; digests files; shows and changes recent files.\n\n"
        "Commands:\n");
    for (Command const& command : commands) {
        text += QStringLiteral("  %1  %2\n")
                    .arg(QLatin1String(command.name), -9)
                    .arg(QLatin1String(command.summary));
    }
    return text
        + QStringLiteral("\n\"kpgeom COMMAND --help\" explains a command. \"-\" is standard input "
                         "or output.\n"
                         "Exit status: 0 done, 1 bad input or a failed operation, 2 wrong usage, "
                         "3 done with warnings.\n"
                         "Of diff: 0 the same, 1 different, 2 anything else.\n");
}

} // namespace

Outcome runTool(QStringList const& arguments)
{
    QString const name = arguments.value(0);
    if (name == QLatin1String("--help") || name == QLatin1String("-h"))
        return printOut(helpText()) ? Outcome::Done : Outcome::Failed;
    if (name == QLatin1String("--version")) {
        return printOut(QStringLiteral("kpgeom " KPGEOM_VERSION "\n")) ? Outcome::Done
                                                                       : Outcome::Failed;
    }
    for (Command const& command : commands) {
        if (name == QLatin1String(command.name))
            return command.run(command, arguments.mid(1));
    }
    report({Diagnostic::Severity::Error, QString(), 0, 0,
        name.isEmpty()
            ? QStringLiteral("kpgeom: no command given (see kpgeom --help)")
            : QStringLiteral("kpgeom: unknown command '%1' (see kpgeom --help)").arg(name)});
    return Outcome::Misused;
}
