// SPDX-License-Identifier: MIT
#ifndef PATHRECORDER_H
#define PATHRECORDER_H

#include <QBrush>
#include <QPaintDevice>
#include <QPainter>
#include <QPainterPath>
#include <QPen>
#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <QString>
#include <QTransform>

#include <memory>
#include <optional>

/** One painted path, with all that paints it again. */
struct RecordedPath
{
    QPainterPath path; ///< as recorded, in device units; its fill rule is the painted one
    QTransform
        transform; ///< from the painter's coordinates, those of pen and brush, to device units
    QPen pen; ///< Qt::NoPen where no line was painted
    QBrush brush; ///< Qt::NoBrush where nothing was filled
    QPointF brushOrigin; ///< in the painter's coordinates
    double fillOpacity = 1.0; ///< from 0 to 1, beside what the brush itself has
    double lineOpacity = 1.0; ///< from 0 to 1, beside what the pen itself has
    QPainter::CompositionMode compositionMode =
        QPainter::CompositionMode_SourceOver; ///< with what lies below
    QPainter::RenderHints renderHints; ///< all others were off
    bool clipped = false; ///< painted under a clip, which is not recorded
    /**
     * Set if the path is one ellipse that stands upright in device units, and starting at its
     * right-most point and going clockwise shows the same: its bounds there.
     */
    std::optional<QRectF> ellipse;

    /** Paints the path; the painter's coordinates are device units. The painter's state stays. */
    void paint(QPainter& painter) const;
    /** As paint(), but with `outline`, in device units, for the path. Its fill rule counts. */
    void paint(QPainter& painter, QPainterPath const& outline) const;
};

/** Takes what is painted, in its order. */
class PathSink
{
public:
    PathSink() = default;
    virtual ~PathSink() = default;
    PathSink(PathSink const&) = delete;
    PathSink& operator=(PathSink const&) = delete;

    /** A path with a line or a curve; others are not recorded. */
    virtual void addPath(RecordedPath path) = 0;
    /**
     * An empty path that was painted with nothing: what draws can tell something by it.
     *
     * @param fontFamily of the painter, the one thing that paths do not show
     */
    virtual void addMark(QString const& fontFamily) = 0;
};

/**
 * A paint device that records the paths that are painted on it, and draws nothing.
 *
 * Every line, rectangle, ellipse, polygon and point is a path of its own; so is every text
 * item, whose path holds the outlines of all its glyphs. Images are no paths: they are counted
 * and left out. Clips are not applied.
 *
 * The device is as large as its logical size, at 96 dots an inch; the paths are recorded in
 * device units, of which `scale` make a logical unit. Coordinates are not rounded.
 */
class PathRecorder : public QPaintDevice
{
public:
    /**
     * @param scale device units a logical unit; 1 records what the painter was given
     * @param sink takes what is painted; it must outlive this
     */
    PathRecorder(QSizeF size, double scale, PathSink& sink);
    ~PathRecorder() override;

    /** Images and pixmaps painted; a tiled one counts once. */
    int imageCount() const { return m_imageCount; }

    /** Only QPainter calls it. */
    QPaintEngine* paintEngine() const override;

protected:
    /** What Qt asks of every device; the size is rounded up to whole units. */
    int metric(PaintDeviceMetric metric) const override;

private:
    class Engine;

    QSizeF m_size;
    QTransform m_scale;
    PathSink& m_sink;
    int m_imageCount = 0;
    std::unique_ptr<Engine> m_engine;
};

#endif // PATHRECORDER_H
