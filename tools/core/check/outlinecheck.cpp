// SPDX-License-Identifier: MIT
#include "check/outlinecheck.h"

#include "check/outlineaudit.h"
#include "document/exactcopy.h"
#include "document/shortlines.h"
#include "geometryformat_p.h"
#include "segmentkind_p.h"
#include "xmlstreamwriter.h"

#include <QDomDocument>
#include <QIODevice>
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
bool isUnchanged(double left, double right)
{
    return left == right || (std::isnan(left) && std::isnan(right));
}

void compare(KpReal const& before, KpReal const& after, QString const& where, QStringList& changes)
{
    if (before.base != after.base) {
        changes
            << QStringLiteral("%1 rule %2 becomes %3").arg(where).arg(before.base).arg(after.base);
    }
    if (!isUnchanged(before.value, after.value)) {
        changes << QStringLiteral("%1 value %2 becomes %3")
                       .arg(where, exactText(before.value), exactText(after.value));
    }
    if (!isUnchanged(before.rate, after.rate)) {
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

/** The outlines as the stream reader reads them, one after the other. */
class StreamedOutlines
{
public:
    explicit StreamedOutlines(QIODevice& device)
        : m_reader(&device)
    {
    }

    /**
     * Goes on to the next one, those inside others left out. False when there is none, which may
     * be before the last one if the reader meets an error.
     */
    bool next()
    {
        while (!m_reader.atEnd()) {
            m_reader.readNext();
            if (m_reader.isStartElement()
                && m_reader.qualifiedName() == GeometryFormat::geometry()) {
                m_list = std::make_unique<KpPathSegList>();
                if (!m_list->parse(m_reader, 0)) {
                    m_reader.skipCurrentElement();
                    m_list.reset();
                }
                return true;
            }
        }
        return false;
    }

    /** What the reader makes of it; null if it refuses it. */
    KpPathSegList const* list() const { return m_list.get(); }
    QXmlStreamReader const& reader() const { return m_reader; }

private:
    QXmlStreamReader m_reader;
    ListPointer m_list;
};

/** As the DOM reader reads the element. */
ListPointer throughTree(MarkupNode const& markup)
{
    QDomDocument document;
    QDomDocumentFragment const tree = document.createDocumentFragment();
    QDomNode open = tree;
    forEachElement(
        markup,
        [&](MarkupNode const& element) {
            QDomElement node = document.createElement(element.name);
            for (MarkupAttribute const& attribute : element.attributes)
                node.setAttribute(attribute.name, attribute.value);
            open = open.appendChild(node);
        },
        [&open] { open = open.parentNode(); });
    auto result = std::make_unique<KpPathSegList>();
    result->parse(tree.firstChildElement(), 0);
    return result;
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

/** Collects the findings of one document. */
class Checker
{
public:
    Checker(QIODevice& device, QIODevice& again, QString const& file, CheckScope scope,
        std::function<void(Diagnostic const&)> const& found)
        : m_file(file)
        , m_scope(scope)
        , m_found(found)
        , m_outlines(device, file, OutlineReader::Detail::Markup)
        , m_streamed(again)
    {
    }

    std::optional<CheckResult> check(Diagnostics& diagnostics, ProgressFunction const& progress)
    {
        m_outlines.setProgress(progress);
        for (Outlines group = m_outlines.next(); !group.empty(); group = m_outlines.next()) {
            for (Outline const& outline : group)
                check(outline);
        }
        if (m_outlines.fault()) {
            diagnostics.add(*m_outlines.fault());
            return std::nullopt;
        }
        while (m_streamed.next()) {
            // An error behind the last outline counts, too.
        }
        reportStreamError();
        return CheckResult {m_outlines.count(), m_outlines.isSvgPicture()};
    }

private:
    void reportAt(Outline const& outline, qint64 line, qint64 column, QString const& what)
    {
        m_found({Diagnostic::Severity::Warning, m_file, line, column,
            QStringLiteral("outline %1: %2").arg(outline.index).arg(what)});
    }

    void report(Outline const& outline, QString const& what)
    {
        reportAt(outline, outline.line, outline.column, what);
    }

    void reportChanges(Outline const& outline, QString const& what, QStringList const& changes)
    {
        if (!changes.isEmpty())
            report(outline, QStringLiteral("%1: %2").arg(what, listed(changes)));
    }

    void check(Outline const& outline)
    {
        using Finding = OutlineAudit::Finding;
        OutlineAudit([this, &outline](
                         Finding finding, MarkupNode const& element, QString const& what) {
            if (m_scope == CheckScope::Everything || finding == Finding::Misread)
                reportAt(outline, element.line, element.column, what);
        }).geometry(*outline.markup, *outline.list);
        checkReaders(outline);
        if (m_scope == CheckScope::Everything)
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
            report(outline,
                QStringLiteral("lines of less than one unit are not drawn: segment %1")
                    .arg(listed(numbers)));
        }
    }

    void checkReaders(Outline const& outline)
    {
        if (outline.isInside) {
            if (m_scope == CheckScope::Everything) {
                report(outline,
                    QStringLiteral("it stands inside another outline, whose readers skip it"));
            }
            return;
        }
        if (!m_streamed.next())
            return;
        if (!m_streamed.list()) {
            report(outline,
                QStringLiteral("the stream reader refuses it: Geometry has no attributes"));
            return;
        }
        reportChanges(outline, QStringLiteral("the stream reader reads it otherwise"),
            changes(*throughTree(*outline.markup), *m_streamed.list()));
    }

    void reportStreamError()
    {
        QXmlStreamReader const& reader = m_streamed.reader();
        if (reader.hasError()) {
            m_found({Diagnostic::Severity::Warning, m_file, reader.lineNumber(),
                reader.columnNumber() + 1,
                QStringLiteral("the stream reader stops here: %1").arg(reader.errorString())});
        }
    }

    QString const m_file;
    CheckScope const m_scope;
    std::function<void(Diagnostic const&)> const& m_found;
    OutlineReader m_outlines;
    StreamedOutlines m_streamed;
};

} // namespace

std::optional<CheckResult> checkOutlines(RepeatableInput const& input, QString const& file,
    CheckScope scope, std::function<void(Diagnostic const&)> const& found, Diagnostics& diagnostics,
    ProgressFunction const& progress)
{
    auto const device = input();
    auto const again = input();
    return Checker(*device, *again, file, scope, found).check(diagnostics, progress);
}
