// SPDX-License-Identifier: MIT
#include "export/htmlpage.h"

#include "document/bindingrule.h"
#include "document/outlinedocument.h"
#include "export/pagetemplate.h"
#include "segmentkind_p.h"

#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>

namespace {

/** The letter of a segment in the page's data: that of its step in an SVG path, or E. */
QString letterOf(KpPathSeg::SegType type)
{
    switch (type) {
    case KpPathSeg::SegMoveTo:
        return QStringLiteral("M");
    case KpPathSeg::SegLineTo:
        return QStringLiteral("L");
    case KpPathSeg::SegCurveTo:
        return QStringLiteral("C");
    case KpPathSeg::SegEllipse:
        return QStringLiteral("E");
    }
    return {};
}

/** A letter, and base, rate and value of each real; what is no number becomes null. */
QJsonArray segmentData(KpPathSeg& seg)
{
    QJsonArray data {letterOf(seg.type)};
    SegmentKind::forEachReal(seg, [&data](KpReal const& real) {
        data.append(QJsonArray {real.base, real.rate, real.value});
    });
    return data;
}

QJsonObject outlineData(Shape const& shape)
{
    QJsonArray segments;
    for (KpPathSeg* const seg : qAsConst(shape.list->segs)) {
        if (SegmentKind::realCount(*seg) > 0)
            segments.append(segmentData(*seg));
    }
    return {{QStringLiteral("name"), shape.name}, {QStringLiteral("closed"), shape.list->closed},
        {QStringLiteral("noFill"), shape.list->noFill},
        {QStringLiteral("noLine"), shape.list->noLine},
        {QStringLiteral("fillRule"), fillRuleText(shape.fillRule.value_or(Qt::WindingFill))},
        {QStringLiteral("segments"), segments}};
}

QJsonArray ruleData()
{
    QJsonArray rules;
    for (int rule = 0; rule < ruleCount; ++rule) {
        BindingRule const& known = bindingRule(rule);
        rules.append(QJsonObject {{QStringLiteral("name"), QString::fromUtf8(known.name)},
            {QStringLiteral("meaning"), QString::fromUtf8(known.meaning)},
            {QStringLiteral("colour"), QColor::fromRgb(known.colour).name()}});
    }
    return rules;
}

/** KpReal::updateRate takes a side of this for none. */
constexpr double smallestSide = 0.001;

/** The data as JSON that cannot end the element around it. */
QByteArray dataText(Shapes const& shapes, PageSettings const& settings)
{
    QJsonArray outlines;
    for (Shape const& shape : shapes)
        outlines.append(outlineData(shape));
    QSizeF const box = settings.box.expandedTo({smallestSide, smallestSide});
    QJsonObject const data {{QStringLiteral("box"), QJsonArray {box.width(), box.height()}},
        {QStringLiteral("points"), settings.showsPoints}, {QStringLiteral("outlines"), outlines},
        {QStringLiteral("rules"), ruleData()}};
    // These characters occur in texts alone, where an escape means the same.
    return QJsonDocument(data)
        .toJson(QJsonDocument::Compact)
        .replace('<', "\\u003c")
        .replace('>', "\\u003e")
        .replace('&', "\\u0026")
        .replace("\xe2\x80\xa8", "\\u2028")
        .replace("\xe2\x80\xa9", "\\u2029");
}

/** What a policy says of the one text that may be run or applied. */
QByteArray allowed(QByteArray const& text)
{
    return "'sha256-" + QCryptographicHash::hash(text, QCryptographicHash::Sha256).toBase64()
        + '\'';
}

/** The lightness above which a ground takes dark ink. */
constexpr int lightGround = 128;

/** The class that the drawing takes its colours from on such a ground, or none. */
QByteArray groundClass(QColor const& background)
{
    if (!background.isValid() || background.alpha() == 0)
        return {};
    return qGray(background.rgb()) < lightGround ? " class=\"on-dark\"" : " class=\"on-light\"";
}

QByteArray groundStyle(QColor const& background)
{
    if (!background.isValid() || background.alpha() == 0)
        return {};
    return QStringLiteral("#stage {\n    --ground: rgba(%1, %2, %3, %4);\n}\n")
        .arg(background.red())
        .arg(background.green())
        .arg(background.blue())
        .arg(background.alphaF(), 0, 'g', 3)
        .toLatin1();
}

/** The template with its {{places}} filled, in one go: what is put in is not looked at again. */
QByteArray filled(QByteArray const& text, QMap<QByteArray, QByteArray> const& places)
{
    QByteArray result;
    int done = 0;
    for (int open = text.indexOf("{{"); open >= 0; open = text.indexOf("{{", done)) {
        int const close = text.indexOf("}}", open);
        result += text.mid(done, open - done);
        result += places.value(text.mid(open + 2, close - open - 2));
        done = close + 2;
    }
    return result + text.mid(done);
}

} // namespace

QByteArray htmlPage(Shapes const& shapes, PageSettings const& settings)
{
    QByteArray const style = PageTemplate::style() + groundStyle(settings.background);
    QByteArray const script = PageTemplate::script();
    return filled(PageTemplate::html(),
        {{"policy",
             "default-src 'none'; style-src " + allowed(style) + "; script-src " + allowed(script)
                 + "; base-uri 'none'; form-action 'none'"},
            {"title", settings.title.toHtmlEscaped().toUtf8()},
            {"ground", groundClass(settings.background)}, {"style", style},
            {"data", dataText(shapes, settings)}, {"script", script}});
}
