#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <stdlib.h>

#include "tov/cmd/commands.h"
#include "tov/tov.h"

namespace support {

/// A scratch folder that goes with the object.
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

/// Loads a document from a text.
inline void load(kiri::tov::TOV& document, std::string const& text) {
    TempDir const dir;
    document.load(write(dir / "in", text).c_str());
}

/// The lines of all commands that a text gives, in the order of the lists.
inline std::vector<std::string> savedLines(kiri::tov::TOV& document) {
    std::vector<std::string> lines;
    for (int kind = kiri::tov::TOVCMD_CLOCK; kind <= kiri::tov::TOVCMD_ATTRIBUTE; ++kind) {
        for (auto* cmd : *document.getTovCmdList(static_cast<kiri::tov::TOVCMD_TYPE>(kind))) {
            lines.push_back(cmd->toSaveString(&document));
        }
    }
    return lines;
}

/// A list as text: "name:kind name:kind".
inline std::string textOf(ppStlList<taDciObj*> const& list) {
    std::string text;
    for (taDciObj const* obj : list) {
        if (!text.empty()) text += ' ';
        text += obj == nullptr ? "null" : obj->name == nullptr ? "noname" : obj->name;
        if (obj != nullptr) text += ":" + std::to_string(obj->type);
    }
    return text;
}

}  // namespace support
