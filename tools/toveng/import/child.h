#pragma once

#include <sys/types.h>

#include "outbox.h"
#include "result.h"
#include "run.h"

// The processes of an import. The parent reads the user's files and writes the result. Its child runs the script, with
// limits. After an event, another child runs the script silently up to that command, keeps that state, and lets a copy
// of itself continue; at the next event it runs on to that one. So a script runs at most twice, however many events
// there are.

namespace tool::sdc {

/// Exit statuses of the child.
constexpr int exitDone = 0;
constexpr int exitEvent = 3;
constexpr int exitMemory = 4;  ///< out of memory
constexpr int exitLost = 5;    ///< the child cannot continue
constexpr int exitSignal = 6;  ///< its child was ended by Shared::signal

/// Limits a process that runs the script: it dies with its parent and cannot start processes.
void limitWorker();

/// Waits for a copy of this process; then ends this one in the same way, unless the copy stopped for an event.
void exitUnlessEvent(pid_t worker, Shared& shared);

/// Runs the script of a request in a child process. Throws std::runtime_error if the process cannot be created.
void runInChild(Request const& request, Result& result);

}  // namespace tool::sdc
