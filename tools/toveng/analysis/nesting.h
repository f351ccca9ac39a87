#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace tool {

/// The open braces, quotes and brackets while lines are read as Tcl reads commands:
///
///   command = word { white space word }, ends at a line end or ";"
///   word    = "{" ... "}" | '"' ... '"' | other characters, with "[" command "]" anywhere in these two
///
/// Braces and quotes count only where a word begins, brackets anywhere outside braces; "\" escapes the next character.
/// A "#" where a command begins starts a comment up to the end of its line.
class Nesting {
public:
    enum class Frame : std::uint8_t { bracket, brace, quote };

    /// Reads a line from `at` on until a frame closes. Returns the place after the closing character, or npos at the
    /// end of the line.
    std::size_t readToClose(std::string_view line, std::size_t at);
    static constexpr std::size_t npos = std::string_view::npos;

    /// Reads the rest of a line.
    void read(std::string_view line, std::size_t at = 0) {
        while (at != npos) at = readToClose(line, at);
    }

    /// Goes on to the next line.
    void endLine();

    /// Whether the line read last ends in a "\" outside a comment.
    bool endsInBackslash() const { return endsInBackslash_; }
    /// Whether the line read last ends in an open brace of the command itself that it opened.
    bool endsInOpenBrace() const;

    std::size_t depth() const { return frames_.size(); }
    Frame top() const { return frames_.back(); }
    /// Whether a "#" would begin a comment here.
    bool commandBegins() const { return commandBegins_; }
    /// Closes the innermost frame, as if its end had been read.
    void close();
    void clear();

private:
    void readInBrace(std::string_view line, std::size_t& at);
    void readInQuote(std::string_view line, std::size_t& at);
    void readInCommand(std::string_view line, std::size_t& at);
    void open(Frame frame);
    void skipEscape(std::string_view line, std::size_t& at);

    std::vector<Frame> frames_;
    bool commandBegins_ = true;
    bool wordBegins_ = true;
    bool endsInBackslash_ = false;
    bool lastIsOpenBrace_ = false;  // only white space follows a brace that opened
};

}  // namespace tool
