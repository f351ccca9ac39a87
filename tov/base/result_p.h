#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <utility>

namespace kiri::tov::impl_detail {

/// Why an operation failed: the errno of the failed system call, or one of these.
enum FailureCode : int {
    failureStopped = -1,       ///< the caller stopped it
    failureMissingValue = -2,  ///< a line ends where an option requires its value
    failureMalformed = -3,     ///< a dump is malformed or truncated at some place
    failureRefusedRoot = -4,   ///< a dump with an unexpected root element
    failureNotRegular = -5     ///< only a regular file can be replaced
};

/// The outcome of an operation. A failure has a code, a text for users and, if it concerns a place in a file, a line
/// number.
class [[nodiscard]] Result {
public:
    /// Success; does not allocate.
    Result() = default;
    Result(int code, std::string text) : failure_(new Failure{code, std::move(text), 0}) {}

    bool ok() const { return failure_ == nullptr; }
    /// Returns the code of the failure; 0 on success.
    int code() const { return failure_ == nullptr ? 0 : failure_->code; }
    /// Returns whether the operation failed with that code.
    bool is(int failure) const { return code() == failure; }

    /// Sets the line number of a failure, counted from 1.
    void setLine(std::size_t line) {
        if (failure_ != nullptr) failure_->line = line;
    }

    /// Returns the text of the failure, preceded by its line, "Line 12: ..."; "" on success.
    std::string message() const {
        if (failure_ == nullptr) return {};
        return failure_->line == 0 ? failure_->text : "Line " + std::to_string(failure_->line) + ": " + failure_->text;
    }

private:
    struct Failure {
        int code;
        std::string text;
        std::size_t line;
    };

    std::unique_ptr<Failure> failure_;
};

}  // namespace kiri::tov::impl_detail
