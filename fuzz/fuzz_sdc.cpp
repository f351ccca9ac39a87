// SDC: whatever a script does, its import ends, its lines have no findings, and a second import does not change them.

#include <sstream>

#include "fuzz/fuzz.h"
#include "tools/toveng/import/child.h"
#include "tools/toveng/import/source_file.h"
#include "tov/check.h"

namespace {

std::string imported(std::string const& text) {
    tool::sdc::Request request;
    request.files = {{"fuzz.sdc", "/nonexistent/fuzz.sdc", text}};
    request.roots = {"/nonexistent"};
    request.limit = 2;
    tool::sdc::Result result(request.unit.name);
    tool::sdc::runInChild(request, result);
    result.finish();
    return result.text();
}

}  // namespace

void fuzz::run(std::string const& input) {
    if (input.find('\0') != std::string::npos) return;  // a binary file is not run
    std::string const text = imported(tool::sdc::normalised(input));
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        fuzz::require(kiri::tov::checkTovLine(line).empty(), "a line has no finding", line);
    }
    fuzz::require(imported(text) == text, "an imported file stays as it is", text, imported(text));
}
