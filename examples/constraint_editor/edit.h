#pragma once

#include "editor_window.h"

/// A change of the document, and the way back. Rows ascend; the way back has them the other way round.
class EditorWindow::Edit : public QUndoCommand {
public:
    using Rows = std::vector<int>;

    /// What a row has beside its command.
    struct State {
        bool enabled;
        std::string draft;
    };

    /// Moves rows; an empty `to` removes them, and an empty `from` inserts commands.
    Edit(EditorWindow& window, QString const& what, int kind, Rows from, Rows to, Document::Commands cmds = {})
        : QUndoCommand(what),
          window_(window),
          kind_(kind),
          from_(std::move(from)),
          to_(std::move(to)),
          cmds_(std::move(cmds)) {}

    /// Of a row that is in the document already.
    static Edit* addition(EditorWindow& window, int kind, int row) {
        auto* const edit = new Edit(window, "add", kind, {row}, {});
        edit->isDone_ = true;
        return edit;
    }
    static Edit* exchange(EditorWindow& window, int kind, int row, std::unique_ptr<kiri::tov::TovCmd> cmd) {
        auto* const edit = new Edit(window, "typing", kind, {row}, {row});
        edit->cmds_.push_back(std::move(cmd));
        return edit;
    }
    static Edit* states(EditorWindow& window, QString const& what, int kind, Rows const& rows,
                        std::vector<State> states) {
        auto* const edit = new Edit(window, what, kind, rows, rows);
        edit->states_ = std::move(states);
        return edit;
    }

    void undo() override { redo(); }

    void redo() override {
        if (std::exchange(isDone_, false)) return;
        bool const inPlace = !states_.empty() || (from_ == to_ && !cmds_.empty());
        if (inPlace)
            exchangeInPlace();
        else
            rearrange();
        std::swap(from_, to_);
        window_.changed(kind_, from_.empty() ? to_ : from_, inPlace);
    }

private:
    void exchangeInPlace() {
        for (std::size_t i = 0; i < from_.size(); ++i) {
            Document::Place const at = {kind_, from_[i]};
            if (states_.empty())
                window_.document_->exchange(at, cmds_[i]);
            else
                window_.document_->exchangeState(at, states_[i].enabled, states_[i].draft);
        }
    }

    // Takes commands out, puts commands in, or moves them.
    void rearrange() {
        CommandModel& model = window_.model_;
        model.beginChange();
        Document::Commands taken = from_.empty() ? std::move(cmds_) : window_.document_->take(kind_, from_);
        cmds_.clear();
        if (to_.empty())
            cmds_ = std::move(taken);
        else
            window_.document_->insert(kind_, to_, std::move(taken));
        model.endChange();
    }

    EditorWindow& window_;
    int kind_;
    Rows from_, to_;  // where the commands are, and where they will be; the same: something is exchanged in place
    Document::Commands cmds_;  // while they are out of the document
    std::vector<State> states_;
    bool isDone_ = false;
};
