// SPDX-License-Identifier: MIT
#ifndef LOCALFILENAME_H
#define LOCALFILENAME_H

#include <QString>

/**
 * The name by which Qt takes the file that somebody has named: a colon in front would make it one of
 * the resources within the program.
 */
inline QString localFileName(QString const& name)
{
    return name.startsWith(QLatin1Char(':')) ? QStringLiteral("./") + name : name;
}

#endif // LOCALFILENAME_H
