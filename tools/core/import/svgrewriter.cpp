// SPDX-License-Identifier: MIT
#include "import/svgrewriter.h"

#include "boundedxml_p.h"
#include "common/text.h"
#include "import/svgscan.h"
#include "import/svgviewport.h"
#include "import/uniquenames.h"

#include <QPair>
#include <QVector>
#include <QXmlStreamReader>

#include <cmath>

namespace {

/** Marks make a short element long; a picture with more labels keeps numbers for the rest. */
constexpr int mostLabels = 100000;
/** Likewise the symbols of a sprite. */
constexpr int mostSymbols = 100000;

using Attributes = QVector<QPair<QString, QString>>;

QString exactNumber(double number)
{
    return QString::number(number, 'g', 17);
}

/** Whether something can be seen at this scale and place, as far as doubles tell. */
bool isUsable(QTransform const& transform)
{
    auto const isScale = [](double scale) { return std::isfinite(scale) && scale > 0.0; };
    return isScale(transform.m11()) && isScale(transform.m22()) && std::isfinite(transform.dx())
        && std::isfinite(transform.dy());
}

QString matrixText(QTransform const& transform)
{
    QStringList numbers;
    for (double const number : {transform.m11(), transform.m12(), transform.m21(), transform.m22(),
             transform.dx(), transform.dy()})
        numbers << exactNumber(number);
    return QStringLiteral("matrix(%1)").arg(numbers.join(QLatin1Char(' ')));
}

/** What stands for the character in a text, or in an attribute; null if it stands for itself. */
char const* entityOf(QChar character, bool isInAttribute)
{
    switch (character.unicode()) {
    case '&':
        return "&amp;";
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    // A reader makes a line feed of it, and spaces of those in attributes.
    case '\r':
        return "&#13;";
    case '\n':
        return isInAttribute ? "&#10;" : nullptr;
    case '\t':
        return isInAttribute ? "&#9;" : nullptr;
    case '"':
        return isInAttribute ? "&quot;" : nullptr;
    default:
        return nullptr;
    }
}

/** Writes XML in which elements end on the lines that they are told. */
class LineWriter
{
public:
    QByteArray const& text() const { return m_text; }

    /** Whether the text is larger than one that is read: nothing more of it is needed. */
    bool isFull() const { return m_text.size() > BoundedXml::Limits().bytes; }

    void characters(QStringRef const& text)
    {
        escape(text, false);
        m_line += text.count(QLatin1Char('\n'));
    }

    /** @param line that of the end of the tag, if there is none on it yet */
    void startElement(QString const& name, Attributes const& attributes, qint64 line)
    {
        m_text += '<' + name.toUtf8();
        for (auto const& attribute : attributes) {
            m_text += ' ' + attribute.first.toUtf8() + "=\"";
            escape(QStringRef(&attribute.second), true);
            m_text += '"';
        }
        moveTo(line);
        m_text += '>';
        m_open << name;
    }

    void endElements(int count)
    {
        for (int i = 0; i < count; ++i)
            m_text += "</" + m_open.takeLast().toUtf8() + '>';
    }

    /** Goes on to the line, if it has not come so far. */
    void moveTo(qint64 line)
    {
        for (; m_line < line; ++m_line)
            m_text += '\n';
    }

    /** An element with nothing in it, on the line that was reached. */
    void emptyElement(QString const& name, Attributes const& attributes)
    {
        startElement(name, attributes, m_line);
        endElements(1);
    }

private:
    void escape(QStringRef const& text, bool isInAttribute)
    {
        int const longestPiece = 4096;
        int from = 0;
        for (int i = 0; i < text.size() && !isFull(); ++i) {
            char const* const entity = entityOf(text.at(i), isInAttribute);
            bool const isLong = i - from >= longestPiece && !text.at(i).isLowSurrogate();
            if (!entity && !isLong)
                continue;
            m_text += text.mid(from, i - from).toUtf8() + entity;
            from = entity ? i + 1 : i;
        }
        if (!isFull())
            m_text += text.mid(from).toUtf8();
    }

