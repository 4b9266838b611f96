#include "check/outlineaudit.h"

#include "document/bindingrule.h"
#include "inputoutput.h"
#include "numbertext_p.h"
#include "segmentkind_p.h"

#include <QSet>

#include <cmath>

namespace {

/** Attributes and names in messages are cut to this. */
constexpr int longestQuote = 40;

QString quote(QString const& text)
{
    QString const line = printable(text.simplified());
    return line.size() <= longestQuote ? line : line.left(longestQuote - 1) + QChar(0x2026);
}

/** The letters of the segment kind with this element name; none for an unknown one. */
QStringList lettersOf(QString const& elementName)
{
    auto const* const kind = SegmentKind::find(
        [&elementName](SegmentKind::Kind const& k) { return k.name == elementName; });
    if (!kind)
        return {};
    std::unique_ptr<KpPathSeg> const seg(kind->create(nullptr));
    QStringList letters;
    SegmentKind::forEachCoordinate(
        *seg, [&letters](QString const& letter, KpReal const&) { letters << letter; });
    return letters;
}

} // namespace

void OutlineAudit::geometry(QDomElement const& element) const
{
    QStringList const flags {
        QStringLiteral("Closed"), QStringLiteral("NoFill"), QStringLiteral("NoLine")};
    attributes(element, flags);
    for (QString const& name : flags)
        flag(element, name);
    texts(element);
    for (QDomElement child = element.firstChildElement(); !child.isNull();
         child = child.nextSiblingElement()) {
        if (lettersOf(child.tagName()).isEmpty())
            m_report(child, QStringLiteral("element %1 is ignored").arg(quote(child.tagName())));
        else
            segment(child);
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
        m_report(geometry, QStringLiteral("%1 is empty").arg(name));
    else if (!plain.contains(text, Qt::CaseInsensitive))
        m_report(geometry, QStringLiteral("%1=\"%2\" reads as false").arg(name, quote(text)));
}

void OutlineAudit::segment(QDomElement const& element) const
{
    attributes(element, {});
    texts(element);
    QStringList const letters = lettersOf(element.tagName());
    QSet<QString> seen;
    for (QDomElement child = element.firstChildElement(); !child.isNull();
         child = child.nextSiblingElement()) {
        QString const name = child.tagName();
        if (!letters.contains(name)) {
            m_report(child,
                QStringLiteral("element %1 in %2 is ignored").arg(quote(name), element.tagName()));
            continue;
        }
        if (seen.contains(name)) {
            m_report(child, QStringLiteral("%1 of %2 is given again").arg(name, element.tagName()));
        }
        seen.insert(name);
        coordinate(child);
    }
    for (QString const& letter : letters) {
        if (!seen.contains(letter)) {
            m_report(element,
                QStringLiteral("%1 of %2 is missing and reads as 0")
                    .arg(letter, element.tagName()));
        }
    }
}

void OutlineAudit::coordinate(QDomElement const& element) const
{
    attributes(element, {QStringLiteral("V"), QStringLiteral("B"), QStringLiteral("P")});
    texts(element);
    for (QDomElement child = element.firstChildElement(); !child.isNull();
         child = child.nextSiblingElement()) {
        m_report(child,
            QStringLiteral("element %1 in %2 is ignored")
                .arg(quote(child.tagName()), element.tagName()));
    }
    real(element, QStringLiteral("V"));
    base(element);
    real(element, QStringLiteral("P"));
}

void OutlineAudit::real(QDomElement const& coordinate, QString const& attribute) const
{
    QString const text = coordinate.attribute(attribute);
    QString const shown =
        QStringLiteral("%1 %2=\"%3\"").arg(coordinate.tagName(), attribute, quote(text));
    if (!coordinate.hasAttribute(attribute)) {
        if (attribute == QLatin1String("V"))
            m_report(coordinate, QStringLiteral("%1 has no V").arg(coordinate.tagName()));
        return;
    }
    bool isNumber = false;
    double const number = text.toDouble(&isNumber);
    if (text.isEmpty())
        m_report(coordinate, QStringLiteral("%1 is empty").arg(shown));
    else if (!isNumber)
        m_report(coordinate, QStringLiteral("%1 is no number and reads as 0").arg(shown));
    else if (!std::isfinite(number))
        m_report(coordinate, QStringLiteral("%1 is not finite").arg(shown));
}

void OutlineAudit::base(QDomElement const& coordinate) const
{
    QString const text = coordinate.attribute(QStringLiteral("B"));
    if (!coordinate.hasAttribute(QStringLiteral("B")))
        return;
    QString const shown = QStringLiteral("%1 B=\"%2\"").arg(coordinate.tagName(), quote(text));
    bool isNumber = false;
    int const number = text.toInt(&isNumber);
    qint16 const base = NumberText::toBase(text);
    if (text.isEmpty())
        m_report(coordinate, QStringLiteral("%1 is empty").arg(shown));
    else if (!isNumber)
        m_report(coordinate, QStringLiteral("%1 is no number and reads as 0").arg(shown));
    else if (number != base)
        m_report(coordinate, QStringLiteral("%1 reads as %2").arg(shown, QString::number(base)));
    else if (ruleOf(base) == unknownRule)
        m_report(coordinate, QStringLiteral("%1 is no binding rule").arg(shown));
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
        m_report(
            element, QStringLiteral("attribute %1 of %2 is ignored").arg(name, element.tagName()));
    }
}

void OutlineAudit::texts(QDomElement const& element) const
{
    for (QDomNode child = element.firstChild(); !child.isNull(); child = child.nextSibling()) {
        // Where a text node stands is not known, so the message names the element around it.
        if (child.isText() && !child.nodeValue().trimmed().isEmpty()) {
            m_report(element,
                QStringLiteral("text \"%1\" in %2 is ignored")
                    .arg(quote(child.nodeValue()), element.tagName()));
        }
    }
}
