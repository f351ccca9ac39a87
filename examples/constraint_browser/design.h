#pragma once

#include <QtWidgets>
#include <unordered_map>

#include "tov/design/design.h"
#include "tov/names/design_names.h"

using namespace kiri::tov;

/// The queries for the kinds of objects that a constraint refers to; the first four are those of the top.
constexpr std::pair<char const*, taDciObjTyp> kinds[] = {{"get_ports", taDciObjPort},
                                                         {"get_nets", taDciObjNet},
                                                         {"get_clocks", taDciObjClock},
                                                         {"get_cells", taDciObjCell},
                                                         {"get_pins", taDciObjPin}};
constexpr int groupCount = 4;

/// Returns the kind of a node from its type.
inline std::size_t kindOf(TovNode const& node) {
    constexpr std::size_t kindOfType[] = {0, 1, 4, 0, 0, 3, 0, 2, 2, 0, 0, 0, 0, 0, 0, 2};
    return kindOfType[node.type()];
}

/// Returns the bytes of a file as text: decoded as UTF-8 if they are valid UTF-8, else as Latin-1.
inline QString toText(std::string const& bytes) {
    QString const text = QString::fromUtf8(bytes.c_str());
    return text.toUtf8() == bytes.c_str() ? text : QString::fromLatin1(bytes.c_str());
}

/// A loaded dump and its index. It never changes, so any thread may use it.
struct Design {
    using Nodes = std::vector<TovNode const*>;

    /// Reads a dump; null if that fails or is stopped. `error` says why.
    static std::shared_ptr<Design const> load(std::string const& path, TovProgress const& progress,
                                              std::string& error) {
        auto design = std::make_shared<Design>();
        if (!design->tree.load(path.c_str(), progress, &error) || !error.empty()) return nullptr;
        design->names = std::make_unique<TovDesignNames>(design->tree, progress);
        TovTopNode const& top = *design->tree.top();
        design->groups[0].assign(top.ports().begin(), top.ports().end());
        design->groups[1].assign(top.nets().begin(), top.nets().end());
        design->groups[2].assign(top.clocks().begin(), top.clocks().end());
        design->groups[3].assign(top.cells().begin(), top.cells().end());
        return design->names->complete() ? design : nullptr;
    }

    TovDesign tree;
    std::unique_ptr<TovDesignNames const> names;
    Nodes groups[groupCount];  // of the top, by kind
};

/// The design as a tree: the groups, their nodes, and the pins, nets and clocks of each cell. The items of a group are
/// created when the view scrolls to them or something asks for them.
class DesignModel : public QStandardItemModel {
public:
    void show(std::shared_ptr<Design const> design) {
        items_.clear();
        clear();
        design_ = std::move(design);
        for (int group = 0; design_ && group < groupCount; ++group) {
            appendRow(new QStandardItem(QString("%1: %2").arg(kinds[group].first).arg(design_->groups[group].size())));
            fetched_[group] = 0;
            fetchMore(index(group, 0));
        }
    }

    /// Null for a group.
    static TovNode const* node(QModelIndex const& index) {
        return static_cast<TovNode const*>(index.data(Qt::UserRole).value<void*>());
    }

    QModelIndex indexOf(TovNode const& node) {
        bool const isOfTop = node.parent() == design_->tree.top();
        TovNode const& shown = isOfTop ? node : *node.parent();
        if (items_.count(&shown) == 0) add(item(static_cast<int>(kindOf(shown))), shown);
        auto const found = items_.find(&node);
        return found == items_.end() ? QModelIndex() : found->second->index();
    }

    bool canFetchMore(QModelIndex const& parent) const override {
        return parent.isValid() && node(parent) == nullptr && fetched_[parent.row()] < groupOf(parent).size();
    }

    void fetchMore(QModelIndex const& parent) override {
        constexpr std::size_t step = 1000;
        std::size_t& next = fetched_[parent.row()];
        for (std::size_t const end = std::min(next + step, groupOf(parent).size()); next < end; ++next) {
            TovNode const& node = *groupOf(parent)[next];
            if (items_.count(&node) == 0) add(itemFromIndex(parent), node);
        }
    }

private:
    Design::Nodes const& groupOf(QModelIndex const& group) const { return design_->groups[group.row()]; }

    void add(QStandardItem* parent, TovNode const& node) {
        bool const isOfTop = node.parent() == design_->tree.top();
        auto* const item = new QStandardItem(toText(isOfTop ? design_->names->nameOf(node) : node.name()));
        item->setData(QVariant::fromValue<void*>(const_cast<TovNode*>(&node)), Qt::UserRole);
        item->setEditable(false);
        items_[&node] = item;
        if (auto const* cell = dynamic_cast<TovCellNode const*>(&node)) {
            for (TovNode const* pin : cell->ports()) add(item, *pin);
            for (TovNode const* net : cell->nets()) add(item, *net);
            for (TovNode const* clock : cell->clocks()) add(item, *clock);
        }
        parent->appendRow(item);
    }

    std::shared_ptr<Design const> design_;
    std::unordered_map<TovNode const*, QStandardItem*> items_;
    std::size_t fetched_[groupCount] = {};
};
