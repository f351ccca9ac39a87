#pragma once

#include "model.h"

/// Work in a thread, shown as a button with its progress; a click cancels it. Only the result of the work started last
/// counts, and only if it was not cancelled.
class Job : public QPushButton {
public:
    /// What the window's thread does with the result.
    using Done = std::function<void()>;
    /// Runs in a thread, and stops soon after its progress function returns false.
    using Work = std::function<Done(TovProgress const&)>;

    /// `ended` is called in the window's thread when work is done or cancelled.
    explicit Job(Done ended) : ended_(std::move(ended)) {
        connect(this, &QPushButton::clicked, this, [this] { drop(), ended_(); });
        hide();
    }

    /// `title` has a placeholder for the percentage.
    void start(QString const& title, Work work) {
        drop();
        wanted_ = std::make_shared<std::atomic<bool>>(true);
        setText(title.arg(0));
        show();
        QThreadPool::globalInstance()->start(QRunnable::create([this, title, wanted = wanted_, work = std::move(work)] {
            Done done = work([&](std::uint64_t read, std::uint64_t size) {
                if (size != 0) post(wanted, [this, text = title.arg(100 * read / size)] { setText(text); });
                return wanted->load();
            });
            if (!*wanted) done = {};  // free an unwanted result in the thread
            post(wanted, [this, wanted, done] { finish(wanted, done); });
        }));
    }

    /// Cancels without a call of `ended`.
    void drop() {
        if (wanted_) *wanted_ = false;
        wanted_.reset();
        hide();
    }

    bool isRunning() const { return wanted_ != nullptr; }

private:
    using Wanted = std::shared_ptr<std::atomic<bool>>;

    void post(Wanted const& wanted, Done const& act) {
        auto const actIfWanted = [wanted, act] { *wanted ? act() : void(); };
        QMetaObject::invokeMethod(this, actIfWanted, Qt::QueuedConnection);
    }

    void finish(Wanted const& wanted, Done const& done) {
        if (QApplication::activeModalWidget() != nullptr)  // an open dialog must not see another document
            return QTimer::singleShot(50, this, [=] { post(wanted, [=] { finish(wanted, done); }); });
        drop();
        done();
        ended_();
    }

    Done ended_;
    Wanted wanted_;
};

/// The window: the commands and the fields of one of them, the design beside them, the findings below.
class Window : public QMainWindow {
public:
    Window()
        : commands_(undo_, [this](int row) { changed(row); }),
          fields_([this](std::size_t field, auto const& value) { return commands_.change(shown_, field, value); }) {
        for (Job** job : {&documentJob_, &lentJob_, &designJob_})
            statusBar()->addPermanentWidget(*job = new Job([this] { joinDesign(); }));
        makePanes();
        makeActions();
        updateState();
    }

    ~Window() override {
        undo_.disconnect(this);  // it emits signals in its destructor
        for (Job* job : {documentJob_, lentJob_, designJob_}) job->drop();
        QThreadPool::globalInstance()->waitForDone();
    }

    /// Opens a constraint file, or a dump if its first character is '<'. Asks before changes are lost.
    void open(QString const& path) {
        std::string const bytes = QFile::encodeName(path).toStdString();
        QFile file(path);
        if (bytes.empty() || !mayLeaveFields()) return;
        if (file.open(QIODevice::ReadOnly) && file.read(4096).trimmed().startsWith('<'))
            return read<Design const>(*designJob_, bytes, [this](auto design) { setDesign(design); });
        if (lentJob_->isRunning()) return tell("Wait until the document is available again.");
        // Until the file is read, the open document stays, but cannot be changed.
        keepChanges([=] { read<Document>(*documentJob_, bytes, [this](auto document) { setDocument(document); }); });
    }

private:
    using Then = std::function<void()>;

