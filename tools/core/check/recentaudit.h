// SPDX-License-Identifier: MIT
#ifndef RECENTAUDIT_H
#define RECENTAUDIT_H

#include "common/diagnostic.h"

class QDomDocument;

/**
 * What the library changes or leaves out, without a word, when it reads the document as the file
 * of recent files: a warning each, in the order of the document.
 *
 * @param file its name in the warnings
 */
Diagnostics auditRecentFiles(QDomDocument const& document, QString const& file);

#endif // RECENTAUDIT_H
