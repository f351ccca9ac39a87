// The menus, and what their actions do.

#include <numeric>

#include "edit.h"
#include "widgets.h"

using namespace kiri::tov;

QAction* EditorWindow::addAction(QMenu* menu, char const* text, QKeySequence const& keys, std::function<void()> run,
                                 Enabled enabled) {
    QAction* const action = menu->addAction(text);
    action->setObjectName(QString(text).remove('&').remove("..."));
    action->setShortcut(keys);
    connect(action, &QAction::triggered, this, [this, run = std::move(run), enabled] {
        withMemory([&] {
            if (enabled == nullptr || enabled()) run();
            return true;
        });
        tidy();
    });
    actions_.emplace_back(action, std::move(enabled));
    return action;
}

void EditorWindow::makeFileMenu() {
    QMenu* const file = menuBar()->addMenu("&File");
    addAction(file, "&New", QKeySequence::New, [this] {
        if (mayDiscard()) setDocument(std::make_unique<Document>(std::make_unique<TOV>(), names()), {});
    });
    addAction(file, "&Open...", QKeySequence::Open, [this] {
        QString const path = askForFile(false);
        if (!path.isEmpty()) open(path);
    });
    recent_ = file->addMenu("Open &recent");
    connect(recent_, &QMenu::aboutToShow, this, [this] { showRecentFiles(); });
    addAction(
        file, "Re&load", QKeySequence::Refresh,
        [this] {
            if (mayDiscard() && !path_.isEmpty()) openDocument(path_);
        },
        [this] { return !path_.isEmpty(); });
    file->addSeparator();
    addAction(file, "&Save", QKeySequence::Save, [this] { save(path_); });
    addAction(file, "Save &as...", QKeySequence::SaveAs, [this] { save({}); });
    file->addSeparator();
    addAction(file, "&Quit", QKeySequence::Quit, [this] { close(); });
}

void EditorWindow::showRecentFiles() {
    recent_->clear();
    QSettings const settings(QSettings::IniFormat, QSettings::UserScope, "toveng", "constraint_editor");
    for (QString const& path : settings.value("recent").toStringList())
        connect(recent_->addAction(path), &QAction::triggered, this, [this, path] { open(path); });
    recent_->setToolTipsVisible(true);
    if (recent_->isEmpty()) recent_->addAction("None")->setEnabled(false);
}

bool EditorWindow::isInTable() const {
    return focus_ != nullptr && (focus_ == table_ || table_->isAncestorOf(focus_));
}

bool EditorWindow::hasSelection() const {
    return isInTable() && table_->selectionModel()->hasSelection();
}

bool EditorWindow::canMove(int step) const {
    if (!hasSelection() || model_.isFiltered()) return false;
    int first = model_.rowCount(), last = 0;
    for (QItemSelectionRange const& range : table_->selectionModel()->selection()) {
        first = std::min(first, range.top());
        last = std::max(last, range.bottom());
    }
    return step < 0 ? first > 0 : last + 1 < model_.rowCount();
}

// Where a text is edited, its own cut, copy and so on are meant; of these an action has the slot's name. Else what is
// being typed is taken first, which may change the selection: whether the action can do something is asked after it.
void EditorWindow::makeEditMenu() {
    auto const line = [this] { return qobject_cast<QLineEdit*>(focus_.data()); };
    auto const always = [this] { return isInTable(); };
    auto const some = [this] { return hasSelection(); };
    auto const one = [this] { return isInTable() && !typing_ && current().row >= 0; };
    auto const canPaste = [this] { return isInTable() && !QGuiApplication::clipboard()->text().isEmpty(); };
    auto const hasText = [line] { return line()->hasSelectedText(); };
    struct {
        char const* text;
        QKeySequence keys;
        std::function<void()> run;
        Enabled enabled;
        bool isInBar = false;
        char const* slot = nullptr;
        Enabled enabledInText = {};
    } const rows[] = {
        {"&Undo", QKeySequence::Undo, [this] { undo_.undo(); }, [this] { return undo_.canUndo(); }, true, "undo",
         [line] { return line()->isUndoAvailable(); }},
        {"&Redo", QKeySequence::Redo, [this] { undo_.redo(); }, [this] { return undo_.canRedo(); }, true, "redo",
         [line] { return line()->isRedoAvailable(); }},
        {"Cu&t", QKeySequence::Cut, [this] { copy(), remove(); }, some, false, "cut", hasText},
        {"&Copy", QKeySequence::Copy, [this] { copy(); }, some, false, "copy", hasText},
        {"&Paste", QKeySequence::Paste, [this] { paste(); }, canPaste, false, "paste", [] { return true; }},
        {"Select a&ll", QKeySequence::SelectAll, [this] { table_->selectAll(); }, always, false, "selectAll",
         [] { return true; }},
        {"Dup&licate", {"Ctrl+D"}, [this] { duplicate(); }, some},
        {"&Add", {"Ctrl+Return"}, [this] { add(); }, always, true},
        {"Re&move", QKeySequence::Delete, [this] { remove(); }, some, true},
        {"Move u&p", {"Alt+Up"}, [this] { move(-1); }, [this] { return canMove(-1); }, true},
        {"Move &down", {"Alt+Down"}, [this] { move(1); }, [this] { return canMove(1); }, true},
        {"&Edit the line", {"F2"}, [this] { editLine(); }, one},
        {"&Give up what is typed",
         {},
         [this] { dropDraft(); },
         [this, one] { return one() && document_->isDraft(current()); }},
        {"En&able or disable",
         {"Ctrl+E"},
         [this] { toggle(); },
         [this] { return hasSelection() && model_.kind() < commandKinds; }},
    };
    QMenu* const edit = menuBar()->addMenu("&Edit");
    QToolBar* const bar = addToolBar("Edit");
    bar->setObjectName("bar");
    for (auto const& row : rows) {
        auto const run = [this, line, row] {
            if (row.slot != nullptr && line() != nullptr) {
                QMetaObject::invokeMethod(line(), row.slot);
                return;
            }
            takeTyped();
            if (row.enabled()) row.run();
        };
        auto const enabled = [line, row] {
            return row.slot != nullptr && line() != nullptr ? row.enabledInText() : row.enabled();
        };
        QAction* const action = addAction(edit, row.text, row.keys, run, enabled);
        if (row.slot == nullptr) action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
        table_->addAction(action);
        if (row.isInBar) bar->addAction(action);
    }
}

