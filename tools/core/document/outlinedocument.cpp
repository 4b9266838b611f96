#include "document/outlinedocument.h"

#include "common/xmldiagnostic.h"
#include "document/contentkind.h"
#include "document/elements.h"
#include "document/shapeformat.h"
#include "geometryformat_p.h"

namespace {

/** How much of the time it takes to get so far, roughly. */
constexpr double shareOfTree = 0.8;

/** Builds the tree of the text; false, with a diagnostic, if there is none. */
bool readTree(QByteArray const& text, QString const& file, QDomDocument& tree,
    Diagnostics& diagnostics, ProgressFunction const& progress)
{
    if (QString const kind = kindOfContent(text); !kind.isEmpty()) {
        diagnostics.error(file, QStringLiteral("%1, not an XML document").arg(kind));
        return false;
    }
    BoundedXml::Error error;
    auto const treeProgress = [&progress](double share) { progress(share * shareOfTree); };
    if (BoundedXml::parse(text, tree, error, {}, treeProgress))
        return true;
    diagnostics.add(xmlDiagnostic(error, file));
    return false;
}

} // namespace

std::optional<OutlineDocument> OutlineDocument::read(QByteArray const& text, QString const& file,
    Diagnostics& diagnostics, ProgressFunction const& progress)
{
    OutlineDocument document;
    document.m_file = file;
    document.m_text = text;
    if (!readTree(text, file, document.m_tree, diagnostics, progress))
        return std::nullopt;
    int const lastLine = 1 + text.count('\n');
    for (QDomElement element = document.m_tree.documentElement(); !element.isNull();
         element = nextElement(element)) {
        if (element.tagName() != GeometryFormat::geometry())
            continue;
        document.addOutline(element);
        progress(shareOfTree + (1.0 - shareOfTree) * element.lineNumber() / lastLine);
    }
    return document;
}

void OutlineDocument::addOutline(QDomElement const& element)
{
    auto list = std::make_unique<KpPathSegList>();
    list->parse(element, 0);
    QDomElement const shape = element.parentNode().toElement();
    m_outlines.push_back(
        {static_cast<int>(m_outlines.size()) + 1, shape.attribute(ShapeFormat::name()).simplified(),
            fillRuleFromText(shape.attribute(ShapeFormat::fillRule())), element, std::move(list)});
}

bool OutlineDocument::isSvgPicture() const
{
    QString const root = m_tree.documentElement().tagName();
    return m_outlines.empty() && root.section(QLatin1Char(':'), -1) == QLatin1String("svg");
}

QString caption(Outline const& outline)
{
    return outline.name.isEmpty() ? QStringLiteral("#%1").arg(outline.index) : outline.name;
}

QString fillRuleText(Qt::FillRule rule)
{
    return rule == Qt::OddEvenFill ? QStringLiteral("evenodd") : QStringLiteral("nonzero");
}

std::optional<Qt::FillRule> fillRuleFromText(QString const& text)
{
    for (Qt::FillRule const rule : {Qt::OddEvenFill, Qt::WindingFill}) {
        if (text == fillRuleText(rule))
            return rule;
    }
    return std::nullopt;
}
