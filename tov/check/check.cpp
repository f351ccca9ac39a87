#include "tov/check.h"

#include <utility>

#include "tov/check/line_checker_p.h"
#include "tov/io/file_p.h"
#include "tov/io/line_reader_p.h"

namespace kiri::tov {

using namespace impl_detail;

bool checkTovFile(char const* path, std::vector<TovFinding>& findings) {
    std::vector<TovFinding> found;
    File file;
    Result result = openForReading(path, file);
    if (result.ok()) {
        LineReader lines(file);
        LineChecker checker;
        for (std::string_view line; lines.next(line) && checker.check(line, found);) {
        }
        result = lines.takeResult();
    }
    findings.swap(found);
    return result.ok();
}

std::vector<TovFinding> checkTovLine(std::string const& line) {
    std::vector<TovFinding> findings;
    LineChecker().check(line, findings);
    return findings;
}

}  // namespace kiri::tov
