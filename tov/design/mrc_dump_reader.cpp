#include "tov/design/mrc_dump_reader.h"

#include <QObject>
#include <initializer_list>
#include <memory>
#include <new>
#include <utility>

#include "tov/design/dump_file.h"

// The dump, with the attributes that are read; whatever else stands in it is skipped with its content.
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

/// The texts of an attribute and the numbers that they stand for. Every other text, or no attribute,
/// gives `otherwise`.
struct Coding {
    struct Word {
        QStringView text;
        int value;
    };
    QStringView attribute;
    std::initializer_list<Word> words;
    int otherwise;
};

namespace {

/// Longest text that an entity may stand for: memory stays in proportion to the file.
constexpr int entityLimit = 128;

constexpr QStringView operator""_v(char16_t const* text, std::size_t size) {
    return {text, static_cast<qsizetype>(size)};
}

constexpr Coding cellTypes{
    u"type"_v, {{u"reg"_v, CELL_REG}, {u"comb"_v, CELL_COMB}, {u"pad"_v, CELL_PAD}, {u"seq"_v, CELL_SEQ}}, CELL_OTHER};
constexpr Coding clockTypes{
    u"type"_v, {{u"port"_v, TOV_OBJ_CLOCK_PORT}, {u"net"_v, TOV_OBJ_CLOCK_NET}}, TOV_OBJ_CLOCK_OTHER};
constexpr Coding netTypes{{}, {}, TOV_OBJ_NET};
constexpr Coding viewTypes{{}, {}, TOV_OBJ_VIEW};
constexpr Coding ramTypes{{}, {}, TOV_OBJ_RAM};
constexpr Coding romTypes{{}, {}, TOV_OBJ_ROM};
constexpr Coding multTypes{{}, {}, TOV_OBJ_MULT};
constexpr Coding directions{u"direction"_v, {{u"in"_v, 1}, {u"out"_v, 2}, {u"inout"_v, 3}}, 0};

/// The text of an attribute, valid as long as `attributes`; empty when there is none of that name.
QStringView textOf(QXmlStreamAttributes const& attributes, QStringView name) {
    for (QXmlStreamAttribute const& attribute : attributes) {
        if (QStringView(attribute.qualifiedName()) == name) return attribute.value();
    }
    return {};
}

int numberOf(QXmlStreamAttributes const& attributes, Coding const& coding) {
    QStringView const text = textOf(attributes, coding.attribute);
    for (Coding::Word const& word : coding.words) {
        if (word.text == text) return word.value;
    }
    return coding.otherwise;
}

/// The tree holds Latin-1; every UTF-16 unit outside it becomes '?'.
std::string toLatin1(QStringView text) {
    std::string latin1(static_cast<std::size_t>(text.size()), '?');
    char* to = latin1.data();
    for (QChar const c : text) {
        if (c.unicode() <= 0xff) *to = static_cast<char>(c.unicode());
        ++to;
    }
    return latin1;
}

std::string latin1Of(QXmlStreamAttributes const& attributes, QStringView name) {
    return toLatin1(textOf(attributes, name));
}

/// Takes the reader off its file before the file is gone.
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
    clear();
    DumpFile file(path);
    if (!file.isOpen()) return false;
    setEntityExpansionLimit(entityLimit);
    bool valid = false;
    QString error;
    {
        DeviceScope const scope(*this, file);
        valid = readDocument();
        if (!valid) error = errorString();
    }
    spare_ = {};
    if (!valid) raiseError(error);
    return valid;
}

/// Moves to the next child of the current element; false at the element's end tag and at the end of what can
/// be read. An error is final, even if the file has grown meanwhile.
bool MrcDumpReader::nextChild() {
    while (tokenType() != Invalid && tokenType() != EndDocument) {
        TokenType const token = readNext();
        if (token == StartElement) return true;
        if (token == EndElement) return false;
    }
    return false;
}

/// Moves to the current element's end tag, or to the end of what can be read.
void MrcDumpReader::skipElement() {
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
        top_->name_ = latin1Of(attributes, u"name"_v);
        top_->library_ = latin1Of(attributes, u"library"_v);
        top_->arch_ = latin1Of(attributes, u"arch"_v);
        top_->entry_ = latin1Of(attributes, u"entry"_v);
    }
    while (nextChild()) {
        QStringView const tag = name();
        if (tag == u"clocks"_v) {
            readNodes(u"clockitem"_v, clockTypes, top_->clocks_, top_);
        } else if (tag == u"library"_v) {
            readLibrary();
        } else {
            raiseInvalidTag();
        }
    }
}

void MrcDumpReader::readLibrary() {
    while (nextChild()) {
        QStringView const tag = name();
        if (tag == u"unit"_v) {
            readUnit();
        } else if (tag == u"instance"_v) {
            readInstance();
        } else {
            skipElement();
        }
    }
}

