// SPDX-License-Identifier: MIT
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
#include <utility>
#include <vector>

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

/** Takes paths one by one. */
using TakePath = std::function<void(PaintedPath)>;

/** Follows the marks between the paths of a picture, or of the symbols of a sprite. */
class MarkReader : public PathSink
{
public:
    /**
     * @param symbols how many there are; 0 for a picture
     * @param take is handed each path, with the index of its symbol, or 0
     */
    MarkReader(std::size_t symbols, std::function<void(std::size_t, PaintedPath)> take)
        : m_symbols(symbols)
        , m_take(std::move(take))
    {
    }

    void addPath(RecordedPath path) override { m_take(m_symbol, {std::move(path), m_label}); }

    void addMark(QString const& fontFamily) override
    {
        if (auto const known = SvgMark::fromFamily(fontFamily))
            follow(*known);
    }

private:
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
            if (m_symbols > 0 && mark.number >= 0)
                m_symbol = qMin(static_cast<std::size_t>(mark.number), m_symbols - 1);
            m_label = -1;
            break;
        }
    }

    std::size_t const m_symbols;
    std::function<void(std::size_t, PaintedPath)> const m_take;
    std::size_t m_symbol = 0;
    int m_label = -1;
};

/** Qt SVG paints the filling and the line of a shape one after the other; this joins them. */
class ShapeJoiner
{
public:
    /** @param take is handed each shape */
    explicit ShapeJoiner(TakePath take)
        : m_take(std::move(take))
    {
    }

    void add(PaintedPath painted)
    {
        if (m_last && isLineOf(painted.path, m_last->path)) {
            joinLine(m_last->path, painted.path);
            return;
        }
        finish();
        m_last = std::move(painted);
    }

    /** Hands over the last shape. */
    void finish()
    {
        if (m_last)
            m_take(std::move(*m_last));
        m_last.reset();
    }

private:
    TakePath const m_take;
    std::optional<PaintedPath> m_last;
};

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
    /** Paints it so many times as large. */
    std::function<void(double scale, TakePath const& take)> paint;
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
    SvgImport(RewrittenSvg svg, SvgImportOptions const& options, Diagnostics& diagnostics)
        : m_svg(std::move(svg))
        , m_options(options)
        , m_diagnostics(diagnostics)
    {
    }

    /** Nothing, with a diagnostic, if there is no picture to be had. */
    std::optional<ImportedPictures> import()
    {
        ImportedPictures pictures;
        if (!paint(pictures))
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
    /** False, with a diagnostic, if there is no picture to be had. What Qt SVG keeps is free then. */
    bool paint(ImportedPictures& pictures)
    {
        QSvgRenderer renderer;
        // Without frames there is no timer, which would need an application.
        renderer.setFramesPerSecond(0);
        if (!load(renderer))
            return false;
        return m_svg.symbols.empty() ? addPicture(pictures, renderer)
                                     : addSymbols(pictures, renderer);
    }

    bool load(QSvgRenderer& renderer)
    {
        if (renderer.load(std::exchange(m_svg.text, QByteArray())))
            return true;
        QStringList const reasons = m_options.takeMessages();
        QString const reason =
            reasons.isEmpty() ? QString() : QStringLiteral(": ") + reasons.constFirst();
        m_diagnostics.error(
            m_options.file, QStringLiteral("not an SVG picture that can be read%1").arg(reason));
        return false;
    }

    bool addPicture(ImportedPictures& pictures, QSvgRenderer& renderer)
    {
        QSizeF const userSize = renderer.viewBoxF().size();
        auto const paint = [&](double scale, TakePath const& take) {
            MarkReader marks(0, [&take](std::size_t, PaintedPath path) { take(std::move(path)); });
            paintAll(renderer, userSize, scale, marks);
        };
        return add(pictures, {userSize, QString(), paint});
    }

    bool addSymbols(ImportedPictures& pictures, QSvgRenderer& renderer)
    {
        std::vector<PaintedPaths> all(m_svg.symbols.size());
        MarkReader marks(all.size(), [&all](std::size_t symbol, PaintedPath path) {
            all[symbol].push_back(std::move(path));
        });
        paintAll(renderer, renderer.viewBoxF().size(), 1.0, marks);
        int withoutSize = 0;
        for (std::size_t i = 0; i < m_svg.symbols.size(); ++i) {
            SvgSymbol const& symbol = m_svg.symbols[i];
            QSizeF const size = symbol.box.size();
            PaintedPaths const paths = std::move(all[i]);
            auto const paint = [&paths](double scale, TakePath const& take) {
                for (PaintedPath const& path : paths)
                    take(scaled(path, scale));
            };
            if (!isPositive(size.width()) || !isPositive(size.height()))
                ++withoutSize;
            else if (!add(pictures, {size, symbol.name, paint}))
                return false;
        }
        if (withoutSize > 0) {
            m_diagnostics.warning(m_options.file,
                QStringLiteral("%1 without a size: left out")
                    .arg(countText(withoutSize, QStringLiteral("symbol"))));
        }
        return true;
    }

    static void paintAll(
        QSvgRenderer& renderer, QSizeF const& userSize, double scale, MarkReader& marks)
    {
        PathRecorder recorder(userSize, scale, marks);
        QPainter painter(&recorder);
        renderer.render(&painter, QRectF(QPointF(0.0, 0.0), userSize));
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
        if (imported && countLostLines(imported->outlines) > 0) {
            imported.reset();
            return atScale(view, finePictureSide / longerSide, m_diagnostics);
        }
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
        result.outlines.keepsPainted = m_options.keepsPainted;
        int number = 0;
        ShapeJoiner joiner([&](PaintedPath const& painted) {
            ++number;
            RecordedPath const shape = withoutInvisible(painted.path);
            if (shape.brush.style() == Qt::NoBrush && shape.pen.style() == Qt::NoPen) {
                ++result.unpainted;
            } else {
                appendOutline(result.outlines, shape, nameOf(painted, view, number), m_options.file,
                    diagnostics);
            }
        });
        view.paint(scale, [&joiner](PaintedPath path) { joiner.add(std::move(path)); });
        joiner.finish();
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

    RewrittenSvg m_svg; ///< its text until it is loaded
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
    auto rewritten = preparedSvg(svg, options.file, diagnostics);
    if (!rewritten)
        return std::nullopt;
    if (rewritten->hasText)
        startFonts();
    options.takeMessages();
    return SvgImport(std::move(*rewritten), options, diagnostics).import();
}
