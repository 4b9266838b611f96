// SPDX-License-Identifier: MIT
#include "canvas/canvasaccessible.h"
#include "common/filecontent.h"
#include "common/localfilename.h"
#include "common/text.h"
#include "paint/imagefile.h"
#include "process/filenames.h"
#include "process/lackofmemory.h"
#include "process/termination.h"
#include "unitutil.h"
#include "window/commandtext.h"
#include "window/mainwindow.h"
#include "window/prompter.h"
#include "window/recentfiles.h"
#include "window/resources.h"
#include "window/stylechoice.h"
#include "window/windows.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
#include <QIcon>
#include <QScreen>
#include <QSettings>
#include <QStandardPaths>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <optional>

namespace {

/** What the command line asks for. */
struct Options
{
    QStringList files; ///< to be opened, by their absolute paths
    QString picture; ///< where the window is drawn instead of being shown; empty: it is shown
    std::optional<StyleChoice> style; ///< none: as at the last time
};

int misused(QString const& text)
{
    std::fprintf(stderr, "kpshapes: %s\n", qPrintable(printable(text)));
    return 2;
}

/** The command line; nothing if the program is to end with `exitCode`. */
std::optional<Options> readCommandLine(int& exitCode)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Edits shapes whose points follow their box."));
    QCommandLineOption const help(
        {QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Print this help and exit."));
    QCommandLineOption const version({QStringLiteral("v"), QStringLiteral("version")},
        QStringLiteral("Print the version and exit."));
    // Qt takes --style for itself.
    QCommandLineOption const style(QStringLiteral("colours"),
        QStringLiteral(
            "The colours of the windows this time: system, light, dark or high-contrast."),
        QStringLiteral("NAME"));
    QCommandLineOption const picture(QStringLiteral("picture"),
        QStringLiteral("Draw the window of the first file, or of the example, into <OUT.png> and "
                       "exit."),
        QStringLiteral("OUT.png"));
    parser.addOptions({help, version, style, picture});
    parser.addPositionalArgument(QStringLiteral("FILE"),
        QStringLiteral("Documents of outlines, or pictures to be imported."),
        QStringLiteral("[FILE...]"));
    bool const isUnderstood = parser.parse(QCoreApplication::arguments());
    exitCode = isUnderstood ? 0 : misused(parser.errorText());
    if (!isUnderstood)
        return std::nullopt;
    if (parser.isSet(help)) {
        std::fputs(qPrintable(parser.helpText()), stdout);
        return std::nullopt;
    }
    if (parser.isSet(version)) {
        std::printf("kpshapes %s\n", qPrintable(QCoreApplication::applicationVersion()));
        return std::nullopt;
    }
    Options options;
    if (parser.isSet(style)) {
        options.style = styleOf(parser.value(style));
        if (!options.style) {
            exitCode =
                misused(QStringLiteral("--colours takes system, light, dark or high-contrast"));
            return std::nullopt;
        }
    }
    options.picture = localFileName(parser.value(picture));
    for (QString const& file : parser.positionalArguments())
        options.files << QFileInfo(localFileName(file)).absoluteFilePath();
    return options;
}

/** Whether it is only asked for what can be told without a display. */
bool isQuestion(int argc, char** argv)
{
    QStringList const questions {QStringLiteral("-h"), QStringLiteral("--help"),
        QStringLiteral("-v"), QStringLiteral("--version")};
    return std::any_of(argv + 1, argv + argc, [&questions](char const* argument) {
        return questions.contains(QFile::decodeName(argument));
    });
}

/** The names by which settings are found, and the version. */
void nameProgram()
{
    QCoreApplication::setApplicationName(QStringLiteral("kpshapes"));
    QCoreApplication::setApplicationVersion(QStringLiteral(KPSHAPES_VERSION));
}

/** Draws a window into a file; the exit code. */
int drawWindow(Windows& windows, Options const& options)
{
    MainWindow& window = windows.open({});
    if (options.files.isEmpty())
        window.controller().openExample();
    else
        window.controller().open(options.files.first());
    QEventLoop loop;
    QTimer ready;
    // The pictures of the other boxes come a moment after the document.
    ready.setInterval(500);
    QObject::connect(&ready, &QTimer::timeout, &loop, [&loop, &window] {
        if (!window.controller().isLoading())
            loop.quit();
    });
    ready.start();
    loop.exec();
    // A picture to be shown around does not tell where its file was.
    if (!options.files.isEmpty())
        window.statusLine().setCommand(
            CommandText::ofOpening(QFileInfo(options.files.first()).fileName()));
    Diagnostics diagnostics;
    writeFile(options.picture, encodedPicture(window.grab().toImage(), QStringLiteral("png")),
        diagnostics);
    for (Diagnostic const& diagnostic : diagnostics)
        std::fprintf(stderr, "kpshapes: %s: %s\n", qPrintable(printable(diagnostic.file)),
            qPrintable(diagnostic.text));
    return diagnostics.isEmpty() ? 0 : 1;
}

void initUnits()
{
    if (QScreen const* const screen = QGuiApplication::primaryScreen()) {
        UnitUtil::initScreen(
            screen->logicalDotsPerInch(), screen->devicePixelRatio(), screen->size());
    }
}

} // namespace

int main(int argc, char** argv)
{
    tellLackOfMemory("kpshapes: out of memory\n");
    keepFileNamesExact();
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(
        Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    nameProgram();
    int exitCode = 0;
    if (isQuestion(argc, argv)) {
        QCoreApplication const application(argc, argv);
        readCommandLine(exitCode);
        return exitCode;
    }
    QApplication const application(argc, argv);
    QGuiApplication::setDesktopFileName(QStringLiteral("kpshapes"));
    auto const options = readCommandLine(exitCode);
    if (!options)
        return exitCode;
    initUnits();
    QObject::connect(&application, &QGuiApplication::primaryScreenChanged, initUnits);
    endTidily();
    installCanvasAccessibility();
    QDir const config(QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation));
    QDir const data(QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation));
    DialogPrompter prompter;
    RecentFiles recent;
    Surroundings const surroundings {prompter, recent,
        config.filePath(QStringLiteral("window.ini")), data.filePath(QStringLiteral("recovery"))};
    QSettings const settings(surroundings.settingsFile, QSettings::IniFormat);
    QString const lastStyle = settings.value(QStringLiteral("view/style")).toString();
    applyStyle(options->style.value_or(styleOf(lastStyle).value_or(StyleChoice::System)));
    QGuiApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("kpshapes"), Resources::icon()));
    Windows windows(surroundings);
    if (!options->picture.isEmpty())
        return drawWindow(windows, *options);
    windows.start(options->files);
    return QApplication::exec();
}
