#include "check/outlinecheck.h"

#include "check/outlineaudit.h"
#include "document/elementposition.h"
#include "document/exactcopy.h"
#include "document/shortlines.h"
#include "geometryformat_p.h"
#include "segmentkind_p.h"
#include "xmlstreamwriter.h"

#include <QLocale>
#include <QXmlStreamReader>

#include <cmath>

namespace {

using ListPointer = std::unique_ptr<KpPathSegList>;

/** How many differences or segments a message lists. */
constexpr int longestList = 5;

/** "a, b, c and 4 more". */
QString listed(QStringList const& items)
{
    if (items.size() <= longestList)
        return items.join(QStringLiteral(", "));
    return QStringLiteral("%1 and %2 more")
        .arg(QStringList(items.mid(0, longestList)).join(QStringLiteral(", ")))
        .arg(items.size() - longestList);
}

QString exactText(double number)
{
    return QString::number(number, 'g', QLocale::FloatingPointShortest);
}

/** NaN equals itself here: the question is whether something was changed. */
bool isSame(double left, double right)
{
    return left == right || (std::isnan(left) && std::isnan(right));
}

void compare(KpReal const& before, KpReal const& after, QString const& where, QStringList& changes)
{
    if (before.base != after.base) {
        changes
            << QStringLiteral("%1 rule %2 becomes %3").arg(where).arg(before.base).arg(after.base);
    }
    if (!isSame(before.value, after.value)) {
        changes << QStringLiteral("%1 value %2 becomes %3")
                       .arg(where, exactText(before.value), exactText(after.value));
    }
    if (!isSame(before.rate, after.rate)) {
        changes << QStringLiteral("%1 rate %2 becomes %3")
                       .arg(where, exactText(before.rate), exactText(after.rate));
    }
}

void compareFlag(bool before, bool after, QString const& name, QStringList& changes)
{
    if (before != after) {
        changes
            << QStringLiteral("%1 %2 becomes %3").arg(name).arg(before ? 1 : 0).arg(after ? 1 : 0);
    }
}

/** What is different in `after`, flags first. */
QStringList changes(KpPathSegList const& before, KpPathSegList const& after)
{
    QStringList changes;
    compareFlag(before.closed, after.closed, GeometryFormat::closed(), changes);
    compareFlag(before.noFill, after.noFill, GeometryFormat::noFill(), changes);
    compareFlag(before.noLine, after.noLine, GeometryFormat::noLine(), changes);
    if (before.segs.count() != after.segs.count()) {
        changes << QStringLiteral("%1 segments become %2")
                       .arg(before.segs.count())
                       .arg(after.segs.count());
        return changes;
    }
    for (int i = 0; i < before.segs.count(); ++i) {
        KpPathSeg& seg = *before.segs.at(i);
        KpPathSeg& counterpart = *after.segs.at(i);
        if (seg.type != counterpart.type) {
            changes << QStringLiteral("segment %1 becomes another kind").arg(i + 1);
            continue;
        }
        QVector<KpReal> reals;
        SegmentKind::forEachReal(counterpart, [&reals](KpReal const& real) { reals << real; });
        int next = 0;
        SegmentKind::forEachCoordinate(seg, [&](QString const& letter, KpReal const& real) {
            QString const where = QStringLiteral("segment %1 %2").arg(i + 1).arg(letter);
            compare(real, reals.at(next++), where, changes);
        });
    }
    return changes;
}

/**
 * The outlines as the stream reader reads them, those inside other outlines left out; null for
 * one that it refuses. It may be fewer than there are when the reader meets an error.
 */
std::vector<ListPointer> readByStream(QByteArray const& text, QXmlStreamReader& reader)
{
    std::vector<ListPointer> lists;
    reader.addData(text);
    while (!reader.atEnd()) {
        reader.readNext();
        if (!reader.isStartElement() || reader.qualifiedName() != GeometryFormat::geometry())
            continue;
        auto list = std::make_unique<KpPathSegList>();
        if (!list->parse(reader, 0)) {
            reader.skipCurrentElement();
            list.reset();
        }
        lists.push_back(std::move(list));
    }
    return lists;
}

ListPointer throughStream(KpPathSegList& list)
{
    QByteArray text;
    XmlStreamWriter writer(&text);
    list.saveTo(writer);
    QXmlStreamReader reader(text);
    auto result = std::make_unique<KpPathSegList>();
    if (reader.readNextStartElement())
        result->parse(reader, 0);
    return result;
}

ListPointer throughDom(KpPathSegList& list)
{
    QDomDocument document;
    QDomElement root = document.createElement(QStringLiteral("Root"));
    document.appendChild(root);
    list.saveTo(root);
    auto result = std::make_unique<KpPathSegList>();
    result->parse(root.firstChildElement(), 0);
    return result;
}

bool isInsideOutline(QDomElement const& element)
{
    for (QDomNode node = element.parentNode(); !node.isNull(); node = node.parentNode()) {
        if (node.nodeName() == GeometryFormat::geometry())
            return true;
    }
    return false;
}

/** What is looked for. */
enum class Scope {
    Everything, ///< as checkOutlines()
    Reading ///< as checkReading()
};

/** Collects the findings of one document. */
class Checker
{
public:
    Checker(OutlineDocument const& document, Scope scope)
        : m_file(document.file())
        , m_scope(scope)
        , m_byStream(readByStream(document.text(), m_reader))
    {
        for (Outline const& outline : document.outlines())
            check(outline);
        if (m_reader.hasError()) {
            m_diagnostics.add({Diagnostic::Severity::Warning, m_file, m_reader.lineNumber(),
                m_reader.columnNumber() + 1,
                QStringLiteral("the stream reader stops here: %1").arg(m_reader.errorString())});
        }
    }

