#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>

namespace kiri::tov {
class TovCmd;
}

namespace kiri::tov::impl_detail {

/// The clocks that the commands of a document define.
class DocumentClocks {
public:
    /// Adds the clock that a command defines, if any; std::bad_alloc changes nothing. The command is known until it is
    /// removed, and counts while it is enabled.
    void add(TovCmd& cmd);
    void remove(TovCmd const& cmd);

    /// Adds the clock that a command currently defines, if it does and is enabled.
    void addForGood(TovCmd& cmd);

    /// Returns whether a word matches any of the clocks.
    bool has(std::string const& word) const;

private:
    using Clocks = std::multimap<std::string, bool const*, std::less<>>;

    Clocks clocks_;  // by name, its levels joined by '/': whether it counts
    std::unordered_map<TovCmd const*, Clocks::iterator> definitions_;
};

}  // namespace kiri::tov::impl_detail