    QByteArray m_text;
    qint64 m_line = 1;
    QStringList m_open;
};

/** A wish for a place, and what Qt SVG is to be told instead. */
struct Placed
{
    QString transform; ///< empty if there is nothing to move
    QSizeF inner; ///< the size of what is seen, in the coordinates inside; empty if not known
    bool isInvisible = false;
    bool isCut = false;
};

/** The side of a view: what it asks for, or all that there is, or as much as its box has. */
double sideOf(QString const& wish, double whole, double ofBox)
{
    auto const length = SvgViewport::length(wish, whole);
    if (length)
        return *length;
    return whole > 0.0 ? whole : ofBox;
}

/** Whether it is a length, but of nothing. */
bool isNothing(QString const& wish)
{
    double const any = 1.0;
    auto const length = SvgViewport::length(wish, any);
    return length && *length <= 0.0;
}

/**
 * Where a view stands.
 *
 * @param at the attributes that give its place
 * @param view what it shows; of its width and height those count that are set
 * @param around the size of the view around it, empty if that is not known
 */
Placed placed(QXmlStreamAttributes const& at, SvgView const& view, QSizeF const& around)
{
    auto const position = [&at](QString const& name, double whole) {
        return SvgViewport::length(at.value(name).toString(), whole).value_or(0.0);
    };
    QRectF const box = view.viewBox.value_or(QRectF());
    QRectF const place(position(QStringLiteral("x"), around.width()),
        position(QStringLiteral("y"), around.height()),
        sideOf(view.width, around.width(), box.width()),
        sideOf(view.height, around.height(), box.height()));
    Placed result;
    QTransform transform = QTransform::fromTranslate(place.x(), place.y());
    result.inner = view.viewBox ? box.size() : place.size();
    result.isInvisible =
        isNothing(view.width) || isNothing(view.height) || (view.viewBox && box.isEmpty());
    if (view.viewBox && !result.isInvisible) {
        SvgViewport::Fit const fit = SvgViewport::fit(box, place, view.aspect);
        transform = fit.transform;
        result.isCut = fit.isCut;
    }
    result.isInvisible = result.isInvisible || !isUsable(transform);
    if (!result.isInvisible && !transform.isIdentity())
        result.transform = matrixText(transform);
    return result;
}

class SvgRewriter
{
public:
    SvgRewriter(QByteArray const& svg, SvgScan const& scan, SvgLabels labels)
        : m_reader(svg)
        , m_scan(scan)
        , m_isMarked(labels == SvgLabels::AreMarked && scan.isMarkable())
    {
        m_reader.setNamespaceProcessing(false);
    }

    /** False if the text grows larger than a text may be. */
    bool rewrite()
    {
        while (!m_reader.atEnd() && !m_writer.isFull()) {
            m_reader.readNext();
            writeToken();
        }
        m_writer.moveTo(m_reader.lineNumber());
        return !m_writer.isFull();
    }

    int cutViews() const { return m_cutViews; }

    RewrittenSvg result() const
    {
        return {m_writer.text(), m_labels, m_pictures, m_scan.hasText()};
    }

private:
    /** An element that has begun. */
    struct Open
    {
        int tags = 1; ///< that are written for it
        int label = -1;
        bool isSwitch = false;
        bool isInLeaf = false;
        QSizeF view; ///< of what is in it; empty if not known
    };

    /** Entities are resolved by then, and default attributes are there: no document type is needed. */
    void writeToken()
    {
        switch (m_reader.tokenType()) {
        case QXmlStreamReader::Characters:
            m_writer.characters(m_reader.text());
            break;
        case QXmlStreamReader::StartElement:
            begin();
            break;
        case QXmlStreamReader::EndElement:
            end();
            break;
        default:
            break;
        }
    }

    void begin()
    {
        QString const name = m_reader.qualifiedName().toString();
        SvgKind const kind = svgKind(name);
        if (kind == SvgKind::Image) {
            m_reader.skipCurrentElement();
            return;
        }
        QXmlStreamAttributes const attributes = m_reader.attributes();
        Open open;
        if (!m_open.empty()) {
            open.view = m_open.back().view;
            open.isInLeaf = m_open.back().isInLeaf;
            open.label = addLabel(kind, attributes);
        }
        if (open.label >= 0)
            writeMark({SvgMark::Kind::LabelBegins, open.label});
        open.isSwitch = kind == SvgKind::Switch;
        open.isInLeaf = open.isInLeaf || isLeaf(kind);
        if (m_open.empty())
            beginRoot(name, attributes, open);
        else if (kind == SvgKind::Svg)
            beginNested(attributes, open);
        else if (kind == SvgKind::Symbol)
            beginSymbol(attributes, open);
        else if (kind == SvgKind::Use)
            beginUse(name, attributes, open);
        else
            write(name, copied(attributes, {}));
        m_open.push_back(open);
    }

