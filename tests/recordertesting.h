// SPDX-License-Identifier: MIT
#ifndef RECORDERTESTING_H
#define RECORDERTESTING_H

#include "import/pathrecorder.h"

#include <QString>

#include <cstddef>
#include <utility>
#include <vector>

/** What the tests of recorded paths share: a recorder that keeps them. */
namespace RecorderTesting {

struct Mark
{
    std::size_t pathCount; ///< how many paths were recorded before it
    QString fontFamily;
};

class KeptPaths : public PathSink
{
public:
    void addPath(RecordedPath path) override { m_paths.push_back(std::move(path)); }
    void addMark(QString const& fontFamily) override
    {
        m_marks.push_back({m_paths.size(), fontFamily});
    }

    /** In the order in which they were painted. */
    std::vector<RecordedPath> const& paths() const { return m_paths; }
    /** Likewise. */
    std::vector<Mark> const& marks() const { return m_marks; }

private:
    std::vector<RecordedPath> m_paths;
    std::vector<Mark> m_marks;
};

class KeepingRecorder : public KeptPaths, public PathRecorder
{
public:
    KeepingRecorder(QSizeF size, double scale)
        : PathRecorder(size, scale, static_cast<KeptPaths&>(*this))
    {
    }
};

} // namespace RecorderTesting

#endif // RECORDERTESTING_H
