// SPDX-License-Identifier: MIT
#include "import/svgguard.h"

#include "common/text.h"
#include "common/xmldiagnostic.h"
#include "document/contentkind.h"
#include "document/elements.h"
#include "import/gunzip.h"
#include "import/svgstylecost.h"

#include <QHash>
#include <QMap>
#include <QVector>
#include <QXmlStreamReader>

#include <vector>

namespace {

/** Characters that `use` elements may make of any picture; more of one that is long itself. */
constexpr double smallestUseLimit = 16.0 * 1024 * 1024;

QString imageName()
{
    return QStringLiteral("image");
}

/**
 * The elements of an SVG text, as far as they decide how much there is to paint.
 *
 * A `use` element paints another element again, which may hold further ones: a few lines can
 * paint without end, or recurse until the stack is full. So what they amount to is found out
 * before anything is painted.
 */
class SvgElements
{
public:
    explicit SvgElements(QByteArray const& svg)
    {
        QXmlStreamReader reader(svg);
        reader.setNamespaceProcessing(false);
        int parent = -1;
        while (!reader.atEnd()) {
            switch (reader.readNext()) {
            case QXmlStreamReader::StartElement:
                parent = add(reader, parent);
                break;
            case QXmlStreamReader::EndElement:
                parent = element(parent).parent;
                --m_depth;
                break;
            case QXmlStreamReader::Characters:
                if (parent >= 0 && element(parent).isStyle)
                    m_styles.addSheet(reader.text().toString());
                break;
            default:
                break;
            }
        }
    }

    /** Why the picture cannot be painted within the bounds; empty if it can. */
    QString fault()
    {
        if (!isSvg())
            return QStringLiteral("not an SVG picture");
        Extent const all = extent(0, 1);
        if (isTooDeep(all)) {
            return QStringLiteral("its use elements go round in circles or nest more than %1 deep")
                .arg(BoundedXml::maximumDepth);
        }
        if (isTooMuch(all))
            return QStringLiteral("its use elements repeat too much of it");
        double const styleLimit = qMax(smallestStyleLimit, styleCostACharacter * m_characters);
        if (m_styles.cost() > styleLimit) {
            return QStringLiteral("its style sheets are too long for so many elements: more than "
                                  "%1 comparisons")
                .arg(styleLimit, 0, 'f', 0);
        }
        return QString();
    }

    /** Warns of each kind of element that is there and that becomes no outline. */
    void warn(QString const& file, Diagnostics& diagnostics) const
    {
        for (auto it = m_unknown.constBegin(); it != m_unknown.constEnd(); ++it) {
            diagnostics.warning(file,
                QStringLiteral("%1 %2: without effect, shapes in it may be painted")
                    .arg(it.value())
                    .arg(it.key()));
        }
        if (m_images > 0) {
            diagnostics.warning(
                file, QStringLiteral("%1: left out").arg(countText(m_images, imageName())));
        }
    }

private:
    struct Extent
    {
        double characters = 0.0; ///< of the element with all that it paints
        int depth = 0; ///< of elements within one another; 0 is not yet known
    };

    struct Element
    {
        int parent;
        int characters;
        QString target; ///< the id of the element that this one paints
        bool isStyle;
        QVector<int> children;
        Extent extent;
    };

    bool isSvg() const { return m_rootName == QLatin1String("svg"); }
    static bool isTooDeep(Extent const& extent) { return extent.depth > BoundedXml::maximumDepth; }

    /** Whether it is more than a long file could hold without repeating anything. */
    bool isTooMuch(Extent const& extent) const
    {
        return extent.characters > qMax(smallestUseLimit, 2.0 * m_characters);
    }

