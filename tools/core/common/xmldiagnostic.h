// SPDX-License-Identifier: MIT
#ifndef XMLDIAGNOSTIC_H
#define XMLDIAGNOSTIC_H

#include "boundedxml_p.h"
#include "common/diagnostic.h"

/** What is wrong with an XML text, on one line, as a failure of the tools. */
inline Diagnostic xmlDiagnostic(BoundedXml::Error const& error, QString const& file)
{
    return {
        Diagnostic::Severity::Error, file, error.line, error.column, error.message.simplified()};
}

#endif // XMLDIAGNOSTIC_H
