#pragma once

#include <QtWidgets>

#include "../common/design_names.h"
#include "command_model.h"
#include "commands.h"
#include "tov/design/design.h"

/// The editor: the kinds of commands, the commands of one kind, and the design.
class EditorWindow : public QMainWindow {
public:
    EditorWindow();
    ~EditorWindow() override;

    /// Opens a design dump, if the name ends in ".xml", or a document. Tells the user why it fails, and leaves then
    /// what was open. False also if the user cancels, or if only the beginning could be read: that is shown, a document
    /// without the name of its file.
    bool open(QString const& path);
    /// Saves the document, under a name that the user is asked for if the path is empty. False if that fails.
    bool save(QString path);

    /// Shows a row of a kind.
    void showRow(int kind, int row);
    /// Opens the line of the row that is shown for editing.
    void editLine();

    /// How the window speaks to its user; a test puts its own in place.
    std::function<void(QString const& sentence)> tell;
    std::function<QMessageBox::StandardButton(QString const& question)> ask;

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    class Edit;

    QWidget* makeDesignPane();
    void makeMenus();
    QString remarksOn(QString const& line, kiri::tov::TovCmd* cmd) const;
    bool takeTyped();
    void findNext(QString const& text);

    QLineEdit* typing() const { return qobject_cast<QLineEdit*>(table_->indexWidget(table_->currentIndex())); }
    int row() const { return table_->currentIndex().row(); }
    void noteChange(int kind, int row);

    bool refuse(QString const& sentence) const;
    bool withMemory(std::function<bool()> const& run);
    bool openDocument(QString const& path);
    bool openDesign(QString const& path);
    void setDocument(std::unique_ptr<kiri::tov::TOV> document, QString const& path);
    bool mayDiscard();
    void takeClocks();

    std::unique_ptr<kiri::tov::TOV> document_;
    QString path_;  // empty: the document has no file
    std::unique_ptr<kiri::tov::TovDesign> design_;
    std::unique_ptr<DesignNames> names_;  // null without a design
    CommandModel models_[kindCount];
    QUndoStack undo_;
    int kind_ = 0;                          // whose commands the table shows
    int changedKind_ = 0, changedRow_ = 0;  // where the last edit was
    int typedRow_ = -1;                     // where the user is typing, and what is to be said about that
    QString typedRemarks_;

    QListWidget* kindList_ = new QListWidget;
    QTreeView* table_ = new QTreeView;
    std::function<void()> showObjects_;
};
