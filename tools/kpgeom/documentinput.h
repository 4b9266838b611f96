// SPDX-License-Identifier: MIT
#ifndef DOCUMENTINPUT_H
#define DOCUMENTINPUT_H

#include "document/outlinedocument.h"

#include <QSizeF>
#include <QStringList>
#include <QVector>

/**
 * The document that an operand names, "-" being standard input; nothing, after a message, when it
 * cannot be read. A message says too what to do with an SVG picture.
 */
std::optional<OutlineDocument> loadDocument(
    QString const& operand, ProgressFunction const& progress);

/**
 * Says what to do with an SVG picture, which is no document of outlines.
 *
 * @param severity an error where nothing was done with it
 */
void reportSvgPicture(QString const& operand, Diagnostic::Severity severity);

/** Likewise with a file without outlines that is called like a picture, packed, or a stencil. */
void reportStencil(QString const& operand);

/** Reads the values of --index; says what is wrong with them, or nothing. */
std::optional<Diagnostic> readIndices(QStringList const& texts, QVector<int>& indices);

/**
 * As loadDocument(), but nothing, after a message, either if the document has no outline or none of
 * an index.
 */
std::optional<OutlineDocument> loadOutlines(
    QString const& operand, QVector<int> const& indices, ProgressFunction const& progress);

/**
 * Calls `visit` with each outline of the document, or with those of the indices; one is in memory
 * at a time. False, after a message, as loadOutlines(), or if `visit` said so.
 */
bool forEachOutline(QString const& operand, QVector<int> const& indices,
    std::function<bool(Outline&)> const& visit, ProgressFunction const& progress);

/** How many lines an outline loses, by the sorted indices of those that are not drawn. */
int countLost(QVector<int> const& undrawnBefore, QVector<int> const& undrawnAfter);

/** A warning of lines that are too short to be drawn in a box; to be reported if there are any. */
Diagnostic lostLinesIn(QSizeF const& box, int lines, QString const& operand);

#endif // DOCUMENTINPUT_H