    void end()
    {
        Open const open = m_open.back();
        if (m_open.size() == 1 && m_scan.isSprite()) {
            m_writer.endElements(open.tags - 1);
            writeSymbols();
            m_writer.endElements(1);
        } else {
            m_writer.endElements(open.tags);
        }
        if (open.label >= 0)
            writeMark({SvgMark::Kind::LabelEnds, open.label});
        m_open.pop_back();
    }

    void beginRoot(QString const& name, QXmlStreamAttributes const& attributes, Open& open)
    {
        open.view = m_scan.box().size();
        if (!m_scan.isSprite()) {
            write(name, copied(attributes, {}));
            return;
        }
        // The size of what shows the symbols does not matter: nothing is scaled.
        write(QStringLiteral("svg"),
            {{QStringLiteral("xmlns"), QStringLiteral("http://www.w3.org/2000/svg")},
                {QStringLiteral("xmlns:xlink"), QStringLiteral("http://www.w3.org/1999/xlink")},
                {QStringLiteral("viewBox"), QStringLiteral("0 0 100 100")}});
        write(QStringLiteral("defs"), {});
        write(QStringLiteral("g"), copied(attributes, viewAttributes()));
        open.tags = 3;
    }

    void beginNested(QXmlStreamAttributes const& attributes, Open& open)
    {
        Placed const place = placed(attributes, SvgView(attributes), open.view);
        open.view = place.inner;
        writePlaced(QStringLiteral("g"), attributes, place);
    }

    void beginSymbol(QXmlStreamAttributes const& attributes, Open& open)
    {
        SvgSymbolElement const& symbol = m_scan.symbols()[m_symbol++];
        open.view = symbol.view.viewBox.value_or(QRectF()).size();
        write(QStringLiteral("defs"), {});
        if (symbol.isOutermost && m_scan.isSprite() && m_pictures.size() < mostSymbols) {
            SvgMark const mark {SvgMark::Kind::SymbolBegins, static_cast<int>(m_pictures.size())};
            m_pictures.push_back({nameOf(symbol), boxOf(symbol.view)});
            write(QStringLiteral("g"), {{QStringLiteral("id"), mark.family()}});
            ++open.tags;
        }
        write(QStringLiteral("g"), copied(attributes, viewAttributes()));
        ++open.tags;
    }

    void beginUse(QString const& name, QXmlStreamAttributes const& attributes, Open const& open)
    {
        SvgSymbolElement const* const symbol = m_scan.symbol(svgTarget(attributes));
        if (!symbol) {
            write(name, copied(attributes, {}));
            return;
        }
        SvgView view(attributes);
        view.viewBox = symbol->view.viewBox;
        view.aspect = symbol->view.aspect;
        if (view.width.isEmpty())
            view.width = symbol->view.width;
        if (view.height.isEmpty())
            view.height = symbol->view.height;
        writePlaced(name, attributes, placed(attributes, view, open.view));
    }

    /** The element with a transform where it had a place. */
    void writePlaced(
        QString const& name, QXmlStreamAttributes const& attributes, Placed const& place)
    {
        QString const transform = QStringLiteral("transform");
        QString const display = QStringLiteral("display");
        Attributes all = copied(
            attributes, viewAttributes() << transform << (place.isInvisible ? display : QString()));
        QString const whole =
            (attributes.value(transform).toString() + QLatin1Char(' ') + place.transform).trimmed();
        if (!whole.isEmpty())
            all.append({transform, whole});
        if (place.isInvisible)
            all.append({display, QStringLiteral("none")});
        else if (place.isCut)
            ++m_cutViews;
        write(name, all);
    }

    /** Behind all that there is: the symbols, each behind its mark. */
    void writeSymbols()
    {
        for (std::size_t i = 0; i < m_pictures.size(); ++i) {
            SvgMark const mark {SvgMark::Kind::SymbolBegins, static_cast<int>(i)};
            writeMark(mark);
            QPointF const corner = m_pictures[i].box.topLeft();
            m_writer.emptyElement(QStringLiteral("use"),
                {{QStringLiteral("transform"),
                     matrixText(QTransform::fromTranslate(-corner.x(), -corner.y()))},
                    {QStringLiteral("xlink:href"), QLatin1Char('#') + mark.family()}});
        }
    }

