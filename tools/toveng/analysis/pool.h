#pragma once

#include <cstdint>
#include <vector>

namespace tool {

/// Values that are identified by numbers. The number of a removed value is given to a later one.
template <class T>
class Pool {
public:
    using Id = std::uint32_t;

    T& operator[](Id id) { return values_[id]; }
    T const& operator[](Id id) const { return values_[id]; }

    /// Adds an empty value and returns its number.
    Id add() {
        if (free_.empty()) {
            values_.emplace_back();
            return static_cast<Id>(values_.size() - 1);
        }
        Id const id = free_.back();
        free_.pop_back();
        return id;
    }

    void remove(Id id) {
        values_[id] = T();
        free_.push_back(id);
    }

    /// All values, with an empty one in the place of each removed one.
    auto begin() { return values_.begin(); }
    auto end() { return values_.end(); }
    auto begin() const { return values_.begin(); }
    auto end() const { return values_.end(); }

private:
    std::vector<T> values_;
    std::vector<Id> free_;
};

}  // namespace tool
