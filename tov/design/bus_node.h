#pragma once

#include <string>

#include "tov/design/node.h"

namespace kiri::tov {

/// A vector, built from the names of its bits: "data[7:0]" from "data[0]" and "data[7]". A bit name is a non-empty base
/// followed by decimal digits in brackets, so "m[1][2]" is bit 2 of "m[1]".
// Its destructor is not virtual: a bus is destroyed through its port or net.
// NOLINTNEXTLINE(cppcoreguidelines-virtual-class-destructor)
class TOVENG_API TovBusNode {
public:
    /// Starts a bus at the bit `name`. With `wildcard` it is named "base*" and has no range yet. A `name` that is not a
    /// bit leaves all names empty.
    TovBusNode(std::string const& name, bool wildcard);
    ~TovBusNode();
    TovBusNode(TovBusNode const&) = delete;
    TovBusNode& operator=(TovBusNode const&) = delete;

    /// The display name, "data[7:0]", larger index first; empty until a bit is added.
    virtual std::string name() const;

    std::string const& baseName() const { return baseName_; }

    /// Smallest and largest index added; -1 while there is none.
    int low() const { return low_; }
    int high() const { return high_; }

    /// Returns the base of a bit name and stores its index in `index` unless that is null; an index beyond `int` is 0.
    /// Returns any other name unchanged and does not set `index`.
    static std::string getBusName(std::string const& name, int* index);

    /// Returns whether `name` is a bit name; if it is, stores its base in `baseName` unless that is null.
    static bool isBusType(std::string const& name, std::string* baseName);

    /// Returns whether `name` has the base of this bus. A name without an index is compared as a whole: "data" belongs
    /// to "data".
    bool isCurrentBus(std::string const& name) const;

    /// Widens the range to the index of `name` and names the bus after its base. Nothing is checked: a name without an
    /// index counts as index 0, and a bit of another vector renames the bus. After std::bad_alloc the bus is unchanged.
    void addToBus(std::string const& name);

private:
    std::string busName_;
    std::string baseName_;
    int low_ = -1;
    int high_ = -1;
};

/// A vector of ports or pins. It is in the same list as its bits; the list owns it.
class TOVENG_API TovBusPortNode : public TovBusNode, public TovPortNode {
public:
    /// Starts the bus at the bit `name`.
    TovBusPortNode(std::string const& name, TovObjType type, TovNode* parent);
    ~TovBusPortNode() override;

    std::string name() const override;
};

/// A vector of nets. It is in the same list as its bits; the list owns it.
class TOVENG_API TovBusNetNode : public TovBusNode, public TovNetNode {
public:
    /// Starts the bus at the bit `name`.
    TovBusNetNode(std::string const& name, TovObjType type, TovNode* parent);
    ~TovBusNetNode() override;

    std::string name() const override;
};

}  // namespace kiri::tov