void EditorWindow::makeFindBar() {
    QMenu* const menu = menuBar()->addMenu("F&ind");
    auto* const bar = findChild<QToolBar*>("bar");
    setNames(search_, "search", "Text to find");
    search_->setPlaceholderText("Find in all lines");
    search_->setMaximumWidth(260);
    found_->setObjectName("found");
    bar->addSeparator();
    bar->addWidget(search_);
    bar->addWidget(withCase_);
    auto const wanted = [this] { return !search_->text().isEmpty(); };
    auto const remarked = [this] { return document_ && document_->remarkCount() > 0; };
    addAction(menu, "&Find", QKeySequence::Find, [this] {
        search_->setFocus();
        search_->selectAll();
    });
    bar->addAction(addAction(
        menu, "Find pre&vious", QKeySequence::FindPrevious, [this] { find(true); }, wanted));
    bar->addAction(addAction(
        menu, "Find &next", QKeySequence::FindNext, [this] { find(false); }, wanted));
    bar->addWidget(found_);
    addAction(menu, "Fi&lter the lines", {"Ctrl+L"}, [this] { filter_->setFocus(); });
    menu->addSeparator();
    addAction(
        menu, "&Previous remark", {"Shift+F8"}, [this] { findRemark(true); }, remarked);
    addAction(
        menu, "Next &remark", {"F8"}, [this] { findRemark(false); }, remarked);
    auto const restart = [this] {
        restartCount();
        tidy();
    };
    connect(search_, &QLineEdit::textChanged, this, restart);
    connect(withCase_, &QCheckBox::toggled, this, restart);
    connect(search_, &QLineEdit::returnPressed, this, [this] {
        if (!search_->text().isEmpty()) find(false);
    });
}

Document::Place EditorWindow::current() const {
    QModelIndex const index = table_->currentIndex();
    return {model_.kind(), index.isValid() ? model_.documentRow(index.row()) : -1};
}

std::vector<int> EditorWindow::selectedRows() const {
    std::vector<int> rows;
    for (QItemSelectionRange const& range : table_->selectionModel()->selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row) rows.push_back(model_.documentRow(row));
    }
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}

static std::vector<int> rowsFrom(int first, std::size_t count) {
    std::vector<int> rows(count);
    std::iota(rows.begin(), rows.end(), first);
    return rows;
}

// The new row is no part of the document's history before something is typed in it.
void EditorWindow::add() {
    filter_->clear();
    int const row = current().row + 1;
    int found = 0;
    Document::Commands cmds;
    cmds.push_back(readLine(kinds[model_.kind()].newLine, found));
    model_.beginChange();
    document_->insert(model_.kind(), {row}, std::move(cmds));
    model_.endChange();
    showCounts();
    showPlace({model_.kind(), row});
    editLine();
    addedRow_ = row;
    if (typing_)
        typing_->selectAll();
    else
        dropAdded();
}

void EditorWindow::copy() {
    QStringList lines;
    for (int const row : selectedRows()) lines << document_->text({model_.kind(), row});
    QGuiApplication::clipboard()->setText(lines.join('\n'));
}

