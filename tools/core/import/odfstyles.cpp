// SPDX-License-Identifier: MIT
#include "import/odfstyles.h"

#include <QXmlStreamReader>

namespace {

QColor colourOf(QString const& text)
{
    QColor const colour(text);
    return colour.isValid() ? colour : QColor(Qt::black);
}

} // namespace

void OdfStyles::read(QXmlStreamReader& reader)
{
    if (reader.namespaceUri() != OdfNamespace::style()
        || reader.attributes().value(OdfNamespace::style(), QStringLiteral("family"))
            != QLatin1String("graphic"))
        return;
    bool const isDefault = reader.name() == QLatin1String("default-style");
    if (!isDefault && reader.name() != QLatin1String("style"))
        return;
    auto const ofStyle = [&reader](char const* name) {
        return reader.attributes().value(OdfNamespace::style(), QLatin1String(name)).toString();
    };
    QString const name = isDefault ? QString() : ofStyle("name");
    Properties properties;
    properties.parent = ofStyle("parent-style-name");
    while (reader.readNextStartElement()) {
        if (reader.name() == QLatin1String("graphic-properties")) {
            QXmlStreamAttributes const attributes = reader.attributes();
            auto const value = [&attributes](QString const& space, char const* property) {
                return attributes.value(space, QLatin1String(property)).toString();
            };
            properties.fill = value(OdfNamespace::draw(), "fill");
            properties.fillColour = value(OdfNamespace::draw(), "fill-color");
            properties.stroke = value(OdfNamespace::draw(), "stroke");
            properties.strokeColour = value(OdfNamespace::svg(), "stroke-color");
        }
        reader.skipCurrentElement();
    }
    m_styles.insert(name, properties);
}

QBrush OdfStyles::brush(QString const& style) const
{
    QString const fill = lookUp(style, &Properties::fill);
    if (fill == QLatin1String("none"))
        return Qt::NoBrush;
    bool const isPlain = fill.isEmpty() || fill == QLatin1String("solid");
    return {colourOf(lookUp(style, &Properties::fillColour)),
        isPlain ? Qt::SolidPattern : Qt::Dense4Pattern};
}

QPen OdfStyles::pen(QString const& style) const
{
    QString const stroke = lookUp(style, &Properties::stroke);
    if (stroke == QLatin1String("none"))
        return Qt::NoPen;
    return {colourOf(lookUp(style, &Properties::strokeColour)), 1.0,
        stroke == QLatin1String("dash") ? Qt::DashLine : Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin};
}

QString OdfStyles::lookUp(QString const& style, QString Properties::*property) const
{
    // Parents can go round in circles, but not through more styles than there are.
    QString name = style;
    for (int step = 0; step <= m_styles.size() && !name.isEmpty(); ++step) {
        auto const found = m_styles.constFind(name);
        if (found == m_styles.constEnd())
            break;
        if (QString value = (*found).*property; !value.isEmpty())
            return value;
        name = found->parent;
    }
    return m_styles.value(QString()).*property;
}
