// SPDX-License-Identifier: MIT
#include "form.h"

void Form::fill(QString const& name, QString const& content, Diagnostics& diagnostics)
{
    QString mark = QLatin1Char('@') + name + QLatin1Char('@');
    if (content.endsWith(QLatin1Char('\n')))
        mark += QLatin1Char('\n');
    if (text.contains(mark))
        text.replace(mark, content);
    else
        diagnostics.error(file, QStringLiteral("there is no @%1@").arg(name));
}
