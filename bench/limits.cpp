// toveng_limits [SCALE]: documents and dumps far larger than any design. Each is loaded in its own process, which
// reports its peak memory above that of an empty process, also as a multiple of the file size.

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

#include "tov/design/design.h"
#include "tov/tov.h"

namespace {

std::string times(long count, std::string const& text) {
    std::string all;
    all.reserve(static_cast<std::size_t>(count) * text.size());
    while (count-- > 0) all += text;
    return all;
}

void writeLines(std::ostream& out, long count, std::function<std::string(std::string const&)> const& line) {
    for (long i = 0; i < count; ++i) out << line(std::to_string(i)) << '\n';
}

struct Limit {
    char const* name;
    bool dump;
    std::function<void(std::ostream&, long scale)> write;
};

constexpr long million = 1000000;
constexpr long megabyte = 1024 * 1024;

Limit const limits[] = {
    {"3,000,000 commands", false,
     [](std::ostream& out, long scale) {
         writeLines(out, 3 * million / scale, [](std::string const& i) {
             return "set_false_path -from [get_ports {in" + i + "}] -to [get_pins {u" + i + "/D}]";
         });
     }},
    {"3,000,000 comments", false,
     [](std::ostream& out, long scale) {
         writeLines(out, 3 * million / scale, [](std::string const& i) { return "# comment number " + i; });
     }},
    {"a command of 64 MB", false,
     [](std::ostream& out, long scale) {
         out << "set_false_path -from {" << times(64 * megabyte / 7 / scale, " word x") << " }";
     }},
    {"a query of 9,000,000 names", false,
     [](std::ostream& out, long scale) {
         out << "set_false_path -from [get_ports {" << times(9 * million / scale, "port12 ") << "}]";
     }},
    {"a comment of 64 MB, then commands", false,
     [](std::ostream& out, long scale) {
         out << times(64 * megabyte / scale, "#") << '\n';
         writeLines(out, million / scale, [](std::string const& i) { return "set_max_delay " + i; });
     }},
    {"a name of 100 MB", false,
     [](std::ostream& out, long scale) { out << "create_clock -name " << times(100 * megabyte / scale, "n"); }},
    {"a group of 20,000 unknown words", false,
     [](std::ostream& out, long scale) { out << "set_clock_groups -group {" << times(20000 / scale, " w") << "}"; }},
    {"1,000,000 instances", true,
     [](std::ostream& out, long scale) {
         out << "<top name=\"t\"><library name=\"l\">";
         writeLines(out, million / scale, [](std::string const& i) {
             return "<instance name=\"t.u" + i +
                    "\" type=\"reg\" arch=\"rtl\"><pins><pitem name=\"D\" direction=\"in\"/>" +
                    "<pitem name=\"Q\" direction=\"out\"/></pins></instance>";
         });
         out << "</library></top>";
     }},
    {"a name of 100 MB", true,
     [](std::ostream& out, long scale) {
         out << "<top><library><instance name=\"" << times(100 * megabyte / scale, "n") << "\"/></library></top>";
     }},
    {"1,000,000 nested unknown elements", true,
     [](std::ostream& out, long scale) {
         out << "<top><library>" << times(million / scale, "<z>") << times(million / scale, "</z>")
             << "</library></top>";
     }},
    // The XML reader compares each attribute of an element with all others.
    {"20,000 attributes on one element", true,
     [](std::ostream& out, long scale) {
         out << "<top";
         for (long i = 0; i < 20000 / scale; ++i) out << " a" << i << "=\"\"";
         out << "/>";
     }},
    {"an entity bomb", true,
     [](std::ostream& out, long) {
         out << "<!DOCTYPE top [<!ENTITY e0 \"lol\">";
         for (int i = 1; i < 20; ++i) {
             out << "<!ENTITY e" << i << " \"" << times(10, "&e" + std::to_string(i - 1) + ";") << "\">";
         }
         out << "]><top name=\"&e19;\"/>";
     }},
};

long peakKilobytes() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

bool work(Limit const& limit, std::string const& path) {
    if (limit.dump) {
        kiri::tov::TovDesign design;
        return design.load(path.c_str());
    }
    kiri::tov::TOV document;
    return document.load(path.c_str()) && document.save((path + ".saved").c_str());
}

}  // namespace

int main(int argc, char** argv) {
    long const scale = argc > 1 ? std::max(1L, std::atol(argv[1])) : 1;
    std::string const path =
        (std::filesystem::temp_directory_path() / ("limits" + std::to_string(::getpid()))).string();
    bool ok = true;
    std::puts("| content | file, MB | peak, MB | peak / file |\n|---|---|---|---|");
    for (Limit const& limit : limits) {
        // The file is also written by its own process: otherwise its memory would count as the reader's.
        for (bool reads : {false, true}) {
            pid_t const child = ::fork();
            if (child == 0) {
                if (!reads) {
                    std::ofstream out(path);
                    limit.write(out, scale);
                    std::_Exit(out.flush() ? 0 : 1);
                }
                double const size = static_cast<double>(std::filesystem::file_size(path)) / megabyte;
                long const before = peakKilobytes();
                bool const done = work(limit, path);
                double const peak = static_cast<double>(peakKilobytes() - before) / 1024;
                std::printf("| %s | %.2f | %.1f | %.1f |\n", limit.name, size, peak, peak / size);
                std::fflush(stdout);
                std::_Exit(done ? 0 : 1);
            }
            std::fflush(stdout);
            int status = 0;
            ::waitpid(child, &status, 0);
            if (status != 0) std::printf("| %s | failed: %d |\n", limit.name, status);
            ok = ok && status == 0;
        }
    }
    std::filesystem::remove(path);
    std::filesystem::remove(path + ".saved");
    return ok ? 0 : 1;
}
