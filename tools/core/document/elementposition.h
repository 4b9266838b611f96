// SPDX-License-Identifier: MIT
#ifndef ELEMENTPOSITION_H
#define ELEMENTPOSITION_H

#include "common/diagnostic.h"

#include <QDomNode>

/**
 * A warning about an element of a document, at the ">" of its start tag, which is the place that
 * the tree knows. Columns count from 1.
 */
inline Diagnostic warningAt(QDomNode const& node, QString const& file, QString const& text)
{
    return {Diagnostic::Severity::Warning, file, node.lineNumber(), node.columnNumber(), text};
}

#endif // ELEMENTPOSITION_H