    void makePanes() {
        auto const split = [](Qt::Orientation orientation, QList<QWidget*> const& parts) {
            auto* const pane = new QSplitter(orientation);
            for (QWidget* part : parts) pane->addWidget(part);
            return pane;
        };
        auto* const left = split(Qt::Vertical, {table_, form_});
        auto* const right = split(Qt::Vertical, {tree_, commandsOfObject_});
        setCentralWidget(split(Qt::Vertical, {split(Qt::Horizontal, {left, right}), findings_}));
        table_->setModel(&commands_);
        form_->setModel(&fields_);
        form_->setItemDelegate(&delegate_);
        for (QTableView* view : {table_, form_}) view->horizontalHeader()->setStretchLastSection(true);
        tree_->setModel(&objects_);
        tree_->setUniformRowHeights(true);
        tree_->setSelectionMode(QAbstractItemView::ExtendedSelection);
        connect(table_->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
                [this](QModelIndex const& index) { select(index.row()); });
        connect(tree_->selectionModel(), &QItemSelectionModel::currentChanged, this,
                [this](QModelIndex const& index) { showCommandsOf(DesignModel::node(index)); });
        connect(commandsOfObject_, &QListWidget::itemClicked, this,
                [this](QListWidgetItem const* item) { select(item->data(Qt::UserRole).toInt()); });
        connect(findings_, &QTreeWidget::itemClicked, this, [this](QTreeWidgetItem* item, int column) {
            auto const index = static_cast<std::size_t>(findings_->indexOfTopLevelItem(item));
            if (!document_ || index >= document_->missing.size()) return;
            TovNameUse const missing = document_->missing[index];
            auto const& all = document_->commands;
            select(static_cast<int>(std::find(all.begin(), all.end(), missing.cmd) - all.begin()));
            if (column == 0 && mayLeaveFields()) takeNear(missing);
        });
    }

    void makeActions() {
        auto const add = [this](QMenu* menu, char const* title, QKeySequence const& keys, Then const& act) {
            QAction* const action = menu->addAction(title);
            action->setShortcut(keys);
            connect(action, &QAction::triggered, this, act);
            return action;
        };
        QMenu* const file = menuBar()->addMenu("&File");
        QMenu* const edit = menuBar()->addMenu("&Edit");
        add(file, "&Open...", QKeySequence::Open, [this] { open(QFileDialog::getOpenFileName(this)); });
        documentActions_ = {
            add(file, "&Reload", QKeySequence::Refresh,
                [this] { mayChange() ? open(QFile::decodeName(document_->path.c_str())) : void(); }),
            add(file, "&Save", QKeySequence::Save, [this] { save(false, {}); }),
            add(file, "Save &as...", QKeySequence::SaveAs, [this] { save(true, {}); }),
            add(edit, "&Undo", QKeySequence::Undo, [this] { mayChange() ? undo_.undo() : void(); }),
            add(edit, "&Redo", QKeySequence::Redo, [this] { mayChange() ? undo_.redo() : void(); }),
            add(edit, "&Use the selected objects", {"Ctrl+T"}, [this] { takeObjects(); }),
            add(edit, "&Discard invalid input", {"Ctrl+D"}, [this] { fields_.show(nullptr), select(shown_); })};
        add(file, "&Close the design", {}, [this] { setDesign(nullptr); });
        connect(&undo_, &QUndoStack::cleanChanged, this, [this] { updateState(); });
    }

    template <class Content, class Take>
    void read(Job& job, std::string const& path, Take const& take) {
        job.start("Cancel reading (%1 %)", [this, path, take](TovProgress const& progress) -> Job::Done {
            std::string error;
            std::shared_ptr<Content> const content = Content::load(path, progress, error);
            if (!content) return [this, error] { tell("The file cannot be read: " + toText(error)); };
            return [content, take] { take(content); };
        });
        updateState();
    }

    // Large objects are freed in a thread.
    static void drop(std::shared_ptr<void const> content) {
        QThreadPool::globalInstance()->start(QRunnable::create([content = std::move(content)] {}));
    }

    void setDesign(std::shared_ptr<Design const> const& design) {
        designJob_->drop();
        drop(std::exchange(design_, design));
        objects_.show(design_);
        commandsOfObject_->clear();
        joinDesign();
    }

    void setDocument(std::shared_ptr<Document> const& document) {
        lentJob_->drop();  // its result is no longer wanted
        undo_.clear();
        fields_.show(nullptr);
        commands_.show(document);
        drop(std::exchange(document_, document));
        shown_ = -1;
        changed(0);
    }

    // Joins the document with the open design. A join looks up every command, so a thread makes it.
    void joinDesign() {
        updateState();
        if (!document_ || documentJob_->isRunning() || document_->design == design_) return;
        auto const join = [design = design_](Document& document) { return document.join(design), std::string(); };
        lend("Looking up names (%1)", join, {});
    }