    Diagnostics const& diagnostics() const { return m_diagnostics; }

private:
    void report(Outline const& outline, QDomNode const& node, QString const& what)
    {
        m_diagnostics.add(
            warningAt(node, m_file, QStringLiteral("outline %1: %2").arg(outline.index).arg(what)));
    }

    void reportChanges(Outline const& outline, QString const& what, QStringList const& changes)
    {
        if (!changes.isEmpty()) {
            report(outline, outline.element, QStringLiteral("%1: %2").arg(what, listed(changes)));
        }
    }

    void check(Outline const& outline)
    {
        using Finding = OutlineAudit::Finding;
        OutlineAudit([this, &outline](Finding finding, QDomNode const& node, QString const& what) {
            if (m_scope == Scope::Everything || finding == Finding::Misread)
                report(outline, node, what);
        }).geometry(outline.element, *outline.list);
        checkReaders(outline);
        if (m_scope == Scope::Everything)
            checkTrips(outline);
    }

    /** What becomes of the outline as it is saved, undone and drawn. */
    void checkTrips(Outline const& outline)
    {
        KpPathSegList& list = *outline.list;
        ListPointer const fromDom = throughDom(list);
        ListPointer const fromStream = throughStream(list);
        reportChanges(outline, QStringLiteral("saving changes it"), changes(list, *fromDom));
        reportChanges(outline, QStringLiteral("the two written forms differ"),
            changes(*fromDom, *fromStream));
        reportChanges(outline, QStringLiteral("undo changes it"), changes(list, *exactCopy(list)));
        reportShortLines(outline);
    }

    void reportShortLines(Outline const& outline)
    {
        QStringList numbers;
        for (int const index : undrawnLines(*outline.list))
            numbers << QString::number(index + 1);
        if (!numbers.isEmpty()) {
            report(outline, outline.element,
                QStringLiteral("lines of less than one unit are not drawn: segment %1")
                    .arg(listed(numbers)));
        }
    }

    void checkReaders(Outline const& outline)
    {
        if (isInsideOutline(outline.element)) {
            if (m_scope == Scope::Everything) {
                report(outline, outline.element,
                    QStringLiteral("it stands inside another outline, whose readers skip it"));
            }
            return;
        }
        if (m_nextByStream == m_byStream.size())
            return;
        ListPointer const& byStream = m_byStream[m_nextByStream++];
        if (!byStream) {
            report(outline, outline.element,
                QStringLiteral("the stream reader refuses it: Geometry has no attributes"));
            return;
        }
        reportChanges(outline, QStringLiteral("the stream reader reads it otherwise"),
            changes(*outline.list, *byStream));
    }

    QString const m_file;
    Scope const m_scope;
    QXmlStreamReader m_reader;
    std::vector<ListPointer> m_byStream;
    std::size_t m_nextByStream = 0;
    Diagnostics m_diagnostics;
};

} // namespace

Diagnostics checkOutlines(OutlineDocument const& document)
{
    return Checker(document, Scope::Everything).diagnostics();
}

Diagnostics checkReading(OutlineDocument const& document)
{
    return Checker(document, Scope::Reading).diagnostics();
}
