#include "document/outlinedocument.h"

#include "inputoutput.h"

namespace {

/** The element that follows `element` in document order, or a null one. */
QDomElement nextElement(QDomElement const& element)
{
    QDomElement next = element.firstChildElement();
    for (QDomElement from = element; next.isNull() && !from.isNull();
         from = from.parentNode().toElement())
        next = from.nextSiblingElement();
    return next;
}

} // namespace

std::optional<OutlineDocument> OutlineDocument::load(QString const& file)
{
    auto const text = readInput(file);
    if (!text)
        return std::nullopt;
    OutlineDocument document;
    document.m_file = file;
    document.m_text = *text;
    BoundedXml::Error error;
    if (!BoundedXml::parse(document.m_text, document.m_tree, error)) {
        printError(file, error);
        return std::nullopt;
    }
    int index = 0;
    for (QDomElement element = document.m_tree.documentElement(); !element.isNull();
         element = nextElement(element)) {
        if (element.tagName() != QLatin1String("Geometry"))
            continue;
        auto list = std::make_unique<KpPathSegList>();
        list->parse(element, 0);
        QString const name =
            element.parentNode().toElement().attribute(QStringLiteral("Name")).simplified();
        document.m_outlines.push_back({++index, name, element, std::move(list)});
    }
    return document;
}

QString caption(Outline const& outline)
{
    return outline.name.isEmpty() ? QStringLiteral("#%1").arg(outline.index) : outline.name;
}
