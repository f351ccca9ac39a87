#pragma once

#include <string>
#include <unordered_set>
#include <vector>

#include "bench/heap.h"
#include "tov/cmd/commands.h"
#include "tov/design/design.h"

/// What the public fields of commands and of a design's nodes take from the heap at least: a block for the command or
/// node, for its node in the list, for each object reference and its node, and for each text that does not
/// fit into its object.
class FieldSizes {
public:
    template <class Command>
    std::size_t of(Command const& command) {
        return heap::block(sizeof(Command)) + listNode() + text(command.note) + fields(command);
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

    // A bus has its first bit's name, its own and its base's.
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

    // Object references of one expression share its text.
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

    std::size_t fields(kiri::tov::TovCmdClockDef const& command) {
        return elements(command.waveform) + text(command.clockName) + references(command.targets);
    }
    std::size_t fields(kiri::tov::TovCmdGenClockDef const& command) {
        return text(command.divideBy) + text(command.multiplyBy) + text(command.dutyCycle) + text(command.clockName) +
               references(command.sources) + references(command.masterClock) + references(command.targets);
    }
    std::size_t fields(kiri::tov::TovCmdClockGroupDef const& command) {
        std::size_t size = elements(command.groups);
        for (References const* group : command.groups) size += heap::block(sizeof(References)) + references(*group);
        return size;
    }
    std::size_t fields(kiri::tov::TovCmdIODelay const& command) {
        return text(command.label) + references(command.clock) + references(command.objects);
    }
    std::size_t fields(kiri::tov::TovCmdTimingDelay const& command) {
        return references(command.from) + references(command.to);
    }
    std::size_t fields(kiri::tov::TovCmdMultiPath const& command) {
        return references(command.from) + references(command.to);
    }
    std::size_t fields(kiri::tov::TovCmdFalsePath const& command) {
        return references(command.from) + references(command.to) + references(command.through);
    }
    static std::size_t fields(kiri::tov::TovCmdAttr const& command) {
        return text(command.text1) + text(command.text2) + text(command.text3) + text(command.text4) +
               text(command.text5);
    }

    std::unordered_set<char const*> texts_;
};