/// Units leave no trace of their own: what they hold belongs to the top node.
void MrcDumpReader::readUnit() {
    while (nextChild()) {
        QStringView const tag = name();
        if (tag == u"pins"_v) {
            readPins(top_->ports_, top_);
        } else if (tag == u"nets"_v) {
            readNets(top_->nets_, top_);
        } else if (tag == u"instance"_v) {
            readInstance();
        } else if (tag == u"views"_v) {
            readNodes(u"view"_v, viewTypes, top_->views_, top_);
        } else if (tag == u"ramnets"_v) {
            readNodes(u"ramnet"_v, ramTypes, top_->rams_, top_);
        } else if (tag == u"romnets"_v) {
            readNodes(u"romnet"_v, romTypes, top_->roms_, top_);
        } else if (tag == u"mults"_v) {
            readNodes(u"mult"_v, multTypes, top_->mults_, top_);
        } else {
            skipElement();
        }
    }
}

void MrcDumpReader::readInstance() {
    auto const makeCell = [this](QXmlStreamAttributes const& attributes) {
        std::string cellName = latin1Of(attributes, u"name"_v);
        std::string const& topName = top_->name_;
        if (cellName.size() > topName.size() && cellName[topName.size()] == '.' &&
            cellName.compare(0, topName.size(), topName) == 0) {
            cellName.erase(0, topName.size() + 1);
        }
        return std::make_unique<TovCellNode>(std::move(cellName), top_,
                                             static_cast<CELL_TYPE>(numberOf(attributes, cellTypes)),
                                             latin1Of(attributes, u"arch"_v), latin1Of(attributes, u"library"_v));
    };
    TovCellNode* const cell = append(top_->cells_, makeCell(attributes()));
    while (nextChild()) {
        QStringView const tag = name();
        if (tag == u"clocks"_v) {
            readNodes(u"clockitem"_v, clockTypes, cell->clocks_, cell);
        } else if (tag == u"pins"_v) {
            readPins(cell->ports_, cell);
        } else if (tag == u"nets"_v) {
            readNets(cell->nets_, cell);
        } else {
            skipElement();
        }
    }
}

void MrcDumpReader::readPins(std::list<TovPortNode*>& ports, TovNode* parent) {
    TovObjType const type = parent->type() == TOV_OBJ_TOP ? TOV_OBJ_TOP_PORT : TOV_OBJ_PIN;
    readItems(u"pitem"_v, directions, [&](std::string itemName, int direction) {
        auto port = std::make_unique<TovPortNode>(std::move(itemName), type, parent);
        append(ports, std::move(port))->direction_ = static_cast<std::uint32_t>(direction);
        if (TovPortNode* const bus = gather(portBuses_, ports)) {
            bus->direction_ = static_cast<std::uint32_t>(direction);
        }
    });
}

void MrcDumpReader::readNets(std::list<TovNetNode*>& nets, TovNode* parent) {
    readItems(u"nitem"_v, netTypes, [&](std::string itemName, int type) {
        append(nets, std::make_unique<TovNetNode>(std::move(itemName), static_cast<TovObjType>(type), parent));
        gather(netBuses_, nets);
    });
}

/// Hands `node` over to the list, which owns it from then on. List nodes are made in runs, so that a walk
/// over a list finds them side by side.
template <class Node, class Owned>
Owned* MrcDumpReader::append(std::list<Node*>& nodes, std::unique_ptr<Owned> node) {
    std::list<Node*>& spare = std::get<std::list<Node*>>(spare_);
    if (spare.empty()) spare.resize(64);
    Owned* const appended = node.release();
    spare.front() = appended;
    nodes.splice(nodes.end(), spare, spare.begin());
    return appended;
}

/// Gathers the node added last into its bus, if it is a bit; returns the bus when it is new. Buses are known
/// by base name for the whole file: the bits of a later cell widen the bus of the cell where the name came
/// first.
template <class Bus, class Node>
Bus* MrcDumpReader::gather(BusMap<Bus>& buses, std::list<Node*>& nodes) {
    Node const& bit = *nodes.back();
    std::string base;
    if (!TovBusNode::isBusType(bit.name_, &base)) return nullptr;
    auto const [at, isNew] = buses.try_emplace(std::move(base), nullptr);
    if (isNew) return at->second = append(nodes, std::make_unique<Bus>(bit.name_, bit.type(), bit.parent()));
    at->second->addToBus(bit.name_);
    return nullptr;
}

/// Reads a list whose items are told apart by their type alone.
template <class Node>
void MrcDumpReader::readNodes(QStringView item, Coding const& type, std::list<Node*>& nodes, TovNode* parent) {
    readItems(item, type, [&](std::string itemName, int value) {
        append(nodes, std::make_unique<Node>(std::move(itemName), static_cast<TovObjType>(value), parent));
    });
}

/// Reads a list element: calls `add` with the name and the coded attribute of every `item` whose end tag is
/// there; an item that the end of input cuts off is dropped.
template <class Add>
void MrcDumpReader::readItems(QStringView item, Coding const& coding, Add add) {
    while (nextChild()) {
        if (name() != item) {
            skipElement();
            continue;
        }
        auto const read = [&](QXmlStreamAttributes const& attributes) {
            return std::pair(latin1Of(attributes, u"name"_v), numberOf(attributes, coding));
        };
        auto [itemName, value] = read(attributes());
        skipElement();
        if (tokenType() == EndElement) add(std::move(itemName), value);
    }
}

}  // namespace kiri::tov::impl_detail
