// SPDX-License-Identifier: MIT
// Saves once, as programs do that are no command: a list of recent files, a document of the editor or
// its recovery file. One line on standard error and the exit code 1 on failure.
#include "files/documentfile.h"
#include "files/recovery.h"
#include "kprecentfilemanager.h"
#include "process/lackofmemory.h"
#include "process/termination.h"

#include <QCoreApplication>
#include <QFile>

#include <cstdio>

#include <unistd.h>

namespace {

/** Into the configuration directory of the environment. The library tells nobody of failures. */
bool saveRecentFiles()
{
    QCoreApplication::setApplicationName(QStringLiteral("."));
    KpRecentFileManager manager;
    manager.m_recentFileFolder = manager.m_symbolFolder = manager.m_libraryFolder =
        QStringLiteral("/folder");
    manager.addOpenFileInfo(QStringLiteral("/folder/file"), KpRecentFileManager::RecLocal, {});
    manager.save();
    return true;
}

bool saveDocument(QString const& path, Diagnostics& diagnostics)
{
    QFile device(path);
    if (!device.open(QIODevice::ReadOnly)) {
        diagnostics.error(path, device.errorString());
        return false;
    }
    QByteArray const content = device.readAll();
    auto const source = readSource(content, path, diagnostics).document;
    FileState state = stateOf(path);
    state.digest = digestOf(content);
    // All shapes are gone.
    return source && DocumentFile(path, source, state).save({}, path, diagnostics);
}

bool saveRecovery(QString const& path, Diagnostics& diagnostics)
{
    auto const file = RecoveryFile::adopt(path);
    if (!file) {
        diagnostics.error(path, QStringLiteral("cannot be taken over"));
        return false;
    }
    bool const isStored = file->store(
        {QStringLiteral("/folder/a.xml"), QByteArray("0"), QByteArray("<New/>")}, diagnostics);
    for (Diagnostic const& diagnostic : diagnostics)
        std::fprintf(stderr, "%s\n", qPrintable(diagnostic.text));
    // As if it had crashed: otherwise the file is no longer needed.
    _exit(isStored ? 0 : 1);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 2)
        return 2;
    tellLackOfMemory("out of memory\n");
    QCoreApplication const application(argc, argv);
    qSetGlobalQHashSeed(0);
    QString const what = QString::fromLocal8Bit(argv[1]);
    QString const path = QString::fromLocal8Bit(argv[argc - 1]);
    Diagnostics diagnostics;
    // The library's save is left to itself.
    bool isSaved = false;
    if (what == QLatin1String("recent")) {
        isSaved = saveRecentFiles();
    } else {
        endTidily();
        isSaved = what == QLatin1String("document") ? saveDocument(path, diagnostics)
                                                    : saveRecovery(path, diagnostics);
    }
    for (Diagnostic const& diagnostic : diagnostics)
        std::fprintf(stderr, "%s\n", qPrintable(diagnostic.text));
    return isSaved ? 0 : 1;
}
