#include "design_pane.h"

#include <cstring>
#include <future>
#include <list>

#include "document.h"
#include "widgets.h"

using namespace kiri::tov;

namespace {

using Nodes = std::vector<TovNode const*>;

template <class Node, std::size_t (TovDesign::*query)(std::list<Node*>&) const>
Nodes nodesOf(TovDesign const& design) {
    std::list<Node*> nodes;
    (design.*query)(nodes);
    return Nodes(nodes.begin(), nodes.end());
}

bool isRegister(TovNode const* node) {
    return static_cast<TovCellNode const*>(node)->cellType() == CELL_REG;
}

// Objects without a type of reference are known to no query: a constraint has their names alone.
struct ObjectKind {
    char const* title;
    char const* words;
    taDciObjTyp type;
    Nodes (*nodes)(TovDesign const&);
};

constexpr ObjectKind objectKinds[] = {
    {"Ports", "[ get_ports { %1 } ]", taDciObjPort, nodesOf<TovPortNode, &TovDesign::getPorts>},
    {"Pins", "[ get_pins { %1 } ]", taDciObjPin, nodesOf<TovPortNode, &TovDesign::getPins>},
    {"Nets", "[ get_nets { %1 } ]", taDciObjNet, nodesOf<TovNetNode, &TovDesign::getNets>},
    {"Cells", "[ get_cells { %1 } ]", taDciObjCell, nodesOf<TovCellNode, &TovDesign::getCells>},
    {"Registers", "[ get_cells { %1 } ]", taDciObjCell, nodesOf<TovCellNode, &TovDesign::getRegs>},
    {"Clocks", "[ get_clocks { %1 } ]", taDciObjClock, nodesOf<TovClockNode, &TovDesign::getClocks>},
    {"Views", "%1", taDciObjName, nodesOf<TovViewNode, &TovDesign::getViews>},
    {"RAMs", "%1", taDciObjName, nodesOf<TovRamNode, &TovDesign::getRams>},
    {"ROMs", "%1", taDciObjName, nodesOf<TovRomNode, &TovDesign::getRoms>},
    {"Multipliers", "%1", taDciObjName, nodesOf<TovMultNode, &TovDesign::getMults>},
};
constexpr int registers = 4;

}  // namespace

// The nodes of a kind, of which the filter shows some. All names are in one text, each with a NUL after it, for one
// search.
class DesignPane::Model : public QAbstractListModel {
public:
    // What is made in a thread, and then shown: the nodes of a kind, and the names of the first of them.
    struct Names {
        Nodes nodes;
        std::string text;
        std::vector<std::size_t> ends;
    };

    static std::string nameOf(Design const& design, ObjectKind const& kind, TovNode const& node) {
        return kind.type == taDciObjName ? node.name() : design.names->nameOf(node);
    }

    // Keeps the names made so far if it is stopped.
    static void make(Names& names, Design const& design, ObjectKind const& kind, TovProgress const& progress) {
        names.nodes = kind.nodes(design.nodes);
        std::size_t const count = names.nodes.size();
        names.ends.reserve(count);
        for (TovNode const* node : names.nodes) {
            names.text += nameOf(design, kind, *node);
            names.text += '\0';
            names.ends.push_back(names.text.size());
            if (names.ends.size() % 4096 == 0 && !progress(names.ends.size(), count)) return;
        }
    }

    void show(std::shared_ptr<Design const> design, int kind, Names names) {
        beginResetModel();
        design_ = std::move(design);
        kind_ = kind;
        names_ = std::move(names);
        names_.text.resize(names_.ends.empty() ? 0 : names_.ends.back());
        restart();
        endResetModel();
    }

    void setFilter(std::string filter) {
        beginResetModel();
        filter_ = std::move(filter);
        restart();
        endResetModel();
    }

    // Finds more until the time is over; false if there is no more. As each layout of the view takes all rows, the
    // rows come in parts that grow with them.
    bool goOn(std::chrono::milliseconds time) {
        if (!isFound_ && isPattern())
            findPattern(time);
        else if (!isFound_)
            search(QDeadlineTimer(time));
        if (found_.empty() || (!isFound_ && found_.size() < shown_.size())) return !isFound_;
        beginInsertRows({}, rowCount(), rowCount() + static_cast<int>(found_.size()) - 1);
        shown_.insert(shown_.end(), found_.begin(), found_.end());
        endInsertRows();
        found_.clear();
        return !isFound_;
    }

