// SPDX-License-Identifier: MIT
#include "check/outlineaudit.h"

#include "common/text.h"
#include "document/bindingrule.h"
#include "document/geometrywalker.h"
#include "geometryformat_p.h"
#include "numbertext_p.h"

#include <cmath>

namespace {

/** Attributes and names in messages are cut to this. */
constexpr int longestQuote = 40;

QString quote(QString const& text)
{
    return elided(printable(text.simplified()), longestQuote);
}

} // namespace

void OutlineAudit::geometry(MarkupNode const& element, KpPathSegList const& list) const
{
    QStringList const flags {
        GeometryFormat::closed(), GeometryFormat::noFill(), GeometryFormat::noLine()};
    attributes(element, flags);
    for (QString const& name : flags)
        flag(element, name);
    texts(element);
    GeometryWalker walker(list);
    for (MarkupNode const& child : element.children) {
        if (child.kind != MarkupNode::Kind::Element)
            continue;
        if (KpPathSeg* const seg = walker.enter(child.name))
            segment(child, *seg);
        else
            m_report(Finding::Ignored, child,
                QStringLiteral("element %1 is ignored").arg(quote(child.name)));
    }
}

void OutlineAudit::flag(MarkupNode const& geometry, QString const& name) const
{
    MarkupAttribute const* const given = geometry.attribute(name);
    if (!given)
        return;
    static QStringList const plain {
        QStringLiteral("0"), QStringLiteral("1"), QStringLiteral("true"), QStringLiteral("false")};
    QString const& text = given->value;
    if (text.isEmpty())
        m_report(Finding::Misread, geometry, QStringLiteral("%1 is empty").arg(name));
    else if (!plain.contains(text, Qt::CaseInsensitive))
        m_report(Finding::Misread, geometry,
            QStringLiteral("%1=\"%2\" reads as false").arg(name, quote(text)));
}

void OutlineAudit::segment(MarkupNode const& element, KpPathSeg& seg) const
{
    attributes(element, {});
    texts(element);
    SegmentWalker walker(seg);
    for (MarkupNode const& child : element.children) {
        if (child.kind != MarkupNode::Kind::Element)
            continue;
        QString const name = child.name;
        auto const match = walker.enter(name);
        if (!match.real) {
            m_report(Finding::Ignored, child,
                QStringLiteral("element %1 in %2 is ignored").arg(quote(name), element.name));
            continue;
        }
        if (!match.isFirst)
            m_report(Finding::Misread, child,
                QStringLiteral("%1 of %2 is given again").arg(name, element.name));
        coordinate(child);
    }
    for (SegmentWalker::Coordinate const& known : walker.coordinates()) {
        if (!known.isGiven) {
            m_report(Finding::Misread, element,
                QStringLiteral("%1 of %2 is missing and reads as 0")
                    .arg(known.letter, element.name));
        }
    }
}

void OutlineAudit::coordinate(MarkupNode const& element) const
{
    attributes(element, {GeometryFormat::value(), GeometryFormat::base(), GeometryFormat::rate()});
    texts(element);
    for (MarkupNode const& child : element.children) {
        if (child.kind != MarkupNode::Kind::Element)
            continue;
        m_report(Finding::Ignored, child,
            QStringLiteral("element %1 in %2 is ignored").arg(quote(child.name), element.name));
    }
    real(element, GeometryFormat::value());
    base(element);
    real(element, GeometryFormat::rate());
}

void OutlineAudit::real(MarkupNode const& coordinate, QString const& attribute) const
{
    MarkupAttribute const* const given = coordinate.attribute(attribute);
    if (!given) {
        if (attribute == GeometryFormat::value())
            m_report(
                Finding::Misread, coordinate, QStringLiteral("%1 has no V").arg(coordinate.name));
        return;
    }
    QString const& text = given->value;
    QString const shown =
        QStringLiteral("%1 %2=\"%3\"").arg(coordinate.name, attribute, quote(text));
    bool isNumber = false;
    double const number = text.toDouble(&isNumber);
    if (text.isEmpty())
        m_report(Finding::Misread, coordinate, QStringLiteral("%1 is empty").arg(shown));
    else if (!isNumber)
        m_report(Finding::Misread, coordinate,
            QStringLiteral("%1 is no number and reads as 0").arg(shown));
    else if (!std::isfinite(number))
        m_report(Finding::Ignored, coordinate, QStringLiteral("%1 is not finite").arg(shown));
}

void OutlineAudit::base(MarkupNode const& coordinate) const
{
    MarkupAttribute const* const given = coordinate.attribute(GeometryFormat::base());
    if (!given)
        return;
    QString const& text = given->value;
    QString const shown = QStringLiteral("%1 B=\"%2\"").arg(coordinate.name, quote(text));
    bool isNumber = false;
    int const number = text.toInt(&isNumber);
    qint16 const base = NumberText::toBase(text);
    if (text.isEmpty())
        m_report(Finding::Misread, coordinate, QStringLiteral("%1 is empty").arg(shown));
    else if (!isNumber)
        m_report(Finding::Misread, coordinate,
            QStringLiteral("%1 is no number and reads as 0").arg(shown));
    else if (number != base)
        m_report(Finding::Misread, coordinate,
            QStringLiteral("%1 reads as %2").arg(shown, QString::number(base)));
    else if (ruleOf(base) == unknownRule)
        m_report(Finding::Ignored, coordinate, QStringLiteral("%1 is no binding rule").arg(shown));
}

void OutlineAudit::attributes(MarkupNode const& element, QStringList const& known) const
{
    QStringList ignored;
    for (MarkupAttribute const& attribute : element.attributes) {
        if (!known.contains(attribute.name) && !attribute.name.startsWith(QLatin1String("xmlns")))
            ignored << quote(attribute.name);
    }
    ignored.sort();
    for (QString const& name : qAsConst(ignored)) {
        m_report(Finding::Ignored, element,
            QStringLiteral("attribute %1 of %2 is ignored").arg(name, element.name));
    }
}

void OutlineAudit::texts(MarkupNode const& element) const
{
    for (MarkupNode const& child : element.children) {
        bool const isText =
            child.kind == MarkupNode::Kind::Text || child.kind == MarkupNode::Kind::CharacterData;
        if (isText && !child.text.trimmed().isEmpty()) {
            m_report(Finding::Ignored, element,
                QStringLiteral("text \"%1\" in %2 is ignored")
                    .arg(quote(child.text), element.name));
        }
    }
}
