#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace tool {

/// A list of numbers that usually has at most one, and then takes 16 bytes.
class IdList {
public:
    using Id = std::uint32_t;

    Id const* begin() const { return many_ ? many_->data() : &one_; }
    Id const* end() const { return many_ ? many_->data() + many_->size() : &one_ + (hasOne_ ? 1 : 0); }
    std::size_t size() const { return static_cast<std::size_t>(end() - begin()); }
    bool empty() const { return size() == 0; }

    void insert(Id const* place, Id id) {
        if (!many_ && !hasOne_) {
            one_ = id;
            hasOne_ = true;
            return;
        }
        auto const index = place - begin();
        if (!many_) many_ = std::make_unique<std::vector<Id>>(1, one_);
        many_->insert(many_->begin() + index, id);
    }
    void push_back(Id id) { insert(end(), id); }

    /// Removes a number, which must be in the list.
    void erase(Id const* place) {
        if (!many_) {
            hasOne_ = false;
            return;
        }
        many_->erase(many_->begin() + (place - begin()));
        if (many_->size() > 1) return;
        hasOne_ = !many_->empty();
        if (hasOne_) one_ = many_->front();
        many_.reset();
    }
    void eraseId(Id id) {
        Id const* const place = std::find(begin(), end(), id);
        if (place != end()) erase(place);
    }

private:
    std::unique_ptr<std::vector<Id>> many_;
    Id one_ = 0;
    bool hasOne_ = false;
};

}  // namespace tool
