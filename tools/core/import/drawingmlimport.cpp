// SPDX-License-Identifier: MIT
#include "import/drawingmlimport.h"

#include "common/text.h"
#include "common/xmldiagnostic.h"
#include "document/contentkind.h"
#include "document/elementposition.h"
#include "document/elements.h"

#include <QBuffer>
#include <QDomDocument>

#include <array>
#include <cmath>
#include <utility>

namespace {

QString customGeometry()
{
    return QStringLiteral("custGeom");
}

QString pathList()
{
    return QStringLiteral("pathLst");
}

/** An element of a path, and which of its attributes or points give its numbers. */
struct StepElement
{
    char const* name;
    PathStep::Kind kind;
    int points; ///< children with x and y; an arc has none, but attributes
};

constexpr std::array<StepElement, 6> stepElements {{
    {"moveTo", PathStep::Kind::Move, 1},
    {"lnTo", PathStep::Kind::Line, 1},
    {"cubicBezTo", PathStep::Kind::Cubic, 3},
    {"quadBezTo", PathStep::Kind::Quadratic, 2},
    {"arcTo", PathStep::Kind::Arc, 0},
    {"close", PathStep::Kind::Close, 0},
}};

StepElement const* stepElement(QString const& name)
{
    for (StepElement const& known : stepElements) {
        if (name == QLatin1String(known.name))
            return &known;
    }
    return nullptr;
}

double lengthOf(QDomElement const& element, QString const& attribute)
{
    bool isNumber = false;
    double const length = element.attribute(attribute).toDouble(&isNumber);
    return isNumber && std::isfinite(length) && length > 0.0 ? length : 0.0;
}

bool isFalse(QString const& text)
{
    return text == QLatin1String("0") || text == QLatin1String("false");
}

/** Reads one shape from its element. */
class DefinitionReader
{
public:
    DefinitionReader(QString file, Diagnostics& diagnostics)
        : m_file(std::move(file))
        , m_diagnostics(diagnostics)
    {
    }

    /** Nothing, with a warning, if there is a fault in it. */
    std::optional<ShapeDefinition> read(QDomElement const& element)
    {
        ShapeDefinition shape;
        shape.line = element.lineNumber();
        shape.column = element.columnNumber();
        bool const isRead = readGuides(element, QStringLiteral("avLst"), true, shape.guides)
            && readGuides(element, QStringLiteral("gdLst"), false, shape.guides)
            && readPaths(element, shape);
        return isRead ? std::make_optional(std::move(shape)) : std::nullopt;
    }

private:
    bool refuse(QDomElement const& element, QString const& what)
    {
        m_diagnostics.add(warningAt(element, m_file, what + QStringLiteral(": shape left out")));
        return false;
    }

    bool readGuides(
        QDomElement const& shape, QString const& listName, bool areAdjustments, Guides& guides)
    {
        QDomElement const list = childElement(shape, listName);
        for (QDomElement guide = list.firstChildElement(); !guide.isNull();
             guide = guide.nextSiblingElement()) {
            QString const name = guide.attribute(QStringLiteral("name"));
            QString const fault =
                guides.add(name, guide.attribute(QStringLiteral("fmla")), areAdjustments);
            if (!fault.isEmpty())
                return refuse(guide, QStringLiteral("guide '%1': %2").arg(name, fault));
        }
        return true;
    }

    bool readPaths(QDomElement const& element, ShapeDefinition& shape)
    {
        QDomElement const list = childElement(element, pathList());
        for (QDomElement path = list.firstChildElement(); !path.isNull();
             path = path.nextSiblingElement()) {
            if (!readPath(path, shape))
                return false;
        }
        return !shape.paths.empty() || refuse(element, QStringLiteral("no path"));
    }

    bool readPath(QDomElement const& element, ShapeDefinition& shape)
    {
        PathDefinition path;
        path.extent =
            QSizeF(lengthOf(element, QStringLiteral("w")), lengthOf(element, QStringLiteral("h")));
        path.isFilled = element.attribute(QStringLiteral("fill")) != QLatin1String("none");
        path.isStroked = !isFalse(element.attribute(QStringLiteral("stroke")));
        for (QDomElement child = element.firstChildElement(); !child.isNull();
             child = child.nextSiblingElement()) {
            if (++m_steps > maximumPathSteps) {
                return refuse(
                    child, QStringLiteral("more than %1 steps of paths").arg(maximumPathSteps));
            }
            auto const step = readStep(child, shape.guides);
            if (!step)
                return false;
            if (path.steps.empty() && step->kind != PathStep::Kind::Move)
                return refuse(child, QStringLiteral("a path that does not begin with moveTo"));
            path.steps.push_back(*step);
        }
        shape.paths.push_back(std::move(path));
        return true;
    }

