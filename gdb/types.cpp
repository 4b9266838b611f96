// SPDX-License-Identifier: MIT
// Nothing but debug information. Compilers describe a class with virtual functions only where its
// virtual table is, which is in the library: a program that uses a library without debug information
// does not know what is in the class.
#include "kpcolor.h"
#include "kppath.h"
#include "kppathsegcurveto.h"
#include "kppathsegellipse.h"
#include "kppathseglineto.h"
#include "kppathseglist.h"
#include "kppathsegmoveto.h"
#include "kprecentfilemanager.h"

/** The types that are described, and with them those of their members and bases. */
struct KpGeometryTypes
{
    KpColor* colour;
    KpPath* path;
    KpPathSegCurveTo* curve;
    KpPathSegEllipse* ellipse;
    KpPathSegLineTo* line;
    KpPathSegList* list;
    KpPathSegMoveTo* move;
    KpRecentFileManager* manager;
    KpRecentFileManager::RecFileInfo* info;
};

extern "C" KpGeometryTypes kpGeometryTypes;
KpGeometryTypes kpGeometryTypes = {};
