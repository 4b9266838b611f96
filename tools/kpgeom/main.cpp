// SPDX-License-Identifier: MIT
#include "common/fonts.h"
#include "guiapplication.h"
#include "process/filenames.h"
#include "process/lackofmemory.h"
#include "process/messagelog.h"
#include "tool.h"

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
    return static_cast<int>(runTool(arguments));
} catch (std::bad_alloc const&) {
    std::fputs("kpgeom: out of memory\n", stderr);
    return static_cast<int>(Outcome::Failed);
}