    int add(QXmlStreamReader const& reader, int parent)
    {
        static QStringList const unknown {QStringLiteral("clipPath"), QStringLiteral("filter"),
            QStringLiteral("foreignObject"), QStringLiteral("marker"), QStringLiteral("mask"),
            QStringLiteral("pattern"), QStringLiteral("textPath")};
        // What an element costs beside its text.
        int const overhead = 32;

        int const index = static_cast<int>(m_elements.size());
        QString const name = localName(reader.qualifiedName().toString());
        Element added {
            parent, overhead + name.size(), QString(), name == QLatin1String("style"), {}, {}};
        QString id;
        QString classes;
        for (QXmlStreamAttribute const& attribute : reader.attributes()) {
            added.characters += attribute.value().size();
            QString const key = localName(attribute.qualifiedName().toString());
            if (key == QLatin1String("id") && !attribute.value().isEmpty()) {
                id = attribute.value().toString();
                m_byId[id] << index;
            } else if (key == QLatin1String("class")) {
                classes = attribute.value().toString();
            }
            if (key == QLatin1String("href") && name == QLatin1String("use"))
                added.target = attribute.value().mid(1).toString();
        }
        m_styles.addElement(id, classes, ++m_depth);
        m_characters += added.characters;
        m_elements.push_back(added);
        if (parent >= 0)
            element(parent).children << index;
        else
            m_rootName = name;
        if (unknown.contains(name))
            ++m_unknown[name];
        if (name == imageName())
            ++m_images;
        return index;
    }

    Element& element(int index) { return m_elements[static_cast<std::size_t>(index)]; }

    /** @param level how deep the element itself lies */
    Extent extent(int index, int level)
    {
        Element& whole = element(index);
        if (whole.extent.depth > 0)
            return whole.extent;
        if (level > BoundedXml::maximumDepth)
            return {0.0, level};

        Extent sum {double(whole.characters), 0};
        // Of several elements with one id only one is painted; all of them are an upper bound.
        for (int const part : whole.children + m_byId.value(whole.target)) {
            Extent const inner = extent(part, level + 1);
            sum.characters += inner.characters;
            sum.depth = qMax(sum.depth, inner.depth);
            // The rest does not matter then, and in a circle that branches it has no end.
            if (isTooDeep(sum) || isTooMuch(sum))
                break;
        }
        ++sum.depth;
        whole.extent = sum;
        return sum;
    }

    QString m_rootName;
    std::vector<Element> m_elements;
    QHash<QString, QVector<int>> m_byId;
    QMap<QString, int> m_unknown;
    int m_images = 0;
    double m_characters = 0.0;
    int m_depth = 0; ///< of the open elements
    SvgStyleCost m_styles;
};

/** What the text is without compression; nothing, with a diagnostic, if it is damaged. */
std::optional<QByteArray> unpacked(
    QByteArray const& svg, QString const& file, Diagnostics& diagnostics)
{
    if (!isGzip(svg))
        return svg;
    auto const unpacked = gunzip(svg, BoundedXml::Limits().bytes);
    if (!unpacked) {
        diagnostics.error(file, QStringLiteral("the compressed picture is damaged or too large"));
        return std::nullopt;
    }
    if (unpacked->hasMore) {
        diagnostics.warning(
            file, QStringLiteral("what follows the compressed picture is no part of it: ignored"));
    }
    return unpacked->content;
}

/** False, with a diagnostic, for what is no XML. */
bool checkXml(QByteArray const& text, QString const& file, Diagnostics& diagnostics)
{
    if (text.isEmpty()) {
        diagnostics.error(file, QStringLiteral("the picture is empty"));
        return false;
    }
    if (QString const kind = kindOfContent(text); !kind.isEmpty()) {
        diagnostics.error(file, QStringLiteral("%1, not an SVG picture").arg(kind));
        return false;
    }
    BoundedXml::Error error;
    if (BoundedXml::check(text, error))
        return true;
    diagnostics.add(xmlDiagnostic(error, file));
    return false;
}

} // namespace

std::optional<QByteArray> guardedSvg(
    QByteArray const& svg, QString const& file, Diagnostics& diagnostics)
{
    auto text = unpacked(svg, file, diagnostics);
    if (!text || !checkXml(*text, file, diagnostics))
        return std::nullopt;
    SvgElements elements(*text);
    if (QString const fault = elements.fault(); !fault.isEmpty()) {
        diagnostics.error(file, fault);
        return std::nullopt;
    }
    elements.warn(file, diagnostics);
    return text;
}

QString useFault(QByteArray const& svg)
{
    return SvgElements(svg).fault();
}
