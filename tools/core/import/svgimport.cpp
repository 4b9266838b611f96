#include "import/svgimport.h"

#include "common/fonts.h"
#include "common/text.h"
#include "import/losses.h"
#include "import/svgguard.h"
#include "import/svgrewriter.h"
#include "import/uniquenames.h"

#include <QSvgRenderer>

#include <cmath>
#include <functional>

namespace {

/** Whether the first elements of both are the same, and have the same rule. */
bool beginAlike(QPainterPath const& left, QPainterPath const& right, int count)
{
    for (int i = 0; i < count; ++i) {
        QPainterPath::Element const a = left.elementAt(i);
        QPainterPath::Element const b = right.elementAt(i);
        // Unlike the comparison of points or paths this one takes nearly equal for different.
        if (a.type != b.type || a.x < b.x || a.x > b.x || a.y < b.y || a.y > b.y)
            return false;
    }
    return true;
}

bool sameElements(QPainterPath const& left, QPainterPath const& right)
{
    return left.fillRule() == right.fillRule() && left.elementCount() == right.elementCount()
        && beginAlike(left, right, left.elementCount());
}

/** Whether `closed` is the open path with one more line, back to its start. */
bool isClosedFrom(QPainterPath const& closed, QPainterPath const& open)
{
    return closed.elementCount() == open.elementCount() + 1
        && beginAlike(closed, open, open.elementCount())
        && closed.elementAt(open.elementCount()).isLineTo()
        && QPointF(closed.elementAt(open.elementCount())) == QPointF(closed.elementAt(0));
}

/** Whether `line` is the line of the shape of which `fill` is the filling. */
bool isLineOf(RecordedPath const& line, RecordedPath const& fill)
{
    if (fill.pen.style() != Qt::NoPen || line.brush.style() != Qt::NoBrush
        || line.transform != fill.transform || line.compositionMode != fill.compositionMode
        || line.renderHints != fill.renderHints || line.clipped != fill.clipped)
        return false;
    // Of a polyline Qt SVG closes what it fills, and draws a line even with no colour.
    return (line.pen.style() != Qt::NoPen && sameElements(line.path, fill.path))
        || isClosedFrom(fill.path, line.path);
}

/** Gives the filling its line, which can be open where the filling is closed: both fill alike. */
void joinLine(RecordedPath& fill, RecordedPath const& line)
{
    Qt::FillRule const rule = fill.path.fillRule();
    fill.path = line.path;
    fill.path.setFillRule(rule);
    fill.ellipse = line.ellipse;
    fill.pen = line.pen;
    fill.lineOpacity = line.lineOpacity;
}

/** What was painted, and the number of the label that it has; -1 without one. */
struct PaintedPath
{
    RecordedPath path;
    int label;
};

using PaintedPaths = std::vector<PaintedPath>;

/** Follows the marks between the paths of a picture, or of each symbol of a sprite. */
class MarkReader
{
public:
    /** @param symbols how many there are; 0 for a picture */
    explicit MarkReader(std::size_t symbols)
        : m_sections(qMax(symbols, std::size_t(1)))
        , m_isSprite(symbols > 0)
    {
    }

    void read(PathRecorder const& recorder)
    {
        std::size_t next = 0;
        for (RecordedMark const& mark : recorder.marks()) {
            for (; next < mark.pathCount; ++next)
                add(recorder.paths()[next]);
            if (auto const known = SvgMark::fromFamily(mark.fontFamily))
                follow(*known);
        }
        for (; next < recorder.paths().size(); ++next)
            add(recorder.paths()[next]);
    }

    /** The paths of the picture, or of each symbol, in the order of their numbers. */
    std::vector<PaintedPaths> const& sections() const { return m_sections; }

private:
    void add(RecordedPath const& path) { m_sections[m_section].push_back({path, m_label}); }

    /** Of labels in one another, as of a shape that is used, the outermost counts. */
    void follow(SvgMark const& mark)
    {
        switch (mark.kind) {
        case SvgMark::Kind::LabelBegins:
            if (m_label < 0)
                m_label = mark.number;
            break;
        case SvgMark::Kind::LabelEnds:
            if (m_label == mark.number)
                m_label = -1;
            break;
        case SvgMark::Kind::SymbolBegins:
            if (m_isSprite && mark.number >= 0)
                m_section = qMin(static_cast<std::size_t>(mark.number), m_sections.size() - 1);
            m_label = -1;
            break;
        }
    }

