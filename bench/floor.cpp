#include "bench/floor.h"

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <new>
#include <string_view>
#include <utility>

#include "tov/base/text_p.h"
#include "tov/cmd/commands.h"

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
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> const file(std::fopen(path.c_str(), "rb"), std::fclose);
    if (file == nullptr) return 0;
    char* buffer = nullptr;
    std::size_t capacity = 0;
    std::size_t words = 0;
    for (ssize_t size; (size = ::getline(&buffer, &capacity, file.get())) > 0;) {
        std::string_view const line(buffer, static_cast<std::size_t>(size));
        bool inWord = false;
        for (char c : line) {
            bool const space = kiri::tov::impl_detail::isSpace(c);
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
    std::free(buffer);
    return words;
}
