#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "outbox.h"

namespace tool::sdc {

/// A finding of an import; the texts are indexes of Result::texts.
struct ImportFinding {
    std::uint32_t file;
    std::uint32_t line;
    Code code;
    std::uint32_t text;
    std::uint32_t message;
    std::uint32_t count;
};

/// The lines and findings of a run: the receiver of the records.
class Result {
public:
    explicit Result(std::string unit) : unit_(std::move(unit)) {}

    /// Adds the next bytes of the records.
    void take(std::string_view bytes);

    /// Adds what the child had not sent when it died, and drops an incomplete record.
    void takeRest(Shared const& shared);

    /// Ends the run for a reason: the current command becomes a comment, without what it has written.
    void breakOff(std::string_view message);

    /// Drops what the current command has written: it will run again, or be left out.
    void undo();

    /// Ends the run: sorts the findings and removes duplicates.
    void finish();

    std::string const& text() const { return text_; }
    std::string const& unit() const { return unit_; }
    std::size_t calls() const { return counts_.calls; }
    std::size_t lines() const { return counts_.lines; }
    /// The number of calls that are kept as comments, by the option that caused it.
    std::map<std::string, std::size_t> keptByOption() const;
    std::vector<ImportFinding> const& findings() const { return findings_; }
    std::string const& textOf(std::uint32_t number) const { return *texts_[number]; }

private:
    struct Counts {
        std::size_t calls = 0;
        std::size_t lines = 0;
    };
    /// A running command of a file, and the state before it.
    struct Open {
        std::uint32_t line;
        std::string text;
        std::size_t textSize;
        std::size_t findings;
        std::size_t files;
        Counts counts;
        std::unordered_map<std::uint64_t, std::size_t> known;  // findings of this command
    };

    void take(Record kind, std::string_view text);
    void takeFinding(std::string_view record);
    void add(Code code, std::string_view text, std::string_view message);
    void rollBack();
    std::uint32_t numberOf(std::string_view text);

    std::string unit_;
    std::string text_;
    std::string unread_;
    std::uint64_t received_ = 0;
    Counts counts_;
    std::vector<Open> open_;
    std::vector<std::uint32_t> files_;
    std::vector<ImportFinding> findings_;
    std::unordered_map<std::string, std::uint32_t> numbers_;
    std::vector<std::string const*> texts_;
};

}  // namespace tool::sdc
