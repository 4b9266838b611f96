// SPDX-License-Identifier: MIT
#include "export/custgeom.h"

#include "document/outlinedocument.h"
#include "kppathsegcurveto.h"
#include "kppathsegellipse.h"
#include "xmlstreamwriter.h"
#include "xmltext_p.h"

#include <QHash>
#include <QVector>

#include <algorithm>
#include <cmath>

namespace {

/** ECMA-376, 20.1.10.16: the greatest coordinate. */
constexpr double greatestCoordinate = 27273042316900.0;

/** Programs that count EMUs in 32 bits are served where the box allows it. */
constexpr double comfortableCoordinate = 2147483647.0;

/** So many EMUs a side make half of one, which rounding takes, less than 1e-5 of the side. */
constexpr double finestSide = 2e5;

/** The parts that a factor is given in, where it is a whole number of them. */
constexpr qint64 usualParts = 100000;

/** The greatest denominator of a factor. */
constexpr qint64 mostParts = 1000000;

/** A factor as a fraction of whole numbers. */
struct Fraction
{
    qint64 numerator;
    qint64 denominator;
};

/**
 * The last convergent of the continued fraction with a denominator of at most mostParts.
 *
 * @param number not negative, small enough for whole numbers
 */
Fraction convergent(double number)
{
    Fraction before {1, 0};
    Fraction last {static_cast<qint64>(std::floor(number)), 1};
    double rest = number - std::floor(number);
    while (rest * static_cast<double>(mostParts) > 1.0) {
        double const inverse = 1.0 / rest;
        auto const whole = static_cast<qint64>(std::floor(inverse));
        qint64 const denominator = whole * last.denominator + before.denominator;
        if (denominator > mostParts)
            break; // before the numerator, which might not fit
        Fraction const next {whole * last.numerator + before.numerator, denominator};
        before = last;
        last = next;
        rest = inverse - std::floor(inverse);
    }
    return last;
}

/** A factor of at most 1e8 or so, within a millionth. */
Fraction fractionOf(double factor)
{
    auto const usual = static_cast<qint64>(std::llround(factor * usualParts));
    // The last bits of a number that was read from a text do not count.
    double const tolerance = 1e-12 * std::max(1.0, std::abs(factor));
    if (std::abs(static_cast<double>(usual) / usualParts - factor) <= tolerance)
        return {usual, usualParts};
    Fraction const fraction = convergent(std::abs(factor));
    return {factor < 0.0 ? -fraction.numerator : fraction.numerator, fraction.denominator};
}

/** The guides of one shape, each before those that use it. */
class GuideList
{
public:
    struct Guide
    {
        QString name;
        QString formula;
    };

    /** The name of the guide with this formula: a new one with this initial if there is none. */
    QString named(QLatin1Char initial, QString const& formula)
    {
        QString& name = m_names[formula];
        if (name.isEmpty()) {
            name = initial + QString::number(++m_counts[initial.toLatin1()]);
            m_guides.append({name, formula});
        }
        return name;
    }

    /** In the order in which they are to be computed. */
    QVector<Guide> const& all() const { return m_guides; }

private:
    QHash<QString, QString> m_names; ///< by formula
    QHash<char, int> m_counts; ///< by initial
    QVector<Guide> m_guides;
};

QString product(QString const& side, double factor)
{
    Fraction const fraction = fractionOf(factor);
    return QStringLiteral("*/ %1 %2 %3")
        .arg(side)
        .arg(fraction.numerator)
        .arg(fraction.denominator);
}

QString difference(QString const& from, QString const& taken)
{
    return QStringLiteral("+- %1 0 %2").arg(from, taken);
}

/** The coordinates of a shape's outlines in terms of DrawingML. */
class Coordinates
{
public:
    explicit Coordinates(QSizeF const& box)
        : m_scale(unitScale(box))
        , m_longestSide(m_scale * std::max(box.width(), box.height()))
    {
    }

    /** A whole number, or the name of a guide. */
    QString text(KpReal const& real)
    {
        QString const right = QStringLiteral("r");
        QString const bottom = QStringLiteral("b");
        switch (real.base) {
        case KpReal::PartOfWidth:
            return x(product(QStringLiteral("w"), factor(real)));
        case KpReal::PartOfHeight:
            return y(product(QStringLiteral("h"), factor(real)));
        case KpReal::FromRight:
            return x(difference(right, length(real.rate)));
        case KpReal::FromBottom:
            return y(difference(bottom, length(real.rate)));
        case KpReal::PartOfSide:
            return partOfSide(real);
        case KpReal::FromRightPartOfSide:
            return x(difference(right, partOfSide(real)));
        case KpReal::FromBottomPartOfSide:
            return y(difference(bottom, partOfSide(real)));
        default:
            return length(real.value);
        }
    }