    std::size_t total() const { return names_.nodes.size(); }
    TovNode const* node(QModelIndex const& index) const {
        return index.isValid() ? shown_[static_cast<std::size_t>(index.row())] : nullptr;
    }
    int rowCount(QModelIndex const& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(shown_.size());
    }
    QVariant data(QModelIndex const& index, int role) const override {
        if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::ToolTipRole)) return {};
        return toText(nameOf(*design_, objectKinds[kind_], *node(index)));
    }

private:
    bool isPattern() const {
        return design_ && filter_.find_first_of("*?") != std::string::npos && objectKinds[kind_].type != taDciObjName;
    }

    void restart() {
        isOutdated_ = finding_.valid();
        found_.clear();
        shown_.clear();
        searched_ = 0;
        isFound_ = filter_.empty();
        if (isFound_)
            shown_.assign(names_.nodes.begin(), names_.nodes.begin() + static_cast<std::ptrdiff_t>(names_.ends.size()));
    }

    void search(QDeadlineTimer const& deadline) {
        std::size_t const count = names_.ends.size();
        while (searched_ < count && !deadline.hasExpired()) searchTo(std::min(searched_ + 4096, count));
        isFound_ = searched_ == count;
    }

    void searchTo(std::size_t last) {
        char const* const text = names_.text.data();
        for (; searched_ < last; ++searched_) {
            std::size_t const begin = searched_ == 0 ? 0 : names_.ends[searched_ - 1];
            void const* const place =
                ::memmem(text + begin, names_.ends[last - 1] - begin, filter_.data(), filter_.size());
            if (place == nullptr) break;
            auto const ends = names_.ends.begin();
            auto const at = static_cast<std::size_t>(static_cast<char const*>(place) - text);
            searched_ = static_cast<std::size_t>(std::upper_bound(ends + static_cast<std::ptrdiff_t>(searched_),
                                                                  ends + static_cast<std::ptrdiff_t>(last), at) -
                                                 ends);
            found_.push_back(names_.nodes[searched_]);
        }
        searched_ = last;
    }

    // A thread looks a pattern up. None can be stopped: the one for the next pattern starts when it ends.
    void findPattern(std::chrono::milliseconds time) {
        if (!finding_.valid()) {
            finding_ = std::async(std::launch::async, [design = design_, kind = kind_, pattern = filter_] {
                Nodes nodes;
                design->names->find(objectKinds[kind].type, pattern, nodes);
                auto const isOther = [](TovNode const* node) { return !isRegister(node); };
                if (kind == registers) nodes.erase(std::remove_if(nodes.begin(), nodes.end(), isOther), nodes.end());
                return nodes;
            });
        }
        if (finding_.wait_for(time) != std::future_status::ready) return;
        Nodes nodes = finding_.get();
        if (std::exchange(isOutdated_, false)) return;
        found_ = std::move(nodes);
        isFound_ = true;
    }

    std::shared_ptr<Design const> design_;
    int kind_ = 0;
    Names names_;
    std::string filter_;
    Nodes found_, shown_;
    bool isFound_ = true;       // nothing is left to be found
    std::size_t searched_ = 0;  // of the names
    std::future<Nodes> finding_;
    bool isOutdated_ = false;  // what finding_ finds
};

