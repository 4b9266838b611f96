// SPDX-License-Identifier: MIT
#include "files/sourcedocument.h"

#include "boundedxml_p.h"
#include "common/text.h"
#include "document/appearancexml.h"
#include "document/contentkind.h"
#include "document/documentrewriter.h"
#include "document/shapebox.h"
#include "document/shapeformat.h"

#include <QBuffer>

namespace {

/** What the beginning of a document says of all of it. */
struct DocumentHead
{
    bool isUtf8 = false;
    bool isOfOtherKind = false; ///< its root is no element of ours, but one of another format
};

bool startsAsUtf8(QByteArray const& content)
{
    // Those of UTF-16 and UTF-32 begin with a mark, or have zeros beside the first character.
    return !content.startsWith("\xff\xfe") && !content.startsWith("\xfe\xff")
        && !content.left(4).contains('\0');
}

DocumentHead headOf(QByteArray const& content)
{
    QBuffer buffer;
    buffer.setData(content);
    buffer.open(QIODevice::ReadOnly);
    BoundedXml::Reader reader(buffer);
    QXmlStreamReader const& xml = reader.xml();
    DocumentHead head;
    while (reader.readNext() && !xml.isStartElement()) {
        if (xml.isStartDocument()) {
            QStringRef const encoding = xml.documentEncoding();
            head.isUtf8 = startsAsUtf8(content)
                && (encoding.isEmpty()
                    || encoding.compare(QLatin1String("UTF-8"), Qt::CaseInsensitive) == 0);
        }
    }
    // Our own documents are in no namespace. One whose outlines are gone may be a single shape.
    QStringRef const root = xml.qualifiedName();
    head.isOfOtherKind = xml.isStartElement() && root != ShapeFormat::shapes()
        && (root.contains(QLatin1Char(':'))
            || xml.attributes().hasAttribute(QStringLiteral("xmlns"))
            || (root != ShapeFormat::shape()
                && root.contains(QLatin1String("shape"), Qt::CaseInsensitive)));
    return head;
}

QByteArray nothing()
{
    return QByteArrayLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Shapes>\n</Shapes>\n");
}

/** An appearance that says nothing if the text cannot be read. */
Appearance appearanceIn(QByteArray const& text)
{
    QBuffer buffer;
    buffer.setData(text);
    buffer.open(QIODevice::ReadOnly);
    BoundedXml::Reader reader(buffer);
    AppearanceReader appearance;
    while (!appearance.isComplete() && reader.readNext()) {
        if (reader.xml().isStartElement())
            appearance.startElement(reader.xml().qualifiedName(), reader.xml().attributes());
        else if (reader.xml().isEndElement())
            appearance.endElement();
    }
    return appearance.isComplete() ? appearance.appearance() : Appearance();
}

} // namespace

/** Reads one document. */
class SourceReader
{
public:
    SourceReader(QString const& file, Diagnostics& diagnostics, ReadingObserver const& observer)
        : m_file(file)
        , m_diagnostics(diagnostics)
        , m_observer(observer)
    {
    }

    SourceReading read(QByteArray const& content)
    {
        constexpr int enoughToTell = 1024;
        if (!kindOfContent(content.left(enoughToTell)).isEmpty())
            return {SourceKind::Picture, nullptr, false};
        auto document = std::make_shared<SourceDocument>();
        document->m_original = content;
        document->m_text = content;
        DocumentHead const head = headOf(content);
        if (head.isUtf8)
            document->m_cut = cutIntoUnits(content);
        if ((!head.isUtf8 || document->m_cut.hasDocumentType) && !bringToUtf8(*document))
            return failed();
        if (!readUnits(*document))
            return failed();
        if (m_isSvgPicture || (document->m_units.empty() && head.isOfOtherKind))
            return {SourceKind::Picture, nullptr, false};
        if (m_inside > 0) {
            m_diagnostics.warning(m_file,
                QStringLiteral("%1 inside others: not shown, but kept")
                    .arg(countText(m_inside, QStringLiteral("outline"))));
        }
        return {SourceKind::Document, document, false};
    }

private:
    bool isCancelled() const { return m_observer.isCancelled && m_observer.isCancelled(); }

    SourceReading failed() const { return {SourceKind::Document, nullptr, isCancelled()}; }

    /** Entities have become what they stand for then. */
    bool bringToUtf8(SourceDocument& document)
    {
        QBuffer input(&document.m_original);
        input.open(QIODevice::ReadOnly);
        QBuffer output;
        output.open(QIODevice::WriteOnly);
        bool isTooLarge = false;
        auto const goOn = [&](Outline const&) {
            isTooLarge = output.size() > BoundedXml::Limits().bytes;
            return !isTooLarge && !isCancelled();
        };
        bool const isDone = rewriteDocument(input, m_file, output, goOn, m_diagnostics);
        if (isTooLarge)
            m_diagnostics.error(m_file, QStringLiteral("in UTF-8 it is too large"));
        document.m_text = output.data();
        document.m_cut = cutIntoUnits(document.m_text);
        return isDone;
    }

    bool readUnits(SourceDocument& document)
    {
        QBuffer buffer(&document.m_text);
        buffer.open(QIODevice::ReadOnly);
        OutlineReader reader(buffer, m_file);
        reader.setProgress(m_observer.progress);
        std::vector<Unit> const units = std::move(document.m_cut.units);
        document.m_units.reserve(units.size());
        bool isCut = true;
        for (Outlines group = reader.next(); !group.empty() && isCut; group = reader.next()) {
            if (isCancelled())
                return false;
            std::size_t const index = document.m_units.size();
            isCut =
                index < units.size() && static_cast<int>(group.size()) == units[index].outlineCount;
            if (isCut)
                take(document, units[index], group.front());
            m_inside += static_cast<int>(group.size()) - 1;
        }
        m_isSvgPicture = reader.isSvgPicture();
        if (reader.fault())
            m_diagnostics.add(*reader.fault());
        else if (!isCut || document.m_units.size() != units.size())
            m_diagnostics.error(m_file, QStringLiteral("its outlines cannot be told apart"));
        else
            return true;
        return false;
    }

    void take(SourceDocument& document, Unit const& unit, Outline& outline)
    {
        QSizeF const named = namedBox(outline);
        Shape const shape {outline.name, named, outline.fillRule, std::move(outline.list)};
        ShapeItem item {shape.name, named.isEmpty() ? boxOf({shape}) : named, shape.fillRule,
            recordOf(*shape.list), {}, document.count()};
        if (!unit.appearance.isEmpty())
            item.appearance = appearanceIn(unit.appearance.in(document.m_text));
        auto const pointer = std::make_shared<ShapeItem const>(std::move(item));
        document.m_units.push_back({unit, pointer, !named.isEmpty()});
        if (m_observer.take)
            m_observer.take(pointer);
    }

    QString const m_file;
    Diagnostics& m_diagnostics;
    ReadingObserver const& m_observer;
    int m_inside = 0;
    bool m_isSvgPicture = false;
};

SourceDocument::SourceDocument()
    : m_original(nothing())
    , m_text(m_original)
    , m_cut(cutIntoUnits(m_text))
{
}

SourceReading readSource(QByteArray const& content, QString const& file, Diagnostics& diagnostics,
    ReadingObserver const& observer)
{
    return SourceReader(file, diagnostics, observer).read(content);
}
