#pragma once

#include <QtWidgets>

#include "design.h"
#include "tov/cmd/commands.h"
#include "tov/progress.h"

/// The objects of the design, one kind at a time, and the commands that refer to the one that is chosen.
class DesignPane : public QWidget {
public:
    /// Runs a job that may last; false if the user cancels it, or if it fails.
    using Run = std::function<bool(QString const& label, std::function<void(kiri::tov::TovProgress const&)> const&)>;

    DesignPane();
    ~DesignPane() override;

    /// Shows a design, or none. Lists the objects by that function, now and when another kind is chosen.
    void show(std::shared_ptr<Design const> design, Run run);
    /// Shows only the objects that a word with '*' or '?' stands for, or else those that have the text in their names.
    /// Waits until they are found.
    void setFilter(int kind, QString const& text);
    /// Whether all objects that the filter shows are found.
    bool isIdle() const { return !findTimer_.isActive(); }
    /// Forgets the commands, one of which has changed, and asks for them anew.
    void commandsChanged();

    std::function<std::vector<kiri::tov::TovCmd*>(kiri::tov::TovNode const&)> commandsOf;
    std::function<void(kiri::tov::TovCmd&)> commandChosen;
    std::function<void(QString const& words)> wordsChosen;  ///< of an object, to be put into a line

private:
    class Model;

    void list();
    void goOn();
    void showCount();
    void showCommands();
    void insertCurrent();

    std::shared_ptr<Design const> design_;
    Run run_;
    QLabel* title_ = new QLabel;
    QComboBox* kind_ = new QComboBox;
    QLineEdit* filter_ = new QLineEdit;
    QLabel* count_ = new QLabel;
    QListView* objects_ = new QListView;
    QLabel* commandsTitle_ = new QLabel;
    QListWidget* commands_ = new QListWidget;
    QTimer findTimer_, commandsTimer_;
    std::unique_ptr<Model> model_;
};
