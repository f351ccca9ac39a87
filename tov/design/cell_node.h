#pragma once

#include <list>
#include <string>

#include "tov/design/node.h"

namespace kiri::tov {

/// What the top node and the cells share: their ports, nets and clocks, which they own, each list in file order.
class TOVENG_API TovBaseCellNode : public TovNode {
public:
    /// Makes a node of type TOV_OBJ_CELL without ports, nets and clocks.
    TovBaseCellNode(std::string name, TovNode* parent, std::string arch, std::string library);
    /// Deletes the clocks, the ports and the nets.
    ~TovBaseCellNode() override;

    /// "library<separator>name<separator>arch". The library is left out if it is empty or "work", the arch if it is
    /// empty; the parent does not matter.
    std::string hierachyName(char separator) const override;

    /// Prints the cell and then its clocks, ports and nets.
    void dump() const override;

    std::list<TovPortNode*> const& ports() const { return ports_; }
    std::list<TovNetNode*> const& nets() const { return nets_; }
    std::list<TovClockNode*> const& clocks() const { return clocks_; }
    std::string const& library() const { return library_; }
    std::string const& arch() const { return arch_; }

private:
    friend class impl_detail::MrcDumpReader;

    std::list<TovPortNode*> ports_;
    std::list<TovNetNode*> nets_;
    std::list<TovClockNode*> clocks_;
    std::string library_;
    std::string arch_;
};

/// A cell instance. The top node is the parent of all cells; the dotted name has the place in the hierarchy.
class TOVENG_API TovCellNode : public TovBaseCellNode {
public:
    TovCellNode(std::string name, TovNode* parent, CELL_TYPE cellType, std::string arch, std::string library);
    ~TovCellNode() override;

    CELL_TYPE cellType() const { return cellType_; }

private:
    CELL_TYPE cellType_;
};

/// The root of a design. Owns every node of the tree, directly or through its cells.
class TOVENG_API TovTopNode : public TovBaseCellNode {
public:
    /// Makes a node of type TOV_OBJ_TOP without parent and children.
    TovTopNode(std::string name, std::string entry, std::string arch, std::string library);
    /// Deletes the cells, views, RAMs, ROMs and multipliers, then what the base owns.
    ~TovTopNode() override;

    /// Always empty, so the name of a child of the top is its hierarchy name.
    std::string hierachyName(char separator) const override;

    /// Prints the whole tree.
    void dump() const override;

    std::string const& entry() const { return entry_; }
    std::list<TovCellNode*> const& cells() const { return cells_; }
    std::list<TovViewNode*> const& views() const { return views_; }
    std::list<TovRamNode*> const& rams() const { return rams_; }
    std::list<TovRomNode*> const& roms() const { return roms_; }
    std::list<TovMultNode*> const& mults() const { return mults_; }

private:
    friend class impl_detail::MrcDumpReader;

    std::string entry_;
    std::list<TovCellNode*> cells_;
    std::list<TovViewNode*> views_;
    std::list<TovRamNode*> rams_;
    std::list<TovRomNode*> roms_;
    std::list<TovMultNode*> mults_;
};

}  // namespace kiri::tov