DesignPane::DesignPane() : model_(std::make_unique<Model>()) {
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    for (QWidget* widget : std::initializer_list<QWidget*>{title_, kind_, filter_, count_, objects_, commandsTitle_})
        layout->addWidget(widget);
    layout->addWidget(commands_);
    layout->setStretchFactor(objects_, 3);
    layout->setStretchFactor(commands_, 1);
    for (ObjectKind const& objects : objectKinds) kind_->addItem(objects.title);
    setNames(kind_, "objectKind", "Kind of objects");
    setNames(filter_, "objectFilter", "Filter of objects");
    filter_->setPlaceholderText("Filter: a part of a name, or a pattern");
    filter_->setToolTip("With * or ?: the objects that a constraint reaches by this word");
    filter_->setClearButtonEnabled(true);
    setNames(objects_, "objects", "Objects of the design");
    objects_->setModel(model_.get());
    objects_->setUniformItemSizes(true);
    objects_->setFocusPolicy(Qt::TabFocus);  // so that a click leaves the line being edited open
    setNames(commands_, "commandsOfObject", "Commands that refer to the object");
    commands_->setUniformItemSizes(true);
    objects_->setLayoutMode(QListView::Batched);
    objects_->setBatchSize(20000);
    commandsTimer_.setSingleShot(true);
    findTimer_.setSingleShot(true);
    connect(kind_, QOverload<int>::of(&QComboBox::currentIndexChanged), this, [this] { list(); });
    connect(filter_, &QLineEdit::textChanged, this, [this](QString const& text) {
        model_->setFilter(toBytes(text));
        goOn();
    });
    connect(objects_, &QListView::activated, this, [this] { insertCurrent(); });
    connect(objects_->selectionModel(), &QItemSelectionModel::currentChanged, this, [this] { commandsChanged(); });
    connect(model_.get(), &QAbstractItemModel::modelReset, this, [this] { commandsChanged(); });
    connect(&findTimer_, &QTimer::timeout, this, [this] { goOn(); });
    connect(&commandsTimer_, &QTimer::timeout, this, [this] { showCommands(); });
    connect(commands_, &QListWidget::itemActivated, this, [this](QListWidgetItem const* item) {
        TovNode const* const node = model_->node(objects_->currentIndex());
        std::vector<TovCmd*> const commands = node == nullptr ? std::vector<TovCmd*>() : commandsOf(*node);
        auto const row = static_cast<std::size_t>(commands_->row(item));
        if (row < commands.size()) commandChosen(*commands[row]);
    });
    showCount();
    showCommands();
}

DesignPane::~DesignPane() = default;

void DesignPane::show(std::shared_ptr<Design const> design, Run run) {
    design_ = std::move(design);
    run_ = std::move(run);
    list();
}

// While a job runs, no node of another design or kind is shown. If the user cancels it, the names made so far are.
void DesignPane::list() {
    int const kind = kind_->currentIndex();
    Model::Names names;
    model_->show(design_, kind, {});
    goOn();
    if (!design_) return;
    run_(QString("Listing the %1").arg(QString(objectKinds[kind].title).toLower()),
         [&](TovProgress const& progress) { Model::make(names, *design_, objectKinds[kind], progress); });
    model_->show(design_, kind, std::move(names));
    goOn();
}

void DesignPane::goOn() {
    if (model_->goOn(std::chrono::milliseconds(10)))
        findTimer_.start(0);
    else
        findTimer_.stop();
    showCount();
}

void DesignPane::setFilter(int kind, QString const& text) {
    kind_->setCurrentIndex(kind);
    filter_->setText(text);
    while (!isIdle()) goOn();
    objects_->setCurrentIndex(model_->index(0));
}

void DesignPane::showCount() {
    title_->setText(design_ ? "Design: " + QFileInfo(design_->path).fileName() : "Design: no dump is open");
    count_->setText(QString("%1 of %2").arg(model_->rowCount()).arg(model_->total()));
}

void DesignPane::commandsChanged() {
    commandsTimer_.start(0);
}

void DesignPane::showCommands() {
    constexpr std::size_t most = 1000;  // items of a list that nobody reads to its end
    TovNode const* const node = model_->node(objects_->currentIndex());
    std::vector<TovCmd*> const commands = node == nullptr ? std::vector<TovCmd*>() : commandsOf(*node);
    commands_->clear();
    for (std::size_t i = 0; i < std::min(commands.size(), most); ++i)
        commands_->addItem(toText(commands[i]->toSaveString(nullptr)));
    commandsTitle_->setText(node == nullptr ? QString("No object is chosen")
                                            : QString("%1 commands refer to it").arg(commands.size()));
}

void DesignPane::insertCurrent() {
    QModelIndex const object = objects_->currentIndex();
    if (object.isValid()) wordsChosen(QString(objectKinds[kind_->currentIndex()].words).arg(object.data().toString()));
}
