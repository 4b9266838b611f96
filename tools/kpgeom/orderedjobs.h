// SPDX-License-Identifier: MIT
#ifndef ORDEREDJOBS_H
#define ORDEREDJOBS_H

#include "command.h"

#include <QString>

#include <functional>

/** Many jobs, whose output is shown in their order whatever ends first. */
struct OrderedJobs
{
    int count;
    int limit; ///< from 1: how many are at work at the same time
    std::function<QString(int)> input; ///< the file that a job is about
    std::function<Outcome(int)> run; ///< called in any thread; what it prints waits for its turn
};

/**
 * Runs them, in this thread and others, and says what the worst outcome is. Memory does not grow
 * with their number. When nobody reads standard output any more, no other is begun.
 */
Outcome runInOrder(OrderedJobs const& jobs);

/**
 * While it lives, the job of this thread, if it is one of many, is not at work but waits, for a disk
 * say; another may be at work instead.
 */
class WaitingJob
{
public:
    WaitingJob();
    ~WaitingJob();

private:
    Q_DISABLE_COPY(WaitingJob)
};

#endif // ORDEREDJOBS_H