    // Hands the document to work in a thread, which returns an error text; then takes the document back and calls
    // `then`.
    void lend(QString const& title, std::function<std::string(Document&)> const& work, Then const& then) {
        mayLeaveFields();
        commands_.show(nullptr);
        lentJob_->start(title,
                        [this, lent = std::exchange(document_, nullptr), work, then](TovProgress const&) -> Job::Done {
                            std::string error;
                            try {
                                error = work(*lent);
                            } catch (std::exception const& e) {
                                error = e.what();
                            }
                            return [this, lent, then, error] {
                                commands_.show(document_ = lent);
                                changed(shown_);
                                if (!error.empty()) return tell("Failed: " + toText(error));
                                if (then) then();
                            };
                        });
        lentJob_->setEnabled(false);  // the work cannot be cancelled
        updateState();
    }

    void save(bool asNew, Then const& then) {
        if (!mayChange()) return;
        QString const chosen = asNew ? QFileDialog::getSaveFileName(this) : QFile::decodeName(document_->path.c_str());
        std::string const path = asNew ? QFile::encodeName(chosen).toStdString() : document_->path;
        if (chosen.isEmpty()) return;
        bool const isChanged = path == document_->path && Document::stampOf(path) != document_->stamp;
        QString doubts = isChanged ? "The file has changed on disk. " : "";
        if (!document_->losses.isEmpty()) doubts += "A save loses what the findings below report.";
        if (!doubts.isEmpty() && ask(doubts, QMessageBox::Save | QMessageBox::Cancel) != QMessageBox::Save) return;
        auto const write = [path](Document& document) {
            std::string error;
            if (!document.tov.saveAtomically(path.c_str(), &error)) return error;
            document.path = path;
            document.stamp = Document::stampOf(path);
            document.losses.clear();
            return error;
        };
        lend("Saving (%1)", write, [this, then] {
            undo_.setClean();
            if (then) then();
        });
    }

    // Calls `then` when no change would be lost: there are none, they are saved, or the user discards them.
    void keepChanges(Then const& then) {
        auto const buttons = QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel;
        auto const answer = undo_.isClean() ? QMessageBox::Discard : ask("There are unsaved changes.", buttons);
        if (answer == QMessageBox::Discard) then();
        if (answer == QMessageBox::Save) save(false, then);
    }

    void closeEvent(QCloseEvent* event) override {
        documentJob_->drop();
        updateState();
        bool const mayClose = !lentJob_->isRunning() && mayLeaveFields();
        event->setAccepted(mayClose && undo_.isClean());
        if (!mayClose || undo_.isClean()) return;
        keepChanges([this] {
            undo_.setClean();
            QTimer::singleShot(0, this, [this] { close(); });
        });
    }

    // Applies what is being typed; returns false if something cannot be applied.
    bool mayLeaveFields() {
        QCoreApplication::sendPostedEvents(form_->itemDelegate(), QEvent::MetaCall);  // a commit may be pending
        for (auto* editor : form_->viewport()->findChildren<QLineEdit*>())
            QMetaObject::invokeMethod(form_, "commitData", Q_ARG(QWidget*, editor));
        if (fields_.isRed()) statusBar()->showMessage("Red input is not applied: correct it, or discard it (Edit).");
        return !fields_.isRed();
    }

    // Returns whether the window has the document, and no typed text is left to apply.
    bool mayChange() { return document_ && !documentJob_->isRunning() && mayLeaveFields(); }

    // Shows a command and its fields, and selects its objects in the design.
    void select(int row) {
        if (!document_) return;
        if (row != shown_ && mayLeaveFields()) shown_ = row;
        QSignalBlocker const blocker(table_->selectionModel());
        table_->setCurrentIndex(commands_.index(shown_, 0));
        table_->viewport()->update();
        fields_.show(commands_.command(shown_));
        tree_->clearSelection();
        TovCmd* const cmd = commands_.command(shown_);
        if (cmd == nullptr || !document_->names || document_->design != design_) return;
        for (TovNameUse const& use : document_->names->usesIn(*cmd)) {
            Design::Nodes nodes;
            design_->names->find(use.type, use.word, nodes, use.match);
            for (std::size_t i = 0; i < std::min<std::size_t>(most, nodes.size()); ++i) {
                QModelIndex const index = objects_.indexOf(*nodes[i]);
                tree_->selectionModel()->select(index, QItemSelectionModel::Select);
                if (i == 0) tree_->scrollTo(index);
            }
        }
    }

