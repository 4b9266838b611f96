// SPDX-License-Identifier: MIT
#ifndef DECLAREDENTITIES_P_H
#define DECLAREDENTITIES_P_H

#include <QByteArray>
#include <QByteArrayList>
#include <QHash>

/**
 * The entities that a document type declares, and how much is to do when one is used.
 *
 * Qt counts the characters to which an entity expands, not the references on the way: twenty-six
 * entities, each of two references to the one before, the first empty, take seconds and give
 * nothing, and each one more takes twice as long.
 */
class DeclaredEntities
{
public:
    /** Takes a general entity; the first of a name counts. @param value references in it stand */
    void declare(QByteArray const& name, QByteArray const& value);

    /** Likewise a parameter entity. @param value null for one that is kept elsewhere */
    void declareParameter(QByteArray const& name, QByteArray const& value);

    /** What stands for the parameter entity; null if nothing does. */
    QByteArray parameter(QByteArray const& name) const { return m_parameters.value(name); }

    /** Whether a general entity leads to more references than one may. */
    bool isExcessive(QByteArray const& name);

    /** Whether any of the general entities does. */
    bool areAnyExcessive();

private:
    int referencesOf(QByteArray const& name, int depth);

    QHash<QByteArray, QByteArrayList> m_general; ///< the names in the value of each
    QHash<QByteArray, QByteArray> m_parameters;
    QHash<QByteArray, int> m_counts; ///< known ones; 0 while one is counted
};

#endif // DECLAREDENTITIES_P_H
