// SPDX-License-Identifier: MIT
#include "orderedjobs.h"

#include "console.h"
#include "progress.h"

#include <algorithm>
#include <condition_variable>
#include <map>
#include <mutex>
#include <new>
#include <system_error>
#include <thread>
#include <vector>

namespace {

/** How many jobs may be ahead of the one whose turn it is to be shown. */
constexpr int lookAhead = 256;

/** How many jobs may wait for a disk while others are at work: it takes many files in one go. */
constexpr int mostWaiting = 16;

/** Runs one job; what it prints is held. */
struct FinishedJob
{
    Outcome outcome = Outcome::Failed;
    HeldOutput::Pieces output;

    FinishedJob(OrderedJobs const& jobs, int index)
    {
        HeldOutput held(jobs.input(index));
        try {
            outcome = jobs.run(index);
        } catch (std::bad_alloc const&) {
            report(
                {Diagnostic::Severity::Error, held.input(), 0, 0, QStringLiteral("out of memory")});
        }
        output = held.pieces();
    }
};

class OrderedRun;
thread_local OrderedRun* runOfThread = nullptr;

class OrderedRun
{
public:
    explicit OrderedRun(OrderedJobs const& jobs)
        : m_jobs(jobs)
        , m_progress(jobs.count)
    {
    }

    Outcome run()
    {
        int const threads = m_jobs.limit > 1 ? m_jobs.limit + mostWaiting : 1;
        std::vector<std::thread> others;
        try {
            while (static_cast<int>(others.size()) + 1 < std::min(threads, m_jobs.count))
                others.emplace_back([this] { work(); });
        } catch (std::system_error const&) {
            // There are as many as there can be.
        }
        work();
        for (std::thread& other : others)
            other.join();
        return m_outcome;
    }

    /** The job of this thread begins to wait. */
    void rest()
    {
        std::lock_guard<std::mutex> const lock(m_mutex);
        --m_working;
        offerWork();
    }

    /** The job of this thread goes on, when it may. */
    void resume()
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        ++m_resting;
        m_resumable.wait(lock, [this] { return hasRoom(); });
        --m_resting;
        ++m_working;
        offerWork();
    }

private:
    /** Runs jobs as long as there are any. */
    void work()
    {
        runOfThread = this;
        std::unique_lock<std::mutex> lock(m_mutex);
        for (;;) {
            m_startable.wait(lock, [this] {
                return isOver() || (hasRoom() && m_next < m_turn + lookAhead * m_jobs.limit);
            });
            if (isOver())
                break;
            int const index = m_next++;
            ++m_working;
            offerWork();
            lock.unlock();
            FinishedJob finished(m_jobs, index);
            lock.lock();
            --m_working;
            m_finished.emplace(index, std::move(finished));
            showThoseInTurn();
            offerWork();
        }
        runOfThread = nullptr;
    }

    /** Wakes one thread that may be able to go on; it will offer what is left. */
    void offerWork()
    {
        if (isOver())
            m_startable.notify_all();
        if (hasRoom())
            (m_resting > 0 ? m_resumable : m_startable).notify_one();
    }

    bool hasRoom() const { return m_working < m_jobs.limit; }
    bool isOver() const { return m_isStopped || m_next == m_jobs.count; }

    void showThoseInTurn()
    {
        while (!m_isStopped && !m_finished.empty() && m_finished.begin()->first == m_turn) {
            auto const job = m_finished.begin();
            m_progress.step();
            m_outcome = worse(m_outcome, job->second.outcome);
            if (!job->second.output.empty())
                Progress::clear();
            if (!printHeld(job->second.output)) {
                m_outcome = Outcome::Failed;
                m_isStopped = true;
            }
            m_finished.erase(job);
            ++m_turn;
        }
    }

    OrderedJobs const& m_jobs;
    Progress m_progress;
    std::mutex m_mutex; ///< guards all that follows, and what is printed
    std::condition_variable m_startable;
    std::condition_variable m_resumable;
    std::map<int, FinishedJob> m_finished;
    int m_working = 0;
    int m_resting = 0; ///< jobs that have waited and may go on
    int m_next = 0; ///< the job to begin next
    int m_turn = 0; ///< the job to show next
    Outcome m_outcome = Outcome::Done;
    bool m_isStopped = false;
};

} // namespace

Outcome runInOrder(OrderedJobs const& jobs)
{
    return OrderedRun(jobs).run();
}

WaitingJob::WaitingJob()
{
    if (runOfThread)
        runOfThread->rest();
}

WaitingJob::~WaitingJob()
{
    if (runOfThread)
        runOfThread->resume();
}