    std::optional<PathStep> readStep(QDomElement const& element, Guides const& guides)
    {
        StepElement const* const known = stepElement(localName(element));
        if (!known) {
            refuse(element, QStringLiteral("element %1 in a path").arg(element.tagName()));
            return std::nullopt;
        }
        PathStep step {known->kind, {}};
        QStringList const texts = known->kind == PathStep::Kind::Arc
            ? attributesOf(element,
                {QStringLiteral("wR"), QStringLiteral("hR"), QStringLiteral("stAng"),
                    QStringLiteral("swAng")})
            : pointsOf(element, known->points);
        for (int i = 0; i < numberCount(known->kind); ++i) {
            auto const number = guides.number(texts.value(i));
            if (!number) {
                refuse(element,
                    QStringLiteral("%1: '%2' is no number and no guide")
                        .arg(element.tagName(), texts.value(i)));
                return std::nullopt;
            }
            step.numbers[static_cast<std::size_t>(i)] = *number;
        }
        return step;
    }

    static QStringList attributesOf(QDomElement const& element, QStringList const& names)
    {
        QStringList result;
        for (QString const& name : names)
            result << element.attribute(name);
        return result;
    }

    /** The coordinates of the first `count` points, as far as they are there. */
    static QStringList pointsOf(QDomElement const& element, int count)
    {
        QStringList result;
        for (QDomElement point = element.firstChildElement();
             !point.isNull() && result.size() < 2 * count; point = point.nextSiblingElement())
            result += attributesOf(point, {QStringLiteral("x"), QStringLiteral("y")});
        return result;
    }

    QString const m_file;
    Diagnostics& m_diagnostics;
    int m_steps = 0;
};

std::optional<QDomDocument> treeOf(
    QByteArray const& text, QString const& file, Diagnostics& diagnostics)
{
    if (QString const kind = kindOfContent(text); !kind.isEmpty()) {
        diagnostics.error(file, QStringLiteral("%1, not an XML document").arg(kind));
        return std::nullopt;
    }
    QDomDocument tree;
    BoundedXml::Error error;
    if (BoundedXml::parse(text, tree, error))
        return tree;
    diagnostics.add(xmlDiagnostic(error, file));
    return std::nullopt;
}

/** The name of the shape whose properties `properties` are; empty if it has none. */
QString nameOfShape(QDomElement const& properties)
{
    QString const nameless = QStringLiteral("cNvPr");
    QDomElement const shape = properties.parentNode().toElement();
    for (QDomElement child = shape.firstChildElement(); !child.isNull();
         child = child.nextSiblingElement()) {
        QDomElement const named =
            localName(child) == nameless ? child : childElement(child, nameless);
        if (!named.isNull())
            return named.attribute(QStringLiteral("name")).simplified();
    }
    return QString();
}

/** The box of the shape whose properties `properties` are; empty if it has none. */
QSizeF boxOfShape(QDomElement const& properties)
{
    QDomElement const extent =
        childElement(childElement(properties, QStringLiteral("xfrm")), QStringLiteral("ext"));
    return {lengthOf(extent, QStringLiteral("cx")), lengthOf(extent, QStringLiteral("cy"))};
}

} // namespace

std::optional<std::vector<ShapeDefinition>> readPresetShapes(
    QByteArray const& text, QString const& file, Diagnostics& diagnostics)
{
    auto const tree = treeOf(text, file, diagnostics);
    if (!tree)
        return std::nullopt;
    std::vector<ShapeDefinition> result;
    for (QDomElement element = tree->documentElement().firstChildElement(); !element.isNull();
         element = element.nextSiblingElement()) {
        auto shape = DefinitionReader(file, diagnostics).read(element);
        if (!shape)
            continue;
        shape->name = localName(element);
        result.push_back(std::move(*shape));
    }
    if (!result.empty())
        return result;
    diagnostics.error(file, QStringLiteral("no shape is defined in it"));
    return std::nullopt;
}

std::optional<std::vector<ShapeDefinition>> readCustomShapes(
    QByteArray const& text, QString const& file, Diagnostics& diagnostics)
{
    auto const tree = treeOf(text, file, diagnostics);
    if (!tree)
        return std::nullopt;
    std::vector<ShapeDefinition> result;
    for (QDomElement element = tree->documentElement(); !element.isNull();
         element = nextElement(element)) {
        if (localName(element) != customGeometry())
            continue;
        auto shape = DefinitionReader(file, diagnostics).read(element);
        if (!shape)
            continue;
        QDomElement const properties = element.parentNode().toElement();
        shape->name = nameOfShape(properties);
        shape->box = boxOfShape(properties);
        if (shape->box.isEmpty())
            shape->box = shape->paths.front().extent;
        result.push_back(std::move(*shape));
    }
    if (!result.empty())
        return result;
    diagnostics.error(file, QStringLiteral("no custom shape can be read from it"));
    return std::nullopt;
}

bool holdsCustomShapes(QByteArray const& text)
{
    QBuffer buffer;
    buffer.setData(text);
    buffer.open(QIODevice::ReadOnly);
    BoundedXml::Reader reader(buffer);
    bool isFirst = true;
    while (reader.readNext()) {
        if (!reader.xml().isStartElement())
            continue;
        QString const name = localName(reader.xml().qualifiedName().toString());
        if (isFirst && name == QLatin1String("svg"))
            return false;
        isFirst = false;
        if (name == customGeometry())
            return true;
    }
    return false;
}
