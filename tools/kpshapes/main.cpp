#include "canvas/canvasaccessible.h"
#include "unitutil.h"
#include "window/prompter.h"
#include "window/recentfiles.h"
#include "window/resources.h"
#include "window/stylechoice.h"
#include "window/windows.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <QIcon>
#include <QScreen>
#include <QSettings>
#include <QStandardPaths>

#include <cstdio>
#include <optional>

namespace {

/** What of the command line is no option; nothing if the program is to end with `exitCode`. */
std::optional<QStringList> readCommandLine(QApplication const& application, int& exitCode)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Edits shapes whose points follow their box."));
    QCommandLineOption const help(
        {QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Print this help and exit."));
    QCommandLineOption const version({QStringLiteral("v"), QStringLiteral("version")},
        QStringLiteral("Print the version and exit."));
    parser.addOptions({help, version});
    parser.addPositionalArgument(QStringLiteral("FILE"),
        QStringLiteral("Documents of outlines, or pictures to be imported."),
        QStringLiteral("[FILE...]"));
    exitCode = 0;
    if (!parser.parse(application.arguments())) {
        std::fprintf(stderr, "kpshapes: %s\n", qPrintable(parser.errorText()));
        exitCode = 2;
        return std::nullopt;
    }
    if (parser.isSet(help)) {
        std::fputs(qPrintable(parser.helpText()), stdout);
        return std::nullopt;
    }
    if (parser.isSet(version)) {
        std::printf("kpshapes %s\n", qPrintable(QCoreApplication::applicationVersion()));
        return std::nullopt;
    }
    QStringList files;
    for (QString const& file : parser.positionalArguments())
        files << QFileInfo(file).absoluteFilePath();
    return files;
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
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(
        Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    QApplication const application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("kpshapes"));
    QCoreApplication::setApplicationVersion(QStringLiteral(KPSHAPES_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("kpshapes"));
    int exitCode = 0;
    auto const files = readCommandLine(application, exitCode);
    if (!files)
        return exitCode;
    initUnits();
    installCanvasAccessibility();
    QDir const config(QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation));
    QDir const data(QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation));
    DialogPrompter prompter;
    RecentFiles recent;
    Surroundings const surroundings {prompter, recent,
        config.filePath(QStringLiteral("window.ini")), data.filePath(QStringLiteral("recovery"))};
    QSettings const settings(surroundings.settingsFile, QSettings::IniFormat);
    applyStyle(styleOf(settings.value(QStringLiteral("view/style")).toString()));
    QGuiApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("kpshapes"), Resources::icon()));
    Windows windows(surroundings);
    windows.start(*files);
    return QApplication::exec();
}
