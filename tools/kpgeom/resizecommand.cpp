#include "commandline.h"
#include "inputoutput.h"
#include "outlinedocument.h"
#include "segmentkind_p.h"

namespace {

/** Whether the element is one that the readers make a segment of. */
bool isSegment(QDomElement const& element)
{
    return SegmentKind::find([&element](SegmentKind::Kind const& kind) {
        return kind.name == element.tagName();
    }) != nullptr;
}

/**
 * Writes down the rule of absolute reals, which the document format leaves out: without it
 * they would be read back bound in proportion to the box.
 *
 * @param element what the segment has written
 */
void keepAbsolute(KpPathSeg& seg, QDomElement const& element)
{
    QDomElement coordinate = element.firstChildElement();
    SegmentKind::forEachReal(seg, [&coordinate](KpReal const& real) {
        if (real.base == KpReal::Absolute)
            coordinate.setAttribute(QStringLiteral("B"), QStringLiteral("0"));
        coordinate = coordinate.nextSiblingElement();
    });
}

/**
 * Puts the segments of the outline in the place of those in its element. Whatever else stands
 * there, and the element's attributes, stay where they are.
 */
void replaceSegments(Outline& outline)
{
    QDomDocument document = outline.element.ownerDocument();
    int next = 0;
    QDomElement child = outline.element.firstChildElement();
    while (!child.isNull()) {
        QDomElement const current = child;
        child = child.nextSiblingElement();
        if (!isSegment(current))
            continue;
        KpPathSeg& seg = *outline.list->segs.at(next++);
        QDomElement holder = document.createElement(QStringLiteral("Holder"));
        seg.saveTo(holder);
        QDomElement const replacement = holder.firstChildElement();
        keepAbsolute(seg, replacement);
        outline.element.replaceChild(replacement, current);
    }
}

} // namespace

Outcome runResize(Command const& command, QStringList const& arguments)
{
    QString const box = QStringLiteral("WxH");
    CommandLine line(command);
    line.addOption({QStringLiteral("from"),
        QStringLiteral("The box that the outlines are drawn for: their rates are taken there."),
        box});
    line.addOption({QStringLiteral("to"),
        QStringLiteral("The box that their values are recomputed for."), box});
    line.addOption({{QStringLiteral("o"), QStringLiteral("output")},
        QStringLiteral("Write the document to <OUT>."), QStringLiteral("OUT")});
    if (auto const end = line.parse(arguments))
        return *end;
    auto const from = sizeFromText(line.value(QStringLiteral("from")));
    auto const to = sizeFromText(line.value(QStringLiteral("to")));
    if (!from || !to)
        return line.misused(QStringLiteral("--from and --to take a box like 240x160"));
    if (line.files().size() != 1)
        return line.misused(QStringLiteral("exactly one file is needed"));
    if (!line.isSet(QStringLiteral("output")))
        return line.misused(QStringLiteral("no output file given (-o)"));

    auto document = OutlineDocument::load(line.files().first());
    if (!document)
        return Outcome::Failed;
    for (Outline& outline : document->outlines()) {
        outline.list->updateRate(from->width(), from->height());
        outline.list->updateValue(to->width(), to->height());
        replaceSegments(outline);
    }
    bool const isWritten = writeOutput(line.value(QStringLiteral("output")), document->toXml());
    return isWritten ? Outcome::Done : Outcome::Failed;
}
