// SPDX-License-Identifier: MIT
#ifndef FITRUN_H
#define FITRUN_H

#include "fit/drawinginput.h"
#include "fit/outlinefit.h"

#include <memory>
#include <optional>
#include <vector>

/** What rules are to be learnt of, and how. */
struct FitRequest
{
    QVector<DrawingSource> sources; ///< two or more
    bool findsEllipses = true; ///< as FitOptions
};

/** What came of it. */
struct FitOutcome
{
    std::vector<SizedDrawing>
        drawings; ///< in the order of the sources; empty if one cannot be read
    std::optional<FitResult> result; ///< none if nothing could be learnt
    Diagnostics diagnostics; ///< what reading and learning have to say
};

/** Reads drawings and learns their rules in a thread of its own. Nothing waits for it. */
class FitRun
{
public:
    /** Starts at once. */
    explicit FitRun(FitRequest const& request);
    /** Stops it, as stop(). */
    ~FitRun();

    /** Whether outcome() is there. */
    bool isDone() const;
    /** What is being done, for the user: "Reading a.svg". */
    QString stage() const;
    /** It ends as soon as it can, and has no outcome then. */
    void stop();
    /** What came of it; to be asked for once, when it is done. */
    FitOutcome takeOutcome();

private:
    Q_DISABLE_COPY(FitRun)

    struct State;
    static void run(FitRequest const& request, State& state);

    std::shared_ptr<State> m_state; ///< shared with the thread, which may end later
};

#endif // FITRUN_H
