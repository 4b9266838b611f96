// SPDX-License-Identifier: MIT
#include "files/unitrewriter.h"

#include "common/text.h"
#include "document/appearancexml.h"
#include "document/outlinereader.h"
#include "document/shapeformat.h"
#include "document/shapes.h"
#include "files/outlineedits.h"
#include "xmlstreamwriter.h"
#include "xmltext_p.h"

#include <algorithm>

namespace {

bool isSameBox(QSizeF const& left, QSizeF const& right)
{
    // QSizeF's own comparison allows for differences.
    return !(left.width() < right.width()) && !(left.width() > right.width())
        && !(left.height() < right.height()) && !(left.height() > right.height());
}

void setOrRemove(
    TextEdits& edits, ScannedElement const& element, QString const& name, QString const& value)
{
    if (value.isEmpty())
        edits.removeAttribute(element, name);
    else
        edits.setAttribute(element, name, value);
}

/** Changes what the element around an outline says of it. */
void changeSurroundings(TextEdits& edits, ScannedElement const& element, SourceUnit const& source,
    ShapeItem const& item)
{
    ShapeItem const& before = *source.item;
    if (item.name != before.name) {
        setOrRemove(edits, element, ShapeFormat::name(),
            XmlText::readable(item.name, XmlText::Controls::AreReplaced));
    }
    bool const isBoxNeeded = !source.isBoxNamed && item.outline != before.outline;
    if (isBoxNeeded || !isSameBox(item.box, before.box)) {
        edits.setAttribute(element, ShapeFormat::width(), numberText(item.box.width()));
        edits.setAttribute(element, ShapeFormat::height(), numberText(item.box.height()));
    }
    if (item.fillRule != before.fillRule) {
        setOrRemove(edits, element, ShapeFormat::fillRule(),
            item.fillRule ? fillRuleText(*item.fillRule) : QString());
    }
}

/** Of an outline, and of an appearance if there is one, among those beside it. */
ScannedElement const* elementAt(std::vector<ScannedElement> const& siblings, TextRange const& range)
{
    auto const found = std::find_if(siblings.cbegin(), siblings.cend(),
        [&range](ScannedElement const& element) { return element.startTag.begin == range.begin; });
    return range.isEmpty() || found == siblings.cend() ? nullptr : &*found;
}

void changeLook(TextEdits& edits, QByteArray const& text, Unit const& unit,
    std::vector<ScannedElement> const& siblings, Appearance const& before, Appearance const& after)
{
    if (ScannedElement const* const element = elementAt(siblings, unit.appearance)) {
        changeAppearance(edits, text, *element, before, after);
        return;
    }
    QByteArray const lineStart = lineStartBefore(text, unit.outline.begin);
    edits.insert(unit.outline.end,
        lineStart
            + writtenPiece(
                [&after](XmlStreamWriter& writer) { writeAppearance(writer, after); }, lineStart));
}

/** The start tag of a shape, as if it had nothing within. */
Shape shapeOf(ShapeItem const& item)
{
    return {item.name, item.box, item.fillRule, nullptr};
}

} // namespace

QByteArray rewrittenUnit(QByteArray const& text, SourceUnit const& source, ShapeItem const& item)
{
    Unit const& unit = source.unit;
    ShapeItem const& before = *source.item;
    std::vector<ScannedElement> const elements = scannedElements(text, unit.whole);
    TextEdits edits(text);
    if (elements.empty())
        return unit.whole.in(text);
    auto const& siblings = unit.isBare ? elements : elements.front().children;
    if (!unit.isBare)
        changeSurroundings(edits, elements.front(), source, item);
    ScannedElement const* const geometry = elementAt(siblings, unit.outline);
    if (geometry && item.outline != before.outline)
        changeOutline(edits, text, *geometry, before.outline, item.outline);
    if (!(item.appearance == before.appearance))
        changeLook(edits, text, unit, siblings, before.appearance, item.appearance);
    return edits.applied(unit.whole);
}

QByteArray newUnit(ShapeItem const& item, QByteArray const& lineStart)
{
    return writtenPiece(
        [&item](XmlStreamWriter& writer) {
            writeShapeStart(writer, shapeOf(item));
            writeGeometry(writer, *outlineOf(item.outline));
            writeAppearance(writer, item.appearance);
            writer.writeEndElement();
        },
        lineStart);
}

QByteArray newUnitAround(
    QByteArray const& geometry, ShapeItem const& item, QByteArray const& lineStart)
{
    QByteArray const empty = writtenPiece(
        [&item](XmlStreamWriter& writer) {
            writeShapeStart(writer, shapeOf(item));
            writer.writeEndElement();
        },
        {});
    QByteArray const look =
        writtenPiece([&item](XmlStreamWriter& writer) { writeAppearance(writer, item.appearance); },
            lineStart + ' ');
    std::vector<ScannedElement> const shapes = scannedElements(empty, {0, empty.size()});
    TextEdits edits(empty);
    edits.append(shapes.front(),
        lineStart + ' ' + geometry + (look.isEmpty() ? look : lineStart + ' ' + look) + lineStart);
    return edits.applied(shapes.front().range());
}

bool hasSameSurroundings(ShapeItem const& left, ShapeItem const& right)
{
    return left.name == right.name && isSameBox(left.box, right.box)
        && left.fillRule == right.fillRule;
}
