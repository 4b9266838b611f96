// SPDX-License-Identifier: MIT
#include "import/pathrecorder.h"

#include <QFont>
#include <QPaintEngine>
#include <QStringList>

#include <cmath>
#include <limits>
#include <utility>

void RecordedPath::paint(QPainter& painter) const
{
    paint(painter, path);
}

void RecordedPath::paint(QPainter& painter, QPainterPath const& outline) const
{
    bool invertible = false;
    QTransform const fromDevice = transform.inverted(&invertible);
    if (!invertible)
        return;
    QPainterPath const painted = fromDevice.map(outline);

    painter.save();
    painter.setTransform(transform, true);
    painter.setBrushOrigin(brushOrigin);
    painter.setCompositionMode(compositionMode);
    painter.setRenderHints(painter.renderHints(), false);
    painter.setRenderHints(renderHints);
    double const opacity = painter.opacity();
    painter.setPen(Qt::NoPen);
    painter.setBrush(brush);
    painter.setOpacity(opacity * fillOpacity);
    painter.drawPath(painted);
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    painter.setOpacity(opacity * lineOpacity);
    painter.drawPath(painted);
    painter.restore();
}

namespace {

/**
 * Whether an upright ellipse is one too behind the transformation.
 *
 * @param mayTurn whether it may start elsewhere or run the other way then
 */
bool staysUpright(QTransform const& transform, bool mayTurn)
{
    // Of what is 1e6 units large, this is less than a coordinate has digits for.
    double const rounding = 1e-9;
    double const straight = qMin(std::abs(transform.m11()), std::abs(transform.m22()));
    double const across = qMin(std::abs(transform.m12()), std::abs(transform.m21()));
    double const mostStraight = qMax(std::abs(transform.m11()), std::abs(transform.m22()));
    double const mostAcross = qMax(std::abs(transform.m12()), std::abs(transform.m21()));
    if (!transform.isAffine())
        return false;
    if (mostAcross <= rounding * straight)
        return mayTurn || (transform.m11() > 0.0 && transform.m22() > 0.0);
    return mayTurn && mostStraight <= rounding * across;
}

} // namespace

/** Turns every drawing call into paths; has every feature, so QPainter emulates nothing. */
class PathRecorder::Engine : public QPaintEngine
{
public:
    explicit Engine(PathRecorder& recorder)
        : QPaintEngine(AllFeatures)
        , m_recorder(recorder)
    {
    }

    bool begin(QPaintDevice*) override { return true; }
    bool end() override { return true; }
    Type type() const override { return User; }
    /** Nothing is kept: the state is the painter's at the time of each call. */
    void updateState(QPaintEngineState const&) override { }

    // The overloads for integers come here too, by way of the base class.
    using QPaintEngine::drawEllipse;
    using QPaintEngine::drawLines;
    using QPaintEngine::drawPoints;
    using QPaintEngine::drawPolygon;
    using QPaintEngine::drawRects;

    void drawPath(QPainterPath const& path) override
    {
        record(path, painter()->pen(), painter()->brush());
    }

    void drawRects(QRectF const* rects, int count) override
    {
        for (int i = 0; i < count; ++i) {
            QPainterPath path;
            path.addRect(rects[i]);
            drawPath(path);
        }
    }

    void drawEllipse(QRectF const& rect) override
    {
        QPainterPath path;
        path.addEllipse(rect);
        record(path, painter()->pen(), painter()->brush(), rect);
    }

    void drawPolygon(QPointF const* points, int count, PolygonDrawMode mode) override
    {
        if (count < 1)
            return;
        QPainterPath path(points[0]);
        for (int i = 1; i < count; ++i)
            path.lineTo(points[i]);
        if (mode == PolylineMode) {
            record(path, painter()->pen(), Qt::NoBrush);
            return;
        }
        path.closeSubpath();
        path.setFillRule(mode == WindingMode ? Qt::WindingFill : Qt::OddEvenFill);
        drawPath(path);
    }

    void drawLines(QLineF const* lines, int count) override
    {
        for (int i = 0; i < count; ++i)
            recordLine(lines[i], painter()->pen());
    }

