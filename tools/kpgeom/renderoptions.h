// SPDX-License-Identifier: MIT
#ifndef RENDEROPTIONS_H
#define RENDEROPTIONS_H

#include "commandline.h"
#include "paint/drawing.h"

#include <QVector>

/** What `render` makes of outlines. */
enum class RenderTarget {
    Picture, ///< as the settings say
    Page, ///< HTML
    CustomShapes ///< DrawingML
};

/** What `render` is asked for. */
struct RenderOptions
{
    QString output;
    RenderTarget target = RenderTarget::Picture;
    PictureSettings settings; ///< of a page: an invalid background unless one is given
    QVector<QSizeF> boxes;
    QVector<int> indices; ///< the outlines to draw; all if empty
    DrawingLayout layout;
    bool isSheet = false;
    bool isWholeFiles = false;
    bool isEach = false; ///< an output for each file, and without a sheet for each size
};

/** The options of `render`. */
extern CommandOption const renderOptions[14];

/** Reads them. What is wrong with them, or does not go together; or nothing. */
std::optional<Diagnostic> readRenderOptions(CommandLine const& line, RenderOptions& options);

#endif // RENDEROPTIONS_H
