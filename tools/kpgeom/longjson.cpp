// SPDX-License-Identifier: MIT
#include "longjson.h"

#include "common/filecontent.h"

#include <QJsonDocument>

namespace {

constexpr int step = 4; ///< what QJsonDocument indents by

QByteArray lineStart(int blanks)
{
    return '\n' + QByteArray(blanks, ' ');
}

} // namespace

QByteArray indentedJson(QJsonObject const& object, int blanks)
{
    return QByteArray(blanks, ' ')
        + QJsonDocument(object).toJson().trimmed().replace('\n', lineStart(blanks));
}

LongJson::LongJson(char const* array, int indentation)
    : m_array(array)
    , m_indentation(indentation)
{
}

void LongJson::add(QJsonObject const& item)
{
    m_items.write(m_isEmpty ? "\n" : ",\n");
    m_isEmpty = false;
    m_items.write(indentedJson(item, m_indentation + 2 * step));
}

void LongJson::writeTo(QIODevice& device, QJsonObject const& head)
{
    QByteArray const end = lineStart(m_indentation) + '}';
    QByteArray const nextMember = lineStart(m_indentation + step);
    device.write(indentedJson(head, m_indentation).chopped(end.size()) + ',' + nextMember + '"'
        + m_array + "\": [");
    copyAll(m_items.content(), device);
    device.write(nextMember + ']' + end);
}
