#pragma once

#include <cstddef>
#include <string>

/// The least that a load can cost: one pass over the file that only splits it into words, and for each
/// command line the allocations that the object model requires (command, list node, two object references), nothing
/// else.
class Floor {
public:
    ~Floor();
    /// Returns the number of words.
    std::size_t load(std::string const& path);

private:
    struct Block;
    void allocate(std::size_t size);

    Block* blocks_ = nullptr;
};
