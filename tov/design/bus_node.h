#pragma once

#include <string>

#include "tov/design/node.h"

namespace kiri::tov {

/// A vector, gathered from the names of its bits: "data[7:0]" from "data[0]" and "data[7]". A bit name is a non-empty
/// base followed by decimal digits in brackets, so "m[1][2]" is bit 2 of "m[1]".
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

    /// Returns the base of a bit name and stores its index to `index` unless that is null, 0 for an index beyond `int`.
    /// Returns any other name as it is, and leaves `index` alone.
    static std::string getBusName(std::string const& name, int* index);

    /// Returns whether `name` is a bit name; only then stores its base to `baseName`, unless that is null.
    static bool isBusType(std::string const& name, std::string* baseName);

    /// Whether the base of `name` is this bus's. A name without index is compared whole: "data" belongs to "data".
    bool isCurrentBus(std::string const& name) const;

    /// Widens the range by the index of `name` and renames the bus after its base. Nothing is checked: a name without
    /// index counts as index 0, and a bit of another vector takes the bus to that name. On std::bad_alloc the bus is as
    /// it was.
    void addToBus(std::string const& name);

private:
    std::string busName_;
    std::string baseName_;
    int low_ = -1;
    int high_ = -1;
};

/// A vector of ports or pins; is in the same list as its bits, which owns it.
class TOVENG_API TovBusPortNode : public TovBusNode, public TovPortNode {
public:
    /// Starts the bus at the bit `name`.
    TovBusPortNode(std::string const& name, TovObjType type, TovNode* parent);
    ~TovBusPortNode() override;

    std::string name() const override;
};

/// A vector of nets; is in the same list as its bits, which owns it.
class TOVENG_API TovBusNetNode : public TovBusNode, public TovNetNode {
public:
    /// Starts the bus at the bit `name`.
    TovBusNetNode(std::string const& name, TovObjType type, TovNode* parent);
    ~TovBusNetNode() override;

    std::string name() const override;
};

}  // namespace kiri::tov
