// SPDX-License-Identifier: MIT
#ifndef INPUTFILES_H
#define INPUTFILES_H

#include "common/diagnostic.h"

#include <QStringList>
#include <QVector>

/** A file to be read. */
struct InputFile
{
    QString operand; ///< as messages name it; "-" is standard input
    QString path; ///< below the folder that was named, without its suffix
    bool isNamed; ///< by an operand of its own, not by a folder
};

/** The files that operands stand for. */
struct InputFiles
{
    QVector<InputFile> files; ///< in the order of the operands, those of a folder by their names
    QStringList folders; ///< that were looked into
    Diagnostics
        diagnostics; ///< a warning for each folder without a file, an error for unreadable ones
};

/** What of folders is taken. */
struct FolderSearch
{
    bool isRecursive = false; ///< or else a folder is taken for a file
    QStringList suffixes; ///< without a dot, in any case; any if empty
    QString leftOut; ///< a folder below that is not looked into; null if there is none
};

/** The files behind operands. Hidden files, and links within folders, are left out. */
InputFiles inputFiles(QStringList const& operands, FolderSearch const& search);

#endif // INPUTFILES_H
