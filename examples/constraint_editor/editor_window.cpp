// The window, and how its user edits commands; how files are opened and saved stands in editor_files.cpp.

#include "editor_window.h"

using namespace kiri::tov;

// Takes the command out of row `from` and puts `cmd`, or else that command, into row `to`; -1 is no row. From a row to
// itself, the command changes places with `cmd`, or is switched on or off. The way back is the same from `to` to
// `from`.
class EditorWindow::Edit : public QUndoCommand {
public:
    Edit(EditorWindow& window, int from, int to, std::unique_ptr<TovCmd> cmd = nullptr)
        : window_(window), kind_(window.kind_), from_(from), to_(to), cmd_(std::move(cmd)) {}

    void redo() override {
        CommandModel& model = window_.models_[kind_];
        if (from_ == to_) {
            model.change(to_, cmd_);
        } else {
            std::unique_ptr<TovCmd> in = std::move(cmd_);
            if (from_ >= 0) cmd_ = model.take(from_);
            if (to_ >= 0) model.insert(to_, std::move(in ? in : cmd_));
        }
        window_.noteChange(kind_, to_ < 0 ? from_ : to_);
        std::swap(from_, to_);
    }

    void undo() override { redo(); }

private:
    EditorWindow& window_;
    int kind_, from_, to_;
    std::unique_ptr<TovCmd> cmd_;  // while it is out of the document
};

struct LineValidator : QValidator {
    LineValidator(QObject* parent, std::function<bool(QString const&)> test)
        : QValidator(parent), accepts(std::move(test)) {}
    State validate(QString& line, int&) const override { return accepts(line) ? Acceptable : Intermediate; }
    std::function<bool(QString const&)> accepts;
};

