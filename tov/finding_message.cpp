#include <iterator>
#include <string>
#include <string_view>

#include "tov/check.h"
#include "tov/io/error_text_p.h"

namespace kiri::tov {

using namespace impl_detail;

namespace {

struct KindText {
    char const* code;
    char const* title;  // the answer of titleOf
};

constexpr KindText kindTexts[] = {
    {"dropped-line", "dropped line"},   {"unknown-command", "unknown command"}, {"lost-word", "lost word"},
    {"changed-value", "changed value"}, {"mistaken-word", "mistaken word"},     {"ends-load", "ends load"},
    {"unstable-line", "unstable line"}, {"missing-name", "missing name"},
};

static_assert(std::size(kindTexts) == TOVFINDING_MISSING_NAME, "each kind has its texts");

constexpr KindText nothing{"", ""};

KindText const& textsOf(TovFindingKind kind) {
    auto const index = static_cast<std::size_t>(kind) - 1;
    return index < std::size(kindTexts) ? kindTexts[index] : nothing;
}

}  // namespace

char const* findingCode(TovFindingKind kind) {
    return textsOf(kind).code;
}

// Programs that were linked with release 1.2.0 call it; no header declares it any more.
TOVENG_API char const* titleOf(TovFindingKind kind) {
    return textsOf(kind).title;
}

std::string findingMessage(TovFinding const& finding, std::string const& line) {
    static_cast<void>(line);
    return errorText(finding.text);
}

}  // namespace kiri::tov
