// SPDX-License-Identifier: MIT
#ifndef SUGGESTION_H
#define SUGGESTION_H

#include <QString>
#include <QStringList>

/**
 * The name that is likely meant by one which is none of them; empty if none is.
 *
 * Slips are letters that are missing, too many, wrong or swapped with their neighbour: up to two of
 * them, and up to one in three letters. Upper and lower case are the same. Else it is the only name
 * that begins like this, from three letters on.
 *
 * @param names of several that are as near the first is taken
 */
QString likelyName(QString const& given, QStringList const& names);

/** What is wrong with a name, and which is likely meant. */
QString withSuggestion(QString const& fault, QString const& likely);

/** Likewise, of the names that there are. */
QString withSuggestion(QString const& fault, QString const& given, QStringList const& names);

#endif // SUGGESTION_H
