#pragma once

#include <QtWidgets>
#include <array>

#include "command_model.h"
#include "design_pane.h"
#include "document.h"
#include "findings_pane.h"

/// The editor: the kinds of lines, the lines of one kind, the findings in the file, and the design.
class EditorWindow : public QMainWindow {
public:
    EditorWindow();
    ~EditorWindow() override;

    /// Opens a design dump, which is a file whose first character is '<', or a document. Shows the user why it fails,
    /// and then keeps what was open. Returns false also if the user cancels.
    bool open(QString const& path);
    /// Saves the document, under a name that the user is asked for if the path is empty. False if that fails.
    bool save(QString path);
    /// Asks the user what to do if another program has changed the document's file. Called when the window becomes
    /// active. False if the user wants to look at it first.
    bool noticeOtherProgram(QString const& keep);

    /// Shows a line, and lifts the filter that hides it.
    void showPlace(Document::Place place);
    /// Opens the current line for typing.
    void editLine();
    /// Whether everything is known that is to be said about the lines, and what the filters show is found.
    bool isIdle() const { return !work_.isActive() && !findings_->isRunning() && design_->isIdle(); }
    Document const& document() const { return *document_; }
    DesignPane& designPane() { return *design_; }

    /// How the window speaks to its user; a test puts its own in place. `ask` returns the number of the answer, of
    /// which the last does nothing.
    std::function<void(QString const& sentence)> tell;
    std::function<int(QString const& question, QString const& details, QStringList const& answers)> ask;
    std::function<QString(bool forSave)> askForFile;

protected:
    void closeEvent(QCloseEvent* event) override;
    bool event(QEvent* event) override;

private:
    class Edit;
    class LineDelegate;
    // The state of a file, by which a change is noticed.
    using Identity = std::array<quint64, 5>;
    // When an action can do something: always, or by the part that has the focus and what is selected there.
    using Enabled = std::function<bool()>;

    // editor_window.cpp: the parts, and typing in the table.
    void makeParts();
    void connectParts();
    void showKind(int kind);
    void tidy();
    void work();
    void startTyping(QLineEdit* line, int documentRow);
    void stopTyping();
    void takeTyped();
    void dropAdded();
    void takeEdit(int documentRow, QVariant const& value, int role);
    void changed(int kind, std::vector<int> const& rows, bool inPlace);
    void showCounts();
    void insertWords(QString const& words);

    // editor_actions.cpp: what the user can do.
    QAction* addAction(QMenu* menu, char const* text, QKeySequence const& keys, std::function<void()> run,
                       Enabled enabled = nullptr);
    void makeFileMenu();
    void makeEditMenu();
    void makeFindBar();
    void showRecentFiles();
    bool isInTable() const;
    bool hasSelection() const;
    bool canMove(int step) const;
    Document::Place current() const;
    std::vector<int> selectedRows() const;
    void add();
    void copy();
    void paste();
    void duplicate();
    void remove();
    void move(int step);
    void toggle();
    void dropDraft();
    void find(bool backwards);
    bool isFound(Document::Place place) const;
    void findRemark(bool backwards);
    void restartCount();
    void countFound();

    // editor_files.cpp
    bool refuse(QString const& sentence) const;
    bool withMemory(std::function<bool()> const& run);
    bool runJob(QString const& label, std::function<void(kiri::tov::TovProgress const&)> const& job);
    bool openDocument(QString const& path);
    bool openDesign(QString const& path);
    void setDocument(std::unique_ptr<Document> document, QString const& path);
    bool mayDiscard();
    bool mayLose();
    bool acceptLoss(QString const& question, std::vector<kiri::tov::TovFinding> const& findings);
    void setPath(QString const& path);
    static Identity identityOf(QString const& path);
    kiri::tov::TovDesignNames const* names() const { return dump_ ? dump_->names.get() : nullptr; }

    std::unique_ptr<Document> document_;
    std::shared_ptr<Design const> dump_;  // null: none is open
    QString path_;                        // empty: the document has no file
    Identity identity_ = {};              // of the file as it was read or saved
    bool lossAccepted_ = true;            // a save writes what the file has, or the user knows
    bool isBusy_ = false;                 // a job runs, or a question is open
    CommandModel model_;
    QUndoStack undo_;
    QTimer work_;  // in whose slices the remarks are made, the filter is applied, and what is found is counted
    QPointer<QLineEdit> typing_;
    int addedRow_ = -1;  // a row that goes if its typing is cancelled
    QPointer<QWidget> focus_;
    Document::Place remarksAt_ = {}, foundAt_ = {};
    int foundCount_ = 0;
    std::vector<std::pair<QAction*, Enabled>> actions_;

    QListWidget* kinds_ = new QListWidget;
    QLineEdit* filter_ = new QLineEdit;
    QTreeView* table_ = new QTreeView;
    FindingsPane* findings_ = new FindingsPane;
    DesignPane* design_ = new DesignPane;
    QLineEdit* search_ = new QLineEdit;
    QCheckBox* withCase_ = new QCheckBox("Match case");
    QLabel* found_ = new QLabel;
    QLabel* counts_ = new QLabel;
    QMenu* recent_ = nullptr;
};