    std::vector<PaintedPaths> m_sections;
    bool m_isSprite;
    std::size_t m_section = 0;
    int m_label = -1;
};

/** Qt SVG paints the filling and the line of a shape one after the other; this joins them. */
PaintedPaths shapes(PaintedPaths const& paths)
{
    PaintedPaths result;
    for (PaintedPath const& painted : paths) {
        if (!result.empty() && isLineOf(painted.path, result.back().path))
            joinLine(result.back().path, painted.path);
        else
            result.push_back(painted);
    }
    return result;
}

/** Without the filling or the line that cannot be seen. */
RecordedPath withoutInvisible(RecordedPath shape)
{
    auto const isInvisible = [](QBrush const& brush, double opacity) {
        return opacity <= 0.0 || brush.style() == Qt::NoBrush
            || (brush.style() == Qt::SolidPattern && brush.color().alpha() == 0);
    };
    if (isInvisible(shape.brush, shape.fillOpacity))
        shape.brush = Qt::NoBrush;
    if (isInvisible(shape.pen.brush(), shape.lineOpacity))
        shape.pen = Qt::NoPen;
    return shape;
}

/** The same, so many times as large. */
PaintedPath scaled(PaintedPath painted, double factor)
{
    RecordedPath& path = painted.path;
    QTransform const scale = QTransform::fromScale(factor, factor);
    path.path = scale.map(path.path);
    path.transform *= scale;
    if (path.ellipse)
        path.ellipse = scale.mapRect(*path.ellipse);
    return painted;
}

/** The whole of a picture, or a symbol. */
struct View
{
    QSizeF size; ///< in user units
    QString symbol; ///< its name; empty for a picture
    std::function<PaintedPaths(double)> paths; ///< what it paints, so many times as large
};

/** What the view is at a scale. */
struct ImportedView
{
    ImportedOutlines outlines;
    int unpainted; ///< shapes that are not among them
};

class SvgImport
{
public:
    SvgImport(RewrittenSvg const& svg, SvgImportOptions const& options, Diagnostics& diagnostics)
        : m_svg(svg)
        , m_options(options)
        , m_diagnostics(diagnostics)
    {
    }

    /** Nothing, with a diagnostic, if there is no picture to be had. */
    std::optional<ImportedPictures> import()
    {
        QSvgRenderer renderer;
        // Without frames there is no timer, which would need an application.
        renderer.setFramesPerSecond(0);
        if (!load(renderer))
            return std::nullopt;
        ImportedPictures pictures;
        if (!(m_svg.symbols.empty() ? addPicture(pictures, renderer)
                                    : addSymbols(pictures, renderer)))
            return std::nullopt;
        if (m_unpainted > 0) {
            m_diagnostics.warning(m_options.file,
                QStringLiteral("%1 painted with nothing: left out")
                    .arg(countText(m_unpainted, QStringLiteral("shape"))));
        }
        for (QString const& message : m_options.takeMessages())
            m_diagnostics.warning(m_options.file, message);
        if (m_options.tellsLosses)
            warnOfLosses(pictures, m_options.file, m_diagnostics);
        makeNamesUnique(pictures);
        return pictures;
    }

private:
    bool load(QSvgRenderer& renderer) const
    {
        if (renderer.load(m_svg.text))
            return true;
        QStringList const reasons = m_options.takeMessages();
        QString const reason =
            reasons.isEmpty() ? QString() : QStringLiteral(": ") + reasons.constFirst();
        m_diagnostics.error(
            m_options.file, QStringLiteral("not an SVG picture that can be read%1").arg(reason));
        return false;
    }

    std::vector<PaintedPaths> painted(
        QSvgRenderer& renderer, QSizeF const& userSize, double scale) const
    {
        PathRecorder recorder(userSize, scale);
        QPainter painter(&recorder);
        renderer.render(&painter, QRectF(QPointF(0.0, 0.0), userSize));
        painter.end();
        MarkReader marks(m_svg.symbols.size());
        marks.read(recorder);
        return marks.sections();
    }

    bool addPicture(ImportedPictures& pictures, QSvgRenderer& renderer)
    {
        QSizeF const userSize = renderer.viewBoxF().size();
        return add(pictures, {userSize, QString(), [&](double scale) {
                                  return painted(renderer, userSize, scale).front();
                              }});
    }

    bool addSymbols(ImportedPictures& pictures, QSvgRenderer& renderer)
    {
        auto const all = painted(renderer, renderer.viewBoxF().size(), 1.0);
        int withoutSize = 0;
        for (std::size_t i = 0; i < m_svg.symbols.size(); ++i) {
            SvgSymbol const& symbol = m_svg.symbols[i];
            QSizeF const size = symbol.box.size();
            if (!isPositive(size.width()) || !isPositive(size.height()))
                ++withoutSize;
            else if (!add(pictures, {size, symbol.name, [&](double scale) {
                                         PaintedPaths paths;
                                         for (PaintedPath const& path : all[i])
                                             paths.push_back(scaled(path, scale));
                                         return paths;
                                     }}))
                return false;
        }
        if (withoutSize > 0) {
            m_diagnostics.warning(m_options.file,
                QStringLiteral("%1 without a size: left out")
                    .arg(countText(withoutSize, QStringLiteral("symbol"))));
        }
        return true;
    }

