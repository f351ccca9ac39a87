// The parts of the window, typing in the table, and the work in the background.

#include "editor_window.h"

#include "edit.h"
#include "widgets.h"

using namespace kiri::tov;

// A line that is typed in a row. Enter takes it, and so does a click elsewhere; Esc does not.
class EditorWindow::LineDelegate : public QStyledItemDelegate {
public:
    explicit LineDelegate(EditorWindow& window) : QStyledItemDelegate(&window), window_(window) {}

    QWidget* createEditor(QWidget* parent, QStyleOptionViewItem const&, QModelIndex const& index) const override {
        auto* const line = new QLineEdit(parent);
        line->setAccessibleName("Line");
        line->setFrame(false);
        line->setMaxLength(std::numeric_limits<int>::max());
        window_.startTyping(line, window_.model_.documentRow(index.row()));
        return line;
    }

    void destroyEditor(QWidget* editor, QModelIndex const& index) const override {
        window_.stopTyping();
        QStyledItemDelegate::destroyEditor(editor, index);
    }

private:
    EditorWindow& window_;
};

namespace {

// Takes no line ends: what is pasted stays one line.
struct OneLine : QValidator {
    using QValidator::QValidator;
    State validate(QString& text, int&) const override {
        for (QChar const end : {QChar('\n'), QChar('\r'), QChar(QChar::Null)}) text.replace(end, ' ');
        return Acceptable;
    }
};

QWidget* column(std::initializer_list<QWidget*> widgets) {
    auto* const part = new QWidget;
    auto* const layout = new QVBoxLayout(part);
    layout->setContentsMargins(0, 0, 0, 0);
    for (QWidget* widget : widgets) layout->addWidget(widget);
    return part;
}

}  // namespace

EditorWindow::EditorWindow() {
    tell = [this](QString const& sentence) { QMessageBox::warning(this, "Constraint editor", sentence); };
    ask = [this](QString const& question, QString const& details, QStringList const& answers) {
        QMessageBox box(QMessageBox::Question, "Constraint editor", question, QMessageBox::NoButton, this);
        box.setDetailedText(details);
        QList<QAbstractButton*> buttons;
        for (QString const& answer : answers) {
            bool const isLast = buttons.size() + 1 == answers.size();
            buttons << box.addButton(answer, isLast ? QMessageBox::RejectRole : QMessageBox::AcceptRole);
        }
        box.setDefaultButton(qobject_cast<QPushButton*>(buttons.first()));
        box.setEscapeButton(buttons.last());
        box.exec();
        return static_cast<int>(buttons.indexOf(box.clickedButton()));
    };
    askForFile = [this](bool forSave) {
        return forSave ? QFileDialog::getSaveFileName(this, "Save constraints", path_)
                       : QFileDialog::getOpenFileName(this, "Open constraints or a design dump", path_);
    };
    makeParts();
    makeFileMenu();
    makeEditMenu();
    makeFindBar();
    connectParts();
    setDocument(std::make_unique<Document>(std::make_unique<TOV>(), names()), {});
    QWidget* const order[] = {kinds_, filter_, table_, findings_->findChild<QTreeView*>(), search_, withCase_};
    for (std::size_t i = 1; i < std::size(order); ++i) setTabOrder(order[i - 1], order[i]);
    table_->setFocus();
    resize(1240, 720);
}

// The widgets use the members, and go first.
EditorWindow::~EditorWindow() {
    undo_.disconnect(this);
    qApp->disconnect(this);
    QGuiApplication::clipboard()->disconnect(this);
    work_.stop();
    delete centralWidget();
}

void EditorWindow::makeParts() {
    for (Kind const& kind : kinds) kinds_->addItem(kind.title);
    setNames(kinds_, "kinds", "Kinds of lines");
    setNames(filter_, "filter", "Filter of lines");
    filter_->setPlaceholderText("Filter the lines of this kind");
    filter_->setClearButtonEnabled(true);
    setNames(table_, "lines", "Lines");
    showAsTable(table_, model_);
    table_->setItemDelegate(new LineDelegate(*this));
    table_->setSelectionMode(QTreeView::ExtendedSelection);
    table_->setEditTriggers(QTreeView::NoEditTriggers);
    table_->setContextMenuPolicy(Qt::ActionsContextMenu);
    table_->setColumnWidth(CommandModel::lineColumn, 520);
    auto* const middle = new QSplitter(Qt::Vertical);
    middle->addWidget(column({filter_, table_}));
    middle->addWidget(findings_);
    middle->setSizes({450, 200});
    auto* const splitter = new QSplitter;
    for (QWidget* part : std::initializer_list<QWidget*>{kinds_, middle, design_}) splitter->addWidget(part);
    splitter->setSizes({230, 770, 240});
    splitter->setStretchFactor(1, 1);
    setCentralWidget(splitter);
    statusBar()->addPermanentWidget(counts_);
}