EditorWindow::EditorWindow() {
    tell = [this](QString const& sentence) { QMessageBox::warning(this, "Constraint editor", sentence); };
    ask = [this](QString const& question) {
        return QMessageBox::question(this, "Constraint editor", question,
                                     QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
    };
    for (CommandModel& model : models_) {
        model.edit = [this, &model](int row, QVariant const& value, int role) {
            QString const line = value.toString();
            std::unique_ptr<TovCmd> cmd = role == Qt::EditRole ? readCommand(kind_, line) : nullptr;
            bool const isEdit = role == Qt::CheckStateRole || (cmd && line != model.line(row));
            if (isEdit) undo_.push(new Edit(*this, row, row, std::move(cmd)));
            return isEdit;
        };
        model.remarksOn = [this, &model](int row) {
            return row == typedRow_ ? typedRemarks_ : remarksOn(model.line(row), &model.command(row));
        };
    }
    for (Kind const& kind : kinds) kindList_->addItem(kind.title);
    table_->setRootIsDecorated(false);
    table_->setUniformRowHeights(true);
    table_->setAlternatingRowColors(true);
    table_->setEditTriggers(QTreeView::NoEditTriggers);
    auto* const splitter = new QSplitter;
    for (QWidget* part : std::initializer_list<QWidget*>{kindList_, table_, makeDesignPane()})
        splitter->addWidget(part);
    splitter->setSizes({150, 900, 190});
    setCentralWidget(splitter);
    makeMenus();
    connect(kindList_, &QListWidget::currentRowChanged, this, [this](int kind) {
        kind_ = kind;
        QItemSelectionModel* const selection = table_->selectionModel();
        table_->setModel(&models_[kind]);
        delete selection;
        table_->setColumnWidth(CommandModel::lineColumn, 560);
    });
    connect(table_, &QTreeView::doubleClicked, this, [this] { editLine(); });
    connect(table_->itemDelegate(), &QAbstractItemDelegate::closeEditor, this, [this](QWidget* editor) {
        auto const* const line = qobject_cast<QLineEdit*>(editor);
        if (line == nullptr) return;  // the window is being destroyed
        if (!line->hasAcceptableInput()) statusBar()->showMessage("Not taken, as it is no command: " + line->text());
        typedRow_ = -1;
    });
    connect(&undo_, &QUndoStack::cleanChanged, this, [this](bool clean) { setWindowModified(!clean); });
    setDocument(std::make_unique<TOV>(), {});
    resize(1240, 600);
}

// The widgets use the members, and go first.
EditorWindow::~EditorWindow() {
    undo_.disconnect(this);
    delete centralWidget();
}

void EditorWindow::makeMenus() {
    // What is being typed is taken over before anything else is done.
    auto const add = [this](QMenu* menu, char const* text, QKeySequence const& keys, std::function<void()> const& run) {
        QAction* const action = menu->addAction(text);
        action->setObjectName(QString(text).remove('&'));
        action->setShortcut(keys);
        connect(action, &QAction::triggered, this, [this, run] {
            if (takeTyped()) withMemory([&run] { return run(), true; });
        });
        return action;
    };
    QMenu* const file = menuBar()->addMenu("&File");
    add(file, "&Open...", QKeySequence::Open, [this] {
        QString const path = QFileDialog::getOpenFileName(this, "Open constraints or a design dump (.xml)", path_);
        if (!path.isEmpty()) open(path);
    });
    add(file, "&Save", QKeySequence::Save, [this] { save(path_); });
    add(file, "Save &as...", QKeySequence::SaveAs, [this] { save({}); });
    add(file, "&Quit", QKeySequence::Quit, [this] { close(); });

    QMenu* const edit = menuBar()->addMenu("&Edit");
    QToolBar* const bar = addToolBar("Edit");
    auto const addEdit = [this, add, edit, bar](char const* text, QKeySequence const& keys, auto run) {
        bar->addAction(add(edit, text, keys, [this, run] {
            run();
            showRow(changedKind_, changedRow_);
        }));
    };
    addEdit("&Undo", QKeySequence::Undo, [this] { undo_.undo(); });
    addEdit("&Redo", QKeySequence::Redo, [this] { undo_.redo(); });
    addEdit("&Add", {"Ctrl+Return"}, [this] {
        undo_.push(new Edit(*this, -1, row() + 1, readCommand(kind_, kinds[kind_].newLine)));
        showRow(changedKind_, changedRow_);
        editLine();
    });
    addEdit("Re&move", QKeySequence::Delete, [this] {
        if (row() >= 0) undo_.push(new Edit(*this, row(), -1));
    });
    addEdit("Move u&p", {"Alt+Up"}, [this] {
        if (row() > 0) undo_.push(new Edit(*this, row(), row() - 1));
    });
    addEdit("Move &down", {"Alt+Down"}, [this] {
        if (row() + 1 < models_[kind_].rowCount()) undo_.push(new Edit(*this, row(), row() + 1));
    });
    auto* const search = new QLineEdit;
    search->setObjectName("search");
    search->setPlaceholderText("Search all commands");
    bar->addWidget(search);
    connect(search, &QLineEdit::returnPressed, this, [this, search] { findNext(search->text()); });
    add(edit, "&Edit the line", {"F2"}, [this] { editLine(); });
    add(edit, "&Find", QKeySequence::Find, [search] { search->setFocus(); });
    add(edit, "Find &next", QKeySequence::FindNext, [this, search] { findNext(search->text()); });
}

void EditorWindow::showRow(int kind, int row) {
    kindList_->setCurrentRow(kind);
    int const last = models_[kind].rowCount() - 1;
    table_->setCurrentIndex(models_[kind].index(std::min(row, last), CommandModel::lineColumn));
}

// What is typed is judged at each key, and only a line that is a command is taken.
void EditorWindow::editLine() {
    if (row() < 0) return;
    table_->edit(models_[kind_].index(row(), CommandModel::lineColumn));
    typing()->setMaxLength(std::numeric_limits<int>::max());
    typing()->setValidator(new LineValidator(typing(), [this, row = row()](QString const& line) {
        std::unique_ptr<TovCmd> const cmd = readCommand(kind_, line);
        typedRow_ = row;
        typedRemarks_ = remarksOn(line, cmd.get());
        table_->viewport()->update();
        return cmd != nullptr;
    }));
    typing()->end(false);
}

QString EditorWindow::remarksOn(QString const& line, TovCmd* cmd) const {
    QStringList remarks(findingsIn(line));
    if (cmd == nullptr) remarks << QString("not one of the %1").arg(kinds[kind_].title).toLower();
    if (cmd != nullptr && names_) {
        for (auto const& [type, name] : names_->missingIn(*cmd)) remarks << "not in the design: " + toText(name);
    }
    remarks.removeAll({});
    return remarks.join("; ");
}

// False, and the user is told, while a line is being typed that is no command.
bool EditorWindow::takeTyped() {
    QLineEdit* const editor = typing();
    if (editor == nullptr) return true;
    if (!editor->hasAcceptableInput()) return refuse("What you are typing is no command: " + typedRemarks_);
    emit table_->itemDelegate()->commitData(editor);
    emit table_->itemDelegate()->closeEditor(editor);
    return true;
}

void EditorWindow::noteChange(int kind, int row) {
    changedKind_ = kind;
    changedRow_ = row;
    kindList_->item(kind)->setText(QString("%1 (%2)").arg(kinds[kind].title).arg(models_[kind].rowCount()));
    if (kind < TOVCMD_GENCLOCK) takeClocks();
}

void EditorWindow::findNext(QString const& text) {
    int kind = kind_, at = row() + 1;
    for (int visited = 0; visited <= kindCount; ++visited, kind = (kind + 1) % kindCount, at = 0) {
        for (; at < models_[kind].rowCount(); ++at) {
            if (models_[kind].line(at).contains(text)) return showRow(kind, at);
        }
    }
    statusBar()->showMessage("No command has this text", 5000);
}
