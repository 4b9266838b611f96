// SPDX-License-Identifier: MIT
#ifndef VECTORS_THEME_H
#define VECTORS_THEME_H

#include "values.h"

#include <QByteArray>
#include <QString>

#include <initializer_list>
#include <vector>

namespace Vectors {

/** A named value of a vector. */
struct Field
{
    template <class Value>
    Field(char const* fieldName, Value const& fieldValue)
        : name(fieldName)
        , value(json(fieldValue))
    {
    }

    QString name;
    QJsonValue value;
};

using Fields = std::vector<Field>;

/** The vectors of one file, in the order in which they were added. */
class Theme
{
public:
    /**
     * A function, as a linker shows its name without the parameters' own, what it was given and
     * what it gave. What a function changes stands among both.
     */
    void add(QString const& function, Fields const& inputs, Fields const& results);

    /**
     * One whose results follow from functions of the C library that need not be exact: within so
     * many units in the last place of each real another build is right too.
     */
    void addNear(int ulps, QString const& function, Fields const& inputs, Fields const& results);

    /** A line of JSON each. */
    QByteArray text() const { return m_text; }

private:
    QByteArray m_text;
};

} // namespace Vectors

#endif // VECTORS_THEME_H