// Pasted lines come into the lists of their kinds, as a load puts them there.
void EditorWindow::paste() {
    Document::Commands cmds[kindCount];
    QStringList refused;
    std::vector<TovFinding> findings;
    int const comments = std::max(commentKind, model_.kind());
    for (QString const& text : QGuiApplication::clipboard()->text().split('\n')) {
        std::string const line = toBytes(text);
        int kind = -1;
        std::unique_ptr<TovCmd> cmd = readLine(line, kind);
        for (TovFinding const& finding : checkTovLine(line)) findings.push_back(finding);
        if (kind >= 0) cmds[kind == commentKind ? comments : kind].push_back(std::move(cmd));
    }
    if (!acceptLoss("The pasted text has what a save does not keep. Paste it?", findings)) return;
    undo_.beginMacro("paste");
    int const shown = model_.kind();
    std::vector<int> const selected = selectedRows();
    int const below = selected.empty() ? current().row + 1 : selected.back() + 1;
    for (int kind = 0; kind < kindCount; ++kind) {
        if (cmds[kind].empty()) continue;
        int const at = kind == shown ? below : document_->count(kind);
        std::vector<int> rows = rowsFrom(at, cmds[kind].size());
        undo_.push(new Edit(*this, "paste", kind, {}, std::move(rows), std::move(cmds[kind])));
    }
    undo_.endMacro();
}

void EditorWindow::duplicate() {
    std::vector<int> const rows = selectedRows();
    Document::Commands copies;
    for (int const row : rows) {
        int kind = 0;
        Document::Place const at = {model_.kind(), row};
        copies.push_back(readLine(document_->savedLine(at), kind));
        if (!copies.back()) return void(refuse("This line cannot be read back: " + document_->text(at)));
        copies.back()->note = document_->command(at).note;
    }
    std::vector<int> below = rowsFrom(rows.back() + 1, rows.size());
    undo_.push(new Edit(*this, "duplicate", model_.kind(), {}, std::move(below), std::move(copies)));
}

void EditorWindow::remove() {
    undo_.push(new Edit(*this, "remove", model_.kind(), selectedRows(), {}));
}

void EditorWindow::move(int step) {
    std::vector<int> const from = selectedRows();
    std::vector<int> to = from;
    for (int& row : to) row += step;
    undo_.push(new Edit(*this, "move", model_.kind(), from, std::move(to)));
}

void EditorWindow::toggle() {
    std::vector<int> const rows = selectedRows();
    std::vector<Edit::State> states;
    states.reserve(rows.size());
    for (int const row : rows) {
        TovCmd const& cmd = document_->command({model_.kind(), row});
        states.push_back({!cmd.enabled, cmd.note});
    }
    undo_.push(Edit::states(*this, "switching", model_.kind(), rows, std::move(states)));
}

void EditorWindow::dropDraft() {
    Document::Place const at = current();
    undo_.push(Edit::states(*this, "giving up", at.kind, {at.row}, {{document_->command(at).enabled, {}}}));
}

bool EditorWindow::isFound(Document::Place place) const {
    return document_->text(place).contains(search_->text(),
                                           withCase_->isChecked() ? Qt::CaseSensitive : Qt::CaseInsensitive);
}

void EditorWindow::find(bool backwards) {
    QWidget* const focus = focusWidget();
    takeTyped();
    Document::Place from = current();
    if (!backwards) ++from.row;
    auto const place = document_->search(from, backwards, [this](Document::Place at) { return isFound(at); });
    if (!place) return statusBar()->showMessage("No line has this text", 5000);
    showPlace(*place);
    if (focus == search_) search_->setFocus();
}

void EditorWindow::findRemark(bool backwards) {
    takeTyped();
    Document::Place from = current();
    if (!backwards) ++from.row;
    auto const hasRemark = [this](Document::Place at) { return !document_->remark(at).isEmpty(); };
    if (auto const place = document_->search(from, backwards, hasRemark)) showPlace(*place);
}

void EditorWindow::restartCount() {
    foundAt_ = {};
    foundCount_ = 0;
    work_.start();
}

// Counts in slices what is found.
void EditorWindow::countFound() {
    QDeadlineTimer const deadline(10);
    bool const isWanted = !search_->text().isEmpty();
    for (; foundAt_.kind < kindCount && isWanted; ++foundAt_.kind, foundAt_.row = 0) {
        for (; foundAt_.row < document_->count(foundAt_.kind); ++foundAt_.row) {
            if (foundAt_.row % 64 == 63 && deadline.hasExpired()) return;
            foundCount_ += isFound(foundAt_) ? 1 : 0;
        }
    }
    foundAt_.kind = kindCount;
    found_->setText(isWanted ? QString("%1 found").arg(foundCount_) : QString());
}
