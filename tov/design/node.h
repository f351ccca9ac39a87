#pragma once

#include <cstdint>
#include <string>

#include "platform/export.h"

namespace kiri::tov {

namespace impl_detail {
class MrcDumpReader;
}

/// Kind of a node. Callers compare the numbers; 4, 12 and 13 must stay unused.
enum TovObjType : int {
    TOV_OBJ_PORT = 0,         ///< a port that the reader has not placed yet
    TOV_OBJ_NET = 1,          ///< a net or a net bus
    TOV_OBJ_PIN = 2,          ///< a port of a cell
    TOV_OBJ_TOP_PORT = 3,     ///< a port of the design
    TOV_OBJ_CELL = 5,         ///< a cell instance
    TOV_OBJ_TOP = 6,          ///< the top node
    TOV_OBJ_CLOCK_PORT = 7,   ///< a clock on a port
    TOV_OBJ_CLOCK_NET = 8,    ///< a clock on a net
    TOV_OBJ_VIEW = 9,         ///< a view
    TOV_OBJ_RAM = 10,         ///< a RAM net
    TOV_OBJ_ROM = 11,         ///< a ROM net
    TOV_OBJ_MULT = 14,        ///< a multiplier
    TOV_OBJ_CLOCK_OTHER = 15  ///< any other clock
};

/// Kind of a cell instance. Callers compare the numbers.
enum CELL_TYPE : int { CELL_OTHER = 0, CELL_COMB = 1, CELL_REG = 2, CELL_SEQ = 3, CELL_PAD = 4 };

/// An object of a design. The cell or top node that has it in a list owns it. Nodes do not change after the load; any
/// number of threads may read them as long as none loads, resets or destroys the design.
class TOVENG_API TovNode {
public:
    /// Makes a node below `parent`, which is not owned and is null only for the top node.
    TovNode(std::string name, TovObjType type, TovNode* parent);
    virtual ~TovNode();
    TovNode(TovNode const&) = delete;
    TovNode& operator=(TovNode const&) = delete;

    /// The name within the whole design: the parent's hierarchy name, `separator` and `name()`. Only this last part is
    /// joined with `separator`; the levels above it are joined with '/'.
    virtual std::string hierachyName(char separator) const;

    /// Prints the node to standard output and flushes each line. For diagnosis.
    virtual void dump() const;

    /// A copy of the node's own name; for a bus, the name with its index range.
    virtual std::string name() const;

    /// The node's own name as in the dump, without a copy; for a bus, the name of its first bit.
    std::string const& plainName() const { return name_; }

    TovObjType type() const { return type_; }

    /// The cell or top node that owns this node.
    TovNode* parent() const { return parent_; }

private:
    friend class TovPortNode;
    friend class TovTopNode;
    friend class impl_detail::MrcDumpReader;

    std::string name_;
    TovObjType type_;
    // The direction of a port. It fills the gap before the pointer: in TovPortNode each port would take 16 bytes more.
    std::uint32_t direction_ = 0;
    TovNode* parent_;
};

/// A port of the design (TOV_OBJ_TOP_PORT) or a pin of a cell (TOV_OBJ_PIN).
class TOVENG_API TovPortNode : public TovNode {
public:
    using TovNode::TovNode;
    ~TovPortNode() override;

    void dump() const override;

    /// 0 unknown, 1 in, 2 out, 3 inout.
    std::uint32_t direction() const { return direction_; }
};

/// A net of the design or of a cell.
class TOVENG_API TovNetNode : public TovNode {
public:
    using TovNode::TovNode;
    ~TovNetNode() override;
};

/// A clock of the design or of a cell.
class TOVENG_API TovClockNode : public TovNode {
public:
    using TovNode::TovNode;
    ~TovClockNode() override;
};

/// A view of the design.
class TOVENG_API TovViewNode : public TovNode {
public:
    using TovNode::TovNode;
    ~TovViewNode() override;
};

/// A RAM net of the design.
class TOVENG_API TovRamNode : public TovNode {
public:
    using TovNode::TovNode;
    ~TovRamNode() override;
};

/// A ROM net of the design.
class TOVENG_API TovRomNode : public TovNode {
public:
    using TovNode::TovNode;
    ~TovRomNode() override;
};

/// A multiplier of the design.
class TOVENG_API TovMultNode : public TovNode {
public:
    using TovNode::TovNode;
    ~TovMultNode() override;
};

}  // namespace kiri::tov
