// SPDX-License-Identifier: MIT
#include "import/svgscan.h"

#include "import/svgviewport.h"

#include <QStringList>
#include <QXmlStreamReader>

namespace {

struct KnownKind
{
    SvgKind kind;
    QStringList names;
};

/** Whether a style sheet looks at what stands beside an element: "a + b", "a:first-child". */
bool tellsOfNeighbours(QStringRef const& styleSheet)
{
    return styleSheet.contains(QLatin1Char('+')) || styleSheet.contains(QLatin1Char('~'))
        || styleSheet.contains(QLatin1String("child"));
}

QRectF rootBox(SvgView const& view)
{
    if (view.viewBox)
        return view.viewBox->isEmpty() ? QRectF() : *view.viewBox;
    auto const width = SvgViewport::length(view.width, 0.0);
    auto const height = SvgViewport::length(view.height, 0.0);
    QRectF const box(0.0, 0.0, width.value_or(0.0), height.value_or(0.0));
    return box.isEmpty() ? QRectF() : box;
}

/** Whether what is in the element is not part of what stands around it. */
bool isApart(SvgKind kind)
{
    return kind == SvgKind::Hidden || kind == SvgKind::Symbol;
}

/** How many shapes an element itself paints, 2 for any that may paint more than one. */
int ownShapes(SvgKind kind)
{
    if (kind == SvgKind::Shape)
        return 1;
    return kind == SvgKind::Text || kind == SvgKind::Use ? 2 : 0;
}

} // namespace

SvgKind svgKind(QString const& name)
{
    auto const list = [](char const* names) {
        return QString::fromLatin1(names).split(QLatin1Char(' '));
    };
    static std::vector<KnownKind> const kinds {
        {SvgKind::Shape, list("path rect circle ellipse line polyline polygon")},
        {SvgKind::Text, list("text textArea tspan")},
        {SvgKind::Use, list("use")},
        {SvgKind::Image, list("image")},
        {SvgKind::Symbol, list("symbol")},
        {SvgKind::Svg, list("svg")},
        {SvgKind::Switch, list("switch")},
        {SvgKind::Hidden,
            list("defs clipPath mask pattern marker filter linearGradient radialGradient font")},
        {SvgKind::Style, list("style")},
    };
    QString const local = name.mid(name.indexOf(QLatin1Char(':')) + 1);
    for (KnownKind const& known : kinds) {
        if (known.names.contains(local))
            return known.kind;
    }
    return SvgKind::Other;
}

QString svgId(QXmlStreamAttributes const& attributes)
{
    QStringRef const id = attributes.value(QStringLiteral("id"));
    return (id.isEmpty() ? attributes.value(QStringLiteral("xml:id")) : id).toString();
}

QString svgTarget(QXmlStreamAttributes const& attributes)
{
    QStringRef const target = attributes.value(QStringLiteral("xlink:href"));
    return (target.size() > 1 ? target : attributes.value(QStringLiteral("href")))
        .mid(1)
        .toString();
}

bool isLeaf(SvgKind kind)
{
    return kind == SvgKind::Shape || kind == SvgKind::Text || kind == SvgKind::Use;
}

SvgView::SvgView(QXmlStreamAttributes const& attributes)
    : viewBox(SvgViewport::box(attributes.value(QStringLiteral("viewBox")).toString()))
    , aspect(attributes.value(QStringLiteral("preserveAspectRatio")).toString())
    , width(attributes.value(QStringLiteral("width")).toString())
    , height(attributes.value(QStringLiteral("height")).toString())
{
}

SvgScan::SvgScan(QByteArray const& svg)
{
    QXmlStreamReader reader(svg);
    reader.setNamespaceProcessing(false);
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::StartElement:
            begin(svgKind(reader.qualifiedName().toString()), reader.attributes());
            break;
        case QXmlStreamReader::EndElement:
            end();
            break;
        case QXmlStreamReader::Characters:
            if (!m_open.empty() && m_open.back().element.kind == SvgKind::Style)
                m_tellsOfNeighbours = m_tellsOfNeighbours || tellsOfNeighbours(reader.text());
            break;
        case QXmlStreamReader::ProcessingInstruction:
            m_refersToOthers = true;
            break;
        default:
            break;
        }
    }
}

bool SvgScan::isPlain() const
{
    return m_symbols.empty() && !m_hasNestedViews && !m_refersToOthers
        && !(m_hasLabels && isMarkable());
}

SvgSymbolElement const* SvgScan::symbol(QString const& id) const
{
    auto const found = m_byId.constFind(id);
    if (found == m_byId.constEnd() || found->kind != SvgKind::Symbol)
        return nullptr;
    return &m_symbols[static_cast<std::size_t>(found->symbol)];
}

QString SvgScan::labelOfUse(QString const& id, QString const& target) const
{
    // Far more than a picture has; a circle has no end.
    int const mostSteps = 8;
    QString next = target;
    for (int step = 0; step < mostSteps; ++step) {
        auto const used = m_byId.constFind(next);
        if (used == m_byId.constEnd())
            return QString();
        if (used->kind == SvgKind::Use) {
            next = used->target;
            continue;
        }
        if (used->shapes != 1)
            return QString();
        // The marks of a shape stand around it, and are not painted with it; in a group they are.
        bool const hasMarksInIt = step == 0 && used->kind != SvgKind::Shape;
        return id.isEmpty() && !hasMarksInIt ? target : id;
    }
    return QString();
}

void SvgScan::begin(SvgKind kind, QXmlStreamAttributes const& attributes)
{
    bool const isRoot = m_open.empty();
    bool const isHidden = isApart(kind) || (!isRoot && m_open.back().isHidden);
    bool const isInSymbol = !isRoot && m_open.back().isInSymbol;
    Element const element {kind, svgId(attributes),
        kind == SvgKind::Use ? svgTarget(attributes) : QString(),
        static_cast<int>(m_symbols.size()), ownShapes(kind)};
    if (isRoot)
        m_box = rootBox(SvgView(attributes));
    else if (kind == SvgKind::Svg)
        m_hasNestedViews = true;
    if (kind == SvgKind::Text)
        m_hasText = true;
    if (kind == SvgKind::Symbol)
        m_symbols.push_back({element.id, SvgView(attributes), !isInSymbol});
    if (kind == SvgKind::Image)
        m_refersToOthers = true;
    if ((isLeaf(kind) || kind == SvgKind::Image) && !isHidden)
        m_isPainted = true;
    if (isLeaf(kind) && !element.id.isEmpty())
        m_hasLabels = true;
    m_open.push_back({element, isHidden, isInSymbol || kind == SvgKind::Symbol});
}

void SvgScan::end()
{
    Element const element = m_open.back().element;
    m_open.pop_back();
    if (!m_open.empty() && !isApart(element.kind))
        m_open.back().element.shapes = qMin(2, m_open.back().element.shapes + element.shapes);
    if (!element.id.isEmpty())
        m_byId.insert(element.id, element);
}
