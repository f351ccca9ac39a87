// The pane of the design's objects: a choice of their kind, a filter, and their names.

#include <list>

#include "editor_window.h"

using namespace kiri::tov;

// A name as a constraint writes it: pins stand below their cell, and nets of cells have a hierarchy name.
template <class Node, std::size_t (TovDesign::*query)(std::list<Node*>&) const>
static QStringList namesOf(TovDesign const& design) {
    std::list<Node*> nodes;
    (design.*query)(nodes);
    QStringList names;
    for (Node* node : nodes) {
        std::string const name = node->type() == TOV_OBJ_NET ? node->hierachyName('/') : node->name();
        names << toText(node->type() == TOV_OBJ_PIN ? node->parent()->name() + '/' + name : name);
    }
    return names;
}

// Where there is no query for a kind, a constraint writes the name alone.
struct ObjectKind {
    char const* title;
    char const* words;
    QStringList (*names)(TovDesign const&);
};

constexpr ObjectKind objectKinds[] = {
    {"Ports", "[ get_ports { %1 } ]", namesOf<TovPortNode, &TovDesign::getPorts>},
    {"Pins", "[ get_pins { %1 } ]", namesOf<TovPortNode, &TovDesign::getPins>},
    {"Nets", "[ get_nets { %1 } ]", namesOf<TovNetNode, &TovDesign::getNets>},
    {"Cells", "[ get_cells { %1 } ]", namesOf<TovCellNode, &TovDesign::getCells>},
    {"Registers", "[ get_cells { %1 } ]", namesOf<TovCellNode, &TovDesign::getRegs>},
    {"Clocks", "[ get_clocks { %1 } ]", namesOf<TovClockNode, &TovDesign::getClocks>},
    {"Views", "%1", namesOf<TovViewNode, &TovDesign::getViews>},
    {"RAMs", "%1", namesOf<TovRamNode, &TovDesign::getRams>},
    {"ROMs", "%1", namesOf<TovRomNode, &TovDesign::getRoms>},
    {"Multipliers", "%1", namesOf<TovMultNode, &TovDesign::getMults>},
};

QWidget* EditorWindow::makeDesignPane() {
    auto* const pane = new QWidget;
    auto* const kind = new QComboBox;
    auto* const filter = new QLineEdit;
    auto* const list = new QListView;
    auto* const names = new QStringListModel(pane);
    auto* const filtered = new QSortFilterProxyModel(pane);
    auto* const layout = new QVBoxLayout(pane);
    layout->setContentsMargins(0, 0, 0, 0);
    for (QWidget* widget : std::initializer_list<QWidget*>{kind, filter, list}) layout->addWidget(widget);
    for (ObjectKind const& objects : objectKinds) kind->addItem(objects.title);
    filter->setPlaceholderText("Filter");
    filtered->setSourceModel(names);
    list->setObjectName("objects");
    list->setModel(filtered);
    list->setUniformItemSizes(true);
    list->setEditTriggers(QListView::NoEditTriggers);
    list->setFocusPolicy(Qt::NoFocus);  // so that the line being edited stays open
    showObjects_ = [this, kind, names] {
        if (design_) names->setStringList(objectKinds[kind->currentIndex()].names(*design_));
    };
    connect(kind, QOverload<int>::of(&QComboBox::currentIndexChanged), this, [this] { showObjects_(); });
    connect(filter, &QLineEdit::textChanged, filtered, &QSortFilterProxyModel::setFilterFixedString);
    connect(list, &QListView::doubleClicked, this, [this, kind](QModelIndex const& object) {
        if (typing() == nullptr) editLine();
        QString const words = objectKinds[kind->currentIndex()].words;
        if (typing() != nullptr) typing()->insert(words.arg(object.data().toString()));
    });
    return pane;
}
