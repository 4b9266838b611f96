// SPDX-License-Identifier: MIT
#include "kpgeometryversion.h"
#include "themes.h"

#include <QJsonDocument>

namespace {

constexpr char const* forPeople = "a text for people, parts of it are Qt's";
constexpr char const* ofDestructor = "what a destructor does shows in no result";

} // namespace

std::vector<Vectors::File> const& Vectors::files()
{
    static std::vector<File> const all {{"bound.jsonl", addBound}, {"segments.jsonl", addSegments},
        {"outlines.jsonl", addOutlines}, {"outlinexml.jsonl", addOutlineXml},
        {"colour.jsonl", addColour}, {"documentcolour.jsonl", addDocumentColour},
        {"plane.jsonl", addPlane}, {"blur.jsonl", addBlur}, {"units.jsonl", addUnits},
        {"recentfiles.jsonl", addRecentFiles}, {"digest.jsonl", addDigest},
        {"companions.jsonl", addCompanions}};
    return all;
}

QByteArray Vectors::contentOf(File const& file)
{
    Theme theme;
    file.add(theme);
    return theme.text();
}

std::vector<Vectors::LeftOut> const& Vectors::leftOut()
{
    static std::vector<LeftOut> const all {
        {"ColorUtil::initedColorFuncMap", "a result of ColorUtil::initColorFunctionMap()"},
        {"ColorUtil::mapColorFuncs", "its names are a result of ColorUtil::initColorFunctionMap()"},
        {"KpFilePathManager::configPath(QString const&)",
            "the path depends on the user's folders; it creates one"},
        {"KpPathSeg::KpPathSeg(KpPathSeg::SegType, KpPathSegList*)",
            "of an abstract class; shows in the constructors of the four kinds"},
        {"KpPathSeg::~KpPathSeg()", ofDestructor},
        {"KpPathSegCurveTo::~KpPathSegCurveTo()", ofDestructor},
        {"KpPathSegEllipse::~KpPathSegEllipse()", ofDestructor},
        {"KpPathSegLineTo::~KpPathSegLineTo()", ofDestructor},
        {"KpPathSegList::~KpPathSegList()", ofDestructor},
        {"KpPathSegMoveTo::~KpPathSegMoveTo()", ofDestructor},
        {"KpRecentFileManager::~KpRecentFileManager()", ofDestructor},
        {"UnitUtil::timeDelay(int)", "waits, and gives nothing"},
        {"operator<<(QDebug, KpColor const&)", forPeople},
        {"operator<<(QDebug, KpPath const&)", forPeople},
        {"operator<<(QDebug, KpPath::KpElement const&)", forPeople},
        {"operator<<(QDebug, KpPathSeg const&)", forPeople},
        {"operator<<(QDebug, KpPathSeg const*)", forPeople},
        {"operator<<(QDebug, KpPathSegList const&)", forPeople},
        {"operator<<(QDebug, KpPoint const&)", forPeople},
        {"operator<<(QDebug, KpReal const&)", forPeople},
        {"operator<<(QDebug, KpRecentFileManager const&)", forPeople},
        {"operator<<(QDebug, KpRecentFileManager::RecFile const&)", forPeople},
        {"operator<<(QDebug, KpRecentFileManager::RecFileInfo const&)", forPeople}};
    return all;
}

QByteArray Vectors::manifest()
{
    QJsonArray names;
    for (File const& file : files())
        names.append(file.name);
    QJsonArray without;
    for (LeftOut const& row : leftOut())
        without.append(QJsonObject {{"function", row.function}, {"reason", row.reason}});
    return QJsonDocument(QJsonObject {{"format", 1}, {"library", KPGEOMETRY_VERSION_STRING},
                             {"files", names}, {"leftOut", without}})
        .toJson();
}
