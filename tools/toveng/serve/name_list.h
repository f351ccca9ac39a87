#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tool::lsp {

/// Sorted names, for completion.
class NameList {
public:
    /// Adds a name; call sort() after the last one.
    void add(std::string_view name);
    void sort();

    /// Calls `visit` with each completion of a prefix in byte order, until it returns false: a whole name, or the
    /// common beginning of several names up to and including the first '/' after the prefix.
    template <class Visit>
    void complete(std::string_view prefix, Visit visit) const {
        for (std::size_t at = lowerBound(prefix, 0); at < names_.size();) {
            std::string_view const name = (*this)[at];
            if (name.substr(0, prefix.size()) != prefix) return;
            std::size_t const slash = name.find('/', prefix.size());
            if (!visit(name.substr(0, slash == std::string_view::npos ? slash : slash + 1))) return;
            at = slash == std::string_view::npos ? at + 1 : endOf(name.substr(0, slash + 1), at);
            // Equal names are one.
            while (at < names_.size() && (*this)[at] == name) ++at;
        }
    }

private:
    struct Name {
        std::uint32_t begin;
        std::uint32_t size;
    };

    std::string_view operator[](std::size_t index) const {
        return std::string_view(bytes_).substr(names_[index].begin, names_[index].size);
    }
    std::size_t lowerBound(std::string_view text, std::size_t from) const;
    /// Returns the place after the names with that prefix.
    std::size_t endOf(std::string_view beginning, std::size_t from) const;

    std::string bytes_;
    std::vector<Name> names_;
};

}  // namespace tool::lsp
