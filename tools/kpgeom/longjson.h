// SPDX-License-Identifier: MIT
#ifndef LONGJSON_H
#define LONGJSON_H

#include "common/spool.h"

#include <QJsonObject>

/** The text of an object as it stands in another one, without a line feed at its end. */
QByteArray indentedJson(QJsonObject const& object, int blanks);

/** A JSON object with an array of any length: its items wait in a spool, not in memory. */
class LongJson
{
public:
    /**
     * @param array its name
     * @param indentation blanks before the object
     */
    LongJson(char const* array, int indentation);

    /** Appends an item to the array. */
    void add(QJsonObject const& item);

    /**
     * Writes the object, without a line feed at its end. Nothing is to be added any more.
     *
     * @param head the members before the array: not empty
     */
    void writeTo(QIODevice& device, QJsonObject const& head);

private:
    char const* const m_array;
    int const m_indentation;
    Spool m_items;
    bool m_isEmpty = true;
};

#endif // LONGJSON_H
