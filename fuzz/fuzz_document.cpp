// A whole constraint file: loaded, saved, and loaded again.

#include "fuzz/settle.h"
#include "tov/tov.h"

namespace {

using namespace kiri::tov;

// A header that stands in a comment is taken off at each loading, one copy at a time.
bool isPlain(TOV& document) {
    for (std::string const& comments : {document.sdcCommentText, document.attributeCommentText}) {
        for (std::string const& header : {document.sdcComments(), document.attributeComments()}) {
            if (comments.find(header) != std::string::npos) return false;
        }
    }
    for (int kind = TOVCMD_CLOCK; kind <= TOVCMD_FALSEPATH; ++kind) {
        for (TovCmd* cmd : *document.getTovCmdList(static_cast<TOVCMD_TYPE>(kind))) {
            if (!fuzz::isPlain(*cmd)) return false;
        }
    }
    return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    TOV document;
    fuzz::MemoryFile const file(std::string_view(reinterpret_cast<char const*>(data), size));
    try {
        fuzz::require(document.load(file.path().c_str()), "an existing file loads");
    } catch (std::out_of_range const&) {
        return 0;
    }
    std::string const text = document.toSaveString();
    fuzz::require(document.toSaveString() == text, "saving changes nothing", text);
    fuzz::requireSettled(text, isPlain(document), [](std::string const& from) {
        TOV again;
        fuzz::require(again.load(fuzz::MemoryFile(from).path().c_str()), "a saved file loads");
        return again.toSaveString();
    });
    return 0;
}
