#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <string_view>

// How the child reports what it finds: records that go through a pipe. They go to memory that both processes share
// first, so that nothing is lost when the child dies between two writes.

namespace tool::sdc {

/// What a record says. Each is a letter, the size of its text in 4 bytes, and the text.
enum class Record : char {
    enterFile = 'N',  ///< the commands that follow are of this file, until leaveFile
    leaveFile = 'n',
    begin = 'B',    ///< a command of a file: its line in 4 bytes and its text
    end = 'E',      ///< of the command that began last
    lines = 'H',    ///< a call that is held: its lines
    kept = 'K',     ///< lines of comments
    finding = 'F',  ///< a finding of the command that began last: see putFinding
    unit = 'U',     ///< the unit of time from now on
    undo = 'X',     ///< the command that began last does not run: what it wrote goes
};

/// Codes of the findings of an import.
enum class Code : char { notHeld, droppedOption, rounded, otherCommand, undone, tclError };
constexpr char const* codeNames[] = {"not-held", "dropped-option", "rounded", "other-command", "undone", "tcl-error"};

/// Memory that the child writes and the parent reads when the child is gone.
struct Shared {
    static constexpr std::size_t capacity = 1U << 18U;
    std::atomic<std::uint64_t> end{0};  ///< bytes written so far; the last `capacity` of them are in `ring`
    std::uint64_t command = 0;          ///< the number of the command that runs
    int event = 0;                      ///< why the process stops at it
    int signal = 0;                     ///< that ended a process below the child
    char message[1024];
    char ring[capacity];
};

/// The child's end.
class Outbox {
public:
    Outbox(Shared& shared, int pipe) : shared_(shared), pipe_(pipe) {}

    /// Writes nothing while it is above 0.
    int muted = 0;

    void put(Record kind, std::string_view text = {});
    void putFinding(Code code, std::string_view text, std::string_view message);
    void putBegin(std::uint32_t line, std::string_view text);
    /// Hands everything to the parent.
    void flush();
    /// Goes on after another process that had a copy of this one has flushed.
    void resume() { flushed_ = shared_.end; }
    Shared& shared() { return shared_; }

private:
    void append(std::string_view bytes);

    Shared& shared_;
    int pipe_;
    std::uint64_t flushed_ = 0;
    std::uint64_t end_ = 0;
};

}  // namespace tool::sdc