    /** False, with a diagnostic, if the view is empty or too large. */
    bool add(ImportedPictures& pictures, View const& view)
    {
        auto imported = m_options.scale > 0.0 ? atScale(view, m_options.scale, m_diagnostics)
                                              : atBestScale(view);
        if (!imported)
            return false;
        m_unpainted += imported->unpainted;
        pictures.push_back(std::move(imported->outlines));
        return true;
    }

    /** At the default scale, or at the fine one if lines would vanish. */
    std::optional<ImportedView> atBestScale(View const& view)
    {
        double const longerSide = qMax(view.size.width(), view.size.height());
        Diagnostics usual;
        auto imported = atScale(view, defaultPictureSide / longerSide, usual);
        if (imported && countLostLines(imported->outlines) > 0)
            return atScale(view, finePictureSide / longerSide, m_diagnostics);
        m_diagnostics.append(usual);
        return imported;
    }

    std::optional<ImportedView> atScale(
        View const& view, double scale, Diagnostics& diagnostics) const
    {
        ImportedView result {{view.size * scale, {}, scale}, 0};
        if (QString const fault = pictureSizeFault(result.outlines.size); !fault.isEmpty()) {
            diagnostics.error(m_options.file,
                view.symbol.isEmpty() ? fault : QStringLiteral("%1: %2").arg(view.symbol, fault));
            return std::nullopt;
        }
        int number = 0;
        for (PaintedPath const& painted : shapes(view.paths(scale))) {
            ++number;
            RecordedPath const shape = withoutInvisible(painted.path);
            if (shape.brush.style() == Qt::NoBrush && shape.pen.style() == Qt::NoPen) {
                ++result.unpainted;
            } else {
                appendOutline(result.outlines, shape, nameOf(painted, view, number), m_options.file,
                    diagnostics);
            }
        }
        if (!view.symbol.isEmpty() && result.outlines.outlines.size() == 1)
            result.outlines.outlines.front().name = view.symbol;
        return result;
    }

    QString nameOf(PaintedPath const& painted, View const& view, int number) const
    {
        QString const label = m_svg.labels.value(painted.label);
        if (view.symbol.isEmpty())
            return label.isEmpty() ? QStringLiteral("path %1").arg(number) : label;
        return label.isEmpty() ? view.symbol : view.symbol + QLatin1Char('/') + label;
    }

    static void makeNamesUnique(ImportedPictures& pictures)
    {
        UniqueNames names;
        for (ImportedOutlines& picture : pictures) {
            for (ImportedOutline& outline : picture.outlines)
                outline.name = names.unique(outline.name);
        }
    }

    RewrittenSvg const& m_svg;
    SvgImportOptions const& m_options;
    Diagnostics& m_diagnostics;
    int m_unpainted = 0;
};

/** What Qt SVG may be given; nothing, with a diagnostic, if it may not be given any of it. */
std::optional<RewrittenSvg> preparedSvg(
    QByteArray const& svg, QString const& file, Diagnostics& diagnostics)
{
    auto const text = guardedSvg(svg, file, diagnostics);
    if (!text)
        return std::nullopt;
    QString fault;
    // What the labels add may be too much where a shape is used many times.
    for (SvgLabels const labels : {SvgLabels::AreMarked, SvgLabels::AreLeftOut}) {
        Diagnostics told;
        auto rewritten = rewrittenSvg(*text, labels, file, told);
        fault = rewritten ? useFault(rewritten->text)
                          : QStringLiteral("the picture is too large with its symbols in place");
        if (fault.isEmpty()) {
            diagnostics.append(told);
            return rewritten;
        }
    }
    diagnostics.error(file, fault);
    return std::nullopt;
}

} // namespace

std::optional<ImportedPictures> importSvg(
    QByteArray const& svg, SvgImportOptions const& options, Diagnostics& diagnostics)
{
    if (!(std::isfinite(options.scale) && options.scale >= 0.0)) {
        diagnostics.error(
            options.file, QStringLiteral("the scale must be a number and not negative"));
        return std::nullopt;
    }
    auto const rewritten = preparedSvg(svg, options.file, diagnostics);
    if (!rewritten)
        return std::nullopt;
    if (rewritten->hasText)
        startFonts();
    options.takeMessages();
    return SvgImport(*rewritten, options, diagnostics).import();
}