    void writeMark(SvgMark const& mark)
    {
        m_writer.emptyElement(QStringLiteral("path"),
            {{QStringLiteral("style"),
                QStringLiteral("fill:none;stroke:none;font-family:") + mark.family()}});
    }

    /** The number of the label of an element; -1 if it has none. */
    int addLabel(SvgKind kind, QXmlStreamAttributes const& attributes)
    {
        Open const& parent = m_open.back();
        if (!isLeaf(kind) || parent.isInLeaf || parent.isSwitch || !m_isMarked
            || m_labels.size() >= mostLabels)
            return -1;
        QString label = svgId(attributes);
        if (kind == SvgKind::Use)
            label = m_scan.labelOfUse(label, svgTarget(attributes));
        if (label.isEmpty())
            return -1;
        m_labels << elided(label, longestName);
        return m_labels.size() - 1;
    }

    void write(QString const& name, Attributes const& attributes)
    {
        m_writer.startElement(name, attributes, m_reader.lineNumber());
    }

    static QStringList viewAttributes()
    {
        return {QStringLiteral("x"), QStringLiteral("y"), QStringLiteral("width"),
            QStringLiteral("height"), QStringLiteral("viewBox"),
            QStringLiteral("preserveAspectRatio")};
    }

    static Attributes copied(QXmlStreamAttributes const& attributes, QStringList const& without)
    {
        Attributes result;
        for (QXmlStreamAttribute const& attribute : attributes) {
            QString const name = attribute.qualifiedName().toString();
            if (!without.contains(name))
                result.append({name, attribute.value().toString()});
        }
        return result;
    }

    QString nameOf(SvgSymbolElement const& symbol) const
    {
        return symbol.id.isEmpty() ? QStringLiteral("symbol %1").arg(m_pictures.size() + 1)
                                   : elided(symbol.id, longestName);
    }

    /** What of a symbol is its picture. */
    QRectF boxOf(SvgView const& view) const
    {
        if (view.viewBox)
            return *view.viewBox;
        QSizeF const around = m_scan.box().size();
        auto const width = SvgViewport::length(view.width, around.width());
        auto const height = SvgViewport::length(view.height, around.height());
        return width && height ? QRectF(0.0, 0.0, *width, *height) : m_scan.box();
    }

    QXmlStreamReader m_reader;
    SvgScan const& m_scan;
    bool m_isMarked;
    LineWriter m_writer;
    std::vector<Open> m_open;
    std::size_t m_symbol = 0; ///< the index of the next one
    std::vector<SvgSymbol> m_pictures;
    QStringList m_labels;
    int m_cutViews = 0;
};

} // namespace

QString SvgMark::family() const
{
    static char const* const kinds[] = {"begin", "end", "symbol"};
    return QStringLiteral("kpgeom-%1-%2")
        .arg(QLatin1String(kinds[static_cast<int>(kind)]), QString::number(number));
}

std::optional<SvgMark> SvgMark::fromFamily(QString const& family)
{
    bool isNumber = false;
    int const number = family.section(QLatin1Char('-'), -1).toInt(&isNumber);
    for (Kind const kind : {Kind::LabelBegins, Kind::LabelEnds, Kind::SymbolBegins}) {
        SvgMark const mark {kind, number};
        if (isNumber && mark.family() == family)
            return mark;
    }
    return std::nullopt;
}

std::optional<RewrittenSvg> rewrittenSvg(
    QByteArray const& svg, SvgLabels labels, QString const& file, Diagnostics& diagnostics)
{
    SvgScan const scan(svg);
    if (scan.isPlain())
        return RewrittenSvg {svg, {}, {}, scan.hasText()};
    SvgRewriter rewriter(svg, scan, labels);
    if (!rewriter.rewrite())
        return std::nullopt;
    if (int const count = rewriter.cutViews(); count > 0) {
        diagnostics.warning(file,
            QStringLiteral("%1 that should be cut off at its edge: not cut")
                .arg(countText(count, QStringLiteral("view"))));
    }
    return rewriter.result();
}
