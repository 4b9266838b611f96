// SPDX-License-Identifier: MIT
#include "panels/fitrun.h"

#include "common/filecontent.h"
#include "process/messagelog.h"

#include <QFileInfo>
#include <QMutex>
#include <QRunnable>
#include <QThreadPool>

#include <atomic>

struct FitRun::State
{
    std::atomic<bool> isStopped {false};
    std::atomic<bool> isDone {false};
    QMutex mutex; ///< of the stage
    QString stage;
    FitOutcome outcome; ///< the thread's until it is done

    void begin(QString const& name)
    {
        QMutexLocker const lock(&mutex);
        stage = name;
    }
};

FitRun::FitRun(FitRequest const& request)
    : m_state(std::make_shared<State>())
{
    std::shared_ptr<State> const state = m_state;
    QThreadPool::globalInstance()->start(QRunnable::create([state, request] {
        run(request, *state);
        state->isDone = true;
    }));
}

FitRun::~FitRun()
{
    stop();
}

bool FitRun::isDone() const
{
    return m_state->isDone;
}

QString FitRun::stage() const
{
    QMutexLocker const lock(&m_state->mutex);
    return m_state->stage;
}

void FitRun::stop()
{
    m_state->isStopped = true;
}

FitOutcome FitRun::takeOutcome()
{
    return std::move(m_state->outcome);
}

void FitRun::run(FitRequest const& request, State& state)
{
    MessageLog log;
    Diagnostics diagnostics;
    auto const content = [&](QString const& file, Diagnostics& found) -> std::optional<QByteArray> {
        if (state.isStopped)
            return std::nullopt;
        state.begin(QStringLiteral("Reading %1").arg(QFileInfo(file).fileName()));
        return readPlainFile(file, found);
    };
    auto read = readDrawings(
        request.sources, 1.0, content, [&log] { return log.take(); }, diagnostics);
    if (read && !state.isStopped) {
        state.begin(QStringLiteral("Learning the rules"));
        state.outcome.result =
            fitDrawings(read->drawings, {read->tolerance, request.findsEllipses}, diagnostics);
        state.outcome.drawings = std::move(read->drawings);
    }
    state.outcome.diagnostics = diagnostics;
}
