#include "tov/design/mrc_dump_reader.h"

#include <QObject>
#include <algorithm>
#include <initializer_list>
#include <memory>
#include <new>
#include <utility>

#include "tov/design/metered_file_p.h"
#include "tov/io/error_text_p.h"
#include "tov/io/file_p.h"

// The dump, with the attributes that are read; anything else in it is skipped with its content.
//
// clang-format off
//   document = top                                 any other root fails the load
//   top      = (clocks | library)*                 name library arch entry; any other child ends the reading
//   library  = (unit | instance)*
//   unit     = (pins | nets | views | ramnets | romnets | mults | instance)*
//   instance = (clocks | pins | nets)*             name library arch type
//   clocks   = clockitem*                          name type
//   pins     = pitem*                              name direction
//   nets     = nitem*                              name
//   views    = view*        ramnets = ramnet*      name
//   romnets  = romnet*      mults   = mult*        name
// clang-format on

namespace kiri::tov::impl_detail {

namespace {

constexpr QStringView operator""_v(char16_t const* text, std::size_t size) {
    return {text, static_cast<qsizetype>(size)};
}

/// The value of an attribute, valid as long as `attributes`; empty if there is no attribute of that name.
QStringView attributeValue(QXmlStreamAttributes const& attributes, QStringView name) {
    for (QXmlStreamAttribute const& attribute : attributes) {
        if (QStringView(attribute.qualifiedName()) == name) return attribute.value();
    }
    return {};
}

/// The same in Latin-1, the encoding of the tree; every UTF-16 unit outside Latin-1 becomes '?'.
std::string latin1Attribute(QXmlStreamAttributes const& attributes, QStringView name) {
    QStringView const text = attributeValue(attributes, name);
    std::string latin1(static_cast<std::size_t>(text.size()), '?');
    std::transform(text.begin(), text.end(), latin1.begin(),
                   [](QChar c) { return c.unicode() <= 0xff ? static_cast<char>(c.unicode()) : '?'; });
    return latin1;
}

/// An attribute whose texts name values. Any other text, or none, decodes to `fallback`.
template <class Value>
struct EnumAttribute {
    struct Word {
        QStringView text;
        Value value;
    };
    QStringView name;
    std::initializer_list<Word> words;
    Value fallback;

