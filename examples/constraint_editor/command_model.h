#pragma once

#include <QtWidgets>
#include <list>
#include <vector>

#include "commands.h"

/// The list of one kind of command as a table. A row is an iterator into the document's own list, and its texts are
/// made when they are shown: a million rows cost eight megabytes.
class CommandModel : public QAbstractTableModel {
public:
    enum Column { lineColumn, remarksColumn, columns };
    using List = std::list<kiri::tov::TovCmd*>;

    /// Gets the memory to show that many rows.
    void reserve(std::size_t rows) { rows_.reserve(rows); }
    /// Shows a list, which outlives its use here.
    void show(List& list);

    kiri::tov::TovCmd& command(int row) const { return **rows_[static_cast<std::size_t>(row)]; }
    QString line(int row) const { return toText(command(row).toSaveString(nullptr)); }  ///< as the file will hold it

    // A command that is taken out belongs to the caller.
    void insert(int row, std::unique_ptr<kiri::tov::TovCmd> cmd);
    std::unique_ptr<kiri::tov::TovCmd> take(int row);
    /// Exchanges the command in the row for `cmd`; without one, switches that in the row on or off.
    void change(int row, std::unique_ptr<kiri::tov::TovCmd>& cmd);

    int rowCount(QModelIndex const& = {}) const override { return static_cast<int>(rows_.size()); }
    int columnCount(QModelIndex const&) const override { return columns; }
    QVariant data(QModelIndex const& index, int role) const override;
    bool setData(QModelIndex const& at, QVariant const& v, int role) override { return edit(at.row(), v, role); }
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(QModelIndex const& index) const override;

    /// The window judges commands, and makes the edits that the user asks for in the table.
    std::function<QString(int row)> remarksOn;
    std::function<bool(int row, QVariant const& value, int role)> edit;

private:
    List* list_ = nullptr;
    std::vector<List::iterator> rows_;
};
