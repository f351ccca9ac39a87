#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <string_view>

// The child reports its results as records through a pipe. It first stores them in memory that both processes share, so
// nothing is lost if the child dies between two writes.

namespace tool::sdc {

/// The type of a record. A record is a letter, the size of its text in 4 bytes, and the text.
enum class Record : char {
    enterFile = 'N',  ///< the next commands are from this file, until leaveFile
    leaveFile = 'n',
    begin = 'B',    ///< a command of a file: its line in 4 bytes and its text
    end = 'E',      ///< end of the command that began last
    lines = 'H',    ///< a call that is held: its lines
    kept = 'K',     ///< lines of comments
    finding = 'F',  ///< a finding in the command that began last, see putFinding
    unit = 'U',     ///< the time unit from now on
    undo = 'X',     ///< the command that began last does not run: drop what it wrote
};

/// Codes of the findings of an import.
enum class Code : char { notHeld, droppedOption, rounded, otherCommand, undone, tclError };
constexpr char const* codeNames[] = {"not-held", "dropped-option", "rounded", "other-command", "undone", "tcl-error"};

/// Memory that the child writes and the parent reads after the child has ended.
struct Shared {
    static constexpr std::size_t capacity = 1U << 18U;
    std::atomic<std::uint64_t> end{0};  ///< bytes written so far; the last `capacity` of them are in `ring`
    std::uint64_t command = 0;          ///< the number of the current command
    int event = 0;                      ///< why the process stops at that command
    int signal = 0;                     ///< the signal that ended the child's own child
    char message[1024];
    char ring[capacity];
};

/// The child's end.
class Outbox {
public:
    Outbox(Shared& shared, int pipe) : shared_(shared), pipe_(pipe) {}

    /// While this is above 0, nothing is written.
    int muted = 0;

    void put(Record kind, std::string_view text = {});
    void putFinding(Code code, std::string_view text, std::string_view message);
    void putBegin(std::uint32_t line, std::string_view text);
    /// Sends everything to the parent.
    void flush();
    /// Continues after a copy of this process has flushed.
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
