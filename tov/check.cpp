#include "tov/check.h"

#include <iterator>
#include <utility>

#include "tov/io/file_p.h"
#include "tov/io/line_reader_p.h"
#include "tov/line_checker_p.h"

namespace kiri::tov {

using namespace impl_detail;

char const* titleOf(TovFindingKind kind) {
    constexpr char const* titles[] = {"dropped line",  "unknown command", "lost word",     "changed value",
                                      "mistaken word", "ends load",       "unstable line", "missing name"};
    auto const index = static_cast<std::size_t>(kind) - 1;
    return index < std::size(titles) ? titles[index] : "";
}

bool checkTovFile(char const* path, std::vector<TovFinding>& findings) {
    std::vector<TovFinding> found;
    File const file = openForReading(path);
    LineReader lines(file);
    if (file.isOpen()) {
        LineChecker checker;
        for (std::string_view line; lines.next(line) && checker.check(line, found);) {
        }
    }
    findings.swap(found);
    return file.isOpen() && lines.error() == 0;
}

std::vector<TovFinding> checkTovLine(std::string const& line) {
    std::vector<TovFinding> findings;
    LineChecker().check(line, findings);
    return findings;
}

}  // namespace kiri::tov
