#include "command.h"
#include "common/fonts.h"
#include "console.h"
#include "guiapplication.h"
#include "process/filenames.h"
#include "process/lackofmemory.h"
#include "process/messagelog.h"

#include <QCoreApplication>
#include <QFile>
#include <QHash>

#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <new>
#include <unistd.h>

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

Outcome run(QStringList const& arguments)
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

/**
 * Drops what Qt says of its surroundings: the tool itself reports every failure. But where Qt ends
 * the process, as without its plugin to draw with, nobody else can.
 */
void takeMessage(QtMsgType type, QMessageLogContext const& /*context*/, QString const& message)
{
    if (type != QtFatalMsg)
        return;
    printError("kpgeom: " + message.simplified().toUtf8() + '\n');
    std::_Exit(static_cast<int>(Outcome::Failed));
}

/**
 * Makes a failed write an error like any other: as a signal it would end the tool without a
 * word, and could leave a temporary file behind.
 */
void ignoreWriteSignals()
{
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
}

/**
 * Puts a descriptor that fails in the place of each standard stream that is closed, lest the
 * next file to be opened takes its number and what is printed.
 */
void occupyStandardStreams()
{
    for (int const descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(descriptor, F_GETFD) < 0)
            open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY);
    }
}

} // namespace

int main(int argc, char** argv)
try {
    tellLackOfMemory("kpgeom: out of memory\n");
    ignoreWriteSignals();
    occupyStandardStreams();
    qInstallMessageHandler(takeMessage);
    // No window is ever opened, so no display is needed.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // The same document is written with its attributes in the same order every time.
    qSetGlobalQHashSeed(0);
    // Slow to make, and most commands do without.
    setFontStarter(needGuiApplication);
    // An application of Qt would do this.
    std::setlocale(LC_ALL, "");
    keepFileNamesExact();
    QCoreApplication::setApplicationName(QStringLiteral("kpgeom"));
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << QFile::decodeName(argv[i]);
    return static_cast<int>(run(arguments));
} catch (std::bad_alloc const&) {
    std::fputs("kpgeom: out of memory\n", stderr);
    return static_cast<int>(Outcome::Failed);
}
