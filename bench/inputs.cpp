#include "bench/inputs.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <numeric>
#include <random>
#include <vector>

namespace inputs {

namespace {

namespace fs = std::filesystem;

// The temporary folder of the run, removed at its end.
fs::path const& folder() {
    struct Folder {
        fs::path path;
        Folder() {
            std::string name = fs::temp_directory_path() / "toveng-bench-XXXXXX";
            if (::mkdtemp(name.data()) == nullptr) std::abort();
            path = name;
        }
        ~Folder() { fs::remove_all(path); }
    };
    static Folder const instance;
    return instance.path;
}

std::string make(std::string const& name, std::function<void(std::ostream&)> const& write) {
    fs::path const path = folder() / name;
    if (!fs::exists(path)) {
        std::ofstream file(path, std::ios::binary);
        write(file);
    }
    return path.string();
}

std::string cell(std::size_t i) {
    return "u_core" + std::to_string(i % 16) + "/u_lane" + std::to_string(i / 16 % 997) + "/data_q_reg";
}

std::string bit(char const* name, std::size_t i) {
    return name + std::to_string(i % 97) + "[" + std::to_string(i % 64) + "]";
}

std::string clock(std::size_t i) {
    return "clk_" + std::to_string(i % 23);
}

// The position of the i-th line's kind in a saved file, where the comments follow the commands.
int placeInSavedFile(std::size_t i) {
    std::size_t const k = i % 100;
    constexpr struct {
        std::size_t end;
        int place;
    } kinds[] = {{1, 0}, {2, 1}, {3, 2}, {4, 9}, {5, 10}, {30, 3}, {55, 4}, {75, 8}, {87, 7}, {95, 5}, {100, 6}};
    return std::find_if(std::begin(kinds), std::end(kinds), [k](auto const& kind) { return k < kind.end; })->place;
}

// The numbers of the lines in that order.
std::vector<std::size_t> numbers(std::size_t lines, Order order) {
    std::vector<std::size_t> saved(lines);
    std::iota(saved.begin(), saved.end(), std::size_t{0});
    if (order == Order::periodic) return saved;
    std::stable_sort(saved.begin(), saved.end(),
                     [](std::size_t a, std::size_t b) { return placeInSavedFile(a) < placeInSavedFile(b); });
    if (order == Order::saved) return saved;

    // Runs of lines of a kind, of two lines on average, shuffled.
    std::minstd_rand random;
    std::vector<std::size_t> begins;
    for (std::size_t i = 0; i < lines; ++i) {
        if (i == 0 || random() % 2 == 0) begins.push_back(i);
    }
    std::vector<std::size_t> runs(begins.size());
    std::iota(runs.begin(), runs.end(), std::size_t{0});
    std::shuffle(runs.begin(), runs.end(), random);
    begins.push_back(lines);
    std::vector<std::size_t> shuffled;
    for (std::size_t run : runs) {
        for (std::size_t i = begins[run]; i < begins[run + 1]; ++i) shuffled.push_back(saved[i]);
    }
    return shuffled;
}

// The i-th line of the mix, whose kinds repeat after one hundred lines.
void writeLine(std::ostream& out, std::size_t i) {
    switch (std::size_t const k = i % 100; k) {
        case 0:
            out << "create_clock -period 10 -waveform {0 5} -name " << clock(i) << " [get_ports " << clock(i) << "]";
            break;
        case 1:
            out << "create_generated_clock -divide_by 4 -source [get_pins u_pll/CLKI] -name " << clock(i)
                << " [get_pins {u_pll/CLKOP}]";
            break;
        case 2:
            out << "set_clock_groups -asynchronous -group [get_clocks " << clock(i) << "] -group [get_clocks {"
                << clock(i + 1) << "}]";
            break;
        case 3:
            out << "# constraints of block " << i;
            break;
        case 4:
            out << "#attribute net " << cell(i) << " syn_keep 1 boolean";
            break;
        default:
            if (k % 17 == 0) out << "#disable ";
            if (k < 30)
                out << "set_input_delay -max " << k << ".25 -clock [get_clocks " << clock(i) << "] [get_ports {"
                    << bit("bus_in_", i) << "}]";
            else if (k < 55)
                out << "set_output_delay -min 0." << k << " -clock [get_clocks " << clock(i) << "] [get_ports {"
                    << bit("bus_out_", i) << "}]";
            else if (k < 75)
                out << "set_false_path -from [get_cells " << cell(i) << "] -to [get_cells " << cell(i + 7) << "]";
            else if (k < 87)
                out << "set_multicycle_path " << k % 5 + 2 << " -from [get_cells " << cell(i) << "] -to [get_clocks "
                    << clock(i) << "]";
            else if (k < 95)
                out << "set_max_delay " << k << ".5 -from [get_pins " << cell(i) << "/Q] -to [get_pins " << cell(i + 3)
                    << "/D]";
            else
                out << "set_min_delay 0.4 -from [get_ports {" << bit("a_", i) << "}] -to [get_nets {" << bit("n_", i)
                    << "}]";
    }
    out << '\n';
}

void writeLines(std::ostream& out, std::size_t lines, Order order = Order::periodic) {
    for (std::size_t i : numbers(lines, order)) writeLine(out, i);
}

void writeSoundLine(std::ostream& out, std::size_t i) {
    constexpr std::size_t clocks = 23;
    if (i < clocks) {
        out << "create_clock -period 10 -name " << clock(i) << " [get_ports " << clock(i) << "]\n";
        return;
    }
    std::string const number = std::to_string(i);
    switch (i % 5) {
        case 0:
            out << "set_input_delay -max 2.5 -clock [get_clocks " << clock(i) << "] [get_ports {in_" << number
                << "}]\n";
            break;
        case 1:
            out << "set_output_delay -min 0.5 -clock [get_clocks " << clock(i) << "] [get_ports {out_" << number
                << "}]\n";
            break;
        case 2:
            out << "set_multicycle_path 2 -from [get_cells {" << cell(i) << number << "}] -to [get_clocks " << clock(i)
                << "]\n";
            break;
        default:
            out << "set_false_path -from [get_cells {" << cell(i) << number << "}] -to [get_cells {" << cell(i + 7)
                << number << "}]\n";
    }
}

void writeLongLine(std::ostream& out, std::size_t names) {
    out << "set_false_path -from [get_cells {";
    for (std::size_t i = 0; i < names; ++i) out << cell(i) << ' ';
    out << "}]\n";
}

void writeItem(std::ostream& out, char const* element, std::string const& name, char const* more = "") {
    out << "    <" << element << " name=\"" << name << '"' << more << "/>\n";
}

// The blocks alternate, so the cells of one block are far apart in the file.
std::string instance(std::size_t i) {
    return "u_core_" + std::to_string(i % 97) + ".u_blk_" + std::to_string(i % 13) + ".inst_" + std::to_string(i);
}

void writeInstance(std::ostream& out, std::size_t i, char const* type) {
    std::string const number = std::to_string(i);
    out << "   <instance name=\"top." << instance(i) << "\" library=\"work\" arch=\"\" type=\"" << type
        << "\">\n    <pins>\n";
    writeItem(out, "pitem", "CK", " direction=\"in\"");
    writeItem(out, "pitem", "D_" + number + "[" + std::to_string(i % 8) + "]", " direction=\"in\"");
    writeItem(out, "pitem", "A1", " direction=\"in\"");
    writeItem(out, "pitem", "Q", " direction=\"out\"");
    out << "    </pins>\n    <nets>\n";
    writeItem(out, "nitem", "net_" + number);
    out << "    </nets>\n   </instance>\n";
}

void writeList(std::ostream& out, char const* list, char const* item, std::size_t count, char const* more = "") {
    out << "   <" << list << ">\n";
    for (std::size_t i = 0; i < count; ++i) writeItem(out, item, list + ("_" + std::to_string(i)), more);
    out << "   </" << list << ">\n";
}

}  // namespace

std::string constraintFile(std::size_t lines, Order order) {
    return make("mixed-" + std::to_string(lines) + "-" + std::to_string(static_cast<int>(order)),
                [=](std::ostream& out) { writeLines(out, lines, order); });
}

std::string sdcFile(std::size_t lines) {
    return make("sdc-" + std::to_string(lines), [=](std::ostream& out) { writeLines(out, lines); });
}

std::string withEmptyProcedures(std::string const& path) {
    return make("procedures.tcl", [&path](std::ostream& out) {
        out << "foreach name {create_clock create_generated_clock set_clock_groups set_input_delay set_output_delay "
               "set_max_delay set_min_delay set_multicycle_path set_false_path get_ports get_nets get_clocks get_cells "
               "get_pins} { proc $name args {} }\nsource "
            << path << '\n';
    });
}

std::string loopFile(std::size_t passes) {
    return make("loop-" + std::to_string(passes), [passes](std::ostream& out) {
        out << "set all {}\nfor {set i 0} {$i < " << passes << "} {incr i} { lappend all in$i }\n"
            << "foreach name $all { set_false_path -from [get_ports $name] }\n";
    });
}

std::vector<std::string> fileSet(std::size_t files, std::size_t lines) {
    std::vector<std::string> paths;
    for (std::size_t file = 0; file < files; ++file) {
        paths.push_back(make("set-" + std::to_string(file), [=](std::ostream& out) {
            for (std::size_t i = file * lines; i < (file + 1) * lines; ++i) writeSoundLine(out, i);
        }));
    }
    return paths;
}

std::string growingNames(std::size_t lines) {
    return make("growing", [=](std::ostream& out) {
        for (std::size_t i = 0; i < lines; ++i) out << "set_false_path -from [get_ports in" << i << "]\n";
    });
}

std::string soundFile(std::size_t lines) {
    return make("sound-" + std::to_string(lines), [=](std::ostream& out) {
        for (std::size_t i = 0; i < lines; ++i) writeSoundLine(out, i);
    });
}

std::string linesOfKind(std::size_t kind, std::size_t lines) {
    return make("kind-" + std::to_string(kind), [=](std::ostream& out) {
        for (std::size_t i = 0; i < lines; ++i) writeLine(out, kind + 100 * i);
    });
}

std::string copies(std::string const& line, std::size_t lines) {
    return make("copies-" + line.substr(0, line.find(' ')), [&](std::ostream& out) {
        for (std::size_t i = 0; i < lines; ++i) out << line << '\n';
    });
}

std::string oneLineOfNames(std::size_t names) {
    return make("one-line-" + std::to_string(names), [=](std::ostream& out) { writeLongLine(out, names); });
}

std::string longLineFirst(std::size_t names, std::size_t lines) {
    return make("long-line-first", [=](std::ostream& out) {
        writeLongLine(out, names);
        writeLines(out, lines);
    });
}

std::size_t longestLine(std::string const& path) {
    std::ifstream file(path, std::ios::binary);
    std::size_t longest = 0;
    for (std::string line; std::getline(file, line);) longest = std::max(longest, line.size());
    return longest;
}

std::string designDump(std::size_t instances) {
    return make("dump-" + std::to_string(instances) + ".xml", [instances](std::ostream& out) {
        out << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<top name=\"top\" library=\"work\" arch=\"rtl\" "
               "entry=\"top\">\n";
        writeList(out, "clocks", "clockitem", 8, " type=\"port\"");
        out << " <library name=\"work\">\n  <unit name=\"top\">\n";
        writeList(out, "pins", "pitem", instances / 100 + 1, " direction=\"in\"");
        writeList(out, "nets", "nitem", instances / 10 + 1);
        std::minstd_rand random;
        constexpr char const* types[] = {"reg", "comb", "seq", "pad"};
        for (std::size_t i = 0; i < instances; ++i) writeInstance(out, i, types[random() % std::size(types)]);
        writeList(out, "views", "view", 4);
        writeList(out, "ramnets", "ramnet", instances / 1000 + 1);
        writeList(out, "romnets", "romnet", instances / 1000 + 1);
        writeList(out, "mults", "mult", instances / 1000 + 1);
        out << "  </unit>\n </library>\n</top>\n";
    });
}

std::string exceptionsOf(std::size_t instances, std::size_t lines) {
    return make("exceptions-" + std::to_string(lines), [=](std::ostream& out) {
        for (std::size_t i = 0; i < lines; ++i) {
            std::size_t const from = i * 7919 % instances;
            out << "set_false_path -from [get_pins {";
            if (i % 10 == 0) {
                out << "u_core_" << from % 97 << "/u_blk_*/inst_" << from << "/A?";
            } else {
                out << instance(from) << "/Q";
            }
            out << "}] -to [get_cells {" << instance(i * 104729 % instances) << "}]\n";
        }
    });
}

}  // namespace inputs