    /** Likewise without its sign, in boxes too for which the real is negative. */
    QString radius(KpReal const& real)
    {
        switch (real.base) {
        case KpReal::PartOfWidth:
        case KpReal::PartOfHeight:
        case KpReal::PartOfSide:
            return text(KpReal(real.base, std::abs(real.rate), real.value));
        case KpReal::FromRight:
        case KpReal::FromBottom:
        case KpReal::FromRightPartOfSide:
        case KpReal::FromBottomPartOfSide:
            return m_guides.named(QLatin1Char('a'), QStringLiteral("abs %1").arg(text(real)));
        default:
            return length(std::abs(real.value));
        }
    }

    /** The sum of two such texts. */
    QString sum(QString const& left, QString const& right)
    {
        return x(QStringLiteral("+- %1 %2 0").arg(left, right));
    }

    GuideList const& guides() const { return m_guides; }
    /** Whether every real so far was a number and small enough. */
    bool areAllHeld() const { return m_areAllHeld; }

private:
    QString x(QString const& formula) { return m_guides.named(QLatin1Char('x'), formula); }
    QString y(QString const& formula) { return m_guides.named(QLatin1Char('y'), formula); }

    QString partOfSide(KpReal const& real)
    {
        return m_guides.named(QLatin1Char('s'), product(QStringLiteral("ss"), factor(real)));
    }

    /** The number, or 0 if this many times as much would be too large for a coordinate. */
    double held(double number, double times)
    {
        // Written so that NaN fails.
        bool const isHeld = std::abs(number) * times <= greatestCoordinate;
        m_areAllHeld = m_areAllHeld && isHeld;
        return isHeld ? number : 0.0;
    }

    QString length(double units)
    {
        return QString::number(std::llround(held(units, m_scale) * m_scale));
    }

    /** The rate; its greatest multiple of a side must be a coordinate, and it a fraction. */
    double factor(KpReal const& real)
    {
        return held(real.rate, std::max(m_longestSide, static_cast<double>(mostParts)));
    }

    double m_scale;
    double m_longestSide;
    GuideList m_guides;
    bool m_areAllHeld = true;
};

/** A step of an a:path; its texts are those of Coordinates. */
struct Step
{
    QString name; ///< of its element
    QVector<QPair<QString, QString>> points;
    QPair<QString, QString> radii; ///< of an arc
};

/** The steps of one outline. */
class Steps
{
public:
    explicit Steps(Coordinates& coordinates)
        : m_coordinates(coordinates)
    {
    }

    void add(KpPathSeg& seg)
    {
        if (KpPathSegEllipse const* const ellipse = seg.toEllipse()) {
            addEllipse(*ellipse);
        } else if (seg.type == KpPathSeg::SegMoveTo) {
            moveTo(point(seg.pt));
        } else if (KpPathSegCurveTo const* const curve = seg.toCurveTo()) {
            begin();
            m_steps.append({QStringLiteral("a:cubicBezTo"),
                {point(curve->ctrl1), point(curve->ctrl2), point(curve->pt)}, {}});
        } else if (seg.type == KpPathSeg::SegLineTo) {
            begin();
            m_steps.append({QStringLiteral("a:lnTo"), {point(seg.pt)}, {}});
        }
    }

    void close()
    {
        if (m_isOpen)
            m_steps.append({QStringLiteral("a:close"), {}, {}});
        m_isOpen = false;
    }

    QVector<Step> const& all() const { return m_steps; }

private:
    QPair<QString, QString> point(KpPoint const& point)
    {
        return {m_coordinates.text(point.x), m_coordinates.text(point.y)};
    }

    void moveTo(QPair<QString, QString> const& place)
    {
        m_steps.append({QStringLiteral("a:moveTo"), {place}, {}});
        m_start = place;
        m_isOpen = true;
    }

    /** A line or a curve goes on from where the drawing stands, which only a move may tell. */
    void begin()
    {
        if (!m_isOpen)
            moveTo(m_start);
    }

