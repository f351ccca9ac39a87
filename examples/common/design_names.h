#pragma once

#include <array>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "platform/dci.h"
#include "tov/cmd/commands.h"
#include "tov/design/design.h"

/// Names of one kind of object. In all of them '.' reads as '/'.
class NameSet {
public:
    void add(std::string name);
    /// Whether a name, a range of bits or a pattern stands for any of the names.
    bool matches(std::string const& name) const;
    /// The name that is most like it; empty unless one is close.
    std::string nearest(std::string const& name) const;

private:
    bool has(std::string const& name) const { return names_.count(name) != 0; }
    bool hasRange(std::string const& name) const;

    std::unordered_set<std::string> names_;
};

/// The names by which constraints may call the objects of a design.
class DesignNames {
public:
    enum Kind { ports, pins, nets, cells, clocks, kinds };

    /// A name that the design does not have, and the type of object that it should be.
    struct Missing {
        taDciObjTyp type;
        std::string name;
    };

    explicit DesignNames(kiri::tov::TovDesign const& design);

    /// Takes the clock that a command defines, if it defines one, into the names.
    void addClockOf(kiri::tov::TovCmd const& cmd);
    /// Gives up all clocks taken from commands.
    void forgetClocks() { defined_ = {}; }

    /// The names in a command that neither the design has nor a command defined.
    std::vector<Missing> missingIn(kiri::tov::TovCmd& cmd) const;
    /// Whether there is an object of that name and type; true for what is no name, and for types of no object.
    bool has(taDciObjTyp type, std::string const& name) const;
    /// The nearest name of that type; empty unless one is close.
    std::string nearest(taDciObjTyp type, std::string const& name) const;
    /// What the type is called.
    static char const* titleOf(taDciObjTyp type);

private:
    std::array<NameSet, kinds> sets_;
    NameSet defined_;
};
