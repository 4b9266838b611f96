// SPDX-License-Identifier: MIT
#ifndef FORM_H
#define FORM_H

#include "common/diagnostic.h"

/** A text with marks for what the tables of the commands give: names between at signs. */
struct Form
{
    QString file; ///< as messages name it
    QString text;

    /** Puts text in the place of a mark; of lines in that of its line. A diagnostic if it is not there. */
    void fill(QString const& name, QString const& content, Diagnostics& diagnostics);
};

#endif // FORM_H
