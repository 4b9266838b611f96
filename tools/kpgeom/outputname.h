// SPDX-License-Identifier: MIT
#ifndef OUTPUTNAME_H
#define OUTPUTNAME_H

#include <QSizeF>
#include <QString>

#include <optional>

/** What the names of outputs are made of. */
struct OutputNameParts
{
    QString path; ///< of the input below the folder that was named, without its suffix
    std::optional<QSizeF> size; ///< of the box that it is drawn for
};

/** Whether an output is a pattern: a name with a placeholder, known or not, like "{name}". */
bool isOutputPattern(QString const& output);

/** Whether an output is a pattern, or a folder: it is there, or its name ends with a slash. */
bool namesManyOutputs(QString const& output);

/**
 * The pattern of an output that is a folder: each file in it has the path of its input, and its size
 * if there are several. Any other output is its own pattern.
 *
 * @param suffix of the files in a folder, without a dot
 */
QString outputPattern(QString const& output, QString const& suffix, bool hasSizes);

/** What is wrong with the placeholders of a pattern; empty if nothing is. */
QString patternFault(QString const& pattern, bool hasSizes);

/**
 * The name that a pattern gives: of "{name}" the last part of the path, of "{path}" all of it, of
 * "{size}" the width and the height like "240x160", of "{{" a brace.
 */
QString outputName(QString const& pattern, OutputNameParts const& parts);

#endif // OUTPUTNAME_H
