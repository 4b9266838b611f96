// SPDX-License-Identifier: MIT
#include "geometrymodel.h"

#include <QString>
#include <QXmlStreamReader>

using OutlineValue::Outline;
using OutlineValue::Real;
using OutlineValue::Segment;

namespace {

struct Node
{
    QString name; ///< as the form compares it
    QXmlStreamAttributes attributes;
    std::vector<Node> children;
};

/** Reads on from behind a start tag to its end tag. */
Node nodeAt(QXmlStreamReader& reader, GeometryModel::Form form)
{
    bool const isStream = form == GeometryModel::Form::Stream;
    Node node {
        (isStream ? reader.name() : reader.qualifiedName()).toString(), reader.attributes(), {}};
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isStartElement())
            node.children.push_back(nodeAt(reader, form));
        else if (reader.isEndElement())
            break;
    }
    return node;
}

std::optional<Node> rootOf(QByteArray const& text, GeometryModel::Form form)
{
    QXmlStreamReader reader(text);
    reader.setNamespaceProcessing(form == GeometryModel::Form::Stream);
    std::optional<Node> root;
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isStartElement())
            root = nodeAt(reader, form);
    }
    return reader.hasError() ? std::nullopt : root;
}

/** The text of an attribute if it counts: in a tree an empty one does not. */
std::optional<QString> given(Node const& node, QString const& name, bool isEmptyGiven)
{
    for (QXmlStreamAttribute const& attribute : node.attributes) {
        if (attribute.qualifiedName() == name) {
            QString const text = attribute.value().toString();
            return text.isEmpty() && !isEmptyGiven ? std::nullopt : std::optional(text);
        }
    }
    return std::nullopt;
}

void readFlag(bool& flag, Node const& node, QString const& name, bool isEmptyGiven)
{
    if (auto const text = given(node, name, isEmptyGiven))
        flag = *text == QStringLiteral("1") || text->toUpper() == QStringLiteral("TRUE");
}

void readReal(Real& real, Node const& node, bool isEmptyGiven)
{
    if (auto const text = given(node, QStringLiteral("V"), isEmptyGiven))
        real.value = text->toDouble();
    if (auto const text = given(node, QStringLiteral("B"), isEmptyGiven))
        real.base = static_cast<std::int16_t>(text->toInt());
    if (auto const text = given(node, QStringLiteral("P"), isEmptyGiven))
        real.rate = text->toDouble();
}

struct Kind
{
    int type;
    char const* name;
    char const* letters;
    bool isFirstTaken; ///< in a tree, of children of one name; of other kinds the last one is
};

constexpr Kind kinds[] = {
    {2, "MoveTo", "XY", true},
    {3, "LineTo", "XY", true},
    {4, "CurveTo", "XYABCD", false},
    {5, "Ellipse", "XYAB", false},
};

Segment segmentOf(Node const& node, Kind const& kind, GeometryModel::Form form)
{
    bool const isStream = form == GeometryModel::Form::Stream;
    Segment segment {kind.type, {}};
    int base = 1;
    for (char const* letter = kind.letters; *letter; ++letter, base = 3 - base) {
        Real real {base, 0.0, 0.0};
        for (Node const& child : node.children) {
            if (child.name != QString(QLatin1Char(*letter)))
                continue;
            readReal(real, child, isStream);
            if (kind.isFirstTaken && !isStream)
                break;
        }
        segment.reals.push_back(real);
    }
    return segment;
}

} // namespace

std::optional<Outline> GeometryModel::read(QByteArray const& text, Form form, Outline outline)
{
    auto const root = rootOf(text, form);
    if (!root)
        return std::nullopt;
    bool const isStream = form == Form::Stream;
    if (isStream && root->attributes.isEmpty())
        return outline;
    readFlag(outline.closed, *root, QStringLiteral("Closed"), false);
    readFlag(outline.noFill, *root, QStringLiteral("NoFill"), isStream);
    readFlag(outline.noLine, *root, QStringLiteral("NoLine"), isStream);
    for (Node const& child : root->children) {
        for (Kind const& kind : kinds) {
            if (child.name == QLatin1String(kind.name))
                outline.segments.push_back(segmentOf(child, kind, form));
        }
    }
    return outline;
}