void EditorWindow::connectParts() {
    model_.edit = [this](int row, QVariant const& value, int role) { takeEdit(row, value, role); };
    connect(kinds_, &QListWidget::currentRowChanged, this, [this](int kind) { showKind(kind); });
    connect(filter_, &QLineEdit::textChanged, this, [this](QString const& text) {
        takeTyped();
        model_.setFilter(text);
        work_.start();
        showCounts();
    });
    connect(table_, &QTreeView::doubleClicked, this, [this] { editLine(); });
    connect(table_->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] { tidy(); });
    connect(table_->selectionModel(), &QItemSelectionModel::currentChanged, this, [this] { tidy(); });
    connect(&undo_, &QUndoStack::cleanChanged, this, [this](bool clean) { setWindowModified(!clean); });
    connect(&undo_, &QUndoStack::indexChanged, this, [this] { tidy(); });
    connect(qApp, &QApplication::focusChanged, this, [this] { tidy(); });
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this, [this] { tidy(); });
    connect(&work_, &QTimer::timeout, this, [this] { work(); });
    findings_->changed = [this] { showCounts(); };
    findings_->chosen = [this](std::size_t line) {
        takeTyped();
        std::optional<Document::Place> place;
        runJob("Looking for the line", [&](TovProgress const&) {
            place = document_->placeOfLine(QFile::encodeName(path_).toStdString(), line);
        });
        if (place)
            showPlace(*place);
        else
            statusBar()->showMessage("That line is not here any more", 5000);
    };
    design_->commandsOf = [this](TovNode const& node) { return document_->commandsOf(node); };
    design_->commandChosen = [this](TovCmd& cmd) {
        takeTyped();
        if (auto const place = document_->placeOf(cmd)) showPlace(*place);
    };
    design_->wordsChosen = [this](QString const& words) { insertWords(words); };
}

void EditorWindow::showKind(int kind) {
    takeTyped();
    model_.show(document_.get(), kind);
    if (model_.rowCount() > 0) table_->setCurrentIndex(model_.index(0, 0));
    tidy();
}

void EditorWindow::showPlace(Document::Place place) {
    if (place.kind != model_.kind()) kinds_->setCurrentRow(place.kind);
    if (model_.isFiltered() && place.row < document_->count(place.kind) && model_.rowOf(place.row) < 0)
        filter_->clear();
    int const row = model_.rowOf(std::min(place.row, document_->count(place.kind) - 1));
    table_->setCurrentIndex(model_.index(row, CommandModel::lineColumn));
    table_->setFocus();
}

// Shows what an edit has changed.
void EditorWindow::changed(int kind, std::vector<int> const& rows, bool inPlace) {
    showCounts();
    if (kind != model_.kind()) kinds_->setCurrentRow(kind);
    if (rows.size() == 1 && rows[0] < document_->count(kind)) document_->makeRemark({kind, rows[0]});
    remarksAt_ = {};
    restartCount();
    design_->commandsChanged();
    if (inPlace) emit model_.dataChanged(model_.index(0, 0), model_.index(model_.rowCount() - 1, 1));
    if (typing_ || rows.empty()) return;
    if (!inPlace) showPlace({kind, rows.front()});
    QItemSelection selection;
    for (std::size_t i = 0, first = 0; i < rows.size(); ++i) {
        bool const goesOn = i + 1 < rows.size() && rows[i + 1] == rows[i] + 1;
        if (goesOn) continue;
        int const top = model_.rowOf(rows[std::exchange(first, i + 1)]);
        int const bottom = model_.rowOf(rows[i]);
        if (top >= 0 && bottom >= top) selection.select(model_.index(top, 0), model_.index(bottom, 1));
    }
    if (!selection.isEmpty()) table_->selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
}

void EditorWindow::editLine() {
    dropAdded();
    QModelIndex const current = table_->currentIndex();
    if (!current.isValid() || typing_) return;
    QModelIndex const line = model_.index(current.row(), CommandModel::lineColumn);
    table_->setCurrentIndex(line);
    table_->edit(line);
    if (typing_) typing_->end(false);
}

void EditorWindow::startTyping(QLineEdit* line, int documentRow) {
    typing_ = line;
    line->setValidator(new OneLine(line));
    connect(line, &QLineEdit::textChanged, this, [this, line, documentRow](QString const& text) {
        if (!line->isModified()) return;  // the text of the row comes in
        model_.setTyped(documentRow, document_->remarkOn(text, model_.kind()));
    });
    connect(line, &QLineEdit::returnPressed, line, [line] { line->setModified(true); });
    connect(line, &QLineEdit::selectionChanged, this, [this] { tidy(); });
}

void EditorWindow::stopTyping() {
    typing_ = nullptr;
    model_.setTyped(-1, {});
    QTimer::singleShot(0, this, [this] { dropAdded(), tidy(); });
}

