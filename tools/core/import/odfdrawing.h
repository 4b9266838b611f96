// SPDX-License-Identifier: MIT
#ifndef ODFDRAWING_H
#define ODFDRAWING_H

#include "common/diagnostic.h"

#include <QBrush>
#include <QByteArray>
#include <QPainterPath>
#include <QPen>

#include <memory>
#include <vector>

/** An element that an OpenDocument file draws. */
struct OdfShape
{
    QString name; ///< its draw:name, or its kind and number: "rect 3"
    QPainterPath path; ///< in pixels of 1/96 inch on its page
    QPen pen; ///< Qt::NoPen where no line is drawn
    QBrush brush; ///< Qt::NoBrush where nothing is filled
};

/** What is moved and resized as one: an element by itself, or all of an outermost `draw:g`. */
using OdfGroup = std::vector<OdfShape>;

/** More elements than this are refused. */
constexpr int maximumOdfShapes = 200000;

/** Reads the drawings of OpenDocument files: styles first, then what uses them. */
class OdfDrawing
{
public:
    OdfDrawing();
    ~OdfDrawing();
    OdfDrawing(OdfDrawing const&) = delete;
    OdfDrawing& operator=(OdfDrawing const&) = delete;

    /**
     * Reads a part of the file, or all of a flat one: the styles that it holds are added to those
     * already known, and so are the elements that it draws. Of these are read `draw:path`,
     * `draw:rect`, `draw:ellipse`, `draw:circle`, `draw:polygon`, `draw:polyline` and `draw:line`,
     * transformed by odfTransform().
     * False, with a diagnostic, for what is no well-formed XML within BoundedXml's bounds or draws
     * more than maximumOdfShapes.
     *
     * @param part its name in diagnostics, before line and column; empty for a flat file
     */
    bool read(
        QByteArray const& xml, QString const& part, QString const& file, Diagnostics& diagnostics);

    /** In document order, and none left here. Elements that paint nothing are left out. */
    std::vector<OdfGroup> takeGroups();

    /** Warns of what was left out or not heeded, a line for each kind. */
    void warn(QString const& file, Diagnostics& diagnostics) const;

private:
    class Reader;
    std::unique_ptr<Reader> m_reader;
};

#endif // ODFDRAWING_H
