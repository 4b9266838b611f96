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

void OutlineAudit::geometry(QDomElement const& element, KpPathSegList const& list) const
{
    QStringList const flags {
        GeometryFormat::closed(), GeometryFormat::noFill(), GeometryFormat::noLine()};
    attributes(element, flags);
    for (QString const& name : flags)
        flag(element, name);
    texts(element);
    GeometryWalker walker(list);
    for (QDomElement child = element.firstChildElement(); !child.isNull();
         child = child.nextSiblingElement()) {
        if (KpPathSeg* const seg = walker.enter(child.tagName()))
            segment(child, *seg);
        else
            m_report(Finding::Ignored, child,
                QStringLiteral("element %1 is ignored").arg(quote(child.tagName())));
    }
}

void OutlineAudit::flag(QDomElement const& geometry, QString const& name) const
{
    if (!geometry.hasAttribute(name))
        return;
    static QStringList const plain {
        QStringLiteral("0"), QStringLiteral("1"), QStringLiteral("true"), QStringLiteral("false")};
    QString const text = geometry.attribute(name);
    if (text.isEmpty())
        m_report(Finding::Misread, geometry, QStringLiteral("%1 is empty").arg(name));
    else if (!plain.contains(text, Qt::CaseInsensitive))
        m_report(Finding::Misread, geometry,
            QStringLiteral("%1=\"%2\" reads as false").arg(name, quote(text)));
}

void OutlineAudit::segment(QDomElement const& element, KpPathSeg& seg) const
{
    attributes(element, {});
    texts(element);
    SegmentWalker walker(seg);
    for (QDomElement child = element.firstChildElement(); !child.isNull();
         child = child.nextSiblingElement()) {
        QString const name = child.tagName();
        auto const match = walker.enter(name);
        if (!match.real) {
            m_report(Finding::Ignored, child,
                QStringLiteral("element %1 in %2 is ignored").arg(quote(name), element.tagName()));
            continue;
        }
        if (!match.isFirst)
            m_report(Finding::Misread, child,
                QStringLiteral("%1 of %2 is given again").arg(name, element.tagName()));
        coordinate(child);
    }
    for (SegmentWalker::Coordinate const& known : walker.coordinates()) {
        if (!known.isGiven) {
            m_report(Finding::Misread, element,
                QStringLiteral("%1 of %2 is missing and reads as 0")
                    .arg(known.letter, element.tagName()));
        }
    }
}

void OutlineAudit::coordinate(QDomElement const& element) const
{
    attributes(element, {GeometryFormat::value(), GeometryFormat::base(), GeometryFormat::rate()});
    texts(element);
    for (QDomElement child = element.firstChildElement(); !child.isNull();
         child = child.nextSiblingElement()) {
        m_report(Finding::Ignored, child,
            QStringLiteral("element %1 in %2 is ignored")
                .arg(quote(child.tagName()), element.tagName()));
    }
    real(element, GeometryFormat::value());
    base(element);
    real(element, GeometryFormat::rate());
}

void OutlineAudit::real(QDomElement const& coordinate, QString const& attribute) const
{
    QString const text = coordinate.attribute(attribute);
    QString const shown =
        QStringLiteral("%1 %2=\"%3\"").arg(coordinate.tagName(), attribute, quote(text));
    if (!coordinate.hasAttribute(attribute)) {
        if (attribute == GeometryFormat::value())
            m_report(Finding::Misread, coordinate,
                QStringLiteral("%1 has no V").arg(coordinate.tagName()));
        return;
    }
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

void OutlineAudit::base(QDomElement const& coordinate) const
{
    QString const text = coordinate.attribute(GeometryFormat::base());
    if (!coordinate.hasAttribute(GeometryFormat::base()))
        return;
    QString const shown = QStringLiteral("%1 B=\"%2\"").arg(coordinate.tagName(), quote(text));
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

void OutlineAudit::attributes(QDomElement const& element, QStringList const& known) const
{
    QDomNamedNodeMap const all = element.attributes();
    QStringList ignored;
    for (int i = 0; i < all.count(); ++i) {
        QString const name = all.item(i).nodeName();
        if (!known.contains(name) && !name.startsWith(QLatin1String("xmlns")))
            ignored << quote(name);
    }
    ignored.sort();
    for (QString const& name : qAsConst(ignored)) {
        m_report(Finding::Ignored, element,
            QStringLiteral("attribute %1 of %2 is ignored").arg(name, element.tagName()));
    }
}

void OutlineAudit::texts(QDomElement const& element) const
{
    for (QDomNode child = element.firstChild(); !child.isNull(); child = child.nextSibling()) {
        // Where a text node stands is not known, so the message names the element around it.
        if (child.isText() && !child.nodeValue().trimmed().isEmpty()) {
            m_report(Finding::Ignored, element,
                QStringLiteral("text \"%1\" in %2 is ignored")
                    .arg(quote(child.nodeValue()), element.tagName()));
        }
    }
}