    /** A full turn clockwise from the right-most point. */
    void addEllipse(KpPathSegEllipse const& ellipse)
    {
        QPair<QString, QString> const centre = point(ellipse.pt);
        QPair<QString, QString> const radii(
            m_coordinates.radius(ellipse.a), m_coordinates.radius(ellipse.b));
        moveTo({m_coordinates.sum(centre.first, radii.first), centre.second});
        m_steps.append({QStringLiteral("a:arcTo"), {}, radii});
        close();
    }

    Coordinates& m_coordinates;
    QVector<Step> m_steps;
    QPair<QString, QString> m_start {QStringLiteral("0"), QStringLiteral("0")};
    bool m_isOpen = false;
};

/** One p:sp before it is written: its guides stand before its paths. */
struct Geometry
{
    GuideList guides;
    std::vector<QVector<Step>> paths;
};

/** Nothing, with a diagnostic, if a coordinate cannot be written. */
std::optional<Geometry> geometryOf(CustomShape const& shape, Diagnostics& diagnostics)
{
    Coordinates coordinates(shape.box);
    Geometry geometry;
    for (Shape const& outline : shape.outlines) {
        Steps steps(coordinates);
        for (KpPathSeg* const seg : qAsConst(outline.list->segs)) {
            if (seg)
                steps.add(*seg);
        }
        if (outline.list->closed)
            steps.close();
        geometry.paths.push_back(steps.all());
    }
    if (!coordinates.areAllHeld()) {
        diagnostics.error(shape.source,
            QStringLiteral("a coordinate is not a number or too large for DrawingML"));
        return std::nullopt;
    }
    geometry.guides = coordinates.guides();
    return geometry;
}

QString readable(QString const& name)
{
    return XmlText::readable(name, XmlText::Controls::AreReplaced);
}

/** The name as a comment may hold it: no two hyphens in a row, none at the end. */
QString commentText(QString const& name)
{
    QString text = readable(name);
    // Twice, since three hyphens make two overlapping pairs.
    text.replace(QLatin1String("--"), QLatin1String("- -"));
    text.replace(QLatin1String("--"), QLatin1String("- -"));
    return QStringLiteral(" %1 ").arg(text);
}

/** Writes p:spTree and all that it holds. */
class Writer
{
public:
    explicit Writer(QByteArray* xml)
        : m_xml(xml)
    {
        m_xml.setAutoFormatting(true);
        m_xml.setAutoFormattingIndent(1);
    }

    void begin()
    {
        m_xml.writeStartDocument();
        m_xml.writeStartElement(QStringLiteral("p:spTree"));
        m_xml.writeAttribute(QStringLiteral("xmlns:p"),
            QStringLiteral("http://schemas.openxmlformats.org/presentationml/2006/main"));
        m_xml.writeAttribute(QStringLiteral("xmlns:a"),
            QStringLiteral("http://schemas.openxmlformats.org/drawingml/2006/main"));
        writeNames(QStringLiteral("p:nvGrpSpPr"), QStringLiteral("p:cNvGrpSpPr"), {});
        m_xml.writeEmptyElement(QStringLiteral("p:grpSpPr"));
    }

    void write(CustomShape const& shape, Geometry const& geometry)
    {
        m_xml.writeStartElement(QStringLiteral("p:sp"));
        writeNames(QStringLiteral("p:nvSpPr"), QStringLiteral("p:cNvSpPr"), readable(shape.name));
        m_xml.writeStartElement(QStringLiteral("p:spPr"));
        writeFrame(shape.box);
        writeGeometry(shape, geometry);
        m_xml.writeEndElement();
        m_xml.writeEndElement();
    }

    void end() { m_xml.writeEndDocument(); }

private:
    void writeNumber(QString const& name, qint64 number)
    {
        m_xml.writeAttribute(name, QString::number(number));
    }

    /** What PresentationML wants of each object, which numbers them all. */
    void writeNames(QString const& element, QString const& kind, QString const& name)
    {
        m_xml.writeStartElement(element);
        m_xml.writeEmptyElement(QStringLiteral("p:cNvPr"));
        writeNumber(QStringLiteral("id"), ++m_objects);
        m_xml.writeAttribute(QStringLiteral("name"), name);
        m_xml.writeEmptyElement(kind);
        m_xml.writeEmptyElement(QStringLiteral("p:nvPr"));
        m_xml.writeEndElement();
    }

