#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

#include "tov/cmd/commands.h"
#include "tov/tov.h"

namespace support {

/// A scratch folder that is removed with the object.
class TempDir {
public:
    TempDir() : path_((std::filesystem::temp_directory_path() / "toveng-XXXXXX").string()) {
        if (::mkdtemp(path_.data()) == nullptr) std::abort();
    }
    ~TempDir() { std::filesystem::remove_all(path_); }
    std::string operator/(std::string const& name) const { return path_ + "/" + name; }

private:
    std::string path_;
};

inline std::string write(std::string const& path, std::string const& text) {
    std::ofstream(path, std::ios::binary) << text;
    return path;
}

inline std::string read(std::string const& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// The lists of a document, in their order.
inline std::vector<kiri::tov::TOVCMD_TYPE> allLists() {
    kiri::tov::TOV document;
    std::vector<kiri::tov::TOVCMD_TYPE> lists;
    auto list = kiri::tov::TOVCMD_CLOCK;
    for (; document.getTovCmdList(list) != nullptr; list = kiri::tov::TOVCMD_TYPE(list + 1)) lists.push_back(list);
    return lists;
}

/// Creates a device that is always full, so that no test writes to the system's. Empty if that is not allowed.
inline std::string makeFullDevice(TempDir const& dir) {
    std::string path = dir / "full";
    bool const made = ::mknod(path.c_str(), S_IFCHR | 0600, ::makedev(1, 7)) == 0 && std::ofstream(path).is_open();
    return made ? path : "";
}

struct Row {
    std::string input;
    std::string expected;
    std::string place;  ///< its table and line
};

/// The rows of a table in data/, whose README.md describes their form. Without `hasEscapes`, a backslash is literal.
inline std::vector<Row> rowsOf(std::string const& table, bool hasEscapes = true) {
    std::vector<Row> rows;
    std::ifstream file(TEST_DATA "/" + table);
    char before = '>';
    int number = 0;
    for (std::string line; std::getline(file, line);) {
        ++number;
        if (line.empty() || (line[0] != '<' && line[0] != '>')) continue;
        for (auto at = line.find('\\'); hasEscapes && at != line.npos; at = line.find('\\', at + 1)) {
            bool const tab = line[at + 1] == 't';
            int const byte = tab ? '\t' : std::stoi(line.substr(at + 1, 2), nullptr, 16);
            line.replace(at, tab ? 2 : 3, 1, static_cast<char>(byte));
        }
        if (line[0] == '<' && before == '>')
            rows.push_back({"", "", "tests/data/" + table + ":" + std::to_string(number)});
        std::string& text = line[0] == '<' ? rows.back().input : rows.back().expected;
        if (line[0] == before) text += '\n';
        text.append(line, std::min<std::size_t>(2, line.size()));
        before = line[0];
    }
    if (rows.empty()) std::abort();
    return rows;
}

/// Runs a check of input and expected text on each row of a table; a failure names the row.
template <class Check>
void forEachRow(std::string const& table, Check check) {
    for (auto const& [input, expected, place] : rowsOf(table)) {
        SCOPED_TRACE(place);
        check(input, expected);
    }
}

/// Compares what a function returns for each input of a table with the expected text.
template <class Function>
void expectRows(std::string const& table, Function function) {
    forEachRow(table, [&](auto const& input, auto const& expected) { EXPECT_EQ(function(input), expected); });
}

/// The open descriptors of the process, or only those that another program would inherit.
inline std::size_t descriptors(bool inheritedAlone = false) {
    std::size_t count = 0;
    for (int fd = 0; fd < 1000; ++fd) {
        int const flags = ::fcntl(fd, F_GETFD);
        count += flags >= 0 && !(inheritedAlone && (flags & FD_CLOEXEC) != 0);
    }
    return count;
}

/// Counts the calls of a load, and stops it at one of them.
struct Calls {
    int stop = -1;
    bool throws = false;
    int count = 0;
    std::uint64_t read = 0;
    std::uint64_t size = 0;

    bool operator()(std::uint64_t readNow, std::uint64_t sizeNow) {
        EXPECT_TRUE(readNow >= read && readNow <= sizeNow && count != stop);
        EXPECT_TRUE(count == 0 || read < size) << "the file was read to its end before";
        read = readNow;
        size = sizeNow;
        if (++count == stop && throws) throw std::runtime_error("stop");
        return count != stop;
    }
};

/// Loads a file completely and checks the promised calls of the progress function; returns their number.
template <class Load>
int expectProgress(std::string const& path, Load load) {
    Calls calls;
    EXPECT_TRUE(load(std::ref(calls)));
    std::uint64_t const size = std::filesystem::file_size(path);
    EXPECT_TRUE(calls.read == size && calls.size == size) << calls.read;
    EXPECT_TRUE(calls.count <= 1000 && calls.count >= (size < 1000000 ? 1 : 20)) << calls.count;
    return calls.count;
}

/// Stops a load at each of its calls in turn, in both ways.
template <class Load, class Check>
void expectStops(int count, Load load, Check checkIsEmpty) {
    for (int stop : {1, 2, count / 2, count}) {
        for (bool throws : {false, true}) {
            Calls calls{stop, throws};
            bool thrown = false;
            try {
                EXPECT_FALSE(load(std::ref(calls)));
            } catch (std::runtime_error const&) {
                thrown = true;
            }
            EXPECT_TRUE(thrown == throws && calls.count == stop) << stop;
            checkIsEmpty(thrown);
        }
    }
}

/// Loads a document from a text.
inline void load(kiri::tov::TOV& document, std::string const& text) {
    TempDir const dir;
    document.load(write(dir / "in", text).c_str());
}

/// What a document saves, without the first header and with "~" for the one between the sections.
inline std::string bodyOf(kiri::tov::TOV& document) {
    std::string text = document.toSaveString();
    std::string const between = "\n" + document.attributeComments() + "\n";
    text.replace(text.rfind(between), between.size(), "~\n");
    return text.substr(document.sdcComments().size() + 1);
}

/// What a document loaded from a text saves.
inline std::string bodyOf(std::string const& text) {
    kiri::tov::TOV document;
    load(document, text);
    return bodyOf(document);
}

/// A list as text: "name:kind name:kind".
inline std::string textOf(ppStlList<taDciObj*> const& list) {
    std::string text;
    for (taDciObj const* obj : list) {
        if (!text.empty()) text += ' ';
        text += obj == nullptr ? "null" : std::string(obj->name) + ":" + std::to_string(obj->type);
    }
    return text;
}

}  // namespace support