    void changed(int row) {
        select(row);
        showFindings();
        updateState();
    }

    void showCommandsOf(TovNode const* node) {
        commandsOfObject_->clear();
        if (node == nullptr || !document_ || !document_->names || document_->design != design_) return;
        std::vector<TovCmd*> const found = document_->names->commandsOf(*node);
        for (std::size_t row = 0, next = 0; next < found.size() && next < most; ++row) {
            if (document_->commands[row] != found[next]) continue;
            auto* const item = new QListWidgetItem(toText(found[next++]->toSaveString(nullptr)), commandsOfObject_);
            item->setData(Qt::UserRole, static_cast<int>(row));
        }
    }

    void showFindings() {
        if (!document_) return;
        QList<QTreeWidgetItem*> items;
        for (std::size_t i = 0; i < std::min<std::size_t>(most, document_->missing.size()); ++i) {
            auto const& [message, near] = document_->said[document_->missing[i].word];
            items += new QTreeWidgetItem({near, message});
        }
        for (QString const& loss : document_->losses.mid(0, most))
            items += new QTreeWidgetItem(QStringList{QString(), loss});
        findings_->clear();
        findings_->addTopLevelItems(items);
        findings_->resizeColumnToContents(0);
        QString const counts = QString("Missing names: %1, losses: %2").arg(document_->missing.size());
        findings_->setHeaderLabels({"Click to apply", counts.arg(document_->losses.size())});
    }

    void takeObjects() {
        QString text;
        for (QModelIndex const& index : tree_->selectionModel()->selectedIndexes()) {
            TovNode const* const node = DesignModel::node(index);
            if (node == nullptr) continue;
            text += text.isEmpty() ? QString("[%1 {").arg(kinds[kindOf(*node)].first) : " ";
            text += toText(design_->names->nameOf(*node));
        }
        QModelIndex const field = form_->currentIndex();
        bool const isField = document_ && fields_.flags(field).testFlag(Qt::ItemIsEditable);
        if (isField && !text.isEmpty()) fields_.setData(field, text + "}]", Qt::EditRole);
    }

    // Replaces a missing word of the command in the form with the nearest name.
    void takeNear(TovNameUse const& missing) {
        QString const near = document_->said[missing.word].second;
        for (int row = 0; row < fields_.rowCount() && !near.isEmpty(); ++row) {
            QStringList words = fields_.index(row, 0).data(Qt::EditRole).toString().split(' ');
            int const at = static_cast<int>(words.indexOf(toText(missing.word)));
            if (at >= 0) words[at] = near;
            if (at >= 0) fields_.setData(fields_.index(row, 0), words.join(' '), Qt::EditRole);
        }
    }

    void updateState() {
        bool const isUsable = document_ && !documentJob_->isRunning();
        for (QWidget* pane : QList<QWidget*>{table_, form_, findings_}) pane->setEnabled(isUsable);
        for (QAction* action : documentActions_) action->setEnabled(isUsable);
        setWindowTitle(QString(document_ ? document_->path.c_str() : "No file") + "[*]");
        setWindowModified(!undo_.isClean());
    }

    QMessageBox::StandardButton ask(QString const& text, QMessageBox::StandardButtons buttons) {
        return QMessageBox::question(this, windowTitle(), text, buttons);
    }
    void tell(QString const& text) { ask(text, QMessageBox::Ok); }

    static constexpr int most = 500;  // entries of a list; nobody reads more

    QUndoStack undo_{this};
    std::shared_ptr<Design const> design_;
    std::shared_ptr<Document> document_;
    int shown_ = -1;  // the row of the command in the form
    CommandModel commands_;
    FieldModel fields_;
    FieldDelegate delegate_{design_};
    DesignModel objects_;
    Job *documentJob_, *lentJob_, *designJob_;
    QList<QAction*> documentActions_;
    QTableView* table_ = new QTableView;
    QTableView* form_ = new QTableView;
    QTreeView* tree_ = new QTreeView;
    QListWidget* commandsOfObject_ = new QListWidget;
    QTreeWidget* findings_ = new QTreeWidget;
};
