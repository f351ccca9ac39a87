#pragma once

#include <sys/types.h>

#include "outbox.h"
#include "result.h"
#include "run.h"

// The processes of an import. The parent reads the files of the user and writes the result. Its child runs the script,
// with limits. After an event another child runs the script up to that command in silence, keeps that state, and lets a
// copy of itself go on; at the next event it runs on to that one. So a script runs at most twice, however many events.

namespace tool::sdc {

/// Exit statuses of the child.
constexpr int exitDone = 0;
constexpr int exitEvent = 3;
constexpr int exitMemory = 4;  ///< memory is used up
constexpr int exitLost = 5;    ///< the child cannot go on
constexpr int exitSignal = 6;  ///< a process below it was ended by Shared::signal

/// Limits a process that runs the script: it dies with its parent and starts no process.
void limitWorker();

/// Waits for a copy of this process; ends this one in the same way unless the copy stopped for an event.
void exitUnlessEvent(pid_t worker, Shared& shared);

/// Runs the script of a request in a child process. Throws std::runtime_error if there can be none.
void runInChild(Request const& request, Result& result);

}  // namespace tool::sdc