    Value decode(QXmlStreamAttributes const& attributes) const {
        QStringView const text = attributeValue(attributes, name);
        for (Word const& word : words) {
            if (word.text == text) return word.value;
        }
        return fallback;
    }
};

constexpr EnumAttribute<CELL_TYPE> cellTypes{
    u"type"_v, {{u"reg"_v, CELL_REG}, {u"comb"_v, CELL_COMB}, {u"pad"_v, CELL_PAD}, {u"seq"_v, CELL_SEQ}}, CELL_OTHER};
constexpr EnumAttribute<TovObjType> clockTypes{
    u"type"_v, {{u"port"_v, TOV_OBJ_CLOCK_PORT}, {u"net"_v, TOV_OBJ_CLOCK_NET}}, TOV_OBJ_CLOCK_OTHER};
constexpr EnumAttribute<std::uint32_t> directions{u"direction"_v, {{u"in"_v, 1}, {u"out"_v, 2}, {u"inout"_v, 3}}, 0};

/// Transfers ownership of `node` to the list.
template <class Node, class Owned>
Owned* appendNode(std::list<Node*>& nodes, std::unique_ptr<Owned> node) {
    nodes.push_back(node.get());
    return node.release();
}

/// Detaches the reader from its file before the file is destroyed. That also clears the reader's error.
class DeviceScope {
public:
    DeviceScope(QXmlStreamReader& reader, QIODevice& device) : reader_(reader) { reader_.setDevice(&device); }
    ~DeviceScope() {
        try {
            reader_.setDevice(nullptr);
        } catch (std::bad_alloc const&) {
            // The device is dropped before anything is allocated.
        }
    }
    DeviceScope(DeviceScope const&) = delete;
    DeviceScope& operator=(DeviceScope const&) = delete;

private:
    QXmlStreamReader& reader_;
};

}  // namespace

MrcDumpReader::MrcDumpReader(TovTopNode* top) : top_(top) {}

bool MrcDumpReader::doRead(char const* path) {
    return doRead(path, {});
}

bool MrcDumpReader::doRead(char const* path, TovProgress const& progress, std::string* error) {
    clear();
    Result const result = readPath(path, progress);
    if (error != nullptr) *error = result.message();
    // For a truncated or malformed dump, what precedes that place is kept.
    return result.ok() || result.is(failureMalformed);
}

/// Opens the dump and reads it; rethrows what the caller's function throws.
Result MrcDumpReader::readPath(char const* path, TovProgress const& progress) {
    File input;
    Result result = openForReading(path, input);
    if (!result.ok()) return result;
    ProgressMeter meter(progress, bytesLeft(input));
    result = readFile(input, meter);
    if (result.ok()) meter.finish();
    if (!meter.stopped()) return result;
    meter.rethrow();
    return stoppedLoad();
}

/// Parses an open dump. The error of a refused root is raised again for the caller.
Result MrcDumpReader::readFile(File const& input, ProgressMeter& meter) {
    MeteredFile file(input, meter);
    bool accepted = false;
    QString problem;
    {
        DeviceScope const scope(*this, file);
        accepted = readDocument();
        problem = problemText();
    }
    if (!accepted) raiseError(problem);
    if (problem.isEmpty()) return {};
    return {accepted ? failureMalformed : failureRefusedRoot, errorText(problem.toStdString())};
}

/// Moves to the next child of the current element; returns false at the element's end tag and at the end of what can be
/// read. An error is final, even if the file has grown meanwhile.
bool MrcDumpReader::nextChild() {
    while (tokenType() != Invalid && tokenType() != EndDocument) {
        TokenType const token = readNext();
        if (token == StartElement) return true;
        if (token == EndElement) return false;
    }
    return false;
}

/// Moves to the current element's end tag, or to the end of what can be read.
void MrcDumpReader::readUnknownElement() {
    for (std::size_t depth = 1; depth > 0;) {
        if (nextChild()) {
            ++depth;
        } else if (tokenType() == EndElement) {
            --depth;
        } else {
            return;
        }
    }
}

void MrcDumpReader::raiseInvalidTag() {
    raiseError(QObject::tr("Line %1 Column %2: Tag %3 is not valid tag")
                   .arg(lineNumber())
                   .arg(columnNumber())
                   .arg(name().toString()));
}

/// Returns the message with its place, which the message of an invalid tag already has; empty if there is no error.
QString MrcDumpReader::problemText() const {
    if (!hasError() || error() == CustomError) return errorString();
    return QString("Line %1 Column %2: ").arg(lineNumber()).arg(columnNumber()) + errorString();
}

/// Returns false when the root is not `top`.
bool MrcDumpReader::readDocument() {
    portBuses_.clear();
    netBuses_.clear();
    while (nextChild()) {
        if (name() != u"top"_v) {
            raiseInvalidTag();
            return false;
        }
        readTop();
    }
    return true;
}

void MrcDumpReader::readTop() {
    {
        QXmlStreamAttributes const attributes = this->attributes();
        top_->name_ = latin1Attribute(attributes, u"name"_v);
        top_->library_ = latin1Attribute(attributes, u"library"_v);
        top_->arch_ = latin1Attribute(attributes, u"arch"_v);
        top_->entry_ = latin1Attribute(attributes, u"entry"_v);
    }
    while (nextChild()) {
        QStringView const tag = name();
        if (tag == u"clocks"_v) {
            readClockProperty(top_->clocks_, top_);
        } else if (tag == u"library"_v) {
            readLibrary(top_);
        } else {
            raiseInvalidTag();
        }
    }
}

/// Libraries and units do not become nodes: their content belongs to the top node.
void MrcDumpReader::readLibrary(TovTopNode* top) {
    while (nextChild()) {
        QStringView const tag = name();
        if (tag == u"unit"_v) {
            readUnit(top);
        } else if (tag == u"instance"_v) {
            readInstProperty(top->cells_, top);
        } else {
            readUnknownElement();
        }
    }
}

void MrcDumpReader::readUnit(TovTopNode* top) {
    while (nextChild()) {
        QStringView const tag = name();
        if (tag == u"pins"_v) {
            readPinProperty(top->ports_, top);
        } else if (tag == u"nets"_v) {
            readNetProperty(top->nets_, top);
        } else if (tag == u"instance"_v) {
            readInstProperty(top->cells_, top);
        } else if (tag == u"views"_v) {
            readNodes(u"view"_v, TOV_OBJ_VIEW, top->views_, top);
        } else if (tag == u"ramnets"_v) {
            readNodes(u"ramnet"_v, TOV_OBJ_RAM, top->rams_, top);
        } else if (tag == u"romnets"_v) {
            readNodes(u"romnet"_v, TOV_OBJ_ROM, top->roms_, top);
        } else if (tag == u"mults"_v) {
            readNodes(u"mult"_v, TOV_OBJ_MULT, top->mults_, top);
        } else {
            readUnknownElement();
        }
    }
}

void MrcDumpReader::readInstProperty(std::list<TovCellNode*>& cells, TovNode* parent) {
    auto const makeCell = [parent](QXmlStreamAttributes const& attributes) {
        std::string cellName = latin1Attribute(attributes, u"name"_v);
        std::string const prefix = parent->name() + '.';
        if (cellName.compare(0, prefix.size(), prefix) == 0) cellName.erase(0, prefix.size());
        return std::make_unique<TovCellNode>(std::move(cellName), parent, cellTypes.decode(attributes),
                                             latin1Attribute(attributes, u"arch"_v),
                                             latin1Attribute(attributes, u"library"_v));
    };
    TovCellNode* const cell = appendNode(cells, makeCell(attributes()));
    while (nextChild()) {
        QStringView const tag = name();
        if (tag == u"clocks"_v) {
            readClockProperty(cell->clocks_, cell);
        } else if (tag == u"pins"_v) {
            readPinProperty(cell->ports_, cell);
        } else if (tag == u"nets"_v) {
            readNetProperty(cell->nets_, cell);
        } else {
            readUnknownElement();
        }
    }
}

void MrcDumpReader::readClockProperty(std::list<TovClockNode*>& clocks, TovNode* parent) {
    readItems(u"clockitem"_v, [&] { readNode(clocks, clockTypes.decode(attributes()), parent); });
}

void MrcDumpReader::readPinProperty(std::list<TovPortNode*>& ports, TovNode* parent) {
    readItems(u"pitem"_v, [&] { readPinItem(ports, parent); });
}

void MrcDumpReader::readNetProperty(std::list<TovNetNode*>& nets, TovNode* parent) {
    readItems(u"nitem"_v, [&] {
        if (readNode(nets, TOV_OBJ_NET, parent) != nullptr) gatherBit(netBuses_, nets);
    });
}

/// Reads a list of items that have only a name.
template <class Node>
void MrcDumpReader::readNodes(QStringView item, TovObjType type, std::list<Node*>& nodes, TovNode* parent) {
    readItems(item, [&] { readNode(nodes, type, parent); });
}

void MrcDumpReader::readPinItem(std::list<TovPortNode*>& ports, TovNode* parent) {
    std::uint32_t const direction = directions.decode(attributes());
    TovObjType const type = parent->type() == TOV_OBJ_TOP ? TOV_OBJ_TOP_PORT : TOV_OBJ_PIN;
    TovPortNode* const port = readNode(ports, type, parent);
    if (port == nullptr) return;
    port->direction_ = direction;
    TovPortNode* const bus = gatherBit(portBuses_, ports);
    if (bus != nullptr) bus->direction_ = direction;
}

/// Reads a list element: calls `readItem` at each child of the name `item` and skips the others.
template <class ReadItem>
void MrcDumpReader::readItems(QStringView item, ReadItem readItem) {
    while (nextChild()) {
        if (name() == item) {
            readItem();
        } else {
            readUnknownElement();
        }
    }
}

/// Reads an item and appends its node; returns null if the item's end tag is missing.
template <class Node>
Node* MrcDumpReader::readNode(std::list<Node*>& nodes, TovObjType type, TovNode* parent) {
    std::string nodeName = latin1Attribute(attributes(), u"name"_v);
    readUnknownElement();
    if (tokenType() != EndElement) return nullptr;
    return appendNode(nodes, std::make_unique<Node>(std::move(nodeName), type, parent));
}

/// If the node added last is a bit, adds it to its bus; returns the bus if it is new. Buses are identified by base name
/// in the whole file: the bits of a later cell widen the bus of the first cell that has the name.
template <class Bus, class Node>
Bus* MrcDumpReader::gatherBit(BusMap<Bus>& buses, std::list<Node*>& nodes) {
    Node const& bit = *nodes.back();
    std::string base;
    if (!TovBusNode::isBusType(bit.name_, &base)) return nullptr;
    auto const [at, isNew] = buses.try_emplace(std::move(base), nullptr);
    if (isNew) return at->second = appendNode(nodes, std::make_unique<Bus>(bit.name_, bit.type(), bit.parent()));
    at->second->addToBus(bit.name_);
    return nullptr;
}

}  // namespace kiri::tov::impl_detail
