#include "tov/check.h"

#include <utility>

#include "tov/io/file_p.h"
#include "tov/io/line_reader_p.h"
#include "tov/line_checker_p.h"

namespace kiri::tov {

using namespace impl_detail;

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
