#include "bench/floor.h"

#include <cstring>
#include <new>

#include "tov/cmd/commands.h"
#include "tov/input_file.h"
#include "tov/line_reader.h"
#include "tov/text.h"

struct Floor::Block {
    Block* next;
};

namespace {

struct ListNode {
    void* links[2];
    void* value;
};

}  // namespace

void Floor::allocate(std::size_t size) {
    blocks_ = new (::operator new(size)) Block{blocks_};
}

Floor::~Floor() {
    while (blocks_ != nullptr) ::operator delete(std::exchange(blocks_, blocks_->next));
}

std::size_t Floor::load(std::string const& path) {
    kiri::tov::InputFile file(path.c_str());
    kiri::tov::LineReader lines(file);
    std::size_t words = 0;
    for (std::string_view line; lines.next(line);) {
        bool inWord = false;
        for (char c : line) {
            bool const space = kiri::tov::isSpace(c);
            words += inWord && space ? 1U : 0U;
            inWord = !space;
        }
        words += inWord ? 1U : 0U;
        if (line.front() == '#' && line[1] == ' ') continue;
        allocate(sizeof(kiri::tov::TovCmdFalsePath));
        allocate(sizeof(ListNode));
        if (line.front() == '#' && line[1] == 'a') continue;
        for (int reference = 0; reference < 2; ++reference) {
            allocate(sizeof(taDciObj));
            allocate(sizeof(ListNode));
        }
    }
    return words;
}
