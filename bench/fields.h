#pragma once

#include <string>
#include <unordered_set>
#include <vector>

#include "bench/heap.h"
#include "tov/cmd/commands.h"
#include "tov/cmd/references.h"
#include "tov/design/design.h"

/// The minimum heap memory of the public fields of commands and of a design's nodes: a block for the command or node,
/// for its list node, for each object reference and its list node, and for each text that does not fit into its object.
class FieldSizes {
public:
    std::size_t of(kiri::tov::TovCmd& command) {
        std::size_t size =
            heap::blockOf(dynamic_cast<void*>(&command)) + listNode() + text(command.note) + own(command);
        for (kiri::tov::TovReferences const& objects : referencesOf(command)) size += references(*objects.list);
        return size;
    }

    template <class Node>
    static std::size_t ofNodes(std::list<Node*> const& nodes) {
        std::size_t size = 0;
        for (Node const* node : nodes) size += listNode() + ofNode(*node);
        return size;
    }

private:
    using References = ppStlList<taDciObj*>;

    static std::size_t listNode() { return heap::block(3 * sizeof(void*)); }

    static bool isInside(void const* object, std::size_t size, char const* text) {
        char const* const begin = static_cast<char const*>(object);
        return text >= begin && text < begin + size;
    }

    static std::size_t text(std::string const& string) {
        return isInside(&string, sizeof string, string.data()) ? 0 : heap::block(string.size() + 1);
    }

    static std::size_t copied(std::string const& string) {
        return string.size() < sizeof(std::string) / 2 ? 0 : heap::block(string.size() + 1);
    }

    // A bus has the name of its first bit, its own name and its base name.
    template <class Bus, class Node>
    static std::size_t ofBitOrBus(Node const& node) {
        std::size_t const name = copied(node.Node::name());
        auto const* const bus = dynamic_cast<Bus const*>(&node);
        if (bus == nullptr) return heap::block(sizeof node) + name;
        return heap::block(sizeof(Bus)) + name + copied(bus->name()) + copied(bus->baseName());
    }
    static std::size_t ofNode(kiri::tov::TovPortNode const& port) {
        return ofBitOrBus<kiri::tov::TovBusPortNode>(port);
    }
    static std::size_t ofNode(kiri::tov::TovNetNode const& net) { return ofBitOrBus<kiri::tov::TovBusNetNode>(net); }
    static std::size_t ofNode(kiri::tov::TovCellNode const& cell) {
        return heap::block(sizeof cell) + copied(cell.name()) + copied(cell.library()) + copied(cell.arch());
    }
    template <class Node>
    static std::size_t ofNode(Node const& node) {
        return heap::block(sizeof node) + copied(node.name());
    }

    // Object references to one expression share its text.
    std::size_t reference(taDciObj const& obj) {
        std::size_t const size = heap::block(sizeof obj) + listNode();
        if (obj.name == nullptr || isInside(&obj, sizeof obj, obj.name)) return size;
        return texts_.insert(obj.name).second ? size + heap::block(std::string_view(obj.name).size() + 1) : size;
    }

    std::size_t references(References const& list) {
        std::size_t size = 0;
        for (taDciObj const* obj : list) size += reference(*obj);
        return size;
    }

    template <class T>
    static std::size_t elements(std::vector<T> const& vector) {
        return vector.empty() ? 0 : heap::block(vector.size() * sizeof(T));
    }

    // The blocks of the fields that are not lists of object references.
    static std::size_t own(kiri::tov::TovCmd const& command) {
        using namespace kiri::tov;
        if (auto const* clock = dynamic_cast<TovCmdClockDef const*>(&command)) {
            return elements(clock->waveform) + text(clock->clockName);
        }
        if (auto const* clock = dynamic_cast<TovCmdGenClockDef const*>(&command)) {
            return text(clock->divideBy) + text(clock->multiplyBy) + text(clock->dutyCycle) + text(clock->clockName);
        }
        if (auto const* group = dynamic_cast<TovCmdClockGroupDef const*>(&command)) {
            return elements(group->groups) + group->groups.size() * heap::block(sizeof(References));
        }
        if (auto const* delay = dynamic_cast<TovCmdIODelay const*>(&command)) return text(delay->label);
        if (auto const* attribute = dynamic_cast<TovCmdAttr const*>(&command)) {
            return text(attribute->text1) + text(attribute->text2) + text(attribute->text3) + text(attribute->text4) +
                   text(attribute->text5);
        }
        return 0;
    }

    std::unordered_set<char const*> texts_;
};
