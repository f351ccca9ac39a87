#pragma once

#include "fields.h"
#include "tov/edit.h"
#include "tov/names/document_names.h"
#include "tov/names/name_check.h"

/// An open constraint file. Only one thread has it at a time: while a worker thread has it, the window has none.
struct Document {
    /// Reads a file, and finds what a save of it would lose; null if that fails or is stopped. `error` says why.
    static std::shared_ptr<Document> load(std::string const& path, TovProgress const& progress, std::string& error) {
        auto document = std::make_shared<Document>();
        document->path = path;
        document->stamp = stampOf(path);  // before the file is read, to notice a change during the read
        TovCheckOptions options;
        options.progress = progress;
        auto const visit = [&](TovFinding const& finding, std::string const& line, auto const&) {
            if (finding.kind != TOVFINDING_UNKNOWN_COMMAND)  // which is kept as a comment
                document->losses += QString("Line %1: ").arg(finding.line) + toText(findingMessage(finding, line));
            return true;
        };
        bool const isRead =
            document->tov.read(path.c_str(), progress, &error) && checkTovFile(path.c_str(), options, visit, &error);
        forEachCommand(document->tov, [&](TOVCMD_TYPE, TovCmd& cmd) { document->commands.push_back(&cmd); });
        return isRead ? document : nullptr;
    }

    /// Identifies a state of a file.
    static QString stampOf(std::string const& path) {
        QFileInfo const file(QFile::decodeName(path.c_str()));
        return QString("%1 %2").arg(file.size()).arg(file.lastModified().toMSecsSinceEpoch());
    }

    /// Joins the document with a design; null for none.
    void join(std::shared_ptr<Design const> with) {
        names.reset();
        said.clear();
        design = std::move(with);
        if (design) names = std::make_unique<TovDocumentNames>(tov, *design->names);
        lookUp();
    }

    /// Calls `change`, which changes the command, and updates the names.
    template <class Change>
    void change(TovCmd& cmd, Change const& change) {
        if (names) names->remove(cmd);
        change();
        if (names) names->add(cmd);
        lookUp();
    }

    int count() const { return static_cast<int>(commands.size()); }

    std::string path;
    QString stamp;
    QStringList losses;
    std::shared_ptr<Design const> design;
    TOV tov;
    std::vector<TovCmd*> commands;            // in the order of writing: by kind
    std::unique_ptr<TovDocumentNames> names;  // null without a design
    std::vector<TovNameUse> missing;          // the words that match nothing
    /// The message about a missing word, and the name that is nearest to it. Searching for names takes time, so only
    /// the first missing words have one.
    std::map<std::string, std::pair<QString, QString>> said;

private:
    void lookUp() {
        constexpr std::size_t most = 200;
        missing = names ? names->missing() : std::vector<TovNameUse>();
        for (std::size_t i = 0; i < std::min(most, missing.size()); ++i) {
            auto& [message, near] = said[missing[i].word];
            if (!message.isEmpty()) continue;
            message = toText(missingMessage(missing[i], *design->names));
            near = toText(design->names->nearest(missing[i].type, missing[i].word));
        }
    }
};

/// All commands as a table, by kind. It makes each change, as a command of an undo stack.
class CommandModel : public QAbstractListModel {
public:
    /// `changed` is called after each change with the row of the command.
    CommandModel(QUndoStack& undo, std::function<void(int)> changed) : undo_(undo), changed_(std::move(changed)) {}

    void show(std::shared_ptr<Document> document) {
        beginResetModel();
        document_ = std::move(document);
        endResetModel();
    }

    /// Null where there is none.
    TovCmd* command(int row) const {
        return row < 0 || row >= rowCount() ? nullptr : document_->commands[static_cast<std::size_t>(row)];
    }

    /// Changes a field and returns why not.
    QString change(int row, std::size_t field, std::string const& value) {
        if (command(row) == nullptr) return "another thread is using the command";
        TovCmd& cmd = *command(row);
        std::string const before = fieldsOf(cmd)[field].get();
        QString reason;
        if (value != before) document_->change(cmd, [&] { reason = trySet(cmd, field, value); });
        std::string const after = fieldsOf(cmd)[field].get();
        if (after == before) return reason;
        auto* const made = new Change;
        made->set = [=](std::string const& text) { set(row, field, text); };
        made->before = before;
        made->after = after;
        undo_.push(made);
        return reason;
    }

    int rowCount(QModelIndex const& = {}) const override { return document_ ? document_->count() : 0; }
    QVariant data(QModelIndex const& index, int role) const override {
        if (role != Qt::DisplayRole && role != Qt::ToolTipRole) return {};
        return toText(command(index.row())->toSaveString(&document_->tov));
    }

private:
    // A change of one field. It knows the value before and after; commands do not move, so it can always be undone.
    struct Change : QUndoCommand {
        void undo() override { set(before); }
        void redo() override { set(after); }
        std::function<void(std::string const&)> set;
        std::string before, after;
    };

    void set(int row, std::size_t field, std::string const& value) {
        TovCmd& cmd = *command(row);
        document_->change(cmd, [&] { fieldsOf(cmd)[field].set(value); });
        emit dataChanged(index(row, 0), index(row, 0));
        changed_(row);
    }

    QUndoStack& undo_;
    std::function<void(int)> changed_;
    std::shared_ptr<Document> document_;
};
