#include "analysis/edit_distance.h"

#include <algorithm>
#include <vector>

namespace tool {

unsigned editDistance(std::string_view a, std::string_view b, unsigned bound, Exchange exchange) {
    std::size_t const difference = a.size() > b.size() ? a.size() - b.size() : b.size() - a.size();
    if (difference > bound) return bound + 1;
    std::vector<unsigned> beforeLast(b.size() + 1);
    std::vector<unsigned> last(b.size() + 1);
    std::vector<unsigned> row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j) row[j] = static_cast<unsigned>(j);
    for (std::size_t i = 1; i <= a.size(); ++i) {
        beforeLast.swap(last);
        last.swap(row);
        row[0] = static_cast<unsigned>(i);
        unsigned least = row[0];
        for (std::size_t j = 1; j <= b.size(); ++j) {
            unsigned const replaced = last[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
            row[j] = std::min({replaced, last[j] + 1, row[j - 1] + 1});
            bool const isExchanged = i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
            if (exchange == Exchange::ofNeighbours && isExchanged) row[j] = std::min(row[j], beforeLast[j - 2] + 1);
            least = std::min(least, row[j]);
        }
        // The minimum of a row is never below the minimum of the two rows before it, minus the exchange.
        if (least > bound + 1) return bound + 1;
    }
    return std::min(row[b.size()], bound + 1);
}

void Nearest::add(std::string_view candidate) {
    unsigned const distance = editDistance(word_, candidate, bound_, exchange_);
    if (distance > bound_ || (found_ && distance == bound_ && candidate >= nearest_)) return;
    bound_ = distance;
    nearest_ = candidate;
    found_ = true;
}

}  // namespace tool
