#ifndef TOVENG_TOV_DESIGN_MRC_DUMP_READER_H
#define TOVENG_TOV_DESIGN_MRC_DUMP_READER_H

#include <QXmlStreamReader>
#include <list>
#include <map>
#include <memory>
#include <string>
#include <tuple>

#include "platform/export.h"
#include "tov/design/design.h"

namespace kiri::tov::impl_detail {

struct Coding;

/// Reads a design dump into a tree, in one forward pass with memory for the tree alone. A reader is used by
/// one thread at a time.
class MrcDumpReader : public QXmlStreamReader {
public:
    /// Makes a reader that appends to `top`, which is not owned and outlives the reader's work.
    TOVENG_API explicit MrcDumpReader(TovTopNode* top);

    /// Reads the dump at `path`. Returns false when the file cannot be opened, and when the root element is
    /// not `top`; errorString() then names the tag and its place. Returns true in every other case: a dump
    /// that is cut short, not well formed or has an unexpected child of `top` leaves what stands before that
    /// place. std::bad_alloc passes through, and the tree holds what was read so far. However it ends, the
    /// reader has no device afterwards.
    TOVENG_API bool doRead(char const* path);

private:
    template <class Bus>
    using BusMap = std::map<std::string, Bus*>;

    bool nextChild();
    void skipElement();
    void raiseInvalidTag();

    bool readDocument();
    void readTop();
    void readLibrary();
    void readUnit();
    void readInstance();
    void readPins(std::list<TovPortNode*>& ports, TovNode* parent);
    void readNets(std::list<TovNetNode*>& nets, TovNode* parent);
    template <class Node>
    void readNodes(QStringView item, Coding const& type, std::list<Node*>& nodes, TovNode* parent);
    template <class Add>
    void readItems(QStringView item, Coding const& coding, Add add);
    template <class Node, class Owned>
    Owned* append(std::list<Node*>& nodes, std::unique_ptr<Owned> node);
    template <class Bus, class Node>
    Bus* gather(BusMap<Bus>& buses, std::list<Node*>& nodes);

    TovTopNode* top_;
    /// List nodes made ahead, of each kind of list.
    std::tuple<std::list<TovCellNode*>, std::list<TovPortNode*>, std::list<TovNetNode*>, std::list<TovClockNode*>,
               std::list<TovViewNode*>, std::list<TovRamNode*>, std::list<TovRomNode*>, std::list<TovMultNode*>>
        spare_;
    /// The buses of the file by base name; they belong to the tree.
    BusMap<TovBusPortNode> portBuses_;
    BusMap<TovBusNetNode> netBuses_;
};

}  // namespace kiri::tov::impl_detail

#endif
