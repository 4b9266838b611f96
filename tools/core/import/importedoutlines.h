// SPDX-License-Identifier: MIT
#ifndef IMPORTEDOUTLINES_H
#define IMPORTEDOUTLINES_H

#include "common/diagnostic.h"
#include "document/shapes.h"
#include "import/cover.h"
#include "import/pathrecorder.h"
#include "kppathseglist.h"

#include <QSizeF>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

/** One painted shape as an outline. */
struct ImportedOutline
{
    QString name; ///< the id of the element, or "path 3", or the character
    /**
     * Closed exactly if the last subpath has a line or a curve and ends at its start, so that
     * closing changes nothing; `noFill` and `noLine` tell what of the shape was painted. The
     * directions of its subpaths are such that both fill rules fill it alike, where that can be.
     * One segment if it was painted as an upright ellipse.
     */
    std::unique_ptr<KpPathSegList> list;
    /** Set where the outline is filled as painted with this rule only. */
    std::optional<Qt::FillRule> fillRule;
    quint32 losses = 0; ///< what it was painted with and does not hold, as lossesOf() tells
    /** What the outline was made from, with its colours and its own rule; null unless it is kept. */
    std::unique_ptr<RecordedPath const> painted;
};

/**
 * The outlines of a picture, in the order in which they were painted. Their coordinates follow the
 * picture's size: each is bound in proportion to the box (0, 0, size).
 */
struct ImportedOutlines
{
    QSizeF size; ///< in outline units
    std::vector<ImportedOutline> outlines; ///< the first lies lowest
    double scale = 1.0; ///< outline units a unit of what it was imported from
    bool keepsPainted = false; ///< whether outlines keep what they were made from
    Cover cover {}; ///< of the paths that outlines were made from, in outline units
};

/** What one file holds: one picture, or several that have a size each. */
using ImportedPictures = std::vector<ImportedOutlines>;

/**
 * The one picture of a file. Nothing if there are none at all, and with a diagnostic if it holds
 * several, or none that has a size.
 *
 * @param file the name in diagnostics
 */
std::optional<ImportedOutlines> onlyPicture(
    std::optional<ImportedPictures> pictures, QString const& file, Diagnostics& diagnostics);

/** The outlines of all pictures as shapes, one behind the other, each with the size of its picture. */
Shapes shapesOf(ImportedPictures pictures);

/**
 * Gives what Qt has logged since the last call, each different message once and on one line, and
 * forgets it. Only who owns the process may listen to that log, so importers are handed this.
 */
using TakeMessages = std::function<QStringList()>;

/**
 * The longest side of a picture, in outline units: from there on, six digits tell no two units
 * apart.
 */
constexpr double maximumPictureSide = 1e6;

/** Whether it is finite and above 0. */
bool isPositive(double number);

/** Why a picture of this size cannot be imported; empty if it can. */
QString pictureSizeFault(QSizeF const& size);

/**
 * Makes an outline of a painted path and appends it. The picture's size and scale are known by then. A path with a coordinate that is not finite
 * is left out with a warning.
 *
 * @param file the picture's name in the warning
 * @param list takes the place of the one that would be made of the path, whose directions stay then;
 *     null if there is none
 */
void appendOutline(ImportedOutlines& picture, RecordedPath const& painted, QString const& name,
    QString const& file, Diagnostics& diagnostics, std::unique_ptr<KpPathSegList> list = nullptr);

#endif // IMPORTEDOUTLINES_H
