// SPDX-License-Identifier: MIT
#include "theme.h"

#include <QJsonDocument>

namespace {

QJsonObject object(Vectors::Fields const& fields)
{
    QJsonObject result;
    for (Vectors::Field const& field : fields)
        result.insert(field.name, field.value);
    return result;
}

QJsonObject vector(
    QString const& function, Vectors::Fields const& inputs, Vectors::Fields const& results)
{
    return {{"function", function}, {"inputs", object(inputs)}, {"results", object(results)}};
}

QByteArray line(QJsonObject const& object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

} // namespace

void Vectors::Theme::add(QString const& function, Fields const& inputs, Fields const& results)
{
    m_text += line(vector(function, inputs, results));
}

void Vectors::Theme::addNear(
    int ulps, QString const& function, Fields const& inputs, Fields const& results)
{
    QJsonObject object = vector(function, inputs, results);
    object.insert("exact", false);
    object.insert("ulps", ulps);
    m_text += line(object);
}