    void writeFrame(QSizeF const& box)
    {
        double const scale = unitScale(box);
        m_xml.writeStartElement(QStringLiteral("a:xfrm"));
        m_xml.writeEmptyElement(QStringLiteral("a:off"));
        writeNumber(QStringLiteral("x"), 0);
        writeNumber(QStringLiteral("y"), 0);
        m_xml.writeEmptyElement(QStringLiteral("a:ext"));
        writeNumber(QStringLiteral("cx"), std::llround(box.width() * scale));
        writeNumber(QStringLiteral("cy"), std::llround(box.height() * scale));
        m_xml.writeEndElement();
    }

    void writeGeometry(CustomShape const& shape, Geometry const& geometry)
    {
        m_xml.writeStartElement(QStringLiteral("a:custGeom"));
        m_xml.writeEmptyElement(QStringLiteral("a:avLst"));
        m_xml.writeStartElement(QStringLiteral("a:gdLst"));
        for (GuideList::Guide const& guide : geometry.guides.all()) {
            m_xml.writeEmptyElement(QStringLiteral("a:gd"));
            m_xml.writeAttribute(QStringLiteral("name"), guide.name);
            m_xml.writeAttribute(QStringLiteral("fmla"), guide.formula);
        }
        m_xml.writeEndElement();
        m_xml.writeEmptyElement(QStringLiteral("a:ahLst"));
        m_xml.writeEmptyElement(QStringLiteral("a:cxnLst"));
        m_xml.writeEmptyElement(QStringLiteral("a:rect"));
        for (char const* const side : {"l", "t", "r", "b"})
            m_xml.writeAttribute(QLatin1String(side), side);
        m_xml.writeStartElement(QStringLiteral("a:pathLst"));
        for (std::size_t i = 0; i < geometry.paths.size(); ++i)
            writePath(shape, shape.outlines[i], geometry.paths[i]);
        m_xml.writeEndElement();
        m_xml.writeEndElement();
    }

    void writePath(CustomShape const& shape, Shape const& outline, QVector<Step> const& steps)
    {
        if (!outline.name.isEmpty() && outline.name != shape.name)
            m_xml.writeComment(commentText(outline.name));
        m_xml.writeStartElement(QStringLiteral("a:path"));
        if (outline.list->noFill)
            m_xml.writeAttribute(QStringLiteral("fill"), "none");
        if (outline.list->noLine)
            m_xml.writeAttribute(QStringLiteral("stroke"), "0");
        for (Step const& step : steps)
            writeStep(step);
        m_xml.writeEndElement();
    }

    void writeStep(Step const& step)
    {
        if (step.points.isEmpty())
            m_xml.writeEmptyElement(step.name);
        else
            m_xml.writeStartElement(step.name);
        if (!step.radii.first.isEmpty()) {
            m_xml.writeAttribute(QStringLiteral("wR"), step.radii.first);
            m_xml.writeAttribute(QStringLiteral("hR"), step.radii.second);
            m_xml.writeAttribute(QStringLiteral("stAng"), "0");
            m_xml.writeAttribute(QStringLiteral("swAng"), "21600000"); // 360 degrees
        }
        for (auto const& point : step.points) {
            m_xml.writeEmptyElement(QStringLiteral("a:pt"));
            m_xml.writeAttribute(QStringLiteral("x"), point.first);
            m_xml.writeAttribute(QStringLiteral("y"), point.second);
        }
        if (!step.points.isEmpty())
            m_xml.writeEndElement();
    }

    XmlStreamWriter m_xml;
    int m_objects = 0;
};

} // namespace

double unitScale(QSizeF const& box)
{
    double const shorter = std::min(box.width(), box.height());
    double const longer = std::max(box.width(), box.height());
    double scale = emusAUnit;
    while (longer * scale > comfortableCoordinate && shorter * scale / 10.0 >= finestSide)
        scale /= 10.0;
    while (shorter * scale < finestSide && longer * scale * 10.0 <= greatestCoordinate)
        scale *= 10.0;
    return scale;
}

std::optional<QByteArray> custGeomDocument(
    std::vector<CustomShape> const& shapes, Diagnostics& diagnostics)
{
    QByteArray xml;
    Writer writer(&xml);
    writer.begin();
    for (CustomShape const& shape : shapes) {
        auto const geometry = geometryOf(shape, diagnostics);
        if (!geometry)
            return std::nullopt;
        writer.write(shape, *geometry);
    }
    writer.end();
    return xml;
}