    void drawPoints(QPointF const* points, int count) override
    {
        // A point is as large as the pen, but a line without length has neither length nor,
        // with flat ends, any extent. This one is too short to see at any usual scale.
        double const length = 1.0 / 64.0;
        QPen pen = painter()->pen();
        if (pen.capStyle() == Qt::FlatCap)
            pen.setCapStyle(Qt::SquareCap);
        for (int i = 0; i < count; ++i)
            recordLine(QLineF(points[i], points[i] + QPointF(length, 0.0)), pen);
    }

    // Text needs no code here: the base class fills the outlines of a text item's glyphs.

    void drawImage(QRectF const&, QImage const&, QRectF const&, Qt::ImageConversionFlags) override
    {
        ++m_recorder.m_imageCount;
    }

    void drawPixmap(QRectF const&, QPixmap const&, QRectF const&) override
    {
        ++m_recorder.m_imageCount;
    }

    void drawTiledPixmap(QRectF const&, QPixmap const&, QPointF const&) override
    {
        ++m_recorder.m_imageCount;
    }

private:
    void recordLine(QLineF const& line, QPen const& pen)
    {
        QPainterPath path(line.p1());
        path.lineTo(line.p2());
        record(path, pen, Qt::NoBrush);
    }

    QString fontFamily() const
    {
        QFont const font = painter()->font();
        // A font that was given a list of families keeps another one beside it.
        QStringList const families = font.families();
        return families.isEmpty() ? font.family() : families.constFirst();
    }

    /** @param ellipse the rectangle of the ellipse that the path is; empty for any other */
    void record(QPainterPath const& path, QPen const& pen, QBrush const& brush,
        QRectF const& ellipse = QRectF())
    {
        if (path.isEmpty()) {
            if (pen.style() == Qt::NoPen && brush.style() == Qt::NoBrush)
                m_recorder.m_sink.addMark(fontFamily());
            return;
        }
        RecordedPath recorded;
        recorded.transform = painter()->deviceTransform() * m_recorder.m_scale;
        recorded.path = recorded.transform.map(path);
        recorded.pen = pen;
        recorded.brush = brush;
        recorded.brushOrigin = painter()->brushOrigin();
        recorded.fillOpacity = recorded.lineOpacity = painter()->opacity();
        recorded.compositionMode = painter()->compositionMode();
        recorded.renderHints = painter()->renderHints();
        recorded.clipped = painter()->hasClipping();
        bool const isPlainLine = pen.style() == Qt::NoPen || pen.style() == Qt::SolidLine;
        if (!ellipse.isEmpty() && staysUpright(recorded.transform, isPlainLine))
            recorded.ellipse = recorded.transform.mapRect(ellipse);
        m_recorder.m_sink.addPath(std::move(recorded));
    }

    PathRecorder& m_recorder;
};

PathRecorder::PathRecorder(QSizeF size, double scale, PathSink& sink)
    : m_size(size)
    , m_scale(QTransform::fromScale(scale, scale))
    , m_sink(sink)
    , m_engine(std::make_unique<Engine>(*this))
{
}

PathRecorder::~PathRecorder() = default;

QPaintEngine* PathRecorder::paintEngine() const
{
    return m_engine.get();
}

int PathRecorder::metric(PaintDeviceMetric metric) const
{
    double const dotsPerInch = 96.0;
    double const millimetresPerDot = 25.4 / dotsPerInch;
    auto const toInt = [](double length) {
        return static_cast<int>(std::lround(qBound(0.0, length, 1e9)));
    };
    switch (metric) {
    case PdmWidth:
        return toInt(std::ceil(m_size.width()));
    case PdmHeight:
        return toInt(std::ceil(m_size.height()));
    case PdmWidthMM:
        return toInt(m_size.width() * millimetresPerDot);
    case PdmHeightMM:
        return toInt(m_size.height() * millimetresPerDot);
    case PdmNumColors:
        return std::numeric_limits<int>::max();
    case PdmDepth:
        return 32;
    case PdmDpiX:
    case PdmDpiY:
    case PdmPhysicalDpiX:
    case PdmPhysicalDpiY:
        return static_cast<int>(dotsPerInch);
    case PdmDevicePixelRatio:
        return 1;
    case PdmDevicePixelRatioScaled:
        return toInt(devicePixelRatioFScale());
    }
    return QPaintDevice::metric(metric);
}
