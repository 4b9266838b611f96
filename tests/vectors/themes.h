// SPDX-License-Identifier: MIT
#ifndef VECTORS_THEMES_H
#define VECTORS_THEMES_H

#include "theme.h"

#include <vector>

/** The vectors of each theme, made by calling the library. */
namespace Vectors {

void addBound(Theme& theme); ///< KpReal, KpPoint, KpBound
void addSegments(Theme& theme); ///< the four kinds, but for their XML
void addOutlines(Theme& theme); ///< KpPathSegList, but for its XML
void addOutlineXml(Theme& theme); ///< reading and writing of segments and lists
void addColour(Theme& theme); ///< ColorUtil
void addDocumentColour(Theme& theme); ///< KpColor
void addPlane(Theme& theme); ///< KpMath
void addBlur(Theme& theme); ///< GaussianBlur
void addUnits(Theme& theme); ///< UnitUtil
void addRecentFiles(Theme& theme); ///< KpRecentFileManager
void addDigest(Theme& theme); ///< MD5
void addCompanions(Theme& theme); ///< libKPBX and libkpgraphics

/** A file of vectors. */
struct File
{
    char const* name;
    void (*add)(Theme& theme);
};

/** All of them, in the order of the manifest. */
std::vector<File> const& files();

/** The content of `file`. The surroundings of Surroundings must be in force. */
QByteArray contentOf(File const& file);

/** A function without vectors, and why. */
struct LeftOut
{
    char const* function;
    char const* reason;
};

std::vector<LeftOut> const& leftOut();

/** The content of manifest.json. */
QByteArray manifest();

} // namespace Vectors

#endif // VECTORS_THEMES_H
