// SPDX-License-Identifier: MIT
#include "surroundings.h"
#include "themes.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>

#include <cstdio>

namespace {

bool write(QString const& path, QByteArray const& content)
{
    QFile file(path);
    bool const isWritten =
        file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush();
    if (!isWritten)
        std::fprintf(stderr, "%s: %s\n", qPrintable(path), qPrintable(file.errorString()));
    return isWritten;
}

} // namespace

/** Writes the vectors of the library that this program is linked with into a folder. */
int main(int argc, char** argv)
{
    Vectors::Surroundings const surroundings;
    QGuiApplication const application(argc, argv);
    if (argc != 2) {
        std::fputs("usage: kpvectors FOLDER\n", stderr);
        return 2;
    }
    QDir const folder(QString::fromLocal8Bit(argv[1]));
    bool isWritten = write(folder.filePath("manifest.json"), Vectors::manifest());
    for (Vectors::File const& file : Vectors::files())
        isWritten = isWritten && write(folder.filePath(file.name), Vectors::contentOf(file));
    return isWritten ? 0 : 1;
}
