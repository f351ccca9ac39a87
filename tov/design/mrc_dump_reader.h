#pragma once

#include <QXmlStreamReader>
#include <list>
#include <map>
#include <string>

#include "platform/export.h"
#include "tov/design/design.h"

namespace kiri::tov::impl_detail {

class File;
class ProgressMeter;
class Result;

/// Reads a design dump into a tree, in one forward pass. Beyond the tree it needs memory for the current element and
/// for the base name of each bus. A reader may be used by one thread at a time.
class MrcDumpReader : public QXmlStreamReader {
public:
    /// Makes a reader that appends to `top`, which is not owned and must outlive the reading.
    TOVENG_API explicit MrcDumpReader(TovTopNode* top);

    /// Reads the dump at `path`. Returns false if the file cannot be opened, or if the root element is not `top`;
    /// errorString() then names the tag and its place. Returns true in every other case: of a dump that is truncated,
    /// not well formed or has an unexpected child of `top`, the tree holds what precedes that place. After
    /// std::bad_alloc the tree holds what was read so far. In any case the reader has no device afterwards.
    TOVENG_API bool doRead(char const* path);

    /// The same; calls `progress` during the reading, which stops it by returning false (the result is then false) or
    /// by throwing, and sets `error` as TovDesign::load does.
    TOVENG_API bool doRead(char const* path, TovProgress const& progress, std::string* error = nullptr);

private:
    template <class Bus>
    using BusMap = std::map<std::string, Bus*>;

    Result readPath(char const* path, TovProgress const& progress);
    Result readFile(File const& input, ProgressMeter& meter);
    bool nextChild();
    void readUnknownElement();
    void raiseInvalidTag();
    QString problemText() const;

    bool readDocument();
    void readTop();
    void readLibrary(TovTopNode* top);
    void readUnit(TovTopNode* top);
    void readInstProperty(std::list<TovCellNode*>& cells, TovNode* parent);

    void readClockProperty(std::list<TovClockNode*>& clocks, TovNode* parent);
    void readPinProperty(std::list<TovPortNode*>& ports, TovNode* parent);
    void readNetProperty(std::list<TovNetNode*>& nets, TovNode* parent);
    void readPinItem(std::list<TovPortNode*>& ports, TovNode* parent);

    template <class Node>
    void readNodes(QStringView item, TovObjType type, std::list<Node*>& nodes, TovNode* parent);
    template <class ReadItem>
    void readItems(QStringView item, ReadItem readItem);
    template <class Node>
    Node* readNode(std::list<Node*>& nodes, TovObjType type, TovNode* parent);
    template <class Bus, class Node>
    Bus* gatherBit(BusMap<Bus>& buses, std::list<Node*>& nodes);

    TovTopNode* top_;
    // The buses of the file by base name; they belong to the tree.
    BusMap<TovBusPortNode> portBuses_;
    BusMap<TovBusNetNode> netBuses_;
};

}  // namespace kiri::tov::impl_detail