// What is being typed is taken over before anything else is done.
void EditorWindow::takeTyped() {
    if (QLineEdit* const line = typing_) {
        emit table_->itemDelegate()->commitData(line);
        emit table_->itemDelegate()->closeEditor(line);
    }
    dropAdded();
}

// A row that was added goes again if nothing was typed in it.
void EditorWindow::dropAdded() {
    if (addedRow_ < 0 || typing_) return;
    int const row = std::exchange(addedRow_, -1);
    model_.beginChange();
    document_->take(model_.kind(), {row});
    model_.endChange();
    showCounts();
    if (row > 0 || document_->count(model_.kind()) > 0) showPlace({model_.kind(), std::max(0, row - 1)});
}

void EditorWindow::takeEdit(int row, QVariant const& value, int role) {
    // A row that was added is no part of the history yet: rows after it would be counted wrongly.
    if (addedRow_ >= 0 && (role == Qt::CheckStateRole || row != addedRow_)) return;
    int const kind = model_.kind();
    Document::Place const at = {kind, row};
    bool const enabled = document_->command(at).enabled;
    if (role == Qt::CheckStateRole) {
        bool const wanted = value.toInt() != Qt::Unchecked;
        if (wanted != enabled)
            undo_.push(Edit::states(*this, "switching", kind, {row}, {{wanted, document_->command(at).note}}));
        return;
    }
    bool const isAdded = row == addedRow_;
    QString const text = value.toString();
    if (isAdded ? typing_ && !typing_->isModified() : text == document_->text(at)) return;
    std::string const line =
        toBytes(text, document_->isDraft(at) ? document_->command(at).note : document_->savedLine(at));
    if (line.find_first_not_of(" \t\v\f") == std::string::npos)
        return statusBar()->showMessage("An empty line is not taken", 5000);
    int found = -1;
    std::unique_ptr<TovCmd> cmd = readLine(line, found);
    if (found != std::min(kind, commentKind)) cmd = nullptr;
    if (!isAdded) {
        undo_.push(cmd ? Edit::exchange(*this, kind, row, std::move(cmd))
                       : Edit::states(*this, "typing", kind, {row}, {{enabled, line}}));
        return;
    }
    addedRow_ = -1;
    if (cmd)
        document_->exchange(at, cmd);
    else
        document_->command(at).note = line;
    undo_.push(Edit::addition(*this, kind, row));
    changed(kind, {row}, true);
}

void EditorWindow::insertWords(QString const& words) {
    editLine();
    if (typing_) typing_->insert(words);
}

// The actions that can do something now are enabled. A menu takes the focus from where its actions act.
void EditorWindow::tidy() {
    QWidget* const focus = focusWidget();
    bool const isPart = focus != nullptr && centralWidget()->isAncestorOf(focus);
    if (isPart || qobject_cast<QLineEdit*>(focus) != nullptr) focus_ = focus;
    for (auto const& [action, enabled] : actions_) action->setEnabled(enabled == nullptr || enabled());
}

void EditorWindow::showCounts() {
    int commands = 0;
    for (int kind = 0; kind < kindCount; ++kind) {
        if (kind < commandKinds) commands += document_->count(kind);
        kinds_->item(kind)->setText(QString("%1 (%2)").arg(kinds[kind].title).arg(document_->count(kind)));
    }
    int const comments = document_->count(commentKind) + document_->count(commentKind + 1);
    QString shown;
    if (model_.isFiltered()) shown = QString("%1 lines shown, ").arg(model_.rowCount());
    counts_->setText(shown + QString("%1 commands, %2 comments, %3 remarks, %4 findings")
                                 .arg(commands)
                                 .arg(comments)
                                 .arg(document_->remarkCount())
                                 .arg(findings_->findings().size()));
}

// A slice of the work that is done while the user does nothing: first for the rows in sight, then for all.
void EditorWindow::work() {
    QDeadlineTimer const deadline(10);
    bool const isFiltering = model_.goOn(deadline);
    auto const remark = [this](Document::Place at) {
        if (!document_->knowsRemark(at)) document_->makeRemark(at);
    };
    if (remarksAt_.kind < kindCount) {
        QModelIndex const top = table_->indexAt({0, 0});
        for (int row = std::max(0, top.row()); row < model_.rowCount() && !deadline.hasExpired(); ++row) {
            if (row > top.row() + 100) break;
            remark({model_.kind(), model_.documentRow(row)});
        }
    }
    for (; remarksAt_.kind < kindCount; ++remarksAt_.kind, remarksAt_.row = 0) {
        for (; remarksAt_.row < document_->count(remarksAt_.kind) && !deadline.hasExpired(); ++remarksAt_.row)
            remark(remarksAt_);
        if (deadline.hasExpired()) break;
    }
    countFound();
    bool const isCounting = foundAt_.kind < kindCount;
    if (!isFiltering && !isCounting && remarksAt_.kind == kindCount) work_.stop();
    table_->viewport()->update();
    showCounts();
    tidy();
}
